#include "ModelCalls.h"
#include "SampleModel.h"
#include "SignalLog.h"
#include "Table.h"

#include <QDateTime>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <functional>
#include <numeric>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

constexpr auto up = Qt::AscendingOrder;
constexpr auto down = Qt::DescendingOrder;
constexpr int valueRole = SampleItem::ValueRole;

/// Any number as an order: callers in C++ may pass more than the two that have names.
[[maybe_unused]] Qt::SortOrder orderOf(int number) { return static_cast<Qt::SortOrder>(number); }

using Sort = std::function<void(ListModel&)>;

Sort byId(Qt::SortOrder order)
{
    return [=](ListModel& model) { model.sort(0, order); };
}

Sort byRole(Qt::SortOrder order, int role = valueRole)
{
    return [=](ListModel& model) { model.sortByRole(0, order, role); };
}

Sort range(Qt::SortOrder order, int first, int last)
{
    return [=](ListModel& model) { model.sortRangeByRole(0, order, first, last, valueRole); };
}

using Model = SampleModel;

QVector<int> ids(const Model& model)
{
    QVector<int> numbers;
    for (const ListItem* item : itemsOf(model))
        numbers << item->id();
    return numbers;
}

QVector<int> counted(int size)
{
    QVector<int> numbers(size);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

QVector<int> sorted(QVector<int> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace

Q_DECLARE_METATYPE(Sort)

class TestListModelSort : public QObject
{
    Q_OBJECT

private slots:
    void order_data()
    {
        // after: former row numbers
        const Table<QVariantList, Sort, QVector<int>> row("values", "sort", "after");
        using Rows = QVector<int>;
        const QVariantList prqs{3, 1, 3, 2};

        row("ascending by role, equal values keep their order", prqs, byRole(up), Rows{1, 3, 0, 2});
        row("descending by role, equal values keep their order", prqs, byRole(down),
            Rows{0, 2, 3, 1});
        row("ascending by id", prqs, byId(up), Rows{0, 1, 2, 3});
        row("descending by id", prqs, byId(down), Rows{3, 2, 1, 0});
#ifndef __SANITIZE_ADDRESS__ // UBSan, which comes along, ends the program at such an order
        const Qt::SortOrder other = orderOf(7);
        row("any other order than ascending by id", prqs, byId(other), Rows{3, 2, 1, 0});
        row("any other order than ascending by role", prqs, byRole(other), Rows{0, 2, 3, 1});
        row("any other order than ascending in a range", {2, 1, 4, 3}, range(other, 0, 4),
            Rows{2, 3, 0, 1});
        row("any other order of texts", {"b", "A", "c"}, byRole(other), Rows{2, 0, 1});
#endif
        row("by another role", prqs, byRole(down, SampleItem::IdRole), Rows{3, 2, 1, 0});
        row("by a role that no row has: all are equal", prqs, byRole(down, 999), Rows{0, 1, 2, 3});

        row("the whole range, ascending", {3, 1, 4, 2}, range(up, 0, 4), Rows{1, 3, 0, 2});
        row("the end of the range is not part of it", {5, 1, 7, 9}, range(down, 0, 3),
            Rows{2, 0, 1, 3});
        row("nor is what lies before its beginning", {5, 9, 7, 8}, range(up, 1, 4),
            Rows{0, 2, 3, 1});
        row("a range in the middle", {9, 5, 7, 6, 0}, range(down, 1, 4), Rows{0, 2, 3, 1, 4});
        row("an empty range changes nothing", {3, 2, 1}, range(up, 1, 1), Rows{0, 1, 2});
        row("an empty range at the end changes nothing", {3, 2, 1}, range(up, 3, 3), Rows{0, 1, 2});
        row("a range that ends before it begins changes nothing", {3, 2, 1}, range(up, 2, 0),
            Rows{0, 1, 2});
    }

    void order()
    {
        QFETCH(QVariantList, values);
        QFETCH(Sort, sort);
        QFETCH(QVector<int>, after);
        Model model(values);
        SignalLog log(&model);

        sort(model);

        QCOMPARE(log.take(), QStringList());
        QCOMPARE(ids(model), after);
        for (int row = 0; row < after.size(); ++row) {
            QCOMPARE(model.get(row).toMap().value("id").toInt(), after.at(row));
            QCOMPARE(model.data(model.index(row, 0), valueRole), values.at(after.at(row)));
        }
    }

    void sortIsTheBasesOwn()
    {
        Model model(3);
        static_cast<QAbstractItemModel&>(model).sort(5, down);
        QCOMPARE(ids(model), (QVector<int>{2, 1, 0}));
        static_cast<QAbstractItemModel&>(model).sort(0);
        QCOMPARE(ids(model), (QVector<int>{0, 1, 2}));
    }

    void thousandsOfRowsWithFewKeysKeepTheirOrder_data()
    {
        addColumns<Qt::SortOrder, int>("order", "keys");
        for (int keys : {1, 5}) {
            QTest::addRow("%d keys, ascending", keys) << up << keys;
            QTest::addRow("%d keys, descending", keys) << down << keys;
        }
    }

    void thousandsOfRowsWithFewKeysKeepTheirOrder()
    {
        QFETCH(Qt::SortOrder, order);
        QFETCH(int, keys);
        QRandomGenerator random(1);
        QVariantList values;
        for (int i = 0; i < 10000; ++i)
            values << random.bounded(keys);
        Model model(values);
        model.sortByRole(0, order, valueRole);

        const auto rank = [&](int id) {
            const int key = values.at(id).toInt();
            return qMakePair(order == up ? key : -key, id);
        };
        const QVector<int> after = ids(model);
        QVERIFY(std::is_sorted(after.cbegin(), after.cend(),
                               [&](int a, int b) { return rank(a) < rank(b); }));
        QCOMPARE(sorted(after), counted(10000));
    }

    void thousandsOfRows_data()
    {
        const Table<Sort, int, int, bool> row("sort", "first", "last", "ascending");
        row("by id", byId(up), 0, 10000, true);
        row("by id, descending", byId(down), 0, 10000, false);
        row("a range", range(up, 500, 9500), 500, 9500, true);
        row("a range, descending", range(down, 500, 9500), 500, 9500, false);
    }

    void thousandsOfRows()
    {
        QFETCH(Sort, sort);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(bool, ascending);
        QRandomGenerator random(2);
        Model model;
        QVector<int> expected;
        for (int i = 0; i < 10000; ++i) {
            expected << random.bounded(1000);
            model.appendRow(new SampleItem(expected.last(), expected.last(), &model));
        }
        QVector<ListItem*> before = itemsOf(model);
        std::sort(expected.begin() + first, expected.begin() + last);
        if (!ascending)
            std::reverse(expected.begin() + first, expected.begin() + last);

        sort(model);

        QCOMPARE(ids(model), expected);
        QVector<ListItem*> after = itemsOf(model);
        std::sort(after.begin(), after.end());
        std::sort(before.begin(), before.end());
        QCOMPARE(after, before); // the very same objects
    }

    // Values without a consistent order: no particular result, but the same rows, and those
    // outside the range untouched.
    void valuesWithoutAnOrder_data()
    {
        addColumns<QVariantList, Sort, int, int>("some", "sort", "first", "last");
        const auto rows = [](const char* name, const QVariantList& some) {
            QTest::addRow("%s, by role", name) << some << byRole(up) << 0 << 1000;
            QTest::addRow("%s, by role, descending", name) << some << byRole(down) << 0 << 1000;
            QTest::addRow("%s, in a range", name) << some << range(up, 100, 900) << 100 << 900;
            QTest::addRow("%s, in a range, descending", name)
                << some << range(down, 100, 900) << 100 << 900;
        };
        rows("amounts that are no numbers", {qQNaN(), 1.0, qQNaN(), 3.0, 2.0});
        rows("nothing but amounts that are no numbers", {qQNaN()});
        rows("many types", {9, "10", QVariant(), 2.5, "x", true, QDate(2026, 1, 1), qQNaN()});
        rows("texts that differ in case, each lies after the others", {"Adult", "adult", "ADULT"});
    }

    void valuesWithoutAnOrder()
    {
        QFETCH(QVariantList, some);
        QFETCH(Sort, sort);
        QFETCH(int, first);
        QFETCH(int, last);
        QRandomGenerator random(3);
        QVariantList values;
        for (int i = 0; i < 1000; ++i)
            values << some.at(random.bounded(some.size()));
        Model model(values);
        SignalLog log(&model);

        sort(model);

        QCOMPARE(log.take(), QStringList());
        QCOMPARE(ids(model).mid(0, first), counted(1000).mid(0, first));
        QCOMPARE(sorted(ids(model).mid(first, last - first)),
                 counted(1000).mid(first, last - first));
        QCOMPARE(ids(model).mid(last), counted(1000).mid(last));
    }

    void noViewIsNotified()
    {
        Model model(QVariantList{3, 2, 1});
        const QPersistentModelIndex first = model.index(0, 0);
        model.sortByRole(0, up, valueRole);
        QCOMPARE(first.row(), 0); // stays on its row, which is another item now
        QCOMPARE(model.data(first, SampleItem::IdRole), QVariant(2));
    }
};

QTEST_GUILESS_MAIN(TestListModelSort)

#include "tst_listmodel_sort.moc"
