#include "Broker.h"
#include "OtherVehicles.h"
#include "Terminal.h"
#include "TestNetwork.h"

#include <AssetItem.h>
#include <FleetMessages.h>
#include <HealthWatch.h>
#include <PeripheralItem.h>
#include <VehiclePosition.h>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace rivo;
using terminal::Terminal;
using terminal::TripDesk;
using terminal::VehicleParts;

namespace
{

QByteArray tpv(double east)
{
    return QByteArray("{\"class\":\"TPV\",\"mode\":3,\"lat\":0.0,\"lon\":") +
           QByteArray::number(east / 1000.0, 'f', 7) + ",\"speed\":8.0,\"track\":90.0,\"time\":\"" +
           QDateTime::currentDateTimeUtc().addSecs(100).toString(Qt::ISODateWithMs).toLatin1() +
           "\"}\n";
}

/// A gpsd that a test writes for.
class Receiver
{
public:
    Receiver() { m_server.listen(QHostAddress::LocalHost); }

    config::PositionConfig settings() const
    {
        config::PositionConfig made;
        made.type = "gpsd";
        made.host = "127.0.0.1";
        made.port = m_server.serverPort();
        return made;
    }
    bool isAsked() const { return m_server.hasPendingConnections(); }
    std::unique_ptr<QTcpSocket> client()
    {
        return std::unique_ptr<QTcpSocket>(m_server.nextPendingConnection());
    }

private:
    QTcpServer m_server;
};

feed::Feed testFeed()
{
    feed::Feed feed;
    feed.currency = "EUR";
    feed.network = TestNetwork().trip("50", "5", {"1 8:00:00", "2 8:25:00", "4 8:30:00"});
    return feed;
}

/// "name: state" of the devices.
QStringList texts(const PeripheralsModel& devices)
{
    QStringList texts;
    for (int row = 0; row < devices.rowCount(); ++row) {
        const auto* device = qobject_cast<PeripheralItem*>(devices.itemFromRow(row));
        texts.append(device->name() + ": " + device->stateStr());
    }
    return texts;
}

/// "remark milliseconds" of the records of the clock in a journal that is not open.
QStringList clockRemarks(const QString& journal)
{
    QStringList remarks;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "remarks");
        database.setDatabaseName(journal);
        if (!database.open())
            return {"cannot be opened"};
        QSqlQuery query("SELECT remark, milliseconds FROM clock ORDER BY record", database);
        while (query.next())
            remarks.append(query.value(0).toString() + " " + query.value(1).toString());
    }
    QSqlDatabase::removeDatabase("remarks");
    return remarks;
}

} // namespace

class VehiclePartsTest : public QObject
{
    Q_OBJECT

private slots:
    void noParts();
    void clockGoesIntoTheJournal();
    void timeThatWasSetIsNotThatOfTheClock();
    void stopsFollowTheReceiver();
    void receiverAndServerThatAreNotThere();
    void partsReportByThemselves();
    void theReceiverPlacesThisVehicle_data();
    void theReceiverPlacesThisVehicle();
    void vehiclesFromAFile();
    void healthOfTheSystem();
    void theOfficeHasARow();
    void theBrokerKnowsOtherVehicles();
    void rowsThatWereRemoved();
};

void VehiclePartsTest::noParts()
{
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    Terminal terminal(testFeed(), settings);
    QVERIFY(!terminal.parts().position().hasReceiver());
    QCOMPARE(terminal.peripherals()->rowCount(), 1); // the printer
}

void VehiclePartsTest::clockGoesIntoTheJournal()
{
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    {
        Terminal terminal(testFeed(), settings);
        emit terminal.parts().clockStepped(-3600000);
        emit terminal.parts().clockOffsetChanged(100000);
    }
    QCOMPARE(clockRemarks(settings.journalFile), (QStringList{"2 -3600000", "1 100000"}));
}

/// Its sales do not have the time of the system's clock.
void VehiclePartsTest::timeThatWasSetIsNotThatOfTheClock()
{
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.startTime = 8 * 3600;
    {
        Terminal terminal(testFeed(), settings);
        emit terminal.parts().clockStepped(-3600000);
        emit terminal.parts().clockOffsetChanged(100000);
    }
    QCOMPARE(clockRemarks(settings.journalFile), QStringList());
}

