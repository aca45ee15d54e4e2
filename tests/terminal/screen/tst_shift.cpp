#include "PageTest.h"
#include "SampleDriver.h"
#include "ShiftLedger.h"

#include <PaperPicture.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QTranslator>

#include <cmath>

/// The shift of a driver by taps, from sign-in to hand-over. What the journal has in the end is
/// judged by a count of the test, which knows the prices of the feed and what was tapped.
class TestShift : public PageTest
{
    Q_OBJECT

public:
    TestShift() : PageTest({{800, 480}}) {}

private slots:
    void aWholeShift();

private:
    static constexpr int sales = 200;

    void start() override;
    void keepPicture(const QString& what);
    bool isFailed() const { return QTest::currentTestFailed(); }

    void openPage(const char* page);
    void signIn(int number, const QString& pin);
    void recordFloat(const QString& digits);
    void moveOn(int sale);

    QVector<QQuickItem*> tiles();
    void addTickets(int seed, int kinds, int count);
    void sellNext(int seed);
    void payExactly();
    void payByCard();
    void payWithANote();
    void payWithKeys();
    void paid(bool isCard, qint64 given);
    qint64 amountOn(const QString& name) { return amountIn(m_shown->text(name)); }
    /// Cents: of "€2.10", and of "€5", as notes are named.
    static qint64 amountIn(QString text)
    {
        return qRound64(text.remove(QRegExp("[^0-9.]")).toDouble() * 100);
    }

    void sellThroughAJam(int seed);
    void sellThroughAStop(int seed);
    void restartWithABasket(int seed);
    void changeDriver(int seed);
    void voidLast();
    void refundOneTicket();
    void printCopy();
    void printFigures();
    void closeShift();
    void handOver();

    void judgePaper();
    void judgeJournal();

    QTranslator m_english;           ///< plurals
    QHash<QString, qint64> m_prices; ///< of the feed, by product and passenger
    QVector<qint64> m_basket;
    ShiftLedger m_ledger;
    int m_driver = 0;
    int m_direction = 1;
    int m_trips = 1;
    double m_zNumber = 0;
    qint64 m_counted = 0;
};

void TestShift::start()
{
    QVERIFY(QDir().mkpath(PICTURES));
    QVERIFY(m_english.load(":/i18n/rivo-terminal_en"));
    QCoreApplication::installTranslator(&m_english);
    QFile file(EXAMPLE_FEEDS "/coast-line.json");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonArray products =
        QJsonDocument::fromJson(file.readAll()).object()["products"].toArray();
    for (const QJsonValue& product : products)
        m_prices.insert(product["fareProductName"].toString() + '|' +
                            product["description"].toString(),
                        std::llround(product["price"].toDouble() * 100));
    show(exampleFeed("coast-line"), "sell", [](rivo::terminal::Terminal::Settings& settings) {
        settings.drivers = {sampleDriver(42, "A. Nowak", "1234"),
                            sampleDriver(7, "B. Kowal", "99")};
        settings.idleTime = 0;
        settings.config.vehicle = "MR 4711";
    });
}

void TestShift::keepPicture(const QString& what)
{
    QVERIFY(m_shown->window()->grabWindow().save(QString(PICTURES "/shift-%1.png").arg(what)));
}

void TestShift::openPage(const char* page)
{
    m_shown->tap(QString("nav-") + page);
    QTRY_COMPARE(m_shown->window()->property("page").toString(), QString(page));
    m_shown->window()->grabWindow(); // everything is where it is drawn
}

void TestShift::signIn(int number, const QString& pin)
{
    enter(QString::number(number));
    m_shown->tap("signInButton");
    enter(pin);
    m_shown->tap("signInButton");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    m_driver = number;
}

