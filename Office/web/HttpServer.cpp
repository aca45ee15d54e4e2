#include "HttpServer.h"

#include <QUrl>

#include <csignal>
#include <cstring>
#include <microhttpd.h>

#include <netdb.h>

namespace rivo::backoffice
{

namespace
{

constexpr size_t mostHeaderBytes = size_t(32) * 1024;

volatile std::sig_atomic_t isStopping = 0;

struct Header
{
    const char* name;
    const char* value;
};

/// Nothing from elsewhere, nothing in the page itself, and no page around it.
constexpr Header headers[] = {{"Content-Security-Policy",
                               "default-src 'none'; script-src 'self'; style-src 'self'; "
                               "connect-src 'self'; frame-ancestors 'none'; base-uri 'none'; "
                               "form-action 'none'"},
                              {"X-Content-Type-Options", "nosniff"},
                              {"Referrer-Policy", "no-referrer"},
                              {"Cross-Origin-Resource-Policy", "same-origin"},
                              {"Cache-Control", "no-store"}};

MHD_Result send(MHD_Connection* connection, const HttpAnswer& answer)
{
    MHD_Response* response = MHD_create_response_from_buffer(
        size_t(answer.body.size()), const_cast<char*>(answer.body.constData()),
        MHD_RESPMEM_MUST_COPY);
    if (response == nullptr)
        return MHD_NO;
    MHD_add_response_header(response, "Content-Type", answer.type.constData());
    for (const Header& header : headers)
        MHD_add_response_header(response, header.name, header.value);
    if (answer.status == MHD_HTTP_METHOD_NOT_ALLOWED)
        MHD_add_response_header(response, "Allow", "GET, HEAD");
    const MHD_Result result = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return result;
}

/// libmicrohttpd calls it once for the headers and once when the request is complete.
MHD_Result handle(void* object, MHD_Connection* connection, const char* path, const char* method,
                  const char*, const char*, size_t*, void** state)
{
    static char isSeen = 0;
    if (std::strcmp(method, "GET") != 0 && std::strcmp(method, "HEAD") != 0)
        return send(connection, {MHD_HTTP_METHOD_NOT_ALLOWED, "text/plain", "Only GET and HEAD\n"});
    if (*state == nullptr) {
        *state = &isSeen;
        return MHD_YES;
    }
    const auto& answer = *static_cast<const std::function<HttpAnswer(const QByteArray&)>*>(object);
    return send(connection, answer(QByteArray(path)));
}

/// Frees what getaddrinfo() found.
struct Addresses
{
    ~Addresses()
    {
        if (first != nullptr)
            freeaddrinfo(first);
    }
    addrinfo* first = nullptr;
};

} // namespace

HttpServer::~HttpServer()
{
    if (m_daemon != nullptr)
        MHD_stop_daemon(m_daemon);
}

QString HttpServer::listen(const QString& address)
{
    const QUrl url(QStringLiteral("http://") + address);
    if (!url.isValid() || url.host().isEmpty() || url.port() < 0 || !url.path().isEmpty())
        return QStringLiteral("%1 is no address with a port").arg(address);
    addrinfo hints = {};
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    Addresses found;
    const int error = getaddrinfo(url.host().toUtf8().constData(),
                                  QByteArray::number(url.port()).constData(), &hints, &found.first);
    if (error != 0)
        return QStringLiteral("%1: %2").arg(address, QString::fromLocal8Bit(gai_strerror(error)));
    const unsigned family = found.first->ai_family == AF_INET6 ? MHD_USE_IPv6 : 0;
    m_daemon =
        MHD_start_daemon(MHD_USE_AUTO | family, 0, nullptr, nullptr, handle,
                         const_cast<void*>(static_cast<const void*>(&m_answer)),
                         MHD_OPTION_SOCK_ADDR, found.first->ai_addr, MHD_OPTION_CONNECTION_LIMIT,
                         mostConnections, MHD_OPTION_CONNECTION_TIMEOUT, mostSeconds,
                         MHD_OPTION_CONNECTION_MEMORY_LIMIT, mostHeaderBytes, MHD_OPTION_END);
    return m_daemon != nullptr ? QString() : QStringLiteral("cannot listen on %1").arg(address);
}

int HttpServer::port() const
{
    const MHD_DaemonInfo* info =
        m_daemon != nullptr ? MHD_get_daemon_info(m_daemon, MHD_DAEMON_INFO_BIND_PORT) : nullptr;
    return info != nullptr ? info->port : 0;
}

void HttpServer::run()
{
    constexpr int patience = 500; // milliseconds that it waits for something to do
    while (isStopping == 0)
        MHD_run_wait(m_daemon, patience);
}

void HttpServer::stop() { isStopping = 1; }

} // namespace rivo::backoffice
