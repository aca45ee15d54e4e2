#include "ClockWatch.h"
#include "PositionJudge.h"
#include "SatelliteClock.h"

#include <QtTest>

using namespace rivo::position;

namespace
{

const char* const names[] = {"Disconnected", "Silent", "NoFix", "Fixed", "Jump", "Tunnel"};

/// A place some metres east of the first one.
Fix at(double metres, double speed = 0.0)
{
    Fix fix;
    fix.coordinate = QGeoCoordinate(0.0, 10.0).atDistanceAndAzimuth(metres, 90.0);
    fix.speed = speed;
    return fix;
}

} // namespace

class PositionJudgeTest : public QObject
{
    Q_OBJECT

private slots:
    void judgements_data();
    void judgements();
    void positionsThatAreBelieved();
    void speedThatIsNotReported();
    void offsets_data();
    void offsets();
    void offsetsAreForgotten();
    void clockThatIsSet_data();
    void clockThatIsSet();
};

void PositionJudgeTest::judgements_data()
{
    // Steps: "second what [metres [speed]]".
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("knowledge");
    const auto row = [](const char* name, const QStringList& steps, const char* knowledge) {
        QTest::newRow(name) << steps << knowledge;
    };
    row("before a connection", {"1 wait"}, "Disconnected");
    row("connected: no fix yet", {"1 on"}, "NoFix");
    row("connected and silent", {"1 on", "17 wait"}, "Silent");
    row("silent, but not for long enough", {"1 on", "16 wait"}, "NoFix");
    row("silent, then without a fix", {"1 on", "17 wait", "18 none"}, "NoFix");
    row("a fix", {"1 on", "2 fix 0"}, "Fixed");
    row("a fix after silence", {"1 on", "20 wait", "21 fix 0"}, "Fixed");
    row("0, 0 is no fix", {"1 on", "2 zero"}, "NoFix");
    row("one report without a fix", {"1 on", "2 fix 0", "3 none"}, "Fixed");
    row("at rest, then no fix", {"1 on", "2 fix 0 0", "8 none"}, "NoFix");
    row("moving, then no fix", {"1 on", "2 fix 0 9", "8 none"}, "Tunnel");
    row("moving, then nothing for a while", {"1 on", "2 fix 0 9", "8 wait"}, "Tunnel");
    row("moving, then silence", {"1 on", "2 fix 0 9", "8 wait", "18 wait"}, "Silent");
    row("a fix after a tunnel", {"1 on", "2 fix 0 9", "8 none", "60 none", "62 fix 800 9"},
        "Fixed");
    row("no tunnel is so long", {"1 on", "2 fix 0 9", "8 none", "903 none"}, "NoFix");
    row("a jump", {"1 on", "2 fix 0", "3 fix 5000"}, "Jump");
    row("back from a jump", {"1 on", "2 fix 0", "3 fix 5000", "4 fix 10"}, "Fixed");
    row("what could have been driven is no jump", {"1 on", "2 fix 0", "3 fix 199"}, "Fixed");
    row("a little more is one", {"1 on", "2 fix 0", "3 fix 202"}, "Jump");
    row("a place that stays is believed",
        {"1 on", "2 fix 0", "3 fix 5000", "4 fix 5010", "5 fix 5020", "6 fix 5030", "7 fix 5040"},
        "Fixed");
    row("four of five do not prove it",
        {"1 on", "2 fix 0", "3 fix 5000", "4 fix 5010", "5 fix 5020", "6 fix 5030"}, "Jump");
    row("jumps back and forth are not believed",
        {"1 on", "2 fix 0", "3 fix 5000", "4 fix 9000", "5 fix 5000", "6 fix 9000", "7 fix 5000"},
        "Jump");
    row("jumps, then no fix for a while", {"1 on", "2 fix 0 0", "3 fix 5000", "9 wait"}, "NoFix");
    row("unplugged", {"1 on", "2 fix 0", "3 off"}, "Disconnected");
    row("unplugged stays so", {"1 on", "2 fix 0", "3 off", "60 wait"}, "Disconnected");
    row("plugged in again", {"1 on", "2 fix 0", "3 off", "4 on"}, "NoFix");
    row("plugged in again, and a fix", {"1 on", "2 fix 0", "3 off", "4 on", "5 fix 0"}, "Fixed");
}

