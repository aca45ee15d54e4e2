#include "OfferRules_p.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

/// Whether a product is sold on one of the types of media.
bool isSoldOn(const QVector<int>& media, const TariffValidity& validity)
{
    return validity.media.isEmpty() ||
           std::any_of(validity.media.begin(), validity.media.end(),
                       [&media](int type) { return media.contains(type); });
}

/// Judges products that state where they are sold.
class Judge
{
public:
    Judge(const Tariff& tariff, const Rides& rides, const OfferQuery& query)
        : m_tariff(tariff), m_rides(rides), m_query(query),
          m_seconds(query.at.time().msecsSinceStartOfDay() / 1000)
    {
        if (rides.from >= 0)
            m_from = tariff.stops.at(rides.from).areas;
        for (const int stop : rides.destinations)
            m_to += tariff.stops.at(stop).areas;
    }

    /// Why a product is not sold; nothing if it is.
    std::optional<LeftOutReason> objectionTo(const TariffValidity& validity) const
    {
        if (!isSoldOn(m_query.media, validity))
            return LeftOutReason::Media;
        if (!validity.routes.isEmpty() && !has(validity.routes, m_rides.route))
            return LeftOutReason::Network;
        if (!validity.zones.isEmpty() &&
            (!hasAny(validity.zones, m_from) || !hasAny(validity.zones, m_to)))
            return LeftOutReason::Area;
        const bool isInTime = validity.times.isEmpty() ||
                              m_tariff.holds(validity.times, m_query.at.date(), m_seconds);
        return isInTime ? std::nullopt : std::optional(LeftOutReason::Timeframe);
    }

private:
    static bool has(const QVector<int>& sorted, int number)
    {
        return std::binary_search(sorted.begin(), sorted.end(), number);
    }

    static bool hasAny(const QVector<int>& sorted, const QVector<int>& numbers)
    {
        return std::any_of(numbers.begin(), numbers.end(),
                           [&](int number) { return has(sorted, number); });
    }

    const Tariff& m_tariff;
    const Rides& m_rides;
    const OfferQuery& m_query;
    const int m_seconds;
    QVector<int> m_from;
    QVector<int> m_to;
};

/// Appends an offer, or remembers why its product has none.
class Collector
{
public:
    Collector(const Tariff& tariff, bool withExpired)
        : m_tariff(tariff), m_withExpired(withExpired), m_hasOffer(tariff.products.size()),
          m_reasons(tariff.products.size(), LeftOutReason::Timeframe)
    {
    }

    void add(int entry, const std::optional<LeftOutReason>& objection)
    {
        const TariffPrice& price = m_tariff.prices.at(entry);
        const TariffValidity& validity = m_tariff.validities.at(entry);
        if (objection || (validity.hasExpired && !m_withExpired)) {
            m_reasons[price.product] = objection.value_or(LeftOutReason::Timeframe);
            return;
        }
        m_hasOffer[price.product] = true;
        const bool isPass = validity.zones.isEmpty() && validity.routes.isEmpty() &&
                            validity.fromArea == validity.toArea;
        m_list.offers.append({price.name,
                              price.product,
                              price.category,
                              {},
                              price.amount,
                              validity.fromArea,
                              validity.toArea,
                              isPass,
                              entry});
    }

    OfferList list()
    {
        for (int product = 0; product < m_hasOffer.size(); ++product) {
            if (!m_hasOffer.at(product))
                m_list.leftOut.append({product, m_reasons.at(product)});
        }
        return m_list;
    }

private:
    const Tariff& m_tariff;
    const bool m_withExpired;
    OfferList m_list;
    QVector<bool> m_hasOffer;
    QVector<LeftOutReason> m_reasons;
};

} // namespace

OfferList offersOfOwnValidity(const Tariff& tariff, const Rides& rides, const OfferQuery& query)
{
    const Judge judge(tariff, rides, query);
    Collector collector(tariff, query.withExpired);
    for (int entry = 0; entry < tariff.validities.size(); ++entry)
        collector.add(entry, judge.objectionTo(tariff.validities.at(entry)));
    return collector.list();
}

OfferList everythingOfOwnValidity(const Tariff& tariff, const QVector<int>& media)
{
    Collector collector(tariff, true);
    for (int entry = 0; entry < tariff.validities.size(); ++entry) {
        const bool isSold = isSoldOn(media, tariff.validities.at(entry));
        collector.add(entry, isSold ? std::nullopt : std::optional(LeftOutReason::Media));
    }
    return collector.list();
}

} // namespace rivo::feed
