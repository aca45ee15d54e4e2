#include "TripProgress.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace rivo::position
{

namespace
{

constexpr fleet::Seconds day = 86400;
constexpr double farthest = 5000.0;     // metres; beyond it nothing is measured
constexpr double backwards = 100.0;     // metres; noise along the path
constexpr double aheadAtOnce = 300.0;   // metres; noise, and a report that was lost
constexpr double fastest = 40.0;        // metres per second
constexpr double wrongWay = 60.0;       // metres; what a place on the way back is worth
constexpr double perMetreOfTime = 0.02; // metres; what a metre off the timetable is worth
constexpr double oppositeDirection = 90.0;

/// Degrees between two directions, 0 to 180.
double angle(double a, double b) { return qAbs(std::remainder(a - b, 360.0)); }

} // namespace

void TripProgress::report(const QGeoCoordinate& coordinate, double direction, fleet::Seconds time)
{
    m_time = nearestDay(time);
    const std::optional<Place> place = placeOf(coordinate, direction);
    noticeDistance(place ? place->distance : farthest);
    if (place && !m_isOffRoute && place->distance <= offRoute)
        moveTo(place->metres);
}

void TripProgress::wait(fleet::Seconds time) { m_time = nearestDay(time); }

/// On the way it is looked for near the last place. A vehicle that was never on the path, or left
/// it, may be anywhere.
std::optional<TripProgress::Place> TripProgress::placeOf(const QGeoCoordinate& coordinate,
                                                         double direction) const
{
    const bool isKnown = m_metres && !m_isOffRoute;
    const double from = isKnown ? *m_metres - backwards : 0.0;
    const double to = isKnown ? *m_metres + aheadAtOnce + fastest * (m_time - m_placeTime)
                              : m_trip.path->length();
    const QVector<fleet::Path::Pass> passes = m_trip.path->passes(coordinate, from, to, farthest);
    const auto best = std::min_element(passes.cbegin(), passes.cend(),
                                       [&](const fleet::Path::Pass& a, const fleet::Path::Pass& b) {
                                           return cost(a, direction) < cost(b, direction);
                                       });
    if (best == passes.cend())
        return std::nullopt;
    return Place{best->metres, best->distance};
}

double TripProgress::cost(const fleet::Path::Pass& pass, double direction) const
{
    const bool isWrongWay =
        angle(m_trip.path->at(pass.metres).direction, direction) > oppositeDirection;
    const double expected = m_metres ? *m_metres : m_trip.at(m_time).metres;
    return pass.distance + (isWrongWay ? wrongWay : 0.0) +
           qAbs(pass.metres - expected) * perMetreOfTime;
}

void TripProgress::noticeDistance(double distance)
{
    if (m_isOffRoute || !m_metres) {
        m_isOffRoute = distance > onRoute;
        m_fixesOff = 0;
        return;
    }
    m_fixesOff = distance > offRoute ? m_fixesOff + 1 : 0;
    m_isOffRoute = m_fixesOff >= fixesUntilOffRoute;
}

void TripProgress::moveTo(double metres)
{
    m_metres = metres;
    m_placeTime = m_time;
    const auto isReached = [&](int call) {
        return metres >= m_trip.calls.at(call).metres - arrival;
    };
    m_call = std::max(m_call, 0);
    while (m_call + 1 < m_trip.calls.size() && isReached(m_call + 1))
        ++m_call;
    while (m_call > 0 && metres < m_trip.calls.at(m_call).metres - arrival - goingBack)
        --m_call;
}

/// The second of the service day of this trip: after midnight it is past 86400.
fleet::Seconds TripProgress::nearestDay(fleet::Seconds time) const
{
    const fleet::Seconds middle = (m_trip.start() + m_trip.end()) / 2;
    const double days = static_cast<double>(middle - time) / day;
    return time + day * qRound(days);
}

std::optional<fleet::Seconds> TripProgress::lateness() const
{
    if (!m_metres || m_isOffRoute)
        return std::nullopt;
    const fleet::Call& call = m_trip.calls.at(m_call);
    const bool isLast = m_call + 1 == m_trip.calls.size();
    if (isLast || qAbs(*m_metres - call.metres) <= arrival) {
        if (m_time < call.arrival)
            return m_call == 0 ? 0 : m_time - call.arrival;
        return std::max(0, m_time - (isLast ? call.arrival : call.departure));
    }
    const fleet::Call& next = m_trip.calls.at(m_call + 1);
    const double length = next.metres - call.metres;
    const double share = length > 0.0 ? qBound(0.0, (*m_metres - call.metres) / length, 1.0) : 0.0;
    return m_time - (call.departure + qRound(share * (next.arrival - call.departure)));
}

TripProgress::Punctuality TripProgress::punctuality() const
{
    const std::optional<fleet::Seconds> seconds = lateness();
    if (!seconds)
        return Punctuality::Unknown;
    if (*seconds > late)
        return Punctuality::Late;
    return *seconds < -ahead ? Punctuality::Ahead : Punctuality::OnTime;
}

} // namespace rivo::position
