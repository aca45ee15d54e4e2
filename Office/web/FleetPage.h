#pragma once

#include "HttpServer.h"

#include <Database.h>

#include <QElapsedTimer>

namespace rivo::backoffice
{

/// The web page of the office: the files of the page, and what it shows as JSON. Nothing is written
/// to the database.
class FleetPage
{
public:
    static constexpr int pause = 2000; ///< milliseconds until the database is asked again

    explicit FleetPage(const DatabaseSettings& database);

    /// "/", the files of the page, and "/fleet.json"; 503 for that while the database is away.
    HttpAnswer answer(const QByteArray& path);

private:
    HttpAnswer fleet();
    bool connect();

    Database m_database;
    bool m_isConnected = false;
    QByteArray m_fleet; ///< the last answer
    QElapsedTimer m_since;
};

} // namespace rivo::backoffice
