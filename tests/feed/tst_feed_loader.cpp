#include "FeedArchive.h"
#include "FeedFiles.h"
#include "Table.h"
#include "WithoutRootRights.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace rivo::feed;

namespace
{

const QByteArray emptyFeed =
    R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "products": []})";

const QByteArray oneProduct = "fare_product_id,amount,currency\na,1,CHF\n";

} // namespace

Q_DECLARE_METATYPE(rivo::feed::FeedProblem)

class FeedLoaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void aFileIsJsonAndAFolderIsGtfs();
    void thePathIsShownAsGiven();
    void whatIsNoFileIsNotRead_data();
    void whatIsNoFileIsNotRead();
    void unreadableFile();
    void hugeFileIsNotRead();
    void systemFileOfReportedSizeZeroIsRead();
    void linksAreFollowed();
    void specialFilesInAGtfsFolder();
    void whatIsNotTheFeedItself();
    void oneGeneration_data();
    void oneGeneration();
    void problemsAsText_data();
    void problemsAsText();
    void noticesAsText();
    void textForATerminal_data();
    void textForATerminal();
    void decimalsOfCurrencies();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void FeedLoaderTest::aFileIsJsonAndAFolderIsGtfs()
{
    FeedFiles::write("feed", emptyFeed);
    REQUIRE_FEED(load("feed"));
    FeedFiles::write("folder.json/fare_products.txt", oneProduct);
    const FeedResult result = load("folder.json");
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->currency, QString("CHF"));
}

void FeedLoaderTest::thePathIsShownAsGiven()
{
    FeedFiles::write("sub/feed.json", "?");
    QVERIFY(load("sub/feed.json").problemLines().first().startsWith("sub/feed.json:1:1: "));
    QVERIFY(load("./sub/../sub/feed.json").problemLines().first().startsWith("./sub/../sub/feed"));
    FeedFiles::write("sub/fare_products.txt", "");
    QVERIFY(load("sub").problemLines().first().startsWith("sub/fare_products.txt:1: "));
    QVERIFY(load("sub/").problemLines().first().startsWith("sub/fare_products.txt:1: "));
    FeedFiles::write("a\x1B[2Jb.json", "?");
    QVERIFY(load("a\x1B[2Jb.json").problemLines().first().startsWith("a\\u001b[2Jb.json:1:1: "));
}

void FeedLoaderTest::whatIsNoFileIsNotRead_data()
{
    const Table<QString, QString> row("path", "found");
    row("nothing there", "none.json", "No such file or directory");
    row("empty path", "", "No such file or directory");
    row("below a file", "feed.json/x", "Not a directory");
    row("pipe without a writer", "pipe", "a pipe");
    row("device without an end", "/dev/zero", "a device");
    row("device without content", "/dev/null", "a device");
    row("socket without a listener", "socket", "a socket");
    row("file that opens and cannot be read", "/proc/self/mem", "Input/output error");
    row("link to nothing", "dangling", "No such file or directory");
    row("link to a pipe", "link", "a pipe");
}

void FeedLoaderTest::whatIsNoFileIsNotRead()
{
    QFETCH(QString, path);
    QFETCH(QString, found);
    FeedFiles::write("feed.json", emptyFeed);
    QCOMPARE(::mkfifo("pipe", 0600), 0);
    QVERIFY(QFile::link("nowhere", "dangling"));
    QVERIFY(QFile::link("pipe", "link"));
    const sockaddr_un address{AF_UNIX, "socket"};
    const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
    QCOMPARE(::bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(server); // its file stays
    QCOMPARE(load(path).problemLines(),
             QStringList(path + ": " + found + ", expected a readable file"));
}

void FeedLoaderTest::unreadableFile()
{
    const QTemporaryDir folder(everybodysPlace());
    QVERIFY(QDir::setCurrent(folder.path()));
    QVERIFY(QFile::setPermissions(".", QFile::Permissions(0x7755)));
    FeedFiles::write("feed.json", emptyFeed);
    QVERIFY(QFile::setPermissions("feed.json", QFile::WriteOwner));
    const WithoutRootRights rights;
    QCOMPARE(load("feed.json").problemLines(),
             QStringList("feed.json: Permission denied, expected a readable file"));
}

void FeedLoaderTest::hugeFileIsNotRead()
{
    const qint64 size = 1LL << 40; // a hole, it takes no space
    QFile file("feed.json");
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size));
    QCOMPARE(load("feed.json").problemLines(),
             QStringList("feed.json: 1099511627776 bytes, expected at most 33554432 bytes"));
    QDir().mkdir("gtfs");
    QVERIFY(file.rename("gtfs/fare_products.txt"));
    QCOMPARE(load("gtfs").problemLines(),
             QStringList("gtfs/fare_products.txt: 1099511627776 bytes, expected at most 268435456 "
                         "bytes"));
}

void FeedLoaderTest::systemFileOfReportedSizeZeroIsRead()
{
    QCOMPARE(QFileInfo("/proc/self/status").size(), qint64(0));
    QVERIFY(load("/proc/self/status")
                .problemLines()
                .first()
                .startsWith("/proc/self/status:1:1: \"Name:"));
}

