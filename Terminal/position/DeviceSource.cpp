#include "DeviceSource_p.h"

#include <QFile>

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace rivo::position
{

namespace
{

constexpr int mostBytes = 4096;

/// Bytes as they come. A terminal line would send them back to the receiver otherwise.
void makeRaw(int file)
{
    termios line{};
    if (tcgetattr(file, &line) != 0)
        return;
    cfmakeraw(&line);
    tcsetattr(file, TCSANOW, &line);
}

} // namespace

DeviceSource::~DeviceSource() { DeviceSource::closeDevice(); }

void DeviceSource::connectDevice()
{
    m_reader.clear();
    m_file = open(QFile::encodeName(settings().device).constData(),
                  O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (m_file < 0) {
        disconnected(qt_error_string(errno));
        return;
    }
    makeRaw(m_file);
    m_notifier = std::make_unique<QSocketNotifier>(m_file, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &DeviceSource::read);
    connected();
}

void DeviceSource::closeDevice()
{
    if (m_file < 0)
        return;
    m_notifier->setEnabled(false);
    m_notifier.release()->deleteLater(); // it may be what has called
    close(m_file);
    m_file = -1;
}

void DeviceSource::read()
{
    std::array<char, mostBytes> bytes{};
    const ssize_t count = ::read(m_file, bytes.data(), bytes.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count <= 0) {
        disconnected(count == 0 ? tr("the device has ended") : qt_error_string(errno));
        return;
    }
    heard();
    report(m_reader.read(QByteArray(bytes.data(), static_cast<int>(count))));
}

} // namespace rivo::position
