#include "Broker.h"
#include "OfficeUnderTest.h"
#include "Publishing.h"
#include "Serving.h"
#include "Table.h"
#include "ToolRunner.h"

#include <Content.h>
#include <PublicationLink.h>
#include <Publisher.h>

#include <QSignalSpy>
#include <QTest>

using namespace rivo::backoffice;
using namespace rivo::office;

namespace
{

constexpr int patience = 60000;
constexpr PublicationPace quick{500, 500, 2000};
const Topics topics{"lakeside", "4711"};

/// A vehicle that takes what is published, with a folder that outlives it.
struct Vehicle : VehicleJournal
{
    Vehicle(const Broker& broker, const QString& kept, const QByteArray& key,
            const Topics& names = topics)
        : link(broker.settings("ignored"), names, journal), store(kept, "lakeside", key),
          publications(link, names, store, checked, quick)
    {
        link.start();
    }

    /// "7", the newest version of a kind that may be used; "none" without one.
    QString taken(PublicationKind kind = PublicationKind::Feed) const
    {
        const auto due = store.due(kind, QDateTime::currentDateTimeUtc());
        return due ? QString::number(due->announcement.version) : QStringLiteral("none");
    }

    static QString checked(PublicationKind kind, const QString& file)
    {
        return problemsOf(kind, file).value(0).section(QStringLiteral(": "), 1);
    }

    OfficeLink link;
    PublicationStore store;
    PublicationLink publications;
};

QByteArray feedOf(int padding = 0)
{
    return contentOf(EXAMPLE_FEEDS "/hill-valley.json") + QByteArray(padding, ' ');
}

} // namespace

