#pragma once

#include "ItemFields.h"

#include <QByteArray>
#include <QHash>
#include <QMetaObject>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <type_traits>

/// What the ItemBattery has to know of an item class.
struct ItemUnderTest
{
    ItemClass itemClass;
    QHash<int, QByteArray> roleNames;        ///< what must be
    const QHash<int, QByteArray>* roleTable; ///< what the class shares with all its items
    QStringList properties;                  ///< as metaobject::properties() writes them
    bool isCounted;                          ///< has an instanceCount
    QStringList constructors;                ///< as the linker knows them
    const QMetaObject* type;
    std::function<rivo::models::ListItem*()> makeRenumbered; ///< its id() is 4711
};

/// An item with an identity of its own making.
template <typename Item>
class RenumberedItem : public Item
{
public:
    using Item::Item;
    int id() const override { return 4711; }
};

/// `Members` derives from ListItem and has the fields of the item: the item holds nothing else.
template <typename Item, typename Members>
ItemUnderTest itemUnderTest(const ItemClass& itemClass, const QHash<int, QByteArray>& roleNames,
                            const QHash<int, QByteArray>& roleTable,
                            const QStringList& constructors, bool isCounted = true,
                            const QStringList& properties = {})
{
    using rivo::models::ListItem;
    static_assert(std::is_base_of_v<ListItem, Item>);
    static_assert(sizeof(Item) == sizeof(Members));
    // Getters and setters are checked by itemField(), which takes nothing but their exact types.
    static_assert(std::is_same_v<decltype(&Item::id), int (Item::*)() const>);
    static_assert(std::is_same_v<decltype(&Item::data), QVariant (Item::*)(int) const>);
    static_assert(
        std::is_same_v<decltype(&Item::roleNames), QHash<int, QByteArray> (Item::*)() const>);
    static_assert(std::is_same_v<decltype(&Item::triggerItemUpdate), void (ListItem::*)()>,
                  "inherited unchanged");
    return {itemClass,
            roleNames,
            &roleTable,
            properties,
            isCounted,
            constructors,
            &Item::staticMetaObject,
            [] { return new RenumberedItem<Item>(nullptr); }};
}

/// What every item class must stand: fields, roles, constructors and setters as <Item>Fields.h
/// states them, the meta-object, and what the built library has of the class.
///
///     class TestAssetItem : public ItemBattery
///     {
///         Q_OBJECT
///     public:
///         TestAssetItem() : ItemBattery(itemUnderTest<AssetItem, Members>(...)) {}
///     private slots:
///         // what distinguishes the class, in plain values
///     };
class ItemBattery : public QObject
{
    Q_OBJECT

public:
    explicit ItemBattery(ItemUnderTest item);
    ~ItemBattery() override;

private slots:
    void declaresNothingElse();
    void roles();
    void onlyRolesOfTheTableHaveAValue();
    void theIdentityRoleAsksTheVirtualId();

    void aPrototypeHasTheInitialValues();
    void textsOfAPrototypeAreEmptyNotNull();
    void parents();
    void eachArgumentGoesToItsField_data();
    void eachArgumentGoesToItsField();
    void allArgumentsAtOnce();

    void setter_data();
    void setter();
    void aNullTextEqualsAnEmptyOne();
    void anUpdateCanBeTriggered();

    void constructorsTakeTheirArgumentsAsDeclared();
    void bothConstructorsCountAndTheDestructorDoesNot();

protected:
    using ItemPointer = std::unique_ptr<rivo::models::ListItem>;

    const QVector<ItemField>& fields() const { return m_item.itemClass.fields; }
    const ItemField& field(const char* name) const;

    /// An item with one value per field.
    ItemPointer build(const QVariantList& values) const;

    /// Getters and roles show exactly these values; a failure is one of the test.
    void compare(const rivo::models::ListItem& item, const QVariantList& values) const;

private:
    const ItemUnderTest m_item;
};
