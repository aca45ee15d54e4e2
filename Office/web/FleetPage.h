#pragma once

#include "HttpServer.h"

#include <Database.h>

#include <QDateTime>
#include <QElapsedTimer>

#include <optional>

namespace rivo::backoffice
{

/// The web page of the office: the files of the page, and what it shows as JSON. Nothing is written
/// to the database.
class FleetPage
{
public:
    static constexpr int pause = 2000; ///< milliseconds until the database is asked again

    explicit FleetPage(const DatabaseSettings& database);

    /// "/", the files of the page, "/fleet.json", and "/vehicle-positions.pb" for public apps; 503
    /// for these while the database is away.
    HttpAnswer answer(const QByteArray& path);

private:
    /// The last answer.
    struct Kept
    {
        std::optional<QByteArray> content;
        QElapsedTimer since;
    };
    using Maker = std::optional<QByteArray> (*)(Database& database, const QDateTime& now);

    HttpAnswer answered(Kept& kept, const QByteArray& type, Maker make);
    bool connect();

    Database m_database;
    bool m_isConnected = false;
    Kept m_fleet;
    Kept m_positions;
};

} // namespace rivo::backoffice
