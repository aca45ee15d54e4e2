#include "TripDesk.h"

#include <Feed.h>

#include <algorithm>

namespace rivo::terminal
{

namespace
{

using fleet::Timetable;
using fleet::Trip;

feed::FeedTripContext contextOf(const Trip& trip)
{
    return {trip.route,
            trip.calls.first().stop,
            trip.calls.last().stop,
            trip.calls.first().stop,
            trip.route,
            trip.number,
            trip.id};
}

const Trip* firstOfRoute(const Timetable& timetable, int route)
{
    const auto found = std::find_if(timetable.trips().cbegin(), timetable.trips().cend(),
                                    [route](const Trip& trip) { return trip.route == route; });
    return found == timetable.trips().cend() ? nullptr : &*found;
}

const Trip* tripOf(const feed::Feed& feed, const Timetable& timetable)
{
    if (!feed.trip)
        return timetable.trips().isEmpty() ? nullptr : &timetable.trips().first();
    const Trip* exact = timetable.trip(feed.trip->tripsExecutionId);
    return exact != nullptr ? exact : firstOfRoute(timetable, feed.trip->routeId);
}

feed::FeedTripContext contextOf(const feed::Feed& feed, const Trip* trip)
{
    return feed.trip ? *feed.trip : trip != nullptr ? contextOf(*trip) : feed::FeedTripContext();
}

} // namespace

TripDesk::TripDesk(const feed::Feed& feed, const Timetable& timetable, QObject* parent)
    : QObject(parent), m_context(contextOf(feed, tripOf(feed, timetable)))
{
    const Trip* trip = tripOf(feed, timetable);
    const fleet::Route* route = timetable.route(m_context.routeId());
    if (route != nullptr)
        m_route = route->name;
    else if (m_context.routeId() >= 0)
        m_route = QString::number(m_context.routeId());
    if (trip == nullptr)
        return;
    m_trip = *trip;
    const QString end = trip->headsign.isEmpty() ? trip->calls.last().name : trip->headsign;
    if (!end.isEmpty())
        m_route = tr("%1 to %2").arg(m_route, end);
    for (const fleet::Call& call : trip->calls) {
        m_stops.append(call.name.isEmpty() ? QString::number(call.stop) : call.name);
        m_stopNumbers.append(call.stop);
        m_zones.append(call.zones);
    }
    m_stop = m_stopNumbers.indexOf(m_context.currentStopId());
}

QString TripDesk::stopName() const
{
    if (m_stop >= 0)
        return m_stops.at(m_stop);
    return m_context.currentStopId() < 0 ? QString() : QString::number(m_context.currentStopId());
}

QVector<int> TripDesk::zonesAhead() const
{
    QVector<int> zones;
    for (const QVector<int>& ofStop : m_zones.mid(qMax(0, m_stop)))
        zones += ofStop;
    return zones;
}

void TripDesk::setStop(int stop)
{
    if (stop == m_stop || stop < 0 || stop >= m_stops.size())
        return;
    m_stop = stop;
    m_context.setCurrentStopId(m_stopNumbers.at(stop));
    emit stopChanged();
}

void TripDesk::setPunctuality(const QString& text)
{
    if (text == m_punctuality)
        return;
    m_punctuality = text;
    emit punctualityChanged();
}

} // namespace rivo::terminal
