#include "FeedFiles.h"
#include "JsonDocuments.h"

#include "Feed.h"
#include "Table.h"

using namespace rivo::feed;

class JsonLimitsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void manyProblemsAreCounted();
    void manyNoticesAreCounted();
    void limitsAreInclusive_data();
    void limitsAreInclusive();
    void theLimitsAre();
    void listsOfTheNetworkAreLimited();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void JsonLimitsTest::manyProblemsAreCounted()
{
    const QByteArray bad = product(", \"pos\": 0.5");
    FeedResult result = loadJson(document(joined(FeedReport::maxKept, bad)));
    QCOMPARE(result.problems.size(), FeedReport::maxKept);
    QCOMPARE(result.furtherProblems, 0);
    QCOMPARE(result.problemLines().size(), FeedReport::maxKept);

    result = loadJson(document(joined(FeedReport::maxKept + 234, bad)));
    QCOMPARE(result.problems.size(), FeedReport::maxKept);
    QCOMPARE(result.furtherProblems, 234);
    QCOMPARE(result.problemLines().size(), FeedReport::maxKept + 1);
    QCOMPARE(result.problemLines().last(), QStringLiteral("... and 234 further problems"));
    QCOMPARE(result.problems.last().line, FeedReport::maxKept + 1);
}

void JsonLimitsTest::manyNoticesAreCounted()
{
    QByteArrayList products;
    for (int i = 0; i < FeedReport::maxKept + 2; ++i)
        products.append(product().replace("PT_ADULT", "T" + QByteArray::number(i)));
    const FeedResult result = loadJson(document(products.join(',')));
    REQUIRE_FEED(result);
    QCOMPARE(result.notices.size(), FeedReport::maxKept);
    QCOMPARE(result.noticeLines().last(), QStringLiteral("... and 2 further notices"));
}

void JsonLimitsTest::limitsAreInclusive_data()
{
    const Table<QByteArray, QByteArray, QString> row("within", "beyond", "problem");
    row("size of 500 bytes", document({}).leftJustified(500), document({}).leftJustified(501),
        "feed.json: 501 bytes, expected at most 500 bytes");
    row("depth of 4", document({}, ", \"x-a\": [[[]]]"), document({}, ", \"x-a\": [[[{}]]]"),
        "feed.json:1:68: /x-a/0/0/0: \"{}]]], \"products\": [\", expected at most 4 objects and "
        "lists within one another");
    row("20 values", document({}, ", \"x-a\": [" + joined(14, "1") + ']'),
        document({}, ", \"x-a\": [" + joined(15, "1") + ']'),
        "feed.json:15:17: /products: \"[\", expected at most 20 values");
    row("6 entries in a list",
        document({}, ", \"supportedPassengerTypes\": [" + joined(6, "\"A\"") + ']'),
        document({}, ", \"supportedPassengerTypes\": [" + joined(7, "\"A\"") + ']'),
        "feed.json:1: /supportedPassengerTypes: 7 entries, expected a list of at most 6 texts");
    row("6 objects in a list", document({}, ", \"zReports\": [" + joined(6, "{\"id\": 1}") + ']'),
        document({}, ", \"zReports\": [" + joined(7, "{\"id\": 1}") + ']'),
        "feed.json:1: /zReports: 7 entries, expected a list of at most 6 objects");
    const QByteArray bus = "\xF0\x9F\x9A\x8C";
    row("text of 30 characters, a pair of surrogates being one",
        document({}, ", \"name\": \"" + QByteArray(29, 'a') + bus + '"'),
        document({}, ", \"name\": \"" + QByteArray(30, 'a') + bus + '"'),
        "feed.json:1: /name: \"" + QString(30, 'a') + QString::fromUtf8(bus) +
            "\", expected a text of 0 to 30 characters");
    row("key of 30 characters", document({}, ", \"x-" + QByteArray(28, 'a') + "\": 1"),
        document({}, ", \"x-" + QByteArray(29, 'a') + "\": 1"),
        "feed.json:1:91: \": 1, \"products\": [\", expected keys of at most 30 characters");
}

void JsonLimitsTest::limitsAreInclusive()
{
    QFETCH(QByteArray, within);
    QFETCH(QByteArray, beyond);
    QFETCH(QString, problem);
    FeedOptions options;
    options.limits.jsonBytes = 500;
    options.limits.jsonDepth = 4;
    options.limits.jsonValues = 20;
    options.limits.entries = 6;
    options.limits.textLength = 30;
    REQUIRE_FEED(loadJson(within, options));
    QCOMPARE(loadJson(beyond, options).problemLines(), QStringList(problem));
}

void JsonLimitsTest::theLimitsAre()
{
    const FeedLimits limits;
    QCOMPARE(limits.jsonBytes, qint64(33'554'432));
    QCOMPARE(limits.jsonDepth, 32);
    QCOMPARE(limits.jsonValues, 2'000'000);
    QCOMPARE(limits.feedFiles, 10'000);
    QCOMPARE(limits.csvBytes, qint64(268'435'456));
    QCOMPARE(limits.csvColumns, 1'000);
    QCOMPARE(limits.csvLineBytes, 1'048'576);
    QCOMPARE(limits.csvRecords, 2'000'000);
    QCOMPARE(limits.tableRecords, 300'000);
    QCOMPARE(limits.textBytes, qint64(67'108'864));
    QCOMPARE(limits.entries, 100'000);
    QCOMPARE(limits.textLength, 1'000);

    const QByteArray tooDeep = "{\"x-a\": " + QByteArray(1'000'000, '[');
    QCOMPARE(loadJson(tooDeep).problems.size(), 1);
    const FeedResult tooMany = loadJson(document(joined(100'001, "1")));
    QCOMPARE(
        tooMany.problemLines(),
        QStringList("feed.json:1: /products: 100001 entries, expected a list of at most 100000 "
                    "objects"));
}

void JsonLimitsTest::listsOfTheNetworkAreLimited()
{
    const auto network = [](int zones, int points, int times) {
        return document({}, R"(, "network": {
            "stops": [{"id": 1, "name": "A", "zones": [)" +
                                joined(zones, "1") + R"(]}],
            "shapes": [{"id": "s", "points": [)" +
                                joined(points, "[1, 2]") + R"(]}],
            "trips": [{"id": 1, "routeId": 1, "stopTimes": [)" +
                                joined(times, R"({"stopId": 1})") + "]}]}");
    };
    FeedOptions options;
    options.limits.entries = 3;
    REQUIRE_FEED(loadJson(network(3, 3, 3), options));
    QStringList problems = loadJson(network(4, 4, 4), options).problemLines();
    QCOMPARE(problems.size(), 3);
    QVERIFY(problems.at(0).endsWith("/network/stops/0/zones: 4 entries, expected a list of at "
                                    "most 3 integers"));
    QVERIFY(problems.at(1).endsWith("/network/shapes/0/points: 4 entries, expected a list of at "
                                    "most 3 points"));
    QVERIFY(problems.at(2).endsWith("/network/trips/0/stopTimes: 4 entries, expected a list of "
                                    "at most 3 objects"));
}

QTEST_GUILESS_MAIN(JsonLimitsTest)
#include "tst_json_limits.moc"
