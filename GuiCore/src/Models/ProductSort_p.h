#pragma once

#include "sProduct.h"

#include <QVector>

#include <algorithm>
#include <utility>
#include <vector>

// Sorting of records by what the layouts order them by.

inline int positionOf(const sProduct& product) { return product.pos; }

inline int zoneOf(const sProduct& product) { return product.toStopGroupId; }

inline int typeOf(const sProduct& product) { return product.passengerTypeCode; }

inline std::pair<int, int> fareProductAndZoneOf(const sProduct& product)
{
    return {product.fareProductId, product.toStopGroupId};
}

/// Sorts by a key; products of the same key keep their order. Keys and rows are sorted, then each
/// product is moved once: a product is some ten times as large, and a stable sort of products moves
/// each many times and makes as many more for its buffer.
template <class Key>
void sortBy(QVector<sProduct>& products, Key (*keyOf)(const sProduct&))
{
    std::vector<std::pair<Key, int>> places;
    places.reserve(static_cast<std::size_t>(products.size()));
    for (int row = 0; row < products.size(); ++row)
        places.emplace_back(keyOf(products.at(row)), row);
    std::sort(places.begin(), places.end());

    QVector<sProduct> sorted;
    sorted.reserve(products.size());
    for (const auto& place : places)
        sorted.append(std::move(products[place.second]));
    products = std::move(sorted);
}
