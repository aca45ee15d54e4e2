#include "Counter.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace rivo::sales;

namespace
{

constexpr quint32 seed = 20260329;
constexpr int kills = 100;
constexpr int longestLife = 250;  // milliseconds
constexpr int longestStart = 120; // milliseconds

/// What a journal must have, by the reports of the killed programs.
struct Expectation
{
    QStringList sales;        ///< "METHOD NUMBER:PRICE ...", confirmed
    QStringList closedShifts; ///< numbers, confirmed
    QStringList basket;       ///< prices, confirmed
    QStringList nextBasket;   ///< what the last announced step leads to
    QString payment;          ///< of an announced sale without confirmation; otherwise empty
    QString closing;          ///< of an announced closing without confirmation; otherwise empty
    QStringList paidShifts;   ///< numbers of those that had cash, confirmed
    QString handing;          ///< of an announced hand-over without confirmation; otherwise empty
    QStringList reversals;    ///< numbers of their tickets, confirmed
    QString reversing;        ///< of an announced reversal without confirmation; otherwise empty
};

/// Follows the reports of one run. False if it contradicts what was known.
bool follow(const QString& output, Expectation& expected)
{
    for (const QString& line : output.split('\n', Qt::SkipEmptyParts)) {
        const QString what = line.section(' ', 0, 0);
        const QStringList words = line.split(' ', Qt::SkipEmptyParts).mid(1);
        if (what == "restored") {
            if (words != expected.basket)
                return false;
        } else if (what == "next") {
            expected.nextBasket = words;
        } else if (what == "basket") {
            if (words != expected.nextBasket)
                return false;
            expected.basket = words;
        } else if (what == "paying") {
            expected.payment = words.join(' ');
        } else if (what == "sold") {
            expected.sales.append(words.join(' '));
            expected.payment.clear();
            expected.basket.clear();
            expected.nextBasket.clear();
        } else if (what == "closing") {
            expected.closing = words.join(' ');
        } else if (what == "closed") {
            expected.closedShifts.append(words.join(' '));
            expected.closing.clear();
        } else if (what == "handing") {
            expected.handing = words.join(' ');
        } else if (what == "handed") {
            expected.paidShifts.append(words.join(' '));
            expected.handing.clear();
        } else if (what == "reversing") {
            expected.reversing = words.join(' ');
        } else if (what == "reversed") {
            expected.reversals.append(words.join(' '));
            expected.reversing.clear();
        } else {
            return false;
        }
    }
    return true;
}

/// A journal as plain SQL finds it.
struct Found
{
    QStringList sales;
    QStringList closedShifts;
    QStringList paidShifts; ///< of those that had cash
    QStringList reversals;
    QStringList basket;
    QStringList wrong; ///< rows of statements that find none in a sound journal
};

/// The statements that must yield no row.
const char* const unsound[] = {
    "PRAGMA foreign_key_check",
    // Records are numbered without holes.
    "SELECT 'records' WHERE (SELECT COUNT(*) <> IFNULL(MAX(id), 0) FROM record)",
    // A sale is there as a whole.
    "SELECT sale.record FROM sale LEFT JOIN ticket ON ticket.sale = sale.record"
    " GROUP BY sale.record HAVING COUNT(number) = 0 OR SUM(price) <> total",
    // Ticket numbers have no holes, and those of a sale follow one another.
    "SELECT 'hole' WHERE (SELECT COUNT(*) <> IFNULL(MAX(number), 0) FROM ticket)",
    "SELECT sale FROM ticket GROUP BY sale HAVING MAX(number) - MIN(number) + 1 <> COUNT(*)",
    // One shift runs, the last; the others have the figures of their sales.
    "SELECT 'running' WHERE (SELECT GROUP_CONCAT(z_number) FROM shift WHERE z_number NOT IN"
    " (SELECT shift FROM closing)) <> (SELECT MAX(z_number) || '' FROM shift)",
    "SELECT closing.shift FROM closing LEFT JOIN record ON record.shift = closing.shift"
    " AND kind = 2 LEFT JOIN sale ON sale.record = record.id"
    " LEFT JOIN ticket ON ticket.sale = sale.record GROUP BY closing.shift"
    " HAVING ticket_count <> COUNT(number) OR ticket_sum <> IFNULL(SUM(price), 0)"
    " OR first_ticket <> IFNULL(MIN(number), 0) OR last_ticket <> IFNULL(MAX(number), 0)"
    " OR card_count <> IFNULL(SUM(pay_method = 2), 0)"
    " OR card_sum <> IFNULL(SUM(CASE pay_method WHEN 2 THEN price END), 0)",
    // What was taken back is the tickets' prices, and was paid out.
    "SELECT reversal.record FROM reversal LEFT JOIN reversed_ticket ON"
    " reversal = reversal.record LEFT JOIN ticket ON number = reversed_ticket.ticket"
    " GROUP BY reversal.record HAVING COUNT(number) = 0 OR SUM(price) <> total"
    " OR total <> paid_out",
    // A ticket is on paper or will be.
    "SELECT number FROM ticket WHERE (SELECT COUNT(*) FROM printout WHERE ticket = number) +"
    " (SELECT COUNT(*) FROM unprinted WHERE ticket = number) <> 1",
    // Only the last sale may have tickets that are not printed.
    "SELECT ticket FROM unprinted JOIN ticket ON number = unprinted.ticket"
    " WHERE sale <> (SELECT MAX(record) FROM sale)"};

Found findIn(const QString& file)
{
    Found found;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "plain");
        db.setDatabaseName(file);
        if (!db.open())
            qFatal("%s cannot be opened", qPrintable(file));
        found.wrong = rowsOf(db, "PRAGMA integrity_check");
        found.wrong.removeAll("ok");
        if (rowsOf(db, "SELECT COUNT(*) FROM sqlite_master") != QStringList("0")) {
            for (const char* statement : unsound)
                found.wrong += rowsOf(db, statement);
            found.sales = rowsOf(db, "SELECT pay_method || ' ' || GROUP_CONCAT(line, ' ') FROM"
                                     " (SELECT sale, number || ':' || price AS line FROM ticket"
                                     "  ORDER BY number)"
                                     " JOIN sale ON sale = sale.record GROUP BY sale.record"
                                     " ORDER BY sale.record");
            found.closedShifts = rowsOf(db, "SELECT shift FROM closing ORDER BY shift");
            found.paidShifts = rowsOf(db, "SELECT shift FROM hand_over ORDER BY record");
            found.reversals =
                rowsOf(db, "SELECT GROUP_CONCAT(ticket, ' ') FROM (SELECT * FROM reversed_ticket"
                           " ORDER BY ticket) GROUP BY reversal ORDER BY reversal");
            found.basket = rowsOf(db, "SELECT price FROM basket ORDER BY line");
        }
    }
    QSqlDatabase::removeDatabase("plain");
    return found;
}

