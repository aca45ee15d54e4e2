#pragma once

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPair>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

/// How a program ended and what it wrote; exit code -1 if it crashed or hung.
struct Outcome
{
    int exitCode = -1;
    QByteArray output;
    QByteArray messages;
};

/// Runs a command-line tool with a home directory of its own, so that no configuration is found
/// unless the test wrote one.
class ToolRunner
{
public:
    explicit ToolRunner(const QString& program) : m_program(program) {}

    Outcome run(const QStringList& arguments,
                const QVector<QPair<QString, QString>>& variables = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home.path());
        for (const auto& variable : variables)
            environment.insert(variable.first, variable.second);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(m_program, arguments);
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

    void writeSettings(const QByteArray& json) const
    {
        QDir(home.path()).mkpath(QStringLiteral("ProjectLink"));
        write(QStringLiteral("ProjectLink/settings.json"), json);
    }

    /// Path of a file that holds `feed`; the next one replaces it.
    QString writeFeed(const QJsonObject& feed) const
    {
        return write(QStringLiteral("feed.json"), QJsonDocument(feed).toJson());
    }

    /// Path of a file of the home directory that holds `content`.
    QString write(const QString& name, const QByteArray& content) const
    {
        QFile file(home.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
        return file.fileName();
    }

    QTemporaryDir home;

private:
    QString m_program;
};
