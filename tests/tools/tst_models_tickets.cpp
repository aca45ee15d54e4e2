#include "ModelRows.h"
#include "Table.h"

#include <QtTest>

namespace
{

/// A grid of two columns with the fare products 1, 2 (expired), 3, a placeholder, 5, a placeholder,
/// and the daily product 9.
QString sixSlotsAndADailyOne(const ToolRunner& runner)
{
    QJsonArray products;
    for (const int slot : {1, 2, 3, 5}) {
        products.append(product(slot, slot == 2));
        QJsonObject positioned = products.last().toObject();
        positioned.insert("pos", slot);
        products.replace(products.size() - 1, positioned);
    }
    QJsonObject daily = product(9);
    daily.insert("isDaily", true);
    products.append(daily);
    QJsonObject feed = feedOf("products", products);
    feed.insert("columns", 2);
    return runner.writeFeed(feed);
}

} // namespace

class TestModelsTickets : public QObject
{
    Q_OBJECT

private slots:
    void tickets_data();
    void tickets();
    void theTripOfTheFeedIsInEveryTicket_data();
    void theTripOfTheFeedIsInEveryTicket();
    void wrongTickets_data();
    void wrongTickets();
    void ticketsOfAnEmptyGrid();
    void productsForOtherMediaAreLeftOut();
    void layoutOptionsShapeGridAndBasket();
};

void TestModelsTickets::tickets_data()
{
    const Table<QStringList, QString> row("options", "fareProducts");
    row("without a choice: every tile for sale once, in the order of the grid", QStringList{},
        "1 3 5 9");
    row("one slot", {"--tickets", "0"}, "1");
    row("in the order of the list", {"--tickets", "4,0,2"}, "5 1 3");
    row("a slot may repeat", {"--tickets", "2,2,0,2"}, "3 3 1 3");
    row("blanks around slots", {"--tickets", " 0 , 2"}, "1 3");
    row("a daily product behind the grid", {"--tickets", "6"}, "9");
}

void TestModelsTickets::tickets()
{
    QFETCH(QStringList, options);
    QFETCH(QString, fareProducts);
    const ToolRunner runner(RIVO_MODELS);
    const Outcome outcome = runner.run(
        QStringList{"basket", sixSlotsAndADailyOne(runner), "--format", "json"} + options);
    QCOMPARE(outcome.messages, QByteArray());
    const QJsonArray rows = rowsOf(outcome);
    QCOMPARE(column(rows, "fareProductId"), fareProducts);
    for (int row = 0; row < rows.size(); ++row) {
        const QJsonObject ticket = rows.at(row).toObject();
        QCOMPARE(ticket.value("id").toInt(), row);
        QCOMPARE(ticket.value("origin").toString(), "1");
        QCOMPARE(ticket.value("destination").toString(), "2");
    }
}

void TestModelsTickets::theTripOfTheFeedIsInEveryTicket_data()
{
    const Table<QJsonObject, QString> row("trip", "publicExecution");
    row("of a trip in the timetable",
        QJsonObject{{"routeId", 11},
                    {"fromStopId", 12},
                    {"toStopId", 13},
                    {"currentStopId", 14},
                    {"tripsRouteId", 15},
                    {"tripsExecutionId", 16},
                    {"publicRouteExecutionId", "17"}},
        "17");
    row("the public number of a trip in no timetable stays out of the ticket",
        QJsonObject{{"routeId", 21},
                    {"fromStopId", 22},
                    {"toStopId", 23},
                    {"currentStopId", 24},
                    {"tripsRouteId", 25},
                    {"tripsExecutionId", 26},
                    {"publicRouteExecutionId", "DynamicTrip"}},
        "");
}

