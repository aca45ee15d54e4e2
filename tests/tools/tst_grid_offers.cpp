#include "GridFeeds.h"

#include <QtTest>

class TestGridOffers : public QObject
{
    Q_OBJECT

private slots:
    void queries();
    void aProductInSentences();
    void productsOfAJsonFeedNarrowToo();
    void longListsAreWrittenInParts();
    void emptyListsInJson();
    void offersOfWhatIsUnknown();
};

void TestGridOffers::queries()
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

void TestGridOffers::aProductInSentences()
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

void TestGridOffers::productsOfAJsonFeedNarrowToo()
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

void TestGridOffers::longListsAreWrittenInParts()
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

void TestGridOffers::emptyListsInJson()
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

void TestGridOffers::offersOfWhatIsUnknown()
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

QTEST_GUILESS_MAIN(TestGridOffers)
#include "tst_grid_offers.moc"
