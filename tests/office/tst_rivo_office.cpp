#include "Broker.h"
#include "OfficeUnderTest.h"
#include "Serving.h"
#include "Table.h"
#include "TestCertificates.h"
#include "ToolRunner.h"

#include <OfficeLink.h>
#include <Outbox.h>
#include <PublicationMessages.h>

#include <QSignalSpy>
#include <QTcpSocket>
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

    /// The broker keeps it: a program that starts later has it, too.
    void theOfficeKnowsWhereVehiclesAre()
    {
        const DatabaseSettings database = m_server.newDatabase();
        Broker broker;
        QVERIFY(broker.start());
        OpenJournal journal(fileIn(m_folder.path()));
        OfficeLink link(broker.settings({}), Topics{"lakeside", "4711"}, journal);
        link.report({QDateTime::currentDateTimeUtc(), 54.1, -2.9, 90.0, 10.0, "7-1"});
        link.report({{"Printer", 4, "no paper"}});
        link.start();
        QTRY_VERIFY_WITH_TIMEOUT(link.state() == OfficeLink::State::Connected, patience);
        const auto seen = [&database] {
            return valueIn(database,
                           "SELECT concat(name, ' ', alive, ' ', latitude, ' ', trip,"
                           " ' ', devices -> 0 ->> 'text') FROM vehicle JOIN vehicle_state"
                           " ON vehicle = id ORDER BY name");
        };
        for (int program = 0; program < 2; ++program) {
            const Serving office(broker, database);
            QTRY_COMPARE_WITH_TIMEOUT(seen(), "4711 t 54.1 7-1 no paper", patience);
            QCOMPARE(valueIn(database, "DELETE FROM vehicle_state"), "");
        }
        const Serving office(broker, database);
        QTRY_COMPARE_WITH_TIMEOUT(seen(), "4711 t 54.1 7-1 no paper", patience);
        {
            // Connected after the program was started, which would have its socket otherwise.
            BrokerSettings settings = broker.settings("4712");
            settings.willTopic = Topics{"lakeside", "4712"}.alive();
            BrokerLink other(settings);
            QVERIFY(other.start());
            QTRY_COMPARE_WITH_TIMEOUT(seen(), "4711 t 54.1 7-1 no paper 4712 t   ", patience);
        }
        QTRY_COMPARE_WITH_TIMEOUT(seen(), "4711 t 54.1 7-1 no paper 4712 f   ", patience);
    }

    /// With the certificates, the configuration and the access list of docs/fleet.md.
    void vehiclesPublishOnlyAsThemselves()
    {
        if (!TestCertificates::canBeMade())
            QSKIP("openssl is not installed");
        const QTemporaryDir folder;
        const auto file = [&](const QString& name) { return folder.filePath(name); };
        const DatabaseSettings database = m_server.newDatabase();
        Broker broker;
        QVERIFY(makeCertificates(folder.path()));
        QVERIFY(broker.start(
            documented("listener 8883")
                .replace("listener 8883\n", "")
                .replace("/etc/mosquitto/certs/broker.example.com", file("localhost").toUtf8())
                .replace("/etc/mosquitto/certs", folder.path().toUtf8())
                .replace("/etc/mosquitto/fleet.access",
                         broker.write("access", documented("user office")).toUtf8())));
        Serving office(broker, database,
                       {"--broker", "localhost", "--share", "known-to-no-vehicle", "--authority",
                        file("authority.pem"), "--certificate", file("office.pem"), "--key",
                        file("office.key")});
        const auto settings = [&](const QString& name, const QString& client) {
            BrokerSettings made = broker.settings(client);
            made.host = "localhost";
            made.authority = file("authority.pem");
            made.certificate = file(name + ".pem");
            made.key = file(name + ".key");
            return made;
        };
        Vehicle thief(settings("4712", "thief"), {"lakeside", "4711"});
        Vehicle vehicle(settings("4711", "4711"));
        BrokerLink listener(settings("4712", "listener"));
        QSignalSpy heard(&listener, &BrokerLink::received);
        for (const char* topic : {"#", "rivo/+/+/records", "$share/office/rivo/+/+/records",
                                  "rivo/lakeside/4711/acknowledged"})
            listener.subscribe(topic);
        BrokerLink reader(settings("4711", "reader"));
        BrokerLink publisher(settings("office", "publisher"));
        QSignalSpy published(&reader, &BrokerLink::received);
        reader.subscribe(publicationTopic("lakeside", "+"));
        QVERIFY(reader.start() && publisher.start());
        BrokerSettings unknown = settings("4712", "unknown");
        unknown.certificate.clear();
        unknown.key.clear();
        BrokerLink stranger(unknown);
        QVERIFY(stranger.start() && listener.start());
        QTRY_VERIFY_WITH_TIMEOUT(listener.isConnected(), patience);
        QVERIFY(vehicle.link.start() && sellSome(thief) && sellSome(vehicle));
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 4, patience);
        QVERIFY(thief.link.start());
        QTRY_VERIFY_WITH_TIMEOUT(thief.link.isConnected(), patience);
        QVERIFY(sellSome(vehicle));
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 8, patience);
        QCOMPARE(thief.outbox.acknowledged(), -1);
        QCOMPARE(heard.size(), 0);
        const QString topic = publicationTopic("lakeside", "feed");
        QTRY_VERIFY_WITH_TIMEOUT(reader.isConnected() && publisher.isConnected(), patience);
        QVERIFY(thief.link.publish(topic, "forged", true));
        QTest::qWait(500); // what is forged would be there first
        QVERIFY(publisher.publish(topic, "announced", true));
        QTRY_COMPARE_WITH_TIMEOUT(published.size(), 1, patience);
        QCOMPARE(published.first().at(1).toByteArray(), "announced");
        QVERIFY(!stranger.isConnected());
        QCOMPARE(valueIn(database, "SELECT encode(public_key, 'hex') FROM journal"),
                 vehicle.journal.publicKey().toHex());
    }

    /// The limits of docs/fleet.md: what is too long for them is neither kept nor passed on.
    void aHugeMessageEndsItsConnection_data()
    {
        const Table<QByteArray> row("length");
        row("of 256 MiB, the most that can be said", QByteArray("\xFF\xFF\xFF\x7F", 4));
        row("of 1 GiB, which cannot be said", QByteArray("\x80\x80\x80\x80\x04", 5));
        row("of 2 MiB", QByteArray("\x80\x80\x80\x01", 4));
    }

    void aHugeMessageEndsItsConnection()
    {
        QFETCH(QByteArray, length);
        const DatabaseSettings database = m_server.newDatabase();
        Broker broker;
        QVERIFY(broker.start("allow_anonymous true\n" + documentedLimits()));
        Serving office(broker, database);
        QTRY_VERIFY_WITH_TIMEOUT(office.says("takes records"), patience);
        QTcpSocket flood;
        flood.connectToHost(QHostAddress::LocalHost, quint16(broker.port()));
        QVERIFY(flood.waitForConnected(patience));
        flood.write(QByteArray("\x10\x11\0\x04MQTT\x04\x02\0\0\0\x05"
                               "flood",
                               19));
        QTRY_COMPARE_WITH_TIMEOUT(flood.bytesAvailable(), 4, patience);
        QCOMPARE(flood.readAll(), QByteArray("\x20\x02\0\0", 4));
        flood.write("\x32" + length + QByteArray("\0\x1Arivo/lakeside/4711/records\0\x01", 30));
        QTRY_COMPARE_WITH_TIMEOUT(flood.state(), QAbstractSocket::UnconnectedState, patience);
        Vehicle vehicle(broker.settings("4711"));
        QVERIFY(vehicle.link.start() && sellSome(vehicle));
        QTRY_COMPARE_WITH_TIMEOUT(vehicle.outbox.acknowledged(), 4, patience);
        QCOMPARE(valueIn(database, "SELECT count(*) FROM fault WHERE kind = 'message'"), "0");
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
        row("a share that is no name", {"serve", "--share", "a/b"}, notUnderstood);
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
    /// The block of docs/fleet.md that begins with `start`.
    static QByteArray documented(const QByteArray& start)
    {
        const QList<QByteArray> lines = contentOf(FLEET_DOCUMENT).split('\n');
        QByteArray block;
        for (const QByteArray& line : lines) {
            const QByteArray text = line.startsWith("    ") ? line.mid(4) : line;
            if (block.isEmpty() && !text.startsWith(start))
                continue;
            if (text.startsWith("```"))
                break;
            block += text + '\n';
        }
        return block;
    }

    static QByteArray documentedLimits()
    {
        QByteArray limits;
        for (const QByteArray& line : documented("listener 8883").split('\n')) {
            if (line.startsWith("max") || line.startsWith("message_size"))
                limits += line + '\n';
        }
        return limits;
    }

    static bool makeCertificates(const QString& folder)
    {
        QProcess shell;
        shell.setWorkingDirectory(folder);
        shell.start(
            "bash",
            {"-ec", documented("openssl req -x509").replace("broker.example.com", "localhost")});
        return shell.waitForFinished() && shell.exitCode() == 0;
    }

    static bool sellSome(VehicleJournal& vehicle)
    {
        bool isSold = true;
        for (int sale = 0; sale < 4; ++sale)
            isSold = isSold && sell(vehicle.journal, {5});
        return isSold;
    }

    PostgresServer m_server;
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestRivoOffice)
#include "tst_rivo_office.moc"
