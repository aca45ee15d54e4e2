#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

class QSocketNotifier;
class QTcpServer;
class QTcpSocket;

namespace rivo::simulators
{

class VirtualPrinter;

/// A printer in the network: one connection at a time, as most printers have. Keeps what is in the
/// printer when a connection ends.
class NetworkPort : public QObject
{
    Q_OBJECT

public:
    /// `printer` outlives the port.
    explicit NetworkPort(VirtualPrinter& printer, QObject* parent = nullptr);

    /// Port 0 is any that is free. False if it is taken.
    bool listen(int port);
    int port() const;

    /// Ends the connection after so many further bytes from the host; the rest is lost.
    void dropAfter(qint64 bytes) { m_bytesToDrop = bytes; }

    /// Takes no connection while it is unplugged, and ends the one there is.
    void setPlugged(bool isPlugged);

private:
    void accept();
    void receive();
    void drop();

    VirtualPrinter& m_printer;
    QTcpServer* const m_server;
    QTcpSocket* m_socket = nullptr;
    qint64 m_bytesToDrop = -1;
    bool m_isPlugged = true;
};

/// A printer at a pseudo terminal.
class LinePort : public QObject
{
    Q_OBJECT

public:
    /// `printer` outlives the port.
    explicit LinePort(VirtualPrinter& printer, QObject* parent = nullptr);
    ~LinePort() override;

    /// False if the system has no pseudo terminal left.
    bool open();
    QString name() const { return m_name; } ///< file that a host opens
    void unplug();                          ///< the file is gone

private:
    void receive();

    VirtualPrinter& m_printer;
    int m_handle = -1;
    int m_hostSide = -1; ///< kept open, so that hosts may come and go
    QString m_name;
    QSocketNotifier* m_canRead = nullptr;
};

} // namespace rivo::simulators
