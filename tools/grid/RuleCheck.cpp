#include "RuleCheck.h"

#include <FeedProblem.h>

#include <algorithm>
#include <array>
#include <map>

using namespace rivo::feed;

namespace
{

/// The fields by which a rule restricts rides.
constexpr std::array<int TariffRule::*, 5> conditions{&TariffRule::network, &TariffRule::fromArea,
                                                      &TariffRule::toArea, &TariffRule::fromTimes,
                                                      &TariffRule::toTimes};

using Conditions = std::array<int, conditions.size()>;

Conditions restrictionOf(const TariffRule& rule)
{
    Conditions values{};
    for (std::size_t i = 0; i < conditions.size(); ++i)
        values[i] = rule.*conditions[i];
    return values;
}

/// Calls `visit` with the conditions and everything that is wider: some of them empty.
template <class Visit>
void forEachWider(const Conditions& own, const Visit& visit)
{
    for (unsigned mask = 0; mask < 1U << conditions.size(); ++mask) {
        Conditions wider = own;
        bool isNew = true;
        for (std::size_t i = 0; i < conditions.size(); ++i) {
            if ((mask >> i & 1U) == 0)
                continue;
            isNew = isNew && own[i] >= 0; // an empty condition cannot be emptied
            wider[i] = -1;
        }
        if (isNew)
            visit(wider, mask == 0);
    }
}

bool runsAtAll(const TariffService& service)
{
    if (!service.added.isEmpty())
        return true;
    const bool hasDays = service.days != 0 && service.first.isValid();
    const qint64 days = hasDays ? service.first.daysTo(service.last) + 1 : 0;
    for (qint64 day = 0; day < days; ++day) { // soon found, unless weeks are removed
        if (service.runsOn(service.first.addDays(day)))
            return true;
    }
    return false;
}

bool holdAtAll(const Tariff& tariff, const QVector<TariffSpan>& spans)
{
    return std::any_of(spans.begin(), spans.end(), [&tariff](const TariffSpan& span) {
        return span.begin < span.end &&
               (span.service < 0 || runsAtAll(tariff.services.at(span.service)));
    });
}

/// Finds why no ride fits a rule.
class RideSearch
{
public:
    explicit RideSearch(const Tariff& tariff)
        : m_tariff(tariff), m_hasRoute(tariff.networkIds.size()), m_hasStop(tariff.areaIds.size()),
          m_first(tariff.areaIds.size(), -1), m_last(tariff.areaIds.size(), -1),
          m_isRidden(tariff.rules.size())
    {
        for (const TariffRoute& route : tariff.routes) {
            if (route.network >= 0)
                m_hasRoute[route.network] = true;
        }
        for (const TariffStop& stop : tariff.stops) {
            for (const int area : stop.areas)
                m_hasStop[area] = true;
        }
        indexRules();
        for (const TariffRoute& route : tariff.routes)
            rideOn(route);
    }

    /// Empty if a ride fits it.
    QString objectionTo(int number) const
    {
        const TariffRule& rule = m_tariff.rules.at(number);
        if (!hasRoute(rule))
            return QStringLiteral("network %1 has no route")
                .arg(quoted(m_tariff.networkIds.text(rule.network)));
        for (const int area : {rule.fromArea, rule.toArea}) {
            if (area >= 0 && !m_hasStop.at(area))
                return QStringLiteral("area %1 has no stop").arg(quoted(nameOf(area)));
        }
        for (const int times : {rule.fromTimes, rule.toTimes}) {
            if (times >= 0 && !holdAtAll(m_tariff, m_tariff.times.at(times).spans))
                return QStringLiteral("timeframe %1 holds on no day")
                    .arg(quoted(m_tariff.timesIds.text(times)));
        }
        if (!m_isRidden.at(number))
            return QStringLiteral("no trip runs from %1 %2 to %1 %3")
                .arg(m_tariff.form == Tariff::Form::Older ? QStringLiteral("zone")
                                                          : QStringLiteral("area"),
                     quoted(nameOf(rule.fromArea)), quoted(nameOf(rule.toArea)));
        return {};
    }

private:
    QString nameOf(int area) const { return m_tariff.areaIds.text(area); }

    /// In the older form the network is the route itself.
    bool hasRoute(const TariffRule& rule) const
    {
        return rule.network < 0 || m_tariff.form == Tariff::Form::Older ||
               m_hasRoute.at(rule.network);
    }

    /// Rules between two areas by the first one; all others fit some ride.
    void indexRules()
    {
        for (int i = 0; i < m_tariff.rules.size(); ++i) {
            const TariffRule& rule = m_tariff.rules.at(i);
            m_isRidden[i] = rule.fromArea < 0 || rule.toArea < 0;
            if (!m_isRidden.at(i))
                m_rulesFrom[rule.fromArea].append(i);
        }
    }

    void rideOn(const TariffRoute& route)
    {
        if (!route.hasTrips) { // it may run anywhere
            for (auto& rules : m_rulesFrom)
                ride(rules, route, [](const TariffRule&) { return true; });
        }
        for (const QVector<int>& run : route.runs)
            rideAlong(run, route);
    }

