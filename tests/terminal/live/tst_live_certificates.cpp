#include "Outcome.h"
#include "TestCertificates.h"
#include "TestServer.h"

#include <QtTest>

#include <memory>

using namespace rivo;
using live::Certificates;
using live::LiveFetcher;
using live::LiveSettings;

namespace
{

LiveSettings settingsFor(const QUrl& url, const Certificates& certificates)
{
    LiveSettings settings;
    settings.url = url;
    settings.interval = 20;
    settings.lastRetry = 80;
    settings.certificates = certificates;
    return settings;
}

} // namespace

/// A server that is not the operator's gets no request, and its answer is not read.
class LiveCertificatesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_ours.reset(); }
    void serversThatAreTrusted_data();
    void serversThatAreTrusted();
    void serversThatAreNotTrusted_data();
    void serversThatAreNotTrusted();
    void aClientWithoutACertificateIsTurnedAway();
    void filesThatAreNone_data();
    void filesThatAreNone();
    void aFileThatIsReplacedCounts();
    void texts_data();
    void texts();

private:
    QString file(const QString& name) const { return name.isEmpty() ? name : m_ours->file(name); }

    std::unique_ptr<TestCertificates> m_ours;
    std::unique_ptr<TestCertificates> m_others;
};

void LiveCertificatesTest::initTestCase()
{
    if (!TestCertificates::canBeMade())
        QSKIP("openssl is not installed");
    m_ours = std::make_unique<TestCertificates>("ours");
    m_others = std::make_unique<TestCertificates>("others");
    m_ours->make("server", "localhost");
    m_ours->make("elsewhere", "elsewhere.example");
    m_ours->make("expired", "localhost", -1);
    m_ours->make("bus", "bus-4711");
    m_others->make("server", "localhost");
    m_others->make("bus", "bus-4711");
}

void LiveCertificatesTest::serversThatAreTrusted_data()
{
    QTest::addColumn<bool>("asksClients");
    QTest::addColumn<QString>("certificate");
    QTest::newRow("a server that takes all") << false << "";
    QTest::newRow("a server that takes all, and a client with a certificate") << false << "bus";
    QTest::newRow("a server that takes clients with a certificate") << true << "bus";
}

void LiveCertificatesTest::serversThatAreTrusted()
{
    QFETCH(bool, asksClients);
    QFETCH(QString, certificate);
    TestServer server(
        [](QTcpSocket& socket, const QByteArray&) { socket.write(TestServer::ok("abc")); });
    server.setTls(asksClients ? m_ours->serverForClients("server") : m_ours->serverWith("server"));
    const bool hasOwn = !certificate.isEmpty();
    LiveFetcher fetcher(
        settingsFor(server.url(), {file("ca.pem"), hasOwn ? file(certificate + ".pem") : QString(),
                                   hasOwn ? file(certificate + ".key") : QString()}));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.received.size() >= 2);
    QCOMPARE(outcome.received.first(), QByteArray("abc"));
    QCOMPARE(outcome.problems, QStringList());
}

void LiveCertificatesTest::serversThatAreNotTrusted_data()
{
    QTest::addColumn<QString>("server");
    QTest::addColumn<bool>("isOthers");
    QTest::addColumn<bool>("hasCaFile");
    QTest::addColumn<QString>("problem");
    QTest::newRow("another name") << "elsewhere" << false << true
                                  << "the certificate of the server is for another name";
    QTest::newRow("expired") << "expired" << false << true
                             << "the certificate of the server has expired";
    QTest::newRow("of another authority")
        << "server" << true << true << "the certificate of the server is not trusted";
    QTest::newRow("of an authority that the system does not know")
        << "server" << false << false << "the certificate of the server is not trusted";
}

void LiveCertificatesTest::serversThatAreNotTrusted()
{
    QFETCH(QString, server);
    QFETCH(bool, isOthers);
    QFETCH(bool, hasCaFile);
    QFETCH(QString, problem);
    TestServer host(
        [](QTcpSocket& socket, const QByteArray&) { socket.write(TestServer::ok("abc")); });
    host.setTls((isOthers ? m_others : m_ours)->serverWith(server));
    LiveFetcher fetcher(settingsFor(host.url(), {hasCaFile ? file("ca.pem") : QString(), {}, {}}));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.problems.size() >= 2); // it is asked again
    QCOMPARE(outcome.problems.first(), problem);
    QCOMPARE(outcome.problems.last(), problem);
    QCOMPARE(outcome.received.size(), 0);
    QCOMPARE(host.requests(), 0);
}

