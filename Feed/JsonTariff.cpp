#include "JsonTariff_p.h"

#include "Amount.h"
#include "Tariff.h"
#include "TextForms.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

/// Makes a tariff of a feed whose products state where they are sold.
class TariffMaker
{
public:
    explicit TariffMaker(const Feed& feed) : m_feed(feed) {}

    std::shared_ptr<const Tariff> make()
    {
        m_tariff.form = Tariff::Form::OwnValidity;
        m_tariff.currency = m_feed.currency;
        m_tariff.decimals = m_feed.currencyDecimals();
        addZones();
        addStops();
        addRoutes();
        addRuns();
        addProducts();
        return std::make_shared<const Tariff>(std::move(m_tariff));
    }

private:
    static void append(IdTable& ids, const QString& id)
    {
        const QByteArray text = id.toUtf8();
        ids.append({text.constData(), static_cast<size_t>(text.size())});
    }

    static void append(IdTable& ids, int id) { append(ids, QString::number(id)); }

    int zoneOf(int number) const { return m_tariff.areaIds.find(QString::number(number)); }

    void addZones()
    {
        for (const NetworkZone& zone : m_feed.network.zones)
            append(m_tariff.areaIds, zone.number);
        for (const NetworkStop& stop : m_feed.network.stops) {
            for (const int zone : stop.areas)
                append(m_tariff.areaIds, zone);
        }
        for (const FeedProduct& product : m_feed.products) {
            append(m_tariff.areaIds, product.fromStopGroupId);
            append(m_tariff.areaIds, product.toStopGroupId);
            for (const int zone : product.validZones)
                append(m_tariff.areaIds, zone);
        }
        m_tariff.areaIds.unify();
        m_tariff.areas.resize(m_tariff.areaIds.size());
        for (const NetworkZone& zone : m_feed.network.zones)
            m_tariff.areas[zoneOf(zone.number)].name = zone.name;
    }

    void addStops()
    {
        for (const NetworkStop& stop : m_feed.network.stops) {
            append(m_tariff.stopIds, stop.id);
            TariffStop record;
            for (const int zone : stop.areas)
                record.areas.append(zoneOf(zone));
            std::sort(record.areas.begin(), record.areas.end());
            m_tariff.stops.append(record);
        }
        m_tariff.stopIds.seal();
    }

    /// Those of the network; without a network those that products name.
    void addRoutes()
    {
        for (const NetworkRoute& route : m_feed.network.routes)
            append(m_tariff.routeIds, route.id);
        for (const FeedProduct& product : m_feed.products) {
            for (const int route : product.validRoutes)
                append(m_tariff.routeIds, route);
        }
        m_tariff.routeIds.unify();
        m_tariff.routes.resize(m_tariff.routeIds.size());
    }

    void addRuns()
    {
        const auto& times = m_feed.network.stopTimes;
        auto time = times.begin();
        for (const NetworkTrip& trip : m_feed.network.trips) {
            const int route = m_tariff.routeIds.find(trip.routeId);
            QVector<int> run;
            for (; time != times.end() && time->tripId == trip.id; ++time)
                run.append(m_tariff.stopIds.find(time->stopId));
            run.removeAll(-1); // of stops that no list defines
            if (route < 0)
                continue;
            m_tariff.routes[route].hasTrips = true;
            m_tariff.routes[route].runs.append(run);
        }
    }

    void addProducts()
    {
        for (const FeedProduct& product : m_feed.products) {
            append(m_tariff.productIds, product.fareProductId);
            append(m_tariff.categoryIds, product.passengerTypeId);
        }
        const QVector<int> products = m_tariff.productIds.unify();
        const QVector<int> categories = m_tariff.categoryIds.unify();
        m_tariff.products.resize(m_tariff.productIds.size());
        m_tariff.categories.resize(m_tariff.categoryIds.size());
        for (int i = 0; i < m_feed.products.size(); ++i) {
            const FeedProduct& product = m_feed.products.at(i);
            TariffCategory& category = m_tariff.categories[categories.at(i)];
            if (category.name.isEmpty())
                category = {product.description, product.passengerTypeCode, false, 0};
            TariffPrice price;
            price.name = product.fareProductName;
            price.product = products.at(i);
            price.category = categories.at(i);
            price.amount = toMinorUnits(product.price, m_tariff.decimals).value_or(0);
            m_tariff.prices.append(price);
            m_tariff.validities.append(validityOf(product));
        }
    }

    TariffValidity validityOf(const FeedProduct& product)
    {
        TariffValidity validity;
        validity.fromArea = zoneOf(product.fromStopGroupId);
        validity.toArea = zoneOf(product.toStopGroupId);
        validity.hasExpired = product.hasExpired;
        validity.media = product.validMedia;
        for (const int zone : product.validZones)
            validity.zones.append(zoneOf(zone));
        for (const int route : product.validRoutes)
            validity.routes.append(m_tariff.routeIds.find(QString::number(route)));
        std::sort(validity.zones.begin(), validity.zones.end());
        std::sort(validity.routes.begin(), validity.routes.end());
        for (const FeedTime& time : product.validTimes)
            validity.times.append(spanOf(time));
        return validity;
    }

    TariffSpan spanOf(const FeedTime& time)
    {
        TariffSpan span;
        if (!time.begin.isEmpty())
            span.begin = seconds(time.begin);
        if (!time.end.isEmpty())
            span.end = seconds(time.end);
        if (time.days.isEmpty() && time.firstDate.isEmpty() && time.lastDate.isEmpty())
            return span;
        TariffService service;
        for (const int day : time.days)
            service.days |= 1 << (day - 1);
        if (time.days.isEmpty())
            service.days = everyDay;
        const auto date = [](const QString& text, const QDate& otherwise) {
            return text.isEmpty() ? otherwise : QDate::fromString(text, Qt::ISODate);
        };
        service.first = date(time.firstDate, QDate(1, 1, 1));
        service.last = date(time.lastDate, QDate(9999, 12, 31));
        span.service = static_cast<int>(m_tariff.services.size());
        m_tariff.services.append(service);
        return span;
    }

    static constexpr int everyDay = 127;

    const Feed& m_feed;
    Tariff m_tariff;
};

} // namespace

std::shared_ptr<const Tariff> tariffOf(const Feed& feed) { return TariffMaker(feed).make(); }

} // namespace rivo::feed
