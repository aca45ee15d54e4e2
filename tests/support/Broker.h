#pragma once

#include <BrokerLink.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>

/// A Mosquitto of a test alone, on a port of the loopback.
class Broker
{
public:
    Broker()
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        m_port = server.serverPort();
        m_process.setStandardErrorFile(m_folder.filePath("log"), QIODevice::Append);
    }

    ~Broker() { kill(); }

    static bool isInstalled() { return !program().isEmpty(); }

    /// `more`: lines of its configuration; without any, all may do all.
    bool start(const QByteArray& more = "allow_anonymous true\n")
    {
        QFile file(m_folder.filePath("mosquitto.conf"));
        if (!file.open(QIODevice::WriteOnly))
            return false;
        // It would run as another user, which cannot read the folder.
        file.write("user root\nlistener " + QByteArray::number(m_port) + " 127.0.0.1\n" + more);
        file.close();
        m_process.start(program(), {"-c", file.fileName()});
        return m_process.waitForStarted();
    }

    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Path of a file with `content`.
    QString write(const QString& name, const QByteArray& content) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
                   ? file.fileName()
                   : QString();
    }

    QByteArray log() const
    {
        QFile file(m_folder.filePath("log"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    int port() const { return m_port; }

    rivo::office::BrokerSettings settings(const QString& client) const
    {
        rivo::office::BrokerSettings settings;
        settings.host = "127.0.0.1";
        settings.port = m_port;
        settings.clientId = client;
        return settings;
    }

private:
    static QString program()
    {
        return QStandardPaths::findExecutable("mosquitto", {"/usr/sbin", "/usr/bin"});
    }

    QTemporaryDir m_folder;
    int m_port = 0;
    QProcess m_process;
};
