#include "GridFeeds.h"
#include "Table.h"

#include <QtTest>

#include <algorithm>
#include <numeric>

class TestGridLayout : public QObject
{
    Q_OBJECT

private slots:
    void columns();
    void orderFromConfiguration();
    void orderFromCommandLineLeavesTheConfigurationAlone();
    void supported();
    void repeatedAndUnknownTypesCountOnce_data();
    void repeatedAndUnknownTypesCountOnce();
    void check_data();
    void check();
    void checkNamesTheProducts();
};

void TestGridLayout::columns()
{
    const ToolRunner runner(RIVO_GRID);
    const QString feed = writeFeed(runner, productsAt({1, 2, 3}), 2);
    const auto columnsOf = [&](const QStringList& more) {
        const Outcome outcome = runner.run(QStringList{feed, "--format", "json"} + more);
        return QJsonDocument::fromJson(outcome.output).object().value("numberOfColumns").toInt();
    };
    QCOMPARE(columnsOf({}), 2);                 // the feed's own
    QCOMPARE(columnsOf({"--columns", "4"}), 4); // the command line wins
    QCOMPARE(columnsOf({"--columns", "0"}), 3); // the model's choice
}

void TestGridLayout::orderFromConfiguration()
{
    const ToolRunner runner(RIVO_GRID);
    const QString feed =
        writeFeed(runner, {product(-1, 1, "PT_ADULT"), product(-1, 1, "PT_LFS")}, 2);
    const auto firstIcon = [&] {
        const QByteArray json = runner.run({feed, "--format", "json"}).output;
        return QJsonDocument::fromJson(json)
            .object()
            .value("rows")
            .toArray()
            .first()
            .toObject()
            .value("fareProductIcon")
            .toString();
    };
    QCOMPARE(firstIcon(), QString("qrc:/icons/adult.svg"));
    runner.writeSettings(R"({"passengerTypeCodesOrder": ["PT_LFS", "PT_ADULT"]})");
    QCOMPARE(firstIcon(), QString("qrc:/icons/family_large.svg"));
}

void TestGridLayout::orderFromCommandLineLeavesTheConfigurationAlone()
{
    const ToolRunner runner(RIVO_GRID);
    const QByteArray settings = R"({"passengerTypeCodesOrder": ["PT_ADULT", "PT_LFS"]})";
    runner.writeSettings(settings);
    const QString feed =
        writeFeed(runner, {product(-1, 1, "PT_ADULT"), product(-1, 1, "PT_LFS")}, 2);
    const Outcome outcome = runner.run({feed, "--format", "csv", "--order", "PT_LFS, PT_ADULT"});
    QVERIFY2(outcome.output.split('\n').value(1).contains("family_large"), outcome.output);

    QFile file(runner.home.filePath("ProjectLink/settings.json"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), settings);
}

void TestGridLayout::supported()
{
    const ToolRunner runner(RIVO_GRID);
    const QString feed =
        writeFeed(runner, {product(-1, 1, "PT_ADULT"), product(-1, 1, "PT_LFS")}, 3);
    const auto tiles = [&](const QString& types) {
        const QByteArray json = runner.run({feed, "--format", "json", "--supported", types}).output;
        return QJsonDocument::fromJson(json).object().value("rows").toArray().size();
    };
    QCOMPARE(tiles("PT_ADULT,PT_LFS"), 3);              // completed by a filler
    QCOMPARE(tiles("PT_ADULT,PT_STUDENT_1,PT_LFS"), 3); // a column without products
    QCOMPARE(tiles("PT_ADULT,PT_STUDENT_1,PT_DISABLED,PT_LFS"), 6);
}

void TestGridLayout::repeatedAndUnknownTypesCountOnce_data()
{
    const Table<QStringList, QStringList> row("many", "few");
    QStringList repeated;
    QStringList unknown{"PT_LFS"};
    for (int i = 0; i < 50'000; ++i) {
        repeated << "PT_ADULT"
                 << "PT_LFS";
        unknown << QString("PT_%1").arg(i);
    }
    row("two types 50,000 times each", repeated, {"PT_ADULT", "PT_LFS"});
    row("50,000 unknown types", unknown, {"PT_LFS", "?"});
}

