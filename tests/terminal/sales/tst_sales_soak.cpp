#include "Counter.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <malloc.h>

using namespace rivo::sales;

/// Many sales in one go: sums stay true, and no memory is lost. RIVO_SOAK_SALES says how many.
class TestSalesSoak : public QObject
{
    Q_OBJECT

private slots:
    void sellsAllDay()
    {
        bool isNumber = false;
        const int asked = qEnvironmentVariableIntValue("RIVO_SOAK_SALES", &isNumber);
        const int sales = isNumber ? asked : 2000;
        constexpr int salesPerShift = 200;
        const int warmUp = sales / 4;

        const QTemporaryDir folder;
        QVERIFY(folder.isValid());
        Counter counter(folder.filePath("journal.db"));
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF"); // no matter here, and much faster
        rowsOf(onlyConnection(), "PRAGMA cache_size=20");   // or it grows with the file
        QRandomGenerator random(20260329);
        const QVector<QPair<int, qint64>> tiles{
            {AdultSingle, 190}, {ChildSingle, 95}, {DayTicket, 450}, {Free, 0}, {TooExact, 101}};
        qint64 sum = 0;
        qint64 cardSum = 0;
        qint64 owed = 0; // for the shifts before
        int cardCount = 0;
        int ticketCount = 0;
        size_t before = 0;
        for (int sale = 1; sale <= sales; ++sale) {
            const int shift = (sale - 1) / salesPerShift;
            const bool isCard = random.bounded(4) < shift % 5; // none, some, all
            for (int count = 1 + random.bounded(4); count > 0; --count) {
                const auto& [tile, price] = tiles.at(random.bounded(tiles.size()));
                QVERIFY(counter.desk.add(tile));
                sum += price;
                cardSum += isCard ? price : 0;
                cardCount += isCard ? 1 : 0;
                ++ticketCount;
            }
            QVERIFY(counter.desk.pay(isCard ? SalesDesk::Card : SalesDesk::Cash));
            while (counter.desk.state() != SalesDesk::Selling)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(counter.report()->ticketSumAmnt(), euro.toUnits(sum));
            QCOMPARE(counter.report()->cardSellAmnt(), euro.toUnits(cardSum));
            QCOMPARE(counter.report()->cardSellCount(), cardCount);
            QCOMPARE(counter.report()->currentDebt(), euro.toUnits(sum - cardSum + owed));
            QCOMPARE(counter.report()->toTicketNumber().toInt(), ticketCount);
            if (sale % salesPerShift == 0) {
                QVERIFY(counter.desk.closeShift());
                if (shift % 2 == 0)
                    owed += sum - cardSum;
                else
                    QCOMPARE(counter.desk.handOver(counter.report(1)->zNumber()), sum > cardSum);
                sum = 0;
                cardSum = 0;
                cardCount = 0;
            }
            if (sale == warmUp)
                before = usedMemory();
        }
        const size_t after = usedMemory();

        QVERIFY(counter.basket.children().isEmpty());
        QCOMPARE(counter.zReports.rowCount(), sales / salesPerShift + 1);
        QCOMPARE(counter.zReports.children().size(), counter.zReports.rowCount());
        QCOMPARE(counter.grid.children().size(), int(TileCount));
        // A report per shift, and no trace of the sales.
        const auto reports = static_cast<size_t>(sales / salesPerShift);
        const size_t allowed = 64 * 1024 + reports * 4096;
        QVERIFY2(after < before + allowed,
                 qPrintable(QString("%1 bytes, then %2").arg(before).arg(after)));
        QCOMPARE(rowsOf(onlyConnection(),
                        "SELECT COUNT(*), (SELECT COUNT(*) FROM printout) FROM ticket"),
                 QStringList(QString("%1|%1").arg(ticketCount)));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM sale"),
                 QStringList(QString::number(sales)));
    }

private:
    static size_t usedMemory() { return mallinfo2().uordblks; }
};

QTEST_GUILESS_MAIN(TestSalesSoak)
#include "tst_sales_soak.moc"
