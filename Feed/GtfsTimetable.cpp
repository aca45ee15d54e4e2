#include "GtfsReading_p.h"

#include <algorithm>
#include <deque>
#include <tuple>

namespace rivo::feed::gtfs
{

namespace
{

struct ShapePoint
{
    int shape;
    int sequence;
    int line;
    double latitude;
    double longitude;
};

struct StopTime
{
    int trip; ///< in order of appearance in stop_times.txt
    int sequence;
    int stop;
    int line;
    int arrival;
    int departure;
};

QString inLineToo(int line)
{
    return QStringLiteral("each number once, it stands in line %1 too").arg(line);
}

/// Sorts unless the rows are in order, as most files are. Equal rows stay in the order of their
/// lines, which takes no buffer.
template <class R>
void putInOrder(std::deque<R>& rows, int R::*group)
{
    const auto less = [group](const R& left, const R& right) {
        return std::tie(left.*group, left.sequence, left.line) <
               std::tie(right.*group, right.sequence, right.line);
    };
    if (!std::is_sorted(rows.begin(), rows.end(), less))
        std::sort(rows.begin(), rows.end(), less);
}

/// Reads trips with their stops, and the lines on the map.
class TimetableReader
{
public:
    explicit TimetableReader(Reading& reading)
        : m_reading(reading), m_tables(reading.tables), m_tariff(reading.tariff),
          m_network(reading.feed.network)
    {
    }

    void read()
    {
        chooseRoutes();
        readTrips();
        readShapes();
        readStopTimes();
        for (TariffRoute& route : m_tariff.routes) {
            std::sort(route.runs.begin(), route.runs.end());
            route.runs.erase(std::unique(route.runs.begin(), route.runs.end()), route.runs.end());
            route.runs.squeeze();
        }
        std::stable_sort(m_tariff.faults.begin(), m_tariff.faults.end(),
                         [](const TariffFault& left, const TariffFault& right) {
                             return left.route < right.route;
                         });
    }

private:
    struct Trip
    {
        int route;
        int kept;       ///< number in Network::trips; -1 = not kept
        int group = -1; ///< in order of appearance in stop_times.txt
    };

    void chooseRoutes()
    {
        const std::optional<QStringList>& wanted = m_tables.options().timetableOf;
        m_isKept.fill(!wanted, m_tariff.routes.size());
        m_faultCounts.resize(m_tariff.routes.size());
        if (!wanted)
            return;
        for (const QString& id : *wanted) {
            const int route = m_reading.routes.table.find(id);
            if (route >= 0)
                m_isKept[route] = true;
            else
                m_tables.report().add(
                    FeedNotice{m_tables.pathOf(routesFile), 0,
                               QStringLiteral("no route %1, which the timetable is wanted of")
                                   .arg(quoted(id))});
        }
    }

    /// A fault costs the tickets of its route alone.
    void addFaults(TableReport& table, int route, const QVector<FeedProblem>& faults)
    {
        for (const FeedProblem& fault : faults) {
            if (route < 0) {
                table.report(fault, Concern::Timetable);
                continue;
            }
            table.notice(fault.line, fault.withoutPlace() +
                                         QStringLiteral("; no tickets of route %1")
                                             .arg(quoted(m_reading.routes.table.text(route))));
            if (++m_faultCounts[route] <= maxFaultsOfRoute)
                m_tariff.faults.append({route, fault});
        }
    }

