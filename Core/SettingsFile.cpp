#include <core-private/SettingsFile.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QVariant>

#include <utility>

namespace rivo::core
{

QString SettingsFile::pathIn(const QString& basePath, const QString& subFolder)
{
    return QDir::cleanPath(basePath + QLatin1Char('/') + subFolder +
                           QStringLiteral("/settings.json"));
}

SettingsFile::SettingsFile(QString path) : m_path(std::move(path)) {}

QStringList SettingsFile::read()
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    m_logLevels = root.value(QLatin1String("logLevels")).toVariant().toStringList();
    m_passengerTypeCodesOrder =
        root.value(QLatin1String("passengerTypeCodesOrder")).toVariant().toStringList();
    return {};
}

} // namespace rivo::core
