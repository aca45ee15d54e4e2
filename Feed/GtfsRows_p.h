#pragma once

#include "Feed.h"
#include "FieldRule_p.h"
#include "TextForms.h"

#include <QString>

#include <limits>
#include <variant>

namespace rivo::feed::gtfs
{

constexpr auto agencyFile = "agency.txt";
constexpr auto feedInfoFile = "feed_info.txt";
constexpr auto categoriesFile = "rider_categories.txt";
constexpr auto mappingFile = "passenger_types.txt";
constexpr auto mediaFile = "fare_media.txt";
constexpr auto areasFile = "areas.txt";
constexpr auto productsFile = "fare_products.txt";
constexpr auto legRulesFile = "fare_leg_rules.txt";
constexpr auto stopsFile = "stops.txt";
constexpr auto stopAreasFile = "stop_areas.txt";
constexpr auto routesFile = "routes.txt";
constexpr auto shapesFile = "shapes.txt";
constexpr auto calendarFile = "calendar.txt";
constexpr auto tripsFile = "trips.txt";
constexpr auto stopTimesFile = "stop_times.txt";

// One record type per file: what is read of a row, and the columns that it is read from.

struct Row
{
    int line = 0;
};

template <class R>
struct Column
{
    const char* name;
    std::variant<QString R::*, int R::*, double R::*> member;
    FieldRule rule;
};

template <class R>
struct Columns;

struct AgencyRow : Row
{
    QString name;
};

template <>
struct Columns<AgencyRow>
{
    static constexpr Column<AgencyRow> table[] = {{"agency_name", &AgencyRow::name, optional}};
};

struct FeedInfoRow : Row
{
    QString publisher;
};

template <>
struct Columns<FeedInfoRow>
{
    static constexpr Column<FeedInfoRow> table[] = {
        {"feed_publisher_name", &FeedInfoRow::publisher, optional}};
};

struct CategoryRow : Row
{
    QString id;
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
    QString category;
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
    QString id;
    QString name;
};

template <>
struct Columns<MediumRow>
{
    using R = MediumRow;
    static constexpr Column<R> table[] = {
        {"fare_media_id", &R::id, required},
        {"fare_media_name", &R::name, optional},
    };
};

struct AreaRow : Row
{
    QString id;
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

struct ProductRow : Row
{
    QString product;
    QString name;
    QString category;
    QString medium;
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
        {"amount", &R::amount, required.satisfying(isDecimal, "a decimal number such as 4.50")},
        {"currency", &R::currency, currencyRule},
    };
};

struct LegRuleRow : Row
{
    QString product;
    QString fromArea;
    QString toArea;
};

template <>
struct Columns<LegRuleRow>
{
    using R = LegRuleRow;
    static constexpr Column<R> table[] = {
        {"fare_product_id", &R::product, required},
        {"from_area_id", &R::fromArea, optional},
        {"to_area_id", &R::toArea, optional},
    };
};

struct StopRow : Row, NetworkStop
{
};

template <>
struct Columns<StopRow>
{
    using R = StopRow;
    static constexpr Column<R> table[] = {
        {"stop_id", &R::id, required},
        {"stop_code", &R::code, optional},
        {"stop_name", &R::name, optional},
        {"stop_lat", &R::latitude, optional.within(-90, 90).beside("stop_lon")},
        {"stop_lon", &R::longitude, optional.within(-180, 180).beside("stop_lat")},
    };
};

struct StopAreaRow : Row
{
    QString area;
    QString stop;
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

struct RouteRow : Row, NetworkRoute
{
};

template <>
struct Columns<RouteRow>
{
    using R = RouteRow;
    static constexpr FieldRule color =
        optional.satisfying(isColor, "six hexadecimal digits such as 1657BA");
    static constexpr Column<R> table[] = {
        {"route_id", &R::id, required},
        {"route_short_name", &R::shortName, optional},
        {"route_long_name", &R::longName, optional},
        {"route_color", &R::color, color},
        {"route_text_color", &R::textColor, color},
    };
};

struct ShapeRow : Row, NetworkShapePoint
{
    QString id;
    int sequence = -1;
    int group = 0; ///< number of the shape
};

constexpr FieldRule sequenceRule = required.within(0, std::numeric_limits<int>::max());

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

struct TripRow : Row, NetworkTrip
{
};

template <>
struct Columns<TripRow>
{
    using R = TripRow;
    static constexpr Column<R> table[] = {
        {"route_id", &R::routeId, required}, {"service_id", &R::serviceId, optional},
        {"trip_id", &R::id, required},       {"trip_headsign", &R::headsign, optional},
        {"shape_id", &R::shapeId, optional},
    };
};

struct CalendarRow : Row
{
    QString service;
    int monday = 0;
    int tuesday = 0;
    int wednesday = 0;
    int thursday = 0;
    int friday = 0;
    int saturday = 0;
    int sunday = 0;
};

template <>
struct Columns<CalendarRow>
{
    using R = CalendarRow;
    static constexpr FieldRule day = required.within(0, 1);
    static constexpr Column<R> table[] = {
        {"service_id", &R::service, required}, {"monday", &R::monday, day},
        {"tuesday", &R::tuesday, day},         {"wednesday", &R::wednesday, day},
        {"thursday", &R::thursday, day},       {"friday", &R::friday, day},
        {"saturday", &R::saturday, day},       {"sunday", &R::sunday, day},
    };
};

struct StopTimeRow : Row, NetworkStopTime
{
    QString arrivalText;
    QString departureText;
    int group = 0; ///< number of the trip
};

template <>
struct Columns<StopTimeRow>
{
    using R = StopTimeRow;
    static constexpr Column<R> table[] = {
        {"trip_id", &R::tripId, required},
        {"stop_id", &R::stopId, required},
        {"stop_sequence", &R::sequence, sequenceRule},
        {"arrival_time", &R::arrivalText, optional},
        {"departure_time", &R::departureText, optional},
    };
};

} // namespace rivo::feed::gtfs
