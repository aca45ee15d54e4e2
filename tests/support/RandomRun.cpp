#include "RandomRun.h"

#include "DeferredDeletions.h"
#include "ModelCalls.h"

#include <algorithm>
#include <numeric>

namespace battery
{

RandomRun::RandomRun(ListModel& model, const ItemClass& itemClass, Choices choices, Judge judge)
    : m_model(model), m_itemClass(itemClass), m_isForView(judge == Judge::View),
      m_random(std::move(choices)),
      m_tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal), m_log(&model)
{
}

RandomRun::~RandomRun()
{
    m_model.clear();
    runDeferredDeletions();
    for (const Row& row : m_taken)
        delete row.item;
}

QVector<QVariantMap> RandomRun::shownRows() const
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

void RandomRun::turnEventLoop()
{
    for (const QPointer<ListItem>& item : qAsConst(m_dying))
        expect(item, "a removed row was destroyed before the event loop ran");
    runDeferredDeletions();
    for (const QPointer<ListItem>& item : qAsConst(m_dying))
        expect(!item, "a removed row outlived the event loop");
    m_dying.clear();
    m_removed.clear();
}

QString RandomRun::step()
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

const RandomRun::Operation& RandomRun::nextOperation()
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

void RandomRun::insert()
{
    std::vector<Row> rows{newRow()};
    if (m_random.bounded(9) == 0) {
        rows.push_back(newRow());
        rows.push_back(newRow());
    }
    bringIn(rows);
}

void RandomRun::putBack()
{
    const auto size = m_random.bounded(static_cast<int>(m_taken.size()) + 1);
    const std::vector<Row> rows(m_taken.cend() - size, m_taken.cend());
    m_taken.resize(m_taken.size() - rows.size());
    bringIn(rows);
}

void RandomRun::bringIn(const std::vector<Row>& rows)
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

void RandomRun::removeRow()
{
    if (m_rows.empty())
        return;
    const int row = randomRow();
    expect(m_model.removeRow(row), "removeRow() is false");
    expectDestruction(row, 1);
}

void RandomRun::removeRows()
{
    if (m_rows.empty())
        return;
    const int row = randomRow();
    const int size = 1 + m_random.bounded(qMin(8, rowCount() - row));
    expect(m_model.removeRows(row, size), "removeRows() is false");
    expectDestruction(row, size);
}

void RandomRun::clear()
{
    m_model.clear();
    if (m_rows.empty())
        return;
    expectDestruction(0, rowCount());
    m_expected.append(countChanged(0));
}

void RandomRun::takeRow()
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

void RandomRun::takeRows()
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

void RandomRun::sort()
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

void RandomRun::sortByRole()
{
    const Qt::SortOrder order = randomOrder();
    const int field = randomOrderedField();
    m_model.sortByRole(m_random.bounded(-1, 5), order, m_itemClass.fields.at(field).role);
    std::stable_sort(m_rows.begin(), m_rows.end(), valueOrder(field, order));
}

void RandomRun::sortRangeByRole()
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
    expect(
        std::is_sorted(m_rows.cbegin() + first, m_rows.cbegin() + last, valueOrder(field, order)),
        "not in order");
}

void RandomRun::changeRow()
{
    if (m_rows.empty())
        return;
    const int row = randomRow();
    expectRowChanges(row, change(at(row)));
}

void RandomRun::changeFormerRow()
{
    std::vector<Row>& former = m_random.bounded(2) == 0 ? m_taken : m_removed;
    if (!former.empty())
        change(former[static_cast<std::size_t>(m_random.bounded(static_cast<int>(former.size())))]);
}

void RandomRun::triggerItemUpdate()
{
    if (m_rows.empty())
        return;
    const int row = randomRow();
    at(row).item->triggerItemUpdate();
    m_expectedWitnessed += at(row).isWatched ? 1 : 0;
    expectRowChanges(row, true);
}

void RandomRun::callInVain()
{
    const QVector<const char*> calls =
        m_rows.empty() ? rejectedCalls() + callsRejectedWithoutRows() : rejectedCalls();
    const char* call = calls.at(m_random.bounded(calls.size()));
    expect(isRejection(makeCall(m_model, call, {})), call);
}

void RandomRun::lookUp()
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

} // namespace battery
