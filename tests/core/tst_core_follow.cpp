#include "LogCapture.h"
#include "Table.h"
#include "TemporaryConfig.h"

#include <core/ConfigManager.h>
#include <core/SettingsConfig.h>

#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

#include <climits>
#include <cstdio>
#include <thread>

#include <sys/inotify.h>
#include <unistd.h>

using rivo::core::ConfigManager;
using rivo::core::SettingsConfig;

namespace
{

QByteArray settingsWith(const QStringList& logLevels, const QStringList& order = {})
{
    const auto list = [](const QStringList& texts) {
        return texts.isEmpty() ? QString("[]") : "[\"" + texts.join("\", \"") + "\"]";
    };
    return QString("{\"logLevels\": %1, \"passengerTypeCodesOrder\": %2}\n")
        .arg(list(logLevels), list(order))
        .toUtf8();
}

bool replaceAtomically(const QString& path, const QByteArray& content)
{
    return TemporaryConfig::write(path + ".new", content) &&
           std::rename(qPrintable(path + ".new"), qPrintable(path)) == 0;
}

/// Runs shell commands in the base path. "put $new $file" writes settings with the log level "new"
/// in place, "put $new n; mv n $file" replaces them atomically; $sub is the sub folder.
bool run(const QString& commands, const TemporaryConfig& config)
{
    QProcess shell;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("old", settingsWith({"old"}));
    environment.insert("new", settingsWith({"new"}));
    environment.insert("seen", settingsWith({"a", "b"}, {"seen"}));
    environment.insert("sub", config.folder());
    environment.insert("file", config.settingsPath());
    shell.setProcessEnvironment(environment);
    shell.setWorkingDirectory(config.base());
    // Values are not split at blanks; paths may have some.
    shell.start("sh", {"-c", "set -efu; IFS=; put() { printf %s \"$1\" > \"$2\"; }; " + commands});
    return shell.waitForFinished() && shell.exitCode() == 0;
}

/// Waits until changes of other folders, such as those of the last test, are over: what is noticed
/// afterwards was noticed for its own sake. Too short a pause could only hide a defect.
void settle() { QTest::qWait(150); }

} // namespace

class CoreFollowTest : public QObject
{
    Q_OBJECT

private slots:
    void changeOnDiskIsFollowed_data();
    void changeOnDiskIsFollowed();
    void changeIsFollowedAgainAndAgain();
    void basePathMayComeLater();
    void basePathMayComeBack();
    void equalValueIsNotAnnounced_data();
    void equalValueIsNotAnnounced();
    void sameProblemIsReportedOnce();
    void sameProblemAfterARepairIsReportedAgain();
    void manyRapidRewritesEndInTheRightValue();
    void restlessWriterDoesNotHoldBackTheNews();
    void fileAtRestIsNotReadAgain();
    void slotMayAskForManagers();
    void twoLocationsDoNotMix();
};

