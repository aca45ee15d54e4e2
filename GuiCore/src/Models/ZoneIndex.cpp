#include "ZoneIndex.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace
{

ZoneIndex* newestIndex = nullptr;

} // namespace

ZoneIndex::ZoneIndex(const QVector<sProduct>& products) : m_outer(newestIndex)
{
    build(products);
    newestIndex = this;
}

ZoneIndex::~ZoneIndex()
{
    Q_ASSERT(newestIndex == this);
    newestIndex = m_outer;
}

void ZoneIndex::build(const QVector<sProduct>& products)
{
    m_products = products;
    m_rows.resize(products.size());
    std::iota(m_rows.begin(), m_rows.end(), 0);
    std::stable_sort(m_rows.begin(), m_rows.end(), [this](int a, int b) {
        return m_products.at(a).toStopGroupId < m_products.at(b).toStopGroupId;
    });
}

QVector<int> ZoneIndex::zones() const
{
    QVector<int> zones;
    for (const int row : m_rows) {
        const int zone = m_products.at(row).toStopGroupId;
        if (zones.isEmpty() || zones.last() != zone)
            zones.append(zone);
    }
    return zones;
}

QVector<sProduct> ZoneIndex::productsOf(const QVector<sProduct>& products, int zone)
{
    if (newestIndex) {
        if (newestIndex->m_products.constData() != products.constData())
            newestIndex->build(products);
        return newestIndex->block(zone);
    }
    QVector<sProduct> found;
    std::copy_if(products.cbegin(), products.cend(), std::back_inserter(found),
                 [zone](const sProduct& product) { return product.toStopGroupId == zone; });
    return found;
}

QVector<sProduct> ZoneIndex::block(int zone) const
{
    const auto first =
        std::lower_bound(m_rows.cbegin(), m_rows.cend(), zone, [this](int row, int value) {
            return m_products.at(row).toStopGroupId < value;
        });
    QVector<sProduct> found;
    for (auto row = first; row != m_rows.cend(); ++row) {
        const sProduct& product = m_products.at(*row);
        if (product.toStopGroupId != zone)
            break;
        found.append(product);
    }
    return found;
}
