// Another core library, written from nothing but the boundary's headers.

#include <core/ConfigManager.h>
#include <core/JsonObjectFactory.h>
#include <core/Logging.h>
#include <core/SettingsConfig.h>

#include <easylogging++.cc>

INITIALIZE_EASYLOGGINGPP

namespace rivo::core
{

class SettingsConfigPrivate
{
};

SettingsConfig::SettingsConfig(QObject* parent)
    : QObject(parent), d(std::make_unique<SettingsConfigPrivate>())
{
}

SettingsConfig::~SettingsConfig() = default;

QStringList SettingsConfig::getLogLevels() { return {"from the stub", "log_fareproducts"}; }

QList<QVariant> SettingsConfig::passengerTypeCodesOrder() const
{
    return {"PT_STUDENT_1", "PT_ADULT"};
}

class ConfigManager::Private
{
public:
    SettingsConfig settings{nullptr};
};

ConfigManager* ConfigManager::instance(QString basePath, QString subFolder)
{
    static ConfigManager manager(basePath, subFolder);
    return &manager;
}

ConfigManager::ConfigManager(const QString&, const QString&) : d(std::make_unique<Private>()) {}

ConfigManager::~ConfigManager() = default;

SettingsConfig* ConfigManager::settingsConfig() const { return &d->settings; }

} // namespace rivo::core

namespace QJsonWrapper
{

bool JsonObjectFactory::isRegistered(QString key) { return m_ObjectsMap().contains(key); }

QMap<QString, const QObject*>& JsonObjectFactory::m_ObjectsMap()
{
    static QMap<QString, const QObject*> objects;
    return objects;
}

} // namespace QJsonWrapper
