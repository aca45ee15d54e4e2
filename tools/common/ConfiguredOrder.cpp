#include "ConfiguredOrder.h"

#include <core-private/SettingsFile.h>

#include <QDir>
#include <QFile>

namespace
{

const QLatin1String subFolder("ProjectLink/");

QString configurationFile(const QString& home, const char* name)
{
    return home + QLatin1Char('/') + subFolder + QLatin1String(name);
}

} // namespace

ConfiguredOrder::ConfiguredOrder(const std::optional<QStringList>& order)
    : m_isValid(!order || configure(*order))
{
}

bool ConfiguredOrder::configure(const QStringList& order)
{
    using rivo::core::SettingsFile;
    const QString ownHome = QDir::homePath();
    SettingsFile own(SettingsFile::pathIn(ownHome, subFolder));
    own.read(); // what is wrong with it has been reported when the program started

    m_home.emplace();
    SettingsFile settings(SettingsFile::pathIn(m_home->path(), subFolder));
    settings.setLogLevels(own.logLevels());
    settings.setPassengerTypeCodesOrder(order);
    if (!m_home->isValid() || !settings.save())
        return false;
    QFile::copy(configurationFile(ownHome, "logging.conf"),
                configurationFile(m_home->path(), "logging.conf"));
    return qputenv("HOME", m_home->path().toLocal8Bit());
}
