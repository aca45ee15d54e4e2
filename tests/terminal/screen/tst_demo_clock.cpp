#include "../ScreenUnderTest.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <cstdlib>

using rivo::fleet::FleetSimulator;
using rivo::sales::SalesDesk;
using rivo::terminal::Terminal;

namespace
{

constexpr int day = 86400;

int secondOfDay(const QDateTime& time) { return QTime(0, 0).secsTo(time.time()); }

/// Also around midnight.
int secondsBetween(int a, int b)
{
    const int difference = std::abs(a - b) % day;
    return std::min(difference, day - difference);
}

} // namespace

/// The time that a demo shows: how fast it runs, and that sales have it.
class TestDemoClock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup()
    {
        m_shown.reset();
        QCOMPARE(Complaints::take().join('\n'), QString());
    }
    void cleanupTestCase() { m_complaints.reset(); }

    void buttonsSetThePace_data();
    void buttonsSetThePace();
    void atNoPaceTheClockStands();
    void salesHaveTheTimeThatIsShown_data();
    void salesHaveTheTimeThatIsShown();
    void atTheUsualPaceTheSystemsTimeIsKept();

private:
    void open(const QString& page, int startTime, double pace)
    {
        m_shown = std::make_unique<ScreenUnderTest>(
            exampleFeed("coast-line"), page, QSize(1024, 600), [=](Terminal::Settings& settings) {
                settings.startTime = startTime;
                settings.pace = pace;
            });
    }
    FleetSimulator& fleet() { return *m_shown->terminal().fleet(); }

    std::unique_ptr<ScreenUnderTest> m_shown;
    std::unique_ptr<Complaints> m_complaints;
};

void TestDemoClock::buttonsSetThePace_data()
{
    QTest::addColumn<int>("pace");
    for (const int pace : {1, 10, 60})
        QTest::addRow("x%d", pace) << pace;
}

/// Read at two ticks of the clock, so that a slow machine changes nothing.
void TestDemoClock::buttonsSetThePace()
{
    QFETCH(int, pace);
    open("fleet", 30000, 0.0);
    QElapsedTimer timer;
    QVector<QPair<qint64, int>> ticks; // milliseconds, and the time that is shown
    timer.start();
    connect(&fleet(), &FleetSimulator::timeChanged, this, [&] {
        ticks.append({timer.elapsed(), fleet().time()});
    });
    m_shown->tap(QString("pace%1").arg(pace));
    QCOMPARE(fleet().pace(), double(pace));
    QTRY_VERIFY(ticks.size() > 1 && ticks.last().first - ticks.first().first > 3000);
    const double real = double(ticks.last().first - ticks.first().first) / 1000;
    const int shown = ticks.last().second - ticks.first().second;
    QVERIFY2(std::abs(shown - pace * real) <= 1 + 0.1 * pace * real,
             qPrintable(QString("%1 s in %2 s").arg(shown).arg(real)));
    QCOMPARE(m_shown->text("clockText"), fleet().timeText());
}

void TestDemoClock::atNoPaceTheClockStands()
{
    open("sell", 30000, 0.0);
    const QSignalSpy spy(&fleet(), &FleetSimulator::timeChanged);
    QTest::qWait(1200);
    QCOMPARE(spy.size(), 0);
    QCOMPARE(m_shown->text("clockText"), QString("08:20"));
}

void TestDemoClock::salesHaveTheTimeThatIsShown_data()
{
    QTest::addColumn<int>("startTime");
    QTest::addColumn<double>("pace");
    QTest::newRow("a time of its own") << 30000 << 0.0;
    QTest::newRow("a time of its own that runs fast") << 30000 << 600.0;
    QTest::newRow("the system's time") << -1 << 1.0;
}

void TestDemoClock::salesHaveTheTimeThatIsShown()
{
    QFETCH(int, startTime);
    QFETCH(double, pace);
    open("sell", startTime, pace);
    if (pace > 1.0)
        QTRY_VERIFY(fleet().time() > startTime + 60);
    SalesDesk& desk = *m_shown->terminal().desk();
    const int before = fleet().time();
    QVERIFY(desk.add(0));
    QVERIFY(desk.pay(SalesDesk::Cash));
    const int sold = secondOfDay(desk.pastSales(0, 1).first().toMap()["at"].toDateTime());
    // The status line is at most a second behind the system's clock, and ticks four times a second.
    const int late = startTime < 0 ? 3 : 0;
    QVERIFY2(secondsBetween(sold, before) <= late + (fleet().time() - before + day) % day,
             qPrintable(QString("%1, not %2").arg(sold).arg(before)));
}

void TestDemoClock::atTheUsualPaceTheSystemsTimeIsKept()
{
    constexpr int threeHours = 3 * 3600;
    const auto now = [] { return secondOfDay(QDateTime::currentDateTime()); };
    open("sell", -1, 1.0);
    fleet().setTime(now() + threeHours); // as if the clock of the system was set back
    QVERIFY(secondsBetween(fleet().time(), now()) <= 2);
    fleet().setPace(10.0);
    fleet().setTime(now() + threeHours);
    QVERIFY(secondsBetween(fleet().time(), now()) > threeHours - 60);
    QTRY_VERIFY(secondsBetween(fleet().time(), now()) > threeHours);
}

QTEST_MAIN(TestDemoClock)
#include "tst_demo_clock.moc"