void CoreFollowTest::changeOnDiskIsFollowed_data()
{
    // prepare, change: see run()
    const Table<QString, QString, QStringList, QStringList> row("prepare", "change", "before",
                                                                "after");
    const QString writeOld = "put $old $file";
    const QStringList old{"old"};
    row("rewritten in place", writeOld, "put $new $file", old, {"new"});
    row("written in two pieces", writeOld,
        "printf %.9s $new > $file; printf %s ${new#?????????} >> $file", old, {"new"});
    row("replaced atomically", writeOld, "put $new $file.n; mv $file.n $file", old, {"new"});
    row("deleted", writeOld, "rm $file", old, {});
    row("renamed away", writeOld, "mv $file $file.bak", old, {});
    row("deleted and written anew", writeOld, "rm $file; put $new $file", old, {"new"});
    row("created after start", "", "put $new $file", {}, {"new"});
    row("created after start by renaming", "", "put $new n; mv n $file", {}, {"new"});
    row("sub folder created after start", "rm -r $sub", "mkdir $sub; put $new $file", {}, {"new"});
    row("sub folder deleted", writeOld, "rm -r $sub", old, {});
    row("sub folder deleted and made anew", writeOld, "rm -r $sub; mkdir $sub; put $new $file", old,
        {"new"});
    row("sub folder swapped for another one", "put $old $file; mkdir b; put $new b/settings.json",
        "mv $sub a; mv b $sub", old, {"new"});
    row("sub folder renamed away", writeOld, "mv $sub a", old, {});
    row("symbolic link to the file swapped",
        "put $old old.json; put $new new.json; ln -s ../old.json $file",
        "ln -s ../new.json n; mv n $file", old, {"new"});
    const QString writeTarget = "mkdir real; put $old real/s.json; ln -s ../real/s.json $file";
    row("target of a symbolic link rewritten", writeTarget, "put $new real/s.json", old, {"new"});
    row("target of a symbolic link replaced atomically", writeTarget,
        "put $new n; mv n real/s.json", old, {"new"});
    row("target of a dangling symbolic link created", "mkdir real; ln -s ../real/s.json $file",
        "put $new real/s.json", {}, {"new"});
    row("symbolic link to the sub folder swapped",
        "rm -r $sub; mkdir a b; put $old a/settings.json; put $new b/settings.json; ln -s a $sub",
        "ln -s b n; mv -T n $sub", old, {"new"});
}

void CoreFollowTest::changeOnDiskIsFollowed()
{
    QFETCH(QString, prepare);
    QFETCH(QString, change);
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    const TemporaryConfig config;
    QVERIFY(run(prepare, config));
    const LogCapture log;
    SettingsConfig* settings = config.settings();
    QCOMPARE(settings->getLogLevels(), before);
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);

    settle();
    QVERIFY(run(change, config));
    QTRY_COMPARE(changes.count(), 1);
    QCOMPARE(changes.first().first().toStringList(), after);
    QCOMPARE(settings->getLogLevels(), after);
    QCOMPARE(log.messages(), QStringList());

    // The watches hold on to what is there now.
    settle();
    QVERIFY(config.makeFolder() && config.writeSettings(settingsWith({"last"})));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"last"});
    QCOMPARE(changes.count(), 2);
    QCOMPARE(log.messages(), QStringList());
}

void CoreFollowTest::changeIsFollowedAgainAndAgain()
{
    const TemporaryConfig config;
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    for (int round = 1; round <= 12; ++round) {
        const QStringList levels{QString::number(round)};
        settle();
        switch (round % 4) {
        case 0:
            QVERIFY(config.removeFolder() && config.makeFolder());
            Q_FALLTHROUGH();
        case 1:
            QVERIFY(config.writeSettings(settingsWith(levels)));
            break;
        case 2:
            QVERIFY(replaceAtomically(config.settingsPath(), settingsWith(levels)));
            break;
        default:
            QVERIFY(QFile::remove(config.settingsPath()));
            QVERIFY(config.writeSettings(settingsWith(levels)));
        }
        QTRY_COMPARE(settings->getLogLevels(), levels);
        QCOMPARE(changes.count(), round);
    }
}

void CoreFollowTest::basePathMayComeLater()
{
    const TemporaryConfig config;
    const LogCapture log;
    const QString base = config.base() + "/not/yet/there";
    SettingsConfig* settings = ConfigManager::instance(base, "a/b")->settingsConfig();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);

    // Step by step, so that every step is followed from the one before.
    settle();
    QVERIFY(QDir().mkpath(config.base() + "/not"));
    settle();
    QVERIFY(QDir().mkpath(base + "/a"));
    settle();
    QVERIFY(QDir().mkpath(base + "/a/b"));
    QVERIFY(TemporaryConfig::write(base + "/a/b/settings.json", settingsWith({"here"})));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"here"});
    QCOMPARE(changes.count(), 1);
    QCOMPARE(log.messages(), QStringList());
}

