#include "FeedFiles.h"
#include "FeedToModels.h"
#include "LogCapture.h"
#include "PassengerTypes.h"
#include "PassengerTypesModelInspector.h"
#include "RealFeed.h"
#include "TripContext.h"
#include "ZoneNames.h"

#include "AssetItem.h"
#include "AssetsModel.h"
#include "FareProductItem.h"
#include "FareProductsModel.h"
#include "PassengerTypeItem.h"
#include "PeripheralItem.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ShoppingItem.h"
#include "ZReportModel.h"

#include <QMetaProperty>
#include <QSet>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

using namespace rivo::feed;
using rivo::models::ListModel;

namespace
{

/// A product in which no two fields of a type are equal.
FeedProduct distinctProduct()
{
    FeedProduct product;
    product.passengerTypeId = 11;
    product.description = QStringLiteral("Member of a large family");
    product.passengerTypeCode = QStringLiteral("PT_LFS");
    product.icon = QStringLiteral("qrc:/icons/one.svg");
    product.price = 12.5;
    product.fareProductId = 21;
    product.fareProductName = QStringLiteral("Single");
    product.isReturnFee = true;
    product.fromStopGroupId = 31;
    product.toStopGroupId = 32;
    product.fareProductColor = QStringLiteral("#123456");
    product.hasExpired = false;
    product.fareDiscount = 7.25;
    product.pos = 41;
    return product;
}

template <class Predicate>
int countOf(const Feed& feed, Predicate predicate)
{
    return static_cast<int>(std::count_if(feed.products.begin(), feed.products.end(), predicate));
}

template <class Record, class Predicate>
bool holds(const QVector<Record>& records, Predicate predicate)
{
    return std::any_of(records.begin(), records.end(), predicate);
}

template <class Record>
QSet<QString> idsOf(const QVector<Record>& records)
{
    QSet<QString> ids;
    for (const Record& record : records)
        ids.insert(record.id);
    return ids;
}

/// The row as QML sees it, all values with their types: "description=QString(Single) ...".
QString rolesOf(ListModel& model, int row)
{
    QStringList roles;
    const QVariantMap values = model.get(row).toMap();
    for (auto role = values.begin(); role != values.end(); ++role) {
        QString value = role->toString();
        if (role->userType() == qMetaTypeId<QGeoCoordinate>()) {
            const auto position = role->value<QGeoCoordinate>();
            value = QString("%1 %2 %3 %4")
                        .arg(position.type())
                        .arg(position.latitude())
                        .arg(position.longitude())
                        .arg(position.altitude());
        }
        roles.append(QString("%1=%2(%3)").arg(role.key(), role->typeName(), value));
    }
    return roles.join('\n');
}

/// Fails unless row `row` has these roles.
#define COMPARE_ROLES(model, row, ...)                                                             \
    QCOMPARE(rolesOf(model, row), (QStringList{__VA_ARGS__}.join('\n')))

/// The texts of a role, top row first.
QString column(const ListModel& model, int role)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.data(model.index(row, 0), role).toString());
    return texts.join(' ');
}

/// Whether all rows are children of the model, which QML's garbage collector therefore spares.
bool ownsItsRows(const ListModel& model)
{
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.itemFromRow(row)->parent() != &model)
            return false;
    }
    return true;
}

FeedTripContext distinctTrip()
{
    FeedTripContext trip;
    trip.routeId = 1;
    trip.fromStopId = 2;
    trip.toStopId = 3;
    trip.currentStopId = 4;
    trip.tripsRouteId = 5;
    trip.tripsExecutionId = 6;
    trip.publicRouteExecutionId = "seven";
    return trip;
}

NetworkStop stop(const QString& name, const QVector<int>& areas)
{
    NetworkStop stop;
    stop.name = name;
    stop.areas = areas;
    return stop;
}

} // namespace

class FeedModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldReachesTheModel();
    void dailyProductsReachTheDailyOnes();
    void productsAreAddedInTheOrderOfTheFeed();
    void passengerTypesAreThoseOfTheModel();
    void fareProducts();
    void vehicles();
    void positionsOfVehicles_data();
    void positionsOfVehicles();
    void peripherals();
    void zReports();
    void emptySectionsTouchNoModel();
    void rowsAreAppendedInTheOrderOfTheFeed();
    void tripContextOfAFeed();
    void tripContextAnnouncesEachChangeOnce();
    void zoneNames_data();
    void zoneNames();
    void tickets();
    void ticketsOfADynamicTrip();
    void shippedFeeds_data();
    void shippedFeeds();
    void shippedPositionsHaveHolesOnly();
    void aRealFeed();
    void theFeedOfZakroczymIfThatIsTheRealOne();
};

