#include "Timetable.h"

#include <Feed.h>

#include <QMap>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace rivo::fleet
{

namespace
{

using feed::Network;

template <typename Records>
QMap<QString, int> numbersOf(const Records& records)
{
    const auto own = [](const QString& id) {
        bool isNumber = false;
        const int number = id.toInt(&isNumber);
        return isNumber && number > 0 && QString::number(number) == id ? number : 0;
    };
    const bool areNumbers = std::all_of(records.cbegin(), records.cend(),
                                        [&own](const auto& record) { return own(record.id) > 0; });
    QMap<QString, int> numbers;
    int next = 1;
    for (const auto& record : records) {
        numbers.insert(record.id, areNumbers ? own(record.id) : next);
        ++next;
    }
    return numbers;
}

/// The services of the day of the week with the most trips, the first one of equals. Where nothing
/// is known of the days it is the service with the most trips.
std::set<QString> servicesOfBusiestDay(const Network& network)
{
    QMap<QString, int> sizes;
    for (const feed::NetworkTrip& trip : network.trips)
        ++sizes[trip.serviceId];
    std::set<QString> busiest;
    int most = 0;
    for (int weekday = 0; weekday < 7; ++weekday) {
        std::set<QString> services;
        int trips = 0;
        for (const feed::NetworkService& service : network.services) {
            if ((service.days >> weekday & 1) == 0)
                continue;
            services.insert(service.id);
            trips += sizes.value(service.id);
        }
        if (trips > most) {
            most = trips;
            busiest = services;
        }
    }
    if (most > 0)
        return busiest;
    const auto largest =
        std::max_element(network.trips.cbegin(), network.trips.cend(),
                         [&sizes](const feed::NetworkTrip& a, const feed::NetworkTrip& b) {
                             return sizes.value(a.serviceId) < sizes.value(b.serviceId);
                         });
    return largest == network.trips.cend() ? std::set<QString>()
                                           : std::set<QString>({largest->serviceId});
}

/// The services of `date`, if they have trips.
std::set<QString> servicesOf(const Network& network, const QDate& date)
{
    std::set<QString> running;
    for (const feed::NetworkService& service : network.services) {
        if (date.isValid() && service.runsOn(date))
            running.insert(service.id);
    }
    const bool hasTrips = std::any_of(
        network.trips.cbegin(), network.trips.cend(),
        [&running](const feed::NetworkTrip& trip) { return running.count(trip.serviceId) > 0; });
    return hasTrips ? running : servicesOfBusiestDay(network);
}

QGeoCoordinate coordinateOf(double latitude, double longitude) { return {latitude, longitude}; }

/// Fills in the times that calls do not have; false if fewer than two have one or time runs back.
bool completeTimes(QVector<Call>& calls)
{
    const auto isTimed = [](const Call& call) { return call.arrival >= 0; };
    for (Call& call : calls) {
        if (call.arrival < 0)
            call.arrival = call.departure;
        if (call.departure < 0)
            call.departure = call.arrival;
    }
    // Nothing is known of the way before the first time and after the last.
    while (!calls.isEmpty() && !isTimed(calls.first()))
        calls.removeFirst();
    while (!calls.isEmpty() && !isTimed(calls.last()))
        calls.removeLast();
    if (calls.size() < 2)
        return false;

    int last = 0;
    for (int i = 1; i < calls.size(); ++i) {
        if (!isTimed(calls.at(i)))
            continue;
        const Seconds from = calls.at(last).departure;
        const qint64 span = calls.at(i).arrival - from;
        for (int between = last + 1; between < i; ++between) {
            const Seconds time = from + static_cast<Seconds>(span * (between - last) / (i - last));
            calls[between].arrival = time;
            calls[between].departure = time;
        }
        last = i;
    }
    for (int i = 0; i < calls.size(); ++i) {
        if (calls.at(i).departure < calls.at(i).arrival ||
            (i > 0 && calls.at(i).arrival < calls.at(i - 1).departure))
            return false;
    }
    return true;
}

QVector<int> stopsOf(const QVector<Call>& calls)
{
    QVector<int> stops;
    for (const Call& call : calls)
        stops.append(call.stop);
    return stops;
}

std::shared_ptr<const Path> pathThrough(const QVector<Call>& calls)
{
    QVector<QGeoCoordinate> points;
    for (const Call& call : calls) {
        if (call.coordinate.isValid())
            points.append(call.coordinate);
    }
    return std::make_shared<Path>(points);
}

QVector<double> metresOf(const QVector<Call>& calls, const Path& path)
{
    QVector<double> all;
    double metres = 0.0;
    for (const Call& call : calls) {
        if (call.coordinate.isValid())
            metres = path.nearest(call.coordinate, metres);
        all.append(metres);
    }
    return all;
}

/// The paths of trips. Those of the same stops share what is computed of them.
class Paths
{
public:
    explicit Paths(const Network& network)
    {
        for (const feed::NetworkShape& shape : network.shapes) {
            QVector<QGeoCoordinate> points;
            for (const feed::NetworkShapePoint& point : shape.points)
                points.append(coordinateOf(point.latitude, point.longitude));
            m_shapes.insert(shape.id, std::make_shared<Path>(points));
        }
    }

    /// Gives `trip` its path, that of the shape or straight from stop to stop, and its calls their
    /// places on it.
    void lay(Trip& trip, const QString& shape)
    {
        const QVector<int> stops = stopsOf(trip.calls);
        trip.path = m_shapes.value(shape);
        if (!trip.path || trip.path->length() <= 0.0) {
            std::shared_ptr<const Path>& straight = m_straight[stops];
            if (!straight)
                straight = pathThrough(trip.calls);
            trip.path = straight;
        }
        QVector<double>& metres = m_metres[{trip.path.get(), stops}];
        if (metres.isEmpty())
            metres = metresOf(trip.calls, *trip.path);
        for (int i = 0; i < trip.calls.size(); ++i)
            trip.calls[i].metres = metres.at(i);
    }

private:
    QMap<QString, std::shared_ptr<const Path>> m_shapes;
    std::map<QVector<int>, std::shared_ptr<const Path>> m_straight;
    std::map<std::pair<const Path*, QVector<int>>, QVector<double>> m_metres;
};

/// Stops as calls without times. All calls of a stop share its name and place.
QMap<QString, Call> callsOfStops(const Network& network)
{
    const QMap<QString, int> numbers = numbersOf(network.stops);
    QMap<QString, Call> calls;
    for (const feed::NetworkStop& stop : network.stops)
        calls.insert(stop.id, {numbers.value(stop.id), stop.name,
                               coordinateOf(stop.latitude, stop.longitude), stop.areas, 0.0, 0, 0});
    return calls;
}

/// The calls of the trips in `running`.
QMap<QString, QVector<Call>> callsOfTrips(const Network& network, const std::set<QString>& running)
{
    const QMap<QString, Call> stops = callsOfStops(network);
    QMap<QString, QVector<Call>> calls;
    const auto end = network.stopTimes.cend();
    for (auto first = network.stopTimes.cbegin(); first != end;) {
        const auto next = std::find_if(first, end, [first](const feed::NetworkStopTime& time) {
            return time.tripId != first->tripId;
        });
        if (running.count(first->tripId) > 0) {
            QVector<Call>& ofTrip = calls[first->tripId];
            ofTrip.reserve(static_cast<int>(next - first));
            for (auto time = first; time != next; ++time) {
                const auto stop = stops.constFind(time->stopId);
                if (stop == stops.cend())
                    continue;
                ofTrip.append(*stop);
                ofTrip.last().arrival = time->arrival;
                ofTrip.last().departure = time->departure;
            }
        }
        first = next;
    }
    return calls;
}

std::set<QString> tripsOf(const Network& network, const std::set<QString>& services)
{
    std::set<QString> running;
    for (const feed::NetworkTrip& trip : network.trips) {
        if (services.count(trip.serviceId) > 0)
            running.insert(trip.id);
    }
    return running;
}

} // namespace

Trip::Moment Trip::at(Seconds time) const
{
    if (time <= calls.first().departure)
        return {calls.first().metres, 0, true};
    const auto next = std::find_if(calls.cbegin() + 1, calls.cend(),
                                   [time](const Call& call) { return time <= call.departure; });
    if (next == calls.cend())
        return {calls.last().metres, calls.size() - 1, true};
    const int reached = static_cast<int>(next - calls.cbegin());
    if (time >= next->arrival)
        return {next->metres, reached, true};
    const Call& from = *std::prev(next);
    const double share =
        static_cast<double>(time - from.departure) / (next->arrival - from.departure);
    return {from.metres + (next->metres - from.metres) * share, reached - 1, false};
}

Timetable::Timetable(const Network& network, const QDate& date)
{
    const QMap<QString, int> routeNumbers = numbersOf(network.routes);
    const QMap<QString, int> tripNumbers = numbersOf(network.trips);

    for (const feed::NetworkRoute& route : network.routes) {
        const bool hasShort = !route.shortName.isEmpty();
        const bool hasLong = !route.longName.isEmpty();
        m_routes.append({routeNumbers.value(route.id), hasShort ? route.shortName : route.longName,
                         hasLong ? route.longName : route.shortName, route.color});
    }

    Paths paths(network);
    const std::set<QString> running = tripsOf(network, servicesOf(network, date));
    QMap<QString, QVector<Call>> calls = callsOfTrips(network, running);
    for (const feed::NetworkTrip& record : network.trips) {
        // A repeated id has the calls once.
        Trip trip{tripNumbers.value(record.id),
                  routeNumbers.value(record.routeId, -1),
                  record.id,
                  record.headsign,
                  nullptr,
                  calls.take(record.id)};
        if (!completeTimes(trip.calls))
            continue;
        paths.lay(trip, record.shapeId);
        m_trips.append(trip);
    }
    std::stable_sort(m_trips.begin(), m_trips.end(),
                     [](const Trip& a, const Trip& b) { return a.start() < b.start(); });
}

const Trip* Timetable::trip(int number) const
{
    const auto found = std::find_if(m_trips.cbegin(), m_trips.cend(),
                                    [number](const Trip& trip) { return trip.number == number; });
    return found == m_trips.cend() ? nullptr : &*found;
}

const Route* Timetable::route(int number) const
{
    const auto found =
        std::find_if(m_routes.cbegin(), m_routes.cend(),
                     [number](const Route& route) { return route.number == number; });
    return found == m_routes.cend() ? nullptr : &*found;
}

} // namespace rivo::fleet
