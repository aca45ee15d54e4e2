#include "FileSizeLimit.h"
#include "LogCapture.h"
#include "SmallDisk.h"
#include "Soak.h"
#include "Table.h"
#include "TemporaryConfig.h"
#include "WithoutRootRights.h"

#include <core-private/SettingsFile.h>
#include <core/SettingsConfig.h>

#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <thread>

using rivo::core::SettingsConfig;
using rivo::core::SettingsFile;

namespace
{

const QByteArray GoodSettings =
    R"({"logLevels": ["good"], "passengerTypeCodesOrder": ["PT_ADULT"], "żó": [1, {"x": null}]})";

/// Settings whose two values are the same number, so that a mixture of two files shows.
QByteArray numbered(int number)
{
    return QString(R"({"logLevels": ["%1"], "passengerTypeCodesOrder": ["%1"]})")
        .arg(number)
        .toUtf8();
}

/// Does to a settings file what must not harm. Returns whether that was possible.
using Fault = std::function<bool(const TemporaryConfig&)>;

bool makeReadable(const TemporaryConfig& config, bool isReadable)
{
    return ::chmod(qPrintable(config.settingsPath()), isReadable ? 0644 : 0) == 0;
}

bool setTime(const QString& path, time_t seconds)
{
    const timespec times[] = {{seconds, 0}, {seconds, 0}};
    return ::utimensat(AT_FDCWD, qPrintable(path), times, 0) == 0;
}

} // namespace

Q_DECLARE_METATYPE(Fault)

/// What happens to the configuration of a vehicle in the field. The last good values stay,
/// each fault is reported once, and a good file is all that is needed to end it.
class CoreFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void fileCutAnywhereKeepsTheLastGoodValues();
    void faultIsReportedOnceAndAGoodFileEndsIt_data();
    void faultIsReportedOnceAndAGoodFileEndsIt();
    void unreadableFileIsReportedOnceAndAReadableOneEndsIt();
    void fileLargerThanItsReportedSizeIsTooLarge();
    void readerNeverSeesAMixtureOfAThousandRewrites();
    void managerIsRightAfterAThousandRewrites();
    void fileOfAnyDateIsFollowed_data();
    void fileOfAnyDateIsFollowed();
    void fullDiskLeavesTheFileAsItWas();
    void diskThatFillsUpLeavesTheFileAsItWas();
    void folderThatMayNotBeWrittenLeavesTheFileAsItWas();
};

void CoreFaultsTest::fileCutAnywhereKeepsTheLastGoodValues()
{
    const TemporaryConfig config;
    SettingsFile file(config.settingsPath());
    for (int length = 0; length < GoodSettings.size(); ++length) {
        QVERIFY(config.writeSettings(numbered(length)));
        QCOMPARE(file.read(), QStringList());
        QVERIFY(config.writeSettings(GoodSettings.left(length)));
        const QStringList problems = file.read();
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().startsWith(config.settingsPath() + ":1:"),
                 qPrintable(problems.first()));
        QCOMPARE(file.logLevels(), QStringList{QString::number(length)});
        QCOMPARE(file.passengerTypeCodesOrder(), QStringList{QString::number(length)});
    }
    QVERIFY(config.writeSettings(GoodSettings));
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"good"});
}

void CoreFaultsTest::faultIsReportedOnceAndAGoodFileEndsIt_data()
{
    const Table<Fault, QString> row("fault", "warning");
    row(
        "the file is emptied", [](const TemporaryConfig& c) { return c.writeSettings(""); },
        ":1:1: illegal value");
    row(
        "the file loses its end",
        [](const TemporaryConfig& c) { return QFile::resize(c.settingsPath(), 15); },
        ":1:16: unterminated array");
    row(
        "a folder takes the place of the file",
        [](const TemporaryConfig& c) {
            return QFile::remove(c.settingsPath()) && QDir().mkpath(c.settingsPath() + "/in/it");
        },
        ": is a folder, not a file");
    row(
        "a file takes the place of the folder",
        [](const TemporaryConfig& c) {
            return c.removeFolder() && TemporaryConfig::write(c.folder(), "{}");
        },
        ": cannot be read: " + qt_error_string(ENOTDIR));
}

