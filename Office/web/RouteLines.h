#pragma once

#include <QByteArray>

namespace rivo::feed
{
struct Network;
}

namespace rivo::backoffice
{

/// Where the routes of a feed run, for the map of the page.
struct RouteLines
{
    static constexpr int mostPoints = 40'000;   ///< of all lines
    static constexpr int mostBytes = 2'000'000; ///< of the JSON
    QByteArray json = "[]";                     ///< [{"route": name, "points": [latitude, ...]}]
    int count = 0;                              ///< lines in it
    int leftOut = 0;                            ///< lines that did not fit
};

/// A line for each shape of a route's trips, and from stop to stop for those of trips without a
/// shape. Long lines have fewer points if there are too many of all; then lines are left out, but
/// the first one of each route last.
RouteLines routeLines(const feed::Network& network);

} // namespace rivo::backoffice
