#pragma once

#include "Baseline.h"
#include "ListModel.h"
#include "PassengerTypeItem.h"
#include "Records.h"

#include <QObject>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QVector>

#include <memory>

// Ours and Qt's models with one interface, which Baseline.h has too, so that each operation is
// written once. They hold the same rows: those of Records.h, of sixteen roles, unless a peer
// cannot.
//
// What removes rows destroys them before the call returns, ours by the deferred deletion.

/// Slot for what is emitted.
class Listener : public QObject
{
public:
    void note() { ++m_notes; }
    int notes() const { return m_notes; }

private:
    int m_notes = 0;
};

/// rivo::models::ListModel with rows of PassengerTypeItem, children of the model.
class Ours
{
public:
    using Taken = rivo::models::ListItem*;
    using TakenBlock = QVector<rivo::models::ListItem*>;

    Ours();
    ~Ours();

    rivo::models::ListModel& model() { return *m_model; }
    PassengerTypeItem* item(int row) const;

    void appendOne(int number) { m_model->appendRow(newItem(record(number), m_model.get())); }
    void appendBlock(int first, int count);
    void insertInFront(int number)
    {
        m_model->insertRow(0, newItem(record(number), m_model.get()));
    }
    void removeOne(int row);
    void removeBlock(int row, int count);
    void clear();
    Taken takeOne(int row) { return m_model->takeRow(row); }
    TakenBlock takeBlock(int row, int count) { return m_model->takeRows(row, count); }
    void putBack(Taken item) { m_model->appendRow(item); }
    void putBack(const TakenBlock& items);
    void change(int row, int value) { item(row)->setTotalInBasket(value); }
    void sortBy(int role) { m_model->sortByRole(0, Qt::AscendingOrder, role); }

private:
    PassengerTypeItem m_prototype;
    std::unique_ptr<rivo::models::ListModel> m_model;
};

/// QStandardItemModel of one column whose items have one role per field.
class Standard
{
public:
    using Taken = QList<QStandardItem*>;
    using TakenBlock = QList<QStandardItem*>;

    Standard();

    QStandardItemModel& model() { return *m_model; }
    QStandardItem* item(int row) const { return m_model->item(row); }

    void appendOne(int number) { m_model->appendRow(newStandardItem(record(number))); }
    void appendBlock(int first, int count);
    void insertInFront(int number) { m_model->insertRow(0, newStandardItem(record(number))); }
    void removeOne(int row) { m_model->removeRow(row); }
    void removeBlock(int row, int count) { m_model->removeRows(row, count); }
    /// Not QStandardItemModel::clear(), which also resets the roles, and the views.
    void clear() { m_model->removeRows(0, m_model->rowCount()); }
    Taken takeOne(int row) { return m_model->takeRow(row); }
    /// Row by row, from the last: there is nothing for a block.
    TakenBlock takeBlock(int row, int count);
    void putBack(const Taken& items) { m_model->invisibleRootItem()->appendRows(items); }
    void change(int row, int value)
    {
        item(row)->setData(value, PassengerTypeItem::TotalInBasketRole);
    }
    void sortBy(int role);

private:
    std::unique_ptr<QStandardItemModel> m_model;
};

/// QStringListModel: one text per row, and nothing else.
class StringList
{
public:
    QStringListModel& model() { return m_model; }

    /// insertRow() and setData(), for there is no way to append.
    void appendOne(int number) { insert(m_model.rowCount(), number); }
    /// setStringList(): the block is all rows of the model.
    void appendBlock(int first, int count);
    void insertInFront(int number) { insert(0, number); }
    void removeOne(int row) { m_model.removeRow(row); }
    void removeBlock(int row, int count) { m_model.removeRows(row, count); }
    void clear() { m_model.removeRows(0, m_model.rowCount()); }
    void change(int row, int value);

private:
    void insert(int row, int number);

    QStringListModel m_model;
};

/// QSortFilterProxyModel over a Standard. It compares texts as the order of QVariant does, which is
/// that of ours: without regard to case.
class Proxy
{
public:
    Proxy();

    QSortFilterProxyModel& model() { return m_model; }

    void appendBlock(int first, int count) { m_source.appendBlock(first, count); }
    /// Sorts when the role differs from the one that the rows are sorted by.
    void sortBy(int role) { m_model.setSortRole(role); }

private:
    Standard m_source;
    QSortFilterProxyModel m_model;
};
