#include "Broker.h"
#include "OfficeUnderTest.h"
#include "Table.h"
#include "TestCertificates.h"
#include "ToolRunner.h"

#include <Outbox.h>

#include <QSignalSpy>
#include <QTest>

#include <csignal>

#include <sys/types.h>

using namespace rivo::backoffice;
using namespace rivo::office;

namespace
{

constexpr int patience = 60000;

/// A vehicle that sends: its journal, its outbox and its connection.
struct Vehicle : VehicleJournal
{
    Vehicle(const BrokerSettings& settings, const Topics& names = {"lakeside", "4711"})
        : topics(names), outbox(journal, {3, 20, 500, 500}), link(settings)
    {
        link.subscribe(topics.acknowledged());
        QObject::connect(&outbox, &Outbox::ready, &link, [this](const QByteArray& message) {
            link.publish(topics.records(), message);
        });
        QObject::connect(&link, &BrokerLink::connected, &outbox,
                         [this] { outbox.setConnected(true); });
        QObject::connect(&link, &BrokerLink::disconnected, &outbox,
                         [this] { outbox.setConnected(false); });
        QObject::connect(
            &link, &BrokerLink::received, &outbox,
            [this](const QString&, const QByteArray& message) { outbox.take(message); });
    }

    Topics topics;
    Outbox outbox;
    BrokerLink link;
};

/// The program, which serves until it is destroyed.
struct Serving
{
    Serving(const Broker& broker, const DatabaseSettings& database, const QStringList& more = {})
    {
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(RIVO_OFFICE, QStringList{"serve", "--broker", "127.0.0.1", "--port",
                                               QString::number(broker.port()), "--database",
                                               database.name, "--database-host", database.host,
                                               "--database-user", database.user} +
                                       more);
    }

    ~Serving()
    {
        process.kill();
        process.waitForFinished();
    }

    /// Its exit code when it is asked to end.
    int stop()
    {
        process.terminate();
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
                   ? process.exitCode()
                   : -1;
    }

    bool says(const QByteArray& text)
    {
        messages += process.readAll();
        return messages.contains(text);
    }

    QProcess process;
    QByteArray messages;
};

} // namespace

