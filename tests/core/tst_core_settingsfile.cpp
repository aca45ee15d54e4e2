#include "Table.h"
#include "TemporaryConfig.h"

#include <core-private/SettingsFile.h>
#include <core/SettingsConfig.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using rivo::core::SettingsConfig;
using rivo::core::SettingsFile;

namespace
{

QJsonObject objectIn(const QString& path)
{
    return QJsonDocument::fromJson(TemporaryConfig::read(path)).object();
}

} // namespace

class CoreSettingsFileTest : public QObject
{
    Q_OBJECT

private slots:
    void pathHasOneSlashBetweenItsParts_data();
    void pathHasOneSlashBetweenItsParts();
    void startsEmptyAndTouchesNothing();
    void savedValuesAreReadBack_data();
    void savedValuesAreReadBack();
    void saveCreatesTheFolder();
    void saveKeepsOtherKeys();
    void saveKeepsAKeyThatWasNotSet();
    void saveMendsABadValueThatWasSet();
    void saveSeesWhatOthersWroteMeanwhile();
    void saveWritesThroughASymbolicLink();
    void readForgetsWhatWasNotSaved();
    void fileOfThreeGibibytesIsTooLarge();
    void fileOfTheYear2040IsRead();
    void fileIsReadWhereStandardInputIsClosed();
    void saveRefuses_data();
    void saveRefuses();
    void saveRefusesWhatItCouldNotReadBack();
    void managerFollowsASave();
};

void CoreSettingsFileTest::pathHasOneSlashBetweenItsParts_data()
{
    const Table<QString, QString, QString> row("basePath", "subFolder", "path");
    row("as the list models ask", "/home/bus", "ProjectLink/",
        "/home/bus/ProjectLink/settings.json");
    row("no slash at all", "/home/bus", "a", "/home/bus/a/settings.json");
    row("slashes everywhere", "//home/bus//", "//a//b//", "/home/bus/a/b/settings.json");
    row("no sub folder", "/home/bus", "", "/home/bus/settings.json");
    row("the root", "/", "a", "/a/settings.json");
    row("dots", "/home/./bus", "../a/.", "/home/a/settings.json");
    row("a relative base", "conf", "a/", "conf/a/settings.json");
}

void CoreSettingsFileTest::pathHasOneSlashBetweenItsParts()
{
    QFETCH(QString, basePath);
    QFETCH(QString, subFolder);
    QTEST(SettingsFile::pathIn(basePath, subFolder), "path");
}

void CoreSettingsFileTest::startsEmptyAndTouchesNothing()
{
    const TemporaryConfig config;
    SettingsFile file(config.settingsPath());
    QCOMPARE(file.path(), config.settingsPath());
    QCOMPARE(file.logLevels(), QStringList());
    QCOMPARE(file.passengerTypeCodesOrder(), QStringList());
    QCOMPARE(file.read(), QStringList());
    file.setLogLevels({"a"});
    file.setPassengerTypeCodesOrder({"PT_ADULT"});
    QCOMPARE(TemporaryConfig::entries(config.folder()), QStringList());
}

void CoreSettingsFileTest::savedValuesAreReadBack_data()
{
    const Table<QStringList, QStringList> row("logLevels", "order");
    row("both empty", {}, {});
    row("plain texts", {"log_fareproducts"}, {"PT_ADULT", "PT_STUDENT"});
    row("texts that need escaping", {"\"", "\\", "\n", "", QString::fromUtf8("żółć")},
        {"PT_ADULT"});
}

void CoreSettingsFileTest::savedValuesAreReadBack()
{
    QFETCH(QStringList, logLevels);
    QFETCH(QStringList, order);
    const TemporaryConfig config;
    SettingsFile writer(config.settingsPath());
    writer.setLogLevels(logLevels);
    writer.setPassengerTypeCodesOrder(order);
    QCOMPARE(writer.logLevels(), logLevels);
    QCOMPARE(writer.passengerTypeCodesOrder(), order);
    QString problem;
    QVERIFY2(writer.save(&problem), qPrintable(problem));
    QCOMPARE(problem, QString());

    SettingsFile reader(config.settingsPath());
    QCOMPARE(reader.read(), QStringList());
    QCOMPARE(reader.logLevels(), logLevels);
    QCOMPARE(reader.passengerTypeCodesOrder(), order);
    QCOMPARE(TemporaryConfig::entries(config.folder()), QStringList{"settings.json"});
}

