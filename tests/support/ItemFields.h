#pragma once

#include "ListItem.h"

#include <QGeoCoordinate>
#include <QList>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <climits>
#include <cmath>
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
    std::function<void(rivo::models::ListItem&, const QVariant&)> set; ///< null if it cannot be set
    bool isArgument = true;             ///< of the constructor that takes values
    const char* comparedWith = nullptr; ///< the field that the setter compares with, if another
};

/// An item class as its fields, the identity first.
struct ItemClass
{
    std::function<rivo::models::ListItem*(QObject* parent)> make; ///< all fields initial
    /// From one value per field; those of fields that are no argument are not looked at.
    std::function<rivo::models::ListItem*(const QVariantList& values, QObject* parent)> construct;
    QVector<ItemField> fields;
};

/// A field without a setter.
template <typename Item, typename T>
ItemField itemField(const char* name, int role, const T& initial, const QList<T>& others,
                    T (Item::*get)() const)
{
    QVariantList samples{QVariant::fromValue(initial)};
    for (const T& other : others)
        samples.append(QVariant::fromValue(other));
    return {name,
            role,
            QVariant::fromValue(initial),
            samples,
            Announced::Never,
            [get](const rivo::models::ListItem& item) {
                return QVariant::fromValue((static_cast<const Item&>(item).*get)());
            },
            {}};
}

/// A field with a getter and a setter. Their types are the exact ones: values by value, arguments
/// by const reference.
template <typename Item, typename T>
ItemField itemField(const char* name, int role, const T& initial, const QList<T>& others,
                    T (Item::*get)() const, void (Item::*set)(const T&),
                    Announced announced = Announced::IfDifferent)
{
    ItemField field = itemField(name, role, initial, others, get);
    field.announced = announced;
    field.set = [set](rivo::models::ListItem& item, const QVariant& value) {
        (static_cast<Item&>(item).*set)(value.value<T>());
    };
    return field;
}

/// The same where the setter takes its argument by value.
template <typename Item, typename T>
ItemField itemField(const char* name, int role, const T& initial, const QList<T>& others,
                    T (Item::*get)() const, void (Item::*set)(T),
                    Announced announced = Announced::IfDifferent)
{
    ItemField field = itemField(name, role, initial, others, get);
    field.announced = announced;
    field.set = [set](rivo::models::ListItem& item, const QVariant& value) {
        (static_cast<Item&>(item).*set)(value.value<T>());
    };
    return field;
}

/// `field`, which the constructor that takes values leaves initial.
inline ItemField notAnArgument(ItemField field)
{
    field.isArgument = false;
    return field;
}

/// `field`, whose setter compares with the value of another one.
inline ItemField comparedWith(const char* other, ItemField field)
{
    field.comparedWith = other;
    return field;
}

inline int indexOfField(const QVector<ItemField>& fields, const char* name)
{
    int index = 0;
    while (index < fields.size() && qstrcmp(fields.at(index).name, name) != 0)
        ++index;
    return index;
}

inline QVariantList initialValues(const QVector<ItemField>& fields)
{
    QVariantList values;
    for (const ItemField& field : fields)
        values << field.initial;
    return values;
}

/// Equality by the type's own operator; both have the same type. Unlike the QVariant equality it
/// sees the last bit of a double and knows coordinates.
inline bool isEqual(const QVariant& a, const QVariant& b)
{
    if (a.userType() == QMetaType::Double)
        return a.toDouble() == b.toDouble();
    if (a.userType() == qMetaTypeId<QGeoCoordinate>())
        return a.value<QGeoCoordinate>() == b.value<QGeoCoordinate>();
    return a == b;
}

/// Same type and same value to the last bit, converting nothing.
inline bool sameValue(const QVariant& a, const QVariant& b)
{
    if (a.userType() != b.userType())
        return false;
    if (a.userType() != QMetaType::Double)
        return isEqual(a, b);
    const bool bothNaN = std::isnan(a.toDouble()) && std::isnan(b.toDouble());
    return bothNaN || (isEqual(a, b) && std::signbit(a.toDouble()) == std::signbit(b.toDouble()));
}

/// Names of the fields whose getter or role does not show its value of these, one per field.
inline QStringList differences(const rivo::models::ListItem& item, const QVector<ItemField>& fields,
                               const QVariantList& values)
{
    if (values.size() != fields.size())
        return {QStringLiteral("number of values")};
    QStringList names;
    for (int i = 0; i < fields.size(); ++i) {
        const ItemField& field = fields.at(i);
        if (!sameValue(field.get(item), values.at(i)) ||
            (field.role != 0 && !sameValue(item.data(field.role), values.at(i))))
            names.append(QString::fromLatin1(field.name));
    }
    return names;
}

/// The setter's comparison, as a formula of its own.
inline bool fuzzilyEqual(double a, double b)
{
    const double shiftedA = a + 1.0;
    const double shiftedB = b + 1.0;
    return qAbs(shiftedA - shiftedB) * 1e12 <= qMin(qAbs(shiftedA), qAbs(shiftedB));
}

/// What a setter does.
struct SetterEffect
{
    bool isStored;
    bool isAnnounced;
};

/// What must happen when `value` is set to field `index` of an item with these values.
inline SetterEffect setterEffect(const QVector<ItemField>& fields, const QVariantList& values,
                                 int index, const QVariant& value)
{
    const ItemField& field = fields.at(index);
    const QVariant compared =
        values.at(field.comparedWith ? indexOfField(fields, field.comparedWith) : index);
    bool isDifferent = false;
    switch (field.announced) {
    case Announced::IfDifferent:
        isDifferent = !isEqual(compared, value);
        break;
    case Announced::IfFuzzilyDifferent:
        isDifferent = !fuzzilyEqual(compared.toDouble(), value.toDouble());
        break;
    case Announced::Never:
        return {true, false};
    }
    return {isDifferent, isDifferent};
}
