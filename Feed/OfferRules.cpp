#include "OfferRules_p.h"

#include <algorithm>
#include <tuple>

namespace rivo::feed
{

namespace
{

const QPair<int, int> anywhere(-1, -1);

LeftOutReason reasonOf(Stage stage)
{
    switch (stage) {
    case Stage::Network:
        return LeftOutReason::Network;
    case Stage::Area:
        return LeftOutReason::Area;
    case Stage::Timeframe:
        return LeftOutReason::Timeframe;
    default:
        return LeftOutReason::Priority;
    }
}

/// Which areas or networks a column of the rules lists.
QVector<bool> listedIn(const QVector<TariffRule>& rules, int TariffRule::*column, int count)
{
    QVector<bool> isListed(count);
    for (const TariffRule& rule : rules) {
        if (rule.*column >= 0)
            isListed[rule.*column] = true;
    }
    return isListed;
}

/// The areas of a stop, and what a rule must have to fit it.
class Place
{
public:
    Place(const QVector<int>& areas, bool takesEmpty) : m_areas(areas), m_takesEmpty(takesEmpty) {}

    bool fits(int area) const
    {
        return area < 0 ? m_takesEmpty : std::binary_search(m_areas.begin(), m_areas.end(), area);
    }

    const QVector<int>& areas() const { return m_areas; }
    bool takesEmpty() const { return m_takesEmpty; }

    bool operator<(const Place& other) const
    {
        return std::lexicographical_compare(m_areas.begin(), m_areas.end(), other.m_areas.begin(),
                                            other.m_areas.end());
    }

private:
    QVector<int> m_areas;
    bool m_takesEmpty;
};

/// Chooses the rules of Fares V2 that count for the rides from one stop.
class RuleChoice
{
public:
    RuleChoice(const Tariff& tariff, const Rides& rides, const QDateTime& at)
        : m_tariff(tariff), m_stages(tariff.rules.size(), Stage::Network), m_at(at)
    {
        const int areas = tariff.areaIds.size();
        const auto listedFrom = listedIn(tariff.rules, &TariffRule::fromArea, areas);
        const auto listedTo = listedIn(tariff.rules, &TariffRule::toArea, areas);
        m_network = tariff.routes.at(rides.route).network;
        m_takesEmptyNetwork =
            takesEmpty(m_network < 0 ? QVector<int>() : QVector<int>{m_network},
                       listedIn(tariff.rules, &TariffRule::network, tariff.networkIds.size()));
        const Place from = placeOf(rides.from, listedFrom);
        const QVector<Place> destinations = placesOf(rides.destinations, listedTo);
        judge(from, destinations);
        for (const Place& destination : destinations)
            choose(destination);
    }

    /// By rule.
    const QVector<Stage>& stages() const { return m_stages; }

private:
    /// An empty field stands for what its column does not list; with priorities for everything.
    bool takesEmpty(const QVector<int>& numbers, const QVector<bool>& isListed) const
    {
        return m_tariff.hasPriorities || numbers.isEmpty() ||
               std::any_of(numbers.begin(), numbers.end(),
                           [&](int number) { return !isListed.at(number); });
    }

    Place placeOf(int stop, const QVector<bool>& isListed) const
    {
        const QVector<int>& areas = m_tariff.stops.at(stop).areas;
        return {areas, takesEmpty(areas, isListed)};
    }

    /// The distinct places of many stops.
    QVector<Place> placesOf(const QVector<int>& stops, const QVector<bool>& isListed) const
    {
        QVector<Place> places;
        places.reserve(stops.size());
        for (const int stop : stops)
            places.append(placeOf(stop, isListed));
        std::sort(places.begin(), places.end());
        places.erase(std::unique(places.begin(), places.end(),
                                 [](const Place& left, const Place& right) {
                                     return left.areas() == right.areas();
                                 }),
                     places.end());
        return places;
    }

