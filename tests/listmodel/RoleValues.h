#pragma once

#include <QByteArray>
#include <QVariant>
#include <QVector>

/// A value that a role may have, with its name in the table of results.
struct RoleValue
{
    QByteArray name;
    QVariant value;
};

/// Values of every type that rows have and of some that they have not, in a fixed order.
QVector<RoleValue> roleValues();
