#include "Baseline.h"

#include "Measure.h"

#include <algorithm>
#include <iterator>

using rivo::models::ListItem;

int BareModel::rowCount(const QModelIndex& parent) const
{
    Q_UNUSED(parent)
    return m_rows.size();
}

QVariant BareModel::data(const QModelIndex& index, int role) const
{
    return m_rows.at(index.row())->data(role);
}

void BareModel::insert(int row, const Rows& items)
{
    beginInsertRows(QModelIndex(), row, row + items.size() - 1);
    for (const ListItem* item : items)
        connect(item, SIGNAL(dataChanged()), // clazy:exclude=old-style-connect
                this, SLOT(onHandleItemChange()));
    m_rows.insert(row, items.size(), nullptr);
    std::copy(items.cbegin(), items.cend(), std::next(m_rows.begin(), row));
    endInsertRows();
    emit countChanged(m_rows.size());
}

BareModel::Rows BareModel::take(int row, int count)
{
    beginRemoveRows(QModelIndex(), row, row + count - 1);
    const Rows taken = m_rows.mid(row, count);
    m_rows.remove(row, count);
    endRemoveRows();
    emit countChanged(m_rows.size());
    return taken;
}

void BareModel::remove(int row, int count)
{
    const Rows removed = take(row, count);
    for (ListItem* item : removed)
        item->deleteLater();
}

void BareModel::onHandleItemChange()
{
    const int row = m_rows.indexOf(static_cast<ListItem*>(sender()));
    if (row >= 0)
        emit dataChanged(index(row), index(row));
}

void Baseline::appendBlock(int first, int count)
{
    BareModel::Rows items;
    items.reserve(count);
    for (int number = first; number < first + count; ++number)
        items.append(newItem(record(number), m_model.get()));
    m_model->insert(m_model->rowCount(), items);
}

void Baseline::removeBlock(int row, int count)
{
    m_model->remove(row, count);
    destroyRemovedRows();
}

Baseline::Taken Baseline::takeOne(int row)
{
    ListItem* const item = m_model->take(row, 1).first();
    QObject::disconnect(item, nullptr, nullptr, nullptr);
    return item;
}

void Baseline::putBack(const TakenBlock& items)
{
    for (const ListItem* item : items)
        QObject::disconnect(item, nullptr, m_model.get(), nullptr);
    m_model->insert(m_model->rowCount(), items);
}

void Baseline::sortBy(int role)
{
    std::stable_sort(m_model->rows().begin(), m_model->rows().end(),
                     [role](const ListItem* a, const ListItem* b) { return isBefore(a, b, role); });
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

bool isBefore(const ListItem* a, const ListItem* b, int role)
{
    return a->data(role) < b->data(role);
}

QT_WARNING_POP