void TestShift::recordFloat(const QString& digits)
{
    openPage("zreport");
    m_shown->tap("floatButton");
    enter(digits);
    keepPicture("float");
    m_shown->tap("padConfirm");
    QTRY_COMPARE(amountOn("debtText"), digits.toLongLong());
    m_ledger.openingFloat = digits.toLongLong();
    openPage("sell");
}

/// To the next stop every few sales; at the end of a trip the next one begins.
void TestShift::moveOn(int sale)
{
    if (sale % 6 != 5)
        return;
    const auto canMove = [this] {
        const QQuickItem* button = m_shown->item(m_direction > 0 ? "nextStop" : "previousStop");
        return button != nullptr && button->isEnabled();
    };
    if (!canMove()) {
        m_direction = -m_direction;
        ++m_trips;
    }
    const QString stop = m_shown->text("stopText");
    m_shown->tap(m_direction > 0 ? "nextStop" : "previousStop");
    QTRY_VERIFY(m_shown->text("stopText") != stop);
    m_shown->window()->grabWindow();
}

/// Those that are in sight and sold.
QVector<QQuickItem*> TestShift::tiles()
{
    QVector<QQuickItem*> found;
    const QRectF window(QPointF(0, 0), QSizeF(m_shown->window()->size()));
    const double basket = m_shown->item("payCash")->mapToScene({0, 0}).x();
    m_shown->forEachItem(m_shown->item("grid"), [&](QQuickItem* item) {
        if (!item->inherits("QQuickAbstractButton") ||
            !item->property("fareProductName").isValid() || !item->isEnabled() ||
            item->property("hasExpired").toBool())
            return;
        const QRectF place = item->mapRectToScene(item->boundingRect());
        if (window.contains(place) && place.center().x() < basket)
            found.append(item);
    });
    return found;
}

/// `kinds` tiles, each tapped `count` times.
void TestShift::addTickets(int seed, int kinds, int count)
{
    for (int kind = 0; kind < kinds; ++kind) {
        const auto shown = tiles();
        QVERIFY(!shown.isEmpty());
        QQuickItem* tile = shown.at((seed * 7 + kind * 3) % shown.size());
        const QString name = tile->property("fareProductName").toString() + '|' +
                             tile->property("description").toString();
        QVERIFY2(m_prices.contains(name), qPrintable(name));
        for (int i = 0; i < count; ++i) {
            m_shown->tap(tile);
            m_basket.append(m_prices.value(name));
        }
    }
    QTRY_COMPARE(amountOn("totalText"), ShiftLedger::sumOf(m_basket));
    m_shown->window()->grabWindow(); // the buttons below are where they are drawn
}

/// The sale is paid and printed.
void TestShift::paid(bool isCard, qint64 given)
{
    const qint64 total = ShiftLedger::sumOf(m_basket);
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
    QTRY_COMPARE(amountOn("paidText"), total);
    if (given > total)
        QTRY_COMPARE(amountOn("changeText"), given - total);
    m_ledger.sales.append({m_basket, isCard, isCard ? 0 : given, m_driver});
    m_basket.clear();
}

void TestShift::payExactly()
{
    m_shown->tap("payCash");
    paid(false, ShiftLedger::sumOf(m_basket));
}

void TestShift::payByCard()
{
    m_shown->tap("payCard");
    paid(true, 0);
}

void TestShift::payWithANote()
{
    const auto notes = m_shown->all("quickAmount");
    if (notes.isEmpty())
        return payExactly();
    const qint64 given = amountIn(notes.last()->property("text").toString());
    QVERIFY(given > ShiftLedger::sumOf(m_basket));
    m_shown->tap(notes.last());
    paid(false, given);
}

void TestShift::payWithKeys()
{
    const qint64 given = (ShiftLedger::sumOf(m_basket) / 1000 + 2) * 1000;
    const bool isFirst = m_ledger.sales.size() < 5;
    m_shown->tap("givenButton");
    enter(QString::number(given));
    if (isFirst)
        keepPicture("pay");
    m_shown->tap("padConfirm");
    paid(false, given);
    if (isFirst)
        keepPicture("paid");
}

