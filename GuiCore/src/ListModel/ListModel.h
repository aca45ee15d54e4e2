#pragma once

// itemFromRow() returns "ListItem*" by that very name, which the library registers at load.
// clazy:excludeall=fully-qualified-moc-types

#include "GuiCoreExport.h"
#include "ListItem.h"

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QModelIndex>
#include <QVariant>
#include <QVector>

namespace rivo
{
namespace models
{

/// Flat list of ListItem rows for QML views: the base of every model of the library.
///
/// Ownership: the model never reparents, and never deletes but through removal. A row belongs to
/// its QObject parent; removal destroys it with deleteLater(). Rows made by a model's own
/// addItem() are children of that model and stay so after they were taken out. A row that its own
/// parent is about to destroy must be taken out or removed first. A row that QML receives from
/// itemFromRow() needs a QObject parent, or the JavaScript garbage collector destroys it; not so
/// once the QML module Rivo.GuiCore is loaded, see setRowExposureHandler().
///
/// Each insertion connects the item's dataChanged() to the slot onHandleItemChange(), by name: an
/// application can disconnect it the same way. The slot passes it on as dataChanged() of the
/// item's current row with an empty role list (any role may have changed); that of an item which
/// is no row any more is ignored. The time of a change grows with the number of rows.
///
/// What is read, and what is in range, does not depend on a `parent` index; removeRows(), takeRow()
/// and takeRows() announce the removal below the one they are given: give none. Every change of
/// the row count ends with countChanged(rowCount()), after the end...Rows() notification. That
/// count, the place where rows are appended and what clear() removes are read through the virtual
/// rowCount(); ranges are checked against the rows that are there.
/// Rejected calls change nothing and emit nothing. Do not insert or remove rows from a slot of
/// rowsAboutToBe...(): nothing crashes, but other rows than the announced ones move. GUI thread
/// only.
class GUICORE_EXPORT ListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    /// `prototype` answers roleNames(): not null, and not destroyed before the model's last use.
    /// It is neither parented nor deleted here.
    ListModel(ListItem* prototype, QObject* parent);

    /// Deletes neither rows nor prototype and emits nothing: an owner whose rows have no QObject
    /// parent calls clear() first.
    ~ListModel() override;

    /// Number of rows; `parent` is ignored.
    Q_INVOKABLE int rowCount(const QModelIndex& parent = QModelIndex()) const override;

    /// The row's value of `role`; an invalid QVariant for a row out of range. Only the row of
    /// `index` is looked at.
    QVariant data(const QModelIndex& index, int role) const override;

    /// Role table of the prototype.
    QHash<int, QByteArray> roleNames() const override;

    /// First row whose id() equals `id`; null if none. Linear.
    ListItem* findById(const int& id) const;

    /// Index of the first row that is this very object; invalid if it is no row. Linear.
    QModelIndex indexFromItem(const ListItem* item) const;

    /// Appends one row; null is ignored. An item inserted twice is two rows and two
    /// connections, and removing either row destroys the item of both.
    void appendRow(ListItem* item);

    /// Appends the rows in one insertion with one countChanged(); an empty list is ignored. The
    /// list must not hold null.
    void appendRows(QVector<ListItem*> items);

    /// Inserts one row before `row`, which is 0 to rowCount() and not checked: beyond the end the
    /// item lands at the end, but is announced at `row`. Null is ignored.
    void insertRow(int row, ListItem* item);

    /// appendRow() for QML. `item` must be a ListItem, which is not checked. The item goes to the
    /// row exposure handler first.
    Q_INVOKABLE void appendRowFromQml(QObject* item);

    /// Removes and destroys (deleteLater()) one row; false for a row out of range. `parent` is not
    /// used.
    Q_INVOKABLE bool removeRow(int row, const QModelIndex& parent = QModelIndex());

    /// Removes and destroys (deleteLater()) `count` rows in one block; false, and no row removed,
    /// unless `row` >= 0, `count` > 0 and row + count <= rowCount().
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

    /// Takes one row out and cuts every connection from it, to any receiver. `row` -2 means the
    /// first row. Null for a row out of range. The item keeps its QObject parent.
    ListItem* takeRow(int row, const QModelIndex& parent = QModelIndex());

    /// Takes `count` rows out in one block, in row order; `row` -2 means the first row, `count` -1
    /// as many as the model has. Empty if rejected. The items stay connected, unlike with
    /// takeRow(): harmless while they are out, but an item put back into the same model then
    /// reports each change twice.
    QVector<ListItem*> takeRows(int row, int count, const QModelIndex& parent = QModelIndex());

    // The three sorts emit no signal whatever: sort before the rows are shown, or reset the views
    // yourself. Persistent indexes stay at their row number. `column` is ignored; any order but
    // Qt::AscendingOrder is descending.

    /// Orders all rows by id(), not stably.
    void sort(int column, Qt::SortOrder order) override;

    /// Orders all rows by the value of `role` under the QVariant ordering, stably.
    void sortByRole(int column, Qt::SortOrder order, int role);

    /// Orders rows `first` to `last` - 1 (`last` excluded) by the value of `role`, not stably.
    /// Fewer than two rows are left as they are. 0 <= first and last <= rowCount() are not
    /// checked.
    void sortRangeByRole(int column, Qt::SortOrder order, int first, int last, int role);

    /// Item of a row; null for a row out of range. An item goes to the row exposure handler first.
    Q_INVOKABLE ListItem* itemFromRow(const int& iRow) const;

    /// The row as a map from role name to value, an object for QML; an invalid QVariant
    /// (undefined) for a row out of range. The names are those of the row's own class. Nothing is
    /// cached or converted.
    Q_INVOKABLE QVariant get(const int& index);
    /// The same for the row of an index.
    Q_INVOKABLE QVariant get(const QModelIndex& index);

    /// Number of the first row whose id() equals `id`; -1 if none. Linear.
    Q_INVOKABLE int rowIndexFromId(const int& id);

    /// Removes and destroys all rows in one block; countChanged(0) follows twice, once from the
    /// removal and once from here. Nothing happens without rows.
    Q_INVOKABLE void clear();

    /// Number of rows whose value of `role` equals `value` under the QVariant equality.
    int countByRole(int role, QVariant value);

    /// Called with each row that itemFromRow() hands out and each item that appendRowFromQml() is
    /// given, never null, for every caller. Must not change the model.
    using RowExposureHandler = void (*)(ListItem* row);

    /// The one handler of all models; null, as at first, for none. The QML module Rivo.GuiCore sets
    /// one that keeps rows from the garbage collector and resets it when it is unloaded.
    static void setRowExposureHandler(RowExposureHandler handler);
    /// The handler that is set; null for none.
    static RowExposureHandler rowExposureHandler();

signals:
    /// The row count, after it may have changed.
    void countChanged(int);

protected:
    /// itemFromRow() for the models' own use: does not expose the item.
    ListItem* rowAt(int row) const;

private slots:
    void onHandleItemChange();

private:
    bool hasRow(int row) const;
    bool hasRows(int row, int count) const;
    void connectItem(ListItem* item);
    void forwardChangeOf(const ListItem* item);
    void destroyRows(int row, int count, const QModelIndex& parent);
    QVector<ListItem*> extractRows(int row, int count, const QModelIndex& parent);
    void endExtraction();

    ListItem* m_prototype;
    QVector<ListItem*> m_rows;
};

} // namespace models
} // namespace rivo
