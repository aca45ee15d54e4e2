#include "JournalFiles.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace rivo::sales;

namespace
{

QVector<qint64> numbersOf(const QVector<SealedRecord>& records)
{
    QVector<qint64> all;
    for (const SealedRecord& each : records)
        all.append(each.number);
    return all;
}

bool isChain(const QVector<SealedRecord>& records, const QByteArray& key)
{
    for (int at = 0; at < records.size(); ++at) {
        if (!isSigned(records.at(at), key) ||
            (at > 0 && !follows(records.at(at - 1), records.at(at))))
            return false;
    }
    return !records.isEmpty() && isSealOfStart(records.first());
}

using Change = std::function<void(QVector<SealedRecord>&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

/// What leaves a journal, and how others check it.
class TestSealedRecords : public QObject
{
    Q_OBJECT

private slots:
    void recordsAreReadInOrder_data()
    {
        const Table<qint64, int, QVector<qint64>> row("after", "count", "numbers");
        row("the start comes first", -1, 2, {0, 1});
        row("after the start", 0, 2, {1, 2});
        row("to the end", 1, 9, {2, 3});
        row("nothing after the last one", 3, 9, {});
        row("nothing after a number that is not there", 7, 9, {});
        row("nothing is asked for", 0, 0, {});
    }

    void recordsAreReadInOrder()
    {
        QFETCH(qint64, after);
        QFETCH(int, count);
        QTemporaryDir folder;
        OpenJournal journal(fileIn(folder.path()));
        for (int sale = 0; sale < 3; ++sale)
            QVERIFY(sell(journal, {5, 7}));
        QTEST(numbersOf(journal.sealedRecords(after, count)), "numbers");
        QVERIFY(!journal.fault());
    }

    void whatIsReadIsAChain_data()
    {
        const Table<Change, bool> row("change", "isWhole");
        row(
            "nothing is changed", [](QVector<SealedRecord>&) {}, true);
        row(
            "a content is changed",
            [](QVector<SealedRecord>& records) { records[1].content.replace("i5;", "i4;"); },
            false);
        row(
            "the start is changed",
            [](QVector<SealedRecord>& records) { records[0].content.replace("EUR", "USD"); },
            false);
        row(
            "a record is left out", [](QVector<SealedRecord>& records) { records.remove(1); },
            false);
        row(
            "two records change places",
            [](QVector<SealedRecord>& records) { std::swap(records[1], records[2]); }, false);
        row(
            "a signature is cut off",
            [](QVector<SealedRecord>& records) { records[2].signature.chop(1); }, false);
        row(
            "a hash is another",
            [](QVector<SealedRecord>& records) { records[2].hash = QByteArray(32, 'x'); }, false);
    }

    void whatIsReadIsAChain()
    {
        QFETCH(Change, change);
        QTemporaryDir folder;
        OpenJournal journal(fileIn(folder.path()));
        QVERIFY(sell(journal, {5}) && sell(journal, {7}));
        QVector<SealedRecord> records = journal.sealedRecords(-1, 9);
        QCOMPARE(records.size(), 3);
        change(records);
        QTEST(isChain(records, journal.publicKey()), "isWhole");
        QVERIFY(!isChain(records, QByteArray(32, 'x')));
        QVERIFY(!isChain(records, {}));
    }

    void aStoppedJournalHasNone()
    {
        Journal journal;
        QVERIFY(journal.sealedRecords(-1, 9).isEmpty());
        QVERIFY(journal.publicKey().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSealedRecords)
#include "tst_sealed_records.moc"
