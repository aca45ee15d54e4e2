#pragma once

#include "ListModel.h"

#include <QGeoCoordinate>
#include <QStringList>
#include <QtTest>

/// The row as QML sees it, all values with their types: "description=QString(Single) ...".
inline QString rolesOf(rivo::models::ListModel& model, int row)
{
    QStringList roles;
    const QVariantMap values = model.get(row).toMap();
    for (auto role = values.begin(); role != values.end(); ++role) {
        QString value = role->toString();
        if (role->userType() == qMetaTypeId<QGeoCoordinate>()) {
            const auto position = role->value<QGeoCoordinate>();
            value = QString("%1 %2 %3 %4")
                        .arg(position.type())
                        .arg(position.latitude())
                        .arg(position.longitude())
                        .arg(position.altitude());
        }
        roles.append(QString("%1=%2(%3)").arg(role.key(), role->typeName(), value));
    }
    return roles.join(' ');
}

/// Fails unless row `row` has these roles.
#define COMPARE_ROLES(model, row, ...)                                                             \
    QCOMPARE(rolesOf(model, row), (QStringList{__VA_ARGS__}.join(' ')))

/// Whether all rows are children of the model, which QML's garbage collector therefore spares.
inline bool ownsItsRows(const rivo::models::ListModel& model)
{
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.itemFromRow(row)->parent() != &model)
            return false;
    }
    return true;
}