void TestModelsTickets::theTripOfTheFeedIsInEveryTicket()
{
    QFETCH(QJsonObject, trip);
    QFETCH(QString, publicExecution);
    QJsonObject feed = feedOf("products", {product(1), product(2)});
    feed.insert("trip", trip);
    const ToolRunner runner(RIVO_MODELS);
    const QJsonArray tickets =
        rowsOf(runner.run({"basket", runner.writeFeed(feed), "--format", "json"}));
    QCOMPARE(tickets.size(), 2);

    QJsonObject expected = trip;
    expected.insert("publicRouteExecutionId", publicExecution);
    expected.insert("isReturnFee", false);
    for (const char* name : {"payMethod", "ticketMaterialId", "pasengerType", "payChannel"})
        expected.insert(name, -1);
    for (const QJsonValue& ticket : tickets)
        QCOMPARE(ticket.toObject().value("properties").toObject(), expected);
}

void TestModelsTickets::wrongTickets_data()
{
    const Table<QString, QByteArray> row("slots_", "message");
    row("expired", "1", "rivo-models: --tickets: slot 1: expired\n");
    row("placeholder of a hole", "3", "rivo-models: --tickets: slot 3: a placeholder\n");
    row("placeholder at the end of the grid", "5",
        "rivo-models: --tickets: slot 5: a placeholder\n");
    row("slot behind the last", "7", "rivo-models: --tickets: slot 7: the grid ends with slot 6\n");
    row("largest number", "2147483647",
        "rivo-models: --tickets: slot 2147483647: the grid ends with slot 6\n");
    row("each wrong one of a list", "0,1,2,3",
        "rivo-models: --tickets: slot 1: expired\n"
        "rivo-models: --tickets: slot 3: a placeholder\n");
}

void TestModelsTickets::wrongTickets()
{
    QFETCH(QString, slots_);
    QFETCH(QByteArray, message);
    const ToolRunner runner(RIVO_MODELS);
    const Outcome outcome =
        runner.run({"basket", sixSlotsAndADailyOne(runner), "--tickets", slots_});
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.messages, message);
}

void TestModelsTickets::ticketsOfAnEmptyGrid()
{
    const ToolRunner runner(RIVO_MODELS);
    const Outcome outcome = runner.run({"basket", runner.writeFeed(feedOf()), "--tickets", "0"});
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.messages,
             QByteArray("rivo-models: --tickets: slot 0: the grid has no slots\n"));
}

void TestModelsTickets::productsForOtherMediaAreLeftOut()
{
    const ToolRunner runner(RIVO_MODELS);
    QJsonObject inTheApp = product(2);
    inTheApp.insert("validMedia", QJsonArray{2, 4});
    QJsonObject onPaper = product(3);
    onPaper.insert("validMedia", QJsonArray{4, 1});
    const QString feed = runner.writeFeed(feedOf("products", {product(1), inTheApp, onPaper}));
    const QJsonArray tickets = rowsOf(runner.run({"basket", feed, "--format", "json"}));
    QCOMPARE(column(tickets, "fareProductId"), "1 3");
    const QStringList grid{"grid", feed, "--format", "csv"};
    QCOMPARE(runner.run(grid).output, ToolRunner(RIVO_GRID).run(grid.mid(1)).output);
}

void TestModelsTickets::layoutOptionsShapeGridAndBasket()
{
    const ToolRunner runner(RIVO_MODELS);
    const QString feed =
        runner.writeFeed(feedOf("products", {product(1), product(2, false, "PT_LFS"), product(3)}));
    const auto basket = [&](const QStringList& options) {
        return column(rowsOf(runner.run(QStringList{"basket", feed, "--format", "json"} + options)),
                      "fareProductId");
    };
    QCOMPARE(basket({"--columns", "2"}), "1 2 3");
    QCOMPARE(basket({"--columns", "2", "--order", "PT_LFS,PT_ADULT"}), "2 1 3");
    // In three columns slot 2 is a filler's, in two the second adult product's.
    QCOMPARE(basket({"--columns", "2", "--tickets", "2"}), "3");
    QCOMPARE(runner.run({"basket", feed, "--columns", "3", "--tickets", "2"}).exitCode, 2);
}

QTEST_GUILESS_MAIN(TestModelsTickets)
#include "tst_models_tickets.moc"