void CoreFaultsTest::faultIsReportedOnceAndAGoodFileEndsIt()
{
    QFETCH(Fault, fault);
    QFETCH(QString, warning);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(GoodSettings));
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    const LogCapture log;

    QVERIFY(fault(config));
    const QStringList expected{config.settingsPath() + warning + "; the last good value stays"};
    QTRY_COMPARE(log.messages(), expected);
    QCOMPARE(settings->getLogLevels(), QStringList{"good"});
    QCOMPARE(settings->passengerTypeCodesOrder(), QList<QVariant>{QString("PT_ADULT")});
    QCOMPARE(changes.count(), 0);

    QDir(config.settingsPath()).removeRecursively();
    if (!QFileInfo(config.folder()).isDir())
        QVERIFY(QFile::remove(config.folder()) && config.makeFolder());
    QVERIFY(config.writeSettings(numbered(7)));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"7"});
    QCOMPARE(changes.count(), 1);
    QCOMPARE(log.messages(), expected);
}

void CoreFaultsTest::unreadableFileIsReportedOnceAndAReadableOneEndsIt()
{
    const TemporaryConfig config(everybodysPlace());
    QVERIFY(config.writeSettings(GoodSettings) && config.letOthersRead());
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    const LogCapture log;
    // Without root's rights the folders of earlier tests may be out of reach too.
    const auto messages = [&] { return log.messages().filter(config.settingsPath()); };
    const QString warning = ": cannot be read: " + qt_error_string(EACCES);
    {
        QVERIFY(makeReadable(config, false));
        const WithoutRootRights rights;
        QTRY_COMPARE(messages(),
                     QStringList{config.settingsPath() + warning + "; the last good value stays"});
    }
    QCOMPARE(settings->getLogLevels(), QStringList{"good"});
    QCOMPARE(changes.count(), 0);
    QVERIFY(makeReadable(config, true) && config.writeSettings(numbered(7)));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"7"});
    QCOMPARE(messages().size(), 1);
}

void CoreFaultsTest::fileLargerThanItsReportedSizeIsTooLarge()
{
    // The environment of another process: a file that reports size 0.
    QProcessEnvironment environment;
    for (int i = 0; i < 12; ++i)
        environment.insert(QString("LONG%1").arg(i), QString(100'000, 'x'));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start("/bin/cat", QStringList());
    QVERIFY(process.waitForStarted());
    const TemporaryConfig config;
    const QString large = QString("/proc/%1/environ").arg(process.processId());
    QCOMPARE(QFileInfo(large).size(), qint64(0));
    QVERIFY(QFile::link(large, config.settingsPath()));
    SettingsFile file(config.settingsPath());
    QTRY_COMPARE(file.read(),
                 QStringList{config.settingsPath() + ": is larger than 1048576 bytes"});
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
}

void CoreFaultsTest::readerNeverSeesAMixtureOfAThousandRewrites()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(numbered(0)));
    SettingsFile file(config.settingsPath());
    QCOMPARE(file.read(), QStringList());

    const int rewrites = 1000 / soakDivisor();
    std::atomic<int> written{0};
    std::thread writer([&] {
        for (int number = 1; number <= rewrites; ++number) {
            config.writeSettings(numbered(number));
            written = number;
        }
    });
    int last = 0;
    int reads = 0;
    QStringList wrongs;
    while (written < rewrites) {
        file.read(); // a file that is being written may have a problem
        ++reads;
        const int now = file.logLevels().value(0).toInt();
        if (file.logLevels() != file.passengerTypeCodesOrder() || now < last)
            wrongs.append(QString("%1 after %2").arg(file.logLevels().join(',')).arg(last));
        last = now;
    }
    writer.join();
    QCOMPARE(wrongs, QStringList());
    QVERIFY(reads > 0);
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{QString::number(rewrites)});
}