void CoreSettingsFileTest::saveCreatesTheFolder()
{
    const TemporaryConfig config;
    SettingsFile file(SettingsFile::pathIn(config.base() + "/deep", "/er/"));
    file.setLogLevels({"a"});
    QVERIFY(file.save());
    QCOMPARE(TemporaryConfig::entries(config.base() + "/deep/er"), QStringList{"settings.json"});
}

void CoreSettingsFileTest::saveKeepsOtherKeys()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(
        R"({"logLevels": ["a"], "x": {"y": [1, null, "z"]}, "big": 9007199254740991, "": 0})"));
    const QJsonObject before = objectIn(config.settingsPath());
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"b"});
    QVERIFY(file.save());
    const QJsonObject after = objectIn(config.settingsPath());
    QCOMPARE(after.keys(), before.keys());
    for (const QString& key : before.keys()) {
        if (key != "logLevels")
            QCOMPARE(after.value(key), before.value(key));
    }
    QVERIFY(TemporaryConfig::read(config.settingsPath()).contains("9007199254740991"));
}

void CoreSettingsFileTest::saveKeepsAKeyThatWasNotSet()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(R"({"logLevels": ["a"], "passengerTypeCodesOrder": ["P"]})"));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"b"});
    QVERIFY(file.save());
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"b"});
    QCOMPARE(file.passengerTypeCodesOrder(), QStringList{"P"});
}

void CoreSettingsFileTest::saveMendsABadValueThatWasSet()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(R"({"logLevels": 1, "passengerTypeCodesOrder": 2})"));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"b"});
    QVERIFY(file.save());
    QCOMPARE(file.read().size(), 1);
    QCOMPARE(file.logLevels(), QStringList{"b"});
    QCOMPARE(objectIn(config.settingsPath()).value("passengerTypeCodesOrder"), QJsonValue(2));
}

void CoreSettingsFileTest::saveSeesWhatOthersWroteMeanwhile()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(R"({"logLevels": ["a"], "x": 1})"));
    SettingsFile file(config.settingsPath());
    QCOMPARE(file.read(), QStringList());
    QVERIFY(config.writeSettings(R"({"logLevels": ["c"], "x": 2})"));
    file.setPassengerTypeCodesOrder({"P"});
    QVERIFY(file.save());
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"c"});
    QCOMPARE(file.passengerTypeCodesOrder(), QStringList{"P"});
    QCOMPARE(objectIn(config.settingsPath()).value("x"), QJsonValue(2));
}

void CoreSettingsFileTest::saveWritesThroughASymbolicLink()
{
    const TemporaryConfig config;
    const QString target = config.base() + "/real.json";
    QVERIFY(TemporaryConfig::write(target, "{}"));
    QVERIFY(QFile::link(target, config.settingsPath()));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"a"});
    QVERIFY(file.save());
    QVERIFY(QFileInfo(config.settingsPath()).isSymLink());
    QVERIFY(objectIn(target).contains("logLevels"));
}

void CoreSettingsFileTest::readForgetsWhatWasNotSaved()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(R"({"logLevels": ["a"]})"));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"b"});
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"a"});
    QVERIFY(file.save());
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"a"});
}

void CoreSettingsFileTest::fileOfThreeGibibytesIsTooLarge()
{
    const TemporaryConfig config;
    QFile hole(config.settingsPath()); // it takes no space
    QVERIFY(hole.open(QIODevice::WriteOnly) && hole.resize(3LL << 30));
    SettingsFile file(config.settingsPath());
    QCOMPARE(file.read(), QStringList(config.settingsPath() + ": is larger than 1048576 bytes"));
}

void CoreSettingsFileTest::fileOfTheYear2040IsRead()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(R"({"logLevels": ["a"]})"));
    const QByteArray path = QFile::encodeName(config.settingsPath());
    const time_t year2040 = 2208988800;
    const timespec times[] = {{year2040, 0}, {year2040, 0}};
    QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
    struct stat status = {};
    QCOMPARE(::stat(path.constData(), &status), 0);
    if (status.st_mtim.tv_sec != year2040)
        QSKIP("this file system has no such times");
    SettingsFile file(config.settingsPath());
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"a"});
}

