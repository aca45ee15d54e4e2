#pragma once

#include "HttpServer.h"

#include <Database.h>
#include <VehiclePositions.h>

#include <QDateTime>
#include <QElapsedTimer>

#include <functional>
#include <optional>

namespace rivo::backoffice
{

/// The web page of the office: the files of the page, and what it shows as JSON. Nothing is written
/// to the database.
class FleetPage
{
public:
    static constexpr int pause = 2000;     ///< milliseconds until the database is asked again
    static constexpr int mostSeconds = 10; ///< that a statement may take

    /// `routes`: the JSON of routeLines().
    FleetPage(const DatabaseSettings& database, const QByteArray& routes);

    /// "/", the files of the page, "/routes.json", "/fleet.json", and "/vehicle-positions.pb" for
    /// public apps; 503 for the last two while the database is away.
    HttpAnswer answer(const QByteArray& path);

private:
    /// The last answer.
    struct Kept
    {
        std::optional<QByteArray> content;
        QElapsedTimer since;
    };
    using Maker =
        std::function<std::optional<QByteArray>(Database& database, const QDateTime& now)>;

    HttpAnswer answered(Kept& kept, const QByteArray& type, const Maker& make);

    const QByteArray m_routes;
    Database m_database;
    bool m_isConnected = false;
    Kept m_fleet;
    Kept m_positions;
    PublicPositions m_publicPositions;
};

} // namespace rivo::backoffice
