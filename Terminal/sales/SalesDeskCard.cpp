// What the desk does with payments by card.

#include "CardDesk.h"
#include "SalesDesk.h"

namespace rivo::sales
{

void SalesDesk::followCards()
{
    connect(m_card, &CardDesk::charged, this, &SalesDesk::bookCharge);
    connect(m_card, &CardDesk::returned, this, &SalesDesk::bookReturn);
    connect(m_card, &CardDesk::released, this, &SalesDesk::endAwaiting);
    connect(m_card, &CardDesk::declined, this, [this](const QString& reason) {
        endAwaiting();
        refuse(reason);
    });
    connect(m_card, &CardDesk::unbookedReturned, this, [this](bool isDone, const QString& reason) {
        endAwaiting();
        refuse(isDone
                   ? tr("A card payment without tickets was given back.")
                   : tr("A card payment without tickets could not be given back: %1").arg(reason));
    });
    connect(m_card, &CardDesk::cardDayEnded, this, [this](qint64 shift, Minor difference) {
        if (difference != 0)
            refuse(tr("Shift %1: the card terminal's total differs by %2.")
                       .arg(shift)
                       .arg(m_currency.text(difference)));
    });
    connect(m_card, &CardDesk::journalFailed, this, [this] { refuseByJournal(); });
}

/// Paid tickets that are not out come first: a payment that is open beside them is one without
/// tickets, which is given back without the driver.
void SalesDesk::restoreCards()
{
    const auto open = m_journal.openPayment();
    if (open && !open->verdict && m_state == Selling)
        setState(AwaitingCard);
    m_card->restore();
}

void SalesDesk::endAwaiting()
{
    if (m_state == AwaitingCard)
        setState(Selling);
}

bool SalesDesk::chargeCard()
{
    const QString reason = m_card->obstacle();
    if (!reason.isEmpty())
        return refuse(reason);
    setState(AwaitingCard);
    if (m_card->charge(m_total))
        return true;
    endAwaiting();
    return refuseByJournal();
}

/// The basket is what it was when the payment began. If it is not, the money has no sale.
void SalesDesk::bookCharge(const CardPayment& payment, const CardOutcome& outcome)
{
    const bool isBasket = !m_tickets.isEmpty() && m_total == payment.amount;
    if (m_state == AwaitingCard && isBasket) {
        if (!book({PayMethod::Card, 0, 0, 0}, outcome))
            endAwaiting();
        return;
    }
    endAwaiting();
    if (m_journal.recordOutcome(outcome, m_clock()))
        m_card->addUnbooked(payment);
    else
        refuseByJournal();
}

bool SalesDesk::returnToCard(const CardPayment& wanted)
{
    const QString reason = m_card->obstacle();
    if (!reason.isEmpty())
        return refuse(reason);
    setState(AwaitingCard);
    if (m_card->giveBack(wanted))
        return true;
    endAwaiting();
    return refuseByJournal();
}

void SalesDesk::bookReturn(const CardPayment& payment, const CardOutcome& outcome)
{
    endAwaiting();
    const qint64 sale = m_journal.saleOfCharge(payment.origin);
    if (!m_journal.reverse(sale, payment.tickets, payment.kind, payment.reason, payment.amount,
                           m_clock(), outcome)) {
        refuseByJournal();
        return;
    }
    updateRunningShift();
    emit saleReversed(static_cast<double>(sale));
}

} // namespace rivo::sales
