#pragma once

#include <FleetMessages.h>

#include <QDateTime>
#include <QSqlQuery>
#include <QVariant>
#include <QtNumeric>

namespace rivo::backoffice
{

/// The columns of a place, of a table vehicle_state that is named state.
constexpr char positionColumns[] =
    "CAST(extract(epoch FROM state.position_at) * 1000 AS bigint), state.latitude,"
    " state.longitude, state.direction, state.speed, COALESCE(state.trip, '')";

/// Milliseconds since 1970, or null.
inline QDateTime timeOf(const QVariant& value)
{
    return value.isNull() ? QDateTime()
                          : QDateTime::fromMSecsSinceEpoch(value.toLongLong(), Qt::UTC);
}

/// The place in a row with positionColumns from the column `first` on.
inline office::PositionReport positionIn(const QSqlQuery& row, int first)
{
    const auto number = [&row](int column) {
        return row.value(column).isNull() ? qQNaN() : row.value(column).toDouble();
    };
    return {timeOf(row.value(first)), number(first + 1), number(first + 2),
            number(first + 3),        number(first + 4), row.value(first + 5).toString()};
}

} // namespace rivo::backoffice
