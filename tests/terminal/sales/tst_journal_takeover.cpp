#include "FileSizeLimit.h"
#include "JournalFiles.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace rivo::sales;

namespace
{

constexpr quint32 seed = 20260329;

/// data/journal-v2.sql as single statements.
QStringList fixture()
{
    const QString text = QString::fromUtf8(contentOf(JOURNAL_TEST_DATA "/journal-v2.sql"));
    QStringList statements;
    for (const QString& statement : text.split(";\n", Qt::SkipEmptyParts))
        statements.append(statement);
    return statements << "PRAGMA journal_mode=wal";
}

/// More sales in the running shift of the fixture.
QStringList manySales(int count)
{
    const QString numbers = QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1"
                                           " FROM n WHERE i < %1) ")
                                .arg(count);
    return {numbers + "INSERT INTO sale SELECT 7 + i, 20, '2026-03-29T14:00:00.000+02:00', 1, 190"
                      " FROM n",
            numbers + "INSERT INTO ticket SELECT 11 + i, 7 + i, 1, 11, 21, 1, 2, 'adult', 'single',"
                      " '', 190, '', '', 0, 0, 1, 2, 3, 4, 5, 6, '' FROM n"};
}

const QStringList shiftsOfFixture{
    "16: 4 tickets 735, 1 by card 450, 1-4, closed 29 10:10, paid 29 10:51",
    "17: 1 tickets 190, 1 by card 190, 5-5, closed 29 10:30, paid 29 10:30",
    "18: 2 tickets 100, 0 by card 0, 6-7, closed 29 10:50",
    "19: 0 tickets 0, 0 by card 0, 0-0, closed 29 10:51, paid 29 10:51",
    "20: 4 tickets 742, 0 by card 0, 8-11"};

/// Kind, shift, time, driver of each record.
const char* const allRecords = "SELECT id, kind, shift, substr(at, 12, 8), driver FROM record"
                               " ORDER BY id";

/// What makes a journal of version 5 of one with seals.
const QStringList asVersion5{"DROP TABLE seal", "DROP TABLE chain", "PRAGMA user_version=5"};

/// What makes a journal of version 3 of one without payments by card.
const QStringList asVersion3{"DROP TABLE seal",           "DROP TABLE chain",
                             "DROP TABLE card_day",       "DROP TABLE card_reversal",
                             "DROP TABLE card_sale",      "DROP TABLE outcome",
                             "DROP TABLE payment_ticket", "DROP TABLE payment",
                             "DROP TABLE clock",          "PRAGMA user_version=3"};

/// What makes a journal of version 4 of one without remarks about the clock.
const QStringList asVersion4{"DROP TABLE seal", "DROP TABLE chain", "DROP TABLE clock",
                             "PRAGMA user_version=4"};

/// Makes a journal of an earlier version of one that is closed.
void makeOlder(const QString& file, const QStringList& statements)
{
    executeIn(file, statements);
    for (const QString& companion : companions)
        QFile::remove(file + companion);
}

const char* const allTables = "SELECT type, name, tbl_name, sql FROM sqlite_master"
                              " ORDER BY type, name";

} // namespace

