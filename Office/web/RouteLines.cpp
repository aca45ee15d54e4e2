#include "RouteLines.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <cmath>
#include <map>
#include <set>

namespace rivo::backoffice
{

namespace
{

using Line = QVector<feed::NetworkShapePoint>;

/// The last point stays, wherever the others end.
QJsonArray thinned(const Line& line)
{
    const int step = 1 + (line.size() - 1) / mostPointsOfLine;
    QJsonArray points;
    const auto add = [&](const feed::NetworkShapePoint& point) {
        points.append(QJsonArray{point.latitude, point.longitude});
    };
    for (int at = 0; at < line.size() - 1; at += step)
        add(line.at(at));
    add(line.last());
    return points;
}

/// Collects lines until there are enough.
class Lines
{
public:
    void add(const Line& line)
    {
        if (line.size() > 1 && m_lines.size() < mostRouteLines)
            m_lines.append(thinned(line));
    }

    QByteArray json() const
    {
        return QJsonDocument(QJsonObject{{QStringLiteral("lines"), m_lines}})
            .toJson(QJsonDocument::Compact);
    }

private:
    QJsonArray m_lines;
};

/// Each pattern of stops once, of trips without a shape.
class StopPatterns
{
public:
    StopPatterns(const feed::Network& network, Lines& lines) : m_lines(lines)
    {
        for (const feed::NetworkTrip& trip : network.trips) {
            if (!trip.shapeId.isEmpty())
                m_shaped.insert(trip.id);
        }
        for (const feed::NetworkStop& stop : network.stops)
            m_places[stop.id] = {stop.latitude, stop.longitude};
    }

    /// The stop times of one trip follow one another.
    void addAll(const QVector<feed::NetworkStopTime>& times)
    {
        QStringList stops;
        for (int at = 0; at < times.size(); ++at) {
            stops.append(times.at(at).stopId);
            if (at + 1 < times.size() && times.at(at + 1).tripId == times.at(at).tripId)
                continue;
            if (m_shaped.count(times.at(at).tripId) == 0 && m_known.insert(stops).second)
                m_lines.add(lineOf(stops));
            stops.clear();
        }
    }

private:
    Line lineOf(const QStringList& stops) const
    {
        Line line;
        for (const QString& stop : stops) {
            const auto found = m_places.find(stop);
            if (found != m_places.end() && std::isfinite(found->second.latitude) &&
                std::isfinite(found->second.longitude))
                line.append(found->second);
        }
        return line;
    }

    Lines& m_lines;
    std::set<QString> m_shaped;
    std::map<QString, feed::NetworkShapePoint> m_places;
    std::set<QStringList> m_known;
};

} // namespace

QByteArray routeLines(const feed::Network& network)
{
    Lines lines;
    for (const feed::NetworkShape& shape : network.shapes)
        lines.add(shape.points);
    StopPatterns(network, lines).addAll(network.stopTimes);
    return lines.json();
}

} // namespace rivo::backoffice