    int priorityOf(const TariffRule& rule) const
    {
        const bool isExact = rule.network >= 0 && rule.fromArea >= 0 && rule.toArea >= 0;
        return m_tariff.hasPriorities ? rule.priority : int(isExact);
    }

    /// How far each rule comes before it is compared with others.
    void judge(const Place& from, const QVector<Place>& destinations)
    {
        QVector<bool> isReached(m_tariff.areaIds.size());
        bool isEmptyReached = false;
        for (const Place& destination : destinations) {
            isEmptyReached = isEmptyReached || destination.takesEmpty();
            for (const int area : destination.areas())
                isReached[area] = true;
        }
        QVector<int> holding(m_tariff.timesIds.size() + 1, -1); // by group + 1: unknown, no, yes
        const auto holds = [&](int times) {
            int& known = holding[times + 1];
            if (known < 0)
                known =
                    m_tariff.holds(times, m_at.date(), m_at.time().msecsSinceStartOfDay() / 1000);
            return known == 1;
        };
        for (int i = 0; i < m_tariff.rules.size(); ++i) {
            const TariffRule& rule = m_tariff.rules.at(i);
            const bool fitsNetwork =
                rule.network < 0 ? m_takesEmptyNetwork : rule.network == m_network;
            if (!fitsNetwork)
                continue;
            m_stages[i] = Stage::Area;
            const bool isToReached = rule.toArea < 0 ? isEmptyReached : isReached.at(rule.toArea);
            if (!isToReached || !from.fits(rule.fromArea))
                continue;
            m_stages[i] = Stage::Timeframe;
            if (!holds(rule.fromTimes) || !holds(rule.toTimes))
                continue;
            m_stages[i] = Stage::Priority;
            m_candidates.append(i);
        }
        std::sort(m_candidates.begin(), m_candidates.end(),
                  [this](int left, int right) { return orderOf(left) < orderOf(right); });
    }

    /// By destination, the highest priority first.
    std::tuple<int, int, int> orderOf(int rule) const
    {
        const TariffRule& record = m_tariff.rules.at(rule);
        return {record.toArea, -priorityOf(record), rule};
    }

    /// Where the candidates for a destination begin; none if there are none.
    std::optional<int> candidatesFor(int toArea) const
    {
        const auto first = std::lower_bound(
            m_candidates.begin(), m_candidates.end(), toArea,
            [this](int rule, int area) { return m_tariff.rules.at(rule).toArea < area; });
        if (first == m_candidates.end() || m_tariff.rules.at(*first).toArea != toArea)
            return std::nullopt;
        return static_cast<int>(first - m_candidates.begin());
    }

    /// Of the candidates for one destination, those of the highest priority count.
    void choose(const Place& destination)
    {
        QVector<int> areas = destination.areas();
        if (destination.takesEmpty())
            areas.append(-1);
        QVector<int> groups;
        int highest = std::numeric_limits<int>::min();
        for (const int area : qAsConst(areas)) {
            if (const std::optional<int> first = candidatesFor(area)) {
                groups.append(*first);
                highest = qMax(highest, priorityOf(m_tariff.rules.at(m_candidates.at(*first))));
            }
        }
        for (const int group : qAsConst(groups))
            count(group, highest);
    }

    /// The rules of a group that have the priority, unless they count already.
    void count(int group, int priority)
    {
        const int area = m_tariff.rules.at(m_candidates.at(group)).toArea;
        for (int i = group; i < m_candidates.size(); ++i) {
            const int rule = m_candidates.at(i);
            const TariffRule& record = m_tariff.rules.at(rule);
            if (record.toArea != area || priorityOf(record) != priority ||
                m_stages.at(rule) == Stage::Counts)
                return;
            m_stages[rule] = Stage::Counts;
        }
    }

