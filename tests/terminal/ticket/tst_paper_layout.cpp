#include "Papers.h"

#include <TicketCode.h>

#include <QTest>

using namespace rivo::sales;
using namespace rivo::ticket;

namespace
{

const QByteArray key("secret");

QStringList linesOf(const PrintJob& job, const PaperContext& context = hillValley())
{
    return textOf(layOut(job, context)).split('\n');
}

/// The value of a field; "none" if it is not on the paper.
QString valueOf(const PaperLayout& layout, const QString& label)
{
    for (const PaperBlock& block : layout) {
        if (block.text == label)
            return block.value;
    }
    return QStringLiteral("none");
}

ShiftReport fullReport()
{
    ShiftReport report;
    report.zNumber = 17;
    report.ticketCount = 12;
    report.ticketSum = 2500;
    report.cardCount = 4;
    report.cardSum = 1000;
    report.firstTicket = 5;
    report.lastTicket = 16;
    report.voidCount = 2;
    report.voidSum = 380;
    report.refundCount = 1;
    report.refundSum = 100;
    report.reversedCardCount = 1;
    report.reversedCardSum = 190;
    report.rounding = -2;
    report.copyCount = 3;
    report.openingFloat = 5000;
    report.driver = 7;
    return report;
}

} // namespace

class TestPaperLayout : public QObject
{
    Q_OBJECT

private slots:
    void ticketSaysAllThatItHas()
    {
        QCOMPARE(linesOf(fullTicket()),
                 (QStringList{
                     "Hill & Valley Buses", "Single ticket", "Child up to 7", "--",
                     "From: Hill, Church Square", "To: Valley", "Route: 7 Harbour – Airport",
                     "Valid: 60 minutes", "--", "Price: €1.90", "includes 8 % tax €0.14",
                     "Paid: in cash", "--", "Ticket: 000042", "Sold: 29/03/2026 12:00", "Driver: 7",
                     "Vehicle: bus 104", codeOf(fullTicket().ticket, Currency("EUR", 2), key),
                     "Check: " + checkText(codeOf(fullTicket().ticket, Currency("EUR", 2), key))}));
    }

    void whatIsNotKnownIsLeftOut()
    {
        PrintJob job;
        job.ticket.number = 1;
        job.ticket.payMethod = 2;
        job.ticket.fareProductName = "Single";
        PaperContext context = hillValley();
        context.operatorName.clear();
        const QStringList lines = linesOf(job, context);
        QCOMPARE(lines.mid(0, 7), (QStringList{"Single", "--", "--", "Price: €0.00",
                                               "Paid: by card", "--", "Ticket: 000001"}));
        QCOMPARE(lines.size(), 9); // the code and its check value
    }

    void copyIsMarked()
    {
        PrintJob job = fullTicket();
        QVERIFY(!linesOf(job).join(' ').contains("COPY"));
        job.copy = 2;
        const PaperLayout layout = layOut(job, hillValley());
        QCOMPARE(layout.at(1).text, "COPY 2");
        QCOMPARE(layout.at(1).kind, PaperBlock::Kind::Mark);
        job.copy = 0;
        QCOMPARE(valueOf(layout, "Check"), valueOf(layOut(job, hillValley()), "Check"));
    }

    void validity_data()
    {
        QTest::addColumn<QString>("validity");
        QTest::addColumn<bool>("isDaily");
        QTest::addColumn<QString>("shown");
        QTest::newRow("as the feed says") << "60 minutes" << false << "60 minutes";
        QTest::newRow("a day ticket") << "" << true << "on 29/03/2026";
        QTest::newRow("a day ticket with its own words") << "24 hours" << true << "24 hours";
        QTest::newRow("unknown") << " " << false << "none";
    }

    void validity()
    {
        QFETCH(QString, validity);
        QFETCH(bool, isDaily);
        PrintJob job = fullTicket();
        job.ticket.validity = validity;
        job.ticket.isDaily = isDaily;
        QTEST(valueOf(layOut(job, hillValley()), "Valid"), "shown");
    }