/// What goes down from the office to vehicles, with a real broker, database and program.
class TestPublications : public QObject
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

    void init()
    {
        m_database = m_server.newDatabase();
        m_folder.emplace();
        QVERIFY(m_publisher.key.write(file("publisher.key"), file("publisher.pem")));
    }

    void feedArrivesWhateverIsKilled()
    {
        const QByteArray content = feedOf(5 * mostBytesOfPiece);
        Broker broker;
        QVERIFY(broker.start());
        const Outcome published = publish(content);
        QCOMPARE(published.messages, "");
        QCOMPARE(published.output, "lakeside feed 1\n");
        auto office = std::make_unique<Serving>(broker, m_database);
        auto vehicle = newVehicle(broker);
        QTRY_VERIFY_WITH_TIMEOUT(arrived() > 0, patience);
        broker.kill();
        const qint64 before = arrived();
        QVERIFY(before < content.size());
        vehicle.reset();
        QVERIFY(broker.start());
        vehicle = newVehicle(broker);
        QTRY_VERIFY_WITH_TIMEOUT(arrived() > before, patience);
        office.reset();
        office = std::make_unique<Serving>(broker, m_database);
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(), "1", patience);
        const auto due = vehicle->store.due(PublicationKind::Feed, QDateTime::currentDateTimeUtc());
        QCOMPARE(sha256Of(contentOf(due->file)), sha256Of(content));
        QTRY_COMPARE_WITH_TIMEOUT(value("SELECT taken || ' ' || in_use || ' ' || refusal FROM"
                                        " publication_state WHERE kind = 'feed'"),
                                  "1 0 ", patience);
        QVERIFY(publications().output.startsWith("lakeside feed 1 from 2026-04-01T01:00:00Z, "));
        QVERIFY2(publications().output.endsWith(
                     " 1 of 1 vehicles have it, 0 use it\nlakeside/4711 feed: has 1, uses 0\n"),
                 publications().output);
        QCOMPARE(publications().exitCode, 0);
    }

    void nextVersionIsAnnouncedToVehiclesThatAreThere()
    {
        Broker broker;
        QVERIFY(broker.start());
        const Serving first(broker, m_database);
        const Serving second(broker, m_database);
        const auto vehicle = newVehicle(broker);
        QTRY_VERIFY_WITH_TIMEOUT(value("SELECT count(*) FROM publication_state") == "4", patience);
        QCOMPARE(vehicle->taken(), "none");
        QCOMPARE(publish(feedOf()).exitCode, 0);
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(), "1", patience);
        QCOMPARE(publish(feedOf(1), {"--number", "5"}).output, "lakeside feed 5\n");
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(), "5", patience);
        vehicle->publications.setInUse(PublicationKind::Feed, 5);
        QTRY_COMPARE_WITH_TIMEOUT(value("SELECT in_use FROM publication_state WHERE kind = 'feed'"),
                                  "5", patience);
        QVERIFY(!publications().output.contains("4711"));
    }

    void otherKindsArrive()
    {
        Broker broker;
        QVERIFY(broker.start());
        const Serving office(broker, m_database);
        const auto vehicle = newVehicle(broker);
        QCOMPARE(publish(drivers(42), {"--kind", "drivers"}).output, "lakeside drivers 1\n");
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(PublicationKind::Drivers), "1", patience);
        QCOMPARE(vehicle->taken(), "none");
        QCOMPARE(publish(R"({"format": "rivo-limits", "version": 1, "maxDebt": 150})",
                         {"--kind", "limits"})
                     .output,
                 "lakeside limits 1\n");
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(PublicationKind::Limits), "1", patience);
        QCOMPARE(
            publish(R"({"format": "rivo-paid", "version": 1, "shifts": []})", {"--kind", "paid"})
                .output,
            "lakeside paid 1\n");
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(PublicationKind::Paid), "1", patience);
    }

    void whatIsWrongIsRefusedAndReported_data()
    {
        const Table<QByteArray, QByteArray> row("wrong", "reason");
        row("an unsigned feed", "unsigned", "refuses 3: is not signed by the publisher");
        row("an older feed", "older", "refuses 1: is older than version 2");
        row("another feed with the number of before", "other",
            "refuses 2: has another content than before");
        row("a damaged feed", "damaged", "refuses 3: is damaged");
        row("a feed that cannot be read", "unreadable", "refuses 3: ");
        row("a message that is none", "none", "refuses 0: is not understood");
    }

    void whatIsWrongIsRefusedAndReported()
    {
        QFETCH(QByteArray, wrong);
        QFETCH(QByteArray, reason);
        Broker broker;
        QVERIFY(broker.start());
        const Serving office(broker, m_database);
        QCOMPARE(publish(feedOf(), {"--number", "2"}).exitCode, 0);
        const auto vehicle = newVehicle(broker);
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(), "2", patience);
        BrokerLink forger(broker.settings("forger"));
        QVERIFY(forger.start());
        QTRY_VERIFY_WITH_TIMEOUT(forger.isConnected(), patience);
        QVERIFY(makeWrong(wrong, forger));
        QTRY_VERIFY_WITH_TIMEOUT(publications().output.contains(reason), patience);
        QCOMPARE(publications().exitCode, 1);
        QVERIFY2(vehicle->publications.problem().startsWith("feed"),
                 qPrintable(vehicle->publications.problem()));
        QCOMPARE(vehicle->taken(), "2");
        // A good one is taken after all.
        QCOMPARE(publish(feedOf(2), {"--number", "9"}).exitCode, 0);
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->taken(), "9", patience);
        QTRY_COMPARE_WITH_TIMEOUT(vehicle->publications.problem(), QString(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(publications().exitCode, 0, patience);
    }

    void whatCannotBePublishedIsReported_data()
    {
        const Table<QByteArray, QStringList, int, QByteArray> row("content", "more", "exitCode",
                                                                  "message");
        const QByteArray notUnderstood =
            "rivo-office: this command line is not understood; --help shows what is\n";
        row("a feed that is broken", "{", {}, 1, "/content.json:");
        row("a feed as drivers", feedOf(), {"--kind", "drivers"}, 1, "/content.json: ");
        row("an empty file", "", {}, 1, "/content.json: no file of 1 byte to 64 MiB\n");
        row("a key that is missing", feedOf(), {"--key", "/nowhere/key"}, 1,
            "/nowhere/key: no private Ed25519 key\n");
        row("a number that is not newer", feedOf(), {"--number", "3"}, 1,
            "version 3 is not newer than the last one\n");
        row("a database that is missing", feedOf(), {"--database-host", "/nowhere"}, 2, "");
        row("an unknown kind", feedOf(), {"--kind", "tickets"}, 2, notUnderstood);
        row("no time", feedOf(), {"--valid-from", "tomorrow"}, 2, notUnderstood);
        row("an operator that is no name", feedOf(), {"--operator", "a/b"}, 2, notUnderstood);
        row("a number that is none", feedOf(), {"--number", "0"}, 2, notUnderstood);
        row("two files", feedOf(), {"another"}, 2, notUnderstood);
    }

    void whatCannotBePublishedIsReported()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, more);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, message);
        QCOMPARE(publish(feedOf(), {"--number", "3"}).exitCode, 0);
        const Outcome outcome = publish(content, more);
        QCOMPARE(outcome.exitCode, exitCode);
        QCOMPARE(outcome.output, "");
        QVERIFY2(outcome.messages.contains(message), outcome.messages);
        QCOMPARE(value("SELECT string_agg(version::text, ' ') FROM publication"), "3");
    }

    void vehiclesAskForPieces()
    {
        Office office(m_database);
        Publisher publisher(office.store);
        Announcement published;
        QVERIFY(write("content.json", feedOf(mostBytesOfPiece)));
        QCOMPARE(
            rivo::backoffice::publish(office.store,
                                      {file("content.json"), "lakeside", PublicationKind::Feed,
                                       QDateTime::currentDateTimeUtc(), 0, file("publisher.key")},
                                      published),
            QStringList());
        const auto pieceFrom = [&](const QString& operatorName, qint64 version, qint64 offset) {
            std::optional<Reply> reply;
            const Topics names{operatorName, "4711"};
            const bool isTaken = publisher.take(
                names.wanted(), encode(WantedPiece{PublicationKind::Feed, version, offset}), reply);
            const auto piece = isTaken && reply ? pieceOf(reply->message) : std::nullopt;
            return piece && reply->topic == names.piece() ? piece->bytes : QByteArray("none");
        };
        const QByteArray whole = feedOf(mostBytesOfPiece);
        QCOMPARE(pieceFrom("lakeside", 1, 0), whole.left(mostBytesOfPiece));
        QCOMPARE(pieceFrom("lakeside", 1, mostBytesOfPiece), whole.mid(mostBytesOfPiece));
        QCOMPARE(pieceFrom("lakeside", 1, whole.size()), "");
        QCOMPARE(pieceFrom("lakeside", 2, 0), "");
        QCOMPARE(pieceFrom("hillside", 1, 0), "");
        std::optional<Reply> reply;
        QVERIFY(publisher.take("rivo/lakeside/4711/wanted", "hello", reply) && !reply);
        QVERIFY(publisher.take("rivo/lakeside/4711/publications", "hello", reply) && !reply);
        QCOMPARE(value("SELECT count(*) FROM publication_state"), "0");
    }

