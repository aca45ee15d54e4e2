#include "SerialSource_p.h"

namespace rivo::position
{

SerialSource::SerialSource(const SourceSettings& settings) : PositionSource(settings)
{
    connect(&m_port, &QSerialPort::readyRead, this, &SerialSource::read);
    // Queued: the port is in the middle of something when it reports an error.
    connect(
        &m_port, &QSerialPort::errorOccurred, this,
        [this](QSerialPort::SerialPortError error) {
            if (error != QSerialPort::NoError && isConnected())
                disconnected(m_port.errorString());
        },
        Qt::QueuedConnection);
}

void SerialSource::connectDevice()
{
    m_port.setPortName(settings().device);
    m_port.setBaudRate(settings().baud);
    m_reader.clear();
    if (m_port.open(QIODevice::ReadOnly))
        connected();
    else
        disconnected(m_port.errorString());
}

void SerialSource::closeDevice()
{
    if (m_port.isOpen())
        m_port.close();
}

void SerialSource::read()
{
    const QByteArray bytes = m_port.readAll();
    heard();
    report(m_reader.read(bytes));
}

} // namespace rivo::position
