#include "GtfsFareRows_p.h"
#include "GtfsReading_p.h"

#include "Amount.h"

#include <algorithm>
#include <tuple>

namespace rivo::feed::gtfs
{

namespace
{

/// Reads what a ride needs and costs by Fares V2.
class FaresReader
{
public:
    explicit FaresReader(Reading& reading)
        : m_reading(reading), m_tables(reading.tables), m_tariff(reading.tariff)
    {
    }

    void read()
    {
        readMedia();
        readProducts();
        readLegRules();
        readTransferRules();
        checkNegativeAmounts();
    }

private:
    void readMedia()
    {
        m_tables.define<MediumRow>(mediaFile, Concern::Fares, m_reading.media,
                                   [&](const MediumRow& row, TableReport&) {
                                       m_tariff.media.append({row.name, row.type});
                                   });
    }

    void readProducts()
    {
        TableReport table(m_tables.pathOf(productsFile), Concern::Fares, m_tables.report());
        const int firstProblem = static_cast<int>(m_tables.report().problems().size());
        const auto take = [&](const ProductRow& row, TableReport&) {
            TariffPrice price;
            price.category = table.refer(m_reading.categories, categoriesFile, row,
                                         "rider_category_id", row.category);
            price.medium =
                table.refer(m_reading.media, mediaFile, row, "fare_media_id", row.medium);
            price.amount = readAmount(row.amount, row.currency, "amount", row, table);
            takeCurrency(m_reading, row.currency, "currency", row, table);
            const bool isKnown = (price.category >= 0 || row.category.empty()) &&
                                 (price.medium >= 0 || row.medium.empty());
            m_tables.add(m_reading.products, row.line, row.product);
            price.product = m_reading.products.table.size() - 1;
            price.name = row.name;
            price.line = row.line;
            if (isKnown)
                m_tariff.prices.append(price);
        };
        m_reading.products.isJudged =
            m_tables.read<ProductRow>(QLatin1String(productsFile), table, take);
        noticeOtherColumns(table);
        const QVector<int> numbers = m_reading.products.table.unify();
        m_tariff.products.resize(m_reading.products.table.size());
        for (TariffPrice& price : m_tariff.prices)
            price.product = numbers.at(price.product);
        checkPrices(table);
        m_tables.report().orderByLine(firstProblem);
        std::stable_sort(m_tariff.prices.begin(), m_tariff.prices.end(),
                         [](const TariffPrice& left, const TariffPrice& right) {
                             return left.product < right.product;
                         });
    }

    /// A product has one price per rider category and medium.
    void checkPrices(TableReport& table)
    {
        using Key = std::tuple<int, int, int, int>;
        QVector<Key> keys;
        for (const TariffPrice& price : qAsConst(m_tariff.prices))
            keys.append({price.product, price.category, price.medium, price.line});
        std::sort(keys.begin(), keys.end());
        for (int i = 1; i < keys.size(); ++i) {
            const auto& [product, category, medium, line] = keys.at(i);
            const Id id = m_reading.products.table.at(product);
            Row row;
            row.line = line;
            if (!id.empty() && Key(product, category, medium, 0) < keys.at(i - 1))
                table.fault(row, "fare_product_id", id,
                            QStringLiteral("each fare product once per rider category and medium"));
        }
    }

    void readLegRules()
    {
        if (!m_tables.isThere(legRulesFile))
            return;
        TableReport table(m_tables.pathOf(legRulesFile), Concern::Fares, m_tables.report());
        const auto take = [&](const LegRuleRow& row, TableReport&) {
            TariffRule rule;
            rule.product =
                table.refer(m_reading.products, productsFile, row, "fare_product_id", row.product);
            rule.network =
                table.refer(m_reading.networks, networksFile, row, "network_id", row.network);
            rule.fromArea =
                table.refer(m_reading.areas, areasFile, row, "from_area_id", row.fromArea);
            rule.toArea = table.refer(m_reading.areas, areasFile, row, "to_area_id", row.toArea);
            rule.fromTimes = table.refer(m_reading.times, timeframesFile, row,
                                         "from_timeframe_group_id", row.fromTimes);
            rule.toTimes = table.refer(m_reading.times, timeframesFile, row,
                                       "to_timeframe_group_id", row.toTimes);
            rule.priority = row.priority;
            rule.line = row.line;
            if (!row.group.empty())
                m_tables.add(m_legGroups, row.line, row.group);
            if (rule.product >= 0)
                m_tariff.rules.append(rule);
        };
        m_legGroups.isJudged = m_tables.read<LegRuleRow>(QLatin1String(legRulesFile), table, take);
        m_tariff.hasPriorities = table.hasColumn("rule_priority");
        noticeOtherColumns(table);
        m_legGroups.table.seal();
    }