private:
    QString file(const QString& name) const { return m_folder->filePath(name); }

    bool write(const QString& name, const QByteArray& content) const
    {
        QFile target(file(name));
        return target.open(QIODevice::WriteOnly) && target.write(content) == content.size();
    }

    QString value(const QString& statement) const { return valueIn(m_database, statement); }

    QStringList database() const
    {
        return {"--database",    m_database.name,   "--database-host",
                m_database.host, "--database-user", m_database.user};
    }

    /// What `rivo-office publish` makes of a content; `more` has the last word.
    Outcome publish(const QByteArray& content, const QStringList& more = {}) const
    {
        if (!write("content.json", content))
            return {};
        return ToolRunner(RIVO_OFFICE)
            .run(QStringList{"publish", file("content.json"), "--operator", "lakeside",
                             "--valid-from", "2026-04-01T03:00:00+02:00", "--key",
                             file("publisher.key")} +
                 database() + more);
    }

    Outcome publications() const
    {
        return ToolRunner(RIVO_OFFICE).run(QStringList{"publications"} + database());
    }

    std::unique_ptr<Vehicle> newVehicle(const Broker& broker) const
    {
        return std::make_unique<Vehicle>(broker, file("store"), m_publisher.key.publicKey());
    }

    /// Bytes of a feed that is on its way.
    qint64 arrived() const
    {
        const QFileInfoList parts = QDir(file("store")).entryInfoList({"feed-*.part.*"});
        return parts.isEmpty() ? 0 : parts.first().size();
    }

    static QByteArray drivers(int number)
    {
        return QStringLiteral(R"({"drivers": [{"number": %1, "name": "A. Nowak", "iterations":
            100000, "salt": "0f1e2d3c4b5a6978", "hash": "%2"}]})")
            .arg(number)
            .arg(QString(64, 'a'))
            .toUtf8();
    }

    bool makeWrong(const QByteArray& wrong, BrokerLink& forger) const
    {
        const auto announce = [&forger](const QByteArray& message) {
            return forger.publish(publicationTopic("lakeside", "feed"), message, true);
        };
        if (wrong == "unsigned")
            return announce(encode(TestPublisher().announce(3, feedOf())));
        if (wrong == "older")
            return announce(encode(m_publisher.announce(1, feedOf())));
        if (wrong == "other")
            return announce(encode(m_publisher.announce(2, feedOf(5))));
        if (wrong == "none")
            return announce("hello");
        Office office(m_database);
        Announcement made = m_publisher.announce(3, "{}");
        bool isNewer = false;
        return PublicationRows(office.store)
                   .add(
                       made, wrong == "damaged" ? "[]" : "{}", [](Announcement&) {}, isNewer) &&
               isNewer;
    }

    PostgresServer m_server;
    DatabaseSettings m_database;
    const TestPublisher m_publisher;
    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestPublications)
#include "tst_publications.moc"
