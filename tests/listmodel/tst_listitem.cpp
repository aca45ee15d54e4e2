#include "ListItem.h"
#include "MetaObjectText.h"
#include "QHashStaticInit.h"
#include "Table.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

using rivo::models::ListItem;
using rivo::models::QHashStaticInit;

namespace
{

using RoleTable = QHashStaticInit<int, QByteArray>;
static_assert(sizeof(RoleTable) == sizeof(QHash<int, QByteArray>), "the hash is its only member");

/// A row with one amount.
class Row : public ListItem
{
public:
    explicit Row(double amount) : m_amount(amount) {}

    int id() const override { return 0; }
    QVariant data(int) const override { return QVariant(); }
    QHash<int, QByteArray> roleNames() const override { return {}; }

    double amount() const { return m_amount; }
    void setAmount(double amount) { storeFuzzy(m_amount, amount); }

private:
    double m_amount;
};

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

    // Equal means abs(a - b) * 1e12 <= min(abs(a), abs(b)) with a = old + 1, b = new + 1.
    void fuzzySetter_data()
    {
        const Table<double, double, bool> row("stored", "value", "announced");
        row("the stored value", 1.0, 1.0, false);
        row("noise of 1e-15", 1.0, 1.0 + 1e-15, false);
        row("noise of -1e-15", 1.0, 1.0 - 1e-15, false);
        row("a cent", 1.0, 1.01, true);
        row("near zero, noise counts as nothing", 1e-13, 0.0, false);
        row("zero, noise counts as nothing", 0.0, -1e-13, false);
        row("zero, the largest difference that is equal", 0.0, 4503 * ulp, false);
        row("zero, the smallest difference that is not", 0.0, 4504 * ulp, true);
        row("below zero the smaller side decides, still equal", 0.0, -4503 * ulp, false);
        row("below zero the smaller side decides, not equal", 0.0, -4504 * ulp, true);
        row("the other way round, still equal", 4503 * ulp, 0.0, false);
        row("the other way round, not equal", 4504 * ulp, 0.0, true);
        row("the tolerance grows with the value", 1e6, 1e6 + 0.9e-6, false);
        row("the tolerance grows with the value, but not further", 1e6, 1e6 + 1.1e-6, true);
        row("minus one is equal to itself", -1.0, -1.0, false);
        row("minus one has no tolerance", -1.0, -1.0 + 1e-13, true);
        row("nor has what lies just beside it", -1.0 + 1e-13, -1.0, true);
        row("different signs after the shift", -1.0 - 1e-9, -1.0 + 1e-9, true);
        row("below minus one, still equal", -2.0, -2.0 + 4503 * ulp, false);
        row("below minus one, not equal", -2.0, -2.0 + 4505 * ulp, true);
        row("the sign matters", 5.0, -5.0, true);
        row("not a number equals nothing", 1.0, notANumber, true);
        row("not a number equals not even itself", notANumber, notANumber, true);
        row("infinity does not equal itself", infinity, infinity, true);
        row("opposite infinities are equal", infinity, -infinity, false);
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
};

QTEST_GUILESS_MAIN(TestListItem)

#include "tst_listitem.moc"
