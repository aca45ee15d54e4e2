#include "Golden.h"
#include "ModelRows.h"
#include "RealFeed.h"
#include "Soak.h"
#include "Table.h"

#include <QtTest>

#include <algorithm>

class TestRivoModels : public QObject
{
    Q_OBJECT

private slots:
    void help();
    void version();
    void wrongCommandLine_data();
    void wrongCommandLine();
    void allProblemsAreReportedAtOnce();
    void feedWithProblems_data();
    void feedWithProblems();
    void unwritableOutputIsReported();

    void golden_data();
    void golden();
    void gtfsFolder();
    void gridIsThatOfRivoGrid_data();
    void gridIsThatOfRivoGrid();
    void noRows_data() { feedWithProblems_data(); }
    void noRows();
    void noName();
    void aRealFeed();
    void theFeedOfZakroczymIfThatIsTheRealOne();

    void onlyTicketsHaveProperties_data() { feedWithProblems_data(); }
    void onlyTicketsHaveProperties();

    void localeChangesNothing_data() { feedWithProblems_data(); }
    void localeChangesNothing();
    void logIsShownOnRequestOnly();
    void standardOutputCarriesTheRowsAlone();
};

void TestRivoModels::help()
{
    const Outcome outcome = ToolRunner(RIVO_MODELS).run({"--help"});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.messages, QByteArray());
    QVERIFY(outcome.output.contains("rivo-models [options] MODEL FEED\n"));
    for (const QString& model : allModels) {
        const QRegularExpression explained("^  " + model + " +[a-z]", //
                                           QRegularExpression::MultilineOption);
        QVERIFY2(explained.match(outcome.output).hasMatch(), outcome.output);
    }
    QCOMPARE(ToolRunner(RIVO_MODELS).run({"-h"}).output, outcome.output);
}

void TestRivoModels::version()
{
    const Outcome outcome = ToolRunner(RIVO_MODELS).run({"--version"});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QByteArray("rivo-models " RIVO_VERSION "\n"));
    QCOMPARE(outcome.messages, QByteArray());
}

void TestRivoModels::wrongCommandLine_data()
{
    addColumns<QStringList, QByteArray>("arguments", "message");
    const auto row = [](const char* name, const QStringList& arguments, const char* message) {
        QTest::newRow(name) << arguments << QByteArray("rivo-models: ") + message + '\n';
    };
    row("nothing", {}, "expected a model and a feed, got 0 arguments");
    row("no feed", {"grid"}, "expected a model and a feed, got 1 arguments");
    row("two feeds", {"grid", coast, hill}, "expected a model and a feed, got 3 arguments");
    row("unknown model", {"buses", coast},
        "unknown model \"buses\", expected grid, basket, fare-products, z-reports, fleet or "
        "devices");
    row("model in capitals", {"Fleet", coast},
        "unknown model \"Fleet\", expected grid, basket, fare-products, z-reports, fleet or "
        "devices");
    row("beginning of a model", {"fare", coast},
        "unknown model \"fare\", expected grid, basket, fare-products, z-reports, fleet or "
        "devices");
    row("escape sequence instead of a model", {"\x1b[2J", coast},
        "unknown model \"\\u001b[2J\", expected grid, basket, fare-products, z-reports, fleet or "
        "devices");
    row("feed before the model", {coast, "grid"}, "unknown model ");
    row("unknown option", {"--colour", "grid", coast}, "Unknown option 'colour'.");
    row("unknown format", {"--format", "xml", "fleet", coast},
        "--format: \"xml\", expected text, json or csv");
    row("columns is no number", {"--columns", "x", "grid", coast},
        "--columns: \"x\", expected a number from 0 to 1000");
    row("rider category without a type", {"--rider-category", "3=", "grid", lake},
        "--rider-category: \"3=\", expected ID=PT_X");
    row("tickets for another model", {"--tickets", "0", "grid", coast}, "--tickets: not for grid");
    row("columns for another model", {"--columns", "3", "devices", coast},
        "--columns: not for devices");
    row("order for another model", {"--order", "PT_ADULT", "z-reports", coast},
        "--order: not for z-reports");
    row("supported types for another model", {"--supported", "PT_ADULT", "fare-products", coast},
        "--supported: not for fare-products");
    const QVector<const char*> wrongLists{"",    ",",   "0,", ",0",  "0,,1",       "x",
                                          "0,x", "1.5", "-1", "0 1", "2147483648", "0x1"};
    for (const char* list : thinnedOut(wrongLists))
        row(QByteArray("tickets are \"" + QByteArray(list) + '"'),
            {"basket", coast, QString("--tickets=") + list},
            QByteArray("--tickets: \"" + QByteArray(list) +
                       "\", expected grid slots from 0, such as 0,3,3"));
}

