#include "Explanation.h"

#include "Amount.h"
#include "OfferRules_p.h"
#include "Rides_p.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

/// Rules that are explained one by one.
constexpr int mostRules = 20;

/// "Town (10)", or the identifier alone.
QString named(const QString& name, const QString& id)
{
    return name.isEmpty() || name == id
               ? printable(id)
               : QStringLiteral("%1 (%2)").arg(printable(name), printable(id));
}

class Explainer
{
public:
    Explainer(const Tariff& tariff, int product, const std::optional<OfferQuery>& query)
        : m_tariff(tariff), m_product(product), m_query(query),
          m_isOlder(tariff.form == Tariff::Form::Older)
    {
    }

    QStringList explain()
    {
        for (const TariffPrice& price : m_tariff.prices) {
            if (price.product == m_product)
                m_sentences.append(priceSentence(price));
        }
        if (m_query)
            m_offers = offersOf(m_tariff, *m_query);
        if (m_tariff.form != Tariff::Form::OwnValidity)
            explainRules();
        if (m_query)
            explainVerdict();
        return m_sentences;
    }

private:
    QString amount(qint64 units) const
    {
        return amountText(units, m_tariff.decimals) + QLatin1Char(' ') + m_tariff.currency;
    }

    QString rider(int category) const
    {
        return category < 0 ? QStringLiteral("anyone")
                            : named(m_tariff.categories.at(category).name,
                                    m_tariff.categoryIds.text(category));
    }

    QString medium(int number) const
    {
        static const char* const kinds[] = {"without a ticket", "a paper ticket", "a transit card",
                                            "a bank card", "a mobile app"};
        const TariffMedium& record = m_tariff.media.at(number);
        return QStringLiteral("%1, %2").arg(named(record.name, m_tariff.mediumIds.text(number)),
                                            QLatin1String(kinds[record.type]));
    }

    QString priceSentence(const TariffPrice& price) const
    {
        if (price.amount < 0)
            return QStringLiteral("It takes %1 off a journey with transfers.")
                .arg(amount(-price.amount));
        const QString where =
            price.medium < 0 ? QString() : QStringLiteral(" on %1").arg(medium(price.medium));
        return QStringLiteral("It costs %1 for %2%3.")
            .arg(amount(price.amount), rider(price.category), where);
    }

    QString area(int number) const
    {
        return number < 0 ? QStringLiteral("anywhere")
                          : named(m_tariff.areas.at(number).name, m_tariff.areaIds.text(number));
    }

    QString conditions(const TariffRule& rule) const
    {
        QStringList parts{
            QStringLiteral("from %1 to %2").arg(area(rule.fromArea), area(rule.toArea))};
        if (rule.network >= 0)
            parts.append(
                m_isOlder
                    ? QStringLiteral("on route %1").arg(m_tariff.routeIds.text(rule.network))
                    : QStringLiteral("in network %1").arg(m_tariff.networkIds.text(rule.network)));
        for (const int times : {rule.fromTimes, rule.toTimes}) {
            if (times >= 0)
                parts.append(QStringLiteral("in timeframe %1").arg(m_tariff.timesIds.text(times)));
        }
        if (m_tariff.hasPriorities)
            parts.append(QStringLiteral("with priority %1").arg(rule.priority));
        return parts.join(QLatin1String(", "));
    }

    static QString outcome(Stage stage)
    {
        switch (stage) {
        case Stage::Network:
            return QStringLiteral("it is not for the network of this route");
        case Stage::Area:
            return QStringLiteral("it is not for this stop and a destination");
        case Stage::Timeframe:
            return QStringLiteral("it does not hold at this time");
        case Stage::Priority:
            return QStringLiteral("other rules go before it");
        default:
            return QStringLiteral("it counts here");
        }
    }

