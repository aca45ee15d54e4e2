#pragma once

#include <core/ConfigManager.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

/// A base path of its own with the configuration folder "ProjectLink" in it.
class TemporaryConfig
{
public:
    static QString subFolder() { return QStringLiteral("ProjectLink/"); }

    TemporaryConfig() { makeFolder(); }

    /// A template for the name of the base path.
    explicit TemporaryConfig(const QString& base) : m_base(base) { makeFolder(); }

    bool isValid() const { return m_base.isValid(); }
    QString base() const { return m_base.path(); }
    QString folder() const { return m_base.filePath("ProjectLink"); }
    QString settingsPath() const { return folder() + "/settings.json"; }
    QString loggingPath() const { return folder() + "/logging.conf"; }

    rivo::core::ConfigManager* manager() const
    {
        return rivo::core::ConfigManager::instance(base(), subFolder());
    }
    rivo::core::SettingsConfig* settings() const { return manager()->settingsConfig(); }

    bool makeFolder() const { return QDir().mkpath(folder()); }
    bool removeFolder() const { return QDir(folder()).removeRecursively(); }

    /// Truncates and rewrites, as a plain editor does.
    static bool write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
               file.write(content) == content.size();
    }

    bool writeSettings(const QByteArray& content) const { return write(settingsPath(), content); }

    /// Lets other users read the settings, whatever the umask is.
    bool letOthersRead() const
    {
        const QFile::Permissions read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
        const QFile::Permissions enter =
            read | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
        return QFile::setPermissions(base(), enter) && QFile::setPermissions(folder(), enter) &&
               QFile::setPermissions(settingsPath(), read | QFile::WriteOwner);
    }

    static QStringList entries(const QString& folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                      QDir::NoDotAndDotDot);
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_base;
};
