#include "RouteLines.h"

#include <Feed.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <vector>

namespace rivo::backoffice
{

namespace
{

using Points = QVector<feed::NetworkShapePoint>;

struct Line
{
    QString route; ///< name
    int turn;      ///< lines of the route before it
    const Points* points;
};

bool isLine(const Points& points)
{
    return std::any_of(points.begin(), points.end(), [&](const feed::NetworkShapePoint& point) {
        return point.latitude != points.first().latitude ||
               point.longitude != points.first().longitude;
    });
}

/// The different lines of a network, which lives longer.
class Collector
{
public:
    explicit Collector(const feed::Network& network) : m_network(network)
    {
        for (const feed::NetworkRoute& route : network.routes)
            m_names[route.id] = route.shortName.isEmpty() ? route.longName : route.shortName;
        for (const feed::NetworkShape& shape : network.shapes) {
            if (isLine(shape.points))
                m_shapes[shape.id] = &shape.points;
        }
        for (const feed::NetworkStop& stop : network.stops) {
            if (!qIsNaN(stop.latitude) && !qIsNaN(stop.longitude))
                m_stops[stop.id] = {stop.latitude, stop.longitude};
        }
        addTripsWithShape();
        addTripsWithout();
    }

    /// The first line of each route, then the second ones.
    std::vector<Line> lines() const
    {
        std::vector<Line> sorted = m_lines;
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const Line& a, const Line& b) { return a.turn < b.turn; });
        return sorted;
    }

private:
    void addTripsWithShape()
    {
        for (const feed::NetworkTrip& trip : m_network.trips) {
            const auto shape = m_shapes.find(trip.shapeId);
            if (shape != m_shapes.end())
                add(trip.routeId, *shape->second);
            else
                m_routeOf[trip.id] = trip.routeId;
        }
    }

    void addTripsWithout()
    {
        const auto& calls = m_network.stopTimes;
        for (auto first = calls.begin(); first != calls.end();) {
            const auto last = std::find_if(
                first, calls.end(), [&](const auto& call) { return call.tripId != first->tripId; });
            const auto route = m_routeOf.find(first->tripId);
            if (route != m_routeOf.end()) {
                QStringList stops;
                std::for_each(first, last, [&](const auto& call) { stops.append(call.stopId); });
                const Points& points = straight(stops);
                if (isLine(points))
                    add(route->second, points);
            }
            first = last;
        }
    }

    /// From stop to stop; those without a place are passed over.
    const Points& straight(const QStringList& stops)
    {
        const auto [found, isNew] = m_straight.try_emplace(stops);
        for (int at = 0; isNew && at < stops.size(); ++at) {
            const auto stop = m_stops.find(stops.at(at));
            if (stop != m_stops.end())
                found->second.append(stop->second);
        }
        return found->second;
    }

    void add(const QString& route, const Points& points)
    {
        if (m_known.emplace(route, &points).second)
            m_lines.push_back({m_names[route], m_turns[route]++, &points});
    }

    const feed::Network& m_network;
    std::map<QString, QString> m_names;
    std::map<QString, const Points*> m_shapes;
    std::map<QString, feed::NetworkShapePoint> m_stops;
    std::map<QString, QString> m_routeOf; ///< trips without a shape
    std::map<QStringList, Points> m_straight;
    std::set<std::pair<QString, const Points*>> m_known;
    std::map<QString, int> m_turns;
    std::vector<Line> m_lines;
};

/// A metre or so.
double rounded(double degrees)
{
    constexpr double parts = 1e5;
    return std::round(degrees * parts) / parts;
}

/// `count` of the points, at least two, with both ends.
QJsonArray someOf(const Points& points, qint64 count)
{
    QJsonArray numbers;
    for (qint64 at = 0; at < count; ++at) {
        const auto& point = points.at(int(at * (points.size() - 1) / (count - 1)));
        numbers.append(rounded(point.latitude));
        numbers.append(rounded(point.longitude));
    }
    return numbers;
}

} // namespace

RouteLines routeLines(const feed::Network& network)
{
    const Collector collector(network);
    const std::vector<Line> lines = collector.lines();
    qint64 all = 0;
    for (const Line& line : lines)
        all += line.points->size();
    RouteLines result;
    result.json = "[";
    qint64 left = RouteLines::mostPoints;
    for (const Line& line : lines) {
        const qint64 size = line.points->size();
        const qint64 share =
            all <= RouteLines::mostPoints ? size : size * RouteLines::mostPoints / all;
        const qint64 count = std::max<qint64>(2, share);
        QByteArray text;
        if (count <= left)
            text =
                QJsonDocument(QJsonObject{{QStringLiteral("route"), line.route},
                                          {QStringLiteral("points"), someOf(*line.points, count)}})
                    .toJson(QJsonDocument::Compact);
        constexpr int around = 2; // a comma or a bracket before, a bracket at the end
        if (text.isEmpty() || result.json.size() + text.size() + around > RouteLines::mostBytes) {
            ++result.leftOut;
            continue;
        }
        if (result.count++ > 0)
            result.json += ',';
        result.json += text;
        left -= count;
    }
    result.json += ']';
    return result;
}

} // namespace rivo::backoffice
