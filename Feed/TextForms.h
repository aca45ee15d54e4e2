#pragma once

#include <QDate>
#include <QString>

#include <string_view>

namespace rivo::feed
{

// The forms that texts of a feed have.

/// The format name of JSON feeds.
bool isFormatName(const QString& text);

/// Three capital letters, as the codes of ISO 4217.
bool isCurrencyCode(const QString& text);

/// ISO 8601 with a date, a time and an offset from UTC, of a day that the calendar has.
bool isDateAndTime(const QString& text);

/// Digits, perhaps with a point and further digits.
bool isDecimal(const QString& text);

/// The same, perhaps with a minus before it.
bool isAmount(const QString& text);

/// Six hexadecimal digits.
bool isColor(const QString& text);

/// The same behind a "#".
bool isSharpColor(const QString& text);

/// `text` as a positive integer; 0 if it is none or has leading zeros ("07").
int positiveInteger(const QString& text);

/// H:MM:SS as seconds since the start of the service day; hours may pass 24. -1 if `text` is none.
int seconds(const QString& text);
int seconds(std::string_view text);
bool isTime(const QString& text);

/// The same up to 24:00:00.
bool isTimeOfDay(const QString& text);

/// YYYY-MM-DD, a day that the calendar has.
bool isIsoDate(const QString& text);

/// YYYYMMDD, a day that the calendar has; an invalid date if `text` is none.
QDate gtfsDate(const QString& text);
bool isGtfsDate(const QString& text);

} // namespace rivo::feed
