#include "FareCheck.h"

#include "RuleCheck.h"

#include <FeedProblem.h>
#include <Offers.h>

#include <QTextStream>

#include <algorithm>

using namespace rivo::feed;

namespace
{

/// Findings of one kind that are listed one by one.
constexpr int maximumListed = 20;

/// "id" name
QString named(const QString& id, const QString& name)
{
    return name.isEmpty() ? quoted(id) : QStringLiteral("%1 %2").arg(quoted(id), printable(name));
}

QString sentence(LeftOutReason reason)
{
    switch (reason) {
    case LeftOutReason::TransferOnly:
        return QStringLiteral("only transfer rules name it");
    case LeftOutReason::Negative:
        return QStringLiteral("a discount of transfers");
    case LeftOutReason::Media:
        return QStringLiteral("only on media that are not sold on board");
    default:
        return QStringLiteral("paid before boarding");
    }
}

/// A field of a CSV file.
QString csvField(const QString& text)
{
    static const QString special = QStringLiteral("\",\r\n");
    const bool isPlain = std::none_of(special.begin(), special.end(), [&text](QChar character) {
        return text.contains(character);
    });
    if (isPlain && text.trimmed() == text)
        return text;
    QString escaped = text;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

class FareReport
{
public:
    explicit FareReport(const Feed& feed) : m_feed(feed), m_tariff(*feed.tariff) {}

    QByteArray text()
    {
        const bool isGtfs = m_tariff.form != Tariff::Form::OwnValidity;
        if (isGtfs)
            m_text += headline();
        list(QStringLiteral("never sold (%1)"), neverSold());
        list(m_tariff.form == Tariff::Form::FaresV2 ? QStringLiteral("stops without an area (%1)")
                                                    : QStringLiteral("stops without a zone (%1)"),
             stopsWithoutArea());
        list(QStringLiteral("overlapping priorities (%1)"), overlaps());
        if (isGtfs)
            list(QStringLiteral("rider categories without a passenger type (%1); these lines of "
                                "passenger_types.txt map them, with PT_ADULT or another type"),
                 unmappedCategories());
        if (isGtfs && !m_hasFinding)
            m_text += QStringLiteral("No finding about the fares.\n");
        return m_text.toUtf8();
    }

private:
    QString headline() const
    {
        return QStringLiteral("%1 fare products, %2 rules, %3 stops, %4 rider categories\n")
            .arg(m_tariff.products.size())
            .arg(m_tariff.rules.size())
            .arg(m_tariff.stops.size())
            .arg(m_tariff.categories.size());
    }

    /// `heading` has a place for the number of findings.
    void list(const QString& heading, const QStringList& findings)
    {
        if (findings.isEmpty())
            return;
        m_hasFinding = true;
        m_text += heading.arg(findings.size()) + QLatin1String(":\n");
        const QStringList listed = findings.mid(0, maximumListed);
        for (const QString& finding : listed)
            m_text += QStringLiteral("  %1\n").arg(finding);
        if (findings.size() > maximumListed)
            m_text += QStringLiteral("  and %1 more\n").arg(findings.size() - maximumListed);
    }

    QString productName(int product) const
    {
        const auto price = std::lower_bound(
            m_tariff.prices.begin(), m_tariff.prices.end(), product,
            [](const TariffPrice& record, int number) { return record.product < number; });
        const bool hasPrice = price != m_tariff.prices.end() && price->product == product;
        return named(m_tariff.productIds.text(product), hasPrice ? price->name : QString());
    }

    QStringList neverSold() const
    {
        QMap<int, QString> reasons = productsWithoutRides(m_tariff);
        const OfferList sold = everyPriceSold(m_tariff);
        for (const LeftOutProduct& product : sold.leftOut)
            reasons.insert(product.product, sentence(product.reason));
        QStringList findings;
        for (auto reason = reasons.cbegin(); reason != reasons.cend(); ++reason)
            findings.append(QStringLiteral("%1: %2").arg(productName(reason.key()), *reason));
        return findings;
    }

    /// Only where some rule asks for one.
    QStringList stopsWithoutArea() const
    {
        const auto& rules = m_tariff.rules;
        const auto& validities = m_tariff.validities;
        const bool isAsked =
            std::any_of(rules.begin(), rules.end(),
                        [](const auto& rule) { return rule.fromArea >= 0 || rule.toArea >= 0; }) ||
            std::any_of(validities.begin(), validities.end(),
                        [](const auto& validity) { return !validity.zones.isEmpty(); });
        QStringList findings;
        for (int i = 0; isAsked && i < m_tariff.stops.size(); ++i) {
            const TariffStop& stop = m_tariff.stops.at(i);
            if (stop.isPlatform && stop.areas.isEmpty())
                findings.append(named(m_tariff.stopIds.text(i), m_feed.network.stops.at(i).name));
        }
        return findings;
    }

    QString nameOf(const TariffRule& rule) const
    {
        return printable(m_tariff.productIds.text(rule.product));
    }

    QStringList overlaps() const
    {
        const auto hidden = QStringLiteral("line %1 of fare_leg_rules.txt (%2, priority %3) never "
                                           "counts: line %4 (%5, priority %6) fits all its rides");
        const auto equal =
            QStringLiteral("line %1 of fare_leg_rules.txt (%2) and line %3 (%4) have "
                           "priority %5 and both count for the rides of line %1");
        const auto number = [](int value) { return QString::number(value); };
        QStringList findings;
        const auto overlaps = overlappingRules(m_tariff);
        for (const OverlappingRules& overlap : overlaps) {
            const TariffRule& rule = m_tariff.rules.at(overlap.rule);
            const TariffRule& wider = m_tariff.rules.at(overlap.wider);
            if (overlap.isHidden)
                findings.append(hidden.arg(number(rule.line), nameOf(rule), number(rule.priority),
                                           number(wider.line), nameOf(wider),
                                           number(wider.priority)));
            else
                findings.append(equal.arg(number(rule.line), nameOf(rule), number(wider.line),
                                          nameOf(wider), number(rule.priority)));
        }
        return findings;
    }

    QStringList unmappedCategories() const
    {
        QStringList findings;
        for (int i = 0; i < m_tariff.categories.size(); ++i) {
            const TariffCategory& category = m_tariff.categories.at(i);
            if (!category.passengerType.isEmpty())
                continue;
            const QString id = m_tariff.categoryIds.text(i);
            findings.append(QStringLiteral("%1: %2,PT_ADULT")
                                .arg(named(id, category.name), printable(csvField(id))));
        }
        return findings;
    }

    const Feed& m_feed;
    const Tariff& m_tariff;
    QString m_text;
    bool m_hasFinding = false;
};

} // namespace

QByteArray checkFares(const Feed& feed) { return FareReport(feed).text(); }
