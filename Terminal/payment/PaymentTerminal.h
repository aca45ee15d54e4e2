#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>

namespace rivo::payment
{

/// What is done with a card terminal.
enum class Request {
    Authorise,  ///< money is taken from a card
    Reverse,    ///< a payment of this day is taken back as a whole
    Refund,     ///< money is given to a card
    EndOfDay,   ///< the terminal adds up and hands its payments to the bank
    LastReceipt ///< what it did last
};

enum class Verdict {
    Approved = 1,
    Declined = 2, ///< certainly not done
    Unknown = 3   ///< done or not: only the terminal knows
};

/// What a card terminal kept of a transaction.
struct Receipt
{
    int number = 0; ///< given by the terminal; starts again some day
    int trace = 0;
    qint64 amount = 0;     ///< in minor units; 0 if the terminal does not say
    int originalTrace = 0; ///< of the payment that was reversed; 0 for all others
    QString card;          ///< its name and the last digits of its number
    QString terminalId;
    QDateTime at; ///< by the clock of the terminal

    bool isSameAs(const Receipt& other) const
    {
        return number == other.number && trace == other.trace && terminalId == other.terminalId;
    }
};

struct Answer
{
    Request request = Request::Authorise;
    /// Of LastReceipt: Approved = `receipt` is the last one, Declined = there is none.
    Verdict verdict = Verdict::Unknown;
    Receipt receipt;      ///< if it is approved
    QString reason;       ///< if it is not, in words for the driver
    qint64 total = 0;     ///< of an end of day: what was taken, less what was given back
    bool wasDone = false; ///< Reverse: approved because it was reversed before
};

/// A card terminal. It does one request at a time and never blocks.
///
/// A request is accepted or refused at once. A refused one returns false, was not sent, and emits
/// nothing. An accepted one is answered() exactly once, from the event loop or from within the
/// call. After Unknown the last receipt says what happened.
class PaymentTerminal : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Why it takes no requests, in words; empty if it does. A busy one has no fault.
    virtual QString fault() const = 0;
    virtual bool isBusy() const = 0;
    /// What it is doing, as the terminal itself says; empty if it does nothing.
    virtual QString statusText() const = 0;

    // All below are refused while there is a fault or it is busy.

    /// Refused unless `amount` is from 1 to mostAmount.
    virtual bool authorise(qint64 amount) = 0;
    virtual bool reverse(int receipt, qint64 amount) = 0; ///< refused unless `receipt` is positive
    virtual bool refund(qint64 amount) = 0;
    virtual bool endOfDay() = 0;
    virtual bool askLastReceipt() = 0;

    /// Asks a terminal that is busy with a card to stop; the answer may be Approved nevertheless.
    /// Refused if there is nothing to stop.
    virtual bool abort() = 0;

    static constexpr qint64 mostAmount = 999999999999; ///< minor units

signals:
    void changed(); ///< fault, busy
    void statusTextChanged();
    void answered(const rivo::payment::Answer& answer);
};

} // namespace rivo::payment

Q_DECLARE_METATYPE(rivo::payment::Answer)
