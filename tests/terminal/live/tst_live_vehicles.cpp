#include "LiveVehicles.h"
#include "Outcome.h"
#include "TestNetwork.h"
#include "TestServer.h"

#include <AssetItem.h>
#include <AssetsModel.h>

#include <QElapsedTimer>
#include <QtTest>

#include <zlib.h>

using namespace rivo;
using live::LiveFetcher;
using live::LiveSettings;
using live::LiveVehicles;

namespace
{

QByteArray stored(const QString& name)
{
    QFile file(QStringLiteral(LIVE_TEST_DATA "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray gzip(const QByteArray& content)
{
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    QByteArray packed(static_cast<int>(deflateBound(&stream, static_cast<uLong>(content.size()))),
                      0);
    QByteArray input = content;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

LiveSettings quick(const QUrl& url)
{
    LiveSettings settings;
    settings.url = url;
    settings.interval = 20;
    settings.timeout = 300;
    settings.lastRetry = 80;
    settings.mostBytes = 1 << 20;
    return settings;
}

} // namespace

class LiveVehiclesTest : public QObject
{
    Q_OBJECT

private slots:
    void messages_data();
    void messages();
    void conditionalRequests();
    void faults_data();
    void faults();
    void slowServer();
    void serverThatIsNotThere();
    void faultsThatGoOnAreAskedForLessOften();
    void anEndInTheMiddle();
    void files();
    void filesThatAreNone_data();
    void filesThatAreNone();
    void vehicles();
};

void LiveVehiclesTest::messages_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("message");
    const QByteArray large(900000, 'x');
    QTest::newRow("plain") << TestServer::ok("abc") << QByteArray("abc");
    QTest::newRow("large") << TestServer::ok(large) << large;
    QTest::newRow("empty") << TestServer::ok("") << QByteArray();
    QTest::newRow("packed") << TestServer::ok(gzip(large), "Content-Encoding: gzip\r\n") << large;
    QTest::newRow("identity") << TestServer::ok("abc", "Content-Encoding: identity\r\n")
                              << QByteArray("abc");
    QTest::newRow("in pieces") << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                             "2\r\nab\r\n1\r\nc\r\n0\r\n\r\n")
                               << QByteArray("abc");
}

void LiveVehiclesTest::messages()
{
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, message);
    TestServer server([&](QTcpSocket& socket, const QByteArray&) { socket.write(answer); });
    LiveFetcher fetcher(quick(server.url()));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.received.size() >= 3);
    QCOMPARE(outcome.received.first(), message);
    QCOMPARE(outcome.received.last(), message);
    QCOMPARE(outcome.problems, QStringList());
}

void LiveVehiclesTest::conditionalRequests()
{
    QList<QByteArray> heads;
    TestServer server([&](QTcpSocket& socket, const QByteArray& head) {
        heads.append(head);
        if (head.contains("If-None-Match: \"v1\"\r\n") &&
            head.contains("If-Modified-Since: Sun, 22 Mar 2026 08:00:00 GMT\r\n"))
            socket.write("HTTP/1.1 304 Not Modified\r\n\r\n");
        else
            socket.write(TestServer::ok("abc", "ETag: \"v1\"\r\nLast-Modified: Sun, 22 Mar 2026 "
                                               "08:00:00 GMT\r\n"));
    });
    LiveFetcher fetcher(quick(server.url()));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.unchanged >= 3);
    QCOMPARE(outcome.received.size(), 1);
    QVERIFY(!heads.first().contains("If-None-Match"));
    QVERIFY(heads.first().contains("Accept-Encoding: gzip\r\n"));

    // What could not be read is fetched again.
    outcome.received.clear();
    LiveFetcher second(quick(server.url()));
    Outcome rejected(second);
    connect(&second, &LiveFetcher::received, &second, [&second] { second.reject(); });
    second.start();
    QTRY_VERIFY(rejected.received.size() >= 3);
    QCOMPARE(rejected.unchanged, 0);
}

