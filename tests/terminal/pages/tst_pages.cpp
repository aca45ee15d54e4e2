#include "LogCapture.h"

#include <FareProductsModel.h>
#include <Feed.h>
#include <PassengerTypesModel.h>
#include <Screen.h>
#include <SimulatedPrinter.h>
#include <Terminal.h>

#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtTest>

#include <cstdio>
#include <functional>
#include <memory>

using rivo::feed::Feed;
using rivo::feed::FeedFareProduct;
using rivo::feed::FeedProduct;
using rivo::feed::FeedZReport;
using rivo::sales::SalesDesk;
using rivo::terminal::Screen;
using rivo::terminal::Terminal;

namespace
{

Feed smallFeed()
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
    return feed;
}

FeedZReport closedReport(int number)
{
    FeedZReport report;
    report.id = number;
    report.zNumber = number;
    report.isClosed = true;
    return report;
}

using Get = std::function<bool(Terminal&)>;
using Set = std::function<void(Terminal&, bool)>;

QStringList g_warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
    else if (type != QtDebugMsg && type != QtInfoMsg)
        g_warnings.append(message);
}

/// A terminal on its screen, with a journal of its own.
struct Shown
{
    explicit Shown(const Feed& feed, const QString& page, const QSize& size = {800, 480},
                   const QByteArray& journal = {})
        : terminal(feed, settings(journalWith(journal)))
    {
        show(page, size);
    }

    /// No file at all for no content.
    QString journalWith(const QByteArray& content) const
    {
        QFile file(folder.filePath("sales.journal"));
        if (!content.isEmpty() && file.open(QIODevice::WriteOnly))
            file.write(content);
        return file.fileName();
    }

    static Terminal::Settings settings(const QString& journal)
    {
        Terminal::Settings settings;
        settings.journalFile = journal;
        settings.startTime = 36000;
        settings.pace = 0.0;
        settings.ticketTime = 0;
        return settings;
    }

    void show(const QString& page, const QSize& size)
    {
        screen = std::make_unique<Screen>(terminal, page, size);
        if (screen->window() == nullptr)
            qFatal("%s", qPrintable(g_warnings.join('\n')));
        screen->window()->show();
        QVERIFY(QTest::qWaitForWindowExposed(screen->window()));
    }

    QVector<QQuickItem*> all(const QString& name) const
    {
        QVector<QQuickItem*> found;
        std::function<void(QQuickItem*)> search = [&](QQuickItem* item) {
            if (item->isVisible() && item->objectName() == name)
                found.append(item);
            const QList<QQuickItem*> children = item->childItems();
            for (QQuickItem* child : children)
                search(child);
        };
        search(screen->window()->contentItem());
        return found;
    }

    QString text(const QString& name) const
    {
        const QVector<QQuickItem*> items = all(name);
        return items.isEmpty() ? QString() : items.first()->property("text").toString();
    }

    QStringList texts(const QString& name) const
    {
        QStringList texts;
        for (const QQuickItem* item : all(name))
            texts.append(item->property("text").toString());
        return texts;
    }

    void tap(QQuickItem* item) const
    {
        const QPointF center(item->width() / 2, item->height() / 2);
        QTest::mouseClick(screen->window(), Qt::LeftButton, {}, item->mapToScene(center).toPoint());
    }

    void tap(const QString& name) const
    {
        QTRY_COMPARE(all(name).size(), 1);
        tap(all(name).first());
    }

    void sell(int tickets, SalesDesk::Payment payment)
    {
        for (int i = 0; i < tickets; ++i)
            QVERIFY(terminal.desk()->add(0));
        QVERIFY(terminal.desk()->pay(payment));
        QTRY_COMPARE(terminal.desk()->state(), SalesDesk::Selling);
    }

    QTemporaryDir folder;
    Terminal terminal;
    std::unique_ptr<Screen> screen;
};

} // namespace

Q_DECLARE_METATYPE(Get)
Q_DECLARE_METATYPE(Set)

class TestPages : public QObject
{
    Q_OBJECT

public:
    static void initMain() { QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); }