void FeedModelsTest::everyFieldReachesTheModel()
{
    Feed feed;
    feed.products = {distinctProduct()};
    QObject owner; // of the prototype row
    PassengerTypesModel model(&owner);
    addProducts(feed, model);
    const PassengerTypesModelInspector inside(model);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(inside.dailyProducts().isEmpty());
    QCOMPARE(inside.products().size(), 1);
    const sProduct& added = inside.products().first();
    const FeedProduct& product = feed.products.first();
    QCOMPARE(added.passengerTypeId, product.passengerTypeId);
    QCOMPARE(added.description, product.description);
    QCOMPARE(added.passengerTypeCode, 8);
    QCOMPARE(added.icon, product.icon);
    QCOMPARE(added.price, product.price);
    QCOMPARE(added.fareProductId, product.fareProductId);
    QCOMPARE(added.fareProductName, product.fareProductName);
    QCOMPARE(added.isReturnFee, true);
    QCOMPARE(added.fromStopGroupId, product.fromStopGroupId);
    QCOMPARE(added.toStopGroupId, product.toStopGroupId);
    QCOMPARE(added.fareProductColor, product.fareProductColor);
    QCOMPARE(added.hasExpired, false);
    QCOMPARE(added.fareDiscount, product.fareDiscount);
    QCOMPARE(added.isDaily, false);
    QCOMPARE(added.pos, product.pos);
}

void FeedModelsTest::dailyProductsReachTheDailyOnes()
{
    Feed feed;
    feed.products = {distinctProduct()};
    feed.products.first().isDaily = true;
    feed.products.first().isReturnFee = false;
    feed.products.first().hasExpired = true;
    QObject owner; // of the prototype row
    PassengerTypesModel model(&owner);
    addProducts(feed, model);
    const PassengerTypesModelInspector inside(model);
    QVERIFY(inside.products().isEmpty());
    QCOMPARE(inside.dailyProducts().size(), 1);
    QCOMPARE(inside.dailyProducts().first().isDaily, true);
    QCOMPARE(inside.dailyProducts().first().isReturnFee, false);
    QCOMPARE(inside.dailyProducts().first().hasExpired, true);
}

void FeedModelsTest::productsAreAddedInTheOrderOfTheFeed()
{
    Feed feed;
    feed.products.fill(distinctProduct(), 3);
    feed.products[0].passengerTypeId = 3;
    feed.products[1].passengerTypeId = 1;
    feed.products[2].passengerTypeId = 2;
    QObject owner; // of the prototype row
    PassengerTypesModel model(&owner);
    addProducts({}, model);
    addProducts(feed, model);
    addProducts(feed, model);
    QStringList order;
    for (const sProduct& product : PassengerTypesModelInspector(model).products())
        order.append(QString::number(product.passengerTypeId));
    QCOMPARE(order.join(' '), QString("3 1 2 3 1 2"));
}

void FeedModelsTest::passengerTypesAreThoseOfTheModel()
{
    QStringList texts;
    QVector<int> numbers;
    const auto& types = PassengerTypesModel::codeMap;
    for (auto type = types.begin(); type != types.end(); ++type) {
        QCOMPARE(passengerTypeNumber(type.key()), int(type.value()));
        texts.append(type.key());
    }
    std::sort(texts.begin(), texts.end(), [](const QString& left, const QString& right) {
        return passengerTypeNumber(left) < passengerTypeNumber(right);
    });
    QCOMPARE(passengerTypeTexts(), texts);
    QCOMPARE(passengerTypeNumber("pt_adult"), 0);
    QCOMPARE(passengerTypeNumber("PT_ADULT "), 0);
    QCOMPARE(passengerTypeNumber(""), 0);
}

