#include "Golden.h"
#include "RealFeed.h"
#include "Soak.h"
#include "ToolRunner.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <algorithm>
#include <numeric>

namespace
{

QString writeFeed(const ToolRunner& runner, const QJsonArray& products, int columns = 0)
{
    const QJsonObject feed{{"format", "rivo-feed"},
                           {"version", 1},
                           {"currency", "EUR"},
                           {"columns", columns},
                           {"supportedPassengerTypes", QJsonArray{"PT_ADULT", "PT_LFS"}},
                           {"products", products}};
    return runner.writeFeed(feed);
}

QJsonObject product(int pos, int fareProductId = 1, const QString& type = "PT_ADULT")
{
    return {{"passengerTypeId", 1},
            {"description", "Adult"},
            {"passengerTypeCode", type},
            {"price", 2.5},
            {"fareProductId", fareProductId},
            {"fareProductName", "Single"},
            {"fromStopGroupId", 1},
            {"toStopGroupId", 1},
            {"pos", pos}};
}

QJsonArray productsAt(const QVector<int>& positions)
{
    QJsonArray products;
    for (const int position : positions)
        products.append(product(position, 100 + products.size()));
    return products;
}

QVector<int> positionsOf(const QByteArray& json)
{
    QVector<int> positions;
    const QJsonArray rows = QJsonDocument::fromJson(json).object().value("rows").toArray();
    for (const QJsonValue& row : rows)
        positions.append(row.toObject().value("pos").toInt());
    return positions;
}

} // namespace

class TestRivoGrid : public QObject
{
    Q_OBJECT

private slots:
    void helpAndVersion_data();
    void helpAndVersion();
    void wrongCommandLine_data();
    void wrongCommandLine();
    void badFeedIsReportedWithExitCode2();
    void unwritableOutputIsReported();

    void golden_data();
    void golden();
    void queries();
    void aProductInSentences();
    void productsOfAJsonFeedNarrowToo();
    void longListsAreWrittenInParts();
    void emptyListsInJson();
    void offersOfWhatIsUnknown();
    void aRealFeed();
    void theFeedOfZakroczymIfThatIsTheRealOne();

    void standardOutputCarriesTheGridAlone();
    void verboseShowsTheLogOnStandardError();
    void coloursOnlyOnATerminal();
    void controlCharactersNeverReachTheTerminal();
    void csvQuotesTexts();

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

void TestRivoGrid::helpAndVersion_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("help lists the commands") << "--help" << QByteArray("rivo-grid check FEED");
    QTest::newRow("short help") << "-h" << QByteArray("Usage: ");
    QTest::newRow("version") << "--version" << QByteArray("rivo-grid " RIVO_VERSION "\n");
}

void TestRivoGrid::helpAndVersion()
{
    QFETCH(QString, option);
    QFETCH(QByteArray, expected);

    const Outcome outcome = ToolRunner(RIVO_GRID).run({option});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains(expected), outcome.output);
    QCOMPARE(outcome.messages, QByteArray());
}

