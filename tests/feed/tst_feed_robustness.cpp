#include "FeedFiles.h"
#include "GtfsCases.h"
#include "Soak.h"
#include "Table.h"

#include <ctime>

using namespace rivo::feed;

namespace
{

const QByteArray json = R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "columns": 3,
"products": [{"passengerTypeId": 1, "description": "Ad\u00fclt", "passengerTypeCode": "PT_ADULT",
 "price": 2.5, "fareProductId": 3, "fareProductName": "Sing\\le", "fromStopGroupId": -4,
 "toStopGroupId": 5e0, "isDaily": false}], "x-a": [null, [], {"b": true}],
"vehicles": [{"id": 1, "registrationNumber": "R", "latitude": 1, "longitude": 2}]})";

/// Processor time since it was made, which other programs on a busy machine do not add to.
class ProcessorTime
{
public:
    int seconds() const { return static_cast<int>((std::clock() - m_start) / CLOCKS_PER_SEC); }

private:
    const std::clock_t m_start = std::clock();
};

/// A feed with every file that is read.
const QMap<QString, QByteArray>& gtfs()
{
    static const auto files = GtfsCases::read(FEED_TEST_DATA "/gtfs/problems.cases").first().files;
    return files;
}

/// Whatever of them is cut off, the rest is a feed.
const QStringList filesThatMayBeCut{"agency.txt", "fare_transfer_rules.txt", "shapes.txt"};

/// Bytes that mean something to one of the formats, and bytes that are no UTF-8.
const QByteArray replacements = QByteArray("\0\"\n\r,{]\\9 -\x7F\x80\xFF", 15);

} // namespace

/// load() fails the test unless a feed is loaded whole or refused with problems.
class FeedRobustnessTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void jsonCutAnywhereIsRefused();
    void jsonWithAnyByteReplacedIsLoadedOrRefused();
    void gtfsCutAnywhereIsLoadedOrRefused();
    void gtfsWithAnyByteReplacedIsLoadedOrRefused();
    void hostileJsonEndsSoon_data();
    void hostileJsonEndsSoon();
    void hostileCsvEndsSoon_data();
    void hostileCsvEndsSoon();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void FeedRobustnessTest::jsonCutAnywhereIsRefused()
{
    REQUIRE_FEED(loadJson(json));
    for (int length = 0; length < json.size(); ++length)
        QVERIFY2(!loadJson(json.left(length)).feed, qPrintable(QString::number(length)));
}

void FeedRobustnessTest::jsonWithAnyByteReplacedIsLoadedOrRefused()
{
    int places = 0;
    int refused = 0;
    for (int at = 0; at < json.size(); at += soakDivisor(), ++places) {
        for (const char replacement : replacements) {
            QByteArray broken = json;
            broken[at] = replacement;
            refused += !loadJson(broken).feed;
        }
    }
    QVERIFY(refused > places); // and not everything was taken as it came
    QVERIFY(refused < places * replacements.size());
}

void FeedRobustnessTest::gtfsCutAnywhereIsLoadedOrRefused()
{
    for (auto file = gtfs().begin(); file != gtfs().end(); ++file)
        FeedFiles::write("gtfs/" + file.key(), file.value());
    REQUIRE_FEED(load("gtfs"));
    for (auto file = gtfs().begin(); file != gtfs().end(); ++file) {
        int refused = 0;
        for (int length = 0; length < file.value().size(); ++length) {
            FeedFiles::write("gtfs/" + file.key(), file.value().left(length));
            refused += !load("gtfs").feed;
        }
        QVERIFY2(refused > 0 || filesThatMayBeCut.contains(file.key()), qPrintable(file.key()));
        FeedFiles::write("gtfs/" + file.key(), file.value());
    }
    REQUIRE_FEED(load("gtfs"));
}