    void places_data()
    {
        QTest::addColumn<QString>("zone");
        QTest::addColumn<QString>("stop");
        QTest::addColumn<QString>("shown");
        QTest::newRow("zone and stop") << "A"
                                       << "Market"
                                       << "A, Market";
        QTest::newRow("zone alone") << "A"
                                    << ""
                                    << "A";
        QTest::newRow("stop alone") << ""
                                    << "Market"
                                    << "Market";
        QTest::newRow("the same name") << "Market"
                                       << "Market"
                                       << "Market";
        QTest::newRow("none") << ""
                              << ""
                              << "none";
    }

    void places()
    {
        QFETCH(QString, zone);
        QFETCH(QString, stop);
        PrintJob job = fullTicket();
        job.ticket.origin = zone;
        job.ticket.fromStopName = stop;
        QTEST(valueOf(layOut(job, hillValley()), "From"), "shown");
    }

    void returnTicketSaysSo()
    {
        PrintJob job = fullTicket();
        job.ticket.isReturnFee = true;
        QCOMPARE(linesOf(job).at(3), "Return");
    }

    /// A name can neither turn around what follows nor make a line of its own.
    void namesAreOnePlainLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("embedding") << QStringLiteral("Sin\u202Agle") + QChar(0x202C);
        QTest::newRow("override") << QString("Sin") + QChar(0x202E) + "gle";
        QTest::newRow("isolate") << QString("Sin") + QChar(0x2067) + "gle" + QChar(0x2069);
        QTest::newRow("mark") << QString("Sin") + QChar(0x200F) + "gle";
    }

    void namesAreOnePlainLine()
    {
        QFETCH(QString, name);
        PrintJob job = fullTicket();
        job.ticket.fareProductName = name;
        QCOMPARE(linesOf(job).at(1), "Single");
    }

    void lineBreaksAreBlanks()
    {
        PrintJob job = fullTicket();
        for (const QChar lineBreak : {QChar('\n'), QChar('\t'), QChar(0x2028), QChar(0x2029)}) {
            job.ticket.fareProductName = QString(" Single") + lineBreak + "ticket ";
            QCOMPARE(linesOf(job).at(1), "Single ticket");
        }
    }

    void amountsAndDatesAreThoseOfTheLocale()
    {
        PaperContext context = hillValley();
        context.locale = QLocale("de_DE");
        const PaperLayout layout = layOut(fullTicket(), context);
        QCOMPARE(valueOf(layout, "Price"), "1,90\u00a0€");
        QCOMPARE(valueOf(layout, "Sold"), "29.03.26 12:00");
    }

    void codeHasNumberTimePriceAndCheck()
    {
        const QString code = codeOf(fullTicket().ticket, Currency("EUR", 2), key);
        // hmac.new(b"secret", b"R1|...|2", hashlib.sha256).hexdigest()[:16].upper()
        QCOMPARE(code, "R1|000042|20260329T100005Z|190|EUR|21|12|1|2|23676D235A16D892");
        QVERIFY(isCodeValid(code, key));
        QVERIFY(!isCodeValid(code, {}));
        QCOMPARE(checkText(code), "2367-6D23-5A16-D892");
    }

    void changedCodesAreNotValid()
    {
        const QString code = codeOf(fullTicket().ticket, Currency("EUR", 2), key);
        for (int at = 0; at < code.size(); ++at) {
            QString changed = code;
            changed[at] = changed.at(at) == QLatin1Char('1') ? QLatin1Char('2') : QLatin1Char('1');
            QVERIFY2(!isCodeValid(changed, key), qPrintable(changed));
        }
        for (const char* none : {"", "|", "R1", "R1|", "|ABC"})
            QVERIFY2(!isCodeValid(none, key), none);
    }

    void codesOfTwoTicketsDiffer()
    {
        PrintJob other = fullTicket();
        other.ticket.number = 43;
        QVERIFY(codeOf(other.ticket, Currency("EUR", 2), key).section('|', -1) !=
                codeOf(fullTicket().ticket, Currency("EUR", 2), key).section('|', -1));
    }

    void reportOfARunningShift()
    {
        PrintJob job;
        job.report = fullReport();
        QCOMPARE(linesOf(job),
                 (QStringList{"Hill & Valley Buses", "X report 17", "The shift is running",
                              "Driver: 7", "--", "First ticket: 000005", "Last ticket: 000016",
                              "Tickets: 12", "Tickets sold for: €25.00", "Void: 2 / €3.80",
                              "Refunded: 1 / €1.00", "Rounding of cash: (€0.02)", "Takings: €20.18",
                              "--", "By card: €8.10", "In cash: €12.08", "Opening float: €50.00",
                              "Cash to hand over: €62.08", "Copies printed: 3"}));
    }

    void reportOfAClosedShift()
    {
        PrintJob job;
        job.report = fullReport();
        job.report->closedAt = fullTicket().ticket.soldAt;
        QCOMPARE(linesOf(job).mid(1, 3),
                 (QStringList{"Z report 17", "Driver: 7", "Closed: 29/03/2026 12:00"}));
        QVERIFY(!linesOf(job).join(' ').contains("Handed over"));
        job.report->paidAt = job.report->closedAt.addSecs(60);
        job.report->counted = 6000;
        job.report->difference = -208;
        const QStringList lines = linesOf(job);
        QCOMPARE(lines.mid(lines.size() - 4),
                 (QStringList{"--", "Handed over: 29/03/2026 12:01", "Counted: €60.00",
                              "Difference: (€2.08)"}));
    }

    void reportWithTheDayOfTheCardTerminal_data()
    {
        QTest::addColumn<bool>("hasEnded");
        QTest::addColumn<qint64>("difference");
        QTest::addColumn<QStringList>("expected");
        const QString rule = "--";
        const QString total = "Day of the card terminal: €8.00";
        const QString copies = "Copies printed: 3";
        QTest::newRow("a day that has not ended has no lines")
            << false << qint64(0) << QStringList{"Cash to hand over: €62.08", copies};
        QTest::newRow("a day that agrees has its total")
            << true << qint64(0) << QStringList{copies, rule, total};
        QTest::newRow("less than in the journal")
            << true << qint64(-10)
            << QStringList{rule, total, "Difference to the journal: (€0.10)"};
        QTest::newRow("more than in the journal")
            << true << qint64(10) << QStringList{rule, total, "Difference to the journal: €0.10"};
    }

    void reportWithTheDayOfTheCardTerminal()
    {
        QFETCH(bool, hasEnded);
        QFETCH(qint64, difference);
        QFETCH(QStringList, expected);
        PrintJob job;
        job.report = fullReport();
        job.report->closedAt = fullTicket().ticket.soldAt;
        job.report->isCardDayEnded = hasEnded;
        job.report->cardDayTotal = 800;
        job.report->cardDayDifference = difference;
        const QStringList lines = linesOf(job);
        QCOMPARE(lines.mid(lines.size() - expected.size()), expected);
    }

    void reportWithoutReversalsHasNoLinesForThem()
    {
        PrintJob job;
        job.report = ShiftReport();
        job.report->zNumber = 1;
        QCOMPARE(linesOf(job),
                 (QStringList{"Hill & Valley Buses", "X report 1", "The shift is running", "--",
                              "Tickets: 0", "Tickets sold for: €0.00", "Takings: €0.00", "--",
                              "By card: €0.00", "In cash: €0.00", "Cash to hand over: €0.00"}));
    }
};

QTEST_APPLESS_MAIN(TestPaperLayout)
#include "tst_paper_layout.moc"