/// "2 5:190 6:95" -> "190 95".
QStringList pricesOf(const QString& sale)
{
    QStringList prices;
    for (const QString& ticket : sale.split(' ').mid(1))
        prices.append(ticket.section(':', 1));
    return prices;
}

/// Runs the script for `life` milliseconds, from its start or from its first words, and kills it.
QString runAndKill(const QString& file, quint32 runSeed, int life, bool isFromFirstWords)
{
    QProcess script;
    script.setProcessChannelMode(QProcess::SeparateChannels);
    script.start(SALE_SCRIPT, {file, QString::number(runSeed)});
    if (!script.waitForStarted())
        return QStringLiteral("not started");
    if (isFromFirstWords && !script.waitForReadyRead())
        return QStringLiteral("silent: ") + script.readAllStandardError();
    QTest::qSleep(life);
    script.kill();
    script.waitForFinished();
    if (script.exitStatus() != QProcess::CrashExit)
        return QStringLiteral("ended by itself: ") + script.readAllStandardError();
    return script.readAllStandardOutput();
}

} // namespace

class TestSalesKill : public QObject
{
    Q_OBJECT

private slots:
    void killedAtAnyMoment()
    {
        const QTemporaryDir folder;
        QVERIFY(folder.isValid());
        QRandomGenerator random(seed);
        const QString longFile = folder.filePath("long.db");
        Expectation longHistory;
        int doubtful = 0;
        int confirmed = 0;
        int unstarted = 0;
        for (int kill = 0; kill < kills; ++kill) {
            const bool isFresh = kill % 4 == 3;
            const QString file = isFresh ? folder.filePath(QString::number(kill)) : longFile;
            Expectation fresh;
            Expectation& expected = isFresh ? fresh : longHistory;
            const int soldBefore = expected.sales.size();
            const bool isStarting = kill % 8 == 3; // killed while it makes its journal
            const int life = random.bounded(isStarting ? longestStart : longestLife);
            const QString output = runAndKill(file, random.generate(), life, !isStarting);
            const QByteArray where =
                QStringLiteral("kill %1 after %2 ms:\n%3").arg(kill).arg(life).arg(output).toUtf8();
            QVERIFY2(follow(output, expected), where);
            confirmed += expected.sales.size() - soldBefore;
            unstarted += output.isEmpty() ? 1 : 0;
            if (!QFile::exists(file))
                continue;

            const Found found = findIn(file);
            QVERIFY2(found.wrong.isEmpty(), found.wrong.join('\n').toUtf8() + where);
            if (found.sales.size() == expected.sales.size() + 1 && !expected.payment.isEmpty()) {
                // Written, and killed before it could report it.
                ++doubtful;
                QVERIFY2(found.sales.last().startsWith(expected.payment + ' '), where);
                QCOMPARE(pricesOf(found.sales.last()), expected.basket);
                expected.sales.append(found.sales.last());
                expected.basket.clear();
                expected.nextBasket.clear();
            }
            if (found.closedShifts.size() == expected.closedShifts.size() + 1 &&
                !expected.closing.isEmpty()) {
                ++doubtful;
                expected.closedShifts.append(expected.closing);
            }
            if (found.paidShifts.size() == expected.paidShifts.size() + 1 &&
                !expected.handing.isEmpty()) {
                ++doubtful;
                expected.paidShifts.append(expected.handing);
            }
            if (found.reversals.size() == expected.reversals.size() + 1 &&
                !expected.reversing.isEmpty()) {
                ++doubtful;
                expected.reversals.append(expected.reversing);
            }
            QCOMPARE(found.reversals, expected.reversals);
            QCOMPARE(found.sales, expected.sales);
            QCOMPARE(found.closedShifts, expected.closedShifts);
            QCOMPARE(found.paidShifts, expected.paidShifts);
            QVERIFY2(found.basket == expected.basket || found.basket == expected.nextBasket, where);
            expected.basket = found.basket;
            expected.nextBasket = found.basket;
            expected.payment.clear();
            expected.closing.clear();
            expected.handing.clear();
            expected.reversing.clear();
            if (isFresh)
                checkThatSellingGoesOn(file, found);
        }
        checkThatSellingGoesOn(longFile, findIn(longFile));
        // Otherwise nothing was tested.
        QVERIFY2(confirmed > kills / 2, qPrintable(QString::number(confirmed)));
        qInfo("%d kills, %d confirmed sales, %d steps written but not confirmed, %d killed before "
              "they said anything",
              kills, confirmed, doubtful, unstarted);
    }

private:
    static void checkThatSellingGoesOn(const QString& file, const Found& before)
    {
        {
            Counter counter(file);
            QCOMPARE(counter.desk.obstacle(), QString());
            if (counter.desk.state() == SalesDesk::Interrupted)
                QVERIFY(counter.desk.printTicketsInDoubt());
            QVERIFY(QTest::qWaitFor([&] { return counter.desk.state() == SalesDesk::Selling; }));
            QCOMPARE(counter.basket.rowCount(), before.basket.size());
            QCOMPARE(counter.zReports.rowCount(), before.closedShifts.size() + 1);
            QVERIFY(counter.desk.add(DayTicket));
            QVERIFY(counter.desk.pay(SalesDesk::Cash));
            QVERIFY(QTest::qWaitFor([&] { return counter.desk.state() == SalesDesk::Selling; }));
            QVERIFY(counter.desk.closeShift());
        }
        const Found after = findIn(file);
        QCOMPARE(after.wrong, QStringList());
        QCOMPARE(after.sales.size(), before.sales.size() + 1);
        QCOMPARE(after.sales.mid(0, before.sales.size()), before.sales);
        QCOMPARE(after.closedShifts.size(), before.closedShifts.size() + 1);
    }
};

QTEST_GUILESS_MAIN(TestSalesKill)
#include "tst_sales_kill.moc"
