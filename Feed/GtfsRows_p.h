#pragma once

#include "GtfsColumns_p.h"
#include "TextForms.h"

#include <QString>
#include <QtNumeric>

#include <limits>

namespace rivo::feed::gtfs
{

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

constexpr FieldRule sequenceRule = required.within(0, std::numeric_limits<int>::max());

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
