#pragma once

#include "ListModel.h"

#include <QModelIndex>
#include <QObject>
#include <QVariant>
#include <QVector>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

namespace rivo
{
namespace models
{

/// The row as its own class; null for a row out of range or of another class.
template <class Item>
Item* rowAs(const ListModel& model, int row)
{
    return qobject_cast<Item*>(model.itemFromRow(row));
}

/// First row at or after `from` whose value of `role` equals `value` under the QVariant equality;
/// -1 if none. Linear.
inline int findRow(const ListModel& model, int role, const QVariant& value, int from = 0)
{
    const int count = model.rowCount();
    for (int row = std::max(from, 0); row < count; ++row) {
        if (model.data(model.index(row, 0), role) == value)
            return row;
    }
    return -1;
}

/// Brings the rows of a ListModel to a list of records: rows whose key is still there stay the same
/// objects, so that views keep their scroll place and selection.
///
///     RowSync<AssetItem, Vehicle> sync(&Vehicle::id, &AssetItem::id, makeVehicleRow);
///     sync.field(&Vehicle::route, &AssetItem::routeName, &AssetItem::setRouteName);
///     sync.apply(fleet, vehicles);
///
/// `Item` is the class of the rows and has Q_OBJECT; `Key` has operator<. Equal keys are matched in
/// their order.
template <class Item, class Record, class Key = int>
class RowSync
{
public:
    /// What apply() did.
    struct Changes
    {
        int inserted = 0; ///< rows made for records without a row
        int removed = 0;  ///< rows without a record; destroyed with deleteLater()
        int moved = 0;    ///< rows taken out and inserted elsewhere: the fewest that give the order
        int set = 0;      ///< calls of setters
    };

    /// `recordKey(record)` and `itemKey(item)` give the key; member pointers will do.
    /// `make(record, parent)` makes a row with all its fields; not null. The parent is the model.
    RowSync(std::function<Key(const Record&)> recordKey, std::function<Key(const Item&)> itemKey,
            std::function<Item*(const Record&, QObject*)> make)
        : m_recordKey(std::move(recordKey)), m_itemKey(std::move(itemKey)), m_make(std::move(make))
    {
    }

    /// A field that apply() keeps up to date: where `value(record)` differs from `getter(item)`
    /// (operator==), it calls `setter(item, value)`. Member pointers will do.
    template <class Value, class Getter, class Setter>
    RowSync& field(Value value, Getter getter, Setter setter)
    {
        m_fields.append([value, getter, setter](Item& item, const Record& record) {
            const auto& wanted = std::invoke(value, record);
            if (std::invoke(getter, std::as_const(item)) == wanted)
                return false;
            std::invoke(setter, item, wanted);
            return true;
        });
        return *this;
    }

    /// Gives `model` one row per record, in their order. Rows of another class are removed.
    /// Adjacent rows are removed in one block, and rows that are new at the end are appended in
    /// one. A row that moves leaves and comes back: only its connection to the model is made anew.
    /// No slot may insert or remove rows meanwhile, and each row is an object of its own.
    Changes apply(ListModel& model, const QVector<Record>& records) const
    {
        Changes changes;
        QVector<Item*> rows = rowsOf(model);
        QVector<int> rowOfRecord = matched(rows, records);
        changes.removed = removeUnmatched(model, rows, rowOfRecord);

        QVector<Item*> itemOfRecord(records.size(), nullptr);
        for (int i = 0; i < records.size(); ++i) {
            if (rowOfRecord.at(i) >= 0)
                itemOfRecord[i] = rows.at(rowOfRecord.at(i));
        }
        const QVector<bool> stays = longestRun(rowOfRecord);
        changes.moved = takeOutMoving(model, rows, rowOfRecord, stays);
        fill(model, records, itemOfRecord, stays, changes);
        return changes;
    }

private:
    static QVector<Item*> rowsOf(const ListModel& model)
    {
        QVector<Item*> rows;
        rows.reserve(model.rowCount());
        for (int row = 0; row < model.rowCount(); ++row)
            rows.append(rowAs<Item>(model, row));
        return rows;
    }

    /// The row of each record, -1 for a new one.
    QVector<int> matched(const QVector<Item*>& rows, const QVector<Record>& records) const
    {
        using Place = std::pair<Key, int>;
        std::vector<Place> ofRows;
        for (int row = 0; row < rows.size(); ++row) {
            if (rows.at(row) != nullptr)
                ofRows.emplace_back(m_itemKey(*rows.at(row)), row);
        }
        std::vector<Place> ofRecords;
        ofRecords.reserve(static_cast<std::size_t>(records.size()));
        for (int i = 0; i < records.size(); ++i)
            ofRecords.emplace_back(m_recordKey(records.at(i)), i);
        std::sort(ofRows.begin(), ofRows.end());
        std::sort(ofRecords.begin(), ofRecords.end());

        QVector<int> rowOfRecord(records.size(), -1);
        auto row = ofRows.cbegin();
        for (const Place& record : ofRecords) {
            while (row != ofRows.cend() && row->first < record.first)
                ++row;
            if (row == ofRows.cend())
                break;
            if (!(record.first < row->first))
                rowOfRecord[record.second] = (row++)->second;
        }
        return rowOfRecord;
    }