void TestRivoModels::wrongCommandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);

    const Outcome outcome = ToolRunner(RIVO_MODELS).run(arguments);
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QByteArray());
    if (arguments.value(1) == "grid") // a path is named
        QVERIFY2(outcome.messages.startsWith(message.chopped(1)), outcome.messages);
    else
        QCOMPARE(outcome.messages, message + "Try rivo-models --help\n");
}

void TestRivoModels::allProblemsAreReportedAtOnce()
{
    const Outcome outcome =
        ToolRunner(RIVO_MODELS)
            .run({"fleet", coast, "--format", "xml", "--columns", "x", "--tickets", "x"});
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.messages,
             QByteArray("rivo-models: --columns: \"x\", expected a number from 0 to 1000\n"
                        "rivo-models: --format: \"xml\", expected text, json or csv\n"
                        "rivo-models: --tickets: \"x\", expected grid slots from 0, such as 0,3,3\n"
                        "rivo-models: --tickets: not for fleet\n"
                        "rivo-models: --columns: not for fleet\n"
                        "Try rivo-models --help\n"));
}

void TestRivoModels::feedWithProblems_data()
{
    const Table<QString> row("model");
    for (const QString& model : allModels)
        row(qPrintable(model), model);
}

void TestRivoModels::feedWithProblems()
{
    QFETCH(QString, model);
    const ToolRunner runner(RIVO_MODELS);
    // A problem of one section keeps every model from being printed: a feed is loaded whole.
    const QString feed =
        runner.writeFeed(feedOf("vehicles", {QJsonObject{{"id", "x"}, {"latitude", 5}}}));
    const Outcome outcome = runner.run({model, feed});
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.messages.contains("/vehicles/0/id: \"x\""), outcome.messages);
    QVERIFY2(outcome.messages.contains("/vehicles/0/registrationNumber"), outcome.messages);

    const Outcome missing = runner.run({model, runner.home.filePath("none.json")});
    QCOMPARE(missing.exitCode, 2);
    QCOMPARE(missing.output, QByteArray());
    QVERIFY2(missing.messages.contains("none.json"), missing.messages);
}

void TestRivoModels::unwritableOutputIsReported()
{
    QProcess process;
    process.setStandardOutputFile("/dev/full");
    process.start(RIVO_MODELS, {"fleet", coast});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardError().startsWith(
        "rivo-models: cannot write to standard output: "));
}

void TestRivoModels::golden_data()
{
    const Table<QVector<QStringList>> row("commands");
    for (const QString& model : allModels) {
        QVector<QStringList> commands{{model, coast}, {model, hill}};
        if (QStringList{"fare-products", "z-reports", "fleet", "devices"}.contains(model))
            commands << QStringList{model, coast, "--format", "json"};
        if (QStringList{"z-reports", "fleet", "devices"}.contains(model))
            commands << QStringList{model, hill, "--format", "csv"};
        if (model == "basket")
            commands << QStringList{model, hill, "--tickets", "25,0, 4,0"}
                     << QStringList{model, lake, "--tickets", "0,8", "--format", "json"};
        row(qPrintable(model), commands);
    }
}

void TestRivoModels::golden()
{
    QFETCH(QVector<QStringList>, commands);
    for (const char* seed : thinnedOut<const char*>({"4711", "0"})) {
        QByteArray transcript;
        for (QStringList command : qAsConst(commands)) {
            const Outcome outcome = ToolRunner(RIVO_MODELS).run(command, {{"QT_HASH_SEED", seed}});
            QCOMPARE(outcome.exitCode, 0);
            command[1] = QFileInfo(command.at(1)).fileName();
            transcript += "$ rivo-models " + command.join(' ').toUtf8() + '\n' + outcome.output;
        }
        QVERIFY(matchesGolden(QStringLiteral(GOLDEN "/models.%1.txt").arg(QTest::currentDataTag()),
                              transcript));
    }
}

