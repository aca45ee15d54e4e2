#include "OfficeUnderTest.h"
#include "Table.h"

#include <FleetOverview.h>
#include <LiveMessage.h>
#include <VehicleStates.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTest>

#include <memory>
#include <vector>

using namespace rivo::backoffice;
using namespace rivo::sales;

namespace
{

constexpr int patience = 60000;

/// The program, which shows the page until it is destroyed.
class Page
{
public:
    explicit Page(const DatabaseSettings& database, const QString& feed = {})
    {
        QStringList arguments{"web",         "--listen",        "127.0.0.1:0",
                              "--database",  database.name,     "--database-host",
                              database.host, "--database-user", database.user};
        if (!feed.isEmpty())
            arguments << "--feed" << feed;
        m_process.setReadChannel(QProcess::StandardError);
        m_process.start(RIVO_OFFICE, arguments);
        QByteArray said;
        while (!said.contains('\n') && m_process.waitForReadyRead(patience) &&
               m_process.state() == QProcess::Running)
            said += m_process.readAll();
        m_port = said.trimmed().split(' ').last().toUShort();
    }

    ~Page()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    int port() const { return m_port; }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/").arg(m_port); }

    std::unique_ptr<QTcpSocket> connection() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress::LocalHost, quint16(m_port));
        socket->waitForConnected(patience);
        return socket;
    }

    /// All bytes of the answer to a request, until the connection ends.
    QByteArray send(const QByteArray& request) const
    {
        const auto socket = connection();
        socket->write(request);
        QByteArray answer;
        while (socket->state() == QAbstractSocket::ConnectedState &&
               socket->waitForReadyRead(patience))
            answer += socket->readAll();
        return answer + socket->readAll();
    }

    QByteArray ask(const QByteArray& method, const QByteArray& path) const
    {
        return send(method + ' ' + path + " HTTP/1.1\r\nHost: office\r\nConnection: close\r\n\r\n");
    }

    static QByteArray bodyOf(const QByteArray& answer)
    {
        return answer.mid(answer.indexOf("\r\n\r\n") + 4);
    }

    int stop()
    {
        m_process.terminate();
        return m_process.waitForFinished() && m_process.exitStatus() == QProcess::NormalExit
                   ? m_process.exitCode()
                   : -1;
    }

private:
    QProcess m_process;
    quint16 m_port = 0;
};

const QString hostile = QStringLiteral("<img src=x onerror=alert(1)><b>Single</b>");

} // namespace

