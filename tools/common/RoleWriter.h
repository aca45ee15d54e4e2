#pragma once

#include <QByteArray>
#include <QString>

namespace rivo
{
namespace feed
{
struct Feed;
}
namespace models
{
class ListModel;
}
} // namespace rivo

// A model as its rows, each with the values of all roles in the order of their numbers. A double
// is written in the fewest digits that read back as the same, a date as ISO 8601 with its offset.

/// A line with the operator, `title` and the number of rows; then an aligned table below the role
/// names. Long texts are cut; a position is "LATITUDE LONGITUDE ALTITUDE", what is unknown empty.
QByteArray modelAsText(const rivo::feed::Feed& feed, const QString& title,
                       const rivo::models::ListModel& model);

/// An object with operator ("name"), currency and "rows", for a grid also "numberOfColumns" and
/// "numberOfRows". Each row is an object of role name to value, with "properties" if its class has
/// Qt properties, an object of their names to values. A position is an object with "latitude",
/// "longitude" and "altitude", and what is unknown is null.
QByteArray modelAsJson(const rivo::feed::Feed& feed, const rivo::models::ListModel& model);

/// RFC 4180, the first record the role names. Texts are quoted; positions, dates and what is
/// unknown as in the text.
QByteArray modelAsCsv(const rivo::models::ListModel& model);