void FeedModelsTest::fareProducts()
{
    FeedFareProduct product;
    product.id = 5;
    product.description = "Day ticket";
    product.icon = "qrc:/day.svg";
    product.price = 7.5;
    product.discount = 12.25;
    product.freeReturn = true;
    product.passengerTypes = {1, "PT_ADULT"};
    product.ticketMaterial = {2, "paper"};
    product.paymentMethod = {3, "cash"};
    product.paymentChannel = {4, "driver"};
    FeedFareProduct paper; // the other flag, and every default
    paper.paperTicket = true;
    Feed feed;
    feed.fareProducts = {product, paper};
    QObject owner; // of the prototype row
    FareProductsModel model(&owner);
    addFareProducts(feed, model);

    QVERIFY(ownsItsRows(model));
    QCOMPARE(model.rowCount(), 2);
    COMPARE_ROLES(model, 0, "description=QString(Day ticket)", "discount=double(12.25)",
                  "fareProductId=int(5)", "freeReturn=bool(true)", "paperTicket=bool(false)",
                  "price=double(7.5)", "productFairIcon=QString(qrc:/day.svg)",
                  "totalInBasket=int(0)");
    COMPARE_ROLES(model, 1, "description=QString()", "discount=double(0)", "fareProductId=int(-1)",
                  "freeReturn=bool(false)", "paperTicket=bool(true)", "price=double(0)",
                  "productFairIcon=QString()", "totalInBasket=int(0)");
    const auto* first = qobject_cast<FareProductItem*>(model.itemFromRow(0));
    QCOMPARE(first->passengerTypes(), product.passengerTypes);
    QCOMPARE(first->ticketMaterial(), product.ticketMaterial);
    QCOMPARE(first->paymentMethod(), product.paymentMethod);
    QCOMPARE(first->paymentChannel(), product.paymentChannel);
    const auto* second = qobject_cast<FareProductItem*>(model.itemFromRow(1));
    for (const QVariantList& list : {second->passengerTypes(), second->ticketMaterial(),
                                     second->paymentMethod(), second->paymentChannel()})
        QCOMPARE(list, QVariantList());
}

void FeedModelsTest::vehicles()
{
    FeedVehicle vehicle;
    vehicle.id = 31;
    vehicle.registrationNumber = "MC 311";
    vehicle.internalNumber = "no. 31";
    vehicle.drivingStatus = "driving";
    vehicle.routeStatus = "on time";
    vehicle.routeId = 12;
    vehicle.routeName = "Quay";
    vehicle.latitude = 54.5;
    vehicle.longitude = -11.25;
    vehicle.altitude = 6.5;
    vehicle.updated = true;
    vehicle.direction = 47.5;
    FeedVehicle inView; // the other flag, and every default
    inView.inView = true;
    Feed feed;
    feed.vehicles = {vehicle, inView};
    QObject owner; // of the prototype row
    AssetsModel model(&owner);
    const QSignalSpy insertions(&model, &ListModel::rowsInserted);
    addVehicles(feed, model);

    QCOMPARE(insertions.size(), 1);
    QVERIFY(ownsItsRows(model));
    QCOMPARE(model.rowCount(), 2);
    COMPARE_ROLES(model, 0, "assetCoordinate=QGeoCoordinate(2 54.5 -11.25 6.5)",
                  "direction=double(47.5)", "drivingStatus=QString(driving)", "id=int(31)",
                  "inView=bool(false)", "internalNumber=QString(no. 31)",
                  "registrationNumber=QString(MC 311)", "routeId=int(12)",
                  "routeName=QString(Quay)", "routeStatus=QString(on time)");
    COMPARE_ROLES(model, 1, "assetCoordinate=QGeoCoordinate(0 nan nan nan)", "direction=double(0)",
                  "drivingStatus=QString()", "id=int(-1)", "inView=bool(true)",
                  "internalNumber=QString()", "registrationNumber=QString()", "routeId=int(-1)",
                  "routeName=QString()", "routeStatus=QString()");
    QCOMPARE(qobject_cast<AssetItem*>(model.itemFromRow(0))->updated(), true);
    QCOMPARE(qobject_cast<AssetItem*>(model.itemFromRow(1))->updated(), false);
}