void LiveVehiclesTest::faults_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("problem"); // a part of it
    QTest::newRow("not found") << QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n")
                               << "Not Found";
    QTest::newRow("overloaded") << QByteArray("HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n")
                                << "Busy";
    QTest::newRow("no content") << QByteArray("HTTP/1.1 204 No Content\r\n\r\n") << "status 204";
    QTest::newRow("noise") << QByteArray("\x00\xff\xfe\n\n\n", 6) << "";
    QTest::newRow("closes at once") << QByteArray() << "";
    QTest::newRow("closes in the middle")
        << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc") << "";
    QTest::newRow("too large") << TestServer::ok(QByteArray((1 << 20) + 1, 'x')) << "too large";
    QTest::newRow("too large and without a length")
        << "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(3 << 20, 'x') << "too large";
    QTest::newRow("too large when unpacked")
        << TestServer::ok(gzip(QByteArray(50 << 20, 'x')), "Content-Encoding: gzip\r\n")
        << "unpacked";
    QTest::newRow("damaged when packed")
        << TestServer::ok(gzip("abcdefgh").replace(12, 3, "zzz"), "Content-Encoding: gzip\r\n")
        << "unpacked";
    QTest::newRow("cut when packed")
        << TestServer::ok(gzip("abcdefgh").left(14), "Content-Encoding: gzip\r\n") << "unpacked";
    QTest::newRow("packed otherwise")
        << TestServer::ok("abc", "Content-Encoding: br\r\n") << "unpacked";
    QTest::newRow("to itself for ever")
        << QByteArray("HTTP/1.1 302 Found\r\nLocation: /vehicles\r\nContent-Length: 0\r\n\r\n")
        << "redirect";
    QTest::newRow("to a file") << QByteArray(
                                      "HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\n"
                                      "Content-Length: 0\r\n\r\n")
                               << "";
    QTest::newRow("a header without an end")
        << "HTTP/1.1 200 OK\r\nX: " + QByteArray(3 << 20, 'x') << "";
}

void LiveVehiclesTest::faults()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, problem);
    bool isGood = false;
    TestServer server([&](QTcpSocket& socket, const QByteArray&) {
        socket.write(isGood ? TestServer::ok("good", "Connection: close\r\n") : answer);
        socket.disconnectFromHost();
    });
    LiveFetcher fetcher(quick(server.url()));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY_WITH_TIMEOUT(outcome.problems.size() >= 2, 10000);
    QVERIFY2(outcome.problems.last().contains(problem), qPrintable(outcome.problems.last()));
    QVERIFY(!outcome.problems.last().isEmpty());
    QVERIFY(outcome.received.isEmpty());
    isGood = true;
    QTRY_COMPARE_WITH_TIMEOUT(outcome.received.value(0), QByteArray("good"), 10000);
}

void LiveVehiclesTest::slowServer()
{
    QTimer drip;
    TestServer server([&](QTcpSocket& socket, const QByteArray&) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
        connect(&drip, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
    });
    drip.start(10);
    LiveFetcher fetcher(quick(server.url()));
    Outcome outcome(fetcher);
    QElapsedTimer timer;
    timer.start();
    fetcher.start();
    QVERIFY(timer.elapsed() < 200); // it does not wait
    QTRY_COMPARE(outcome.problems.value(0), QString("the answer takes too long"));
    QVERIFY(timer.elapsed() >= 300);
    TestServer mute([](QTcpSocket&, const QByteArray&) {});
    LiveFetcher second(quick(mute.url()));
    Outcome nothing(second);
    second.start();
    QTRY_COMPARE(nothing.problems.value(0), QString("the answer takes too long"));
}

void LiveVehiclesTest::serverThatIsNotThere()
{
    quint16 port = 0;
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        port = server.serverPort();
    }
    LiveFetcher fetcher(quick(QUrl(QString("http://127.0.0.1:%1/").arg(port))));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.problems.size() >= 2);
    QVERIFY(outcome.problems.first().contains("refused"));
}

