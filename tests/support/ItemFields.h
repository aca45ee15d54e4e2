#pragma once

#include "ListItem.h"

#include <QByteArray>
#include <QGeoCoordinate>
#include <QHash>
#include <QMetaObject>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <cmath>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

/// When a setter stores a value and announces it.
enum class Announced {
    IfDifferent,        ///< exact comparison
    IfFuzzilyDifferent, ///< doubles: equal within a tolerance, both shifted by one
    Never               ///< always stored, never announced
};

/// One field of an item class, stated apart from the class itself.
struct ItemField
{
    const char* name = nullptr; ///< of the getter
    int role = 0;               ///< 0 if the field is not shown
    QByteArray roleName;
    QVariant initial;
    std::function<QVariant(const rivo::models::ListItem&)> get;
    std::function<void(rivo::models::ListItem&, const QVariant&)> set; ///< null if it cannot be set
    Announced announced = Announced::IfDifferent;
    const char* comparedWith = nullptr; ///< the field that the setter compares with, if another
    bool isArgument = true;             ///< of the constructor that takes values
    std::size_t size = 0;               ///< in bytes, as of the alignment
    std::size_t alignment = 0;
    int number = 0; ///< of the field in its class, from 0

    /// Values to try, among them the initial one. Some differ by less than a comparison notices.
    QVariantList samples() const;

    /// A value of the field's own for every number `n` from 0; that of a bool repeats.
    QVariant numbered(int n) const;
};

/// A field as the table of a class states it: field(...).shownAs(261).fuzzy().
template <typename T, bool IsArgument = true>
struct StatedField : ItemField
{
    using Arguments = std::conditional_t<IsArgument, std::tuple<T>, std::tuple<>>;

    explicit StatedField(const ItemField& field) : ItemField(field) { isArgument = IsArgument; }

    /// The role that shows the field; its name is that of the field unless another is given.
    StatedField shownAs(int shownRole, const char* otherName = nullptr) const
    {
        StatedField field = *this;
        field.role = shownRole;
        field.roleName = otherName ? otherName : name;
        return field;
    }

    StatedField fuzzy() const { return announcing(Announced::IfFuzzilyDifferent, nullptr); }
    StatedField fuzzyAgainst(const char* other) const
    {
        return announcing(Announced::IfFuzzilyDifferent, other);
    }
    StatedField silent() const { return announcing(Announced::Never, nullptr); }

    /// The constructor that takes values leaves it initial.
    StatedField<T, false> notAnArgument() const { return StatedField<T, false>(*this); }

    static Arguments arguments(const QVariant& value)
    {
        if constexpr (IsArgument)
            return Arguments(value.value<T>());
        else
            return {};
    }

private:
    StatedField announcing(Announced announcement, const char* other) const
    {
        StatedField field = *this;
        field.announced = announcement;
        field.comparedWith = other;
        return field;
    }
};

/// A field without a setter.
template <typename Item, typename T>
StatedField<T> field(const char* name, const std::common_type_t<T>& initial, T (Item::*get)() const)
{
    ItemField plain;
    plain.name = name;
    plain.initial = QVariant::fromValue(initial);
    plain.get = [get](const rivo::models::ListItem& item) {
        return QVariant::fromValue((static_cast<const Item&>(item).*get)());
    };
    plain.announced = Announced::Never;
    plain.size = sizeof(T);
    plain.alignment = alignof(T);
    return StatedField<T>(plain);
}

/// A field with a setter that takes its argument by value or by reference.
template <typename Item, typename T, typename Argument>
StatedField<T> field(const char* name, const std::common_type_t<T>& initial, T (Item::*get)() const,
                     void (Item::*set)(Argument))
{
    static_assert(std::is_same_v<Argument, T> || std::is_same_v<Argument, const T&>);
    StatedField<T> stated = field(name, initial, get);
    stated.announced = Announced::IfDifferent;
    stated.set = [set](rivo::models::ListItem& item, const QVariant& value) {
        (static_cast<Item&>(item).*set)(value.value<T>());
    };
    return stated;
}

