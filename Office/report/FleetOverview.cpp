#include "FleetOverview.h"

#include "PositionColumns_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace rivo::backoffice
{

namespace
{

/// From the sixth column on.
std::optional<office::PositionReport> positionOf(const QSqlQuery& found)
{
    constexpr int first = 6;
    if (found.value(first).isNull())
        return std::nullopt;
    return positionIn(found, first);
}

QVector<office::DeviceReport> devicesOf(const QVariant& value)
{
    QVector<office::DeviceReport> devices;
    const QJsonArray listed = QJsonDocument::fromJson(value.toString().toUtf8()).array();
    for (const auto& each : listed) { // of a type that becomes a QJsonValue
        const QJsonObject device = each.toObject();
        devices.append({device[QLatin1String("name")].toString(),
                        device[QLatin1String("level")].toInt(),
                        device[QLatin1String("text")].toString()});
    }
    return devices;
}

bool addVehicles(Database& database, FleetOverview& overview)
{
    QSqlQuery* found = database.run(QStringLiteral(R"(
            SELECT vehicle.operator || '/' || vehicle.name, COALESCE(sent.records, 0),
                CAST(extract(epoch FROM sent.last_at) * 1000 AS bigint),
                COALESCE(wrong.faults, 0), COUNT(*) OVER (), COALESCE(state.alive, false),
                %1, COALESCE(state.devices, '[]')
            FROM vehicle
            LEFT JOIN vehicle_state AS state ON state.vehicle = vehicle.id
            LEFT JOIN (SELECT vehicle, CAST(SUM(last_number - base) AS bigint) AS records,
                    MAX(last_at) AS last_at FROM journal GROUP BY vehicle) AS sent
                ON sent.vehicle = vehicle.id
            LEFT JOIN (SELECT vehicle, COUNT(*) AS faults FROM fault WHERE closed_at IS NULL
                    GROUP BY vehicle) AS wrong
                ON wrong.vehicle = vehicle.id
            ORDER BY vehicle.operator, vehicle.name LIMIT ?)")
                                        .arg(QLatin1String(positionColumns)),
                                    {FleetOverview::mostVehicles});
    if (found == nullptr)
        return false;
    while (found->next()) {
        overview.vehicles.append({found->value(0).toString(), found->value(1).toLongLong(),
                                  timeOf(found->value(2)), found->value(3).toLongLong(),
                                  found->value(5).toBool(), positionOf(*found),
                                  devicesOf(found->value(12))});
        overview.vehicleCount = found->value(4).toLongLong();
    }
    return true;
}

bool addFaults(Database& database, FleetOverview& overview)
{
    QSqlQuery* found =
        database.run(QStringLiteral("SELECT topic, kind, number, reason, times,"
                                    " CAST(extract(epoch FROM first_at) * 1000 AS bigint),"
                                    " CAST(extract(epoch FROM last_at) * 1000 AS bigint),"
                                    " COUNT(*) OVER () FROM fault WHERE closed_at IS NULL"
                                    " ORDER BY last_at DESC, id DESC LIMIT ?"),
                     {FleetOverview::mostFaults});
    if (found == nullptr)
        return false;
    while (found->next()) {
        overview.faults.append({found->value(0).toString(),
                                found->value(1).toString(),
                                found->value(2).toLongLong(),
                                found->value(3).toString(),
                                found->value(4).toLongLong(),
                                timeOf(found->value(5)),
                                timeOf(found->value(6)),
                                {}});
        overview.faultCount = found->value(7).toLongLong();
    }
    return true;
}

} // namespace

std::optional<FleetOverview> fleetOverview(Database& database)
{
    FleetOverview overview;
    if (!addVehicles(database, overview) || !addFaults(database, overview))
        return std::nullopt;
    return overview;
}

} // namespace rivo::backoffice
