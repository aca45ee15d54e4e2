#pragma once

#include <QDateTime>
#include <QGeoCoordinate>
#include <QMetaType>

#include <QtNumeric>

namespace rivo::position
{

/// What a receiver knows at one moment.
struct Fix
{
    QGeoCoordinate coordinate;
    double speed = qQNaN();     ///< metres per second; NaN = unknown
    double direction = qQNaN(); ///< of travel, degrees clockwise from north; NaN = unknown
    QDateTime time;             ///< of the satellites, UTC; invalid = unknown
};

} // namespace rivo::position

Q_DECLARE_METATYPE(rivo::position::Fix)
