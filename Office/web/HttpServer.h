#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

struct MHD_Daemon;

namespace rivo::backoffice
{

/// What a request is answered with.
struct HttpAnswer
{
    unsigned status = 200;
    QByteArray type = "text/plain; charset=utf-8";
    QByteArray body;
};

/// Answers GET and HEAD, with libmicrohttpd, one request after the other; other methods are
/// refused. Connections, headers and waiting are limited. Without TLS and without sign-in: that is
/// for a proxy before it.
class HttpServer
{
public:
    static constexpr unsigned mostConnections = 64;
    static constexpr unsigned mostSeconds = 10; ///< that a connection may be idle

    /// `answer`: to the path of a request, without what follows a "?".
    explicit HttpServer(std::function<HttpAnswer(const QByteArray& path)> answer)
        : m_answer(std::move(answer))
    {
    }
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// `address`: "127.0.0.1:8080" or "[::1]:8080"; port 0 is one that is free. The problem; empty
    /// if there is none.
    QString listen(const QString& address);
    int port() const; ///< 0 if it does not listen

    /// Until stop() is called.
    void run();

    /// May be called by a signal.
    static void stop();

private:
    const std::function<HttpAnswer(const QByteArray& path)> m_answer;
    MHD_Daemon* m_daemon = nullptr;
};

} // namespace rivo::backoffice
