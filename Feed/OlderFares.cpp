#include "OfferRules_p.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

/// The rides that pass all zones which a fare must contain.
class ZonesPassed
{
public:
    ZonesPassed(const Tariff& tariff, const Rides& rides)
        : m_tariff(tariff), m_rides(rides), m_place(tariff.areaIds.size(), -1),
          m_runDestinations(tariff.stops.size())
    {
        for (const QVector<int>& run : runs()) {
            for (auto stop = firstVisit(run); stop != run.end(); ++stop)
                m_runDestinations[*stop] = m_runDestinations.at(*stop) || stop != firstVisit(run);
        }
    }

    /// The zones where such rides end; -1 for a stop without a zone.
    QVector<bool> destinationZones(const QVector<int>& contained)
    {
        const int size = static_cast<int>(contained.size());
        QVector<bool> isDestination(m_tariff.areaIds.size() + 1); // by zone + 1
        const auto addDestination = [&](int stop) {
            isDestination[m_tariff.stops.at(stop).zone + 1] = true;
        };
        for (int i = 0; i < contained.size(); ++i)
            m_place[contained.at(i)] = i;
        for (const int stop : m_rides.destinations) {
            if (!m_runDestinations.at(stop) && missing({m_rides.from, stop}, size) == 0)
                addDestination(stop);
        }
        for (const QVector<int>& run : runs())
            followRun(run, size, addDestination);
        for (const int zone : contained)
            m_place[zone] = -1;
        return isDestination;
    }

private:
    const QVector<QVector<int>>& runs() const { return m_tariff.routes.at(m_rides.route).runs; }

    QVector<int>::const_iterator firstVisit(const QVector<int>& run) const
    {
        return std::find(run.begin(), run.end(), m_rides.from);
    }

    /// How many of `count` contained zones none of the stops is in.
    int missing(const QVector<int>& stops, int count) const
    {
        QVector<bool> isPassed(count);
        for (const int stop : stops)
            pass(stop, isPassed, count);
        return count;
    }

    void pass(int stop, QVector<bool>& isPassed, int& missing) const
    {
        const int zone = m_tariff.stops.at(stop).zone;
        const int place = zone < 0 ? -1 : m_place.at(zone);
        if (place < 0 || isPassed.at(place))
            return;
        isPassed[place] = true;
        --missing;
    }

    /// A stop that a run visits again is reached at its last visit, with all zones before it.
    template <class AddDestination>
    void followRun(const QVector<int>& run, int count, const AddDestination& addDestination) const
    {
        QVector<bool> isPassed(count);
        const auto first = firstVisit(run);
        for (auto stop = first; stop != run.end(); ++stop) {
            pass(*stop, isPassed, count);
            if (count == 0 && stop != first && isWanted(*stop))
                addDestination(*stop);
        }
    }

    bool isWanted(int stop) const
    {
        return std::binary_search(m_rides.destinations.begin(), m_rides.destinations.end(), stop);
    }

    const Tariff& m_tariff;
    const Rides& m_rides;
    QVector<int> m_place;            ///< by zone: its place among those that a fare must contain
    QVector<bool> m_runDestinations; ///< by stop: a trip leads there
};

} // namespace

ProductVerdicts judgeFares(const Tariff& tariff, const OfferMaker& maker, const Rides& rides)
{
    ProductVerdicts verdicts = areasOfProducts(tariff, maker);
    const int agency = tariff.routes.at(rides.route).agency;
    const int origin = tariff.stops.at(rides.from).zone;
    ZonesPassed zones(tariff, rides);
    const QVector<bool> anyDestination = zones.destinationZones({});
    QVector<QVector<bool>> destinations(tariff.products.size()); // of fares that contain zones
    for (int fare = 0; fare < verdicts.size(); ++fare) {
        ProductVerdict& verdict = verdicts[fare];
        const TariffProduct& record = tariff.products.at(fare);
        if (verdict.areas.isEmpty())
            continue;
        verdict.reason = LeftOutReason::Network;
        if (record.agency >= 0 && record.agency != agency)
            verdict.areas.clear();
        else if (!record.contains.isEmpty())
            destinations[fare] = zones.destinationZones(record.contains);
    }
    QVector<bool> hasRule(tariff.products.size());
    ProductVerdicts judged = verdicts;
    for (const TariffRule& rule : tariff.rules) {
        const bool isOpen = !verdicts.at(rule.product).areas.isEmpty();
        ProductVerdict& verdict = judged[rule.product];
        if (!hasRule.at(rule.product))
            verdict.areas.clear();
        hasRule[rule.product] = true;
        if (!isOpen || (rule.network >= 0 && rule.network != rides.route))
            continue;
        verdict.reason = LeftOutReason::Area;
        const QVector<bool>& own = destinations.at(rule.product);
        const QVector<bool>& reached = own.isEmpty() ? anyDestination : own;
        const bool isReached =
            rule.toArea < 0 ? reached.contains(true) : reached.at(rule.toArea + 1);
        if (isReached && (rule.fromArea < 0 || rule.fromArea == origin))
            verdict.areas.append({rule.fromArea, rule.toArea});
    }
    for (ProductVerdict& verdict : judged)
        unifyAreas(verdict);
    return judged;
}

} // namespace rivo::feed