/// Journals of the versions before become journals of this one, as a whole or not at all.
class TestJournalTakeover : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void nothingIsLost()
    {
        executeIn(file(), fixture());
        for (int attempt = 0; attempt < 2; ++attempt) {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 99)), "none");
            QCOMPARE(shiftsOf(journal), shiftsOfFixture);
            QCOMPARE(valuesOf(journal.basket(), &Ticket::price), (QVector<qint64>{95, 190}));
            const QVector<Ticket> unprinted = journal.unprintedTickets();
            QCOMPARE(valuesOf(unprinted, &Ticket::number), (QVector<qint64>{10, 11}));
            QCOMPARE(unprinted.at(1).fareProductName, "day ticket");
            QCOMPARE(unprinted.at(1).origin, "Łąka");
            QCOMPARE(unprinted.at(1).destination, "Zakręt 'B'");
            QCOMPARE(unprinted.at(1).trip.tripsExecutionId, -10);
            QCOMPARE(unprinted.at(1).payMethod, 1);
            QVERIFY(unprinted.at(1).isDaily);
            QCOMPARE(unprinted.at(1).validity, "");
        }
        QCOMPARE(contentOf(file()).mid(60, 4), QByteArray("\0\0\0\6", 4));
        QVERIFY(!QFile::exists(file() + "-wal"));
    }

    void whatHappenedBecomesRecordsInItsOrder()
    {
        executeIn(file(), fixture());
        OpenJournal journal(file());
        QCOMPARE(rowsOf(onlyConnection(), allRecords),
                 (QStringList{"1|2|16|12:00:00|0",  "2|3|16|12:00:00|0",  "3|3|16|12:00:00|0",
                              "4|2|16|12:01:00|0",  "5|3|16|12:01:00|0",  "6|2|16|12:02:00|0",
                              "7|3|16|12:02:00|0",  "8|5|16|12:10:00|0",  "9|2|17|12:20:00|0",
                              "10|3|17|12:20:00|0", "11|5|17|12:30:00|0", "12|2|18|12:40:00|0",
                              "13|3|18|12:40:00|0", "14|3|18|12:40:00|0", "15|5|18|12:50:00|0",
                              "16|5|19|12:51:40|0", "17|2|20|13:00:00|0", "18|3|20|13:00:00|0",
                              "19|2|20|13:01:00|0", "20|3|20|13:01:00|0", "21|6|16|12:51:00|0"}));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT * FROM sale"),
                 (QStringList{"1|1|285|0|285|0", "4|2|450|0|0|0", "6|1|0|0|0|0", "9|2|190|0|0|0",
                              "12|1|100|0|100|0", "17|1|7|0|7|0", "19|1|735|0|735|0"}));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT ticket, record, is_copy FROM printout"),
                 (QStringList{"1|2|0", "2|3|0", "3|5|0", "4|7|0", "5|10|0", "6|13|0", "7|14|0",
                              "8|18|0", "9|20|0"}));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT shift, counted, difference FROM hand_over"),
                 QStringList("16|285|0"));
    }

    void tablesAreThoseOfANewJournal()
    {
        executeIn(file(), fixture());
        const char* const schema = "SELECT type, name, tbl_name, sql FROM sqlite_master"
                                   " ORDER BY type, name";
        QStringList taken;
        {
            OpenJournal journal(file());
            taken = rowsOf(onlyConnection(), schema);
        }
        OpenJournal journal(m_folder->filePath("new.db"));
        QCOMPARE(taken, rowsOf(onlyConnection(), schema));
    }

    void version3GetsTheTablesOfPayments()
    {
        QStringList tables;
        QStringList content;
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(sell(journal, {450}, PayMethod::Card));
            QVERIFY(journal.markPrinted(1));
            QVERIFY(journal.reverse(2, {3}, ReversalKind::Void, {}, 450, noon));
            QVERIFY(journal.closeShift(noon));
            QVERIFY(sell(journal, {10}));
            QVERIFY(journal.appendToBasket(ticket(5)));
            tables = rowsOf(onlyConnection(), allTables);
            content = journalContent();
        }
        makeOlder(file(), asVersion3);
        for (int attempt = 0; attempt < 2; ++attempt) {
            OpenJournal journal(file());
            QCOMPARE(kindOf(journal.fault()), "none");
            QCOMPARE(rowsOf(onlyConnection(), allTables), tables);
            QCOMPARE(journalContent(), content);
            QVERIFY(!journal.openPayment());
            QVERIFY(!journal.chargeOf(2));
            QCOMPARE(journal.shiftOfOpenCardDay(), 0);
        }
        QCOMPARE(contentOf(file()).mid(60, 4), QByteArray("\0\0\0\6", 4));
        OpenJournal journal(file());
        QVERIFY(journal.beginCharge(5, noon));
    }

    void version4GetsTheTableOfTheClock()
    {
        QStringList tables;
        QStringList content;
        {
            OpenJournal journal(file());
            const auto charge = journal.beginCharge(95, noon);
            QVERIFY(charge);
            QVERIFY(journal.recordOutcome(
                {charge->id, rivo::payment::Verdict::Declined, {}, "no money"}, noon));
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(journal.closeShift(noon));
            tables = rowsOf(onlyConnection(), allTables);
            content = journalContent();
        }
        makeOlder(file(), asVersion4);
        for (int attempt = 0; attempt < 2; ++attempt) {
            OpenJournal journal(file());
            QCOMPARE(kindOf(journal.fault()), "none");
            QCOMPARE(rowsOf(onlyConnection(), allTables), tables);
            QCOMPARE(journalContent(), content);
        }
        QCOMPARE(contentOf(file()).mid(60, 4), QByteArray("\0\0\0\6", 4));
        OpenJournal journal(file());
        QVERIFY(journal.recordClock(ClockRemark::Step, -5000, noon));
    }

    /// Signed from here on: what came before is covered by the first seal as a whole.
    void version5GetsSeals()
    {
        QStringList content;
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(journal.closeShift(noon));
            content = journalContent();
        }
        makeOlder(file(), asVersion5);
        {
            OpenJournal journal(file());
            QCOMPARE(kindOf(journal.fault()), "none");
            QCOMPARE(journalContent(), content);
            QVERIFY(sell(journal, {95}));
            QCOMPARE(rowsOf(onlyConnection(), "SELECT base, first_shift, last_ticket FROM chain"),
                     QStringList("2|17|2"));
            QCOMPARE(rowsOf(onlyConnection(), "SELECT record FROM seal"), (QStringList{"2", "3"}));
        }
        executeIn(file(), {"UPDATE record SET driver = 5 WHERE id = 1"});
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "damaged");
        QCOMPARE(journal.fault()->detail, "record 2: what the journal began with was changed");
    }

    void oneWithRecordsThatIsNotWholeStaysAsItIs_data()
    {
        QTest::addColumn<QStringList>("version");
        QTest::addColumn<QString>("harm");
        const QString otherSum = "UPDATE sale SET total = 1";
        QTest::newRow("version 3 with another sum") << asVersion3 << otherSum;
        QTest::newRow("version 4 with another sum") << asVersion4 << otherSum;
        QTest::newRow("version 4 without the tables of payments")
            << asVersion3 << "PRAGMA user_version=4";
        QTest::newRow("version 3 with a trigger")
            << asVersion3
            << "CREATE TRIGGER planted AFTER INSERT ON record BEGIN DELETE FROM unprinted; END";
        QTest::newRow("version 4 with a record of the clock")
            << asVersion4 << "INSERT INTO record (kind, shift, at, driver) VALUES (10, 17, '', 0)";
    }

    void oneWithRecordsThatIsNotWholeStaysAsItIs()
    {
        QFETCH(QStringList, version);
        QFETCH(QString, harm);
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
        }
        makeOlder(file(), version + QStringList{harm, "PRAGMA journal_mode=delete"});
        const QMap<QString, QByteArray> files = filesIn(m_folder->path());
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "damaged");
        QCOMPARE(filesIn(m_folder->path()), files);
    }

    void sellingGoesOn()
    {
        executeIn(file(), fixture());
        {
            OpenJournal journal(file());
            QVERIFY(journal.markPrinted(10));
            QVERIFY(journal.markPrinted(11));
            QVERIFY(sell(journal, {95}, PayMethod::Card));
            QCOMPARE(valuesOf(journal.unprintedTickets(), &Ticket::number), QVector<qint64>{12});
            QCOMPARE(text(journal.handOver(18, noon)),
                     "18: 2 tickets 100, 0 by card 0, 6-7, closed 29 10:50, paid 29 12:00");
            QVERIFY(!journal.handOver(16, noon));
            QVERIFY(!journal.handOver(19, noon));
            QCOMPARE(text(journal.closeShift(noon)),
                     "20: 5 tickets 837, 1 by card 95, 8-12, closed 29 12:00");
        }
        Journal again;
        QCOMPARE(kindOf(again.open(file(), euro, 1)), "none");
    }

    /// The last tickets were removed by hand; version 2 accepted that.
    void numbersThatWereGivenAreNotGivenAgain()
    {
        executeIn(file(), fixture() << "DELETE FROM ticket WHERE sale > 5"
                                    << "DELETE FROM sale WHERE id > 5");
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(sell(journal, {95}));
        QCOMPARE(valuesOf(journal.unprintedTickets(), &Ticket::number), QVector<qint64>{12});
    }

    void journalWithoutSalesIsTakenOver()
    {
        executeIn(file(), fixture() << "DELETE FROM ticket"
                                    << "DELETE FROM sale"
                                    << "DELETE FROM shift WHERE z_number < 20"
                                    << "DELETE FROM basket"
                                    << "DELETE FROM sqlite_sequence");
        OpenJournal journal(file());
        QCOMPARE(shiftsOf(journal), QStringList("20: 0 tickets 0, 0 by card 0, 0-0"));
        QVERIFY(sell(journal, {95}));
        QCOMPARE(valuesOf(journal.unprintedTickets(), &Ticket::number), QVector<qint64>{1});
    }

    void oneThatIsNotWholeStaysAsItIs_data()
    {
        QTest::addColumn<QString>("harm");
        QTest::addColumn<QString>("fault");
        for (const char* harm :
             {"UPDATE sale SET total = 1 WHERE id = 3",
              "UPDATE sale SET shift = 99 WHERE id = 7",
              "UPDATE sale SET pay_method = 2 WHERE id = 1",
              "DELETE FROM sale WHERE id = 1",
              "DELETE FROM ticket WHERE number = 2",
              "DELETE FROM ticket WHERE sale = 3",
              "DELETE FROM shift WHERE closed_at IS NULL",
              "INSERT INTO shift (z_number) VALUES (3)",
              "UPDATE shift SET z_number = 15 WHERE z_number = 20",
              "UPDATE shift SET closed_at = NULL WHERE z_number = 19",
              "UPDATE shift SET paid_at = '2026' WHERE z_number = 20",
              "UPDATE shift SET ticket_count = 5 WHERE z_number = 16",
              "UPDATE shift SET ticket_sum = 5 WHERE z_number = 16",
              "UPDATE shift SET card_count = NULL WHERE z_number = 18",
              "UPDATE shift SET card_sum = 1 WHERE z_number = 19",
              "UPDATE shift SET first_ticket = 2 WHERE z_number = 16",
              "UPDATE shift SET last_ticket = 5 WHERE z_number = 16",
              "DROP TABLE basket",
              "DELETE FROM journal",
              "DROP INDEX ticket_unprinted",
              "CREATE VIEW planted AS SELECT 1",
              "CREATE TRIGGER planted AFTER INSERT ON shift BEGIN DELETE FROM old_sale; END"})
            QTest::newRow(harm) << harm << "damaged";
        QTest::newRow("another currency") << "UPDATE journal SET currency = 'PLN'"
                                          << "other currency";
        QTest::newRow("an earlier version") << "PRAGMA user_version=1"
                                            << "other version";
    }

    void oneThatIsNotWholeStaysAsItIs()
    {
        QFETCH(QString, harm);
        QFETCH(QString, fault);
        executeIn(file(), fixture() << "PRAGMA foreign_keys=OFF" << harm);
        const QMap<QString, QByteArray> before = filesIn(m_folder->path());
        for (int attempt = 0; attempt < 2; ++attempt) {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), fault);
            QVERIFY(!sell(journal, {95}));
        }
        QCOMPARE(filesIn(m_folder->path()), before);
    }

    /// The system takes some bytes of the new tables and not the rest.
    void storageThatIsFullLeavesTheOldOne()
    {
        int cuts = 0;
        for (rlim_t bytes = 0;; bytes += 30000) {
            removeJournal(file());
            executeIn(file(), fixture());
            {
                Journal journal;
                const FileSizeLimit limit(bytes);
                if (!journal.open(file(), euro, 17))
                    break;
                QVERIFY(journal.fault().has_value());
                QVERIFY(!sell(journal, {95}));
            }
            ++cuts;
            executeIn(file(), {}, [&] {
                const QSqlDatabase plain = QSqlDatabase::database("plain");
                QCOMPARE(rowsOf(plain, "PRAGMA user_version"), QStringList("2"));
                QCOMPARE(rowsOf(plain, "SELECT COUNT(*), SUM(printed) FROM ticket"),
                         QStringList("11|9"));
            });
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(shiftsOf(journal), shiftsOfFixture);
        }
        QVERIFY2(cuts > 2, qPrintable(QString::number(cuts)));
    }

    /// Killed at any moment, the old journal or the new one is there.
    void killLeavesOneOfBoth()
    {
        constexpr int sales = 4000;
        const QString original = m_folder->filePath("original.db");
        executeIn(original, fixture() + manySales(sales));
        int old = 0;
        int taken = 0;
        QRandomGenerator random(seed);
        for (int kill = 0; kill < 10; ++kill) {
            removeJournal(file());
            QVERIFY(QFile::copy(original, file()));
            QProcess script;
            script.start(SALE_SCRIPT, {file(), "1", "0"});
            QVERIFY(script.waitForStarted());
            script.waitForFinished(random.bounded(20, 700));
            script.kill();
            script.waitForFinished();
            executeIn(file(), {}, [&] {
                const QSqlDatabase plain = QSqlDatabase::database("plain");
                const bool isOld = rowsOf(plain, "PRAGMA user_version") == QStringList("2");
                ++(isOld ? old : taken);
                QCOMPARE(
                    rowsOf(plain, "SELECT COUNT(*), SUM(price) FROM ticket"),
                    QStringList(QStringLiteral("%1|%2").arg(sales + 11).arg(sales * 190 + 1767)));
                QCOMPARE(rowsOf(plain, "SELECT COUNT(*) FROM sqlite_master WHERE name LIKE 'old_%'"
                                       " OR name = 'taken_over'"),
                         QStringList("0"));
            });
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(shiftsOf(journal).mid(0, 4), shiftsOfFixture.mid(0, 4));
            QCOMPARE(journal.runningShift().value().ticketSum, sales * 190 + 742);
        }
        qInfo("%d kills left the old journal, %d the new one", old, taken);
        QVERIFY(old > 0);
    }

private:
    QString file() const { return m_folder->filePath("journal.db"); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalTakeover)
#include "tst_journal_takeover.moc"
