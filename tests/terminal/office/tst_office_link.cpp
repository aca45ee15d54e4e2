#include "Broker.h"
#include "JournalFiles.h"

#include <OfficeLink.h>

#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace rivo::office;
using namespace rivo::sales;

namespace
{

using State = OfficeLink::State;

constexpr int patience = 30000;
constexpr OutboxPace quick{3, 20, 500, 500};
const Topics topics{"lakeside", "4711"};

} // namespace

/// A vehicle's connection to the office, with a real broker.
class TestOfficeLink : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (!Broker::isInstalled())
            QSKIP("mosquitto is not installed");
        m_folder.emplace();
        m_broker.emplace();
        m_stored = 0;
        m_refusal.clear();
        m_alive.clear();
        m_latitudes.clear();
        m_devices.clear();
    }
    void cleanup()
    {
        m_office.reset();
        m_broker.reset();
        m_folder.reset();
    }

    void recordsGoToTheOffice()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        QVERIFY(sell(journal, {190, 95}));
        QVERIFY(m_broker->start());
        startOffice();
        OfficeLink link(m_broker->settings("ignored"), topics, journal, quick);
        QCOMPARE(link.state(), State::Away);
        QCOMPARE(link.stateText(), QString("no connection, records wait"));
        link.start();
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Complete, patience);
        QCOMPARE(link.stateText(), QString("has all records"));
        QCOMPARE(m_stored, 1);
        QCOMPARE(m_alive, QByteArray("1"));
        QSignalSpy changed(&link, &OfficeLink::stateChanged);
        QVERIFY(sell(journal, {5}));
        QTRY_COMPARE_WITH_TIMEOUT(m_stored, 2, patience);
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Complete, patience);
        QCOMPARE(changed.count(), 2); // on their way, and there
    }

    void salesGoOnWithoutANetwork()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        QVERIFY(m_broker->start());
        startOffice();
        OfficeLink link(m_broker->settings("ignored"), topics, journal, quick);
        link.start();
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Complete, patience);
        m_broker->kill();
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Away, patience);
        for (int sale = 0; sale < 10; ++sale)
            QVERIFY(sell(journal, {5}));
        QVERIFY(m_broker->start());
        QTRY_COMPARE_WITH_TIMEOUT(m_stored, 10, patience);
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Complete, patience);
    }

    void theOfficeHearsThatAVehicleIsGone()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        QVERIFY(m_broker->start());
        startOffice();
        {
            OfficeLink link(m_broker->settings("ignored"), topics, journal, quick);
            link.start();
            QTRY_COMPARE_WITH_TIMEOUT(m_alive, QByteArray("1"), patience);
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_alive, QByteArray("0"), patience);
    }

    /// The first and the last place of those that come at once.
    void placesAreReportedNowAndThen()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        OfficeLink link(m_broker->settings("ignored"), topics, journal, quick);
        const auto at = [](double latitude) {
            return PositionReport{
                QDateTime::fromSecsSinceEpoch(5, Qt::UTC), latitude, 7.0, 90.0, 12.5, "12"};
        };
        link.report(at(43.0)); // kept until there is a connection
        QVERIFY(m_broker->start());
        startOffice();
        link.start();
        QTRY_COMPARE_WITH_TIMEOUT(m_latitudes, QVector<double>({43.0}), patience);
        for (const double latitude : {43.1, 43.2, 43.3})
            link.report(at(latitude));
        QTRY_COMPARE_WITH_TIMEOUT(m_latitudes, QVector<double>({43.0, 43.3}), patience);
    }

    /// When they change, and again with each connection.
    void devicesAreReportedNowAndThen()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        OfficeLink link(m_broker->settings("ignored"), topics, journal, quick);
        const auto states = [](const QString& text) {
            return QVector<DeviceReport>{{"Printer", 2, text}};
        };
        link.report(QVector<DeviceReport>()); // nothing is known yet
        link.report(states("starting"));      // kept until there is a connection
        QVERIFY(m_broker->start());
        startOffice();
        link.start();
        QTRY_COMPARE_WITH_TIMEOUT(m_devices, QStringList("starting"), patience);
        for (const char* text : {"starting", "no paper", "paper low", "paper low"})
            link.report(states(text));
        QTRY_COMPARE_WITH_TIMEOUT(m_devices, QStringList({"starting", "paper low"}), patience);
        m_broker->kill();
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Away, patience);
        m_devices.clear();
        QVERIFY(m_broker->start());
        QTRY_COMPARE_WITH_TIMEOUT(m_devices, QStringList("paper low"), patience);
    }

    void aRefusalIsShown()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        QVERIFY(sell(journal, {190}));
        QVERIFY(m_broker->start());
        m_refusal = "the key is that of another vehicle";
        startOffice();
        OfficeLink link(m_broker->settings("ignored"), topics, journal, quick);
        link.start();
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Refused, patience);
        QCOMPARE(link.stateText(), QString("takes no records: the key is that of another vehicle"));
        m_refusal.clear();
        QTRY_COMPARE_WITH_TIMEOUT(link.state(), State::Complete, patience);
        QCOMPARE(m_stored, 1);
    }

    void filesThatCannotBeUsedAreShown()
    {
        OpenJournal journal(fileIn(m_folder->path()));
        BrokerSettings settings = m_broker->settings("ignored");
        settings.authority = m_folder->filePath("missing.pem");
        OfficeLink link(settings, topics, journal, quick);
        QSignalSpy changed(&link, &OfficeLink::stateChanged);
        link.start();
        QCOMPARE(link.state(), State::Unusable);
        QVERIFY2(link.stateText().startsWith("cannot be used: "), qPrintable(link.stateText()));
        QCOMPARE(changed.count(), 1);
    }

    /// The journal may be stopped when the connection is there, and be repaired later.
    void aStoppedJournalIsAskedAgain()
    {
        Journal journal;
        Outbox outbox(journal, quick);
        QSignalSpy ready(&outbox, &Outbox::ready);
        outbox.setConnected(true);
        QTest::qWait(100);
        QCOMPARE(ready.count(), 0);
        const QString file = m_folder->filePath("later.journal");
        journal.open(file, Currency("EUR", 2), 1);
        QVERIFY(!journal.fault());
        QTRY_VERIFY_WITH_TIMEOUT(ready.count() > 0, patience);
    }

