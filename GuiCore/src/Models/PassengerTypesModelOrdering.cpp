#include "PassengerTypesModel.h"

#include "PassengerTypeItem.h"
#include "ProductDump_p.h"
#include "ZoneIndex_p.h"

#include <core/Logging.h>

#include <QSet>

#include <algorithm>
#include <array>
#include <iostream>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace
{

constexpr int noPosition = -1;
constexpr int noColumn = -1;

/// Passenger types whose columns are evened out within a zone.
constexpr std::array<int, 6> evenedTypes{
    PassengerTypesModel::PT_ADULT,      PassengerTypesModel::PT_STUDENT_1,
    PassengerTypesModel::PT_SCHOOLBOY,  PassengerTypesModel::PT_DISABLED,
    PassengerTypesModel::PT_MILITARY_1, PassengerTypesModel::PT_LFS};

/// Columns that types missing from the display order may take.
constexpr std::array<int, 4> freeColumns{0, 1, 2, 3};

int positionOf(const sProduct& product) { return product.pos; }

int zoneOf(const sProduct& product) { return product.toStopGroupId; }

int typeOf(const sProduct& product) { return product.passengerTypeCode; }

std::pair<int, int> fareProductAndZoneOf(const sProduct& product)
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

QVector<int> ascendingTypeCodes(const QStringList& texts)
{
    QVector<int> codes;
    codes.reserve(texts.size());
    for (const QString& text : texts)
        codes.append(PassengerTypesModel::codeMap.value(text));
    std::sort(codes.begin(), codes.end());
    return codes;
}

QVector<int> typeCodesOf(const QVector<sProduct>& products)
{
    QVector<int> codes;
    codes.reserve(products.size());
    for (const sProduct& product : products)
        codes.append(product.passengerTypeCode);
    return codes;
}

int typeCount(const QVector<sProduct>& products)
{
    QSet<int> types;
    for (const sProduct& product : products)
        types.insert(product.passengerTypeCode);
    return types.size();
}

sProduct placeholderAt(int position)
{
    sProduct placeholder;
    placeholder.pos = position;
    return placeholder;
}

sProduct placeholderOf(int passengerTypeCode)
{
    sProduct placeholder;
    placeholder.passengerTypeCode = passengerTypeCode;
    return placeholder;
}

/// Products in position order, every hole in the numbering from 1 on a placeholder. `products` are
/// sorted and have distinct positions of at least 1.
QVector<sProduct> withHolesFilled(const QVector<sProduct>& products)
{
    QVector<sProduct> arranged;
    for (const sProduct& product : products) {
        while (arranged.size() + 1 < product.pos)
            arranged.append(placeholderAt(arranged.size() + 1));
        arranged.append(product);
    }
    return arranged;
}

/// Grid rows that `count` tiles take in `columns` columns; none without tiles.
int rowsFor(int count, int columns) { return count == 0 ? 0 : (count - 1) / columns + 1; }

using TypeCounts = std::array<int, evenedTypes.size()>;

TypeCounts countEvenedTypes(const QVector<sProduct>& block)
{
    TypeCounts counts{};
    for (const sProduct& product : block) {
        const auto type =
            std::find(evenedTypes.cbegin(), evenedTypes.cend(), product.passengerTypeCode);
        if (type != evenedTypes.cend())
            ++counts[static_cast<std::size_t>(type - evenedTypes.cbegin())];
    }
    return counts;
}

/// Appends placeholders so that every evened type among `localTypeCodes` has `rows` products.
void evenOutColumns(QVector<sProduct>& block, const TypeCounts& counts, int rows,
                    const QVector<int>& localTypeCodes)
{
    for (std::size_t i = 0; i < evenedTypes.size(); ++i) {
        if (!localTypeCodes.contains(evenedTypes[i]))
            continue;
        for (int missing = rows - counts[i]; missing > 0; --missing)
            block.append(placeholderOf(evenedTypes[i]));
    }
}

/// Type of the placeholders that fill a short block. `localTypeCodes` is ascending, not empty.
int fillerType(const QVector<int>& localTypeCodes)
{
    using Model = PassengerTypesModel;
    if (localTypeCodes.last() != Model::PT_LFS)
        return Model::PT_LFS;
    for (const int type :
         {Model::PT_MILITARY_1, Model::PT_DISABLED, Model::PT_SCHOOLBOY, Model::PT_STUDENT_1}) {
        if (!localTypeCodes.contains(type))
            return type;
    }
    return Model::PT_ADULT;
}

/// Completes the last row of a block of at most two rows, in grids of three or four columns only.
/// The placeholders go to the front; they count neither as rows nor as products of their type.
void fillShortBlock(QVector<sProduct>& block, int columns, int type)
{
    if ((columns != 3 && columns != 4) || block.size() > 2 * columns)
        return;
    const int missing = (columns - block.size() % columns) % columns;
    block.insert(0, missing, placeholderOf(type));
}

/// Gives each type without a column the first of the free columns that no type has yet; it stays
/// without one when all are taken.
void assignFreeColumns(QVector<int>& columns)
{
    for (int& column : columns) {
        if (column != noColumn)
            continue;
        const auto free =
            std::find_if(freeColumns.cbegin(), freeColumns.cend(),
                         [&columns](int candidate) { return !columns.contains(candidate); });
        if (free != freeColumns.cend())
            column = *free;
    }
}

std::string joined(const QVector<int>& values)
{
    std::string text;
    for (const int value : values)
        text += (text.empty() ? "" : ", ") + std::to_string(value);
    return text;
}

bool isPermutation(const QVector<int>& indices)
{
    QVector<bool> seen(indices.size(), false);
    for (const int index : indices) {
        if (index < 0 || index >= seen.size() || seen.at(index))
            return false;
        seen[index] = true;
    }
    return true;
}

} // namespace

