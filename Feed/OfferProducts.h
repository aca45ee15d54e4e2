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

/// The products that are sold on some route, at some stop and time, on media of types 0 and 1. All
/// products of a feed without a tariff.
QVector<FeedProduct> productsSoldSomewhere(const Feed& feed);

/// The passenger types that a grid of `products` is for: those of the feed, or of GTFS fares those
/// of the products.
QStringList passengerTypesFor(const Feed& feed, const QVector<FeedProduct>& products);

/// Who runs a route: the agency where a GTFS feed does not name its publisher, otherwise the
/// operator of the feed.
QString operatorOf(const Feed& feed, int route);

/// The catalogue of GTFS fares: an entry for each price of a product, with the rider categories
/// that pay it and the media it is sold on. Empty if that were more than mostOffers.
QVector<FeedFareProduct> fareProductsOf(const Tariff& tariff);

} // namespace rivo::feed
