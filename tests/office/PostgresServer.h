#pragma once

#include <Database.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>

#include <sys/types.h>
#include <unistd.h>

/// A server of PostgreSQL of a test alone: data and socket are in a temporary folder, and it
/// listens on no network. PostgreSQL refuses to run as root; then it runs as another user.
class PostgresServer
{
public:
    PostgresServer() : m_folder(QStringLiteral("/tmp/rivo-office-XXXXXX")) {}

    ~PostgresServer() { end(SIGQUIT); }

    /// Why there is none; empty if it runs.
    QString start()
    {
        if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL")))
            return QStringLiteral("Qt's driver for PostgreSQL is not installed");
        if (programs().isEmpty())
            return QStringLiteral("PostgreSQL is not installed");
        if (isRoot() && run(QStringLiteral("chown"), {user(), m_folder.path()}) != 0)
            return QStringLiteral("PostgreSQL does not run as root, and there is no other user");
        if (runAsUser(QStringLiteral("initdb"), {"-D", data(), "-U", "rivo", "-A", "trust", "-N",
                                                 "-E", "UTF8", "--locale=C"}) != 0)
            return QStringLiteral("initdb of PostgreSQL failed");
        return resume() ? QString() : QStringLiteral("PostgreSQL did not start");
    }

    /// Starts it again after kill(), with what it stored.
    bool resume()
    {
        m_server.setStandardOutputFile(QProcess::nullDevice());
        m_server.setStandardErrorFile(m_folder.path() + QStringLiteral("/log"));
        const auto [program, arguments] =
            asUser(QStringLiteral("postgres"), {"-D", data(), "-k", m_folder.path(), "-c",
                                                "listen_addresses=", "-c", "fsync=off"});
        constexpr int attempts = 300;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            // It does not start while a process of the one before is left.
            if (m_server.state() == QProcess::NotRunning)
                m_server.start(program, arguments);
            rivo::backoffice::Database database(settings());
            if (database.open())
                return true;
            m_server.waitForFinished(100);
        }
        return false;
    }

    /// Without a word to its clients, and without order on its disk; at once, with its processes
    /// for the connections, which would go on for a moment.
    void kill()
    {
        const QStringList children = childrenOfServer();
        end(SIGKILL);
        for (const QString& child : children)
            ::kill(pid_t(child.toInt()), SIGKILL);
    }

    rivo::backoffice::DatabaseSettings
    settings(const QString& database = QStringLiteral("postgres")) const
    {
        return {m_folder.path(), 0, database, QStringLiteral("rivo"), {}};
    }

    /// An empty database of the server.
    rivo::backoffice::DatabaseSettings newDatabase()
    {
        const QString name = QStringLiteral("office%1").arg(++m_databases);
        rivo::backoffice::Database server(settings());
        const bool isMade =
            server.open() && server.runAll({QStringLiteral("CREATE DATABASE ") + name});
        return isMade ? settings(name) : rivo::backoffice::DatabaseSettings();
    }

private:
    QStringList childrenOfServer() const
    {
        QFile file(QStringLiteral("/proc/%1/task/%1/children").arg(m_server.processId()));
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromLatin1(file.readAll()).split(' ', Qt::SkipEmptyParts)
                   : QStringList();
    }

    void end(int signal)
    {
        if (m_server.state() == QProcess::NotRunning)
            return;
        ::kill(pid_t(m_server.processId()), signal);
        m_server.waitForFinished();
    }

    static bool isRoot() { return geteuid() == 0; }
    static QString user() { return QStringLiteral("nobody"); }
    QString data() const { return m_folder.path() + QStringLiteral("/data"); }

    /// The folder of the newest version; Debian has them beside each other.
    static QString programs()
    {
        const QString all = QStringLiteral("/usr/lib/postgresql");
        const QStringList versions = QDir(all).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (int at = versions.size() - 1; at >= 0; --at) {
            const QString folder = all + QLatin1Char('/') + versions.at(at) + "/bin/";
            if (QFileInfo(folder + "postgres").isExecutable() &&
                QFileInfo(folder + "initdb").isExecutable())
                return folder;
        }
        return {};
    }

    static std::pair<QString, QStringList> asUser(const QString& program,
                                                  const QStringList& arguments)
    {
        if (!isRoot())
            return {programs() + program, arguments};
        return {QStringLiteral("setpriv"), QStringList{"--reuid=" + user(), "--regid=nogroup",
                                                       "--clear-groups", programs() + program} +
                                               arguments};
    }

    static int run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(program, arguments);
        constexpr int patience = 120000;
        return process.waitForFinished(patience) ? process.exitCode() : -1;
    }

    static int runAsUser(const QString& program, const QStringList& arguments)
    {
        const auto [name, all] = asUser(program, arguments);
        return run(name, all);
    }

    QTemporaryDir m_folder;
    QProcess m_server;
    int m_databases = 0;
};
