#pragma once

#include "FleetOverview.h"

#include <QByteArray>

namespace rivo::backoffice
{

/// Seconds after which a place is no longer published. A vehicle that stands reports it, too.
constexpr int longestSilence = 600;

/// A message of GTFS-Realtime with the places of vehicles, for public apps: all that are known,
/// except those of vehicles that were silent for longer than longestSilence. The id of an entity is
/// the vehicle's name with its operator, its label the name alone.
QByteArray vehiclePositions(const QVector<VehicleOverview>& vehicles, const QDateTime& now);

} // namespace rivo::backoffice
