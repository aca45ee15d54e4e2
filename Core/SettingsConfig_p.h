#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace rivo::core
{

class SettingsConfig;

/// The values of one SettingsConfig and the way in for the ConfigManager that owns it.
class SettingsConfigPrivate
{
public:
    /// Stores both values, then emits logLevelsChanged if that list is a different one.
    static void assign(SettingsConfig* config, const QStringList& logLevels,
                       const QStringList& passengerTypeCodesOrder);

    QStringList logLevels;
    QList<QVariant> passengerTypeCodesOrder;
};

} // namespace rivo::core