void TestRivoGrid::wrongCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("no feed") << QStringList{} << QByteArray("expected one feed, got 0");
    QTest::newRow("two feeds") << QStringList{"a", "b"} << QByteArray("expected one feed, got 2");
    QTest::newRow("check without a feed")
        << QStringList{"check"} << QByteArray("expected one feed, got 0");
    QTest::newRow("unknown option") << QStringList{"--colour", "f"} << QByteArray("colour");
    QTest::newRow("columns is no number")
        << QStringList{"--columns", "x", "f"} << QByteArray("--columns: \"x\"");
    QTest::newRow("columns is negative")
        << QStringList{"--columns=-1", "f"} << QByteArray("--columns: \"-1\"");
    QTest::newRow("too many columns")
        << QStringList{"--columns", "1001", "f"} << QByteArray("expected a number from 0 to 1000");
    QTest::newRow("unknown format")
        << QStringList{"--format", "xml", "f"} << QByteArray("expected text, json or csv");
    QTest::newRow("rider category without a type")
        << QStringList{"--rider-category", "3=", "f"} << QByteArray("expected ID=PT_X");
    QTest::newRow("offers without a place")
        << QStringList{"offers", "f"} << QByteArray("--route, --stop, --at: missing");
    QTest::newRow("a grid of half a place")
        << QStringList{"f", "--stop", "1"} << QByteArray("--route, --at: missing");
    for (const char* at : {"2026-02-30T08:15", "2026-03-02", "2026-03-02T24:00", "08:15", ""})
        QTest::newRow(qPrintable(QString("time ") + at))
            << QStringList{"offers", "f", "--route", "1", "--stop", "1", QString("--at=") + at}
            << QByteArray("--at: \"") + at + "\", expected a time such as 2026-03-02T08:15";
    for (const char* media : {"", "5", "0,", "0;1", "01", "a"})
        QTest::newRow(qPrintable(QString("media ") + media))
            << QStringList{"offers",
                           "f",
                           "--route",
                           "1",
                           "--stop",
                           "1",
                           "--at",
                           "2026-03-02T08:15",
                           QString("--media=") + media}
            << QByteArray("--media: \"") + media + "\", expected types from 0 to 4, such as 0,1";
    QTest::newRow("why without a product")
        << QStringList{"why", "f"} << QByteArray("--product: missing");
    QTest::newRow("a product for a grid")
        << QStringList{"f", "--product", "p"} << QByteArray("--product: only for why");
    QTest::newRow("check of one stop")
        << QStringList{"check", "f", "--route", "1", "--stop", "1", "--at", "2026-03-02T08:15"}
        << QByteArray("check judges the whole feed, not one stop");
    QTest::newRow("queries for a grid")
        << QStringList{"f", "--queries", "q"} << QByteArray("--queries: only for offers");
    QTest::newRow("offers as CSV")
        << QStringList{"offers", "f", "--format", "csv", "--queries", "q"}
        << QByteArray("--format: offers are text or json");
    QTest::newRow("rider category without an id")
        << QStringList{"--rider-category", "=PT_LFS", "f"} << QByteArray("expected ID=PT_X");
}

void TestRivoGrid::wrongCommandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);

    const Outcome outcome = ToolRunner(RIVO_GRID).run(arguments);
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.messages.contains(message), outcome.messages);
}

void TestRivoGrid::badFeedIsReportedWithExitCode2()
{
    const ToolRunner runner(RIVO_GRID);
    QJsonObject bad = product(1);
    bad.insert("price", "two");
    bad.insert("fareProductId", 1.5);
    const QString feed = writeFeed(runner, {bad});

    const Outcome outcome = runner.run({feed});
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.messages.contains("/products/0/price: \"two\""), outcome.messages);
    QVERIFY2(outcome.messages.contains("/products/0/fareProductId: 1.5"), outcome.messages);

    QCOMPARE(runner.run({"check", feed}).exitCode, 2);
    const Outcome missing = runner.run({runner.home.filePath("none.json")});
    QCOMPARE(missing.exitCode, 2);
    QVERIFY2(missing.messages.contains("none.json"), missing.messages);
}

void TestRivoGrid::unwritableOutputIsReported()
{
    const ToolRunner runner(RIVO_GRID);
    QProcess process;
    process.setStandardOutputFile("/dev/full");
    process.start(QStringLiteral(RIVO_GRID), {writeFeed(runner, productsAt({1}))});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardError().contains("cannot write to standard output"));
}

void TestRivoGrid::golden_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("file");

    const QString coast = QStringLiteral(FEEDS "/coast-line.json");
    const QString hill = QStringLiteral(FEEDS "/hill-valley.json");
    const QString lake = QStringLiteral(TEST_FEEDS "/gtfs-lakeside");
    QTest::newRow("positions, printed") << QStringList{coast} << "coast-line.txt";
    QTest::newRow("positions, all roles")
        << QStringList{coast, "--format", "json"} << "coast-line.json";
    QTest::newRow("positions, as CSV") << QStringList{coast, "--format", "csv"} << "coast-line.csv";
    QTest::newRow("positions, judged") << QStringList{"check", coast} << "coast-line.check.txt";
    QTest::newRow("zones, printed") << QStringList{hill} << "hill-valley.txt";
    QTest::newRow("zones, judged") << QStringList{"check", hill} << "hill-valley.check.txt";
    QTest::newRow("GTFS fares, printed") << QStringList{lake} << "gtfs-lakeside.txt";
    const QStringList there{"--route", "L1", "--stop", "100", "--at", "2026-03-02T08:15"};
    QTest::newRow("offers, printed")
        << QStringList{"offers", lake} + there << "gtfs-lakeside.offers.txt";
    QTest::newRow("offers, as JSON")
        << QStringList{"offers", lake, "--format", "json", "--to", "200"} + there
        << "gtfs-lakeside.offers.json";
    QTest::newRow("GTFS fares of a stop, printed")
        << QStringList{lake} + there << "gtfs-lakeside.stop.txt";
    QTest::newRow("GTFS fares, judged") << QStringList{"check", lake} << "gtfs-lakeside.check.txt";
    QTest::newRow("a product, explained")
        << QStringList{"why", lake, "--product", "single_12"} + there << "gtfs-lakeside.why.txt";
    QTest::newRow("GTFS fares, as CSV")
        << QStringList{lake, "--format", "csv"} << "gtfs-lakeside.csv";
}

