#pragma once

#include "Timetable.h"

#include <QElapsedTimer>
#include <QGeoCoordinate>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVariantList>

#include <QtNumeric>

#include <optional>

class AssetItem;
class AssetsModel;

namespace rivo::fleet
{

/// Runs the vehicles of a fleet along the shapes of a feed by its timetable, and reports their
/// positions into the fleet's model as a radio would. No network is needed.
///
/// Every day is the same: a trip that passes midnight also runs in the first hours. Trips of a
/// route go to the vehicles of that route, each to one that is free, best to one that ended its
/// last trip where this one starts; what no vehicle is left for does not run. A fleet without
/// vehicles gets as many as its timetable needs. Vehicles that have no trip of their route are
/// parked: they stay as the feed has them, and as current as it says they are.
class FleetSimulator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int time READ time NOTIFY timeChanged)
    Q_PROPERTY(QString timeText READ timeText NOTIFY timeChanged)
    Q_PROPERTY(double pace READ pace WRITE setPace NOTIFY paceChanged)
    Q_PROPERTY(int own READ own NOTIFY ownChanged)
    Q_PROPERTY(QVariantList lines READ lines CONSTANT)
    Q_PROPERTY(QVariantList stops READ stops CONSTANT)

public:
    enum Reporting {
        Live,   ///< reports as it should
        Stale,  ///< silent for more than a minute; parked, and not up to date in the feed
        Offline ///< silent for more than five minutes, or without a position
    };
    Q_ENUM(Reporting)

    static constexpr int mostNewVehicles = 50;
    static constexpr Seconds staleAfter = 60;
    static constexpr Seconds offlineAfter = 300;

    enum class Vehicles {
        Simulated, ///< run by the timetable; made if the fleet is empty
        AsReported ///< stay as the fleet has them
    };

    /// Where this vehicle is by its receiver.
    struct OwnPlace
    {
        QGeoCoordinate coordinate;
        double direction = qQNaN(); ///< degrees clockwise from north; NaN = as before
        bool isMoving = false;
    };

    /// `fleet` outlives the simulator.
    FleetSimulator(const Timetable& timetable, AssetsModel& fleet,
                   Vehicles vehicles = Vehicles::Simulated, QObject* parent = nullptr);

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

    /// These vehicles, by id, are reported by others: the simulator leaves their rows alone. The
    /// seconds since their reports say how current they are.
    void setReportedByOthers(const QHash<int, Seconds>& silences) { m_reportedByOthers = silences; }

    /// Vehicle `vehicle` is this one. In a simulation it is on trip `trip` of the timetable, at its
    /// call `call`, whatever its duty says; -1 for none. The driver has chosen that.
    void setOwn(int vehicle, int trip, int call);
    int own() const { return m_own; } ///< this vehicle; -1 if the fleet does not have it

    /// This vehicle is there, on the trip of setOwn(), whatever timetable or others say of it. It
    /// is as current as the last of these reports.
    void reportOwnPlace(const OwnPlace& place);

    /// The vehicle with this internal or registration number; -1 if there is none.
    int vehicleNamed(const QString& number) const;

    /// Adds a vehicle that has not reported, and returns its id.
    int addVehicle(const QString& number);

    /// The vehicle that runs trip `trip` on some part of the day, otherwise the first one of route
    /// `route`; -1 if there is none.
    Q_INVOKABLE int vehicleOf(int trip, int route) const;

    /// How current a vehicle's row is. Bindings re-evaluate with the role drivingStatus, which
    /// changes with it.
    Q_INVOKABLE rivo::fleet::FleetSimulator::Reporting reportingOf(int id) const;

    /// Lines to draw: maps of "route" (number), "name", "color" and "path" (coordinates).
    QVariantList lines() const { return m_lines; }
    /// Stops to draw: maps of "number", "name" and "coordinate".
    QVariantList stops() const { return m_stops; }

    /// The trip that vehicle `id` runs now, or runs next, which may be tomorrow; null if it has
    /// none.
    const Trip* tripOf(int id) const;

signals:
    void timeChanged();
    void paceChanged();
    void silentChanged(int id);
    void ownChanged();

private:
    /// Trips of one vehicle by the second of the day that they start at; they never overlap.
    using Duty = QMap<Seconds, const Trip*>;

    /// What the feed says of a vehicle without a duty.
    struct Parked
    {
        QString drivingStatus;
        bool updated = true;
    };

    struct Neighbours
    {
        const Trip* before;
        const Trip* after;
    };

    static Neighbours neighboursOf(const Trip& trip, const Duty& duty);
    static bool isBetween(const Trip& trip, const Neighbours& neighbours);
    void distributeTrips();
    AssetItem* freeVehicle(const QVector<AssetItem*>& vehicles, const Trip& trip) const;
    AssetItem* makeVehicle(const Route& route);
    void rememberParkedVehicles();
    void describeNetwork();
    bool isRunning(const Trip& trip) const;
    void report();
    void reportVehicle(AssetItem& vehicle);
    void reportOwn(AssetItem& vehicle, const Trip& trip);
    bool isPlaced(int id) const;
    void showOwnPlace(AssetItem& vehicle);
    void showTrip(AssetItem& vehicle, const Trip& trip) const;
    void place(AssetItem& vehicle, const Trip& trip, double metres) const;
    AssetItem* vehicle(int row) const;

    const Timetable m_timetable;
    AssetsModel& m_fleet;
    const bool m_isSimulating;
    QHash<int, Duty> m_duties;       ///< by vehicle
    QHash<int, Parked> m_parked;     ///< by vehicle, those without a duty
    QHash<int, Seconds> m_silentFor; ///< since its last report, by vehicle
    QSet<int> m_silent;
    QHash<int, Seconds> m_reportedByOthers; ///< since their reports, by vehicle
    int m_own = -1;                         ///< vehicle
    int m_ownTrip = -1;
    int m_ownCall = -1;
    std::optional<OwnPlace> m_ownPlace;
    Seconds m_ownSilentFor = 0; ///< since m_ownPlace
    QVariantList m_lines;
    QVariantList m_stops;
    QTimer m_ticks;
    QElapsedTimer m_sinceTick;
    Seconds m_time = 0;
    double m_pace = 1.0;
    double m_fraction = 0.0; ///< of a second, not yet moved
};

} // namespace rivo::fleet
