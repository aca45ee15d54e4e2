#include "GtfsReading_p.h"

#include <algorithm>

namespace rivo::feed::gtfs
{

namespace
{

QString inColor(const QString& digits)
{
    return digits.isEmpty() ? QString() : QLatin1Char('#') + digits;
}

/// routes.network_id, as the number of what was appended to the networks.
QVector<int> readRoutesFile(Reading& reading)
{
    const IdTable& agencies = reading.agencies.table;
    QVector<int> appended;
    reading.tables.define<RouteRow>(
        routesFile, Concern::Fares, reading.routes, [&](const RouteRow& row, TableReport& table) {
            TariffRoute route;
            route.agency =
                row.agency.empty() ? (agencies.size() == 1 ? 0 : -1) : agencies.find(row.agency);
            if (!row.agency.empty() && route.agency < 0 && reading.agencies.isJudged)
                table.lesserFault(row, "agency_id", row.agency, idOf(agencyFile), Concern::Map);
            reading.tariff.routes.append(route);
            appended.append(row.network.empty() ? -1 : reading.networks.table.append(row.network));
            reading.feed.network.routes.append({reading.tables.keep(row.id), row.shortName,
                                                row.longName, inColor(row.color),
                                                inColor(row.textColor)});
        });
    return appended;
}

/// The other form of saying it, which must not contradict.
void readRouteNetworks(Reading& reading)
{
    QVector<int> lines(reading.tariff.routes.size());
    reading.tables.read<RouteNetworkRow>(
        routeNetworksFile, Concern::Fares, [&](const RouteNetworkRow& row, TableReport& table) {
            const int network =
                table.refer(reading.networks, networksFile, row, "network_id", row.network);
            const int route = table.refer(reading.routes, routesFile, row, "route_id", row.route);
            if (network < 0 || route < 0)
                return;
            int& known = reading.tariff.routes[route].network;
            if (lines.at(route) > 0)
                table.fault(row, "route_id", row.route, QStringLiteral("each route once"));
            else if (known >= 0 && known != network)
                table.fault(row, "network_id", row.network,
                            QStringLiteral("%1 as in %2")
                                .arg(quoted(reading.networks.table.text(known)),
                                     QLatin1String(routesFile)));
            lines[route] = row.line;
            known = network;
        });
}

void readAreas(Reading& reading)
{
    reading.tables.define<AreaRow>(
        areasFile, Concern::Fares, reading.areas,
        [&](const AreaRow& row, TableReport&) { reading.tariff.areas.append({row.name}); });
}

/// The stops; `stations` gets the identifier of each one's station.
void readStopsFile(Reading& reading, IdTable& stations)
{
    const bool isOlder = reading.tariff.form == Tariff::Form::Older;
    reading.tables.define<StopRow>(stopsFile, Concern::Fares, reading.stops,
                                   [&](const StopRow& row, TableReport&) {
                                       TariffStop stop;
                                       stop.isPlatform = row.locationType == 0;
                                       stop.line = row.line;
                                       if (isOlder && !row.zone.empty())
                                           stop.zone = reading.areas.table.append(row.zone);
                                       stations.append(row.station);
                                       reading.tariff.stops.append(stop);
                                       NetworkStop place;
                                       place.id = reading.tables.keep(row.id);
                                       place.code = row.code;
                                       place.name = row.name;
                                       if (!qIsNaN(row.latitude) && !qIsNaN(row.longitude)) {
                                           place.latitude = row.latitude;
                                           place.longitude = row.longitude;
                                       }
                                       reading.feed.network.stops.append(place);
                                   });
}

/// Gives every stop its zone; zones are defined by the stops.
void unifyZones(Reading& reading)
{
    const QVector<int> numbers = reading.areas.table.unify();
    reading.areas.isJudged = reading.stops.isJudged;
    reading.tariff.areas.resize(reading.areas.table.size());
    for (TariffStop& stop : reading.tariff.stops) {
        if (stop.zone < 0)
            continue;
        stop.zone = numbers.at(stop.zone);
        stop.areas = {stop.zone};
    }
}

void readStopAreas(Reading& reading)
{
    reading.tables.read<StopAreaRow>(
        stopAreasFile, Concern::Fares, [&](const StopAreaRow& row, TableReport& table) {
            const int area = table.refer(reading.areas, areasFile, row, "area_id", row.area);
            const int stop = table.refer(reading.stops, stopsFile, row, "stop_id", row.stop);
            if (area >= 0 && stop >= 0)
                reading.tariff.stops[stop].areas.append(area);
        });
    for (TariffStop& stop : reading.tariff.stops) {
        std::sort(stop.areas.begin(), stop.areas.end());
        stop.areas.erase(std::unique(stop.areas.begin(), stop.areas.end()), stop.areas.end());
    }
}

/// A stop without areas of its own has those of its station.
class Stations
{
public:
    Stations(Reading& reading, const IdTable& stations)
        : m_reading(reading), m_stops(reading.tariff.stops), m_stations(stations),
          m_table(reading.tables.pathOf(stopsFile), Concern::Fares, reading.tables.report())
    {
    }

