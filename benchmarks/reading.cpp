// Rows that are looked at: their roles, whole rows, and the search for one.

#include "Measure.h"
#include "Peers.h"
#include "QmlPeer.h"

#include <QQmlEngine>
#include <QVariantMap>

#include <algorithm>

namespace
{

using Role = PassengerTypeItem::Role;

/// Rows all over a model, in no order.
QVector<int> somewhere(int rows)
{
    QVector<int> numbers;
    for (int i = 0; i < 16; ++i)
        numbers.append(record(i).pos % rows);
    return numbers;
}

// ReadRoles: every role of every row, as a view reads them: through the interface of the model.

template <typename Peer>
void readRoles(benchmark::State& state)
{
    const QAbstractItemModel& model = filled<Peer>(state).model();
    const QVector<int> numbers = roles();
    for (auto _ : state) {
        timed(state, [&] {
            for (int row = 0; row < rowsOf(state); ++row) {
                const QModelIndex index = model.index(row, 0);
                for (const int role : numbers)
                    benchmark::DoNotOptimize(model.data(index, role));
            }
        });
    }
    countRows(state, rowsOf(state));
}

/// The one role that the rows of QStringListModel have, sixteen times.
void readTexts(benchmark::State& state)
{
    const QAbstractItemModel& model = filled<StringList>(state).model();
    for (auto _ : state) {
        timed(state, [&] {
            for (int row = 0; row < rowsOf(state); ++row) {
                const QModelIndex index = model.index(row, 0);
                for (int i = 0; i < roles().size(); ++i)
                    benchmark::DoNotOptimize(model.data(index, Qt::DisplayRole));
            }
        });
    }
    countRows(state, rowsOf(state));
}

// Get: a whole row as a map, from C++; QStandardItemModel has it by role numbers, not names.

void getOurs(benchmark::State& state)
{
    rivo::models::ListModel& model = filled<Ours>(state).model();
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows)
                benchmark::DoNotOptimize(model.get(row));
        });
    }
    countRows(state, rows.size());
}

void getStandard(benchmark::State& state)
{
    const QStandardItemModel& model = filled<Standard>(state).model();
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows)
                benchmark::DoNotOptimize(model.itemData(model.index(row, 0)));
        });
    }
    countRows(state, rows.size());
}

/// The names of the row's class and its values, read anew for each row.
void getBaseline(benchmark::State& state)
{
    Baseline& baseline = filled<Baseline>(state);
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows) {
                const rivo::models::ListItem* const item = baseline.item(row);
                const QHash<int, QByteArray> names = item->roleNames();
                QVariantMap map;
                for (auto name = names.cbegin(); name != names.cend(); ++name)
                    map.insert(QString::fromUtf8(name.value()), item->data(name.key()));
                benchmark::DoNotOptimize(QVariant(map));
            }
        });
    }
    countRows(state, rows.size());
}

// GetInQml: get() of every row and all its properties, from JavaScript.

void getInQmlOurs(benchmark::State& state)
{
    rivo::models::ListModel& model = filled<Ours>(state).model();
    QQmlEngine::setObjectOwnership(&model, QQmlEngine::CppOwnership);
    const QJSValue object = qmlEngine().newQObject(&model);
    for (auto _ : state)
        timed(state, [&] { QmlList::getEachOf(object); });
    countRows(state, rowsOf(state));
}

void getInQmlList(benchmark::State& state)
{
    QmlList& list = filled<QmlList>(state);
    for (auto _ : state)
        timed(state, [&] { list.getEach(); });
    countRows(state, rowsOf(state));
}

// CountByRole: the rows whose value of a role is a given one, a tenth of them.

void countOurs(benchmark::State& state)
{
    rivo::models::ListModel& model = filled<Ours>(state).model();
    for (auto _ : state)
        timed(state,
              [&] { benchmark::DoNotOptimize(model.countByRole(Role::HasExpiredRole, true)); });
    countRows(state, rowsOf(state));
}

