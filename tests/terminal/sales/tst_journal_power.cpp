#include "JournalFiles.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

using namespace rivo::sales;

namespace
{

using Work = std::function<bool(Journal&)>;

/// Does something to the files of a journal; whether it did.
using Harm = std::function<bool(const QString& file)>;

/// Whether `work` was done by a process that ended at that moment, without closing anything.
bool isDoneAndCut(const std::function<bool()>& work)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool isKeptAndCut(const QString& file, const Work& work)
{
    return isDoneAndCut([&] {
        auto* const journal = new OpenJournal(file); // never closed
        return !journal->fault() && work(*journal);
    });
}

bool sellAndClose(Journal& journal)
{
    return sell(journal, {190, 95}) && journal.markPrinted(1) && journal.markPrinted(2) &&
           journal.closeShift(noon) && sell(journal, {95});
}

bool fillBasket(Journal& journal, int tickets)
{
    for (int count = 0; count < tickets; ++count) {
        if (!journal.appendToBasket(ticket(100 + count, QString(40, 'x'))))
            return false;
    }
    return true;
}

/// Sells until SQLite has moved its log into the database several times.
bool sellMuch(Journal& journal)
{
    for (int sale = 0; sale < 200; ++sale) {
        if (!sell(journal, {190, 95, 450}))
            return false;
    }
    return true;
}

/// Statements of somebody else, in a process that leaves them in the log.
Harm edited(const QString& statement)
{
    return [statement](const QString& file) {
        return isDoneAndCut([=] {
            executeIn(file, {"PRAGMA wal_autocheckpoint=0", statement}, [] { _exit(0); });
            return false;
        });
    };
}

bool flip(const QString& file, qint64 at)
{
    QByteArray content = contentOf(file);
    if (at < 0)
        at += content.size();
    content[static_cast<int>(at)] = static_cast<char>(content.at(static_cast<int>(at)) ^ 1);
    QFile target(file);
    return target.open(QIODevice::ReadWrite) && target.write(content) == content.size();
}

/// The sums of SQLite's log over more bytes, whose words have the order of this machine.
QVector<quint32> sumsAfter(QVector<quint32> sums, const QByteArray& bytes)
{
    for (int at = 0; at < bytes.size(); at += 8) {
        sums[0] += qFromLittleEndian<quint32>(bytes.constData() + at) + sums[1];
        sums[1] += qFromLittleEndian<quint32>(bytes.constData() + at + 4) + sums[0];
    }
    return sums;
}

constexpr int frameHeaderSize = 24;

/// The frames of the log without those that are left over from before it was begun anew.
QByteArray validLog(const QString& file)
{
    constexpr int headerSize = 32;
    constexpr int saltSize = 8;
    const QByteArray log = contentOf(file + "-wal");
    const int frameSize = frameHeaderSize + qFromBigEndian<int>(log.constData() + 8);
    int end = headerSize;
    while (end + frameSize <= log.size() && log.mid(end + 8, saltSize) == log.mid(16, saltSize))
        end += frameSize;
    return log.left(end);
}

/// Adds the last frame of the log again, as one that leaves so many more pages in the database.
bool addFrame(const QString& file, int morePages)
{
    const QByteArray log = validLog(file);
    const int frameSize = frameHeaderSize + qFromBigEndian<int>(log.constData() + 8);
    const int last = log.size() - frameSize;
    const auto number = [&](int at) { return qFromBigEndian<quint32>(log.constData() + at); };
    QByteArray frame = log.mid(last);
    qToBigEndian(number(last + 4) + static_cast<quint32>(morePages), frame.data() + 4);
    QVector<quint32> sums{number(last + 16), number(last + 20)};
    sums = sumsAfter(sumsAfter(sums, frame.left(8)), frame.mid(frameHeaderSize));
    qToBigEndian(sums.at(0), frame.data() + 16);
    qToBigEndian(sums.at(1), frame.data() + 20);
    write(file + "-wal", log + frame);
    return number(last + 4) > 1;
}

} // namespace

Q_DECLARE_METATYPE(Work)
Q_DECLARE_METATYPE(Harm)