/// The web page of the office, by the program, with a database.
class TestOfficeWeb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void vehiclesSumsAndFaultsAreTold()
    {
        const DatabaseSettings database = m_server.newDatabase();
        fill(database);
        const Page page(database);
        const QByteArray answer = page.ask("GET", "/fleet.json");
        QVERIFY2(answer.startsWith("HTTP/1.1 200 "), answer);
        const QJsonObject fleet = QJsonDocument::fromJson(Page::bodyOf(answer)).object();
        QCOMPARE(fleet["day"].toString(), QDate::currentDate().toString(Qt::ISODate));
        QCOMPARE(fleet["vehicleCount"].toInt(), 3);
        const QJsonArray vehicles = fleet["vehicles"].toArray();
        QCOMPARE(vehicles[0].toObject()["name"].toString(), "lakeside/4711");
        QCOMPARE(vehicles[0].toObject()["records"].toInt(), 2);
        QVERIFY(!vehicles[0].toObject()["last"].isNull());
        QCOMPARE(vehicles[1].toObject()["name"].toString(), "lakeside/4712");
        QVERIFY(vehicles[1].toObject()["last"].isNull());
        QCOMPARE(vehicles[1].toObject()["faults"].toInt(), 1);
        QVERIFY(!vehicles[0].toObject()["alive"].toBool());
        QVERIFY(vehicles[0].toObject()["position"].isNull());
        const QJsonObject place = vehicles[1].toObject()["position"].toObject();
        QVERIFY(vehicles[1].toObject()["alive"].toBool());
        QCOMPARE(place["latitude"].toDouble(), 54.5);
        QCOMPARE(place["longitude"].toDouble(), 11.25);
        QCOMPARE(place["direction"].toDouble(), 270.0);
        QCOMPARE(place["trip"].toString(), "7-1");
        const QJsonObject sums = fleet["sums"].toObject();
        QCOMPARE(sums.keys(), QStringList({"driver", "product", "route", "vehicle"}));
        QCOMPARE(sums["vehicle"].toArray(), QJsonArray({QJsonObject{{"key", "lakeside/4711"},
                                                                    {"currency", "EUR"},
                                                                    {"tickets", 2},
                                                                    {"sold", "7.95"},
                                                                    {"card", "0.00"},
                                                                    {"reversed", "0.00"},
                                                                    {"total", "7.95"}}}));
        QCOMPARE(fleet["faultCount"].toInt(), 1);
        QCOMPARE(fleet["faults"].toArray()[0].toObject()["kind"].toString(), "message");
    }

    void placesArePublishedForApps()
    {
        const DatabaseSettings database = m_server.newDatabase();
        fill(database);
        const Page page(database);
        const QByteArray answer = page.ask("GET", "/vehicle-positions.pb");
        QVERIFY2(answer.startsWith("HTTP/1.1 200 "), answer);
        QVERIFY(answer.contains("\r\nContent-Type: application/x-protobuf\r\n"));
        const auto read = rivo::live::readMessage(Page::bodyOf(answer));
        QCOMPARE(read.problem, "");
        QCOMPARE(read.message->vehicles.size(), 1);
        QCOMPARE(read.message->vehicles.first().id, "lakeside/4712");
    }

    void placesAreWrittenIntoAFile()
    {
        const DatabaseSettings database = m_server.newDatabase();
        fill(database);
        const QTemporaryDir folder;
        const QString file = folder.filePath("positions.pb");
        const QStringList where{"--database",  database.name,     "--database-host",
                                database.host, "--database-user", database.user};
        QCOMPARE(QProcess::execute(RIVO_OFFICE, QStringList{"positions", "--output", file} + where),
                 0);
        const auto content = [&file] {
            QFile read(file);
            return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
        };
        QCOMPARE(rivo::live::readMessage(content()).message->vehicles.size(), 1);
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
            QTRY_COMPARE_WITH_TIMEOUT(content().isEmpty(), false, patience);
        }
        again.terminate();
        QVERIFY(again.waitForFinished(patience));
        QCOMPARE(again.exitCode(), 0);
    }

    /// As a program sees it that has the definition of messages alone.
    void placesAreReadByOthers()
    {
        const DatabaseSettings database = m_server.newDatabase();
        fill(database);
        const Page page(database);
        const QByteArray message = Page::bodyOf(page.ask("GET", "/vehicle-positions.pb"));
        QProcess reader;
        reader.start("protoc", {"--decode", "rivo.live.wire.FeedMessage", "--proto_path",
                                LIVE_DEFINITION, "vehicle_positions.proto"});
        reader.write(message);
        reader.closeWriteChannel();
        QVERIFY(reader.waitForFinished(patience));
        QCOMPARE(reader.exitCode(), 0);
        const QByteArray read = reader.readAllStandardOutput();
        for (const char* line : {"gtfs_realtime_version: \"2.0\"", "incrementality: FULL_DATASET",
                                 "latitude: 54.5", "longitude: 11.25", "bearing: 270", "speed: 5",
                                 "trip_id: \"7-1\"", "id: \"lakeside/4712\"", "label: \"4712\""})
            QVERIFY2(read.contains(line), read + line);
        QCOMPARE(read.count("entity {"), 1);
    }

    void placesOfAllVehiclesArePublished()
    {
        const DatabaseSettings database = m_server.newDatabase();
        Office office(database);
        constexpr int vehicles = FleetOverview::mostVehicles + 1;
        QVERIFY(
            office.change(QStringLiteral("INSERT INTO vehicle (operator, name) SELECT 'lakeside',"
                                         " number FROM generate_series(1, %1) AS number")
                              .arg(vehicles)));
        QVERIFY(office.change("INSERT INTO vehicle_state (vehicle, alive, position_at, latitude,"
                              " longitude) SELECT id, true, now(), 54, -2 FROM vehicle"));
        const Page page(database);
        const auto read =
            rivo::live::readMessage(Page::bodyOf(page.ask("GET", "/vehicle-positions.pb")));
        QCOMPARE(read.message->vehicles.size(), vehicles);
    }

    void routesAreLinesOfTheMap()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const auto lines = [](const Page& page) {
            return QJsonDocument::fromJson(Page::bodyOf(page.ask("GET", "/routes.json")))
                .object()["lines"]
                .toArray();
        };
        QCOMPARE(lines(Page(database)).size(), 0);
        QVERIFY(!lines(Page(database, EXAMPLE_FEEDS "/coast-line.json")).isEmpty());
    }

    void aFeedThatCannotBeReadIsReported()
    {
        QProcess program;
        program.start(RIVO_OFFICE, {"web", "--listen", "127.0.0.1:0", "--feed", "/nowhere.json"});
        QVERIFY(program.waitForFinished(patience));
        QCOMPARE(program.exitCode(), 2);
        QVERIFY(program.readAllStandardError().contains("/nowhere.json"));
    }

    void whatOnlyReadsCannotWrite()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        const Office office(settings);
        Database database(settings);
        QVERIFY(database.openToRead());
        QVERIFY(database.run("SELECT COUNT(*) FROM vehicle") != nullptr);
        QVERIFY(database.run("INSERT INTO vehicle (operator, name) VALUES ('a', 'b')") == nullptr);
        QVERIFY2(database.problem().contains("read-only"), qPrintable(database.problem()));
    }

    void onlyWhatIsThereIsShown_data()
    {
        const Table<QByteArray, QByteArray, QByteArray> row("method", "path", "status");
        row("the page", "GET", "/", "200 OK");
        row("its style", "GET", "/page.css", "200 OK");
        row("its script", "GET", "/page.js?1", "200 OK");
        row("the page without its content", "HEAD", "/", "200 OK");
        row("no such page", "GET", "/admin", "404 Not Found");
        row("a file of the machine", "GET", "/../../../../etc/passwd", "404 Not Found");
        row("a file of the resources", "GET", "/:/office/index.html", "404 Not Found");
        row("a form", "POST", "/", "405 Method Not Allowed");
        row("a change", "PUT", "/fleet.json", "405 Method Not Allowed");
        row("a method that is none", "SELL", "/", "405 Method Not Allowed");
    }

    void onlyWhatIsThereIsShown()
    {
        QFETCH(QByteArray, method);
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, status);
        const Page page(m_server.newDatabase());
        const QByteArray answer = page.ask(method, path);
        QVERIFY2(answer.startsWith("HTTP/1.1 " + status + "\r\n"), answer);
        QVERIFY(answer.contains("\r\nContent-Security-Policy: default-src 'none'; "));
        QVERIFY(answer.contains("\r\nX-Content-Type-Options: nosniff\r\n"));
        QCOMPARE(answer.contains("\r\nAllow: GET, HEAD\r\n"), status.startsWith("405"));
        QCOMPARE(Page::bodyOf(answer).isEmpty(), method == "HEAD");
    }

    void aDatabaseThatIsAwayIsLookedForAgain()
    {
        const DatabaseSettings database = m_server.newDatabase();
        Page page(database);
        // No program has made the tables yet.
        QVERIFY(page.ask("GET", "/fleet.json").startsWith("HTTP/1.1 503 "));
        fill(database);
        QTRY_VERIFY_WITH_TIMEOUT(page.ask("GET", "/fleet.json").startsWith("HTTP/1.1 200 "),
                                 patience);
        m_server.kill();
        QTRY_VERIFY_WITH_TIMEOUT(page.ask("GET", "/fleet.json").startsWith("HTTP/1.1 503 "),
                                 patience);
        QCOMPARE(QJsonDocument::fromJson(Page::bodyOf(page.ask("GET", "/fleet.json")))
                     .object()["problem"]
                     .toString(),
                 "the database cannot be reached");
        QVERIFY(m_server.resume());
        QTRY_VERIFY_WITH_TIMEOUT(page.ask("GET", "/fleet.json").startsWith("HTTP/1.1 200 "),
                                 patience);
        QCOMPARE(page.stop(), 0);
    }

    void nonsenseHoldsNothingUp_data()
    {
        const Table<QByteArray> row("request");
        row("no request", "hello\r\n\r\n");
        row("a header without an end", "GET / HTTP/1.1\r\nX: " + QByteArray(200000, 'x'));
        row("many headers", "GET / HTTP/1.1\r\n" + QByteArray("X: y\r\n").repeated(20000) + "\r\n");
        row("a long path", "GET /" + QByteArray(100000, 'x') + " HTTP/1.1\r\n\r\n");
        row("a body of many bytes",
            "POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999999\r\n\r\n" +
                QByteArray(100000, 'x'));
    }

    void nonsenseHoldsNothingUp()
    {
        QFETCH(QByteArray, request);
        const Page page(m_server.newDatabase());
        const QByteArray answer = page.send(request);
        QVERIFY2(!answer.contains(" 200 OK"), answer.left(100));
        QVERIFY(page.ask("GET", "/").startsWith("HTTP/1.1 200 "));
    }

    /// Those that say nothing are closed after a while.
    void idleConnectionsHoldNothingUpForLong()
    {
        const Page page(m_server.newDatabase());
        std::vector<std::unique_ptr<QTcpSocket>> idle(100);
        for (auto& each : idle) {
            each = page.connection();
            each->write("GET / HTTP/1.1\r\n");
            each->flush();
        }
        QTRY_VERIFY_WITH_TIMEOUT(page.ask("GET", "/").startsWith("HTTP/1.1 200 "), patience);
    }

    void aBrowserShowsTextsAsTexts()
    {
        const DatabaseSettings database = m_server.newDatabase();
        fill(database);
        const Page page(database, EXAMPLE_FEEDS "/coast-line.json");
        QDir(PICTURES).mkpath(".");
        QProcess browser;
        browser.start(LOOK_AT_PAGE, {page.url(), PICTURES, "1280x800", "800x480"});
        QVERIFY(browser.waitForFinished(4 * patience));
        if (browser.exitCode() == 77)
            QSKIP("chromium and its driver are not installed");
        QVERIFY2(browser.exitCode() == 0, browser.readAllStandardError());
        const QJsonObject seen = QJsonDocument::fromJson(browser.readAllStandardOutput()).object();
        QCOMPARE(seen["state"].toString(), "");
        QCOMPARE(seen["strange"].toInt(), 0);
        QCOMPARE(seen["wide"].toBool(), false);
        QCOMPARE(seen["lines"].toArray(),
                 QJsonArray({QJsonArray({hostile, "1", "2.95", "0.00", "0.00", "2.95", "EUR"}),
                             QJsonArray({"Single", "1", "5.00", "0.00", "0.00", "5.00", "EUR"})}));
        QCOMPARE(seen["drivers"].toArray().size(), 1);
        QCOMPARE(seen["onMap"].toArray(), QJsonArray({"4712", "4713"}));
        QCOMPARE(seen["marks"].toArray(), QJsonArray({"vehicle", "vehicle away stale"}));
        QVERIFY(seen["ways"].toInt() > 0);
        const QJsonArray vehicle = seen["vehicles"].toArray()[1].toArray();
        QCOMPARE(vehicle[0].toString(), "lakeside/4712");
        QCOMPARE(vehicle[3].toString(), "1");
        QCOMPARE(vehicle[4].toString(), "Printer: " + hostile);
        QCOMPARE(seen["faults"].toArray()[0].toArray()[1].toString(), "rivo/lakeside/4712/records");
    }

    void whatCannotBeListenedOnIsReported_data()
    {
        const Table<QString> row("address");
        row("no port", "127.0.0.1");
        row("a port that is none", "127.0.0.1:99999");
        row("an address of another machine", "192.0.2.1:8080");
        row("a name that is none", "..:8080");
        row("nothing", "");
    }

    void whatCannotBeListenedOnIsReported()
    {
        QFETCH(QString, address);
        QProcess program;
        program.start(RIVO_OFFICE, {"web", "--listen", address});
        QVERIFY(program.waitForFinished(patience));
        QCOMPARE(program.exitCode(), 2);
        QVERIFY(program.readAllStandardError().startsWith("rivo-office: "));
    }

