#pragma once

#include "PassengerTypeItem.h"
#include "Records.h"

#include <QAbstractListModel>
#include <QVector>

#include <memory>

/// A list model that keeps the contract of rivo::models::ListModel and does nothing beyond it, each
/// operation written the shortest way: the same rows, connected by name to a slot that finds the
/// sender's row; the same notifications; removed rows destroyed later. Nothing is checked.
class BareModel : public QAbstractListModel
{
    Q_OBJECT

public:
    using Rows = QVector<rivo::models::ListItem*>;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return ::roleNames(); }

    Rows& rows() { return m_rows; }
    void insert(int row, const Rows& items);
    Rows take(int row, int count);
    void remove(int row, int count);

signals:
    void countChanged(int count);

private slots:
    void onHandleItemChange();

private:
    Rows m_rows;
};

/// What each operation of ours is compared with.
class Baseline
{
public:
    using Taken = rivo::models::ListItem*;
    using TakenBlock = BareModel::Rows;

    Baseline() : m_model(std::make_unique<BareModel>()) {}

    BareModel& model() { return *m_model; }
    PassengerTypeItem* item(int row) const
    {
        return static_cast<PassengerTypeItem*>(m_model->rows().at(row));
    }

    void append(const sProduct& product) { insert(m_model->rowCount(), product); }
    void appendOne(int number) { append(record(number)); }
    void appendBlock(int first, int count);
    void insertInFront(int number) { insert(0, record(number)); }
    void removeOne(int row) { removeBlock(row, 1); }
    void removeBlock(int row, int count);
    void clear() { removeBlock(0, m_model->rowCount()); }
    Taken takeOne(int row);
    TakenBlock takeBlock(int row, int count) { return m_model->take(row, count); }
    void putBack(Taken item) { m_model->insert(m_model->rowCount(), {item}); }
    void putBack(const TakenBlock& items);
    void change(int row, int value) { item(row)->setTotalInBasket(value); }
    /// std::stable_sort(), with values that are fetched for each comparison.
    void sortBy(int role);

private:
    void insert(int row, const sProduct& product)
    {
        m_model->insert(row, {newItem(product, m_model.get())});
    }

    std::unique_ptr<BareModel> m_model;
};

/// Whether a row comes before another by the order of QVariant.
bool isBefore(const rivo::models::ListItem* a, const rivo::models::ListItem* b, int role);