    void resolve()
    {
        for (int stop = 0; stop < m_stops.size(); ++stop)
            findStation(stop);
        for (int stop = 0; stop < m_stops.size(); ++stop)
            takeAreas(stop);
    }

private:
    void findStation(int stop)
    {
        const Id id = m_stations.at(stop);
        TariffStop& record = m_stops[stop];
        Row row;
        row.line = record.line;
        record.station = id.empty() ? -1 : m_reading.stops.table.find(id);
        if (!id.empty() && record.station < 0 && m_reading.stops.isJudged)
            m_table.lesserFault(row, "parent_station", id, idOf(stopsFile),
                                record.areas.isEmpty() && hasStopAreas() ? Concern::Fares
                                                                         : Concern::Map);
    }

    bool hasStopAreas() const { return m_reading.tables.isThere(stopAreasFile); }

    /// Follows the stations upwards: a boarding area is at a platform of a station.
    void takeAreas(int stop)
    {
        int above = stop;
        for (int steps = 0; above >= 0 && m_stops.at(above).areas.isEmpty(); ++steps) {
            above = m_stops.at(above).station;
            if (steps > maxDepth) {
                Row row;
                row.line = m_stops.at(stop).line;
                return m_table.fault(row, "parent_station", m_stations.at(stop),
                                     QStringLiteral("a station that is not within itself"));
            }
        }
        if (above >= 0)
            m_stops[stop].areas = m_stops.at(above).areas;
    }

    static constexpr int maxDepth = 4;

    Reading& m_reading;
    QVector<TariffStop>& m_stops;
    const IdTable& m_stations;
    TableReport m_table;
};

} // namespace

void readOperator(Reading& reading)
{
    reading.tables.read<FeedInfoRow>(feedInfoFile, Concern::Map,
                                     [&](const FeedInfoRow& row, TableReport&) {
                                         if (reading.tariff.publisher.isEmpty())
                                             reading.tariff.publisher = row.publisher;
                                     });
    reading.agencies.isJudged = reading.tables.read<AgencyRow>(
        agencyFile, Concern::Fares, [&](const AgencyRow& row, TableReport&) {
            // A feed with one agency need not give it an identifier.
            reading.tables.add(reading.agencies, row.line, row.id);
            reading.tariff.agencies.append({row.name});
        });
    TableReport table(reading.tables.pathOf(agencyFile), Concern::Fares, reading.tables.report());
    reading.tables.seal(reading.agencies, "agency_id", table);
    reading.feed.name = reading.tariff.publisher;
    if (reading.feed.name.isEmpty() && !reading.tariff.agencies.isEmpty())
        reading.feed.name = reading.tariff.agencies.first().name;
}

void readRoutes(Reading& reading)
{
    reading.tables.define<NetworkRow>(networksFile, Concern::Fares, reading.networks,
                                      [](const NetworkRow&, TableReport&) {});
    const QVector<int> appended = readRoutesFile(reading);
    const QVector<int> numbers = reading.networks.table.unify();
    for (int route = 0; route < appended.size(); ++route) {
        if (appended.at(route) >= 0)
            reading.tariff.routes[route].network = numbers.at(appended.at(route));
    }
    readRouteNetworks(reading);
}

void readStops(Reading& reading)
{
    IdTable stations;
    if (reading.tariff.form == Tariff::Form::Older) {
        readStopsFile(reading, stations);
        unifyZones(reading);
    } else {
        readAreas(reading);
        readStopsFile(reading, stations);
        readStopAreas(reading);
        Stations(reading, stations).resolve();
    }
}

} // namespace rivo::feed::gtfs
