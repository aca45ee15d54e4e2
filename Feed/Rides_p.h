#pragma once

#include "Tariff.h"

#include <QVector>

namespace rivo::feed
{

/// The rides that begin at one stop of one route.
struct Rides
{
    int route = -1;
    int from = -1;
    QVector<int> destinations; ///< distinct stops; empty at the last stop
};

/// The rides to `to`; to every stop that can be reached, if that is -1.
Rides ridesOf(const Tariff& tariff, int route, int from, int to);

} // namespace rivo::feed
