#include "FeedFiles.h"
#include "RealFeed.h"
#include "Table.h"
#include "Tariff.h"

#include <QSet>

#include <algorithm>

using namespace rivo::feed;

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

} // namespace

class ShippedFeedsTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedFeeds_data();
    void shippedFeeds();
    void shippedPositionsHaveHolesOnly();
    void aRealFeed();
    void theFeedOfZakroczymIfThatIsTheRealOne();
};

void ShippedFeedsTest::shippedFeeds_data()
{
    const Table<QString, bool> row("file", "hasPositions");
    row("with back-office positions", SHIPPED_FEEDS "/coast-line.json", true);
    row("without positions", SHIPPED_FEEDS "/hill-valley.json", false);
}

void ShippedFeedsTest::shippedFeeds()
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

void ShippedFeedsTest::shippedPositionsHaveHolesOnly()
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

void ShippedFeedsTest::aRealFeed()
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

void ShippedFeedsTest::theFeedOfZakroczymIfThatIsTheRealOne()
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

QTEST_GUILESS_MAIN(ShippedFeedsTest)
#include "tst_shipped_feeds.moc"
