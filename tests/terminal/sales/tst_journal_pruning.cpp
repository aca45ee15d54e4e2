#include "JournalFiles.h"
#include "Table.h"

#include <JournalAudit.h>

#include <QJsonArray>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace rivo::sales;
using rivo::payment::Verdict;

namespace
{

using Work = std::function<bool(Journal&)>;

constexpr qint64 all = 1'000'000; ///< more records than there are

QDateTime dayAfterNoon(int days) { return noon.addDays(days); }

bool printAll(Journal& journal)
{
    for (const Ticket& each : journal.unprintedTickets()) {
        if (!journal.markPrinted(each.number, noon))
            return false;
    }
    return true;
}

/// A shift with one sale of two tickets that is closed `day` days after noon: 4 records.
bool keepShift(Journal& journal, int day = 0)
{
    return sell(journal, {190, 95}) && printAll(journal) &&
           journal.closeShift(dayAfterNoon(day)).has_value();
}

/// One of 5 records, the last one its hand-over.
bool keepPaidShift(Journal& journal, int day = 0)
{
    const qint64 number = journal.runningShift()->zNumber;
    return keepShift(journal, day) && journal.handOver(number, dayAfterNoon(day)).has_value();
}

std::optional<CardPayment> charge(Journal& journal, Minor amount, bool isSold)
{
    const auto payment = journal.beginCharge(amount, noon);
    if (!payment)
        return std::nullopt;
    rivo::payment::Receipt receipt;
    receipt.number = int(payment->id);
    receipt.amount = amount;
    const CardOutcome outcome{payment->id, Verdict::Approved, receipt, {}};
    const bool isDone =
        isSold
            ? journal.confirmSale({ticket(amount)}, {PayMethod::Card}, noon, outcome).has_value() &&
                  printAll(journal)
            : journal.recordOutcome(outcome, noon);
    return isDone ? payment : std::nullopt;
}

/// A sale by card in a shift after which the card terminal closed its day.
bool keepCardShift(Journal& journal)
{
    const qint64 number = journal.runningShift()->zNumber;
    return charge(journal, 450, true) && journal.closeShift(noon) &&
           journal.beginCardDay(number, noon) && journal.recordCardDay(number, 450, noon);
}

QVector<QJsonObject> recordsOf(Journal& journal)
{
    QVector<QJsonObject> records;
    journal.forEachRecord([&](const QJsonObject& record) {
        records.append(record);
        return true;
    });
    return records;
}

QVector<qint64> numbersOf(const QVector<QJsonObject>& records)
{
    QVector<qint64> numbers;
    for (const QJsonObject& record : records)
        numbers.append(qint64(record["id"].toDouble()));
    return numbers;
}

} // namespace

Q_DECLARE_METATYPE(Work)

