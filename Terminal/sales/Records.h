#pragma once

#include "Currency.h"

#include <Feed.h>
#include <PaymentTerminal.h>

#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

namespace rivo::sales
{

/// The ways of payment, as ShoppingItem::payMethod and the journal have them.
enum class PayMethod { Cash = 1, Card = 2 };

/// The driver sells; the only ShoppingItem::payChannel of this terminal.
constexpr int driverChannel = 1;

/// How a sale is paid. All amounts are 0 for a card.
struct Payment
{
    PayMethod method = PayMethod::Cash;
    Minor rounding = 0; ///< what is paid in cash, less the total
    Minor given = 0;    ///< of the passenger; 0 before the sale = exactly what is due
    Minor change = 0;   ///< set by the journal: what was given, less what was due
};

/// Why tickets were taken back.
enum class ReversalKind {
    Void = 1,  ///< the last sale was a mistake
    Refund = 2 ///< a passenger got the money back
};

/// What is done with a card.
enum class CardDirection {
    Charge = 1, ///< money is taken for a sale
    Return = 2  ///< money of a payment is given back
};

/// A payment with a card, from the moment before the terminal is asked.
struct CardPayment
{
    qint64 id = 0; ///< number of its record
    CardDirection direction = CardDirection::Charge;
    Minor amount = 0;
    qint64 origin = 0;       ///< Return: the payment that it gives back; 0 for a charge
    QVector<qint64> tickets; ///< Return: those that are taken back when it is approved
    ReversalKind kind = ReversalKind::Void; ///< Return: of these tickets
    QString reason;                         ///< Return: of these tickets
    /// The newest outcome; nothing while the terminal has it. Unknown: the basket is free again.
    std::optional<payment::Verdict> verdict;
    payment::Receipt receipt; ///< if it is approved

    bool isOpen() const { return !verdict || *verdict == payment::Verdict::Unknown; }
};

/// How a payment with a card ended.
struct CardOutcome
{
    qint64 payment = 0;
    payment::Verdict verdict = payment::Verdict::Unknown;
    payment::Receipt receipt; ///< if it is approved
    QString reason;           ///< if it is not, or something is to be noted
};

/// What is remarked about the clock that records have their time of.
enum class ClockRemark {
    Offset = 1, ///< the satellites are ahead of it, or behind if negative
    Step = 2,   ///< it was set while the terminal ran; backwards if negative
    Behind = 3  ///< it is behind the last record at the start; always negative
};

/// One ticket as it is sold: what it is, what it costs, and the trip it was sold on.
struct Ticket
{
    qint64 number = 0;  ///< given by the journal when the sale is confirmed; 0 before
    int payMethod = -1; ///< PayMethod as a number once the sale is confirmed; -1 before
    int passengerTypeId = -1;
    int fareProductId = -1;
    int fromStopGroupId = -1;
    int toStopGroupId = -1;
    QString description;
    QString fareProductName;
    QString icon;
    Minor price = 0;
    QString origin;
    QString destination;
    bool isReturnFee = false;
    bool isDaily = false;
    feed::FeedTripContext trip;
    // What else is on the paper; empty texts are left out.
    QString fromStopName;
    QString toStopName;
    QString routeName;
    QString vehicle;
    QString validity;
    QString tax;
    QDateTime soldAt;  ///< given by the journal when the sale is confirmed
    qint64 driver = 0; ///< as soldAt: who sold it
};

/// A ticket of a past sale, and what happened to it since.
struct PastTicket
{
    Ticket ticket;
    int copies = 0;
    bool isReversed = false;
};

/// A sale of the journal, and what is left of it.
struct PastSale
{
    qint64 id = 0; ///< number of its record
    qint64 shift = 0;
    qint64 driver = 0;
    QDateTime at;
    Payment payment;
    qint64 firstTicket = 0; ///< its tickets follow one another
    int ticketCount = 0;
    Minor total = 0;
    int reversedCount = 0; ///< tickets that were taken back
    Minor reversedSum = 0; ///< their prices
    Minor paidOut = 0;     ///< what was given back for them; cash is rounded

    Minor paid() const { return total + payment.rounding; }
    Minor remaining() const { return total - reversedSum; }
    bool isReversed() const { return reversedCount == ticketCount; }
};

/// The number of a ticket as it is on the paper: "000042"; empty for 0, which is no ticket.
inline QString ticketNumberText(qint64 number)
{
    return number == 0 ? QString() : QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0'));
}

/// What one shift sold so far, or in all once it is closed. Tickets that were taken back are in the
/// sums of what was sold, and in sums of their own.
struct ShiftReport
{
    qint64 zNumber = 0;
    int ticketCount = 0;
    Minor ticketSum = 0;
    int cardCount = 0;      ///< tickets paid by card
    Minor cardSum = 0;      ///< of ticketSum, paid by card
    qint64 firstTicket = 0; ///< 0 if none was sold
    qint64 lastTicket = 0;  ///< 0 if none was sold
    int voidCount = 0;      ///< tickets of sales that were void
    Minor voidSum = 0;
    int refundCount = 0; ///< tickets that were refunded
    Minor refundSum = 0;
    int reversedCardCount = 0;   ///< of voidCount and refundCount, paid by card
    Minor reversedCardSum = 0;   ///< of voidSum and refundSum, given back to cards
    Minor rounding = 0;          ///< what cash differs from the prices
    int copyCount = 0;           ///< tickets printed once more
    Minor openingFloat = 0;      ///< the change that the driver began with
    qint64 driver = 0;           ///< who closed it; 0 before, and without a sign-in
    QDateTime closedAt;          ///< invalid while the shift runs
    QDateTime paidAt;            ///< when its cash was handed over; invalid before
    Minor counted = 0;           ///< what was handed over; 0 before
    Minor difference = 0;        ///< of counted to due(); negative if something is missing
    bool isCardDayEnded = false; ///< the card terminal closed its day after this shift
    Minor cardDayTotal = 0;      ///< what it reported
    Minor cardDayDifference = 0; ///< of that to the payments of the journal
    QString head; ///< of the journal when it was closed, see Journal::head(); empty without a seal

    /// What was taken in, less what was given back.
    Minor takings() const { return ticketSum - voidSum - refundSum + rounding; }
    Minor cardTakings() const { return cardSum - reversedCardSum; } ///< of takings()
    Minor cash() const { return takings() - cardTakings(); }        ///< of takings()
    /// What the driver has to hand over.
    Minor due() const { return cash() + openingFloat; }
};

/// What a printer gets: a ticket, or the report of a shift.
struct PrintJob
{
    Ticket ticket;
    int copy = 0; ///< 0 = the original, 1 = its first copy
    std::optional<ShiftReport> report;
    bool opensDrawer = false; ///< money goes into the cash drawer, or change comes out of it
};

} // namespace rivo::sales