private slots:
    void initTestCase();
    void init() { g_warnings.clear(); }
    void cleanup() { QCOMPARE(g_warnings, QStringList()); }

    void amountsAreNeverCutOff_data();
    void amountsAreNeverCutOff();
    void tappedProductIsShownInDetail();
    void basketIsCountedInTheCatalogue();
    void emptyCatalogueSaysSo();
    void logOfTheTilesPutsThemInOrderAnew();
    void closingAShiftAsksFirst();
    void cashOfAClosedShiftIsHandedOver();
    void limitIsThatOfTheLatestReport();
    void closingIsRefusedWhileTheBasketIsOpen();
    void cashIsHeldAgainstTheLimit_data();
    void cashIsHeldAgainstTheLimit();
    void countsThatWereNotMadeAreDashes();
    void unpaidShiftsAreMarked();
    void aShiftOfThisTerminalIsListedOnce();
    void aLineThatGoesMovesNoOther();
    void brokenJournalIsNamedInsteadOfAShift();
    void switchesFollowAndSetTheTerminal_data();
    void switchesFollowAndSetTheTerminal();
};

void TestPages::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    QQuickStyle::setStyle("Default");
    Screen::registerTypes();
    qInstallMessageHandler(keepWarnings);
}

void TestPages::amountsAreNeverCutOff_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("800x480") << QSize(800, 480);
    QTest::newRow("1024x600") << QSize(1024, 600);
    QTest::newRow("1280x800") << QSize(1280, 800);
}

void TestPages::amountsAreNeverCutOff()
{
    QFETCH(QSize, size);
    Feed feed = smallFeed();
    feed.products[0].price = 9999.99;
    feed.fareProducts[0].price = 99999.99;
    feed.fareProducts[0].description = "A product with a name that takes more than two lines of "
                                       "a list on a small screen, and then some more words";
    feed.zReports = {closedReport(1029)};
    feed.zReports[0].zSum = 99999.99;
    feed.zReports[0].currentDebt = 99999.99;
    for (const char* page : {"products", "zreport"}) {
        Shown shown(feed, page, size);
        shown.sell(2, SalesDesk::Cash);
        for (const char* name :
             {"priceText", "runningNumber", "runningSum", "debtText", "limitText", "paymentText"}) {
            const QVector<QQuickItem*> items = shown.all(name);
            for (const QQuickItem* item : items)
                QVERIFY2(!item->property("truncated").toBool(), name);
        }
        QVERIFY(shown.all("priceText").size() + shown.all("runningSum").size() > 0);
    }
}

void TestPages::tappedProductIsShownInDetail()
{
    const Shown shown(smallFeed(), "products");
    QCOMPARE(shown.text("detailTitle"), "Product 6");
    QQuickItem* const list = shown.all("productLines").first();
    QCOMPARE(list->property("count").toInt(), 2);
    shown.tap(shown.all("priceText").at(1));
    QTRY_COMPARE(shown.text("detailTitle"), "Product 7");
    QVERIFY(shown.texts("valueText").contains("Adult, Large family"));
    QVERIFY(shown.texts("valueText").contains("€7.00"));
}

void TestPages::basketIsCountedInTheCatalogue()
{
    Shown shown(smallFeed(), "products");
    QVERIFY(shown.all("badge").isEmpty());
    QVERIFY(shown.terminal.desk()->add(0));
    QTRY_COMPARE(shown.all("badge").size(), 1);
    QCOMPARE(shown.all("badge").first()->property("count").toInt(), 1);
}

void TestPages::logOfTheTilesPutsThemInOrderAnew()
{
    Shown shown(smallFeed(), "sell");
    PassengerTypesModel& grid = *shown.terminal.grid();
    QVERIFY(shown.terminal.desk()->add(0));
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
    QVERIFY2(log.messages().join('\n').contains("Single"), qPrintable(log.messages().join('\n')));
    QCOMPARE(rows(), before); // the badge of the basket included
    const int records = log.messages().size();
    shown.tap("statusLog");
    QVERIFY(!grid.logFareProducts());
    QCOMPARE(log.messages().size(), records);
    QCOMPARE(rows(), before);
}

void TestPages::emptyCatalogueSaysSo()
{
    Feed feed = smallFeed();
    feed.fareProducts.clear();
    const Shown shown(feed, "products");
    QCOMPARE(shown.text("emptyCatalogueText"), "This feed has no fare catalogue.");
    QVERIFY(shown.all("detailTitle").isEmpty());
    const Shown other(smallFeed(), "products");
    QVERIFY(other.all("emptyCatalogueText").isEmpty());
}