// Supported passenger types

void PassengerTypesModel::setSupportedPassengerTypeCodes(QStringList const& codes)
{
    m_supportedTypeCodes = ascendingTypeCodes(codes);

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
    const int types = m_localTypeCodes.size();
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
    if (!hasBackendAssignedPosToProduct(m_products))
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
    const int count = m_products.size();
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

    setNumberOfRows(rowsFor(arranged.size(), divisorColumns()));
    if (arranged.size() % divisorColumns() != 0) {
        const qint64 missing = qint64(divisorColumns()) * m_numberOfRows - arranged.size();
        // A column count that needs more is a mistake, and would take the memory of the terminal.
        if (missing <= maximumGridSlots) {
            for (qint64 i = 0; i < missing; ++i)
                arranged.append(placeholderAt(arranged.last().pos + 1));
        }
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
    raiseNumberOfRows(daily.size());
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
    m_localTypeCodes = ascendingTypeCodes(typeCodes);

    if (m_logFareProducts)
        LOG(INFO) << m_products.size() << " products in our vector";
    sortBy(m_products, fareProductAndZoneOf);
    if (m_logFareProducts)
        LOG(INFO) << "------------------- BEFORE GROUPING --------------------";

    const QVector<sProduct> ordered = m_products;
    for (const sProduct& product : ordered) {
        if (m_logFareProducts)
            writeProduct(LOG(INFO), product);
    }
    const ZoneIndex index(ordered);
    const QVector<int> zones = index.zones();
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("%1 zones will be supported").arg(zones.size());
    if (m_logFareProducts)
        LOG(INFO)
            << QStringLiteral("%1 passengerTypeCodes will be supported").arg(typeCount(ordered));

    m_groupedProducts.resize(0);
    m_groupedProducts.reserve(ordered.size());
    for (const int zone : zones)
        sortAndGroupProductsForZone(zone);
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
    const int wantedZone = zone; // the caller's number may change while the record is written
    if (m_logFareProducts)
        LOG(INFO) << QStringLiteral("Group products for zone: %1").arg(wantedZone);

    QVector<sProduct> block = ZoneIndex::productsOf(m_products, wantedZone);
    if (block.isEmpty())
        return;

    const TypeCounts counts = countEvenedTypes(block);
    const int rows = *std::max_element(counts.cbegin(), counts.cend());
    raiseNumberOfRows(rows);
    evenOutColumns(block, counts, rows, m_localTypeCodes);
    if (!m_localTypeCodes.isEmpty() && m_numberOfColumns != m_localTypeCodes.size())
        fillShortBlock(block, m_numberOfColumns, fillerType(m_localTypeCodes));

    sortBy(block, typeOf);
    QVector<int> indices = getIndeces(typeCodesOf(block));
    reOrder(block, indices);
    std::move(block.begin(), block.end(), std::back_inserter(m_groupedProducts));
}

QVector<int> PassengerTypesModel::getIndeces(QVector<int> codes)
{
    const int productCount = codes.size();
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());

    const QVector<int> order =
        m_typeCodesOrder.size() == codes.size() ? m_typeCodesOrder : localPartOfOrder();
    QVector<int> columns;
    columns.reserve(codes.size());
    for (const int code : qAsConst(codes))
        columns.append(order.indexOf(code));
    assignFreeColumns(columns);

    const int rows = qMax(1, productCount / divisorColumns());
    QVector<int> indices;
    for (const int column : qAsConst(columns)) {
        for (int row = 0; row < rows; ++row)
            indices.append(column + row * divisorColumns());
    }

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
    // Slots of another length or not a permutation are ordinary data: types that are not evenly
    // filled, or more types than free columns. Such products keep their order.
    if (products.size() != indices.size() || !isPermutation(indices))
        return;
    for (int i = 0; i < indices.size() - 1; ++i) {
        while (indices.at(i) != i) {
            const int target = indices.at(i);
            std::swap(products[i], products[target]);
            std::swap(indices[i], indices[target]);
        }
    }
}
