#pragma once

#include "sProduct.h"

#include <QVector>

/// Products of a list by destination zone, so that grouping all zones of a layout reads the list
/// once instead of once per zone.
///
/// The newest living index serves productsOf(). It shares the storage of its list: a list that was
/// changed since (a slot may do that in the middle of a layout) has other storage and is searched
/// from end to end instead. GUI thread only, like the models.
class ZoneIndex
{
public:
    explicit ZoneIndex(const QVector<sProduct>& products);
    ~ZoneIndex();
    Q_DISABLE_COPY_MOVE(ZoneIndex)

    const QVector<sProduct>& products() const { return m_products; }

    /// Zones of the list, ascending, each once.
    QVector<int> zones() const;

    /// Products of one zone, in the order of the list.
    static QVector<sProduct> productsOf(const QVector<sProduct>& products, int zone);

private:
    QVector<sProduct> productsOf(int zone) const;

    const QVector<sProduct> m_products;
    QVector<int> m_rows; // by zone, then in the order of the list
    const ZoneIndex* const m_outer;
};
