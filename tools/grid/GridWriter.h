#pragma once

#include <Feed.h>

#include <QByteArray>

class PassengerTypesModel;

/// The laid-out grid as an aligned table: zone by zone, or in the order of back-office positions,
/// daily products last. Placeholders show as "--".
QByteArray gridAsText(const rivo::feed::Feed& feed, PassengerTypesModel& model, bool withColours);
