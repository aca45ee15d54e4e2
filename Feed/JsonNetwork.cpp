#include "JsonNetwork_p.h"

#include "FeedProblem.h"
#include "JsonFields_p.h"

#include <QJsonArray>

#include <set>

namespace rivo::feed
{

namespace
{

using namespace json;

/// The identifiers of one list.
template <class Id>
struct Ids
{
    const char* list;
    std::set<Id> known;
    bool isJudged; ///< the list is there and could be read
};

bool isGiven(int id) { return id > 0; }
bool isGiven(const QString& id) { return !id.isEmpty(); }

QString found(int id) { return QString::number(id); }
QString found(const QString& id) { return quoted(id); }

QString pointerTo(const char* list, int index, const char* key)
{
    return QStringLiteral("/network/%1/%2/%3")
        .arg(QLatin1String(list))
        .arg(index)
        .arg(QLatin1String(key));
}

class Checker
{
public:
    Checker(const QJsonObject& object, const QString& file, FeedReport& report)
        : m_object(object), m_file(file), m_report(report)
    {
    }

    void check(const NetworkEntry& network, const QVector<FeedProduct>& products)
    {
        const auto zones = define("zones", network.zones, &NetworkZone::number);
        const auto stops = define("stops", network.stops, &StopEntry::id);
        const auto routes = define("routes", network.routes, &RouteEntry::id);
        const auto shapes = define("shapes", network.shapes, &NetworkShape::id);
        define("trips", network.trips, &TripEntry::id);

        for (int i = 0; i < network.stops.size(); ++i) {
            const QVector<int>& ofStop = network.stops.at(i).zones;
            for (int j = 0; j < ofStop.size(); ++j)
                refer(zones, ofStop.at(j),
                      [i, j] { return pointerTo("stops", i, "zones/") + QString::number(j); });
        }
        for (int i = 0; i < network.trips.size(); ++i) {
            const TripEntry& trip = network.trips.at(i);
            refer(routes, trip.routeId, [i] { return pointerTo("trips", i, "routeId"); });
            refer(shapes, trip.shapeId, [i] { return pointerTo("trips", i, "shapeId"); });
            for (int j = 0; j < trip.stopTimes.size(); ++j)
                refer(stops, trip.stopTimes.at(j).stopId, [i, j] {
                    return pointerTo("trips", i, "stopTimes/") + QStringLiteral("%1/stopId").arg(j);
                });
        }
        for (int i = 0; i < products.size(); ++i) {
            referAll(zones, products.at(i).validZones, i, "validZones");
            referAll(routes, products.at(i).validRoutes, i, "validRoutes");
        }
    }

private:
    template <class Entry, class Id>
    Ids<Id> define(const char* list, const QVector<Entry>& entries, Id Entry::*id)
    {
        const QJsonValue value = m_object.value(QLatin1String(list));
        const auto given = value.toArray().size();
        Ids<Id> ids{list, {}, value.isArray() && given == entries.size()};
        for (int i = 0; i < entries.size(); ++i) {
            const Id& own = entries.at(i).*id;
            if (isGiven(own) && !ids.known.insert(own).second)
                problem(pointerTo(list, i, "id"), found(own), QStringLiteral("each id once"));
        }
        return ids;
    }

    /// `pointer()` leads to the reference.
    template <class Id, class Pointer>
    void refer(const Ids<Id>& ids, const Id& id, const Pointer& pointer)
    {
        if (ids.isJudged && isGiven(id) && ids.known.count(id) == 0)
            problem(pointer(), found(id),
                    QLatin1String("an id of /network/") + QLatin1String(ids.list));
    }

    void referAll(const Ids<int>& ids, const QVector<int>& numbers, int product, const char* key)
    {
        for (int i = 0; i < numbers.size(); ++i)
            refer(ids, numbers.at(i), [&] {
                return QStringLiteral("/products/%1/%2/%3")
                    .arg(product)
                    .arg(QLatin1String(key))
                    .arg(i);
            });
    }

    void problem(const QString& pointer, const QString& value, const QString& expected)
    {
        const QString key = pointer.mid(pointer.lastIndexOf(QLatin1Char('/')) + 1);
        m_report.add(FeedProblem{m_file, 0, 0, pointer, key, value, expected});
    }

    const QJsonObject& m_object;
    const QString& m_file;
    FeedReport& m_report;
};

NetworkStop toStop(const StopEntry& entry)
{
    NetworkStop stop;
    stop.id = QString::number(entry.id);
    stop.name = entry.name;
    stop.latitude = entry.latitude;
    stop.longitude = entry.longitude;
    std::set<int> known;
    for (const int zone : entry.zones) {
        if (known.insert(zone).second)
            stop.areas.append(zone);
    }
    return stop;
}

} // namespace

void checkNetwork(const NetworkEntry& network, const QVector<FeedProduct>& products,
                  const QJsonObject& object, const QString& file, FeedReport& report)
{
    Checker(object, file, report).check(network, products);
}

Network toNetwork(const NetworkEntry& entry)
{
    Network network;
    network.zones = entry.zones;
    network.shapes = entry.shapes;
    for (const StopEntry& stop : entry.stops)
        network.stops.append(toStop(stop));
    for (const RouteEntry& route : entry.routes)
        network.routes.append({QString::number(route.id), route.shortName, route.longName,
                               route.color, route.textColor});
    for (const TripEntry& trip : entry.trips) {
        const QString id = QString::number(trip.id);
        network.trips.append(
            {id, QString::number(trip.routeId), trip.serviceId, trip.headsign, trip.shapeId});
        for (int i = 0; i < trip.stopTimes.size(); ++i) {
            const StopTimeEntry& time = trip.stopTimes.at(i);
            network.stopTimes.append({id, QString::number(time.stopId), i, seconds(time.arrival),
                                      seconds(time.departure)});
        }
    }
    return network;
}

} // namespace rivo::feed