/// By the server, which says so after the handshake or ends the connection.
void LiveCertificatesTest::aClientWithoutACertificateIsTurnedAway()
{
    TestServer server(
        [](QTcpSocket& socket, const QByteArray&) { socket.write(TestServer::ok("abc")); });
    server.setTls(m_ours->serverForClients("server"));
    LiveFetcher fetcher(settingsFor(server.url(), {file("ca.pem"), {}, {}}));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.problems.size() >= 2);
    QVERIFY(!outcome.problems.first().isEmpty());
    QCOMPARE(outcome.received.size(), 0);
    QCOMPARE(server.requests(), 0);
}

void LiveCertificatesTest::filesThatAreNone_data()
{
    QTest::addColumn<QStringList>("names"); // of Certificates
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("wrong");
    QTest::newRow("no file of the authority")
        << QStringList{"none.pem", "", ""} << "no certificate in"
        << "none.pem";
    QTest::newRow("a key instead of the authority's certificate")
        << QStringList{"ca.key", "", ""} << "no certificate in"
        << "ca.key";
    QTest::newRow("no file of the certificate")
        << QStringList{"ca.pem", "none.pem", "bus.key"} << "no certificate in"
        << "none.pem";
    QTest::newRow("no file of the key")
        << QStringList{"ca.pem", "bus.pem", "none.key"} << "no private key in"
        << "none.key";
    QTest::newRow("a certificate instead of the key")
        << QStringList{"ca.pem", "bus.pem", "bus.pem"} << "no private key in"
        << "bus.pem";
}

void LiveCertificatesTest::filesThatAreNone()
{
    QFETCH(QStringList, names);
    QFETCH(QString, problem);
    QFETCH(QString, wrong);
    TestServer server(
        [](QTcpSocket& socket, const QByteArray&) { socket.write(TestServer::ok("abc")); });
    server.setTls(m_ours->serverWith("server"));
    LiveFetcher fetcher(
        settingsFor(server.url(), {file(names.at(0)), file(names.at(1)), file(names.at(2))}));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.problems.size() >= 2);
    QCOMPARE(outcome.problems.first(), problem + " " + file(wrong));
    QCOMPARE(server.requests(), 0);
}

void LiveCertificatesTest::aFileThatIsReplacedCounts()
{
    TestServer server(
        [](QTcpSocket& socket, const QByteArray&) { socket.write(TestServer::ok("abc")); });
    server.setTls(m_ours->serverWith("server"));
    const QTemporaryDir folder;
    const QString trusted = folder.filePath("trusted.pem");
    QVERIFY(QFile::copy(m_others->file("ca.pem"), trusted));
    LiveFetcher fetcher(settingsFor(server.url(), {trusted, {}, {}}));
    Outcome outcome(fetcher);
    fetcher.start();
    QTRY_VERIFY(outcome.problems.size() >= 2);
    QCOMPARE(outcome.received.size(), 0);
    QVERIFY(QFile::remove(trusted));
    QVERIFY(QFile::copy(m_ours->file("ca.pem"), trusted));
    QTRY_VERIFY(outcome.received.size() >= 2);
}

void LiveCertificatesTest::texts_data()
{
    QTest::addColumn<QList<QSslError>>("errors");
    QTest::addColumn<QString>("text");
    const auto list = [](QSslError::SslError error) { return QList<QSslError>{QSslError(error)}; };
    QTest::newRow("not valid yet") << list(QSslError::CertificateNotYetValid)
                                   << "the certificate of the server is not valid yet";
    QTest::newRow("signed by itself")
        << list(QSslError::SelfSignedCertificate) << "the certificate of the server is not trusted";
    QTest::newRow("the reason that says most")
        << list(QSslError::UnableToGetLocalIssuerCertificate) + list(QSslError::CertificateExpired)
        << "the certificate of the server has expired";
}

void LiveCertificatesTest::texts()
{
    QFETCH(QList<QSslError>, errors);
    QFETCH(QString, text);
    QCOMPARE(live::textOf(errors), text);
}

QTEST_GUILESS_MAIN(LiveCertificatesTest)
#include "tst_live_certificates.moc"
