#pragma once

#include <QStringList>
#include <QVector>

#include <optional>

class PassengerTypeItem;
class PassengerTypesModel;

/// Tiles of a grid, chosen for sale.
struct TicketSelection
{
    QVector<const PassengerTypeItem*> tiles; ///< in the order of the slots; none if one is wrong
    QStringList errors;                      ///< one per slot that is not for sale
};

/// The tiles in the slots `wanted`, or without them every tile for sale in the order of the grid.
TicketSelection selectTickets(const PassengerTypesModel& grid,
                              const std::optional<QVector<int>>& wanted);
