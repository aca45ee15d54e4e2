#include "MovedClock.h"
#include "Play.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

using namespace rivo::sales;

namespace
{

const QDateTime start(QDate(2026, 6, 1), QTime(12, 0), Qt::UTC);

/// "17: 2 tickets, 000001-000002, paid 2026-06-01", the newest shift first.
QStringList reportsOf(const Counter& counter)
{
    QStringList all;
    for (int row = 0; row < counter.zReports.rowCount(); ++row) {
        const ZReportItem& report = *counter.report(row);
        const QDate paid = report.paymentDate().toUTC().date();
        all.append(QStringLiteral("%1: %2 tickets, %3-%4, %5")
                       .arg(report.zNumber())
                       .arg(report.ticketCount())
                       .arg(report.fromTicketNumber(), report.toTicketNumber())
                       .arg(paid.isValid() ? "paid " + paid.toString(Qt::ISODate) : "not paid"));
    }
    return all;
}

} // namespace

/// What is sold does not hang on the clock: tickets and shifts are in the order of their numbers.
class TestSalesClock : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { MovedClock::reset(); }

    void clockIsMoved()
    {
        MovedClock::set(start.toSecsSinceEpoch());
        QCOMPARE(QDateTime::currentDateTimeUtc().date(), start.date());
        QTest::qSleep(20);
        QVERIFY(QDateTime::currentDateTimeUtc() > start.addMSecs(10));
    }

    void nothingIsLostWhenTheClockJumps_data()
    {
        const Table<QDateTime> row("then");
        row("stays as it is", start);
        row("back to when time began, as without a battery",
            QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC));
        row("back an hour", start.addSecs(-3600));
        row("ahead a day", start.addDays(1));
        if (sizeof(time_t) == sizeof(qint32)) // such a system has no later time
            return;
        row("ahead beyond 32 bits of seconds", QDateTime(QDate(2038, 1, 20), QTime(0, 0), Qt::UTC));
        row("ahead a century", start.addYears(100));
    }

    void nothingIsLostWhenTheClockJumps()
    {
        QFETCH(QDateTime, then);
        const QTemporaryDir folder;
        const QString file = folder.filePath("sales.db");
        const QStringList reports{
            "19: 1 tickets, 000004-000004, not paid",
            "18: 1 tickets, 000003-000003, paid " + then.date().toString(Qt::ISODate),
            "17: 2 tickets, 000001-000002, paid " + then.date().toString(Qt::ISODate)};
        MovedClock::set(start.toSecsSinceEpoch());
        {
            Counter counter(file);
            QVERIFY(play(counter, "adult cash end"));
            MovedClock::set(then.toSecsSinceEpoch());
            QVERIFY(play(counter, "child cash end close hand:17 adult cash end close hand:18"));
            MovedClock::set(start.toSecsSinceEpoch());
            QVERIFY(play(counter, "day cash end adult"));
            QCOMPARE(reportsOf(counter), reports);
        }
        MovedClock::set(then.toSecsSinceEpoch());
        Counter again(file);
        QCOMPARE(again.desk.obstacle(), QString());
        QCOMPARE(reportsOf(again), reports);
        QCOMPARE(again.prices(), QVector<qint64>{190});
        const QString startDay = start.toLocalTime().date().toString(Qt::ISODate);
        const QString thatDay = then.toLocalTime().date().toString(Qt::ISODate);
        QCOMPARE(rowsOf(onlyConnection(),
                        "SELECT substr(at, 1, 10) FROM record WHERE kind = 2 ORDER BY id"),
                 QStringList({startDay, thatDay, thatDay, startDay}));
        QVERIFY(play(again, "child cash end"));
        QCOMPARE(again.report(0)->toTicketNumber(), QString("000006"));
    }

    void everyRecordHasTheTimeOfTheDesksClock()
    {
        const QTemporaryDir folder;
        Counter counter(folder.filePath("sales.db"));
        counter.desk.setClock([] { return start; });
        QVERIFY(play(counter, "adult cash end child card end close hand:17"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT DISTINCT substr(at, 1, 19) FROM record"),
                 QStringList(start.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"))));
    }
};

QTEST_GUILESS_MAIN(TestSalesClock)
#include "tst_sales_clock.moc"
