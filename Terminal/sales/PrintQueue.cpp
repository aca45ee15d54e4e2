#include "PrintQueue_p.h"

#include <ShoppingBasketModel.h>
#include <ShoppingItem.h>

namespace rivo::sales
{

namespace
{

/// Null if somebody else took the line out of the basket.
ShoppingItem* lineOf(const ShoppingBasketModel& basket, int row)
{
    return qobject_cast<ShoppingItem*>(basket.itemFromRow(row));
}

} // namespace

void PrintQueue::fill(const QVector<Ticket>& sold)
{
    for (const Ticket& ticket : sold)
        m_numbers.append(ticket.number);
    int row = m_basket.rowCount() - sold.size();
    for (const Ticket& ticket : sold) {
        if (ShoppingItem* const line = lineOf(m_basket, row++)) {
            line->setPayMethod(ticket.payMethod);
            line->setPayChannel(driverChannel);
        }
    }
}

ShoppingItem* PrintQueue::lineOfNext() const
{
    return lineOf(m_basket, m_basket.rowCount() - m_numbers.size());
}

void PrintQueue::acceptNext()
{
    if (ShoppingItem* const line = lineOfNext())
        line->setAccepted(true);
}

void PrintQueue::nextIsOut()
{
    if (ShoppingItem* const line = lineOfNext())
        line->setPrinted(true);
    m_numbers.removeFirst();
}

} // namespace rivo::sales