/// An item class as its fields in the order of declaration, the identity first.
struct ItemClass
{
    const QMetaObject* type = nullptr;
    std::size_t size = 0;                                         ///< of an object
    std::function<rivo::models::ListItem*(QObject* parent)> make; ///< all fields initial
    /// From one value per field; those of fields that are no argument are not looked at.
    std::function<rivo::models::ListItem*(const QVariantList& values, QObject* parent)> construct;
    QVector<ItemField> fields;

    const QHash<int, QByteArray>* roleTable = nullptr;       ///< what all items of the class share
    std::function<rivo::models::ListItem*()> makeRenumbered; ///< its id() is 4711
    QStringList properties; ///< names of those fields that are Qt properties too, in their order
    bool isCounted = true;  ///< has an instanceCount

    int indexOf(const QString& name) const;
    QVariantList initialValues() const;
    /// Initial but for these, which are given by the names of their fields.
    QVariantList initialValuesBut(const QVariantMap& others) const;
    QHash<int, QByteArray> roleNames() const;

    /// With these values in all fields.
    rivo::models::ListItem* build(const QVariantList& values, QObject* parent) const;

    /// Another value in every field for every number; see ItemField::numbered().
    QVariantList numberedValues(int id, int n) const;
    rivo::models::ListItem* makeNumbered(int id, int n, QObject* parent) const
    {
        return build(numberedValues(id, n), parent);
    }

    /// Sets all fields but the identity, the silent ones first: the others announce them.
    void renumber(rivo::models::ListItem& item, int n) const;
};

template <typename Item, typename... Fields, std::size_t... At>
rivo::models::ListItem* constructed(const QVariantList& values, QObject* parent,
                                    std::index_sequence<At...>)
{
    return std::apply([parent](const auto&... arguments) { return new Item(arguments..., parent); },
                      std::tuple_cat(Fields::arguments(values.at(static_cast<int>(At)))...));
}

/// `fields` are the members of the class and nothing else.
template <typename Item, typename... Fields>
ItemClass itemClass(const Fields&... fields)
{
    ItemClass described;
    described.type = &Item::staticMetaObject;
    described.size = sizeof(Item);
    described.make = [](QObject* parent) { return new Item(parent); };
    described.construct = [](const QVariantList& values, QObject* parent) {
        return constructed<Item, Fields...>(values, parent, std::index_sequence_for<Fields...>());
    };
    described.fields = {fields...};
    for (int i = 0; i < described.fields.size(); ++i)
        described.fields[i].number = i;
    return described;
}

/// An item class of the library: its role table, and an item with an identity of its own making.
template <typename Item, typename... Fields>
ItemClass libraryItem(const QHash<int, QByteArray>& roleTable, const Fields&... fields)
{
    static_assert(std::is_same_v<decltype(&Item::id), int (Item::*)() const>);
    static_assert(
        std::is_same_v<decltype(&Item::triggerItemUpdate), void (rivo::models::ListItem::*)()>,
        "inherited unchanged");
    class Renumbered : public Item
    {
    public:
        using Item::Item;
        int id() const override { return 4711; }
    };
    ItemClass described = itemClass<Item>(fields...);
    described.roleTable = &roleTable;
    described.makeRenumbered = [] { return new Renumbered(nullptr); };
    return described;
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
bool sameValue(const QVariant& a, const QVariant& b);

/// Names of the fields whose getter or role does not show its value of these, one per field.
QStringList differences(const rivo::models::ListItem& item, const QVector<ItemField>& fields,
                        const QVariantList& values);

/// What a setter does.
struct SetterEffect
{
    bool isStored;
    bool isAnnounced;
};

/// What must happen when `value` is set to field `index` of an item with these values.
SetterEffect setterEffect(const ItemClass& itemClass, const QVariantList& values, int index,
                          const QVariant& value);

/// A value as text, the same whether it comes straight from C++ or by way of JavaScript.
QString valueText(const QVariant& value);