private:
    /// Three vehicles of today: one that sold, one that sent nonsense, and one that was last seen
    /// too long ago for the public.
    static void fill(const DatabaseSettings& database)
    {
        Office office(database);
        office.now = QDateTime::currentDateTime();
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.confirmSale({ticket(500, "Single")}, {}, office.now));
        QVERIFY(vehicle.journal.confirmSale({ticket(295, hostile)}, {}, office.now));
        QCOMPARE(office.take(vehicle.batch()), "2");
        QCOMPARE(office.take("hello", "rivo/lakeside/4712/records"), "none");
        VehicleStates states(office.store);
        QVERIFY(states.note("rivo/lakeside/4712/alive", "1", office.now));
        QVERIFY(states.note(
            "rivo/lakeside/4712/position",
            encode(rivo::office::PositionReport{office.now, 54.5, 11.25, 270.0, 5.0, "7-1"}),
            office.now));
        QVERIFY(states.note("rivo/lakeside/4712/devices",
                            encode(QVector<rivo::office::DeviceReport>{{"Position", 2, "no fix"},
                                                                       {"Printer", 4, hostile}}),
                            office.now));
        QVERIFY(states.note("rivo/lakeside/4713/position",
                            encode(rivo::office::PositionReport{office.now.addSecs(-660), 54.5193,
                                                                11.2658, 90.0, 5.0, "7-2"}),
                            office.now));
        QVERIFY(states.store());
    }

    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestOfficeWeb)
#include "tst_office_web.moc"
