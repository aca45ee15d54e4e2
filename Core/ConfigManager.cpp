#include <core/ConfigManager.h>

#include "SettingsConfigPrivate.h"

#include <core-private/SettingsFile.h>
#include <core/SettingsConfig.h>

#include <QtCore/QHash>

namespace rivo::core
{

class ConfigManager::Private
{
public:
    explicit Private(const QString& path) : m_file(path) { reload(); }

    void reload()
    {
        m_file.read();
        SettingsConfigPrivate::assign(&m_settingsConfig, m_file.logLevels(),
                                      m_file.passengerTypeCodesOrder());
    }

    SettingsFile m_file;
    SettingsConfig m_settingsConfig{nullptr};
};

ConfigManager* ConfigManager::instance(QString basePath, QString subFolder)
{
    static auto* const managers = new QHash<QString, ConfigManager*>;
    ConfigManager*& manager = (*managers)[SettingsFile::pathIn(basePath, subFolder)];
    if (!manager)
        manager = new ConfigManager(basePath, subFolder);
    return manager;
}

ConfigManager::ConfigManager(const QString& basePath, const QString& subFolder)
    : d(std::make_unique<Private>(SettingsFile::pathIn(basePath, subFolder)))
{
}

ConfigManager::~ConfigManager() = default;

SettingsConfig* ConfigManager::settingsConfig() const { return &d->m_settingsConfig; }

} // namespace rivo::core