void FeedModelsTest::positionsOfVehicles_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("altitude");
    QTest::addColumn<QGeoCoordinate>("position");
    const double unknown = qQNaN();
    QTest::newRow("all known") << 54.5 << 11.25 << 6.0 << QGeoCoordinate(54.5, 11.25, 6.0);
    QTest::newRow("below the sea") << -1.0 << -180.0 << -4.0 << QGeoCoordinate(-1, -180, -4);
    QTest::newRow("where equator and meridian cross")
        << 0.0 << 0.0 << 0.0 << QGeoCoordinate(0, 0, 0);
    QTest::newRow("without altitude: two dimensions")
        << 54.5 << 11.25 << unknown << QGeoCoordinate(54.5, 11.25);
    QTest::newRow("unknown position") << unknown << unknown << unknown << QGeoCoordinate();
    QTest::newRow("unknown latitude") << unknown << 11.25 << 6.0 << QGeoCoordinate();
    QTest::newRow("unknown longitude") << 54.5 << unknown << 6.0 << QGeoCoordinate();
}

void FeedModelsTest::positionsOfVehicles()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(double, altitude);
    QFETCH(QGeoCoordinate, position);
    FeedVehicle vehicle;
    vehicle.latitude = latitude;
    vehicle.longitude = longitude;
    vehicle.altitude = altitude;
    Feed feed;
    feed.vehicles = {vehicle};
    QObject owner; // of the prototype row
    AssetsModel model(&owner);
    addVehicles(feed, model);
    const QGeoCoordinate shown = qobject_cast<AssetItem*>(model.itemFromRow(0))->assetCoordinate();
    QCOMPARE(shown.type(), position.type());
    QCOMPARE(shown, position);
}

void FeedModelsTest::peripherals()
{
    FeedPeripheral device;
    device.id = 3;
    device.name = "Ticket printer";
    device.identity = 4294967295u;
    device.icon = "qrc:/printer.svg";
    device.deviceState = -2;
    device.stateStr = "Paper low";
    Feed feed;
    feed.peripherals = {{}, device, device, device, device};
    feed.peripherals[1].warning = false;
    feed.peripherals[2].blueWarning = false;
    feed.peripherals[3].yellowWarning = false;
    feed.peripherals[4].error = false;
    QObject owner; // of the prototype row
    PeripheralsModel model(&owner);
    const QSignalSpy insertions(&model, &ListModel::rowsInserted);
    addPeripherals(feed, model);

    QCOMPARE(insertions.size(), 1);
    QVERIFY(ownsItsRows(model));
    COMPARE_ROLES(model, 0, "blueWarning=bool(true)", "deviceState=int(0)", "error=bool(true)",
                  "iconSource=QString()", "id=int(-1)", "identity=uint(0)",
                  "peripheralName=QString()", "stateStr=QString()", "warning=bool(true)",
                  "yellowWarning=bool(true)");
    COMPARE_ROLES(model, 1, "blueWarning=bool(true)", "deviceState=int(-2)", "error=bool(true)",
                  "iconSource=QString(qrc:/printer.svg)", "id=int(3)", "identity=uint(4294967295)",
                  "peripheralName=QString(Ticket printer)", "stateStr=QString(Paper low)",
                  "warning=bool(false)", "yellowWarning=bool(true)");
    QCOMPARE(column(model, PeripheralItem::BlueWarningRole), "true true false true true");
    QCOMPARE(column(model, PeripheralItem::YellowWarningRole), "true true true false true");
    QCOMPARE(column(model, PeripheralItem::ErrorRole), "true true true true false");
}

