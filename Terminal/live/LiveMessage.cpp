#include "LiveMessage.h"

#include "vehicle_positions.pb.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <set>

namespace rivo::live
{

namespace
{

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(rivo::live::Texts)
};

QString textOf(const std::string& text)
{
    const auto size = static_cast<int>(std::min<size_t>(text.size(), 4 * longestText));
    return QString::fromUtf8(text.data(), size).left(longestText);
}

qint64 timeOf(quint64 seconds)
{
    constexpr quint64 most = std::numeric_limits<qint64>::max() / 1000; // milliseconds fit, too
    return seconds <= most ? static_cast<qint64>(seconds) : 0;
}

std::optional<LiveVehicle> vehicleOf(const wire::FeedEntity& entity)
{
    const wire::VehiclePosition& from = entity.vehicle();
    if (entity.is_deleted() || !from.position().has_latitude() || !from.position().has_longitude())
        return std::nullopt;
    LiveVehicle vehicle;
    vehicle.id = textOf(from.vehicle().id().empty() ? entity.id() : from.vehicle().id());
    vehicle.coordinate = QGeoCoordinate(static_cast<double>(from.position().latitude()),
                                        static_cast<double>(from.position().longitude()));
    if (vehicle.id.isEmpty() || !vehicle.coordinate.isValid())
        return std::nullopt;
    vehicle.label = textOf(from.vehicle().label());
    vehicle.plate = textOf(from.vehicle().license_plate());
    vehicle.trip = textOf(from.trip().trip_id());
    vehicle.route = textOf(from.trip().route_id());
    const auto bearing = static_cast<double>(from.position().bearing());
    if (from.position().has_bearing() && bearing >= 0.0 && bearing <= 360.0)
        vehicle.direction = bearing;
    vehicle.time = timeOf(from.timestamp());
    vehicle.isStopped = from.current_status() == wire::VehiclePosition::STOPPED_AT;
    return vehicle;
}

} // namespace

LiveResult readMessage(const QByteArray& bytes)
{
    wire::FeedMessage read;
    if (!read.ParseFromArray(bytes.constData(), bytes.size()) || !read.has_header())
        return {std::nullopt, Texts::tr("no message of GTFS-Realtime")};
    if (read.header().incrementality() == wire::FeedHeader::DIFFERENTIAL)
        return {std::nullopt, Texts::tr("a message with changes only")};
    LiveMessage message;
    message.time = timeOf(read.header().timestamp());
    std::set<QString> known;
    for (const wire::FeedEntity& entity : read.entity()) {
        if (!entity.has_vehicle())
            continue;
        const std::optional<LiveVehicle> vehicle = vehicleOf(entity);
        const bool isNew = vehicle && known.count(vehicle->id) == 0;
        if (!isNew || message.vehicles.size() >= mostVehicles) {
            ++message.ignored;
            continue;
        }
        known.insert(vehicle->id);
        message.vehicles.append(*vehicle);
    }
    return {message, QString()};
}

} // namespace rivo::live
