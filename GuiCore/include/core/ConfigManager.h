#pragma once

#include <core/CoreExport.h>

#include <QtCore/QString>

#include <memory>

namespace rivo::core
{

class SettingsConfig;

/// The configuration found in one folder, followed while the process runs.
///
/// Everything here belongs to the GUI thread. A manager and its SettingsConfig live as long as the
/// process, also after the QCoreApplication is destroyed.
class RIVO_CORE_EXPORT ConfigManager
{
public:
    /// The manager of the folder @p subFolder below @p basePath; the same arguments give the same
    /// manager. Never null. The first call for a folder reads it; changes on disk are followed from
    /// the first call made while a QCoreApplication exists until that application is destroyed.
    static ConfigManager* instance(QString basePath, QString subFolder);

    /// The settings of this folder. Never null; owned by the manager.
    SettingsConfig* settingsConfig() const;

private:
    ConfigManager(const QString& basePath, const QString& subFolder);
    ~ConfigManager();
    Q_DISABLE_COPY(ConfigManager)

    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace rivo::core
