#include "JournalFiles.h"
#include "Publishing.h"
#include "Table.h"

#include <PublicationStore.h>

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdio>
#include <dlfcn.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace rivo::office;

namespace
{

/// Steps of the system that are still allowed; the process ends before the one after. -1 = any.
int stepsLeft = -1;

void step()
{
    if (stepsLeft == 0)
        _exit(0);
    if (stepsLeft > 0)
        --stepsLeft;
}

} // namespace

// What the store calls instead of the system's functions.
extern "C" __attribute__((visibility("default"))) int fsync(int file)
{
    step();
    static const auto real = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"));
    return real(file);
}

extern "C" __attribute__((visibility("default"))) int rename(const char* from,
                                                             const char* to) noexcept
{
    step();
    static const auto real =
        reinterpret_cast<int (*)(const char*, const char*)>(dlsym(RTLD_NEXT, "rename"));
    return real(from, to);
}

namespace
{

const QDateTime now = QDateTime::fromSecsSinceEpoch(1790000000, Qt::UTC);

QString isUsable(PublicationKind, const QString&) { return {}; }

} // namespace

/// The publications of a vehicle, in a folder.
class TestPublicationStore : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder.emplace(); }
    void cleanup() { m_folder.reset(); }

    void publicationIsThereAsAWhole()
    {
        PublicationStore store = open();
        QVERIFY(take(store, 7, "seven"));
        QCOMPARE(dueIn(store), "7 seven");
        QCOMPARE(dueIn(open()), "7 seven");
        const auto files = filesIn(folder());
        QCOMPARE(files.keys(), QStringList({"feed-7.announcement", "feed-7.json"}));
        for (const QString& file : files.keys())
            QCOMPARE(QFile::permissions(folder() + '/' + file) &
                         (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther),
                     QFile::Permissions());
    }

    void newestValidOneCounts()
    {
        PublicationStore store = open();
        Announcement later = m_publisher.announce(8, "eight");
        later.validFrom = now.addSecs(1);
        QVERIFY(take(store, 7, "seven"));
        QVERIFY(take(store, m_publisher.resigned(later), "eight"));
        QCOMPARE(dueIn(store), "7 seven");
        QCOMPARE(dueIn(store, now.addSecs(1)), "8 eight");
        QCOMPARE(dueIn(open(), now.addSecs(1)), "8 eight");
        QVERIFY(!store.due(PublicationKind::Drivers, now));
    }

    void announcementIsJudged_data()
    {
        const Table<QByteArray, QString> row("message", "judgement");
        const Announcement next = m_publisher.announce(8, "eight");
        const TestPublisher thief;
        Announcement elsewhere = next;
        elsewhere.operatorName = "hillside";
        row("a newer one is wanted", encode(next), "wanted 8");
        row("the same again is known", encode(m_publisher.announce(7, "seven")), "known");
        row("the same version with another content", encode(m_publisher.announce(7, "sieben")),
            "refused 7: has another content than before");
        row("an older one", encode(m_publisher.announce(6, "six")),
            "refused 6: is older than version 7");
        row("one of another signer", encode(thief.announce(8, "eight")),
            "refused 8: is not signed by the publisher");
        row("one for another operator", encode(m_publisher.resigned(elsewhere)),
            "refused 0: is not understood");
        row("one of another kind",
            encode(m_publisher.announce(8, "eight", PublicationKind::Drivers)),
            "refused 0: is not understood");
        row("no announcement", "hello", "refused 0: is not understood");
    }

    void announcementIsJudged()
    {
        QFETCH(QByteArray, message);
        PublicationStore store = open();
        QVERIFY(take(store, 7, "seven"));
        QTEST(judgementOf(store, message), "judgement");
        QCOMPARE(dueIn(store), "7 seven");
    }

    void withoutAKeyNothingIsTaken()
    {
        const PublicationStore store(folder(), "lakeside", {});
        QCOMPARE(judgementOf(store, encode(m_publisher.announce(1, "one"))),
                 "refused 1: is not signed by the publisher");
    }

    void arrivingGoesOnAfterARestart()
    {
        const Announcement wanted = m_publisher.announce(7, "seven");
        {
            PublicationStore store = open();
            QCOMPARE(store.begin(wanted), 0);
            QCOMPARE(store.append(wanted, "sev"), QString());
        }
        PublicationStore store = open();
        QCOMPARE(store.begin(wanted), 3);
        QCOMPARE(store.append(wanted, "en and more"), "is larger than announced");
        QCOMPARE(store.begin(wanted), 3);
        QCOMPARE(store.append(wanted, "en"), QString());
        QCOMPARE(PublicationStore::faultOf(wanted, store.partOf(wanted), isUsable), QString());
        QCOMPARE(store.accept(wanted), QString());
        QCOMPARE(dueIn(store), "7 seven");
    }

    void anotherVersionBeginsAnew()
    {
        PublicationStore store = open();
        const Announcement first = m_publisher.announce(7, "seven");
        const Announcement second = m_publisher.announce(8, "seven and eight");
        store.begin(first);
        QCOMPARE(store.append(first, "sev"), QString());
        QCOMPARE(store.begin(second), 0);
        QCOMPARE(filesIn(folder()).size(), 0);
    }

    void contentIsChecked_data()
    {
        const Table<QByteArray, QString> row("arrived", "fault");
        row("as it was signed", "seven", "unusable: seven");
        row("a byte differs", "sevem", "is damaged");
        row("a byte is missing", "even", "is damaged");
        row("nothing is there", "", "is damaged");
    }

    void contentIsChecked()
    {
        QFETCH(QByteArray, arrived);
        PublicationStore store = open();
        const Announcement wanted = m_publisher.announce(7, "seven");
        store.begin(wanted);
        if (!arrived.isEmpty())
            QCOMPARE(store.append(wanted, arrived), QString());
        const auto check = [](PublicationKind, const QString& file) {
            return "unusable: " + QString::fromUtf8(contentOf(file));
        };
        QTEST(PublicationStore::faultOf(wanted, store.partOf(wanted), check), "fault");
    }

    void filesThatWereHarmedDoNotCount_data()
    {
        const Table<QString, QByteArray> row("file", "content");
        row("a content that is torn", "feed-8.json", "eig");
        row("a content that was changed", "feed-8.json", "eighx");
        row("no content", "feed-8.json", "");
        row("an announcement that is torn", "feed-8.announcement",
            encode(m_publisher.announce(8, "eight")).left(40));
        row("an announcement of another version", "feed-8.announcement",
            encode(m_publisher.announce(9, "eight")));
        row("an announcement of another signer", "feed-8.announcement",
            encode(TestPublisher().announce(8, "eight")));
    }

    void filesThatWereHarmedDoNotCount()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        {
            PublicationStore store = open();
            QVERIFY(take(store, 7, "seven") && take(store, 8, "eight"));
        }
        QVERIFY(write(file, content));
        PublicationStore store = open();
        QCOMPARE(dueIn(store), "7 seven");
        QVERIFY(take(store, 8, "eight")); // it arrives again
        QCOMPARE(dueIn(open()), "8 eight");
    }

    /// The process ends after each number of steps: the old or the new one is there, as a whole,
    /// and what arrived leads to the new one.
    void powerIsCutBetweenSteps()
    {
        for (int steps = 0;; ++steps) {
            m_folder.emplace();
            {
                PublicationStore store = open();
                QVERIFY(take(store, 7, "seven"));
            }
            const bool isDone = isDoneWithin(steps, [this] {
                PublicationStore store = open();
                return take(store, 8, "eight");
            });
            PublicationStore store = open();
            const QString due = dueIn(store);
            QVERIFY2(due == (isDone ? "8 eight" : due) && (due == "7 seven" || due == "8 eight"),
                     qPrintable(due));
            if (due == "7 seven")
                QVERIFY(take(store, 8, "eight"));
            QCOMPARE(dueIn(open()), "8 eight");
            if (!isDone)
                continue;
            QVERIFY(steps >= 6); // two files and two names on the disk, at least
            break;
        }
    }

    void fullDiskIsReported()
    {
        PublicationStore store = open();
        QVERIFY(take(store, 7, "seven"));
        const QByteArray content(100000, 'x');
        const Announcement wanted = m_publisher.announce(8, content);
        store.begin(wanted);
        QCOMPARE(store.append(wanted, content.left(10)), QString());
        const auto before = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlimit small{5000, limit.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const QString problem = store.append(wanted, content.mid(10));
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
        std::signal(SIGXFSZ, before);
        QCOMPARE(problem, "cannot be stored: File too large");
        QCOMPARE(store.begin(wanted), 10);
        QCOMPARE(store.append(wanted, content.mid(10)), QString());
        QCOMPARE(store.accept(wanted), QString());
        QCOMPARE(store.due(PublicationKind::Feed, now)->announcement.version, 8);
    }

    void folderThatIsMissingIsReported()
    {
        PublicationStore store = open();
        const Announcement wanted = m_publisher.announce(8, "eight");
        QVERIFY(m_folder->remove());
        QCOMPARE(store.begin(wanted), 0);
        QCOMPARE(store.append(wanted, "eight"), "cannot be stored: No such file or directory");
        QCOMPARE(store.accept(wanted), "cannot be stored: No such file or directory");
        QVERIFY(!store.due(PublicationKind::Feed, now));
    }

    void linksAreNotFollowed()
    {
        PublicationStore store = open();
        const Announcement wanted = m_publisher.announce(8, "eight");
        const QTemporaryDir elsewhere;
        const QString victim = elsewhere.filePath("victim");
        QVERIFY(QFile::link(victim, store.partOf(wanted)));
        QVERIFY(!store.append(wanted, "eight").isEmpty());
        QVERIFY(!QFile::exists(victim));
    }

    void whatWasRefusedStaysSo()
    {
        {
            PublicationStore store = open();
            QVERIFY(take(store, 7, "seven") && take(store, 8, "eight"));
            store.refuse(m_publisher.announce(8, "eight"), QString::fromUtf8("ungültig"));
            QCOMPARE(dueIn(store), "7 seven");
        }
        PublicationStore store = open();
        QCOMPARE(dueIn(store), "7 seven");
        QCOMPARE(store.refusal(PublicationKind::Feed).refused, 8);
        QCOMPARE(judgementOf(store, encode(m_publisher.announce(8, "eight"))),
                 QString::fromUtf8("refused 8: ungültig"));
        QCOMPARE(judgementOf(store, encode(m_publisher.announce(9, "nine"))), "wanted 9");
        QVERIFY(take(store, 9, "nine"));
        QCOMPARE(store.refusal(PublicationKind::Feed).refused, 0);
        QCOMPARE(dueIn(open()), "9 nine");
    }

    void threeStartsWithoutAScreenAreEnough()
    {
        const Announcement first = m_publisher.announce(7, "seven");
        const Announcement second = m_publisher.announce(8, "eight");
        {
            PublicationStore store = open();
            QVERIFY(take(store, first, "seven") && take(store, second, "eight"));
            QVERIFY(store.beginStart(first));
            store.endStart(first);
        }
        for (int start = 0; start < 3; ++start)
            QVERIFY(open().beginStart(second));
        PublicationStore store = open();
        QVERIFY(!store.beginStart(second));
        QCOMPARE(dueIn(store), "7 seven");
        QCOMPARE(open().refusal(PublicationKind::Feed).refusal,
                 "the terminal did not start with it");
        for (int start = 0; start < 5; ++start) // a screen was there once
            QVERIFY(open().beginStart(first));
    }

    void startsThatCannotBeCountedAreNone()
    {
        PublicationStore store = open();
        QVERIFY(take(store, 7, "seven"));
        QVERIFY(m_folder->remove());
        QVERIFY(!store.beginStart(m_publisher.announce(7, "seven")));
        QCOMPARE(store.refusal(PublicationKind::Feed).refused, 0);
    }

    void olderOnesAreRemoved()
    {
        PublicationStore store = open();
        for (int version = 5; version <= 12; ++version)
            QVERIFY(take(store, version, "some"));
        store.prune(PublicationKind::Feed, 8);
        QCOMPARE(versionsIn(store), QVector<qint64>({7, 8, 11, 12}));
        QCOMPARE(versionsIn(open()), QVector<qint64>({7, 8, 11, 12}));
        QCOMPARE(filesIn(folder()).size(), 8);
        store.prune(PublicationKind::Feed, 12);
        QCOMPARE(versionsIn(store), QVector<qint64>({11, 12}));
    }

private:
    QString folder() const { return m_folder->path(); }
    PublicationStore open() const { return {folder(), "lakeside", m_publisher.key.publicKey()}; }

    bool take(PublicationStore& store, qint64 version, const QByteArray& content) const
    {
        return take(store, m_publisher.announce(version, content), content);
    }

    static bool take(PublicationStore& store, const Announcement& wanted, const QByteArray& content)
    {
        const qint64 received = store.begin(wanted);
        return (received == content.size() ||
                store.append(wanted, content.mid(int(received))).isEmpty()) &&
               PublicationStore::faultOf(wanted, store.partOf(wanted), isUsable).isEmpty() &&
               store.accept(wanted).isEmpty();
    }

    /// Whether `work` was done in a process that may take so many steps.
    template <typename Work>
    static bool isDoneWithin(int steps, const Work& work)
    {
        constexpr int done = 5;
        const pid_t child = fork();
        if (child == 0) {
            stepsLeft = steps;
            _exit(work() ? done : 6);
        }
        int status = -1;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) &&
               WEXITSTATUS(status) == done;
    }

    static QString judgementOf(const PublicationStore& store, const QByteArray& message)
    {
        const auto judgement = store.judge(PublicationKind::Feed, message);
        if (judgement.wanted)
            return QStringLiteral("wanted %1").arg(judgement.wanted->version);
        return judgement.refusal.isEmpty()
                   ? QStringLiteral("known")
                   : QStringLiteral("refused %1: %2").arg(judgement.version).arg(judgement.refusal);
    }

    /// "7 content"
    static QString dueIn(const PublicationStore& store, const QDateTime& at = now)
    {
        const auto due = store.due(PublicationKind::Feed, at);
        return due ? QStringLiteral("%1 ").arg(due->announcement.version) +
                         QString::fromUtf8(contentOf(due->file))
                   : QStringLiteral("none");
    }

    static QVector<qint64> versionsIn(const PublicationStore& store)
    {
        QVector<qint64> versions;
        for (const StoredPublication& each : store.publications(PublicationKind::Feed))
            versions.append(each.announcement.version);
        return versions;
    }

    bool write(const QString& name, const QByteArray& content) const
    {
        QFile file(folder() + '/' + name);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    const TestPublisher m_publisher;
    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestPublicationStore)
#include "tst_publication_store.moc"