void TestRivoModels::gtfsFolder()
{
    const ToolRunner runner(RIVO_MODELS);
    const auto rows = [&](const QString& model) {
        return rowsOf(runner.run({model, lake, "--format", "json"})).size();
    };
    QVERIFY(rows("grid") > rows("basket"));
    QVERIFY(rows("basket") > 0);
    QCOMPARE(rows("fare-products"), 10);
    for (const char* model : {"z-reports", "fleet", "devices"}) {
        const Outcome outcome = runner.run({model, lake});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.output.startsWith(
                     QString("Lakeside Communal Buses: %1, 0 rows\n\n").arg(model).toUtf8()),
                 outcome.output);
        QVERIFY2(outcome.messages.contains("mapped to no passenger type"), outcome.messages);
        const Outcome mapped = runner.run({model, lake, "--rider-category", "3=PT_LFS"});
        QCOMPARE(mapped.messages, QByteArray());
    }
}

void TestRivoModels::gridIsThatOfRivoGrid_data()
{
    const Table<QStringList> row("arguments");
    row("JSON of positions", {coast, "--format", "json"});
    row("CSV of positions", {coast, "--format", "csv"});
    row("JSON of zones", {hill, "--format", "json"});
    row("CSV of zones", {hill, "--format", "csv"});
    row("other columns", {hill, "--format", "json", "--columns", "3"});
    row("other order",
        {hill, "--format", "csv", "--order", "PT_MILITARY_1,PT_ADULT,PT_STUDENT_1,PT_SCHOOLBOY"});
    row("other supported types", {hill, "--format", "csv", "--supported", "PT_ADULT,PT_SCHOOLBOY"});
    row("other rider categories", {lake, "--format", "csv", "--rider-category", "3=PT_DISABLED"});
}

void TestRivoModels::gridIsThatOfRivoGrid()
{
    QFETCH(QStringList, arguments);
    const Outcome expected = ToolRunner(RIVO_GRID).run(arguments);
    const Outcome outcome = ToolRunner(RIVO_MODELS).run(QStringList{"grid"} + arguments);
    QCOMPARE(expected.exitCode, 0);
    QVERIFY(!expected.output.isEmpty());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, expected.output);
    QCOMPARE(outcome.messages, expected.messages);
}

void TestRivoModels::noRows()
{
    QFETCH(QString, model);
    const ToolRunner runner(RIVO_MODELS);
    const QString feed = runner.writeFeed(feedOf());
    const Outcome text = runner.run({model, feed});
    QCOMPARE(text.exitCode, 0);
    QVERIFY2(text.output.startsWith(model.toUtf8() + ", 0 rows\n\n  "), text.output);
    QCOMPARE(text.output.count('\n'), 3); // the title, a blank line, the role names
    const Outcome json = runner.run({model, feed, "--format", "json"});
    QCOMPARE(json.exitCode, 0);
    QVERIFY2(json.output.contains("\"rows\": [\n    ]"), json.output);
    const Outcome csv = runner.run({model, feed, "--format", "csv"});
    QCOMPARE(csv.exitCode, 0);
    QCOMPARE(csv.output.count("\r\n"), 1);
}

void TestRivoModels::noName()
{
    const ToolRunner runner(RIVO_MODELS);
    const QString feed =
        runner.writeFeed(feedOf("peripherals", {QJsonObject{{"id", 1}, {"name", "Printer"}}}));
    QVERIFY(runner.run({"devices", feed}).output.startsWith("devices, 1 row\n\n"));
}

