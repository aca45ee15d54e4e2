#include "ShiftByTaps.h"

/// The shift of a driver by taps, from sign-in to hand-over. What the journal has in the end is
/// judged by a count of the test, which knows the prices of the feed and what was tapped.
class TestShift : public ShiftByTaps
{
    Q_OBJECT

private slots:
    void aWholeShift();

private:
    static constexpr int sales = 200;

    void judgeJournal();
};

void TestShift::judgeJournal()
{
    // A copy: the terminal has its own for itself.
    const QTemporaryDir folder;
    for (const char* part : {"sales.journal", "sales.journal-wal"})
        QVERIFY(QFile::copy(m_shown->folder() + '/' + part, folder.filePath(part)));
    JournalReader journal(folder.filePath("sales.journal"));
    // Sale by sale, in their order.
    QStringList wanted;
    for (const ShiftLedger::Sale& sale : m_ledger.sales)
        wanted.append(QString("%1 %2 %3 %4 %5")
                          .arg(sale.driver)
                          .arg(sale.isCard ? 2 : 1)
                          .arg(sale.total())
                          .arg(sale.given)
                          .arg(sale.given > 0 ? sale.given - sale.total() : 0));
    QCOMPARE(journal.rows("SELECT driver, pay_method, total, given, change FROM sale JOIN record"
                          " ON id = record ORDER BY id"),
             wanted);
    // Ticket by ticket: numbers from 1 without holes, each on paper once.
    QStringList tickets;
    for (const ShiftLedger::Sale& sale : m_ledger.sales) {
        for (const qint64 price : sale.prices)
            tickets.append(QString("%1 %2 1").arg(tickets.size() + 1).arg(price));
    }
    QCOMPARE(journal.rows("SELECT number, price, (SELECT COUNT(*) FROM printout WHERE"
                          " ticket = number AND is_copy = 0) FROM ticket ORDER BY number"),
             tickets);
    QCOMPARE(journal.number("SELECT COUNT(*) FROM printout WHERE is_copy = 1"), m_ledger.copies);
    QCOMPARE(journal.number("SELECT COUNT(*) FROM basket"), 0);
    QCOMPARE(journal.number("SELECT COUNT(*) FROM ticket WHERE vehicle <> 'MR 4711' OR tax = ''"),
             0);
    // What was taken back.
    QCOMPARE(
        journal.rows("SELECT reason_kind, COUNT(*), SUM(price) FROM reversed_ticket JOIN"
                     " ticket ON number = ticket JOIN reversal ON record = reversal"
                     " GROUP BY reason_kind ORDER BY reason_kind"),
        QStringList(
            {QString("1 %1 %2").arg(m_ledger.voids.size()).arg(ShiftLedger::sumOf(m_ledger.voids)),
             QString("2 %1 %2")
                 .arg(m_ledger.refunds.size())
                 .arg(ShiftLedger::sumOf(m_ledger.refunds))}));
    QCOMPARE(journal.number("SELECT SUM(paid_out) FROM reversal"), m_ledger.reversed());
    // Every record names its driver.
    QCOMPARE(journal.rows("SELECT DISTINCT driver FROM record ORDER BY driver"),
             QStringList({"7", "42"}));
    QCOMPARE(journal.rows("SELECT driver, COUNT(*) FROM sale JOIN record ON id = record"
                          " GROUP BY driver ORDER BY driver"),
             QStringList({QString("7 %1").arg(m_ledger.salesOf(7)),
                          QString("42 %1").arg(m_ledger.salesOf(42))}));
    // The shift and its cash.
    QCOMPARE(journal.rows("SELECT amount FROM opening"),
             QStringList(QString::number(m_ledger.openingFloat)));
    QCOMPARE(journal.rows("SELECT closing.shift, driver FROM closing JOIN record ON id = record"),
             QStringList(QString("%1 7").arg(m_zNumber)));
    QCOMPARE(journal.rows("SELECT hand_over.shift, counted, difference, driver FROM hand_over"
                          " JOIN record ON id = record"),
             QStringList(QString("%1 %2 -100 7").arg(m_zNumber).arg(m_counted)));
}

void TestShift::aWholeShift()
{
    m_shown->window()->grabWindow();
    enter("42");
    m_shown->tap("signInButton");
    enter("4321");
    keepPicture("sign-in");
    m_shown->tap("signInButton");
    QTRY_COMPARE(m_shown->text("signInRefusal"), QString("Number or PIN is wrong."));
    enter("1234");
    m_shown->tap("signInButton");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    m_driver = 42;
    recordFloat("5000");

    for (int sale = 0; sale < sales && !isFailed(); ++sale) {
        moveOn(sale);
        if (sale == 30)
            sellThroughAJam(sale);
        else if (sale == 90)
            restartWithABasket(sale);
        else if (sale == 100)
            sellThroughAStop(sale);
        else if (sale == 150)
            changeDriver(sale);
        else
            sellNext(sale);
        if (sale == 40)
            voidLast();
        else if (sale == 50)
            printCopy();
        else if (sale == 69 || sale == 72) // several tickets, in cash and by card
            refundOneTicket();
        else if (sale == 120)
            printFigures();
    }
    if (isFailed())
        return;
    QVERIFY(m_trips >= 3);
    QCOMPARE(m_ledger.sales.size(), sales);
    printFigures();
    closeShift();
    handOver();
    judgeJournal();
}

QTEST_MAIN(TestShift)
#include "tst_shift.moc"
