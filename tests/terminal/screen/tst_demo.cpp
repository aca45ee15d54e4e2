#include "Table.h"

#include "../ScreenUnderTest.h"

#include <AssetItem.h>

#include <QtTest>

using rivo::feed::Feed;

/// What is simulated can be seen to be so, and is there in a demo only.
class TestDemo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup() { QCOMPARE(Complaints::take().join(10), QString()); }
    void cleanupTestCase() { m_complaints.reset(); }

    void aDemoIsMarkedOnEveryPage_data() { feedsAndModes(); }
    void aDemoIsMarkedOnEveryPage();
    void onlyADemoHasControls_data() { feedsAndModes(); }
    void onlyADemoHasControls();
    void whatIsNotConnectedIsNoAlarm_data() { feeds(); }
    void whatIsNotConnectedIsNoAlarm();
    void noPrinterIsSimulatedForAFeedWithoutDevices();
    void aDemoStartsWithoutAnAlarm_data() { feeds(); }
    void aDemoStartsWithoutAnAlarm();
    void vehiclesAreSimulatedInADemoOnly_data() { feedsAndModes(); }
    void vehiclesAreSimulatedInADemoOnly();

private:
    static void feeds()
    {
        const Table<QString> row("feed");
        for (const char* feed : {"coast-line", "hill-valley"})
            row(feed, feed);
    }
    static void feedsAndModes()
    {
        addColumns<QString, bool>("feed", "isDemo");
        for (const char* feed : {"coast-line", "hill-valley"}) {
            QTest::addRow("%s as a demo", feed) << feed << true;
            QTest::addRow("%s", feed) << feed << false;
        }
    }
    static std::unique_ptr<ScreenUnderTest> shown(bool isDemo)
    {
        QFETCH(QString, feed);
        return std::make_unique<ScreenUnderTest>(
            exampleFeed(feed), "sell", QSize(1024, 600),
            [isDemo](ScreenUnderTest::Terminal::Settings& settings) { settings.isDemo = isDemo; });
    }

    std::unique_ptr<Complaints> m_complaints;
};

void TestDemo::aDemoIsMarkedOnEveryPage()
{
    QFETCH(bool, isDemo);
    const auto screen = shown(isDemo);
    for (const char* page : {"sell", "products", "zreport", "fleet", "devices", "settings"}) {
        screen->tap(QString("nav-") + page);
        QCOMPARE(screen->texts("demoText"), isDemo ? QStringList("DEMO") : QStringList());
    }
}

void TestDemo::onlyADemoHasControls()
{
    QFETCH(bool, isDemo);
    const auto screen = shown(isDemo);
    const auto isThere = [&](const char* name) { return !screen->all(name).isEmpty(); };
    QCOMPARE(isThere("statusLog"), isDemo);
    screen->tap("nav-devices");
    QTRY_VERIFY(isThere("deviceCard"));
    QCOMPARE(isThere("deviceEvents"), isDemo);
    screen->tap("nav-fleet");
    QTRY_VERIFY(isThere("followButton"));
    for (const char* control : {"silenceButton", "pace1", "pace60"})
        QCOMPARE(isThere(control), isDemo);
}

void TestDemo::whatIsNotConnectedIsNoAlarm()
{
    const auto screen = shown(false);
    auto& terminal = screen->terminal();
    QCOMPARE(terminal.devices()->faults(), 0);
    QVERIFY(screen->all("faultsButton").isEmpty());
    QCOMPARE(terminal.printer().fault(), QString("No ticket printer is set up"));
    screen->tap("nav-devices");
    QTRY_COMPARE(screen->all("stateText").size(), terminal.peripherals()->rowCount());
    for (const QString& state : screen->texts("stateText"))
        QCOMPARE(state, QString("not connected"));
    for (const char* flag : {"blueFlag", "yellowFlag", "warningFlag", "errorFlag"})
        QVERIFY2(screen->all(flag).isEmpty(), flag);
    screen->tap("nav-fleet");
    for (const QString& state : screen->texts("statusText"))
        QCOMPARE(state, QString("not connected"));
}

void TestDemo::noPrinterIsSimulatedForAFeedWithoutDevices()
{
    Feed feed = exampleFeed("coast-line");
    feed.peripherals.clear();
    ScreenUnderTest screen(
        feed, "devices", QSize(1024, 600),
        [](ScreenUnderTest::Terminal::Settings& settings) { settings.isDemo = false; });
    QCOMPARE(screen.terminal().printer().fault(), QString("No ticket printer is set up"));
    QCOMPARE(screen.terminal().devices()->faults(), 0);
    QTRY_COMPARE(screen.texts("stateText"), QStringList("not connected"));
}

void TestDemo::aDemoStartsWithoutAnAlarm()
{
    const auto screen = shown(true);
    QCOMPARE(screen->terminal().devices()->faults(), 0);
    QVERIFY(screen->all("faultsButton").isEmpty());
    QCOMPARE(screen->terminal().printer().fault(), QString());
    QCOMPARE(screen->terminal().desk()->obstacle(), QString());
}

void TestDemo::vehiclesAreSimulatedInADemoOnly()
{
    QFETCH(bool, isDemo);
    const auto screen = shown(isDemo);
    auto& fleet = *screen->terminal().fleet();
    auto& vehicles = *screen->terminal().vehicles();
    int placed = 0;
    for (int row = 0; row < vehicles.rowCount(); ++row) {
        const auto* vehicle = qobject_cast<AssetItem*>(vehicles.itemFromRow(row));
        placed += vehicle->assetCoordinate().isValid() ? 1 : 0;
        if (!isDemo)
            QCOMPARE(fleet.reportingOf(vehicle->id()), rivo::fleet::FleetSimulator::Offline);
    }
    QCOMPARE(placed > 0, isDemo);
}

QTEST_MAIN(TestDemo)
#include "tst_demo.moc"