    void rideAlong(const QVector<int>& run, const TariffRoute& route)
    {
        QVector<int> passed;
        for (int i = 0; i < run.size(); ++i) {
            for (const int area : m_tariff.stops.at(run.at(i)).areas) {
                if (m_first.at(area) < 0) {
                    m_first[area] = i;
                    passed.append(area);
                }
                m_last[area] = i;
            }
        }
        for (const int area : qAsConst(passed)) {
            const auto rules = m_rulesFrom.find(area);
            if (rules != m_rulesFrom.end())
                ride(*rules, route, [&](const TariffRule& rule) {
                    return m_last.at(rule.toArea) > m_first.at(area);
                });
        }
        for (const int area : qAsConst(passed))
            m_first[area] = m_last[area] = -1;
    }

    /// Marks the rules that fit and are on the route, and forgets them.
    template <class Fits>
    void ride(QVector<int>& rules, const TariffRoute& route, const Fits& fits)
    {
        const int number = static_cast<int>(&route - m_tariff.routes.data());
        const int network = m_tariff.form == Tariff::Form::Older ? number : route.network;
        rules.erase(std::remove_if(rules.begin(), rules.end(),
                                   [&](int i) {
                                       const TariffRule& rule = m_tariff.rules.at(i);
                                       const bool isOnRoute =
                                           rule.network < 0 || rule.network == network;
                                       m_isRidden[i] = isOnRoute && fits(rule);
                                       return m_isRidden.at(i);
                                   }),
                    rules.end());
    }

    const Tariff& m_tariff;
    QVector<bool> m_hasRoute;            ///< by network
    QVector<bool> m_hasStop;             ///< by area
    QVector<int> m_first;                ///< by area: where a run is in it first; -1 = never
    QVector<int> m_last;                 ///< by area: where it is in it last
    QVector<bool> m_isRidden;            ///< by rule
    QMap<int, QVector<int>> m_rulesFrom; ///< rules that no ride was found for, by area
};

/// Empty if a ride fits what the product of a JSON feed says itself.
QString objectionTo(const TariffValidity& validity, const Tariff& tariff)
{
    const auto isInZone = [&validity](const TariffStop& stop) {
        return std::any_of(stop.areas.begin(), stop.areas.end(), [&validity](int zone) {
            return std::binary_search(validity.zones.begin(), validity.zones.end(), zone);
        });
    };
    const auto& stops = tariff.stops; // none without a network
    if (!validity.zones.isEmpty() && !stops.isEmpty() &&
        std::none_of(stops.begin(), stops.end(), isInZone))
        return QStringLiteral("no stop is in its zones");
    if (!validity.times.isEmpty() && !holdAtAll(tariff, validity.times))
        return QStringLiteral("its times hold on no day");
    return {};
}

} // namespace

QVector<OverlappingRules> overlappingRules(const Tariff& tariff)
{
    if (!tariff.hasPriorities)
        return {};
    // The rule of the highest priority for each set of conditions, and the first of its priority
    // for each product.
    std::map<Conditions, int> highest;
    std::map<std::pair<Conditions, int>, QVector<int>> ofPriority;
    for (int i = 0; i < tariff.rules.size(); ++i) {
        const TariffRule& rule = tariff.rules.at(i);
        const Conditions own = restrictionOf(rule);
        const auto place = highest.emplace(own, i).first;
        if (tariff.rules.at(place->second).priority < rule.priority)
            place->second = i;
        QVector<int>& equals = ofPriority[{own, rule.priority}];
        if (equals.size() < 2 &&
            (equals.isEmpty() || tariff.rules.at(equals.first()).product != rule.product))
            equals.append(i); // two products: one of them is another than any
    }
    QVector<OverlappingRules> found;
    for (int i = 0; i < tariff.rules.size(); ++i) {
        const TariffRule& rule = tariff.rules.at(i);
        OverlappingRules overlap;
        forEachWider(restrictionOf(rule), [&](const Conditions& wider, bool isSame) {
            const auto place = highest.find(wider);
            if (overlap.isHidden || place == highest.end())
                return;
            if (tariff.rules.at(place->second).priority > rule.priority)
                overlap = {i, place->second, true};
            if (isSame || overlap.rule >= 0)
                return;
            const auto equals = ofPriority.find({wider, rule.priority});
            if (equals == ofPriority.end())
                return;
            for (const int equal : qAsConst(equals->second)) {
                if (tariff.rules.at(equal).product != rule.product)
                    overlap = {i, equal, false};
            }
        });
        if (overlap.rule >= 0)
            found.append(overlap);
    }
    return found;
}

QMap<int, QString> productsWithoutRides(const Tariff& tariff)
{
    QMap<int, QString> objections; // empty for products with a ride
    const auto judge = [&objections](int product, const auto& objection) {
        const auto known = objections.find(product);
        if (known == objections.end())
            objections.insert(product, objection());
        else if (!known->isEmpty() && objection().isEmpty())
            known->clear();
    };
    const RideSearch search(tariff);
    for (int i = 0; i < tariff.rules.size(); ++i)
        judge(tariff.rules.at(i).product, [&] { return search.objectionTo(i); });
    for (int i = 0; i < tariff.validities.size(); ++i)
        judge(tariff.prices.at(i).product,
              [&] { return objectionTo(tariff.validities.at(i), tariff); });
    for (auto objection = objections.begin(); objection != objections.end();)
        objection = objection->isEmpty() ? objections.erase(objection) : std::next(objection);
    return objections;
}