void VehiclePartsTest::stopsFollowTheReceiver()
{
    Receiver receiver;
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.config.position = receiver.settings();
    Terminal terminal(testFeed(), settings);
    QSignalSpy offsets(&terminal.parts(), &VehicleParts::clockOffsetChanged);
    TripDesk& trip = *terminal.trip();
    QTRY_VERIFY(receiver.isAsked());
    const std::unique_ptr<QTcpSocket> client = receiver.client();
    client->write(tpv(1.0));
    QTRY_VERIFY(texts(*terminal.peripherals()).contains("Position: position known"));
    QCOMPARE(trip.stop(), 0);
    client->write(tpv(1.9));
    QTRY_COMPARE(trip.stop(), 1);
    QCOMPARE(trip.context()->currentStopId(), 2);

    // What the driver chooses stays until the next stop is reached.
    trip.setStop(0);
    client->write(tpv(2.1) + tpv(2.2));
    QTRY_COMPARE(offsets.count(), 1);
    QVERIFY(qAbs(offsets.first().first().toLongLong() - 100000) < 5000);
    QCOMPARE(trip.stop(), 0);
    client->write(tpv(3.1) + tpv(3.9));
    QTRY_COMPARE(trip.stop(), 2);
    const QString time = texts(*terminal.peripherals()).filter("Time: ").value(0);
    QVERIFY2(time.endsWith(" s behind the satellites"), qPrintable(time));

    for (int i = 0; i < 9; ++i)
        client->write(tpv(4.6 + i * 0.1));
    QTRY_COMPARE(trip.punctuality(), QString("off route"));
    client->disconnectFromHost();
    QTRY_VERIFY(!texts(*terminal.peripherals()).filter("Position: not connected: ").isEmpty());
    QCOMPARE(trip.punctuality(), QString());
    QCOMPARE(trip.stop(), 2);
}

void VehiclePartsTest::receiverAndServerThatAreNotThere()
{
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.isDemo = true; // with a printer
    settings.journalFile = folder.filePath("journal");
    settings.config.position.type = "nmea";
    settings.config.position.serial = config::SerialLine();
    settings.config.position.serial->port = folder.filePath("ttyUSB0");
    settings.config.vehicles.type = "gtfs-realtime";
    settings.config.vehicles.file = folder.filePath("vehicles.pb");
    Terminal terminal(testFeed(), settings);
    const QStringList devices = texts(*terminal.peripherals());
    QVERIFY2(devices.value(0).startsWith("Position: not connected: "),
             qPrintable(devices.value(0)));
    QCOMPARE(devices.mid(1, 2), QStringList({"Time: not compared with satellites yet",
                                             "Other vehicles: there is no such file"}));
    QCOMPARE(terminal.devices()->faults(), 0); // it can sell
}

/// In a demo too: events are made by hand for simulated devices alone.
void VehiclePartsTest::partsReportByThemselves()
{
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.isDemo = true;
    settings.journalFile = folder.filePath("journal");
    settings.config.position.type = "nmea";
    settings.config.position.device = folder.filePath("receiver");
    settings.config.cardTerminal.type = "zvt";
    settings.config.cardTerminal.host = "127.0.0.1";
    settings.config.cardTerminal.port = 1;
    feed::Feed feed = testFeed();
    feed::FeedPeripheral door;
    door.name = "Door";
    feed.peripherals.append(door);
    Terminal terminal(feed, settings);
    terminal::DeviceDesk& desk = *terminal.devices();
    QStringList real;
    const QStringList devices = texts(*terminal.peripherals());
    for (int row = 0; row < devices.size(); ++row) {
        if (desk.isReal(row))
            real.append(devices.at(row).section(':', 0, 0));
        QCOMPARE(desk.report(row, terminal::DeviceDesk::Notice, "by hand"), !desk.isReal(row));
    }
    QCOMPARE(real, (QStringList{"Card terminal", "Position", "Time"}));
    QCOMPARE(texts(*terminal.peripherals()).filter("by hand"),
             (QStringList{"Door: by hand", "Ticket printer: by hand"}));
}

void VehiclePartsTest::theReceiverPlacesThisVehicle_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isDemo");
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("vehicles");
    QTest::newRow("the vehicle of that internal number") << "12" << false << 7 << 2;
    QTest::newRow("the vehicle of that registration number") << "AB-CD 11" << false << 8 << 2;
    QTest::newRow("a vehicle that the feed does not have is added") << "4711" << false << 3 << 3;
    QTest::newRow("without a name the vehicle of the route") << "" << false << 7 << 2;
    QTest::newRow("in a demo, too") << "AB-CD 11" << true << 8 << 2;
}

