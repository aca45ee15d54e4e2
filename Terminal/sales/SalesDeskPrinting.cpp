// How the tickets of a paid sale get on paper.

#include "PrintQueue_p.h"
#include "SalesDesk.h"
#include "TicketPrinter.h"

#include <utility>

namespace rivo::sales
{

void SalesDesk::printNext()
{
    if (m_state == Interrupted ||
        (m_toPrint->isEmpty() && (m_state == Selling || m_state == AwaitingCard)))
        return; // the printer worked for something else
    if (m_toPrint->isEmpty())
        return finishSale();
    if (!m_printer.fault().isEmpty())
        return setState(WaitingForPrinter);
    setState(Printing);
    m_toPrint->acceptNext();
    m_printer.print(
        {m_tickets.at(m_tickets.size() - m_toPrint->size()), 0, std::nullopt, m_isDrawerDue});
}

void SalesDesk::ticketPrinted()
{
    if (m_state == Copying)
        return endExtra(true);
    if (m_toPrint->isEmpty() || m_state == Interrupted)
        return;
    if (!m_journal.markPrinted(m_toPrint->nextNumber(), m_clock()))
        emit obstacleChanged(); // the paper is out, and the rest has been paid: go on
    m_isDrawerDue = false;
    m_toPrint->nextIsOut();
    if (m_wasInterrupted && !m_toPrint->isEmpty()) // otherwise the sale ends, and says so
        emit ticketsInDoubtChanged();
    printNext();
}

void SalesDesk::ticketFailed()
{
    if (m_state == Copying)
        endExtra(false);
    else
        printNext();
}

void SalesDesk::ticketBecameDoubtful()
{
    if (m_state == Copying)
        return endExtra(false);
    if (m_toPrint->isEmpty() || m_state == Interrupted)
        return;
    m_isDrawerDue = false;
    m_ticketsInDoubt = 1;
    m_wasInterrupted = true;
    setState(Interrupted);
    emit ticketsInDoubtChanged();
}

int SalesDesk::ticketsInDoubt() const { return m_ticketsInDoubt; }

QString SalesDesk::firstTicketInDoubt() const
{
    return ticketsInDoubt() > 0 ? ticketNumberText(m_toPrint->nextNumber()) : QString();
}

bool SalesDesk::confirmTicketInDoubt()
{
    if (m_isLocked)
        return refuse(tr("Sign in first."));
    if (m_state != Interrupted)
        return refuse(tr("There is no ticket in doubt."));
    if (!m_journal.markPrinted(m_toPrint->nextNumber(), m_clock()))
        return refuseByJournal();
    m_toPrint->acceptNext();
    m_toPrint->nextIsOut();
    const bool isSaleOut = m_toPrint->isEmpty();
    if (--m_ticketsInDoubt == 0 && !isSaleOut)
        setState(Printing);
    if (isSaleOut) {
        finishSale();
    } else {
        emit ticketsInDoubtChanged();
        printNext();
    }
    return true;
}

bool SalesDesk::printTicketsInDoubt()
{
    if (m_isLocked)
        return refuse(tr("Sign in first."));
    if (m_state != Interrupted)
        return refuse(tr("There is no ticket in doubt."));
    m_ticketsInDoubt = 0;
    setState(Printing);
    emit ticketsInDoubtChanged();
    printNext();
    return true;
}

void SalesDesk::finishSale()
{
    emptyBasket();
    if (std::exchange(m_wasInterrupted, false))
        emit ticketsInDoubtChanged();
    setState(Selling);
    emit saleFinished();
}

} // namespace rivo::sales
