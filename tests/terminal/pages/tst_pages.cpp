#include "../ScreenUnderTest.h"
#include "LogCapture.h"
#include "Table.h"

#include <FareProductsModel.h>
#include <Feed.h>
#include <PassengerTypesModel.h>

#include <QtTest>

using rivo::feed::Feed;
using rivo::feed::FeedFareProduct;
using rivo::feed::FeedProduct;
using rivo::feed::FeedZReport;
using rivo::sales::SalesDesk;
using rivo::terminal::Terminal;

namespace
{

Feed smallFeed(const QVector<FeedZReport>& closedShifts = {})
{
    Feed feed;
    feed.name = "Test Buses";
    feed.currency = "EUR";
    feed.columns = 2;
    feed.supportedPassengerTypes = QStringList{"PT_ADULT"};
    FeedProduct ticket;
    ticket.passengerTypeId = 1;
    ticket.description = "Adult";
    ticket.passengerTypeCode = "PT_ADULT";
    ticket.price = 10.0;
    ticket.fareProductId = 7;
    ticket.fareProductName = "Single";
    ticket.fromStopGroupId = 1;
    ticket.toStopGroupId = 1;
    feed.products = {ticket};
    for (const int id : {6, 7}) {
        FeedFareProduct product;
        product.id = id;
        product.description = QString("Product %1").arg(id);
        product.price = id;
        product.passengerTypes = QVariantList{"PT_ADULT", "PT_LFS"};
        feed.fareProducts.append(product);
    }
    feed.zReports = closedShifts;
    return feed;
}

FeedZReport closedReport(int number, double debt = 0.0, double limit = 0.0)
{
    FeedZReport report;
    report.id = number;
    report.zNumber = number;
    report.isClosed = true;
    report.currentDebt = debt;
    report.maxAllowedDebt = limit;
    return report;
}

/// Adds `tickets` tickets for 10.00 each and sells them.
void sell(ScreenUnderTest& shown, int tickets, SalesDesk::Payment payment)
{
    SalesDesk* desk = shown.terminal().desk();
    for (int i = 0; i < tickets; ++i)
        QVERIFY(desk->add(0));
    QVERIFY(desk->pay(payment));
    QTRY_COMPARE(desk->state(), SalesDesk::Selling);
}

using Get = std::function<bool(Terminal&)>;
using Set = std::function<void(Terminal&, bool)>;
constexpr QSize smallest(800, 480);

} // namespace

Q_DECLARE_METATYPE(Get)
Q_DECLARE_METATYPE(Set)

