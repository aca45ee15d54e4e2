#include "OfficeUnderTest.h"
#include "Table.h"

#include <FleetOverview.h>
#include <LiveMessage.h>
#include <QTest>
#include <VehiclePositions.h>
#include <VehicleStates.h>

using namespace rivo::backoffice;
using namespace rivo::office;

namespace
{

const QDateTime now = QDateTime::fromSecsSinceEpoch(1774771200, Qt::UTC);

PositionReport place(int secondsAgo, double latitude, double longitude, const QString& trip = {})
{
    return {now.addSecs(-secondsAgo), latitude, longitude, 90.0, 12.5, trip};
}

/// What an office has, with what it stored: "4711 alive 54.10 -2.90 trip".
struct States
{
    explicit States(const DatabaseSettings& settings)
        : database(settings), office(settings), states(office.store)
    {
        database.open();
    }

    bool note(const QString& topic, const QByteArray& message)
    {
        return states.note(topic, message, now);
    }

    bool note(const QString& vehicle, const PositionReport& report)
    {
        return note("rivo/lakeside/" + vehicle + "/position", encode(report));
    }

    QStringList stored()
    {
        if (!states.store())
            return {office.store.database().problem()};
        QStringList lines;
        const auto overview = fleetOverview(database);
        for (const VehicleOverview& vehicle : overview.value().vehicles) {
            QStringList line{vehicle.name.section('/', 1)};
            if (vehicle.isAlive)
                line.append("alive");
            if (vehicle.position)
                line << QString::number(vehicle.position->latitude, 'f', 2)
                     << QString::number(vehicle.position->longitude, 'f', 2)
                     << vehicle.position->trip;
            lines.append(line.join(' ').trimmed());
        }
        return lines;
    }

    rivo::live::LiveResult published()
    {
        return rivo::live::readMessage(positions.message(database, now).value());
    }

    Database database;
    Office office;
    VehicleStates states;
    PublicPositions positions;
};

} // namespace

