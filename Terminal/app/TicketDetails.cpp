#include "TicketDetails.h"

#include "TripDesk.h"

#include <Feed.h>

#include <QLocale>

#include <cmath>

namespace rivo::terminal
{

TicketDetails::TicketDetails(const feed::Feed& feed, const sales::Currency& currency,
                             const TripDesk& trip, const QString& vehicle)
    : m_currency(currency), m_trip(trip), m_vehicle(vehicle), m_taxPercent(feed.taxPercent)
{
    for (const feed::FeedProduct& product : feed.products) {
        const Key key(product.fareProductId, product.passengerTypeId);
        if (product.validMinutes > 0 && !m_validMinutes.contains(key))
            m_validMinutes.insert(key, product.validMinutes);
    }
}

void TicketDetails::fill(sales::Ticket& ticket) const
{
    ticket.fromStopName = m_trip.stopName();
    ticket.routeName = m_trip.route();
    ticket.vehicle = m_vehicle;
    ticket.validity = validity(ticket);
    ticket.tax = tax(ticket.price);
}

QString TicketDetails::validity(const sales::Ticket& ticket) const
{
    const int minutes = m_validMinutes.value({ticket.fareProductId, ticket.passengerTypeId});
    return minutes == 0 ? QString() : tr("%n minute(s)", nullptr, minutes);
}

/// Prices include the tax: the rest of a price is 100 percent.
QString TicketDetails::tax(sales::Minor price) const
{
    if (m_taxPercent == 0.0)
        return {};
    const double part = static_cast<double>(price) * m_taxPercent / (100.0 + m_taxPercent);
    return tr("Includes %1% VAT: %2")
        .arg(QLocale().toString(m_taxPercent, 'g', 6), m_currency.text(std::llround(part)));
}

} // namespace rivo::terminal
