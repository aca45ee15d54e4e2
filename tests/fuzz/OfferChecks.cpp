#include "OfferChecks.h"

#include "Fuzzing.h"

#include <algorithm>
#include <set>
#include <tuple>

using namespace rivo::feed;

namespace
{

constexpr int mostAsked = 4; ///< routes and stops

void checkNumber(int number, int size, const char* what)
{
    fuzzing::require(number >= -1 && number < size, what);
}

void checkPrices(const Tariff& tariff)
{
    int product = 0;
    for (const TariffPrice& price : tariff.prices) {
        fuzzing::require(price.product >= product && price.product < tariff.products.size(),
                         "the prices are not sorted by product");
        product = price.product;
        checkNumber(price.category, tariff.categories.size(), "category of a price");
        checkNumber(price.medium, tariff.media.size(), "medium of a price");
        fuzzing::require(qAbs(price.amount) <= 10'000'000'000, "the amount of a price");
    }
}

void checkRules(const Tariff& tariff)
{
    const int networks =
        tariff.form == Tariff::Form::Older ? tariff.routes.size() : tariff.networkIds.size();
    for (const TariffRule& rule : tariff.rules) {
        checkNumber(rule.product, tariff.products.size(), "product of a rule");
        checkNumber(rule.network, networks, "network of a rule");
        checkNumber(rule.fromArea, tariff.areas.size(), "area of departure of a rule");
        checkNumber(rule.toArea, tariff.areas.size(), "area of arrival of a rule");
        checkNumber(rule.fromTimes, tariff.times.size(), "times of departure of a rule");
        checkNumber(rule.toTimes, tariff.times.size(), "times of arrival of a rule");
        fuzzing::require(rule.priority >= 0, "a priority is negative");
    }
}

void checkSpans(const QVector<TariffSpan>& spans, const Tariff& tariff)
{
    for (const TariffSpan& span : spans) {
        fuzzing::require(span.begin >= 0 && span.begin < span.end && span.end <= 24 * 3600,
                         "a span of a day");
        checkNumber(span.service, tariff.services.size(), "service of a span");
    }
}

void checkPlaces(const Tariff& tariff)
{
    for (const TariffStop& stop : tariff.stops) {
        checkNumber(stop.station, tariff.stops.size(), "station of a stop");
        checkNumber(stop.zone, tariff.areas.size(), "zone of a stop");
        fuzzing::require(std::is_sorted(stop.areas.begin(), stop.areas.end()),
                         "the areas of a stop are not sorted");
        for (const int area : stop.areas)
            fuzzing::require(area >= 0 && area < tariff.areas.size(), "area of a stop");
    }
    for (const TariffRoute& route : tariff.routes) {
        checkNumber(route.network, tariff.networkIds.size(), "network of a route");
        checkNumber(route.agency, tariff.agencies.size(), "agency of a route");
        for (const QVector<int>& run : route.runs) {
            for (const int stop : run)
                fuzzing::require(stop >= 0 && stop < tariff.stops.size(), "stop of a route");
        }
    }
}

/// What two answers to similar questions share.
using OfferKey = std::tuple<int, int, qint64, int>;

std::set<OfferKey> keysOf(const OfferList& list)
{
    std::set<OfferKey> keys;
    for (const Offer& offer : list.offers)
        keys.insert({offer.product, offer.category, offer.amount, offer.entry});
    return keys;
}

void checkAmong(const OfferList& some, const OfferList& all, const char* what)
{
    if (!some.errors.isEmpty() || !all.errors.isEmpty())
        return;
    const std::set<OfferKey> among = keysOf(all);
    for (const OfferKey& key : keysOf(some))
        fuzzing::require(among.count(key) > 0, what);
}

/// Whether a trip of the route goes from the stop to the destination; others may be asked for, too.
bool isReached(const Tariff& tariff, const OfferQuery& query)
{
    const int route = tariff.routeIds.find(query.route);
    const int from = tariff.stopIds.find(query.stop);
    const int to = tariff.stopIds.find(query.to);
    if (route < 0 || from < 0 || to < 0)
        return false;
    const QVector<QVector<int>>& runs = tariff.routes.at(route).runs;
    return std::any_of(runs.begin(), runs.end(), [&](const QVector<int>& run) {
        const int at = run.indexOf(from);
        return at >= 0 && run.indexOf(to, at + 1) >= 0;
    });
}

void checkList(const Tariff& tariff, const OfferList& list)
{
    fuzzing::require(list.offers.size() <= mostOffers, "too many offers");
    fuzzing::require(list.errors.isEmpty() || (list.offers.isEmpty() && list.leftOut.isEmpty()),
                     "errors and offers");
    std::set<int> offered;
    for (const Offer& offer : list.offers) {
        fuzzing::require(!offer.name.isEmpty(), "an offer without a name");
        fuzzing::require(offer.amount >= 0, "an offer with a negative amount");
        checkNumber(offer.product, tariff.products.size(), "product of an offer");
        checkNumber(offer.category, tariff.categories.size(), "category of an offer");
        checkNumber(offer.fromArea, tariff.areas.size(), "area of departure of an offer");
        checkNumber(offer.toArea, tariff.areas.size(), "area of arrival of an offer");
        for (const int medium : offer.media)
            fuzzing::require(medium >= 0 && medium < tariff.media.size(), "medium of an offer");
        offered.insert(offer.product);
    }
    std::set<int> leftOut;
    for (const LeftOutProduct& product : list.leftOut) {
        fuzzing::require(offered.count(product.product) == 0, "offered and left out");
        fuzzing::require(leftOut.insert(product.product).second, "left out twice");
        fuzzing::require(!reasonText(product.reason).isEmpty(), "left out without a reason");
    }
    if (list.errors.isEmpty())
        fuzzing::require(offered.size() + leftOut.size() == std::size_t(tariff.products.size()),
                         "neither offered nor left out");
}

} // namespace

namespace fuzzing
{

void checkTariff(const Tariff& tariff)
{
    checkPrices(tariff);
    checkRules(tariff);
    checkPlaces(tariff);
    for (const TariffTimes& times : tariff.times)
        checkSpans(times.spans, tariff);
    for (const TariffValidity& validity : tariff.validities)
        checkSpans(validity.times, tariff);
}

void checkOffers(const Tariff& tariff, const OfferQuery& query)
{
    const OfferList list = offersOf(tariff, query);
    checkList(tariff, list);
    OfferQuery wider = query;
    wider.to.clear();
    if (isReached(tariff, query))
        checkAmong(list, offersOf(tariff, wider), "sold to one destination, but to none");
    wider = query;
    wider.media = {0, 1, 2, 3, 4};
    checkAmong(list, offersOf(tariff, wider), "sold on some media, but not on all");
    checkAmong(list, everythingSold(tariff, query.media), "sold here, but nowhere");
}

void checkSomeOffers(const Tariff& tariff)
{
    const QVector<QDateTime> times{QDateTime(QDate(2026, 3, 4), QTime(0, 0)),
                                   QDateTime(QDate(2026, 3, 7), QTime(11, 59, 59)),
                                   QDateTime(QDate(2027, 12, 31), QTime(23, 59, 59))};
    checkList(tariff, everythingSold(tariff));
    for (int route = 0; route < std::min(mostAsked, tariff.routeIds.size()); ++route) {
        for (int stop = 0; stop < std::min(mostAsked, tariff.stopIds.size()); ++stop) {
            OfferQuery query;
            query.route = tariff.routeIds.text(route);
            query.stop = tariff.stopIds.text(stop);
            query.to = tariff.stopIds.text(tariff.stopIds.size() - 1 - stop);
            query.at = times.at((route + stop) % times.size());
            query.media = (route + stop) % 2 == 0 ? QVector<int>{0, 1} : QVector<int>{2, 3, 4};
            checkOffers(tariff, query);
        }
    }
}

} // namespace fuzzing
