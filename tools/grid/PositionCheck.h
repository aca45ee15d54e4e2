#pragma once

#include <Feed.h>

#include <QByteArray>

class PassengerTypesModel;

/// What is to be said about the back-office positions of a feed.
struct PositionVerdict
{
    bool fallsBack = false; ///< the terminal would not use the positions
    QByteArray report;      ///< every finding with its products, then what the terminal would do
};

/// Judges the positions of the feed's non-daily products by the rules of `model`, which has been
/// laid out with them.
PositionVerdict checkPositions(const rivo::feed::Feed& feed, PassengerTypesModel& model);
