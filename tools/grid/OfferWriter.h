#pragma once

#include <Feed.h>
#include <Offers.h>

#include <QJsonDocument>

// Both write to standard output part by part, for lists of any length; false, after reporting it,
// if that fails.

/// An object with currency, offers and what is left out, with the identifiers of the feed.
bool writeAsJson(const rivo::feed::Tariff& tariff, const rivo::feed::OfferList& list,
                 QJsonDocument::JsonFormat format);

/// The same as aligned tables for people.
bool writeAsText(const rivo::feed::Feed& feed, const rivo::feed::OfferList& list);
