#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

// What the office publishes for the drivers' cash: docs/fleet.md has the format.

namespace rivo::office
{

/// Most cash that drivers should carry, in units of the currency; 0 = no limit.
struct Limits
{
    std::optional<double> maxDebt; ///< of all that are not named; nothing = what the feed says
    QMap<qint64, double> ofDrivers = {}; ///< by their numbers
};

/// A shift whose cash was handed over in the office.
struct PaidShift
{
    QByteArray journal; ///< its public key, 32 bytes
    qint64 shift = 0;   ///< number of its Z report
};

struct LimitsResult
{
    std::optional<Limits> limits; ///< nothing if there are problems
    QStringList problems;         ///< "FILE: driver 2: no number", one a line
};

struct PaidResult
{
    std::optional<QVector<PaidShift>> shifts; ///< nothing if there are problems
    QStringList problems;
};

// Files of at most 4 MiB. An entry that is wrong makes the whole file wrong.
LimitsResult readLimits(const QString& file);
PaidResult readPaidShifts(const QString& file);

} // namespace rivo::office
