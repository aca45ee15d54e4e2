#pragma once

#include "Feed.h"
#include "FieldRule_p.h"
#include "TextForms.h"

#include <QString>

#include <limits>
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

// Operator

struct AgencyRow : Row
{
    Id id;
    QString name;
};

template <>
struct Columns<AgencyRow>
{
    using R = AgencyRow;
    static constexpr Column<R> table[] = {
        {"agency_id", &R::id, optional},
        {"agency_name", &R::name, optional},
    };
};

struct FeedInfoRow : Row
{
    QString publisher;
};

template <>
struct Columns<FeedInfoRow>
{
    using R = FeedInfoRow;
    static constexpr Column<R> table[] = {{"feed_publisher_name", &R::publisher, optional}};
};

// Places

struct StopRow : Row
{
    Id id;
    QString code;
    QString name;
    double latitude = qQNaN();
    double longitude = qQNaN();
    Id zone;
    int locationType = 0;
    Id station;
};

template <>
struct Columns<StopRow>
{
    using R = StopRow;
    static constexpr Column<R> table[] = {
        {"stop_id", &R::id, required},
        {"stop_code", &R::code, optional.ofMap()},
        {"stop_name", &R::name, optional},
        {"stop_lat", &R::latitude, optional.within(-90, 90).beside("stop_lon").ofMap()},
        {"stop_lon", &R::longitude, optional.within(-180, 180).beside("stop_lat").ofMap()},
        {"zone_id", &R::zone, optional},
        {"location_type", &R::locationType, optional.within(0, 4)},
        {"parent_station", &R::station, optional},
    };
};

struct AreaRow : Row
{
    Id id;
    QString name;
};

template <>
struct Columns<AreaRow>
{
    using R = AreaRow;
    static constexpr Column<R> table[] = {
        {"area_id", &R::id, required},
        {"area_name", &R::name, optional},
    };
};

struct StopAreaRow : Row
{
    Id area;
    Id stop;
};

template <>
struct Columns<StopAreaRow>
{
    using R = StopAreaRow;
    static constexpr Column<R> table[] = {
        {"area_id", &R::area, required},
        {"stop_id", &R::stop, required},
    };
};

struct RouteRow : Row
{
    Id id;
    QString shortName;
    QString longName;
    QString color;
    QString textColor;
    Id agency;
    Id network;
};

template <>
struct Columns<RouteRow>
{
    using R = RouteRow;
    static constexpr FieldRule color =
        optional.satisfying(isColor, "six hexadecimal digits such as 1657BA").ofMap();
    static constexpr Column<R> table[] = {
        {"route_id", &R::id, required},
        {"route_short_name", &R::shortName, optional},
        {"route_long_name", &R::longName, optional},
        {"route_color", &R::color, color},
        {"route_text_color", &R::textColor, color},
        {"agency_id", &R::agency, optional},
        {"network_id", &R::network, optional},
    };
};

struct NetworkRow : Row
{
    Id id;
};

template <>
struct Columns<NetworkRow>
{
    using R = NetworkRow;
    static constexpr Column<R> table[] = {{"network_id", &R::id, required}};
};

struct RouteNetworkRow : Row
{
    Id network;
    Id route;
};

template <>
struct Columns<RouteNetworkRow>
{
    using R = RouteNetworkRow;
    static constexpr Column<R> table[] = {
        {"network_id", &R::network, required},
        {"route_id", &R::route, required},
    };
};

// Fares

struct CategoryRow : Row
{
    Id id;
    QString name;
    int isDefault = 0;
};

template <>
struct Columns<CategoryRow>
{
    using R = CategoryRow;
    static constexpr Column<R> table[] = {
        {"rider_category_id", &R::id, required},
        {"rider_category_name", &R::name, optional},
        {"is_default_fare_category", &R::isDefault, optional.within(0, 1)},
    };
};

struct MappingRow : Row
{
    Id category;
    QString passengerType;
};

template <>
struct Columns<MappingRow>
{
    using R = MappingRow;
    static constexpr Column<R> table[] = {
        {"rider_category_id", &R::category, required},
        {"passenger_type", &R::passengerType, required},
    };
};

struct MediumRow : Row
{
    Id id;
    QString name;
    int type = 0;
};

template <>
struct Columns<MediumRow>
{
    using R = MediumRow;
    static constexpr Column<R> table[] = {
        {"fare_media_id", &R::id, required},
        {"fare_media_name", &R::name, optional},
        {"fare_media_type", &R::type, required.within(0, 4)},
    };
};

struct ProductRow : Row
{
    Id product;
    QString name;
    Id category;
    Id medium;
    QString amount;
    QString currency;
};

template <>
struct Columns<ProductRow>
{
    using R = ProductRow;
    static constexpr Column<R> table[] = {
        {"fare_product_id", &R::product, required},
        {"fare_product_name", &R::name, optional},
        {"rider_category_id", &R::category, optional},
        {"fare_media_id", &R::medium, optional},
        {"amount", &R::amount, required.satisfying(isAmount, "a decimal number such as 4.50")},
        {"currency", &R::currency, currencyRule},
    };
};

constexpr FieldRule sequenceRule = required.within(0, std::numeric_limits<int>::max());

struct LegRuleRow : Row
{
    Id group;
    Id network;
    Id fromArea;
    Id toArea;
    Id fromTimes;
    Id toTimes;
    Id product;
    int priority = 0;
};