void TestPages::closingAShiftAsksFirst()
{
    Feed feed = smallFeed();
    feed.zReports = {closedReport(41)};
    Shown shown(feed, "zreport");
    shown.sell(2, SalesDesk::Cash);
    shown.sell(1, SalesDesk::Card);
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
    QCOMPARE(shown.all("closedShifts").first()->property("count").toInt(), 2);

    shown.sell(1, SalesDesk::Card);
    QCOMPARE(shown.text("runningState"), "Running shift");
    QCOMPARE(shown.text("runningSum"), "€10.00");
    QCOMPARE(shown.text("debtText"), "€20.00");
}

void TestPages::cashOfAClosedShiftIsHandedOver()
{
    Feed feed = smallFeed();
    feed.zReports = {closedReport(41)}; // unpaid, but not for this terminal to pay
    feed.zReports[0].currentDebt = 12.5;
    Shown shown(feed, "zreport");
    shown.sell(2, SalesDesk::Cash);
    QVERIFY(shown.terminal.desk()->closeShift());
    QTRY_COMPARE(shown.texts("paymentText").size(), 2);
    QVERIFY(shown.texts("paymentText").contains("Not paid, €20.00 due"));
    QVERIFY(shown.texts("paymentText").contains("Not paid, €12.50 due"));
    QCOMPARE(shown.all("handOverButton").size(), 1);
    QCOMPARE(shown.text("debtText"), "€20.00");

    shown.tap("handOverButton");
    shown.tap("cancelButton");
    QTRY_VERIFY(shown.all("cancelButton").isEmpty());
    QCOMPARE(shown.text("debtText"), "€20.00");

    shown.tap("handOverButton");
    shown.tap("confirmButton");
    QTRY_COMPARE(shown.text("debtText"), "€0.00");
    QCOMPARE(shown.texts("paymentText").filter("Not paid").size(), 1);
    QVERIFY(shown.all("handOverButton").isEmpty());
}

void TestPages::limitIsThatOfTheLatestReport()
{
    Feed feed = smallFeed();
    feed.zReports = {closedReport(42), closedReport(41)};
    feed.zReports[0].maxAllowedDebt = 200.0;
    feed.zReports[1].maxAllowedDebt = 100.0;
    const Shown shown(feed, "zreport");
    QCOMPARE(shown.text("limitText"), "Limit €200.00");
}

void TestPages::closingIsRefusedWhileTheBasketIsOpen()
{
    Shown shown(smallFeed(), "zreport");
    QVERIFY(shown.terminal.desk()->add(0));
    shown.tap("closeShiftButton");
    shown.tap("confirmButton");
    QTRY_COMPARE(shown.text("toastText"), "There are unpaid tickets in the basket.");
    QCOMPARE(shown.text("runningNumber"), "Z report 1");
}

void TestPages::cashIsHeldAgainstTheLimit_data()
{
    QTest::addColumn<double>("limit");
    QTest::addColumn<QString>("text");
    QTest::newRow("no limit") << 0.0 << "There is no limit.";
    QTest::newRow("below the limit") << 20.01 << "Limit €20.01";
    QTest::newRow("at the limit")
        << 20.0 << "The limit of €20.00 is reached: close the shift and hand the cash over.";
    QTest::newRow("over it")
        << 5.0 << "The limit of €5.00 is reached: close the shift and hand the cash over.";
}

void TestPages::cashIsHeldAgainstTheLimit()
{
    QFETCH(double, limit);
    QFETCH(QString, text);
    Feed feed = smallFeed();
    feed.zReports = {closedReport(41)};
    feed.zReports[0].maxAllowedDebt = limit;
    Shown shown(feed, "zreport");
    shown.sell(2, SalesDesk::Cash);
    shown.sell(1, SalesDesk::Card);
    QCOMPARE(shown.text("limitText"), text);
}

void TestPages::countsThatWereNotMadeAreDashes()
{
    Feed feed = smallFeed();
    feed.zReports = {closedReport(41)};
    const Shown shown(feed, "zreport");
    QTRY_COMPARE(shown.texts("lineText"), QStringList({"–", "–", "–", "–", "€0.00"}));
    feed.zReports[0].ticketCount = 0;
    feed.zReports[0].cardSellCount = 0;
    feed.zReports[0].parcelCount = 2;
    feed.zReports[0].parcelAmnt = 9.0;
    feed.zReports[0].fromTicketNumber = "A1";
    feed.zReports[0].toTicketNumber = "A9";
    feed.zReports[0].commission = 7.81;
    const Shown other(feed, "zreport");
    QTRY_COMPARE(other.texts("lineText"),
                 QStringList({"0", "A1 – A9", "0", "2 for €9.00", "€7.81"}));
}

