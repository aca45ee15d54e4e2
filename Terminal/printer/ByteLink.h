#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

namespace rivo::config
{
struct PrinterConfig;
struct SerialLine;
struct TcpAddress;
} // namespace rivo::config

namespace rivo::printer
{

/// A connection to a device, byte by byte. No call waits for the device.
class ByteLink : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to connect; opened() or closed() follows from the event loop. Not while it is open.
    virtual void open() = 0;

    /// Ends the connection and forgets what was not sent. Without a signal.
    virtual void close() = 0;

    /// Sends bytes when the device takes them; without effect unless it is open.
    virtual void write(const QByteArray& bytes) = 0;

    /// Bytes that the device did not take yet.
    virtual qint64 bytesToWrite() const = 0;

signals:
    void opened();
    void closed(const QString& reason); ///< it could not be opened, or broke
    void received(const QByteArray& bytes);
    void progress(); ///< the device took bytes
};

/// A device file such as /dev/usb/lp0, or a terminal line as it is set.
std::unique_ptr<ByteLink> makeDeviceLink(const QString& file);

std::unique_ptr<ByteLink> makeSerialLink(const config::SerialLine& line);

std::unique_ptr<ByteLink> makeTcpLink(const config::TcpAddress& address);

/// The connection that a configuration names.
std::unique_ptr<ByteLink> makeLink(const config::PrinterConfig& config);

} // namespace rivo::printer