void VehiclePartsTest::theReceiverPlacesThisVehicle()
{
    QFETCH(QString, name);
    QFETCH(bool, isDemo);
    QFETCH(int, own);
    QFETCH(int, vehicles);
    Receiver receiver;
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.isDemo = isDemo;
    settings.config.vehicle = name;
    settings.config.position = receiver.settings();
    feed::Feed feed = testFeed();
    feed.trip = feed::FeedTripContext();
    feed.trip->routeId = 5;
    feed::FeedVehicle known;
    known.id = 7;
    known.internalNumber = "12";
    known.routeId = 5;
    feed.vehicles.append(known);
    known.id = 8;
    known.internalNumber = "13";
    known.registrationNumber = "AB-CD 11";
    feed.vehicles.append(known);
    Terminal terminal(feed, settings);
    QCOMPARE(terminal.fleet()->own(), own);
    QCOMPARE(terminal.vehicles()->rowCount(), vehicles);
    const auto* bus = qobject_cast<AssetItem*>(terminal.vehicles()->findById(own));
    QVERIFY(bus != nullptr);
    QTRY_VERIFY(receiver.isAsked());
    const std::unique_ptr<QTcpSocket> client = receiver.client();
    client->write(tpv(1.5));
    QTRY_COMPARE(bus->drivingStatus(), QString("driving"));
    QCOMPARE(bus->assetCoordinate(), QGeoCoordinate(0.0, 0.0015));
    QCOMPARE(bus->direction(), 90.0);
    QCOMPARE(terminal.fleet()->reportingOf(own), fleet::FleetSimulator::Live);
}

void VehiclePartsTest::vehiclesFromAFile()
{
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.config.vehicles.type = "gtfs-realtime";
    settings.config.vehicles.file = LIVE_TEST_DATA "/everything.pb";
    settings.config.position.type = "nmea";
    settings.config.position.device = folder.filePath("receiver");
    feed::Feed feed = testFeed();
    feed::FeedVehicle known;
    known.id = 4711;
    known.registrationNumber = "AB-CD 11";
    feed.vehicles.append(known);
    Terminal terminal(feed, settings);
    const auto* bus = qobject_cast<AssetItem*>(terminal.vehicles()->findById(4711));
    QVERIFY(bus != nullptr);
    QCOMPARE(bus->registrationNumber(), QString("AB-CD 11"));
    QCOMPARE(bus->drivingStatus(), QString("off-line")); // the message is old
    QCOMPARE(terminal.fleet()->reportingOf(4711), fleet::FleetSimulator::Offline);
    terminal.fleet()->setTime(9 * 3600); // the simulator leaves it alone
    QCOMPARE(bus->drivingStatus(), QString("off-line"));
    QCOMPARE(terminal.vehicles()->rowCount(), 2); // this one; the others were forgotten long ago
    QVERIFY(texts(*terminal.peripherals()).contains("Other vehicles: 1 vehicle(s)"));
}