    void readTrips()
    {
        if (!m_tables.isThere(tripsFile))
            return;
        TableReport table(m_tables.pathOf(tripsFile), Concern::Fares, m_tables.report());
        table.setEncodingConcern(Concern::Timetable);
        table.keepFaults();
        m_tripIds.isJudged = m_tables.read<TripRow>(
            QLatin1String(tripsFile), table, [&](const TripRow& row, TableReport&) {
                const int route = row.route.empty() ? -1 : m_reading.routes.table.find(row.route);
                addFaults(table, route, table.takeFaults());
                if (route < 0 && !row.route.empty())
                    table.lesserFault(row, "route_id", row.route, idOf(routesFile),
                                      Concern::Timetable);
                if (route < 0)
                    return;
                m_tariff.routes[route].hasTrips = true;
                if (row.id.empty())
                    return;
                m_tables.add(m_tripIds, row.line, row.id);
                m_trips.append({route, keepTrip(row, route)});
            });
        const auto repeated = m_tripIds.table.seal();
        for (const auto& [number, first] : repeated) {
            const QVector<FeedProblem> faults{{table.path(),
                                               m_tripIds.lines.at(number),
                                               0,
                                               {},
                                               QStringLiteral("trip_id"),
                                               quoted(m_tripIds.table.text(number)),
                                               QStringLiteral("each id once")}};
            addFaults(table, m_trips.at(number).route, faults);
            if (m_trips.at(first).route != m_trips.at(number).route)
                addFaults(table, m_trips.at(first).route, faults);
        }
    }

    /// The number of the trip in the network; -1 if the network does not keep it.
    int keepTrip(const TripRow& row, int route)
    {
        if (!m_isKept.at(route))
            return -1;
        m_network.trips.append({m_tables.keep(row.id), m_network.routes.at(route).id,
                                m_tables.keep(row.service), row.headsign,
                                m_tables.keep(row.shape)});
        m_shapeLines.append(row.line);
        return static_cast<int>(m_network.trips.size() - 1);
    }

    void readShapes()
    {
        Ids shapes;
        for (int i = 0; i < m_network.trips.size(); ++i)
            m_tables.add(shapes, m_shapeLines.at(i),
                         m_network.trips.at(i).shapeId.toUtf8().toStdString());
        const QVector<int> numbers = shapes.table.unify();
        std::deque<ShapePoint> points;
        m_tables.read<ShapeRow>(shapesFile, Concern::Map, [&](const ShapeRow& row, TableReport&) {
            const int shape = row.id.empty() ? -1 : shapes.table.find(row.id);
            if (shape >= 0 && row.sequence >= 0)
                points.push_back({shape, row.sequence, row.line, row.latitude, row.longitude});
        });
        putInOrder(points, &ShapePoint::shape);
        QVector<bool> isDefined(shapes.table.size());
        addShapes(points, shapes.table, isDefined);
        if (m_tables.isThere(shapesFile))
            dropUnknownShapes(numbers, isDefined);
    }

    void addShapes(const std::deque<ShapePoint>& points, const IdTable& ids,
                   QVector<bool>& isDefined)
    {
        TableReport table(m_tables.pathOf(shapesFile), Concern::Map, m_tables.report());
        const ShapePoint* before = nullptr;
        for (const ShapePoint& point : points) {
            Row row;
            row.line = point.line;
            if (before && before->shape == point.shape && before->sequence == point.sequence)
                table.fault(row, "shape_pt_sequence", QString::number(point.sequence),
                            inLineToo(before->line));
            if (!isDefined.at(point.shape))
                m_network.shapes.append({ids.text(point.shape), {}});
            isDefined[point.shape] = true;
            m_network.shapes.last().points.append({point.latitude, point.longitude});
            before = &point;
        }
    }

    void dropUnknownShapes(const QVector<int>& numbers, const QVector<bool>& isDefined)
    {
        TableReport table(m_tables.pathOf(tripsFile), Concern::Map, m_tables.report());
        for (int i = 0; i < m_network.trips.size(); ++i) {
            NetworkTrip& trip = m_network.trips[i];
            if (trip.shapeId.isEmpty() || isDefined.at(numbers.at(i)))
                continue;
            Row row;
            row.line = m_shapeLines.at(i);
            table.fault(row, "shape_id", trip.shapeId, idOf(shapesFile));
            trip.shapeId.clear();
        }
    }

