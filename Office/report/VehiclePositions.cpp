#include "VehiclePositions.h"

#include "PositionColumns_p.h"

#include <ProgramStart.h>
#include <vehicle_positions.pb.h>

namespace rivo::backoffice
{

namespace
{

void describe(live::wire::VehiclePosition& wire, const VehiclePlace& vehicle)
{
    const office::PositionReport& place = vehicle.position;
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

/// One more than a message has, so that it is seen that there are more.
std::optional<QVector<VehiclePlace>> placesOf(Database& database, const QDateTime& now)
{
    QSqlQuery* found = database.run(
        QStringLiteral("SELECT vehicle.operator || '/' || vehicle.name, ") +
            QLatin1String(positionColumns) +
            QStringLiteral(" FROM vehicle_state AS state JOIN vehicle ON vehicle.id = state.vehicle"
                           " WHERE state.position_at >= to_timestamp(?)"
                           " ORDER BY vehicle.operator, vehicle.name LIMIT ?"),
        {now.toSecsSinceEpoch() - longestSilence, PublicPositions::mostVehicles + 1});
    if (found == nullptr)
        return std::nullopt;
    QVector<VehiclePlace> places;
    while (found->next())
        places.append({found->value(0).toString(), positionIn(*found, 1)});
    return places;
}

} // namespace

QByteArray vehiclePositions(const QVector<VehiclePlace>& places, const QDateTime& now)
{
    live::wire::FeedMessage message;
    message.mutable_header()->set_gtfs_realtime_version("2.0");
    message.mutable_header()->set_incrementality(live::wire::FeedHeader::FULL_DATASET);
    message.mutable_header()->set_timestamp(quint64(now.toSecsSinceEpoch()));
    for (const VehiclePlace& vehicle : places) {
        live::wire::FeedEntity& entity = *message.add_entity();
        entity.set_id(vehicle.name.toStdString());
        describe(*entity.mutable_vehicle(), vehicle);
    }
    return QByteArray::fromStdString(message.SerializeAsString());
}

std::optional<QByteArray> PublicPositions::message(Database& database, const QDateTime& now)
{
    auto places = placesOf(database, now);
    if (!places)
        return std::nullopt;
    const bool isFull = places->size() > mostVehicles;
    if (isFull)
        places->removeLast();
    if (isFull && !m_isFull)
        reportFailure(QStringLiteral("more than %1 vehicles have a place: the positions have the"
                                     " first by name")
                          .arg(mostVehicles));
    m_isFull = isFull;
    return vehiclePositions(*places, now);
}

} // namespace rivo::backoffice