void VehiclePartsTest::healthOfTheSystem()
{
    QTemporaryDir folder;
    const auto write = [&](const QString& name, const QByteArray& content) {
        QDir().mkpath(folder.filePath(QFileInfo("sys/class/" + name).path()));
        QFile file(folder.filePath("sys/class/" + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write("net/eth0/operstate", "up\n");
    write("thermal/thermal_zone0/temp", "91000\n");
    QObject prototypes;
    AssetsModel vehicles(&prototypes);
    PeripheralsModel devices(&prototypes);
    const feed::Feed feed = testFeed();
    fleet::FleetSimulator fleet(fleet::Timetable(), vehicles);
    TripDesk trip(feed, fleet::Timetable(feed.network));
    VehicleParts::Settings settings;
    settings.watchesHealth = true;
    settings.journalFile = folder.filePath("journal");
    settings.systemRoot = folder.path();
    sales::Journal journal;
    VehicleParts parts(settings, {feed.network, vehicles, devices, fleet, trip, journal});
    QCOMPARE(texts(devices), QStringList({"Network: starting", "Space for the journal: starting"}));
    parts.start();
    QTRY_COMPARE(devices.rowCount(), 3);
    QCOMPARE(texts(devices).value(0), QString("Network: connected: eth0"));
    QVERIFY(texts(devices).value(1).endsWith("MB free"));
    QCOMPARE(texts(devices).value(2), QString::fromUtf8("Temperature: 91 °C"));
    const auto* temperature = qobject_cast<PeripheralItem*>(devices.itemFromRow(2));
    QVERIFY(temperature->warning());
    QVERIFY(!temperature->error());
    QVERIFY(!temperature->yellowWarning());
}

void VehiclePartsTest::theOfficeHasARow()
{
    const QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.config.office.type = "mqtt";
    settings.config.office.host = "127.0.0.1";
    settings.config.office.port = 1; // nobody listens there
    settings.config.office.operatorName = "lakeside";
    settings.config.office.vehicle = "4711";
    {
        const Terminal terminal(testFeed(), settings);
        auto* row = qobject_cast<PeripheralItem*>(
            const_cast<Terminal&>(terminal).peripherals()->itemFromRow(0));
        QCOMPARE(row->stateStr(), QString("no connection, records wait"));
        QVERIFY(row->blueWarning() && !row->yellowWarning() && !row->error());
    }
    settings.config.office.caFile = folder.filePath("missing.pem");
    Terminal terminal(testFeed(), settings);
    QStringList shown = texts(*terminal.peripherals());
    QVERIFY2(shown.value(0).startsWith("Office: cannot be used: "), qPrintable(shown.join('|')));
}

/// Only while somebody looks at the fleet.
void VehiclePartsTest::theBrokerKnowsOtherVehicles()
{
    constexpr int patience = 30000;
    if (!Broker::isInstalled())
        QSKIP("mosquitto is not installed");
    Broker broker;
    QVERIFY(broker.start());
    office::BrokerLink others(broker.settings("others"));
    QVERIFY(others.start());
    QTRY_VERIFY_WITH_TIMEOUT(others.isConnected(), patience);
    const auto report = [&others](const QString& vehicle, double east) {
        const office::Topics topics{"lakeside", vehicle};
        return others.publish(topics.position(),
                              encode(office::PositionReport{QDateTime::currentDateTimeUtc(), 0.0,
                                                            east, 90.0, 8.0, "50"}),
                              true);
    };
    const QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.config.office.type = "mqtt";
    settings.config.office.host = "127.0.0.1";
    settings.config.office.port = broker.port();
    settings.config.office.operatorName = "lakeside";
    settings.config.office.vehicle = "4711";
    Terminal terminal(testFeed(), settings);
    const int before = terminal.vehicles()->rowCount();
    QVERIFY(report("4711", 0.001) && report("4712", 0.002));
    QVERIFY(others.publish("rivo/lakeside/4713/position", "nonsense", true));
    QVERIFY(others.publish("rivo/other/4714/position", "nonsense", true));

    terminal.setFleetShown(true);
    QTRY_COMPARE_WITH_TIMEOUT(terminal.vehicles()->rowCount(), before + 1, patience);
    const auto* bus = qobject_cast<AssetItem*>(terminal.vehicles()->findById(4712));
    QVERIFY(bus != nullptr);
    QCOMPARE(bus->registrationNumber(), QString("4712"));
    QCOMPARE(bus->drivingStatus(), QString("driving"));
    QCOMPARE(bus->assetCoordinate(), QGeoCoordinate(0.0, 0.002));
    QCOMPARE(terminal.fleet()->reportingOf(4712), fleet::FleetSimulator::Live);
    QVERIFY(report("4712", 0.003));
    QTRY_COMPARE_WITH_TIMEOUT(bus->assetCoordinate(), QGeoCoordinate(0.0, 0.003), patience);

    terminal.setFleetShown(false);
    QVERIFY(report("4712", 0.004));
    QVERIFY(report("4715", 0.001));
    QTest::qWait(3 * terminal::OtherVehicles::pause);
    QCOMPARE(bus->assetCoordinate(), QGeoCoordinate(0.0, 0.003));
    terminal.setFleetShown(true);
    QTRY_COMPARE_WITH_TIMEOUT(bus->assetCoordinate(), QGeoCoordinate(0.0, 0.004), patience);
    QTRY_COMPARE_WITH_TIMEOUT(terminal.vehicles()->rowCount(), before + 2, patience);
    broker.kill();
    QVERIFY(broker.start());
    QTRY_VERIFY_WITH_TIMEOUT(report("4712", 0.005), 2 * patience);
    QTRY_COMPARE_WITH_TIMEOUT(bus->assetCoordinate(), QGeoCoordinate(0.0, 0.005), 2 * patience);
}

void VehiclePartsTest::rowsThatWereRemoved()
{
    Receiver receiver;
    QTemporaryDir folder;
    Terminal::Settings settings;
    settings.journalFile = folder.filePath("journal");
    settings.config.position = receiver.settings();
    Terminal terminal(testFeed(), settings);
    terminal.peripherals()->removeRows(0, 2);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_VERIFY(receiver.isAsked());
    const std::unique_ptr<QTcpSocket> client = receiver.client();
    client->write(tpv(1.9) + tpv(1.9) + tpv(1.9));
    QTRY_COMPARE(terminal.trip()->stop(), 1);
}

QTEST_GUILESS_MAIN(VehiclePartsTest)
#include "tst_vehicle_parts.moc"
