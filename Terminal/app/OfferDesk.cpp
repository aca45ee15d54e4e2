#include "OfferDesk.h"

#include <Feed.h>
#include <OfferProducts.h>
#include <PassengerTypeItem.h>

#include <QLocale>

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
    m_notSold.clear();
}

void OfferDesk::sell(const feed::OfferList& list)
{
    m_products = productsOf(m_feed, list.offers);
    m_notSold = namedReasons(list.leftOut);
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

// What is not sold, and what differs between products.

namespace
{

/// Empty for what is never sold by itself.
QString reasonFor(feed::LeftOutReason reason)
{
    switch (reason) {
    case feed::LeftOutReason::Network:
        return OfferDesk::tr("not on this route");
    case feed::LeftOutReason::Area:
        return OfferDesk::tr("not from this stop");
    case feed::LeftOutReason::Timeframe:
        return OfferDesk::tr("not at this time");
    case feed::LeftOutReason::Prepaid:
        return OfferDesk::tr("sold before boarding only");
    case feed::LeftOutReason::Media:
        return OfferDesk::tr("not sold on paper");
    case feed::LeftOutReason::Priority:
        return OfferDesk::tr("another fare applies");
    case feed::LeftOutReason::TransferOnly:
    case feed::LeftOutReason::Negative:
        break;
    }
    return {};
}

QString timesText(const QVector<feed::FeedTime>& times)
{
    QStringList texts;
    for (const feed::FeedTime& time : times) {
        QStringList parts;
        for (const int day : time.days)
            parts.append(QLocale().dayName(day, QLocale::ShortFormat));
        if (!time.begin.isEmpty() || !time.end.isEmpty())
            parts.append(QStringLiteral("%1–%2").arg(time.begin.left(5), time.end.left(5)));
        if (!time.firstDate.isEmpty() || !time.lastDate.isEmpty())
            parts.append(QStringLiteral("%1–%2").arg(time.firstDate, time.lastDate));
        texts.append(parts.join(QLatin1Char(' ')));
    }
    return texts.join(QStringLiteral(", "));
}

bool isOf(const PassengerTypeItem& tile, const feed::FeedProduct& product)
{
    return tile.id() == product.passengerTypeId && tile.fareProductId() == product.fareProductId &&
           tile.fromStopGroupId() == product.fromStopGroupId &&
           tile.toStopGroupId() == product.toStopGroupId &&
           tile.description() == product.description &&
           tile.fareProductName() == product.fareProductName;
}

} // namespace

QVariantList OfferDesk::namedReasons(const QVector<feed::LeftOutProduct>& leftOut) const
{
    const feed::Tariff& tariff = *m_feed.tariff;
    QVariantList named;
    for (const feed::LeftOutProduct& product : leftOut) {
        const QString reason = reasonFor(product.reason);
        const auto price = std::lower_bound(
            tariff.prices.begin(), tariff.prices.end(), product.product,
            [](const feed::TariffPrice& each, int number) { return each.product < number; });
        const bool hasPrice = price != tariff.prices.end() && price->product == product.product;
        if (reason.isEmpty() || !hasPrice)
            continue;
        named.append(QVariantMap{
            {QStringLiteral("name"),
             price->name.isEmpty() ? tariff.productIds.text(product.product) : price->name},
            {QStringLiteral("reason"), reason}});
    }
    return named;
}

QString OfferDesk::mediaOf(int product) const
{
    static const QStringList typeNames{tr("no ticket"), tr("paper"), tr("transit card"),
                                       tr("bank card"), tr("mobile app")};
    QStringList names;
    const feed::Offer* offer =
        m_offers && product < m_offers->offers.size() ? &m_offers->offers.at(product) : nullptr;
    if (offer != nullptr && offer->entry < 0) {
        for (const int medium : offer->media) {
            const QString& name = m_feed.tariff->media.at(medium).name;
            names.append(name.isEmpty() ? m_feed.tariff->mediumIds.text(medium) : name);
        }
    } else {
        for (const int type : m_products.at(product).validMedia)
            names.append(typeNames.value(type));
    }
    return names.join(QStringLiteral(", "));
}

QString OfferDesk::numberOf(const feed::FeedProduct& product) const
{
    const bool isNamed = m_feed.tariff && m_feed.tariff->form != feed::Tariff::Form::OwnValidity &&
                         product.fareProductId >= 1 &&
                         product.fareProductId <= m_feed.tariff->productIds.size();
    return isNamed ? m_feed.tariff->productIds.text(product.fareProductId - 1)
                   : tr("no. %1").arg(product.fareProductId);
}

QStringList OfferDesk::details(const PassengerTypeItem& tile, int which) const
{
    int found = -1;
    for (int i = 0; i < m_products.size() && which >= 0; ++i) {
        if (!isOf(tile, m_products.at(i)))
            continue;
        found = i;
        --which;
    }
    if (found < 0)
        return {};
    const feed::FeedProduct& product = m_products.at(found);
    QStringList routes;
    for (const int route : product.validRoutes)
        routes.append(QString::number(route));
    return {mediaOf(found),
            routes.isEmpty() ? QString() : tr("route %1").arg(routes.join(QStringLiteral(", "))),
            timesText(product.validTimes), numberOf(product)};
}

} // namespace rivo::terminal
