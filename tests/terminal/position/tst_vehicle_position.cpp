#include "Drive.h"
#include "PseudoTerminal.h"
#include "Receivers.h"
#include "TestNetwork.h"

#include <FeedLoader.h>

#include <QtTest>

#include <ctime>

using namespace rivo;
using namespace rivo::receivers;
using fleet::Seconds;
using fleet::Timetable;
using fleet::Trip;
using position::Knowledge;
using position::SourceSettings;
using position::VehiclePosition;

namespace
{

Trip shippedTrip()
{
    const feed::FeedResult result =
        feed::loadFeed(QStringLiteral(EXAMPLE_FEEDS "/coast-line.json"), feed::FeedOptions());
    const Timetable timetable(result.feed->network);
    return timetable.trips().first();
}

} // namespace

class VehiclePositionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void withoutAReceiver();
    void wholeTrip_data();
    void wholeTrip();
    void wholeTripByGpsfake();
    void clockOffset();
    void clockThatIsSet();
    void stateTexts();
    void tripsChange();
};

/// The trips are where the local time is that of the satellites.
void VehiclePositionTest::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void VehiclePositionTest::withoutAReceiver()
{
    VehiclePosition position{SourceSettings()};
    position.start();
    QVERIFY(!position.hasReceiver());
    QCOMPARE(position.knowledge(), Knowledge::Disconnected);
    QCOMPARE(position.stateText(), QString("not connected"));
    QVERIFY(position.punctualityText().isEmpty());
    QVERIFY(!position.fix());
}

void VehiclePositionTest::wholeTrip_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("delay");
    QTest::addColumn<QStringList>("allowed"); // what may be shown, the first is
    QTest::newRow("serial line, in time") << int(SourceSettings::Serial) << 0 << QStringList();
    QTest::newRow("serial line, late") << int(SourceSettings::Serial) << 420
                                       << QStringList{"7 min late", "6 min late", "8 min late", ""};
    QTest::newRow("device, ahead") << int(SourceSettings::Device) << -120
                                   << QStringList{"2 min ahead", "1 min ahead", "3 min ahead", ""};
}

void VehiclePositionTest::wholeTrip()
{
    QFETCH(int, kind);
    QFETCH(int, delay);
    QFETCH(QStringList, allowed);
    const Trip trip = shippedTrip();
    PseudoTerminal receiver;
    QVERIFY(!receiver.name().isEmpty());
    TestClocks time;
    VehiclePosition position(serial(receiver.name(), SourceSettings::Kind(kind)), time.clocks());
    QVector<int> stops;
    QStringList texts;
    connect(&position, &VehiclePosition::stopReached, this, [&](int call) { stops.append(call); });
    connect(&position, &VehiclePosition::progressChanged, this,
            [&] { texts.append(position.punctualityText()); });
    QSignalSpy moves(&position, &VehiclePosition::moved);
    position.setTrip(&trip);
    position.start();
    QTRY_COMPARE(position.knowledge(), Knowledge::NoFix);

    int count = 0;
    for (Seconds at = trip.start() - 20; at <= trip.end() + 20; at += 4) {
        time.pass(4000);
        time.system = midnight.addSecs(at + delay);
        QVERIFY(receiver.send(drivenRmc(trip, at, at + delay)));
        ++count;
        QTRY_COMPARE(moves.count(), count);
    }
    QVector<int> all;
    for (int call = 0; call < trip.calls.size(); ++call)
        all.append(call);
    QCOMPARE(stops, all);
    QCOMPARE(texts.contains(allowed.value(0)), delay != 0);
    for (const QString& text : qAsConst(texts))
        QVERIFY2(allowed.contains(text), qPrintable(text));
    QCOMPARE(position.clockOffset().value_or(-1), 0);
    QVERIFY(!position.isOffRoute());
}

/// A real gpsd reads the lines of a whole trip.
void VehiclePositionTest::wholeTripByGpsfake()
{
    const QString program =
        QStandardPaths::findExecutable("gpsfake", QStringList{"/usr/bin", "/usr/local/bin"});
    if (program.isEmpty())
        QSKIP("gpsfake is not installed (Debian: gpsd, gpsd-clients)");
    const Trip trip = shippedTrip();
    // gpsd splits names at blanks.
    QTemporaryDir folder(QStringLiteral("/tmp/rivo-gpsfake-XXXXXX"));
    QFile lines(folder.filePath("trip.nmea"));
    QVERIFY(lines.open(QIODevice::WriteOnly));
    lines.write("# a whole trip\n");
    const int step = qMax(4, (trip.end() - trip.start()) / 200);
    for (Seconds at = trip.start(); at <= trip.end(); at += step)
        lines.write(drivenRmc(trip, at, at));
    lines.close();
    quint16 port = 0;
    {
        QTcpServer server; // a port that is free
        QVERIFY(server.listen(QHostAddress::LocalHost));
        port = server.serverPort();
    }
    QProcess fake;
    fake.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), folder.path());
    fake.setProcessEnvironment(environment);
    fake.start(program, {"-q", "-c", "0.02", "-P", QString::number(port), lines.fileName()});
    QVERIFY(fake.waitForStarted());

    // The lines come much faster than a bus drives: the clock follows them.
    TestClocks time;
    VehiclePosition position(gpsd(port), time.clocks());
    QVector<int> stops;
    connect(&position, &VehiclePosition::stopReached, this, [&](int call) { stops.append(call); });
    connect(&position, &VehiclePosition::moved, this, [&] {
        time.even += step * 1000;
        time.system = position.fix()->time;
    });
    position.setTrip(&trip);
    position.start();
    const bool arrives = QTest::qWaitFor(
        [&] {
            return stops.contains(trip.calls.size() - 1) || fake.state() == QProcess::NotRunning;
        },
        60000);
    fake.terminate();
    fake.waitForFinished();
    QVERIFY2(arrives && !stops.isEmpty(), fake.readAll());
    // gpsd needs a few lines to know what it reads, so the first stop may be missed.
    QVector<int> expected;
    for (int call = stops.first(); call < trip.calls.size(); ++call)
        expected.append(call);
    QCOMPARE(stops, expected);
    QVERIFY(stops.size() >= 3);
}

