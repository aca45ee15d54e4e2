#pragma once

#include <Timetable.h>
#include <TripContext.h>

#include <QObject>
#include <QStringList>

#include <optional>

namespace rivo::feed
{
struct Feed;
}

namespace rivo::terminal
{

/// The trip that this vehicle is on, and where on it: what every ticket is sold with.
///
/// The feed's trip, if it has one; otherwise the first of the timetable. Its stops are known if the
/// timetable has the trip, or another one of its route.
class TripDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(rivo::feed::TripContext* context READ context CONSTANT)
    Q_PROPERTY(QString route READ route CONSTANT)
    Q_PROPERTY(QStringList stops READ stops CONSTANT)
    Q_PROPERTY(int stopCount READ stopCount CONSTANT)
    Q_PROPERTY(int stop READ stop WRITE setStop NOTIFY stopChanged)
    Q_PROPERTY(QString stopName READ stopName NOTIFY stopChanged)
    Q_PROPERTY(QString punctuality READ punctuality NOTIFY punctualityChanged)

public:
    TripDesk(const feed::Feed& feed, const fleet::Timetable& timetable, QObject* parent = nullptr);

    /// The trip context for tickets; lives as long as this.
    feed::TripContext* context() { return &m_context; }

    QString route() const { return m_route; } ///< name and destination, for people
    QStringList stops() const { return m_stops; }
    int stopCount() const { return m_stops.size(); }

    /// Index of the current stop in stops(); -1 if it is not one of them.
    int stop() const { return m_stop; }
    /// Ignored if there is no such stop.
    void setStop(int stop);
    /// Zones of the current stop and of those behind it, the next one first; a zone may come again.
    QVector<int> zonesAhead() const;
    /// Name of the current stop, or its number where no name is known; empty without a trip.
    QString stopName() const;

    /// The trip whose stops these are; null if the timetable has none.
    const fleet::Trip* trip() const { return m_trip ? &*m_trip : nullptr; }

    /// That the vehicle is late, ahead or off route, for people; empty if it is on time, or
    /// unknown.
    QString punctuality() const { return m_punctuality; }
    void setPunctuality(const QString& text);

signals:
    void stopChanged();
    void punctualityChanged();

private:
    feed::TripContext m_context;
    QString m_route;
    QStringList m_stops;
    QVector<int> m_stopNumbers;
    QVector<QVector<int>> m_zones; ///< of the stops
    int m_stop = -1;
    std::optional<fleet::Trip> m_trip;
    QString m_punctuality;
};

} // namespace rivo::terminal
