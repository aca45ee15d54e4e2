#include "Peers.h"

#include "Measure.h"

using rivo::models::ListItem;
using rivo::models::ListModel;

Ours::Ours() : m_model(std::make_unique<ListModel>(&m_prototype, nullptr)) {}

Ours::~Ours() = default;

PassengerTypeItem* Ours::item(int row) const
{
    return static_cast<PassengerTypeItem*>(m_model->itemFromRow(row));
}

void Ours::appendBlock(int first, int count)
{
    QVector<ListItem*> items;
    items.reserve(count);
    for (int number = first; number < first + count; ++number)
        items.append(newItem(record(number), m_model.get()));
    m_model->appendRows(items);
}

void Ours::removeOne(int row)
{
    m_model->removeRow(row);
    destroyRemovedRows();
}

void Ours::removeBlock(int row, int count)
{
    m_model->removeRows(row, count);
    destroyRemovedRows();
}

void Ours::clear()
{
    m_model->clear();
    destroyRemovedRows();
}

void Ours::putBack(const TakenBlock& items)
{
    // takeRows() leaves them connected, or each change would be announced twice.
    for (ListItem* const item : items)
        QObject::disconnect(item, nullptr, m_model.get(), nullptr);
    m_model->appendRows(items);
}

Standard::Standard() : m_model(std::make_unique<QStandardItemModel>())
{
    m_model->setItemRoleNames(roleNames());
}

void Standard::appendBlock(int first, int count)
{
    QList<QStandardItem*> items;
    items.reserve(count);
    for (int number = first; number < first + count; ++number)
        items.append(newStandardItem(record(number)));
    m_model->invisibleRootItem()->appendRows(items);
}

Standard::TakenBlock Standard::takeBlock(int row, int count)
{
    QList<QStandardItem*> items;
    items.reserve(count);
    for (int last = row + count - 1; last >= row; --last)
        items += m_model->takeRow(last);
    return items;
}

void Standard::sortBy(int role)
{
    m_model->setSortRole(role);
    m_model->sort(0);
}

void StringList::appendBlock(int first, int count)
{
    QStringList texts;
    texts.reserve(count);
    for (int number = first; number < first + count; ++number)
        texts.append(record(number).description);
    m_model.setStringList(texts);
}

void StringList::change(int row, int value)
{
    m_model.setData(m_model.index(row), QString::number(value), Qt::DisplayRole);
}

void StringList::insert(int row, int number)
{
    m_model.insertRow(row);
    m_model.setData(m_model.index(row), record(number).description, Qt::DisplayRole);
}

Proxy::Proxy()
{
    m_model.setSortCaseSensitivity(Qt::CaseInsensitive);
    m_model.setSortRole(PassengerTypeItem::SelectedRole);
    m_model.setSourceModel(&m_source.model());
    m_model.sort(0);
}