void FeedLoaderTest::linksAreFollowed()
{
    FeedFiles::write("feed.json", emptyFeed);
    FeedFiles::write("gtfs/fare_products.txt", oneProduct);
    QVERIFY(QFile::link("feed.json", "current"));
    QVERIFY(QFile::link("gtfs", "folder"));
    REQUIRE_FEED(load("current"));
    REQUIRE_FEED(load("folder"));
}

void FeedLoaderTest::specialFilesInAGtfsFolder()
{
    FeedFiles::write("gtfs/fare_products.txt", oneProduct);
    QCOMPARE(::mkfifo("gtfs/areas.txt", 0600), 0);
    QVERIFY(QDir().mkdir("gtfs/routes.txt"));
    QVERIFY(QFile::link("/dev/zero", "gtfs/stops.txt"));
    QVERIFY(QFile::link("nowhere", "gtfs/networks.txt"));
    QVERIFY(QFile::link("fare_media.txt", "gtfs/fare_media.txt"));
    QVERIFY(QFile::link("/dev/zero", "gtfs/shapes.txt"));
    QVERIFY(QDir().mkdir("gtfs/folder"));
    const FeedResult result = load("gtfs");
    QCOMPARE(result.problemLines(),
             QStringList({"gtfs/networks.txt: a link to nothing, expected a readable file",
                          "gtfs/routes.txt: a folder, expected a readable file",
                          "gtfs/areas.txt: a pipe, expected a readable file",
                          "gtfs/stops.txt: a device, expected a readable file",
                          "gtfs/fare_media.txt: Too many levels of symbolic links, expected a "
                          "readable file"}));
    QCOMPARE(result.noticeLines(), QStringList("gtfs/shapes.txt: a device, expected a readable "
                                               "file; the map does without it"));
}

void FeedLoaderTest::whatIsNotTheFeedItself()
{
    FeedFiles::write("stops.txt", "stop_id\n");
    FeedFiles::write("gtfs/feed.ZIP", "PK");
    FeedFiles::write("none/readme", "");
    FeedFiles::write("feed.zip", "no archive");
    const auto lines = [](const QString& path) { return load(path).problemLines().join('\n'); };
    QCOMPARE(lines("stops.txt"),
             QString("stops.txt: one file of a GTFS feed, expected the folder or the .zip that has "
                     "all of them"));
    QCOMPARE(lines("gtfs"),
             QString("gtfs: no GTFS file, but the archive \"feed.ZIP\", expected the "
                     "path of the archive itself"));
    QCOMPARE(lines("none"), QString("none: a feed without fares, expected fare_products.txt, or "
                                    "fare_attributes.txt of the older form"));
    QCOMPARE(lines("feed.zip"), QString("feed.zip: Not a zip archive, expected a .zip of a GTFS "
                                        "feed"));
}

void FeedLoaderTest::oneGeneration_data()
{
    const Table<QString> row("feed");
    row("folder", "gtfs");
    row("link to a folder", "current");
    row("archive", "feed.zip");
}

/// Two generations of a feed, in each of which all prices are the same. While one thread replaces
/// the one by the other, all that is loaded is of one generation, or nothing.
void FeedLoaderTest::oneGeneration()
{
    QFETCH(QString, feed);
    QVector<Entries> generations;
    for (const char* price : {"1", "2"}) {
        QByteArray products = "fare_product_id,fare_product_name,amount,currency\n";
        QByteArray areas = "area_id,area_name\n";
        for (int i = 0; i < 300; ++i) {
            products += QByteArray::number(i) + ",x," + price + ",EUR\n";
            areas += QByteArray::number(i + 1) + ',' + price + '\n';
        }
        generations.append({{"areas.txt", areas}, {"fare_products.txt", products}});
    }
    const auto writeGeneration = [&](int number) {
        const Entries& files = generations.at(number % 2);
        if (feed == "feed.zip")
            return writeArchive(feed, files);
        const QString folder = feed == "gtfs" ? feed : "g" + QString::number(number % 2);
        for (auto file = files.begin(); file != files.end(); ++file)
            FeedFiles::write(folder + '/' + file.key(), file.value());
        if (feed == "gtfs")
            return;
        QFile::link(folder, "new");
        ::rename("new", "current");
    };
    writeGeneration(0);
    std::atomic<bool> isOver{false};
    std::atomic<int> pause{10}; // ms, longer than a load however slow the machine is
    std::thread writer([&] {
        for (int number = 1; !isOver; ++number) {
            writeGeneration(number);
            std::this_thread::sleep_for(std::chrono::milliseconds(number % 8 * pause));
        }
    });
    int loaded = 0;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 1'000 || (loaded == 0 && timer.elapsed() < 60'000)) {
        const qint64 begin = timer.elapsed();
        const FeedResult result = loadFeed(feed);
        pause = qMax(pause.load(), static_cast<int>(timer.elapsed() - begin));
        if (!result.feed)
            continue; // half of an archive is none, and what changes again and again is refused
        ++loaded;
        const int price = int(result.feed->products.first().price);
        const QString name = QString::number(price);
        for (const FeedProduct& product : result.feed->products)
            QCOMPARE(int(product.price), price);
        for (const NetworkZone& zone : result.feed->network.zones)
            QCOMPARE(zone.name, name);
    }
    isOver = true;
    writer.join();
    QVERIFY(loaded > 0);
}