    const Tariff& m_tariff;
    QVector<Stage> m_stages;
    const QDateTime m_at;
    int m_network = -1;
    bool m_takesEmptyNetwork = false;
    QVector<int> m_candidates; ///< rules that fit some ride, in the order of orderOf()
};

void addAreas(ProductVerdict& verdict, const TariffRule& rule)
{
    verdict.areas.append({rule.fromArea, rule.toArea});
}

/// Which products have a rule of their own.
QVector<bool> productsWithRules(const Tariff& tariff)
{
    return listedIn(tariff.rules, &TariffRule::product, static_cast<int>(tariff.products.size()));
}

/// Verdicts on the products that no rule of a ride decides on: passes, and those that are not sold.
ProductVerdicts verdictsWithoutRules(const Tariff& tariff, const OfferMaker& maker)
{
    const QVector<bool> hasRule = productsWithRules(tariff);
    ProductVerdicts verdicts(tariff.products.size());
    for (int product = 0; product < verdicts.size(); ++product) {
        ProductVerdict& verdict = verdicts[product];
        verdict.isPass = tariff.form == Tariff::Form::FaresV2 && !hasRule.at(product);
        if (verdict.isPass && tariff.products.at(product).isInTransferRule)
            verdict.reason = LeftOutReason::TransferOnly;
        else if (const auto objection = maker.objectionTo(product))
            verdict.reason = *objection;
        else if (!hasRule.at(product))
            verdict.areas = {anywhere};
    }
    return verdicts;
}

} // namespace

void unifyAreas(ProductVerdict& verdict)
{
    if (verdict.areas.size() < 2)
        return;
    QVector<QPair<int, int>> sorted = verdict.areas;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    QVector<bool> isTaken(sorted.size());
    QVector<QPair<int, int>> distinct;
    for (const QPair<int, int>& areas : qAsConst(verdict.areas)) {
        const auto place = std::lower_bound(sorted.begin(), sorted.end(), areas) - sorted.begin();
        if (!isTaken.at(static_cast<int>(place)))
            distinct.append(areas);
        isTaken[static_cast<int>(place)] = true;
    }
    verdict.areas = distinct;
}

QVector<Stage> stagesOfRules(const Tariff& tariff, const Rides& rides, const QDateTime& at)
{
    return RuleChoice(tariff, rides, at).stages();
}

ProductVerdicts judgeProducts(const Tariff& tariff, const OfferMaker& maker, const Rides& rides,
                              const QDateTime& at)
{
    ProductVerdicts verdicts = verdictsWithoutRules(tariff, maker);
    const QVector<Stage> stages = stagesOfRules(tariff, rides, at);
    QVector<Stage> best(tariff.products.size(), Stage::Network);
    for (int i = 0; i < tariff.rules.size(); ++i) {
        const TariffRule& rule = tariff.rules.at(i);
        best[rule.product] = qMax(best.at(rule.product), stages.at(i));
        if (stages.at(i) == Stage::Counts)
            addAreas(verdicts[rule.product], rule);
    }
    for (int product = 0; product < verdicts.size(); ++product) {
        ProductVerdict& verdict = verdicts[product];
        if (verdict.isPass)
            continue;
        if (const auto objection = maker.objectionTo(product)) {
            verdict.areas.clear();
            verdict.reason = *objection;
        } else {
            unifyAreas(verdict);
            verdict.reason = reasonOf(best.at(product));
        }
    }
    return verdicts;
}

ProductVerdicts areasOfProducts(const Tariff& tariff, const OfferMaker& maker)
{
    ProductVerdicts verdicts = verdictsWithoutRules(tariff, maker);
    for (const TariffRule& rule : tariff.rules)
        addAreas(verdicts[rule.product], rule);
    for (int product = 0; product < verdicts.size(); ++product) {
        if (maker.objectionTo(product))
            verdicts[product].areas.clear();
        unifyAreas(verdicts[product]);
    }
    return verdicts;
}

} // namespace rivo::feed
