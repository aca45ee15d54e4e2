#include "MovedClock.h"
#include "Play.h"
#include "SignalLog.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>

using namespace rivo::sales;

namespace
{

const Currency francs(QStringLiteral("CHF"), 2);

/// What is tested here does not hang on what is on the disk.
struct FastCounter : Counter
{
    explicit FastCounter(const QString& file, const Currency& money = euro) : Counter(file, money)
    {
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
    }
};

/// "2: 190 paid 190, given 200 change 10, 1 of 2 back for 95, may be void and refunded".
QString text(const QVariantMap& sale)
{
    const auto number = [&sale](const char* key) {
        return QString::number(sale.value(key).toLongLong());
    };
    return QStringLiteral("%1: %2%3 paid %4, given %5 change %6, %7 of %8 back for %9")
               .arg(number("id"), sale.value("isCash").toBool() ? "" : "card ", number("total"),
                    number("paid"), number("given"), number("change"), number("reversedCount"),
                    number("ticketCount"), number("paidOut")) +
           (sale.value("mayVoid").toBool() ? ", void" : "") +
           (sale.value("mayRefund").toBool() ? ", refund" : "") +
           (sale.value("isReversed").toBool() ? ", reversed" : "");
}

QStringList textsOf(const QVariantList& sales)
{
    QStringList all;
    for (const QVariant& sale : sales)
        all.append(text(sale.toMap()));
    return all;
}

/// The figures of a report that are not 0, "cash 190, due 190 ...".
QString figuresOf(const QVariantMap& report)
{
    QStringList all;
    for (const char* key :
         {"ticketCount", "ticketSum", "cardCount", "cardSum", "voidCount", "voidSum", "refundCount",
          "refundSum", "reversedCardSum", "rounding", "copyCount", "openingFloat", "takings",
          "cash", "due", "counted", "difference"}) {
        if (!report.contains(key))
            return "no report";
        if (report.value(key).toDouble() != 0.0)
            all.append(QStringLiteral("%1 %2").arg(key).arg(report.value(key).toLongLong()));
    }
    return all.join(", ");
}

} // namespace

