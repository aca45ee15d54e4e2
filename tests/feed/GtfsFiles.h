#pragma once

#include "FeedFiles.h"
#include "GtfsCases.h"

using Files = GtfsCase::Files;

/// The feed of the first of the cases of products, which has no network.
inline const Files& base()
{
    static const Files files = GtfsCases::read(FEED_TEST_DATA "/gtfs/products.cases").first().files;
    return files;
}

inline const QByteArray productHeader =
    "fare_product_id,fare_product_name,amount,currency,rider_category_id,fare_media_id\n";
inline const QByteArray categoryHeader =
    "rider_category_id,rider_category_name,is_default_fare_category\n";
inline const QByteArray ruleHeader = "fare_product_id,from_area_id,to_area_id\n";

/// The network files, which `base` does without.
inline const Files network = {
    {"stops.txt", "stop_id,stop_code,stop_name,stop_lat,stop_lon\n"
                  "A,01,Market,52.5,-13.25\n"
                  "B,02,Station,52.6,13.5\n"},
    {"stop_areas.txt", "area_id,stop_id\n20,A\n10,B\n10,A\n20,A\n"},
    {"routes.txt", "route_id,route_short_name,route_long_name,route_color,route_text_color\n"
                   "R1,1,Market - Station,1657ba,FFFFFF\n"},
    {"shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\n"
                   "S,52.5,-13.25,1\nS,52.6,13.5,7\n"},
    {"trips.txt", "route_id,service_id,trip_id,trip_headsign,shape_id\nR1,WD,T1,Station,S\n"
                  "R1,WD,T2,Market,\n"},
    {"stop_times.txt", "trip_id,stop_sequence,stop_id,arrival_time,departure_time\n"
                       "T1,0,A,,5:00:00\nT1,4,B,05:20:30,\n"
                       "T2,0,B,23:59:59,24:00:00\nT2,1,A,25:10:00,25:10:05\n"},
};

inline Files operator+(Files files, const Files& others)
{
    for (auto file = others.begin(); file != others.end(); ++file)
        files.insert(file.key(), file.value());
    return files;
}

inline Files without(Files files, const QStringList& names)
{
    for (const QString& name : names)
        files.remove(name);
    return files;
}

/// The feed of a folder with these files.
inline rivo::feed::FeedResult loadGtfs(const Files& files,
                                       const rivo::feed::FeedOptions& options = {})
{
    QDir(QStringLiteral("gtfs")).removeRecursively();
    for (auto file = files.begin(); file != files.end(); ++file)
        FeedFiles::write(QStringLiteral("gtfs/") + file.key(), file.value());
    return load(QStringLiteral("gtfs"), options);
}