void TestRivoModels::aRealFeed()
{
    const QString feed = realFeed();
    if (feed.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const ToolRunner runner(RIVO_MODELS);
    const QJsonArray tiles = rowsOf(runner.run({"grid", feed, "--format", "json"}));
    const QJsonArray tickets = rowsOf(runner.run({"basket", feed, "--format", "json"}));
    QVERIFY(!tickets.isEmpty());
    QCOMPARE(tickets.size(), std::count_if(tiles.begin(), tiles.end(), [](const QJsonValue& tile) {
                 return !tile.toObject().value("hasExpired").toBool();
             }));
}

void TestRivoModels::theFeedOfZakroczymIfThatIsTheRealOne()
{
    const QString feed = realFeed();
    if (feed.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const Outcome basket = ToolRunner(RIVO_MODELS).run({"basket", feed, "--format", "json"});
    if (!basket.output.contains("\"Alexander Dubis\""))
        QSKIP("another operator's feed");
    const QJsonArray tickets = rowsOf(basket);
    QCOMPARE(tickets.size(), 13);
    for (const QJsonValue& ticket : tickets) {
        // Every area has a name, and there is none where a pass is valid.
        const int zone = ticket.toObject().value("toStopGroupId").toInt();
        const QString destination = ticket.toObject().value("destination").toString();
        QCOMPARE(destination.isEmpty(), zone == 0);
        QVERIFY(destination != QString::number(zone));
    }
}

void TestRivoModels::onlyTicketsHaveProperties()
{
    QFETCH(QString, model);
    const QJsonArray rows = rowsOf(ToolRunner(RIVO_MODELS).run({model, hill, "--format", "json"}));
    QVERIFY(!rows.isEmpty());
    for (const QJsonValue& row : rows)
        QCOMPARE(row.toObject().contains("properties"), model == "basket");
}

void TestRivoModels::localeChangesNothing()
{
    QFETCH(QString, model);
    const ToolRunner runner(RIVO_MODELS);
    for (const char* format : thinnedOut<const char*>({"text", "json", "csv"})) {
        const QStringList arguments{model, hill, "--format", format};
        const Outcome expected = runner.run(arguments);
        QCOMPARE(expected.exitCode, 0);
        for (const char* locale :
             thinnedOut<const char*>({"de_DE.UTF-8", "ar_EG.UTF-8", "hi_IN", "C", "POSIX"})) {
            const Outcome outcome =
                runner.run(arguments, {{"LC_ALL", locale}, {"TZ", "Pacific/Auckland"}});
            QCOMPARE(outcome.exitCode, 0);
            QCOMPARE(outcome.output, expected.output);
            QCOMPARE(outcome.messages, QByteArray());
        }
    }
}

void TestRivoModels::logIsShownOnRequestOnly()
{
    const ToolRunner runner(RIVO_MODELS);
    const Outcome quiet = runner.run({"z-reports", coast});
    QCOMPARE(quiet.messages, QByteArray());
    const Outcome verbose = runner.run({"z-reports", coast, "--verbose"});
    QCOMPARE(verbose.exitCode, 0);
    QCOMPARE(verbose.output, quiet.output);
    QVERIFY2(verbose.messages.contains("id: 5120 currentDept: 0 maxAllowedDebt: 300\n"),
             verbose.messages);
    QVERIFY2(verbose.messages.contains("id: 5121 currentDept: 22.4 maxAllowedDebt: 300\n"),
             verbose.messages);
    QCOMPARE(verbose.messages.count('\n'), 2);
}

void TestRivoModels::standardOutputCarriesTheRowsAlone()
{
    const ToolRunner runner(RIVO_MODELS);
    // PT_STUDENT_1 is in the order but not sold: the layout notes on standard output that it is
    // left out, and with log_fareproducts the slots.
    runner.writeSettings(R"({"logLevels": ["log_fareproducts"],
                             "passengerTypeCodesOrder": ["PT_LFS", "PT_STUDENT_1", "PT_ADULT"]})");
    QJsonObject feed = feedOf("products", {product(1), product(2, false, "PT_LFS"), product(3)});
    feed.insert("columns", 2);
    const QString file = runner.writeFeed(feed);
    for (const char* model : {"grid", "basket"}) {
        const Outcome quiet = runner.run({model, file, "--format", "json"});
        QVERIFY2(column(rowsOf(quiet), "fareProductId").startsWith("2 1 "), quiet.output);
        QCOMPARE(quiet.messages, QByteArray());
        const Outcome verbose = runner.run({model, file, "--format", "json", "--verbose"});
        QCOMPARE(verbose.output, quiet.output);
        QVERIFY2(verbose.messages.contains("Remove : 3 from vTypeCodesOrderCpy"), verbose.messages);
    }
}

QTEST_GUILESS_MAIN(TestRivoModels)
#include "tst_rivo_models.moc"
