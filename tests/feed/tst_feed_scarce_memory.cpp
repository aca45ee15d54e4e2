// Feeds that need more memory than there is.

#include "CsvTable_p.h"
#include "FeedFiles.h"
#include "ScarceMemory.h"
#include "Table.h"
#include "Tariff.h"

using namespace rivo::feed;

class FeedScarceMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void tables_data();
    void tables();
    void aFeedThatDoesNotFitIsRefused();
};

void FeedScarceMemoryTest::tables_data()
{
    const Table<QByteArray, int, bool> row("text", "columns", "isWhole");
    const QByteArray text(3'000, 'x');
    row("a table of short texts", "a,b\n\"x\",y\n", 2, true);
    row("a long text without quotes is not copied", "a,b\n" + text + ",y\n", 2, true);
    row("a long text in quotes, and another one behind it", "a,b\n\"" + text + "\",\"y\"\n", 2,
        false);
    row("a long text in quotes over two lines", "a,b\nx,\"" + text + "\ny\"\nx,y\n", 2, false);
    row("more columns than fit", "a,b\nx,y\n", 100, false);
}

void FeedScarceMemoryTest::tables()
{
    QFETCH(QByteArray, text);
    QFETCH(int, columns);
    QFETCH(bool, isWhole);
    QStringList problems;
    int records = 0;
    CsvReading reading;
    reading.file = "t.txt";
    reading.columns = QVector<CsvColumn>(columns, {"a", false});
    reading.columns[1] = {"b", false};
    reading.mostRecords = 10;
    reading.report = [&](const FeedProblem& problem) { problems.append(problem.toString()); };
    reading.takeHeader = [](const CsvHeader&) {};
    reading.takeRecord = [&](int, const std::vector<std::string_view>&) { ++records; };
    bool isRead = false;
    const ByteReader bytes = [&](char* into, qint64 size) -> qint64 {
        if (std::exchange(isRead, true) || size < text.size())
            return 0;
        std::copy_n(text.constData(), text.size(), into);
        return text.size();
    };
    const ScarceMemory memory(2'000);
    QCOMPARE(readCsv(bytes, reading), isWhole);
    QCOMPARE(memory.refusals() > 0, !isWhole);
    QCOMPARE(records, isWhole ? 1 : 0);
    QCOMPARE(problems.join('\n'),
             isWhole
                 ? QString()
                 : QString("t.txt: more than fits into memory, expected a smaller feed, or more "
                           "memory"));
}

void FeedScarceMemoryTest::aFeedThatDoesNotFitIsRefused()
{
    const FeedFiles files;
    FeedFiles::write("gtfs/fare_products.txt", "fare_product_id,amount,currency\na,1,CHF\n");
    {
        const ScarceMemory memory(sizeof(Tariff) - 1);
        QCOMPARE(load("gtfs").problemLines(),
                 QStringList("gtfs: more than fits into memory, expected a smaller feed, or more "
                             "memory"));
        QVERIFY(memory.refusals() > 0);
    }
    REQUIRE_FEED(load("gtfs"));
}

QTEST_GUILESS_MAIN(FeedScarceMemoryTest)
#include "tst_feed_scarce_memory.moc"
