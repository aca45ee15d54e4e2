#include "FeedFiles.h"
#include "GtfsFiles.h"
#include "OfferQueryText.h"
#include "Offers.h"

using namespace rivo::feed;

class GtfsLimitsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void everyProblemInOnePass();
    void aBrokenFileRaisesNoFalseReferences();
    void limitsAreInclusive();
    void aFeedThatTakesTooMuchMemoryIsRefusedWithTheFile();
    void aCatalogueBeyondTheLimitIsLeftOut();
    void ruleAndProductNumbersMayNotMultiplyWithoutBound();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void GtfsLimitsTest::everyProblemInOnePass()
{
    const FeedResult result =
        loadGtfs(base() + network +
                 Files{{"fare_products.txt", productHeader + "single,,x,EUR,1,\n"},
                       {"rider_categories.txt", categoryHeader + "1,A\"B,\n2,,5\n"},
                       {"stop_areas.txt", "area_id,stop_id\n77,A\n"}});
    QVERIFY(!result.feed);
    QCOMPARE(result.problems.size(), 4);
    const FeedProblem& amount = result.problems.at(3);
    QCOMPARE(amount.file, QString("gtfs/fare_products.txt"));
    QCOMPARE(amount.line, 2);
    QCOMPARE(amount.field, QString("amount"));
    QCOMPARE(amount.pointer, QString());
    QCOMPARE(amount.value, QString("\"x\""));
    QCOMPARE(amount.expected, QString("a decimal number such as 4.50"));
}

void GtfsLimitsTest::aBrokenFileRaisesNoFalseReferences()
{
    const Files broken = GtfsCases::read(FEED_TEST_DATA "/gtfs/problems.cases").first().files;
    for (auto file = broken.begin(); file != broken.end(); ++file) {
        Files files = broken;
        files.insert(file.key(), file.value() + "\"x\"y\n");
        const FeedResult result = loadGtfs(files);
        const bool isOfMap = file.key() == "shapes.txt";
        QCOMPARE(result.problems.size() + result.notices.size(), 1);
        QCOMPARE(result.notices.size(), isOfMap ? 1 : 0);
    }
}

void GtfsLimitsTest::aFeedThatTakesTooMuchMemoryIsRefusedWithTheFile()
{
    QByteArray times = network.value("stop_times.txt");
    for (int number = 0; number < 5000; ++number)
        times += "T1," + QByteArray::number(number + 5) + ",A,,\n";
    const Files files = base() + network + Files{{"stop_times.txt", times}};
    FeedOptions options;
    options.limits.memory = Q_INT64_C(1) << 50;
    QVERIFY(loadGtfs(files, options).feed);
    options.limits.memory = 1'000'000;
    const FeedResult result = loadGtfs(files, options);
    QVERIFY(!result.feed);
    QCOMPARE(result.problems.size(), 1);
    QCOMPARE(result.problems.first().file, QString("gtfs/stop_times.txt"));
    QCOMPARE(result.problems.first().expected, QString("a feed that fits into 1 MB of memory"));
}

