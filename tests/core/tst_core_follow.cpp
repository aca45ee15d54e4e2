#include "LogCapture.h"
#include "TemporaryConfig.h"

#include <core/ConfigManager.h>
#include <core/SettingsConfig.h>

#include <QSaveFile>
#include <QSignalSpy>
#include <QtTest>

#include <climits>
#include <cstdio>
#include <functional>
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

bool replaceLink(const QString& target, const QString& link)
{
    return QFile::link(target, link + ".new") &&
           std::rename(qPrintable(link + ".new"), qPrintable(link)) == 0;
}

/// Waits until changes of other folders, such as those of the last test, are over: what is noticed
/// afterwards was noticed for its own sake. Too short a pause could only hide a defect.
void settle() { QTest::qWait(150); }

using Step = std::function<bool(const TemporaryConfig&)>;

} // namespace

Q_DECLARE_METATYPE(Step)

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
    QTest::addColumn<Step>("prepare");
    QTest::addColumn<Step>("change");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");

    const Step writeOld = [](const TemporaryConfig& c) {
        return c.writeSettings(settingsWith({"old"}));
    };
    const Step writeNew = [](const TemporaryConfig& c) {
        return c.writeSettings(settingsWith({"new"}));
    };
    const Step nothing = [](const TemporaryConfig&) { return true; };
    const Step removeFolder = [](const TemporaryConfig& c) { return c.removeFolder(); };
    const QStringList oldLevels{"old"};
    const QStringList newLevels{"new"};

    QTest::newRow("rewritten in place") << writeOld << writeNew << oldLevels << newLevels;
    QTest::newRow("written in two pieces") << writeOld << Step([](const TemporaryConfig& c) {
        const QByteArray content = settingsWith({"new"});
        QFile file(c.settingsPath());
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
               file.write(content.left(9)) == 9 && file.flush() &&
               file.write(content.mid(9)) == content.size() - 9;
    }) << oldLevels << newLevels;
    QTest::newRow("replaced atomically") << writeOld << Step([](const TemporaryConfig& c) {
        return replaceAtomically(c.settingsPath(), settingsWith({"new"}));
    }) << oldLevels << newLevels;
    QTest::newRow("replaced by QSaveFile") << writeOld << Step([](const TemporaryConfig& c) {
        QSaveFile file(c.settingsPath());
        return file.open(QIODevice::WriteOnly) && file.write(settingsWith({"new"})) > 0 &&
               file.commit();
    }) << oldLevels << newLevels;
    QTest::newRow("deleted") << writeOld << Step([](const TemporaryConfig& c) {
        return QFile::remove(c.settingsPath());
    }) << oldLevels << QStringList();
    QTest::newRow("renamed away") << writeOld << Step([](const TemporaryConfig& c) {
        return QFile::rename(c.settingsPath(), c.settingsPath() + ".bak");
    }) << oldLevels << QStringList();
    QTest::newRow("deleted and written anew")
        << writeOld << Step([writeNew](const TemporaryConfig& c) {
               return QFile::remove(c.settingsPath()) && writeNew(c);
           })
        << oldLevels << newLevels;
    QTest::newRow("created after start") << nothing << writeNew << QStringList() << newLevels;
    QTest::newRow("created after start by renaming")
        << nothing << Step([](const TemporaryConfig& c) {
               return replaceAtomically(c.settingsPath(), settingsWith({"new"}));
           })
        << QStringList() << newLevels;
    QTest::newRow("sub folder created after start")
        << removeFolder
        << Step([writeNew](const TemporaryConfig& c) { return c.makeFolder() && writeNew(c); })
        << QStringList() << newLevels;
    QTest::newRow("sub folder deleted") << writeOld << removeFolder << oldLevels << QStringList();
    QTest::newRow("sub folder deleted and made anew")
        << writeOld << Step([writeNew](const TemporaryConfig& c) {
               return c.removeFolder() && c.makeFolder() && writeNew(c);
           })
        << oldLevels << newLevels;
    QTest::newRow("sub folder swapped for another one")
        << Step([writeOld](const TemporaryConfig& c) {
               return writeOld(c) && QDir().mkpath(c.folder() + "2") &&
                      TemporaryConfig::write(c.folder() + "2/settings.json", settingsWith({"new"}));
           })
        << Step([](const TemporaryConfig& c) {
               return QDir().rename(c.folder(), c.folder() + "1") &&
                      QDir().rename(c.folder() + "2", c.folder());
           })
        << oldLevels << newLevels;
    QTest::newRow("sub folder renamed away") << writeOld << Step([](const TemporaryConfig& c) {
        return QDir().rename(c.folder(), c.folder() + "1");
    }) << oldLevels << QStringList();
    QTest::newRow("symbolic link to the file swapped") << Step([](const TemporaryConfig& c) {
        return TemporaryConfig::write(c.base() + "/old.json", settingsWith({"old"})) &&
               TemporaryConfig::write(c.base() + "/new.json", settingsWith({"new"})) &&
               QFile::link(c.base() + "/old.json", c.settingsPath());
    }) << Step([](const TemporaryConfig& c) {
        return replaceLink(c.base() + "/new.json", c.settingsPath());
    }) << oldLevels << newLevels;
    QTest::newRow("target of a symbolic link rewritten") << Step([](const TemporaryConfig& c) {
        return QDir().mkpath(c.base() + "/real") &&
               TemporaryConfig::write(c.base() + "/real/s.json", settingsWith({"old"})) &&
               QFile::link("../real/s.json", c.settingsPath());
    }) << Step([](const TemporaryConfig& c) {
        return TemporaryConfig::write(c.base() + "/real/s.json", settingsWith({"new"}));
    }) << oldLevels << newLevels;
    QTest::newRow("target of a symbolic link replaced atomically")
        << Step([](const TemporaryConfig& c) {
               return QDir().mkpath(c.base() + "/real") &&
                      TemporaryConfig::write(c.base() + "/real/s.json", settingsWith({"old"})) &&
                      QFile::link("../real/s.json", c.settingsPath());
           })
        << Step([](const TemporaryConfig& c) {
               return replaceAtomically(c.base() + "/real/s.json", settingsWith({"new"}));
           })
        << oldLevels << newLevels;
    QTest::newRow("target of a dangling symbolic link created")
        << Step([](const TemporaryConfig& c) {
               return QDir().mkpath(c.base() + "/real") &&
                      QFile::link("../real/s.json", c.settingsPath());
           })
        << Step([](const TemporaryConfig& c) {
               return TemporaryConfig::write(c.base() + "/real/s.json", settingsWith({"new"}));
           })
        << QStringList() << newLevels;
    QTest::newRow("symbolic link to the sub folder swapped") << Step([](const TemporaryConfig& c) {
        return c.removeFolder() && QDir().mkpath(c.base() + "/a") &&
               QDir().mkpath(c.base() + "/b") &&
               TemporaryConfig::write(c.base() + "/a/settings.json", settingsWith({"old"})) &&
               TemporaryConfig::write(c.base() + "/b/settings.json", settingsWith({"new"})) &&
               QFile::link("a", c.folder());
    }) << Step([](const TemporaryConfig& c) { return replaceLink("b", c.folder()); })
                                                             << oldLevels << newLevels;
}

