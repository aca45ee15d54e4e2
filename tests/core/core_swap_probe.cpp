// Uses the whole boundary and prints what it finds behind it.

#include <core/ConfigManager.h>
#include <core/JsonObjectFactory.h>
#include <core/Logging.h>
#include <core/SettingsConfig.h>

#include <iostream>

using rivo::core::ConfigManager;
using rivo::core::SettingsConfig;

namespace
{

const QJsonWrapper::JsonObjectFactory::JsonObjectRegistration<SettingsConfig>
    registration(QStringLiteral("settingsConfig"));

}

int main()
{
    SettingsConfig* settings =
        ConfigManager::instance(QStringLiteral("/nowhere"), QStringLiteral("at/all"))
            ->settingsConfig();
    QObject::connect(settings, &SettingsConfig::logLevelsChanged, settings, [] {});
    std::cout << qPrintable(settings->getLogLevels().join(',')) << ';'
              << settings->passengerTypeCodesOrder().size() << ';'
              << QJsonWrapper::JsonObjectFactory::isRegistered(QStringLiteral("settingsConfig"))
              << '\n';
    LOG(INFO) << "logged";
    return 0;
}
