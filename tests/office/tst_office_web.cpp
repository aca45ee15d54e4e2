#include "OfficePage.h"
#include "OfficeUnderTest.h"
#include "Table.h"

#include <LiveMessage.h>
#include <VehicleStates.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTest>

#include <memory>
#include <vector>

using namespace rivo::backoffice;
using namespace rivo::sales;

namespace
{

constexpr int patience = Page::patience;

QStringList textsOf(const QJsonArray& array)
{
    QStringList texts;
    for (const auto& each : array)
        texts.append(each.toString());
    return texts;
}

/// Of looks, such as "vehicle away rgb(1, 2, 3) rgb(4, 5, 6)".
QStringList classesOf(const QStringList& looks)
{
    QStringList classes;
    for (const QString& look : looks)
        classes.append(look.section(" rgb", 0, 0));
    return classes;
}

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
        QCOMPARE(fleet["vehicleCount"].toInt(), 2);
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
        QCOMPARE(place["latitude"].toDouble(), 54.1);
        QCOMPARE(place["longitude"].toDouble(), -2.9);
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

    void onlyWhatIsThereIsShown_data()
    {
        const Table<QByteArray, QByteArray, QByteArray> row("method", "path", "status");
        row("the page", "GET", "/", "200 OK");
        row("its style", "GET", "/page.css", "200 OK");
        row("routes", "GET", "/routes.json", "200 OK");
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
        addPlaces(database);
        const QTemporaryDir folder;
        const QString feed = folder.filePath("feed.json");
        QVERIFY(writeFeed(feed));
        const Page page(database, {"--feed", feed});
        QJsonObject seen;
        if (!look(page, {"1280x800", "800x480"}, seen))
            QSKIP("chromium and its driver are not installed");
        QCOMPARE(seen["state"], QJsonValue(""));
        QCOMPARE(seen["strange"].toInt(), 0);
        QCOMPARE(seen["wide"].toBool(), false);
        QCOMPARE(seen["lines"].toArray(),
                 QJsonArray({QJsonArray({hostile, "1", "2.95", "0.00", "0.00", "2.95", "EUR"}),
                             QJsonArray({"Single", "1", "5.00", "0.00", "0.00", "5.00", "EUR"})}));
        QCOMPARE(seen["drivers"].toArray().size(), 1);
        QCOMPARE(seen["onMap"].toArray(), QJsonArray({"4712", "4713", "4714", "4715", "4716"}));
        const QStringList marks = textsOf(seen["marks"].toArray());
        QCOMPARE(classesOf(marks), QStringList({"vehicle", "vehicle", "vehicle stale",
                                                "vehicle away stale", "vehicle away"}));
        QCOMPARE(QSet<QString>(marks.begin(), marks.end()).size(), 4);
        const QJsonArray legend = seen["legend"].toArray();
        QStringList names;
        QStringList looks;
        for (const auto& line : legend) {
            names.append(line.toArray()[0].toString());
            looks.append(line.toArray()[1].toString());
        }
        QCOMPARE(names, QStringList(
                            {"connected", "not connected", "place older than 5 minutes", "route"}));
        QCOMPARE(looks.mid(0, 3), QStringList({marks[0], marks[4], marks[2]}));
        QCOMPARE(seen["ways"].toArray(),
                 QJsonArray({QJsonArray({hostile, 3, "none"}), QJsonArray({"9", 2, "none"})}));
        QCOMPARE(seen["waysBelow"].toInt(), 5);
        const QJsonArray vehicle = seen["vehicles"].toArray()[1].toArray();
        QCOMPARE(vehicle[0].toString(), "lakeside/4712");
        QCOMPARE(vehicle[3].toString(), "1");
        QCOMPARE(vehicle[4].toString(), "Printer: " + hostile);
        QCOMPARE(seen["faults"].toArray()[0].toArray()[1].toString(), "rivo/lakeside/4712/records");
    }

