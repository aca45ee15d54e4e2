#include "Offers.h"

#include "OfferRules_p.h"
#include "Rides_p.h"

#include <algorithm>
#include <tuple>

namespace rivo::feed
{

namespace
{

struct Asked
{
    int route;
    int stop;
    int to;
};

/// What the query names, by number; errors name what the feed does not have.
Asked numbersOf(const Tariff& tariff, const OfferQuery& query, QStringList& errors)
{
    // A feed without a network knows no place.
    const bool isAnyKnown = tariff.form == Tariff::Form::OwnValidity && tariff.stopIds.size() == 0;
    const auto find = [&](const IdTable& ids, const QString& id, const char* what) {
        const int number = ids.find(id);
        if (number < 0 && !isAnyKnown)
            errors.append(QStringLiteral("unknown %1 %2").arg(QLatin1String(what), quoted(id)));
        return number;
    };
    const int route = find(tariff.routeIds, query.route, "route");
    const int stop = find(tariff.stopIds, query.stop, "stop");
    const int to = query.to.isEmpty() ? -1 : find(tariff.stopIds, query.to, "stop");
    if (!query.at.isValid())
        errors.append(QStringLiteral("no such time"));
    return {route, stop, to};
}

void addFaults(const Tariff& tariff, int route, QStringList& errors)
{
    const auto faults = std::equal_range(
        tariff.faults.begin(), tariff.faults.end(), TariffFault{route, {}},
        [](const TariffFault& left, const TariffFault& right) { return left.route < right.route; });
    std::for_each(faults.first, faults.second,
                  [&](const TariffFault& fault) { errors.append(fault.problem.toString()); });
}

/// The offers of every product, and the products that have none.
OfferList listOf(const OfferMaker& maker, const ProductVerdicts& verdicts)
{
    OfferList list;
    for (int product = 0; product < verdicts.size(); ++product) {
        const ProductVerdict& verdict = verdicts.at(product);
        if (verdict.areas.isEmpty())
            list.leftOut.append({product, verdict.reason});
        else if (!maker.add(product, verdict, list.offers))
            return {{QStringLiteral("more than %1 offers").arg(mostOffers)}, {}, {}};
    }
    return list;
}

} // namespace

bool operator==(const Offer& left, const Offer& right)
{
    const auto fields = [](const Offer& offer) {
        return std::tie(offer.name, offer.product, offer.category, offer.media, offer.amount,
                        offer.fromArea, offer.toArea, offer.isPass, offer.entry);
    };
    return fields(left) == fields(right);
}

OfferList offersOf(const Tariff& tariff, const OfferQuery& query)
{
    OfferList list;
    const Asked asked = numbersOf(tariff, query, list.errors);
    if (list.errors.isEmpty())
        addFaults(tariff, asked.route, list.errors);
    if (!list.errors.isEmpty())
        return list;
    const Rides rides = ridesOf(tariff, asked.route, asked.stop, asked.to);
    if (tariff.form == Tariff::Form::OwnValidity)
        return offersOfOwnValidity(tariff, rides, query);
    const OfferMaker maker(tariff, query.media);
    return tariff.form == Tariff::Form::Older
               ? listOf(maker, judgeFares(tariff, maker, rides))
               : listOf(maker, judgeProducts(tariff, maker, rides, query.at));
}

OfferList everythingSold(const Tariff& tariff, const QVector<int>& media)
{
    if (tariff.form == Tariff::Form::OwnValidity)
        return everythingOfOwnValidity(tariff, media);
    const OfferMaker maker(tariff, media);
    return listOf(maker, areasOfProducts(tariff, maker));
}

OfferList everyPriceSold(const Tariff& tariff, const QVector<int>& media)
{
    if (tariff.form == Tariff::Form::OwnValidity)
        return everythingOfOwnValidity(tariff, media);
    const OfferMaker maker(tariff, media);
    ProductVerdicts verdicts = areasOfProducts(tariff, maker);
    for (ProductVerdict& verdict : verdicts) {
        if (!verdict.areas.isEmpty())
            verdict.areas = {{-1, -1}};
    }
    return listOf(maker, verdicts);
}

QString reasonText(LeftOutReason reason)
{
    switch (reason) {
    case LeftOutReason::TransferOnly:
        return QStringLiteral("transfer_only");
    case LeftOutReason::Negative:
        return QStringLiteral("negative");
    case LeftOutReason::Media:
        return QStringLiteral("media");
    case LeftOutReason::Prepaid:
        return QStringLiteral("prepaid");
    case LeftOutReason::Network:
        return QStringLiteral("network");
    case LeftOutReason::Area:
        return QStringLiteral("area");
    case LeftOutReason::Timeframe:
        return QStringLiteral("timeframe");
    case LeftOutReason::Priority:
        break;
    }
    return QStringLiteral("priority");
}

} // namespace rivo::feed
