#pragma once

#include <QByteArray>
#include <QGeoCoordinate>
#include <QString>
#include <QVector>

#include <QtNumeric>

#include <optional>

namespace rivo::live
{

/// A vehicle as a message reports it.
struct LiveVehicle
{
    QString id;                 ///< of the vehicle, or of its entity where it has none; never empty
    QString label;              ///< the number on the vehicle; may be empty
    QString plate;              ///< may be empty
    QString trip;               ///< id in the feed; may be empty
    QString route;              ///< id in the feed; may be empty
    QGeoCoordinate coordinate;  ///< always valid
    double direction = qQNaN(); ///< degrees clockwise from north; NaN = unknown
    qint64 time = 0;            ///< seconds since 1970; 0 = unknown
    bool isStopped = false;     ///< at a stop
};

/// A message of GTFS-Realtime with the positions of vehicles.
struct LiveMessage
{
    qint64 time = 0;               ///< when it was made, seconds since 1970; 0 = unknown
    QVector<LiveVehicle> vehicles; ///< each id once
    int ignored = 0; ///< vehicles without an id, without a position, or beyond mostVehicles
};

constexpr int mostVehicles = 20000;
constexpr int longestText = 200; ///< letters; longer texts are cut

struct LiveResult
{
    std::optional<LiveMessage> message; ///< nothing if there is a problem
    QString problem;
};

/// Reads a message. Bytes that are no message of GTFS-Realtime are a problem, and so is a message
/// with changes only, which was not asked for.
LiveResult readMessage(const QByteArray& bytes);

} // namespace rivo::live