void VehiclePositionTest::clockOffset()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    TestClocks time;
    time.system = QDateTime(QDate(2026, 3, 22), QTime(7, 58, 20), Qt::UTC);
    VehiclePosition position(gpsd(server.serverPort()), time.clocks());
    QSignalSpy offsets(&position, &VehiclePosition::clockOffsetChanged);
    position.start();
    const std::unique_ptr<QTcpSocket> client = nextClient(server);
    QVERIFY(client);
    for (int i = 0; i < 5; ++i)
        client->write(tpv(1.0));
    QTRY_COMPARE(offsets.count(), 1);
    QCOMPARE(offsets.first().first().toLongLong(), 100000);
    QVERIFY(position.isClockWrong());
    QCOMPARE(position.clockOffset().value_or(0), 100000);
    for (int i = 0; i < 9; ++i)
        client->write(tpv(1.0, "2026-03-22T08:00:00.900Z"));
    for (int i = 0; i < 9; ++i)
        client->write(tpv(1.0, "2026-03-22T07:58:20.000Z"));
    QTRY_COMPARE(offsets.count(), 2);
    QCOMPARE(offsets.last().first().toLongLong(), 0);
    QVERIFY(!position.isClockWrong());
}

void VehiclePositionTest::clockThatIsSet()
{
    TestClocks time;
    VehiclePosition position(SourceSettings(), time.clocks());
    QSignalSpy steps(&position, &VehiclePosition::clockStepped);
    position.start();
    QTest::qWait(1200);
    QCOMPARE(steps.count(), 0);
    time.system = time.system.addSecs(-3600);
    QTRY_COMPARE(steps.count(), 1);
    QCOMPARE(steps.first().first().toLongLong(), -3600000);
}

void VehiclePositionTest::stateTexts()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    TestClocks time;
    VehiclePosition position(gpsd(server.serverPort()), time.clocks());
    QStringList states;
    connect(&position, &VehiclePosition::stateChanged, this,
            [&] { states.append(position.stateText()); });
    position.start();
    const std::unique_ptr<QTcpSocket> client = nextClient(server);
    QVERIFY(client);
    client->write(tpv(1.0) + tpv(500.0));
    QTRY_COMPARE(states, QStringList({"no satellites", "position known", "position jumps"}));
    client->write(tpv(1.0));
    QTRY_COMPARE(states.last(), QString("position known"));
    time.pass(6000);
    QTRY_COMPARE(states.last(), QString("no satellites on the way"));
    time.pass(10000);
    QTRY_COMPARE(states.last(), QString("nothing is received"));
}

void VehiclePositionTest::tripsChange()
{
    const Timetable timetable(TestNetwork()
                                  .trip("1", "5", {"1 8:00:00", "2 8:02:00"})
                                  .trip("2", "5", {"2 9:00:00", "3 9:02:00", "1 9:10:00"}));
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    TestClocks time;
    time.system = midnight.addSecs(8 * 3600);
    VehiclePosition position(gpsd(server.serverPort()), time.clocks());
    QVector<int> stops;
    connect(&position, &VehiclePosition::stopReached, this, [&](int call) { stops.append(call); });
    QSignalSpy changes(&position, &VehiclePosition::progressChanged);
    position.setTrip(&timetable.trips().at(0));
    position.start();
    const std::unique_ptr<QTcpSocket> client = nextClient(server);
    QVERIFY(client);
    client->write(tpv(1.0));
    QTRY_COMPARE(stops, QVector<int>{0});
    time.pass(300000);
    client->write(tpv(1.1));
    QTRY_COMPARE(position.punctualityText(), QString("5 min late"));
    QVERIFY(position.isLate());
    QVERIFY(!position.isAhead());
    position.setTrip(nullptr);
    QVERIFY(position.punctualityText().isEmpty());
    QCOMPARE(changes.count(), 2);
    QSignalSpy moves(&position, &VehiclePosition::moved);
    client->write(tpv(1.2));
    QTRY_COMPARE(moves.count(), 1);
    position.setTrip(&timetable.trips().at(1));
    time.pass(9000);
    client->write(tpv(2.9));
    QTRY_COMPARE(stops, QVector<int>({0, 1}));
    QTRY_VERIFY(position.isAhead());
    for (int i = 0; i < 5; ++i) {
        time.pass(30000);
        client->write(tpv(14.0 + 0.1 * i));
    }
    QTRY_VERIFY(position.isOffRoute());
    QCOMPARE(position.punctualityText(), QString("off route"));
}

QTEST_GUILESS_MAIN(VehiclePositionTest)
#include "tst_vehicle_position.moc"
