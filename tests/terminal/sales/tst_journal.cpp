#include "FileSizeLimit.h"
#include "JournalFiles.h"
#include "SmallDisk.h"
#include "WithoutRootRights.h"

#include <QDebug>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace rivo::sales;

namespace
{

/// No two fields of a type are equal, and the price is no double.
const Ticket distinctTicket{0,
                            -1,
                            1,
                            2,
                            3,
                            4,
                            "Dziecko 'do' lat 7; \"--\" 😀",
                            "Jednorazowy",
                            "qrc:/icons/child.svg",
                            9007199254740993,
                            "Zakręt",
                            "Łąka",
                            true,
                            false,
                            {5, 6, 7, 8, 9, -10, "exec"},
                            "Dworzec",
                            "Rynek",
                            "N1",
                            "bus 7",
                            "60 min",
                            "8 %",
                            {},
                            0};

QString text(const Ticket& t)
{
    QString all;
    QDebug(&all) << t.number << t.payMethod << t.passengerTypeId << t.fareProductId
                 << t.fromStopGroupId << t.toStopGroupId << t.description << t.fareProductName
                 << t.icon << t.price << t.origin << t.destination << t.isReturnFee << t.isDaily
                 << t.trip.routeId << t.trip.fromStopId << t.trip.toStopId << t.trip.currentStopId
                 << t.trip.tripsRouteId << t.trip.tripsExecutionId << t.trip.publicRouteExecutionId
                 << t.fromStopName << t.toStopName << t.routeName << t.vehicle << t.validity
                 << t.tax;
    return all;
}

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
        }
        QFile::remove(living);
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

/// Something that the journal writes.
struct Step
{
    const char* name;
    std::function<bool(Journal&)> run;
};

const std::vector<Step>& steps()
{
    static const QString longText(20000, 'x');
    static const std::vector<Step> all{
        {"a line of the basket", [](Journal& j) { return j.appendToBasket(ticket(95, longText)); }},
        {"a sale",
         [](Journal& j) {
             return j
                 .confirmSale({ticket(190), ticket(95, longText), ticket(95)}, {PayMethod::Card},
                              noon)
                 .has_value();
         }},
        {"a printed ticket", [](Journal& j) { return j.markPrinted(2); }},
        {"a removed line", [](Journal& j) { return j.removeFromBasket(0); }},
        {"an emptied basket", [](Journal& j) { return j.clearBasket(); }},
        {"a closed shift", [](Journal& j) { return j.closeShift(noon).has_value(); }},
        {"cash handed over", [](Journal& j) { return j.handOver(16, noon).has_value(); }}};
    return all;
}

} // namespace

Q_DECLARE_METATYPE(Prepare)

