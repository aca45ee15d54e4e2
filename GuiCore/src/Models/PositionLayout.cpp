#include "PositionLayout_p.h"

#include <algorithm>

bool hasPositionBelowNone(const QVector<sProduct>& products)
{
    return std::any_of(products.cbegin(), products.cend(),
                       [](const sProduct& product) { return product.pos < noPosition; });
}

int rowsFor(int count, int columns) { return count == 0 ? 0 : (count - 1) / columns + 1; }

sProduct placeholderAt(int position)
{
    sProduct placeholder;
    placeholder.pos = position;
    return placeholder;
}

QVector<sProduct> withHolesFilled(const QVector<sProduct>& products)
{
    QVector<sProduct> arranged;
    for (const sProduct& product : products) {
        while (arranged.size() + 1 < product.pos)
            arranged.append(placeholderAt(static_cast<int>(arranged.size() + 1)));
        arranged.append(product);
    }
    return arranged;
}

void appendPlaceholders(QVector<sProduct>& arranged, qint64 count)
{
    for (qint64 i = 0; i < count; ++i)
        arranged.append(placeholderAt(arranged.last().pos + 1));
}
