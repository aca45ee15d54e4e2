#include "TestNetwork.h"
#include "TripProgress.h"

#include <QtTest>

using namespace rivo;
using fleet::Timetable;
using position::TripProgress;

namespace
{

constexpr double eastward = 90.0;
constexpr double westward = 270.0;

// A thousandth of a degree on the equator is 111 metres.
QGeoCoordinate at(double east, double north = 0.0) { return {north / 1000.0, east / 1000.0}; }

/// Stops 1, 2, 4, 9 from west to east, from 8:00 on.
Timetable line()
{
    return Timetable(
        TestNetwork().trip("1", "5", {"1 8:00:00", "2 8:02:00 8:03:00", "4 8:07:00", "9 8:17:00"}));
}

/// To stop 4 and back on the same street.
Timetable thereAndBack()
{
    return Timetable(TestNetwork().trip(
        "1", "5", {"1 8:00:00", "2 8:02:00", "4 8:06:00", "2 8:10:00", "1 8:12:00"}));
}

fleet::Seconds time(const char* text) { return QTime(0, 0).secsTo(QTime::fromString(text)); }

} // namespace

class TripProgressTest : public QObject
{
    Q_OBJECT

private slots:
    void stops_data();
    void stops();
    void noiseAtAStop();
    void wayBack();
    void startInTheMiddle_data();
    void startInTheMiddle();
    void loop();
    void offRoute();
    void detour();
    void afterATunnel();
    void punctuality_data();
    void punctuality();
    void afterMidnight();
    void tripWithoutPlaces();
};

void TripProgressTest::stops_data()
{
    QTest::addColumn<QVector<double>>("places"); // east, a report a second
    QTest::addColumn<int>("call");
    QTest::newRow("nothing reported") << QVector<double>() << -1;
    QTest::newRow("at the first stop") << QVector<double>{1.0} << 0;
    QTest::newRow("before the first stop") << QVector<double>{0.7} << 0;
    QTest::newRow("on the way") << QVector<double>{1.0, 1.4} << 0;
    QTest::newRow("51 metres before the next stop") << QVector<double>{1.0, 1.54} << 0;
    QTest::newRow("49 metres before the next stop") << QVector<double>{1.0, 1.56} << 1;
    QTest::newRow("behind it") << QVector<double>{1.0, 1.56, 2.3} << 1;
    QTest::newRow("a stop that was not reported is passed") << QVector<double>{1.0, 2.5, 4.1} << 2;
    QTest::newRow("199 metres back is noise") << QVector<double>{2.0, 1.2, 0.25} << 1;
    QTest::newRow("further back is another stop") << QVector<double>{4.0, 3.2, 2.4, 2.15} << 1;
    QTest::newRow("at the last stop") << QVector<double>{2.0, 4.0, 6.0, 8.0, 9.0} << 3;
    QTest::newRow("behind the last stop") << QVector<double>{6.0, 8.0, 9.3} << 3;
}

void TripProgressTest::stops()
{
    QFETCH(QVector<double>, places);
    const Timetable timetable = line();
    TripProgress progress(timetable.trips().first());
    fleet::Seconds now = time("08:00:00");
    for (const double place : places)
        progress.report(at(place, 0.05), eastward, now += 10);
    QTEST(progress.call(), "call");
    QVERIFY(!progress.isOffRoute());
}

void TripProgressTest::noiseAtAStop()
{
    const Timetable timetable = line();
    TripProgress progress(timetable.trips().first());
    const fleet::Seconds now = time("08:00:00");
    progress.report(at(1.0), qQNaN(), now);
    progress.report(at(1.6), eastward, now + 60);
    int changes = 0;
    for (int i = 0; i < 200; ++i) {
        const double noise = 0.4 * std::sin(i * 2.3);
        progress.report(at(1.75 + noise, noise / 2), (i * 77) % 360, now + 60 + i);
        changes += progress.call() == 1 ? 0 : 1;
    }
    QCOMPARE(changes, 0);
}