class TestPages : public QObject
{
    Q_OBJECT

public:
    static void initMain() { QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); }

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup() { QCOMPARE(Complaints::take(), QStringList()); }
    void cleanupTestCase() { m_complaints.reset(); }

    void amountsAreNeverCutOff_data()
    {
        QTest::addColumn<QSize>("size");
        for (const QSize size : {smallest, QSize(1024, 600), QSize(1280, 800)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }

    void amountsAreNeverCutOff()
    {
        QFETCH(QSize, size);
        Feed feed = smallFeed({closedReport(1029, 99999.99)});
        feed.products[0].price = 9999.99;
        feed.fareProducts[0].price = 99999.99;
        feed.fareProducts[0].description =
            "A product with a name that takes more than two lines of a list on a small screen, and "
            "then some more words";
        feed.zReports[0].zSum = 99999.99;
        for (const char* page : {"products", "zreport"}) {
            ScreenUnderTest shown(feed, page, size);
            sell(shown, 2, SalesDesk::Cash);
            for (const char* name : {"priceText", "runningNumber", "runningSum", "debtText",
                                     "limitText", "paymentText"}) {
                for (const QQuickItem* item : shown.all(name))
                    QVERIFY2(!item->property("truncated").toBool(), name);
            }
            QVERIFY(shown.all("priceText").size() + shown.all("runningSum").size() > 0);
        }
    }

    void tappedProductIsShownInDetail()
    {
        ScreenUnderTest shown(smallFeed(), "products", smallest);
        QCOMPARE(shown.text("detailTitle"), "Product 6");
        QCOMPARE(shown.item("productLines")->property("count").toInt(), 2);
        shown.tap(shown.all("priceText").at(1));
        QTRY_COMPARE(shown.text("detailTitle"), "Product 7");
        QVERIFY(shown.texts("valueText").contains("Adult, Large family"));
        QVERIFY(shown.texts("valueText").contains("€7.00"));
        QVERIFY(shown.all("emptyCatalogueText").isEmpty());
        QVERIFY(shown.all("badge").isEmpty());
        QVERIFY(shown.terminal().desk()->add(0)); // counted in the list
        QTRY_COMPARE(shown.all("badge").size(), 1);
        QCOMPARE(shown.item("badge")->property("count").toInt(), 1);
    }

    void emptyCatalogueIsShownAsSuch()
    {
        Feed feed = smallFeed();
        feed.fareProducts.clear();
        ScreenUnderTest shown(feed, "products", smallest);
        QCOMPARE(shown.text("emptyCatalogueText"), "This feed has no fare catalogue.");
        QVERIFY(shown.all("detailTitle").isEmpty());
    }

    void logOfTheTilesPutsThemInOrderAnew()
    {
        ScreenUnderTest shown(smallFeed(), "sell", smallest);
        PassengerTypesModel& grid = *shown.terminal().grid();
        QVERIFY(shown.terminal().desk()->add(0));
        const auto rows = [&grid] {
            QVariantList all;
            for (int row = 0; row < grid.rowCount(); ++row)
                all.append(grid.get(row));
            return all;
        };
        const QVariantList before = rows();
        LogCapture log;
        shown.tap("statusLog");
        QVERIFY(grid.logFareProducts());
        QVERIFY2(log.messages().join('\n').contains("Single"),
                 qPrintable(log.messages().join('\n')));
        QCOMPARE(rows(), before); // the badge of the basket included
        const int records = log.messages().size();
        shown.tap("statusLog");
        QVERIFY(!grid.logFareProducts());
        QCOMPARE(log.messages().size(), records);
        QCOMPARE(rows(), before);
    }

    void closingAShiftAsksFirst()
    {
        ScreenUnderTest shown(smallFeed({closedReport(41)}), "zreport", smallest);
        sell(shown, 2, SalesDesk::Cash);
        sell(shown, 1, SalesDesk::Card);
        QCOMPARE(shown.text("runningNumber"), "Z report 42");
        QCOMPARE(shown.text("runningSum"), "€30.00");
        QCOMPARE(shown.text("debtText"), "€20.00");

        shown.tap("closeShiftButton");
        shown.tap("cancelButton");
        QTRY_VERIFY(shown.all("cancelButton").isEmpty());
        QCOMPARE(shown.text("runningNumber"), "Z report 42");

        shown.tap("closeShiftButton");
        shown.tap("confirmButton");
        QTRY_COMPARE(shown.text("runningNumber"), "Z report 43");
        QCOMPARE(shown.text("runningState"), "Shift 42 is closed.");
        QCOMPARE(shown.text("runningSum"), "€0.00");
        QCOMPARE(shown.item("closedShifts")->property("count").toInt(), 2);

        sell(shown, 1, SalesDesk::Card);
        QCOMPARE(shown.text("runningState"), "Running shift");
        QCOMPARE(shown.text("runningSum"), "€10.00");
        QCOMPARE(shown.text("debtText"), "€20.00");
    }

    void cashOfAClosedShiftIsHandedOver()
    {
        // The feed's shift is unpaid, but not for this terminal to pay.
        ScreenUnderTest shown(smallFeed({closedReport(41, 12.5)}), "zreport", smallest);
        sell(shown, 2, SalesDesk::Cash);
        QVERIFY(shown.terminal().desk()->closeShift());
        QTRY_COMPARE(shown.texts("paymentText").size(), 2);
        QVERIFY(shown.texts("paymentText").contains("Not paid, €20.00 due"));
        QVERIFY(shown.texts("paymentText").contains("Not paid, €12.50 due"));
        QCOMPARE(shown.text("debtText"), "€20.00");

        shown.tap("handOverButton");
        shown.tap("padCancel");
        QTRY_VERIFY(shown.all("padCancel").isEmpty());
        QCOMPARE(shown.text("debtText"), "€20.00");

        shown.tap("handOverButton");
        shown.tap("allOfIt");
        shown.tap("padConfirm");
        QTRY_COMPARE(shown.text("debtText"), "€0.00");
        QCOMPARE(shown.texts("paymentText").filter("Not paid").size(), 1);
        QVERIFY(shown.all("handOverButton").isEmpty());
        QVERIFY(shown.all("countedLine").isEmpty()); // all of it was there
    }

    void closingIsRefusedWhileTheBasketIsOpen()
    {
        ScreenUnderTest shown(smallFeed(), "zreport", smallest);
        QVERIFY(shown.terminal().desk()->add(0));
        shown.tap("closeShiftButton");
        shown.tap("confirmButton");
        QTRY_COMPARE(shown.text("toastText"), "There are unpaid tickets in the basket.");
        QCOMPARE(shown.text("runningNumber"), "Z report 1");
    }

    void cashIsHeldAgainstTheLimitOfTheLatestReport_data()
    {
        const Table<double, QString> row("limit", "text");
        row("no limit", 0.0, "There is no limit.");
        row("below the limit", 20.01, "Limit €20.01");
        const char* const reached = "The limit of €%1 is reached: close the shift and hand the cash"
                                    " over.";
        row("at the limit", 20.0, QString(reached).arg("20.00"));
        row("over it", 5.0, QString(reached).arg("5.00"));
    }

    void cashIsHeldAgainstTheLimitOfTheLatestReport()
    {
        QFETCH(double, limit);
        QFETCH(QString, text);
        ScreenUnderTest shown(smallFeed({closedReport(42, 0.0, limit), closedReport(41, 0.0, 7.0)}),
                              "zreport", smallest);
        sell(shown, 2, SalesDesk::Cash);
        sell(shown, 1, SalesDesk::Card);
        QCOMPARE(shown.text("limitText"), text);
    }

    void countsThatWereNotMadeAreDashes()
    {
        FeedZReport report = closedReport(41);
        ScreenUnderTest shown(smallFeed({report}), "zreport", smallest);
        QTRY_COMPARE(shown.texts("lineText"), QStringList({"–", "–", "–", "–", "€0.00"}));
        report.ticketCount = 0;
        report.cardSellCount = 0;
        report.parcelCount = 2;
        report.parcelAmnt = 9.0;
        report.fromTicketNumber = "A1";
        report.toTicketNumber = "A9";
        report.commission = 7.81;
        ScreenUnderTest other(smallFeed({report}), "zreport", smallest);
        QTRY_COMPARE(other.texts("lineText"),
                     QStringList({"0", "A1 – A9", "0", "2 for €9.00", "€7.81"}));
    }

    void unpaidShiftsAreMarked()
    {
        FeedZReport paid = closedReport(41);
        paid.paymentDate = QDateTime({2024, 10, 2}, {18, 20});
        ScreenUnderTest shown(smallFeed({closedReport(42, 12.5), paid}), "zreport", smallest);
        QTRY_COMPARE(shown.texts("paymentText"),
                     QStringList({"Not paid, €12.50 due", "Paid 02/10/2024 18:20"}));
    }

    void aShiftOfThisTerminalIsListedOnce()
    {
        Feed feed = smallFeed({closedReport(41)});
        const QTemporaryDir folder;
        Terminal::Settings settings;
        settings.isDemo = true;
        settings.journalFile = folder.filePath("sales.journal");
        QVERIFY(Terminal(feed, settings).desk()->closeShift()); // number 42
        feed.zReports.prepend(closedReport(42)); // which the back office knows by now
        Terminal terminal(feed, settings);
        QStringList numbers;
        for (int row = 0; row < terminal.zReports()->rowCount(); ++row)
            numbers.append(terminal.zReports()->get(row).toMap().value("zNumberData").toString());
        QCOMPARE(numbers, QStringList({"43", "42", "41"}));
    }

    void aLineThatGoesMovesNoOther()
    {
        ScreenUnderTest shown(smallFeed(), "sell", smallest);
        for (int i = 0; i < 14; ++i)
            QVERIFY(shown.terminal().desk()->add(0));
        QTRY_COMPARE(shown.all("basketLines").size(), 1);
        QQuickItem* lines = shown.item("basketLines");
        QTRY_VERIFY(lines->property("atYEnd").toBool() &&
                    lines->property("contentY").toDouble() > 0);
        lines->setProperty("contentY", 0.0);
        QVERIFY(shown.terminal().desk()->remove(1));
        QCoreApplication::processEvents();
        QTest::qWait(50);
        QCOMPARE(lines->property("contentY").toDouble(), 0.0);
    }

    void switchesFollowAndSetTheTerminal_data()
    {
        const Table<Get, Set> row("get", "set");
        row(
            "nightSwitch", [](Terminal& t) { return t.night(); },
            [](Terminal& t, bool on) { t.setNight(on); });
        row(
            "logSwitch", [](Terminal& t) { return t.grid()->logFareProducts(); },
            [](Terminal& t, bool on) { t.grid()->setLogFareProducts(on); });
        row(
            "extraLogSwitch", [](Terminal& t) { return t.grid()->logExtraFareProducts(); },
            [](Terminal& t, bool on) { t.grid()->setLogExtraFareProducts(on); });
    }

    void switchesFollowAndSetTheTerminal()
    {
        QFETCH(Get, get);
        QFETCH(Set, set);
        const QString name = QTest::currentDataTag();
        ScreenUnderTest shown(smallFeed(), "settings", smallest);
        const QQuickItem* const toggle = shown.item(name);
        QCOMPARE(toggle->property("checked").toBool(), false);
        QQuickItem* page = toggle->parentItem();
        while (!page->inherits("QQuickFlickable"))
            page = page->parentItem();
        page->setProperty("contentY",
                          qMax(0.0, page->property("contentHeight").toDouble() - page->height()));
        if (name == "nightSwitch")
            page->setProperty("contentY", 0.0);
        shown.tap(name);
        QTRY_VERIFY(get(shown.terminal()));
        for (const bool on : {false, true}) {
            set(shown.terminal(), on);
            QCOMPARE(toggle->property("checked").toBool(), on);
        }
        shown.tap(name);
        QTRY_VERIFY(!get(shown.terminal()));
    }

private:
    std::unique_ptr<Complaints> m_complaints;
};

QTEST_MAIN(TestPages)
#include "tst_pages.moc"
