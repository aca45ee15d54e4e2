#pragma once

#include "ListItem.h"

#include <QList>
#include <QVariant>
#include <QVector>

#include <climits>
#include <functional>

/// When a setter stores a value and announces it.
enum class Announced {
    IfDifferent,        ///< exact comparison
    IfFuzzilyDifferent, ///< doubles: equal within a tolerance, both shifted by one
    Never               ///< always stored, never announced
};

/// One field of an item class, stated apart from the class itself.
struct ItemField
{
    const char* name;
    int role; ///< 0 if the field is not shown
    QVariant initial;
    QVariantList samples; ///< values to try, among them the initial one
    Announced announced;
    std::function<QVariant(const rivo::models::ListItem&)> get;
    std::function<void(rivo::models::ListItem&, const QVariant&)> set;
};

/// An item class as its fields, the identity first.
struct ItemClass
{
    std::function<rivo::models::ListItem*(QObject* parent)> make; ///< all fields initial
    QVector<ItemField> fields;
};

/// A field with a getter and a setter. Their types are the exact ones that all items follow:
/// values by value, arguments by const reference.
template <typename Item, typename T>
ItemField itemField(const char* name, int role, const T& initial, const QList<T>& others,
                    T (Item::*get)() const, void (Item::*set)(const T&),
                    Announced announced = Announced::IfDifferent)
{
    QVariantList samples{QVariant::fromValue(initial)};
    for (const T& other : others)
        samples.append(QVariant::fromValue(other));
    return {name,
            role,
            QVariant::fromValue(initial),
            samples,
            announced,
            [get](const rivo::models::ListItem& item) {
                return QVariant::fromValue((static_cast<const Item&>(item).*get)());
            },
            [set](rivo::models::ListItem& item, const QVariant& value) {
                (static_cast<Item&>(item).*set)(value.value<T>());
            }};
}

/// Same type and same value. Unlike the QVariant equality it converts nothing and sees the last
/// bit of a double.
inline bool sameValue(const QVariant& a, const QVariant& b)
{
    if (a.userType() != b.userType())
        return false;
    if (a.userType() == QMetaType::Double)
        return !(a.toDouble() < b.toDouble()) && !(a.toDouble() > b.toDouble());
    return a == b;
}

/// The setter's comparison, as a formula of its own.
inline bool fuzzilyEqual(double a, double b)
{
    const double shiftedA = a + 1.0;
    const double shiftedB = b + 1.0;
    return qAbs(shiftedA - shiftedB) * 1e12 <= qMin(qAbs(shiftedA), qAbs(shiftedB));
}

/// Whether setting `value` over `stored` is announced.
inline bool isAnnounced(const ItemField& field, const QVariant& stored, const QVariant& value)
{
    switch (field.announced) {
    case Announced::IfDifferent:
        return !sameValue(stored, value);
    case Announced::IfFuzzilyDifferent:
        return !fuzzilyEqual(stored.toDouble(), value.toDouble());
    case Announced::Never:
        break;
    }
    return false;
}

/// Whether setting `value` over `stored` keeps the stored one.
inline bool isKept(const ItemField& field, const QVariant& stored, const QVariant& value)
{
    return field.announced != Announced::Never && !isAnnounced(field, stored, value);
}