// Its descriptor is then 0, which is one like any other.
void CoreSettingsFileTest::fileIsReadWhereStandardInputIsClosed()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(R"({"logLevels": ["a"]})"));
    SettingsFile file(config.settingsPath());
    const int standardInput = ::fcntl(STDIN_FILENO, F_DUPFD, 3);
    if (standardInput >= 0)
        ::close(STDIN_FILENO);
    const QStringList problems = file.read();
    if (standardInput >= 0) {
        ::dup2(standardInput, STDIN_FILENO);
        ::close(standardInput);
    }
    QCOMPARE(problems, QStringList());
    QCOMPARE(file.logLevels(), QStringList{"a"});
}

void CoreSettingsFileTest::saveRefuses_data()
{
    const Table<QByteArray, QString> row("content", "reason");
    row("an empty file", "", ":1:1: illegal value");
    row("a malformed file", "{\n \"x\": }", ":2:8: object is missing after a comma");
    row("a list", "[]", ":1:1: expected an object, found a list");
    row("a file over 1 MiB", QByteArray("{}").leftJustified(1024 * 1024 + 1),
        ": is larger than 1048576 bytes");
    const QString otherwise(": would not be read back as it is, such as a text that begins with a "
                            "byte-order mark");
    // Written as "logLevels", it would win over what was saved.
    row("a key that is ours but for a byte-order mark", "{\"\xEF\xBB\xBFlogLevels\": [\"l\"]}",
        otherwise);
    row("a text that begins with a byte-order mark", "{\"own\": \"\xEF\xBB\xBFtext\"}", otherwise);
}

void CoreSettingsFileTest::saveRefuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(content));
    SettingsFile file(config.settingsPath());
    file.setLogLevels({"b"});
    QString problem;
    QVERIFY(!file.save(&problem));
    QCOMPARE(problem, config.settingsPath() + reason);
    QVERIFY(!file.save());
    QCOMPARE(TemporaryConfig::read(config.settingsPath()), content);
    QCOMPARE(TemporaryConfig::entries(config.folder()), QStringList{"settings.json"});
    // Nothing that was set is lost: it can be saved once the file is mended.
    QVERIFY(config.writeSettings("{}"));
    QVERIFY(file.save());
    QCOMPARE(file.read(), QStringList());
    QCOMPARE(file.logLevels(), QStringList{"b"});
}

void CoreSettingsFileTest::saveRefusesWhatItCouldNotReadBack()
{
    const TemporaryConfig config;
    QString problem;

    SettingsFile tooLarge(config.settingsPath());
    tooLarge.setLogLevels({QString(1024 * 1024, 'x')});
    QVERIFY(!tooLarge.save(&problem));
    QCOMPARE(problem, config.settingsPath() + ": would be larger than 1048576 bytes");

    QVERIFY(QDir().mkpath(config.settingsPath()));
    SettingsFile folder(config.settingsPath());
    folder.setLogLevels({"a"});
    QVERIFY(!folder.save(&problem));
    QCOMPARE(problem, config.settingsPath() + ": is a folder, not a file");
    QVERIFY(QDir().rmdir(config.settingsPath()));

    QCOMPARE(::mkfifo(qPrintable(config.settingsPath()), 0600), 0);
    QVERIFY(!folder.save(&problem));
    QCOMPARE(problem, config.settingsPath() + ": is not a regular file");

    // A folder that cannot be made, even by root.
    SettingsFile nowhere("/proc/nowhere/settings.json");
    nowhere.setLogLevels({"a"});
    QVERIFY(!nowhere.save(&problem));
    QVERIFY2(problem.startsWith("/proc/nowhere/settings.json: cannot be written: "),
             qPrintable(problem));
}

void CoreSettingsFileTest::managerFollowsASave()
{
    const TemporaryConfig config;
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    SettingsFile file(SettingsFile::pathIn(config.base(), TemporaryConfig::subFolder()));
    file.setLogLevels({"saved"});
    QVERIFY(file.save());
    QTRY_COMPARE(changes.count(), 1);
    QCOMPARE(settings->getLogLevels(), QStringList{"saved"});
}

QTEST_GUILESS_MAIN(CoreSettingsFileTest)
#include "tst_core_settingsfile.moc"
