#include "FeedChecks.h"

#include "Fuzzing.h"
#include "OfferChecks.h"

#include "AssetsModel.h"
#include "FareProductsModel.h"
#include "FeedToModels.h"
#include "PassengerTypesModel.h"
#include "PeripheralsModel.h"
#include "ZReportModel.h"
#include "ZoneNames.h"

#include <QCoreApplication>
#include <QEvent>

#include <cmath>

using namespace rivo::feed;

namespace
{

constexpr int mostEntries = 120;
constexpr int longestText = 80;

void checkLine(const QString& line, const QString& path)
{
    fuzzing::require(line.startsWith(path), "a problem or notice names another file");
    fuzzing::require(line.size() < 20'000, "a problem or notice is endless");
    for (const QChar character : line)
        fuzzing::require(character.category() != QChar::Other_Control,
                         "a problem or notice has control characters");
}

void checkText(const QString& text, bool isRequired = false)
{
    fuzzing::require(text.toUcs4().size() <= longestText, "a text is too long");
    fuzzing::require(!isRequired || !text.isEmpty(), "a required text is empty");
}

/// False for NaN.
void checkNumber(double number, double least, double most, const char* what)
{
    fuzzing::require(number >= least && number <= most, what);
}

void checkPlace(double latitude, double longitude)
{
    fuzzing::require(std::isnan(latitude) == std::isnan(longitude), "half a position");
    if (std::isnan(latitude))
        return;
    checkNumber(latitude, -90, 90, "latitude");
    checkNumber(longitude, -180, 180, "longitude");
}

void checkProducts(const Feed& feed)
{
    for (const FeedProduct& product : feed.products) {
        checkText(product.description, true);
        fuzzing::require(!product.fareProductName.isEmpty(), "a product without a name");
        checkText(product.icon);
        checkText(product.fareProductColor);
        checkNumber(product.price, 0, 1e6, "price");
        checkNumber(product.fareDiscount, 0, 1e6, "fareDiscount");
    }
    for (const FeedFareProduct& product : feed.fareProducts) {
        checkText(product.description, true);
        checkNumber(product.price, 0, 1e6, "price");
        checkNumber(product.discount, 0, 1e6, "discount");
    }
}

void checkFleet(const Feed& feed)
{
    for (const FeedVehicle& vehicle : feed.vehicles) {
        checkText(vehicle.registrationNumber, true);
        checkPlace(vehicle.latitude, vehicle.longitude);
        checkNumber(vehicle.direction, 0, 360, "direction");
        fuzzing::require(std::isnan(vehicle.altitude) || !std::isnan(vehicle.latitude),
                         "an altitude without a position");
    }
    bool hasPrinter = false;
    for (const FeedPeripheral& device : feed.peripherals) {
        checkText(device.name, true);
        hasPrinter = hasPrinter || feed.printerId == device.id;
    }
    fuzzing::require(!feed.printerId || hasPrinter, "the printer is no peripheral");
    for (const FeedZReport& report : feed.zReports) {
        for (const double sum : {report.ticketSumAmnt, report.cardSellAmnt, report.parcelAmnt,
                                 report.zSum, report.commission, report.zNumber})
            checkNumber(sum, -1e9, 1e9, "a sum of a report");
    }
}

void checkNetwork(const Network& network)
{
    for (const NetworkStop& stop : network.stops) {
        fuzzing::require(!stop.id.isEmpty(), "a stop without an id");
        checkPlace(stop.latitude, stop.longitude);
    }
    for (const NetworkService& service : network.services)
        fuzzing::require(service.days >= 0 && service.days < 128, "days of a service");
    for (const NetworkShape& shape : network.shapes) {
        for (const NetworkShapePoint& point : shape.points) {
            checkNumber(point.latitude, -90, 90, "latitude of a shape");
            checkNumber(point.longitude, -180, 180, "longitude of a shape");
        }
    }
    for (int i = 1; i < network.stopTimes.size(); ++i) {
        const NetworkStopTime& before = network.stopTimes.at(i - 1);
        const NetworkStopTime& time = network.stopTimes.at(i);
        fuzzing::require(before.tripId != time.tripId || before.sequence < time.sequence,
                         "the stop times of a trip are not in order");
        fuzzing::require(time.arrival >= -1 && time.departure >= -1, "a stop time is negative");
    }
}

/// Hands everything over, as the terminal does.
void checkModels(const Feed& feed)
{
    QObject owner;
    FareProductsModel fareProducts(&owner);
    addFareProducts(feed, fareProducts);
    fuzzing::require(fareProducts.rowCount() == feed.fareProducts.size(), "rows of fareProducts");
    AssetsModel vehicles(&owner);
    addVehicles(feed, vehicles);
    fuzzing::require(vehicles.rowCount() == feed.vehicles.size(), "rows of vehicles");
    PeripheralsModel peripherals(&owner);
    addPeripherals(feed, peripherals);
    fuzzing::require(peripherals.rowCount() == feed.peripherals.size(), "rows of peripherals");
    ZReportModel reports(&owner);
    addZReports(feed, reports);
    fuzzing::require(reports.rowCount() == feed.zReports.size(), "rows of zReports");

    const ZoneNames zones(feed);
    for (const FeedProduct& product : feed.products)
        fuzzing::require(zones.name(product.toStopGroupId).isEmpty() ==
                             (product.toStopGroupId == 0),
                         "the name of a zone");

    PassengerTypesModel grid(&owner);
    grid.setSupportedPassengerTypeCodes(feed.supportedPassengerTypes);
    grid.clearData();
    addProducts(feed, grid);
    grid.sortAndRegroup(feed.supportedPassengerTypes, feed.columns);
    fuzzing::require(grid.rowCount() >= feed.products.size(), "tiles are missing");
}

} // namespace

namespace fuzzing
{

FeedOptions tightOptions()
{
    FeedOptions options;
    options.limits.jsonBytes = 64 * 1024;
    options.limits.jsonDepth = 12;
    options.limits.jsonValues = 4000;
    options.limits.csvBytes = 32 * 1024;
    options.limits.csvRecords = 200;
    options.limits.csvColumns = 40;
    options.limits.entries = mostEntries;
    options.limits.textLength = longestText;
    return options;
}

void checkFeed(const FeedResult& result, const QString& path)
{
    require(result.feed.has_value() == result.problems.isEmpty(),
            "neither a feed nor problems, or both");
    require(!result.feed || result.furtherProblems == 0, "a feed with further problems");
    for (const FeedProblem& problem : result.problems) {
        require(problem.line >= 0 && problem.column >= 0, "a place is negative");
        checkLine(problem.toString(), path);
    }
    for (const QString& line : result.noticeLines())
        require(!line.isEmpty(), "an empty notice");
    if (!result.feed)
        return;
    const Feed& feed = *result.feed;
    for (const int count :
         {feed.products.size(), feed.fareProducts.size(), feed.vehicles.size(),
          feed.peripherals.size(), feed.zReports.size(), feed.supportedPassengerTypes.size()})
        require(count <= mostEntries, "more entries than the limit");
    require(feed.columns >= 0 && feed.columns <= 1000, "columns");
    checkProducts(feed);
    checkFleet(feed);
    checkNetwork(feed.network);
    checkModels(feed);
    if (feed.tariff) {
        checkTariff(*feed.tariff);
        checkSomeOffers(*feed.tariff);
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::sendPostedEvents();
}

} // namespace fuzzing
