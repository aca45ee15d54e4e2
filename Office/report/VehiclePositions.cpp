#include "VehiclePositions.h"

#include <vehicle_positions.pb.h>

namespace rivo::backoffice
{

namespace
{

void describe(live::wire::VehiclePosition& wire, const VehicleOverview& vehicle)
{
    const office::PositionReport& place = *vehicle.position;
    wire.set_timestamp(quint64(place.at.toSecsSinceEpoch()));
    wire.mutable_position()->set_latitude(float(place.latitude));
    wire.mutable_position()->set_longitude(float(place.longitude));
    if (!qIsNaN(place.direction))
        wire.mutable_position()->set_bearing(float(place.direction));
    if (!qIsNaN(place.speed))
        wire.mutable_position()->set_speed(float(place.speed));
    if (!place.trip.isEmpty())
        wire.mutable_trip()->set_trip_id(place.trip.toStdString());
    wire.mutable_vehicle()->set_id(vehicle.name.toStdString());
    wire.mutable_vehicle()->set_label(vehicle.name.section(QLatin1Char('/'), 1).toStdString());
}

} // namespace

QByteArray vehiclePositions(const QVector<VehicleOverview>& vehicles, const QDateTime& now)
{
    live::wire::FeedMessage message;
    message.mutable_header()->set_gtfs_realtime_version("2.0");
    message.mutable_header()->set_incrementality(live::wire::FeedHeader::FULL_DATASET);
    message.mutable_header()->set_timestamp(quint64(now.toSecsSinceEpoch()));
    for (const VehicleOverview& vehicle : vehicles) {
        if (!vehicle.position || vehicle.position->at.secsTo(now) > longestSilence)
            continue;
        live::wire::FeedEntity& entity = *message.add_entity();
        entity.set_id(vehicle.name.toStdString());
        describe(*entity.mutable_vehicle(), vehicle);
    }
    return QByteArray::fromStdString(message.SerializeAsString());
}

} // namespace rivo::backoffice
