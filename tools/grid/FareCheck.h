#pragma once

#include <Feed.h>

#include <QByteArray>

/// What an operator should know of the fares of a feed: products that are never sold, stops without
/// an area, rules whose priorities overlap, rider categories without a passenger type. Empty for a
/// JSON feed without findings.
QByteArray checkFares(const rivo::feed::Feed& feed);
