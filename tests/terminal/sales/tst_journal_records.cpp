#include "JournalFiles.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace rivo::sales;

namespace
{

/// "1: cash 190+0 given 200 change 10, 2 tickets, 1 back for 95 paid 95, driver 7".
QString text(const PastSale& sale)
{
    return QStringLiteral("%1: %2 %3%4%5 given %6 change %7, %8 tickets, %9 back")
               .arg(sale.id)
               .arg(sale.payment.method == PayMethod::Cash ? "cash" : "card")
               .arg(sale.total)
               .arg(sale.payment.rounding < 0 ? "" : "+")
               .arg(sale.payment.rounding)
               .arg(sale.payment.given)
               .arg(sale.payment.change)
               .arg(sale.ticketCount)
               .arg(sale.reversedCount) +
           QStringLiteral(" for %1 paid %2, driver %3")
               .arg(sale.reversedSum)
               .arg(sale.paidOut)
               .arg(sale.driver);
}

QStringList textsOf(const QVector<PastSale>& sales)
{
    QStringList all;
    for (const PastSale& sale : sales)
        all.append(text(sale));
    return all;
}

/// "void 1 190, refund 2 285, card back 1 for 95, rounding -1, 3 copies, float 5000: cash 7".
QString reversalsOf(const ShiftReport& report)
{
    return QStringLiteral("void %1 %2, refund %3 %4, card back %10 for %5, rounding %6, %7 copies,"
                          " float %8: cash %9")
        .arg(report.voidCount)
        .arg(report.voidSum)
        .arg(report.refundCount)
        .arg(report.refundSum)
        .arg(report.reversedCardSum)
        .arg(report.rounding)
        .arg(report.copyCount)
        .arg(report.openingFloat)
        .arg(report.cash())
        .arg(report.reversedCardCount);
}

} // namespace

