#pragma once

#include "JournalFile_p.h"
#include "JournalSchema_p.h"

#include <QDateTime>

namespace rivo::sales
{

inline QString timeText(const QDateTime& time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

inline QDateTime timeOf(const QVariant& text)
{
    return QDateTime::fromString(text.toString(), Qt::ISODateWithMs);
}

/// Reads tickets. `selection`: what stands after the columns' names in the statement: number, way
/// of payment, more columns, and which tickets. `use(row, ticket)` gets each.
template <typename Use>
bool forEachTicket(JournalFile& file, const QString& selection, Use use)
{
    QSqlQuery query =
        file.prepared(QStringLiteral("SELECT %1, %2").arg(ticketColumnNames(), selection));
    return file.forEachRow(query, [&] {
        Ticket ticket = ticketOf(query);
        ticket.number = query.value(ticketColumnCount()).toLongLong();
        ticket.payMethod = query.value(ticketColumnCount() + 1).toInt();
        ticket.soldAt = timeOf(query.value(ticketColumnCount() + 2));
        ticket.driver = query.value(ticketColumnCount() + 3).toLongLong();
        use(query, ticket);
    });
}

inline QVector<Ticket> readTickets(JournalFile& file, const QString& selection)
{
    QVector<Ticket> tickets;
    const bool isRead = !file.fault() &&
                        forEachTicket(file, selection, [&](const QSqlQuery&, const Ticket& ticket) {
                            tickets.append(ticket);
                        });
    return isRead ? tickets : QVector<Ticket>();
}

} // namespace rivo::sales