void TestGridLayout::repeatedAndUnknownTypesCountOnce()
{
    QFETCH(QStringList, many);
    QFETCH(QStringList, few);
    const ToolRunner runner(RIVO_GRID);
    QJsonArray products;
    for (int zone = 1; zone <= 1000; ++zone) {
        QJsonObject entry = product(-1, zone, zone % 2 == 0 ? "PT_ADULT" : "PT_LFS");
        entry.insert("toStopGroupId", zone);
        products.append(entry);
    }
    const auto gridFor = [&](const QStringList& types) {
        const QString feed =
            runner.writeFeed({{"format", "rivo-feed"},
                              {"version", 1},
                              {"currency", "EUR"},
                              {"supportedPassengerTypes", QJsonArray::fromStringList(types)},
                              {"products", products}});
        return runner.run({feed, "--format", "csv"}).output;
    };
    const QByteArray grid = gridFor(many);
    QVERIFY(grid.count('\n') > 1000);
    QCOMPARE(grid, gridFor(few));
}

void TestGridLayout::check_data()
{
    const Table<QVector<int>, int, QByteArrayList> row("positions", "exitCode", "findings");
    row("complete positions are used", {1, 2, 3}, 0,
        {"3 products, 3 with a position", "lays the grid out by position, 3 columns x 1 rows"});
    row("holes are named and filled", {2, 4, 7, 9}, 0,
        {"holes in the numbering (5): 1, 3, 5-6, 8", "by position, 3 columns x 3 rows"});
    row("no position at all is no fallback", {-1, -1}, 0,
        {"2 products, 0 with a position", "zone by zone"});
    row("no products at all", {}, 0, {"0 products, 0 with a position"});
    row("duplicates fall back", {1, 1, 2}, 1,
        {"duplicate position 1:", "falls back, since positions are not unique"});
    row("one product without a position falls back", {-1, 3, 4}, 1,
        {"no position:", "falls back, since a product has no position"});
    row("two products without a position are duplicates of each other", {-1, 4, -1}, 1,
        {"no position:", "falls back, since positions are missing or not unique"});
    row("position 0 falls back", {0, 1, 2}, 1,
        {"position 0, positions count from 1:", "falls back, since a product has position 0"});
    row("a negative position falls back", {-5, 1}, 1,
        {"position -5 out of range, expected 1 to 100000:",
         "falls back, since a position is out of range"});
    row("a huge position falls back", {1, 2147483647}, 1,
        {"position 2147483647 out of range, expected 1 to 100000:",
         "falls back, since a position is out of range"});
    row("the largest position is used", {100000}, 0, {"holes in the numbering (99999): 1-99999"});
}

void TestGridLayout::check()
{
    QFETCH(QVector<int>, positions);
    QFETCH(int, exitCode);
    QFETCH(QByteArrayList, findings);

    const ToolRunner runner(RIVO_GRID);
    const QString feed = writeFeed(runner, productsAt(positions), 3);
    const Outcome outcome = runner.run({"check", feed});
    QCOMPARE(outcome.exitCode, exitCode);
    QCOMPARE(outcome.messages, QByteArray());
    for (const QByteArray& finding : findings)
        QVERIFY2(outcome.output.contains(finding), outcome.output);

    // The verdict is what the terminal really does: with usable positions the tiles count up.
    const bool isPositioned =
        std::any_of(positions.cbegin(), positions.cend(), [](int pos) { return pos != -1; });
    if (!isPositioned)
        return;
    const QVector<int> laidOut = positionsOf(runner.run({feed, "--format", "json"}).output);
    QVector<int> countedUp(laidOut.size());
    std::iota(countedUp.begin(), countedUp.end(), 1);
    QCOMPARE(laidOut == countedUp, exitCode == 0);
}

void TestGridLayout::checkNamesTheProducts()
{
    const ToolRunner runner(RIVO_GRID);
    QJsonObject daily = product(2, 9);
    daily.insert("isDaily", true);
    const QString feed =
        writeFeed(runner, {product(2, 5), product(2, 6, "PT_LFS"), product(1, 7), daily});
    const Outcome outcome = runner.run({"check", feed});
    QCOMPARE(outcome.output,
             QByteArray("3 products, 3 with a position; daily products, whose positions are not "
                        "used: 1\n"
                        "duplicate position 2:\n"
                        "  fare product 5 \"Single\" for Adult (PT_ADULT)\n"
                        "  fare product 6 \"Single\" for Adult (PT_LFS)\n"
                        "The terminal falls back, since positions are not unique: products in the "
                        "order of their positions, without placeholders, 3 columns x 2 rows.\n"));
}

QTEST_GUILESS_MAIN(TestGridLayout)
#include "tst_grid_layout.moc"
