#include "JournalFiles.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

#include <sys/stat.h>

using namespace rivo::sales;

namespace
{

/// Does something to the files of a journal.
using Harm = std::function<void(const QString& file)>;

Harm edit(const QStringList& statements)
{
    return [statements](const QString& file) { executeIn(file, statements); };
}

Harm removed(const QString& companion)
{
    return [companion](const QString& file) { QFile::remove(file + companion); };
}

/// The file that a foreign journal has in its place.
Harm foreign(const QString& companion)
{
    return [companion](const QString& file) {
        const QString other = file + "-other";
        {
            OpenJournal journal(other);
            sell(journal, {5});
        }
        QFile::remove(file + companion);
        QFile::copy(other + companion, file + companion);
        removeJournal(other);
    };
}

/// A link to what was at the place.
Harm linked(const QString& companion)
{
    return [companion](const QString& file) {
        QFile::rename(file + companion, file + companion + "-moved");
        QFile::link(file + companion + "-moved", file + companion);
    };
}

void sellSome(Journal& journal)
{
    const auto charge = journal.beginCharge(450, noon);
    const CardOutcome paid{charge->id, rivo::payment::Verdict::Approved, {}, {}};
    const bool isDone = journal.recordOpeningFloat(5000, noon) && sell(journal, {190, 95}) &&
                        journal.confirmSale({ticket(450)}, {PayMethod::Card}, noon, paid) &&
                        journal.markPrinted(1) && journal.recordCopy(1, noon) &&
                        journal.reverse(3, {1}, ReversalKind::Void, "late", 190, noon) &&
                        journal.recordClock(ClockRemark::Step, 5, noon) &&
                        journal.closeShift(noon) && journal.handOver(17, noon, 5000) &&
                        journal.beginCardDay(17, noon) && journal.recordCardDay(17, 450, noon) &&
                        sell(journal, {95}) && journal.appendToBasket(ticket(7));
    if (!isDone)
        qFatal("The shift cannot be kept");
}

} // namespace

Q_DECLARE_METATYPE(Harm)

