#pragma once

#include "GtfsTables_p.h"

#include <QHash>
#include <QPair>
#include <QString>
#include <QVector>

namespace rivo::feed::gtfs
{

/// Reads the fares of a folder and makes products of them.
class Products
{
public:
    explicit Products(Folder& folder) : m_folder(folder) {}

    /// Reads rider categories, their mapping, media, areas, fare products and leg rules.
    void read();
    /// One product per offer and pair of areas; more than the limit allows are a problem.
    void addTo(Feed& feed);
    void noticeUnmappedCategories();

    /// The areas, to which further files refer.
    Ids& areas() { return m_areaIds; }
    int numberOfArea(const QString& area) const { return m_areaNumbers.value(area); }

private:
    using Tuple = QPair<QString, QPair<QString, QString>>;
    using AreaPair = QPair<QString, QString>;

    void readCategories();
    void readMapping();
    void takeGivenTypes();
    void map(const MappingRow& row, TableReport& table);
    void readMedia();
    void readAreas();
    void readProducts();
    void checkCurrency(const ProductRow& row, TableReport& table);
    void readLegRules();
    FeedProduct toProduct(const ProductRow& row) const;
    QString nameOf(const QString& category) const;
    QString nameOf(const ProductRow& row) const;

    Folder& m_folder;
    Ids m_categoryIds;
    Ids m_mediumIds;
    Ids m_areaIds;
    Ids m_productIds;
    QVector<CategoryRow> m_categories; ///< in the order of m_categoryIds
    QVector<AreaRow> m_areas;
    QString m_defaultCategory;
    QString m_currency;
    QHash<QString, QString> m_types; ///< category to passenger type text
    QHash<QString, QString> m_mediumNames;
    QVector<ProductRow> m_products;
    QHash<QString, QVector<AreaPair>> m_areaPairs; ///< of a fare product
    QHash<QPair<QString, QString>, int> m_offers;  ///< rows per fare product and category
    QHash<QString, int> m_categoryNumbers;
    QHash<QString, int> m_areaNumbers;
};

} // namespace rivo::feed::gtfs