/// The last word of each vehicle besides its records.
class TestVehicleStates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void theLastWordIsStored()
    {
        States office(m_server.newDatabase());
        QVERIFY(office.note("rivo/lakeside/4711/alive", "1"));
        QVERIFY(office.note("4711", place(20, 54.1, -2.9, "7-early")));
        QVERIFY(office.note("4711", place(10, 54.2, -2.8, "7-late")));
        QVERIFY(office.note("4712", place(5, -33.9, 151.2)));
        QCOMPARE(office.stored(),
                 QStringList({"4711 alive 54.20 -2.80 7-late", "4712 -33.90 151.20"}));
    }

    void olderReportsChangeNothing()
    {
        const DatabaseSettings database = m_server.newDatabase();
        {
            States office(database);
            QVERIFY(office.note("4711", place(10, 54.2, -2.8)));
            QCOMPARE(office.stored(), QStringList("4711 54.20 -2.80"));
        }
        States other(database);
        QVERIFY(other.note("4711", place(11, 1.0, 1.0)));
        QVERIFY(other.note("rivo/lakeside/4711/alive", "0"));
        QCOMPARE(other.stored(), QStringList("4711 54.20 -2.80"));
    }

    void aVehicleComesAndGoes()
    {
        const DatabaseSettings database = m_server.newDatabase();
        for (const char* alive : {"1", "0", "1", "1"}) {
            States office(database);
            QVERIFY(office.note("rivo/lakeside/4711/alive", alive));
            QCOMPARE(office.stored(), QStringList(*alive == '1' ? "4711 alive" : "4711"));
        }
    }

    void aClockThatIsAheadDoesNotCount()
    {
        States office(m_server.newDatabase());
        QVERIFY(office.note("4711", place(-VehicleStates::mostAhead, 54.1, -2.9)));
        QVERIFY(office.note("4712", place(-VehicleStates::mostAhead - 1, 54.1, -2.9)));
        QCOMPARE(office.stored(), QStringList({"4711 54.10 -2.90", "4712"}));
        QCOMPARE(office.office.faults(), QStringList());
    }

    void transactionsArePaced()
    {
        States office(m_server.newDatabase());
        QVERIFY(office.note("4711", place(10, 1.0, 1.0)));
        QCOMPARE(office.stored(), QStringList("4711 1.00 1.00"));
        QVERIFY(office.note("4711", place(9, 2.0, 2.0)));
        QTRY_COMPARE_WITH_TIMEOUT(office.stored(), QStringList("4711 2.00 2.00"), 20000);
    }

    void messagesOfOthersAreLeftAlone_data()
    {
        const Table<QString, bool, int> row("topic", "isTaken", "vehicles");
        row("records", "rivo/lakeside/4711/records", false, 0);
        row("an answer", "rivo/lakeside/4711/acknowledged", false, 0);
        row("a short topic", "alive", false, 0);
        row("a name that is none", "rivo/lakeside/47 11/alive", true, 0);
        row("an operator that is none", "rivo/;/4711/alive", true, 0);
        row("a part more", "rivo/lakeside/4711/alive/x", true, 0);
        row("a vehicle", "rivo/lakeside/4711/alive", true, 1);
    }

    void messagesOfOthersAreLeftAlone()
    {
        QFETCH(QString, topic);
        QFETCH(bool, isTaken);
        States office(m_server.newDatabase());
        QCOMPARE(office.note(topic, "1"), isTaken);
        QTEST(office.stored().size(), "vehicles");
    }

    void whatCannotBeReadIsAFault_data()
    {
        const Table<QString, QByteArray, int> row("what", "message", "faults");
        row("no place", "position", "here", 1);
        row("a place that is none", "position", encode(place(0, 91.0, 0.0)), 1);
        row("a place and more", "position", encode(place(0, 1.0, 0.0)) + 'x', 1);
        row("no devices", "devices", "printer", 1);
        row("many bytes", "position", QByteArray(2000000, 'x'), 1);
        row("neither here nor away", "alive", "maybe", 1);
        row("nothing: the broker forgets what it kept", "alive", "", 0);
    }

    void whatCannotBeReadIsAFault()
    {
        QFETCH(QString, what);
        QFETCH(QByteArray, message);
        QFETCH(int, faults);
        States office(m_server.newDatabase());
        QVERIFY(office.note("rivo/lakeside/4711/" + what, message));
        QCOMPARE(office.stored(), faults > 0 ? QStringList("4711") : QStringList());
        QCOMPARE(office.office.faults(), QStringList("message -1").mid(0, faults));
        if (faults > 0)
            QVERIFY(office.office.value("SELECT length(bytes) FROM fault").toInt() <= 1024);
    }

    void devicesAreStored()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const QVector<DeviceReport> before{{"Printer", 0, "ready"}};
        const QVector<DeviceReport> after{{"Printer", 4, "no paper"},
                                          {QString("G") + QChar(0), 2, "'; DROP TABLE vehicle"}};
        for (const auto& devices : {before, after}) {
            States office(database);
            QVERIFY(office.note("rivo/lakeside/4711/devices", encode(devices)));
            QCOMPARE(office.stored(), QStringList("4711"));
        }
        const States office(database);
        const auto overview = fleetOverview(const_cast<Database&>(office.database));
        const QVector<DeviceReport> stored = overview->vehicles.first().devices;
        QCOMPARE(stored.size(), 2);
        QCOMPARE(stored.first(), after.first());
        QCOMPARE(stored.last().name, QString("G") + QChar(0xFFFD));
        QCOMPARE(stored.last().text, after.last().text);
    }

    void aTextWithAZeroByteIsStored()
    {
        States office(m_server.newDatabase());
        QVERIFY(office.note("4711", place(0, 1.0, 1.0, QString("a") + QChar(0) + "b")));
        QCOMPARE(office.stored(), QStringList(QString("4711 1.00 1.00 a%1b").arg(QChar(0xFFFD))));
    }

    void withoutADatabaseItStaysNoted()
    {
        PostgresServer server;
        QCOMPARE(server.start(), "");
        States office(server.newDatabase());
        QVERIFY(office.note("4711", place(0, 1.0, 1.0)));
        server.kill();
        QVERIFY(!office.states.store());
        QVERIFY(server.resume());
        QVERIFY(office.office.store.open() && office.database.open());
        QTRY_COMPARE_WITH_TIMEOUT(office.stored(), QStringList("4711 1.00 1.00"), 20000);
    }

    void placesArePublishedForApps()
    {
        States office(m_server.newDatabase());
        PositionReport bare = place(longestSilence, -1.5, 2.5);
        bare.direction = qQNaN();
        bare.speed = qQNaN();
        QVERIFY(office.note("4711", place(30, 54.1, -2.9, "7-1")));
        QVERIFY(office.note("silent", place(longestSilence + 1, 54.1, -2.9)));
        QVERIFY(office.note("rivo/lakeside/unknown/alive", "1"));
        QVERIFY(office.note("4714", bare));
        QCOMPARE(office.stored().size(), 4);
        const auto read = office.published();
        QVERIFY2(read.message.has_value(), qPrintable(read.problem));
        QCOMPARE(read.message->time, now.toSecsSinceEpoch());
        QCOMPARE(read.message->vehicles.size(), 2);
        const rivo::live::LiveVehicle& first = read.message->vehicles.at(0);
        QCOMPARE(first.id, "lakeside/4711");
        QCOMPARE(first.label, "4711");
        QCOMPARE(first.trip, "7-1");
        QCOMPARE(first.direction, 90.0);
        QCOMPARE(first.time, now.toSecsSinceEpoch() - 30);
        QVERIFY(first.coordinate.distanceTo(QGeoCoordinate(54.1, -2.9)) < 1.0);
        const rivo::live::LiveVehicle& second = read.message->vehicles.at(1);
        QVERIFY(qIsNaN(second.direction));
        QCOMPARE(second.trip, "");
    }

    void aFleetWithoutPlacesIsAMessage()
    {
        States office(m_server.newDatabase());
        const auto read = office.published();
        QVERIFY(read.message.has_value());
        QCOMPARE(read.message->vehicles.size(), 0);
    }

    void vehiclesThatThePageDoesNotListArePublished()
    {
        States office(m_server.newDatabase());
        QVERIFY(office.office.addVehicles(FleetOverview::mostVehicles + 10, now));
        const auto overview = fleetOverview(office.database);
        QCOMPARE(overview->vehicles.size(), FleetOverview::mostVehicles);
        const auto read = office.published();
        QCOMPARE(read.problem, "");
        QCOMPARE(read.message->vehicles.size(), FleetOverview::mostVehicles + 10);
        QCOMPARE(read.message->vehicles.last().id, "lakeside/105010");
    }

private:
    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestVehicleStates)
#include "tst_vehicle_states.moc"
