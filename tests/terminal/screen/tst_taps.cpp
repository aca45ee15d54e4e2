#include "../ScreenUnderTest.h"
#include "Pointer.h"
#include "Table.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>

using rivo::sales::SalesDesk;
using rivo::terminal::Terminal;

namespace
{

/// What a control did so far.
using Count = std::function<int(Terminal&)>;
using Prepare = std::function<void(Terminal&)>;

int ticketsIn(Terminal& terminal) { return terminal.basket()->rowCount(); }

void fillBasket(Terminal& terminal)
{
    for (int i = 0; i < 8; ++i)
        QVERIFY(terminal.desk()->add(0));
}

} // namespace

Q_DECLARE_METATYPE(Count)
Q_DECLARE_METATYPE(Prepare)

/// Quick fingers: every press on every control counts.
class TestTaps : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup() { QCOMPARE(Complaints::take(), QStringList()); }
    void cleanupTestCase() { m_complaints.reset(); }

    void everyPressCounts_data();
    void everyPressCounts();
    void everyKindOfControlGetsThem_data();
    void everyKindOfControlGetsThem();
    void quickSales();

private:
    std::unique_ptr<Complaints> m_complaints;
};

void TestTaps::everyPressCounts_data()
{
    addColumns<bool, QString, QString, Prepare, Count>("isTouch", "page", "control", "prepare",
                                                       "count");

    const auto control = [](const char* what, const char* page, const char* name,
                            const Prepare& prepare, const Count& count) {
        for (const bool isTouch : {false, true})
            QTest::addRow("%s by %s", what, isTouch ? "touch" : "mouse")
                << isTouch << page << name << prepare << count;
    };
    const Prepare asItIs = [](Terminal&) {};
    control("tile", "sell", "productText", asItIs, ticketsIn);
    control("line of the basket", "sell", "removeButton", fillBasket,
            [](Terminal& t) { return 8 - ticketsIn(t); });
    control("next stop", "sell", "nextStop", asItIs, [](Terminal& t) { return t.trip()->stop(); });
    control(
        "previous stop", "sell", "previousStop",
        [](Terminal& t) { t.trip()->setStop(t.trip()->stopCount() - 1); },
        [](Terminal& t) { return t.trip()->stopCount() - 1 - t.trip()->stop(); });
}

void TestTaps::everyPressCounts()
{
    QFETCH(bool, isTouch);
    QFETCH(QString, page);
    QFETCH(QString, control);
    QFETCH(Prepare, prepare);
    QFETCH(Count, count);
    ScreenUnderTest shown(exampleFeed("coast-line"), page);
    prepare(shown.terminal());
    QTRY_VERIFY(shown.item(control) != nullptr);
    shown.window()->grabWindow(); // everything is where it is drawn
    const QPoint place = middleOf(shown.item(control));
    const int before = count(shown.terminal());
    Pointer pointer(shown.window(), isTouch);
    for (int press = 0; press < 6; ++press)
        pointer.tap(place);
    QCOMPARE(count(shown.terminal()) - before, 6);
}

void TestTaps::everyKindOfControlGetsThem_data()
{
    // part: of the control
    const Table<QString, QString> row("page", "part");
    for (const auto& [page, part] : {std::pair("sell", "nightButton"),
                                     {"sell", "nav-sell"},
                                     {"sell", "tab-1"},
                                     {"sell", "lineProduct"},
                                     {"products", "priceText"},
                                     {"devices", "stateText"},
                                     {"devices", "event-Ready"},
                                     {"settings", "extraLogSwitch"},
                                     {"fleet", "statusText"},
                                     {"fleet", "zoomIn"},
                                     {"fleet", "vehicleTag"}})
        row(part, page, part);
}

void TestTaps::everyKindOfControlGetsThem()
{
    QFETCH(QString, page);
    QFETCH(QString, part);
    ScreenUnderTest shown(exampleFeed("coast-line"), page);
    QVERIFY(shown.terminal().desk()->add(0));
    QTRY_VERIFY(shown.item(part) != nullptr);
    QTest::qWait(200); // the map comes to rest
    QQuickItem* control = shown.item(part);
    shown.bringIntoView(control);
    const QPoint place = middleOf(control);
    const auto signalOf = [](const QQuickItem* item) {
        const QMetaObject* type = item->metaObject();
        return type->method(
            qMax(type->indexOfSignal("clicked()"), type->indexOfSignal("tapped()")));
    };
    while (!signalOf(control).isValid())
        control = control->parentItem();
    for (const bool isTouch : {false, true}) {
        const QSignalSpy spy(control, signalOf(control));
        Pointer pointer(shown.window(), isTouch);
        for (int press = 0; press < 6; ++press)
            pointer.tap(place);
        QCOMPARE(spy.size(), 6);
    }
}

/// A press too many sells nothing twice; the next sale is not missed for it.
void TestTaps::quickSales()
{
    ScreenUnderTest shown(exampleFeed("coast-line"));
    shown.window()->grabWindow();
    const QPoint tile = middleOf(shown.item("productText"));
    QSignalSpy sales(shown.terminal().desk(), &SalesDesk::saleConfirmed);
    for (const char* button : {"payCash", "payCard"}) {
        const QPoint pay = middleOf(shown.item(button));
        for (const bool isTouch : {false, true}) {
            Pointer pointer(shown.window(), isTouch);
            for (int sale = 0; sale < 6; ++sale) {
                const int before = sales.size();
                pointer.tap(tile);
                pointer.tap(pay);
                pointer.tap(pay);
                QCOMPARE(sales.size(), before + 1);
                QTRY_COMPARE(ticketsIn(shown.terminal()), 0);
            }
        }
    }
}

QTEST_MAIN(TestTaps)
#include "tst_taps.moc"
