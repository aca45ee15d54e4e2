#include "ListItem.h"
#include "MetaObjectText.h"
#include "PassengerTypeItem.h"
#include "QHashStaticInit.h"

#include <QSignalSpy>
#include <QTest>

#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

using rivo::models::ListItem;
using rivo::models::QHashStaticInit;

namespace
{

// The interface as it is declared, argument by argument.
static_assert(std::is_abstract_v<ListItem>);
static_assert(std::is_base_of_v<QObject, ListItem>);
static_assert(std::has_virtual_destructor_v<ListItem>);
static_assert(sizeof(ListItem) == sizeof(QObject), "no data members of its own");
static_assert(std::is_same_v<decltype(&ListItem::id), int (ListItem::*)() const>);
static_assert(std::is_same_v<decltype(&ListItem::data), QVariant (ListItem::*)(int) const>);
static_assert(
    std::is_same_v<decltype(&ListItem::roleNames), QHash<int, QByteArray> (ListItem::*)() const>);
static_assert(std::is_same_v<decltype(&ListItem::triggerItemUpdate), void (ListItem::*)()>);
static_assert(std::is_same_v<decltype(&ListItem::dataChanged), void (ListItem::*)()>);

using RoleTable = QHashStaticInit<int, QByteArray>;
static_assert(sizeof(RoleTable) == sizeof(QHash<int, QByteArray>), "the hash is its only member");
static_assert(std::is_same_v<decltype(RoleTable::hash), QHash<int, QByteArray>>);

/// A row with one field of each kind of setter.
class Row : public ListItem
{
public:
    explicit Row(QObject* parent = nullptr) : ListItem(parent) {}
    explicit Row(double amount) : m_amount(amount) {}

    int id() const override { return 0; }
    QVariant data(int) const override { return QVariant(); }
    QHash<int, QByteArray> roleNames() const override { return {}; }

    void setNumber(int number) { store(m_number, number); }
    void setText(const QString& text) { store(m_text, text); }
    void setExact(double amount) { store(m_exact, amount); }
    void setAmount(double amount) { storeFuzzy(m_amount, amount); }

    double amount() const { return m_amount; }
    int number() const { return m_number; }

private:
    int m_number = 0;
    QString m_text;
    double m_exact = 0.0;
    double m_amount = 0.0;
};

#ifdef __GXX_ABI_VERSION
#define CAN_READ_VTABLE_SLOTS

/// By how much a pointer to a virtual member is more than the offset of its slot. ARM marks virtual
/// members elsewhere.
#if defined(__arm__) || defined(__aarch64__)
constexpr std::size_t virtualMark = 0;
#else
constexpr std::size_t virtualMark = 1;
#endif

/// Slot in the table of virtual operations.
template <typename Member>
std::size_t vtableSlot(Member member)
{
    std::size_t encoded = 0;
    std::memcpy(&encoded, &member, sizeof(encoded));
    return (encoded - virtualMark) / sizeof(void*);
}

/// Opens the last virtual of QObject.
class LastOfQObject : public QObject
{
public:
    static std::size_t slot() { return vtableSlot(&LastOfQObject::disconnectNotify); }
};
#endif

const double ulp = std::numeric_limits<double>::epsilon(); // of values from 1 to 2
const double notANumber = qQNaN();
const double infinity = qInf();

} // namespace

class TestListItem : public QObject
{
    Q_OBJECT

private slots:
    void declaresOneSignalAndNothingElse()
    {
        const QMetaObject& type = ListItem::staticMetaObject;
        QCOMPARE(type.className(), "rivo::models::ListItem");
        QCOMPARE(type.superClass(), &QObject::staticMetaObject);
        QCOMPARE(metaobject::methods(type), QStringList{"public signal void dataChanged()"});
        QCOMPARE(metaobject::properties(type), QStringList());
        QCOMPARE(metaobject::enums(type), QStringList());
        QVERIFY(metaobject::hasNothingElse(type));
    }

    void virtualsFollowThoseOfQObjectInDeclaredOrder()
    {
#ifdef CAN_READ_VTABLE_SLOTS
        const std::size_t last = LastOfQObject::slot();
        QCOMPARE(vtableSlot(&ListItem::id), last + 1);
        QCOMPARE(vtableSlot(&ListItem::data), last + 2);
        QCOMPARE(vtableSlot(&ListItem::roleNames), last + 3);
        QCOMPARE(vtableSlot(&ListItem::triggerItemUpdate), last + 4);
#else
        QSKIP("the position of a virtual operation cannot be read on this platform");
#endif
    }

    void belongsToTheParentItIsGiven()
    {
        QObject parent;
        const Row withParent(&parent);
        const Row withoutParent;
        QCOMPARE(withParent.parent(), &parent);
        QCOMPARE(withoutParent.parent(), nullptr);
    }

    void isDestroyedThroughItsBase()
    {
        auto* row = new Row;
        QSignalSpy destroyed(row, &QObject::destroyed);
        std::unique_ptr<ListItem>(row).reset();
        QCOMPARE(destroyed.count(), 1);
    }

    void triggerItemUpdateEmitsAlthoughNothingChanged()
    {
        Row row;
        QSignalSpy rowChanges(&row, &ListItem::dataChanged);
        row.triggerItemUpdate();
        row.triggerItemUpdate();
        QCOMPARE(rowChanges.count(), 2);

        PassengerTypeItem tile;
        QSignalSpy tileChanges(&tile, &ListItem::dataChanged);
        tile.triggerItemUpdate();
        QCOMPARE(tileChanges.count(), 1);
    }