void TripProgressTest::wayBack()
{
    const Timetable timetable = thereAndBack();
    TripProgress progress(timetable.trips().first());
    fleet::Seconds now = time("08:00:00");
    QVector<int> calls;
    const auto drive = [&](double from, double to) {
        const double direction = to > from ? eastward : westward;
        for (int i = 0; i <= 30; ++i) {
            // The street is wide: up to 33 metres beside the path.
            const double aside = 0.3 * std::sin(i);
            progress.report(at(from + (to - from) * i / 30.0, aside), direction, now += 8);
            if (calls.isEmpty() || calls.last() != progress.call())
                calls.append(progress.call());
        }
    };
    drive(1.0, 4.0);
    QCOMPARE(calls, QVector<int>({0, 1, 2}));
    drive(4.0, 1.0);
    QCOMPARE(calls, QVector<int>({0, 1, 2, 3, 4}));
}

void TripProgressTest::startInTheMiddle_data()
{
    QTest::addColumn<double>("direction");
    QTest::addColumn<QString>("now");
    QTest::addColumn<int>("call");
    QTest::newRow("eastward: on the way there") << eastward << "08:02:30" << 1;
    QTest::newRow("westward: on the way back") << westward << "08:09:30" << 3;
    QTest::newRow("westward, though by the timetable on the way there")
        << westward << "08:05:30" << 3;
    QTest::newRow("no direction: by the timetable on the way there") << qQNaN() << "08:02:30" << 1;
    QTest::newRow("no direction: by the timetable on the way back") << qQNaN() << "08:09:40" << 3;
}

void TripProgressTest::startInTheMiddle()
{
    QFETCH(double, direction);
    QFETCH(QString, now);
    const Timetable timetable = thereAndBack();
    TripProgress progress(timetable.trips().first());
    progress.report(at(2.0), direction, time(qPrintable(now)));
    QTEST(progress.call(), "call");
}

void TripProgressTest::loop()
{
    TestNetwork network;
    network.shape("ring", {{0, 0.001}, {0, 0.009}, {0.008, 0.009}, {0.008, 0.001}, {0, 0.001}});
    network.trip("1", "5", {"1 8:00:00", "5 8:04:00", "9 8:08:00", "1 8:32:00"}, "ring");
    const Timetable timetable(network);
    TripProgress progress(timetable.trips().first());
    // The last stop is the first one: the vehicle is at the first.
    progress.report(at(1.0), qQNaN(), time("07:58:00"));
    QCOMPARE(progress.call(), 0);
    fleet::Seconds now = time("08:00:00");
    QVector<int> calls;
    const fleet::Path& path = *timetable.trips().first().path;
    for (double metres = 0.0; metres <= path.length(); metres += 60.0) {
        const fleet::Path::Place place = path.at(metres);
        progress.report(place.coordinate, place.direction, now += 6);
        if (calls.isEmpty() || calls.last() != progress.call())
            calls.append(progress.call());
    }
    QCOMPARE(calls, QVector<int>({0, 1, 2, 3}));
}

void TripProgressTest::offRoute()
{
    const Timetable timetable = line();
    TripProgress progress(timetable.trips().first());
    fleet::Seconds now = time("08:00:00");
    progress.report(at(1.0), eastward, now += 5);
    for (int i = 1; i <= 3; ++i) {
        progress.report(at(1.2, 0.9), eastward, now += 5);
        QVERIFY(!progress.isOffRoute());
    }
    progress.report(at(1.2, 0.9), eastward, now += 5);
    QVERIFY(progress.isOffRoute());
    QVERIFY(!progress.lateness());
    QCOMPARE(progress.punctuality(), TripProgress::Punctuality::Unknown);
    progress.report(at(1.3, 0.6), eastward, now += 5); // 67 metres: nearer, but not on it
    QVERIFY(progress.isOffRoute());
    progress.report(at(1.4, 0.3), eastward, now += 5);
    QVERIFY(!progress.isOffRoute());
    QVERIFY(progress.lateness());

    TripProgress depot(timetable.trips().first());
    depot.report(at(1.0, 30.0), eastward, now);
    QVERIFY(depot.isOffRoute());
    QCOMPARE(depot.call(), -1);
    depot.report(at(900.0, 30.0), eastward, now); // further than anything is looked for
    QVERIFY(depot.isOffRoute());
}

