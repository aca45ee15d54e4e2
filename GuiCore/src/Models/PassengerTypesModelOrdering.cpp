#include "PassengerTypesModel.h"

#include "PassengerTypeItem.h"
#include "PositionLayout_p.h"
#include "ProductDump_p.h"
#include "ProductSort_p.h"
#include "ZoneIndex_p.h"
#include "ZoneLayout_p.h"

#include <core/Logging.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

namespace
{

/// Replaces `codes` by those of the texts, ascending, and keeps its storage.
void replaceByTypeCodes(QVector<int>& codes, const QStringList& texts)
{
    codes.resize(0);
    codes.reserve(texts.size());
    for (const QString& text : texts)
        codes.append(PassengerTypesModel::codeMap.value(text));
    std::sort(codes.begin(), codes.end());
}

std::string joined(const QVector<int>& values)
{
    std::string text;
    for (const int value : values)
        text += (text.empty() ? "" : ", ") + std::to_string(value);
    return text;
}

} // namespace

// Supported passenger types

void PassengerTypesModel::setSupportedPassengerTypeCodes(QStringList const& codes)
{
    replaceByTypeCodes(m_supportedTypeCodes, codes);

    if (m_typeCodesOrder.isEmpty()) {
        QString message = QStringLiteral(
            "Products ordering in config is empty. Set default ordering. TypeCodes Order: ");
        for (const int code : qAsConst(m_supportedTypeCodes)) {
            m_typeCodesOrder.append(code);
            message += QStringLiteral("[%1],").arg(code);
        }
        message.chop(1);
        LOG(INFO) << message;
        return;
    }

    // A configured order of the right length is trusted, even if it names other types.
    if (m_typeCodesOrder.size() == m_supportedTypeCodes.size())
        return;
    const QVector<int> supported = m_supportedTypeCodes;
    for (const int code : supported) {
        if (m_typeCodesOrder.contains(code))
            continue;
        LOG(INFO) << QStringLiteral("Append missing type code %1 from config").arg(code);
        m_typeCodesOrder.append(code);
    }
}

// Choice of the layout

void PassengerTypesModel::sortAndRegroup(QStringList const& codes, int const& columns)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): slots may change the list
    const QStringList typeCodes = codes;
    const bool isPositioned = hasBackendAssignedSortingToProducts(m_products);

    // The types are those of the previous layout: the count is chosen before they are replaced.
    const int types = static_cast<int>(m_localTypeCodes.size());
    const int automaticColumns = types >= 1 && types <= 4 ? types : 3;
    setNumberOfColumns(columns != 0 ? columns : automaticColumns);

    if (isPositioned)
        sortBasedOnBackendAssignment();
    else
        sortBasedOnLocalData(typeCodes);
}

// Layout by back-office positions

bool PassengerTypesModel::hasBackendAssignedSortingToProducts(QVector<sProduct> const& products)
{
    return std::any_of(products.cbegin(), products.cend(),
                       [](const sProduct& product) { return product.pos != noPosition; });
}

bool PassengerTypesModel::checkForPosDuplicates(QVector<sProduct> const& products)
{
    QVector<int> positions;
    positions.reserve(products.size());
    for (const sProduct& product : products)
        positions.append(product.pos);
    std::sort(positions.begin(), positions.end());
    return std::adjacent_find(positions.cbegin(), positions.cend()) != positions.cend();
}

bool PassengerTypesModel::hasBackendAssignedPosToProduct(QVector<sProduct> const& products)
{
    return std::none_of(products.cbegin(), products.cend(),
                        [](const sProduct& product) { return product.pos == noPosition; });
}

bool PassengerTypesModel::hasBackendAssignedPosToZero(QVector<sProduct> const& products)
{
    return std::any_of(products.cbegin(), products.cend(),
                       [](const sProduct& product) { return product.pos == 0; });
}

bool PassengerTypesModel::hasBackendAssignedPosOutOfRange(QVector<sProduct> const& products)
{
    return std::any_of(products.cbegin(), products.cend(), [](const sProduct& product) {
        return product.pos < noPosition || product.pos > maximumGridSlots;
    });
}

