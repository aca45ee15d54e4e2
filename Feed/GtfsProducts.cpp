#include "GtfsProducts_p.h"

#include "PassengerTypes.h"

#include <QSet>

namespace rivo::feed::gtfs
{

namespace
{

QString knownTypes()
{
    return QLatin1String("one of ") + passengerTypeTexts().join(QLatin1String(", "));
}

void checkAmount(const ProductRow& row, TableReport& table)
{
    const int point = row.amount.indexOf(QLatin1Char('.'));
    const int digits = point < 0 ? 0 : row.amount.size() - point - 1;
    const int decimals = currencyDecimals(row.currency);
    bool isConverted = false;
    const double amount = row.amount.toDouble(&isConverted);
    if (!row.amount.isEmpty() && (!isConverted || !priceRule.allows(amount) || digits > decimals))
        table.problem(row, "amount", row.amount,
                      QStringLiteral("%1 with at most %2 decimals")
                          .arg(priceRule.inWords("a decimal number"))
                          .arg(decimals));
}

} // namespace

void Products::read()
{
    readCategories();
    readMapping();
    takeGivenTypes();
    readMedia();
    readAreas();
    readProducts();
    readLegRules();
}

void Products::readCategories()
{
    const bool isWhole = m_folder.readIfThere<CategoryRow>(
        categoriesFile, [this](const CategoryRow& row, TableReport& table) {
            if (!table.define(m_categoryIds, row, "rider_category_id", row.id))
                return;
            m_categories.append(row);
            if (row.isDefault == 0)
                return;
            if (!m_defaultCategory.isEmpty())
                table.problem(
                    row, "is_default_fare_category", QStringLiteral("1"),
                    QStringLiteral("one default category, which is %1").arg(m_defaultCategory));
            m_defaultCategory = row.id;
        });
    // A product cannot do without the category it names, so a missing file defines none.
    m_categoryIds.setDefined(isWhole || !m_folder.isThere(categoriesFile));
}

void Products::readMapping()
{
    const QString& given = m_folder.options().mappingFile;
    if (!given.isEmpty() || m_folder.isThere(mappingFile))
        m_folder.read<MappingRow>(
            given.isEmpty() ? m_folder.pathOf(mappingFile) : given,
            [this](const MappingRow& row, TableReport& table) { map(row, table); });
}

void Products::takeGivenTypes()
{
    TableReport table(m_folder.path(), m_folder.report());
    const auto& given = m_folder.options().riderCategories;
    for (auto entry = given.begin(); entry != given.end(); ++entry) {
        const QString name = QLatin1String("rider category ") + entry.key();
        if (m_categoryIds.isDefined() && !m_categoryIds.contains(entry.key()))
            table.problem(0, name, QStringLiteral("unknown"), idOf(categoriesFile));
        if (passengerTypeNumber(entry.value()) == 0)
            table.problem(0, name, quoted(entry.value()), knownTypes());
        m_types.insert(entry.key(), entry.value());
    }
}

void Products::map(const MappingRow& row, TableReport& table)
{
    table.checkReference(m_categoryIds, categoriesFile, row, "rider_category_id", row.category);
    if (!row.passengerType.isEmpty() && passengerTypeNumber(row.passengerType) == 0)
        table.problem(row, "passenger_type", row.passengerType, knownTypes());
    if (m_types.contains(row.category) && !row.category.isEmpty())
        table.problem(row, "rider_category_id", row.category, QStringLiteral("each category once"));
    m_types.insert(row.category, row.passengerType);
}

void Products::readMedia()
{
    const bool isWhole = m_folder.readIfThere<MediumRow>(
        mediaFile, [this](const MediumRow& row, TableReport& table) {
            if (table.define(m_mediumIds, row, "fare_media_id", row.id))
                m_mediumNames.insert(row.id, row.name);
        });
    m_mediumIds.setDefined(isWhole);
}

void Products::readAreas()
{
    const bool isWhole =
        m_folder.readIfThere<AreaRow>(areasFile, [this](const AreaRow& row, TableReport& table) {
            if (table.define(m_areaIds, row, "area_id", row.id))
                m_areas.append(row);
        });
    m_areaIds.setDefined(isWhole);
}

void Products::readProducts()
{
    QSet<Tuple> tuples;
    const bool isWhole = m_folder.read<ProductRow>(
        m_folder.pathOf(productsFile), [&](const ProductRow& row, TableReport& table) {
            table.checkReference(m_categoryIds, categoriesFile, row, "rider_category_id",
                                 row.category);
            table.checkReference(m_mediumIds, mediaFile, row, "fare_media_id", row.medium);
            checkAmount(row, table);
            checkCurrency(row, table);
            const Tuple tuple(row.product, {row.category, row.medium});
            if (tuples.contains(tuple) && !row.product.isEmpty())
                table.problem(
                    row, "fare_product_id", row.product,
                    QStringLiteral("each fare product once per rider category and medium"));
            tuples.insert(tuple);
            m_productIds.add(row.product);
            m_products.append(row);
        });
    m_productIds.setDefined(isWhole);
}

void Products::checkCurrency(const ProductRow& row, TableReport& table)
{
    if (m_currency.isEmpty())
        m_currency = row.currency;
    if (!row.currency.isEmpty() && row.currency != m_currency)
        table.problem(row, "currency", row.currency,
                      m_currency + QLatin1String(", one currency for the whole feed"));
}

void Products::readLegRules()
{
    QSet<Tuple> rules;
    m_folder.readIfThere<LegRuleRow>(legRulesFile, [&](const LegRuleRow& row, TableReport& table) {
        table.checkReference(m_productIds, productsFile, row, "fare_product_id", row.product);
        table.referToArea(m_areaIds, row, "from_area_id", row.fromArea);
        table.referToArea(m_areaIds, row, "to_area_id", row.toArea);
        const Tuple rule(row.product, {row.fromArea, row.toArea});
        if (!rules.contains(rule))
            m_areaPairs[row.product].append(rule.second);
        rules.insert(rule);
    });
}

void Products::addTo(Feed& feed)
{
    const QVector<AreaPair> anywhere(1);
    const int limit = m_folder.options().limits.entries;
    qint64 count = 0;
    for (const ProductRow& row : qAsConst(m_products)) {
        count += m_areaPairs.value(row.product, anywhere).size();
        ++m_offers[{row.product, row.category}];
    }
    if (count > limit) {
        TableReport(m_folder.pathOf(productsFile), m_folder.report())
            .problem(0, {}, QStringLiteral("%1 products over all areas").arg(count),
                     QStringLiteral("at most %1").arg(limit));
        return;
    }
    m_categoryNumbers = m_categoryIds.numbers();
    m_areaNumbers = m_areaIds.numbers();
    feed.currency = m_currency;
    for (const AreaRow& area : qAsConst(m_areas))
        feed.network.zones.append({numberOfArea(area.id), area.name});
    for (const ProductRow& row : qAsConst(m_products)) {
        FeedProduct product = toProduct(row);
        for (const AreaPair& pair : m_areaPairs.value(row.product, anywhere)) {
            product.fromStopGroupId = numberOfArea(pair.first);
            product.toStopGroupId = numberOfArea(pair.second);
            feed.products.append(product);
        }
    }
    feed.supportedPassengerTypes = passengerTypesOf(feed.products);
}

FeedProduct Products::toProduct(const ProductRow& row) const
{
    FeedProduct product;
    const QString category = row.category.isEmpty() ? m_defaultCategory : row.category;
    if (category.isEmpty()) {
        product.description = QStringLiteral("Anyone");
        product.passengerTypeCode = QStringLiteral("PT_ADULT");
    } else {
        product.description = nameOf(category);
        product.passengerTypeId = m_categoryNumbers.value(category);
        product.passengerTypeCode = m_types.value(category, category);
    }
    product.fareProductId = m_productIds.indexOf(row.product) + 1;
    product.fareProductName = nameOf(row);
    product.price = row.amount.toDouble();
    return product;
}

QString Products::nameOf(const QString& category) const
{
    const QString name = m_categories.at(m_categoryIds.indexOf(category)).name;
    return name.isEmpty() ? category : name;
}

/// The fare product's name, with the medium where two offers differ in nothing else.
QString Products::nameOf(const ProductRow& row) const
{
    QString name = row.name.isEmpty() ? row.product : row.name;
    if (row.medium.isEmpty() || m_offers.value({row.product, row.category}) < 2)
        return name;
    const QString medium = m_mediumNames.value(row.medium);
    return QStringLiteral("%1 (%2)").arg(name, medium.isEmpty() ? row.medium : medium);
}

void Products::noticeUnmappedCategories()
{
    for (const CategoryRow& row : qAsConst(m_categories)) {
        if (!m_types.contains(row.id))
            m_folder.report().add(FeedNotice{
                m_folder.pathOf(categoriesFile), row.line,
                QStringLiteral("rider category %1 (%2) is mapped to no passenger type, taken as "
                               "type 0")
                    .arg(quoted(row.id), nameOf(row.id))});
    }
}

} // namespace rivo::feed::gtfs
