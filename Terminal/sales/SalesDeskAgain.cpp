// Several tickets at once: of one tile, like a line of the basket, like the last sale.

#include "SalesDesk.h"

#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>

#include <QStringList>

namespace rivo::sales
{

namespace
{

bool isSame(const PassengerTypeItem& tile, const Ticket& ticket)
{
    return !tile.hasExpired() && tile.id() == ticket.passengerTypeId &&
           tile.fareProductId() == ticket.fareProductId &&
           tile.toStopGroupId() == ticket.toStopGroupId &&
           tile.isReturnFee() == ticket.isReturnFee && tile.isDaily() == ticket.isDaily &&
           tile.description() == ticket.description &&
           tile.fareProductName() == ticket.fareProductName;
}

} // namespace

/// The tile that sells what `ticket` is, best for the same price from the same zone; -1 if there is
/// none.
int SalesDesk::tileLike(const Ticket& ticket) const
{
    int best = -1;
    int bestRank = -1;
    for (int row = 0; row < m_models.grid.rowCount(); ++row) {
        const auto* tile = qobject_cast<PassengerTypeItem*>(m_models.grid.itemFromRow(row));
        if (!isSame(*tile, ticket))
            continue;
        const bool isSameZone = tile->fromStopGroupId() == ticket.fromStopGroupId;
        const bool isSamePrice = m_currency.fromUnits(tile->price()) == ticket.price;
        const int rank = 2 * static_cast<int>(isSameZone) + static_cast<int>(isSamePrice);
        if (rank > bestRank) {
            best = row;
            bestRank = rank;
        }
    }
    return best;
}

/// All or, if there is no room, none. After a fault of the journal those are there that it has.
bool SalesDesk::addAll(const QVector<int>& rows)
{
    if (!mayChangeBasket())
        return false;
    if (m_tickets.size() + rows.size() > mostTickets)
        return refuse(tr("The basket has no room for %n more ticket(s).", "", rows.size()));
    for (const int row : rows) {
        if (!add(row))
            return false;
    }
    return true;
}

bool SalesDesk::addSeveral(int row, int count)
{
    if (count < 1)
        return refuse(tr("At least one ticket is needed."));
    return addAll(QVector<int>(qMin(count, mostTickets + 1), row));
}

bool SalesDesk::addLike(int line, int count)
{
    if (line < 0 || line >= m_tickets.size())
        return refuse(tr("There is no such line."));
    const int row = tileLike(m_tickets.at(line));
    if (row < 0)
        return refuse(tr("%1 is not sold here now.").arg(m_tickets.at(line).fareProductName));
    return addSeveral(row, count);
}

bool SalesDesk::addLastSale()
{
    if (m_lastTickets.isEmpty())
        return refuse(tr("There is no last sale."));
    QVector<int> rows;
    for (const Ticket& ticket : qAsConst(m_lastTickets)) {
        rows.append(tileLike(ticket));
        if (rows.last() < 0)
            return refuse(tr("%1 is not sold here now.").arg(ticket.fareProductName));
    }
    return addAll(rows);
}

} // namespace rivo::sales
