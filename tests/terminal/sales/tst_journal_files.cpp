#include "JournalFiles.h"
#include "Table.h"
#include "WithoutRootRights.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

#include <sys/stat.h>

using namespace rivo::sales;

namespace
{

/// A copy of a database and its write-ahead log, while the database is open.
void copyWithLog(const QString& from, const QString& to)
{
    if (!QFile::copy(from, to) || !QFile::copy(from + "-wal", to + "-wal") ||
        QFileInfo(to + "-wal").size() <= 4096)
        qFatal("%s cannot be copied", qPrintable(from));
}

/// Makes files in a folder and returns the one to open.
using Prepare = std::function<QString(const QString& folder)>;

Prepare content(const QByteArray& bytes)
{
    return [bytes](const QString& folder) {
        write(fileIn(folder), bytes);
        return fileIn(folder);
    };
}

Prepare database(const QStringList& statements)
{
    return [statements](const QString& folder) {
        executeIn(fileIn(folder), statements);
        return fileIn(folder);
    };
}

/// The journal as a power cut leaves it: two tickets and `statement` are in the log alone.
Prepare powerCut(const QString& statement, const Currency& money = euro)
{
    return [=](const QString& folder) {
        const QString living = folder + "/living.db";
        {
            OpenJournal journal(living, 17, money);
            if (!sell(journal, {190, 95}))
                qFatal("Nothing can be sold");
            rowsOf(onlyConnection(), statement);
            copyWithLog(living, fileIn(folder));
            copyCompanions(living, fileIn(folder));
        }
        removeJournal(living);
        return fileIn(folder);
    };
}

/// A journal of two closed shifts, 100 sales in the first, that `harm` was done to.
Prepare harmed(const std::function<void(const QString& file)>& harm)
{
    return [harm](const QString& folder) {
        {
            OpenJournal journal(fileIn(folder));
            rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
            for (int sale = 0; sale < 100; ++sale)
                journal.confirmSale({ticket(190, QString(900, 'x')), ticket(95)},
                                    {sale % 3 == 0 ? PayMethod::Card : PayMethod::Cash}, noon);
            if (!journal.closeShift(noon) || !journal.closeShift(noon))
                qFatal("No shift can be closed");
        }
        harm(fileIn(folder));
        return fileIn(folder);
    };
}

/// What `make` makes at the place of the journal.
Prepare special(int (*make)(const char* path))
{
    return [make](const QString& folder) {
        if (make(QFile::encodeName(fileIn(folder)).constData()) != 0)
            qFatal("The special file cannot be made");
        return fileIn(folder);
    };
}

Prepare harmed(const QString& statement)
{
    return harmed([statement](const QString& file) { executeIn(file, {statement}); });
}

/// A page of zeros, counted from the end.
Prepare harmedPage(int page)
{
    return harmed([page](const QString& file) {
        QByteArray content = contentOf(file);
        write(file, content.replace(content.size() - page * 4096, 4096, QByteArray(4096, '\0')));
    });
}

/// Sums and tickets are found through indexes: one that lost an entry loses a sale.
QString harmedIndex(const QString& folder)
{
    {
        OpenJournal journal(fileIn(folder), 413);
        sell(journal, {190});
        sell(journal, {95});
    }
    // Entries of the index record_shift: header of 4 bytes, the shift (0x019d), the kind of record,
    // its number.
    QByteArray content = contentOf(fileIn(folder));
    const int entry = content.indexOf(QByteArray("\x04\x02\x01\x01\x01\x9d\x02\x02", 8));
    if (entry < 0)
        qFatal("The index has no such entry");
    content[entry + 5] = '\x9e';
    write(fileIn(folder), content);
    return fileIn(folder);
}

/// SQLite itself would move the log into the database of anyone who crashed.
QString logOfAnotherProgram(const QString& folder)
{
    const QString living = folder + "/living.db";
    executeIn(living, {"PRAGMA journal_mode=WAL", "CREATE TABLE diary (day)"},
              [&] { copyWithLog(living, fileIn(folder)); });
    QFile::remove(living);
    return fileIn(folder);
}

/// The sales may be in the log: a new journal would throw it away.
Prepare logAlone(bool isDatabaseThere)
{
    return [isDatabaseThere](const QString& folder) {
        if (isDatabaseThere)
            write(fileIn(folder), {});
        write(fileIn(folder) + "-wal", "all that was sold today");
        return fileIn(folder);
    };
}

/// Opened through a link to a link.
Prepare linked(const Prepare& prepare)
{
    return [prepare](const QString& folder) {
        const QString target = prepare(folder);
        if (!QFile::link("other-link", folder + "/link") ||
            !QFile::link(target, folder + "/other-link"))
            qFatal("No links can be made");
        return folder + "/link";
    };
}

} // namespace

