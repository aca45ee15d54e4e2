#pragma once

#include "Feed.h"
#include "Offers.h"

namespace rivo::feed
{

/// The offers as products of the grid. Passenger types are the rider categories as the feed maps
/// them; zones are the numbers of the areas, 0 for none.
QVector<FeedProduct> productsOf(const Tariff& tariff, const QVector<Offer>& offers);

} // namespace rivo::feed
