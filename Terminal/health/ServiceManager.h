#pragma once

#include <QByteArray>

namespace rivo::health
{

/// The service manager that has started this program: systemd, by the datagrams of sd_notify.
class ServiceManager
{
public:
    /// As the environment names it: NOTIFY_SOCKET, WATCHDOG_USEC and WATCHDOG_PID.
    static ServiceManager fromEnvironment();

    ServiceManager() = default;
    /// `socket` is a path, or "@name" for a name without a file.
    ServiceManager(const QByteArray& socket, int watchdogTime)
        : m_socket(socket), m_watchdogTime(watchdogTime)
    {
    }

    bool isThere() const { return !m_socket.isEmpty(); }
    /// Milliseconds without a sign of life until the manager restarts the program; 0 = it does not.
    int watchdogTime() const { return m_watchdogTime; }

    /// The program has started.
    bool reportReady() const { return send("READY=1"); }
    bool reportLife() const { return send("WATCHDOG=1"); }
    /// A line that `systemctl status` shows.
    bool reportStatus(const QByteArray& line) const { return send("STATUS=" + line); }

private:
    /// False if there is no manager, or it does not listen. Never waits.
    bool send(const QByteArray& message) const;

    QByteArray m_socket;
    int m_watchdogTime = 0;
};

} // namespace rivo::health
