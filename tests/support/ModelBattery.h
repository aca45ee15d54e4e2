#pragma once

#include "Choices.h"
#include "DeferredDeletions.h"
#include "ItemFields.h"
#include "ListModel.h"
#include "ModelCalls.h"
#include "SignalLog.h"
#include "Soak.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <numeric>
#include <vector>

/// What every list model must pass, with any rows: calls that it has to reject, and random
/// operations beside a list of what it must show. Each model comes without rows and leaves without
/// rows; it is one for QAbstractItemModelTester, see TopLevelOnly.h.
namespace battery
{

using rivo::models::ListItem;
using rivo::models::ListModel;

inline void rejectedCallRows()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("rows");
    for (const char* call : rejectedCalls()) {
        for (int rows : {0, 1, 5})
            QTest::addRow("%s (%d rows)", call, rows) << QByteArray(call) << rows;
    }
    for (const char* call : callsRejectedWithoutRows())
        QTest::addRow("%s (0 rows)", call) << QByteArray(call) << 0;
}

inline void runRejectedCall(ListModel& model, const ItemClass& itemClass)
{
    QFETCH(QByteArray, call);
    QFETCH(int, rows);
    QObject owner;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int row = 0; row < rows; ++row)
        model.appendRow(itemClass.make(&owner));
    const QVector<ListItem*> before = itemsOf(model);
    QCOMPARE(before.size(), rows);
    SignalLog log(&model);

    QVERIFY(isRejection(makeCall(model, call, {})));
    runDeferredDeletions();

    QCOMPARE(log.take(), QStringList());
    QCOMPARE(model.rowCount(), rows);
    QCOMPARE(itemsOf(model), before);
    for (int row = 0; row < rows; ++row) {
        before.at(row)->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList{rowChanged(row)});
    }
    model.takeRows(0, rows);
}

/// What judges the model: its signals and rows, or a view too, which learns of nothing silent.
enum class Judge { Model, View };

/// Random operations on a model beside a list of what it must show.
class RandomRun
{
public:
    RandomRun(ListModel& model, const ItemClass& itemClass, Choices choices,
              Judge judge = Judge::Model)
        : m_model(model), m_itemClass(itemClass), m_isForView(judge == Judge::View),
          m_random(std::move(choices)),
          m_tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal), m_log(&model)
    {
    }

    ~RandomRun()
    {
        m_model.clear();
        runDeferredDeletions();
        for (const Row& row : m_taken)
            delete row.item;
    }

    RandomRun(const RandomRun&) = delete;
    RandomRun& operator=(const RandomRun&) = delete;

    /// What the rows must show, by role names.
    QVector<QVariantMap> shownRows() const
    {
        QVector<QVariantMap> rows;
        for (const Row& row : m_rows) {
            rows.append(QVariantMap());
            for (const ItemField& field : m_itemClass.fields) {
                if (field.role != 0)
                    rows.last().insert(QString::fromLatin1(field.roleName),
                                       row.values.at(field.number));
            }
        }
        return rows;
    }

    /// Destroys the removed rows; a view does so whenever it waits for the window system.
    void turnEventLoop()
    {
        for (const QPointer<ListItem>& item : qAsConst(m_dying))
            expect(item, "a removed row was destroyed before the event loop ran");
        runDeferredDeletions();
        for (const QPointer<ListItem>& item : qAsConst(m_dying))
            expect(!item, "a removed row outlived the event loop");
        m_dying.clear();
        m_removed.clear();
    }

    /// Nothing is left to decide by.
    bool isOver() const { return m_random.areUsedUp(); }

    /// Does one operation and compares; returns what differs.
    QString step()
    {
        m_expected.clear();
        m_touched.clear();
        m_problem.clear();
        ++m_steps;
        const Operation& operation = nextOperation();
        m_witnessed = 0;
        m_expectedWitnessed = 0;
        (this->*operation.run)();
        compareSignals();
        compareRows();
        for (int row : qAsConst(m_touched))
            compareValues(row);
        if (m_steps % 20 == 0)
            compareEverything();
        if (m_problem.isEmpty())
            return QString();
        return QString::fromLatin1("step %1, %2: %3")
            .arg(m_steps)
            .arg(QLatin1String(operation.name), m_problem);
    }

