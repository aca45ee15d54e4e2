#pragma once

#include <Database.h>

#include <QHostAddress>
#include <QProcess>
#include <QTcpSocket>

#include <memory>

/// For the command line of the program.
inline QStringList optionsOf(const rivo::backoffice::DatabaseSettings& database)
{
    return {"--database",  database.name,     "--database-host",
            database.host, "--database-user", database.user};
}

/// The program, which shows the page until it is destroyed.
class Page
{
public:
    static constexpr int patience = 60000; ///< milliseconds

    explicit Page(const rivo::backoffice::DatabaseSettings& database, const QStringList& more = {})
    {
        m_process.setReadChannel(QProcess::StandardError);
        m_process.start(RIVO_OFFICE,
                        QStringList{"web", "--listen", "127.0.0.1:0"} + optionsOf(database) + more);
        QByteArray said;
        while (!said.contains('\n') && m_process.waitForReadyRead(patience) &&
               m_process.state() == QProcess::Running)
            said += m_process.readAll();
        m_port = said.trimmed().split(' ').last().toUShort();
    }

    ~Page()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    int port() const { return m_port; }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/").arg(m_port); }

    std::unique_ptr<QTcpSocket> connection() const
    {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QHostAddress::LocalHost, quint16(m_port));
        socket->waitForConnected(patience);
        return socket;
    }

    /// All bytes of the answer to a request, until the connection ends.
    QByteArray send(const QByteArray& request) const
    {
        const auto socket = connection();
        socket->write(request);
        QByteArray answer;
        while (socket->state() == QAbstractSocket::ConnectedState &&
               socket->waitForReadyRead(patience))
            answer += socket->readAll();
        return answer + socket->readAll();
    }

    QByteArray ask(const QByteArray& method, const QByteArray& path) const
    {
        return send(method + ' ' + path + " HTTP/1.1\r\nHost: office\r\nConnection: close\r\n\r\n");
    }

    static QByteArray bodyOf(const QByteArray& answer)
    {
        return answer.mid(answer.indexOf("\r\n\r\n") + 4);
    }

    int stop()
    {
        m_process.terminate();
        return m_process.waitForFinished() && m_process.exitStatus() == QProcess::NormalExit
                   ? m_process.exitCode()
                   : -1;
    }

private:
    QProcess m_process;
    quint16 m_port = 0;
};