/// All kinds of sales in turn.
void TestShift::sellNext(int seed)
{
    const QVector<QPair<int, int>> baskets{{1, 1}, {1, 1}, {1, 3}, {1, 1}, {2, 1}, {3, 1}, {1, 5}};
    const auto& [kinds, count] = baskets.at(seed % baskets.size());
    addTickets(seed, kinds, count);
    if (isFailed())
        return;
    if (seed == 5)
        keepPicture("sell");
    switch (seed % 5) {
    case 0:
    case 3:
        return payExactly();
    case 1:
        return payWithANote();
    case 2:
        return payByCard();
    default:
        return payWithKeys();
    }
}

void TestShift::sellThroughAJam(int seed)
{
    addTickets(seed, 1, 4);
    auto& printer = simulatedPrinter(m_shown->terminal());
    printer.setTicketTime(40);
    m_shown->tap("payCash");
    printer.setFault("Paper jam");
    QTRY_COMPARE(desk().state(), SalesDesk::WaitingForPrinter);
    QTRY_VERIFY(m_shown->text("obstacleText").contains("Paper jam"));
    keepPicture("jam");
    m_shown->tap("payCash"); // nothing is paid twice
    printer.setTicketTime(0);
    printer.setFault({});
    paid(false, ShiftLedger::sumOf(m_basket));
    QTRY_COMPARE(m_shown->all("obstacleText").size(), 0);
}

/// The terminal stops while it prints. The second ticket is out, but this was not noted.
void TestShift::sellThroughAStop(int seed)
{
    addTickets(seed, 1, 4);
    simulatedPrinter(m_shown->terminal()).setTicketTime(400);
    m_shown->tap("payCash");
    QTRY_VERIFY(m_shown->terminal().printer().lastPrinted().has_value());
    m_shown->restart();
    m_shown->window()->grabWindow();
    signIn(42, "1234");
    QTRY_COMPARE(m_shown->all("doubtNumber").size() >= 2, true);
    keepPicture("doubt");
    m_shown->tap("confirmDoubt");
    m_shown->tap("confirmButton");
    m_shown->tap("printDoubts");
    m_shown->tap("confirmButton");
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
    const qint64 total = ShiftLedger::sumOf(m_basket);
    m_ledger.sales.append({m_basket, false, total, m_driver});
    m_basket.clear();
}

void TestShift::restartWithABasket(int seed)
{
    addTickets(seed, 2, 1);
    m_shown->restart();
    m_shown->window()->grabWindow();
    signIn(42, "1234");
    QTRY_COMPARE(amountOn("totalText"), ShiftLedger::sumOf(m_basket));
    payByCard();
}

void TestShift::changeDriver(int seed)
{
    addTickets(seed, 2, 1);
    m_shown->tap("lockButton");
    m_shown->tap("otherDriver");
    signIn(7, "99");
    QTRY_COMPARE(amountOn("totalText"), ShiftLedger::sumOf(m_basket));
    payExactly();
}

void TestShift::voidLast()
{
    openPage("zreport");
    m_shown->tap("salesButton");
    QTRY_COMPARE(m_shown->all("backButton").size(), 1);
    m_shown->window()->grabWindow();
    keepPicture("sales");
    m_shown->tap("voidButton");
    keepPicture("void");
    m_shown->tap("confirmButton");
    const ShiftLedger::Sale& sale = m_ledger.sales.last();
    QTRY_COMPARE(amountOn("detailPaidOut"), sale.total());
    m_ledger.voids += sale.prices;
    m_ledger.cardRefunds += sale.isCard ? sale.total() : 0;
    openPage("sell");
}

