#include "ListModel.h"

#include "RoleValueOrder_p.h"

#include <QMetaType>
#include <QVariantMap>

#include <algorithm>

namespace rivo
{
namespace models
{

namespace
{

// ListModel::itemFromRow() is declared as returning "ListItem*" inside the namespace, and that
// unqualified text is what the meta-object records. QML engines look the type up by that text.
[[maybe_unused]] const int unqualifiedPointerType = qRegisterMetaType<ListItem*>("ListItem*");

// Values that the take operations accept in place of a row and a count.
constexpr int firstRow = -2;
constexpr int everyRow = -1;

ListModel::RowExposureHandler exposureHandler = nullptr;

ListItem* exposed(ListItem* row)
{
    if (row && exposureHandler)
        exposureHandler(row);
    return row;
}

/// Orders items by the value of one role, fetched afresh for each comparison.
struct RoleOrder
{
    int role;
    Qt::SortOrder order;

    bool operator()(const ListItem* a, const ListItem* b) const
    {
        const QVariant left = a->data(role);
        const QVariant right = b->data(role);
        if (isText(left) && isText(right)) {
            // What QVariant does, without its copy of both and one comparison more, which took a
            // third of a sort. Of texts that differ in case alone it calls each the greater.
            const bool isLess = QString::compare(text(left), text(right), Qt::CaseInsensitive) < 0;
            return order == Qt::AscendingOrder ? isLess : !isLess && text(left) != text(right);
        }
        return order == Qt::AscendingOrder ? isLessRoleValue(left, right)
                                           : isGreaterRoleValue(left, right);
    }

private:
    static bool isText(const QVariant& value) { return value.userType() == QMetaType::QString; }

