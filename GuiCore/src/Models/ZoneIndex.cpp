#include "ZoneIndex_p.h"

#include <algorithm>

ZoneIndex::ZoneIndex(const QVector<sProduct>& products) { build(products); }

void ZoneIndex::build(const QVector<sProduct>& products)
{
    m_products = products;
    m_places.clear();
    m_places.reserve(products.size());
    for (const sProduct& product : products)
        m_places.append({product.toStopGroupId, m_places.size()});
    std::sort(m_places.begin(), m_places.end());
}

QVector<int> ZoneIndex::zones() const
{
    QVector<int> zones;
    for (const Place& place : m_places) {
        if (zones.isEmpty() || zones.last() != place.first)
            zones.append(place.first);
    }
    return zones;
}

QVector<sProduct> ZoneIndex::productsOf(const QVector<sProduct>& products, int zone)
{
    if (m_products.constData() != products.constData())
        build(products);
    const auto first = std::lower_bound(m_places.cbegin(), m_places.cend(), Place(zone, 0));
    const auto last = std::find_if(first, m_places.cend(),
                                   [zone](const Place& place) { return place.first != zone; });
    QVector<sProduct> found;
    found.reserve(int(last - first));
    for (auto place = first; place != last; ++place)
        found.append(m_products.at(place->second));
    return found;
}
