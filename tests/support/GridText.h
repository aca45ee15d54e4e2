#pragma once

#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <algorithm>

// Tiles as short texts: a product by its name, with "@" its position if it has one ("1a", "1a@5");
// a placeholder in brackets, by its passenger type or its position ("(3)", "(@4)").

inline QString tileText(const QString& name, const QString& typeCode, int position)
{
    const QString place = position == -1 ? QString() : "@" + QString::number(position);
    if (name != "---DUMMY---")
        return name + place;
    return "(" + (place.isEmpty() ? typeCode : place) + ")";
}

inline QString tileText(const sProduct& product)
{
    return tileText(product.fareProductName, QString::number(product.passengerTypeCode),
                    product.pos);
}

/// "?" for a row that is no tile.
inline QString tileText(const rivo::models::ListItem* row)
{
    const auto* tile = qobject_cast<const PassengerTypeItem*>(row);
    return tile ? tileText(tile->fareProductName(), tile->code(), tile->pos()) : QString("?");
}

/// The tiles in order, "|" after every `columns` of them; no "|" at all without columns.
inline QString gridText(const QStringList& tiles, int columns)
{
    QString text;
    for (int i = 0; i < tiles.size(); ++i) {
        if (i > 0)
            text += columns > 0 && i % columns == 0 ? " | " : " ";
        text += tiles.at(i);
    }
    return text;
}

inline QString gridText(const QVector<sProduct>& products, int columns = 0)
{
    QStringList tiles;
    for (const sProduct& product : products)
        tiles.append(tileText(product));
    return gridText(tiles, columns);
}

inline QString gridText(const PassengerTypesModel& model, int columns)
{
    QStringList tiles;
    for (int row = 0; row < model.rowCount(); ++row)
        tiles.append(tileText(model.itemFromRow(row)));
    return gridText(tiles, columns);
}

inline QString gridText(const PassengerTypesModel& model)
{
    return gridText(model, model.numberOfColumns());
}

/// The number of grid rows and the grid; of a long one its last tiles alone.
inline QString sizedGridText(const PassengerTypesModel& model)
{
    constexpr int longest = 100;
    const QString rows = QString("%1 rows").arg(model.numberOfRows());
    if (model.rowCount() == 0)
        return rows;
    if (model.rowCount() <= longest)
        return rows + ": " + gridText(model);
    QStringList last;
    for (int row = model.rowCount() - 3; row < model.rowCount(); ++row)
        last.append(tileText(model.itemFromRow(row)));
    return rows + QString(", %1 tiles: ... ").arg(model.rowCount()) + last.join(' ');
}

/// One text per row: every role by name, in the order of the role numbers.
inline QStringList allRoles(const PassengerTypesModel& model)
{
    const QHash<int, QByteArray> names = model.roleNames();
    QList<int> roles = names.keys();
    std::sort(roles.begin(), roles.end());
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList values;
        for (const int role : roles)
            values.append(names.value(role) + "=" +
                          model.data(model.index(row, 0), role).toString());
        rows.append(values.join(";"));
    }
    return rows;
}
