#include "DirectionControls.h"

#include <algorithm>

namespace rivo::terminal
{

namespace
{

bool isControl(QChar letter)
{
    const ushort code = letter.unicode();
    return code == 0x061c || code == 0x200e || code == 0x200f ||
           (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

bool hasControl(const QString& text) { return std::any_of(text.begin(), text.end(), isControl); }

template <typename Record>
void clean(Record& record, std::initializer_list<QString Record::*> texts)
{
    for (QString Record::*text : texts) {
        if (hasControl(record.*text))
            record.*text = withoutDirectionControls(record.*text);
    }
}

/// Large lists are copied only if one of them needs it.
template <typename Record>
void clean(QVector<Record>& records, std::initializer_list<QString Record::*> texts)
{
    const auto isAffected = [&texts](const Record& record) {
        return std::any_of(texts.begin(), texts.end(),
                           [&record](auto text) { return hasControl(record.*text); });
    };
    if (!std::any_of(records.cbegin(), records.cend(), isAffected))
        return;
    for (Record& record : records)
        clean(record, texts);
}

} // namespace

QString withoutDirectionControls(const QString& text)
{
    QString clean;
    clean.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(clean),
                 [](QChar letter) { return !isControl(letter); });
    return clean;
}

feed::FeedProduct withoutDirectionControls(feed::FeedProduct product)
{
    using Product = feed::FeedProduct;
    clean(product, {&Product::description, &Product::fareProductName});
    return product;
}

feed::Feed withoutDirectionControls(feed::Feed feed)
{
    using namespace feed;
    clean(feed, {&Feed::name});
    clean(feed.products, {&FeedProduct::description, &FeedProduct::fareProductName});
    clean(feed.fareProducts, {&FeedFareProduct::description});
    clean(feed.vehicles,
          {&FeedVehicle::registrationNumber, &FeedVehicle::internalNumber,
           &FeedVehicle::drivingStatus, &FeedVehicle::routeStatus, &FeedVehicle::routeName});
    clean(feed.peripherals, {&FeedPeripheral::name, &FeedPeripheral::stateStr});
    clean(feed.network.zones, {&NetworkZone::name});
    clean(feed.network.routes, {&NetworkRoute::shortName, &NetworkRoute::longName});
    clean(feed.network.trips, {&NetworkTrip::headsign});
    clean(feed.network.stops, {&NetworkStop::name});
    return feed;
}

} // namespace rivo::terminal