void FeedRobustnessTest::gtfsWithAnyByteReplacedIsLoadedOrRefused()
{
    for (auto file = gtfs().begin(); file != gtfs().end(); ++file)
        FeedFiles::write("gtfs/" + file.key(), file.value());
    for (auto file = gtfs().begin(); file != gtfs().end(); ++file) {
        int refused = 0;
        for (int at = 0; at < file.value().size(); at += soakDivisor()) {
            for (const char replacement : replacements) {
                QByteArray broken = file.value();
                broken[at] = replacement;
                FeedFiles::write("gtfs/" + file.key(), broken);
                refused += !load("gtfs").feed;
            }
        }
        QVERIFY2(refused > 0 || filesThatMayBeCut.contains(file.key()), qPrintable(file.key()));
        FeedFiles::write("gtfs/" + file.key(), file.value());
    }
    REQUIRE_FEED(load("gtfs"));
}

void FeedRobustnessTest::hostileJsonEndsSoon_data()
{
    const Table<QByteArray> row("hostile");
    const auto within = [](const QByteArray& value) { return "{\"x-a\": " + value + '}'; };
    const int size = triesTheLargest() ? 2 * 1024 * 1024 : 64 * 1024;
    row("nothing but opening brackets", within(QByteArray(size, '[')));
    row("nothing but quotes", QByteArray(size, '"'));
    row("nothing but zero bytes", QByteArray(size, '\0'));
    row("nothing but bytes that are no UTF-8", QByteArray(size, '\xFF'));
    row("nothing but lines that are no UTF-8", QByteArray("\xFF\n").repeated(size / 2));
    row("one long text", within('"' + QByteArray(size, 'a') + '"'));
    row("one long number", within(QByteArray(size, '9')));
    row("one long key", "{\"" + QByteArray(size, 'k') + "\": 1}");
    row("very many empty objects", within('[' + QByteArray("{},").repeated(size / 3)));
    row("one key given again and again",
        within('{' + QByteArray("\"a\":1,").repeated(size / 6) + "\"a\":1}"));
    row("very many unknown keys", [&] {
        QByteArray text = "{";
        for (int i = 0; i < size / 20; ++i)
            text += '"' + QByteArray::number(i) + "\":1,";
        return text + "\"last\":1}";
    }());
    row("very many escapes", within('"' + QByteArray("\\u0000").repeated(size / 6) + '"'));
}

void FeedRobustnessTest::hostileJsonEndsSoon()
{
    QFETCH(QByteArray, hostile);
    const ProcessorTime time;
    const FeedResult result = loadJson(hostile);
    QVERIFY(!result.feed);
    for (const QString& line : result.problemLines())
        QVERIFY2(line.size() < 20'000'000, qPrintable(line.left(200)));
    QVERIFY2(time.seconds() < 60, qPrintable(QString::number(time.seconds())));
}

void FeedRobustnessTest::hostileCsvEndsSoon_data()
{
    const Table<QByteArray> row("csv");
    const QByteArray header = "fare_product_id,amount,currency,fare_product_name\n";
    const int size = triesTheLargest() ? 2 * 1024 * 1024 : 64 * 1024;
    row("nothing but commas", QByteArray(size, ','));
    row("a record of nothing but commas", header + QByteArray(size, ','));
    row("very many empty records", header + QByteArray(",\n").repeated(size / 10));
    row("nothing but quotes", header + QByteArray(size + 1, '"'));
    row("a quote that is never closed", header + '"' + QByteArray(size, 'a'));
    row("a quote that is never closed, over many lines",
        header + '"' + QByteArray("a\n").repeated(size / 2));
    row("very many broken records", header + QByteArray("\"a\"b\n").repeated(size / 5));
    row("one long field", header + QByteArray(size, 'a') + ",1,EUR,");
    row("one long amount", header + "a," + QByteArray(size, '9') + ",EUR,");
    row("nothing but zero bytes, and a record", QByteArray(size, '\0') + "\n1\n");
}

void FeedRobustnessTest::hostileCsvEndsSoon()
{
    QFETCH(QByteArray, csv);
    const ProcessorTime time;
    FeedFiles::write("gtfs/fare_products.txt", csv);
    const FeedResult result = load("gtfs");
    QVERIFY(!result.feed);
    for (const QString& line : result.problemLines())
        QVERIFY2(line.size() < 1'000, qPrintable(line.left(200)));
    QVERIFY2(time.seconds() < 60, qPrintable(QString::number(time.seconds())));
}

QTEST_GUILESS_MAIN(FeedRobustnessTest)
#include "tst_feed_robustness.moc"