void CoreFollowTest::basePathMayComeBack()
{
    const TemporaryConfig config;
    const QString base = config.base() + "/base";
    QVERIFY(QDir().mkpath(base + "/sub"));
    QVERIFY(TemporaryConfig::write(base + "/sub/settings.json", settingsWith({"one"})));
    SettingsConfig* settings = ConfigManager::instance(base, "sub")->settingsConfig();
    QCOMPARE(settings->getLogLevels(), QStringList{"one"});

    settle();
    QVERIFY(QDir().rename(base, base + ".gone"));
    QTRY_COMPARE(settings->getLogLevels(), QStringList());
    settle();
    // A change in the folder that is no longer ours means nothing.
    QVERIFY(TemporaryConfig::write(base + ".gone/sub/settings.json", settingsWith({"two"})));
    QVERIFY(QDir().mkpath(base + "/sub"));
    QVERIFY(TemporaryConfig::write(base + "/sub/settings.json", settingsWith({"three"})));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"three"});
}

void CoreFollowTest::equalValueIsNotAnnounced_data()
{
    // rewrite: equal log levels, the order becomes ["seen"]; see run()
    const Table<QString> row("rewrite");
    row("rewritten in place", "put $seen $file");
    row("replaced atomically", "put $seen $file.n; mv $file.n $file");
    row("written differently", R"(put '{ "passengerTypeCodesOrder":
["seen"], "x": 0, "logLevels" : ["\u0061",
"b"] }' $file)");
    row("deleted in between", "rm $file; put $seen $file");
    row("the key has become bad",
        R"(put '{"logLevels": 5, "passengerTypeCodesOrder": ["seen"]}' $file)");
}

void CoreFollowTest::equalValueIsNotAnnounced()
{
    QFETCH(QString, rewrite);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(settingsWith({"a", "b"})));
    const LogCapture log;
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    QVERIFY(run(rewrite, config));
    QTRY_COMPARE(settings->passengerTypeCodesOrder(), QList<QVariant>{QString("seen")});
    QCOMPARE(settings->getLogLevels(), (QStringList{"a", "b"}));
    QCOMPARE(changes.count(), 0);

    // Order and repetition are part of the value.
    QVERIFY(config.writeSettings(settingsWith({"b", "a"})));
    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(config.writeSettings(settingsWith({"b", "a", "a"})));
    QTRY_COMPARE(changes.count(), 2);
}

void CoreFollowTest::sameProblemIsReportedOnce()
{
    const TemporaryConfig config;
    const LogCapture log;
    SettingsConfig* settings = config.settings();
    for (int round = 0; round < 5; ++round) {
        const QString seen = QString("seen%1").arg(round);
        QVERIFY(config.writeSettings(
            QString(R"({"logLevels": 5, "passengerTypeCodesOrder": ["%1"]})").arg(seen).toUtf8()));
        QTRY_COMPARE(settings->passengerTypeCodesOrder(), QList<QVariant>{seen});
        QCOMPARE(log.messages(el::Level::Warning).size(), 1);
    }
    // Another problem joins in: only that one is news.
    QVERIFY(config.writeSettings(R"({"logLevels": 5, "passengerTypeCodesOrder": 6})"));
    QTRY_COMPARE(log.messages(el::Level::Warning).size(), 2);
    QVERIFY(log.messages().last().contains("/passengerTypeCodesOrder: "));
}

void CoreFollowTest::sameProblemAfterARepairIsReportedAgain()
{
    const TemporaryConfig config;
    const LogCapture log;
    SettingsConfig* settings = config.settings();
    for (int round = 1; round <= 3; ++round) {
        QVERIFY(config.writeSettings("{"));
        QTRY_COMPARE(log.messages(el::Level::Warning).size(), round);
        const QStringList repaired{QString::number(round)};
        QVERIFY(config.writeSettings(settingsWith(repaired)));
        QTRY_COMPARE(settings->getLogLevels(), repaired);
        QCOMPARE(log.messages().size(), round);
    }
}

