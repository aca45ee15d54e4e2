#pragma once

#include "Records.h"

#include <QVector>

class ShoppingBasketModel;
class ShoppingItem;

namespace rivo::sales
{

/// The tickets of a sale that are paid and not out yet, in the order of printing. Their lines are
/// the last ones of the basket, and show how far they are.
class PrintQueue
{
public:
    /// `basket` outlives the queue.
    explicit PrintQueue(ShoppingBasketModel& basket) : m_basket(basket) {}

    /// `sold`: the tickets of the last lines, with their numbers.
    void fill(const QVector<Ticket>& sold);

    bool isEmpty() const { return m_numbers.isEmpty(); }
    int size() const { return m_numbers.size(); }
    qint64 nextNumber() const { return m_numbers.first(); } ///< not of an empty queue

    void acceptNext(); ///< it goes to the printer
    void nextIsOut();  ///< it is printed and leaves the queue

private:
    ShoppingItem* lineOfNext() const;

    ShoppingBasketModel& m_basket;
    QVector<qint64> m_numbers;
};

} // namespace rivo::sales
