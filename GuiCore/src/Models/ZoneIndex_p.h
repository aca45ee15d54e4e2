#pragma once

#include "sProduct.h"

#include <QPair>
#include <QVector>

/// Products of a list by destination zone, so that grouping all zones of a layout reads the list
/// once instead of once per zone.
class ZoneIndex
{
public:
    explicit ZoneIndex(const QVector<sProduct>& products);

    /// Zones of the list, ascending, each once.
    QVector<int> zones() const;

    /// Products of one zone, in the order of the list. The index shares the storage of its list, so
    /// a list that was changed since (a slot may do that in the middle of a layout) is known by its
    /// other storage and indexed anew.
    QVector<sProduct> productsOf(const QVector<sProduct>& products, int zone);

private:
    /// Zone and row of a product. The zone is here to be sorted and found by: products are far
    /// apart in memory, which costs a large list more than the sorting.
    using Place = QPair<int, int>;

    void build(const QVector<sProduct>& products);

    QVector<sProduct> m_products;
    QVector<Place> m_places; // ascending
};