void FeedModelsTest::zReports()
{
    FeedZReport report;
    report.id = 1;
    report.ticketCount = 2;
    report.ticketSumAmnt = 3.5;
    report.cardSellCount = 4;
    report.cardSellAmnt = 5.5;
    report.parcelCount = 6;
    report.parcelAmnt = 7.5;
    report.fromTicketNumber = "8";
    report.toTicketNumber = "9";
    report.zSum = 10.5;
    report.zNumber = 11.5;
    report.isClosed = true;
    report.commission = 12.5;
    report.paymentDate = QDateTime::fromString("2024-05-31T18:30:00.250+02:00", Qt::ISODateWithMs);
    report.currentDebt = 13.5;
    report.maxAllowedDebt = 14.5;
    Feed feed;
    feed.zReports = {report, {}};
    QObject owner; // of the prototype row
    ZReportModel model(&owner);
    const LogCapture log;
    addZReports(feed, model);

    QVERIFY(ownsItsRows(model));
    QCOMPARE(model.rowCount(), 2);
    COMPARE_ROLES(model, 0, "cardSellAmountData=double(5.5)", "cardSellCountData=int(4)",
                  "commission=double(12.5)", "currentDebt=double(13.5)",
                  "fromTicketData=QString(8)", "id=int(1)", "isClosedData=bool(true)",
                  "maxAllowedDebt=double(14.5)", "parcelAmountData=double(7.5)",
                  "parcelCountData=int(6)", "paymentDate=QDateTime(2024-05-31T18:30:00.250+02:00)",
                  "ticketCountData=int(2)", "ticketSumData=double(3.5)", "toTicketData=QString(9)",
                  "zNumberData=double(11.5)", "zSumData=double(10.5)");
    COMPARE_ROLES(model, 1, "cardSellAmountData=double(0)", "cardSellCountData=int(-1)",
                  "commission=double(0)", "currentDebt=double(0)", "fromTicketData=QString()",
                  "id=int(-1)", "isClosedData=bool(false)", "maxAllowedDebt=double(0)",
                  "parcelAmountData=double(0)", "parcelCountData=int(-1)",
                  "paymentDate=QDateTime()", "ticketCountData=int(-1)", "ticketSumData=double(0)",
                  "toTicketData=QString()", "zNumberData=double(0)", "zSumData=double(0)");
    QCOMPARE(log.messages(), QStringList({"id: 1 currentDept: 13.5 maxAllowedDebt: 14.5",
                                          "id: -1 currentDept: 0 maxAllowedDebt: 0"}));
}

void FeedModelsTest::emptySectionsTouchNoModel()
{
    QObject owner; // of the prototype rows
    FareProductsModel fareProducts(&owner);
    AssetsModel vehicles(&owner);
    PeripheralsModel devices(&owner);
    ZReportModel reports(&owner);
    const LogCapture log;
    const std::array<QSignalSpy, 4> counts{{QSignalSpy(&fareProducts, &ListModel::countChanged),
                                            QSignalSpy(&vehicles, &ListModel::countChanged),
                                            QSignalSpy(&devices, &ListModel::countChanged),
                                            QSignalSpy(&reports, &ListModel::countChanged)}};
    addFareProducts({}, fareProducts);
    addVehicles({}, vehicles);
    addPeripherals({}, devices);
    addZReports({}, reports);
    for (const QSignalSpy& count : counts)
        QCOMPARE(count.size(), 0);
    QCOMPARE(log.messages(), QStringList());
}

void FeedModelsTest::rowsAreAppendedInTheOrderOfTheFeed()
{
    Feed feed;
    for (const int id : {3, 1, 2}) {
        feed.fareProducts.append(FeedFareProduct());
        feed.fareProducts.last().id = id;
        feed.vehicles.append(FeedVehicle());
        feed.vehicles.last().id = id;
        feed.peripherals.append(FeedPeripheral());
        feed.peripherals.last().id = id;
        feed.zReports.append(FeedZReport());
        feed.zReports.last().id = id;
    }
    QObject owner; // of the prototype rows
    FareProductsModel fareProducts(&owner);
    AssetsModel vehicles(&owner);
    PeripheralsModel devices(&owner);
    ZReportModel reports(&owner);
    const LogCapture quiet;
    for (int times = 0; times < 2; ++times) {
        addFareProducts(feed, fareProducts);
        addVehicles(feed, vehicles);
        addPeripherals(feed, devices);
        addZReports(feed, reports);
    }
    const QString twice("3 1 2 3 1 2");
    QCOMPARE(column(fareProducts, FareProductItem::FareProductIdRole), twice);
    QCOMPARE(column(vehicles, AssetItem::IdRole), twice);
    QCOMPARE(column(devices, PeripheralItem::IdRole), twice);
    QCOMPARE(column(reports, 257), twice);
}

void FeedModelsTest::tripContextOfAFeed()
{
    const auto values = [](const TripContext& trip) {
        QStringList texts;
        for (const char* name : {"routeId", "fromStopId", "toStopId", "currentStopId",
                                 "tripsRouteId", "tripsExecutionId", "publicRouteExecutionId"}) {
            const QMetaProperty property =
                trip.metaObject()->property(trip.metaObject()->indexOfProperty(name));
            if (!property.isWritable() || !property.hasNotifySignal())
                return QString("%1 is not as QML needs it").arg(name);
            texts.append(QString(property.typeName()) + ' ' + property.read(&trip).toString());
        }
        return texts.join(", ");
    };
    Feed feed;
    const QString inNoService("int -1, int -1, int -1, int -1, int -1, int -1, QString ");
    QCOMPARE(values(TripContext()), inNoService);
    QCOMPARE(values(TripContext(feed)), inNoService);
    feed.trip = distinctTrip();
    QCOMPARE(values(TripContext(feed)), "int 1, int 2, int 3, int 4, int 5, int 6, QString seven");
    QObject parent;
    const TripContext& child = *new TripContext(distinctTrip(), &parent);
    QCOMPARE(child.parent(), &parent);
    QCOMPARE(values(child), values(TripContext(feed)));
}

