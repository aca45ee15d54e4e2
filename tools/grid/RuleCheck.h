#pragma once

#include <Tariff.h>

#include <QMap>
#include <QString>
#include <QVector>

/// A rule beside another one that fits all its rides.
struct OverlappingRules
{
    int rule = -1;
    int wider = -1;
    bool isHidden = false; ///< the wider one has the higher priority; otherwise the same
};

/// Rules of Fares V2 that a wider rule of the same or a higher priority covers, in order of the
/// file. Of the same priority they count only if the products differ. Empty without priorities.
QVector<OverlappingRules> overlappingRules(const rivo::feed::Tariff& tariff);

/// Products that no ride brings about, on any route and at any time, with the reason in words: no
/// rule of theirs fits, or the validity that a JSON feed states. Others have rides, or need none.
QMap<int, QString> productsWithoutRides(const rivo::feed::Tariff& tariff);
