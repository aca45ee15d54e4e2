#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

/// A web server on the loopback interface that answers each request as a test says.
class TestServer : public QTcpServer
{
public:
    /// `answer` is called with the head of each request; it writes to the socket and may close it.
    explicit TestServer(std::function<void(QTcpSocket&, const QByteArray&)> answer)
        : m_answer(std::move(answer))
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                const QByteArray head = socket->property("head").toByteArray() + socket->readAll();
                const bool isWhole = head.endsWith("\r\n\r\n");
                socket->setProperty("head", isWhole ? QByteArray() : head);
                if (!isWhole)
                    return;
                ++m_requests;
                m_answer(*socket, head);
            });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        });
        listen(QHostAddress::LocalHost);
    }

    QUrl url() const
    {
        return QUrl((m_tls.isNull() ? QStringLiteral("http://127.0.0.1:%1/vehicles")
                                    : QStringLiteral("https://localhost:%1/vehicles"))
                        .arg(serverPort()));
    }

    /// From now on it speaks https.
    void setTls(const QSslConfiguration& tls) { m_tls = tls; }
    int requests() const { return m_requests; }

    /// A whole answer.
    static QByteArray ok(const QByteArray& body, const QByteArray& headers = {})
    {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
               headers + "\r\n" + body;
    }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (m_tls.isNull())
            return QTcpServer::incomingConnection(descriptor);
        auto* socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setSslConfiguration(m_tls);
        socket->startServerEncryption();
        addPendingConnection(socket);
    }

private:
    std::function<void(QTcpSocket&, const QByteArray&)> m_answer;
    QSslConfiguration m_tls;
    int m_requests = 0;
};
