#include "FeedFiles.h"
#include "FeedToModels.h"
#include "LibraryModels.h"
#include "LogCapture.h"
#include "PassengerTypes.h"
#include "RowRoles.h"

#include "AssetItem.h"
#include "AssetsModel.h"
#include "FareProductItem.h"
#include "FareProductsModel.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PeripheralItem.h"
#include "PeripheralsModel.h"
#include "Table.h"
#include "ZReportModel.h"

#include <algorithm>

using namespace rivo::feed;
using rivo::models::ListModel;

namespace
{

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
    // values: of the fields that are not initial, by their names
    const Table<QString, QByteArray, QVariantMap> row("section", "record", "values");
    row("fare product", "fareProducts",
        R"("id": 5, "description": "Day", "icon": "i", "price": 7.5, "discount": 12.25,
           "freeReturn": true)",
        {{"id", 5},
         {"description", "Day"},
         {"icon", "i"},
         {"price", 7.5},
         {"discount", 12.25},
         {"freeReturn", true}});
    row("fare product on paper, free", "fareProducts",
        R"("id": 6, "description": "D", "price": 0, "paperTicket": true)",
        {{"id", 6}, {"description", "D"}, {"paperTicket", true}});
    row("vehicle", "vehicles",
        R"("id": 31, "registrationNumber": "MC 311", "internalNumber": "no. 31",
           "drivingStatus": "driving", "routeStatus": "on time", "routeId": 12,
           "routeName": "Quay", "latitude": 54.5, "longitude": -11.25, "altitude": -6.5,
           "direction": 47.5)",
        {{"id", 31},
         {"registrationNumber", "MC 311"},
         {"internalNumber", "no. 31"},
         {"drivingStatus", "driving"},
         {"routeStatus", "on time"},
         {"routeId", 12},
         {"routeName", "Quay"},
         {"assetCoordinate", QVariant::fromValue(QGeoCoordinate(54.5, -11.25, -6.5))},
         {"direction", 47.5}});
    const QByteArray bare = R"("id": 1, "registrationNumber": "R", "inView": true)";
    QVariantMap vehicle{{"id", 1}, {"registrationNumber", "R"}, {"inView", true}};
    row("vehicle with defaults: an unknown position is an invalid coordinate", "vehicles", bare,
        vehicle);
    vehicle["assetCoordinate"] = QVariant::fromValue(QGeoCoordinate(0, 0));
    row("unknown altitude: a coordinate of two dimensions, where the lines cross", "vehicles",
        bare + R"(, "latitude": 0, "longitude": 0)", vehicle);
    row("device that has not reported", "peripherals", R"("id": 3, "name": "Printer")",
        {{"id", 3}, {"name", "Printer"}});
    row("device", "peripherals",
        R"("id": 3, "name": "Printer", "identity": 4294967295, "icon": "p", "deviceState": -2,
           "stateStr": "Paper low", "warning": false)",
        {{"id", 3},
         {"name", "Printer"},
         {"identity", 4294967295U},
         {"icon", "p"},
         {"deviceState", -2},
         {"stateStr", "Paper low"},
         {"warning", false}});
    for (const char* flag : {"blueWarning", "yellowWarning", "error"})
        QTest::addRow("device without %s", flag)
            << "peripherals"
            << R"("id": 3, "name": "Printer", ")" + QByteArray(flag) + "\": false"
            << QVariantMap{{"id", 3}, {"name", "Printer"}, {flag, false}};
    row("report of a shift", "zReports",
        R"("id": 1, "ticketCount": 2, "ticketSumAmnt": 3.5, "cardSellCount": 4,
           "cardSellAmnt": 5.5, "parcelCount": 6, "parcelAmnt": 7.5, "fromTicketNumber": "8",
           "toTicketNumber": "9", "zSum": 10.5, "zNumber": 11.5, "isClosed": true,
           "commission": 12.5, "paymentDate": "2024-05-31T18:30:00.250+02:00",
           "currentDebt": 13.5, "maxAllowedDebt": 14.5)",
        {{"id", 1},
         {"ticketCount", 2},
         {"ticketSumAmnt", 3.5},
         {"cardSellCount", 4},
         {"cardSellAmnt", 5.5},
         {"parcelCount", 6},
         {"parcelAmnt", 7.5},
         {"fromTicketNumber", "8"},
         {"toTicketNumber", "9"},
         {"zSum", 10.5},
         {"zNumber", 11.5},
         {"isClosed", true},
         {"commission", 12.5},
         {"paymentDate", QDateTime::fromString("2024-05-31T18:30:00.250+02:00", Qt::ISODateWithMs)},
         {"currentDebt", 13.5},
         {"maxAllowedDebt", 14.5}});
    row("report with defaults", "zReports", R"("id": 7)", {{"id", 7}});
}

void FeedModelsTest::rows()
{
    QFETCH(QString, section);
    QFETCH(QByteArray, record);
    QFETCH(QVariantMap, values);
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
    const ItemClass& rows = rowsOf(model.metaObject()->className());
    QCOMPARE(differences(*model.itemFromRow(0), rows.fields, rows.initialValuesBut(values)),
             QStringList());
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

QTEST_GUILESS_MAIN(FeedModelsTest)
#include "tst_feed_models.moc"