template <>
struct Columns<LegRuleRow>
{
    using R = LegRuleRow;
    static constexpr Column<R> table[] = {
        {"leg_group_id", &R::group, optional},
        {"network_id", &R::network, optional},
        {"from_area_id", &R::fromArea, optional},
        {"to_area_id", &R::toArea, optional},
        {"from_timeframe_group_id", &R::fromTimes, optional},
        {"to_timeframe_group_id", &R::toTimes, optional},
        {"fare_product_id", &R::product, required},
        {"rule_priority", &R::priority, optional.within(0, std::numeric_limits<int>::max())},
    };
};

struct TransferRuleRow : Row
{
    Id fromGroup;
    Id toGroup;
    Id product;
};

template <>
struct Columns<TransferRuleRow>
{
    using R = TransferRuleRow;
    static constexpr Column<R> table[] = {
        {"from_leg_group_id", &R::fromGroup, optional},
        {"to_leg_group_id", &R::toGroup, optional},
        {"fare_product_id", &R::product, optional},
    };
};

struct TimeframeRow : Row
{
    Id group;
    QString start;
    QString end;
    Id service;
};

template <>
struct Columns<TimeframeRow>
{
    using R = TimeframeRow;
    static constexpr FieldRule time =
        optional.satisfying(isTimeOfDay, "a time from 0:00:00 to 24:00:00");
    static constexpr Column<R> table[] = {
        {"timeframe_group_id", &R::group, required},
        {"start_time", &R::start, time.beside("end_time")},
        {"end_time", &R::end, time.beside("start_time")},
        {"service_id", &R::service, required},
    };
};

struct FareAttributeRow : Row
{
    Id fare;
    QString price;
    QString currency;
    int paymentMethod = 0;
    Id agency;
};

template <>
struct Columns<FareAttributeRow>
{
    using R = FareAttributeRow;
    static constexpr Column<R> table[] = {
        {"fare_id", &R::fare, required},
        {"price", &R::price, required.satisfying(isDecimal, "a decimal number such as 4.50")},
        {"currency_type", &R::currency, currencyRule},
        {"payment_method", &R::paymentMethod, required.within(0, 1)},
        {"agency_id", &R::agency, optional},
    };
};

struct FareRuleRow : Row
{
    Id fare;
    Id route;
    Id origin;
    Id destination;
    Id contains;
};

template <>
struct Columns<FareRuleRow>
{
    using R = FareRuleRow;
    static constexpr Column<R> table[] = {
        {"fare_id", &R::fare, required},         {"route_id", &R::route, optional},
        {"origin_id", &R::origin, optional},     {"destination_id", &R::destination, optional},
        {"contains_id", &R::contains, optional},
    };
};

// Days

struct CalendarRow : Row
{
    Id service;
    int monday = 0;
    int tuesday = 0;
    int wednesday = 0;
    int thursday = 0;
    int friday = 0;
    int saturday = 0;
    int sunday = 0;
    QString start;
    QString end;
};

constexpr auto dateInWords = "a date such as 20240531";

template <>
struct Columns<CalendarRow>
{
    using R = CalendarRow;
    static constexpr FieldRule day = required.within(0, 1);
    static constexpr FieldRule date = optional.satisfying(isGtfsDate, dateInWords);
    static constexpr Column<R> table[] = {
        {"service_id", &R::service, required}, {"monday", &R::monday, day},
        {"tuesday", &R::tuesday, day},         {"wednesday", &R::wednesday, day},
        {"thursday", &R::thursday, day},       {"friday", &R::friday, day},
        {"saturday", &R::saturday, day},       {"sunday", &R::sunday, day},
        {"start_date", &R::start, date},       {"end_date", &R::end, date},
    };
};

struct CalendarDateRow : Row
{
    Id service;
    QString date;
    int exception = 0;
};

template <>
struct Columns<CalendarDateRow>
{
    using R = CalendarDateRow;
    static constexpr Column<R> table[] = {
        {"service_id", &R::service, required},
        {"date", &R::date, required.satisfying(isGtfsDate, dateInWords)},
        {"exception_type", &R::exception, required.within(1, 2)},
    };
};

// Timetable and map

struct ShapeRow : Row
{
    Id id;
    double latitude = 0.0;
    double longitude = 0.0;
    int sequence = -1;
};

template <>
struct Columns<ShapeRow>
{
    using R = ShapeRow;
    static constexpr Column<R> table[] = {
        {"shape_id", &R::id, required},
        {"shape_pt_lat", &R::latitude, required.within(-90, 90)},
        {"shape_pt_lon", &R::longitude, required.within(-180, 180)},
        {"shape_pt_sequence", &R::sequence, sequenceRule},
    };
};

struct TripRow : Row
{
    Id route;
    Id service;
    Id id;
    QString headsign;
    Id shape;
};

template <>
struct Columns<TripRow>
{
    using R = TripRow;
    static constexpr Column<R> table[] = {
        {"route_id", &R::route, required},
        {"service_id", &R::service, optional.ofMap()},
        {"trip_id", &R::id, required},
        {"trip_headsign", &R::headsign, optional.ofMap()},
        {"shape_id", &R::shape, optional.ofMap()},
    };
};

struct StopTimeRow : Row
{
    Id trip;
    Id stop;
    int sequence = -1;
    Id arrival;
    Id departure;
};

template <>
struct Columns<StopTimeRow>
{
    using R = StopTimeRow;
    static constexpr Column<R> table[] = {
        {"trip_id", &R::trip, required},
        {"stop_id", &R::stop, required},
        {"stop_sequence", &R::sequence, sequenceRule},
        {"arrival_time", &R::arrival, optional.ofMap()},
        {"departure_time", &R::departure, optional.ofMap()},
    };
};

} // namespace rivo::feed::gtfs
