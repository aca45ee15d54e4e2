#include "OfficeUnderTest.h"
#include "Table.h"

#include <ReportText.h>

#include <QTest>

using namespace rivo::backoffice;
using namespace rivo::sales;

namespace
{

const QDate day = noon.date();

Ticket onRoute(Ticket ticket, int route, const QString& name = {})
{
    ticket.trip.routeId = route;
    ticket.routeName = name;
    return ticket;
}

/// "12: sold 2 1200 card 700 reversed 1 500"
QString text(const QVector<ReportLine>& lines)
{
    QStringList all;
    for (const ReportLine& line : lines)
        all.append(QStringLiteral("%1: sold %2 %3 card %4 reversed %5 %6")
                       .arg(line.key)
                       .arg(line.tickets)
                       .arg(line.sold)
                       .arg(line.card)
                       .arg(line.reversedTickets)
                       .arg(line.reversed));
    return all.join('|');
}

} // namespace

Q_DECLARE_METATYPE(ReportBy)
Q_DECLARE_METATYPE(ReportFormat)

/// What the office adds up, and how it is printed.
class TestOfficeReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
        m_settings = m_server.newDatabase();
        Office office(m_settings);
        VehicleJournal first;
        first.journal.setDriver(12);
        QVERIFY(first.journal.confirmSale(
            {onRoute(ticket(500), 1, "North"), onRoute(ticket(700, "day"), 1, "North")}, {}, noon));
        QVERIFY(first.journal.confirmSale({onRoute(ticket(90), 2)}, {PayMethod::Card}, noon));
        first.journal.setDriver(7);
        QVERIFY(first.journal.reverse(1, {1}, ReversalKind::Refund, "late", 500, noon.addDays(1)));
        QCOMPARE(office.take(first.batch()), "3");
        VehicleJournal second;
        second.journal.setDriver(7);
        QVERIFY(second.journal.confirmSale({onRoute(ticket(1000), 2)}, {}, noon.addDays(1)));
        QCOMPARE(office.take(second.batch(), "rivo/hills/4711/records"), "1");
    }

    void salesAreAddedUp_data()
    {
        const Table<ReportBy, QDate, QDate, QString> row("by", "from", "to", "lines");
        row("by driver", ReportBy::Driver, day, day.addDays(1),
            "12: sold 3 1290 card 90 reversed 0 0|7: sold 1 1000 card 0 reversed 1 500");
        row("by route, with its number if it has no name", ReportBy::Route, day, day.addDays(1),
            "2: sold 2 1090 card 90 reversed 0 0|North: sold 2 1200 card 0 reversed 1 500");
        row("by vehicle", ReportBy::Vehicle, day, day.addDays(1),
            "hills/4711: sold 1 1000 card 0 reversed 0 0|"
            "lakeside/4711: sold 3 1290 card 90 reversed 1 500");
        row("by product", ReportBy::Product, day, day.addDays(1),
            "day: sold 1 700 card 0 reversed 0 0|single: sold 3 1590 card 90 reversed 1 500");
        row("the first day", ReportBy::Product, day, day,
            "day: sold 1 700 card 0 reversed 0 0|single: sold 2 590 card 90 reversed 0 0");
        row("a ticket is taken back on another day", ReportBy::Product, day.addDays(1),
            day.addDays(1), "single: sold 1 1000 card 0 reversed 1 500");
        row("a day without sales", ReportBy::Product, day.addDays(2), day.addDays(9), "");
        row("days in the wrong order", ReportBy::Product, day.addDays(1), day, "");
    }

    void salesAreAddedUp()
    {
        QFETCH(ReportBy, by);
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        Database database(m_settings);
        QVERIFY(database.open());
        const auto lines = salesReport(database, by, from, to);
        QVERIFY2(lines.has_value(), qPrintable(database.problem()));
        QTEST(text(*lines), "lines");
    }

    void withoutTablesThereIsNoReport()
    {
        Database database(m_server.newDatabase());
        QVERIFY(database.open());
        QVERIFY(!salesReport(database, ReportBy::Driver, day, day).has_value());
        QVERIFY(!database.problem().isEmpty());
    }

    void reportsArePrinted_data()
    {
        const Table<ReportFormat, QByteArray> row("format", "text");
        row("columns for people", ReportFormat::Text,
            "product   tickets   sold  card  reversed tickets  reversed  total  currency\n"
            "a \"b\",c?        3  12.90  0.90                 1      5.00   7.90       EUR\n"
            "none            0      0     0                 0         0      0       JPY\n");
        row("CSV", ReportFormat::Csv,
            "\"product\",\"currency\",\"decimals\",\"tickets\",\"sold\",\"card\","
            "\"reversed_tickets\",\"reversed\",\"total\"\r\n"
            "\"a \"\"b\"\",c\n\",\"EUR\",\"2\",\"3\",\"1290\",\"90\",\"1\",\"500\",\"790\"\r\n"
            "\"none\",\"JPY\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\",\"0\"\r\n");
        row("JSON", ReportFormat::Json,
            "[\n"
            "    {\n"
            "        \"card\": 90,\n"
            "        \"currency\": \"EUR\",\n"
            "        \"decimals\": 2,\n"
            "        \"product\": \"a \\\"b\\\",c\\n\",\n"
            "        \"reversed\": 500,\n"
            "        \"reversed_tickets\": 1,\n"
            "        \"sold\": 1290,\n"
            "        \"tickets\": 3,\n"
            "        \"total\": 790\n"
            "    },\n"
            "    {\n"
            "        \"card\": 0,\n"
            "        \"currency\": \"JPY\",\n"
            "        \"decimals\": 0,\n"
            "        \"product\": \"none\",\n"
            "        \"reversed\": 0,\n"
            "        \"reversed_tickets\": 0,\n"
            "        \"sold\": 0,\n"
            "        \"tickets\": 0,\n"
            "        \"total\": 0\n"
            "    }\n"
            "]\n");
    }

    void reportsArePrinted()
    {
        QFETCH(ReportFormat, format);
        const QVector<ReportLine> lines{{"a \"b\",c\n", "EUR", 2, 3, 1290, 90, 1, 500},
                                        {"none", "JPY", 0, 0, 0, 0, 0, 0}};
        QTEST(textOf(lines, ReportBy::Product, format), "text");
    }

    void amountsHaveTheirDecimals_data()
    {
        const Table<qint64, int, QString> row("amount", "decimals", "text");
        row("two decimals", 1205, 2, "12.05");
        row("less than one", 5, 2, "0.05");
        row("negative", -5, 2, "-0.05");
        row("none", 1205, 0, "1205");
        row("three", 7, 3, "0.007");
    }

    void amountsHaveTheirDecimals()
    {
        QFETCH(qint64, amount);
        QFETCH(int, decimals);
        QTEST(amountText(amount, decimals), "text");
    }

    void faultsArePrinted_data()
    {
        const Table<int, qint64, QDateTime, QByteArray> row("times", "number", "closedAt", "text");
        const QByteArray start = "2026-03-29T12:00:00Z rivo/a/b/records fork";
        row("once", 1, 7, {}, start + " record 7: a ?[31mreason\n");
        row("of no record", 1, -1, {}, start + ": a ?[31mreason\n");
        row("several times", 3, 7, {},
            start + " record 7: a ?[31mreason (3 times, last 2026-03-29T12:01:00Z)\n");
        row("closed", 1, 7, noon.addSecs(120),
            start + " record 7: a ?[31mreason (closed 2026-03-29T12:02:00Z)\n");
    }

    void faultsArePrinted()
    {
        QFETCH(int, times);
        QFETCH(qint64, number);
        QFETCH(QDateTime, closedAt);
        const KeptFault fault{"rivo/a/b/records", "fork",  number, "a \x1B[31mreason", times, noon,
                              noon.addSecs(60),   closedAt};
        QTEST(textOf({fault}), "text");
    }

private:
    PostgresServer m_server;
    DatabaseSettings m_settings;
};

QTEST_GUILESS_MAIN(TestOfficeReport)
#include "tst_office_report.moc"
