#include "FeedFile_p.h"
#include "FeedFiles.h"
#include "FeedProblem.h"
#include "Table.h"
#include "WithoutRootRights.h"

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace rivo::feed;

namespace
{

/// Takes whether a file is read from its begin. Returns the error that the reader gets; 0 = none.
using ReadHook = std::function<int(bool isAtBegin)>;

ReadHook beforeReading;

} // namespace

/// The feed readers are linked into this program and call this function instead of the system's.
ssize_t read(int handle, void* into, size_t size)
{
    if (const int error = beforeReading ? beforeReading(::lseek(handle, 0, SEEK_CUR) == 0) : 0) {
        errno = error;
        return -1;
    }
    return ::syscall(SYS_read, handle, into, size);
}

namespace
{

/// Does `action` before each read while it lives.
class BeforeReading
{
public:
    explicit BeforeReading(ReadHook action) { beforeReading = std::move(action); }
    ~BeforeReading() { beforeReading = nullptr; }
    Q_DISABLE_COPY(BeforeReading)
};

using Change = void (*)(const QString& path, int number);

void append(const QString& path, int)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    QCOMPARE(file.write("\n"), qint64(1));
}

void setTimes(const QString& path, time_t seconds, long nanoseconds)
{
    const timespec time{seconds, nanoseconds};
    const timespec times[] = {time, time};
    QCOMPARE(::utimensat(AT_FDCWD, qPrintable(path), times, 0), 0);
}

void setTime(const QString& path, int number) { setTimes(path, 1 + number, 0); }

void setPartOfASecond(const QString& path, int number) { setTimes(path, 1, number); }

/// The time is set because two changes at once may have the same.
void addAnotherFile(const QString& path, int number)
{
    FeedFiles::write(path + QString::number(number), "");
    setTime(QFileInfo(path).path(), number);
}

/// Files have the same time until the clock of the file system goes on.
void setPermissions(const QString& path, int number)
{
    QTest::qSleep(20);
    QVERIFY(QFile::setPermissions(path, number % 2 ? QFile::ReadOwner
                                                   : QFile::ReadOwner | QFile::WriteOwner));
}

constexpr int firstPart = 64 * 1024; // that is read of a short file at once
constexpr int grownSize = 100'000;

const QByteArray emptyFeed =
    R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "products": []})";

const QByteArray oneProduct = "fare_product_id,amount,currency\na,1,CHF\n";

} // namespace

Q_DECLARE_METATYPE(Change)

/// What can happen to files while they are read.
class FeedFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void changesWhileAFileIsRead_data();
    void changesWhileAFileIsRead();
    void changesWhileAFolderIsRead_data();
    void changesWhileAFolderIsRead();
    void readsThatFail_data();
    void readsThatFail();
    void anInterruptedReadIsRepeated();
    void filesThatGrowBeyondTheirFirstPart_data();
    void filesThatGrowBeyondTheirFirstPart();
    void aFolderThatMayNotBeListed();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void FeedFaultsTest::changesWhileAFileIsRead_data()
{
    // problem: empty if there is none
    const Table<Change, int, QString> row("change", "changes", "problem");
    const QString refused =
        "feed.json: changing while it is read, expected a file that stays as it "
        "is";
    row("a file that grows once is read again", Change(append), 1, "");
    row("a file that grows twice is read again", Change(append), 2, "");
    row("a file that grows at each attempt is refused", Change(append), 3, refused);
    row("a file that is written anew at each attempt is refused", Change(setTime), 3, refused);
    row("a file that is written anew within one second at each attempt is refused",
        Change(setPartOfASecond), 3, refused);
}