void PositionJudgeTest::judgements()
{
    QFETCH(QStringList, steps);
    PositionJudge judge;
    for (const QString& step : steps) {
        const QStringList words = step.split(' ');
        const qint64 now = words.at(0).toInt() * 1000;
        const QString what = words.at(1);
        if (what == "on")
            judge.connected(now);
        else if (what == "off")
            judge.disconnected();
        else if (what == "none")
            judge.reportNoFix(now);
        else if (what == "fix")
            judge.report(at(words.at(2).toDouble(), words.value(3).toDouble()), now);
        else if (what == "zero")
            QVERIFY(!judge.report({QGeoCoordinate(0, 0), 0.0, 0.0, {}}, now));
        else
            judge.wait(now);
    }
    QTEST(QString(names[static_cast<int>(judge.knowledge())]), "knowledge");
}

void PositionJudgeTest::positionsThatAreBelieved()
{
    PositionJudge judge;
    judge.connected(0);
    QVERIFY(!judge.fix());
    QVERIFY(!judge.report(Fix(), 500));
    QVERIFY(judge.report(at(0), 1000));
    QVERIFY(judge.report(at(20), 2000));
    QVERIFY(!judge.report(at(9000), 3000));
    QCOMPARE(judge.fix()->coordinate, at(20).coordinate);
    judge.disconnected();
    QCOMPARE(judge.fix()->coordinate, at(20).coordinate);
}

void PositionJudgeTest::speedThatIsNotReported()
{
    for (const double metres : {1.0, 20.0}) {
        PositionJudge judge;
        judge.connected(0);
        judge.report(at(0, qQNaN()), 1000);
        judge.report(at(metres, qQNaN()), 2000);
        judge.reportNoFix(9000);
        QCOMPARE(judge.knowledge(), metres > 2.0 ? Knowledge::Tunnel : Knowledge::NoFix);
    }
}

void PositionJudgeTest::offsets_data()
{
    QTest::addColumn<QVector<int>>("reports"); // milliseconds ahead
    QTest::addColumn<int>("offset");           // -1 = none
    QTest::addColumn<bool>("isWrong");
    QTest::newRow("no report") << QVector<int>() << -1 << false;
    QTest::newRow("two are too few") << QVector<int>{90000, 90000} << -1 << false;
    QTest::newRow("right") << QVector<int>{-400, 100, 300} << 100 << false;
    QTest::newRow("one that lies changes nothing")
        << QVector<int>{100, 200, 99999000, 300, 400} << 300 << false;
    QTest::newRow("just right") << QVector<int>{30000, 30000, 30000} << 30000 << false;
    QTest::newRow("slow") << QVector<int>{30001, 30001, 30001} << 30001 << true;
    QTest::newRow("fast") << QVector<int>{-40000, -40000, -40000} << -40000 << true;
    QTest::newRow("the last nine count")
        << QVector<int>{7, 7, 7, 7, 7, 7, 7, 7, 7, 1, 1, 1, 1, 1, 1, 1, 1, 1} << 1 << false;
}

void PositionJudgeTest::offsets()
{
    QFETCH(QVector<int>, reports);
    QFETCH(bool, isWrong);
    const QDateTime system(QDate(2026, 3, 22), QTime(8, 0), Qt::UTC);
    SatelliteClock clock;
    for (const int report : reports)
        clock.report(system.addMSecs(report), system);
    QTEST(static_cast<int>(clock.offset().value_or(-1)), "offset");
    QCOMPARE(clock.isSystemWrong(), isWrong);
}

void PositionJudgeTest::offsetsAreForgotten()
{
    const QDateTime system(QDate(2026, 3, 22), QTime(8, 0), Qt::UTC);
    SatelliteClock clock;
    for (int i = 0; i < 5; ++i) {
        clock.report(system.addDays(-7168), system); // 1024 weeks: the receiver has lost them
        clock.report(QDateTime(), system);
    }
    QVERIFY(!clock.offset());
    for (int i = 0; i < 5; ++i)
        clock.report(system, system);
    QCOMPARE(clock.offset().value_or(-1), 0);
    clock.clear();
    QVERIFY(!clock.offset());
}

void PositionJudgeTest::clockThatIsSet_data()
{
    QTest::addColumn<int>("system"); // milliseconds after a second
    QTest::addColumn<int>("step");   // 0 = none
    QTest::newRow("a second later") << 1000 << 0;
    QTest::newRow("corrected a little") << 2900 << 0;
    QTest::newRow("forwards") << 3600000 << 3599000;
    QTest::newRow("backwards") << -2000 << -3000;
}

void PositionJudgeTest::clockThatIsSet()
{
    QFETCH(int, system);
    ClockWatch watch;
    QVERIFY(!watch.step(1774166400000, 500));
    QTEST(static_cast<int>(watch.step(1774166400000 + system, 1500).value_or(0)), "step");
    QVERIFY(!watch.step(1774166400000 + system + 1000, 2500));
}

QTEST_GUILESS_MAIN(PositionJudgeTest)
#include "tst_position_judge.moc"