/// The first ticket of the last sale.
void TestShift::refundOneTicket()
{
    openPage("zreport");
    m_shown->tap("salesButton");
    QTRY_COMPARE(m_shown->all("backButton").size(), 1);
    m_shown->window()->grabWindow();
    m_shown->tap("refundButton");
    m_shown->tap("reason-1");
    keepPicture("refund");
    m_shown->tap("confirmRefund");
    const ShiftLedger::Sale& sale = m_ledger.sales.last();
    QTRY_COMPARE(amountOn("detailPaidOut"), sale.prices.first());
    m_ledger.refunds.append(sale.prices.first());
    m_ledger.cardRefunds += sale.isCard ? sale.prices.first() : 0;
    openPage("sell");
}

void TestShift::printCopy()
{
    openPage("zreport");
    m_shown->tap("salesButton");
    QTRY_COMPARE(m_shown->all("backButton").size(), 1);
    m_shown->tap("printCopy");
    QTRY_COMPARE(m_shown->texts("pastTicketState").filter("copy").size(), 1);
    ++m_ledger.copies;
    const auto copy = m_shown->terminal().printer().lastPrinted();
    QVERIFY(copy && copy->copy == 1);
    const rivo::ticket::PaperContext context{
        m_shown->terminal().operatorName(), rivo::sales::Currency("EUR", 2), {}, QLocale()};
    QVERIFY(rivo::ticket::draw(rivo::ticket::layOut(*copy, context))
                .save(PICTURES "/shift-ticket.png"));
    openPage("sell");
}

void TestShift::printFigures()
{
    openPage("zreport");
    QCOMPARE(amountOn("runningSum"), m_ledger.takings());
    m_shown->tap("figuresButton");
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    keepPicture("figures");
    judgePaper();
    m_shown->tap("closePaper");
    QTRY_COMPARE(m_shown->all("closePaper").size(), 0);
    openPage("sell");
}

void TestShift::closeShift()
{
    openPage("zreport");
    m_zNumber = desk().xReport()["zNumber"].toDouble();
    m_shown->tap("closeShiftButton");
    m_shown->tap("confirmButton");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    keepPicture("closed");
    judgePaper();
    m_shown->tap("closePaper");
    QTRY_COMPARE(m_shown->all("closePaper").size(), 0);
}

/// One euro is missing.
void TestShift::handOver()
{
    m_shown->tap("handOverButton");
    QTRY_COMPARE(amountOn("padDue"), m_ledger.due());
    m_counted = m_ledger.due() - 100;
    enter(QString::number(m_counted));
    keepPicture("handover");
    QCOMPARE(amountOn("padDifference"), 100);
    m_shown->tap("padConfirm");
    QTRY_COMPARE(m_shown->all("handOverButton").size(), 0);
    keepPicture("handed-over");
}

/// The report that came out of the printer last.
void TestShift::judgePaper()
{
    const auto printed = m_shown->terminal().printer().lastPrinted();
    QVERIFY(printed && printed->report);
    const auto& report = *printed->report;
    QCOMPARE(report.driver, m_driver);
    QCOMPARE(report.ticketCount, m_ledger.ticketCount());
    QCOMPARE(report.ticketSum, m_ledger.sold());
    QCOMPARE(report.cardCount, m_ledger.ticketCount(true));
    QCOMPARE(report.cardSum, m_ledger.sold(true));
    QCOMPARE(report.firstTicket, 1);
    QCOMPARE(report.lastTicket, m_ledger.ticketCount());
    QCOMPARE(report.voidCount, m_ledger.voids.size());
    QCOMPARE(report.voidSum, ShiftLedger::sumOf(m_ledger.voids));
    QCOMPARE(report.refundCount, m_ledger.refunds.size());
    QCOMPARE(report.refundSum, ShiftLedger::sumOf(m_ledger.refunds));
    QCOMPARE(report.copyCount, m_ledger.copies);
    QCOMPARE(report.takings(), m_ledger.takings());
    QCOMPARE(report.due(), m_ledger.due());
}

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
