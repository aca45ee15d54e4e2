#include "FastCounter.h"
#include "MovedClock.h"
#include "SignalLog.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <memory>

using namespace rivo::sales;

/// Cash that is given, the figures of a shift, its drivers, and what is printed of a sale.
class TestSalesCash : public QObject
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
        QCOMPARE(quick, (QStringList{"€2.85", "€3.00", "€4.00", "€5.00", "€10.00", "€20.00",
                                     "€50.00", "€100.00"}));
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

private:
    QString file() const { return m_folder->filePath("journal.db"); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestSalesCash)
#include "tst_sales_cash.moc"
