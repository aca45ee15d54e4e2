#include "LogCapture.h"
#include "TemporaryConfig.h"

#include <core/ConfigManager.h>
#include <core/SettingsConfig.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using rivo::core::ConfigManager;
using rivo::core::SettingsConfig;

namespace
{

// Made before main, as a library that registers its settings at load does.
SettingsConfig& settingsOfStaticInitialisation()
{
    static SettingsConfig settings(nullptr);
    return settings;
}
[[maybe_unused]] const bool isMadeBeforeMain = settingsOfStaticInitialisation().signalsBlocked();

class Application
{
public:
    QCoreApplication* operator->() { return &m_application; }

private:
    int m_count = 1;
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_count, m_arguments};
};

/// How many inotify instances the process holds: one per running file watcher.
int watcherCount()
{
    int count = 0;
    const QFileInfoList links =
        QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& link : links) {
        if (link.symLinkTarget().endsWith("anon_inode:inotify"))
            ++count;
    }
    return count;
}

QByteArray levels(const char* name) { return QByteArray(R"({"logLevels": [")") + name + "\"]}"; }

int watchersSeenByPostRoutine = -1;

} // namespace

class CoreLifecycleTest : public QObject
{
    Q_OBJECT

private slots:
    void settingsNeedNoApplication();
    void followingStartsWithTheFirstCallThatFindsAnApplication();
    void watcherIsGoneBeforeTheApplication();
    void managerOutlivesTheApplication();
};

void CoreLifecycleTest::settingsNeedNoApplication()
{
    QVERIFY(!QCoreApplication::instance());
    QCOMPARE(settingsOfStaticInitialisation().getLogLevels(), QStringList());
    QCOMPARE(settingsOfStaticInitialisation().passengerTypeCodesOrder(), QList<QVariant>());
}

void CoreLifecycleTest::followingStartsWithTheFirstCallThatFindsAnApplication()
{
    const TemporaryConfig config;
    const TemporaryConfig other;
    QVERIFY(config.writeSettings(levels("early")));
    ConfigManager* manager = config.manager();
    QSignalSpy changes(manager->settingsConfig(), &SettingsConfig::logLevelsChanged);
    QCOMPARE(manager->settingsConfig()->getLogLevels(), QStringList{"early"});

    Application application;
    QVERIFY(config.writeSettings(levels("meanwhile")));
    QCOMPARE(watcherCount(), 0);
    QCOMPARE(manager->settingsConfig()->getLogLevels(), QStringList{"early"});

    // Whichever manager is asked for; what changed meanwhile is caught up with at once.
    other.manager();
    QVERIFY(watcherCount() > 0);
    QCOMPARE(manager->settingsConfig()->getLogLevels(), QStringList{"meanwhile"});
    QCOMPARE(changes.count(), 1);

    QVERIFY(config.writeSettings(levels("followed")));
    QTRY_COMPARE(manager->settingsConfig()->getLogLevels(), QStringList{"followed"});
    QCOMPARE(changes.count(), 2);
}

void CoreLifecycleTest::watcherIsGoneBeforeTheApplication()
{
    const TemporaryConfig config;
    {
        Application application;
        // Registered before the library's own, so run after it.
        qAddPostRoutine([] { watchersSeenByPostRoutine = watcherCount(); });
        config.manager();
        QVERIFY(watcherCount() > 0);
        // A change is pending when the application ends.
        QVERIFY(config.writeSettings(levels("pending")));
        QCoreApplication::processEvents();
    }
    QCOMPARE(watchersSeenByPostRoutine, 0);
    QCOMPARE(watcherCount(), 0);
}

void CoreLifecycleTest::managerOutlivesTheApplication()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(levels("0")));
    ConfigManager* manager = config.manager();
    SettingsConfig* settings = manager->settingsConfig();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);
    for (int round = 1; round <= 3; ++round) {
        Application application;
        QCOMPARE(config.manager(), manager);
        QCOMPARE(manager->settingsConfig(), settings);
        const QByteArray value = QByteArray::number(round);
        QVERIFY(config.writeSettings(levels(value)));
        QTRY_COMPARE(settings->getLogLevels(), QStringList{value});
        QCOMPARE(changes.count(), round);
    }
    QCOMPARE(config.manager(), manager);
    QCOMPARE(settings->getLogLevels(), QStringList{"3"});
}

QTEST_APPLESS_MAIN(CoreLifecycleTest)
#include "tst_core_lifecycle.moc"
