#include "FastCounter.h"
#include "MovedClock.h"
#include "SignalLog.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <memory>

using namespace rivo::sales;

/// Sales that are looked at, printed again or taken back, also while the journal fails.
class TestPastSales : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void cleanup() { MovedClock::reset(); }

    void pastSalesAreThoseOfTheShift()
    {
        FastCounter counter(file());
        QCOMPARE(counter.desk.pastSales(0, 9), QVariantList());
        QVERIFY(play(counter, "adult cash end close child cash end adult day card end"));
        QCOMPARE(counter.desk.pastSaleCount(), 2);
        QCOMPARE(
            textsOf(counter.desk.pastSales(0, 9)),
            (QStringList{"8: card 640 paid 640, given 0 change 0, 0 of 2 back for 0, void, refund",
                         "4: 95 paid 95, given 95 change 0, 0 of 1 back for 0, refund"}));
        QCOMPARE(counter.desk.pastSales(1, 1).size(), 1);
        QCOMPARE(counter.desk.pastSales(-1, 1), QVariantList());
        QCOMPARE(counter.desk.pastSales(0, -1), QVariantList());
        const QVariantMap sale = counter.desk.pastSale(8);
        QCOMPARE(sale.value("firstTicket").toString(), "000003");
        QCOMPARE(sale.value("lastTicket").toString(), "000004");
        const QVariantList tickets = sale.value("tickets").toList();
        QCOMPARE(tickets.size(), 2);
        const QVariantMap day = tickets.at(1).toMap();
        QCOMPARE(day.value("number").toDouble(), 4.0);
        QCOMPARE(day.value("numberText").toString(), "000004");
        QCOMPARE(day.value("product").toString(), "product 22");
        QCOMPARE(day.value("passenger").toString(), "adult");
        QCOMPARE(day.value("origin").toString(), "zone 1");
        QCOMPARE(day.value("destination").toString(), "zone 2");
        QCOMPARE(day.value("priceText").toString(), "€4.50");
        for (const double none : {1.0, 5.0, 99.0, -1.0, 0.5, std::nan("")})
            QCOMPARE(counter.desk.pastSale(none), QVariantMap());
    }

    void refusals_data()
    {
        addColumns<QString, QString, QString>("before", "step", "reason");
        const auto add = [](const char* before, const QStringList& steps, const char* reason) {
            for (const QString& step : steps)
                QTest::addRow("%s: %s", before, qPrintable(step)) << before << step << reason;
        };
        const char* const sold =
            "adult cash end close adult child cash end"; // record 4, tickets 2, 3
        add("adult", {"give:189", "give:-1", "give:190.5", "give:nan", "give:1e13"},
            "This is less than what is due.");
        add("", {"give:100"}, "The basket is empty.");
        add("", {"void"}, "Nothing was sold in this shift.");
        add("adult cash end close", {"void"}, "Nothing was sold in this shift.");
        add("adult cash end void", {"void"}, "The last sale was taken back already.");
        add("adult child cash end back:1:late", {"void"}, "The last sale was taken back already.");
        add(sold, {"refund:4", "refund:4:   ", "back:2"}, "A refund needs a reason.");
        add(sold, {"refund:1:late", "refund:5:late", "refund:99:late", "refund:-1:late"},
            "This shift has no such sale.");
        add(sold, {"back:1:late", "back:99:late", "back:0:late", "copy:1", "copy:99", "copy:0"},
            "This shift has no such ticket.");
        add("adult child cash end void", {"refund:1:late", "back:2:late"},
            "This was taken back already.");
        add("adult child cash end back:2:late", {"back:2:late"}, "This was taken back already.");
        add("adult child cash end back:2:late", {"copy:2"}, "This ticket was taken back.");
        add("adult cash end jam", {"copy:1"}, "The ticket printer cannot print: no paper");
        add("adult cash end", {"report:17", "report:18", "report:-1"}, "There is no such report.");
        add("adult cash end jam", {"report:0"}, "The ticket printer cannot print: no paper");
        add("", {"float:-1", "float:0.5", "float:nan"}, "This is no amount.");
        add("float:100 adult cash end", {"float:200"},
            "The float of this shift cannot be changed any more.");
        add("adult cash end close", {"count:17:-1", "count:17:nan"}, "This is no amount.");
        add("adult cash end", {"count:17:190"}, "There is no cash of this shift to hand over.");
        const QStringList busy{"void",   "refund:1:late", "back:1:late",
                               "copy:1", "report:0",      "float:1"};
        add("adult cash", busy, "Tickets are being printed.");
        add("adult cash end copy:1", busy + QStringList{"adult", "cash", "close"},
            "Tickets are being printed.");
        add("adult child cash end adult lock",
            busy + QStringList{"child", "remove:0", "clear", "cash", "card", "give:500", "close",
                               "hand:17", "count:17:1", "out", "print"},
            "Sign in first.");
    }

    void refusals()
    {
        QFETCH(QString, before);
        QFETCH(QString, step);
        QFETCH(QString, reason);
        FastCounter counter(file());
        QVERIFY(play(counter, before));
        const QStringList content = journalContent();
        SignalLog log(&counter.desk);
        SignalLog reports(&counter.zReports);
        SignalLog printer(&counter.printer);
        QVERIFY(!play(counter, step));
        QCOMPARE(log.take(), QStringList("refused(" + reason + ")"));
        QCOMPARE(reports.take(), QStringList());
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(journalContent(), content);
    }

    void lastSaleIsVoid()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult cash end child day card end adult")); // with an open basket
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "void"));
        QCOMPARE(log.take(), (QStringList{"stateChanged()", "stateChanged()",
                                          "saleReversed(double)"})); // the card terminal was asked
        QCOMPARE(counter.prices(), QVector<qint64>{190});
        QCOMPARE(
            textsOf(counter.desk.pastSales(0, 1)),
            QStringList("5: card 545 paid 545, given 0 change 0, 2 of 2 back for 545, reversed"));
        QCOMPARE(figuresOf(counter.desk.xReport()),
                 "ticketCount 3, ticketSum 735, cardCount 2, cardSum 545, voidCount 2, voidSum 545,"
                 " reversedCardSum 545, takings 190, cash 190, due 190");
        QCOMPARE(counter.report()->ticketCount(), 3);
        QCOMPARE(counter.report()->cardSellCount(), 0);
        QCOMPARE(counter.report()->cardSellAmnt(), 0.0);
        QCOMPARE(counter.report()->zSum(), 1.9);
        QCOMPARE(counter.report()->currentDebt(), 1.9);
    }

    void saleCanBeVoidForFiveMinutes_data()
    {
        const Table<int, bool> row("seconds", "isVoid");
        row("at once", 0, true);
        row("within the limit", SalesDesk::voidLimit - 10, true);
        row("after the limit", SalesDesk::voidLimit + 10, false);
        row("the clock was set back a little", -10, true);
        row("the clock was set back an hour", -3600, false);
    }

    void saleCanBeVoidForFiveMinutes()
    {
        QFETCH(int, seconds);
        QFETCH(bool, isVoid);
        const qint64 start = QDateTime(QDate(2026, 6, 1), QTime(12, 0), Qt::UTC).toSecsSinceEpoch();
        MovedClock::set(start);
        FastCounter counter(file());
        QVERIFY(play(counter, "adult cash end"));
        MovedClock::set(start + seconds);
        QCOMPARE(counter.desk.pastSales(0, 1).at(0).toMap().value("mayVoid").toBool(), isVoid);
        SignalLog log(&counter.desk);
        QCOMPARE(play(counter, "void"), isVoid);
        if (!isVoid) {
            QCOMPARE(log.take(),
                     QStringList("refused(The last sale is older than 5 minute(s): it can"
                                 " be refunded.)"));
            QVERIFY(play(counter, "refund:1:late"));
        }
    }

    void ticketsAreRefundedWithAReason()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult child day cash end"));
        QVERIFY(counter.desk.refundTicket(2, "  bus \n broke   down "));
        QCOMPARE(textsOf(counter.desk.pastSales(0, 1)),
                 QStringList("1: 735 paid 735, given 735 change 0, 1 of 3 back for 95, refund"));
        QVERIFY(counter.desk.refundSale(1, QString(300, 'x')));
        QCOMPARE(textsOf(counter.desk.pastSales(0, 1)),
                 QStringList("1: 735 paid 735, given 735 change 0, 3 of 3 back for 735, reversed"));
        QCOMPARE(
            rowsOf(onlyConnection(), "SELECT reason_kind, reason, total, paid_out FROM reversal"),
            (QStringList{"2|bus broke down|95|95", "2|" + QString(200, 'x') + "|640|640"}));
        QCOMPARE(figuresOf(counter.desk.xReport()),
                 "ticketCount 3, ticketSum 735, refundCount 3, refundSum 735");
        QCOMPARE(
            counter.desk.pastSale(1).value("tickets").toList().at(1).toMap().value("isReversed"),
            QVariant(true));
        QVERIFY(play(counter, "close")); // nothing is owed
        QVERIFY(counter.report(1)->paymentDate().isValid());
    }

    /// However a sale is taken back, together it is what was paid.
    void partsOfARoundedSaleAreWhatWasPaid()
    {
        for (const char* const parts :
             {"refund:1:x", "back:1:x back:2:x back:3:x", "back:2:x refund:1:x",
              "back:3:x back:1:x refund:1:x", "void"}) {
            removeJournal(file());
            FastCounter counter(file(), francs);
            QVERIFY(play(counter, "exact exact child cash end")); // 2.97, paid 2.95
            QVERIFY(play(counter, parts));
            QCOMPARE(counter.desk.pastSales(0, 1).at(0).toMap().value("paidOut").toDouble(), 295.0);
            QCOMPARE(counter.desk.xReport().value("cash").toDouble(), 0.0);
            QCOMPARE(counter.desk.xReport().value("rounding").toDouble(), 0.0);
            QCOMPARE(counter.report()->currentDebt(), 0.0);
            for (const QString& row : rowsOf(onlyConnection(), "SELECT paid_out % 5 FROM reversal"))
                QCOMPARE(row, "0"); // each part can be paid in coins
        }
    }

    void copyIsPrintedAndCounted()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult child cash end adult"));
        SignalLog log(&counter.desk);
        SignalLog basket(&counter.basket);
        QVERIFY(play(counter, "copy:2"));
        QCOMPARE(counter.desk.state(), SalesDesk::Copying);
        QCOMPARE(counter.desk.xReport().value("copyCount").toInt(), 1); // before it is out
        QVERIFY(play(counter, "end"));
        QCOMPARE(log.take(),
                 (QStringList{"stateChanged()", "stateChanged()", "copyPrinted(double)"}));
        QCOMPARE(basket.take(), QStringList());
        QCOMPARE(counter.desk.pastSale(1).value("tickets").toList().at(1).toMap().value("copies"),
                 QVariant(1));
        QVERIFY(play(counter, "cash end"));
    }

    void copyThatFailsIsReported()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult cash end copy:1 jam"));
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "end"));
        QCOMPARE(log.take(),
                 (QStringList{"stateChanged()", "refused(This was not printed: no paper)"}));
        QVERIFY(play(counter, "ready copy:1 end"));
        QCOMPARE(counter.desk.xReport().value("copyCount").toInt(), 2);
    }

    void ticketsInDoubtArePrintedAsTheyWereSold()
    {
        QDateTime soldAt;
        {
            FastCounter counter(file());
            counter.desk.setDriver(42, "A. Nowak");
            QVERIFY(play(counter, "adult child cash"));
            soldAt = counter.desk.lastSale().value("at").toDateTime();
        }
        FastCounter counter(file());
        QVERIFY(play(counter, "print end"));
        QCOMPARE(counter.printer.lastPrinted()->ticket.number, 2);
        QCOMPARE(counter.printer.lastPrinted()->ticket.driver, 42);
        QCOMPARE(counter.printer.lastPrinted()->ticket.soldAt, soldAt);
    }

    void restartAfterACopyHasNothingToPrint()
    {
        QVERIFY(play(*std::make_unique<FastCounter>(file()), "adult cash end copy:1"));
        FastCounter counter(file());
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(counter.desk.ticketsInDoubt(), 0);
    }

    void stoppedJournalRefusesAll()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult cash end close child cash end"));
        rowsOf(onlyConnection(), "ALTER TABLE basket RENAME TO lost");
        QVERIFY(!play(counter, "adult"));
        const QString reason = counter.desk.obstacle();
        SignalLog log(&counter.desk);
        for (const char* step :
             {"void", "refund:4:x", "back:2:x", "copy:2", "report:0", "float:1", "count:17:1"}) {
            QVERIFY(!play(counter, step));
            QCOMPARE(log.take(), QStringList("refused(" + reason + ")"));
        }
        QCOMPARE(counter.desk.xReport(), QVariantMap());
        QCOMPARE(counter.desk.zReport(17), QVariantMap());
        QCOMPARE(counter.desk.pastSales(0, 9), QVariantList());
        QCOMPARE(counter.desk.pastSaleCount(), 0);
        QCOMPARE(counter.desk.pastSale(4), QVariantMap());
    }

    /// The journal fails while it is asked, or when it has to write.
    void journalThatFailsStopsEachStep_data()
    {
        const Table<QString, QString> row("step", "harm");
        const QString jam = "CREATE TEMP TRIGGER jam BEFORE INSERT ON main.record BEGIN"
                            " SELECT RAISE(ABORT, 'jam'); END";
        for (const char* step :
             {"void", "refund:4:x", "back:2:x", "copy:2", "float:1", "count:17:1"})
            QTest::addRow("nothing can be written: %s", step) << step << jam;
        for (const char* step : {"void", "refund:4:x", "back:2:x", "copy:2", "report:0"})
            QTest::addRow("sales cannot be read: %s", step)
                << step << "ALTER TABLE sale RENAME TO lost";
        row("figures cannot be read: float", "float:1", "ALTER TABLE sale RENAME TO lost");
    }

    void journalThatFailsStopsEachStep()
    {
        QFETCH(QString, step);
        QFETCH(QString, harm);
        FastCounter counter(file());
        QVERIFY(play(counter, "adult cash end close child cash end"));
        rowsOf(onlyConnection(), harm);
        SignalLog log(&counter.desk);
        QVERIFY(!play(counter, step));
        QCOMPARE(log.take(),
                 (QStringList{"obstacleChanged()", "refused(" + counter.desk.obstacle() + ")"}));
        QVERIFY(!counter.desk.obstacle().isEmpty());
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
    }

private:
    QString file() const { return m_folder->filePath("journal.db"); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestPastSales)
#include "tst_past_sales.moc"
