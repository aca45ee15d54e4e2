#include "CardDesk.h"

#include "Journal.h"

#include <QDateTime>

#include <algorithm>

namespace rivo::sales
{

using payment::Answer;
using payment::Request;
using payment::Verdict;

namespace
{

/// In a row, to give back what has no sale; more when the next shift is closed.
constexpr int mostAttempts = 3;

} // namespace

CardDesk::CardDesk(Journal& journal, QObject* parent) : QObject(parent), m_journal(journal)
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &CardDesk::goOn);
}

void CardDesk::setTerminal(payment::PaymentTerminal* terminal)
{
    if (!m_terminal.isNull())
        m_terminal->disconnect(this);
    m_terminal = terminal;
    emit changed();
    if (terminal == nullptr)
        return;
    connect(terminal, &payment::PaymentTerminal::answered, this, &CardDesk::use);
    connect(terminal, &payment::PaymentTerminal::statusTextChanged, this, &CardDesk::changed);
    connect(terminal, &payment::PaymentTerminal::changed, this, [this] {
        emit changed();
        if (isFree() && !m_retry.isActive())
            m_retry.start(0); // not from within what the terminal is doing
    });
}

void CardDesk::restore()
{
    m_payment = m_journal.openPayment();
    m_isUnclear = m_payment.has_value();
    m_unbooked = m_journal.unbookedCharges();
    emit changed();
    goOn();
}

bool CardDesk::isReleased() const { return m_payment && m_payment->verdict == Verdict::Unknown; }

bool CardDesk::isFree() const
{
    return m_terminal != nullptr && m_terminal->fault().isEmpty() && !m_terminal->isBusy();
}

bool CardDesk::mayAbort() const
{
    return m_payment && !m_isUnclear && !m_isAborted && m_terminal != nullptr &&
           m_terminal->isBusy();
}

bool CardDesk::mayRelease() const { return isClearing() && !isReleased(); }

QString CardDesk::obstacle() const
{
    if (m_terminal == nullptr)
        return tr("No card terminal is connected.");
    if (m_payment && m_isUnclear)
        return tr("The last card payment is not cleared yet.");
    if (!m_terminal->fault().isEmpty())
        return m_terminal->fault();
    if (m_payment || m_isClosingDay || m_terminal->isBusy())
        return tr("The card terminal is busy.");
    return {};
}

QString CardDesk::statusText() const
{
    if (isClearing() && !isReleased())
        return tr("Asking the card terminal whether it was paid");
    if (m_isAborted)
        return tr("Stopping");
    const QString own = m_terminal != nullptr ? m_terminal->statusText() : QString();
    return isBusy() && own.isEmpty() ? tr("Asking the card terminal") : own;
}

// Payments.

bool CardDesk::charge(Minor amount)
{
    if (!obstacle().isEmpty())
        return false;
    return begin(m_journal.beginCharge(amount, m_clock()));
}

bool CardDesk::giveBack(const CardPayment& wanted)
{
    if (!obstacle().isEmpty())
        return false;
    return begin(m_journal.beginReturn(wanted, m_clock()));
}

bool CardDesk::begin(const std::optional<CardPayment>& payment)
{
    if (!payment)
        return false;
    m_payment = payment;
    m_isUnclear = false;
    m_isAborted = false;
    m_result.clear();
    emit changed();
    // It was ready a moment ago; if it is not any more, nothing was sent.
    if (!askFor(*payment))
        decline(tr("The card terminal does not answer."));
    return true;
}

bool CardDesk::askFor(const CardPayment& payment)
{
    if (payment.direction == CardDirection::Charge)
        return m_terminal->authorise(payment.amount);
    const auto origin = m_journal.cardPayment(payment.origin);
    if (!origin)
        return false;
    const bool isWhole = origin->amount == payment.amount && m_journal.isReversible(*origin);
    return isWhole ? m_terminal->reverse(origin->receipt.number, payment.amount)
                   : m_terminal->refund(payment.amount);
}

void CardDesk::use(const Answer& answer)
{
    switch (answer.request) {
    case Request::LastReceipt:
        return useLastReceipt(answer);
    case Request::EndOfDay:
        return useDay(answer);
    default:
        return usePayment(answer);
    }
}

void CardDesk::usePayment(const Answer& answer)
{
    if (!m_payment)
        return; // somebody else's
    switch (answer.verdict) {
    case Verdict::Approved:
        return approve(answer.receipt, {});
    case Verdict::Declined:
        return decline(answer.reason);
    case Verdict::Unknown:
        m_isUnclear = true;
        emit changed();
        return m_retry.start(m_retryTime);
    }
}

/// The last receipt that is in no outcome, of the right amount and kind, is that of the payment: no
/// other was begun after it.
void CardDesk::useLastReceipt(const Answer& answer)
{
    if (!isClearing())
        return;
    if (answer.verdict == Verdict::Unknown)
        return m_retry.start(m_retryTime);
    const payment::Receipt& receipt = answer.receipt;
    const bool isReversal = receipt.originalTrace != 0;
    const bool isOurs = answer.verdict == Verdict::Approved &&
                        receipt.amount == m_payment->amount &&
                        (m_payment->direction == CardDirection::Return || !isReversal) &&
                        !m_journal.knowsReceipt(receipt);
    if (m_journal.fault())
        return emit journalFailed();
    if (isOurs)
        return approve(receipt, QStringLiteral("cleared with the card terminal"));
    decline(tr("The card terminal did not do it."));
}

