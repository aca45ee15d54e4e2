#include "ByteLink.h"

#include <QFile>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace rivo::printer
{

namespace
{

QString systemText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

bool isLater(int error) { return error == EAGAIN || error == EINTR; }

class DeviceLink : public ByteLink
{
public:
    explicit DeviceLink(const QString& file) : m_file(file)
    {
        m_pause.setSingleShot(true);
        m_pause.setInterval(50);
        connect(&m_pause, &QTimer::timeout, this, [this] {
            if (m_canRead)
                m_canRead->setEnabled(true);
        });
    }
    ~DeviceLink() override { release(); }
    Q_DISABLE_COPY_MOVE(DeviceLink)

    void open() override
    {
        m_handle = ::open(QFile::encodeName(m_file).constData(),
                          O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (m_handle < 0)
            return reportLater(errno);
        makeRaw();
        m_canRead = std::make_unique<QSocketNotifier>(m_handle, QSocketNotifier::Read);
        m_canWrite = std::make_unique<QSocketNotifier>(m_handle, QSocketNotifier::Write);
        m_canWrite->setEnabled(false);
        connect(m_canRead.get(), &QSocketNotifier::activated, this, [this] { receive(); });
        connect(m_canWrite.get(), &QSocketNotifier::activated, this, [this] { send(); });
        QMetaObject::invokeMethod(this, &DeviceLink::opened, Qt::QueuedConnection);
    }

    void close() override { release(); }

    void write(const QByteArray& bytes) override
    {
        if (m_handle < 0)
            return;
        m_toWrite += bytes;
        m_canWrite->setEnabled(true);
    }

    qint64 bytesToWrite() const override { return m_toWrite.size(); }

private:
    /// A terminal line passes all bytes as they are.
    void makeRaw() const
    {
        termios settings = {};
        if (::tcgetattr(m_handle, &settings) != 0)
            return; // no terminal line
        ::cfmakeraw(&settings);
        ::tcsetattr(m_handle, TCSANOW, &settings);
        ::tcflush(m_handle, TCIFLUSH);
    }

    void receive()
    {
        std::array<char, 4096> bytes = {};
        const auto count = ::read(m_handle, bytes.data(), bytes.size());
        if (count > 0) {
            emit received(QByteArray(bytes.data(), static_cast<int>(count)));
        } else if (count == 0) {
            m_canRead->setEnabled(false); // some printers send empty packets
            m_pause.start();
        } else if (!isLater(errno)) {
            fail(errno);
        }
    }

    void send()
    {
        const auto count =
            ::write(m_handle, m_toWrite.constData(), static_cast<std::size_t>(m_toWrite.size()));
        if (count < 0) {
            if (!isLater(errno))
                fail(errno);
            return;
        }
        m_toWrite.remove(0, static_cast<int>(count));
        m_canWrite->setEnabled(!m_toWrite.isEmpty());
        if (count > 0)
            emit progress();
    }

    void fail(int error)
    {
        release();
        emit closed(systemText(error));
    }

    void reportLater(int error)
    {
        QTimer::singleShot(0, this, [this, error] { emit closed(systemText(error)); });
    }

    /// What a line still has to send would keep close() waiting.
    void release()
    {
        m_pause.stop();
        // They may be what is being called.
        for (auto* notifier : {&m_canRead, &m_canWrite}) {
            if (*notifier) {
                (*notifier)->setEnabled(false);
                notifier->release()->deleteLater();
            }
        }
        m_toWrite.clear();
        if (m_handle < 0)
            return;
        ::tcflush(m_handle, TCIOFLUSH);
        ::close(m_handle);
        m_handle = -1;
    }

    const QString m_file;
    int m_handle = -1;
    QByteArray m_toWrite;
    QTimer m_pause;
    std::unique_ptr<QSocketNotifier> m_canRead;
    std::unique_ptr<QSocketNotifier> m_canWrite;
};

} // namespace

std::unique_ptr<ByteLink> makeDeviceLink(const QString& file)
{
    return std::make_unique<DeviceLink>(file);
}

} // namespace rivo::printer
