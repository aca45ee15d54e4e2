#include "FeedFiles.h"
#include "FeedToModels.h"
#include "LogCapture.h"
#include "PassengerTypes.h"
#include "RealFeed.h"
#include "Tariff.h"
#include "TripContext.h"
#include "ZoneNames.h"

#include "AssetItem.h"
#include "AssetsModel.h"
#include "FareProductItem.h"
#include "FareProductsModel.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PeripheralItem.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ShoppingItem.h"
#include "ZReportModel.h"

#include <QMetaProperty>
#include <QSet>

#include <algorithm>
#include <memory>
#include <vector>

using namespace rivo::feed;
using rivo::models::ListModel;

namespace
{

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
    return roles.join(' ');
}

/// Fails unless row `row` has these roles.
#define COMPARE_ROLES(model, row, ...)                                                             \
    QCOMPARE(rolesOf(model, row), (QStringList{__VA_ARGS__}.join(' ')))

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

/// The models of the sections that become rows at once, quiet.
struct Sections
{
    void add(const Feed& feed)
    {
        addFareProducts(feed, fareProducts);
        addVehicles(feed, vehicles);
        addPeripherals(feed, peripherals);
        addZReports(feed, zReports);
    }

    ListModel& model(const QString& section)
    {
        const QMap<QString, ListModel*> models{{"fareProducts", &fareProducts},
                                               {"vehicles", &vehicles},
                                               {"peripherals", &peripherals},
                                               {"zReports", &zReports}};
        return *models.value(section);
    }

    LogCapture log;
    QObject owner; // of the prototype rows
    FareProductsModel fareProducts{&owner};
    AssetsModel vehicles{&owner};
    PeripheralsModel peripherals{&owner};
    ZReportModel zReports{&owner};
};

} // namespace

class FeedModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void products();
    void passengerTypesAreThoseOfTheModel();
    void rows_data();
    void rows();
    void whatHasNoRole();
    void sectionsAreAppendedInTheOrderOfTheFeed();
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

void FeedModelsTest::products()
{
    FeedProduct product;
    product.passengerTypeId = 11;
    product.description = "Member of a large family";
    product.passengerTypeCode = "PT_LFS";
    product.icon = "qrc:/icons/one.svg";
    product.price = 12.5;
    product.fareProductId = 21;
    product.fareProductName = "Single";
    product.isReturnFee = true;
    product.fromStopGroupId = 31;
    product.toStopGroupId = 32;
    product.fareProductColor = "#123456";
    product.fareDiscount = 7.25;
    product.pos = 1;
    FeedProduct expired = product;
    expired.isReturnFee = false;
    expired.hasExpired = true;
    expired.pos = 2;
    FeedProduct daily = product;
    daily.isDaily = true;
    Feed feed;
    feed.products = {expired, daily, product};
    QObject owner; // of the prototype row
    PassengerTypesModel model(&owner);
    addProducts({}, model);
    addProducts(feed, model);
    QCOMPARE(model.rowCount(), 0);
    model.sortAndRegroup({"PT_LFS"}, 1);
    QCOMPARE(model.rowCount(), 3);
    const QString common = "description=QString(Member of a large family) "
                           "fareDiscount=double(7.25) fareProductColor=QString(#123456) "
                           "fareProductIcon=QString(qrc:/icons/one.svg) fareProductId=int(21) "
                           "fareProductName=QString(Single) fromStopGroupId=int(31) "
                           "hasExpired=bool(%1) isDaily=bool(%2) isReturnFee=bool(%3) "
                           "passengerTypeId=int(11) pos=int(%4) price=double(12.5) "
                           "selected=bool(false) toStopGroupId=int(32) totalInBasket=int(0)";
    QCOMPARE(rolesOf(model, 0), common.arg("false", "false", "true", "1"));
    QCOMPARE(rolesOf(model, 1), common.arg("true", "false", "false", "2"));
    QCOMPARE(rolesOf(model, 2), common.arg("false", "true", "true", "1"));
    QCOMPARE(qobject_cast<PassengerTypeItem*>(model.itemFromRow(0))->code(), "8");
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
    QCOMPARE(distinctTypes({}), QStringList());
    QCOMPARE(distinctTypes({"PT_LFS", "X", "PT_ADULT", "PT_LFS", "", "PT_ADULT", "X"}),
             QStringList({"PT_LFS", "X", "PT_ADULT"}));
}

