#include "FeedFiles.h"
#include "FeedToModels.h"
#include "PassengerTypes.h"
#include "PassengerTypesModelInspector.h"

#include <QSet>

#include <algorithm>

using namespace rivo::feed;

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

} // namespace

class FeedModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldReachesTheModel();
    void dailyProductsReachTheDailyOnes();
    void productsAreAddedInTheOrderOfTheFeed();
    void passengerTypesAreThoseOfTheModel();
    void shippedFeeds_data();
    void shippedFeeds();
    void shippedPositionsHaveHolesOnly();
    void aRealFeed();
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
    QVERIFY(!feed.fareProducts.isEmpty() && !feed.vehicles.isEmpty());
    QVERIFY(!feed.peripherals.isEmpty() && !feed.zReports.isEmpty());
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
    const QString folder = QStringLiteral(REAL_GTFS_FEED);
    if (folder.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const FeedResult result = load(folder);
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
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
