#include "ShiftByTaps.h"

#include "SampleDriver.h"

#include <PaperPicture.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

void ShiftByTaps::start()
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

void ShiftByTaps::keepPicture(const QString& what)
{
    QVERIFY(m_shown->window()->grabWindow().save(QString(PICTURES "/shift-%1.png").arg(what)));
}

void ShiftByTaps::openPage(const char* page)
{
    m_shown->tap(QString("nav-") + page);
    QTRY_COMPARE(m_shown->window()->property("page").toString(), QString(page));
    m_shown->window()->grabWindow(); // everything is where it is drawn
}

void ShiftByTaps::signIn(int number, const QString& pin)
{
    enter(QString::number(number));
    m_shown->tap("signInButton");
    enter(pin);
    m_shown->tap("signInButton");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    m_driver = number;
}

void ShiftByTaps::recordFloat(const QString& digits)
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
void ShiftByTaps::moveOn(int sale)
{
    if (sale % 6 != 5)
        return;
    const auto canMove = [this] {
        const rivo::terminal::TripDesk& trip = *m_shown->terminal().trip();
        return m_direction > 0 ? !trip.isAtEnd() : trip.stop() > 0;
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
QVector<QQuickItem*> ShiftByTaps::tiles()
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
void ShiftByTaps::addTickets(int seed, int kinds, int count)
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
void ShiftByTaps::paid(bool isCard, qint64 given)
{
    const qint64 total = ShiftLedger::sumOf(m_basket);
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
    QTRY_COMPARE(amountOn("paidText"), total);
    if (given > total)
        QTRY_COMPARE(amountOn("changeText"), given - total);
    m_ledger.sales.append({m_basket, isCard, isCard ? 0 : given, m_driver});
    m_basket.clear();
}

void ShiftByTaps::payExactly()
{
    m_shown->tap("payCash");
    paid(false, ShiftLedger::sumOf(m_basket));
}

void ShiftByTaps::payByCard()
{
    m_shown->tap("payCard");
    paid(true, 0);
}

void ShiftByTaps::payWithANote()
{
    const auto notes = m_shown->all("quickAmount");
    if (notes.isEmpty())
        return payExactly();
    const qint64 given = amountIn(notes.last()->property("text").toString());
    QVERIFY(given > ShiftLedger::sumOf(m_basket));
    m_shown->tap(notes.last());
    paid(false, given);
}

void ShiftByTaps::payWithKeys()
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
void ShiftByTaps::sellNext(int seed)
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

void ShiftByTaps::sellThroughAJam(int seed)
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
void ShiftByTaps::sellThroughAStop(int seed)
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

void ShiftByTaps::restartWithABasket(int seed)
{
    addTickets(seed, 2, 1);
    m_shown->restart();
    m_shown->window()->grabWindow();
    signIn(42, "1234");
    QTRY_COMPARE(amountOn("totalText"), ShiftLedger::sumOf(m_basket));
    payByCard();
}

void ShiftByTaps::changeDriver(int seed)
{
    addTickets(seed, 2, 1);
    m_shown->tap("lockButton");
    m_shown->tap("otherDriver");
    signIn(7, "99");
    QTRY_COMPARE(amountOn("totalText"), ShiftLedger::sumOf(m_basket));
    payExactly();
}

void ShiftByTaps::voidLast()
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
void ShiftByTaps::refundOneTicket()
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

void ShiftByTaps::printCopy()
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

void ShiftByTaps::printFigures()
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

void ShiftByTaps::closeShift()
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
void ShiftByTaps::handOver()
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
void ShiftByTaps::judgePaper()
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