    /// Removes the rows that no record has, in blocks from the end, and numbers the others anew.
    static int removeUnmatched(ListModel& model, QVector<Item*>& rows, QVector<int>& rowOfRecord)
    {
        QVector<bool> goes(rows.size(), true);
        for (const int row : std::as_const(rowOfRecord)) {
            if (row >= 0)
                goes[row] = false;
        }
        const int removed = forBlocksFromEnd(
            goes, [&model](int first, int count) { model.removeRows(first, count); });

        QVector<int> newNumber(rows.size(), -1);
        QVector<Item*> left;
        for (int row = 0; row < rows.size(); ++row) {
            if (goes.at(row))
                continue;
            newNumber[row] = left.size();
            left.append(rows.at(row));
        }
        for (int& row : rowOfRecord)
            row = row >= 0 ? newNumber.at(row) : -1;
        rows = left;
        return removed;
    }

    /// The records whose rows stay where they are: the longest ascending sequence of rows.
    static QVector<bool> longestRun(const QVector<int>& rowOfRecord)
    {
        QVector<int> lastOfLength; // by length - 1: the record that ends such a sequence lowest
        QVector<int> before(rowOfRecord.size(), -1);
        for (int i = 0; i < rowOfRecord.size(); ++i) {
            if (rowOfRecord.at(i) < 0)
                continue;
            const auto place =
                std::lower_bound(lastOfLength.begin(), lastOfLength.end(), rowOfRecord.at(i),
                                 [&](int record, int row) { return rowOfRecord.at(record) < row; });
            if (place != lastOfLength.begin())
                before[i] = *std::prev(place);
            if (place == lastOfLength.end())
                lastOfLength.append(i);
            else
                *place = i;
        }
        QVector<bool> stays(rowOfRecord.size(), false);
        for (int i = lastOfLength.isEmpty() ? -1 : lastOfLength.last(); i >= 0; i = before.at(i))
            stays[i] = true;
        return stays;
    }

    static int takeOutMoving(ListModel& model, const QVector<Item*>& rows,
                             const QVector<int>& rowOfRecord, const QVector<bool>& stays)
    {
        QVector<bool> moves(rows.size(), true);
        for (int i = 0; i < rowOfRecord.size(); ++i) {
            if (stays.at(i))
                moves[rowOfRecord.at(i)] = false;
        }
        return forBlocksFromEnd(moves, [&model](int first, int count) {
            // takeRows() leaves the items connected; takeRow() would cut the application's too.
            const QVector<ListItem*> taken = model.takeRows(first, count);
            for (ListItem* item : taken)
                QObject::disconnect(item, SIGNAL(dataChanged()), &model,
                                    SLOT(onHandleItemChange()));
        });
    }

    void fill(ListModel& model, const QVector<Record>& records, const QVector<Item*>& items,
              const QVector<bool>& stays, Changes& changes) const
    {
        QVector<ListItem*> missing; // rows that come before the next one that stays
        const auto insertMissing = [&](int row) {
            if (row == model.rowCount()) {
                model.appendRows(missing);
            } else {
                for (ListItem* item : std::as_const(missing))
                    model.insertRow(row++, item);
            }
            missing.clear();
        };
        int row = 0;
        for (int i = 0; i < records.size(); ++i) {
            Item* item = items.at(i);
            if (item == nullptr) {
                missing.append(m_make(records.at(i), &model));
                ++changes.inserted;
                continue;
            }
            if (!stays.at(i)) {
                changes.set += update(*item, records.at(i));
                missing.append(item);
                continue;
            }
            const int count = missing.size();
            insertMissing(row);
            row += count + 1;
            changes.set += update(*item, records.at(i));
        }
        insertMissing(row);
    }

    int update(Item& item, const Record& record) const
    {
        int calls = 0;
        for (const auto& synchronise : m_fields)
            calls += synchronise(item, record) ? 1 : 0;
        return calls;
    }

    /// Calls `act(first, count)` for each block of adjacent marked rows, the last block first.
    /// Returns how many rows are marked.
    template <class Act>
    static int forBlocksFromEnd(const QVector<bool>& marked, Act act)
    {
        int sum = 0;
        for (int end = marked.size(); end > 0;) {
            if (!marked.at(end - 1)) {
                --end;
                continue;
            }
            int first = end - 1;
            while (first > 0 && marked.at(first - 1))
                --first;
            act(first, end - first);
            sum += end - first;
            end = first;
        }
        return sum;
    }

    std::function<Key(const Record&)> m_recordKey;
    std::function<Key(const Item&)> m_itemKey;
    std::function<Item*(const Record&, QObject*)> m_make;
    QVector<std::function<bool(Item&, const Record&)>> m_fields;
};

} // namespace models
} // namespace rivo