void FeedModelsTest::rows_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("roles");
    QTest::newRow("fare product")
        << "fareProducts" << QByteArray(R"("id": 5, "description": "Day", "icon": "i", "price": 7.5,
                         "discount": 12.25, "freeReturn": true)")
        << "description=QString(Day) discount=double(12.25) fareProductId=int(5) "
           "freeReturn=bool(true) paperTicket=bool(false) price=double(7.5) "
           "productFairIcon=QString(i) totalInBasket=int(0)";
    QTest::newRow("fare product with defaults, on paper")
        << "fareProducts"
        << QByteArray(R"("id": 6, "description": "D", "price": 0, "paperTicket": true)")
        << "description=QString(D) discount=double(0) fareProductId=int(6) "
           "freeReturn=bool(false) paperTicket=bool(true) price=double(0) "
           "productFairIcon=QString() totalInBasket=int(0)";
    QTest::newRow("vehicle")
        << "vehicles"
        << QByteArray(R"("id": 31, "registrationNumber": "MC 311", "internalNumber": "no. 31",
                         "drivingStatus": "driving", "routeStatus": "on time", "routeId": 12,
                         "routeName": "Quay", "latitude": 54.5, "longitude": -11.25,
                         "altitude": -6.5, "direction": 47.5)")
        << "assetCoordinate=QGeoCoordinate(2 54.5 -11.25 -6.5) direction=double(47.5) "
           "drivingStatus=QString(driving) id=int(31) inView=bool(false) "
           "internalNumber=QString(no. 31) registrationNumber=QString(MC 311) routeId=int(12) "
           "routeName=QString(Quay) routeStatus=QString(on time)";
    const QString bareVehicle = "assetCoordinate=QGeoCoordinate(%1) direction=double(0) "
                                "drivingStatus=QString() id=int(1) inView=bool(true) "
                                "internalNumber=QString() registrationNumber=QString(R) "
                                "routeId=int(-1) routeName=QString() routeStatus=QString()";
    const QByteArray bare = R"("id": 1, "registrationNumber": "R", "inView": true)";
    QTest::newRow("vehicle with defaults: an unknown position is an invalid coordinate")
        << "vehicles" << bare << bareVehicle.arg("0 nan nan nan");
    QTest::newRow("unknown altitude: a coordinate of two dimensions, where the lines cross")
        << "vehicles" << bare + R"(, "latitude": 0, "longitude": 0)"
        << bareVehicle.arg("1 0 0 nan");
    const QString device = "blueWarning=bool(%1) deviceState=int(%2) error=bool(%3) "
                           "iconSource=QString(%4) id=int(3) identity=uint(%5) "
                           "peripheralName=QString(Printer) stateStr=QString(%6) warning=bool(%7) "
                           "yellowWarning=bool(%8)";
    QTest::newRow("device that has not reported")
        << "peripherals" << QByteArray(R"("id": 3, "name": "Printer")")
        << device.arg("true", "0", "true", "", "0", "", "true", "true");
    QTest::newRow("device")
        << "peripherals"
        << QByteArray(R"("id": 3, "name": "Printer", "identity": 4294967295, "icon": "p",
                         "deviceState": -2, "stateStr": "Paper low", "warning": false)")
        << device.arg("true", "-2", "true", "p", "4294967295", "Paper low", "false", "true");
    QTest::newRow("device without a blue warning")
        << "peripherals" << QByteArray(R"("id": 3, "name": "Printer", "blueWarning": false)")
        << device.arg("false", "0", "true", "", "0", "", "true", "true");
    QTest::newRow("device without a yellow warning")
        << "peripherals" << QByteArray(R"("id": 3, "name": "Printer", "yellowWarning": false)")
        << device.arg("true", "0", "true", "", "0", "", "true", "false");
    QTest::newRow("device without an error")
        << "peripherals" << QByteArray(R"("id": 3, "name": "Printer", "error": false)")
        << device.arg("true", "0", "false", "", "0", "", "true", "true");
    QTest::newRow("report of a shift")
        << "zReports"
        << QByteArray(R"("id": 1, "ticketCount": 2, "ticketSumAmnt": 3.5, "cardSellCount": 4,
                         "cardSellAmnt": 5.5, "parcelCount": 6, "parcelAmnt": 7.5,
                         "fromTicketNumber": "8", "toTicketNumber": "9", "zSum": 10.5,
                         "zNumber": 11.5, "isClosed": true, "commission": 12.5,
                         "paymentDate": "2024-05-31T18:30:00.250+02:00", "currentDebt": 13.5,
                         "maxAllowedDebt": 14.5)")
        << "cardSellAmountData=double(5.5) cardSellCountData=int(4) commission=double(12.5) "
           "currentDebt=double(13.5) fromTicketData=QString(8) id=int(1) isClosedData=bool(true) "
           "maxAllowedDebt=double(14.5) parcelAmountData=double(7.5) parcelCountData=int(6) "
           "paymentDate=QDateTime(2024-05-31T18:30:00.250+02:00) ticketCountData=int(2) "
           "ticketSumData=double(3.5) toTicketData=QString(9) zNumberData=double(11.5) "
           "zSumData=double(10.5)";
    QTest::newRow("report with defaults")
        << "zReports" << QByteArray(R"("id": 7)")
        << "cardSellAmountData=double(0) cardSellCountData=int(-1) commission=double(0) "
           "currentDebt=double(0) fromTicketData=QString() id=int(7) isClosedData=bool(false) "
           "maxAllowedDebt=double(0) parcelAmountData=double(0) parcelCountData=int(-1) "
           "paymentDate=QDateTime() ticketCountData=int(-1) ticketSumData=double(0) "
           "toTicketData=QString() zNumberData=double(0) zSumData=double(0)";
}