void TripProgressTest::detour()
{
    const Timetable timetable = line();
    TripProgress progress(timetable.trips().first());
    fleet::Seconds now = time("08:00:00");
    progress.report(at(1.0), eastward, now);
    for (int i = 0; i <= 50; ++i) // round stop 2
        progress.report(at(1.2 + i * 0.05, 3.0), eastward, now += 5);
    QCOMPARE(progress.call(), 0);
    progress.report(at(3.9), eastward, now += 5);
    QVERIFY(!progress.isOffRoute());
    QCOMPARE(progress.call(), 2);
}

void TripProgressTest::afterATunnel()
{
    const Timetable timetable = line();
    TripProgress progress(timetable.trips().first());
    progress.report(at(4.0), eastward, time("08:07:00"));
    progress.wait(time("08:12:00"));
    QCOMPARE(progress.call(), 2);
    QVERIFY(*progress.lateness() > 240); // as if it stood there
    progress.report(at(9.0), eastward, time("08:17:20"));
    QCOMPARE(progress.call(), 3);
    QCOMPARE(*progress.lateness(), 20);
}

void TripProgressTest::punctuality_data()
{
    QTest::addColumn<double>("place");
    QTest::addColumn<QString>("now");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("punctuality"); // 0 unknown, 1 on time, 2 ahead, 3 late
    QTest::newRow("waits at the first stop") << 1.0 << "07:40:00" << 0 << 1;
    QTest::newRow("departs in time") << 1.0 << "08:00:00" << 0 << 1;
    QTest::newRow("has not departed yet") << 1.0 << "08:03:01" << 181 << 3;
    QTest::newRow("half way in time") << 1.5 << "08:01:00" << 0 << 1;
    QTest::newRow("half way too early") << 3.0 << "08:03:50" << -70 << 2;
    QTest::newRow("a minute early is in time") << 3.0 << "08:04:00" << -60 << 1;
    QTest::newRow("half way too late") << 3.0 << "08:09:00" << 240 << 3;
    QTest::newRow("three minutes late is in time") << 3.0 << "08:08:00" << 180 << 1;
    QTest::newRow("at a stop before its arrival") << 2.0 << "08:00:30" << -90 << 2;
    QTest::newRow("at a stop in its time") << 2.0 << "08:02:30" << 0 << 1;
    QTest::newRow("at a stop after its departure") << 2.0 << "08:07:00" << 240 << 3;
    QTest::newRow("at the last stop before its time") << 9.0 << "08:15:30" << -90 << 2;
    QTest::newRow("at the last stop after its time") << 9.0 << "08:18:00" << 60 << 1;
}

void TripProgressTest::punctuality()
{
    QFETCH(double, place);
    QFETCH(QString, now);
    QFETCH(int, seconds);
    QFETCH(int, punctuality);
    const Timetable timetable = line();
    TripProgress progress(timetable.trips().first());
    QVERIFY(!progress.lateness());
    progress.report(at(place), eastward, time(qPrintable(now)));
    QVERIFY2(qAbs(*progress.lateness() - seconds) <= 1,
             qPrintable(QString::number(*progress.lateness())));
    QCOMPARE(static_cast<int>(progress.punctuality()), punctuality);
}

void TripProgressTest::afterMidnight()
{
    const Timetable timetable(
        TestNetwork().trip("1", "5", {"1 23:58:00", "2 24:02:00", "4 24:10:00"}));
    TripProgress progress(timetable.trips().first());
    progress.report(at(1.0), eastward, time("23:58:00"));
    progress.report(at(2.0), eastward, time("00:03:00"));
    QCOMPARE(progress.call(), 1);
    QCOMPARE(*progress.lateness(), 60);
}

void TripProgressTest::tripWithoutPlaces()
{
    TestNetwork network;
    for (feed::NetworkStop& stop : network.stops)
        stop.latitude = qQNaN();
    network.trip("1", "5", {"1 8:00:00", "2 8:02:00"});
    const Timetable timetable(network);
    TripProgress progress(timetable.trips().first());
    progress.report(at(1.0), eastward, time("08:00:00"));
    QCOMPARE(progress.call(), -1);
    QVERIFY(!progress.metres());
    QVERIFY(!progress.lateness());
}

QTEST_GUILESS_MAIN(TripProgressTest)
#include "tst_trip_progress.moc"
