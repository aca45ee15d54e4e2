#include "Path.h"

#include <QtMath>

#include <algorithm>
#include <iterator>
#include <limits>

namespace rivo::fleet
{

namespace
{

/// Metres; a way that comes back this close to a place has come back to it.
constexpr double samePlace = 15.0;

/// How far along the way from `a` to `b` the foot of `p` lies, 0 to 1; on a plane, which holds over
/// the length of one piece of a shape.
double footOf(const QGeoCoordinate& p, const QGeoCoordinate& a, const QGeoCoordinate& b)
{
    const double eastScale = qCos(qDegreesToRadians(a.latitude()));
    const double abEast = (b.longitude() - a.longitude()) * eastScale;
    const double abNorth = b.latitude() - a.latitude();
    const double apEast = (p.longitude() - a.longitude()) * eastScale;
    const double apNorth = p.latitude() - a.latitude();
    const double square = abEast * abEast + abNorth * abNorth;
    return square > 0.0 ? qBound(0.0, (apEast * abEast + apNorth * abNorth) / square, 1.0) : 0.0;
}

QGeoCoordinate between(const QGeoCoordinate& a, const QGeoCoordinate& b, double share)
{
    return {a.latitude() + (b.latitude() - a.latitude()) * share,
            a.longitude() + (b.longitude() - a.longitude()) * share};
}

} // namespace

Path::Path(const QVector<QGeoCoordinate>& points)
{
    double metres = 0.0;
    for (const QGeoCoordinate& point : points) {
        const double step = m_points.isEmpty() ? 0.0 : m_points.last().distanceTo(point);
        // Points on the spot have no direction.
        if (!m_points.isEmpty() && step <= 0.0)
            continue;
        metres += step;
        m_points.append(point);
        m_metres.append(metres);
    }
}

double Path::length() const { return m_metres.isEmpty() ? 0.0 : m_metres.last(); }

Path::Place Path::at(double metres) const
{
    if (m_points.size() < 2)
        return {m_points.value(0), 0.0};
    const auto next = std::upper_bound(m_metres.cbegin() + 1, m_metres.cend() - 1, metres);
    const int end = static_cast<int>(next - m_metres.cbegin());
    const QGeoCoordinate& a = m_points.at(end - 1);
    const QGeoCoordinate& b = m_points.at(end);
    const double size = m_metres.at(end) - m_metres.at(end - 1);
    const double share = qBound(0.0, (metres - m_metres.at(end - 1)) / size, 1.0);
    return {between(a, b, share), a.azimuthTo(b)};
}

double Path::nearest(const QGeoCoordinate& coordinate, double from) const
{
    struct Candidate
    {
        double metres;
        double distance;
    };
    QVector<Candidate> candidates; // the nearest point of every piece that is not before `from`
    double least = std::numeric_limits<double>::infinity();
    for (int i = 1; i < m_points.size(); ++i) {
        const double size = m_metres.at(i) - m_metres.at(i - 1);
        const double foot = footOf(coordinate, m_points.at(i - 1), m_points.at(i));
        const double metres = std::max(m_metres.at(i - 1) + foot * size, from);
        if (metres > m_metres.at(i))
            continue;
        const double share = (metres - m_metres.at(i - 1)) / size;
        const double distance =
            coordinate.distanceTo(between(m_points.at(i - 1), m_points.at(i), share));
        candidates.append({metres, distance});
        least = std::min(least, distance);
    }
    if (candidates.isEmpty())
        return qBound(0.0, from, length());

    auto pass = std::find_if(candidates.cbegin(), candidates.cend(), [least](const Candidate& c) {
        return c.distance <= least + samePlace;
    });
    for (auto next = std::next(pass);
         next != candidates.cend() &&
         (next->distance < pass->distance || next->metres <= pass->metres);
         ++next)
        pass = next;
    return pass->metres;
}

QVector<Path::Pass> Path::passes(const QGeoCoordinate& coordinate, double from, double to,
                                 double within) const
{
    QVector<Pass> passes;
    bool isFirst = true;
    bool comesNearer = false; // up to the end of the piece before
    for (int i = 1; i < m_points.size() && m_metres.at(i - 1) <= to; ++i) {
        if (m_metres.at(i) < from)
            continue;
        const double begin = std::max(from, m_metres.at(i - 1));
        const double end = std::min(to, m_metres.at(i));
        const double size = m_metres.at(i) - m_metres.at(i - 1);
        const double foot = footOf(coordinate, m_points.at(i - 1), m_points.at(i));
        const double metres = qBound(begin, m_metres.at(i - 1) + foot * size, end);
        const bool goesAway = metres <= begin && !isFirst && !comesNearer;
        const bool isLast = i + 1 == m_points.size() || m_metres.at(i) > to;
        isFirst = false;
        comesNearer = metres >= end && !isLast;
        if (goesAway || comesNearer)
            continue;
        const double share = (metres - m_metres.at(i - 1)) / size;
        const double distance =
            coordinate.distanceTo(between(m_points.at(i - 1), m_points.at(i), share));
        if (distance <= within)
            passes.append({metres, distance});
    }
    return passes;
}

} // namespace rivo::fleet
