#pragma once

#include <core/ConfigManager.h>
#include <core/SettingsConfig.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStringList>
#include <QTemporaryDir>

/// A home folder for the models constructed from now on: $HOME points to it. Each one is new, since
/// the configuration of a folder is read once and then followed for the life of the process.
class TerminalHome
{
public:
    /// No configuration file.
    TerminalHome() : m_path(newFolder()) { qputenv("HOME", QFile::encodeName(m_path)); }

    explicit TerminalHome(const QStringList& passengerTypeCodesOrder,
                          const QStringList& logLevels = {})
        : TerminalHome()
    {
        writeSettings(passengerTypeCodesOrder, logLevels);
    }

    QString settingsFile() const { return m_path + "/ProjectLink/settings.json"; }

    /// Replaces the configuration file atomically.
    void writeSettings(const QStringList& passengerTypeCodesOrder,
                       const QStringList& logLevels) const
    {
        writeFile(QJsonDocument(QJsonObject{
                                    {"passengerTypeCodesOrder",
                                     QJsonArray::fromStringList(passengerTypeCodesOrder)},
                                    {"logLevels", QJsonArray::fromStringList(logLevels)},
                                })
                      .toJson());
    }

    void writeFile(const QByteArray& content) const
    {
        QDir().mkpath(QFileInfo(settingsFile()).path());
        QSaveFile file(settingsFile());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
            !file.commit())
            qFatal("%s cannot be written", qPrintable(settingsFile()));
    }

    /// The configuration that the models of this home follow.
    rivo::core::SettingsConfig* settings() const
    {
        return rivo::core::ConfigManager::instance(m_path, "ProjectLink/")->settingsConfig();
    }

private:
    static QString newFolder()
    {
        static const QTemporaryDir base;
        static int count = 0;
        const QString path = base.filePath(QString::number(++count));
        if (!QDir().mkpath(path))
            qFatal("%s cannot be made", qPrintable(path));
        return path;
    }

    const QString m_path;
};
