#pragma once

#include "FieldRule.h"

#include <QString>

#include <string_view>
#include <variant>

namespace rivo::feed::gtfs
{

constexpr auto agencyFile = "agency.txt";
constexpr auto areasFile = "areas.txt";
constexpr auto calendarFile = "calendar.txt";
constexpr auto calendarDatesFile = "calendar_dates.txt";
constexpr auto categoriesFile = "rider_categories.txt";
constexpr auto fareAttributesFile = "fare_attributes.txt";
constexpr auto fareRulesFile = "fare_rules.txt";
constexpr auto feedInfoFile = "feed_info.txt";
constexpr auto legRulesFile = "fare_leg_rules.txt";
constexpr auto mappingFile = "passenger_types.txt";
constexpr auto mediaFile = "fare_media.txt";
constexpr auto networksFile = "networks.txt";
constexpr auto productsFile = "fare_products.txt";
constexpr auto routeNetworksFile = "route_networks.txt";
constexpr auto routesFile = "routes.txt";
constexpr auto shapesFile = "shapes.txt";
constexpr auto stopAreasFile = "stop_areas.txt";
constexpr auto stopTimesFile = "stop_times.txt";
constexpr auto stopsFile = "stops.txt";
constexpr auto timeframesFile = "timeframes.txt";
constexpr auto transferRulesFile = "fare_transfer_rules.txt";
constexpr auto tripsFile = "trips.txt";

// One record type per file: what is read of a row, and the columns that it is read from. Texts that
// are looked up or kept elsewhere are views, which are valid while the row is handled.

using Id = std::string_view;

struct Row
{
    int line = 0;
};

template <class R>
struct Column
{
    const char* name;
    std::variant<Id R::*, QString R::*, int R::*, double R::*> member;
    FieldRule rule;
};

template <class R>
struct Columns;

} // namespace rivo::feed::gtfs