void TestRivoGrid::golden()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, file);

    for (const char* seed : thinnedOut<const char*>({"4711", "0", "1", "42"})) {
        const Outcome outcome = ToolRunner(RIVO_GRID).run(arguments, {{"QT_HASH_SEED", seed}});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY(matchesGolden(QStringLiteral(GOLDEN "/") + file, outcome.output));
    }
}

void TestRivoGrid::queries()
{
    const ToolRunner runner(RIVO_GRID);
    const QString lake = QStringLiteral(TEST_FEEDS "/gtfs-lakeside");
    const auto ask = [&](const QByteArray& lines) {
        return runner.run({"offers", lake, "--queries", runner.write("queries", lines)});
    };
    const QByteArray good = R"({"route": "L1", "stop": "100", "at": "2026-03-02T08:15")";
    const Outcome answered = ask(good + "}\n\n" + good + R"(, "to": "200", "media": [3]})" + "\n" +
                                 good + R"(, "media": "1,0", "to": null})");
    QCOMPARE(answered.exitCode, 0);
    const QByteArrayList lines = answered.output.split('\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.at(0), lines.at(2));
    const auto offersIn = [](const QByteArray& line) {
        return QJsonDocument::fromJson(line).object().value("offers").toArray().size();
    };
    QCOMPARE(offersIn(lines.at(0)), 7);
    QCOMPARE(offersIn(lines.at(1)), 0);

    const Outcome wrong =
        ask("[]\n{\n" + good + R"(, "to": "X"})" + "\n" + good + R"(, "media": [7]})" + "\n" +
            R"({"route": "L1", "stop": "100", "at": "8:15"})" + "\n" + good + '}');
    QCOMPARE(wrong.exitCode, 2);
    const QStringList expected{"expected an object in JSON", "expected an object in JSON",
                               "unknown stop \"X\"",
                               "media: expected types from 0 to 4, such as 0,1",
                               "at: \"8:15\", expected a time such as 2026-03-02T08:15"};
    const QByteArrayList answers = wrong.output.split('\n');
    QCOMPARE(answers.size(), 7);
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY2(QJsonDocument::fromJson(answers.at(i))
                     .object()
                     .value("error")
                     .toString()
                     .endsWith(expected.at(i)),
                 answers.at(i));
    QCOMPARE(offersIn(answers.at(5)), 7);
    QCOMPARE(runner.run({"offers", lake, "--queries", "none"}).exitCode, 2);
}

void TestRivoGrid::aProductInSentences()
{
    const ToolRunner runner(RIVO_GRID);
    const QString lake = QStringLiteral(TEST_FEEDS "/gtfs-lakeside");
    const auto why = [&](const QString& product, const QStringList& more = {}) {
        return runner.run(QStringList{"why", lake, "--product", product} + more);
    };
    QCOMPARE(why("monthly").output,
             QByteArray("It costs 120.00 PLN for anyone on Monthly card (1), a paper ticket.\n"
                        "No rule is about it: it is a pass, sold everywhere.\n"));
    const QStringList there{"--route", "L1", "--stop", "100", "--at", "2026-03-02T08:15"};
    QVERIFY(why("monthly", there + QStringList{"--media", "4"})
                .output.endsWith("At stop 100 of route L1 it is not sold: it is on media that are "
                                 "not sold here.\n"));
    const Outcome unknown = why("none");
    QCOMPARE(unknown.exitCode, 2);
    QVERIFY2(unknown.messages.contains("unknown fare product \"none\""), unknown.messages);
    QCOMPARE(why("monthly", {"--route", "X", "--stop", "100", "--at", "2026-03-02T08:15"}).exitCode,
             2);
}

void TestRivoGrid::productsOfAJsonFeedNarrowToo()
{
    const ToolRunner runner(RIVO_GRID);
    QJsonObject elsewhere = product(2, 2);
    elsewhere.insert("validRoutes", QJsonArray{13});
    QJsonObject expired = product(3, 3);
    expired.insert("hasExpired", true);
    QJsonObject inTheApp = product(4, 4);
    inTheApp.insert("validMedia", QJsonArray{4});
    const QString feed = writeFeed(runner, {product(1, 1), elsewhere, expired, inTheApp}, 1);
    const QStringList there{"--route", "12", "--stop", "1", "--at", "2026-03-02T08:15"};
    QCOMPARE(positionsOf(runner.run({feed, "--format", "json"}).output), QVector<int>({1, 2, 3}));
    const Outcome grid = runner.run(QStringList{feed, "--format", "json"} + there);
    QVERIFY(!grid.output.contains("\"fareProductId\": 2"));
    QVERIFY(grid.output.contains("\"fareProductId\": 3"));
    const QJsonObject offers =
        QJsonDocument::fromJson(
            runner.run(QStringList{"offers", feed, "--format", "json"} + there).output)
            .object();
    QCOMPARE(offers.value("offers").toArray().size(), 1);
    QCOMPARE(offers.value("leftOut").toArray().at(0).toObject().value("reason").toString(),
             QString("network"));
}

void TestRivoGrid::longListsAreWrittenInParts()
{
    const ToolRunner runner(RIVO_GRID);
    QJsonArray products;
    for (int i = 1; i <= 20'001; ++i) {
        QJsonObject entry = product(-1, i);
        entry.insert("validRoutes", QJsonArray{i == 1 ? 12 : 13});
        products.append(entry);
    }
    const QString feed = writeFeed(runner, products);
    const QStringList there{"--route", "12", "--stop", "1", "--at", "2026-03-02T08:15"};
    const QByteArray json =
        runner.run(QStringList{"offers", feed, "--format", "json"} + there).output;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    QCOMPARE(document.object().value("offers").toArray().size(), 1);
    QCOMPARE(document.object().value("leftOut").toArray().size(), 20'000);
    QCOMPARE(json, document.toJson());
    const QByteArray text = runner.run(QStringList{"offers", feed} + there).output;
    QCOMPARE(text.count("| network\n"), 20'000);
    QCOMPARE(text.count("| reason\n"), 1);
}

void TestRivoGrid::emptyListsInJson()
{
    const ToolRunner runner(RIVO_GRID);
    const QString feed = writeFeed(runner, {});
    const QStringList there{"--route", "12", "--stop", "1", "--at", "2026-03-02T08:15"};
    const QByteArray json =
        runner.run(QStringList{"offers", feed, "--format", "json"} + there).output;
    QCOMPARE(json, QJsonDocument::fromJson(json).toJson());
    QVERIFY(!json.isEmpty());
    const QString query =
        runner.write("queries", R"({"route": "12", "stop": "1", "at": "2026-03-02T08:15"})");
    QCOMPARE(runner.run({"offers", feed, "--queries", query}).output,
             QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact) + '\n');
}

void TestRivoGrid::offersOfWhatIsUnknown()
{
    const Outcome outcome =
        ToolRunner(RIVO_GRID).run({"offers", QStringLiteral(TEST_FEEDS "/gtfs-lakeside"), "--route",
                                   "X", "--stop", "Y", "--to", "Z", "--at", "2026-03-02T08:15"});
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.messages.endsWith("rivo-grid: unknown route \"X\"\n"
                                       "rivo-grid: unknown stop \"Y\"\n"
                                       "rivo-grid: unknown stop \"Z\"\n"),
             outcome.messages);
}

void TestRivoGrid::aRealFeed()
{
    const QString feed = realFeed();
    if (feed.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const Outcome outcome = ToolRunner(RIVO_GRID).run({feed, "--format", "json"});
    QCOMPARE(outcome.exitCode, 0);
    const QJsonObject grid = QJsonDocument::fromJson(outcome.output).object();
    const QJsonArray rows = grid.value("rows").toArray();
    QVERIFY(!rows.isEmpty());
    QVERIFY(grid.value("numberOfColumns").toInt() > 0);
    for (const QJsonValue& row : rows)
        QVERIFY(row.toObject().value("price").toDouble() >= 0.0);
}

void TestRivoGrid::theFeedOfZakroczymIfThatIsTheRealOne()
{
    const QString feed = realFeed();
    if (feed.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const QStringList mapping{"--rider-category", "0=PT_ADULT",       "--rider-category",
                              "1=PT_SCHOOLBOY",   "--rider-category", "2=PT_STUDENT_1",
                              "--rider-category", "3=PT_DISABLED"};
    const Outcome outcome =
        ToolRunner(RIVO_GRID).run(QStringList{feed, "--format", "json"} + mapping);
    const QJsonObject grid = QJsonDocument::fromJson(outcome.output).object();
    if (grid.value("name") != QLatin1String("Alexander Dubis"))
        QSKIP("another operator's feed");
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.messages, QByteArray());
    QCOMPARE(grid.value("currency").toString(), QString("PLN"));
    QMap<int, QVector<double>> pricesByZone; // of the products for sale
    const QJsonArray rows = grid.value("rows").toArray();
    for (const QJsonValue& row : rows) {
        const QJsonObject tile = row.toObject();
        if (!tile.value("hasExpired").toBool())
            pricesByZone[tile.value("toStopGroupId").toInt()].append(
                tile.value("price").toDouble());
    }
    for (QVector<double>& prices : pricesByZone)
        std::sort(prices.begin(), prices.end());
    const QMap<int, QVector<double>> expected{
        {0, {0, 70, 88.2, 140}}, {1, {0, 4, 5}}, {2, {0, 4, 4}}, {3, {0, 4, 5}}};
    QCOMPARE(pricesByZone, expected);

    const Outcome unmapped = ToolRunner(RIVO_GRID).run({feed});
    QCOMPARE(unmapped.exitCode, 0);
    QVERIFY2(unmapped.messages.contains("Bilet ulgowy (Seniorzy)"), unmapped.messages);
}

void TestRivoGrid::standardOutputCarriesTheGridAlone()
{
    const ToolRunner runner(RIVO_GRID);
    // PT_STUDENT_1 is in the order but not sold: the layout notes on standard output that it is
    // left out, and with log_fareproducts the slots.
    runner.writeSettings(R"({"logLevels": ["log_fareproducts"],
                             "passengerTypeCodesOrder": ["PT_LFS", "PT_STUDENT_1", "PT_ADULT"]})");
    const QString feed = writeFeed(runner, {product(-1), product(-1, 1, "PT_LFS")}, 2);
    for (const QStringList& more : {QStringList{}, QStringList{"--verbose"}}) {
        const Outcome outcome = runner.run(QStringList{feed, "--format", "json"} + more);
        QCOMPARE(outcome.exitCode, 0);
        QJsonParseError error;
        QJsonDocument::fromJson(outcome.output, &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(outcome.messages.isEmpty(), more.isEmpty());
    }
}

void TestRivoGrid::verboseShowsTheLogOnStandardError()
{
    const ToolRunner runner(RIVO_GRID);
    runner.writeSettings(R"({"passengerTypeCodesOrder": ["PT_LFS", "PT_STUDENT_1", "PT_ADULT"]})");
    const Outcome outcome =
        runner.run({"--verbose", writeFeed(runner, {product(-1), product(-1, 1, "PT_LFS")}, 2)});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.messages.contains("[8->PT_LFS],[3->PT_STUDENT_1],[1->PT_ADULT]"),
             outcome.messages);
    QVERIFY2(outcome.messages.contains("Remove : 3 from vTypeCodesOrderCpy"), outcome.messages);
}

void TestRivoGrid::coloursOnlyOnATerminal()
{
    const ToolRunner runner(RIVO_GRID);
    const QString feed = QStringLiteral(FEEDS "/coast-line.json");
    QVERIFY(!runner.run({feed}, {{"TERM", "xterm-256color"}}).output.contains('\x1b'));

    // script(1) gives the program a terminal to write to.
    if (QProcess::execute("script", {"-qec", "true", "/dev/null"}) != 0)
        QSKIP("this machine has no pseudo-terminals");
    const auto onTerminal = [&](const QVector<QPair<QString, QString>>& variables) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("NO_COLOR");
        for (const auto& variable : variables)
            environment.insert(variable.first, variable.second);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start("script",
                      {"-qec", QStringLiteral("'" RIVO_GRID "' '%1'").arg(feed), "/dev/null"});
        process.waitForFinished();
        return process.readAllStandardOutput();
    };
    QVERIFY(onTerminal({{"TERM", "xterm-256color"}}).contains("\x1b[2m"));
    const QByteArray plain = onTerminal({{"TERM", "xterm-256color"}, {"NO_COLOR", "1"}});
    QVERIFY(plain.contains("By position"));
    QVERIFY(!plain.contains('\x1b'));
    QVERIFY(!onTerminal({{"TERM", "dumb"}}).contains('\x1b'));
}