class TestJournal : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void notOpenedIsStopped()
    {
        Journal journal;
        QCOMPARE(kindOf(journal.fault()), "unreachable");
        for (const Step& step : steps())
            QVERIFY2(!step.run(journal), step.name);
        QVERIFY(journal.basket().isEmpty());
        QVERIFY(journal.unprintedTickets().isEmpty());
        QCOMPARE(shiftsOf(journal), QStringList("none"));
    }

    void newFileStartsTheFirstShift_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("no file") << false;
        QTest::newRow("empty file") << true;
    }

    void newFileStartsTheFirstShift()
    {
        QFETCH(bool, isThere);
        if (isThere)
            write(file(), {});
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(kindOf(journal.fault()), "none");
        QCOMPARE(shiftsOf(journal), QStringList("17: 0 tickets 0, 0 by card 0, 0-0"));
        QVERIFY(journal.basket().isEmpty());
        QVERIFY(journal.unprintedTickets().isEmpty());
        QCOMPARE(rowsOf(onlyConnection(), "PRAGMA journal_mode"), QStringList("wal"));
        QCOMPARE(rowsOf(onlyConnection(), "PRAGMA synchronous"), QStringList("2"));
    }

    void openingAgainClosesFirst()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {190}));
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(shiftsOf(journal), QStringList("17: 1 tickets 190, 0 by card 0, 1-1"));
        QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
    }

    /// A journal as shipped is read by what ships later: the tables are an interface.
    void fileSaysWhatItIs()
    {
        OpenJournal(file()).clearBasket();
        const QByteArray header = contentOf(file()).left(72);
        QCOMPARE(header.mid(68, 4), QByteArray("RivJ"));
        QCOMPARE(header.mid(60, 4), QByteArray("\0\0\0\4", 4));
    }

    /// Every byte stays for a later look, with what the terminal left when it lost power.
    void refusedFileStaysAsItIs_data()
    {
        QTest::addColumn<Prepare>("prepare");
        QTest::addColumn<QString>("fault");
        const auto add = [](const char* what, const Prepare& prepare, const char* fault) {
            QTest::newRow(what) << prepare << fault;
        };

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
        add("newer version", database({ours, "PRAGMA user_version=5", "CREATE TABLE journal (a)"}),
            "other version");
        add("older version", database({ours, "PRAGMA user_version=1", "CREATE TABLE journal (a)"}),
            "other version");
        add("our identifier, other tables",
            database({ours, "PRAGMA user_version=4", "CREATE TABLE journal (a)"}), "damaged");
        for (const char* before : {"PRAGMA user_version=3", "PRAGMA user_version=2"})
            add(qPrintable(QStringLiteral("our identifier, other tables: %1").arg(before)),
                database({ours, before, "CREATE TABLE journal (a)"}), "damaged");

        add("another currency", powerCut("SELECT 1", Currency("PLN", 2)), "other currency");
        add("same code, other minor units", powerCut("SELECT 1", Currency("EUR", 3)),
            "other currency");
        add("another currency, found through links",
            linked(powerCut("SELECT 1", Currency("PLN", 2))), "other currency");
        add("another version in the log", powerCut("PRAGMA user_version=5"), "other version");
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
              "UPDATE record SET kind = 5 WHERE id = 100",
              "DELETE FROM sale WHERE record = 1",
              "DELETE FROM record WHERE id = 102",
              "INSERT INTO record VALUES (200, 2, 17, '', 0)",
              "INSERT INTO opening VALUES (3, 100)",
              "DELETE FROM ticket WHERE number = 12",
              "DELETE FROM ticket WHERE sale = 3",
              "DELETE FROM unprinted WHERE ticket = 3",
              "DELETE FROM closing WHERE shift = 18",
              "DELETE FROM shift WHERE z_number = 19",
              "INSERT INTO shift VALUES (99)",
              "DELETE FROM journal",
              "DROP TABLE ticket"})
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

    /// The terminal stays locked out by its twin even if nothing was ever sold.
    void secondOpenerFindsItLocked()
    {
        OpenJournal(file()).clearBasket();
        Journal second;
        {
            OpenJournal first(file());
            QCOMPARE(kindOf(second.open(file(), euro, 17)), "locked");
            QVERIFY(!sell(second, {95}));
            QVERIFY(sell(first, {190}));
            QCOMPARE(kindOf(second.open(file(), euro, 17)), "locked");
        }
        QCOMPARE(kindOf(second.open(file(), euro, 17)), "none");
        QCOMPARE(shiftsOf(second), QStringList("17: 1 tickets 190, 0 by card 0, 1-1"));
    }

    void basketLines()
    {
        OpenJournal journal(file());
        const auto removed = [&](int row) {
            return journal.removeFromBasket(row) ? valuesOf(journal.basket(), &Ticket::price)
                                                 : QVector<qint64>();
        };
        for (const Minor price : {1, 2, 3, 4})
            QVERIFY(journal.appendToBasket(ticket(price)));
        QCOMPARE(removed(1), (QVector<Minor>{1, 3, 4}));
        QCOMPARE(removed(2), (QVector<Minor>{1, 3}));
        QVERIFY(journal.appendToBasket(ticket(5)));
        QCOMPARE(removed(3), (QVector<Minor>{1, 3, 5}));
        QCOMPARE(removed(0), (QVector<Minor>{3, 5}));
        QVERIFY(journal.clearBasket());
        QVERIFY(journal.basket().isEmpty());
    }

    void saleNumbersItsTicketsAndEmptiesTheBasket()
    {
        Ticket expected = distinctTicket;
        {
            OpenJournal journal(file());
            QVERIFY(journal.appendToBasket(distinctTicket));
        }
        OpenJournal journal(file());
        QCOMPARE(journal.basket().size(), 1);
        QCOMPARE(text(journal.basket().at(0)), text(expected));
        const auto sold =
            journal.confirmSale({distinctTicket, ticket(95)}, {PayMethod::Card}, noon);
        QVERIFY(sold);
        expected.number = 1;
        expected.payMethod = 2;
        QCOMPARE(valuesOf(*sold, &Ticket::number), (QVector<qint64>{1, 2}));
        QCOMPARE(text(sold->at(0)), text(expected));
        QCOMPARE(text(journal.unprintedTickets().at(0)), text(expected));
        QVERIFY(journal.basket().isEmpty());
        QCOMPARE(rowsOf(onlyConnection(),
                        "SELECT shift, at, pay_method, total FROM sale JOIN record ON id = record"),
                 QStringList("17|2026-03-29T12:00:00.250Z|2|9007199254741088"));
    }

    void nothingCannotBeSold()
    {
        OpenJournal journal(file());
        const QStringList before = journalContent();
        QVERIFY(!journal.confirmSale({}, {PayMethod::Cash}, noon));
        QCOMPARE(journalContent(), before);
        QCOMPARE(kindOf(journal.fault()), "none");
    }

    void ticketsArePrintedOneByOne()
    {
        OpenJournal journal(file());
        QVERIFY(sell(journal, {190, 95, 450}));
        QVector<QVector<qint64>> left;
        for (const qint64 number : {1, 3, 2}) {
            QVERIFY(journal.markPrinted(number));
            left.append(valuesOf(journal.unprintedTickets(), &Ticket::number));
        }
        QCOMPARE(left, (QVector<QVector<qint64>>{{2, 3}, {2}, {}}));
    }

    void ticketNumbersAreNeverUsedAgain()
    {
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
        }
        executeIn(file(),
                  {"DELETE FROM unprinted", "DELETE FROM ticket", "DELETE FROM sale",
                   "DELETE FROM record", "DELETE FROM sqlite_sequence WHERE name = 'record'"});
        OpenJournal journal(file());
        QVERIFY(sell(journal, {95}));
        QCOMPARE(valuesOf(journal.unprintedTickets(), &Ticket::number), (QVector<qint64>{3}));
    }

    void shiftsAreSummedUpNumberedOnAndPaid()
    {
        QStringList shifts;
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(sell(journal, {450}, PayMethod::Card));
            QVERIFY(sell(journal, {0, 10}, PayMethod::Card));
            QCOMPARE(shiftsOf(journal), QStringList("17: 5 tickets 745, 3 by card 460, 1-5"));
            const auto closed = journal.closeShift(noon);
            QCOMPARE(text(closed), "17: 5 tickets 745, 3 by card 460, 1-5, closed 29 12:00");
            QCOMPARE(closed->cash(), 285);
            QVERIFY(sell(journal, {7}));
            QCOMPARE(text(journal.closeShift(noon.addDays(1))),
                     "18: 1 tickets 7, 0 by card 0, 6-6, closed 30 12:00");
            // Without cash they are paid when they are closed.
            QCOMPARE(text(journal.closeShift(noon.addDays(2))),
                     "19: 0 tickets 0, 0 by card 0, 0-0, closed 31 12:00, paid 31 12:00");
            QVERIFY(sell(journal, {450}, PayMethod::Card));
            QCOMPARE(text(journal.closeShift(noon.addSecs(60))),
                     "20: 1 tickets 450, 1 by card 450, 7-7, closed 29 12:01, paid 29 12:01");
            QCOMPARE(text(journal.handOver(17, noon.addSecs(120))),
                     "17: 5 tickets 745, 3 by card 460, 1-5, closed 29 12:00, paid 29 12:02");
            QVERIFY(sell(journal, {95}));
            shifts = shiftsOf(journal);
        }
        OpenJournal journal(file(), 99);
        QCOMPARE(shiftsOf(journal), shifts);
        QCOMPARE(
            shifts,
            (QStringList{"17: 5 tickets 745, 3 by card 460, 1-5, closed 29 12:00, paid 29 12:02",
                         "18: 1 tickets 7, 0 by card 0, 6-6, closed 30 12:00",
                         "19: 0 tickets 0, 0 by card 0, 0-0, closed 31 12:00, paid 31 12:00",
                         "20: 1 tickets 450, 1 by card 450, 7-7, closed 29 12:01, paid 29 12:01",
                         "21: 1 tickets 95, 0 by card 0, 8-8"}));
        QCOMPARE(journal.closedShifts().at(0).closedAt, noon); // to the millisecond
        QCOMPARE(journal.closedShifts().at(0).paidAt, noon.addSecs(120));
    }

    void nothingElseIsHandedOver()
    {
        OpenJournal journal(file());
        for (int day = 0; day < 3; ++day) {
            QVERIFY(sell(journal, {190}));
            QVERIFY(day == 2 || journal.closeShift(noon));
        }
        QVERIFY(journal.handOver(17, noon));
        const QStringList before = journalContent();
        for (const qint64 shift : {17, 19, 16, 20}) // paid, running, before the first, to come
            QVERIFY2(!journal.handOver(shift, noon.addDays(1)), qPrintable(QString::number(shift)));
        QCOMPARE(journalContent(), before);
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(journal.handOver(18, noon)); // it goes on working
    }

    void fullDiskStopsWithNothingHalfDone_data()
    {
        QTest::addColumn<int>("step");
        QTest::addColumn<bool>("isRefusedByTheSystem");

        for (int step = 0; step < 2; ++step) {
            QTest::addRow("no page left for %s", steps().at(step).name) << step << false;
        }
        for (int step = 0; step < static_cast<int>(steps().size()); ++step)
            QTest::addRow("no byte left for %s", steps().at(step).name) << step << true;
    }

    void fullDiskStopsWithNothingHalfDone()
    {
        QFETCH(int, step);
        QFETCH(bool, isRefusedByTheSystem);
        prepareDay();
        QStringList before;
        {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            before = journalContent();
            bool isDone = true;
            if (isRefusedByTheSystem) {
                const FileSizeLimit limit(16); // not even the start of a log
                isDone = steps().at(step).run(journal);
            } else {
                const QString pages = rowsOf(onlyConnection(), "PRAGMA page_count").at(0);
                rowsOf(onlyConnection(), "PRAGMA max_page_count=" + pages);
                isDone = steps().at(step).run(journal);
            }
            QVERIFY(!isDone);
            QCOMPARE(kindOf(journal.fault()), isRefusedByTheSystem ? "unreachable" : "full");
            QCOMPARE(journalContent(), before);
            for (const Step& each : steps())
                QVERIFY2(!each.run(journal), each.name); // until it is opened anew
            QCOMPARE(journalContent(), before);
            QVERIFY(journal.basket().isEmpty());
        }
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(journalContent(), before);
        QVERIFY(steps().at(step).run(journal));
    }

    void saleThatCannotBeFinishedIsUndone()
    {
        // A fault that does not make SQLite itself undo the transaction; no running shift.
        const char* const jam = "CREATE TEMP TRIGGER jam BEFORE INSERT ON ticket"
                                " WHEN NEW.price = 95 BEGIN SELECT RAISE(FAIL, 'jam'); END";
        for (const auto& [harm, fault] :
             {std::pair(jam, "unreachable"),
              {"INSERT INTO closing SELECT 17, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0",
               "damaged"}}) {
            QFile::remove(file());
            prepareDay();
            OpenJournal journal(file());
            rowsOf(onlyConnection(), harm);
            const QStringList before = journalContent();
            QVERIFY(!sell(journal, {190, 95}));
            QCOMPARE(kindOf(journal.fault()), fault);
            QCOMPARE(journalContent(), before);
            QVERIFY(!journal.runningShift());
        }
    }

    /// The system takes some of a transaction's bytes and not the rest.
    void transactionCutOffAtAnyByteIsUndone()
    {
        int cuts = 0;
        for (rlim_t extra = 0;; extra += 1500) {
            QFile::remove(file());
            prepareDay();
            QStringList before;
            bool isDone = false;
            {
                Journal journal;
                QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
                before = journalContent();
                const FileSizeLimit limit(extra);
                isDone = steps().at(1).run(journal);
                QCOMPARE(isDone, !journal.fault().has_value());
            }
            if (isDone)
                break;
            ++cuts;
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(journalContent(), before);
        }
        QVERIFY2(cuts > 10, qPrintable(QString::number(cuts)));
    }

    void diskThatFillsUpLosesNoSale()
    {
        SmallDisk disk(QFileInfo(file()).path(), 512);
        if (!disk.isThere())
            QSKIP("only root may have a disk of its own");
        int sold = 0;
        {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QVERIFY(disk.fill(64));
            while (sold < 1000 && sell(journal, {95}))
                ++sold;
            QCOMPARE(kindOf(journal.fault()), "full");
        }
        QVERIFY2(sold > 0, "nothing fits");
        QVERIFY(disk.fill(256));
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(journal.runningShift().value().ticketCount, qint64(sold));
        QVERIFY(sell(journal, {95}));
        QCOMPARE(journal.runningShift().value().ticketCount, qint64(sold) + 1);
    }

    void fullDiskLeavesNoNewFileBehindThatIsRefusedLater()
    {
        for (const rlim_t bytes : {0U, 100U, 4096U, 5000U, 12288U, 20000U}) {
            QFile::remove(file());
            Journal journal;
            {
                const FileSizeLimit limit(bytes);
                QCOMPARE(kindOf(journal.open(file(), euro, 17)), "unreachable");
                QVERIFY(!sell(journal, {95}));
            }
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(text(journal.runningShift()), "17: 0 tickets 0, 0 by card 0, 0-0");
        }
    }

private:
    QString file() const { return fileIn(m_folder->path()); }

    /// A closed shift, a sale, of which one ticket is printed, and an unfinished basket.
    void prepareDay()
    {
        OpenJournal journal(file(), 16);
        sell(journal, {100});
        journal.markPrinted(1);
        journal.closeShift(noon);
        sell(journal, {190, 95});
        journal.markPrinted(3);
        journal.appendToBasket(ticket(450));
        journal.appendToBasket(ticket(95));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournal)
#include "tst_journal.moc"
