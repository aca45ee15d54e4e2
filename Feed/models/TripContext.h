#pragma once

#include "Feed.h"

#include <QObject>

namespace rivo::feed
{

/// The trip that the vehicle is on, as ShoppingBasketModel::addItem reads it and QML shows it.
///
/// Setters store and emit the property's signal if the value differs.
class TripContext : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int routeId READ routeId WRITE setRouteId NOTIFY routeIdChanged)
    Q_PROPERTY(int fromStopId READ fromStopId WRITE setFromStopId NOTIFY fromStopIdChanged)
    Q_PROPERTY(int toStopId READ toStopId WRITE setToStopId NOTIFY toStopIdChanged)
    Q_PROPERTY(
        int currentStopId READ currentStopId WRITE setCurrentStopId NOTIFY currentStopIdChanged)
    Q_PROPERTY(int tripsRouteId READ tripsRouteId WRITE setTripsRouteId NOTIFY tripsRouteIdChanged)
    Q_PROPERTY(int tripsExecutionId READ tripsExecutionId WRITE setTripsExecutionId NOTIFY
                   tripsExecutionIdChanged)
    Q_PROPERTY(QString publicRouteExecutionId READ publicRouteExecutionId WRITE
                   setPublicRouteExecutionId NOTIFY publicRouteExecutionIdChanged)

public:
    /// In no service: identifiers -1, publicRouteExecutionId empty.
    explicit TripContext(QObject* parent = nullptr);
    explicit TripContext(const FeedTripContext& trip, QObject* parent = nullptr);
    /// The feed's trip; in no service without one.
    explicit TripContext(const Feed& feed, QObject* parent = nullptr);

    const FeedTripContext& trip() const { return m_trip; }

    /// Stores all values before the first signal is emitted: no slot gets half of a trip.
    void setTrip(const FeedTripContext& trip);

    int routeId() const { return m_trip.routeId; }
    int fromStopId() const { return m_trip.fromStopId; }
    int toStopId() const { return m_trip.toStopId; }
    int currentStopId() const { return m_trip.currentStopId; } ///< where the vehicle is
    int tripsRouteId() const { return m_trip.tripsRouteId; }
    int tripsExecutionId() const { return m_trip.tripsExecutionId; }
    /// "DynamicTrip" for a trip that is in no timetable.
    QString publicRouteExecutionId() const { return m_trip.publicRouteExecutionId; }

    void setRouteId(int routeId);
    void setFromStopId(int fromStopId);
    void setToStopId(int toStopId);
    void setCurrentStopId(int currentStopId);
    void setTripsRouteId(int tripsRouteId);
    void setTripsExecutionId(int tripsExecutionId);
    void setPublicRouteExecutionId(const QString& publicRouteExecutionId);

signals:
    void routeIdChanged();
    void fromStopIdChanged();
    void toStopIdChanged();
    void currentStopIdChanged();
    void tripsRouteIdChanged();
    void tripsExecutionIdChanged();
    void publicRouteExecutionIdChanged();

private:
    template <class T>
    void store(T FeedTripContext::*field, const T& value, void (TripContext::*changed)());

    FeedTripContext m_trip;
};

} // namespace rivo::feed