    void withoutPlacesAndRoutesThereIsNoMap()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const Office office(database);
        const Page page(database);
        QJsonObject seen;
        if (!look(page, {}, seen))
            QSKIP("chromium and its driver are not installed");
        QCOMPARE(seen["state"], QJsonValue(""));
        QCOMPARE(seen["shown"].toArray(), QJsonArray({"nowhere"}));
        QCOMPARE(seen["ways"].toArray(), QJsonArray());
    }

    void placesWithoutRoutesAreAMap()
    {
        const DatabaseSettings database = m_server.newDatabase();
        addPlaces(database);
        const Page page(database);
        QJsonObject seen;
        if (!look(page, {}, seen))
            QSKIP("chromium and its driver are not installed");
        QCOMPARE(seen["shown"].toArray(), QJsonArray({"map", "legend"}));
        QCOMPARE(seen["legend"].toArray().size(), 3);
        QCOMPARE(seen["marks"].toArray().size(), 4);
        QCOMPARE(seen["ways"].toArray(), QJsonArray());
    }

    void routesWithoutPlacesAreAMap()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const Office office(database);
        const Page page(database, {"--feed", EXAMPLE_FEEDS "/coast-line.json"});
        QJsonObject seen;
        if (!look(page, {}, seen))
            QSKIP("chromium and its driver are not installed");
        QCOMPARE(seen["shown"].toArray(), QJsonArray({"map", "legend", "nowhere"}));
        QCOMPARE(seen["ways"].toArray().size(), 4);
    }

    /// One wrong place does not make all lines small.
    void vehiclesBeyondTheRoutesAreAtTheEdge()
    {
        const DatabaseSettings database = m_server.newDatabase();
        addPlaces(database);
        const Page page(database, {"--feed", EXAMPLE_FEEDS "/coast-line.json"});
        QJsonObject seen;
        if (!look(page, {}, seen))
            QSKIP("chromium and its driver are not installed");
        QCOMPARE(seen["marks"].toArray().size(), 4);
        QCOMPARE(seen["outside"], QJsonValue(0));
        QVERIFY(seen["widest"].toDouble() > 500);
    }

    void routesOfAFeedAreLines()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const auto linesOf = [&](const QStringList& more) {
            const QByteArray answer = Page(database, more).ask("GET", "/routes.json");
            return QJsonDocument::fromJson(Page::bodyOf(answer)).array();
        };
        QCOMPARE(linesOf({}), QJsonArray());
        const QJsonArray lines = linesOf({"--feed", EXAMPLE_FEEDS "/coast-line.json"});
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0].toObject()["route"].toString(), "12");
        const QJsonArray points = lines[0].toObject()["points"].toArray();
        QCOMPARE(points[0].toDouble(), 54.4905);
        QCOMPARE(points[1].toDouble(), 11.1902);
    }

    void aFeedThatCannotBeReadIsReported_data()
    {
        const Table<QByteArray, QByteArray> row("content", "problem");
        row("no feed", "hello", "expected an object");
        row("a feed without its version", R"({"format": "rivo-feed"})", "version");
        row("no file", "", "expected a readable file");
    }

    void aFeedThatCannotBeReadIsReported()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, problem);
        const QTemporaryDir folder;
        const QString name = folder.filePath("feed.json");
        QFile file(name);
        if (!content.isEmpty())
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) > 0);
        file.close();
        QProcess program;
        program.start(RIVO_OFFICE, {"web", "--listen", "127.0.0.1:0", "--feed", name});
        QVERIFY(program.waitForFinished(patience));
        QCOMPARE(program.exitCode(), 2);
        const QByteArray said = program.readAllStandardError();
        QVERIFY2(said.startsWith(name.toUtf8()) && said.contains(problem), said);
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
    /// What a browser shows, with pictures of these sizes. False if there is no browser.
    static bool look(const Page& page, const QStringList& sizes, QJsonObject& seen)
    {
        QDir(PICTURES).mkpath(".");
        QProcess browser;
        browser.start(LOOK_AT_PAGE, QStringList{page.url(), PICTURES} + sizes);
        constexpr int isMissing = 77;
        if (browser.waitForFinished(4 * patience) && browser.exitCode() == isMissing)
            return false;
        if (browser.exitCode() != 0)
            qWarning("%s", browser.readAllStandardError().constData());
        seen = QJsonDocument::fromJson(browser.readAllStandardOutput()).object();
        return true;
    }

    /// Two vehicles of today: one that sold, and one that sent nonsense.
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
            encode(rivo::office::PositionReport{office.now, 54.1, -2.9, 270.0, 5.0, "7-1"}),
            office.now));
        QVERIFY(states.note("rivo/lakeside/4712/devices",
                            encode(QVector<rivo::office::DeviceReport>{{"Position", 2, "no fix"},
                                                                       {"Printer", 4, hostile}}),
                            office.now));
        QVERIFY(states.store());
    }

    /// A route with a hostile name and a shape, and one from stop to stop.
    static bool writeFeed(const QString& name)
    {
        QFile example(EXAMPLE_FEEDS "/coast-line.json");
        QFile file(name);
        if (!example.open(QIODevice::ReadOnly) || !file.open(QIODevice::WriteOnly))
            return false;
        QJsonObject feed = QJsonDocument::fromJson(example.readAll()).object();
        const auto array = [](const char* json) { return QJsonDocument::fromJson(json).array(); };
        QJsonArray routes = array(R"([{"id": 12}, {"id": 9, "shortName": "9"}])");
        routes[0] = QJsonObject{{"id", 12}, {"shortName", hostile}};
        QJsonObject network = feed["network"].toObject();
        network["routes"] = routes;
        network["shapes"] =
            array(R"([{"id": "s", "points": [[54.09, -2.92], [54.12, -2.8], [54.15, -2.79]]}])");
        network["stops"] = array(R"([{"id": 1, "name": "A", "latitude": 54.09, "longitude": -2.75},
                                     {"id": 2, "name": "B", "latitude": 54.14, "longitude": -2.9}])");
        network["trips"] = array(R"([
            {"id": 1, "routeId": 12, "shapeId": "s", "stopTimes": [{"stopId": 1, "departure": "04:00:00"},
                                                                    {"stopId": 2, "arrival": "04:10:00"}]},
            {"id": 2, "routeId": 9, "stopTimes": [{"stopId": 1, "departure": "04:00:00"},
                                                  {"stopId": 2, "arrival": "04:10:00"}]}])");
        feed["network"] = network;
        feed.remove("trip");
        return file.write(QJsonDocument(feed).toJson()) > 0;
    }

    /// More vehicles with a place: on time, late, late and away, away.
    static void addPlaces(const DatabaseSettings& database)
    {
        Office office(database);
        VehicleStates states(office.store);
        const QDateTime now = QDateTime::currentDateTime();
        const auto add = [&](const QString& name, bool isAlive, int secondsAgo, double latitude,
                             double direction) {
            const QString topic = "rivo/lakeside/" + name;
            QVERIFY(states.note(topic + "/alive", isAlive ? "1" : "0", now));
            QVERIFY(states.note(
                topic + "/position",
                encode(rivo::office::PositionReport{now.addSecs(-secondsAgo), latitude,
                                                    -2.9 + latitude / 700, direction, 5.0, "7-1"}),
                now));
        };
        add("4713", true, 120, 54.11, 45.0);
        add("4714", true, 301, 54.12, 90.0);
        add("4715", false, 301, 54.13, qQNaN());
        add("4716", false, 120, 54.14, qQNaN());
        QVERIFY(states.store());
    }

    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestOfficeWeb)
#include "tst_office_web.moc"
