#include "FleetSimulator.h"

#include <AssetItem.h>
#include <AssetsModel.h>

#include <QTime>

#include <algorithm>
#include <cmath>
#include <utility>

namespace rivo::fleet
{

namespace
{

constexpr Seconds day = 86400;
constexpr int ticksPerSecond = 4;
constexpr double highestPace = 600.0;

Seconds secondOfDay(Seconds time) { return (time % day + day) % day; }

Seconds duration(const Trip& trip) { return trip.end() - trip.start(); }

QString destinationText(const Trip& trip)
{
    return FleetSimulator::tr("to %1").arg(trip.headsign.isEmpty() ? trip.calls.last().name
                                                                   : trip.headsign);
}

/// A trip that takes a day would meet itself; one without places leads nowhere.
bool canRun(const Trip& trip) { return duration(trip) < day && !trip.path->points().isEmpty(); }

} // namespace

FleetSimulator::FleetSimulator(const Timetable& timetable, AssetsModel& fleet, Vehicles vehicles,
                               QObject* parent)
    : QObject(parent), m_timetable(timetable), m_fleet(fleet),
      m_isSimulating(vehicles == Vehicles::Simulated)
{
    if (m_isSimulating)
        distributeTrips();
    rememberParkedVehicles();
    describeNetwork();
    m_ticks.setInterval(1000 / ticksPerSecond);
    connect(&m_ticks, &QTimer::timeout, this, [this] {
        m_fraction += static_cast<double>(m_sinceTick.restart()) / 1000.0 * m_pace;
        const double whole = std::floor(m_fraction);
        m_fraction -= whole;
        if (whole > 0.0)
            setTime(static_cast<int>(std::fmod(m_time + whole, day)));
    });
}

AssetItem* FleetSimulator::vehicle(int row) const
{
    return qobject_cast<AssetItem*>(m_fleet.itemFromRow(row));
}

void FleetSimulator::distributeTrips()
{
    const bool makesVehicles = m_fleet.rowCount() == 0;
    QHash<int, QVector<AssetItem*>> vehiclesOfRoutes;
    for (int row = 0; row < m_fleet.rowCount(); ++row)
        vehiclesOfRoutes[vehicle(row)->routeId()].append(vehicle(row));
    QHash<int, QVector<const Trip*>> tripsOfRoutes;
    for (const Trip& trip : m_timetable.trips()) {
        if (canRun(trip))
            tripsOfRoutes[trip.route].append(&trip);
    }
    for (const Route& route : m_timetable.routes()) {
        QVector<AssetItem*>& vehicles = vehiclesOfRoutes[route.number];
        for (const Trip* trip : tripsOfRoutes.value(route.number)) {
            AssetItem* chosen = freeVehicle(vehicles, *trip);
            if (chosen == nullptr && makesVehicles && m_fleet.rowCount() < mostNewVehicles) {
                chosen = makeVehicle(route);
                vehicles.append(chosen);
            }
            if (chosen != nullptr)
                m_duties[chosen->id()].insert(secondOfDay(trip->start()), trip);
        }
    }
}

FleetSimulator::Neighbours FleetSimulator::neighboursOf(const Trip& trip, const Duty& duty)
{
    // The day is a circle: behind its last trip comes its first.
    const auto next = duty.lowerBound(secondOfDay(trip.start()));
    return {next != duty.begin() ? std::prev(next).value() : duty.last(),
            next != duty.end() ? next.value() : duty.first()};
}

AssetItem* FleetSimulator::freeVehicle(const QVector<AssetItem*>& vehicles, const Trip& trip) const
{
    AssetItem* first = nullptr;
    for (AssetItem* candidate : vehicles) {
        const Duty duty = m_duties.value(candidate->id());
        if (duty.isEmpty()) {
            first = first == nullptr ? candidate : first;
            continue;
        }
        const Neighbours neighbours = neighboursOf(trip, duty);
        if (!isBetween(trip, neighbours))
            continue;
        if (neighbours.before->calls.last().stop == trip.calls.first().stop)
            return candidate;
        first = first == nullptr ? candidate : first;
    }
    return first;
}

/// A trip that starts with another one is not free of it, however short both are.
bool FleetSimulator::isBetween(const Trip& trip, const Neighbours& neighbours)
{
    const Seconds sinceBefore = secondOfDay(trip.start() - neighbours.before->start());
    const Seconds untilAfter = secondOfDay(neighbours.after->start() - trip.start());
    return untilAfter > 0 && sinceBefore >= duration(*neighbours.before) &&
           untilAfter >= duration(trip);
}

AssetItem* FleetSimulator::makeVehicle(const Route& route)
{
    const int id = m_fleet.rowCount() + 1;
    auto* made =
        new AssetItem(id, tr("Bus %1").arg(id), QString::number(id), QString(), QString(),
                      route.number, route.title, QGeoCoordinate(), false, true, 0.0, &m_fleet);
    m_fleet.appendRow(made);
    return made;
}

int FleetSimulator::vehicleNamed(const QString& number) const
{
    for (int row = 0; row < m_fleet.rowCount() && !number.isEmpty(); ++row) {
        const AssetItem* candidate = vehicle(row);
        if (candidate->internalNumber() == number || candidate->registrationNumber() == number)
            return candidate->id();
    }
    return -1;
}

int FleetSimulator::addVehicle(const QString& number)
{
    int id = m_fleet.rowCount() + 1;
    while (m_fleet.findById(id) != nullptr)
        ++id;
    m_fleet.appendRow(new AssetItem(id, number, number, tr("no report"), QString(), -1, QString(),
                                    QGeoCoordinate(), false, true, 0.0, &m_fleet));
    m_parked.insert(id, {tr("no report"), false});
    return id;
}

void FleetSimulator::rememberParkedVehicles()
{
    for (int row = 0; row < m_fleet.rowCount(); ++row) {
        const AssetItem* parked = vehicle(row);
        if (!m_duties.contains(parked->id()))
            m_parked.insert(parked->id(), {parked->drivingStatus(), parked->updated()});
    }
}

int FleetSimulator::vehicleOf(int trip, int route) const
{
    for (auto duty = m_duties.cbegin(); duty != m_duties.cend(); ++duty) {
        for (const Trip* of : *duty) {
            if (of->number == trip)
                return duty.key();
        }
    }
    for (int row = 0; row < m_fleet.rowCount() && route >= 0; ++row) {
        if (vehicle(row)->routeId() == route)
            return vehicle(row)->id();
    }
    return -1;
}

void FleetSimulator::describeNetwork()
{
    QSet<const Path*> drawn;
    QSet<int> shown;
    for (const Trip& trip : m_timetable.trips()) {
        if (!drawn.contains(trip.path.get())) {
            drawn.insert(trip.path.get());
            QVariantList path;
            for (const QGeoCoordinate& point : trip.path->points())
                path.append(QVariant::fromValue(point));
            const Route* route = m_timetable.route(trip.route);
            m_lines.append(
                QVariantMap{{QStringLiteral("route"), trip.route},
                            {QStringLiteral("name"), route == nullptr ? QString() : route->name},
                            {QStringLiteral("color"), route == nullptr ? QString() : route->color},
                            {QStringLiteral("path"), path}});
        }
        for (const Call& call : trip.calls) {
            if (shown.contains(call.stop) || !call.coordinate.isValid())
                continue;
            shown.insert(call.stop);
            m_stops.append(
                QVariantMap{{QStringLiteral("number"), call.stop},
                            {QStringLiteral("name"), call.name},
                            {QStringLiteral("coordinate"), QVariant::fromValue(call.coordinate)}});
        }
    }
}

QString FleetSimulator::timeText() const
{
    return QTime(0, 0).addSecs(m_time).toString(QStringLiteral("HH:mm"));
}

void FleetSimulator::setTime(int time)
{
    const Seconds wanted = secondOfDay(time);
    const Seconds passed = secondOfDay(wanted - m_time);
    m_time = wanted;
    for (int id : qAsConst(m_silent))
        m_silentFor[id] = std::min(m_silentFor.value(id) + passed, day);
    m_ownSilentFor = std::min(m_ownSilentFor + passed, day);
    report();
    if (passed > 0)
        emit timeChanged();
}

void FleetSimulator::setPace(double pace)
{
    const double limited = pace >= 0.0 ? std::min(pace, highestPace) : 0.0; // NaN too
    if (qFuzzyCompare(limited + 1.0, m_pace + 1.0))
        return;
    m_pace = limited;
    emit paceChanged();
}

void FleetSimulator::start()
{
    m_sinceTick.start();
    m_ticks.start();
    report();
}

void FleetSimulator::setSilent(int id, bool silent)
{
    if (silent == isSilent(id))
        return;
    if (silent) {
        m_silent.insert(id);
    } else {
        m_silent.remove(id);
        m_silentFor.remove(id);
    }
    report();
    emit silentChanged(id);
}

FleetSimulator::Reporting FleetSimulator::reportingOf(int id) const
{
    const auto* vehicle = qobject_cast<AssetItem*>(m_fleet.findById(id));
    if (vehicle == nullptr || !vehicle->assetCoordinate().isValid())
        return Offline;
    const auto others = m_reportedByOthers.constFind(id);
    const bool isOthers = others != m_reportedByOthers.constEnd();
    const Seconds silentFor = isPlaced(id) ? m_ownSilentFor
                              : isOthers   ? *others
                                           : m_silentFor.value(id);
    if (silentFor > offlineAfter)
        return Offline;
    const bool isCurrent = isPlaced(id) || isOthers || m_parked.value(id).updated;
    return silentFor > staleAfter || !isCurrent ? Stale : Live;
}

const Trip* FleetSimulator::tripOf(int id) const
{
    const Duty duty = m_duties.value(id);
    if (duty.isEmpty())
        return nullptr;
    const auto next = duty.upperBound(m_time);
    const Trip* last = next != duty.begin() ? std::prev(next).value() : duty.last();
    if (isRunning(*last))
        return last;
    return next != duty.end() ? next.value() : duty.first();
}

bool FleetSimulator::isRunning(const Trip& trip) const
{
    return secondOfDay(m_time - trip.start()) <= duration(trip);
}

void FleetSimulator::report()
{
    for (int row = 0; row < m_fleet.rowCount(); ++row) {
        if (isPlaced(vehicle(row)->id()))
            showOwnPlace(*vehicle(row));
        else if (!m_reportedByOthers.contains(vehicle(row)->id()))
            reportVehicle(*vehicle(row));
    }
}

void FleetSimulator::reportVehicle(AssetItem& vehicle)
{
    const Parked parked = m_parked.value(vehicle.id());
    const bool isSilent = m_silent.contains(vehicle.id());
    vehicle.setUpdated(parked.updated && !isSilent);
    if (isSilent) {
        const Reporting reporting = reportingOf(vehicle.id());
        if (reporting != Live)
            vehicle.setDrivingStatus(reporting == Stale ? tr("no report") : tr("off-line"));
        return;
    }
    const bool isChosen = m_isSimulating && vehicle.id() == m_own;
    const Trip* chosen = isChosen ? m_timetable.trip(m_ownTrip) : nullptr;
    if (chosen != nullptr && m_ownCall >= 0 && m_ownCall < chosen->calls.size())
        return reportOwn(vehicle, *chosen);
    const Trip* trip = tripOf(vehicle.id());
    if (trip == nullptr) {
        vehicle.setDrivingStatus(parked.drivingStatus);
        return;
    }
    const bool isWaiting = !isRunning(*trip);
    const Trip::Moment moment =
        trip->at(isWaiting ? trip->start() : trip->start() + secondOfDay(m_time - trip->start()));
    place(vehicle, *trip, moment.metres);
    vehicle.setDrivingStatus(isWaiting          ? tr("waiting")
                             : moment.isStopped ? tr("at a stop")
                                                : tr("driving"));
}

/// Where it is on its trip, and where it goes.
void FleetSimulator::place(AssetItem& vehicle, const Trip& trip, double metres) const
{
    const Path::Place place = trip.path->at(metres);
    vehicle.setAssetCoordinate(place.coordinate);
    vehicle.setDirection(place.direction);
    vehicle.setRouteStatus(destinationText(trip));
}

/// At the stop that the driver has chosen.
void FleetSimulator::reportOwn(AssetItem& vehicle, const Trip& trip)
{
    if (!trip.path->points().isEmpty())
        place(vehicle, trip, trip.calls.at(m_ownCall).metres);
    showTrip(vehicle, trip);
    vehicle.setDrivingStatus(tr("at a stop"));
}

/// Its route, and where it goes.
void FleetSimulator::showTrip(AssetItem& vehicle, const Trip& trip) const
{
    const Route* route = m_timetable.route(trip.route);
    vehicle.setRouteId(trip.route);
    vehicle.setRouteName(route == nullptr ? QString() : route->title);
    vehicle.setRouteStatus(destinationText(trip));
}

bool FleetSimulator::isPlaced(int id) const
{
    return id == m_own && m_ownPlace && !m_silent.contains(id);
}

void FleetSimulator::reportOwnPlace(const OwnPlace& place)
{
    m_ownPlace = place;
    m_ownSilentFor = 0;
    report();
}

void FleetSimulator::showOwnPlace(AssetItem& vehicle)
{
    const Reporting reporting = reportingOf(vehicle.id());
    vehicle.setUpdated(reporting == Live);
    vehicle.setAssetCoordinate(m_ownPlace->coordinate);
    if (!qIsNaN(m_ownPlace->direction))
        vehicle.setDirection(m_ownPlace->direction);
    if (const Trip* trip = m_timetable.trip(m_ownTrip))
        showTrip(vehicle, *trip);
    vehicle.setDrivingStatus(reporting == Stale     ? tr("no report")
                             : reporting == Offline ? tr("off-line")
                             : m_ownPlace->isMoving ? tr("driving")
                                                    : tr("standing"));
}

void FleetSimulator::setOwn(int vehicle, int trip, int call)
{
    const bool isOther = std::exchange(m_own, vehicle) != vehicle;
    m_ownTrip = trip;
    m_ownCall = call;
    report();
    if (isOther)
        emit ownChanged();
}

} // namespace rivo::fleet