void FeedLoaderTest::problemsAsText_data()
{
    const Table<FeedProblem, QString> row("problem", "text");
    row("everything known",
        FeedProblem{"a.json", 3, 7, "/products/3/price", "price", "\"abc\"", "a number"},
        "a.json:3:7: /products/3/price: \"abc\", expected a number");
    row("no line, the column alone says nothing",
        FeedProblem{"a.json", 0, 7, "/products/3/price", "price", "\"abc\"", "a number"},
        "a.json: /products/3/price: \"abc\", expected a number");
    row("no pointer", FeedProblem{"a.txt", 3, 0, "", "amount", "\"abc\"", "a number"},
        "a.txt:3: amount: \"abc\", expected a number");
    row("no field", FeedProblem{"a.txt", 3, 0, "", "", "a pipe", "a file"},
        "a.txt:3: a pipe, expected a file");
    row("no value", FeedProblem{"a.txt", 0, 0, "", "", "", "a file"}, "a.txt: expected a file");
    row("line breaks in names stay in the line",
        FeedProblem{"a\n.json", 0, 0, "/x\ny", "", "1", "2\r"},
        "a\\u000a.json: /x\\u000ay: 1, expected 2\\u000d");
}

void FeedLoaderTest::problemsAsText()
{
    QFETCH(FeedProblem, problem);
    QFETCH(QString, text);
    QCOMPARE(problem.toString(), text);
}

void FeedLoaderTest::noticesAsText()
{
    QCOMPARE((FeedNotice{"a.txt", 4, "so\nit is"}.toString()), QString("a.txt:4: so\\u000ait is"));
    QCOMPARE((FeedNotice{"a.txt", 0, "so it is"}.toString()), QString("a.txt: so it is"));
}

void FeedLoaderTest::textForATerminal_data()
{
    const Table<QString, QString> row("text", "shown");
    row("letters of any script", QString::fromUtf8("Żółć автобус バス"),
        QString::fromUtf8("Żółć автобус バス"));
    row("pair of surrogates", QString::fromUtf8("\xF0\x9F\x9A\x8C"),
        QString::fromUtf8("\xF0\x9F\x9A\x8C"));
    row("first half of a pair at the end", QStringLiteral("a") + QChar(0xD83D),
        QStringLiteral("a\\ud83d"));
    row("escape and bell", QStringLiteral("\x1B[0m\x07"), QStringLiteral("\\u001b[0m\\u0007"));
    row("delete and the second control block", QString(QChar(0x7F)) + QChar(0x9B),
        QStringLiteral("\\u007f\\u009b"));
    row("zero byte", QString(QChar(0)), QStringLiteral("\\u0000"));
    row("line ends of every kind", QStringLiteral("\n\r") + QChar(0x2028) + QChar(0x2029),
        QStringLiteral("\\u000a\\u000d\\u2028\\u2029"));
    row("change of direction", QString(QChar(0x202E)) + QChar(0x2066),
        QStringLiteral("\\u202e\\u2066"));
    row("halves of pairs in the wrong order", QString(QChar(0xDE8C)) + QChar(0xD83D),
        QStringLiteral("\\ude8c\\ud83d"));
    row("half a pair before a letter", QString(QChar(0xD83D)) + 'a', QStringLiteral("\\ud83da"));
    row("half a pair at the end", QStringLiteral("a") + QChar(0xD83D), QStringLiteral("a\\ud83d"));
}

void FeedLoaderTest::textForATerminal()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QCOMPARE(printable(text), shown);
    QCOMPARE(quoted(text), '"' + shown + '"');
    const QString longText = QString(80, 'a') + text;
    QCOMPARE(quoted(longText), '"' + QString(80, 'a') + "...\"");
    QCOMPARE(quoted(QString(80, 'a')), '"' + QString(80, 'a') + '"');
    // A pair of surrogates is not cut in two.
    QCOMPARE(quoted(QString(79, 'a') + QString::fromUtf8("\xF0\x9F\x9A\x8C")),
             '"' + QString(79, 'a') + "...\"");
}

void FeedLoaderTest::decimalsOfCurrencies()
{
    const QMap<QString, int> decimals = {{"EUR", 2}, {"PLN", 2}, {"JPY", 0}, {"ISK", 0}, {"HUF", 2},
                                         {"KWD", 3}, {"TND", 3}, {"CLF", 4}, {"XXX", 2}, {"", 2}};
    for (auto currency = decimals.begin(); currency != decimals.end(); ++currency) {
        Feed feed;
        feed.currency = currency.key();
        QCOMPARE(feed.currencyDecimals(), currency.value());
        QCOMPARE(currencyDecimals(currency.key()), currency.value());
    }
}

QTEST_GUILESS_MAIN(FeedLoaderTest)
#include "tst_feed_loader.moc"
