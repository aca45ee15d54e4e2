#include "TicketSelection.h"

#include <GridLayout.h>
#include <PassengerTypeItem.h>

#include <algorithm>

namespace
{

using Tiles = QVector<const PassengerTypeItem*>;

/// Why no ticket can be sold from a slot; empty if one can.
QString objectionTo(int slot, const Tiles& grid)
{
    if (slot >= grid.size())
        return grid.isEmpty() ? QStringLiteral("the grid has no slots")
                              : QStringLiteral("the grid ends with slot %1").arg(grid.size() - 1);
    if (isPlaceholder(*grid.at(slot)))
        return QStringLiteral("a placeholder");
    return grid.at(slot)->hasExpired() ? QStringLiteral("expired") : QString();
}

} // namespace

TicketSelection selectTickets(const PassengerTypesModel& grid,
                              const std::optional<QVector<int>>& wanted)
{
    const Tiles tiles = tilesOf(grid);
    TicketSelection selection;
    if (!wanted) {
        std::copy_if(tiles.cbegin(), tiles.cend(), std::back_inserter(selection.tiles),
                     [](const PassengerTypeItem* tile) { return !tile->hasExpired(); });
        return selection;
    }
    for (const int slot : *wanted) {
        const QString objection = objectionTo(slot, tiles);
        if (objection.isEmpty())
            selection.tiles.append(tiles.at(slot));
        else
            selection.errors.append(QStringLiteral("slot %1: %2").arg(slot).arg(objection));
    }
    if (!selection.errors.isEmpty())
        selection.tiles.clear();
    return selection;
}
