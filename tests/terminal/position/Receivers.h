#pragma once

#include "VehiclePosition.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <memory>

/// What the tests of receivers share: clocks, settings and the lines of gpsd.
namespace rivo::receivers
{

inline const QDateTime midnight(QDate(2026, 3, 22), QTime(0, 0), Qt::UTC);

/// Clocks that stand still until a test moves them.
struct TestClocks
{
    qint64 even = 1000;
    QDateTime system = midnight;

    position::VehiclePosition::Clocks clocks()
    {
        return {[this] { return even; }, [this] { return system; }};
    }
    void pass(qint64 milliseconds)
    {
        even += milliseconds;
        system = system.addMSecs(milliseconds);
    }
};

inline position::SourceSettings
serial(const QString& device,
       position::SourceSettings::Kind kind = position::SourceSettings::Serial)
{
    position::SourceSettings settings;
    settings.kind = kind;
    settings.device = device;
    settings.firstRetry = 10;
    settings.lastRetry = 40;
    return settings;
}

inline position::SourceSettings gpsd(quint16 port)
{
    position::SourceSettings settings = serial(QString(), position::SourceSettings::Gpsd);
    settings.port = port;
    return settings;
}

inline QByteArray tpv(double east, const char* time = "2026-03-22T08:00:00.000Z")
{
    return QByteArray("{\"class\":\"TPV\",\"mode\":3,\"lat\":0.0,\"lon\":") +
           QByteArray::number(east / 1000.0, 'f', 7) + ",\"speed\":8.0,\"track\":90.0,\"time\":\"" +
           time + "\"}\r\n";
}

/// Takes the first connection and reads what it asks.
inline std::unique_ptr<QTcpSocket> nextClient(QTcpServer& server)
{
    if (!QTest::qWaitFor([&server] { return server.hasPendingConnections(); }))
        return nullptr;
    std::unique_ptr<QTcpSocket> client(server.nextPendingConnection());
    const bool hasAsked = QTest::qWaitFor([&client] { return client->canReadLine(); });
    return hasAsked ? std::move(client) : nullptr;
}

} // namespace rivo::receivers
