#include "GtfsFareRows_p.h"
#include "GtfsReading_p.h"

#include "PassengerTypes.h"

namespace rivo::feed::gtfs
{

namespace
{

QString knownTypes()
{
    return QLatin1String("one of ") + passengerTypeTexts().join(QLatin1String(", "));
}

void readCategoriesFile(Reading& reading)
{
    int defaultLine = 0; // none yet
    reading.tables.define<CategoryRow>(
        categoriesFile, Concern::Fares, reading.categories,
        [&](const CategoryRow& row, TableReport& table) {
            const bool isDefault = row.isDefault == 1;
            if (isDefault && defaultLine > 0)
                table.fault(
                    row, "is_default_fare_category", Id("1"),
                    QStringLiteral("one default category, which is in line %1").arg(defaultLine));
            else if (isDefault)
                defaultLine = row.line;
            reading.tariff.categories.append({row.name, {}, isDefault, row.line});
        });
}

/// The file in the feed, or the one that the caller has named.
void readMapping(Reading& reading)
{
    QVector<int> lines(reading.tariff.categories.size());
    const auto map = [&](const MappingRow& row, TableReport& table) {
        const int category =
            table.refer(reading.categories, categoriesFile, row, "rider_category_id", row.category);
        if (!row.passengerType.isEmpty() && passengerTypeNumber(row.passengerType) == 0)
            table.fault(row, "passenger_type", row.passengerType, knownTypes());
        if (category < 0)
            return;
        if (lines.at(category) > 0)
            table.fault(row, "rider_category_id", row.category,
                        QStringLiteral("each category once"));
        lines[category] = row.line;
        reading.tariff.categories[category].passengerType = row.passengerType;
    };
    const QString& given = reading.tables.options().mappingFile;
    if (given.isEmpty())
        reading.tables.read<MappingRow>(mappingFile, Concern::Fares, map);
    else
        reading.tables.readElsewhere<MappingRow>(given, map);
}

/// The passenger types that the caller maps single categories to.
void takeGivenTypes(Reading& reading)
{
    const auto& given = reading.tables.options().riderCategories;
    for (auto entry = given.begin(); entry != given.end(); ++entry) {
        const QString name = QLatin1String("rider category ") + entry.key();
        const int category = reading.categories.table.find(entry.key());
        const auto fault = [&](const QString& found, const QString& expected) {
            reading.tables.report().add(FeedProblem{reading.path, 0, 0, {}, name, found, expected});
        };
        if (category < 0 && reading.categories.isJudged)
            fault(QStringLiteral("unknown"), idOf(categoriesFile));
        if (passengerTypeNumber(entry.value()) == 0)
            fault(quoted(entry.value()), knownTypes());
        if (category >= 0)
            reading.tariff.categories[category].passengerType = entry.value();
    }
}

} // namespace

void readCategories(Reading& reading)
{
    readCategoriesFile(reading);
    readMapping(reading);
    takeGivenTypes(reading);
}

} // namespace rivo::feed::gtfs
