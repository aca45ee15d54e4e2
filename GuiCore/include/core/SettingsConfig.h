#pragma once

#include <core/CoreExport.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <memory>

namespace rivo::core
{

class SettingsConfigPrivate;

/// The settings that the list models read.
///
/// An object that no ConfigManager owns holds the defaults for ever. Construction touches no file,
/// writes no log and needs no QCoreApplication.
class RIVO_CORE_EXPORT SettingsConfig : public QObject
{
    Q_OBJECT

public:
    /// The defaults, until the ConfigManager that owns it has read the file.
    explicit SettingsConfig(QObject* parent);
    ~SettingsConfig() override;

    /// The names of the log levels that are switched on, as configured. Default: empty.
    QStringList getLogLevels();

    /// The display order of passenger types as type-code texts ("PT_ADULT"). Default: empty.
    QList<QVariant> passengerTypeCodesOrder() const;

signals:
    /// The list of getLogLevels() has become @p logLevels, a different one.
    void logLevelsChanged(QStringList logLevels);

private:
    friend class SettingsConfigPrivate;
    const std::unique_ptr<SettingsConfigPrivate> d;
};

} // namespace rivo::core