    void readTransferRules()
    {
        m_tables.read<TransferRuleRow>(
            transferRulesFile, Concern::Fares, [&](const TransferRuleRow& row, TableReport& table) {
                table.refer(m_legGroups, legRulesFile, row, "from_leg_group_id", row.fromGroup);
                table.refer(m_legGroups, legRulesFile, row, "to_leg_group_id", row.toGroup);
                const int product = table.refer(m_reading.products, productsFile, row,
                                                "fare_product_id", row.product);
                if (product >= 0)
                    m_tariff.products[product].isInTransferRule = true;
            });
    }

    /// A discount has a meaning only where a ride follows another one.
    void checkNegativeAmounts()
    {
        TableReport table(m_tables.pathOf(productsFile), Concern::Fares, m_tables.report());
        for (const TariffPrice& price : qAsConst(m_tariff.prices)) {
            Row row;
            row.line = price.line;
            if (price.amount < 0 && !m_tariff.products.at(price.product).isInTransferRule)
                table.fault(row, "amount", amountText(price.amount, m_tariff.decimals),
                            QStringLiteral("0 or more for a product without a transfer rule"));
        }
    }

    Reading& m_reading;
    Tables& m_tables;
    Tariff& m_tariff;
    Ids m_legGroups;
};

/// Reads the fares of the older form.
class OlderFaresReader
{
public:
    explicit OlderFaresReader(Reading& reading)
        : m_reading(reading), m_tables(reading.tables), m_tariff(reading.tariff)
    {
    }

    void read()
    {
        readFareAttributes();
        readFareRules();
        for (TariffProduct& fare : m_tariff.products) {
            std::sort(fare.contains.begin(), fare.contains.end());
            fare.contains.erase(std::unique(fare.contains.begin(), fare.contains.end()),
                                fare.contains.end());
        }
    }

private:
    void readFareAttributes()
    {
        m_tables.define<FareAttributeRow>(
            fareAttributesFile, Concern::Fares, m_reading.products,
            [&](const FareAttributeRow& row, TableReport& table) {
                TariffProduct fare;
                fare.agency =
                    table.refer(m_reading.agencies, agencyFile, row, "agency_id", row.agency);
                fare.isPrepaid = row.paymentMethod == 1;
                takeCurrency(m_reading, row.currency, "currency_type", row, table);
                TariffPrice price;
                price.product = static_cast<int>(m_tariff.products.size());
                price.amount = readAmount(row.price, row.currency, "price", row, table);
                price.line = row.line;
                m_tariff.prices.append(price);
                m_tariff.products.append(fare);
            });
    }

    int zoneOf(Id zone, const char* column, const Row& row, TableReport& table) const
    {
        const int number = zone.empty() ? -1 : m_reading.areas.table.find(zone);
        if (number < 0 && !zone.empty() && m_reading.areas.isJudged)
            table.fault(row, column, zone, QStringLiteral("a zone_id of stops.txt"));
        return number;
    }

    void readFareRules()
    {
        m_tables.read<FareRuleRow>(
            fareRulesFile, Concern::Fares, [&](const FareRuleRow& row, TableReport& table) {
                TariffRule rule;
                rule.product =
                    table.refer(m_reading.products, fareAttributesFile, row, "fare_id", row.fare);
                rule.network =
                    table.refer(m_reading.routes, routesFile, row, "route_id", row.route);
                rule.fromArea = zoneOf(row.origin, "origin_id", row, table);
                rule.toArea = zoneOf(row.destination, "destination_id", row, table);
                rule.line = row.line;
                const int contained = zoneOf(row.contains, "contains_id", row, table);
                if (rule.product < 0)
                    return;
                if (contained >= 0)
                    m_tariff.products[rule.product].contains.append(contained);
                m_tariff.rules.append(rule);
            });
    }

    Reading& m_reading;
    Tables& m_tables;
    Tariff& m_tariff;
};

} // namespace

void noticeOtherColumns(TableReport& table)
{
    for (const QString& column : table.otherColumns())
        table.notice(1, QStringLiteral("the column %1 is not read, whatever it says of fares")
                            .arg(quoted(column)));
}

void takeCurrency(Reading& reading, const QString& currency, const char* column, const Row& row,
                  TableReport& table)
{
    QString& ofFeed = reading.tariff.currency;
    if (ofFeed.isEmpty()) {
        ofFeed = currency;
        reading.tariff.decimals = currencyDecimals(currency);
    }
    if (!currency.isEmpty() && currency != ofFeed)
        table.fault(row, column, currency,
                    ofFeed + QLatin1String(", one currency for the whole feed"));
}

qint64 readAmount(const QString& amount, const QString& currency, const char* column,
                  const Row& row, TableReport& table)
{
    const int decimals = currencyDecimals(currency);
    const std::optional<qint64> units = minorUnits(amount, decimals);
    if (!units && !amount.isEmpty())
        table.fault(row, column, amount,
                    QStringLiteral("a decimal number up to %1 with at most %2 decimals")
                        .arg(largestPrice)
                        .arg(decimals));
    return units.value_or(0);
}

void readFares(Reading& reading) { FaresReader(reading).read(); }

void readOlderFares(Reading& reading) { OlderFaresReader(reading).read(); }

} // namespace rivo::feed::gtfs
