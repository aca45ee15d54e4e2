#pragma once

#include "sProduct.h"

#include <QVector>

#include <array>

// The grid zone by zone, as functions on records. The block of a zone is its products and
// placeholders, one column per passenger type.

/// Products of each passenger type whose column is evened out, in the order of the types' numbers.
using TypeCounts = std::array<int, 6>;

TypeCounts countEvenedTypes(const QVector<sProduct>& block);

/// Number of distinct passenger types.
int typeCount(const QVector<sProduct>& products);

/// Passenger types of the products, one by one.
QVector<int> typeCodesOf(const QVector<sProduct>& products);

/// Appends placeholders so that every evened type among `localTypeCodes` has `rows` products.
void evenOutColumns(QVector<sProduct>& block, const TypeCounts& counts, int rows,
                    const QVector<int>& localTypeCodes);

/// Completes the last row of a block of at most two rows, in grids of three or four columns that
/// have another number of columns than there are types. The placeholders go to the front; they
/// count neither as rows nor as products of their type. `localTypeCodes` is ascending.
void fillShortBlock(QVector<sProduct>& block, int columns, const QVector<int>& localTypeCodes);

/// Column of each type of `codes`: its place in the display order; for a type that has none, the
/// first of the columns 0 to 3 that no type has yet; -1 when all four are taken.
QVector<int> columnsOf(const QVector<int>& codes, const QVector<int>& order);

/// Slots of `rows` products in each column, column by column, in a grid of `width` columns.
QVector<int> slotsOf(const QVector<int>& columns, int rows, int width);

/// Moves the product at k to place indices[k], for every k; `indices` ends as 0, 1, 2, ... Nothing
/// happens unless both lists are equally long and `indices` is a permutation.
void moveToSlots(QVector<sProduct>& products, QVector<int>& indices);
