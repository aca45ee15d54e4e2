#include "LiveFleet.h"

#include <AssetItem.h>
#include <AssetsModel.h>
#include <Feed.h>
#include <RowSync.h>

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace rivo::live
{

namespace
{

constexpr int firstOwnId = 1000001;
constexpr double metresWithDirection = 10.0;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(rivo::live::Texts)
};

QVector<AssetItem*> itemsOf(const AssetsModel& fleet)
{
    QVector<AssetItem*> items;
    items.reserve(fleet.rowCount());
    for (int row = 0; row < fleet.rowCount(); ++row)
        items.append(models::rowAs<AssetItem>(fleet, row));
    return items;
}

} // namespace

LiveFleet::LiveFleet(const feed::Network& network, const fleet::Timetable& timetable,
                     AssetsModel& fleet)
    : m_fleet(fleet), m_nextId(firstOwnId)
{
    describe(network, timetable);
    readRows();
    for (const Row& row : qAsConst(m_rows)) {
        m_idsOfNumbers.insert(QString::number(row.id), row.id);
        if (!row.number.isEmpty())
            m_idsOfNumbers.insert(row.number, row.id);
        if (!row.plate.isEmpty())
            m_idsOfPlates.insert(row.plate, row.id);
    }
}

/// A timetable has numbers for the ids of the network.
void LiveFleet::describe(const feed::Network& network, const fleet::Timetable& timetable)
{
    QMap<QString, QString> routesOfTrips;
    for (const feed::NetworkTrip& trip : network.trips)
        routesOfTrips.insert(trip.id, trip.routeId);
    for (const fleet::Trip& trip : timetable.trips()) {
        const fleet::Route* route = timetable.route(trip.route);
        const Journey journey{trip.route, route != nullptr ? route->title : QString(),
                              trip.headsign.isEmpty() ? trip.calls.last().name : trip.headsign};
        m_trips.insert(trip.id, journey);
        m_routes.insert(routesOfTrips.value(trip.id), {journey.route, journey.routeName, {}});
    }
}

LiveFleet::Row LiveFleet::rowOf(const AssetItem& item)
{
    return {item.id(),
            item.registrationNumber(),
            item.internalNumber(),
            item.drivingStatus(),
            item.routeStatus(),
            item.routeId(),
            item.routeName(),
            item.assetCoordinate(),
            item.updated(),
            item.direction()};
}

/// What others have changed since counts.
void LiveFleet::readRows()
{
    m_rows.clear();
    m_placeOf.clear();
    const auto items = itemsOf(m_fleet);
    for (const AssetItem* item : items) {
        m_placeOf.insert(item->id(), m_rows.size());
        m_rows.append(rowOf(*item));
    }
}

int LiveFleet::idOf(const LiveVehicle& vehicle) const
{
    int id = m_ids.value(vehicle.id, -1);
    if (id < 0)
        id = m_idsOfNumbers.value(vehicle.id, -1);
    if (id < 0)
        id = m_idsOfNumbers.value(vehicle.label, -1);
    return id >= 0 ? id : m_idsOfPlates.value(vehicle.plate, -1);
}

/// A positive number stays what it is, if no other row has it.
int LiveFleet::newId(const LiveVehicle& vehicle)
{
    const int number = vehicle.id.toInt();
    if (number > 0 && QString::number(number) == vehicle.id && !m_placeOf.contains(number))
        return number;
    while (m_placeOf.contains(m_nextId))
        ++m_nextId;
    return m_nextId++;
}

LiveFleet::Row& LiveFleet::rowFor(const LiveVehicle& vehicle)
{
    int id = idOf(vehicle);
    if (id < 0) {
        id = newId(vehicle);
        m_placeOf.insert(id, m_rows.size());
        Row row;
        row.id = id;
        m_rows.append(row);
        m_reports[id].isOwn = true;
    }
    m_ids.insert(vehicle.id, id);
    return m_rows[m_placeOf.value(id)];
}

void LiveFleet::take(const LiveVehicle& vehicle, qint64 messageTime, qint64 now)
{
    Row& row = rowFor(vehicle);
    Report& report = m_reports[row.id];
    const qint64 reported = vehicle.time > 0 ? vehicle.time : messageTime > 0 ? messageTime : now;
    report.time = reported > now + mostAhead ? now : std::min(reported, now);
    report.isStopped = vehicle.isStopped;
    const bool hasMoved = row.coordinate.isValid() &&
                          row.coordinate.distanceTo(vehicle.coordinate) > metresWithDirection;
    if (!qIsNaN(vehicle.direction))
        row.direction = vehicle.direction;
    else if (hasMoved)
        row.direction = row.coordinate.azimuthTo(vehicle.coordinate);
    row.coordinate = vehicle.coordinate;
    if (report.isOwn) {
        row.number = vehicle.label.isEmpty() ? vehicle.id : vehicle.label;
        row.plate = vehicle.plate.isEmpty() ? row.number : vehicle.plate;
    }
    const auto trip = m_trips.constFind(vehicle.trip);
    const Journey journey =
        trip != m_trips.constEnd() ? *trip : m_routes.value(vehicle.route, Journey());
    row.route = journey.route;
    row.routeName = journey.route >= 0 ? journey.routeName : vehicle.route;
    row.routeStatus =
        journey.headsign.isEmpty() ? QString() : Texts::tr("to %1").arg(journey.headsign);
}

