#pragma once

#include <Currency.h>
#include <Records.h>

#include <QCoreApplication>
#include <QHash>
#include <QPair>

namespace rivo::feed
{
struct Feed;
}

namespace rivo::terminal
{

class TripDesk;

/// What is on the paper of a ticket besides what its tile says: stop and route of the moment, the
/// vehicle, how long it is valid, and the tax that its price includes. Empty where it is not known.
class TicketDetails
{
    Q_DECLARE_TR_FUNCTIONS(rivo::terminal::TicketDetails)

public:
    /// `trip` outlives this.
    TicketDetails(const feed::Feed& feed, const sales::Currency& currency, const TripDesk& trip,
                  const QString& vehicle);

    void fill(sales::Ticket& ticket) const;

private:
    using Key = QPair<int, int>; ///< fare product and passenger type

    QString validity(const sales::Ticket& ticket) const;
    QString tax(sales::Minor price) const;

    const sales::Currency m_currency;
    const TripDesk& m_trip;
    const QString m_vehicle;
    const double m_taxPercent;
    QHash<Key, int> m_validMinutes;
};

} // namespace rivo::terminal