void FeedModelsTest::tripContextAnnouncesEachChangeOnce()
{
    TripContext trip(distinctTrip());
    const QMetaObject* type = trip.metaObject();
    QCOMPARE(type->propertyCount() - type->propertyOffset(), 7);
    for (int index = type->propertyOffset(); index < type->propertyCount(); ++index) {
        const QMetaProperty property = type->property(index);
        std::vector<std::unique_ptr<QSignalSpy>> spies; // one per property
        for (int other = type->propertyOffset(); other < type->propertyCount(); ++other)
            spies.push_back(
                std::make_unique<QSignalSpy>(&trip, type->property(other).notifySignal()));
        const auto announced = [&] {
            QString counts;
            for (const auto& spy : spies)
                counts += QString::number(spy->size());
            return counts;
        };
        const QVariant value =
            property.type() == QVariant::Int ? QVariant(100 + index) : QVariant("changed");
        QString expected(int(spies.size()), '0');
        QVERIFY(property.write(&trip, property.read(&trip)));
        QCOMPARE(announced(), expected);
        QVERIFY(property.write(&trip, value));
        QVERIFY(property.write(&trip, value));
        QCOMPARE(property.read(&trip), value);
        expected[index - type->propertyOffset()] = '1';
        QCOMPARE(announced(), expected);
    }
}

void FeedModelsTest::zoneNames_data()
{
    QTest::addColumn<int>("zone");
    QTest::addColumn<QString>("name");
    QTest::newRow("the only stop") << 1 << "Ostra Market";
    QTest::newRow("platforms of one station") << 2 << "Brenno Spa";
    QTest::newRow("several stops: the number") << 3 << "3";
    QTest::newRow("several stops, the first name again at the end: the number") << 4 << "4";
    QTest::newRow("a stop without a name: the number") << 5 << "5";
    QTest::newRow("no stop: the number") << 6 << "6";
    QTest::newRow("the zone's own name, whatever its stops are called") << 9 << "Old Town";
    QTest::newRow("a zone that is named but nowhere") << 10 << "Hills";
    QTest::newRow("a name of nothing: the stop's") << 11 << "Mill";
    QTest::newRow("negative number") << -7 << "-7";
    QTest::newRow("zone 0 is no zone") << 0 << "";
    QTest::newRow("the only stop, of two zones") << 8 << "Brenno Spa";
}

void FeedModelsTest::zoneNames()
{
    QFETCH(int, zone);
    QFETCH(QString, name);
    Feed feed;
    feed.network.stops = {stop("Ostra Market", {1}),
                          stop("Brenno Spa", {2, 8}),
                          stop("Brenno Spa", {2}),
                          stop("Pier", {3, 4, 0}),
                          stop("Camp Site", {3, 4}),
                          stop("Pier", {4}),
                          stop("", {5}),
                          stop("Mill", {9, 11})};
    feed.network.zones = {{9, "Old Town"}, {10, "Hills"}, {11, ""}, {0, "Everywhere"}};
    QCOMPARE(ZoneNames(feed).name(zone), name);
}

