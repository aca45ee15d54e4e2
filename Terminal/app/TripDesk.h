#pragma once

#include <Timetable.h>
#include <TripContext.h>

#include <QObject>
#include <QStringList>
#include <QVariantList>

namespace rivo::feed
{
struct Feed;
}

namespace rivo::terminal
{

/// The trip that this vehicle is on, and where on it: what every ticket is sold with, what the
/// status line shows, and what the fleet page has of this vehicle.
///
/// At first the feed's trip, if it has one; otherwise the trip of the timetable that runs at the
/// time, or the next one. Its stops are known if the timetable has the trip, or another one of its
/// route. In a network without trips all stops are there to choose from.
class TripDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(rivo::feed::TripContext* context READ context CONSTANT)
    Q_PROPERTY(QString route READ route NOTIFY tripChanged)
    Q_PROPERTY(QString tripText READ tripText NOTIFY tripChanged)
    Q_PROPERTY(int routeNumber READ routeNumber NOTIFY tripChanged)
    Q_PROPERTY(QVariantList routes READ routes CONSTANT)
    Q_PROPERTY(QStringList stops READ stops NOTIFY tripChanged)
    Q_PROPERTY(int stopCount READ stopCount NOTIFY tripChanged)
    Q_PROPERTY(int stop READ stop WRITE setStop NOTIFY stopChanged)
    Q_PROPERTY(bool atEnd READ isAtEnd NOTIFY stopChanged)
    Q_PROPERTY(QString stopName READ stopName NOTIFY stopChanged)
    Q_PROPERTY(QString punctuality READ punctuality NOTIFY punctualityChanged)

public:
    /// `now`: second of the service day.
    TripDesk(const feed::Feed& feed, const fleet::Timetable& timetable, fleet::Seconds now = 0,
             QObject* parent = nullptr);

    /// The trip context for tickets; lives as long as this.
    feed::TripContext* context() { return &m_context; }

    QString route() const { return m_route; } ///< name and destination, for people
    /// When the trip starts; empty if the timetable does not have it.
    QString tripText() const;
    int routeNumber() const { return m_context.routeId(); }

    /// Routes with trips: maps of route (number), name and title.
    QVariantList routes() const;
    /// The trips of a route: those that run at `now`, then the later ones, then those that are
    /// over. At the last stop the next trip of this vehicle comes first: the earliest after this
    /// one that goes back, otherwise the earliest that begins where this one ends. Maps of trip
    /// (number), time, destination, isNext, isNow, isOver and isChosen.
    Q_INVOKABLE QVariantList tripsOf(int route, int now) const;
    /// Begins a trip of the timetable at its first stop. False if there is none of this number.
    Q_INVOKABLE bool choose(int trip);
    /// The trip of the timetable that is shown, which may be another one of the route; null
    /// without.
    const fleet::Trip* trip() const { return m_trip; }

    QStringList stops() const { return m_stops; }
    int stopCount() const { return m_stops.size(); }

    /// Index of the current stop in stops(); -1 if it is not one of them.
    int stop() const { return m_stop; }
    /// Whether a trip of the timetable is at its last stop.
    bool isAtEnd() const { return m_trip != nullptr && m_stop == m_stops.size() - 1; }
    /// Whether a trip of the timetable runs at a second of the service day: it is not at its last
    /// stop, and ended less than an hour ago.
    bool isUnderWay(int now) const;
    /// Ignored if there is no such stop.
    void setStop(int stop);
    /// Zones of the current stop and of those behind it, the next one first; a zone may come again.
    QVector<int> zonesAhead() const;
    /// Name of the current stop, or its number where no name is known; empty without a trip.
    QString stopName() const;

    /// That the vehicle is late, ahead or off route, for people; empty if it is on time, or
    /// unknown.
    QString punctuality() const { return m_punctuality; }
    void setPunctuality(const QString& text);

signals:
    void tripChanged();
    void stopChanged();
    void punctualityChanged();

private:
    const fleet::Trip* nextTrip(const QVector<const fleet::Trip*>& trips, int now) const;
    bool isExact() const;
    void readTrip(const feed::FeedTripContext& context);
    void readStops(const feed::Feed& feed);

    const fleet::Timetable m_timetable;
    const fleet::Trip* m_trip = nullptr;
    feed::TripContext m_context;
    QString m_route;
    QStringList m_stops;
    QVector<int> m_stopNumbers;
    QVector<QVector<int>> m_zones; ///< of the stops
    int m_stop = -1;
    QString m_punctuality;
};

} // namespace rivo::terminal
