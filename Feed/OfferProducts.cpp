#include "OfferProducts.h"

#include "Amount.h"
#include "PassengerTypes.h"

#include <algorithm>
#include <map>
#include <set>

namespace rivo::feed
{

namespace
{

class Maker
{
public:
    explicit Maker(const Tariff& tariff)
        : m_tariff(tariff), m_categoryNumbers(tariff.categoryIds.publicNumbers()),
          m_areaNumbers(tariff.areaIds.publicNumbers())
    {
    }

    QVector<FeedProduct> make(const QVector<Offer>& offers)
    {
        countVariants(offers);
        QVector<FeedProduct> products;
        products.reserve(offers.size());
        for (const Offer& offer : offers)
            products.append(productOf(offer));
        return products;
    }

private:
    /// What a rider pays for a product on some media.
    using Variant = QPair<qint64, QVector<int>>;

    void countVariants(const QVector<Offer>& offers)
    {
        for (const Offer& offer : offers)
            m_variants[{offer.product, offer.category}].insert({offer.amount, offer.media});
    }

    FeedProduct productOf(const Offer& offer) const
    {
        FeedProduct product;
        if (offer.category < 0) {
            product.description = QStringLiteral("Anyone");
            product.passengerTypeCode = QStringLiteral("PT_ADULT");
        } else {
            const TariffCategory& category = m_tariff.categories.at(offer.category);
            const QString id = m_tariff.categoryIds.text(offer.category);
            product.description = category.name.isEmpty() ? id : category.name;
            product.passengerTypeId = m_categoryNumbers.at(offer.category);
            product.passengerTypeCode =
                category.passengerType.isEmpty() ? id : category.passengerType;
        }
        product.fareProductId = offer.product + 1;
        product.fareProductName = nameOf(offer);
        product.price = toUnits(offer.amount, m_tariff.decimals);
        product.fromStopGroupId = numberOf(offer.fromArea);
        product.toStopGroupId = numberOf(offer.toArea);
        return product;
    }

    int numberOf(int area) const { return area < 0 ? 0 : m_areaNumbers.at(area); }

    /// With the media where they decide on the price.
    QString nameOf(const Offer& offer) const
    {
        if (offer.media.isEmpty() || m_variants.at({offer.product, offer.category}).size() < 2)
            return offer.name;
        QStringList media;
        for (const int medium : offer.media) {
            const QString& name = m_tariff.media.at(medium).name;
            media.append(name.isEmpty() ? m_tariff.mediumIds.text(medium) : name);
        }
        return QStringLiteral("%1 (%2)").arg(offer.name, media.join(QLatin1String(", ")));
    }

    const Tariff& m_tariff;
    const QVector<int> m_categoryNumbers;
    const QVector<int> m_areaNumbers;
    std::map<QPair<int, int>, std::set<Variant>> m_variants; ///< of a product and category
};

} // namespace

QVector<FeedProduct> productsOf(const Feed& feed, const QVector<Offer>& offers)
{
    if (feed.tariff->form != Tariff::Form::OwnValidity)
        return productsOf(*feed.tariff, offers);
    QVector<FeedProduct> products;
    products.reserve(offers.size());
    for (const Offer& offer : offers)
        products.append(feed.products.at(offer.entry));
    return products;
}

QVector<FeedProduct> productsOf(const Tariff& tariff, const QVector<Offer>& offers)
{
    return Maker(tariff).make(offers);
}

QVector<FeedProduct> productsSoldSomewhere(const Feed& feed)
{
    if (!feed.tariff || feed.tariff->form != Tariff::Form::OwnValidity)
        return feed.products;
    return productsOf(feed, everythingSold(*feed.tariff).offers);
}

QString operatorOf(const Feed& feed, int route)
{
    const QString agency =
        feed.tariff->publisher.isEmpty() ? feed.tariff->agencyOf(route) : QString();
    return agency.isEmpty() ? feed.name : agency;
}

QStringList passengerTypesFor(const Feed& feed, const QVector<FeedProduct>& products)
{
    return feed.tariff->form == Tariff::Form::OwnValidity ? feed.supportedPassengerTypes
                                                          : passengerTypesOf(products);
}

} // namespace rivo::feed
