#pragma once

#include "Feed.h"
#include "FieldRule.h"
#include "TextForms.h"

#include <QDateTime>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <limits>
#include <optional>
#include <variant>

namespace rivo::feed::json
{

constexpr FieldRule discountRule = optional.within(priceRule.min, priceRule.max);
constexpr FieldRule amountRule = optional.within(-1'000'000'000, 1'000'000'000);

constexpr FieldRule dateRule =
    required.satisfying(isDateAndTime, "a date and time such as \"2024-05-31T18:30:00+02:00\"");

/// Identifiers of the network are positive, so that everybody knows a stop, route or trip by its
/// own number; 0 = could not be read.
constexpr FieldRule networkIdRule = required.within(1, std::numeric_limits<int>::max());

constexpr FieldRule sharpColorRule =
    optional.satisfying(isSharpColor, R"(a colour such as "#1657BA")");
constexpr FieldRule timeRule =
    optional.satisfying(isTime, R"(a time such as "08:05:00" or "25:10:00")");
constexpr FieldRule latitudeRule = optional.within(-90, 90);
constexpr FieldRule longitudeRule = optional.within(-180, 180);

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

/// A whole document: the feed and what it says about itself.
struct Document : Feed
{
    QString format;
    int version = 0;
    std::optional<NetworkEntry> networkEntry;
};

/// One key of an object: where its value goes and what it must be.
template <class Record>
struct Field
{
    const char* key;
    std::variant<int Record::*, quint32 Record::*, double Record::*, bool Record::*,
                 QString Record::*, QDateTime Record::*, QStringList Record::*,
                 QVariantList Record::*, QVector<FeedProduct> Record::*,
                 QVector<FeedFareProduct> Record::*, std::optional<FeedTripContext> Record::*,
                 QVector<FeedVehicle> Record::*, QVector<FeedPeripheral> Record::*,
                 QVector<FeedZReport> Record::*, std::optional<NetworkEntry> Record::*,
                 QVector<NetworkZone> Record::*, QVector<StopEntry> Record::*,
                 QVector<RouteEntry> Record::*, QVector<NetworkShape> Record::*,
                 QVector<TripEntry> Record::*, QVector<StopTimeEntry> Record::*,
                 QVector<NetworkShapePoint> Record::*, QVector<int> Record::*,
                 std::optional<int> Record::*>
        member;
    FieldRule rule;
};

/// The keys of a record, in the order of its fields.
template <class Record>
struct Fields;

template <>
struct Fields<Document>
{
    using R = Document;
    static constexpr Field<R> table[] = {
        {"format", &R::format, required.satisfying(isFormatName, "\"rivo-feed\"")},
        {"version", &R::version, required.within(1, 1)},
        {"name", &R::name, optional},
        {"currency", &R::currency, currencyRule},
        {"columns", &R::columns, optional.within(0, 1'000)},
        {"supportedPassengerTypes", &R::supportedPassengerTypes, optional},
        {"products", &R::products, required},
        {"fareProducts", &R::fareProducts, optional},
        {"trip", &R::trip, optional},
        {"vehicles", &R::vehicles, optional},
        {"peripherals", &R::peripherals, optional},
        {"printerId", &R::printerId, optional.beside("peripherals")},
        {"zReports", &R::zReports, optional},
        {"network", &R::networkEntry, optional},
    };
};

template <>
struct Fields<FeedProduct>
{
    using R = FeedProduct;
    static constexpr Field<R> table[] = {
        {"passengerTypeId", &R::passengerTypeId, required},
        {"description", &R::description, required},
        {"passengerTypeCode", &R::passengerTypeCode, required},
        {"icon", &R::icon, optional},
        {"price", &R::price, priceRule},
        {"fareProductId", &R::fareProductId, required},
        {"fareProductName", &R::fareProductName, required},
        {"isReturnFee", &R::isReturnFee, optional},
        {"fromStopGroupId", &R::fromStopGroupId, required},
        {"toStopGroupId", &R::toStopGroupId, required},
        {"fareProductColor", &R::fareProductColor, optional},
        {"hasExpired", &R::hasExpired, optional},
        {"fareDiscount", &R::fareDiscount, discountRule},
        {"isDaily", &R::isDaily, optional},
        {"pos", &R::pos, optional},
    };
};

template <>
struct Fields<FeedFareProduct>
{
    using R = FeedFareProduct;
    static constexpr Field<R> table[] = {
        {"id", &R::id, required},
        {"description", &R::description, required},
        {"icon", &R::icon, optional},
        {"price", &R::price, priceRule},
        {"discount", &R::discount, discountRule},
        {"freeReturn", &R::freeReturn, optional},
        {"paperTicket", &R::paperTicket, optional},
        {"passengerTypes", &R::passengerTypes, optional},
        {"ticketMaterial", &R::ticketMaterial, optional},
        {"paymentMethod", &R::paymentMethod, optional},
        {"paymentChannel", &R::paymentChannel, optional},
    };
};

template <>
struct Fields<FeedTripContext>
{
    using R = FeedTripContext;
    static constexpr Field<R> table[] = {
        {"routeId", &R::routeId, required},
        {"fromStopId", &R::fromStopId, required},
        {"toStopId", &R::toStopId, required},
        {"currentStopId", &R::currentStopId, required},
        {"tripsRouteId", &R::tripsRouteId, required},
        {"tripsExecutionId", &R::tripsExecutionId, required},
        {"publicRouteExecutionId", &R::publicRouteExecutionId, optional},
    };
};

template <>
struct Fields<FeedVehicle>
{
    using R = FeedVehicle;
    static constexpr Field<R> table[] = {
        {"id", &R::id, required},
        {"registrationNumber", &R::registrationNumber, required},
        {"internalNumber", &R::internalNumber, optional},
        {"drivingStatus", &R::drivingStatus, optional},
        {"routeStatus", &R::routeStatus, optional},
        {"routeId", &R::routeId, optional},
        {"routeName", &R::routeName, optional},
        {"latitude", &R::latitude, latitudeRule.beside("longitude")},
        {"longitude", &R::longitude, longitudeRule.beside("latitude")},
        {"altitude", &R::altitude, optional.within(-1'000, 10'000).beside("latitude")},
        {"updated", &R::updated, optional},
        {"inView", &R::inView, optional},
        {"direction", &R::direction, optional.within(0, 360)},
    };
};

template <>
struct Fields<FeedPeripheral>
{
    using R = FeedPeripheral;
    static constexpr Field<R> table[] = {
        {"id", &R::id, required},
        {"name", &R::name, required},
        {"identity", &R::identity, optional.within(0, std::numeric_limits<quint32>::max())},
        {"icon", &R::icon, optional},
        {"warning", &R::warning, optional},
        {"blueWarning", &R::blueWarning, optional},
        {"yellowWarning", &R::yellowWarning, optional},
        {"error", &R::error, optional},
        {"deviceState", &R::deviceState, optional},
        {"stateStr", &R::stateStr, optional},
    };
};

template <>
struct Fields<FeedZReport>
{
    using R = FeedZReport;
    static constexpr Field<R> table[] = {
        {"id", &R::id, required},
        {"ticketCount", &R::ticketCount, optional},
        {"ticketSumAmnt", &R::ticketSumAmnt, amountRule},
        {"cardSellCount", &R::cardSellCount, optional},
        {"cardSellAmnt", &R::cardSellAmnt, amountRule},
        {"parcelCount", &R::parcelCount, optional},
        {"parcelAmnt", &R::parcelAmnt, amountRule},
        {"fromTicketNumber", &R::fromTicketNumber, optional},
        {"toTicketNumber", &R::toTicketNumber, optional},
        {"zSum", &R::zSum, amountRule},
        {"zNumber", &R::zNumber, amountRule},
        {"isClosed", &R::isClosed, optional},
        {"commission", &R::commission, amountRule},
        {"paymentDate", &R::paymentDate, optional},
        {"currentDebt", &R::currentDebt, amountRule},
        {"maxAllowedDebt", &R::maxAllowedDebt, amountRule},
    };
};

template <>
struct Fields<NetworkEntry>
{
    using R = NetworkEntry;
    static constexpr Field<R> table[] = {
        {"zones", &R::zones, optional},   {"stops", &R::stops, optional},
        {"routes", &R::routes, optional}, {"shapes", &R::shapes, optional},
        {"trips", &R::trips, optional},
    };
};

template <>
struct Fields<NetworkZone>
{
    using R = NetworkZone;
    static constexpr Field<R> table[] = {
        {"id", &R::number, networkIdRule},
        {"name", &R::name, required},
    };
};

template <>
struct Fields<StopEntry>
{
    using R = StopEntry;
    static constexpr Field<R> table[] = {
        {"id", &R::id, networkIdRule},
        {"name", &R::name, required},
        {"latitude", &R::latitude, latitudeRule.beside("longitude")},
        {"longitude", &R::longitude, longitudeRule.beside("latitude")},
        {"zones", &R::zones, optional},
    };
};

template <>
struct Fields<RouteEntry>
{
    using R = RouteEntry;
    static constexpr Field<R> table[] = {
        {"id", &R::id, networkIdRule},
        {"shortName", &R::shortName, optional},
        {"longName", &R::longName, optional},
        {"color", &R::color, sharpColorRule},
        {"textColor", &R::textColor, sharpColorRule},
    };
};

template <>
struct Fields<NetworkShape>
{
    using R = NetworkShape;
    static constexpr Field<R> table[] = {
        {"id", &R::id, required},
        {"points", &R::points, required},
    };
};

template <>
struct Fields<TripEntry>
{
    using R = TripEntry;
    static constexpr Field<R> table[] = {
        {"id", &R::id, networkIdRule},          {"routeId", &R::routeId, networkIdRule},
        {"serviceId", &R::serviceId, optional}, {"headsign", &R::headsign, optional},
        {"shapeId", &R::shapeId, optional},     {"stopTimes", &R::stopTimes, required},
    };
};

template <>
struct Fields<StopTimeEntry>
{
    using R = StopTimeEntry;
    static constexpr Field<R> table[] = {
        {"stopId", &R::stopId, networkIdRule},
        {"arrival", &R::arrival, timeRule},
        {"departure", &R::departure, timeRule},
    };
};

} // namespace rivo::feed::json