void TestRivoGrid::controlCharactersNeverReachTheTerminal()
{
    const ToolRunner runner(RIVO_GRID);
    QJsonObject hostile = product(1);
    hostile.insert("fareProductName", QString("a\x1b[31mb\nc\t\x7f"));
    const QString feed = writeFeed(runner, {hostile});
    for (const QStringList& arguments : {QStringList{feed}, QStringList{"check", feed}}) {
        const Outcome outcome = runner.run(arguments);
        for (const char byte : outcome.output + outcome.messages)
            QVERIFY(byte == '\n' || (byte & '\xe0') != 0);
        QVERIFY(!outcome.output.contains('\x7f'));
    }
}

void TestRivoGrid::csvQuotesTexts()
{
    const ToolRunner runner(RIVO_GRID);
    QJsonObject odd = product(1);
    odd.insert("fareProductName", "Single \"city\", day");
    const Outcome outcome = runner.run({writeFeed(runner, {odd}, 1), "--format", "csv"});
    QCOMPARE(outcome.output,
             QByteArray("passengerTypeId,description,fareProductIcon,price,fareProductId,"
                        "fareProductName,totalInBasket,isReturnFee,fromStopGroupId,"
                        "toStopGroupId,fareProductColor,hasExpired,fareDiscount,selected,"
                        "isDaily,pos\r\n"
                        "1,\"Adult\",\"qrc:/icons/adult.svg\",2.5,1,"
                        "\"Single \"\"city\"\", day\",0,false,1,1,\"\",false,0,false,false,1\r\n"));
}

