#pragma once

#include <QByteArray>
#include <QString>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

/// A pseudo terminal: what is sent here arrives at the device `name()`.
class PseudoTerminal
{
public:
    PseudoTerminal() : m_file(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        if (m_file >= 0 && grantpt(m_file) == 0 && unlockpt(m_file) == 0)
            m_name = QString::fromLocal8Bit(ptsname(m_file));
    }
    ~PseudoTerminal() { unplug(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// Empty if the system has none.
    QString name() const { return m_name; }

    bool send(const QByteArray& bytes)
    {
        return write(m_file, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
    }

    /// What the other side has sent.
    QByteArray received()
    {
        QByteArray bytes(256, '\0');
        const ssize_t count = read(m_file, bytes.data(), static_cast<size_t>(bytes.size()));
        return bytes.left(static_cast<int>(count > 0 ? count : 0));
    }

    /// As if the cable was pulled out.
    void unplug()
    {
        if (m_file >= 0)
            close(m_file);
        m_file = -1;
    }

private:
    int m_file;
    QString m_name;
};
