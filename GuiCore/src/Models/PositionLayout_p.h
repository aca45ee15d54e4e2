#pragma once

#include "sProduct.h"

#include <QVector>

// The grid by back-office positions, as functions on records.

/// Position of a product to which the back office has assigned none.
constexpr int noPosition = -1;

/// Any position below the one that stands for none: such a product counts as not assigned.
bool hasPositionBelowNone(const QVector<sProduct>& products);

/// Grid rows that `count` tiles take in `columns` columns; none without tiles.
int rowsFor(int count, int columns);

/// A placeholder at a position.
sProduct placeholderAt(int position);

/// Products in position order, every hole in the numbering from 1 on a placeholder. `products` are
/// sorted and have distinct positions of at least 1.
QVector<sProduct> withHolesFilled(const QVector<sProduct>& products);

/// Appends `count` placeholders whose positions follow that of the last product.
void appendPlaceholders(QVector<sProduct>& arranged, qint64 count);