void CoreFollowTest::changeOnDiskIsFollowed()
{
    QFETCH(Step, prepare);
    QFETCH(Step, change);
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    const TemporaryConfig config;
    QVERIFY(prepare(config));
    const LogCapture log;
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
    QCOMPARE(settings->getLogLevels(), before);
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);

    settle();
    QVERIFY(change(config));
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
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
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
    QTest::addColumn<Step>("rewrite"); // equal log levels, the order becomes ["seen"]
    QTest::newRow("rewritten in place") << Step([](const TemporaryConfig& c) {
        return c.writeSettings(settingsWith({"a", "b"}, {"seen"}));
    });
    QTest::newRow("replaced atomically") << Step([](const TemporaryConfig& c) {
        return replaceAtomically(c.settingsPath(), settingsWith({"a", "b"}, {"seen"}));
    });
    QTest::newRow("written differently") << Step([](const TemporaryConfig& c) {
        return c.writeSettings("{ \"passengerTypeCodesOrder\":\n[\"seen\"], \"x\": 0,\n"
                               "\"logLevels\" : [\"\\u0061\",\n\"b\"] }");
    });
    QTest::newRow("deleted in between") << Step([](const TemporaryConfig& c) {
        return QFile::remove(c.settingsPath()) &&
               c.writeSettings(settingsWith({"a", "b"}, {"seen"}));
    });
    QTest::newRow("the key has become bad") << Step([](const TemporaryConfig& c) {
        return c.writeSettings(R"({"logLevels": 5, "passengerTypeCodesOrder": ["seen"]})");
    });
}

void CoreFollowTest::equalValueIsNotAnnounced()
{
    QFETCH(Step, rewrite);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(settingsWith({"a", "b"})));
    const LogCapture log;
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    QVERIFY(rewrite(config));
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
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
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
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
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
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
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
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
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
    SettingsConfig* settings =
        ConfigManager::instance(config.base(), TemporaryConfig::subFolder())->settingsConfig();
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
    ConfigManager* manager = ConfigManager::instance(config.base(), TemporaryConfig::subFolder());
    QStringList heard;
    const QMetaObject::Connection connection = connect(
        manager->settingsConfig(), &SettingsConfig::logLevelsChanged, this,
        [&](const QStringList& levels) {
            QCOMPARE(manager->settingsConfig()->getLogLevels(), levels);
            QCOMPARE(ConfigManager::instance(config.base(), TemporaryConfig::subFolder()), manager);
            heard = ConfigManager::instance(other.base(), TemporaryConfig::subFolder())
                        ->settingsConfig()
                        ->getLogLevels();
        });
    QVERIFY(config.writeSettings(settingsWith({"x"})));
    QTRY_COMPARE(heard, QStringList{"other"});
    disconnect(connection);
}

void CoreFollowTest::twoLocationsDoNotMix()
{
    const TemporaryConfig first;
    const TemporaryConfig second;
    SettingsConfig* one =
        ConfigManager::instance(first.base(), TemporaryConfig::subFolder())->settingsConfig();
    SettingsConfig* two =
        ConfigManager::instance(second.base(), TemporaryConfig::subFolder())->settingsConfig();
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