    void readStopTimes()
    {
        if (!m_tables.isThere(stopTimesFile))
            return;
        TableReport table(m_tables.pathOf(stopTimesFile), Concern::Fares, m_tables.report());
        table.setEncodingConcern(Concern::Timetable);
        table.keepFaults();
        m_tables.read<StopTimeRow>(
            QLatin1String(stopTimesFile), table,
            [&](const StopTimeRow& row, TableReport&) { takeStopTime(row, table); });
        putInOrder(m_times, &StopTime::trip);
        m_network.stopTimes.reserve(static_cast<int>(
            std::count_if(m_times.begin(), m_times.end(), [&](const StopTime& time) {
                return m_trips.at(m_groups.at(time.trip)).kept >= 0;
            })));
        for (auto first = m_times.begin(); first != m_times.end();) {
            const auto end = std::find_if(first, m_times.end(), [&](const StopTime& time) {
                return time.trip != first->trip;
            });
            addRun(first, end, table);
            first = end;
        }
    }

    void takeStopTime(const StopTimeRow& row, TableReport& table)
    {
        const int number = row.trip.empty() ? -1 : tripOf(row.trip);
        if (number < 0) {
            addFaults(table, -1, table.takeFaults());
            if (!row.trip.empty() && m_tripIds.isJudged)
                table.lesserFault(row, "trip_id", row.trip, idOf(tripsFile), Concern::Timetable);
            return;
        }
        Trip& trip = m_trips[number];
        const int stop = table.refer(m_reading.stops, stopsFile, row, "stop_id", row.stop);
        const QVector<FeedProblem> faults = table.takeFaults();
        if (!faults.isEmpty())
            addFaults(table, trip.route, faults);
        if (stop < 0 || row.sequence < 0)
            return;
        if (trip.group < 0) {
            trip.group = static_cast<int>(m_groups.size());
            m_groups.append(number);
        }
        const bool isKept = trip.kept >= 0;
        m_times.push_back({trip.group, row.sequence, stop, row.line,
                           isKept ? timeOf(row, "arrival_time", row.arrival, table) : -1,
                           isKept ? timeOf(row, "departure_time", row.departure, table) : -1});
    }

    /// Rows of a trip mostly follow one another.
    int tripOf(Id id)
    {
        if (m_lastTrip < 0 || m_tripIds.table.at(m_lastTrip) != id)
            m_lastTrip = m_tripIds.table.find(id);
        return m_lastTrip;
    }

    static int timeOf(const Row& row, const char* column, Id text, TableReport& table)
    {
        const int time = text.empty() ? -1 : seconds(text);
        if (time < 0 && !text.empty())
            table.lesserFault(row, column, text,
                              QStringLiteral("a time such as 8:05:00 or 25:10:00"),
                              Concern::Timetable);
        return time;
    }

    /// The stops of one trip.
    template <class Iterator>
    void addRun(Iterator first, Iterator end, TableReport& table)
    {
        const Trip& trip = m_trips.at(m_groups.at(first->trip));
        QVector<int> run;
        run.reserve(static_cast<int>(end - first));
        for (auto time = first; time != end; ++time) {
            if (time != first && (time - 1)->sequence == time->sequence)
                addFaults(table, trip.route,
                          {{table.path(),
                            time->line,
                            0,
                            {},
                            QStringLiteral("stop_sequence"),
                            quoted(QString::number(time->sequence)),
                            inLineToo((time - 1)->line)}});
            run.append(time->stop);
            if (trip.kept >= 0)
                m_network.stopTimes.append({m_network.trips.at(trip.kept).id,
                                            m_network.stops.at(time->stop).id, time->sequence,
                                            time->arrival, time->departure});
        }
        QVector<QVector<int>>& runs = m_tariff.routes[trip.route].runs;
        if (runs.isEmpty() || runs.last() != run)
            runs.append(run);
    }

    Reading& m_reading;
    Tables& m_tables;
    Tariff& m_tariff;
    Network& m_network;
    static constexpr int maxFaultsOfRoute = 10;

    QVector<bool> m_isKept;     ///< by route
    QVector<int> m_faultCounts; ///< by route
    Ids m_tripIds;
    QVector<Trip> m_trips;     ///< by number of m_tripIds
    QVector<int> m_shapeLines; ///< lines of Network::trips
    QVector<int> m_groups;     ///< trips in order of appearance in stop_times.txt
    std::deque<StopTime> m_times;
    int m_lastTrip = -1;
};

} // namespace

void readTimetable(Reading& reading) { TimetableReader(reading).read(); }

} // namespace rivo::feed::gtfs
