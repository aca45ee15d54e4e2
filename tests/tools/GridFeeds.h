#pragma once

#include "ToolRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVector>

/// A rivo-feed file of these products, in the home of the runner.
inline QString writeFeed(const ToolRunner& runner, const QJsonArray& products, int columns = 0)
{
    const QJsonObject feed{{"format", "rivo-feed"},
                           {"version", 1},
                           {"currency", "EUR"},
                           {"columns", columns},
                           {"supportedPassengerTypes", QJsonArray{"PT_ADULT", "PT_LFS"}},
                           {"products", products}};
    return runner.writeFeed(feed);
}

inline QJsonObject product(int pos, int fareProductId = 1, const QString& type = "PT_ADULT")
{
    return {{"passengerTypeId", 1},
            {"description", "Adult"},
            {"passengerTypeCode", type},
            {"price", 2.5},
            {"fareProductId", fareProductId},
            {"fareProductName", "Single"},
            {"fromStopGroupId", 1},
            {"toStopGroupId", 1},
            {"pos", pos}};
}

inline QJsonArray productsAt(const QVector<int>& positions)
{
    QJsonArray products;
    for (const int position : positions)
        products.append(product(position, 100 + products.size()));
    return products;
}

/// The positions of the rows in what rivo-grid writes as JSON.
inline QVector<int> positionsOf(const QByteArray& json)
{
    QVector<int> positions;
    const QJsonArray rows = QJsonDocument::fromJson(json).object().value("rows").toArray();
    for (const QJsonValue& row : rows)
        positions.append(row.toObject().value("pos").toInt());
    return positions;
}
