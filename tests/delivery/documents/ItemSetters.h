#pragma once

#include "ItemFields.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

/// A setter of an item class that can be called without knowing the class.
struct ItemSetter
{
    QString name;
    int type; ///< metatype of the argument
    std::function<void(rivo::models::ListItem&, const QVariant&)> set;

    /// Value `n` of the argument's type; another `n` of 0 and 1 is another value.
    QVariant sample(int n) const;

    /// The field's name: "price" for setPrice.
    QString field() const;
};

/// An item class as its setters.
struct ItemSetters
{
    QString className;
    ItemClass itemClass;
    QVector<ItemSetter> setters;

    /// When a setter announces: "silent", "fuzzy", "exact", "against <field>" or nothing, which is
    /// if the value differs. Found by trying.
    QString announcement(const ItemSetter& setter) const;

    /// The field is shown by a role.
    bool hasRole(const ItemSetter& setter) const;
};

/// Of the rows of the model class with this name.
ItemSetters settersOfRows(const QString& modelClass);

/// "setPrice" for the field price, whether or not there is such a setter.
QString setterName(const ItemField& field);
