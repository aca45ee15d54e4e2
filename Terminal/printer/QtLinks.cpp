#include "ByteLink.h"

#include <Config.h>

#include <QSerialPort>
#include <QTcpSocket>
#include <QTimer>

namespace rivo::printer
{

namespace
{

class SerialLink : public ByteLink
{
public:
    explicit SerialLink(const config::SerialLine& line)
    {
        m_port.setPortName(line.port);
        m_port.setBaudRate(line.baud);
        m_port.setParity(line.parity == QLatin1String("even")  ? QSerialPort::EvenParity
                         : line.parity == QLatin1String("odd") ? QSerialPort::OddParity
                                                               : QSerialPort::NoParity);
        m_port.setFlowControl(
            line.flowControl == QLatin1String("hardware")   ? QSerialPort::HardwareControl
            : line.flowControl == QLatin1String("software") ? QSerialPort::SoftwareControl
                                                            : QSerialPort::NoFlowControl);
        connect(&m_port, &QSerialPort::readyRead, this,
                [this] { emit received(m_port.readAll()); });
        connect(&m_port, &QSerialPort::bytesWritten, this, &SerialLink::progress);
        connect(&m_port, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError e) {
            if (e != QSerialPort::NoError && m_port.isOpen())
                QTimer::singleShot(0, this, [this] { fail(); }); // not from within the port
        });
    }
    ~SerialLink() override { closePort(); }
    Q_DISABLE_COPY_MOVE(SerialLink)

    void open() override
    {
        const bool isOpen = m_port.open(QIODevice::ReadWrite);
        const QString reason = m_port.errorString();
        QTimer::singleShot(0, this, [this, isOpen, reason] {
            if (isOpen)
                emit opened();
            else
                emit closed(reason);
        });
    }

    void close() override { closePort(); }

    void write(const QByteArray& bytes) override
    {
        if (m_port.isOpen())
            m_port.write(bytes);
    }

    qint64 bytesToWrite() const override { return m_port.bytesToWrite(); }

private:
    /// What the line still has to send would keep it waiting.
    void closePort()
    {
        if (!m_port.isOpen())
            return;
        m_port.clear();
        m_port.close();
    }

    void fail()
    {
        if (!m_port.isOpen())
            return;
        const QString reason = m_port.errorString();
        close();
        emit closed(reason);
    }

    QSerialPort m_port;
};

class TcpLink : public ByteLink
{
public:
    explicit TcpLink(config::TcpAddress address) : m_address(std::move(address))
    {
        connect(&m_socket, &QTcpSocket::connected, this, [this] {
            m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            emit opened();
        });
        connect(&m_socket, &QTcpSocket::readyRead, this,
                [this] { emit received(m_socket.readAll()); });
        connect(&m_socket, &QTcpSocket::bytesWritten, this, &TcpLink::progress);
        connect(&m_socket, &QTcpSocket::errorOccurred, this, [this] {
            const QString reason = m_socket.errorString();
            QTimer::singleShot(0, this, [this, reason] {
                if (!m_isWanted)
                    return;
                close();
                emit closed(reason);
            });
        });
    }

    void open() override
    {
        m_isWanted = true;
        m_socket.connectToHost(m_address.host, static_cast<quint16>(m_address.port));
    }

    void close() override
    {
        m_isWanted = false;
        m_socket.abort();
    }

    void write(const QByteArray& bytes) override
    {
        if (m_socket.state() == QAbstractSocket::ConnectedState)
            m_socket.write(bytes);
    }

    qint64 bytesToWrite() const override { return m_socket.bytesToWrite(); }

private:
    const config::TcpAddress m_address;
    QTcpSocket m_socket;
    bool m_isWanted = false;
};

} // namespace

std::unique_ptr<ByteLink> makeSerialLink(const config::SerialLine& line)
{
    return std::make_unique<SerialLink>(line);
}

std::unique_ptr<ByteLink> makeTcpLink(const config::TcpAddress& address)
{
    return std::make_unique<TcpLink>(address);
}

std::unique_ptr<ByteLink> makeLink(const config::PrinterConfig& config)
{
    if (config.tcp)
        return makeTcpLink(*config.tcp);
    if (config.serial)
        return makeSerialLink(*config.serial);
    return makeDeviceLink(config.device);
}

} // namespace rivo::printer
