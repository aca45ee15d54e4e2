#include "../feed/GtfsCases.h"
#include "Table.h"
#include "ToolRunner.h"

#include <QtTest>

namespace
{

QString writeGtfs(const ToolRunner& runner, const GtfsCase::Files& files)
{
    QDir(runner.home.path()).mkpath("gtfs");
    for (auto file = files.begin(); file != files.end(); ++file)
        runner.write("gtfs/" + file.key(), file.value());
    return runner.home.filePath("gtfs");
}

/// What stands between the headline and the positions.
QStringList findingsIn(const QByteArray& report)
{
    const QStringList lines = QString::fromUtf8(report).split('\n');
    const int positions =
        lines.indexOf(QRegularExpression("^[0-9]+ products, [0-9]+ with a position;.*"));
    const bool hasHeadline = lines.first().contains(" fare products, ");
    return lines.mid(hasHeadline ? 1 : 0, positions - (hasHeadline ? 1 : 0));
}

QByteArray jsonFeed(const QByteArray& validity, const QByteArray& network)
{
    return R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "products": [
                 {"passengerTypeId": 1, "description": "Adult", "passengerTypeCode": "PT_ADULT",
                  "price": 1, "fareProductId": 5, "fareProductName": "Single",
                  "fromStopGroupId": 7, "toStopGroupId": 7)" +
           validity + "}]" + network + '}';
}

} // namespace

class TestFareCheck : public QObject
{
    Q_OBJECT

private slots:
    void cases_data();
    void cases();
    void headline();
    void longListsAreCut();
    void jsonFeeds_data();
    void jsonFeeds();
    void feedsWithTooManyProductsAreJudged();
};

void TestFareCheck::cases_data()
{
    const Table<GtfsCase::Files, QStringList> row("files", "expected");
    for (const GtfsCase& entry : GtfsCases::read(CASES))
        row(qPrintable(entry.name), entry.files, entry.expected);
}

void TestFareCheck::cases()
{
    QFETCH(GtfsCase::Files, files);
    QFETCH(QStringList, expected);
    const ToolRunner runner(RIVO_GRID);
    const Outcome outcome = runner.run({"check", writeGtfs(runner, files)});
    QVERIFY2(outcome.exitCode == 0, outcome.messages);
    QCOMPARE(findingsIn(outcome.output).join('\n'), expected.join('\n'));
}

void TestFareCheck::headline()
{
    const ToolRunner runner(RIVO_GRID);
    const Outcome outcome =
        runner.run({"check", writeGtfs(runner, GtfsCases::read(CASES).first().files)});
    QCOMPARE(outcome.output,
             QByteArray("3 fare products, 2 rules, 3 stops, 2 rider categories\n"
                        "No finding about the fares.\n"
                        "3 products, 0 with a position; daily products, whose positions are not "
                        "used: 0\n"
                        "No product has a position: the terminal lays the grid out zone by zone, "
                        "3 columns x 3 rows.\n"));
}

void TestFareCheck::longListsAreCut()
{
    const ToolRunner runner(RIVO_GRID);
    GtfsCase::Files files = GtfsCases::read(CASES).first().files;
    for (int i = 0; i < 21; ++i)
        files["stops.txt"] += "X" + QByteArray::number(i) + ",,0\n";
    const QStringList twenty = findingsIn(runner.run({"check", writeGtfs(runner, files)}).output);
    QCOMPARE(twenty.first(), QString("stops without an area (21):"));
    QCOMPARE(twenty.size(), 22);
    QCOMPARE(twenty.at(20), QString("  \"X19\""));
    QCOMPARE(twenty.at(21), QString("  and 1 more"));
}

void TestFareCheck::jsonFeeds_data()
{
    const Table<QByteArray, QByteArray, QStringList> row("validity", "network", "findings");
    const QByteArray network = R"(, "network": {"routes": [{"id": 12}],
                                    "stops": [{"id": 1, "name": "A", "zones": [7]},
                                              {"id": 2, "name": "B"}]})";
    const auto never = [](const QString& reason) {
        return QStringList{"never sold (1):", "  \"5\" Single: " + reason};
    };
    const QStringList bare{"stops without a zone (1):", "  \"2\" B"};
    row("a product that says nothing is sold", "", network, {});
    row("a zone with a stop", R"(, "validZones": [7, 8])", network, bare);
    row("zones without a stop", R"(, "validZones": [8])", network,
        never("no stop is in its zones") + bare);
    row("any zone without a network", R"(, "validZones": [8])", "", {});
    row("media of the driver's", R"(, "validMedia": [4, 1])", network, {});
    row("other media", R"(, "validMedia": [2, 3, 4])", network,
        never("only on media that are not sold on board"));
    row("a time that holds", R"(, "validTimes": [{"days": [1]}])", network, {});
    row("hours of every day hold", R"(, "validTimes": [{"begin": "08:00:00"}])", network, {});
    row("dates that do not come",
        R"(, "validTimes": [{"firstDate": "2026-03-02", "lastDate": "2026-03-04", "days": [7]}])",
        network, never("its times hold on no day"));
}

void TestFareCheck::jsonFeeds()
{
    QFETCH(QByteArray, validity);
    QFETCH(QByteArray, network);
    const ToolRunner runner(RIVO_GRID);
    const Outcome outcome =
        runner.run({"check", runner.write("feed.json", jsonFeed(validity, network))});
    QVERIFY2(outcome.exitCode == 0, outcome.messages);
    QTEST(findingsIn(outcome.output), "findings");
}

void TestFareCheck::feedsWithTooManyProductsAreJudged()
{
    const ToolRunner runner(RIVO_GRID);
    GtfsCase::Files files = GtfsCases::read(CASES).first().files;
    QByteArray prices = "fare_product_id,amount,currency,rider_category_id\n";
    QByteArray categories = "rider_category_id\n";
    for (int i = 1; i <= 1'001; ++i) {
        prices += "town,1,EUR," + QByteArray::number(i) + '\n';
        categories += QByteArray::number(i) + '\n';
    }
    QByteArray areas = "area_id\n";
    QByteArray stops = "area_id,stop_id\n";
    QByteArray rules = "fare_product_id,from_area_id,to_area_id\n";
    for (int i = 0; i < 10; ++i) {
        const QByteArray area = QByteArray::number(i);
        areas += area + '\n';
        for (const char* stop : {"A", "B", "C"})
            stops += area + ',' + stop + '\n';
        for (int to = 0; to < 10; ++to)
            rules += "town," + area + ',' + QByteArray::number(to) + '\n';
    }
    files["fare_products.txt"] = prices;
    files["rider_categories.txt"] = categories;
    files["areas.txt"] = areas;
    files["stop_areas.txt"] = stops;
    files["fare_leg_rules.txt"] = rules;
    const Outcome outcome = runner.run({"check", writeGtfs(runner, files)});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.messages.contains("more than 100000 products over all areas"),
             outcome.messages.right(200));
    QVERIFY2(
        outcome.output.startsWith("1 fare products, 100 rules, 3 stops, 1001 rider categories\n"
                                  "rider categories without a passenger type (999);"),
        outcome.output.left(200));
}

QTEST_GUILESS_MAIN(TestFareCheck)
#include "tst_fare_check.moc"
