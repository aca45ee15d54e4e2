#include "JournalFiles.h"
#include "Table.h"

#include <QDebug>
#include <QTemporaryDir>
#include <QTest>

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

} // namespace

/// What the journal stores: the basket, sales, printed tickets, shifts.
class TestJournal : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void newFileStartsTheFirstShift_data()
    {
        const Table<bool> row("isThere");
        row("no file", false);
        row("empty file", true);
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
    void fileIsMarkedAsJournal()
    {
        OpenJournal(file()).clearBasket();
        const QByteArray header = contentOf(file()).left(72);
        QCOMPARE(header.mid(68, 4), QByteArray("RivJ"));
        QCOMPARE(header.mid(60, 4), QByteArray("\0\0\0\6", 4));
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

    void ticketNumbersCannotBeMadeFree()
    {
        {
            OpenJournal journal(file());
            QVERIFY(sell(journal, {190, 95}));
        }
        executeIn(file(),
                  {"DELETE FROM unprinted", "DELETE FROM ticket", "DELETE FROM sale",
                   "DELETE FROM record", "DELETE FROM sqlite_sequence WHERE name = 'record'"});
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "damaged");
        QVERIFY(!sell(journal, {95}));
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
        // The newest one, and the one whose cash is missing.
        QVector<qint64> recent;
        for (const ShiftReport& report : journal.recentShifts(1))
            recent.append(report.zNumber);
        QCOMPARE(recent, (QVector<qint64>{18, 20}));
        QCOMPARE(journal.firstZNumber(), 17);
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

private:
    QString file() const { return fileIn(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournal)
#include "tst_journal.moc"
