#include "DeskJournal.h"
#include "Table.h"

using namespace rivo::sales;

/// How paid tickets are printed: one by one, through faults, and in doubt.
class TestSalesPrinting : public QObject, private DeskJournal
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }
    void init() { renew(); }

    void ticketsArePrintedOneByOne()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult child free"));
        SignalLog desk(&counter.desk);
        SignalLog basket(&counter.basket);
        QStringList progress;
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this,
                [&] { progress.append(progressOf(counter)); });
        QVERIFY(play(counter, "cash"));
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "saleConfirmed(3)"}));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(play(counter, "end"));
        QCOMPARE(progress, (QStringList{"a- -- --", "ap -- --", "ap a- --", "ap ap --", "ap ap a-",
                                        "ap ap ap"}));
        QCOMPARE(basket.take(), (QStringList{rowChanged(0), rowChanged(0), rowChanged(1),
                                             rowChanged(1), rowChanged(2), rowChanged(2)} +
                                 announcedRemoval(0, 2, 0) + QStringList{countChanged(0)}));
        QCOMPARE(desk.take(), (QStringList{"totalChanged()", "stateChanged()", "saleFinished()"}));
        QCOMPARE(counter.desk.totalText(), "€0.00");
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"),
                 (QStringList{"1", "2", "3"}));
    }

    void printerFaultBlocksPayment()
    {
        Counter counter(file());
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "jam"));
        QCOMPARE(log.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.desk.obstacle(), "The ticket printer cannot print: no paper");
        QVERIFY(play(counter, "adult child")); // the basket may be prepared
        QVERIFY(!play(counter, "cash"));
        counter.printer.setFault("cover open");
        QCOMPARE(counter.desk.obstacle(), "The ticket printer cannot print: cover open");
        log.take();
        QVERIFY(play(counter, "ready"));
        QCOMPARE(log.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.desk.obstacle(), QString());
        QVERIFY(play(counter, "cash end"));
    }

    void printerFaultWhilePrintingWaits()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult child cash first jam"));
        QTRY_COMPARE(counter.desk.state(), SalesDesk::WaitingForPrinter);
        QCOMPARE(progressOf(counter), "ap a-");
        counter.printer.setFault("cover open");
        QCOMPARE(counter.desk.state(), SalesDesk::WaitingForPrinter);
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "ready"));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(play(counter, "end"));
        QCOMPARE(log.take(), (QStringList{"obstacleChanged()", "stateChanged()", "totalChanged()",
                                          "stateChanged()", "saleFinished()"}));
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"), (QStringList{"1", "2"}));
    }

    /// The paper is spoilt: the ticket is printed again.
    void faultThatIsGoneBeforeTheTicketIsOutSpoilsIt()
    {
        Counter counter(file());
        SignalLog printer(&counter.printer);
        QVERIFY(play(counter, "adult cash jam jam ready"));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(play(counter, "end"));
        QCOMPARE(printer.take(), // the same fault again is no news
                 (QStringList{"faultChanged()", "faultChanged()", "failed()", "printed()"}));
    }

    void printerWithoutASaleIsIgnored_data()
    {
        const Table<QString> row("state");
        for (const char* state : {"empty", "basket", "doubt"})
            row(state, state);
    }

    void printerWithoutASaleIsIgnored()
    {
        QFETCH(QString, state);
        const auto counter = counterIn(state);
        const QStringList before = journalContent();
        const SalesDesk::State deskState = counter->desk.state();
        const QString progress = progressOf(*counter);
        SignalLog printer(&counter->printer);
        SignalLog desk(&counter->desk);
        counter->printer.print(); // the driver's paper feed
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("printed()"); }));
        QCOMPARE(desk.take(), QStringList());
        counter->printer.print();
        QVERIFY(play(*counter, "jam ready"));
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("failed()"); }));
        QTest::qWait(1);
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(desk.take(), (QStringList{"obstacleChanged()", "obstacleChanged()"}));
        QCOMPARE(counter->desk.state(), deskState);
        QCOMPARE(progressOf(*counter), progress);
        QCOMPARE(journalContent(), before);
    }

    /// Only the driver knows whether the paper is out.
    void interruptedPrintingIsAskedAboutAfterARestart()
    {
        const auto counter = counterIn("doubt");
        QCOMPARE(counter->desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter->desk.ticketsInDoubt(), 2);
        QCOMPARE(counter->desk.firstTicketInDoubt(), "000002");
        QCOMPARE(counter->desk.obstacle(), QString());
        QCOMPARE(counter->prices(), (QVector<qint64>{95, 0}));
        QCOMPARE(progressOf(*counter), "-- --");
    }

    /// A printer that was cut off while it printed the first of two tickets.
    void printerInDoubtIsAskedAbout_data()
    {
        const Table<QString, QStringList> row("answer", "printed");
        row("the ticket is out", "out", {"2"});
        row("the ticket is not out", "print", {"1", "2"});
    }

    void printerInDoubtIsAskedAbout()
    {
        QFETCH(QString, answer);
        QFETCH(QStringList, printed);
        Counter counter(file());
        QVERIFY(play(counter, "adult child cash"));
        SignalLog desk(&counter.desk);
        emit counter.printer.inDoubt();
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "ticketsInDoubtChanged()"}));
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter.desk.ticketsInDoubt(), 1);
        QCOMPARE(counter.desk.firstTicketInDoubt(), "000001");
        emit counter.printer.inDoubt(); // nothing is being printed
        QTest::qWait(1);                // what the printer reports late counts for nothing
        QCOMPARE(desk.take(), QStringList());
        QStringList tickets;
        connect(&counter.printer, &SimulatedPrinter::printed, this, [&] {
            tickets.append(QString::number(counter.printer.lastPrinted()->ticket.number));
        });
        QVERIFY(play(counter, answer));
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "ticketsInDoubtChanged()"}));
        QCOMPARE(counter.desk.ticketsInDoubt(), 0);
        QVERIFY(play(counter, "end"));
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(tickets, printed);
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM unprinted)"), QStringList());
        emit counter.printer.inDoubt(); // nothing was sold
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
    }

    void copyInDoubtIsReported()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult cash end copy:1"));
        SignalLog desk(&counter.desk);
        emit counter.printer.inDoubt();
        QCOMPARE(desk.take(),
                 (QStringList{"stateChanged()", "refused(Look whether this was printed.)"}));
    }

    void drawerOpensOnceForACashSale()
    {
        Counter counter(file());
        QString opened;
        connect(&counter.printer, &SimulatedPrinter::printed, this,
                [&] { opened += counter.printer.lastPrinted()->opensDrawer ? 'o' : '-'; });
        QVERIFY(
            play(counter, "adult child cash end adult child card end copy:1 end adult cash end"));
        QCOMPARE(opened, "o----o");
    }

    void ticketThatIsOutIsNotPrintedAgain()
    {
        const auto counter = counterIn("doubt");
        SignalLog printer(&counter->printer);
        SignalLog desk(&counter->desk);
        QVERIFY(play(*counter, "jam out")); // no printer is needed for it
        QCOMPARE(desk.take(), (QStringList{"obstacleChanged()", "ticketsInDoubtChanged()"}));
        QCOMPARE(counter->desk.ticketsInDoubt(), 1);
        QCOMPARE(counter->desk.firstTicketInDoubt(), "000003");
        QCOMPARE(progressOf(*counter), "ap --");
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM unprinted)"), QStringList("3"));
        QVERIFY(play(*counter, "out"));
        QCOMPARE(desk.take(), (QStringList{"totalChanged()", "ticketsInDoubtChanged()",
                                           "stateChanged()", "saleFinished()"}));
        QCOMPARE(counter->desk.state(), SalesDesk::Selling);
        QCOMPARE(counter->desk.ticketsInDoubt(), 0);
        QCOMPARE(counter->desk.firstTicketInDoubt(), QString());
        QCOMPARE(counter->basket.rowCount(), 0);
        QCOMPARE(printer.take(), QStringList("faultChanged()"));
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM unprinted)"), QStringList());
        QVERIFY(!play(*counter, "out"));
        QVERIFY(play(*counter, "adult"));
    }

    /// They have been paid; that they are out is noted as far as the journal can.
    void ticketsInDoubtArePrintedWithoutAJournal()
    {
        const auto counter = counterIn("doubt");
        fillUp();
        QVERIFY(play(*counter, "print end"));
        QVERIFY(!counter->desk.obstacle().isEmpty());
    }

    void ticketsInDoubtArePrintedOnRequest()
    {
        const auto counter = counterIn("doubt");
        QVERIFY(play(*counter, "print"));
        QCOMPARE(counter->desk.ticketsInDoubt(), 0);
        QCOMPARE(counter->desk.state(), SalesDesk::Printing);
        QCOMPARE(counter->prices(), (QVector<qint64>{95, 0}));
        QCOMPARE(counter->line(0)->payMethod(), 2);
        QCOMPARE(counter->line(0)->payChannel(), driverChannel);
        QCOMPARE(progressOf(*counter), "a- --");
        SignalLog log(&counter->desk);
        QVERIFY(play(*counter, "end"));
        QVERIFY(log.take().contains("saleFinished()"));
        QCOMPARE(counter->basket.rowCount(), 0);
        QCOMPARE(text(*counter->report()),
                 "17 open: 3 tickets 2.85, 3 by card 2.85, 000001-000003, z 2.85, debt 0 of 0");
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"),
                 (QStringList{"1", "2", "3"}));
    }

    void printingOfDoubtsWaitsForThePrinter()
    {
        const auto counter = counterIn("doubt");
        QVERIFY(play(*counter, "jam print"));
        QCOMPARE(counter->desk.state(), SalesDesk::WaitingForPrinter);
        QCOMPARE(progressOf(*counter), "-- --");
        QVERIFY(!play(*counter, "adult"));
        QVERIFY(play(*counter, "ready end"));
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"),
                 (QStringList{"1", "2", "3"}));
    }
};

QTEST_GUILESS_MAIN(TestSalesPrinting)
#include "tst_sales_printing.moc"