/// The program of the office, with a broker and a database.
class TestRivoOffice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
        if (!Broker::isInstalled())
            QSKIP("mosquitto is not installed");
    }

    void recordsArriveWhateverIsKilled()
    {
        const DatabaseSettings database = m_server.newDatabase();
        Broker broker;
        Vehicle vehicle(broker.settings("4711"));
        auto office = std::make_unique<Serving>(broker, database);
        QVERIFY(vehicle.link.start() && sellSome(vehicle));
        QTRY_VERIFY_WITH_TIMEOUT(office->says("no broker"), patience);
        QVERIFY(broker.start());
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 4, patience);
        m_server.kill();
        QVERIFY(sellSome(vehicle));
        QTRY_VERIFY_WITH_TIMEOUT(office->says("no database"), patience);
        QVERIFY(m_server.resume());
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 8, patience);
        broker.kill();
        QVERIFY(sellSome(vehicle));
        QVERIFY(broker.start());
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 12, patience);
        office.reset();
        QVERIFY(sellSome(vehicle));
        QTest::qWait(200);
        QCOMPARE(vehicle.outbox.acknowledged(), 12);
        office = std::make_unique<Serving>(broker, database);
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 16, patience);
        QCOMPARE(office->stop(), 0);
        QCOMPARE(valueIn(database, "SELECT count(*) FROM record"), "17");
        QCOMPARE(valueIn(database, "SELECT sum(price) FROM ticket"), "80");
        QCOMPARE(valueIn(database, "SELECT count(*) FROM fault WHERE kind <> 'clock'"), "0");
    }

    void programsShareTheVehicles()
    {
        const DatabaseSettings database = m_server.newDatabase();
        Broker broker;
        QVERIFY(broker.start());
        Serving first(broker, database);
        Serving second(broker, database);
        QTRY_VERIFY_WITH_TIMEOUT(first.says("takes records") && second.says("takes records"),
                                 patience);
        Vehicle vehicle(broker.settings("4711"));
        QVERIFY(vehicle.link.start() && sellSome(vehicle));
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 4, patience);
        QCOMPARE(first.stop(), 0);
        QVERIFY(sellSome(vehicle));
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 8, patience);
        QCOMPARE(valueIn(database, "SELECT count(*) FROM record"), "9");
    }

    /// The broker takes the name of a client from its certificate, and gives each its own topics.
    void vehiclesPublishOnlyAsThemselves()
    {
        if (!TestCertificates::canBeMade())
            QSKIP("openssl is not installed");
        const TestCertificates certificates("Rivo test authority");
        certificates.make("broker", "localhost");
        for (const char* name : {"4711", "4712", "office"})
            certificates.make(name, name);
        const DatabaseSettings database = m_server.newDatabase();
        Broker broker;
        const QString access = broker.write(
            "access",
            "user office\ntopic read rivo/+/+/records\ntopic read $share/office/rivo/+/+/records\n"
            "topic write rivo/+/+/acknowledged\n"
            "pattern write rivo/lakeside/%u/records\n"
            "pattern read rivo/lakeside/%u/acknowledged\n");
        QVERIFY(broker.start("cafile " + certificates.file("ca.pem").toUtf8() + "\ncertfile " +
                             certificates.file("broker.pem").toUtf8() + "\nkeyfile " +
                             certificates.file("broker.key").toUtf8() +
                             "\nrequire_certificate true\nuse_identity_as_username true\n"
                             "allow_anonymous false\nacl_file " +
                             access.toUtf8() + "\n"));
        Serving office(broker, database,
                       {"--broker", "localhost", "--authority", certificates.file("ca.pem"),
                        "--certificate", certificates.file("office.pem"), "--key",
                        certificates.file("office.key")});
        const auto settings = [&](const QString& name) {
            BrokerSettings made = broker.settings(name);
            made.host = "localhost";
            made.authority = certificates.file("ca.pem");
            made.certificate = certificates.file(name + ".pem");
            made.key = certificates.file(name + ".key");
            return made;
        };
        Vehicle thief(settings("4712"), {"lakeside", "4711"});
        Vehicle vehicle(settings("4711"));
        QVERIFY(thief.link.start() && vehicle.link.start());
        QVERIFY(sellSome(thief) && sellSome(vehicle));
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 4, patience);
        QVERIFY(thief.link.isConnected());
        QCOMPARE(thief.outbox.acknowledged(), -1);
        QCOMPARE(valueIn(database, "SELECT encode(public_key, 'hex') FROM journal"),
                 vehicle.journal.publicKey().toHex());
    }

    void reportsAndGapsArePrinted()
    {
        const DatabaseSettings database = m_server.newDatabase();
        const QStringList where{"--database",  database.name,     "--database-host",
                                database.host, "--database-user", database.user};
        Office office(database);
        VehicleJournal vehicle;
        QVERIFY(sell(vehicle.journal, {500, 790}));
        QCOMPARE(office.take(vehicle.batch()), "1");
        const ToolRunner program(RIVO_OFFICE);
        const Outcome report = program.run(
            QStringList{"report", "--from", "2026-03-29", "--to", "2026-03-29", "--format", "csv"} +
            where);
        QCOMPARE(report.exitCode, 0);
        QCOMPARE(report.messages, "");
        QCOMPARE(report.output,
                 "\"vehicle\",\"currency\",\"decimals\",\"tickets\",\"sold\",\"card\","
                 "\"reversed_tickets\",\"reversed\",\"total\"\r\n"
                 "\"lakeside/4711\",\"EUR\",\"2\",\"2\",\"1290\",\"0\",\"0\",\"0\",\"1290\"\r\n");
        const Outcome none = program.run(QStringList{"gaps"} + where);
        QCOMPARE(none.exitCode, 0);
        QCOMPARE(none.output + none.messages, "");
        office.take("hello");
        const Outcome gaps = program.run(QStringList{"gaps"} + where);
        QCOMPARE(gaps.exitCode, 1);
        QVERIFY2(gaps.output.endsWith(" rivo/lakeside/4711/records message: it is not a message of"
                                      " records\n"),
                 gaps.output);
    }

    void whatCannotBeDoneIsReported_data()
    {
        const Table<QStringList, QByteArray> row("arguments", "message");
        const QByteArray notUnderstood =
            "this command line is not understood; --help shows what is";
        row("no command", {}, notUnderstood);
        row("an unknown command", {"sell"}, notUnderstood);
        row("two commands", {"gaps", "serve"}, notUnderstood);
        row("a report without days", {"report"}, notUnderstood);
        row("a day that is none", {"report", "--from", "2026-02-30", "--to", "2026-03-01"},
            notUnderstood);
        row("an unknown format",
            {"report", "--from", "2026-03-01", "--to", "2026-03-01", "--format", "xml"},
            notUnderstood);
        row("an unknown key",
            {"report", "--from", "2026-03-01", "--to", "2026-03-01", "--by", "colour"},
            notUnderstood);
        row("a port that is none", {"serve", "--port", "65536"}, notUnderstood);
        row("an authority that is missing", {"serve", "--authority", "/nowhere/authority.pem"}, "");
        row("a report without a database",
            {"report", "--from", "2026-03-01", "--to", "2026-03-01", "--database-host", "/nowhere"},
            "");
        row("gaps without a database", {"gaps", "--database-host", "/nowhere"}, "");
    }

    void whatCannotBeDoneIsReported()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, message);
        const Outcome outcome = ToolRunner(RIVO_OFFICE).run(arguments);
        QCOMPARE(outcome.exitCode, 2);
        QCOMPARE(outcome.output, "");
        QVERIFY2(outcome.messages.startsWith("rivo-office: " + message), outcome.messages);
        QCOMPARE(outcome.messages.count('\n'), 1);
    }

private:
    static bool sellSome(VehicleJournal& vehicle)
    {
        bool isSold = true;
        for (int sale = 0; sale < 4; ++sale)
            isSold = isSold && sell(vehicle.journal, {5});
        return isSold;
    }

    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestRivoOffice)
#include "tst_rivo_office.moc"