void PassengerTypesModel::sortBasedOnBackendAssignment()
{
    if (m_logFareProducts)
        LOG(INFO) << "------------------- FARE PRODUCTS BEFORE --------------------";
    printProducts(m_products);

    sortBy(m_products, positionOf);

    if (const char* objection = objectionToPositions()) {
        LOG(INFO) << objection;
        appendProductsAsTheyAre();
    } else {
        const QVector<sProduct> arranged = arrangeByPosition();
        addItemsToModel(arranged);
        if (m_logFareProducts)
            LOG(INFO) << "------------------- FARE PRODUCTS AFTER --------------------";
        printProducts(arranged);
    }

    appendDailyProducts();
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("NumberOfCols: %1").arg(m_numberOfColumns);
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("NumberOfRows: %1").arg(m_numberOfRows);
}

/// Why the positions cannot be used; null if they can. The duplicates come first: two products
/// without a position are reported as duplicates of each other.
const char* PassengerTypesModel::objectionToPositions()
{
    constexpr const char* notAssigned =
        "------------------- POSITION NOT ASSIGNED TO PRODUCT --------------------";
    if (checkForPosDuplicates(m_products))
        return "------------------- DUPLICATE POSITIONS IN FARE PRODUCTS --------------------";
    if (!hasBackendAssignedPosToProduct(m_products) || hasPositionBelowNone(m_products))
        return notAssigned;
    if (hasBackendAssignedPosToZero(m_products))
        return "--- POSITION 0 ASSIGNED TO PRODUCT. THAT IS NOT ALLOWED. SHOULD ALWAYS START "
               "COUNTING/NUMBERING POSITION FROM 1 ---";
    if (hasBackendAssignedPosOutOfRange(m_products))
        return notAssigned;
    return nullptr;
}

void PassengerTypesModel::appendProductsAsTheyAre()
{
    const int count = static_cast<int>(m_products.size());
    addItemsToModel(m_products);
    setNumberOfRows(rowsFor(count, divisorColumns()));
}

/// The grid by position, from 1 to the end of its last row; sets numberOfRows. A placeholder for a
/// missing position 1 stays in the product list.
QVector<sProduct> PassengerTypesModel::arrangeByPosition()
{
    if (!m_products.isEmpty() && m_products.first().pos != 1)
        m_products.prepend(placeholderAt(1));
    QVector<sProduct> arranged = withHolesFilled(m_products);

    setNumberOfRows(rowsFor(static_cast<int>(arranged.size()), divisorColumns()));
    if (arranged.size() % divisorColumns() != 0) {
        const qint64 missing = qint64(divisorColumns()) * m_numberOfRows - arranged.size();
        // A column count that needs more is a mistake, and would take the memory of the terminal.
        if (missing <= maximumGridSlots)
            appendPlaceholders(arranged, missing);
    }
    return arranged;
}

/// Daily products go below the grid, one grid row each, whichever layout made the grid.
void PassengerTypesModel::appendDailyProducts()
{
    if (m_dailyProducts.isEmpty())
        return;
    sortBy(m_dailyProducts, zoneOf);
    const QVector<sProduct> daily = m_dailyProducts;
    raiseNumberOfRows(static_cast<int>(daily.size()));
    addItemsToModel(daily);
}

/// Column count to divide by: 0, which the property can be set to, counts as one column.
int PassengerTypesModel::divisorColumns() const
{
    return m_numberOfColumns == 0 ? 1 : m_numberOfColumns;
}

/// Adds to numberOfRows without overflow, whatever it was set to from outside.
void PassengerTypesModel::raiseNumberOfRows(int rows)
{
    constexpr int most = std::numeric_limits<int>::max();
    setNumberOfRows(m_numberOfRows > most - rows ? most : m_numberOfRows + rows);
}

// Layout from local data

