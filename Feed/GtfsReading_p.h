#pragma once

#include "Feed.h"
#include "GtfsTables_p.h"
#include "Tariff.h"

namespace rivo::feed::gtfs
{

/// A feed that is being read: what its files gave so far. Each step reads some files and refers to
/// what the steps before it have defined.
struct Reading
{
    const QString& path; ///< of the feed
    Tables& tables;
    Feed& feed;
    Tariff& tariff;

    Ids agencies;
    Ids networks;
    Ids routes;
    Ids areas;
    Ids stops;
    Ids categories;
    Ids media;
    Ids times;
    Ids products;
};

// In their order:

/// agency.txt, feed_info.txt.
void readOperator(Reading& reading);

/// routes.txt, networks.txt, route_networks.txt.
void readRoutes(Reading& reading);

/// areas.txt, stops.txt, stop_areas.txt. In the older form the areas are the zones of the stops.
void readStops(Reading& reading);

/// rider_categories.txt and what maps them to passenger types.
void readCategories(Reading& reading);

/// timeframes.txt with the days of their services, and the days of trips.
void readTimes(Reading& reading);

/// fare_media.txt, fare_products.txt, fare_leg_rules.txt, fare_transfer_rules.txt.
void readFares(Reading& reading);

/// fare_attributes.txt, fare_rules.txt.
void readOlderFares(Reading& reading);

/// shapes.txt, trips.txt, stop_times.txt.
void readTimetable(Reading& reading);

/// Notices the columns of a fare file that are not read.
void noticeOtherColumns(TableReport& table);

/// Takes the currency of a price, which all prices share.
void takeCurrency(Reading& reading, const QString& currency, const char* column, const Row& row,
                  TableReport& table);

/// The amount in minor units; 0 after reporting that it is none of the currency.
qint64 readAmount(const QString& amount, const QString& currency, const char* column,
                  const Row& row, TableReport& table);

} // namespace rivo::feed::gtfs