void CoreFaultsTest::managerIsRightAfterAThousandRewrites()
{
    const TemporaryConfig config;
    SettingsConfig* settings = config.settings();
    const int rewrites = 1000 / soakDivisor();
    std::atomic<bool> isDone{false};
    std::thread writer([&] {
        for (int number = 1; number <= rewrites; ++number) {
            config.writeSettings(numbered(number));
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        isDone = true;
    });
    QStringList wrongs;
    const QMetaObject::Connection connection =
        connect(settings, &SettingsConfig::logLevelsChanged, this, [&](const QStringList& levels) {
            if (settings->passengerTypeCodesOrder() != QVariant(levels).toList())
                wrongs.append(levels.join(','));
        });
    const bool isWritten = QTest::qWaitFor([&] { return isDone.load(); }, 60000);
    writer.join();
    QVERIFY(isWritten);
    QTRY_COMPARE(settings->getLogLevels(), QStringList{QString::number(rewrites)});
    disconnect(connection);
    QCOMPARE(wrongs, QStringList());
}

void CoreFaultsTest::fileOfAnyDateIsFollowed_data()
{
    const Table<qint64, qint64> row("before", "after");
    const qint64 year1970 = 86400;
    const qint64 year2026 = 1767225600;
    const qint64 year2037 = 2114380800;
    row("the clock has jumped ahead", year2026, year2037);
    row("the clock has jumped back", year2026, year1970);
    row("the clock stands still", year2026, year2026);
}

void CoreFaultsTest::fileOfAnyDateIsFollowed()
{
    QFETCH(qint64, before);
    QFETCH(qint64, after);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(numbered(1)) && setTime(config.settingsPath(), before));
    SettingsConfig* settings = config.settings();
    QCOMPARE(settings->getLogLevels(), QStringList{"1"});
    QVERIFY(config.writeSettings(numbered(2)) && setTime(config.settingsPath(), after));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"2"});
}

void CoreFaultsTest::fullDiskLeavesTheFileAsItWas()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(GoodSettings));
    SettingsFile file(config.settingsPath());
    QCOMPARE(file.read(), QStringList());
    const QStringList many{QString(20000, 'x')}; // more than is written at a time
    file.setLogLevels(many);
    QString problem;
    for (const rlim_t room : {0U, 1U, 4096U, 16384U}) {
        bool isSaved = true;
        {
            const FileSizeLimit limit(room);
            isSaved = file.save(&problem);
        }
        QVERIFY(!isSaved);
        QCOMPARE(problem, config.settingsPath() + ": cannot be written: " + qt_error_string(EFBIG));
        QCOMPARE(TemporaryConfig::read(config.settingsPath()), GoodSettings);
        QCOMPARE(TemporaryConfig::entries(config.folder()), QStringList{"settings.json"});
    }
    // Nothing that was set is lost.
    QVERIFY(file.save(&problem));
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), many);
    QCOMPARE(file.passengerTypeCodesOrder(), QStringList{"PT_ADULT"});
}

void CoreFaultsTest::diskThatFillsUpLeavesTheFileAsItWas()
{
    const TemporaryConfig config;
    SmallDisk disk(config.folder(), 64);
    if (!disk.isThere())
        QSKIP("only root may have a disk of its own");
    QVERIFY(config.writeSettings(GoodSettings));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({QString(20000, 'x')});
    QString problem;
    for (const int room : {0, 4, 16}) {
        QVERIFY(disk.fill(room));
        QVERIFY(!file.save(&problem));
        QCOMPARE(problem,
                 config.settingsPath() + ": cannot be written: " + qt_error_string(ENOSPC));
        QCOMPARE(TemporaryConfig::read(config.settingsPath()), GoodSettings);
        QCOMPARE(TemporaryConfig::entries(config.folder()),
                 QStringList({"of somebody else", "settings.json"}));
    }
    QVERIFY(disk.fill(40));
    QVERIFY2(file.save(&problem), qPrintable(problem));
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{QString(20000, 'x')});
}

void CoreFaultsTest::folderThatMayNotBeWrittenLeavesTheFileAsItWas()
{
    const TemporaryConfig config(everybodysPlace());
    QVERIFY(config.writeSettings(GoodSettings) && config.letOthersRead());
    QVERIFY(QFile::setPermissions(config.folder(), QFile::Permissions(0x5555)));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"new"});
    QString problem;
    bool isSaved = true;
    {
        const WithoutRootRights rights;
        isSaved = file.save(&problem);
    }
    QVERIFY(!isSaved);
    QVERIFY2(problem.startsWith(config.settingsPath() + ": cannot be written: "),
             qPrintable(problem));
    QCOMPARE(TemporaryConfig::read(config.settingsPath()), GoodSettings);
    QVERIFY(QFile::setPermissions(config.folder(), QFile::Permissions(0x7755)));
    QVERIFY(file.save(&problem));
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"new"});
}

QTEST_GUILESS_MAIN(CoreFaultsTest)
#include "tst_core_faults.moc"
