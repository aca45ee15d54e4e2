#include "Counter.h"
#include "FileSizeLimit.h"
#include "SmallDisk.h"
#include "WithoutRootRights.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace rivo::sales;
using Kind = JournalFault::Kind;

namespace
{

const QDateTime noon(QDate(2026, 3, 29), QTime(12, 0, 0, 250), Qt::UTC);

Ticket ticket(Minor price, const QString& name = QStringLiteral("single"))
{
    Ticket made;
    made.fareProductName = name;
    made.price = price;
    return made;
}

/// A ticket in which no two fields of a type are equal.
Ticket distinctTicket()
{
    Ticket made;
    made.passengerTypeId = 1;
    made.fareProductId = 2;
    made.fromStopGroupId = 3;
    made.toStopGroupId = 4;
    made.description = QStringLiteral("Dziecko 'do' lat 7; \"--\" 😀");
    made.fareProductName = QStringLiteral("Jednorazowy");
    made.icon = QStringLiteral("qrc:/icons/child.svg");
    made.price = 9007199254740993; // not a double
    made.origin = QStringLiteral("Zakręt");
    made.destination = QStringLiteral("Łąka");
    made.isReturnFee = true;
    made.isDaily = false;
    made.trip.routeId = 5;
    made.trip.fromStopId = 6;
    made.trip.toStopId = 7;
    made.trip.currentStopId = 8;
    made.trip.tripsRouteId = 9;
    made.trip.tripsExecutionId = -10;
    made.trip.publicRouteExecutionId = QStringLiteral("exec");
    return made;
}

QString text(const Ticket& t)
{
    return (QStringList{t.description, t.fareProductName, t.icon, t.origin, t.destination,
                        t.trip.publicRouteExecutionId} +
            [&t] {
                QStringList numbers;
                for (const qint64 number :
                     {t.number, qint64(t.passengerTypeId), qint64(t.fareProductId),
                      qint64(t.fromStopGroupId), qint64(t.toStopGroupId), t.price,
                      qint64(t.isReturnFee), qint64(t.isDaily), qint64(t.trip.routeId),
                      qint64(t.trip.fromStopId), qint64(t.trip.toStopId),
                      qint64(t.trip.currentStopId), qint64(t.trip.tripsRouteId),
                      qint64(t.trip.tripsExecutionId)})
                    numbers.append(QString::number(number));
                return numbers;
            }())
        .join('|');
}

QVector<Minor> prices(const QVector<Ticket>& tickets)
{
    QVector<Minor> all;
    for (const Ticket& each : tickets)
        all.append(each.price);
    return all;
}

QVector<qint64> numbers(const QVector<Ticket>& tickets)
{
    QVector<qint64> all;
    for (const Ticket& each : tickets)
        all.append(each.number);
    return all;
}

/// "17: 3 tickets 475, 1 by card 190, 1-3".
QString text(const ShiftReport& report)
{
    return QStringLiteral("%1: %2 tickets %3, %4 by card %5, %6-%7")
        .arg(report.zNumber)
        .arg(report.ticketCount)
        .arg(report.ticketSum)
        .arg(report.cardCount)
        .arg(report.cardSum)
        .arg(report.firstTicket)
        .arg(report.lastTicket);
}

QString text(const std::optional<ShiftReport>& report)
{
    return report ? text(*report) : QStringLiteral("none");
}

QByteArray contentOf(const QString& file)
{
    QFile content(file);
    return content.open(QIODevice::ReadOnly) ? content.readAll() : QByteArray("unreadable");
}

void write(const QString& file, const QByteArray& content)
{
    QFile target(file);
    if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(file));
}

/// Executes statements in `file` with plain SQL, outside any journal.
void executeIn(const QString& file, const QStringList& statements)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "plain");
        db.setDatabaseName(file);
        if (!db.open())
            qFatal("%s cannot be opened", qPrintable(file));
        for (const QString& statement : statements) {
            QSqlQuery query(db);
            if (!query.exec(statement))
                qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        }
    }
    QSqlDatabase::removeDatabase("plain");
}

