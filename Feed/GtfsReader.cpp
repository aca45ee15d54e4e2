#include "GtfsReader_p.h"

#include "GtfsReading_p.h"
#include "OfferProducts.h"
#include "PassengerTypes.h"

#include <algorithm>
#include <new>

namespace rivo::feed
{

namespace
{

using namespace gtfs;

constexpr int readingAttempts = 3;

const QVector<QPair<const char*, Concern>>& knownFiles()
{
    static const QVector<QPair<const char*, Concern>> files{
        {agencyFile, Concern::Fares},        {areasFile, Concern::Fares},
        {calendarFile, Concern::Fares},      {calendarDatesFile, Concern::Fares},
        {categoriesFile, Concern::Fares},    {fareAttributesFile, Concern::Fares},
        {fareRulesFile, Concern::Fares},     {feedInfoFile, Concern::Map},
        {legRulesFile, Concern::Fares},      {mappingFile, Concern::Fares},
        {mediaFile, Concern::Fares},         {networksFile, Concern::Fares},
        {productsFile, Concern::Fares},      {routeNetworksFile, Concern::Fares},
        {routesFile, Concern::Fares},        {shapesFile, Concern::Map},
        {stopAreasFile, Concern::Fares},     {stopTimesFile, Concern::Fares},
        {stopsFile, Concern::Fares},         {timeframesFile, Concern::Fares},
        {transferRulesFile, Concern::Fares}, {tripsFile, Concern::Fares},
    };
    return files;
}

/// A feed without fares has nothing to sell; the problem names what may have been meant.
void reportNoFares(const QString& path, const FeedSource& source, FeedReport& report)
{
    QStringList names = source.names();
    names.sort();
    const bool hasFeed =
        std::any_of(knownFiles().begin(), knownFiles().end(),
                    [&](const auto& file) { return names.contains(QLatin1String(file.first)); });
    const auto archive = std::find_if(names.begin(), names.end(), [](const QString& name) {
        return name.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive);
    });
    if (!hasFeed && archive != names.end())
        report.add(path, 0,
                   QStringLiteral("no GTFS file, but the archive %1").arg(quoted(*archive)),
                   QStringLiteral("the path of the archive itself"));
    else
        report.add(path, 0, QStringLiteral("a feed without fares"),
                   QStringLiteral("%1, or %2 of the older form")
                       .arg(QLatin1String(productsFile), QLatin1String(fareAttributesFile)));
}

void noticeUnmappedCategories(const Reading& reading)
{
    const auto& categories = reading.tariff.categories;
    for (int i = 0; i < categories.size(); ++i) {
        const TariffCategory& category = categories.at(i);
        const QString id = reading.categories.table.text(i);
        if (category.passengerType.isEmpty())
            reading.tables.report().add(
                FeedNotice{reading.tables.pathOf(categoriesFile), category.line,
                           QStringLiteral("rider category %1 (%2) is mapped to no passenger type, "
                                          "taken as type 0")
                               .arg(quoted(id), category.name.isEmpty() ? id : category.name)});
    }
}

/// Everything that is sold anywhere, as long as a grid could hold it.
void addProducts(Reading& reading)
{
    const OfferList sold = everythingSold(reading.tariff);
    const int limit = reading.tables.options().limits.entries;
    reading.feed.supportedPassengerTypes =
        passengerTypesOf(productsOf(reading.tariff, everyPriceSold(reading.tariff).offers));
    if (sold.errors.isEmpty() && sold.offers.size() <= limit) {
        reading.feed.products = productsOf(reading.tariff, sold.offers);
        return;
    }
    reading.tables.report().add(FeedNotice{
        reading.path, 0,
        QStringLiteral("more than %1 products over all areas: only those of one stop can be shown")
            .arg(qMin(limit, mostOffers))});
}

/// The fare catalogue, as long as a list of a feed could hold it.
void addFareProducts(Reading& reading)
{
    QVector<FeedFareProduct> entries = fareProductsOf(reading.tariff);
    if (entries.size() <= reading.tables.options().limits.entries)
        reading.feed.fareProducts = std::move(entries);
}

void addZones(Reading& reading)
{
    const QVector<int> numbers = reading.tariff.areaIds.publicNumbers();
    Network& network = reading.feed.network;
    for (int area = 0; area < numbers.size(); ++area)
        network.zones.append({numbers.at(area), reading.tariff.areas.at(area).name});
    for (int stop = 0; stop < network.stops.size(); ++stop) {
        for (const int area : reading.tariff.stops.at(stop).areas)
            network.stops[stop].areas.append(numbers.at(area));
    }
}

void moveIds(Reading& reading)
{
    Tariff& tariff = reading.tariff;
    tariff.agencyIds = std::move(reading.agencies.table);
    tariff.networkIds = std::move(reading.networks.table);
    tariff.routeIds = std::move(reading.routes.table);
    tariff.areaIds = std::move(reading.areas.table);
    tariff.stopIds = std::move(reading.stops.table);
    tariff.categoryIds = reading.categories.table;
    tariff.mediumIds = std::move(reading.media.table);
    tariff.timesIds = std::move(reading.times.table);
    tariff.productIds = std::move(reading.products.table);
}

void readFiles(Reading& reading)
{
    const bool isOlder = reading.tariff.form == Tariff::Form::Older;
    reading.tables.checkSpelling(knownFiles());
    readOperator(reading);
    readRoutes(reading);
    readStops(reading);
    if (!isOlder)
        readCategories(reading);
    readTimes(reading);
    if (isOlder)
        readOlderFares(reading);
    else
        readFares(reading);
    readTimetable(reading);
}

std::optional<Feed> readSource(const QString& path, FeedSource& source, const FeedOptions& options,
                               FeedReport& report)
{
    Tables tables(source, options, report);
    if (!tables.isThere(productsFile) && !tables.isThere(fareAttributesFile)) {
        tables.checkSpelling(knownFiles());
        if (!report.hasProblems())
            reportNoFares(path, source, report);
        return std::nullopt;
    }
    Feed feed;
    const auto tariff = std::make_shared<Tariff>();
    tariff->form = tables.isThere(productsFile) ? Tariff::Form::FaresV2 : Tariff::Form::Older;
    Reading reading{path, tables, feed, *tariff, {}, {}, {}, {}, {}, {}, {}, {}, {}};
    readFiles(reading);
    if (report.hasProblems())
        return std::nullopt;
    noticeUnmappedCategories(reading);
    moveIds(reading);
    addZones(reading);
    addProducts(reading);
    addFareProducts(reading);
    feed.currency = tariff->currency;
    feed.tariff = tariff;
    return feed;
}

} // namespace

std::optional<Feed> readGtfsFeed(const QString& path, const OpenFeedSource& open,
                                 const FeedOptions& options, FeedReport& report)
{
    for (int attempt = 0; attempt < readingAttempts; ++attempt) {
        FeedReport ofAttempt;
        const std::unique_ptr<FeedSource> source = open(path, options.limits, ofAttempt);
        std::optional<Feed> feed;
        try {
            if (source)
                feed = readSource(path, *source, options, ofAttempt);
        } catch (const std::bad_alloc&) {
            ofAttempt.add(path, 0, QStringLiteral("more than fits into memory"),
                          QStringLiteral("a smaller feed, or more memory"));
        }
        if (!source || source->isUnchanged()) {
            report = ofAttempt;
            return feed;
        }
    }
    report.add(path, 0, QStringLiteral("changing while it is read"),
               QStringLiteral("a feed that stays as it is"));
    return std::nullopt;
}

} // namespace rivo::feed
