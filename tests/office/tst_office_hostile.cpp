#include "Forger.h"
#include "Table.h"

#include <QTest>

using namespace rivo::backoffice;
using namespace rivo::office;
using namespace rivo::sales;

namespace
{

const QString ofAnother = QStringLiteral("rivo/lakeside/4712/records");

} // namespace

/// What the office makes of messages that no honest vehicle sends.
class TestOfficeHostile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void aJournalThatWasPutBackIsAFork()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(sell(vehicle.journal, {5}) && sell(vehicle.journal, {6}));
        const Batch batch = vehicle.batch();
        const Forger forger(vehicle);
        QCOMPARE(office.take(batch), "2");
        const SealedRecord other =
            forger.recordAfter(batch.records.at(1), recordRow(2, 3) + "printout;i2;i1;i0;\n");
        QCOMPARE(office.take(Batch{batch.publicKey, {other}}),
                 "2: the office has another record with this number");
        const SealedRecord next =
            forger.recordAfter(other, recordRow(3, 3) + "printout;i3;i1;i1;\n");
        QCOMPARE(office.take(Batch{batch.publicKey, {next}}), "2: it does not follow record 2");
        QCOMPARE(office.take(Batch{batch.publicKey, {next}}), "2: it does not follow record 2");
        QCOMPARE(office.faults(), QStringList({"fork 2", "chain 3 x2"}));
        QCOMPARE(office.value("SELECT count(*) FROM record"), "3");
    }

    void otherMessagesAreKept_data()
    {
        const Table<QByteArray, QString, QString> row("bytes", "topic", "vehicles");
        const QString own = "rivo/lakeside/4711/records";
        const QByteArray question = encode(Batch{QByteArray(32, 'k'), {}});
        row("no message", "hello", own, "4711");
        row("nothing", "", own, "4711");
        row("deeply nested", QByteArray(100000, '\x81'), own, "4711");
        row("larger than a message may be", QByteArray(2 * mostBytesOfMessage, '\0'), own, "4711");
        row("a name that is none", question, "rivo/lakeside/4'7/records", "");
        row("an operator that is none", question, "rivo/;/4711/records", "");
        row("another topic", question, "rivo/lakeside/4711/alive", "");
        row("a part more", question, "rivo/lakeside/4711/records/x", "");
    }

    void otherMessagesAreKept()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, topic);
        Office office(m_server.newDatabase());
        QCOMPARE(office.take(bytes, topic), "none");
        QCOMPARE(office.take(bytes, topic), "none");
        QCOMPARE(office.faults(), QStringList("message -1 x2"));
        QCOMPARE(office.value("SELECT topic FROM fault"), topic);
        QTEST(office.value("SELECT name FROM vehicle"), "vehicles");
        QVERIFY(office.value("SELECT length(bytes) FROM fault").toInt() <= 65536);
    }

    /// What only the owner of a key can send.
    void signedNonsenseIsStoredAndListed_data()
    {
        const Table<QByteArray> row("rows");
        row("no rows", "nonsense");
        row("a record of another number", recordRow(9, 3));
        row("a kind that is not known", recordRow(1, 12));
        row("no time", recordRow(1, 3, "yesterday"));
        row("a year that no calendar has", recordRow(1, 3, "99999-01-01T12:00:00.000Z"));
        row("a sale of another record", recordRow(1, 2) + "sale;i9;i1;i5;i0;i5;i0;\n");
        row("a sale with a text as its sum", recordRow(1, 2) + "sale;i1;i1;t1:5i0;i5;i0;\n");
        row("a sale without its sum", recordRow(1, 2) + "sale;i1;i1;\n");
        row("a way of payment that is too large",
            recordRow(1, 2) + "sale;i1;i4294967297;i5;i0;i5;i0;\n");
        row("a sum that is too large", recordRow(1, 2) + "sale;i1;i1;i10000000000001;i0;i5;i0;\n");
        row("a row of the start", "journal;t3:EURi2;\n");
    }

    void signedNonsenseIsStoredAndListed()
    {
        QFETCH(QByteArray, rows);
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        Batch batch = vehicle.batch();
        const Forger forger(vehicle);
        batch.records.append(forger.recordAfter(batch.records.first(), rows));
        batch.records.append(forger.recordAfter(batch.records.last(), recordRow(2, 3)));
        QCOMPARE(office.take(batch), "2");
        QCOMPARE(office.faults(), QStringList("content 1"));
        QCOMPARE(office.value("SELECT count(*) FROM sale"), "0");
        QCOMPARE(office.value("SELECT encode(content, 'hex') FROM record WHERE number = 1"),
                 rows.toHex());
    }

    void textsOfTicketsAreValuesAndNotStatements()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        const QString name =
            QString::fromUtf8("'); DROP TABLE record; --\\'\" ? :a $1 \xF0\x9F\x9A\x8C\n");
        QVERIFY(vehicle.journal.confirmSale({ticket(5, name)}, {}, noon));
        QCOMPARE(office.take(vehicle.batch()), "1");
        QCOMPARE(office.value("SELECT product FROM ticket"), name);
        QCOMPARE(office.faults(), QStringList());
    }

    void aZeroByteInATextIsReplaced()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.confirmSale({ticket(5, "a-b")}, {}, noon));
        Batch batch = vehicle.batch();
        const Forger forger(vehicle);
        QByteArray rows = batch.records.at(1).content;
        rows.replace("t3:a-b", QByteArray("t3:a\0b", 6));
        batch.records[1] = forger.recordAfter(batch.records.at(0), rows);
        QCOMPARE(office.take(batch), "1");
        QCOMPARE(office.value("SELECT product FROM ticket"), QString("a%1b").arg(QChar(0xFFFD)));
        QCOMPARE(office.faults(), QStringList());
    }

    void numbersThatComeTwiceAreListed()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(vehicle.journal.closeShift(noon));
        Batch batch = vehicle.batch();
        const Forger forger(vehicle);
        QByteArray again = recordRow(2, 5) + "closing;i17;i2;";
        for (int figure = 0; figure < 15; ++figure)
            again += "i0;";
        batch.records.append(forger.recordAfter(batch.records.last(), again + '\n'));
        QCOMPARE(office.take(batch), "2");
        QCOMPARE(office.faults(), QStringList("content 2"));
        QCOMPARE(office.value("SELECT record FROM closing"), "1");
    }

    void aKeyBelongsToOneVehicle()
    {
        Office office(m_server.newDatabase());
        VehicleJournal vehicle;
        QVERIFY(sell(vehicle.journal, {5}));
        QCOMPARE(office.take(vehicle.batch()), "1");
        QCOMPARE(office.take(vehicle.batch(), ofAnother), "-1: the key is that of another vehicle");
        QCOMPARE(office.take(Batch{vehicle.journal.publicKey(), {}}, ofAnother),
                 "-1: the key is that of another vehicle");
        QCOMPARE(office.faults(), QStringList({"key 0", "key -1"}));
        QCOMPARE(office.value("SELECT count(*) FROM record"), "2");
    }

private:
    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestOfficeHostile)
#include "tst_office_hostile.moc"