    void explainRules()
    {
        QVector<int> rules;
        for (int i = 0; i < m_tariff.rules.size(); ++i) {
            if (m_tariff.rules.at(i).product == m_product)
                rules.append(i);
        }
        const QVector<Stage> stages = stagesHere();
        const QString file =
            m_isOlder ? QStringLiteral("fare_rules.txt") : QStringLiteral("fare_leg_rules.txt");
        for (int i = 0; i < qMin(rules.size(), mostRules); ++i) {
            const TariffRule& rule = m_tariff.rules.at(rules.at(i));
            const QString end = stages.isEmpty()
                                    ? QString()
                                    : QStringLiteral(": ") + outcome(stages.at(rules.at(i)));
            m_sentences.append(QStringLiteral("Line %1 of %2 is for rides %3%4.")
                                   .arg(rule.line)
                                   .arg(file, conditions(rule), end));
        }
        if (rules.size() > mostRules)
            m_sentences.append(
                QStringLiteral("%1 further rules are about it.").arg(rules.size() - mostRules));
        if (rules.isEmpty())
            m_sentences.append(withoutRules());
    }

    QString withoutRules() const
    {
        if (m_tariff.products.at(m_product).isInTransferRule)
            return QStringLiteral(
                "Only transfer rules name it: it is a part of a journey's price.");
        return m_isOlder ? QStringLiteral("No rule is about it: it is valid for any ride.")
                         : QStringLiteral("No rule is about it: it is a pass, sold everywhere.");
    }

    /// Of Fares V2, if there is a place to judge.
    QVector<Stage> stagesHere() const
    {
        if (!m_query || m_isOlder || !m_offers.errors.isEmpty())
            return {};
        const Rides rides = ridesOf(
            m_tariff, m_tariff.routeIds.find(m_query->route), m_tariff.stopIds.find(m_query->stop),
            m_query->to.isEmpty() ? -1 : m_tariff.stopIds.find(m_query->to));
        return stagesOfRules(m_tariff, rides, m_query->at);
    }

    void explainVerdict()
    {
        const QString here = QStringLiteral("At stop %1 of route %2")
                                 .arg(printable(m_query->stop), printable(m_query->route));
        for (const Offer& offer : qAsConst(m_offers.offers)) {
            if (offer.product == m_product)
                m_sentences.append(QStringLiteral("%1 it is sold for %2 to %3, from %4 to %5.")
                                       .arg(here, amount(offer.amount), rider(offer.category),
                                            area(offer.fromArea), area(offer.toArea)));
        }
        for (const LeftOutProduct& product : qAsConst(m_offers.leftOut)) {
            if (product.product == m_product)
                m_sentences.append(
                    QStringLiteral("%1 it is not sold: %2.").arg(here, reason(product.reason)));
        }
    }

    static QString reason(LeftOutReason reason)
    {
        switch (reason) {
        case LeftOutReason::TransferOnly:
            return QStringLiteral("it is a part of a journey's price");
        case LeftOutReason::Negative:
            return QStringLiteral("it is a discount of transfers");
        case LeftOutReason::Media:
            return QStringLiteral("it is on media that are not sold here");
        case LeftOutReason::Prepaid:
            return QStringLiteral("it is paid before boarding");
        case LeftOutReason::Network:
            return QStringLiteral("it is not for this route");
        case LeftOutReason::Area:
            return QStringLiteral("no rule is for a ride from this stop");
        case LeftOutReason::Timeframe:
            return QStringLiteral("no rule holds at this time");
        case LeftOutReason::Priority:
            break;
        }
        return QStringLiteral("other rules go before");
    }

    const Tariff& m_tariff;
    const int m_product;
    const std::optional<OfferQuery>& m_query;
    const bool m_isOlder;
    OfferList m_offers;
    QStringList m_sentences;
};

} // namespace

QStringList explained(const Tariff& tariff, const QString& product,
                      const std::optional<OfferQuery>& query)
{
    const int number = tariff.productIds.find(product);
    return number < 0 ? QStringList() : Explainer(tariff, number, query).explain();
}

} // namespace rivo::feed
