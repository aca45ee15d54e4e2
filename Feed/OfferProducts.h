#pragma once

#include "Feed.h"
#include "Offers.h"

namespace rivo::feed
{

/// The offers as products of the grid: those of the feed that are offered, or of GTFS fares new
/// ones. Their passenger types are the rider categories as the feed maps them; zones are the
/// numbers of the areas, 0 for none.
QVector<FeedProduct> productsOf(const Feed& feed, const QVector<Offer>& offers);

/// As above for GTFS fares alone.
QVector<FeedProduct> productsOf(const Tariff& tariff, const QVector<Offer>& offers);

} // namespace rivo::feed
