#include "JournalFiles.h"

#include <BrokerLink.h>
#include <Outbox.h>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/types.h>

using namespace rivo::office;
using namespace rivo::sales;

namespace
{

constexpr int patience = 30000;
const Topics topics{"lakeside", "4711"};

QString brokerProgram()
{
    return QStandardPaths::findExecutable("mosquitto", {"/usr/sbin", "/usr/bin"});
}

/// A port that was free a moment ago.
int freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

BrokerSettings settingsFor(int port, const QString& client)
{
    BrokerSettings settings;
    settings.host = "127.0.0.1";
    settings.port = port;
    settings.clientId = client;
    return settings;
}

} // namespace

/// The connection to a broker, and an outbox over it.
class TestBrokerLink : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_port = freePort();
        m_broker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }

    void cleanup()
    {
        m_broker.kill();
        m_broker.waitForFinished();
    }

    void recordsReachTheOfficeAcrossAKilledBroker()
    {
        if (brokerProgram().isEmpty())
            QSKIP("mosquitto is not installed");
        QTemporaryDir folder;
        OpenJournal journal(fileIn(folder.path()));
        Outbox outbox(journal, {2, 20, 500, 500});
        BrokerLink vehicle(settingsFor(m_port, "4711"));
        BrokerLink office(settingsFor(m_port, "office"));
        connectVehicle(outbox, vehicle);
        QVector<qint64> stored;
        connect(&office, &BrokerLink::received, &office,
                [&](const QString& topic, const QByteArray& message) {
                    const auto batch = batchOf(message);
                    QVERIFY(batch && Topics::vehicleOf(topic) == "4711");
                    for (const SealedRecord& each : batch->records) {
                        if (each.number == stored.size())
                            stored.append(each.number);
                    }
                    office.publish(
                        topics.acknowledged(),
                        encode(Acknowledgement{batch->publicKey, stored.size() - 1, {}}));
                });
        office.subscribe("$share/office/rivo/lakeside/+/records");
        QVERIFY(sell(journal, {5}) && vehicle.start() && office.start());
        QVERIFY(!vehicle.publish("rivo/x", "no connection"));
        startBroker();
        QTRY_COMPARE_WITH_TIMEOUT(outbox.acknowledged(), 1, patience);
        cleanup();
        QTRY_VERIFY_WITH_TIMEOUT(!vehicle.isConnected(), patience);
        for (int sale = 0; sale < 5; ++sale)
            QVERIFY(sell(journal, {5}));
        startBroker();
        QTRY_COMPARE_WITH_TIMEOUT(outbox.acknowledged(), 6, patience);
        QCOMPARE(stored, QVector<qint64>({0, 1, 2, 3, 4, 5, 6}));
    }

    /// Its process is stopped: connections stay, and nothing is read from them.
    void aBrokerThatStallsHoldsNothingUp()
    {
        if (brokerProgram().isEmpty())
            QSKIP("mosquitto is not installed");
        BrokerLink vehicle(settingsFor(m_port, "4711"));
        QVERIFY(vehicle.start());
        startBroker();
        QTRY_VERIFY_WITH_TIMEOUT(vehicle.isConnected(), patience);
        QCOMPARE(::kill(pid_t(m_broker.processId()), SIGSTOP), 0);
        QElapsedTimer time;
        time.start();
        // More than the buffers of the system hold.
        for (int message = 0; message < 200; ++message)
            QVERIFY(vehicle.publish(topics.records(), QByteArray(100000, 'x')));
        QVERIFY2(time.elapsed() < 2000, qPrintable(QString::number(time.elapsed())));
    }

    void aMissingAuthorityIsReported()
    {
        BrokerSettings settings = settingsFor(m_port, "4711");
        settings.authority = "/nowhere/authority.pem";
        BrokerLink link(settings);
        QVERIFY(!link.start());
        QVERIFY(!link.problem().isEmpty());
        QVERIFY(!link.isConnected());
    }

private:
    static void connectVehicle(Outbox& outbox, BrokerLink& link)
    {
        link.subscribe(topics.acknowledged());
        connect(&outbox, &Outbox::ready, &link,
                [&link](const QByteArray& message) { link.publish(topics.records(), message); });
        connect(&link, &BrokerLink::connected, &outbox, [&outbox] { outbox.setConnected(true); });
        connect(&link, &BrokerLink::disconnected, &outbox,
                [&outbox] { outbox.setConnected(false); });
        connect(&link, &BrokerLink::received, &outbox,
                [&outbox](const QString&, const QByteArray& message) { outbox.take(message); });
    }

    void startBroker()
    {
        m_broker.start(brokerProgram(), {"-p", QString::number(m_port)});
        QVERIFY(m_broker.waitForStarted());
    }

    int m_port = 0;
    QProcess m_broker;
};

QTEST_GUILESS_MAIN(TestBrokerLink)
#include "tst_broker_link.moc"