/// Drivers, amounts given, reversals, copies and floats in the journal.
class TestJournalRecords : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void everyRecordNamesItsDriver()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {190}));
        journal.setDriver(7);
        QVERIFY(journal.markPrinted(1, noon));
        QVERIFY(journal.recordOpeningFloat(500, noon));
        QVERIFY(sell(journal, {95}));
        QVERIFY(journal.recordCopy(1, noon));
        journal.setDriver(8);
        QVERIFY(journal.reverse(1, {1}, ReversalKind::Refund, "late", 190, noon));
        QCOMPARE(journal.closeShift(noon)->driver, 8);
        journal.setDriver(0);
        QVERIFY(journal.handOver(17, noon));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT id, kind, shift, driver FROM record"),
                 (QStringList{"1|2|17|0", "2|3|17|7", "3|1|17|7", "4|2|17|7", "5|3|17|7",
                              "6|4|17|8", "7|5|17|8", "8|6|17|0"}));
    }

    void ticketIsOnPaperOnce()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {190}));
        QVERIFY(journal.markPrinted(1));
        const QStringList before = journalContent();
        QVERIFY(journal.markPrinted(1));
        QVERIFY(journal.markPrinted(2));
        QCOMPARE(journalContent(), before);
    }

    void cashIsGivenAndChanged_data()
    {
        // sale: total 192
        const Table<int, qint64, qint64, QString> row("method", "rounding", "given", "sale");
        row("cash as it is due", 1, 0LL, 0LL, "cash 192+0 given 192 change 0");
        row("cash that is rounded down", 1, -2LL, 0LL, "cash 192-2 given 190 change 0");
        row("a note", 1, 0LL, 500LL, "cash 192+0 given 500 change 308");
        row("a note, rounded up", 1, 3LL, 500LL, "cash 192+3 given 500 change 305");
        row("just enough", 1, 3LL, 195LL, "cash 192+3 given 195 change 0");
        row("too little", 1, 0LL, 191LL, "none");
        row("too little after rounding", 1, 3LL, 194LL, "none");
        row("a card has neither", 2, 3LL, 500LL, "card 192+0 given 0 change 0");
    }

    void cashIsGivenAndChanged()
    {
        QFETCH(int, method);
        QFETCH(qint64, rounding);
        QFETCH(qint64, given);
        QFETCH(QString, sale);
        OpenJournal journal(file());
        const QStringList before = journalContent();
        const auto sold = journal.confirmSale(
            {ticket(192)}, {static_cast<PayMethod>(method), rounding, given, 0}, noon);
        QCOMPARE(kindOf(journal.fault()), "none");
        QCOMPARE(sold.has_value(), sale != "none");
        if (!sold) {
            QCOMPARE(journalContent(), before);
            return;
        }
        QVERIFY2(text(journal.pastSales(0, 1).at(0)).startsWith("1: " + sale + ", 1 tickets"),
                 qPrintable(textsOf(journal.pastSales(0, 9)).join('\n')));
        QCOMPARE(journal.runningShift()->rounding, method == 1 ? rounding : 0);
        QCOMPARE(journal.runningShift()->cash(), method == 1 ? 192 + rounding : 0);
        QCOMPARE(journal.runningShift()->ticketSum, 192);
    }

    void salesOfTheShiftTheNewestFirst()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {1}));
        QVERIFY(journal.closeShift(noon));
        QVERIFY(journal.pastSales(0, 10).isEmpty());
        QCOMPARE(journal.pastSaleCount(), 0);
        for (const Minor price : {2, 3, 4})
            QVERIFY(sell(journal, {price, 10}));
        QCOMPARE(journal.pastSaleCount(), 3);
        const auto totals = [&](int skip, int count) {
            QVector<qint64> all;
            for (const PastSale& sale : journal.pastSales(skip, count))
                all.append(sale.total);
            return all;
        };
        QCOMPARE(totals(0, 10), (QVector<qint64>{14, 13, 12}));
        QCOMPARE(totals(1, 1), QVector<qint64>{13});
        QCOMPARE(totals(3, 10), QVector<qint64>());
        const PastSale newest = journal.pastSales(0, 1).at(0);
        QCOMPARE(newest.at, noon);
        QCOMPARE(newest.shift, 18);
        QCOMPARE(newest.ticketCount, 2);
        QCOMPARE(newest.firstTicket, 6);
        QCOMPARE(journal.pastSale(newest.id)->total, 14);
        QVERIFY(!journal.pastSale(1)); // of another shift
        QVERIFY(!journal.pastSale(99));
        QCOMPARE(journal.saleOf(7), newest.id);
        QCOMPARE(journal.saleOf(1), 0);
        QCOMPARE(journal.saleOf(99), 0);
        QCOMPARE(kindOf(journal.fault()), "none");
    }

    void copiesAreCounted()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {190, 95}));
        QVERIFY(journal.markPrinted(1));
        QVERIFY(journal.recordCopy(2, noon));
        QVERIFY(journal.recordCopy(2, noon));
        const QVector<PastTicket> tickets = journal.ticketsOf(1);
        QCOMPARE(tickets.size(), 2);
        QCOMPARE(tickets.at(0).copies, 0);
        QCOMPARE(tickets.at(1).copies, 2);
        QCOMPARE(tickets.at(1).ticket.number, 2);
        QCOMPARE(valuesOf(journal.unprintedTickets(), &Ticket::number), QVector<qint64>{2});
        QCOMPARE(journal.runningShift()->copyCount, 2);
    }

    void reversalsAreRecordsWithSumsOfTheirOwn()
    {
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(sell(journal, {450, 10}, PayMethod::Card));
            QVERIFY(journal.confirmSale({ticket(192)}, {PayMethod::Cash, -2}, noon));
            const QString sold = text(*journal.runningShift());
            QCOMPARE(
                text(*journal.reverse(1, {2}, ReversalKind::Refund, "bus broke down", 95, noon)),
                "1: cash 285+0 given 285 change 0, 2 tickets, 1 back for 95 paid 95, driver 0");
            QCOMPARE(journal.reverse(2, {3, 4}, ReversalKind::Void, {}, 460, noon)->isReversed(),
                     true);
            QCOMPARE(
                text(*journal.reverse(3, {5}, ReversalKind::Void, {}, 190, noon)),
                "3: cash 192-2 given 190 change 0, 1 tickets, 1 back for 192 paid 190, driver 0");
            QCOMPARE(text(*journal.runningShift()), sold); // what was sold was sold
            QCOMPARE(reversalsOf(*journal.runningShift()),
                     "void 3 652, refund 1 95, card back 2 for 460, rounding 0, 0 copies, float 0: "
                     "cash 190");
            QVERIFY(journal.ticketsOf(1).at(1).isReversed);
            QVERIFY(!journal.ticketsOf(1).at(0).isReversed);
            QCOMPARE(
                rowsOf(onlyConnection(), "SELECT * FROM reversal"),
                (QStringList{"4|1|2|bus broke down|95|95", "5|2|1||460|460", "6|3|1||192|190"}));
            const auto closed = journal.closeShift(noon);
            QCOMPARE(reversalsOf(*closed), "void 3 652, refund 1 95, card back 2 for 460, rounding "
                                           "0, 0 copies, float 0: cash 190");
        }
        OpenJournal again(file());
        QCOMPARE(kindOf(again.fault()), "none");
        QCOMPARE(again.closedShifts().at(0).cash(), 190);
    }

    void shiftWithoutReversalsHasTheSumsOfItsSales()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {190, 95}));
        QVERIFY(sell(journal, {450}, PayMethod::Card));
        QCOMPARE(
            reversalsOf(*journal.runningShift()),
            "void 0 0, refund 0 0, card back 0 for 0, rounding 0, 0 copies, float 0: cash 285");
    }

    void nothingElseIsReversed_data()
    {
        const Table<qint64, QVector<qint64>> row("sale", "tickets");
        row("no ticket", 4LL, {});
        row("a ticket of another sale", 4LL, {3, 5});
        row("a ticket that is reversed", 4LL, {2, 3});
        row("a ticket twice", 4LL, {3, 3});
        row("a ticket that does not exist", 4LL, {99});
        row("a sale of a closed shift", 1LL, {1});
        row("a record that is no sale", 2LL, {1});
        row("a sale that does not exist", 99LL, {1});
    }

    void nothingElseIsReversed()
    {
        QFETCH(qint64, sale);
        QFETCH(QVector<qint64>, tickets);
        OpenJournal journal(file());
        QVERIFY(sell(journal, {1})); // record 1
        QVERIFY(journal.recordOpeningFloat(1, noon));
        QVERIFY(journal.closeShift(noon));
        QVERIFY(sell(journal, {190, 95})); // record 4, tickets 2 and 3
        QVERIFY(sell(journal, {190}));
        QVERIFY(sell(journal, {7}));
        QVERIFY(journal.reverse(4, {2}, ReversalKind::Refund, "late", 190, noon));
        const QStringList before = journalContent();
        QVERIFY(!journal.reverse(sale, tickets, ReversalKind::Refund, "late", 1, noon));
        QCOMPARE(journalContent(), before);
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(sell(journal, {8})); // it goes on working
    }

    void floatIsOwedWithTheCash()
    {
        {
            OpenJournal journal(file());
            QVERIFY(journal.recordOpeningFloat(4000, noon));
            QVERIFY(journal.recordOpeningFloat(5000, noon)); // the last one counts
            QVERIFY(sell(journal, {190}));
            QCOMPARE(journal.runningShift()->openingFloat, 5000);
            QCOMPARE(journal.runningShift()->cash(), 190);
            QCOMPARE(journal.runningShift()->due(), 5190);
            QVERIFY(journal.closeShift(noon));
            QCOMPARE(journal.runningShift()->openingFloat, 0);
            QVERIFY(journal.recordOpeningFloat(100, noon));
            QVERIFY(!journal.closeShift(noon)->paidAt.isValid()); // the float is to be handed over
        }
        OpenJournal journal(file());
        const auto paid = journal.handOver(17, noon, 5100);
        QCOMPARE(paid->counted, 5100);
        QCOMPARE(paid->difference, -90);
        QCOMPARE(paid->paidAt, noon);
        QCOMPARE(journal.handOver(18, noon)->difference, 0);
        QCOMPARE(journal.closedShift(17)->counted, 5100);
        QVERIFY(!journal.closedShift(19)); // it runs
        QVERIFY(!journal.closedShift(16));
        QCOMPARE(kindOf(journal.fault()), "none");
    }

    /// What the records contradict is found when the journal is opened.
    void contradictionsAreDamage_data()
    {
        const Table<QString> row("harm");
        for (const char* harm :
             {"UPDATE reversal SET total = 1", "UPDATE reversal SET paid_out = 1 WHERE record = 7",
              "UPDATE reversal SET reason_kind = 2 WHERE record = 7", "DELETE FROM reversed_ticket",
              "UPDATE reversed_ticket SET ticket = 3 WHERE ticket = 1",
              "UPDATE reversal SET sale = 4 WHERE record = 7", "UPDATE hand_over SET counted = 1",
              "UPDATE hand_over SET difference = 1", "UPDATE opening SET amount = 1",
              "UPDATE printout SET is_copy = 0, ticket = 3 WHERE is_copy = 1",
              "DELETE FROM printout WHERE is_copy = 1",
              "UPDATE record SET shift = 18 WHERE kind = 6"})
            row(harm, harm);
    }

    void contradictionsAreDamage()
    {
        QFETCH(QString, harm);
        {
            OpenJournal journal(file());
            QVERIFY(journal.recordOpeningFloat(500, noon));                      // 1
            QVERIFY(sell(journal, {190, 95}));                                   // 2
            QVERIFY(journal.markPrinted(1));                                     // 3
            QVERIFY(sell(journal, {450}));                                       // 4
            QVERIFY(journal.markPrinted(2));                                     // 5
            QVERIFY(journal.recordCopy(1, noon));                                // 6
            QVERIFY(journal.reverse(2, {1}, ReversalKind::Void, {}, 190, noon)); // 7
            QVERIFY(journal.closeShift(noon));                                   // 8
            QVERIFY(journal.handOver(17, noon, 900));                            // 9
            QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM record"), QStringList("9"));
        }
        QCOMPARE(kindOf(OpenJournal(file()).fault()), "none");
        executeIn(file(), {harm});
        QCOMPARE(kindOf(OpenJournal(file()).fault()), "damaged");
    }

private:
    QString file() const { return m_folder->filePath("journal.db"); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalRecords)
#include "tst_journal_records.moc"