private:
    /// Stores what follows, and answers.
    void startOffice()
    {
        m_office.emplace(m_broker->settings("office"));
        connect(
            &*m_office, &BrokerLink::received, this,
            [this](const QString& topic, const QByteArray& message) {
                if (topic == topics.alive()) {
                    m_alive = message;
                    return;
                }
                if (topic == topics.position()) {
                    m_latitudes.append(positionOf(message)->latitude);
                    return;
                }
                if (topic == topics.devices()) {
                    m_devices.append(devicesOf(message)->first().text);
                    return;
                }
                const auto batch = batchOf(message);
                QVERIFY(batch);
                for (const SealedRecord& each : batch->records)
                    m_stored =
                        m_refusal.isEmpty() && each.number == m_stored + 1 ? each.number : m_stored;
                m_office->publish(topics.acknowledged(),
                                  encode(Acknowledgement{batch->publicKey, m_stored, m_refusal}));
            });
        m_office->subscribe(topics.records());
        m_office->subscribe(topics.alive());
        m_office->subscribe(topics.position());
        m_office->subscribe(topics.devices());
        QVERIFY(m_office->start());
        QTRY_VERIFY_WITH_TIMEOUT(m_office->isConnected(), patience);
        QTest::qWait(100); // the broker subscribes
    }

    std::optional<QTemporaryDir> m_folder;
    std::optional<Broker> m_broker;
    std::optional<BrokerLink> m_office;
    qint64 m_stored = 0;
    QString m_refusal;
    QStringList m_devices;
    QByteArray m_alive;
    QVector<double> m_latitudes;
};

QTEST_GUILESS_MAIN(TestOfficeLink)
#include "tst_office_link.moc"