void FeedFaultsTest::changesWhileAFileIsRead()
{
    QFETCH(Change, change);
    QFETCH(int, changes);
    QFETCH(QString, problem);
    FeedFiles::write("feed.json", emptyFeed);
    setPartOfASecond("feed.json", 0);
    FeedReport report;
    int number = 0;
    const BeforeReading reading([&](bool isAtBegin) {
        if (isAtBegin && number < changes)
            change("feed.json", ++number);
        return 0;
    });
    const auto content = readFeedFile("feed.json", 1'000, report);
    QCOMPARE(number, changes);
    QCOMPARE(content.has_value(), problem.isEmpty());
    QCOMPARE(report.problems().size(), problem.isEmpty() ? 0 : 1);
    if (content)
        QCOMPARE(content->trimmed(), emptyFeed);
    else
        QCOMPARE(report.problems().first().toString(), problem);
}

void FeedFaultsTest::changesWhileAFolderIsRead_data()
{
    // problem: empty if there is none
    const Table<Change, int, QString> row("change", "changes", "problem");
    const QString refused = "gtfs: changing while it is read, expected a feed that stays as it is";
    row("a folder that gets a file twice is read again", Change(addAnotherFile), 2, "");
    row("a folder that gets a file at each attempt is refused", Change(addAnotherFile), 3, refused);
    row("a folder with a file whose permissions change at each attempt is refused",
        Change(setPermissions), 3, refused);
    row("a folder with a file that grows twice is read again", Change(append), 2, "");
    row("a folder with a file that grows at each attempt is refused", Change(append), 3, refused);
}

void FeedFaultsTest::changesWhileAFolderIsRead()
{
    QFETCH(Change, change);
    QFETCH(int, changes);
    QFETCH(QString, problem);
    FeedFiles::write("gtfs/fare_products.txt", oneProduct);
    int number = 0;
    const BeforeReading reading([&](bool isAtBegin) {
        if (isAtBegin && number < changes)
            change("gtfs/fare_products.txt", ++number);
        return 0;
    });
    const FeedResult result = load("gtfs");
    QCOMPARE(number, changes);
    QCOMPARE(result.problemLines().join('\n'), problem);
}

void FeedFaultsTest::readsThatFail_data()
{
    // good: reads
    const Table<QString, int, QString> row("path", "good", "file");
    row("a JSON file that cannot be read", "feed.json", 1, "feed.json");
    row("a JSON file that cannot be read to its end", "feed.json", 2, "feed.json");
    row("a GTFS file that cannot be read", "gtfs", 0, "gtfs/fare_products.txt");
    row("a GTFS file that cannot be read to its end", "gtfs", 1, "gtfs/fare_products.txt");
    row("a long GTFS file that cannot be read to its end", "long", 3, "long/fare_products.txt");
}

void FeedFaultsTest::readsThatFail()
{
    QFETCH(QString, path);
    QFETCH(int, good);
    QFETCH(QString, file);
    FeedFiles::write("feed.json", emptyFeed);
    FeedFiles::write("gtfs/fare_products.txt", oneProduct);
    FeedFiles::write("long/fare_products.txt", oneProduct + QByteArray("\n").repeated(300'000));
    REQUIRE_FEED(load(path));
    const BeforeReading reading([&](bool) { return good-- > 0 ? 0 : EIO; });
    QCOMPARE(load(path).problemLines(),
             QStringList(file + ": Input/output error, expected a readable file"));
}

void FeedFaultsTest::anInterruptedReadIsRepeated()
{
    FeedFiles::write("gtfs/fare_products.txt", oneProduct);
    int reads = 0;
    const BeforeReading reading([&](bool) { return ++reads % 2 ? EINTR : 0; });
    REQUIRE_FEED(load("gtfs"));
    QVERIFY(reads >= 4);
}

void FeedFaultsTest::filesThatGrowBeyondTheirFirstPart_data()
{
    // error: of the read behind the first part
    // problem: empty if there is none
    const Table<int, int, QString> row("limit", "error", "problem");
    row("a file within the limit is read", 200'000, 0, "");
    row("a file of the limit is read", grownSize, 0, "");
    row("a file beyond the limit is refused", 80'000, 0,
        "feed.json: 80001 bytes, expected at most 80000 bytes");
    row("the first part may be all that is allowed", firstPart, 0,
        "feed.json: 65537 bytes, expected at most 65536 bytes");
    row("the rest may be unreadable", 200'000, EIO,
        "feed.json: Input/output error, expected a readable file");
}

void FeedFaultsTest::filesThatGrowBeyondTheirFirstPart()
{
    QFETCH(int, limit);
    QFETCH(int, error);
    QFETCH(QString, problem);
    FeedFiles::write("feed.json", emptyFeed);
    FeedReport report;
    int reads = 0;
    const BeforeReading reading([&](bool) {
        if (++reads == 1)
            FeedFiles::write("feed.json", QByteArray(grownSize, '1'));
        return reads == 2 ? error : 0;
    });
    const auto content = readFeedFile("feed.json", limit, report);
    QCOMPARE(content.has_value(), problem.isEmpty());
    if (content)
        QCOMPARE(content->size(), grownSize);
    else
        QCOMPARE(report.problems().first().toString(), problem);
}

void FeedFaultsTest::aFolderThatMayNotBeListed()
{
    const QTemporaryDir folder(everybodysPlace());
    QVERIFY(QDir::setCurrent(folder.path()));
    QVERIFY(QFile::setPermissions(".", QFile::Permissions(0x7755)));
    FeedFiles::write("gtfs/fare_products.txt", oneProduct);
    REQUIRE_FEED(load("gtfs"));
    QVERIFY(QFile::setPermissions(
        "gtfs", QFile::Permissions(QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther)));
    QStringList problems;
    {
        const WithoutRootRights rights;
        problems = load("gtfs").problemLines();
    }
    QVERIFY(QFile::setPermissions("gtfs", QFile::Permissions(0x7700))); // to be removed
    QCOMPARE(problems, QStringList("gtfs: Permission denied, expected a folder whose files can be "
                                   "listed"));
}

QTEST_GUILESS_MAIN(FeedFaultsTest)
#include "tst_feed_faults.moc"
