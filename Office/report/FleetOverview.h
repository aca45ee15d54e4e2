#pragma once

#include <FleetMessages.h>
#include <OfficeStore.h>

#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

namespace rivo::backoffice
{

/// A vehicle as the office knows it.
struct VehicleOverview
{
    QString name;                                   ///< "lakeside/4711"
    qint64 records = 0;                             ///< of all its journals
    QDateTime lastAt;                               ///< of its last record; invalid without one
    qint64 faults = 0;                              ///< that are not closed
    bool isAlive = false;                           ///< connected to the broker
    std::optional<office::PositionReport> position; ///< the last one
    QVector<office::DeviceReport> devices;          ///< the last states
};

struct FleetOverview
{
    static constexpr int mostVehicles = 5000; ///< that are listed, by name
    static constexpr int mostFaults = 100;    ///< that are listed, the latest

    QVector<VehicleOverview> vehicles;
    qint64 vehicleCount = 0;
    QVector<KeptFault> faults; ///< that are not closed
    qint64 faultCount = 0;
};

/// Nothing if the database fails.
std::optional<FleetOverview> fleetOverview(Database& database);

} // namespace rivo::backoffice