    static const QString& text(const QVariant& value)
    {
        return *static_cast<const QString*>(value.constData());
    }
};

} // namespace

ListModel::ListModel(ListItem* prototype, QObject* parent)
    : QAbstractListModel(parent), m_prototype(prototype)
{
}

ListModel::~ListModel() = default;

int ListModel::rowCount(const QModelIndex& parent) const
{
    Q_UNUSED(parent)
    return static_cast<int>(m_rows.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const
{
    const ListItem* item = rowAt(index.row());
    return item ? item->data(role) : QVariant();
}

QHash<int, QByteArray> ListModel::roleNames() const { return m_prototype->roleNames(); }

ListItem* ListModel::findById(const int& id) const
{
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                    [&id](const ListItem* item) { return item->id() == id; });
    return found == m_rows.cend() ? nullptr : *found;
}

QModelIndex ListModel::indexFromItem(const ListItem* item) const
{
    const auto found = std::find(m_rows.cbegin(), m_rows.cend(), item);
    if (found == m_rows.cend())
        return {};
    return index(static_cast<int>(found - m_rows.cbegin()), 0);
}

void ListModel::appendRow(ListItem* item)
{
    if (!item)
        return;
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    connectItem(item);
    m_rows.append(item);
    endInsertRows();
    emit countChanged(rowCount());
}

void ListModel::appendRows(QVector<ListItem*> items)
{
    if (items.isEmpty())
        return;
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row + static_cast<int>(items.size()) - 1);
    for (ListItem* item : qAsConst(items)) {
        connectItem(item);
        m_rows.append(item);
    }
    endInsertRows();
    emit countChanged(rowCount());
}

void ListModel::insertRow(int row, ListItem* item)
{
    if (!item)
        return;
    beginInsertRows(QModelIndex(), row, row);
    connectItem(item);
    // Bounded by what is there now: a slot of rowsAboutToBeInserted() may have removed rows.
    m_rows.insert(qMin(row, m_rows.size()), item);
    endInsertRows();
    emit countChanged(rowCount());
}

void ListModel::appendRowFromQml(QObject* item)
{
    appendRow(exposed(static_cast<ListItem*>(item)));
}

bool ListModel::removeRow(int row, const QModelIndex& parent)
{
    Q_UNUSED(parent)
    if (!hasRow(row))
        return false;
    // Announced for the top level whatever parent is given, unlike the other three ways out.
    destroyRows(row, 1, QModelIndex());
    return true;
}

bool ListModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (!hasRows(row, count))
        return false;
    destroyRows(row, count, parent);
    return true;
}

ListItem* ListModel::takeRow(int row, const QModelIndex& parent)
{
    const int taken = row == firstRow ? 0 : row;
    if (!hasRow(taken))
        return nullptr;
    ListItem* item = extractRows(taken, 1, parent).value(0);
    if (item)
        QObject::disconnect(item, nullptr, nullptr, nullptr);
    endExtraction();
    return item;
}

QVector<ListItem*> ListModel::takeRows(int row, int count, const QModelIndex& parent)
{
    const int taken = row == firstRow ? 0 : row;
    const int size = count == everyRow ? static_cast<int>(m_rows.size()) : count;
    if (!hasRows(taken, size))
        return {};
    const QVector<ListItem*> items = extractRows(taken, size, parent);
    endExtraction();
    return items;
}

void ListModel::sort(int column, Qt::SortOrder order)
{
    Q_UNUSED(column)
    std::sort(m_rows.begin(), m_rows.end(), [order](const ListItem* a, const ListItem* b) {
        return order == Qt::AscendingOrder ? a->id() < b->id() : a->id() > b->id();
    });
}

void ListModel::sortByRole(int column, Qt::SortOrder order, int role)
{
    Q_UNUSED(column)
    std::stable_sort(m_rows.begin(), m_rows.end(), RoleOrder{role, order});
}

void ListModel::sortRangeByRole(int column, Qt::SortOrder order, int first, int last, int role)
{
    Q_UNUSED(column)
    if (last <= first)
        return;
    // A heap sort: it stays within the stretch even when the values have no consistent order,
    // such as NaN among doubles.
    const auto begin = m_rows.begin() + first;
    const auto end = m_rows.begin() + last;
    std::make_heap(begin, end, RoleOrder{role, order});
    std::sort_heap(begin, end, RoleOrder{role, order});
}

ListItem* ListModel::itemFromRow(const int& iRow) const { return exposed(rowAt(iRow)); }

QVariant ListModel::get(const int& index)
{
    const ListItem* item = rowAt(index);
    if (!item)
        return {};
    const QHash<int, QByteArray> names = item->roleNames();
    QVariantMap row;
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        row.insert(QString::fromUtf8(name.value()), item->data(name.key()));
    return row;
}

QVariant ListModel::get(const QModelIndex& index) { return get(index.row()); }

int ListModel::rowIndexFromId(const int& id)
{
    const ListItem* item = findById(id);
    return item ? indexFromItem(item).row() : -1;
}

void ListModel::clear()
{
    if (m_rows.isEmpty())
        return;
    removeRows(0, rowCount(), QModelIndex());
    emit countChanged(rowCount());
}

int ListModel::countByRole(int role, QVariant value)
{
    return static_cast<int>(
        std::count_if(m_rows.cbegin(), m_rows.cend(), [role, &value](const ListItem* item) {
            return areEqualRoleValues(item->data(role), value);
        }));
}

void ListModel::setRowExposureHandler(RowExposureHandler handler) { exposureHandler = handler; }

ListModel::RowExposureHandler ListModel::rowExposureHandler() { return exposureHandler; }

void ListModel::onHandleItemChange()
{
    if (const auto* item = qobject_cast<const ListItem*>(sender()))
        forwardChangeOf(item);
}

void ListModel::forwardChangeOf(const ListItem* item)
{
    const QModelIndex changed = indexFromItem(item);
    // A derived model's index() may name another row than there is.
    if (changed.isValid() && hasRow(changed.row()))
        emit dataChanged(changed, changed, QVector<int>());
}

ListItem* ListModel::rowAt(int row) const { return hasRow(row) ? m_rows.at(row) : nullptr; }

bool ListModel::hasRow(int row) const { return row >= 0 && row < m_rows.size(); }

bool ListModel::hasRows(int row, int count) const
{
    return row >= 0 && count > 0 && count <= m_rows.size() && row <= m_rows.size() - count;
}

void ListModel::connectItem(ListItem* item)
{
    // By name, so that applications can disconnect a row by name.
    connect(item, SIGNAL(dataChanged()), // clazy:exclude=old-style-connect
            this, SLOT(onHandleItemChange()));
}

void ListModel::destroyRows(int row, int count, const QModelIndex& parent)
{
    const QVector<ListItem*> removed = extractRows(row, count, parent);
    // Front to back: deferred deletions run in posting order, and then each item is the first that
    // its parent finds among its children.
    for (ListItem* item : removed)
        item->deleteLater();
    endExtraction();
}

/// Begins the removal and takes the rows out of the vector; endExtraction() completes it.
QVector<ListItem*> ListModel::extractRows(int row, int count, const QModelIndex& parent)
{
    beginRemoveRows(parent, row, row + count - 1);
    // Bounded by what is there now, as in insertRow().
    const QVector<ListItem*> extracted = m_rows.mid(row, count);
    if (!extracted.isEmpty())
        m_rows.remove(row, extracted.size());
    return extracted;
}

void ListModel::endExtraction()
{
    endRemoveRows();
    emit countChanged(rowCount());
}

} // namespace models
} // namespace rivo
