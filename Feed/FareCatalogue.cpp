#include "OfferProducts.h"

#include "Amount.h"

#include <array>
#include <map>
#include <set>
#include <tuple>

namespace rivo::feed
{

namespace
{

/// A type of media; see TariffMedium.
constexpr int paperTicket = 1;

/// What a ticket on a type of media is paid with; paper has no such method.
constexpr std::array<const char*, 5> paymentMethods{"cash", "", "transit card", "card",
                                                    "mobile app"};

class CatalogueMaker
{
public:
    explicit CatalogueMaker(const Tariff& tariff)
        : m_tariff(tariff), m_categoryNumbers(tariff.categoryIds.publicNumbers())
    {
    }

    QVector<FeedFareProduct> make(const QVector<Offer>& offers) const
    {
        QVector<FeedFareProduct> entries;
        std::map<std::tuple<int, qint64, QVector<int>, QString>, int> places; // of the entries
        for (const Offer& offer : offers) {
            const auto [place, isNew] = places.emplace(
                std::make_tuple(offer.product, offer.amount, offer.media, offer.name),
                entries.size());
            if (isNew)
                entries.append(entryOf(offer));
            entries[place->second].passengerTypes.append(
                offer.category < 0 ? 0 : m_categoryNumbers.at(offer.category));
        }
        return entries;
    }

private:
    /// Without its passenger types.
    FeedFareProduct entryOf(const Offer& offer) const
    {
        FeedFareProduct entry;
        entry.id = offer.product + 1;
        entry.description = offer.name;
        entry.price = toUnits(offer.amount, m_tariff.decimals);
        std::set<QString> methods;
        for (const int number : offer.media) {
            const TariffMedium& medium = m_tariff.media.at(number);
            entry.ticketMaterial.append(medium.name.isEmpty() ? m_tariff.mediumIds.text(number)
                                                              : medium.name);
            const QString method =
                QLatin1String(paymentMethods.at(static_cast<std::size_t>(medium.type)));
            if (!method.isEmpty() && methods.insert(method).second)
                entry.paymentMethod.append(method);
            entry.paperTicket = entry.paperTicket || medium.type == paperTicket;
        }
        return entry;
    }

    const Tariff& m_tariff;
    const QVector<int> m_categoryNumbers;
};

} // namespace

QVector<FeedFareProduct> fareProductsOf(const Tariff& tariff)
{
    return CatalogueMaker(tariff).make(everyPriceSold(tariff, {0, 1, 2, 3, 4}).offers);
}

} // namespace rivo::feed
