#pragma once

#include "GtfsColumns_p.h"
#include "TextForms.h"

#include <QString>

#include <limits>

namespace rivo::feed::gtfs
{

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

} // namespace rivo::feed::gtfs