/// What is checked of a journal after a power cut: only the running shift, if file and log are what
/// the head says.
class TestJournalPower : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheRunningShiftIsCheckedIfNothingElseWasWritten_data()
    {
        QTest::addColumn<Work>("work");
        QTest::addColumn<bool>("isWhole");
        const auto after = [](const std::function<bool(Journal&)>& more) {
            return [more](Journal& journal) { return sellAndClose(journal) && more(journal); };
        };
        QTest::newRow("after a sale") << Work(sellAndClose) << false;
        QTest::newRow("after it was opened") << Work([](Journal&) { return true; }) << false;
        QTest::newRow("with tickets in the basket")
            << Work(after([](Journal& journal) { return fillBasket(journal, 5); })) << false;
        QTest::newRow("after the basket was emptied") << Work(after([](Journal& journal) {
            return fillBasket(journal, 5) && journal.clearBasket();
        })) << false;
        QTest::newRow("after a ticket was printed")
            << Work(after([](Journal& journal) { return journal.markPrinted(3); })) << false;
        QTest::newRow("after the log went into the database")
            << Work(after([](Journal& journal) { return sellMuch(journal); })) << false;
        QTest::newRow("after the log went into the database, with tickets in the basket")
            << Work(after(
                   [](Journal& journal) { return sellMuch(journal) && fillBasket(journal, 3); }))
            << false;
        QTest::newRow("after baskets filled the log") << Work(after([](Journal& journal) {
            for (int round = 0; round < 700; ++round) {
                if (!fillBasket(journal, 1) || !journal.clearBasket())
                    return false;
            }
            return true;
        })) << false;
        QTest::newRow("after a shift was pruned") << Work(after([](Journal& journal) {
            return journal.handOver(17, noon) &&
                   journal.prune(1000, noon.addDays(1), noon.addDays(1)) > 0 && sell(journal, {5});
        })) << false;
        QTest::newRow("with a basket of several pages: all is checked")
            << Work(after([](Journal& journal) { return fillBasket(journal, 100); })) << true;
    }
    void onlyTheRunningShiftIsCheckedIfNothingElseWasWritten()
    {
        QFETCH(Work, work);
        QFETCH(bool, isWhole);
        const QTemporaryDir folder;
        const QString file = fileIn(folder.path());
        {
            OpenJournal journal(file);
            QVERIFY(journal.isCheckedWhole());
        }
        QVERIFY(isKeptAndCut(file, work));
        {
            const OpenJournal journal(file);
            QCOMPARE(kindOf(journal.fault()), QString("none"));
            QCOMPARE(journal.isCheckedWhole(), isWhole);
        }
        const OpenJournal journal(file);
        QCOMPARE(kindOf(journal.fault()), QString("none"));
        QVERIFY(!journal.isCheckedWhole());
    }

    void cutTwiceItIsStillWhatTheHeadSays()
    {
        const QTemporaryDir folder;
        const QString file = fileIn(folder.path());
        QVERIFY(isKeptAndCut(file, sellAndClose));
        QVERIFY(isKeptAndCut(file, [](Journal& journal) {
            return !journal.isCheckedWhole() && fillBasket(journal, 1);
        }));
        QVERIFY(isKeptAndCut(file, [](Journal& journal) {
            return !journal.isCheckedWhole() && sell(journal, {5});
        }));
        OpenJournal journal(file);
        QVERIFY(!journal.isCheckedWhole());
        QCOMPARE(text(journal.runningShift()), QString("18: 2 tickets 100, 0 by card 0, 3-4"));
    }

    /// The power may go between a sale and its head.
    void allIsCheckedIfTheLastHeadWasNotKept()
    {
        const QTemporaryDir folder;
        const QString file = fileIn(folder.path());
        QByteArray head;
        QVERIFY(isKeptAndCut(file, sellAndClose));
        head = contentOf(file + ".head");
        QVERIFY(isKeptAndCut(file, [](Journal& journal) { return sell(journal, {5}); }));
        write(file + ".head", head);
        OpenJournal journal(file);
        QCOMPARE(kindOf(journal.fault()), QString("none"));
        QVERIFY(journal.isCheckedWhole());
        QCOMPARE(text(journal.runningShift()), QString("18: 2 tickets 100, 0 by card 0, 3-4"));
    }

    /// A frame of the basket also says how many pages the database has.
    void theBasketDoesNotShortenTheDatabase_data()
    {
        QTest::addColumn<int>("morePages");
        QTest::addColumn<bool>("isWhole");
        QTest::addColumn<QString>("fault");
        QTest::newRow("all pages") << 0 << false << "none";
        QTest::newRow("one less") << -1 << false << "damaged";
        QTest::newRow("ten less") << -10 << false << "damaged";
        QTest::newRow("one more: all is checked") << 1 << true << "none";
    }
    void theBasketDoesNotShortenTheDatabase()
    {
        QFETCH(int, morePages);
        QFETCH(bool, isWhole);
        QFETCH(QString, fault);
        const QTemporaryDir folder;
        const QString file = fileIn(folder.path());
        QVERIFY(isKeptAndCut(
            file, [](Journal& journal) { return sellAndClose(journal) && sellMuch(journal); }));
        QVERIFY(isKeptAndCut(file, [](Journal& journal) { return fillBasket(journal, 1); }));
        QVERIFY(addFrame(file, morePages));
        const OpenJournal journal(file);
        QCOMPARE(kindOf(journal.fault()), fault);
        QCOMPARE(journal.isCheckedWhole(), isWhole);
    }

    void whatWasWrittenAfterACutIsNoticed_data()
    {
        QTest::addColumn<Harm>("harm");
        QTest::addColumn<QString>("fault");
        QTest::newRow("a price of a closed shift")
            << Harm(edited("UPDATE ticket SET price = 1 WHERE number = 1")) << "damaged";
        QTest::newRow("a debt of a closed shift")
            << Harm(edited("UPDATE closing SET ticket_sum = 0 WHERE shift = 17")) << "damaged";
        QTest::newRow("a bit of the log")
            << Harm([](const QString& file) { return flip(file + "-wal", -100); }) << "replaced";
        QTest::newRow("the log is cut off") << Harm([](const QString& file) {
            return QFile::resize(file + "-wal", QFile(file + "-wal").size() - 1);
        }) << "replaced";
        QTest::newRow("the log is removed")
            << Harm([](const QString& file) { return QFile::remove(file + "-wal"); }) << "replaced";
        QTest::newRow("a bit of the database") << Harm([](const QString& file) {
            const QByteArray text("single");
            return flip(file, contentOf(file).indexOf(text));
        }) << "damaged";
    }
    void whatWasWrittenAfterACutIsNoticed()
    {
        QFETCH(Harm, harm);
        QFETCH(QString, fault);
        const QTemporaryDir folder;
        const QString file = fileIn(folder.path());
        {
            OpenJournal journal(file);
            QVERIFY(sellAndClose(journal) && sellMuch(journal)); // pages that the log has not
        }
        QVERIFY(isKeptAndCut(file, [](Journal& journal) { return sell(journal, {5}); }));
        QVERIFY(harm(file));
        const OpenJournal journal(file);
        QCOMPARE(kindOf(journal.fault()), fault);
        QVERIFY(!journal.isCheckedWhole());
    }
};

QTEST_GUILESS_MAIN(TestJournalPower)
#include "tst_journal_power.moc"
