#pragma once

#include "Offers.h"
#include "Rides_p.h"

#include <QPair>
#include <QVector>

#include <optional>

namespace rivo::feed
{

/// How far a rule of Fares V2 came. A product is left out for what its best rule did not reach.
enum class Stage { Network, Area, Timeframe, Priority, Counts };

/// The stages of all rules, by rule.
QVector<Stage> stagesOfRules(const Tariff& tariff, const Rides& rides, const QDateTime& at);

/// What the rules decide about one product.
struct ProductVerdict
{
    QVector<QPair<int, int>> areas; ///< of the rules that count, as written; empty = not sold
    bool isPass = false;
    LeftOutReason reason = LeftOutReason::Area; ///< if it is not sold
};

/// Leaves each pair of areas once, in order of appearance.
void unifyAreas(ProductVerdict& verdict);

using ProductVerdicts = QVector<ProductVerdict>; ///< by product

/// Makes offers of the prices that are sold on some media.
class OfferMaker
{
public:
    OfferMaker(const Tariff& tariff, const QVector<int>& mediaTypes);

    /// Why no rule can bring about an offer of the product; nothing if one can.
    std::optional<LeftOutReason> objectionTo(int product) const;

    /// Appends the offers of a product without objection: one per category, amount and areas. False
    /// if there were more than mostOffers then; none is appended.
    bool add(int product, const ProductVerdict& verdict, QVector<Offer>& offers) const;

private:
    bool isSold(const TariffPrice& price) const;
    QPair<int, int> pricesOf(int product) const;
    QVector<Offer> withoutAreas(int product) const;

    const Tariff& m_tariff;
    QVector<bool> m_isMediumSold;
};

/// The rules of Fares V2.
ProductVerdicts judgeProducts(const Tariff& tariff, const OfferMaker& maker, const Rides& rides,
                              const QDateTime& at);

/// The rules of the older form.
ProductVerdicts judgeFares(const Tariff& tariff, const OfferMaker& maker, const Rides& rides);

/// Every product as if all its rules counted.
ProductVerdicts areasOfProducts(const Tariff& tariff, const OfferMaker& maker);

/// The products that state where they are sold.
OfferList offersOfOwnValidity(const Tariff& tariff, const Rides& rides, const OfferQuery& query);
OfferList everythingOfOwnValidity(const Tariff& tariff, const QVector<int>& media);

} // namespace rivo::feed
