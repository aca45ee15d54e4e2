#include "PrinterPorts.h"

#include "VirtualPrinter.h"

#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace rivo::simulators
{

NetworkPort::NetworkPort(VirtualPrinter& printer, QObject* parent)
    : QObject(parent), m_printer(printer), m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, &NetworkPort::accept);
    connect(&printer, &VirtualPrinter::answered, this, [this](const QByteArray& bytes) {
        if (m_socket != nullptr)
            m_socket->write(bytes);
    });
}

bool NetworkPort::listen(int port)
{
    return m_server->listen(QHostAddress::Any, static_cast<quint16>(port));
}

int NetworkPort::port() const { return m_server->serverPort(); }

void NetworkPort::accept()
{
    while (QTcpSocket* const socket = m_server->nextPendingConnection()) {
        if (!m_isPlugged) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        drop(); // the host came again
        m_socket = socket;
        m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(m_socket, &QTcpSocket::readyRead, this, &NetworkPort::receive);
        connect(m_socket, &QTcpSocket::disconnected, this, [this, socket] {
            if (m_socket == socket)
                drop();
        });
        receive();
    }
}

void NetworkPort::receive()
{
    if (m_socket == nullptr)
        return;
    const QByteArray bytes = m_socket->readAll();
    if (m_bytesToDrop < 0 || bytes.size() < m_bytesToDrop) {
        m_bytesToDrop -= m_bytesToDrop < 0 ? 0 : bytes.size();
        m_printer.receive(bytes);
        return;
    }
    const QByteArray first = bytes.left(static_cast<int>(m_bytesToDrop));
    m_bytesToDrop = -1;
    drop();
    m_printer.receive(first);
}

void NetworkPort::drop()
{
    QTcpSocket* const socket = m_socket;
    m_socket = nullptr;
    if (socket == nullptr)
        return;
    socket->disconnect(this);
    socket->abort();
    socket->deleteLater();
}

void NetworkPort::setPlugged(bool isPlugged)
{
    m_isPlugged = isPlugged;
    if (!m_isPlugged)
        drop();
}

LinePort::LinePort(VirtualPrinter& printer, QObject* parent) : QObject(parent), m_printer(printer)
{
    connect(&printer, &VirtualPrinter::answered, this, [this](const QByteArray& bytes) {
        // What a host does not read is lost, as on a line.
        if (m_handle >= 0 &&
            ::write(m_handle, bytes.constData(), static_cast<std::size_t>(bytes.size())) < 0)
            return;
    });
}

LinePort::~LinePort() { unplug(); }

bool LinePort::open()
{
    m_handle = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_handle < 0 || ::grantpt(m_handle) != 0 || ::unlockpt(m_handle) != 0)
        return false;
    m_name = QString::fromLocal8Bit(::ptsname(m_handle));
    m_hostSide = ::open(::ptsname(m_handle), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings = {};
    if (m_hostSide < 0 || ::tcgetattr(m_hostSide, &settings) != 0)
        return false;
    ::cfmakeraw(&settings);
    ::tcsetattr(m_hostSide, TCSANOW, &settings);
    m_canRead = new QSocketNotifier(m_handle, QSocketNotifier::Read, this);
    connect(m_canRead, &QSocketNotifier::activated, this, &LinePort::receive);
    return true;
}

void LinePort::unplug()
{
    delete m_canRead;
    m_canRead = nullptr;
    for (int* handle : {&m_hostSide, &m_handle}) {
        if (*handle >= 0)
            ::close(*handle);
        *handle = -1;
    }
}

void LinePort::receive()
{
    std::array<char, 4096> bytes = {};
    const auto count = ::read(m_handle, bytes.data(), bytes.size());
    if (count > 0)
        m_printer.receive(QByteArray(bytes.data(), static_cast<int>(count)));
}

} // namespace rivo::simulators
