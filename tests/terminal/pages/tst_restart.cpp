#include <FeedLoader.h>
#include <SimulatedPrinter.h>
#include <Terminal.h>

#include <QTemporaryDir>
#include <QtTest>

using rivo::sales::SalesDesk;
using rivo::terminal::Terminal;

/// When a terminal may restart because a new version is installed.
class TestRestart : public QObject
{
    Q_OBJECT

private slots:
    void aSaleIsNotInterrupted()
    {
        const QTemporaryDir folder;
        Terminal terminal(*rivo::feed::loadFeed(EXAMPLE_FEEDS "/hill-valley.json").feed,
                          settingsIn(folder));
        QVERIFY(terminal.mayRestart(0));
        SalesDesk& desk = *terminal.desk();
        QVERIFY(desk.add(0));
        QVERIFY2(!terminal.mayRestart(0), "a ticket is in the basket");
        QVERIFY(desk.pay(SalesDesk::Cash));
        QCOMPARE(desk.state(), SalesDesk::Printing);
        QVERIFY2(!terminal.mayRestart(0), "the ticket is being printed");
        QTRY_COMPARE(desk.state(), SalesDesk::Selling);
        QVERIFY(terminal.mayRestart(0));
    }

    void aCardPaymentIsNotInterrupted()
    {
        const QTemporaryDir folder;
        Terminal terminal(*rivo::feed::loadFeed(EXAMPLE_FEEDS "/hill-valley.json").feed,
                          settingsIn(folder));
        SalesDesk& desk = *terminal.desk();
        QVERIFY(desk.add(0));
        QVERIFY(desk.pay(SalesDesk::Card));
        QCOMPARE(desk.state(), SalesDesk::AwaitingCard);
        QVERIFY(!terminal.mayRestart(0));
        QTRY_VERIFY(terminal.mayRestart(0));
        QCOMPARE(terminal.desk()->lastSale().isEmpty(), false);
    }

    void theScreenIsNotTouchedForAWhile()
    {
        const QTemporaryDir folder;
        Terminal terminal(*rivo::feed::loadFeed(EXAMPLE_FEEDS "/hill-valley.json").feed,
                          settingsIn(folder));
        QVERIFY(!terminal.mayRestart());
        QTest::qWait(50);
        QVERIFY(terminal.mayRestart(50));
        terminal.drivers()->touch();
        QVERIFY(!terminal.mayRestart(10000));
    }

    /// What the office published is taken over between trips; an upgrade may come on the way.
    void aTripIsNotInterrupted()
    {
        const QTemporaryDir folder;
        Terminal terminal(*rivo::feed::loadFeed(EXAMPLE_FEEDS "/hill-valley.json").feed,
                          settingsIn(folder));
        rivo::terminal::TripDesk& trip = *terminal.trip();
        const int noon = 12 * 3600;
        QVERIFY(trip.isUnderWay(noon));
        QVERIFY(terminal.mayRestart(0) && !terminal.mayTakeOver(0));
        trip.setStop(trip.stopCount() - 1);
        QVERIFY(trip.isAtEnd());
        QVERIFY(terminal.mayTakeOver(0));
        QVERIFY(!terminal.mayTakeOver());
        QVERIFY(terminal.desk()->add(0));
        QVERIFY(!terminal.mayTakeOver(0));
    }

private:
    static Terminal::Settings settingsIn(const QTemporaryDir& folder)
    {
        Terminal::Settings settings;
        settings.isDemo = true;
        settings.journalFile = folder.filePath("sales.journal");
        settings.ticketTime = 20;
        settings.cardTime = 20;
        settings.startTime = 12 * 3600;
        return settings;
    }
};

QTEST_MAIN(TestRestart)
#include "tst_restart.moc"
