#pragma once

#include "HttpServer.h"

#include <Database.h>
#include <Feed.h>

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

    /// `network`: whose routes the map has.
    explicit FleetPage(const DatabaseSettings& database, const feed::Network& network = {});

    /// "/", the files of the page, "/routes.json", and "/fleet.json" and "/vehicle-positions.pb",
    /// which is for public apps; 503 for these two while the database is away.
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
    const QByteArray m_routes;
    bool m_isConnected = false;
    Kept m_fleet;
    Kept m_positions;
};

} // namespace rivo::backoffice
