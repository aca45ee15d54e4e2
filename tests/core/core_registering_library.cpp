#include <core/JsonObjectFactory.h>
#include <core/SettingsConfig.h>

namespace
{

using Registration =
    QJsonWrapper::JsonObjectFactory::JsonObjectRegistration<rivo::core::SettingsConfig>;

const Registration registration(QStringLiteral("loadedSettings"));

} // namespace
