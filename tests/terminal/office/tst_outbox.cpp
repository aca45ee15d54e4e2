#include "JournalFiles.h"
#include "Table.h"

#include <Outbox.h>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace rivo::office;
using namespace rivo::sales;

namespace
{

/// A journal with an outbox, and the batches that it sent: "?" for a question, "0-2" for records.
struct Vehicle
{
    explicit Vehicle(const OutboxPace& pace = {2, 20, 60000, 60000})
        : journal(fileIn(folder.path())), outbox(journal, pace)
    {
        QObject::connect(&outbox, &Outbox::ready, [this](const QByteArray& message) {
            const auto batch = batchOf(message);
            if (!batch)
                sent << "no batch";
            else if (batch->records.isEmpty())
                sent << "?";
            else
                sent << QString("%1-%2")
                            .arg(batch->records.first().number)
                            .arg(batch->records.last().number);
        });
    }

    void answer(qint64 number, const QString& refusal = {})
    {
        outbox.take(encode(Acknowledgement{journal.publicKey(), number, refusal}));
    }

    QTemporaryDir folder;
    OpenJournal journal;
    Outbox outbox;
    QStringList sent;
};

} // namespace

/// When a journal's records go out.
class TestOutbox : public QObject
{
    Q_OBJECT

private slots:
    void theOfficeIsAskedFirst()
    {
        Vehicle vehicle;
        QVERIFY(sell(vehicle.journal, {5}));
        QCOMPARE(vehicle.sent, QStringList());
        vehicle.outbox.setConnected(true);
        QCOMPARE(vehicle.sent, QStringList("?"));
    }

    void recordsFollowWhatTheOfficeHas_data()
    {
        const Table<qint64, QStringList> row("number", "sent");
        row("nothing", -1, {"?", "0-1"});
        row("the start", 0, {"?", "1-2"});
        row("all but the last", 2, {"?", "3-3"});
        row("all", 3, {"?"});
        row("more than the journal", 9, {"?"});
    }

    void recordsFollowWhatTheOfficeHas()
    {
        QFETCH(qint64, number);
        Vehicle vehicle;
        QVERIFY(sell(vehicle.journal, {5}) && sell(vehicle.journal, {5}) &&
                sell(vehicle.journal, {5}));
        vehicle.outbox.setConnected(true);
        vehicle.answer(number);
        QTEST(vehicle.sent, "sent");
        QCOMPARE(vehicle.outbox.acknowledged(), number);
    }

    void oneBatchIsOnItsWay()
    {
        Vehicle vehicle;
        for (int sale = 0; sale < 4; ++sale)
            QVERIFY(sell(vehicle.journal, {5}));
        vehicle.outbox.setConnected(true);
        vehicle.answer(-1);
        QCOMPARE(vehicle.sent.takeLast(), "0-1");
        vehicle.answer(1);
        QCOMPARE(vehicle.sent.takeLast(), "2-3");
        vehicle.answer(1); // twice, as quality of service 1 may bring it
        vehicle.answer(3);
        QCOMPARE(vehicle.sent.takeLast(), "4-4");
        vehicle.answer(1); // the office was put back to an earlier day
        QCOMPARE(vehicle.sent.takeLast(), "2-3");
    }

    void aNewSaleFollowsByItself()
    {
        Vehicle vehicle;
        vehicle.outbox.setConnected(true);
        vehicle.answer(0);
        QCOMPARE(vehicle.sent, QStringList("?"));
        QVERIFY(sell(vehicle.journal, {5}));
        QTRY_COMPARE(vehicle.sent, QStringList({"?", "1-1"}));
    }

    void withoutAnAnswerTheOfficeIsAskedAgain()
    {
        Vehicle vehicle({2, 20, 50, 60000});
        QVERIFY(sell(vehicle.journal, {5}));
        vehicle.outbox.setConnected(true);
        vehicle.answer(0);
        QTRY_VERIFY(vehicle.sent.size() >= 4);
        QCOMPARE(vehicle.sent.mid(0, 4), QStringList({"?", "1-1", "?", "?"}));
        vehicle.answer(0);
        QCOMPARE(vehicle.sent.last(), "1-1");
    }

    void nothingGoesOutWithoutAConnection()
    {
        Vehicle vehicle({2, 5, 5, 5});
        QVERIFY(sell(vehicle.journal, {5}));
        vehicle.answer(0);
        vehicle.outbox.setConnected(true);
        vehicle.outbox.setConnected(false);
        vehicle.answer(0);
        QTest::qWait(50);
        QCOMPARE(vehicle.sent, QStringList("?"));
        vehicle.outbox.setConnected(true);
        QCOMPARE(vehicle.sent, QStringList({"?", "?"}));
    }

    void aRefusalStopsAndIsReported()
    {
        Vehicle vehicle({2, 5, 60000, 100});
        QSignalSpy refused(&vehicle.outbox, &Outbox::refused);
        QVERIFY(sell(vehicle.journal, {5}));
        vehicle.outbox.setConnected(true);
        vehicle.answer(0);
        vehicle.answer(0, "fork");
        QCOMPARE(vehicle.sent, QStringList({"?", "1-1"}));
        QCOMPARE(refused.size(), 1);
        QCOMPARE(refused.first().first().toString(), "fork");
        QCOMPARE(vehicle.outbox.refusal(), "fork");
        QTRY_COMPARE(vehicle.sent, QStringList({"?", "1-1", "?"}));
        vehicle.answer(0);
        QCOMPARE(vehicle.outbox.refusal(), "");
        QCOMPARE(vehicle.sent.last(), "1-1");
    }

    void otherAnswersAreIgnored_data()
    {
        const Table<QByteArray> row("bytes");
        row("no answer", "hello");
        row("of another journal", encode(Acknowledgement{QByteArray(32, 'x'), 5, {}}));
    }

    void otherAnswersAreIgnored()
    {
        QFETCH(QByteArray, bytes);
        Vehicle vehicle;
        QVERIFY(sell(vehicle.journal, {5}));
        QSignalSpy changed(&vehicle.outbox, &Outbox::acknowledgedChanged);
        QSignalSpy refused(&vehicle.outbox, &Outbox::refused);
        vehicle.outbox.setConnected(true);
        vehicle.outbox.take(bytes);
        QCOMPARE(vehicle.sent, QStringList("?"));
        QCOMPARE(vehicle.outbox.acknowledged(), -1);
        QCOMPARE(changed.size() + refused.size(), 0);
    }

    void aStoppedJournalSendsNothing()
    {
        Journal journal;
        Outbox outbox(journal);
        QSignalSpy ready(&outbox, &Outbox::ready);
        outbox.setConnected(true);
        QCOMPARE(ready.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestOutbox)
#include "tst_outbox.moc"
