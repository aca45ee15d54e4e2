#pragma once

#include "Records.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>
#include <utility>

namespace rivo::sales
{

class Journal;

/// What the terminal does with cards: one payment at a time, in the journal before the card
/// terminal is asked. Whatever ends without a known result is cleared with the card terminal before
/// anything else is asked of it, after a restart too.
///
/// The desk books nothing but outcomes: what is approved is announced, and becomes a sale or a
/// reversal together with its outcome, in one transaction of those who asked for it.
class CardDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy NOTIFY changed)
    Q_PROPERTY(bool clearing READ isClearing NOTIFY changed)
    Q_PROPERTY(bool mayAbort READ mayAbort NOTIFY changed)
    Q_PROPERTY(bool mayRelease READ mayRelease NOTIFY changed)
    Q_PROPERTY(QString obstacle READ obstacle NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(QString result READ result NOTIFY changed)

public:
    explicit CardDesk(Journal& journal, QObject* parent = nullptr);

    /// The card terminal; none = cards are not taken. Call before restore(), and while no payment
    /// is asked for.
    void setTerminal(payment::PaymentTerminal* terminal);
    payment::PaymentTerminal* terminal() const { return m_terminal.data(); }

    /// The clock that records have their time of; at first that of the system.
    using Clock = std::function<QDateTime()>;
    void setClock(Clock clock) { m_clock = std::move(clock); }

    /// Milliseconds until the card terminal is asked again what it did.
    void setRetryTime(int milliseconds) { m_retryTime = milliseconds; }

    /// Goes on where the journal ends: clears what is open, gives back what was never booked.
    void restore();

    /// Whether a payment, a return or its clearing holds the basket.
    bool isBusy() const { return m_payment.has_value() && !isReleased(); }
    /// The result is not known, and the card terminal is asked for it or will be.
    bool isClearing() const { return m_payment.has_value() && m_isUnclear; }
    bool isReturnOpen() const; ///< whether money that goes back is on its way
    bool mayAbort() const;
    /// Whether the basket can be freed although the result is not known.
    bool mayRelease() const;
    /// Why no card can be charged now, in words; empty if one can.
    QString obstacle() const;
    QString statusText() const; ///< what the card terminal is doing; empty if nothing
    /// How the last payment ended if it was not approved; empty again when the next one begins.
    QString result() const { return m_result; }

    /// Begins to take money for a sale. False, and nothing begun, if there is an obstacle or the
    /// journal fails. charged() or declined() follows, maybe from within the call.
    bool charge(Minor amount);

    /// Begins to give money of a payment back: `wanted` has origin, amount, tickets, kind and
    /// reason. False, and nothing begun, as above. returned() or declined() follows.
    bool giveBack(const CardPayment& wanted);

    /// What was charged() is not booked, and its outcome is in the journal: the money goes back.
    void addUnbooked(const CardPayment& charge);

    /// A shift was closed: the card terminal closes its day as soon as it can.
    void shiftClosed();

    /// Asks the card terminal to stop. False if there is nothing to stop.
    Q_INVOKABLE bool abort();

    /// Frees the basket while the result is not known. A payment that turns out to be approved is
    /// given back then. False if there is nothing of that kind.
    Q_INVOKABLE bool release();

    Q_INVOKABLE void forgetResult(); ///< the driver has seen it

signals:
    void changed();
    /// Approved, and not in the journal yet: book it with `outcome`.
    void charged(const rivo::sales::CardPayment& payment, const rivo::sales::CardOutcome& outcome);
    void returned(const rivo::sales::CardPayment& payment, const rivo::sales::CardOutcome& outcome);
    void declined(const QString& reason);
    void released();
    /// Money of a payment without a sale was given back; if not, `reason` says why.
    void unbookedReturned(bool isDone, const QString& reason);
    void cardDayEnded(qint64 shift, rivo::sales::Minor difference);
    void journalFailed();

private:
    bool isReleased() const;
    bool isFree() const;
    bool begin(const std::optional<CardPayment>& payment);
    bool askFor(const CardPayment& payment);
    void use(const payment::Answer& answer);
    void usePayment(const payment::Answer& answer);
    void useLastReceipt(const payment::Answer& answer);
    void useDay(const payment::Answer& answer);
    void approve(const payment::Receipt& receipt, const QString& note);
    void decline(const QString& reason);
    void goOn();
    void giveBackUnbooked();
    void unbookedIsReturned(const CardPayment& payment);
    void beginDay();

    Journal& m_journal;
    QPointer<payment::PaymentTerminal> m_terminal;
    QTimer m_retry;
    std::optional<CardPayment> m_payment; ///< not ended
    bool m_isUnclear = false;             ///< of m_payment: the result was lost
    QVector<CardPayment> m_unbooked;      ///< charges that have no sale, and go back
    int m_attempts = 0;                   ///< to give the first of them back
    bool m_isAborted = false;
    bool m_isClosingDay = false;
    bool m_isDayRefused = false;
    int m_retryTime = 2000;
    Clock m_clock = &QDateTime::currentDateTime;
    QString m_result;
};

} // namespace rivo::sales
