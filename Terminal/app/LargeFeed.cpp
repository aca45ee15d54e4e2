#include "LargeFeed.h"

#include <FeedLoader.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <cstdlib>

namespace rivo::terminal::benchmark
{

namespace
{

constexpr int areaCount = 245; // whose pairs are just more than 60,000
constexpr int fareCount = 40;
constexpr int routeCount = 4;
constexpr int stopsOfTrip = 40;
constexpr int minutesBetweenTrips = 15;

/// One file of the folder, row by row.
class Table
{
public:
    Table(const QTemporaryDir& folder, const char* name, const char* header)
        : m_file(folder.filePath(QLatin1String(name)))
    {
        m_file.open(QIODevice::WriteOnly);
        m_stream.setDevice(&m_file);
        m_stream << header << '\n';
    }

    void add(const QString& row) { m_stream << row << '\n'; }

private:
    QFile m_file;
    QTextStream m_stream;
};

void writeAreas(const QTemporaryDir& folder)
{
    Table areas(folder, "areas.txt", "area_id,area_name");
    Table stops(folder, "stops.txt", "stop_id,stop_name,stop_lat,stop_lon");
    Table stopAreas(folder, "stop_areas.txt", "area_id,stop_id");
    for (int i = 0; i < areaCount; ++i) {
        areas.add(QStringLiteral("a%1,Area %1").arg(i));
        stops.add(QStringLiteral("s%1,Stop %1,50.%2,20.%2").arg(i).arg(i, 3, 10, QLatin1Char('0')));
        stopAreas.add(QStringLiteral("a%1,s%1").arg(i));
    }
}

void writeFares(const QTemporaryDir& folder)
{
    Table riders(folder, "rider_categories.txt", "rider_category_id,rider_category_name");
    riders.add(QStringLiteral("adult,Adult"));
    riders.add(QStringLiteral("child,Child"));
    Table products(folder, "fare_products.txt",
                   "fare_product_id,fare_product_name,rider_category_id,amount,currency");
    for (int fare = 0; fare < fareCount; ++fare) {
        products.add(QStringLiteral("f%1,Single %1,adult,%2.50,EUR").arg(fare).arg(fare + 1));
        products.add(QStringLiteral("f%1,Single %1,child,%2.25,EUR").arg(fare).arg(fare + 1));
    }
    Table rules(folder, "fare_leg_rules.txt",
                "leg_group_id,fare_product_id,from_area_id,to_area_id");
    for (int from = 0; from < areaCount; ++from) {
        for (int to = 0; to < areaCount; ++to)
            rules.add(QStringLiteral("g,f%1,a%2,a%3")
                          .arg(std::min(std::abs(from - to), fareCount - 1))
                          .arg(from)
                          .arg(to));
    }
}

QString timeText(int minutes)
{
    return QStringLiteral("%1:%2:00")
        .arg(minutes / 60, 2, 10, QLatin1Char('0'))
        .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

void writeTimetable(const QTemporaryDir& folder)
{
    Table agencies(folder, "agency.txt", "agency_id,agency_name");
    agencies.add(QStringLiteral("1,City"));
    Table routes(folder, "routes.txt", "route_id,agency_id,route_short_name");
    Table trips(folder, "trips.txt", "route_id,service_id,trip_id");
    Table times(folder, "stop_times.txt",
                "trip_id,arrival_time,departure_time,stop_id,stop_sequence");
    for (int route = 0; route < routeCount; ++route) {
        routes.add(QStringLiteral("r%1,1,%1").arg(route));
        for (int start = 5 * 60; start < 23 * 60; start += minutesBetweenTrips) {
            for (const bool isBack : {false, true}) {
                const QString trip =
                    QStringLiteral("t%1-%2-%3").arg(route).arg(start).arg(isBack ? 1 : 0);
                trips.add(QStringLiteral("r%1,W,%2").arg(route).arg(trip));
                for (int call = 0; call < stopsOfTrip; ++call) {
                    const int place = isBack ? stopsOfTrip - 1 - call : call;
                    times.add(QStringLiteral("%1,%2,%2,s%3,%4")
                                  .arg(trip, timeText(start + call))
                                  .arg((route * 31 + place * 6) % areaCount)
                                  .arg(call));
                }
            }
        }
    }
}

} // namespace

std::optional<feed::Feed> largeFeed()
{
    const QTemporaryDir folder;
    if (!folder.isValid())
        return std::nullopt;
    writeAreas(folder);
    writeFares(folder);
    writeTimetable(folder);
    feed::FeedOptions options;
    options.riderCategories = {{QStringLiteral("adult"), QStringLiteral("PT_ADULT")},
                               {QStringLiteral("child"), QStringLiteral("PT_SCHOOLBOY")}};
    return feed::loadFeed(folder.path(), options).feed;
}

} // namespace rivo::terminal::benchmark
