#include "DeskJournal.h"
#include "Table.h"

using namespace rivo::sales;

/// Z reports and the cash that is owed.
class TestSalesShifts : public QObject, private DeskJournal
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }
    void init() { renew(); }

    void cashIsHandedOverInEveryState_data()
    {
        const Table<QString> row("state");
        for (const char* state : {"empty", "basket", "printing", "waiting", "fault", "doubt"})
            row(state, state);
    }

    void cashIsHandedOverInEveryState()
    {
        QFETCH(QString, state);
        counterIn("closed");
        const auto counter = counterIn(state);
        const SalesDesk::State before = counter->desk.state();
        const QString progress = progressOf(*counter);
        QVERIFY(play(*counter, "hand:17"));
        QCOMPARE(counter->desk.state(), before);
        QCOMPARE(progressOf(*counter), progress);
        QCOMPARE(counter->report(1)->currentDebt(), 0.0);
    }

    void reportFollowsTheSales()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(play(counter, "adult child cash end"));
        QCOMPARE(text(*counter.report()),
                 "17 open: 2 tickets 2.85, 0 by card 0, 000001-000002, z 2.85, debt 2.85 of 100");
        QVERIFY(play(counter, "day card end"));
        QCOMPARE(text(*counter.report()),
                 "17 open: 3 tickets 7.35, 1 by card 4.5, 000001-000003, z 7.35, debt 2.85 of 100");
    }

    /// setCardSellAmnt() does not take what equals the ticket sum of the moment.
    void cardSumIsTrueForEveryOrderOfSales_data()
    {
        // sales: tile letters, upper case by card
        const Table<QString> row("sales");
        for (const char* sales :
             {"A",                         // first by card
              "A C D A",                   // all by card
              "a A",                       // first by card, equal to the sum before
              "a c A C",                   // card sum equal to the sum before
              "a A A",                     // twice the same
              "F",                         // free by card first
              "a F A",                     // free by card behind cash
              "A F F",                     // free by card behind card
              "A f A",                     // free by cash behind card
              "A a A c C d D", "d C C C"}) // card sum reaches the sum of before by two
            row(sales, sales);
    }

    void cardSumIsTrueForEveryOrderOfSales()
    {
        QFETCH(QString, sales);
        Counter counter(file());
        const QMap<QChar, QPair<QString, qint64>> tiles{
            {'a', {"adult", 190}}, {'c', {"child", 95}}, {'d', {"day", 450}}, {'f', {"free", 0}}};
        qint64 sum = 0;
        qint64 cardSum = 0;
        for (const QString& sale : sales.split(' ')) {
            const auto [tile, price] = tiles.value(sale.at(0).toLower());
            const bool isCard = sale.at(0).isUpper();
            sum += price;
            cardSum += isCard ? price : 0;
            QVERIFY(play(counter, tile + (isCard ? " card end" : " cash end")));
            QCOMPARE(counter.report()->ticketSumAmnt(), euro.toUnits(sum));
            QCOMPARE(counter.report()->zSum(), euro.toUnits(sum));
            QCOMPARE(counter.report()->cardSellAmnt(), euro.toUnits(cardSum));
            QCOMPARE(counter.report()->currentDebt(), euro.toUnits(sum - cardSum));
        }
    }

    void closingNumbersTheReportAndStartsTheNext()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(play(counter, "adult cash end child card end"));
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "close"));
        QCOMPARE(log.take(), QStringList("shiftClosed(double)"));
        const QStringList expected{
            "18 open: 0 tickets 0, 0 by card 0, -, z 0, debt 1.9 of 100",
            "17 closed: 2 tickets 2.85, 1 by card 0.95, 000001-000002, z 2.85, debt 1.9 of 100"};
        QCOMPARE(reportsOf(counter), expected);
        QVERIFY(!counter.report(1)->paymentDate().isValid());
        QVERIFY(!counter.report(0)->paymentDate().isValid());
        QCOMPARE(counter.report(0)->id(), 18);
        QCOMPARE(counter.report(0)->parent(), &counter.zReports);

        SignalLog reports(&counter.zReports);
        QVERIFY(play(counter, "day cash end"));
        for (const QString& each : reports.take())
            QCOMPARE(each, rowChanged(0)); // the row that runs now, each change once
        QCOMPARE(text(*counter.report()),
                 "18 open: 1 tickets 4.5, 0 by card 0, 000003-000003, z 4.5, debt 6.4 of 100");
    }

    void cashIsOwedUntilItIsHandedOver()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(play(counter, "adult cash end close child cash end close day cash end"));
        QCOMPARE(debtsOf(counter), (QVector<double>{7.35, 0.95, 1.9}));
        SignalLog desk(&counter.desk);
        SignalLog reports(&counter.zReports);
        QVERIFY(play(counter, "hand:17"));
        QCOMPARE(desk.take(), QStringList("shiftPaid(double)"));
        const QStringList changes = reports.take();
        QCOMPARE(changes.mid(0, 2), (QStringList{rowChanged(2), rowChanged(2)}));
        QCOMPARE(changes.last(), rowChanged(0));
        QCOMPARE(debtsOf(counter), (QVector<double>{5.45, 0.95, 0.0}));
        QVERIFY(counter.report(2)->paymentDate().isValid());
        QVERIFY(!counter.report(1)->paymentDate().isValid());
        QVERIFY(play(counter, "hand:18"));
        QCOMPARE(debtsOf(counter), (QVector<double>{4.5, 0.0, 0.0}));
        QVERIFY(play(counter, "close"));
        QCOMPARE(debtsOf(counter), (QVector<double>{4.5, 4.5, 0.0, 0.0}));
    }

    void reportsAndDebtAreThereAfterARestart()
    {
        QStringList before;
        QDateTime paidAt;
        {
            Counter counter(file(), euro, 50.0);
            QVERIFY(play(counter, "adult cash end close child cash end close"
                                  " day cash end adult card end close hand:18 child card end"));
            before = reportsOf(counter);
            paidAt = counter.report(2)->paymentDate();
        }
        Counter counter(file(), euro, 50.0);
        QCOMPARE(reportsOf(counter), before);
        QCOMPARE(debtsOf(counter), (QVector<double>{6.4, 4.5, 0.0, 1.9}));
        QCOMPARE(counter.report(2)->paymentDate(), paidAt);
        QVERIFY(counter.desk.keepsShift(17));
        QVERIFY(counter.desk.keepsShift(20));
        QVERIFY(!counter.desk.keepsShift(16));
        QVERIFY(!counter.desk.keepsShift(qQNaN()));
        QVERIFY(play(counter, "child cash end"));
        QCOMPARE(debtsOf(counter), (QVector<double>{7.35, 4.5, 0.0, 1.9}));
        QVERIFY(play(counter, "hand:17"));
        QCOMPARE(debtsOf(counter), (QVector<double>{5.45, 4.5, 0.0, 0.0}));
        QVERIFY(play(counter, "hand:19"));
        QCOMPARE(debtsOf(counter), (QVector<double>{0.95, 0.0, 0.0, 0.0}));
    }

    void shiftWithoutCashOwesNothing()
    {
        Counter counter(file());
        QVERIFY(play(counter, "close adult card end close"));
        QCOMPARE(reportsOf(counter),
                 (QStringList{"19 open: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 0",
                              "18 closed: 1 tickets 1.9, 1 by card 1.9, 000001-000001, z 1.9,"
                              " debt 0 of 0",
                              "17 closed: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 0"}));
        QVERIFY(counter.report(1)->paymentDate().isValid());
        QVERIFY(!play(counter, "hand:18"));
    }
};

QTEST_GUILESS_MAIN(TestSalesShifts)
#include "tst_sales_shifts.moc"
