#pragma once

#include "Feed.h"
#include "JsonRecord.h"
#include "TextForms.h"

#include <QString>
#include <QVector>

#include <limits>
#include <optional>
#include <tuple>

namespace rivo::feed::json
{

constexpr FieldRule discountRule = optional.within(priceRule.min, priceRule.max);
constexpr FieldRule amountRule = optional.within(-1'000'000'000, 1'000'000'000);

/// Identifiers of the network are positive, so that everybody knows a stop, route or trip by its
/// own number; 0 = could not be read.
constexpr FieldRule networkIdRule = required.within(1, std::numeric_limits<int>::max());
constexpr FieldRule networkIdsRule = optional.within(networkIdRule.min, networkIdRule.max);

constexpr FieldRule sharpColorRule =
    optional.satisfying(isSharpColor, R"(a colour such as "#1657BA")");
constexpr FieldRule timeRule =
    optional.satisfying(isTime, R"(a time such as "08:05:00" or "25:10:00")");
constexpr FieldRule timeOfDayRule =
    optional.satisfying(isTimeOfDay, R"(a time from "00:00:00" to "24:00:00")");
constexpr FieldRule dayDateRule = optional.satisfying(isIsoDate, R"(a date such as "2024-05-31")");
constexpr FieldRule dayRule = optional.within(1, 7);
constexpr FieldRule mediumRule = optional.within(0, 4);

struct StopEntry
{
    int id = 0;
    QString name;
    double latitude = qQNaN();
    double longitude = qQNaN();
    QVector<int> zones;
};

struct RouteEntry
{
    int id = 0;
    QString shortName;
    QString longName;
    QString color;
    QString textColor;
};

struct StopTimeEntry
{
    int stopId = 0;
    QString arrival;
    QString departure;
};

struct TripEntry
{
    int id = 0;
    int routeId = 0;
    QString serviceId;
    QString headsign;
    QString shapeId;
    QVector<StopTimeEntry> stopTimes;
};

/// The network as it is written: identifiers are numbers, stop times stand in their trip.
struct NetworkEntry
{
    QVector<NetworkZone> zones;
    QVector<StopEntry> stops;
    QVector<RouteEntry> routes;
    QVector<NetworkShape> shapes;
    QVector<TripEntry> trips;
};

/// A whole document: the feed, its format and its version.
struct Document : Feed
{
    QString format;
    int version = 0;
    std::optional<NetworkEntry> networkEntry;
};

template <>
struct Fields<Document>
{
    using R = Document;
    static constexpr std::tuple table{
        Field{"format", &R::format, required.satisfying(isFormatName, "\"rivo-feed\"")},
        Field{"version", &R::version, required.within(1, 1)},
        Field{"name", &R::name, optional},
        Field{"currency", &R::currency, currencyRule},
        Field{"columns", &R::columns, optional.within(0, 1'000)},
        Field{"taxPercent", &R::taxPercent, optional.within(0, 100)},
        Field{"supportedPassengerTypes", &R::supportedPassengerTypes, optional},
        Field{"products", &R::products, required},
        Field{"fareProducts", &R::fareProducts, optional},
        Field{"trip", &R::trip, optional},
        Field{"vehicles", &R::vehicles, optional},
        Field{"peripherals", &R::peripherals, optional},
        Field{"printerId", &R::printerId, optional.beside("peripherals")},
        Field{"zReports", &R::zReports, optional},
        Field{"network", &R::networkEntry, optional},
    };
};

template <>
struct Fields<FeedProduct>
{
    using R = FeedProduct;
    static constexpr std::tuple table{
        Field{"passengerTypeId", &R::passengerTypeId, required},
        Field{"description", &R::description, required},
        Field{"passengerTypeCode", &R::passengerTypeCode, required},
        Field{"icon", &R::icon, optional},
        Field{"price", &R::price, priceRule},
        Field{"fareProductId", &R::fareProductId, required},
        Field{"fareProductName", &R::fareProductName, required},
        Field{"isReturnFee", &R::isReturnFee, optional},
        Field{"fromStopGroupId", &R::fromStopGroupId, required},
        Field{"toStopGroupId", &R::toStopGroupId, required},
        Field{"fareProductColor", &R::fareProductColor, optional},
        Field{"hasExpired", &R::hasExpired, optional},
        Field{"fareDiscount", &R::fareDiscount, discountRule},
        Field{"isDaily", &R::isDaily, optional},
        Field{"pos", &R::pos, optional},
        Field{"validZones", &R::validZones, networkIdsRule},
        Field{"validRoutes", &R::validRoutes, networkIdsRule},
        Field{"validMedia", &R::validMedia, mediumRule},
        Field{"validTimes", &R::validTimes, optional},
        Field{"validMinutes", &R::validMinutes, optional.within(0, 527'040)},
    };
};

template <>
struct Fields<FeedTime>
{
    using R = FeedTime;
    static constexpr std::tuple table{
        Field{"days", &R::days, dayRule},
        Field{"begin", &R::begin, timeOfDayRule},
        Field{"end", &R::end, timeOfDayRule},
        Field{"firstDate", &R::firstDate, dayDateRule},
        Field{"lastDate", &R::lastDate, dayDateRule},
    };
};

template <>
struct Fields<FeedFareProduct>
{
    using R = FeedFareProduct;
    static constexpr std::tuple table{
        Field{"id", &R::id, required},
        Field{"description", &R::description, required},
        Field{"icon", &R::icon, optional},
        Field{"price", &R::price, priceRule},
        Field{"discount", &R::discount, discountRule},
        Field{"freeReturn", &R::freeReturn, optional},
        Field{"paperTicket", &R::paperTicket, optional},
        Field{"passengerTypes", &R::passengerTypes, optional},
        Field{"ticketMaterial", &R::ticketMaterial, optional},
        Field{"paymentMethod", &R::paymentMethod, optional},
        Field{"paymentChannel", &R::paymentChannel, optional},
    };
};

template <>
struct Fields<FeedTripContext>
{
    using R = FeedTripContext;
    static constexpr std::tuple table{
        Field{"routeId", &R::routeId, required},
        Field{"fromStopId", &R::fromStopId, required},
        Field{"toStopId", &R::toStopId, required},
        Field{"currentStopId", &R::currentStopId, required},
        Field{"tripsRouteId", &R::tripsRouteId, required},
        Field{"tripsExecutionId", &R::tripsExecutionId, required},
        Field{"publicRouteExecutionId", &R::publicRouteExecutionId, optional},
    };
};

template <>
struct Fields<FeedVehicle>
{
    using R = FeedVehicle;
    static constexpr std::tuple table{
        Field{"id", &R::id, required},
        Field{"registrationNumber", &R::registrationNumber, required},
        Field{"internalNumber", &R::internalNumber, optional},
        Field{"drivingStatus", &R::drivingStatus, optional},
        Field{"routeStatus", &R::routeStatus, optional},
        Field{"routeId", &R::routeId, optional},
        Field{"routeName", &R::routeName, optional},
        Field{"latitude", &R::latitude, latitudeRule.beside("longitude")},
        Field{"longitude", &R::longitude, longitudeRule.beside("latitude")},
        Field{"altitude", &R::altitude, optional.within(-1'000, 10'000).beside("latitude")},
        Field{"updated", &R::updated, optional},
        Field{"inView", &R::inView, optional},
        Field{"direction", &R::direction, optional.within(0, 360)},
    };
};

template <>
struct Fields<FeedPeripheral>
{
    using R = FeedPeripheral;
    static constexpr std::tuple table{
        Field{"id", &R::id, required},
        Field{"name", &R::name, required},
        Field{"identity", &R::identity, optional.within(0, std::numeric_limits<quint32>::max())},
        Field{"icon", &R::icon, optional},
        Field{"warning", &R::warning, optional},
        Field{"blueWarning", &R::blueWarning, optional},
        Field{"yellowWarning", &R::yellowWarning, optional},
        Field{"error", &R::error, optional},
        Field{"deviceState", &R::deviceState, optional},
        Field{"stateStr", &R::stateStr, optional},
    };
};

template <>
struct Fields<FeedZReport>
{
    using R = FeedZReport;
    static constexpr std::tuple table{
        Field{"id", &R::id, required},
        Field{"ticketCount", &R::ticketCount, optional},
        Field{"ticketSumAmnt", &R::ticketSumAmnt, amountRule},
        Field{"cardSellCount", &R::cardSellCount, optional},
        Field{"cardSellAmnt", &R::cardSellAmnt, amountRule},
        Field{"parcelCount", &R::parcelCount, optional},
        Field{"parcelAmnt", &R::parcelAmnt, amountRule},
        Field{"fromTicketNumber", &R::fromTicketNumber, optional},
        Field{"toTicketNumber", &R::toTicketNumber, optional},
        Field{"zSum", &R::zSum, amountRule},
        Field{"zNumber", &R::zNumber, amountRule},
        Field{"isClosed", &R::isClosed, optional},
        Field{"commission", &R::commission, amountRule},
        Field{"paymentDate", &R::paymentDate, optional},
        Field{"currentDebt", &R::currentDebt, amountRule},
        Field{"maxAllowedDebt", &R::maxAllowedDebt, amountRule},
    };
};

template <>
struct Fields<NetworkEntry>
{
    using R = NetworkEntry;
    static constexpr std::tuple table{
        Field{"zones", &R::zones, optional},   Field{"stops", &R::stops, optional},
        Field{"routes", &R::routes, optional}, Field{"shapes", &R::shapes, optional},
        Field{"trips", &R::trips, optional},
    };
};

template <>
struct Fields<NetworkZone>
{
    using R = NetworkZone;
    static constexpr std::tuple table{
        Field{"id", &R::number, networkIdRule},
        Field{"name", &R::name, required},
    };
};

template <>
struct Fields<StopEntry>
{
    using R = StopEntry;
    static constexpr std::tuple table{
        Field{"id", &R::id, networkIdRule},
        Field{"name", &R::name, required},
        Field{"latitude", &R::latitude, latitudeRule.beside("longitude")},
        Field{"longitude", &R::longitude, longitudeRule.beside("latitude")},
        Field{"zones", &R::zones, networkIdsRule},
    };
};

template <>
struct Fields<RouteEntry>
{
    using R = RouteEntry;
    static constexpr std::tuple table{
        Field{"id", &R::id, networkIdRule},
        Field{"shortName", &R::shortName, optional},
        Field{"longName", &R::longName, optional},
        Field{"color", &R::color, sharpColorRule},
        Field{"textColor", &R::textColor, sharpColorRule},
    };
};

template <>
struct Fields<NetworkShape>
{
    using R = NetworkShape;
    static constexpr std::tuple table{
        Field{"id", &R::id, required},
        Field{"points", &R::points, required},
    };
};

template <>
struct Fields<TripEntry>
{
    using R = TripEntry;
    static constexpr std::tuple table{
        Field{"id", &R::id, networkIdRule},          Field{"routeId", &R::routeId, networkIdRule},
        Field{"serviceId", &R::serviceId, optional}, Field{"headsign", &R::headsign, optional},
        Field{"shapeId", &R::shapeId, optional},     Field{"stopTimes", &R::stopTimes, required},
    };
};

template <>
struct Fields<StopTimeEntry>
{
    using R = StopTimeEntry;
    static constexpr std::tuple table{
        Field{"stopId", &R::stopId, networkIdRule},
        Field{"arrival", &R::arrival, timeRule},
        Field{"departure", &R::departure, timeRule},
    };
};

} // namespace rivo::feed::json
