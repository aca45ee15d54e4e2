#include "OfferDesk.h"

#include <Feed.h>
#include <OfferProducts.h>

#include <algorithm>
#include <utility>

namespace rivo::terminal
{

namespace
{

/// The identifier that is shown as `number`.
QString idOf(const feed::IdTable& ids, const QVector<int>& numbers, int number)
{
    const int index = numbers.indexOf(number);
    return index < 0 ? QString::number(number) : ids.text(index);
}

} // namespace

OfferDesk::OfferDesk(const feed::Feed& feed, const feed::TripContext& trip, Clock clock,
                     QObject* parent)
    : QObject(parent), m_feed(feed), m_trip(trip), m_clock(std::move(clock))
{
    if (feed.tariff) {
        m_routeNumbers = feed.tariff->routeIds.publicNumbers();
        m_stopNumbers = feed.tariff->stopIds.publicNumbers();
        m_turningPoints = feed.tariff->turningPoints();
    }
    connect(&trip, &feed::TripContext::routeIdChanged, this, &OfferDesk::update);
    connect(&trip, &feed::TripContext::currentStopIdChanged, this, &OfferDesk::update);
}

OfferDesk::Moment OfferDesk::momentOf(const QDateTime& time) const
{
    const int second = time.time().msecsSinceStartOfDay() / 1000;
    const auto next = std::upper_bound(m_turningPoints.begin(), m_turningPoints.end(), second);
    return {time.date(), static_cast<int>(next - m_turningPoints.begin())};
}

/// A feed without a network knows no places; its products can name routes nevertheless.
bool OfferDesk::isKnown(const Place& place) const
{
    if (!m_feed.tariff || place.route < 0 || place.stop < 0)
        return false;
    return m_stopNumbers.isEmpty() ||
           (m_routeNumbers.contains(place.route) && m_stopNumbers.contains(place.stop));
}

feed::OfferQuery OfferDesk::queryAt(const Place& place, const QDateTime& time) const
{
    feed::OfferQuery query;
    query.route = idOf(m_feed.tariff->routeIds, m_routeNumbers, place.route);
    query.stop = idOf(m_feed.tariff->stopIds, m_stopNumbers, place.stop);
    query.at = time;
    query.withExpired = true;
    return query;
}

void OfferDesk::update()
{
    const QDateTime time = m_clock();
    const Place place = this->place();
    const Moment moment = momentOf(time);
    if (m_isAsked && place == m_place && moment == m_moment)
        return;
    const bool isFirst = !m_isAsked;
    m_isAsked = true;
    m_place = place;
    m_moment = moment;

    std::optional<feed::OfferList> offers;
    if (isKnown(place))
        offers = offersOf(*m_feed.tariff, queryAt(place, time));
    const bool isSame =
        !isFirst && offers.has_value() == m_offers.has_value() &&
        (!offers || (offers->offers == m_offers->offers && offers->errors == m_offers->errors));
    if (isSame)
        return;
    m_offers = std::move(offers);
    if (m_offers)
        sell(*m_offers);
    else
        sellEverything();
    emit changed();
}

void OfferDesk::sellEverything()
{
    m_products = productsSoldSomewhere(m_feed);
    m_passengerTypes = m_feed.supportedPassengerTypes;
    m_objection.clear();
}

void OfferDesk::sell(const feed::OfferList& list)
{
    m_products = productsOf(m_feed, list.offers);
    m_passengerTypes = passengerTypesFor(m_feed, m_products);
    if (!list.errors.isEmpty())
        m_objection = tr("The feed does not say what is sold here: %1").arg(list.errors.first());
    else if (m_products.isEmpty())
        m_objection = tr("Nothing is sold at this stop now.");
    else
        m_objection.clear();
}

QString OfferDesk::operatorName() const
{
    return m_feed.tariff ? operatorOf(m_feed, m_routeNumbers.indexOf(m_trip.routeId()))
                         : m_feed.name;
}

QVector<int> OfferDesk::zones() const
{
    const int stop = m_stopNumbers.indexOf(m_trip.currentStopId());
    return stop < 0 ? QVector<int>() : m_feed.network.stops.at(stop).areas;
}

} // namespace rivo::terminal