void TestRivoGrid::columns()
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

void TestRivoGrid::orderFromConfiguration()
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

void TestRivoGrid::orderFromCommandLineLeavesTheConfigurationAlone()
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

void TestRivoGrid::supported()
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

void TestRivoGrid::repeatedAndUnknownTypesCountOnce_data()
{
    QTest::addColumn<QStringList>("many");
    QTest::addColumn<QStringList>("few");
    QStringList repeated;
    QStringList unknown{"PT_LFS"};
    for (int i = 0; i < 50'000; ++i) {
        repeated << "PT_ADULT"
                 << "PT_LFS";
        unknown << QString("PT_%1").arg(i);
    }
    QTest::newRow("two types 50,000 times each") << repeated << QStringList{"PT_ADULT", "PT_LFS"};
    QTest::newRow("50,000 unknown types") << unknown << QStringList{"PT_LFS", "?"};
}

void TestRivoGrid::repeatedAndUnknownTypesCountOnce()
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

void TestRivoGrid::check_data()
{
    QTest::addColumn<QVector<int>>("positions");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArrayList>("findings");

    const auto row = [](const char* name, const QVector<int>& positions, int exitCode,
                        const QByteArrayList& findings) {
        QTest::newRow(name) << positions << exitCode << findings;
    };
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

void TestRivoGrid::check()
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

void TestRivoGrid::checkNamesTheProducts()
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

QTEST_GUILESS_MAIN(TestRivoGrid)
#include "tst_rivo_grid.moc"