void GtfsLimitsTest::limitsAreInclusive()
{
    FeedOptions options;
    options.limits.csvBytes = 300;
    options.limits.tableRecords = 3;
    options.limits.csvRecords = 4;
    options.limits.csvColumns = 6;
    options.limits.textLength = 12;
    options.limits.entries = 3;
    const auto lines = [&](const Files& files) {
        const FeedResult result = loadGtfs(files, options);
        return result.problemLines() + result.noticeLines();
    };
    const auto areas = [](const QByteArray& text) { return base() + Files{{"areas.txt", text}}; };
    QCOMPARE(lines(base()), QStringList());
    QCOMPARE(lines(areas(base()["areas.txt"].leftJustified(300, '\n'))), QStringList());
    QCOMPARE(lines(areas(base()["areas.txt"].leftJustified(301, '\n'))),
             QStringList("gtfs/areas.txt: 301 bytes, expected at most 300 bytes"));
    QCOMPARE(lines(areas("area_id\n10\n20\n30\n")), QStringList());
    QCOMPARE(lines(areas("area_id\n10\n20\n30\n40\n")),
             QStringList("gtfs/areas.txt:5: a further record, expected at most 3 records"));
    QCOMPARE(lines(areas("area_id,a,b,c,d,e,f\n10\n20\n")),
             QStringList("gtfs/areas.txt:1: 7 columns, expected at most 6 columns"));
    QCOMPARE(lines(areas("area_id\n10\n20\n123456789012\n")), QStringList());
    QCOMPARE(lines(areas("area_id\n10\n20\n1234567890123\n")),
             QStringList("gtfs/areas.txt:4: area_id: \"1234567890123\", expected a text of 1 to 12 "
                         "characters"));
    // A column that is not read may be as long as it likes.
    QCOMPARE(lines(areas("area_id,area_desc\n10,1234567890123\n20\n")), QStringList());
    QCOMPARE(lines(base() + Files{{"fare_leg_rules.txt", ruleHeader + "pass,10,20\npass,20,10\n"}}),
             QStringList("gtfs: more than 3 products over all areas: only those of one stop can be "
                         "shown"));
    options.limits.textBytes = 115;
    QCOMPARE(lines(base()), QStringList());
    --options.limits.textBytes;
    QCOMPARE(lines(base()), QStringList("gtfs/fare_products.txt: more texts than a feed may have, "
                                        "expected at most 114 bytes of them in all files"));
    options = FeedOptions();
    options.limits.csvRecords = 3;
    const QByteArray times = "trip_id,stop_id,stop_sequence\nT1,A,1\nT1,A,2\nT1,A,3\n";
    QCOMPARE(lines(base() + network + Files{{"stop_times.txt", times}}), QStringList());
    QCOMPARE(lines(base() + network + Files{{"stop_times.txt", times + "T1,A,4\n"}}),
             QStringList("gtfs/stop_times.txt:5: a further record, expected at most 3 records"));
    options.limits.feedFiles = 1;
    QVERIFY(!lines(base()).isEmpty());
}

void GtfsLimitsTest::aCatalogueBeyondTheLimitIsLeftOut()
{
    FeedOptions options;
    options.limits.entries = loadGtfs(base()).feed->fareProducts.size();
    QVERIFY(options.limits.entries > 1);
    QCOMPARE(loadGtfs(base(), options).feed->fareProducts.size(), options.limits.entries);
    --options.limits.entries;
    const FeedResult result = loadGtfs(base(), options);
    REQUIRE_FEED(result);
    QVERIFY(result.feed->fareProducts.isEmpty());
}

void GtfsLimitsTest::ruleAndProductNumbersMayNotMultiplyWithoutBound()
{
    QByteArray products = "fare_product_id,amount,currency,rider_category_id\n";
    QByteArray categories = "rider_category_id\n";
    QByteArray areas = "area_id\n";
    QByteArray rules = ruleHeader;
    for (int i = 0; i < 20'000; ++i) {
        const QByteArray id = QByteArray::number(i + 1);
        products += "p,1,EUR," + id + '\n';
        categories += id + '\n';
        areas += id + '\n';
        rules += "p," + id + ",1\n";
    }
    const FeedResult result = loadGtfs({{"fare_products.txt", products},
                                        {"fare_leg_rules.txt", rules},
                                        {"rider_categories.txt", categories},
                                        {"areas.txt", areas},
                                        {"stops.txt", "stop_id\nS\n"},
                                        {"stop_areas.txt", "stop_id,area_id\nS,1\n"},
                                        {"routes.txt", "route_id\nR\n"}});
    REQUIRE_FEED(result);
    QVERIFY(result.feed->products.isEmpty());
    QCOMPARE(result.feed->supportedPassengerTypes.size(), 20'000);
    QCOMPARE(result.feed->fareProducts.size(), 1);
    QCOMPARE(everythingSold(*result.feed->tariff).errors, QStringList("more than 100000 offers"));
    QCOMPARE(offersOf(*result.feed->tariff, queryOf("R S 2026-03-02T12:00")).offers.size(), 20'000);
}

QTEST_GUILESS_MAIN(GtfsLimitsTest)
#include "tst_gtfs_limits.moc"