void FeedModelsTest::tickets()
{
    Feed feed;
    feed.trip = distinctTrip();
    feed.network.stops = {stop("Ostra Market", {31}), stop("Brenno Spa", {32})};
    TripContext trip(feed);
    const PassengerTypeItem tile(11, "Large family", "8", "qrc:/icons/one.svg", 12.5, 21, "Single",
                                 2, true, 31, 32, "#123456", false, 7.25, false, 41, nullptr);
    const PassengerTypeItem daily(12, "Adult", "1", "", 3.0, 22, "Day", 0, false, 0, 33, "", true,
                                  0.0, true, -1, nullptr);
    QObject owner; // of the prototype row
    ShoppingBasketModel basket(&owner);
    addTicket(tile, ZoneNames(feed), basket, trip);
    trip.setCurrentStopId(44);
    addTicket(daily, ZoneNames(feed), basket, trip);

    QVERIFY(ownsItsRows(basket));
    QCOMPARE(basket.rowCount(), 2);
    COMPARE_ROLES(basket, 0, "accepted=bool(false)", "description=QString(Large family)",
                  "destination=QString(Brenno Spa)", "fareProductId=int(21)",
                  "fareProductName=QString(Single)", "fromStopGroupId=int(31)", "id=int(0)",
                  "isDaily=bool(false)", "isReturnFee=bool(true)", "origin=QString(Ostra Market)",
                  "passengerTypeId=int(11)", "price=double(12.5)", "printed=bool(false)",
                  "shoppingItemIcon=QString(qrc:/icons/one.svg)", "toStopGroupId=int(32)");
    COMPARE_ROLES(basket, 1, "accepted=bool(false)", "description=QString(Adult)",
                  "destination=QString(33)", "fareProductId=int(22)",
                  "fareProductName=QString(Day)", "fromStopGroupId=int(0)", "id=int(1)",
                  "isDaily=bool(true)", "isReturnFee=bool(false)", "origin=QString()",
                  "passengerTypeId=int(12)", "price=double(3)", "printed=bool(false)",
                  "shoppingItemIcon=QString()", "toStopGroupId=int(33)");
    const auto* first = qobject_cast<ShoppingItem*>(basket.itemFromRow(0));
    QCOMPARE(first->routeId(), 1);
    QCOMPARE(first->fromStopId(), 2);
    QCOMPARE(first->toStopId(), 3);
    QCOMPARE(first->currentStopId(), 4);
    QCOMPARE(first->tripsRouteId(), 5);
    QCOMPARE(first->tripsExecutionId(), 6);
    QCOMPARE(first->publicRouteExecutionId(), "seven");
    QCOMPARE(qobject_cast<ShoppingItem*>(basket.itemFromRow(1))->currentStopId(), 44);
    QCOMPARE(tile.totalInBasket(), 2);
}

void FeedModelsTest::ticketsOfADynamicTrip()
{
    TripContext trip;
    trip.setPublicRouteExecutionId("DynamicTrip");
    QObject owner; // of the prototype row
    ShoppingBasketModel basket(&owner);
    addTicket(PassengerTypeItem(), ZoneNames(Feed()), basket, trip);
    const auto* ticket = qobject_cast<ShoppingItem*>(basket.itemFromRow(0));
    QCOMPARE(ticket->publicRouteExecutionId(), "");
    QCOMPARE(ticket->routeId(), -1);
    QCOMPARE(trip.publicRouteExecutionId(), "DynamicTrip");
}

void FeedModelsTest::shippedFeeds_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("hasPositions");
    QTest::newRow("with back-office positions") << SHIPPED_FEEDS "/coast-line.json" << true;
    QTest::newRow("without positions") << SHIPPED_FEEDS "/hill-valley.json" << false;
}

void FeedModelsTest::shippedFeeds()
{
    QFETCH(QString, file);
    QFETCH(bool, hasPositions);
    const FeedResult result = load(file);
    REQUIRE_FEED(result);
    QCOMPARE(result.noticeLines(), QStringList());
    const Feed& feed = *result.feed;
    QVERIFY(!feed.name.isEmpty());
    QVERIFY(feed.columns > 0);

    QSet<int> zones;
    QSet<QString> types;
    for (const FeedProduct& product : feed.products) {
        zones.insert(product.toStopGroupId);
        types.insert(product.passengerTypeCode);
        QVERIFY(product.isDaily || (product.pos != -1) == hasPositions);
    }
    QVERIFY(zones.size() >= 3);
    QVERIFY(types.size() >= 3);
    QCOMPARE(
        QSet<QString>(feed.supportedPassengerTypes.begin(), feed.supportedPassengerTypes.end()),
        types);
    QVERIFY(countOf(feed, [](const FeedProduct& p) { return p.isDaily; }) > 0);
    QVERIFY(countOf(feed, [](const FeedProduct& p) { return p.isReturnFee; }) > 0);
    QVERIFY(countOf(feed, [](const FeedProduct& p) { return p.hasExpired; }) > 0);
    QVERIFY(countOf(feed, [](const FeedProduct& p) { return !p.fareProductColor.isEmpty(); }) > 0);

    QVERIFY(feed.trip.has_value());
    QVERIFY(holds(feed.fareProducts, [](const auto& product) { return product.paperTicket; }));
    QVERIFY(holds(feed.vehicles, [](const auto& vehicle) { return qIsNaN(vehicle.latitude); }));
    QVERIFY(holds(feed.vehicles, [](const auto& vehicle) {
        return !qIsNaN(vehicle.latitude) && qIsNaN(vehicle.altitude);
    }));
    QVERIFY(holds(feed.vehicles, [](const auto& vehicle) { return !qIsNaN(vehicle.altitude); }));
    QVERIFY(holds(feed.peripherals, [](const auto& device) { return device.error; }));
    QVERIFY(holds(feed.peripherals, [](const auto& device) { return !device.error; }));
    QVERIFY(holds(feed.zReports, [](const auto& report) { return report.paymentDate.isValid(); }));
    QVERIFY(holds(feed.zReports, [](const auto& report) { return !report.paymentDate.isValid(); }));
}

