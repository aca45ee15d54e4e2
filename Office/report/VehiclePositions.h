#pragma once

#include <Database.h>
#include <FleetMessages.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

namespace rivo::backoffice
{

/// Seconds after which a place is no longer published. A vehicle that stands reports it, too.
constexpr int longestSilence = 600;

/// Where a vehicle was last.
struct VehiclePlace
{
    QString name; ///< "lakeside/4711"
    office::PositionReport position;
};

/// A message of GTFS-Realtime with these places. The id of an entity is the vehicle's name with its
/// operator, its label the name alone.
QByteArray vehiclePositions(const QVector<VehiclePlace>& places, const QDateTime& now);

/// Where the vehicles of a database are, for public apps: all that reported a place within
/// longestSilence, by name.
class PublicPositions
{
public:
    static constexpr int mostVehicles = 200'000; ///< in a message

    /// Nothing if the database fails. Vehicles that are left out, because there are more than
    /// mostVehicles, are reported on standard error, once until there are fewer.
    std::optional<QByteArray> message(Database& database, const QDateTime& now);

private:
    bool m_isFull = false; ///< the last message left vehicles out
};

} // namespace rivo::backoffice
