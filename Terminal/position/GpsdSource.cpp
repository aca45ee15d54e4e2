#include "GpsdSource_p.h"

namespace rivo::position
{

namespace
{

constexpr int timeToConnect = 10000; // milliseconds

} // namespace

GpsdSource::GpsdSource(const SourceSettings& settings) : PositionSource(settings)
{
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(timeToConnect);
    connect(&m_socket, &QTcpSocket::connected, this, [this] {
        m_deadline.stop();
        m_socket.write(GpsdReader::request());
        connected();
    });
    connect(&m_socket, &QTcpSocket::readyRead, this, &GpsdSource::read);
    // Queued: the socket is in the middle of something when it reports an error.
    connect(
        &m_socket, &QTcpSocket::errorOccurred, this, [this] { lose(m_socket.errorString()); },
        Qt::QueuedConnection);
    connect(&m_deadline, &QTimer::timeout, this, [this] { disconnected(tr("no answer")); });
}

void GpsdSource::connectDevice()
{
    m_reader.clear();
    m_deadline.start();
    m_socket.connectToHost(settings().host, settings().port);
}

/// An error that was reported before the socket was closed is over.
void GpsdSource::lose(const QString& problem)
{
    if (isConnected() || m_deadline.isActive())
        disconnected(problem);
}

void GpsdSource::closeDevice()
{
    m_deadline.stop();
    m_socket.abort();
}

void GpsdSource::read()
{
    const QByteArray bytes = m_socket.readAll();
    heard();
    report(m_reader.read(bytes));
}

} // namespace rivo::position
