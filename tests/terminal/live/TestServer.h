#pragma once

#include <QByteArray>
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
        return QUrl(QStringLiteral("http://127.0.0.1:%1/vehicles").arg(serverPort()));
    }
    int requests() const { return m_requests; }

    /// A whole answer.
    static QByteArray ok(const QByteArray& body, const QByteArray& headers = {})
    {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
               headers + "\r\n" + body;
    }

private:
    std::function<void(QTcpSocket&, const QByteArray&)> m_answer;
    int m_requests = 0;
};