void CardDesk::approve(const payment::Receipt& receipt, const QString& note)
{
    const CardPayment payment = *m_payment;
    CardOutcome outcome{payment.id, Verdict::Approved, receipt, note};
    const bool wasReleased = isReleased();
    const bool isOfTickets = !payment.tickets.isEmpty();
    m_payment.reset();
    m_isUnclear = false;
    if (payment.direction == CardDirection::Charge && !wasReleased) {
        emit charged(payment, outcome);
    } else if (isOfTickets) {
        emit returned(payment, outcome);
    } else if (!m_journal.recordOutcome(outcome, m_clock())) {
        emit journalFailed();
    } else if (payment.direction == CardDirection::Return) {
        unbookedIsReturned(payment);
    } else {
        addUnbooked(payment);
    }
    emit changed();
    m_retry.start(0);
}

void CardDesk::decline(const QString& reason)
{
    const CardPayment payment = *m_payment;
    const bool wasReleased = isReleased();
    m_payment.reset();
    m_isUnclear = false;
    if (!m_journal.recordOutcome({payment.id, Verdict::Declined, {}, reason}, m_clock())) {
        emit changed();
        return emit journalFailed();
    }
    if (payment.direction == CardDirection::Return && payment.tickets.isEmpty()) {
        if (m_attempts == mostAttempts)
            emit unbookedReturned(false, reason);
    } else if (!wasReleased) {
        m_result = reason;
        emit declined(reason);
    }
    emit changed();
    m_retry.start(0);
}

void CardDesk::addUnbooked(const CardPayment& charge)
{
    m_unbooked.append(charge);
    m_attempts = 0;
    m_retry.start(0);
}

void CardDesk::giveBackUnbooked()
{
    ++m_attempts;
    CardPayment wanted;
    wanted.origin = m_unbooked.first().id;
    wanted.amount = m_unbooked.first().amount;
    begin(m_journal.beginReturn(wanted, m_clock()));
}

void CardDesk::unbookedIsReturned(const CardPayment& payment)
{
    const auto isOrigin = [&](const CardPayment& each) { return each.id == payment.origin; };
    m_unbooked.erase(std::remove_if(m_unbooked.begin(), m_unbooked.end(), isOrigin),
                     m_unbooked.end());
    m_attempts = 0;
    emit unbookedReturned(true, {});
}

/// What there is to do while the terminal is free.
void CardDesk::goOn()
{
    if (!isFree() || m_journal.fault())
        return;
    if (m_payment) {
        if (m_isUnclear && !m_terminal->askLastReceipt())
            m_retry.start(m_retryTime);
        return;
    }
    if (!m_unbooked.isEmpty() && m_attempts < mostAttempts)
        return giveBackUnbooked();
    beginDay();
}

bool CardDesk::abort()
{
    if (!mayAbort() || !m_terminal->abort())
        return false;
    m_isAborted = m_payment.has_value();
    emit changed();
    return true;
}

bool CardDesk::release()
{
    if (!mayRelease())
        return false;
    if (!m_journal.recordOutcome(
            {m_payment->id, Verdict::Unknown, {}, QStringLiteral("basket set free")}, m_clock())) {
        emit journalFailed();
        return false;
    }
    m_payment->verdict = Verdict::Unknown;
    emit released();
    emit changed();
    return true;
}

void CardDesk::forgetResult()
{
    if (m_result.isEmpty())
        return;
    m_result.clear();
    emit changed();
}

// The day of the card terminal.

void CardDesk::shiftClosed()
{
    m_isDayRefused = false;
    m_attempts = 0;
    goOn();
}

void CardDesk::beginDay()
{
    const qint64 shift = m_isClosingDay || m_isDayRefused ? 0 : m_journal.shiftOfOpenCardDay();
    if (shift == 0)
        return;
    if (!m_journal.beginCardDay(shift, m_clock()))
        return emit journalFailed();
    m_isClosingDay = true;
    if (!m_terminal->endOfDay())
        m_isClosingDay = false;
    emit changed();
}

/// A day that is refused waits for the next shift.
void CardDesk::useDay(const Answer& answer)
{
    if (!m_isClosingDay)
        return;
    m_isClosingDay = false;
    m_isDayRefused = answer.verdict == Verdict::Declined;
    if (answer.verdict == Verdict::Approved) {
        const qint64 shift = m_journal.shiftOfOpenCardDay();
        const auto difference = m_journal.recordCardDay(shift, answer.total, m_clock());
        if (difference)
            emit cardDayEnded(shift, *difference);
        else
            emit journalFailed();
    } else {
        m_retry.start(m_retryTime);
    }
    emit changed();
}

bool CardDesk::isReturnOpen() const
{
    return m_payment && m_payment->direction == CardDirection::Return;
}

} // namespace rivo::sales
