#include <core/SettingsConfig.h>

#include "SettingsConfig_p.h"

namespace rivo::core
{

SettingsConfig::SettingsConfig(QObject* parent)
    : QObject(parent), d(std::make_unique<SettingsConfigPrivate>())
{
}

SettingsConfig::~SettingsConfig() = default;

QStringList SettingsConfig::getLogLevels() { return d->logLevels; }

QList<QVariant> SettingsConfig::passengerTypeCodesOrder() const
{
    return d->passengerTypeCodesOrder;
}

void SettingsConfigPrivate::assign(SettingsConfig* config, const QStringList& logLevels,
                                   const QStringList& passengerTypeCodesOrder)
{
    SettingsConfigPrivate& values = *config->d;
    values.passengerTypeCodesOrder = QVariant(passengerTypeCodesOrder).toList();
    if (values.logLevels == logLevels)
        return;
    values.logLevels = logLevels;
    emit config->logLevelsChanged(logLevels);
}

} // namespace rivo::core