void PassengerTypesModel::sortBasedOnLocalData(QStringList const& codes)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): slots may change the list
    const QStringList typeCodes = codes;
    m_localTypeCodes.resize(0);
    setNumberOfRows(0);
    replaceByTypeCodes(m_localTypeCodes, typeCodes);

    if (m_logFareProducts)
        LOG(INFO) << static_cast<int>(m_products.size()) << " products in our vector";
    sortBy(m_products, fareProductAndZoneOf);
    if (m_logFareProducts)
        LOG(INFO) << "------------------- BEFORE GROUPING --------------------";

    const QVector<sProduct> ordered = m_products;
    for (const sProduct& product : ordered) {
        if (m_logFareProducts)
            writeProduct(LOG(INFO), product);
    }
    ZoneIndex index(ordered);
    const QVector<int> zones = index.zones();
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("%1 zones will be supported").arg(zones.size());
    if (m_logFareProducts)
        LOG(INFO)
            << QStringLiteral("%1 passengerTypeCodes will be supported").arg(typeCount(ordered));

    m_groupedProducts.resize(0);
    m_groupedProducts.reserve(ordered.size());
    for (const int zone : zones)
        groupZone(zone, index);
    addItemsToModel(m_groupedProducts);

    appendDailyProducts();
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("NumberOfCols: %1").arg(m_numberOfColumns);
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("NumberOfRows: %1").arg(m_numberOfRows);
    if (m_logFareProducts)
        LOG(INFO) << "------------------- AFTER GROUPING --------------------";
    for (int row = 0; m_logFareProducts && row < rowCount(); ++row) {
        const auto* tile = qobject_cast<PassengerTypeItem*>(rowAt(row));
        if (tile && !tile->description().isEmpty())
            writeTile(LOG(INFO), *tile);
    }
}

void PassengerTypesModel::sortAndGroupProductsForZone(int const& zone)
{
    ZoneIndex index(m_products);
    groupZone(zone, index);
}

/// sortAndGroupProductsForZone() with an index of the products, and logged under that name.
void PassengerTypesModel::groupZone(int zone, ZoneIndex& index)
{
    if (m_logFareProducts)
        el::base::Writer(el::Level::Info, __FILE__, __LINE__,
                         "void PassengerTypesModel::sortAndGroupProductsForZone(const int&)")
                .construct(1, el::base::consts::kDefaultLoggerId)
            << QStringLiteral("Group products for zone: %1").arg(zone);

    QVector<sProduct> block = index.productsOf(m_products, zone);
    if (block.isEmpty())
        return;

    const TypeCounts counts = countEvenedTypes(block);
    const int rows = *std::max_element(counts.cbegin(), counts.cend());
    raiseNumberOfRows(rows);
    evenOutColumns(block, counts, rows, m_localTypeCodes);
    fillShortBlock(block, m_numberOfColumns, m_localTypeCodes);

    sortBy(block, typeOf);
    QVector<int> indices = getIndeces(typeCodesOf(block));
    reOrder(block, indices);
    std::move(block.begin(), block.end(), std::back_inserter(m_groupedProducts));
}

QVector<int> PassengerTypesModel::getIndeces(QVector<int> codes)
{
    const int productCount = static_cast<int>(codes.size());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());

    const QVector<int> order =
        m_typeCodesOrder.size() == codes.size() ? m_typeCodesOrder : localPartOfOrder();
    const int rows = qMax(1, productCount / divisorColumns());
    const QVector<int> indices = slotsOf(columnsOf(codes, order), rows, divisorColumns());

    if (m_logFareProducts)
        std::cout << "Indeces: [" << joined(indices) << "]" << std::endl;
    return indices;
}

/// The display order without the types that this layout is not made for; every entry left out is
/// noted on standard output.
QVector<int> PassengerTypesModel::localPartOfOrder() const
{
    QVector<int> order;
    for (const int code : m_typeCodesOrder) {
        if (m_localTypeCodes.contains(code))
            order.append(code);
        else
            std::cout << "Remove : " << std::to_string(code) << " from vTypeCodesOrderCpy"
                      << std::endl;
    }
    return order;
}

void PassengerTypesModel::reOrder(QVector<sProduct>& products, QVector<int>& indices)
{
    moveToSlots(products, indices);
}
