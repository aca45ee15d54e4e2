#include "OfficeUnderTest.h"
#include "Table.h"

#include <QTest>

#include <thread>
#include <vector>

using namespace rivo::backoffice;
using namespace rivo::office;
using namespace rivo::sales;

namespace
{

using Change = std::function<void(Batch&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

/// What the office makes of messages.
class TestOfficeIntake : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void aQuestionIsAnsweredAndStoresNothing()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QCOMPARE(office.take(Batch{vehicle.journal.publicKey(), {}}), "-1");
        QCOMPARE(office.value("SELECT count(*) FROM journal"), "0");
        QCOMPARE(office.take(vehicle.batch()), "0");
        QCOMPARE(office.take(Batch{vehicle.journal.publicKey(), {}}), "0");
        QCOMPARE(office.faults(), QStringList());
    }

    void recordsAreStoredAsTheyAre()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        vehicle.journal.setDriver(7);
        QVERIFY(sell(vehicle.journal, {500, 700}) && sell(vehicle.journal, {90}, PayMethod::Card));
        QCOMPARE(office.take(vehicle.batch()), "2");
        QCOMPARE(office.value("SELECT encode(public_key, 'hex') FROM journal"),
                 vehicle.journal.publicKey().toHex());
        const QVector<SealedRecord> records = vehicle.journal.sealedRecords(-1, 9);
        for (const SealedRecord& each : records) {
            const QString row =
                QStringLiteral("SELECT encode(content, 'hex') || encode(hash, 'hex') ||"
                               " encode(signature, 'hex') FROM record WHERE number = %1")
                    .arg(each.number);
            QCOMPARE(office.value(row), (each.content + each.hash + each.signature).toHex());
        }
    }

    void whatReportsNeedIsRead()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        vehicle.journal.setDriver(7);
        QVERIFY(sell(vehicle.journal, {500, 700}) && sell(vehicle.journal, {90}, PayMethod::Card));
        QVERIFY(vehicle.journal.reverse(1, {2}, ReversalKind::Refund, "late", 700, noon));
        QVERIFY(vehicle.journal.closeShift(noon) && vehicle.journal.handOver(17, noon, 495));
        QVERIFY(vehicle.journal.recordClock(ClockRemark::Step, -90000, noon));
        QCOMPARE(office.take(vehicle.batch()), "6");
        QCOMPARE(office.value("SELECT concat_ws('/', kind, shift, driver, day) FROM record"
                              " WHERE number > 0 ORDER BY number"),
                 "2/17/7/2026-03-29 2/17/7/2026-03-29 4/17/7/2026-03-29 5/17/7/2026-03-29"
                 " 6/17/7/2026-03-29 10/18/7/2026-03-29");
        QCOMPARE(office.value("SELECT concat_ws('/', record, pay_method, total) FROM sale"
                              " ORDER BY record"),
                 "1/1/1200 2/2/90");
        QCOMPARE(office.value("SELECT concat_ws('/', number, sale, product, price) FROM ticket"
                              " ORDER BY number"),
                 "1/1/single/500 2/1/single/700 3/2/single/90");
        QCOMPARE(office.value("SELECT concat_ws('/', record, sale, reason_kind, total, paid_out)"
                              " FROM reversal"),
                 "3/1/2/700/700");
        QCOMPARE(office.value("SELECT concat_ws('/', ticket, reversal) FROM reversed_ticket"),
                 "2/3");
        QCOMPARE(office.value("SELECT concat_ws('/', shift, record, ticket_count, ticket_sum,"
                              " card_sum, refund_sum) FROM closing"),
                 "17/4/3/1290/90/700");
        QCOMPARE(office.value("SELECT concat_ws('/', shift, counted, difference) FROM hand_over"),
                 "17/495/-5");
        QCOMPARE(office.value("SELECT concat_ws('/', record, remark, milliseconds) FROM clock"),
                 "6/2/-90000");
        QCOMPARE(office.faults(), QStringList("clock 6"));
    }

    void messagesMayComeTwiceAndInAnyOrder()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        for (int sale = 0; sale < 5; ++sale)
            QVERIFY(sell(vehicle.journal, {5}));
        QCOMPARE(office.take(vehicle.batch(2, 2)), "-1");
        QCOMPARE(office.faults(), QStringList("gap 3"));
        QCOMPARE(office.take(vehicle.batch(-1, 3)), "2");
        QCOMPARE(office.faults(true), QStringList("gap 3 closed"));
        QCOMPARE(office.take(vehicle.batch(3, 2)), "2");
        QCOMPARE(office.faults(), QStringList("gap 4"));
        QCOMPARE(office.take(vehicle.batch(1, 2)), "3");  // 2 again, and 3
        QCOMPARE(office.take(vehicle.batch(-1, 2)), "3"); // 0 and 1 again
        QCOMPARE(office.take(vehicle.batch(3, 2)), "5");
        QCOMPARE(office.take(vehicle.batch()), "5");
        QCOMPARE(office.faults(), QStringList());
        QCOMPARE(office.value("SELECT count(*) FROM record"), "6");
        QCOMPARE(office.value("SELECT sum(price) FROM ticket"), "25");
    }

    void changedRecordsAreRefusedAndKept_data()
    {
        const Table<Change, QString, QString> row("change", "answer", "faults");
        row(
            "a price is changed",
            [](Batch& batch) { batch.records[2].content.replace("i6;", "i5;"); },
            "1: it does not follow record 1", "chain 2");
        row(
            "the start is changed",
            [](Batch& batch) { batch.records[0].content.replace("EUR", "USD"); },
            "-1: it is not the start of the journal", "start 0");
        row(
            "the start is not readable", [](Batch& batch) { batch.records[0].content = "x"; },
            "-1: it is not the start of the journal", "start 0");
        row(
            "a signature is another's",
            [](Batch& batch) { batch.records[2].signature = batch.records[1].signature; },
            "1: it is not signed with the key", "signature 2");
        row(
            "the signature of the start is another's",
            [](Batch& batch) { batch.records[0].signature = batch.records[1].signature; },
            "-1: it is not signed with the key", "signature 0");
        row(
            "a hash is another", [](Batch& batch) { batch.records[1].hash = QByteArray(32, 'x'); },
            "0: it is not signed with the key", "signature 1");
        row(
            "a record is left out and the numbers are closed up",
            [](Batch& batch) {
                batch.records.remove(2);
                batch.records[2].number = 2;
            },
            "1: it is not signed with the key", "signature 2");
        row(
            "the key is another", [](Batch& batch) { batch.publicKey = QByteArray(32, 'k'); },
            "-1: it is not signed with the key", "signature 0");
    }

    void changedRecordsAreRefusedAndKept()
    {
        QFETCH(Change, change);
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(sell(vehicle.journal, {5}) && sell(vehicle.journal, {6}) &&
                sell(vehicle.journal, {7}));
        Batch batch = vehicle.batch();
        change(batch);
        QTEST(office.take(batch), "answer");
        QTEST(office.faults().join(' '), "faults");
        QCOMPARE(office.take(vehicle.batch()), "3"); // the journal itself still comes
        QCOMPARE(office.value("SELECT sum(price) FROM ticket"), "18");
    }

    void theBytesOfAFaultAreKept()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(sell(vehicle.journal, {5}));
        Batch batch = vehicle.batch();
        batch.records[1].signature.fill('x');
        office.take(batch);
        const QByteArray kept = encode(Batch{batch.publicKey, {batch.records.at(1)}});
        QCOMPARE(office.value("SELECT encode(bytes, 'hex') FROM fault"), kept.toHex());
        office.take("nonsense");
        QCOMPARE(office.value("SELECT encode(bytes, 'escape') FROM fault WHERE kind = 'message'"),
                 "nonsense");
    }

    void aVehicleMayHaveAnotherJournal()
    {
        Office office(m_server.newDatabase());
        VehicleJournal first;
        VehicleJournal second;
        QVERIFY(sell(first.journal, {5}) && sell(second.journal, {6}));
        QCOMPARE(office.take(first.batch()), "1");
        QCOMPARE(office.take(second.batch()), "1");
        QCOMPARE(office.take(second.batch()), "1");
        QCOMPARE(office.faults(), QStringList("journal 0"));
        QCOMPARE(office.value("SELECT sum(price) FROM ticket"), "11");
        QCOMPARE(office.value("SELECT count(*) FROM vehicle"), "1");
    }

    void oddTimesAreListed_data()
    {
        const Table<int, int, QString> row("first", "second", "faults");
        row("the clock goes on", 0, 60, "");
        row("the clock is set back", 60, 59, "clock 2");
        row("the clock is a bit ahead", 0, 15 * 60, "");
        row("the clock jumps ahead", 0, 3600, "clock 2");
        row("the clock stays ahead", 3600, 3660, "clock 1");
        row("the clock is behind", -86400, -86000, "");
    }

    void oddTimesAreListed()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.confirmSale({ticket(5)}, {}, noon.addSecs(first)) &&
                vehicle.journal.confirmSale({ticket(5)}, {}, noon.addSecs(second)));
        QCOMPARE(office.take(vehicle.batch(-1, 2)), "1");
        QCOMPARE(office.take(vehicle.batch(1, 2)), "2");
        QTEST(office.faults().join(' '), "faults");
    }

    void theDayIsThatOfTheVehicle()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        const QDateTime late(QDate(2026, 3, 30), QTime(0, 30), Qt::OffsetFromUTC, 7200);
        QVERIFY(vehicle.journal.confirmSale({ticket(5)}, {}, late));
        QCOMPARE(office.take(vehicle.batch()), "1");
        QCOMPARE(office.value("SELECT concat_ws(' ', day, extract(day FROM at)) FROM record"
                              " WHERE number = 1"),
                 "2026-03-30 29");
    }

    /// An office with an older backup goes on with what the vehicle has left, and says so.
    void recordsThatTheVehiclePrunedAreListed()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.recordOpeningFloat(0, noon));
        QCOMPARE(office.take(vehicle.batch()), "1");
        QVERIFY(vehicle.journal.closeShift(noon) && vehicle.journal.closeShift(noon));
        QCOMPARE(vehicle.journal.prune(3, noon.addDays(1), noon), 3);
        QVERIFY(sell(vehicle.journal, {5}));
        QCOMPARE(office.take(vehicle.batch(1)), "5");
        QCOMPARE(office.faults(), QStringList("journal 3"));
        QVERIFY(sell(vehicle.journal, {5}));
        QCOMPARE(office.take(vehicle.batch(5)), "6");
        QCOMPARE(office.faults(), QStringList("journal 3")); // it stays open
        QCOMPARE(office.value("SELECT string_agg(number || ' ' || kind, ', ' ORDER BY number)"
                              " FROM record WHERE kind IS NOT NULL"),
                 "1 1, 4 11, 5 2, 6 2");
    }

    void aNewOfficeBeginsWithWhatTheVehicleHasLeft()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.closeShift(noon) && vehicle.journal.closeShift(noon));
        QCOMPARE(vehicle.journal.prune(2, noon.addDays(1), noon), 2);
        QCOMPARE(office.take(vehicle.batch()), "3");
        QCOMPARE(office.faults(), QStringList());
    }

    /// Only its owner can say that a journal was pruned.
    void aStartOfAnotherIsNoReasonToGoOn()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.recordOpeningFloat(0, noon));
        QCOMPARE(office.take(vehicle.batch()), "1");
        QVERIFY(vehicle.journal.closeShift(noon) && vehicle.journal.closeShift(noon));
        QCOMPARE(vehicle.journal.prune(3, noon.addDays(1), noon), 3);
        Batch batch = vehicle.batch(1);
        batch.records.first().signature[0] = char(batch.records.first().signature.at(0) ^ 1);
        QCOMPARE(office.take(batch), "1");
        QCOMPARE(office.faults(), QStringList("gap 3"));
    }

    void severalProgramsShareTheWork()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        Office first(settings);
        VehicleJournal vehicle;
        constexpr int sales = 40;
        for (int sale = 0; sale < sales; ++sale)
            QVERIFY(sell(vehicle.journal, {5}));
        QVector<QByteArray> messages;
        for (int after = -1; after < sales; after += 3)
            messages.append(encode(vehicle.batch(after, 5)));
        std::vector<std::thread> programs;
        for (int program = 0; program < 4; ++program)
            programs.emplace_back([&, program] {
                Office office(settings);
                for (int at = 0; at < messages.size(); ++at)
                    office.take(messages.at((at + program) % messages.size()));
                for (const QByteArray& message : messages)
                    office.take(message);
            });
        for (std::thread& program : programs)
            program.join();
        QCOMPARE(first.take(Batch{vehicle.journal.publicKey(), {}}), QString::number(sales));
        QCOMPARE(first.value("SELECT count(*) FROM record"), QString::number(sales + 1));
        QCOMPARE(first.value("SELECT sum(price) FROM ticket"), QString::number(sales * 5));
        QCOMPARE(first.faults(), QStringList());
    }

    void aMessageThatTheDatabaseRefusesIsListed()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(sell(vehicle.journal, {5}) && sell(vehicle.journal, {6}));
        QCOMPARE(office.take(vehicle.batch(-1, 2)), "1");
        QVERIFY(office.change("ALTER TABLE ticket ADD CHECK (price < 6)"));
        QCOMPARE(office.take(vehicle.batch(1, 2)), "1: the office cannot store it");
        QCOMPARE(office.faults(), QStringList("storage 2"));
        QVERIFY(office.change("ALTER TABLE ticket DROP CONSTRAINT ticket_price_check"));
        QCOMPARE(office.take(vehicle.batch(1, 2)), "2");
    }

    void aNewVehicleThatTheDatabaseRefusesIsListed()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(office.change("ALTER TABLE record ADD CHECK (number < 0)"));
        QCOMPARE(office.take(vehicle.batch()), "-1: the office cannot store it");
        QCOMPARE(office.faults(), QStringList("storage 0"));
    }

    /// The last test: it stops the server.
    void withoutADatabaseNothingIsAnswered()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QCOMPARE(office.take(vehicle.batch()), "0");
        m_server.kill();
        QVERIFY(sell(vehicle.journal, {5}));
        QCOMPARE(office.take(vehicle.batch()), "not stored");
        QCOMPARE(office.take("nonsense"), "not stored");
        QVERIFY(m_server.resume());
        QVERIFY(office.store.open());
        QCOMPARE(office.take(vehicle.batch()), "1");
    }

private:
    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestOfficeIntake)
#include "tst_office_intake.moc"
