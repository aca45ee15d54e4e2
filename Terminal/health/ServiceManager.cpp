#include "ServiceManager.h"

#include <QCoreApplication>

#include <cstddef>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace rivo::health
{

namespace
{

constexpr qlonglong perMillisecond = 1000;
constexpr qlonglong longestWatchdog = 86400000; // milliseconds

int watchdogOf(const QByteArray& microseconds, const QByteArray& process)
{
    const bool isOthers =
        !process.isEmpty() && process.toLongLong() != QCoreApplication::applicationPid();
    const qlonglong time = microseconds.toLongLong() / perMillisecond;
    return isOthers || time < 0 || time > longestWatchdog ? 0 : static_cast<int>(time);
}

} // namespace

ServiceManager ServiceManager::fromEnvironment()
{
    return {qgetenv("NOTIFY_SOCKET"),
            watchdogOf(qgetenv("WATCHDOG_USEC"), qgetenv("WATCHDOG_PID"))};
}

bool ServiceManager::send(const QByteArray& message) const
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto length = static_cast<std::size_t>(m_socket.size());
    if (m_socket.isEmpty() || length >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, m_socket.constData(), length);
    if (address.sun_path[0] == '@')
        address.sun_path[0] = '\0';
    const int file = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (file < 0)
        return false;
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
    const ssize_t sent = sendto(file, message.constData(), static_cast<std::size_t>(message.size()),
                                MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address), size);
    close(file);
    return sent == message.size();
}

} // namespace rivo::health
