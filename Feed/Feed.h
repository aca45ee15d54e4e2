#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <QtNumeric>

#include <memory>
#include <optional>

namespace rivo::feed
{

/// Days and hours at which a product is sold. Empty texts and lists restrict nothing.
struct FeedTime
{
    QVector<int> days; ///< of the week, 1 = Monday
    QString begin;     ///< HH:MM:SS; belongs to the time
    QString end;       ///< HH:MM:SS; does not
    QString firstDate; ///< YYYY-MM-DD
    QString lastDate;
};

/// One sellable product: the arguments of PassengerTypesModel::addItem by name, in their order.
struct FeedProduct
{
    int passengerTypeId = 0;
    QString description;       ///< name of the passenger type, never empty
    QString passengerTypeCode; ///< "PT_ADULT" ...; the model takes an unknown text as type 0
    QString icon;              ///< URL; empty = the icon of the passenger type
    double price = 0.0;        ///< in units of the feed's currency
    int fareProductId = 0;
    QString fareProductName; ///< never empty
    bool isReturnFee = false;
    int fromStopGroupId = 0; ///< origin zone
    int toStopGroupId = 0;   ///< destination zone
    QString fareProductColor;
    bool hasExpired = false;
    double fareDiscount = 0.0;
    bool isDaily = false;
    int pos = -1; ///< grid position from 1; -1 = none assigned; not judged by the readers

    // Where a product of a JSON feed is sold, which no model asks; an empty list restricts nothing.
    // Those of a GTFS feed are in its tariff.

    QVector<int> validZones;  ///< where rides begin and end
    QVector<int> validRoutes; ///< identifiers
    QVector<int> validMedia;  ///< types; see TariffMedium
    QVector<FeedTime> validTimes;
    int validMinutes = 0; ///< from the sale on; 0 = not said. For people: on the ticket
};

/// One entry of the fare product catalogue: the arguments of FareProductsModel::addItem.
struct FeedFareProduct
{
    int id = -1;
    QString description;
    QString icon;
    double price = 0.0;
    double discount = 0.0;
    bool freeReturn = false;
    bool paperTicket = false;
    QVariantList passengerTypes; ///< of int and QString, as the three lists below
    QVariantList ticketMaterial;
    QVariantList paymentMethod;
    QVariantList paymentChannel;
};

/// Route and trip of the sale, which the shopping basket copies into every ticket.
struct FeedTripContext
{
    int routeId = -1;
    int fromStopId = -1;
    int toStopId = -1;
    int currentStopId = -1;
    int tripsRouteId = -1;
    int tripsExecutionId = -1;
    QString publicRouteExecutionId;
};

/// One vehicle of the fleet: the arguments of AssetItem, the coordinate as its three numbers.
struct FeedVehicle
{
    int id = -1;
    QString registrationNumber;
    QString internalNumber;
    QString drivingStatus;
    QString routeStatus;
    int routeId = -1;
    QString routeName;
    double latitude = qQNaN();  ///< degrees; NaN = position unknown
    double longitude = qQNaN(); ///< degrees; NaN = position unknown
    double altitude = qQNaN();  ///< metres above sea level; NaN = unknown
    bool updated = false;
    bool inView = false;
    double direction = 0.0; ///< degrees clockwise from north
};

/// One device of the terminal: the arguments of PeripheralItem.
struct FeedPeripheral
{
    int id = -1;
    QString name;
    quint32 identity = 0;
    QString icon;
    bool warning = true; ///< all four flags: true until the device has reported
    bool blueWarning = true;
    bool yellowWarning = true;
    bool error = true;
    int deviceState = 0;
    QString stateStr;
};

/// One report of a shift: the arguments of ZReportModel::addItem.
struct FeedZReport
{
    int id = -1;
    int ticketCount = -1;
    double ticketSumAmnt = 0.0;
    int cardSellCount = -1;
    double cardSellAmnt = 0.0;
    int parcelCount = -1;
    double parcelAmnt = 0.0;
    QString fromTicketNumber;
    QString toTicketNumber;
    double zSum = 0.0;
    double zNumber = 0.0;
    bool isClosed = false;
    double commission = 0.0;
    QDateTime paymentDate; ///< invalid = not paid yet
    double currentDebt = 0.0;
    double maxAllowedDebt = 0.0;
};

struct NetworkZone
{
    int number = 0; ///< as in FeedProduct::fromStopGroupId
    QString name;   ///< empty = none given
};

struct NetworkRoute
{
    QString id;
    QString shortName;
    QString longName;
    QString color;     ///< "#RRGGBB"; empty = none given
    QString textColor; ///< "#RRGGBB"; empty = none given
};

struct NetworkTrip
{
    QString id;
    QString routeId;
    QString serviceId;
    QString headsign;
    QString shapeId; ///< empty = no shape
};

struct NetworkStop
{
    QString id;
    QString code;
    QString name;
    double latitude = qQNaN();  ///< degrees; NaN = unknown
    double longitude = qQNaN(); ///< degrees; NaN = unknown
    QVector<int> areas;         ///< numbers as in FeedProduct::fromStopGroupId
};

struct NetworkStopTime
{
    QString tripId;
    QString stopId;
    int sequence = -1;  ///< from 0, with gaps
    int arrival = -1;   ///< seconds since the start of the service day, may pass 86400; -1 = none
    int departure = -1; ///< as arrival
};

struct NetworkShapePoint
{
    double latitude = 0.0;
    double longitude = 0.0;
};

struct NetworkShape
{
    QString id;
    QVector<NetworkShapePoint> points; ///< in the order of travel
};

/// The days that trips run on.
struct NetworkService
{
    QString id;
    int days = 0;     ///< of the week: bit 0 = Monday ... bit 6 = Sunday
    QDate first = {}; ///< invalid = no limit
    QDate last = {};  ///< invalid = no limit
    QVector<QDate> added = {};
    QVector<QDate> removed = {};

    bool runsOn(const QDate& date) const;
};

/// Where the vehicles run.
struct Network
{
    QVector<NetworkZone> zones;
    QVector<NetworkService> services; ///< empty = nothing is known of the days
    QVector<NetworkRoute> routes;
    QVector<NetworkTrip> trips;
    QVector<NetworkStop> stops;
    QVector<NetworkStopTime> stopTimes; ///< trip by trip, sequence strictly increasing in a trip
    QVector<NetworkShape> shapes;
};

struct Tariff;

/// The content of one feed of either format.
struct Feed
{
    QString name;     ///< operator; may be empty
    QString currency; ///< ISO 4217 code; empty only in a GTFS feed without products
    int columns = 0;  ///< columns of the grid; 0 = the model's own default
    QStringList supportedPassengerTypes;
    QVector<FeedProduct> products;
    QVector<FeedFareProduct> fareProducts;
    double taxPercent = 0.0; ///< of the price without tax; prices include it. 0 = not said
    std::optional<FeedTripContext> trip;
    QVector<FeedVehicle> vehicles;
    QVector<FeedPeripheral> peripherals;
    std::optional<int> printerId; ///< of the peripheral that prints tickets; none = not given
    QVector<FeedZReport> zReports;
    Network network;
    std::shared_ptr<const Tariff> tariff; ///< what may be sold where; null = all products always

    /// Digits after the decimal point of the currency's amounts: 2, or 0, 3 or 4 where ISO 4217
    /// says so.
    int currencyDecimals() const;
};

/// As Feed::currencyDecimals, for any currency; 2 for an unknown one.
int currencyDecimals(const QString& currency);

} // namespace rivo::feed
