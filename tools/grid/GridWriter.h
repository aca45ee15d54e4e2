#pragma once

#include <Feed.h>

#include <QByteArray>

class PassengerTypesModel;

/// The laid-out grid as an aligned table: zone by zone, or in the order of back-office positions,
/// daily products last. Placeholders show as "--".
QByteArray gridAsText(const rivo::feed::Feed& feed, PassengerTypesModel& model, bool withColours);

/// All roles of all rows, and the size of the grid.
QByteArray gridAsJson(const rivo::feed::Feed& feed, const PassengerTypesModel& model);

/// All roles of all rows (RFC 4180), the first record the role names in the order of their
/// numbers.
QByteArray gridAsCsv(const PassengerTypesModel& model);
