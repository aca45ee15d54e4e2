#pragma once

#include <Feed.h>
#include <Offers.h>

#include <QByteArray>
#include <QJsonObject>

/// Currency, offers and what is left out, with the identifiers of the feed.
QJsonObject offersAsJson(const rivo::feed::Tariff& tariff, const rivo::feed::OfferList& list);

/// The same as aligned tables for people.
QByteArray offersAsText(const rivo::feed::Feed& feed, const rivo::feed::OfferList& list);
