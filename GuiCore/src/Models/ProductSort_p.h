#pragma once

#include "sProduct.h"

#include <QVector>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

// Sorting of records by what the layouts order them by.

inline int positionOf(const sProduct& product) { return product.pos; }

inline int zoneOf(const sProduct& product) { return product.toStopGroupId; }

inline int typeOf(const sProduct& product) { return product.passengerTypeCode; }

inline std::pair<int, int> fareProductAndZoneOf(const sProduct& product)
{
    return {product.fareProductId, product.toStopGroupId};
}

/// Puts the product of row rows[k].second into row k, for every k, and moves each once.
template <class Key>
void moveToRows(QVector<sProduct>& products, std::pair<Key, int>* rows)
{
    sProduct* const moved = products.data();
    for (int first = 0; first < products.size(); ++first) {
        if (rows[first].second == first)
            continue;
        sProduct displaced = std::move(moved[first]);
        int row = first;
        while (rows[row].second != first) {
            const int source = std::exchange(rows[row].second, row);
            moved[row] = std::move(moved[source]);
            row = source;
        }
        rows[row].second = row;
        moved[row] = std::move(displaced);
    }
}

/// Sorts in place by a key; products of the same key keep their order. Keys and rows are sorted,
/// then each product is moved once: a product is some ten times as large, and a stable sort of
/// products moves each many times. Without memory for the keys it sorts the products themselves.
template <class Key>
void sortBy(QVector<sProduct>& products, Key (*keyOf)(const sProduct&))
{
    using Row = std::pair<Key, int>;
    const int count = static_cast<int>(products.size());
    const std::unique_ptr<Row[]> rows(new (std::nothrow) Row[static_cast<std::size_t>(count)]);
    if (!rows) {
        std::stable_sort(
            products.begin(), products.end(),
            [keyOf](const sProduct& a, const sProduct& b) { return keyOf(a) < keyOf(b); });
        return;
    }
    for (int row = 0; row < count; ++row)
        rows.get()[row] = {keyOf(products.at(row)), row};
    std::sort(rows.get(), rows.get() + count);
    moveToRows(products, rows.get());
}
