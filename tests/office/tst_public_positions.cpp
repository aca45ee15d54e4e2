#include "OfficePage.h"
#include "OfficeUnderTest.h"
#include "Table.h"

#include <FleetOverview.h>
#include <LiveMessage.h>
#include <VehiclePositions.h>
#include <VehicleStates.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace rivo::backoffice;

namespace
{

constexpr int patience = Page::patience;

/// Empty for a file that is not there.
QByteArray bytesOf(const QString& file)
{
    QFile read(file);
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
}

} // namespace

/// The places of vehicles in a file for public apps, by the program, with a database.
class TestPublicPositions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void placesAreWrittenIntoAFile()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const Office office(database);
        QVERIFY(office.addVehicles(1, QDateTime::currentDateTime()));
        const QTemporaryDir folder;
        const QString file = folder.filePath("positions.pb");
        const QStringList where = optionsOf(database);
        QCOMPARE(QProcess::execute(RIVO_OFFICE, QStringList{"positions", "--output", file} + where),
                 0);
        QCOMPARE(rivo::live::readMessage(bytesOf(file)).message->vehicles.size(), 1);
        QCOMPARE(QProcess::execute(RIVO_OFFICE,
                                   QStringList{"positions", "--output", "/nowhere/file"} + where),
                 2);
        QCOMPARE(QProcess::execute(RIVO_OFFICE, QStringList{"positions"} + where), 2);
        QProcess again;
        again.start(RIVO_OFFICE,
                    QStringList{"positions", "--output", file, "--every", "1"} + where);
        QVERIFY(again.waitForStarted(patience));
        for (int time = 0; time < 2; ++time) {
            QVERIFY(QFile::remove(file));
            QTRY_COMPARE_WITH_TIMEOUT(bytesOf(file).isEmpty(), false, patience);
        }
        again.terminate();
        QVERIFY(again.waitForFinished(patience));
        QCOMPARE(again.exitCode(), 0);
    }

    void otherReadersFindThePlaces_data()
    {
        const Table<QStringList, QString> row("options", "text");
        row("by names",
            {"--proto_path=" PROTOCOL, "--decode=rivo.live.wire.FeedMessage",
             "vehicle_positions.proto"},
            R"(header { gtfs_realtime_version: "2.0" incrementality: FULL_DATASET timestamp: NOW } )"
            R"(entity { id: "lakeside/4711" vehicle { trip { trip_id: "7-1" } )"
            R"(position { latitude: 54.125 longitude: -2.875 bearing: 270 speed: 12.5 } )"
            R"(timestamp: FIRST vehicle { id: "lakeside/4711" label: "4711" } } } )"
            R"(entity { id: "lakeside/4712" vehicle { )"
            R"(position { latitude: -33.5 longitude: 151.25 } )"
            R"(timestamp: SECOND vehicle { id: "lakeside/4712" label: "4712" } } })");
        // Numbers of fields in GTFS-Realtime, and bytes of the floating-point numbers above.
        row("by numbers", {"--decode_raw"},
            R"(1 { 1: "2.0" 2: 0 3: NOW } )"
            R"(2 { 1: "lakeside/4711" 4 { 1 { 1: "7-1" } )"
            R"(2 { 1: 0x42588000 2: 0xc0380000 3: 0x43870000 5: 0x41480000 } )"
            R"(5: FIRST 8 { 1: "lakeside/4711" 2: "4711" } } } )"
            R"(2 { 1: "lakeside/4712" 4 { 2 { 1: 0xc2060000 2: 0x43174000 } )"
            R"(5: SECOND 8 { 1: "lakeside/4712" 2: "4712" } } })");
    }

    void otherReadersFindThePlaces()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, text);
        const DatabaseSettings database = m_server.newDatabase();
        const QDateTime before = QDateTime::currentDateTime();
        const QDateTime first = before.addSecs(-30);
        const QDateTime second = before.addSecs(-60);
        Office office(database);
        VehicleStates states(office.store);
        const auto note = [&](const QString& vehicle, const rivo::office::PositionReport& place) {
            return states.note("rivo/lakeside/" + vehicle + "/position", encode(place), before);
        };
        QVERIFY(note("4711", {first, 54.125, -2.875, 270.0, 12.5, "7-1"}));
        QVERIFY(note("4712", {second, -33.5, 151.25, qQNaN(), qQNaN(), {}}));
        QVERIFY(note("silent", {before.addSecs(-longestSilence - 1), 1.0, 2.0, 3.0, 4.0, {}}));
        QVERIFY(states.store());
        const QTemporaryDir folder;
        const QString file = folder.filePath("positions.pb");
        QCOMPARE(QProcess::execute(RIVO_OFFICE, QStringList{"positions", "--output", file} +
                                                    optionsOf(database)),
                 0);
        QProcess reader;
        reader.setStandardInputFile(file);
        reader.start(PROTOC, options);
        QVERIFY(reader.waitForFinished(patience));
        QVERIFY2(reader.exitCode() == 0, reader.readAllStandardError());
        const QString found = QString::fromUtf8(reader.readAllStandardOutput()).simplified();
        // The header's time is the first one.
        const auto time = QRegularExpression(R"(: (\d{9,}) )").match(found);
        QVERIFY2(time.captured(1).toLongLong() >= before.toSecsSinceEpoch(), qPrintable(found));
        QVERIFY(time.captured(1).toLongLong() <= QDateTime::currentSecsSinceEpoch());
        const auto seconds = [](const QDateTime& at) {
            return QString::number(at.toSecsSinceEpoch());
        };
        text.replace("NOW", time.captured(1));
        text.replace("FIRST", seconds(first));
        text.replace("SECOND", seconds(second));
        QCOMPARE(found, text);
    }

    void thePageHasThePlacesOfAllVehicles()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const Office office(database);
        constexpr int vehicles = FleetOverview::mostVehicles + 1;
        QVERIFY(office.addVehicles(vehicles, QDateTime::currentDateTime()));
        const QByteArray answer = Page(database).ask("GET", "/vehicle-positions.pb");
        const auto read = rivo::live::readMessage(Page::bodyOf(answer));
        QCOMPARE(read.problem, "");
        QCOMPARE(read.message->vehicles.size(), vehicles);
    }

    void vehiclesThatAreLeftOutAreReportedOnce()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const Office office(database);
        QVERIFY(office.addVehicles(PublicPositions::mostVehicles + 1,
                                   QDateTime::currentDateTime().addSecs(VehicleStates::mostAhead)));
        const QTemporaryDir folder;
        const QString file = folder.filePath("positions.pb");
        QProcess program;
        program.start(RIVO_OFFICE, QStringList{"positions", "--output", file, "--every", "1"} +
                                       optionsOf(database));
        QVERIFY(program.waitForStarted(patience));
        for (int time = 0; time < 2; ++time) {
            QTRY_VERIFY_WITH_TIMEOUT(bytesOf(file).contains("lakeside/300000"), patience);
            QVERIFY(!bytesOf(file).contains("lakeside/300001"));
            QVERIFY(QFile::remove(file));
        }
        QVERIFY(office.change("DELETE FROM vehicle_state WHERE vehicle ="
                              " (SELECT min(vehicle) FROM vehicle_state)"));
        QTRY_VERIFY_WITH_TIMEOUT(bytesOf(file).contains("lakeside/300001"), patience);
        program.terminate();
        QVERIFY(program.waitForFinished(patience));
        QCOMPARE(program.readAllStandardError(),
                 "rivo-office: more than 200000 vehicles have a place: the positions have the"
                 " first by name\n");
    }

private:
    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestPublicPositions)
#include "tst_public_positions.moc"