Q_DECLARE_METATYPE(Prepare)

/// Files that are damaged, of another program or out of reach: they are refused and stay as they
/// are.
class TestJournalFiles : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    /// Every byte stays for a later look, with what the terminal left when it lost power.
    void refusedFileStaysAsItIs_data()
    {
        const Table<Prepare, QString> add("prepare", "fault");
        add("text", content("Dear diary, today I sold nothing at all.\n"), "damaged");
        add("one byte", content("S"), "damaged");
        add("zeros", content(QByteArray(8192, '\0')), "damaged");
        add("database that ends in its header", content("SQLite format 3"), "damaged");

        add("database of another program", database({"CREATE TABLE diary (day)"}), "foreign");
        add("another program's, with a write-ahead log",
            database({"PRAGMA journal_mode=WAL", "CREATE TABLE diary (day)"}), "foreign");
        add("another program's, with an unfinished log", logOfAnotherProgram, "foreign");
        add("another program's identifier",
            database({"PRAGMA application_id=77", "CREATE TABLE journal (currency)"}), "foreign");
        const QString ours = QStringLiteral("PRAGMA application_id=%1").arg(0x5269764a);
        add("newer version", database({ours, "PRAGMA user_version=8", "CREATE TABLE journal (a)"}),
            "other version");
        add("older version", database({ours, "PRAGMA user_version=1", "CREATE TABLE journal (a)"}),
            "other version");
        add("our identifier, other tables",
            database({ours, "PRAGMA user_version=6", "CREATE TABLE journal (a)"}), "damaged");
        for (const char* before : {"PRAGMA user_version=5", "PRAGMA user_version=4",
                                   "PRAGMA user_version=3", "PRAGMA user_version=2"})
            add(qPrintable(QStringLiteral("our identifier, other tables: %1").arg(before)),
                database({ours, before, "CREATE TABLE journal (a)"}), "damaged");

        add("another currency", powerCut("SELECT 1", Currency("PLN", 2)), "other currency");
        add("same code, other minor units", powerCut("SELECT 1", Currency("EUR", 3)),
            "other currency");
        add("another currency, found through links",
            linked(powerCut("SELECT 1", Currency("PLN", 2))), "other currency");
        add("another version in the log", powerCut("PRAGMA user_version=8"), "other version");
        add("sums in the log that do not agree", powerCut("UPDATE sale SET total = 7"), "damaged");
        add("table is missing in the log", powerCut("DROP TABLE basket"), "damaged");

        add("log of an empty database", logAlone(true), "damaged");
        add("log without a database", logAlone(false), "damaged");
        add("log of an empty database, found through links", linked(logAlone(true)), "damaged");
        add("log without a database, found through links", linked(logAlone(false)), "damaged");

        add(
            "missing folder", [](const QString& folder) { return folder + "/none/journal.db"; },
            "unreachable");
        add(
            "folder instead of a file", [](const QString& folder) { return folder; },
            "unreachable");

        add("pipe instead of a file",
            special([](const char* path) { return mkfifo(path, S_IRUSR | S_IWUSR); }), "foreign");
        add("socket instead of a file",
            special([](const char* path) { return mknod(path, S_IFSOCK | S_IRUSR | S_IWUSR, 0); }),
            "foreign");
        add("pipe instead of a file, found through links",
            linked(special([](const char* path) { return mkfifo(path, S_IRUSR | S_IWUSR); })),
            "foreign");

        add("last page is zeros", harmedPage(1), "damaged");
        add("page in the middle is zeros", harmedPage(20), "damaged");
        add("file is cut off", harmed([](const QString& file) {
                QFile::resize(file, QFile(file).size() / 2 / 4096 * 4096);
            }),
            "damaged");
        add("index differs from its table", harmedIndex, "damaged");
        for (const char* statement :
             {"UPDATE sale SET total = total + 1 WHERE record = 7",
              "UPDATE sale SET pay_method = 2, given = 0 WHERE record = 8", // not as the figures
              "UPDATE sale SET rounding = 1, given = given + 1 WHERE record = 8",
              "UPDATE sale SET given = given + 1 WHERE record = 8",
              "UPDATE sale SET change = 1 WHERE record = 8",
              "UPDATE record SET shift = 99 WHERE id = 100",
              "UPDATE record SET shift = 18 WHERE id = 100",
              "UPDATE record SET shift = 18 WHERE id = 101", // of a closing
              "UPDATE record SET kind = 5 WHERE id = 100", "DELETE FROM sale WHERE record = 1",
              "DELETE FROM record WHERE id = 102", "INSERT INTO record VALUES (200, 2, 17, '', 0)",
              "INSERT INTO opening VALUES (3, 100)", "DELETE FROM ticket WHERE number = 12",
              "DELETE FROM ticket WHERE sale = 3", "DELETE FROM unprinted WHERE ticket = 3",
              "DELETE FROM closing WHERE shift = 18", "DELETE FROM shift WHERE z_number = 19",
              "INSERT INTO shift VALUES (99)", "DELETE FROM journal", "DROP TABLE ticket",
              // None of them changes a figure yet.
              "CREATE TRIGGER planted AFTER INSERT ON sale BEGIN"
              " UPDATE sale SET total = 0 WHERE record = NEW.record; END",
              "CREATE TRIGGER planted BEFORE INSERT ON record BEGIN SELECT RAISE(IGNORE); END",
              "CREATE VIEW planted AS SELECT * FROM sale", "CREATE TABLE planted (a)",
              "CREATE INDEX planted ON sale (total)", "DROP INDEX printout_copy",
              "DROP INDEX outcome_known", "ALTER TABLE sale ADD COLUMN planted",
              "ALTER TABLE clock RENAME COLUMN remark TO planted", "ANALYZE"})
            add(statement, harmed(QString(statement)), "damaged");
        for (const char* figure :
             {"ticket_count", "ticket_sum", "card_count", "card_sum", "first_ticket", "last_ticket",
              "void_count", "void_sum", "refund_count", "refund_sum", "reversed_card_count",
              "reversed_card_sum", "rounding", "copy_count", "opening_float"}) {
            for (const char* statement : {"UPDATE closing SET %1 = %1 + 1 WHERE shift = 17",
                                          "UPDATE closing SET %1 = '' WHERE shift = 17",
                                          "UPDATE closing SET %1 = 1 WHERE shift = 18"}) {
                const QString harm = QString(statement).arg(figure);
                add(qPrintable(harm), harmed(harm), "damaged");
            }
        }
    }

    void refusedFileStaysAsItIs()
    {
        QFETCH(Prepare, prepare);
        QFETCH(QString, fault);
        const QString path = prepare(m_folder->path());
        const QMap<QString, QByteArray> before = filesIn(m_folder->path());
        for (int attempt = 0; attempt < 2; ++attempt) {
            Journal journal;
            QCOMPARE(kindOf(journal.open(path, euro, 17)), fault);
            QVERIFY(!sell(journal, {95}));
            QVERIFY(!journal.appendToBasket(ticket(95)));
            QVERIFY(!journal.runningShift());
            QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        }
        QCOMPARE(filesIn(m_folder->path()), before);
        QVERIFY(!QDir(m_folder->filePath("none")).exists());
    }

    void unfinishedLogOfOursIsTakenIn()
    {
        powerCut("SELECT 1")(m_folder->path());
        for (int attempt = 0; attempt < 2; ++attempt) {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(shiftsOf(journal), QStringList("17: 2 tickets 285, 0 by card 0, 1-2"));
        }
        QVERIFY(!QFile::exists(file() + "-wal"));
    }

    void newFilesAreForTheirUserAlone()
    {
        const mode_t before = umask(0);
        Journal journal;
        const auto fault = journal.open(file(), euro, 17);
        umask(before);
        QCOMPARE(kindOf(fault), "none");
        QVERIFY(sell(journal, {190}));
        for (const QString& each : {file(), file() + "-wal"}) {
            struct stat info = {};
            QCOMPARE(stat(QFile::encodeName(each).constData(), &info), 0);
            QCOMPARE(info.st_mode & 0777U, 0600U);
        }
    }

    /// As a user who may read the file and no more.
    void readOnlyFileIsUnreachable()
    {
        m_folder = std::make_unique<QTemporaryDir>(everybodysPlace());
        {
            Journal journal;
            journal.open(file(), euro, 17);
            QVERIFY(sell(journal, {190}));
        }
        const QByteArray before = contentOf(file());
        QVERIFY(QFile::setPermissions(file(), QFile::ReadOwner | QFile::ReadGroup));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner |
                                                            QFile::ReadOther | QFile::ExeGroup));
        QByteArray readable;
        Journal journal;
        std::optional<JournalFault> fault;
        bool isSold = true;
        {
            const WithoutRootRights rights;
            readable = contentOf(file());
            fault = journal.open(file(), euro, 17);
            isSold = sell(journal, {95});
        }
        QVERIFY(QFile::setPermissions(m_folder->path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QCOMPARE(readable, before);
        QCOMPARE(kindOf(fault), "unreachable");
        QVERIFY(!isSold);
        QCOMPARE(contentOf(file()), before);
    }

private:
    QString file() const { return fileIn(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalFiles)
#include "tst_journal_files.moc"
