#pragma once

#include "Currency.h"

#include <Feed.h>

#include <QDateTime>
#include <QString>

namespace rivo::sales
{

/// The ways of payment, as ShoppingItem::payMethod and the journal have them.
enum class PayMethod { Cash = 1, Card = 2 };

/// The driver sells; the only ShoppingItem::payChannel of this terminal.
constexpr int driverChannel = 1;

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
};

/// The number of a ticket as it is on the paper: "000042"; empty for 0, which is no ticket.
inline QString ticketNumberText(qint64 number)
{
    return number == 0 ? QString() : QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0'));
}

/// What one shift sold so far, or in all once it is closed.
struct ShiftReport
{
    qint64 zNumber = 0;
    int ticketCount = 0;
    Minor ticketSum = 0;
    int cardCount = 0;      ///< tickets paid by card
    Minor cardSum = 0;      ///< of ticketSum, paid by card
    qint64 firstTicket = 0; ///< 0 if none was sold
    qint64 lastTicket = 0;  ///< 0 if none was sold
    QDateTime closedAt;     ///< invalid while the shift runs
    QDateTime paidAt;       ///< when its cash was handed over; invalid before

    Minor cash() const { return ticketSum - cardSum; }
};

} // namespace rivo::sales