bool sell(Journal& journal, const QVector<Minor>& ticketPrices, PayMethod method = PayMethod::Cash)
{
    QVector<Ticket> tickets;
    for (const Minor price : ticketPrices)
        tickets.append(ticket(price));
    return journal.confirmSale(tickets, method, noon).has_value();
}

/// The kind of fault as text; "none" without.
QString kindOf(const std::optional<JournalFault>& fault)
{
    if (!fault)
        return QStringLiteral("none");
    switch (fault->kind) {
    case Kind::Locked:
        return QStringLiteral("locked");
    case Kind::Full:
        return QStringLiteral("full");
    case Kind::Damaged:
        return QStringLiteral("damaged");
    case Kind::Foreign:
        return QStringLiteral("foreign");
    case Kind::OtherVersion:
        return QStringLiteral("other version");
    case Kind::OtherCurrency:
        return QStringLiteral("other currency");
    case Kind::Unreachable:
        return QStringLiteral("unreachable");
    }
    return {};
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
                 .confirmSale({ticket(190), ticket(95, longText), ticket(95)}, PayMethod::Card,
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
        QVERIFY(journal.closedShifts().isEmpty());
        QVERIFY(!journal.runningShift());
    }

    void newFileStartsTheFirstShift()
    {
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(kindOf(journal.fault()), "none");
        QCOMPARE(text(journal.runningShift()), "17: 0 tickets 0, 0 by card 0, 0-0");
        QVERIFY(journal.closedShifts().isEmpty());
        QVERIFY(journal.basket().isEmpty());
        QVERIFY(journal.unprintedTickets().isEmpty());
        QCOMPARE(rowsOf(onlyConnection(), "PRAGMA journal_mode"), QStringList("wal"));
        QCOMPARE(rowsOf(onlyConnection(), "PRAGMA synchronous"), QStringList("2"));
    }

    void emptyFileIsTakenAsNew()
    {
        write(file(), {});
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 3)), "none");
        QCOMPARE(text(journal.runningShift()), "3: 0 tickets 0, 0 by card 0, 0-0");
    }

    void everythingIsThereAfterReopening()
    {
        {
            Journal journal;
            journal.open(file(), euro, 17);
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(journal.closeShift(noon));
            QVERIFY(sell(journal, {450}, PayMethod::Card));
            QVERIFY(journal.appendToBasket(distinctTicket()));
        }
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 99)), "none");
        QCOMPARE(text(journal.runningShift()), "18: 1 tickets 450, 1 by card 450, 3-3");
        QCOMPARE(journal.closedShifts().size(), 1);
        QCOMPARE(text(journal.closedShifts().at(0)), "17: 2 tickets 285, 0 by card 0, 1-2");
        QCOMPARE(journal.closedShifts().at(0).closedAt, noon);
        QCOMPARE(journal.basket().size(), 1);
        QCOMPARE(text(journal.basket().at(0)), text(distinctTicket()));
        QCOMPARE(numbers(journal.unprintedTickets()), (QVector<qint64>{1, 2, 3}));
    }

    void openingAgainClosesFirst()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        QVERIFY(sell(journal, {190}));
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(text(journal.runningShift()), "17: 1 tickets 190, 0 by card 0, 1-1");
        QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
    }

    /// A journal as shipped is read by what ships later: the tables are an interface.
    void fileSaysWhatItIs()
    {
        {
            Journal journal;
            journal.open(file(), euro, 17);
        }
        const QByteArray header = contentOf(file()).left(72);
        QCOMPARE(header.mid(68, 4), QByteArray("RivJ"));
        QCOMPARE(header.mid(60, 4), QByteArray("\0\0\0\2", 4));
    }

    void refusedFileStaysAsItIs_data()
    {
        QTest::addColumn<QByteArray>("content"); // of the file; if empty, `statements` make it
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<QString>("fault");

        const auto file = [](const char* name, const QByteArray& content) {
            QTest::newRow(name) << content << QStringList() << "damaged";
        };
        file("text", "Dear diary, today I sold nothing at all.\n");
        file("one byte", "S");
        file("zeros", QByteArray(8192, '\0'));
        file("database that ends in its header", "SQLite format 3");
        const auto database = [](const char* name, const QStringList& statements,
                                 const char* fault) {
            QTest::newRow(name) << QByteArray() << statements << fault;
        };
        database("database of another program", {"CREATE TABLE diary (day)"}, "foreign");
        database("another program's, with a write-ahead log",
                 {"PRAGMA journal_mode=WAL", "CREATE TABLE diary (day)"}, "foreign");
        database("another program's identifier",
                 {"PRAGMA application_id=77", "CREATE TABLE journal (currency)"}, "foreign");
        const QString ours = QStringLiteral("PRAGMA application_id=%1").arg(0x5269764a);
        database("newer version", {ours, "PRAGMA user_version=3", "CREATE TABLE journal (a)"},
                 "other version");
        database("older version", {ours, "PRAGMA user_version=1", "CREATE TABLE journal (a)"},
                 "other version");
        database("our identifier, other tables",
                 {ours, "PRAGMA user_version=2", "CREATE TABLE journal (a)"}, "damaged");
    }

    void refusedFileStaysAsItIs()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, statements);
        if (content.isEmpty())
            executeIn(file(), statements);
        else
            write(file(), content);
        QFETCH(QString, fault);
        checkRefusal(fault);
    }

    /// SQLite itself would move the log into the database of anyone who crashed.
    void unfinishedLogOfAnotherProgramStays()
    {
        const QString living = m_folder->filePath("living.db");
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "other");
        db.setDatabaseName(living);
        QVERIFY(db.open());
        QSqlQuery query(db);
        QVERIFY(query.exec("PRAGMA journal_mode=WAL") && query.exec("CREATE TABLE diary (day)"));
        query.finish();
        QVERIFY(QFile::copy(living, file()));
        QVERIFY(QFile::copy(living + "-wal", file() + "-wal"));
        query = QSqlQuery();
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase("other");

        const QByteArray log = contentOf(file() + "-wal");
        QVERIFY(!log.isEmpty());
        const QByteArray before = contentOf(file());
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "foreign");
        QCOMPARE(contentOf(file()), before);
        QCOMPARE(contentOf(file() + "-wal"), log);
    }

    void journalOfOtherMoneyStaysAsItIs_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("decimals");

        QTest::newRow("another currency") << "PLN" << 2;
        QTest::newRow("same code, other minor units") << "EUR" << 3;
    }

    void journalOfOtherMoneyStaysAsItIs()
    {
        QFETCH(QString, code);
        QFETCH(int, decimals);
        {
            Journal journal;
            journal.open(file(), Currency(code, decimals), 17);
            QVERIFY(sell(journal, {190}));
        }
        checkRefusal("other currency");
    }

    /// Whoever looks into the file later finds what the terminal left when it lost power.
    void unfinishedLogOfARefusedJournalStays_data()
    {
        QTest::addColumn<QString>("statement"); // executed in it before
        QTest::addColumn<QString>("currency");
        QTest::addColumn<QString>("link"); // that names it; empty for none
        QTest::addColumn<QString>("fault");

        QTest::newRow("another currency") << "SELECT 1"
                                          << "PLN"
                                          << ""
                                          << "other currency";
        QTest::newRow("another currency, found through links") << "SELECT 1"
                                                               << "PLN"
                                                               << "link"
                                                               << "other currency";
        QTest::newRow("another version") << "PRAGMA user_version=3"
                                         << "EUR"
                                         << ""
                                         << "other version";
        QTest::newRow("sums that do not agree") << "UPDATE sale SET total = 7"
                                                << "EUR"
                                                << ""
                                                << "damaged";
        QTest::newRow("table is missing") << "DROP TABLE basket"
                                          << "EUR"
                                          << ""
                                          << "damaged";
    }

    void unfinishedLogOfARefusedJournalStays()
    {
        QFETCH(QString, statement);
        QFETCH(QString, currency);
        QFETCH(QString, fault);
        leaveUnfinishedLog(statement);
        const QByteArray content = contentOf(file());
        const QByteArray log = contentOf(file() + "-wal");
        QVERIFY(log.size() > 4096);
        QFETCH(QString, link);
        QString path = file();
        if (!link.isEmpty()) {
            path = m_folder->filePath(link);
            QVERIFY(QFile::link("other-link", path));
            QVERIFY(QFile::link(file(), m_folder->filePath("other-link")));
        }
        for (int attempt = 0; attempt < 2; ++attempt) {
            Journal journal;
            QCOMPARE(kindOf(journal.open(path, Currency(currency, 2), 17)), fault);
            QVERIFY(!sell(journal, {95}));
        }
        QCOMPARE(contentOf(file()), content);
        QCOMPARE(contentOf(file() + "-wal"), log);
    }

    void unfinishedLogOfOursIsTakenIn()
    {
        leaveUnfinishedLog("SELECT 1");
        {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(text(journal.runningShift()), "17: 2 tickets 285, 0 by card 0, 1-2");
        }
        QVERIFY(!QFile::exists(file() + "-wal"));
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(text(journal.runningShift()), "17: 2 tickets 285, 0 by card 0, 1-2");
    }

    /// The sales may be in the log: a new journal would throw it away.
    void logWithoutItsDatabaseStays_data()
    {
        QTest::addColumn<bool>("isThere");

        QTest::addColumn<bool>("isLinked");

        QTest::newRow("database is empty") << true << false;
        QTest::newRow("database is missing") << false << false;
        QTest::newRow("database is empty, found through a link") << true << true;
        QTest::newRow("database is missing where a link points") << false << true;
    }

    void logWithoutItsDatabaseStays()
    {
        QFETCH(bool, isThere);
        if (isThere)
            write(file(), {});
        write(file() + "-wal", "all that was sold today");
        QFETCH(bool, isLinked);
        const QString link = m_folder->filePath("link");
        if (isLinked)
            QVERIFY(QFile::link(file(), link));
        checkRefusal("damaged", isLinked ? link : file());
        QCOMPARE(contentOf(file() + "-wal"), QByteArray("all that was sold today"));
    }

    void damageIsFoundAtOpening_data()
    {
        QTest::addColumn<int>("page"); // counted from the end; 0 = by statement
        QTest::addColumn<QString>("statement");

        QTest::newRow("last page is zeros") << 1 << "";
        QTest::newRow("page in the middle is zeros") << 20 << "";
        QTest::newRow("total differs from the tickets")
            << 0 << "UPDATE sale SET total = total + 1 WHERE id = 7";
        QTest::newRow("ticket is missing") << 0 << "DELETE FROM ticket WHERE number = 12";
        QTest::newRow("sale is missing") << 0 << "DELETE FROM sale WHERE id = 1";
        QTest::newRow("all tickets of a sale are missing")
            << 0 << "DELETE FROM ticket WHERE sale = 3";
        for (const char* figure : {"ticket_count", "ticket_sum", "card_count", "card_sum",
                                   "first_ticket", "last_ticket"}) {
            QTest::addRow("%s of a shift differs from its tickets", figure)
                << 0
                << QStringLiteral("UPDATE shift SET %1 = %1 + 1 WHERE z_number = 17").arg(figure);
            QTest::addRow("%s of a shift without sales is not 0", figure)
                << 0 << QStringLiteral("UPDATE shift SET %1 = 1 WHERE z_number = 18").arg(figure);
            QTest::addRow("%s of a shift is missing", figure)
                << 0
                << QStringLiteral("UPDATE shift SET %1 = NULL WHERE z_number = 17").arg(figure);
        }
        QTest::newRow("payment method of a sale differs from the shift's card sales")
            << 0 << "UPDATE sale SET pay_method = 2 WHERE id = 8";
        QTest::newRow("running shift is paid")
            << 0 << "UPDATE shift SET paid_at = '2026-03-29T12:00:00.250Z' WHERE z_number = 19";
        QTest::newRow("no running shift") << 0 << "DELETE FROM shift WHERE closed_at IS NULL";
        QTest::newRow("sale of no shift") << 0 << "UPDATE sale SET shift = 99 WHERE id = 100";
        QTest::newRow("two running shifts") << 0 << "INSERT INTO shift (z_number) VALUES (99)";
        QTest::newRow("no currency") << 0 << "DELETE FROM journal";
        QTest::newRow("table is missing") << 0 << "DROP TABLE ticket";
    }

    void damageIsFoundAtOpening()
    {
        QFETCH(int, page);
        QFETCH(QString, statement);
        {
            Journal journal;
            journal.open(file(), euro, 17);
            for (int sale = 0; sale < 100; ++sale)
                QVERIFY(journal.confirmSale({ticket(190, QString(900, 'x')), ticket(95)},
                                            sale % 3 == 0 ? PayMethod::Card : PayMethod::Cash,
                                            noon));
            QVERIFY(journal.closeShift(noon));
            QVERIFY(journal.closeShift(noon));
        }
        if (page == 0) {
            executeIn(file(), {statement});
        } else {
            QByteArray content = contentOf(file());
            content.replace(content.size() - page * 4096, 4096, QByteArray(4096, '\0'));
            write(file(), content);
        }
        checkRefusal("damaged");
    }

    /// Sums and tickets are found through indexes: one that lost an entry loses a sale.
    void indexThatDiffersFromItsTableIsDamage()
    {
        {
            Journal journal;
            journal.open(file(), euro, 413);
            QVERIFY(sell(journal, {190}));
            QVERIFY(sell(journal, {95}));
        }
        // Entries of the index sale_shift: header of 3 bytes, the shift (0x019d), the sale's
        // number.
        QByteArray content = contentOf(file());
        const int entry = content.indexOf(QByteArray("\x03\x02\x01\x01\x9d\x02", 6));
        QVERIFY(entry > 0);
        content[entry + 4] = '\x9e';
        write(file(), content);
        checkRefusal("damaged");
    }

    void cutOffFileIsDamaged()
    {
        {
            Journal journal;
            journal.open(file(), euro, 17);
            QVERIFY(sell(journal, QVector<Minor>(100, 190)));
        }
        QVERIFY(QFile::resize(file(), QFile(file()).size() / 2 / 4096 * 4096));
        checkRefusal("damaged");
    }

    void missingFolderIsUnreachable()
    {
        Journal journal;
        QCOMPARE(kindOf(journal.open(m_folder->filePath("none/journal.db"), euro, 17)),
                 "unreachable");
        QVERIFY(!QDir(m_folder->filePath("none")).exists());
    }

    void folderInsteadOfAFileIsUnreachable()
    {
        Journal journal;
        QCOMPARE(kindOf(journal.open(m_folder->path(), euro, 17)), "unreachable");
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

    void secondOpenerFindsItLocked()
    {
        Journal second;
        {
            Journal first;
            first.open(file(), euro, 17);
            QCOMPARE(kindOf(second.open(file(), euro, 17)), "locked");
            QVERIFY(!sell(second, {95}));
            QVERIFY(sell(first, {190}));
        }
        QCOMPARE(kindOf(second.open(file(), euro, 17)), "none");
        QCOMPARE(text(second.runningShift()), "17: 1 tickets 190, 0 by card 0, 1-1");
    }

    /// The terminal stays locked out by its twin even if nothing was ever sold.
    void secondOpenerFindsAnUntouchedOneLocked()
    {
        {
            Journal maker;
            maker.open(file(), euro, 17);
        }
        Journal first;
        first.open(file(), euro, 17);
        Journal second;
        QCOMPARE(kindOf(second.open(file(), euro, 17)), "locked");
    }

    void basketLines()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        for (const Minor price : {1, 2, 3, 4})
            QVERIFY(journal.appendToBasket(ticket(price)));
        QVERIFY(journal.removeFromBasket(1));
        QCOMPARE(prices(journal.basket()), (QVector<Minor>{1, 3, 4}));
        QVERIFY(journal.removeFromBasket(2));
        QVERIFY(journal.appendToBasket(ticket(5)));
        QCOMPARE(prices(journal.basket()), (QVector<Minor>{1, 3, 5}));
        QVERIFY(journal.removeFromBasket(3));
        QCOMPARE(prices(journal.basket()), (QVector<Minor>{1, 3, 5}));
        QVERIFY(journal.removeFromBasket(0));
        QCOMPARE(prices(journal.basket()), (QVector<Minor>{3, 5}));
        QVERIFY(journal.clearBasket());
        QVERIFY(journal.basket().isEmpty());
    }

    void saleNumbersItsTicketsAndEmptiesTheBasket()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        QVERIFY(journal.appendToBasket(distinctTicket()));
        const auto sold =
            journal.confirmSale({distinctTicket(), ticket(95)}, PayMethod::Card, noon);
        QVERIFY(sold);
        QCOMPARE(numbers(*sold), (QVector<qint64>{1, 2}));
        Ticket expected = distinctTicket();
        expected.number = 1;
        QCOMPARE(text(sold->at(0)), text(expected));
        QCOMPARE(text(journal.unprintedTickets().at(0)), text(expected));
        QVERIFY(journal.basket().isEmpty());
        QCOMPARE(rowsOf(onlyConnection(), "SELECT shift, sold_at, pay_method, total FROM sale"),
                 QStringList("17|2026-03-29T12:00:00.250Z|2|9007199254741088"));
    }

    void nothingCannotBeSold()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        const QStringList before = journalContent();
        QVERIFY(!journal.confirmSale({}, PayMethod::Cash, noon));
        QCOMPARE(journalContent(), before);
        QCOMPARE(kindOf(journal.fault()), "none");
    }

    void ticketsArePrintedOneByOne()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        QVERIFY(sell(journal, {190, 95, 450}));
        QVERIFY(journal.markPrinted(1));
        QCOMPARE(numbers(journal.unprintedTickets()), (QVector<qint64>{2, 3}));
        QVERIFY(journal.markPrinted(3));
        QCOMPARE(numbers(journal.unprintedTickets()), (QVector<qint64>{2}));
        QVERIFY(journal.markPrinted(2));
        QVERIFY(journal.unprintedTickets().isEmpty());
    }

    void ticketNumbersAreNeverUsedAgain()
    {
        {
            Journal journal;
            journal.open(file(), euro, 17);
            QVERIFY(sell(journal, {190, 95}));
        }
        executeIn(file(), {"DELETE FROM ticket", "DELETE FROM sale"});
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        const auto sold = journal.confirmSale({ticket(95)}, PayMethod::Cash, noon);
        QVERIFY(sold);
        QCOMPARE(numbers(*sold), (QVector<qint64>{3}));
    }

    void shiftsAreSummedUpAndNumberedOn()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        QVERIFY(sell(journal, {190, 95}));
        QVERIFY(sell(journal, {450}, PayMethod::Card));
        QVERIFY(sell(journal, {0, 10}, PayMethod::Card));
        QCOMPARE(text(journal.runningShift()), "17: 5 tickets 745, 3 by card 460, 1-5");
        const auto closed = journal.closeShift(noon);
        QCOMPARE(text(closed), "17: 5 tickets 745, 3 by card 460, 1-5");
        QCOMPARE(closed->closedAt, noon);
        QCOMPARE(text(journal.runningShift()), "18: 0 tickets 0, 0 by card 0, 0-0");
        QVERIFY(sell(journal, {7}));
        QCOMPARE(text(journal.closeShift(noon.addDays(1))), "18: 1 tickets 7, 0 by card 0, 6-6");
        QCOMPARE(text(journal.closeShift(noon.addDays(2))), "19: 0 tickets 0, 0 by card 0, 0-0");
        const QVector<ShiftReport> shifts = journal.closedShifts();
        QCOMPARE(shifts.size(), 3);
        QCOMPARE(text(shifts.at(0)), text(closed));
        QCOMPARE(text(shifts.at(1)), "18: 1 tickets 7, 0 by card 0, 6-6");
        QCOMPARE(shifts.at(1).closedAt, noon.addDays(1));
        QCOMPARE(text(shifts.at(2)), "19: 0 tickets 0, 0 by card 0, 0-0");
        QCOMPARE(text(journal.runningShift()), "20: 0 tickets 0, 0 by card 0, 0-0");
    }

    void cashOfAClosedShiftIsHandedOver()
    {
        {
            Journal journal;
            journal.open(file(), euro, 17);
            QVERIFY(sell(journal, {190, 95}));
            QVERIFY(sell(journal, {450}, PayMethod::Card));
            const auto closed = journal.closeShift(noon);
            QVERIFY(closed);
            QCOMPARE(closed->cash(), 285);
            QVERIFY(!closed->paidAt.isValid());
            QVERIFY(!journal.closedShifts().at(0).paidAt.isValid());
            const auto paid = journal.handOver(17, noon.addSecs(60));
            QVERIFY(paid);
            QCOMPARE(text(paid), text(closed));
            QCOMPARE(paid->closedAt, noon);
            QCOMPARE(paid->paidAt, noon.addSecs(60));
            QCOMPARE(journal.closedShifts().at(0).paidAt, noon.addSecs(60));
        }
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(journal.closedShifts().at(0).paidAt, noon.addSecs(60));
        QCOMPARE(journal.closedShifts().at(0).closedAt, noon);
    }

    void shiftWithoutCashIsPaidWhenItIsClosed()
    {
        Journal journal;
        journal.open(file(), euro, 17);
        QCOMPARE(journal.closeShift(noon)->paidAt, noon);
        QVERIFY(sell(journal, {450}, PayMethod::Card));
        QCOMPARE(journal.closeShift(noon.addDays(1))->paidAt, noon.addDays(1));
        QCOMPARE(journal.closedShifts().at(0).paidAt, noon);
        QCOMPARE(journal.closedShifts().at(1).paidAt, noon.addDays(1));
    }

    void nothingElseIsHandedOver_data()
    {
        QTest::addColumn<qint64>("shift");

        QTest::newRow("paid shift") << qint64(17);
        QTest::newRow("running shift") << qint64(19);
        QTest::newRow("shift before the first") << qint64(16);
        QTest::newRow("shift to come") << qint64(20);
    }

    void nothingElseIsHandedOver()
    {
        QFETCH(qint64, shift);
        Journal journal;
        journal.open(file(), euro, 17);
        for (int day = 0; day < 3; ++day) {
            QVERIFY(sell(journal, {190}));
            if (day < 2)
                QVERIFY(journal.closeShift(noon));
        }
        QVERIFY(journal.handOver(17, noon));
        const QStringList before = journalContent();
        QVERIFY(!journal.handOver(shift, noon.addDays(1)));
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

    /// Of a fault that does not make SQLite itself undo the transaction.
    void saleThatFailsAtItsSecondTicketIsUndone()
    {
        prepareDay();
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        const QStringList before = journalContent();
        rowsOf(onlyConnection(), "CREATE TEMP TRIGGER jam BEFORE INSERT ON ticket"
                                 " WHEN NEW.price = 95 BEGIN SELECT RAISE(FAIL, 'jam'); END");
        QVERIFY(!sell(journal, {190, 95}));
        QCOMPARE(kindOf(journal.fault()), "unreachable");
        QCOMPARE(journalContent(), before);
    }

    void saleWithoutARunningShiftIsRefused()
    {
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        rowsOf(onlyConnection(), "UPDATE shift SET closed_at = 'never'");
        const QStringList before = journalContent();
        QVERIFY(!sell(journal, {190}));
        QCOMPARE(kindOf(journal.fault()), "damaged");
        QCOMPARE(journalContent(), before);
        QVERIFY(!journal.runningShift());
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
    QString file() const { return m_folder->filePath("journal.db"); }

    void checkRefusal(const QString& fault) { checkRefusal(fault, file()); }

    void checkRefusal(const QString& fault, const QString& path)
    {
        const QByteArray before = contentOf(file());
        const QStringList entries = QDir(m_folder->path()).entryList(QDir::Files);
        Journal journal;
        QCOMPARE(kindOf(journal.open(path, euro, 17)), fault);
        QVERIFY(!sell(journal, {95}));
        QVERIFY(!journal.appendToBasket(ticket(95)));
        QVERIFY(!journal.runningShift());
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        QCOMPARE(contentOf(file()), before);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), entries);
    }

    /// The journal as a power cut leaves it: two tickets and `statement` in the log alone.
    void leaveUnfinishedLog(const QString& statement)
    {
        const QString living = m_folder->filePath("living.db");
        {
            Journal journal;
            journal.open(living, euro, 17);
            QVERIFY(sell(journal, {190, 95}));
            rowsOf(onlyConnection(), statement);
            QVERIFY(QFile::copy(living, file()));
            QVERIFY(QFile::copy(living + "-wal", file() + "-wal"));
        }
        QVERIFY(QFile::remove(living));
    }

    /// A closed shift, a sale, of which one ticket is printed, and an unfinished basket.
    void prepareDay()
    {
        Journal journal;
        journal.open(file(), euro, 16);
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