private:
    /// A row as it must be.
    struct Row
    {
        ListItem* item;
        QObject* parent;
        QVariantList values; ///< per field of the item class
        int connections = 0; ///< to the model
        bool isWatched = true;
    };

    struct Operation
    {
        const char* name;
        int weight;
        void (RandomRun::*run)();
        bool isSilent = false;
    };

    static constexpr int mostRows = 60;
    static constexpr int mostTaken = 20;

    const Operation& nextOperation()
    {
        static const std::vector<Operation> operations{
            {"insertion", 36, &RandomRun::insert},
            {"putBack", 6, &RandomRun::putBack},
            {"removeRow", 6, &RandomRun::removeRow},
            {"removeRows", 4, &RandomRun::removeRows},
            {"takeRow", 4, &RandomRun::takeRow},
            {"takeRows", 3, &RandomRun::takeRows},
            {"sort", 2, &RandomRun::sort, true},
            {"sortByRole", 3, &RandomRun::sortByRole, true},
            {"sortRangeByRole", 3, &RandomRun::sortRangeByRole, true},
            {"setter of a row", 20, &RandomRun::changeRow},
            {"setter of a former row", 5, &RandomRun::changeFormerRow},
            {"triggerItemUpdate", 4, &RandomRun::triggerItemUpdate},
            {"rejected call", 10, &RandomRun::callInVain},
            {"lookups", 8, &RandomRun::lookUp},
            {"clear", 1, &RandomRun::clear},
            {"event loop", 3, &RandomRun::turnEventLoop},
        };
        static const int total =
            std::accumulate(operations.cbegin(), operations.cend(), 0,
                            [](int sum, const Operation& o) { return sum + o.weight; });
        int ticket = m_random.bounded(total);
        for (const Operation& operation : operations) {
            ticket -= operation.weight;
            if (ticket < 0 && !(operation.isSilent && m_isForView))
                return operation;
        }
        return operations.front();
    }

    // Operations. Each states in m_expected what the model must emit and brings m_rows to what it
    // must show.

    void insert()
    {
        std::vector<Row> rows{newRow()};
        if (m_random.bounded(9) == 0) {
            rows.push_back(newRow());
            rows.push_back(newRow());
        }
        bringIn(rows);
    }

    /// Rows that were taken out come back.
    void putBack()
    {
        const auto size = m_random.bounded(static_cast<int>(m_taken.size()) + 1);
        const std::vector<Row> rows(m_taken.cend() - size, m_taken.cend());
        m_taken.resize(m_taken.size() - rows.size());
        bringIn(rows);
    }

    /// In one of the ways that there are for so many rows.
    void bringIn(const std::vector<Row>& rows)
    {
        enum Way { AppendRow, AppendRowFromQml, InsertAtEnd, Insert };
        const int way = m_random.bounded(2) == 0 ? Insert : m_random.bounded(3);
        const int position =
            rows.size() == 1 && way == Insert ? m_random.bounded(rowCount() + 1) : rowCount();
        if (rows.size() != 1)
            m_model.appendRows(pointers(rows));
        else if (way == AppendRow)
            m_model.appendRow(rows.front().item);
        else if (way == AppendRowFromQml)
            m_model.appendRowFromQml(rows.front().item);
        else
            m_model.insertRow(position, rows.front().item);
        expectInsertion(position, rows);
    }

    void removeRow()
    {
        if (m_rows.empty())
            return;
        const int row = randomRow();
        expect(m_model.removeRow(row), "removeRow() is false");
        expectDestruction(row, 1);
    }

    void removeRows()
    {
        if (m_rows.empty())
            return;
        const int row = randomRow();
        const int size = 1 + m_random.bounded(qMin(8, rowCount() - row));
        expect(m_model.removeRows(row, size), "removeRows() is false");
        expectDestruction(row, size);
    }

    void clear()
    {
        m_model.clear();
        if (m_rows.empty())
            return;
        expectDestruction(0, rowCount());
        m_expected.append(countChanged(0));
    }

    void takeRow()
    {
        if (m_rows.empty())
            return;
        const bool first = m_random.bounded(3) == 0;
        const int row = first ? 0 : randomRow();
        const ListItem* taken = m_model.takeRow(first ? -2 : row);
        expect(taken == at(row).item, "takeRow() returned another item");
        at(row).connections = 0;
        at(row).isWatched = false;
        expectExtraction(row, 1);
    }

    void takeRows()
    {
        if (m_rows.empty())
            return;
        const bool first = m_random.bounded(3) == 0;
        const bool every = m_random.bounded(20) == 0;
        const int row = first || every ? 0 : randomRow();
        const int size = every ? rowCount() : 1 + m_random.bounded(qMin(6, rowCount() - row));
        const QVector<ListItem*> expected =
            pointers({m_rows.begin() + row, m_rows.begin() + row + size});
        expect(m_model.takeRows(first ? -2 : row, every ? -1 : size) == expected,
               "takeRows() returned other items");
        expectExtraction(row, size);
    }

    void sort()
    {
        const Qt::SortOrder order = randomOrder();
        m_model.sort(m_random.bounded(-1, 5), order);
        adoptOrder(0, rowCount());
        const auto isBefore = [order](const Row& a, const Row& b) {
            const int left = a.values.first().toInt();
            const int right = b.values.first().toInt();
            return order == Qt::AscendingOrder ? left < right : left > right;
        };
        expect(std::is_sorted(m_rows.cbegin(), m_rows.cend(), isBefore), "not in order");
    }

    void sortByRole()
    {
        const Qt::SortOrder order = randomOrder();
        const int field = randomOrderedField();
        m_model.sortByRole(m_random.bounded(-1, 5), order, m_itemClass.fields.at(field).role);
        std::stable_sort(m_rows.begin(), m_rows.end(), valueOrder(field, order));
    }

    void sortRangeByRole()
    {
        const Qt::SortOrder order = randomOrder();
        const int field = randomOrderedField();
        const int first = m_random.bounded(rowCount() + 1);
        const int last = m_random.bounded(rowCount() + 1);
        m_model.sortRangeByRole(m_random.bounded(-1, 5), order, first, last,
                                m_itemClass.fields.at(field).role);
        if (last <= first)
            return;
        adoptOrder(first, last);
        expect(std::is_sorted(m_rows.cbegin() + first, m_rows.cbegin() + last,
                              valueOrder(field, order)),
               "not in order");
    }

    void changeRow()
    {
        if (m_rows.empty())
            return;
        const int row = randomRow();
        expectRowChanges(row, change(at(row)));
    }

    /// Rows that left the model do not reach it any more, connected or not.
    void changeFormerRow()
    {
        std::vector<Row>& former = m_random.bounded(2) == 0 ? m_taken : m_removed;
        if (!former.empty())
            change(former[static_cast<std::size_t>(
                m_random.bounded(static_cast<int>(former.size())))]);
    }

    void triggerItemUpdate()
    {
        if (m_rows.empty())
            return;
        const int row = randomRow();
        at(row).item->triggerItemUpdate();
        m_expectedWitnessed += at(row).isWatched ? 1 : 0;
        expectRowChanges(row, true);
    }

    void callInVain()
    {
        const QVector<const char*> calls =
            m_rows.empty() ? rejectedCalls() + callsRejectedWithoutRows() : rejectedCalls();
        const char* call = calls.at(m_random.bounded(calls.size()));
        expect(isRejection(makeCall(m_model, call, {})), call);
    }

    void lookUp()
    {
        const int id = randomSample(m_itemClass.fields.first()).toInt();
        const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(), [id](const Row& row) {
            return row.values.first().toInt() == id;
        });
        const bool exists = found != m_rows.cend();
        const int row = exists ? static_cast<int>(found - m_rows.cbegin()) : -1;
        expect(m_model.findById(id) == (exists ? found->item : nullptr), "findById()");
        expect(m_model.rowIndexFromId(id) == row, "rowIndexFromId()");
        if (!m_rows.empty()) {
            const int any = randomRow();
            expect(m_model.indexFromItem(at(any).item).row() == any, "indexFromItem()");
        }

        const ItemField& field = m_itemClass.fields.at(randomShownField());
        const QVariant value = randomSample(field);
        // Asks the getter: to QVariant two copies of one coordinate are different.
        const auto count =
            std::count_if(m_rows.cbegin(), m_rows.cend(), [&field, &value](const Row& counted) {
                return areEqual(field.get(*counted.item), value);
            });
        expect(m_model.countByRole(field.role, value) == count, "countByRole()");
        if (!m_taken.empty())
            expect(!m_model.indexFromItem(m_taken.back().item).isValid(),
                   "indexFromItem() of a taken item");
        if (!m_rows.empty())
            m_touched.append(randomRow());
    }

    // Expectations.

    void expectInsertion(int position, std::vector<Row> rows)
    {
        if (rows.empty())
            return;
        const int size = static_cast<int>(rows.size());
        for (Row& row : rows)
            ++row.connections;
        m_rows.insert(m_rows.begin() + position, rows.cbegin(), rows.cend());
        m_expected += announcedInsertion(position, position + size - 1, rowCount());
        for (int row = position; row < position + size; ++row)
            m_touched.append(row);
        limitRows();
    }

    /// Keeps the model small: an insertion too many is followed by a removal.
    void limitRows()
    {
        if (rowCount() <= mostRows)
            return;
        const int row = m_random.bounded(mostRows / 2);
        const int size = rowCount() - mostRows / 2 - m_random.bounded(mostRows / 4);
        m_touched.clear();
        expect(m_model.removeRows(row, size), "removeRows() is false");
        expectDestruction(row, size);
    }

    void expectDestruction(int row, int size)
    {
        for (int i = row; i < row + size; ++i)
            m_dying.append(at(i).item);
        m_removed.insert(m_removed.end(), m_rows.begin() + row, m_rows.begin() + row + size);
        expectRemoval(row, size);
    }

    void expectExtraction(int row, int size)
    {
        m_taken.insert(m_taken.end(), m_rows.begin() + row, m_rows.begin() + row + size);
        expectRemoval(row, size);
        // Rows that were taken may be destroyed.
        while (m_taken.size() > mostTaken) {
            delete m_taken.front().item;
            m_taken.erase(m_taken.begin());
        }
    }

    void expectRemoval(int row, int size)
    {
        m_rows.erase(m_rows.begin() + row, m_rows.begin() + row + size);
        m_expected += announcedRemoval(row, row + size - 1, rowCount());
        if (row > 0)
            m_touched.append(row - 1);
        if (row < rowCount())
            m_touched.append(row);
    }

    void expectRowChanges(int row, bool announced)
    {
        m_touched.append(row);
        for (int i = 0; announced && i < at(row).connections; ++i)
            m_expected.append(rowChanged(row));
    }

    void expect(bool holds, const char* otherwise)
    {
        if (!holds)
            m_problem += QLatin1String(otherwise) + QLatin1String("; ");
    }

    // Comparisons.

    void compareSignals()
    {
        const QStringList emitted = m_log.take();
        if (emitted != m_expected)
            m_problem +=
                QString::fromLatin1("emitted {%1} instead of {%2}; ")
                    .arg(emitted.join(QLatin1String(", ")), m_expected.join(QLatin1String(", ")));
        if (m_witnessed != m_expectedWitnessed)
            m_problem += QString::fromLatin1("another receiver was called %1 times instead of %2; ")
                             .arg(m_witnessed)
                             .arg(m_expectedWitnessed);
    }

    void compareRows()
    {
        expect(m_model.rowCount() == rowCount(), "rowCount()");
        expect(m_model.property("count").toInt() == rowCount(), "count");
        expect(itemsOf(m_model) == pointers(m_rows), "other rows than expected");
    }

    void compareValues(int row)
    {
        const QModelIndex index = m_model.index(row, 0);
        for (const ItemField& field : m_itemClass.fields) {
            const QVariant expected = at(row).values.at(field.number);
            expect(sameValue(field.get(*at(row).item), expected), field.name);
            if (field.role != 0)
                expect(sameValue(m_model.data(index, field.role), expected), field.name);
        }
        expect(at(row).item->id() == at(row).values.first().toInt(), "id()");
        expect(at(row).item->parent() == at(row).parent, "the row has another parent");
    }

    void compareEverything()
    {
        const int roles = m_itemClass.roleNames().size();
        for (int row = 0; row < rowCount(); ++row) {
            compareValues(row);
            const QVariantMap exported = m_model.get(row).toMap();
            expect(exported.size() == roles, "get() has another number of keys");
            for (const ItemField& field : m_itemClass.fields) {
                if (field.role != 0)
                    expect(sameValue(exported.value(QString::fromLatin1(field.roleName)),
                                     at(row).values.at(field.number)),
                           "get()");
            }
        }
    }

    // Helpers.

    static QVector<QVariantList> samplesOf(const ItemClass& itemClass)
    {
        QVector<QVariantList> samples;
        for (const ItemField& field : itemClass.fields)
            samples.append(field.samples());
        return samples;
    }

    Row& at(int row) { return m_rows.at(static_cast<std::size_t>(row)); }
    int rowCount() const { return static_cast<int>(m_rows.size()); }
    int randomRow() { return m_random.bounded(rowCount()); }

    Qt::SortOrder randomOrder()
    {
        return m_random.bounded(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
    }

    QVariant randomSample(const ItemField& field)
    {
        const QVariantList& samples = m_samples.at(field.number);
        return samples.at(m_random.bounded(samples.size()));
    }

    int randomShownField()
    {
        return randomField([](const ItemField& field) { return field.role != 0; });
    }

    /// Of a type that QVariant orders.
    int randomOrderedField()
    {
        return randomField([](const ItemField& field) {
            return field.role != 0 && field.initial.userType() < QMetaType::User;
        });
    }

    int randomSettableField()
    {
        return randomField([this](const ItemField& field) {
            return field.set && !(m_isForView && field.announced == Announced::Never);
        });
    }

    int randomField(const std::function<bool(const ItemField&)>& isWanted)
    {
        QVector<int> wanted;
        for (const ItemField& field : m_itemClass.fields) {
            if (isWanted(field))
                wanted.append(field.number);
        }
        return wanted.at(m_random.bounded(wanted.size()));
    }

    Row newRow()
    {
        Row row;
        row.parent = m_random.bounded(2) == 0 ? nullptr : &m_owner;
        row.values = m_itemClass.initialValues();
        for (const ItemField& field : m_itemClass.fields) {
            if (!field.set)
                row.values[field.number] = randomSample(field);
        }
        row.item = m_itemClass.construct(row.values, row.parent);
        for (int i = m_random.bounded(2 * m_itemClass.fields.size()); i > 0; --i)
            change(row);
        QObject::connect(row.item, &ListItem::dataChanged, &m_owner, [this] { ++m_witnessed; });
        m_witnessed = 0;
        m_expectedWitnessed = 0;
        return row;
    }

    /// Sets a random field; whether that must be announced.
    bool change(Row& row)
    {
        const int index = randomSettableField();
        const ItemField& field = m_itemClass.fields.at(index);
        const QVariant value = randomSample(field);
        const SetterEffect effect = setterEffect(m_itemClass, row.values, index, value);
        field.set(*row.item, value);
        if (effect.isStored)
            row.values[index] = value;
        m_expectedWitnessed += effect.isAnnounced && row.isWatched ? 1 : 0;
        return effect.isAnnounced;
    }

    static QVector<ListItem*> pointers(const std::vector<Row>& rows)
    {
        QVector<ListItem*> items;
        for (const Row& row : rows)
            items.append(row.item);
        return items;
    }

    static std::function<bool(const Row&, const Row&)> valueOrder(int field, Qt::SortOrder order)
    {
        return [field, order](const Row& a, const Row& b) {
            const int result = compare(a.values.at(field), b.values.at(field));
            return order == Qt::AscendingOrder ? result < 0 : result > 0;
        };
    }

    /// Coordinates are equal to copies that share their data.
    static bool areEqual(const QVariant& a, const QVariant& b)
    {
        if (a.userType() < QMetaType::User)
            return compare(a, b) == 0;
        const auto size = static_cast<std::size_t>(QMetaType(a.userType()).sizeOf());
        return std::memcmp(a.constData(), b.constData(), size) == 0;
    }

    /// Two values of one of the types that rows show. Of texts that differ in case alone each is
    /// the greater one.
    static int compare(const QVariant& a, const QVariant& b)
    {
        switch (a.userType()) {
        case QMetaType::QString:
            if (a.toString() == b.toString())
                return 0;
            return a.toString().compare(b.toString(), Qt::CaseInsensitive) < 0 ? -1 : 1;
        case QMetaType::Double:
            if (a.toDouble() == b.toDouble() || qFuzzyCompare(a.toDouble(), b.toDouble()))
                return 0;
            return a.toDouble() < b.toDouble() ? -1 : 1;
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
            if (a.toLongLong() == b.toLongLong())
                return 0;
            return a.toLongLong() < b.toLongLong() ? -1 : 1;
        case QMetaType::QDateTime:
            if (a.toDateTime() == b.toDateTime())
                return 0;
            return a.toDateTime() < b.toDateTime() ? -1 : 1;
        default:
            qFatal("no order of type %d", a.userType());
        }
        return 0;
    }

    /// An unstable sort leaves equal rows in any order: takes over what the model has between
    /// `first` and `last` if it is a permutation of what was there.
    void adoptOrder(int first, int last)
    {
        const QVector<ListItem*> items = itemsOf(m_model).mid(first, last - first);
        std::vector<Row> sorted;
        for (const ListItem* item : items) {
            const auto row = std::find_if(m_rows.cbegin() + first, m_rows.cbegin() + last,
                                          [item](const Row& r) { return r.item == item; });
            if (row == m_rows.cbegin() + last)
                return expect(false, "a row came from elsewhere");
            sorted.push_back(*row);
        }
        const QSet<ListItem*> different(items.cbegin(), items.cend());
        expect(different.size() == last - first, "rows were lost or doubled");
        if (m_problem.isEmpty())
            std::copy(sorted.cbegin(), sorted.cend(), m_rows.begin() + first);
    }

    ListModel& m_model;
    const ItemClass m_itemClass;
    const QVector<QVariantList> m_samples = samplesOf(m_itemClass);
    const bool m_isForView;
    QObject m_owner;
    Choices m_random;
    QAbstractItemModelTester m_tester;
    SignalLog m_log;

    std::vector<Row> m_rows;
    std::vector<Row> m_taken;
    std::vector<Row> m_removed; ///< until the event loop runs
    QVector<QPointer<ListItem>> m_dying;

    QStringList m_expected;
    QVector<int> m_touched;
    QString m_problem;
    int m_witnessed = 0;
    int m_expectedWitnessed = 0;
    int m_steps = 0;
};

inline void seedRows(quint32 count)
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= count; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

/// See Soak.h about fewer steps.
inline void runRandomOperations(ListModel& model, const ItemClass& itemClass, int steps)
{
    QFETCH(quint32, seed);
    RandomRun run(model, itemClass, Choices(seed));
    for (int step = 0; step < steps / soakDivisor(); ++step) {
        const QString problem = run.step();
        QVERIFY2(problem.isEmpty(),
                 qPrintable(QString::fromLatin1("seed %1, %2").arg(seed).arg(problem)));
    }
}

} // namespace battery
