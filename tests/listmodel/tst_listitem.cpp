#include "ListItem.h"
#include "MetaObjectText.h"
#include "QHashStaticInit.h"

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
};

QTEST_GUILESS_MAIN(TestListItem)

#include "tst_listitem.moc"
