#include "Drive.h"
#include "GpsdReader.h"
#include "PseudoTerminal.h"
#include "Receivers.h"

#include <QtTest>

#include <sys/stat.h>

using namespace rivo;
using namespace rivo::receivers;
using position::Knowledge;
using position::SourceSettings;
using position::VehiclePosition;

/// Receivers that come late, are silent, send noise or are unplugged.
class VehicleReceiversTest : public QObject
{
    Q_OBJECT

private slots:
    void noEcho();
    void deviceThatComesLater_data();
    void deviceThatComesLater();
    void pipeThatEnds();
    void unplugged_data();
    void unplugged();
    void gpsdThatFails_data();
    void gpsdThatFails();
    void gpsdThatIsNotThere();
    void silence();
};

void VehicleReceiversTest::noEcho()
{
    for (const auto kind : {SourceSettings::Serial, SourceSettings::Device}) {
        PseudoTerminal receiver;
        TestClocks time;
        VehiclePosition position(serial(receiver.name(), kind), time.clocks());
        position.start();
        QTRY_COMPARE(position.knowledge(), Knowledge::NoFix);
        QVERIFY(receiver.send(nmea("GPRMC,081530.00,A,4807.038,N,01131.000,E,0.0,,220326,,,A")));
        QTRY_COMPARE(position.knowledge(), Knowledge::Fixed);
        QCOMPARE(receiver.received(), QByteArray());
    }
}

void VehicleReceiversTest::deviceThatComesLater_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("serial line") << int(SourceSettings::Serial);
    QTest::newRow("device") << int(SourceSettings::Device);
}

void VehicleReceiversTest::deviceThatComesLater()
{
    QFETCH(int, kind);
    QTemporaryDir folder;
    const QString link = folder.filePath("receiver");
    TestClocks time;
    VehiclePosition position(serial(link, SourceSettings::Kind(kind)), time.clocks());
    position.start();
    QVERIFY2(position.stateText().startsWith("not connected: "), qPrintable(position.stateText()));
    QTest::qWait(60);
    QCOMPARE(position.knowledge(), Knowledge::Disconnected);
    PseudoTerminal receiver;
    QVERIFY(QFile::link(receiver.name(), link));
    QTRY_COMPARE(position.knowledge(), Knowledge::NoFix);
}

void VehicleReceiversTest::pipeThatEnds()
{
    QTemporaryDir folder;
    const QString pipe = folder.filePath("pipe");
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    TestClocks time;
    SourceSettings settings = serial(pipe, SourceSettings::Device);
    settings.firstRetry = 60000;
    VehiclePosition position(settings, time.clocks());
    position.start();
    QFile writer(pipe);
    QVERIFY(writer.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    writer.write(nmea("GPRMC,081530.00,A,4807.038,N,01131.000,E,0.0,,220326,,,A"));
    QTRY_COMPARE(position.knowledge(), Knowledge::Fixed);
    writer.close();
    QTRY_COMPARE(position.stateText(), QString("not connected: the device has ended"));
}

void VehicleReceiversTest::unplugged_data() { deviceThatComesLater_data(); }

void VehicleReceiversTest::unplugged()
{
    QFETCH(int, kind);
    PseudoTerminal receiver;
    TestClocks time;
    VehiclePosition position(serial(receiver.name(), SourceSettings::Kind(kind)), time.clocks());
    position.start();
    QTRY_COMPARE(position.knowledge(), Knowledge::NoFix);
    QVERIFY(receiver.send(nmea("GPRMC,081530.00,A,4807.038,N,01131.000,E,0.0,,220326,,,A")));
    QTRY_COMPARE(position.knowledge(), Knowledge::Fixed);
    QVERIFY(receiver.send("$GPRMC,0815")); // and in the middle of a sentence
    receiver.unplug();
    QTRY_COMPARE(position.knowledge(), Knowledge::Disconnected);
    QVERIFY(position.fix());
}

void VehicleReceiversTest::gpsdThatFails_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("closes at once") << QByteArray();
    QTest::newRow("closes in the middle of a line") << tpv(1.0).left(30);
    QTest::newRow("sends noise") << QByteArray("\x00\xff\xfe{{{\n\n}", 9);
    QTest::newRow("never ends a line") << QByteArray(1000000, '{');
    QTest::newRow("sends what another service does")
        << QByteArray("HTTP/1.1 400 Bad Request\r\n\r\n");
}

void VehicleReceiversTest::gpsdThatFails()
{
    QFETCH(QByteArray, answer);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    TestClocks time;
    VehiclePosition position(gpsd(server.serverPort()), time.clocks());
    int losses = 0;
    connect(&position, &VehiclePosition::stateChanged, this,
            [&] { losses += position.knowledge() == Knowledge::Disconnected ? 1 : 0; });
    position.start();
    for (int i = 0; i < 3; ++i) {
        const std::unique_ptr<QTcpSocket> client = nextClient(server);
        QVERIFY(client);
        QCOMPARE(client->readLine(), position::GpsdReader::request());
        client->write(answer);
        QVERIFY(QTest::qWaitFor([&] { return client->bytesToWrite() == 0; }));
        QVERIFY(!position.fix());
        client->disconnectFromHost();
        QTRY_COMPARE(losses, i + 1);
    }
    const std::unique_ptr<QTcpSocket> client = nextClient(server);
    QVERIFY(client);
    client->write(tpv(1.0));
    QTRY_COMPARE(position.knowledge(), Knowledge::Fixed);
}

void VehicleReceiversTest::gpsdThatIsNotThere()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    TestClocks time;
    VehiclePosition position(gpsd(port), time.clocks());
    QSignalSpy changes(&position, &VehiclePosition::stateChanged);
    position.start();
    QTRY_VERIFY(position.stateText().startsWith("not connected: "));
    QTest::qWait(150);
    QCOMPARE(changes.count(), 1); // however often it was tried
    QVERIFY(server.listen(QHostAddress::LocalHost, port));
    const std::unique_ptr<QTcpSocket> client = nextClient(server);
    QVERIFY(client);
    QTRY_COMPARE(position.knowledge(), Knowledge::NoFix);
}

void VehicleReceiversTest::silence()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    SourceSettings settings = gpsd(server.serverPort());
    settings.silenceAllowed = 200;
    TestClocks time;
    VehiclePosition position(settings, time.clocks());
    QStringList states;
    connect(&position, &VehiclePosition::stateChanged, this,
            [&] { states.append(position.stateText()); });
    position.start();
    const std::unique_ptr<QTcpSocket> first = nextClient(server);
    QVERIFY(first);
    const std::unique_ptr<QTcpSocket> second = nextClient(server);
    QVERIFY(second);
    QCOMPARE(states.mid(0, 2),
             QStringList({"no satellites", "not connected: nothing was received"}));
}

QTEST_GUILESS_MAIN(VehicleReceiversTest)
#include "tst_vehicle_receivers.moc"