    void aSetterAnnouncesADifferentValueOnce()
    {
        Row row;
        QSignalSpy changes(&row, &ListItem::dataChanged);
        row.setNumber(0);
        row.setText(QString());
        row.setText(QStringLiteral("")); // empty equals null
        row.setExact(0.0);
        row.setExact(-0.0);
        QCOMPARE(changes.count(), 0);

        row.setNumber(5);
        QCOMPARE(changes.count(), 1);
        row.setNumber(5);
        QCOMPARE(changes.count(), 1);
        row.setText(QStringLiteral("Adult"));
        QCOMPARE(changes.count(), 2);
        row.setText(QStringLiteral("adult"));
        QCOMPARE(changes.count(), 3);
        row.setExact(std::numeric_limits<double>::denorm_min());
        QCOMPARE(changes.count(), 4);
    }

    void theValueIsStoredBeforeItIsAnnounced()
    {
        Row row;
        QList<double> seen;
        connect(&row, &ListItem::dataChanged, &row, [&] { seen << row.number() << row.amount(); });
        row.setNumber(7);
        row.setAmount(2.5);
        QCOMPARE(seen, (QList<double>{7, 0, 7, 2.5}));
    }

    // Equal means abs(a - b) * 1e12 <= min(abs(a), abs(b)) with a = old + 1, b = new + 1.
    void fuzzySetter_data()
    {
        QTest::addColumn<double>("stored");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("announced");

        QTest::newRow("the stored value") << 1.0 << 1.0 << false;
        QTest::newRow("noise of 1e-15") << 1.0 << 1.0 + 1e-15 << false;
        QTest::newRow("noise of -1e-15") << 1.0 << 1.0 - 1e-15 << false;
        QTest::newRow("a cent") << 1.0 << 1.01 << true;
        QTest::newRow("near zero, noise counts as nothing") << 1e-13 << 0.0 << false;
        QTest::newRow("zero, noise counts as nothing") << 0.0 << -1e-13 << false;
        QTest::newRow("zero, the largest difference that is equal") << 0.0 << 4503 * ulp << false;
        QTest::newRow("zero, the smallest difference that is not") << 0.0 << 4504 * ulp << true;
        QTest::newRow("below zero the smaller side decides, still equal")
            << 0.0 << -4503 * ulp << false;
        QTest::newRow("below zero the smaller side decides, not equal")
            << 0.0 << -4504 * ulp << true;
        QTest::newRow("the other way round, still equal") << 4503 * ulp << 0.0 << false;
        QTest::newRow("the other way round, not equal") << 4504 * ulp << 0.0 << true;
        QTest::newRow("the tolerance grows with the value") << 1e6 << 1e6 + 0.9e-6 << false;
        QTest::newRow("the tolerance grows with the value, but not further")
            << 1e6 << 1e6 + 1.1e-6 << true;
        QTest::newRow("minus one is equal to itself") << -1.0 << -1.0 << false;
        QTest::newRow("minus one has no tolerance") << -1.0 << -1.0 + 1e-13 << true;
        QTest::newRow("nor has what lies just beside it") << -1.0 + 1e-13 << -1.0 << true;
        QTest::newRow("different signs after the shift") << -1.0 - 1e-9 << -1.0 + 1e-9 << true;
        QTest::newRow("below minus one, still equal") << -2.0 << -2.0 + 4503 * ulp << false;
        QTest::newRow("below minus one, not equal") << -2.0 << -2.0 + 4505 * ulp << true;
        QTest::newRow("the sign matters") << 5.0 << -5.0 << true;
        QTest::newRow("not a number equals nothing") << 1.0 << notANumber << true;
        QTest::newRow("not a number equals not even itself") << notANumber << notANumber << true;
        QTest::newRow("infinity does not equal itself") << infinity << infinity << true;
        QTest::newRow("opposite infinities are equal") << infinity << -infinity << false;
    }

    void fuzzySetter()
    {
        QFETCH(double, stored);
        QFETCH(double, value);
        QFETCH(bool, announced);
        Row row(stored);
        QSignalSpy changes(&row, &ListItem::dataChanged);

        row.setAmount(value);

        QCOMPARE(changes.count(), announced ? 1 : 0);
        const double expected = announced ? value : stored;
        QVERIFY(qIsNaN(expected) ? qIsNaN(row.amount()) : row.amount() == expected);
    }

    void roleTableTakesPairsInListOrder()
    {
        const RoleTable table{{257, "id"}, {258, "name"}, {257, "number"}};
        QCOMPARE(table.hash, (QHash<int, QByteArray>{{257, "number"}, {258, "name"}}));
        QVERIFY(RoleTable({}).hash.isEmpty());
    }

    void roleNamesShareTheStaticTable()
    {
        const PassengerTypeItem first;
        const PassengerTypeItem second;
        const QHash<int, QByteArray>& table =
            PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash;
        QVERIFY(!table.isEmpty());
        QCOMPARE(first.roleNames(), second.roleNames());
        QVERIFY(first.roleNames().isSharedWith(table));
        QVERIFY(second.roleNames().isSharedWith(table));
    }

    void aCopyOfTheTableIsTheCallersOwn()
    {
        const PassengerTypeItem tile;
        QHash<int, QByteArray> copy = tile.roleNames();
        copy.insert(257, "other");
        QCOMPARE(tile.roleNames().value(257), QByteArray("passengerTypeId"));
    }
};

QTEST_GUILESS_MAIN(TestListItem)

#include "tst_listitem.moc"
