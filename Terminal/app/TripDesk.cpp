#include "TripDesk.h"

#include <Feed.h>
#include <Tariff.h>

#include <QTime>

#include <algorithm>

namespace rivo::terminal
{

namespace
{

using fleet::Seconds;
using fleet::Timetable;
using fleet::Trip;

constexpr Seconds day = 86400;

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

/// A trip that passes midnight also runs in the first hours.
bool isRunning(const Trip& trip, Seconds now)
{
    return (trip.start() <= now && now <= trip.end()) ||
           (trip.start() <= now + day && now + day <= trip.end());
}

bool isOver(const Trip& trip, Seconds now) { return trip.end() < now; }

/// 0 for what runs, 1 for what is to come, 2 for what is over.
int turnOf(const Trip& trip, Seconds now)
{
    return isRunning(trip, now) ? 0 : isOver(trip, now) ? 2 : 1;
}

/// By turn, then by time: the last one that is over comes first of these.
bool isBefore(const Trip* left, const Trip* right, Seconds now)
{
    const int turn = turnOf(*left, now);
    if (turn != turnOf(*right, now))
        return turn < turnOf(*right, now);
    return turn == 2 ? left->end() > right->end() : left->start() < right->start();
}

QVector<const Trip*> tripsInTurn(const Timetable& timetable, Seconds now, int route = -1)
{
    QVector<const Trip*> trips;
    for (const Trip& trip : timetable.trips()) {
        if (route < 0 || trip.route == route)
            trips.append(&trip);
    }
    std::stable_sort(trips.begin(), trips.end(), [now](const Trip* left, const Trip* right) {
        return isBefore(left, right, now);
    });
    return trips;
}

/// The two sides of a street are two stops, mostly of one name.
bool isSamePlace(const fleet::Call& left, const fleet::Call& right)
{
    return left.stop == right.stop || (!left.name.isEmpty() && left.name == right.name);
}

const Trip* tripOf(const feed::Feed& feed, const Timetable& timetable, Seconds now)
{
    if (!feed.trip)
        return tripsInTurn(timetable, now).value(0);
    const Trip* exact = timetable.trip(feed.trip->tripsExecutionId);
    return exact != nullptr ? exact : tripsInTurn(timetable, now, feed.trip->routeId).value(0);
}

feed::FeedTripContext contextOf(const feed::Feed& feed, const Trip* trip)
{
    return feed.trip ? *feed.trip : trip != nullptr ? contextOf(*trip) : feed::FeedTripContext();
}

QString destinationOf(const Trip& trip)
{
    return trip.headsign.isEmpty() ? trip.calls.last().name : trip.headsign;
}

QString timeText(Seconds time)
{
    return QTime(0, 0).addSecs(time % day).toString(QStringLiteral("HH:mm"));
}

} // namespace

TripDesk::TripDesk(const feed::Feed& feed, const Timetable& timetable, Seconds now, QObject* parent)
    : QObject(parent), m_timetable(timetable), m_trip(tripOf(feed, m_timetable, now)),
      m_context(contextOf(feed, m_trip))
{
    readTrip(m_context.trip());
    if (m_timetable.trips().isEmpty())
        readStops(feed);
}

/// What is known of the route and the stops of the trip.
void TripDesk::readTrip(const feed::FeedTripContext& context)
{
    const fleet::Route* route = m_timetable.route(context.routeId);
    m_route.clear();
    if (route != nullptr)
        m_route = route->name;
    else if (context.routeId >= 0)
        m_route = QString::number(context.routeId);
    m_stops.clear();
    m_stopNumbers.clear();
    m_zones.clear();
    if (m_trip == nullptr)
        return;
    const QString end = destinationOf(*m_trip);
    if (!end.isEmpty())
        m_route = tr("%1 to %2").arg(m_route, end);
    for (const fleet::Call& call : m_trip->calls) {
        m_stops.append(call.name.isEmpty() ? QString::number(call.stop) : call.name);
        m_stopNumbers.append(call.stop);
        m_zones.append(call.zones);
    }
    m_stop = m_stopNumbers.indexOf(context.currentStopId);
}

/// All stops of the network, for choosing by hand.
void TripDesk::readStops(const feed::Feed& feed)
{
    if (!feed.tariff)
        return;
    m_stopNumbers = feed.tariff->stopIds.publicNumbers();
    for (const feed::NetworkStop& stop : feed.network.stops) {
        m_stops.append(stop.name.isEmpty() ? stop.id : stop.name);
        m_zones.append(stop.areas);
    }
    m_stop = m_stopNumbers.indexOf(m_context.currentStopId());
}

QString TripDesk::tripText() const { return isExact() ? timeText(m_trip->start()) : QString(); }

bool TripDesk::isExact() const
{
    return m_trip != nullptr && m_trip->number == m_context.tripsExecutionId();
}

/// Null before the last stop, and if there is none.
const Trip* TripDesk::nextTrip(const QVector<const Trip*>& trips, int now) const
{
    if (!isAtEnd())
        return nullptr;
    // A bus that is late can be here when its next trip should have begun.
    const Seconds earliest = isExact() ? m_trip->end() : now;
    const auto follows = [&](const Trip* trip) {
        return trip != m_trip && turnOf(*trip, now) != 2 && trip->start() >= earliest &&
               isSamePlace(trip->calls.first(), m_trip->calls.last());
    };
    const Trip* next = nullptr;
    bool isBack = false;
    for (const Trip* trip : trips) {
        const bool goesBack = isSamePlace(trip->calls.last(), m_trip->calls.first());
        const bool isBetter = next == nullptr || (goesBack && !isBack) ||
                              (goesBack == isBack && trip->start() < next->start());
        if (!follows(trip) || !isBetter)
            continue;
        next = trip;
        isBack = goesBack;
    }
    return next;
}

QVariantList TripDesk::routes() const
{
    QVariantList maps;
    for (const fleet::Route& route : m_timetable.routes()) {
        const bool hasTrips =
            std::any_of(m_timetable.trips().begin(), m_timetable.trips().end(),
                        [&route](const Trip& trip) { return trip.route == route.number; });
        if (hasTrips)
            maps.append(QVariantMap{{QStringLiteral("route"), route.number},
                                    {QStringLiteral("name"), route.name},
                                    {QStringLiteral("title"), route.title}});
    }
    return maps;
}

QVariantList TripDesk::tripsOf(int route, int now) const
{
    QVariantList maps;
    QVector<const Trip*> trips = tripsInTurn(m_timetable, now, route);
    const Trip* const next = nextTrip(trips, now);
    if (next != nullptr)
        trips.move(trips.indexOf(next), 0);
    for (const Trip* trip : qAsConst(trips))
        maps.append(QVariantMap{
            {QStringLiteral("trip"), trip->number},
            {QStringLiteral("time"),
             QStringLiteral("%1–%2").arg(timeText(trip->start()), timeText(trip->end()))},
            {QStringLiteral("destination"), destinationOf(*trip)},
            {QStringLiteral("isNext"), trip == next},
            {QStringLiteral("isNow"), turnOf(*trip, now) == 0},
            {QStringLiteral("isOver"), turnOf(*trip, now) == 2},
            {QStringLiteral("isChosen"), trip->number == m_context.tripsExecutionId()}});
    return maps;
}

bool TripDesk::choose(int trip)
{
    const Trip* found = m_timetable.trip(trip);
    if (found == nullptr)
        return false;
    m_trip = found;
    const feed::FeedTripContext context = contextOf(*found);
    readTrip(context); // what follows the context reads the stops
    m_context.setTrip(context);
    emit tripChanged();
    emit stopChanged();
    return true;
}

QString TripDesk::stopName() const
{
    if (m_stop >= 0)
        return m_stops.at(m_stop);
    return m_context.currentStopId() < 0 ? QString() : QString::number(m_context.currentStopId());
}

/// A trip that began yesterday has times after 24:00.
bool TripDesk::isUnderWay(int now) const
{
    constexpr int lateness = 3600;
    const auto runsAt = [this](int time) {
        return time >= m_trip->start() && time <= m_trip->end() + lateness;
    };
    return m_trip != nullptr && !isAtEnd() && (runsAt(now) || runsAt(now + day));
}

QVector<int> TripDesk::zonesAhead() const
{
    QVector<int> zones;
    const auto ahead = m_zones.mid(qMax(0, m_stop));
    for (const QVector<int>& ofStop : ahead)
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
