#include "GtfsNetwork_p.h"

#include <QPair>
#include <QSet>

namespace rivo::feed::gtfs
{

void NetworkReader::read(Ids& areas)
{
    readStops();
    readStopAreas(areas);
    readRoutes();
    readShapes();
    readCalendar();
    readTrips();
    readStopTimes();
}

void NetworkReader::setStopAreas(const std::function<int(const QString& area)>& numberOf)
{
    for (NetworkStop& stop : m_network.stops) {
        const QStringList areas = m_stopAreas.value(stop.id);
        for (const QString& area : areas)
            stop.areas.append(numberOf(area));
    }
}

void NetworkReader::readStops()
{
    const bool isWhole =
        m_folder.readIfThere<StopRow>(stopsFile, [this](const StopRow& row, TableReport& table) {
            if (table.define(m_stopIds, row, "stop_id", row.id))
                m_network.stops.append(row);
        });
    m_stopIds.setDefined(isWhole);
}

void NetworkReader::readStopAreas(Ids& areas)
{
    QSet<QPair<QString, QString>> known;
    m_folder.readIfThere<StopAreaRow>(
        stopAreasFile, [&](const StopAreaRow& row, TableReport& table) {
            table.referToArea(areas, row, "area_id", row.area);
            table.checkReference(m_stopIds, stopsFile, row, "stop_id", row.stop);
            if (!known.contains({row.stop, row.area}))
                m_stopAreas[row.stop].append(row.area);
            known.insert({row.stop, row.area});
        });
}

void NetworkReader::readRoutes()
{
    const auto toColor = [](QString& digits) {
        if (!digits.isEmpty())
            digits.prepend(QLatin1Char('#'));
    };
    const bool isWhole =
        m_folder.readIfThere<RouteRow>(routesFile, [&](RouteRow& row, TableReport& table) {
            toColor(row.color);
            toColor(row.textColor);
            if (table.define(m_routeIds, row, "route_id", row.id))
                m_network.routes.append(row);
        });
    m_routeIds.setDefined(isWhole);
}

void NetworkReader::readShapes()
{
    QVector<ShapeRow> rows;
    const bool isWhole = m_folder.readIfThere<ShapeRow>(shapesFile, [&](ShapeRow& row, auto&) {
        row.group = m_shapeIds.add(row.id);
        if (!row.id.isEmpty() && row.sequence >= 0)
            rows.append(row);
    });
    m_shapeIds.setDefined(isWhole);
    m_folder.putInSequence(rows, shapesFile, "shape_pt_sequence");
    QVector<NetworkShape>& shapes = m_network.shapes;
    for (const ShapeRow& row : qAsConst(rows)) {
        if (shapes.isEmpty() || shapes.last().id != row.id)
            shapes.append({row.id, {}});
        shapes.last().points.append(row);
    }
}

void NetworkReader::readCalendar()
{
    Ids services;
    m_folder.readIfThere<CalendarRow>(
        calendarFile, [&](const CalendarRow& row, TableReport& table) {
            if (!table.define(services, row, "service_id", row.service))
                return;
            int days = 0;
            int bit = 0;
            for (const int runs : {row.monday, row.tuesday, row.wednesday, row.thursday, row.friday,
                                   row.saturday, row.sunday})
                days |= runs << bit++;
            m_network.services.append({row.service, days});
        });
}

void NetworkReader::readTrips()
{
    const bool isWhole =
        m_folder.readIfThere<TripRow>(tripsFile, [this](const TripRow& row, TableReport& table) {
            table.checkReference(m_routeIds, routesFile, row, "route_id", row.routeId);
            table.checkReference(m_shapeIds, shapesFile, row, "shape_id", row.shapeId);
            if (table.define(m_tripIds, row, "trip_id", row.id))
                m_network.trips.append(row);
        });
    m_tripIds.setDefined(isWhole);
}

void NetworkReader::readStopTimes()
{
    QVector<StopTimeRow> rows;
    Ids trips = m_tripIds;
    m_folder.readIfThere<StopTimeRow>(stopTimesFile, [&](StopTimeRow& row, TableReport& table) {
        table.checkReference(m_tripIds, tripsFile, row, "trip_id", row.tripId);
        table.checkReference(m_stopIds, stopsFile, row, "stop_id", row.stopId);
        row.arrival = table.readTime(row, "arrival_time", row.arrivalText);
        row.departure = table.readTime(row, "departure_time", row.departureText);
        row.group = trips.add(row.tripId);
        if (!row.tripId.isEmpty() && row.sequence >= 0)
            rows.append(row);
    });
    m_folder.putInSequence(rows, stopTimesFile, "stop_sequence");
    m_network.stopTimes.reserve(rows.size());
    for (const StopTimeRow& row : qAsConst(rows))
        m_network.stopTimes.append(row);
}

} // namespace rivo::feed::gtfs