void FeedModelsTest::shippedPositionsHaveHolesOnly()
{
    const FeedResult result = load(SHIPPED_FEEDS "/coast-line.json");
    REQUIRE_FEED(result);
    QVector<int> positions;
    for (const FeedProduct& product : result.feed->products) {
        if (!product.isDaily)
            positions.append(product.pos);
    }
    std::sort(positions.begin(), positions.end());
    QVERIFY(std::adjacent_find(positions.begin(), positions.end()) == positions.end());
    QVERIFY(positions.first() >= 1);
    QVERIFY(positions.last() > positions.size());
}

void FeedModelsTest::aRealFeed()
{
    const QString folder = realFeed();
    if (folder.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const FeedResult result = load(folder);
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QVERIFY(!feed.products.isEmpty());
    QCOMPARE(feed.currency.size(), 3);
    for (const FeedProduct& product : feed.products) {
        QVERIFY(!product.description.isEmpty());
        QVERIFY(!product.fareProductName.isEmpty());
        QVERIFY(product.price >= 0.0);
    }
    const Network& network = feed.network;
    const QSet<QString> routes = idsOf(network.routes);
    const QSet<QString> trips = idsOf(network.trips);
    const QSet<QString> stops = idsOf(network.stops);
    const QSet<QString> shapes = idsOf(network.shapes);
    QVERIFY(!network.stopTimes.isEmpty());
    for (const NetworkTrip& trip : network.trips) {
        QVERIFY(routes.contains(trip.routeId));
        QVERIFY(trip.shapeId.isEmpty() || shapes.contains(trip.shapeId));
    }
    for (const NetworkStopTime& time : network.stopTimes) {
        QVERIFY(trips.contains(time.tripId));
        QVERIFY(stops.contains(time.stopId));
    }
}

void FeedModelsTest::theFeedOfZakroczymIfThatIsTheRealOne()
{
    const QString folder = realFeed();
    if (folder.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const FeedResult result = load(folder);
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    if (feed.name != QLatin1String("Komunikacja Gminna Zakroczym"))
        QSKIP("another operator's feed");
    QSet<QString> offers; // of fare_products.txt
    QSet<int> zones;
    for (const FeedProduct& product : feed.products) {
        offers.insert(
            QStringLiteral("%1 %2").arg(product.fareProductId).arg(product.passengerTypeId));
        zones.unite({product.fromStopGroupId, product.toStopGroupId});
    }
    QCOMPARE(offers.size(), 10);
    QCOMPARE(zones, QSet<int>({0, 1, 2, 3})); // 0: the passes
    QCOMPARE(feed.products.size(), 13);
    QCOMPARE(feed.currency, QString("PLN"));
    QCOMPARE(result.notices.size(), 4);
    QCOMPARE(feed.network.routes.size(), 3);
    QCOMPARE(feed.network.trips.size(), 48);
    QCOMPARE(feed.network.stops.size(), 62);
    QCOMPARE(feed.network.stopTimes.size(), 1018);
    QCOMPARE(feed.network.shapes.size(), 11);
    for (const NetworkStop& stop : feed.network.stops)
        QCOMPARE(stop.areas.size(), 1);
}

QTEST_GUILESS_MAIN(FeedModelsTest)
#include "tst_feed_models.moc"