/// Records of old shifts are removed; what is left can still be checked and gone on with.
class TestJournalPruning : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void oldShiftsAreRemovedAndTheJournalGoesOn()
    {
        {
            OpenJournal journal(file());
            QVERIFY(keepShift(journal, 0));                 // 1 to 4
            QVERIFY(keepShift(journal, 1));                 // 5 to 8
            QVERIFY(journal.handOver(17, dayAfterNoon(2))); // 9
            QVERIFY(journal.handOver(18, dayAfterNoon(2))); // 10
            QVERIFY(keepShift(journal, 3));                 // 11 to 14
            QCOMPARE(journal.lastPruned(), 0);
            QCOMPARE(journal.prune(all, dayAfterNoon(3), dayAfterNoon(9)), 8);
            QCOMPARE(journal.lastPruned(), 8);
            QCOMPARE(journal.firstZNumber(), 19);
            QVERIFY(!journal.closedShift(18));
        }
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QCOMPARE(numbersOf(recordsOf(journal)), (QVector<qint64>{9, 10, 11, 12, 13, 14, 15}));
        QCOMPARE(recordsOf(journal).last()["pruning"].toArray().first().toObject()["last"], 8);
        QCOMPARE(shiftsOf(journal),
                 (QStringList{"19: 2 tickets 285, 0 by card 0, 5-6, closed 01 12:00",
                              "20: 0 tickets 0, 0 by card 0, 0-0"}));
        QVERIFY(!journal.handOver(17, noon));
        QVERIFY(journal.handOver(19, noon));
        QVERIFY(sell(journal, {5}));
        QCOMPARE(valuesOf(journal.lastTickets(9), &Ticket::number), (QVector<qint64>{7, 6, 5}));
        QCOMPARE(journal.prune(all, dayAfterNoon(3), dayAfterNoon(9)), 0);
        QCOMPARE(numbersOf(recordsOf(journal)).last(), 17);
        QCOMPARE(kindOf(journal.fault()), "none");
    }

    void aPrunedJournalIsWhole()
    {
        {
            OpenJournal journal(file());
            QVERIFY(keepPaidShift(journal) && keepPaidShift(journal) && keepPaidShift(journal));
            QCOMPARE(journal.prune(9, dayAfterNoon(1), noon), 9);
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 5);
            QVERIFY(sell(journal, {5}));
        }
        const JournalAudit audit = auditJournal(file());
        QCOMPARE(audit.reason, QString());
        QCOMPARE(audit.verdict, JournalAudit::Verdict::Whole);
        QCOMPARE(audit.pruned, 14);
        QCOMPARE(audit.unsealed, 0);
        QCOMPARE(audit.records, 4); // a hand-over, twice pruned, a sale
        QVERIFY(audit.isHeadCompared);
    }

    void theHeadOfAPrunedRecordCannotBeCompared()
    {
        QString head;
        {
            OpenJournal journal(file());
            QVERIFY(keepPaidShift(journal));
            head = journal.head();
            QVERIFY(keepPaidShift(journal));
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 9);
        }
        const JournalAudit audit = auditJournal(file(), head);
        QCOMPARE(audit.verdict, JournalAudit::Verdict::Unreadable);
        QCOMPARE(audit.reason, "the record of that head was pruned, as all up to 9");
    }

    void whatOthersReadBeginsWithTheStart()
    {
        OpenJournal journal(file());
        QVERIFY(keepPaidShift(journal) && keepPaidShift(journal));
        QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 9);
        const QVector<SealedRecord> records = journal.sealedRecords(-1, 99);
        QCOMPARE(records.size(), 3);
        QCOMPARE(records.first().number, 9);
        QVERIFY(records.first().content.startsWith("journal;"));
        for (int at = 0; at < records.size(); ++at) {
            QVERIFY(isSigned(records.at(at), journal.publicKey()));
            QVERIFY(at == 0 || follows(records.at(at - 1), records.at(at)));
        }
        QVERIFY(isSealOfStart(records.first()));
        QCOMPARE(journal.sealedRecords(9, 99).size(), 2);
    }

    void whatIsNeededStays_data()
    {
        const Table<Work, qint64> row("more", "pruned");
        row(
            "a shift that is handed over goes", [](Journal& j) { return keepPaidShift(j); }, 9);
        row(
            "cash that is not handed over", [](Journal& j) { return keepShift(j); }, 4);
        row(
            "a shift that owes nothing goes",
            [](Journal& j) { return j.closeShift(noon).has_value(); }, 6);
        row(
            "a shift of the limit's day", [](Journal& j) { return keepPaidShift(j, 1); }, 4);
        row(
            "nothing before a shift of the limit's day",
            [](Journal& j) { return keepPaidShift(j, 1) && keepPaidShift(j, 0); }, 4);
        row(
            "a ticket that is not printed",
            [](Journal& j) { return sell(j, {0}) && j.closeShift(noon).has_value(); }, 4);
        row(
            "a ticket that was copied later",
            [](Journal& j) {
                return keepPaidShift(j) && keepPaidShift(j) && j.recordCopy(3, noon);
            },
            4);
        row(
            "a payment that is open",
            [](Journal& j) { return j.beginCharge(5, noon) && j.closeShift(noon); }, 4);
        row(
            "a payment that is not booked",
            [](Journal& j) { return charge(j, 5, false) && j.closeShift(noon); }, 4);
        row(
            "the last payment", [](Journal& j) { return keepCardShift(j); }, 4);
        row(
            "a payment before the last one goes",
            [](Journal& j) { return keepCardShift(j) && keepCardShift(j); }, 10);
        row(
            "payments of a card day that is not closed",
            [](Journal& j) {
                return charge(j, 450, true) && j.closeShift(noon) && charge(j, 450, true) &&
                       j.closeShift(noon);
            },
            4);
        row(
            "a payment that is given back later",
            [](Journal& j) {
                const auto paid = charge(j, 450, false);
                CardPayment back;
                back.origin = paid->id;
                back.amount = 450;
                const bool isClosed = j.closeShift(noon).has_value() && charge(j, 5, true);
                const auto returned = isClosed ? j.beginReturn(back, noon) : std::nullopt;
                return returned &&
                       j.recordOutcome({returned->id, Verdict::Approved, {}, {}}, noon) &&
                       j.recordCardDay(19, 5, noon) && charge(j, 5, true);
            },
            4);
    }

    /// After a shift that goes.
    void whatIsNeededStays()
    {
        QFETCH(Work, more);
        {
            OpenJournal journal(file());
            QVERIFY(keepPaidShift(journal));
            QVERIFY(more(journal));
            QTEST(journal.prune(all, dayAfterNoon(1), noon), "pruned");
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 0);
        }
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QCOMPARE(auditJournal(file()).verdict, JournalAudit::Verdict::Unreadable); // in use
    }

    void onlyWhatIsAcknowledgedGoes_data()
    {
        const Table<qint64, qint64> row("acknowledged", "pruned");
        row("nothing is acknowledged", -1, 0);
        row("the start", 0, 0);
        row("less than a shift", 3, 0);
        row("the first shift", 4, 4);
        row("the second but for one record", 8, 4);
        row("the second", 9, 9);
    }

    void onlyWhatIsAcknowledgedGoes()
    {
        QFETCH(qint64, acknowledged);
        OpenJournal journal(file());
        QVERIFY(keepPaidShift(journal) && keepPaidShift(journal));
        const QString head = journal.head();
        QTEST(journal.prune(acknowledged, dayAfterNoon(1), noon), "pruned");
        QFETCH(qint64, pruned);
        QCOMPARE(journal.head() == head, pruned == 0); // nothing is recorded about nothing
    }

    /// An update that is put back leaves a program that knows no pruning.
    void onlyAPrunedJournalIsOfAnotherVersion()
    {
        const auto version = [] { return rowsOf(onlyConnection(), "PRAGMA user_version").at(0); };
        OpenJournal journal(file());
        QVERIFY(keepPaidShift(journal) && keepPaidShift(journal));
        QCOMPARE(journal.prune(0, dayAfterNoon(1), noon), 0);
        QCOMPARE(version(), "6");
        for (int time = 0; time < 2; ++time) {
            QVERIFY(journal.prune(4 + 5 * time, dayAfterNoon(1), noon) > 0);
            QCOMPARE(version(), "7");
        }
    }

    void aStoppedJournalIsNotPruned()
    {
        Journal journal;
        QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 0);
        QCOMPARE(journal.lastPruned(), 0);
    }

    void aLongHistoryGoesInParts()
    {
        constexpr int shifts = 3;
        constexpr int floats = Journal::mostPrunedAtOnce / 2;
        {
            OpenJournal journal(file());
            QVERIFY(journal.recordForTrials());
            for (int shift = 0; shift < shifts; ++shift) {
                for (int count = 0; count < floats; ++count)
                    QVERIFY(journal.recordOpeningFloat(0, noon));
                QVERIFY(journal.closeShift(noon));
            }
        }
        for (int shift = 0; shift < shifts; ++shift) {
            OpenJournal journal(file());
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), floats + 1);
            QVERIFY(sell(journal, {5}));
        }
        QCOMPARE(auditJournal(file()).reason, QString());
        OpenJournal journal(file());
        QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 0);
    }

    void recordsFromBeforeTheSealsGoToo()
    {
        {
            OpenJournal journal(file());
            QVERIFY(keepPaidShift(journal));
        }
        executeIn(file(), {"DROP TABLE seal", "DROP TABLE chain", "PRAGMA user_version=5"});
        for (const QString& companion : companions)
            QFile::remove(file() + companion);
        {
            OpenJournal journal(file());
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 0); // within what was never sealed
            QVERIFY(keepPaidShift(journal));
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 9);
        }
        QCOMPARE(auditJournal(file()).unsealed, 0);
        OpenJournal journal(file());
        QCOMPARE(kindOf(journal.fault()), "none");
        QVERIFY(sell(journal, {5}));
    }

    void changeOfAPrunedJournalIsNoticed_data()
    {
        const Table<QStringList, QString> row("statements", "fault");
        row("nothing is changed", {}, "none");
        row("more is removed",
            {"DELETE FROM hand_over WHERE record = 10", "DELETE FROM record WHERE id = 10",
             "DELETE FROM seal WHERE record < 11", "UPDATE chain SET base = 10"},
            "damaged");
        row("the end of what was removed", {"UPDATE pruning SET last = 8"}, "damaged");
        row("the shift of what was removed", {"UPDATE pruning SET shift = 17"}, "damaged");
        row("the seal of the last pruned record", {"UPDATE seal SET hash = x'00' WHERE record = 9"},
            "damaged");
        row("no seal of the last pruned record", {"DELETE FROM seal WHERE record = 9"}, "damaged");
        row("where the chain begins", {"UPDATE chain SET base = 8"}, "damaged");
        row("tickets that were removed", {"UPDATE chain SET last_ticket = 3"}, "damaged");
        row("the first shift", {"UPDATE chain SET first_shift = 18"}, "damaged");
        row("the money it is kept in", {"UPDATE journal SET decimals = 3"}, "other currency");
        row("no record about it", {"DELETE FROM pruning", "DELETE FROM record WHERE kind = 11"},
            "damaged");
        row("no rows about it", {"DELETE FROM pruning"}, "damaged");
        row("a second row about it",
            {"INSERT INTO pruning SELECT 99, last, shift, start FROM pruning"}, "damaged");
        row("a second row at a record of another kind",
            {"INSERT INTO pruning SELECT 13, last, shift, start FROM pruning"}, "damaged");
        row("a record that was removed is back",
            {"INSERT INTO record VALUES (9, 10, 18, '2026-03-29T12:00:00.250+00:00', 0)",
             "INSERT INTO clock VALUES (9, 1, 5)"},
            "damaged");
        row("a ticket that was removed is back",
            {"INSERT INTO ticket SELECT 2, 11, passenger_type, fare_product, from_zone, to_zone,"
             " description, fare_product_name, icon, price, origin, destination, is_return,"
             " is_daily, route, from_stop, to_stop, current_stop, trips_route, trips_execution,"
             " public_execution, from_stop_name, to_stop_name, route_name, vehicle, validity, tax"
             " FROM ticket LIMIT 1"},
            "damaged");
        row("an amount that is left", {"UPDATE hand_over SET counted = 5, difference = -280"},
            "damaged");
    }

    void changeOfAPrunedJournalIsNoticed()
    {
        QFETCH(QStringList, statements);
        QFETCH(QString, fault);
        {
            OpenJournal journal(file());
            QVERIFY(keepPaidShift(journal) && keepPaidShift(journal));
            QVERIFY(sell(journal, {5}));
            QCOMPARE(journal.prune(all, dayAfterNoon(1), noon), 9);
            QVERIFY(sell(journal, {5}));
        }
        executeIn(file(), statements);
        const auto verdict =
            statements.isEmpty() ? JournalAudit::Verdict::Whole : JournalAudit::Verdict::NotWhole;
        QCOMPARE(auditJournal(file()).verdict, verdict);
        QCOMPARE(kindOf(OpenJournal(file()).fault()), fault);
    }

    /// Whatever a vehicle does in a year: what is pruned is the oldest part, and the rest is the
    /// same as before, still agrees with its seals and figures, and can be gone on with.
    void theRestOfRandomDaysIsWhatItWas()
    {
        QRandomGenerator random(20261124);
        auto journal = std::make_unique<OpenJournal>(file());
        qint64 prunings = 0;
        for (int step = 0; step < 400; ++step) {
            const QDateTime at = dayAfterNoon(step / 20);
            switch (random.bounded(12)) {
            case 0:
            case 1:
                QVERIFY(journal->closeShift(at));
                break;
            case 2:
            case 3:
            case 4: // none is no failure
                for (const ShiftReport& shift : journal->closedShifts())
                    journal->handOver(shift.zNumber, at);
                break;
            case 5:
                if (!journal->lastTickets(1).isEmpty())
                    QVERIFY(journal->recordCopy(journal->lastTickets(1).first().number, at));
                break;
            case 6:
                QVERIFY(keepCardShift(*journal));
                break;
            case 7: {
                const QVector<QJsonObject> before = recordsOf(*journal);
                const int acknowledged = random.bounded(1 + int(numbersOf(before).value(0)) + 200);
                const qint64 pruned =
                    journal->prune(acknowledged, at.addDays(-random.bounded(1, 4)), at);
                QVERIFY(journal->lastPruned() <= acknowledged || pruned == 0);
                QVector<QJsonObject> after = recordsOf(*journal);
                if (pruned > 0)
                    after.removeLast();
                QCOMPARE(after, before.mid(int(pruned)));
                prunings += pruned > 0 ? 1 : 0;
                break;
            }
            case 8:
                journal.reset();
                QCOMPARE(auditJournal(file()).reason, QString());
                journal = std::make_unique<OpenJournal>(file());
                break;
            default:
                QVERIFY(sell(*journal, {190, 95}));
                QVERIFY(random.bounded(9) == 0 || printAll(*journal));
            }
            QCOMPARE(kindOf(journal->fault()), "none");
        }
        QVERIFY(prunings >= 5);
    }

private:
    QString file() const { return fileIn(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalPruning)
#include "tst_journal_pruning.moc"