void FeedModelsTest::rows()
{
    QFETCH(QString, section);
    QFETCH(QByteArray, record);
    QFETCH(QString, roles);
    const FeedFiles files;
    const FeedResult result =
        loadJson(R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "products": [], ")" +
                 section.toUtf8() + R"(": [{)" + record + "}]}");
    REQUIRE_FEED(result);
    Sections sections;
    sections.add(*result.feed);
    ListModel& model = sections.model(section);
    QCOMPARE(model.rowCount(), 1);
    QVERIFY(ownsItsRows(model));
    QCOMPARE(rolesOf(model, 0), roles);
    QCOMPARE(sections.log.messages().size(), section == "zReports" ? 1 : 0);
}

void FeedModelsTest::whatHasNoRole()
{
    Sections sections;
    sections.add(*load(QStringLiteral(FEED_TEST_DATA "/json/everything.json")).feed);
    const auto* product = qobject_cast<FareProductItem*>(sections.fareProducts.itemFromRow(0));
    QCOMPARE(product->passengerTypes(), QVariantList({1, "PT_LFS"}));
    QCOMPARE(product->ticketMaterial(), QVariantList({2}));
    QCOMPARE(product->paymentMethod(), QVariantList({"cash"}));
    QCOMPARE(product->paymentChannel(), QVariantList({3, 4}));
    QVERIFY(qobject_cast<AssetItem*>(sections.vehicles.itemFromRow(0))->updated());
    QCOMPARE(sections.log.messages(),
             QStringList("id: 91 currentDept: 101.5 maxAllowedDebt: 102.5"));
}

void FeedModelsTest::sectionsAreAppendedInTheOrderOfTheFeed()
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
    Sections sections;
    for (const char* name : {"fareProducts", "vehicles", "peripherals", "zReports"}) {
        ListModel& model = sections.model(name);
        const QSignalSpy counts(&model, &ListModel::countChanged);
        const QSignalSpy insertions(&model, &ListModel::rowsInserted);
        sections.add({});
        QCOMPARE(counts.size(), 0);
        model.clear();
        sections.add(feed);
        const bool isOneBlock = model.inherits("AssetsModel") || model.inherits("PeripheralsModel");
        QCOMPARE(insertions.size(), isOneBlock ? 1 : 3);
        sections.add(feed);
        QString ids;
        const int role = model.roleNames().key(
            model.roleNames().values().contains("id") ? "id" : "fareProductId");
        for (int row = 0; row < model.rowCount(); ++row)
            ids += model.data(model.index(row, 0), role).toString();
        QCOMPARE(ids, QString("312312"));
    }
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
            property.userType() == QMetaType::Int ? QVariant(100 + index) : QVariant("changed");
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
    if (feed.tariff->agencies.first().name != QLatin1String("Komunikacja Gminna Zakroczym"))
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
