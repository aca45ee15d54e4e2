#include <core/ConfigManager.h>

#include "FileFollower_p.h"
#include "LoggerConfiguration_p.h"
#include "SettingsConfig_p.h"

#include <core-private/SettingsFile.h>
#include <core/SettingsConfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>

namespace rivo::core
{

class ConfigManager::Private
{
public:
    explicit Private(const QString& path) : m_file(path), m_settingsConfig(nullptr) {}

    QString path() const { return m_file.path(); }
    SettingsConfig* settingsConfig() { return &m_settingsConfig; }

    void configureLogging();
    void reload();

    /// All managers of the process. Static initialisation of this library makes it and its unload
    /// ends it, so that no user of this library can outlive a manager.
    class Registry;
    static Registry registry;

private:
    void report(const QStringList& problems);

    SettingsFile m_file;
    SettingsConfig m_settingsConfig;
    QStringList m_reported;
};

class ConfigManager::Private::Registry
{
public:
    Registry() = default;
    ~Registry();
    Q_DISABLE_COPY(Registry)

    ConfigManager* manager(const QString& basePath, const QString& subFolder);
    void followWithApplication();

private:
    static void stopFollowing();
    void reloadAll() const;

    QHash<QString, ConfigManager*> m_managers;
    std::unique_ptr<FileFollower> m_follower; ///< only while there is an application
};

ConfigManager::Private::Registry ConfigManager::Private::registry;

ConfigManager::Private::Registry::~Registry()
{
    if (m_follower)
        qRemovePostRoutine(stopFollowing);
    m_follower.reset();
    for (const ConfigManager* manager : qAsConst(m_managers))
        delete manager;
}

ConfigManager* ConfigManager::Private::Registry::manager(const QString& basePath,
                                                         const QString& subFolder)
{
    const QString path = SettingsFile::pathIn(basePath, subFolder);
    ConfigManager* manager = m_managers.value(path);
    if (!manager) {
        manager = new ConfigManager(basePath, subFolder);
        // Listed before it reads: a slot that is called while it reads may ask for it.
        m_managers.insert(path, manager);
        manager->d->configureLogging();
        if (m_follower)
            m_follower->follow(manager->d->path());
        manager->d->reload();
    }
    return manager;
}

void ConfigManager::Private::Registry::followWithApplication()
{
    if (m_follower || !QCoreApplication::instance() || QCoreApplication::closingDown())
        return;
    m_follower = std::make_unique<FileFollower>();
    // A watcher must not outlive the application whose event loop serves it.
    qAddPostRoutine(stopFollowing);
    QObject::connect(m_follower.get(), &FileFollower::changed, m_follower.get(),
                     [this] { reloadAll(); });
    for (const ConfigManager* manager : qAsConst(m_managers))
        m_follower->follow(manager->d->path());
    reloadAll();
}

void ConfigManager::Private::Registry::stopFollowing() { registry.m_follower.reset(); }

void ConfigManager::Private::Registry::reloadAll() const
{
    // A copy: a slot that a change calls may ask for another manager.
    const QHash<QString, ConfigManager*> managers = m_managers;
    for (const ConfigManager* manager : managers)
        manager->d->reload();
}

void ConfigManager::Private::configureLogging()
{
    const QString problem =
        applyLoggerConfiguration(QFileInfo(path()).path() + QStringLiteral("/logging.conf"));
    if (!problem.isEmpty())
        LOG(WARNING) << qUtf8Printable(problem + QStringLiteral("; logging stays as it was"));
}

void ConfigManager::Private::reload()
{
    report(m_file.read());
    SettingsConfigPrivate::assign(&m_settingsConfig, m_file.logLevels(),
                                  m_file.passengerTypeCodesOrder());
}

void ConfigManager::Private::report(const QStringList& problems)
{
    for (const QString& problem : problems) {
        if (!m_reported.contains(problem))
            LOG(WARNING) << qUtf8Printable(problem + QStringLiteral("; the last good value stays"));
    }
    m_reported = problems;
}

ConfigManager* ConfigManager::instance(QString basePath, QString subFolder)
{
    Private::registry.followWithApplication();
    return Private::registry.manager(basePath, subFolder);
}

ConfigManager::ConfigManager(const QString& basePath, const QString& subFolder)
    : d(std::make_unique<Private>(
          QFileInfo(SettingsFile::pathIn(basePath, subFolder)).absoluteFilePath()))
{
}

ConfigManager::~ConfigManager() = default;

SettingsConfig* ConfigManager::settingsConfig() const { return d->settingsConfig(); }

} // namespace rivo::core