/// Seals, head and key of a journal: what was changed, removed, replaced or put back is noticed.
class TestJournalChain : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void everyRecordHasASeal()
    {
        OpenJournal journal(file());
        sellSome(journal);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*), MIN(record), length(hash),"
                                          " length(signature) FROM seal"),
                 QStringList("15|0|32|64"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(DISTINCT hash) FROM seal"),
                 QStringList("15"));
    }

    void companionsAreForTheirUserAlone()
    {
        const mode_t before = umask(0);
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190}));
        }
        umask(before);
        for (const QString& companion : companions) {
            struct stat info = {};
            QCOMPARE(stat(QFile::encodeName(file() + companion).constData(), &info), 0);
            QCOMPARE(info.st_mode & 0777U, 0600U);
        }
    }

    void changeOfAClosedJournalIsNoticed_data()
    {
        const Table<Harm, QString> add("harm", "fault");
        // With sums that agree: only the seals differ.
        add("price, sum and money of a sale",
            edit({"UPDATE ticket SET price = 45 WHERE number = 4",
                  "UPDATE sale SET total = 45, given = 45 WHERE record = 14"}),
            "damaged");
        for (const char* statement :
             {"UPDATE record SET at = '2026-03-29T11:00:00.000Z' WHERE id = 14",
              "UPDATE record SET driver = 7 WHERE id = 14",
              "UPDATE ticket SET to_zone = 9 WHERE number = 4",
              "UPDATE ticket SET fare_product_name = 'free' WHERE number = 4",
              "UPDATE ticket SET fare_product_name = CAST(x'ff' AS TEXT) WHERE number = 4",
              "UPDATE ticket SET vehicle = x'' WHERE number = 4",
              "UPDATE opening SET amount = 4000",
              "UPDATE clock SET milliseconds = 6",
              "UPDATE hand_over SET counted = counted + 1, difference = difference + 1",
              "UPDATE reversal SET reason = 'other'",
              "UPDATE reversal SET reason_kind = 2",
              "UPDATE outcome SET card = '1234'",
              "UPDATE payment SET reason = 'x'",
              "UPDATE card_day SET difference = 1 WHERE total NOT NULL",

              "UPDATE chain SET first_shift = 16",
              "UPDATE chain SET last_ticket = 1",
              "UPDATE chain SET base = 1",
              "DELETE FROM hand_over",
              "DELETE FROM clock",
              "DELETE FROM seal",
              "DELETE FROM seal WHERE record = 3",
              "DELETE FROM seal WHERE record = 0",
              "UPDATE seal SET hash = zeroblob(32) WHERE record = 3",
              "UPDATE seal SET signature = zeroblob(64) WHERE record = 3",
              "UPDATE seal SET signature = zeroblob(64) WHERE record = 14",
              "INSERT INTO seal VALUES (15, zeroblob(32), zeroblob(64))",
              "UPDATE sqlite_sequence SET seq = 2 WHERE name = 'ticket'",
              "UPDATE sqlite_sequence SET seq = 99 WHERE name = 'ticket'"})
            add(statement, edit({statement}), "damaged");
        add("the last sale",
            edit({"DELETE FROM unprinted WHERE ticket = 4", "DELETE FROM ticket WHERE number = 4",
                  "DELETE FROM sale WHERE record = 14", "DELETE FROM seal WHERE record = 14",
                  "DELETE FROM record WHERE id = 14",
                  "UPDATE sqlite_sequence SET seq = 13 WHERE name = 'record'",
                  "UPDATE sqlite_sequence SET seq = 3 WHERE name = 'ticket'"}),
            "replaced");
        for (const QString& companion : companions.mid(0, 2)) {
            add(qPrintable(companion + " is missing"), removed(companion), "replaced");
            add(qPrintable(companion + " is another's"), foreign(companion), "replaced");
            add(qPrintable(companion + " is a link"), linked(companion), "replaced");
            add(
                qPrintable(companion + " is empty"),
                [companion](const QString& file) { write(file + companion, {}); }, "replaced");
        }
        add(
            "journal is missing", [](const QString& file) { QFile::remove(file); }, "replaced");
        add(
            "journal is empty", [](const QString& file) { write(file, {}); }, "replaced");
        add("journal is another's", foreign({}), "replaced");
        add("journal without seals",
            edit({"DROP TABLE seal", "DROP TABLE chain", "PRAGMA user_version=5"}), "replaced");
        add(
            "journal without seals, head removed",
            [](const QString& file) {
                executeIn(file, {"DROP TABLE seal", "DROP TABLE chain", "PRAGMA user_version=5"});
                QFile::remove(file + ".head");
            },
            "replaced");
        add("its public key alone", removed(".pub"), "none"); // the key has it
    }

    void changeOfAClosedJournalIsNoticed()
    {
        QFETCH(Harm, harm);
        QFETCH(QString, fault);
        {
            OpenJournal journal(file());
            sellSome(journal);
        }
        harm(file());
        const QMap<QString, QByteArray> before = filesIn(m_folder->path());
        for (int attempt = 0; attempt < 2; ++attempt) {
            OpenJournal journal(file());
            QCOMPARE(kindOf(journal.fault()), fault);
            QCOMPARE(sell(journal, {95}), fault == "none");
        }
        if (fault != "none")
            QCOMPARE(filesIn(m_folder->path()), before);
    }

    void olderCopyIsNoticed()
    {
        const QString copy = m_folder->filePath("copy.db");
        {
            OpenJournal journal(file());
            sellSome(journal);
        }
        QVERIFY(QFile::copy(file(), copy));
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190}));
        }
        QVERIFY(QFile::remove(file()) && QFile::rename(copy, file()));
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "replaced");
        QCOMPARE(journal.fault()->detail, "the journal ends before its head");
    }

    /// Power goes after the transaction and before the head.
    void journalMayBeAheadOfItsHead()
    {
        {
            OpenJournal journal(file());
            sellSome(journal);
        }
        const QByteArray head = contentOf(file() + ".head");
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190}));
        }
        write(file() + ".head", head);
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(sell(journal, {190}));
    }

    void oneTornBlockOfTheHeadIsNoFault_data()
    {
        QTest::addColumn<int>("block");
        QTest::newRow("first block") << 0;
        QTest::newRow("second block") << 1;
    }

    void oneTornBlockOfTheHeadIsNoFault()
    {
        QFETCH(int, block);
        {
            OpenJournal journal(file());
            sellSome(journal);
        }
        QByteArray head = contentOf(file() + ".head");
        write(file() + ".head", head.replace(block * 512 + 100, 300, QByteArray(300, 'x')));
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(sell(journal, {190}));
    }

    /// Between any two steps of the first start.
    void interruptedFirstStartIsTakenUp_data()
    {
        QTest::addColumn<QStringList>("lost");
        QTest::newRow("nothing but the empty file") << QStringList{".head", ".key", ".pub", ""};
        QTest::newRow("no head yet for the journal") << QStringList{".head"};
    }

    void interruptedFirstStartIsTakenUp()
    {
        QFETCH(QStringList, lost);
        {
            const OpenJournal made(file());
        }
        for (const QString& each : lost)
            QFile::remove(file() + each);
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(sell(journal, {190}));
    }

    void changeOfAnOpenJournalIsNoticedAtTheNextWrite_data()
    {
        const Table<Harm> add("harm");
        for (const QString& each : {QString(), QString("-wal"), QString(".head")}) {
            const QString name = each.isEmpty() ? "database" : each;
            add(qPrintable(name + " removed"), removed(each));
            add(qPrintable(name + " replaced by its copy"), [each](const QString& file) {
                QFile::copy(file + each, file + each + "-copy");
                QFile::remove(file + each);
                QFile::rename(file + each + "-copy", file + each);
            });
            add(qPrintable(name + " moved away"), [each](const QString& file) {
                QFile::rename(file + each, file + each + "-moved");
            });
            add(qPrintable(name + " replaced by a link"), linked(each));
        }
        add("database cut off", [](const QString& file) { QFile::resize(file, 4096); });
        add("database emptied", [](const QString& file) { QFile::resize(file, 0); });
        add("log cut off", [](const QString& file) { QFile::resize(file + "-wal", 32); });
        add("log emptied", [](const QString& file) { QFile::resize(file + "-wal", 0); });
    }

    void changeOfAnOpenJournalIsNoticedAtTheNextWrite()
    {
        QFETCH(Harm, harm);
        OpenJournal journal(file());
        sellSome(journal);
        harm(file());
        QVERIFY(!sell(journal, {190}));
        QCOMPARE(kindOf(journal.fault()), "replaced");
        QVERIFY(!sell(journal, {190}));
    }

private:
    QString file() const { return fileIn(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalChain)
#include "tst_journal_chain.moc"