void CoreFollowTest::manyRapidRewritesEndInTheRightValue()
{
    const TemporaryConfig config;
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    QElapsedTimer duration;
    duration.start();
    for (int i = 0; i < 200; ++i) {
        const QByteArray content = settingsWith({QString::number(i)});
        QVERIFY(i % 2 ? config.writeSettings(content)
                      : replaceAtomically(config.settingsPath(), content));
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"199"});
    // At most one per 50 ms, however many events there were.
    QVERIFY2(changes.count() <= duration.elapsed() / 50 + 1,
             qPrintable(QString::number(changes.count())));
    QCOMPARE(changes.last().first().toStringList(), QStringList{"199"});
    for (int i = 1; i < changes.count(); ++i)
        QVERIFY(changes.at(i).first() != changes.at(i - 1).first());
}

void CoreFollowTest::restlessWriterDoesNotHoldBackTheNews()
{
    const TemporaryConfig config;
    SettingsConfig* settings = config.settings();
    // Never quiet for longer than a moment, until the value has arrived.
    std::atomic<bool> hasArrived{false};
    std::thread writer([&] {
        while (!hasArrived) {
            replaceAtomically(config.settingsPath(), settingsWith({"restless"}));
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    const bool inTime = QTest::qWaitFor(
        [settings] { return settings->getLogLevels() == QStringList{"restless"}; }, 5000);
    hasArrived = true;
    writer.join();
    QVERIFY(inTime);
}

void CoreFollowTest::fileAtRestIsNotReadAgain()
{
    const TemporaryConfig config;
    SettingsConfig* settings = config.settings();
    QSignalSpy changed(settings, &SettingsConfig::logLevelsChanged);
    QVERIFY(config.writeSettings(settingsWith({"new"})));
    QVERIFY(changed.wait());
    settle();

    // To read the file, a process has to open it.
    QFile opened;
    const int openings = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    QVERIFY(opened.open(openings, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    const QByteArray path = QFile::encodeName(config.settingsPath());
    QVERIFY(::inotify_add_watch(openings, path.constData(), IN_OPEN) >= 0);
    settle();
    char event[sizeof(inotify_event) + NAME_MAX + 1];
    QCOMPARE(::read(openings, event, sizeof event), ssize_t(-1));

    QCOMPARE(TemporaryConfig::read(config.settingsPath()), settingsWith({"new"}));
    QVERIFY(::read(openings, event, sizeof event) > 0); // as this one did
}

void CoreFollowTest::slotMayAskForManagers()
{
    const TemporaryConfig config;
    const TemporaryConfig other;
    QVERIFY(other.writeSettings(settingsWith({"other"})));
    ConfigManager* manager = config.manager();
    QStringList heard;
    const QMetaObject::Connection connection =
        connect(manager->settingsConfig(), &SettingsConfig::logLevelsChanged, this,
                [&](const QStringList& levels) {
                    QCOMPARE(manager->settingsConfig()->getLogLevels(), levels);
                    QCOMPARE(config.manager(), manager);
                    heard = other.settings()->getLogLevels();
                });
    QVERIFY(config.writeSettings(settingsWith({"x"})));
    QTRY_COMPARE(heard, QStringList{"other"});
    disconnect(connection);
}

void CoreFollowTest::twoLocationsDoNotMix()
{
    const TemporaryConfig first;
    const TemporaryConfig second;
    SettingsConfig* one = first.settings();
    SettingsConfig* two = second.settings();
    QSignalSpy changesOfTwo(two, &SettingsConfig::logLevelsChanged);
    QVERIFY(first.writeSettings(settingsWith({"one"})));
    QTRY_COMPARE(one->getLogLevels(), QStringList{"one"});
    QVERIFY(second.writeSettings(settingsWith({"two"})));
    QTRY_COMPARE(two->getLogLevels(), QStringList{"two"});
    QCOMPARE(one->getLogLevels(), QStringList{"one"});
    QCOMPARE(changesOfTwo.count(), 1);
}

QTEST_GUILESS_MAIN(CoreFollowTest)
#include "tst_core_follow.moc"
