#include "OfferRules_p.h"

#include <algorithm>
#include <tuple>

namespace rivo::feed
{

OfferMaker::OfferMaker(const Tariff& tariff, const QVector<int>& mediaTypes) : m_tariff(tariff)
{
    for (const TariffMedium& medium : tariff.media)
        m_isMediumSold.append(mediaTypes.contains(medium.type));
}

bool OfferMaker::isSold(const TariffPrice& price) const
{
    return price.amount >= 0 && (price.medium < 0 || m_isMediumSold.at(price.medium));
}

/// The first of the product's prices, and the one behind its last.
QPair<int, int> OfferMaker::pricesOf(int product) const
{
    const auto& prices = m_tariff.prices;
    const auto first = std::lower_bound(
        prices.begin(), prices.end(), product,
        [](const TariffPrice& price, int number) { return price.product < number; });
    const auto end = std::find_if(
        first, prices.end(), [product](const auto& price) { return price.product != product; });
    return {static_cast<int>(first - prices.begin()), static_cast<int>(end - prices.begin())};
}

std::optional<LeftOutReason> OfferMaker::objectionTo(int product) const
{
    if (m_tariff.products.at(product).isPrepaid)
        return LeftOutReason::Prepaid;
    const auto [first, end] = pricesOf(product);
    const auto begin = m_tariff.prices.begin();
    if (std::any_of(begin + first, begin + end, [this](const auto& p) { return isSold(p); }))
        return std::nullopt;
    return std::all_of(begin + first, begin + end, [](const auto& p) { return p.amount < 0; })
               ? LeftOutReason::Negative
               : LeftOutReason::Media;
}

/// The prices of a product that are sold, one offer per category and amount with all its media.
QVector<Offer> OfferMaker::withoutAreas(int product) const
{
    const auto [first, end] = pricesOf(product);
    QVector<int> sold;
    for (int i = first; i < end; ++i) {
        if (isSold(m_tariff.prices.at(i)))
            sold.append(i);
    }
    const auto key = [this](int price) {
        const TariffPrice& record = m_tariff.prices.at(price);
        return std::make_pair(record.category, record.amount);
    };
    std::sort(sold.begin(), sold.end(), [&](int left, int right) {
        return std::make_pair(key(left), left) < std::make_pair(key(right), right);
    });
    QVector<QPair<int, Offer>> offers; // with the first price of each
    for (int i = 0; i < sold.size(); ++i) {
        const TariffPrice& price = m_tariff.prices.at(sold.at(i));
        if (i == 0 || key(sold.at(i)) != key(sold.at(i - 1))) {
            const QString name =
                price.name.isEmpty() ? m_tariff.productIds.text(product) : price.name;
            offers.append(
                {sold.at(i), {name, product, price.category, {}, price.amount, -1, -1, false, -1}});
        }
        if (price.medium >= 0)
            offers.last().second.media.append(price.medium);
    }
    std::sort(offers.begin(), offers.end(),
              [](const auto& left, const auto& right) { return left.first < right.first; });
    QVector<Offer> ordered;
    for (const auto& offer : qAsConst(offers))
        ordered.append(offer.second);
    return ordered;
}

bool OfferMaker::add(int product, const ProductVerdict& verdict, QVector<Offer>& offers) const
{
    QVector<Offer> ofProduct = withoutAreas(product);
    if (offers.size() + qint64(ofProduct.size()) * verdict.areas.size() > mostOffers)
        return false;
    for (Offer& offer : ofProduct) {
        offer.isPass = verdict.isPass;
        std::sort(offer.media.begin(), offer.media.end(), [this](int left, int right) {
            return m_tariff.mediumIds.at(left) < m_tariff.mediumIds.at(right);
        });
        for (const auto& [from, to] : verdict.areas) {
            offer.fromArea = from;
            offer.toArea = to;
            offers.append(offer);
        }
    }
    return true;
}

} // namespace rivo::feed
