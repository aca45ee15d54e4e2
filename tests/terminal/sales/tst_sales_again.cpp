#include "Counter.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using rivo::sales::SalesDesk;

/// Several tickets at once: of a tile, like a line of the basket, like the last sale.
class TestSalesAgain : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        open();
    }
    void cleanup()
    {
        m_refusals.reset();
        m_counter.reset();
    }

    void severalOfATile()
    {
        QVERIFY(m_counter->desk.addSeveral(AdultSingle, 3));
        QVERIFY(m_counter->desk.addSeveral(ChildSingle, 1));
        QCOMPARE(m_counter->prices(), (QVector<qint64>{190, 190, 190, 95}));
        isRefused(m_counter->desk.addSeveral(AdultSingle, 0), "At least one ticket is needed.");
        isRefused(m_counter->desk.addSeveral(AdultSingle, -4), "At least one ticket is needed.");
        isRefused(m_counter->desk.addSeveral(Placeholder, 2), "This tile is not for sale.");
        isRefused(m_counter->desk.addSeveral(AdultSingle, SalesDesk::mostTickets - 3), "no room");
        isRefused(m_counter->desk.addSeveral(AdultSingle, 2147483647), "no room");
        QCOMPARE(m_counter->prices().size(), 4);
    }

    void moreLikeALine()
    {
        QVERIFY(m_counter->desk.add(ReturnFee));
        QVERIFY(m_counter->desk.add(SeniorSingle));
        QVERIFY(m_counter->desk.addLike(0, 2));
        QVERIFY(m_counter->line(3)->isReturnFee());
        QCOMPARE(m_counter->line(3)->passengerTypeId(), 11);
        QVERIFY(m_counter->desk.addLike(1, 1));
        QCOMPARE(m_counter->line(4)->passengerTypeId(), 14);
        isRefused(m_counter->desk.addLike(5, 1), "There is no such line.");
        isRefused(m_counter->desk.addLike(-1, 1), "There is no such line.");
        m_counter->grid.clear();
        isRefused(m_counter->desk.addLike(0, 1), "product 21 is not sold here now.");
        QCOMPARE(m_counter->prices().size(), 5);
    }

    void theLastSale()
    {
        QVERIFY(!m_counter->desk.mayRepeat());
        isRefused(m_counter->desk.addLastSale(), "There is no last sale.");
        for (const int tile : {AdultSingle, DayTicket, AdultSingle})
            QVERIFY(m_counter->desk.add(tile));
        QVERIFY(m_counter->desk.pay(SalesDesk::Cash));
        QTRY_COMPARE(m_counter->desk.state(), SalesDesk::Selling);
        QVERIFY(m_counter->desk.mayRepeat());
        QVERIFY(m_counter->desk.addLastSale());
        QCOMPARE(m_counter->prices(), (QVector<qint64>{190, 450, 190}));
        QVERIFY(m_counter->desk.clear());

        // After a restart, too.
        m_refusals.reset();
        m_counter.reset();
        open();
        QVERIFY(m_counter->desk.addLastSale());
        QCOMPARE(m_counter->prices(), (QVector<qint64>{190, 450, 190}));
        QCOMPARE(m_counter->journal.lastTickets(2).size(), 2);
        QCOMPARE(m_counter->journal.lastTickets(9).first().price, 190);
    }

    void reasonsForTilesNotSoldNowAreShown()
    {
        QVERIFY(m_counter->desk.add(AdultSingle));
        QVERIFY(m_counter->desk.add(DayTicket));
        QVERIFY(m_counter->desk.pay(SalesDesk::Card));
        QTRY_COMPARE(m_counter->desk.state(), SalesDesk::Selling);
        m_counter->grid.removeRows(DayTicket, 1);
        isRefused(m_counter->desk.addLastSale(), "product 22 is not sold here now.");
        QCOMPARE(m_counter->prices(), QVector<qint64>());
    }

    void recordsHaveTheTimeOfTheClock()
    {
        const QDateTime noon(QDate(2031, 5, 6), QTime(12, 0));
        m_counter->desk.setClock([noon] { return noon; });
        QVERIFY(m_counter->desk.add(AdultSingle));
        QVERIFY(m_counter->desk.pay(SalesDesk::Cash));
        QCOMPARE(m_counter->desk.lastSale()["at"].toDateTime(), noon);
        QTRY_COMPARE(m_counter->desk.state(), SalesDesk::Selling);
        QVERIFY(m_counter->desk.closeShift());
        QCOMPARE(m_counter->desk.zReport(17)["at"].toDateTime(), noon);
    }

private:
    void open()
    {
        m_counter = std::make_unique<Counter>(m_folder->filePath("journal"));
        m_refusals = std::make_unique<QSignalSpy>(&m_counter->desk, &SalesDesk::refused);
    }

    void isRefused(bool isDone, const QString& reason)
    {
        QVERIFY(!isDone);
        QCOMPARE(m_refusals->size(), 1);
        const QString said = m_refusals->takeFirst().first().toString();
        QVERIFY2(said.contains(reason), qPrintable(said));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Counter> m_counter;
    std::unique_ptr<QSignalSpy> m_refusals;
};

QTEST_GUILESS_MAIN(TestSalesAgain)
#include "tst_sales_again.moc"
