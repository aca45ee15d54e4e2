#pragma once

#include <Feed.h>

#include <QByteArray>

namespace rivo::backoffice
{

constexpr int mostRouteLines = 2000;  ///< further ones are left out
constexpr int mostPointsOfLine = 200; ///< of a longer one every second, third, ... point is taken

/// The ways of all trips, each once, as JSON: {"lines": [[[54.1, -2.9], ...], ...]}, latitude and
/// longitude in degrees. The way of a trip is its shape, or straight from stop to stop.
QByteArray routeLines(const feed::Network& network);

} // namespace rivo::backoffice
