// The input decides a tariff of Fares V2 or of the older form, and what is asked of it.

#include "Choices.h"
#include "Fuzzing.h"
#include "OfferChecks.h"

#include <algorithm>

using namespace rivo::feed;

namespace
{

constexpr int most = 6; ///< records of a kind; rules and prices are more

int someNumber(Choices& choices, int size) { return choices.bounded(-1, size); }

void fill(IdTable& ids, int size, char kind)
{
    for (int i = 0; i < size; ++i)
        ids.append(std::string(1, kind) + std::to_string(i));
    ids.seal();
}

QDate someDate(Choices& choices) { return QDate(2026, 3, 1).addDays(choices.bounded(12)); }

TariffService someService(Choices& choices)
{
    TariffService service;
    service.days = choices.bounded(128);
    service.first = someDate(choices);
    service.last = someDate(choices);
    if (choices.bounded(2) == 1)
        service.added.append(someDate(choices));
    if (choices.bounded(2) == 1)
        service.removed.append(someDate(choices));
    return service;
}

TariffTimes someTimes(Choices& choices, int services)
{
    TariffTimes times;
    for (int i = choices.bounded(3); i > 0; --i) {
        TariffSpan span;
        span.begin = choices.bounded(24) * 3600;
        span.end = span.begin + 1 + choices.bounded(24 * 3600 - span.begin);
        span.service = someNumber(choices, services);
        times.spans.append(span);
    }
    return times;
}

void addStops(Choices& choices, Tariff& tariff)
{
    for (int i = 1 + choices.bounded(most); i > 0; --i) {
        TariffStop stop;
        stop.isPlatform = choices.bounded(4) != 0;
        stop.zone = someNumber(choices, tariff.areas.size());
        for (int area = 0; area < tariff.areas.size(); ++area) {
            if (choices.bounded(3) == 0)
                stop.areas.append(area);
        }
        tariff.stops.append(stop);
    }
    fill(tariff.stopIds, tariff.stops.size(), 's');
}

void addRoutes(Choices& choices, Tariff& tariff)
{
    for (int i = 1 + choices.bounded(3); i > 0; --i) {
        TariffRoute route;
        route.network = someNumber(choices, tariff.networkIds.size());
        route.agency = someNumber(choices, tariff.agencies.size());
        for (int run = choices.bounded(3); run > 0; --run) {
            QVector<int> stops;
            for (int stop = choices.bounded(most); stop > 0; --stop)
                stops.append(choices.bounded(tariff.stops.size()));
            route.runs.append(stops);
        }
        route.hasTrips = !route.runs.isEmpty();
        tariff.routes.append(route);
    }
    fill(tariff.routeIds, tariff.routes.size(), 'r');
}

void addProducts(Choices& choices, Tariff& tariff)
{
    for (int number = 1 + choices.bounded(most); number > 0; --number) {
        TariffProduct product;
        product.isInTransferRule = choices.bounded(3) == 0;
        if (tariff.form == Tariff::Form::Older) {
            product.isPrepaid = choices.bounded(4) == 0;
            product.agency = someNumber(choices, tariff.agencies.size());
            for (int i = choices.bounded(3); i > 0 && !tariff.areas.isEmpty(); --i)
                product.contains.append(choices.bounded(tariff.areas.size()));
        }
        for (int price = 1 + choices.bounded(3); price > 0; --price) {
            TariffPrice record;
            record.product = tariff.products.size();
            record.category = someNumber(choices, tariff.categories.size());
            record.medium = someNumber(choices, tariff.media.size());
            record.amount = choices.bounded(-2, 6);
            tariff.prices.append(record);
        }
        tariff.products.append(product);
    }
    fill(tariff.productIds, tariff.products.size(), 'p');
}

void addRules(Choices& choices, Tariff& tariff)
{
    const bool isOlder = tariff.form == Tariff::Form::Older;
    tariff.hasPriorities = !isOlder && choices.bounded(2) == 1;
    for (int i = choices.bounded(3 * most); i > 0; --i) {
        TariffRule rule;
        rule.product = choices.bounded(tariff.products.size());
        rule.network =
            someNumber(choices, isOlder ? tariff.routes.size() : tariff.networkIds.size());
        rule.fromArea = someNumber(choices, tariff.areas.size());
        rule.toArea = someNumber(choices, tariff.areas.size());
        if (!isOlder) {
            rule.fromTimes = someNumber(choices, tariff.times.size());
            rule.toTimes = someNumber(choices, tariff.times.size());
            rule.priority = tariff.hasPriorities ? choices.bounded(3) : 0;
        }
        tariff.rules.append(rule);
    }
}

Tariff decidedTariff(Choices& choices)
{
    Tariff tariff;
    tariff.form = choices.bounded(3) == 0 ? Tariff::Form::Older : Tariff::Form::FaresV2;
    tariff.currency = QStringLiteral("EUR");
    tariff.categories.resize(choices.bounded(3));
    fill(tariff.categoryIds, tariff.categories.size(), 'c');
    tariff.media.resize(choices.bounded(4));
    for (TariffMedium& medium : tariff.media)
        medium.type = choices.bounded(5);
    fill(tariff.mediumIds, tariff.media.size(), 'm');
    tariff.areas.resize(choices.bounded(most));
    fill(tariff.areaIds, tariff.areas.size(), 'a');
    tariff.agencies.resize(choices.bounded(3));
    fill(tariff.agencyIds, tariff.agencies.size(), 'g');
    fill(tariff.networkIds, choices.bounded(3), 'n');
    for (int i = choices.bounded(3); i > 0; --i)
        tariff.services.append(someService(choices));
    for (int i = choices.bounded(4); i > 0; --i)
        tariff.times.append(someTimes(choices, tariff.services.size()));
    fill(tariff.timesIds, tariff.times.size(), 't');
    addStops(choices, tariff);
    addRoutes(choices, tariff);
    addProducts(choices, tariff);
    addRules(choices, tariff);
    return tariff;
}

OfferQuery decidedQuery(Choices& choices, const Tariff& tariff)
{
    OfferQuery query;
    query.route = tariff.routeIds.text(choices.bounded(tariff.routes.size()));
    query.stop = tariff.stopIds.text(choices.bounded(tariff.stops.size()));
    query.to = tariff.stopIds.text(someNumber(choices, tariff.stops.size()));
    query.at = QDateTime(someDate(choices), QTime(choices.bounded(24), choices.bounded(60)));
    query.media.clear();
    for (int type = 0; type <= 4; ++type) {
        if (choices.bounded(2) == 0)
            query.media.append(type);
    }
    return query;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(fuzzing::bytes(data, size));
    const Tariff tariff = decidedTariff(choices);
    fuzzing::checkTariff(tariff);
    for (int i = 0; i < 4; ++i)
        fuzzing::checkOffers(tariff, decidedQuery(choices, tariff));
    return 0;
}
