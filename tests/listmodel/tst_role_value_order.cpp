#include "FareProductItem.h"
#include "Golden.h"
#include "ListModel.h"
#include "RoleValues.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <initializer_list>
#include <type_traits>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

constexpr int valueRole = Qt::UserRole + 1;

/// A row of nothing but a value, which it takes as it is.
class Row : public ListItem
{
public:
    explicit Row(int id) : m_id(id) {}

    int id() const override { return m_id; }
    QVariant data(int role) const override { return role == valueRole ? value : QVariant(); }
    QHash<int, QByteArray> roleNames() const override { return {{valueRole, "value"}}; }

    QVariant value;

private:
    int m_id;
};

/// A model of two rows that answers how two values compare.
class Scales
{
public:
    Scales()
    {
        m_model.appendRow(&m_right);
        m_model.appendRow(&m_left);
    }

    /// One character for the three answers, see meanings().
    char compare(const QVariant& left, const QVariant& right)
    {
        m_left.value = left;
        m_right.value = right;
        const bool isLess = leftComesFirst(Qt::AscendingOrder);
        const bool isGreater = leftComesFirst(Qt::DescendingOrder);
        const bool isEqual = areEqual(left, right);
        if (isLess == isGreater)
            return isEqual ? '=' : '.';
        if (isEqual)
            return isLess ? '(' : ')';
        return isLess ? '<' : '>';
    }

    bool areEqual(const QVariant& left, const QVariant& right)
    {
        m_left.value = left;
        m_right.value = left;
        return m_model.countByRole(valueRole, right) == 2;
    }

private:
    bool leftComesFirst(Qt::SortOrder order)
    {
        m_model.sort(0, Qt::AscendingOrder);
        m_model.sortByRole(0, order, valueRole);
        return m_model.itemFromRow(0) == &m_left;
    }

    Row m_right{0};
    Row m_left{1};
    ListModel m_model{&m_right, nullptr};
};

/// Whether this processor has the types that the table was recorded with.
constexpr bool hasRecordedTypes = sizeof(long) == 8 && std::is_signed_v<char>;

/// Whether how the two compare depends on the processor: the size of long, the sign of char, and
/// what becomes of a floating point number that an integer cannot hold.
bool dependsOnProcessor(const RoleValue& left, const RoleValue& right)
{
    const auto isOf = [](const RoleValue& value, std::initializer_list<const char*> types) {
        return std::any_of(types.begin(), types.end(), [&](const char* type) {
            return value.name.startsWith(type + QByteArray(" "));
        });
    };
    const auto varies = {"long", "ulong", "char"};
    const auto enums = {"enum", "other enum"};
    const auto floats = {"double", "float"};
    return isOf(left, varies) || isOf(right, varies) ||
           (isOf(left, enums) && isOf(right, floats)) || (isOf(left, floats) && isOf(right, enums));
}

/// The lines of the table that was recorded.
QList<QByteArray> recordedRows()
{
    QFile file(QStringLiteral(ROLE_VALUE_ORDER));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> rows = file.readAll().split('\n');
    while (!rows.isEmpty() && rows.first().startsWith('#'))
        rows.removeFirst();
    return rows;
}

} // namespace

/// How role values compare, for each pair of a list of values. The table was recorded with Qt 5 on
/// an x86 processor of 64 bits, where its QVariant decides; the same table holds with every Qt.
/// Other processors skip the pairs that depend on them.
class tst_role_value_order : public QObject
{
    Q_OBJECT

private slots:
    void sortingAndCountingCompareAsInTheTable()
    {
        QByteArray table =
            "# Each row: how its value compares with each value, in the same order.\n"
            "# < less, > greater, = equal, . none of these, ) greater and equal\n";
        Scales scales;
        const QVector<RoleValue> values = roleValues();
        const QList<QByteArray> recorded = recordedRows();
        for (int row = 0; row < values.size(); ++row) {
            const RoleValue& left = values[row];
            for (int column = 0; column < m_values.size(); ++column) {
                const RoleValue& right = m_values[column];
                table += hasRecordedTypes || !dependsOnProcessor(left, right)
                             ? QByteArray(1, scales.compare(left.value, right.value))
                             : recorded.value(row).mid(column, 1);
            }
            table += "  " + left.name + '\n';
        }
        QVERIFY(matchesGolden(QStringLiteral(ROLE_VALUE_ORDER), table));
    }

    /// The setters of lists compare what the lists hold as countByRole() does.
    void settersOfListsAnnounceDifferentValues()
    {
        Scales scales;
        FareProductItem item;
        int signalCount = 0;
        connect(&item, &ListItem::dataChanged, &item, [&signalCount] { ++signalCount; });
        const QVector<RoleValue> values = roleValues();
        for (const RoleValue& left : values) {
            for (const RoleValue& right : m_values) {
                item.setPassengerTypes({});
                item.setPassengerTypes({left.value});
                signalCount = 0;
                item.setPassengerTypes({right.value});
                const bool isEqual = scales.areEqual(left.value, right.value);
                const QByteArray pair = left.name + ", " + right.name;
                QVERIFY2(signalCount == (isEqual ? 0 : 1), pair);
                QVERIFY2(item.passengerTypes().size() == 1, pair);
            }
        }
    }

private:
    /// Copies of their own: only the values that are meant to share their data with others do.
    const QVector<RoleValue> m_values = roleValues();
};

QTEST_GUILESS_MAIN(tst_role_value_order)

#include "tst_role_value_order.moc"
