#pragma once

#include "Tariff.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

namespace rivo::feed
{

/// Where and when a ticket is sold.
struct OfferQuery
{
    QString route;
    QString stop;
    QDateTime at;             ///< local time of the operator
    QString to;               ///< destination; empty = any stop that the route reaches
    QVector<int> media{0, 1}; ///< types of media that are sold; see TariffMedium
    bool withExpired = false; ///< also what is no longer valid, for showing it
};

/// A ticket that may be sold. Numbers are those of the tariff; -1 = none.
struct Offer
{
    QString name; ///< of the product
    int product = -1;
    int category = -1;
    QVector<int> media; ///< on which it is sold at this amount, by identifier; empty = unknown
    qint64 amount = 0;  ///< in minor units
    int fromArea = -1;  ///< as the rule states it
    int toArea = -1;
    bool isPass = false; ///< sold everywhere
    int entry = -1;      ///< of Feed::products, if its products state where they are sold
};

bool operator==(const Offer& left, const Offer& right);

/// Why a product has no offer.
enum class LeftOutReason {
    TransferOnly, ///< a part of a journey's price
    Negative,     ///< a discount
    Media,        ///< sold on other media
    Prepaid,      ///< sold before boarding
    Network,      ///< no rule is for the route
    Area,         ///< no rule is for the stop and a destination
    Timeframe,    ///< no rule holds at this time
    Priority      ///< other rules go before
};

struct LeftOutProduct
{
    int product = -1;
    LeftOutReason reason = LeftOutReason::Area;
};

/// What may be sold, in the order of the feed, and why the rest may not.
struct OfferList
{
    QStringList errors; ///< why there is no answer; the others are empty then
    QVector<Offer> offers;
    QVector<LeftOutProduct> leftOut;
};

/// More offers at once are an error: no grid could hold them.
constexpr int mostOffers = 100'000;

OfferList offersOf(const Tariff& tariff, const OfferQuery& query);

/// Everything that is sold on some route, at some stop and time.
OfferList everythingSold(const Tariff& tariff, const QVector<int>& media = {0, 1});

/// As above, but each price of a product once, without areas.
OfferList everyPriceSold(const Tariff& tariff, const QVector<int>& media = {0, 1});

/// "transfer_only", "media" ...
QString reasonText(LeftOutReason reason);

} // namespace rivo::feed
