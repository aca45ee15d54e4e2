#include "FleetSimulator.h"

#include <AssetItem.h>
#include <AssetsModel.h>

#include <QTime>

#include <algorithm>
#include <cmath>

namespace rivo::fleet
{

namespace
{

constexpr Seconds day = 86400;
constexpr int ticksPerSecond = 4;
constexpr double highestPace = 600.0;

} // namespace

FleetSimulator::FleetSimulator(const Timetable& timetable, AssetsModel& fleet, QObject* parent)
    : QObject(parent), m_timetable(timetable), m_fleet(fleet)
{
    if (m_fleet.rowCount() == 0)
        makeVehicles();
    distributeTrips();
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

/// As many vehicles per route as it has trips at the same time.
void FleetSimulator::makeVehicles()
{
    int id = 0;
    for (const Route& route : m_timetable.routes()) {
        QVector<Seconds> freeAt;
        for (const Trip& trip : m_timetable.trips()) {
            if (trip.route != route.number)
                continue;
            const auto free = std::find_if(freeAt.begin(), freeAt.end(),
                                           [&trip](Seconds time) { return time <= trip.start(); });
            if (free != freeAt.end()) {
                *free = trip.end();
                continue;
            }
            if (id == mostNewVehicles)
                continue;
            freeAt.append(trip.end());
            ++id;
            m_fleet.appendRow(new AssetItem(id, tr("Bus %1").arg(id), QString::number(id),
                                            QString(), QString(), route.number, route.title,
                                            QGeoCoordinate(), false, true, 0.0, &m_fleet));
        }
    }
}

void FleetSimulator::distributeTrips()
{
    for (const Trip& trip : m_timetable.trips()) {
        for (int row = 0; row < m_fleet.rowCount(); ++row) {
            const AssetItem* candidate = vehicle(row);
            if (candidate->routeId() != trip.route)
                continue;
            QVector<const Trip*>& duty = m_duties[candidate->id()];
            if (!duty.isEmpty() && duty.last()->end() > trip.start())
                continue;
            duty.append(&trip);
            break;
        }
    }
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
    const Seconds wanted = (time % day + day) % day;
    const Seconds passed = (wanted - m_time + day) % day;
    m_time = wanted;
    for (int id : qAsConst(m_silent))
        m_silentFor[id] = std::min(m_silentFor.value(id) + passed, day);
    report();
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
    if (silent) {
        m_silent.insert(id);
    } else {
        m_silent.remove(id);
        m_silentFor.remove(id);
    }
    report();
}

FleetSimulator::Reporting FleetSimulator::reportingOf(int id) const
{
    const auto* vehicle = qobject_cast<AssetItem*>(m_fleet.findById(id));
    if (vehicle == nullptr || !vehicle->assetCoordinate().isValid())
        return Offline;
    const Seconds silentFor = m_silentFor.value(id);
    return silentFor > offlineAfter ? Offline : silentFor > staleAfter ? Stale : Live;
}

const Trip* FleetSimulator::tripOf(int id) const
{
    const QVector<const Trip*> duty = m_duties.value(id);
    const auto now = std::find_if(duty.cbegin(), duty.cend(),
                                  [this](const Trip* trip) { return m_time <= trip->end(); });
    return now != duty.cend() ? *now : duty.isEmpty() ? nullptr : duty.last();
}

void FleetSimulator::report()
{
    for (int row = 0; row < m_fleet.rowCount(); ++row)
        reportVehicle(*vehicle(row));
}

void FleetSimulator::reportVehicle(AssetItem& vehicle)
{
    vehicle.setUpdated(!m_silent.contains(vehicle.id()));
    switch (reportingOf(vehicle.id())) {
    case Live:
        break;
    case Stale:
        vehicle.setDrivingStatus(tr("no report"));
        return;
    case Offline:
        if (m_silent.contains(vehicle.id())) {
            vehicle.setDrivingStatus(tr("off-line"));
            return;
        }
    }
    const Trip* trip = tripOf(vehicle.id());
    if (!vehicle.updated() || trip == nullptr)
        return;
    const Trip::Moment moment = trip->at(m_time);
    const Path::Place place = trip->path->at(moment.metres);
    const bool isWaiting = m_time < trip->start() || m_time > trip->end();
    vehicle.setAssetCoordinate(place.coordinate);
    vehicle.setDirection(place.direction);
    vehicle.setDrivingStatus(isWaiting          ? tr("waiting")
                             : moment.isStopped ? tr("at a stop")
                                                : tr("driving"));
    vehicle.setRouteStatus(
        tr("to %1").arg(trip->headsign.isEmpty() ? trip->calls.last().name : trip->headsign));
}

} // namespace rivo::fleet