void LiveVehiclesTest::faultsThatGoOnAreAskedForLessOften()
{
    bool isGood = false;
    TestServer server([&](QTcpSocket& socket, const QByteArray&) {
        socket.write(isGood ? TestServer::ok("x")
                            : QByteArray("HTTP/1.1 500 Error\r\nContent-Length: 0\r\n\r\n"));
    });
    LiveSettings settings = quick(server.url());
    settings.interval = 50;
    settings.lastRetry = 400;
    LiveFetcher fetcher(settings);
    Outcome outcome(fetcher);
    fetcher.start();
    QTest::qWait(1200); // at 0, 100, 300, 700 and 1100 ms, instead of 24 times
    QVERIFY2(server.requests() >= 3 && server.requests() <= 5,
             qPrintable(QString::number(server.requests())));
    isGood = true;
    QTRY_VERIFY(outcome.received.size() >= 3);
}

void LiveVehiclesTest::anEndInTheMiddle()
{
    TestServer mute([](QTcpSocket&, const QByteArray&) {});
    auto fetcher = std::make_unique<LiveFetcher>(quick(mute.url()));
    Outcome outcome(*fetcher);
    fetcher->start();
    QTRY_COMPARE(mute.requests(), 1);
    fetcher.reset();
    QCOMPARE(outcome.problems, QStringList());
}

void LiveVehiclesTest::files()
{
    QTemporaryDir folder;
    LiveSettings settings = quick(QUrl());
    settings.file = folder.filePath("vehicles.pb");
    QVERIFY(settings.isThere());
    LiveFetcher fetcher(settings);
    Outcome outcome(fetcher);
    fetcher.start();
    QCOMPARE(outcome.problems, QStringList("there is no such file"));
    const auto write = [&](const QByteArray& content) {
        QSaveFile file(settings.file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        QVERIFY(file.commit());
    };
    write("one");
    QTRY_COMPARE(outcome.received, QList<QByteArray>{"one"});
    QTRY_VERIFY(outcome.unchanged >= 2);
    QCOMPARE(outcome.received.size(), 1);
    write("three");
    QTRY_COMPARE(outcome.received, QList<QByteArray>({"one", "three"}));
}

void LiveVehiclesTest::filesThatAreNone_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("problem");
    QTest::newRow("a folder") << "/"
                              << "there is no such file";
    QTest::newRow("a device that never ends") << "/dev/zero"
                                              << "there is no such file";
    QTest::newRow("too large") << "large"
                               << "the message is too large";
}

void LiveVehiclesTest::filesThatAreNone()
{
    QFETCH(QString, file);
    QTemporaryDir folder;
    QFile large(folder.filePath("large"));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(2 << 20));
    LiveSettings settings = quick(QUrl());
    settings.file = file.startsWith('/') ? file : folder.filePath(file);
    LiveFetcher fetcher(settings);
    Outcome outcome(fetcher);
    fetcher.start();
    QTEST(outcome.problems.value(0), "problem");
}

void LiveVehiclesTest::vehicles()
{
    QByteArray body = stored("everything.pb");
    TestServer server(
        [&](QTcpSocket& socket, const QByteArray&) { socket.write(TestServer::ok(body)); });
    QObject prototypes;
    AssetsModel model(&prototypes);
    const TestNetwork network;
    LiveVehicles vehicles(quick(server.url()), network, fleet::Timetable(network), model,
                          [] { return qint64(1774166400); });
    QStringList states;
    connect(&vehicles, &LiveVehicles::stateChanged, this,
            [&] { states.append(vehicles.stateText()); });
    QCOMPARE(vehicles.stateText(), QString("no answer yet"));
    vehicles.start();
    QTRY_VERIFY(vehicles.isConnected());
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(vehicles.silences().value(4711, -1), 10);
    body = "<html>";
    QTRY_VERIFY(!vehicles.isConnected());
    QCOMPARE(model.rowCount(), 3); // what was known stays
    body = stored("empty.pb");
    QTRY_VERIFY(vehicles.isConnected());
    server.close();
    QCOMPARE(states, QStringList({"3 vehicle(s)", "no message of GTFS-Realtime", "3 vehicle(s)"}));
}

QTEST_GUILESS_MAIN(LiveVehiclesTest)
#include "tst_live_vehicles.moc"
