#include "FeedArchive.h"
#include "FeedFiles.h"
#include "FeedSource_p.h"
#include "Table.h"

#include <QRandomGenerator>

using namespace rivo::feed;

namespace
{

const QByteArray oneProduct = "fare_product_id,amount,currency\na,1,CHF\n";

QByteArray digits(int count)
{
    QRandomGenerator generator(1);
    QByteArray digits(count, '\0');
    for (char& digit : digits)
        digit = char('0' + generator.bounded(10));
    return digits;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class FeedArchivesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void archives_data();
    void archives();
    void archivesAreKnownByTheirContent();
    void damagedArchivesAreRefused();
    void aFileTwiceIsRefused();
    void unreadableEntries_data();
    void unreadableEntries();
    void anArchiveThatIsGoneIsReported();
    void limitsOfArchives();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void FeedArchivesTest::archives_data()
{
    // problem: empty if there is none
    const Table<Entries, QString> row("entries", "problem");
    row("files at the top, others anywhere",
        Entries{{"fare_products.txt", oneProduct},
                {"docs/areas.txt", "?"},
                {"docs/map.png", "?"},
                {"README", "?"}},
        "");
    row("files in a folder", Entries{{"gtfs/fare_products.txt", oneProduct}, {"README", "?"}},
        "feed.zip: its files in the folder \"gtfs\", expected them at the top of the archive; "
        "unpack it and give that folder");
    row("no files", Entries{},
        "feed.zip: a feed without fares, expected fare_products.txt, or "
        "fare_attributes.txt of the older form");
    row("a broken file", Entries{{"fare_products.txt", oneProduct + "\"x\"y\n"}},
        "feed.zip/fare_products.txt:3:4: \"y\", expected a comma or the end of the line after a "
        "closing quote, and two quotes for one within a text");
    row("much of the same",
        Entries{{"fare_products.txt", oneProduct + QByteArray(2'000'000, '\n')}},
        "feed.zip/fare_products.txt: 2000040 bytes packed into %1, expected at most 200 times "
        "as many");
    row("much that can hardly be packed",
        Entries{{"fare_products.txt", oneProduct + digits(2'000'000)}},
        "feed.zip/fare_products.txt:3: a longer record, expected at most 1048576 bytes in one");
    row("little of the same",
        Entries{{"fare_products.txt", oneProduct + QByteArray(1'000'000, '\n')}}, "");
}

void FeedArchivesTest::archives()
{
    QFETCH(Entries, entries);
    QFETCH(QString, problem);
    writeArchive("feed.zip", entries);
    const FeedResult result = load("feed.zip");
    const QString packed =
        QRegularExpression("into (\\d+)").match(result.problemLines().join(' ')).captured(1);
    QCOMPARE(result.problemLines().join('\n'), problem.replace("%1", packed));
}

void FeedArchivesTest::archivesAreKnownByTheirContent()
{
    writeArchive("feed", {{"fare_products.txt", oneProduct}});
    REQUIRE_FEED(load("feed"));
}

void FeedArchivesTest::damagedArchivesAreRefused()
{
    QByteArray rows;
    for (int i = 0; i < 500; ++i)
        rows += QByteArray::number(i * i * 7919) + ",1,CHF\n";
    writeArchive("feed.zip", {{"fare_products.txt", "fare_product_id,amount,currency\n" + rows}});
    REQUIRE_FEED(load("feed.zip"));
    QFile file("feed.zip");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    for (int size = 0; size < whole.size(); size += 97) {
        FeedFiles::write("feed.zip", whole.left(size));
        QVERIFY(!load("feed.zip").feed);
    }
    int refused = 0;
    for (int at = 60; at < 2'000; at += 50) {
        QByteArray damaged = whole;
        damaged[at] = char(~damaged.at(at));
        FeedFiles::write("feed.zip", damaged);
        refused += !load("feed.zip").feed; // by its checksum, if not before
    }
    QCOMPARE(refused, 39);
}

void FeedArchivesTest::limitsOfArchives()
{
    FeedOptions options;
    options.limits.csvBytes = 100;
    options.limits.feedFiles = 2;
    writeArchive("feed.zip", {{"fare_products.txt", oneProduct + QByteArray(60, '\n')}});
    REQUIRE_FEED(load("feed.zip", options));
    writeArchive("feed.zip", {{"fare_products.txt", oneProduct + QByteArray(61, '\n')}});
    QCOMPARE(load("feed.zip", options).problemLines(),
             QStringList("feed.zip/fare_products.txt: 101 bytes, expected at most 100 bytes"));
    writeArchive("feed.zip", {{"fare_products.txt", oneProduct}, {"a", ""}, {"b", ""}});
    QCOMPARE(load("feed.zip", options).problemLines(),
             QStringList("feed.zip: 3 files, expected at most 2 files"));
}

void FeedArchivesTest::aFileTwiceIsRefused()
{
    writeArchive("feed.zip", {{"areas.txt", "area_id\n"},
                              {"fare_products.txt", oneProduct},
                              {"areaz.txt", "area_id\n"}});
    REQUIRE_FEED(load("feed.zip"));
    QByteArray archive = contentOf("feed.zip");
    QCOMPARE(archive.count("areaz.txt"), 2); // at the file and in the table of contents
    FeedFiles::write("feed.zip", archive.replace("areaz.txt", "areas.txt"));
    QCOMPARE(load("feed.zip").problemLines(),
             QStringList("feed.zip: \"areas.txt\" twice, expected each file once"));
}

void FeedArchivesTest::unreadableEntries_data()
{
    // field: where it lies in the header of a file
    const Table<int, QByteArray, QString> row("field", "value", "found");
    row("a file that is packed in an unknown way", 8, QByteArray("\x62\x00", 2),
        "Compression method not supported");
    row("a file that needs a password", 6, QByteArray("\x01\x00", 2), "No password provided");
}

void FeedArchivesTest::unreadableEntries()
{
    QFETCH(int, field);
    QFETCH(QByteArray, value);
    QFETCH(QString, found);
    writeArchive("feed.zip", {{"fare_products.txt", oneProduct}});
    QByteArray archive = contentOf("feed.zip");
    const int header = archive.indexOf("PK\x03\x04");
    const int contents = archive.indexOf("PK\x01\x02");
    QVERIFY(header >= 0 && contents > header);
    archive.replace(header + field, value.size(), value);
    archive.replace(contents + 2 + field, value.size(), value);
    FeedFiles::write("feed.zip", archive);
    QCOMPARE(load("feed.zip").problemLines(),
             QStringList("feed.zip/fare_products.txt: " + found + ", expected a readable file"));
}

/// It can go between the look at its first bytes and its reading.
void FeedArchivesTest::anArchiveThatIsGoneIsReported()
{
    FeedReport report;
    QVERIFY(!openArchive("none.zip", {}, report));
    QCOMPARE(report.problems().size(), 1);
    QCOMPARE(report.problems().first().toString(),
             QString("none.zip: No such file or directory, expected a readable file"));
}

QTEST_GUILESS_MAIN(FeedArchivesTest)
#include "tst_feed_archives.moc"
