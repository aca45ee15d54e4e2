#pragma once

#include "Timetable.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVariantList>

class AssetItem;
class AssetsModel;

namespace rivo::fleet
{

/// Runs the vehicles of a fleet along the shapes of a feed by its timetable, and reports their
/// positions into the fleet's model as a radio would. No network is needed.
///
/// Trips of a route go to the vehicles of that route, each to the first that is free; what no
/// vehicle is left for does not run. A fleet without vehicles gets as many as its timetable needs.
/// Vehicles that have no trip of their route stay as the feed has them.
class FleetSimulator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int time READ time NOTIFY timeChanged)
    Q_PROPERTY(QString timeText READ timeText NOTIFY timeChanged)
    Q_PROPERTY(double pace READ pace WRITE setPace NOTIFY paceChanged)
    Q_PROPERTY(QVariantList lines READ lines CONSTANT)
    Q_PROPERTY(QVariantList stops READ stops CONSTANT)

public:
    enum Reporting {
        Live,   ///< reports as it should
        Stale,  ///< silent for more than a minute
        Offline ///< silent for more than five minutes, or never heard of
    };
    Q_ENUM(Reporting)

    static constexpr int mostNewVehicles = 50;
    static constexpr Seconds staleAfter = 60;
    static constexpr Seconds offlineAfter = 300;

    /// `fleet` outlives the simulator.
    FleetSimulator(const Timetable& timetable, AssetsModel& fleet, QObject* parent = nullptr);

    /// Time of the service day, 0 to 86399 seconds.
    Seconds time() const { return m_time; }
    QString timeText() const;

    /// Goes to `time` (any number, taken modulo the day) and reports every vehicle there.
    Q_INVOKABLE void setTime(int time);

    /// Seconds of the timetable per second; 0 stands still. 0 to 600, others are limited.
    double pace() const { return m_pace; }
    void setPace(double pace);

    /// Moves on by itself, several times a second.
    void start();

    /// The vehicle's radio falls silent, or comes back.
    Q_INVOKABLE void setSilent(int id, bool silent);
    Q_INVOKABLE bool isSilent(int id) const { return m_silent.contains(id); }

    /// How current a vehicle's row is. Bindings re-evaluate with the role drivingStatus, which
    /// changes with it.
    Q_INVOKABLE rivo::fleet::FleetSimulator::Reporting reportingOf(int id) const;

    /// Lines to draw: maps of "route" (number), "name", "color" and "path" (coordinates).
    QVariantList lines() const { return m_lines; }
    /// Stops to draw: maps of "number", "name" and "coordinate".
    QVariantList stops() const { return m_stops; }

    /// The trip that vehicle `id` runs now, or runs next; null if it has none.
    const Trip* tripOf(int id) const;

signals:
    void timeChanged();
    void paceChanged();

private:
    void makeVehicles();
    void distributeTrips();
    void describeNetwork();
    void report();
    void reportVehicle(AssetItem& vehicle);
    AssetItem* vehicle(int row) const;

    const Timetable m_timetable;
    AssetsModel& m_fleet;
    QHash<int, QVector<const Trip*>> m_duties; ///< trips by vehicle, by start time
    QHash<int, Seconds> m_silentFor;           ///< since its last report, by vehicle
    QSet<int> m_silent;
    QVariantList m_lines;
    QVariantList m_stops;
    QTimer m_ticks;
    QElapsedTimer m_sinceTick;
    Seconds m_time = 0;
    double m_pace = 1.0;
    double m_fraction = 0.0; ///< of a second, not yet moved
};

} // namespace rivo::fleet
