#include "ZoneLayout_p.h"

#include "PassengerTypesModel.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace
{

using Model = PassengerTypesModel;

constexpr int noColumn = -1;

/// Passenger types whose columns are evened out within a zone.
constexpr std::array<int, std::tuple_size_v<TypeCounts>> evenedTypes{
    Model::PT_ADULT,    Model::PT_STUDENT_1,  Model::PT_SCHOOLBOY,
    Model::PT_DISABLED, Model::PT_MILITARY_1, Model::PT_LFS};

/// Columns that types missing from the display order may take.
constexpr std::array<int, 4> freeColumns{0, 1, 2, 3};

sProduct placeholderOf(int passengerTypeCode)
{
    sProduct placeholder;
    placeholder.passengerTypeCode = passengerTypeCode;
    return placeholder;
}

/// Type of the placeholders that fill a short block. `localTypeCodes` is ascending, not empty.
int fillerType(const QVector<int>& localTypeCodes)
{
    if (localTypeCodes.last() != Model::PT_LFS)
        return Model::PT_LFS;
    for (const int type :
         {Model::PT_MILITARY_1, Model::PT_DISABLED, Model::PT_SCHOOLBOY, Model::PT_STUDENT_1}) {
        if (!localTypeCodes.contains(type))
            return type;
    }
    return Model::PT_ADULT;
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

int typeCount(const QVector<sProduct>& products)
{
    QSet<int> types;
    for (const sProduct& product : products)
        types.insert(product.passengerTypeCode);
    return static_cast<int>(types.size());
}

QVector<int> typeCodesOf(const QVector<sProduct>& products)
{
    QVector<int> codes;
    codes.reserve(products.size());
    for (const sProduct& product : products)
        codes.append(product.passengerTypeCode);
    return codes;
}

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

void fillShortBlock(QVector<sProduct>& block, int columns, const QVector<int>& localTypeCodes)
{
    if (localTypeCodes.isEmpty() || columns == localTypeCodes.size())
        return;
    if ((columns != 3 && columns != 4) || block.size() > 2 * columns)
        return;
    const int missing = (columns - static_cast<int>(block.size()) % columns) % columns;
    block.insert(0, missing, placeholderOf(fillerType(localTypeCodes)));
}

QVector<int> columnsOf(const QVector<int>& codes, const QVector<int>& order)
{
    QVector<int> columns;
    columns.reserve(codes.size());
    for (const int code : codes)
        columns.append(static_cast<int>(order.indexOf(code)));
    for (int& column : columns) {
        if (column != noColumn)
            continue;
        const auto free =
            std::find_if(freeColumns.cbegin(), freeColumns.cend(),
                         [&columns](int candidate) { return !columns.contains(candidate); });
        if (free != freeColumns.cend())
            column = *free;
    }
    return columns;
}

QVector<int> slotsOf(const QVector<int>& columns, int rows, int width)
{
    QVector<int> places;
    for (const int column : columns) {
        for (int row = 0; row < rows; ++row)
            places.append(column + row * width);
    }
    return places;
}

void moveToSlots(QVector<sProduct>& products, QVector<int>& indices)
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