void LiveFleet::apply(const LiveMessage& message, qint64 now)
{
    readRows();
    for (const LiveVehicle& vehicle : message.vehicles)
        take(vehicle, message.time, now);
    forget(now);
    judge(now);
    show();
}

void LiveFleet::age(qint64 now)
{
    readRows();
    forget(now);
    judge(now);
    show();
}

/// Of more rows than any message has, those of the last messages stay.
void LiveFleet::forget(qint64 now)
{
    const bool areTooMany = m_rows.size() > 2 * mostVehicles;
    const auto isForgotten = [&](const Row& row) {
        const auto report = m_reports.constFind(row.id);
        return report != m_reports.constEnd() && report->isOwn &&
               now - report->time > (areTooMany ? 0 : forgottenAfter);
    };
    const auto gone = std::stable_partition(m_rows.begin(), m_rows.end(),
                                            [&](const Row& row) { return !isForgotten(row); });
    if (gone == m_rows.end())
        return;
    QSet<int> ids;
    for (auto row = gone; row != m_rows.end(); ++row) {
        ids.insert(row->id);
        m_reports.remove(row->id);
        m_placeOf.remove(row->id);
    }
    for (auto id = m_ids.begin(); id != m_ids.end();)
        id = ids.contains(*id) ? m_ids.erase(id) : std::next(id);
    m_rows.erase(gone, m_rows.end());
}

void LiveFleet::judge(qint64 now)
{
    const QString texts[] = {Texts::tr("driving"), Texts::tr("at a stop"), Texts::tr("no report"),
                             Texts::tr("off-line")};
    for (Row& row : m_rows) {
        const auto report = m_reports.constFind(row.id);
        if (report == m_reports.constEnd())
            continue;
        const qint64 silent = now - report->time;
        row.isUpdated = silent <= staleAfter;
        row.drivingStatus = silent > offlineAfter ? texts[3]
                            : silent > staleAfter ? texts[2]
                            : report->isStopped   ? texts[1]
                                                  : texts[0];
    }
}

QHash<int, fleet::Seconds> LiveFleet::silences(qint64 now) const
{
    QHash<int, fleet::Seconds> silences;
    for (auto report = m_reports.cbegin(); report != m_reports.cend(); ++report)
        silences.insert(report.key(), static_cast<fleet::Seconds>(qBound(
                                          qint64(0), now - report->time, qint64(forgottenAfter))));
    return silences;
}

/// A change that a row announces makes the model search for the row, so the model announces all of
/// them instead.
void LiveFleet::show()
{
    using Sync = models::RowSync<AssetItem, Row>;
    static const Sync sync = [] {
        Sync made(&Row::id, &AssetItem::id, [](const Row& row, QObject* parent) {
            return new AssetItem(row.id, row.plate, row.number, row.drivingStatus, row.routeStatus,
                                 row.route, row.routeName, row.coordinate, row.isUpdated, true,
                                 row.direction, parent);
        });
        made.field(&Row::plate, &AssetItem::registrationNumber, &AssetItem::setRegistrationNumber)
            .field(&Row::number, &AssetItem::internalNumber, &AssetItem::setInternalNumber)
            .field(&Row::drivingStatus, &AssetItem::drivingStatus, &AssetItem::setDrivingStatus)
            .field(&Row::routeStatus, &AssetItem::routeStatus, &AssetItem::setRouteStatus)
            .field(&Row::route, &AssetItem::routeId, &AssetItem::setRouteId)
            .field(&Row::routeName, &AssetItem::routeName, &AssetItem::setRouteName)
            .field(&Row::coordinate, &AssetItem::assetCoordinate, &AssetItem::setAssetCoordinate)
            .field(&Row::isUpdated, &AssetItem::updated, &AssetItem::setUpdated)
            .field(&Row::direction, &AssetItem::direction, &AssetItem::setDirection);
        return made;
    }();
    const QVector<AssetItem*> items = itemsOf(m_fleet);
    for (AssetItem* item : items)
        item->blockSignals(true);
    const auto changes = sync.apply(m_fleet, m_rows);
    for (AssetItem* item : items)
        item->blockSignals(false);
    if (changes.set > 0)
        emit m_fleet.dataChanged(m_fleet.index(0, 0), m_fleet.index(m_fleet.rowCount() - 1, 0));
}

} // namespace rivo::live