void TestPages::unpaidShiftsAreMarked()
{
    Feed feed = smallFeed();
    feed.zReports = {closedReport(42), closedReport(41)};
    feed.zReports[0].currentDebt = 12.5;
    feed.zReports[1].paymentDate = QDateTime({2024, 10, 2}, {18, 20});
    const Shown shown(feed, "zreport");
    QTRY_COMPARE(shown.texts("paymentText"),
                 QStringList({"Not paid, €12.50 due", "Paid 02/10/2024 18:20"}));
}

void TestPages::aShiftOfThisTerminalIsListedOnce()
{
    Feed feed = smallFeed();
    feed.zReports = {closedReport(41)};
    const QTemporaryDir folder;
    const Terminal::Settings settings = Shown::settings(folder.filePath("sales.journal"));
    {
        Terminal terminal(feed, settings);
        QVERIFY(terminal.desk()->closeShift()); // number 42
    }
    feed.zReports.prepend(closedReport(42)); // which the back office knows by now
    Terminal terminal(feed, settings);
    QStringList numbers;
    for (int row = 0; row < terminal.zReports()->rowCount(); ++row)
        numbers.append(terminal.zReports()->get(row).toMap().value("zNumberData").toString());
    QCOMPARE(numbers, QStringList({"43", "42", "41"}));
}

void TestPages::aLineThatGoesMovesNoOther()
{
    Shown shown(smallFeed(), "sell");
    for (int i = 0; i < 14; ++i)
        QVERIFY(shown.terminal.desk()->add(0));
    QTRY_COMPARE(shown.all("basketLines").size(), 1);
    QQuickItem* lines = shown.all("basketLines").first();
    QTRY_VERIFY(lines->property("atYEnd").toBool() && lines->property("contentY").toDouble() > 0);
    lines->setProperty("contentY", 0.0);
    QVERIFY(shown.terminal.desk()->remove(1));
    QCoreApplication::processEvents();
    QTest::qWait(50);
    QCOMPARE(lines->property("contentY").toDouble(), 0.0);
}

void TestPages::brokenJournalIsNamedInsteadOfAShift()
{
    Shown shown(smallFeed(), "zreport", {800, 480}, QByteArray(5000, 'x'));
    QVERIFY(!shown.terminal.desk()->obstacle().isEmpty());
    QCOMPARE(shown.text("noShiftText"), shown.terminal.desk()->obstacle());
    QVERIFY(shown.all("closeShiftButton").isEmpty());
    const Shown other(smallFeed(), "zreport");
    QVERIFY(other.all("noShiftText").isEmpty());
}

void TestPages::switchesFollowAndSetTheTerminal_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Get>("get");
    QTest::addColumn<Set>("set");
    QTest::newRow("night colours") << "nightSwitch" << Get([](Terminal& t) { return t.night(); })
                                   << Set([](Terminal& t, bool on) { t.setNight(on); });
    QTest::newRow("log") << "logSwitch"
                         << Get([](Terminal& t) { return t.grid()->logFareProducts(); })
                         << Set([](Terminal& t, bool on) { t.grid()->setLogFareProducts(on); });
    QTest::newRow("extra log") << "extraLogSwitch" << Get([](Terminal& t) {
        return t.grid()->logExtraFareProducts();
    }) << Set([](Terminal& t, bool on) { t.grid()->setLogExtraFareProducts(on); });
}

void TestPages::switchesFollowAndSetTheTerminal()
{
    QFETCH(QString, name);
    QFETCH(Get, get);
    QFETCH(Set, set);
    Shown shown(smallFeed(), "settings");
    const QQuickItem* const toggle = shown.all(name).first();
    QCOMPARE(toggle->property("checked").toBool(), false);
    shown.tap(name);
    QTRY_VERIFY(get(shown.terminal));
    set(shown.terminal, false);
    QCOMPARE(toggle->property("checked").toBool(), false);
    set(shown.terminal, true);
    QCOMPARE(toggle->property("checked").toBool(), true);
    shown.tap(name);
    QTRY_VERIFY(!get(shown.terminal));
}

QTEST_MAIN(TestPages)
#include "tst_pages.moc"