/// Cash that is given, sales that are looked at, printed again or taken back, and the figures.
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

    void cashThatIsGivenHasChange()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult child"));
        QCOMPARE(counter.desk.due(), 285.0);
        QCOMPARE(counter.desk.dueText(), "€2.85");
        QVERIFY(counter.desk.lastSale().isEmpty());
        QVERIFY(play(counter, "give:500"));
        QCOMPARE(text(counter.desk.lastSale()),
                 "1: 285 paid 285, given 500 change 215, 0 of 2 back for 0, void, refund");
        QCOMPARE(counter.desk.lastSale().value("changeText").toString(), "€2.15");
        QVERIFY(play(counter, "end"));
        QVERIFY(!counter.desk.lastSale().isEmpty()); // it stays until the next one
        QVERIFY(play(counter, "adult card end"));
        QCOMPARE(text(counter.desk.lastSale()),
                 "6: card 190 paid 190, given 0 change 0, 0 of 1 back for 0, void, refund");
    }

    void cashIsRoundedAndCardIsNot()
    {
        FastCounter counter(file(), francs);
        QVERIFY(play(counter, "exact")); // 1.01
        QCOMPARE(counter.desk.totalText(), "CHF1.01");
        QCOMPARE(counter.desk.dueText(), "CHF1.00");
        QVERIFY(play(counter, "cash end exact exact child give:400 end exact card end"));
        QCOMPARE(
            textsOf(counter.desk.pastSales(0, 9)),
            (QStringList{"9: card 101 paid 101, given 0 change 0, 0 of 1 back for 0, void, refund",
                         "3: 297 paid 295, given 400 change 105, 0 of 3 back for 0, refund",
                         "1: 101 paid 100, given 100 change 0, 0 of 1 back for 0, refund"}));
        QCOMPARE(figuresOf(counter.desk.xReport()),
                 "ticketCount 5, ticketSum 499, cardCount 1, cardSum 101, rounding -3, takings 496,"
                 " cash 395, due 395");
        QCOMPARE(counter.report()->zSum(), 4.96);
        QCOMPARE(counter.report()->currentDebt(), 3.95);
        QCOMPARE(counter.report()->ticketSumAmnt(), 4.99);
    }

    void amountsForTheScreen()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult child"));
        QStringList quick;
        for (const QVariant& each : counter.desk.quickAmounts())
            quick.append(each.toMap().value("text").toString());
        QCOMPARE(quick, (QStringList{"€2.85", "€3.00", "€4.00", "€5.00", "€10.00", "€20.00"}));
        QCOMPARE(counter.desk.quickAmounts().at(1).toMap().value("amount").toDouble(), 300.0);
        const QVariantMap change = counter.desk.changeFor(500);
        QCOMPARE(change.value("isEnough").toBool(), true);
        QCOMPARE(change.value("change").toDouble(), 215.0);
        QCOMPARE(change.value("changeText").toString(), "€2.15");
        QCOMPARE(change.value("pieces").toStringList(), (QStringList{"€2.00", "€0.10", "€0.05"}));
        QCOMPARE(counter.desk.changeFor(284).value("isEnough").toBool(), false);
        QCOMPARE(counter.desk.changeFor(284).value("changeText").toString(), "€0.00");
        QCOMPARE(counter.desk.changeFor(std::nan("")).value("isEnough").toBool(), false);
        QCOMPARE(counter.desk.amountText(1234), "€12.34");
        QCOMPARE(counter.desk.amountText(0.5), "–");
    }

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
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("reason");
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
        QTest::addColumn<int>("seconds");
        QTest::addColumn<bool>("isVoid");
        QTest::newRow("at once") << 0 << true;
        QTest::newRow("within the limit") << SalesDesk::voidLimit - 10 << true;
        QTest::newRow("after the limit") << SalesDesk::voidLimit + 10 << false;
        QTest::newRow("the clock was set back a little") << -10 << true;
        QTest::newRow("the clock was set back an hour") << -3600 << false;
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
            QFile::remove(file());
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

    /// Tickets, copies and reports go to the printer with what they say.
    void printerGetsWhatIsOnThePaper()
    {
        FastCounter counter(file());
        counter.desk.setDriver(42, "A. Nowak");
        QVERIFY(!counter.printer.lastPrinted());
        QVERIFY(play(counter, "adult child cash"));
        QStringList printed;
        connect(&counter.printer, &SimulatedPrinter::printed, this, [&] {
            const PrintJob job = *counter.printer.lastPrinted();
            QString text = QStringLiteral("%1 %2 copy %3 driver %4")
                               .arg(job.ticket.number)
                               .arg(job.ticket.description)
                               .arg(job.copy)
                               .arg(job.ticket.driver);
            if (job.report)
                text = QStringLiteral("report %1 of %2 closed %3")
                           .arg(job.report->zNumber)
                           .arg(job.report->driver)
                           .arg(job.report->closedAt.isValid());
            printed.append(text);
        });
        QVERIFY(play(counter, "end copy:2 end copy:2 end report:0 end close report:17"));
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "end"));
        QCOMPARE(log.take(), (QStringList{"stateChanged()", "reportPrinted(double)"}));
        QCOMPARE(printed, (QStringList{"1 adult copy 0 driver 42", "2 child copy 0 driver 42",
                                       "2 child copy 1 driver 42", "2 child copy 2 driver 42",
                                       "report 17 of 42 closed 0", "report 17 of 42 closed 1"}));
        QVERIFY(play(counter, "day cash end"));
        QVERIFY(counter.printer.lastPrinted()->ticket.soldAt.isValid());
        QCOMPARE(counter.desk.paperOf(3)->ticket.soldAt,
                 counter.printer.lastPrinted()->ticket.soldAt);
        QVERIFY(!counter.desk.paperOf(2)); // of the shift before
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

    void floatIsOwedUntilItIsHandedOver()
    {
        FastCounter counter(file());
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "float:4000 float:5000"));
        QCOMPARE(log.take(),
                 (QStringList{"openingFloatChanged(double)", "openingFloatChanged(double)"}));
        QCOMPARE(counter.report()->currentDebt(), 50.0);
        QVERIFY(play(counter, "adult cash end close"));
        QCOMPARE(counter.report(1)->currentDebt(), 51.9);
        QCOMPARE(counter.report(0)->currentDebt(), 51.9);
        QCOMPARE(counter.report(1)->zSum(), 1.9);
        QVERIFY(play(counter, "count:17:5100"));
        QCOMPARE(counter.report(1)->currentDebt(), 0.0);
        QCOMPARE(counter.report(0)->currentDebt(), 0.0);
        QCOMPARE(figuresOf(counter.desk.zReport(17)),
                 "ticketCount 1, ticketSum 190, openingFloat 5000, takings 190, cash 190, due 5190,"
                 " counted 5100, difference -90");
        QCOMPARE(figuresOf(counter.desk.zReport(18)), "no report"); // it runs
        QVERIFY(play(counter, "adult cash end float:100"));         // given late, once
    }

    void figuresNeedNoClosing()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult child cash end day card end"));
        const QStringList before = journalContent();
        const QVariantMap report = counter.desk.xReport();
        QCOMPARE(figuresOf(report), "ticketCount 3, ticketSum 735, cardCount 1, cardSum 450,"
                                    " takings 735, cash 285, due 285");
        QCOMPARE(report.value("zNumber").toDouble(), 17.0);
        QCOMPARE(report.value("firstTicket").toString(), "000001");
        QCOMPARE(report.value("lastTicket").toString(), "000003");
        QVERIFY(report.value("at").toDateTime().isValid());
        QCOMPARE(journalContent(), before);
        QVERIFY(play(counter, "close"));
        QCOMPARE(figuresOf(counter.desk.zReport(17)), figuresOf(report));
    }

    void driverChangesAndTheBasketStays()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult"));
        SignalLog log(&counter.desk);
        counter.desk.setLocked(true);
        counter.desk.setLocked(true);
        counter.desk.setDriver(42, "A. Nowak");
        counter.desk.setDriver(42, "A. Nowak");
        counter.desk.setLocked(false);
        QCOMPARE(log.take(),
                 (QStringList{"lockedChanged()", "driverChanged()", "lockedChanged()"}));
        QCOMPARE(counter.desk.driver(), 42.0);
        QCOMPARE(counter.desk.driverName(), "A. Nowak");
        QCOMPARE(counter.prices(), QVector<qint64>{190});
        QVERIFY(play(counter, "cash end"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT DISTINCT driver FROM record"), QStringList("42"));
        QCOMPARE(counter.desk.pastSales(0, 1).at(0).toMap().value("driver").toDouble(), 42.0);
        QCOMPARE(counter.desk.xReport().value("driver").toDouble(), 42.0);
    }

    /// A lock in the middle of a sale does not keep paid tickets from the passenger.
    void lockedDeskPrintsWhatIsPaid()
    {
        FastCounter counter(file());
        QVERIFY(play(counter, "adult child cash lock end"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM printout"), QStringList("2"));
    }

    void detailsOfTheTripAreKeptWithTheTicket()
    {
        FastCounter counter(file());
        counter.desk.setTicketDetails([](Ticket& ticket) {
            ticket.validity = QStringLiteral("60 min");
            ticket.vehicle = QString::number(ticket.trip.routeId);
        });
        QVERIFY(play(counter, "adult cash end"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT validity, vehicle FROM ticket"),
                 QStringList("60 min|5"));
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
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("harm");
        const QString jam = "CREATE TEMP TRIGGER jam BEFORE INSERT ON main.record BEGIN"
                            " SELECT RAISE(ABORT, 'jam'); END";
        for (const char* step :
             {"void", "refund:4:x", "back:2:x", "copy:2", "float:1", "count:17:1"})
            QTest::addRow("nothing can be written: %s", step) << step << jam;
        for (const char* step : {"void", "refund:4:x", "back:2:x", "copy:2", "report:0"})
            QTest::addRow("sales cannot be read: %s", step)
                << step << "ALTER TABLE sale RENAME TO lost";
        QTest::newRow("figures cannot be read: float") << "float:1"
                                                       << "ALTER TABLE sale RENAME TO lost";
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