/// match() for every hit.
void countStandard(benchmark::State& state)
{
    const QStandardItemModel& model = filled<Standard>(state).model();
    for (auto _ : state) {
        timed(state, [&] {
            benchmark::DoNotOptimize(
                model.match(model.index(0, 0), Role::HasExpiredRole, true, -1, Qt::MatchExactly)
                    .size());
        });
    }
    countRows(state, rowsOf(state));
}

void countBaseline(benchmark::State& state)
{
    const BareModel::Rows& rows = filled<Baseline>(state).model().rows();
    const QVariant value(true);
    for (auto _ : state) {
        timed(state, [&] {
            benchmark::DoNotOptimize(std::count_if(
                rows.cbegin(), rows.cend(), [&value](const rivo::models::ListItem* item) {
                    return item->data(Role::HasExpiredRole) == value;
                }));
        });
    }
    countRows(state, rowsOf(state));
}

// FindById: the row with an identity, for rows all over the model.

void findOurs(benchmark::State& state)
{
    const rivo::models::ListModel& model = filled<Ours>(state).model();
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows)
                benchmark::DoNotOptimize(model.findById(record(row).passengerTypeId));
        });
    }
    countRows(state, rows.size());
}

void findStandard(benchmark::State& state)
{
    const QStandardItemModel& model = filled<Standard>(state).model();
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows)
                benchmark::DoNotOptimize(model.match(model.index(0, 0), Role::PassengerTypeIdRole,
                                                     record(row).passengerTypeId, 1,
                                                     Qt::MatchExactly));
        });
    }
    countRows(state, rows.size());
}

void findBaseline(benchmark::State& state)
{
    const BareModel::Rows& items = filled<Baseline>(state).model().rows();
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows) {
                const int id = record(row).passengerTypeId;
                benchmark::DoNotOptimize(std::find_if(
                    items.cbegin(), items.cend(),
                    [id](const rivo::models::ListItem* item) { return item->id() == id; }));
            }
        });
    }
    countRows(state, rows.size());
}

// IndexFromItem: the index of a row's object, for rows all over the model.

template <typename Peer>
void indexFromItem(benchmark::State& state)
{
    Peer& peer = filled<Peer>(state);
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows)
                benchmark::DoNotOptimize(peer.model().indexFromItem(peer.item(row)));
        });
    }
    countRows(state, rows.size());
}

void indexBaseline(benchmark::State& state)
{
    Baseline& baseline = filled<Baseline>(state);
    const QVector<int> rows = somewhere(rowsOf(state));
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows) {
                const int found = baseline.model().rows().indexOf(baseline.item(row));
                benchmark::DoNotOptimize(baseline.model().index(found));
            }
        });
    }
    countRows(state, rows.size());
}

} // namespace

void addReading()
{
    add("ReadRoles", "ours", readRoles<Ours>, fromTenRows);
    add("ReadRoles", "standard", readRoles<Standard>, fromTenRows);
    add("ReadRoles", "proxy", readRoles<Proxy>, fromTenRows);
    add("ReadRoles", "stringlist", readTexts, fromTenRows);
    add("ReadRoles", "qml", readRoles<QmlList>, fromTenRowsInQml);
    add("ReadRoles", "baseline", readRoles<Baseline>, fromTenRows);

    add("Get", "ours", getOurs, fromTenRows);
    add("Get", "standard", getStandard, fromTenRows);
    add("Get", "baseline", getBaseline, fromTenRows);
    add("GetInQml", "ours", getInQmlOurs, fromTenRowsInQml);
    add("GetInQml", "qml", getInQmlList, fromTenRowsInQml);

    add("CountByRole", "ours", countOurs, fromTenRows);
    add("CountByRole", "standard", countStandard, fromTenRows);
    add("CountByRole", "baseline", countBaseline, fromTenRows);
    add("FindById", "ours", findOurs, fromTenRows);
    add("FindById", "standard", findStandard, fromTenRows);
    add("FindById", "baseline", findBaseline, fromTenRows);
    add("IndexFromItem", "ours", indexFromItem<Ours>, fromTenRows);
    add("IndexFromItem", "standard", indexFromItem<Standard>, fromTenRows);
    add("IndexFromItem", "baseline", indexBaseline, fromTenRows);
}
