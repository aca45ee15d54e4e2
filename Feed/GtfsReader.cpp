#include "GtfsReader_p.h"

#include "CsvTable_p.h"
#include "FeedFile_p.h"
#include "FeedProblem.h"
#include "FieldRule_p.h"
#include "GtfsRows_p.h"
#include "PassengerTypes.h"
#include "TextForms.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QPair>
#include <QSet>

#include <algorithm>
#include <utility>
#include <variant>

namespace rivo::feed
{

namespace
{

using namespace gtfs;

constexpr auto agencyFile = "agency.txt";
constexpr auto feedInfoFile = "feed_info.txt";
constexpr auto categoriesFile = "rider_categories.txt";
constexpr auto mappingFile = "passenger_types.txt";
constexpr auto mediaFile = "fare_media.txt";
constexpr auto areasFile = "areas.txt";
constexpr auto productsFile = "fare_products.txt";
constexpr auto legRulesFile = "fare_leg_rules.txt";
constexpr auto stopsFile = "stops.txt";
constexpr auto stopAreasFile = "stop_areas.txt";
constexpr auto routesFile = "routes.txt";
constexpr auto shapesFile = "shapes.txt";
constexpr auto calendarFile = "calendar.txt";
constexpr auto tripsFile = "trips.txt";
constexpr auto stopTimesFile = "stop_times.txt";

/// The identifiers of one kind in order of appearance, each kept once.
class GtfsIds
{
public:
    /// The index of `id`, which is added if it is new.
    int add(const QString& id)
    {
        const auto known = m_indexes.constFind(id);
        if (known != m_indexes.constEnd())
            return *known;
        m_ids.append(id);
        m_indexes.insert(id, m_ids.size() - 1);
        return m_ids.size() - 1;
    }

    int indexOf(const QString& id) const { return m_indexes.value(id, -1); }
    bool contains(const QString& id) const { return m_indexes.contains(id); }

    /// Whether the file that defines the identifiers could be read whole; otherwise references to
    /// them are not judged.
    bool isDefined() const { return m_isDefined; }
    void setDefined(bool isDefined) { m_isDefined = isDefined; }

    /// Every identifier with its number: its own if all are positive integers, else from 1 in
    /// order of appearance.
    QHash<QString, int> numbers() const
    {
        const bool areNumbers = std::all_of(
            m_ids.begin(), m_ids.end(), [](const QString& id) { return positiveInteger(id) > 0; });
        QHash<QString, int> numbers;
        for (int i = 0; i < m_ids.size(); ++i)
            numbers.insert(m_ids.at(i), areNumbers ? positiveInteger(m_ids.at(i)) : i + 1);
        return numbers;
    }

private:
    QStringList m_ids;
    QHash<QString, int> m_indexes;
    bool m_isDefined = false;
};

class FolderReader
{
public:
    FolderReader(const QString& folder, const FeedOptions& options, FeedReport& report)
        : m_folder(folder), m_options(options), m_report(report)
    {
    }

    std::optional<Feed> read()
    {
        readName();
        readCategories();
        readMapping();
        readMedia();
        readAreas();
        readProducts();
        readLegRules();
        readStops();
        readStopAreas();
        readRoutes();
        readShapes();
        readCalendar();
        readTrips();
        readStopTimes();
        if (!m_report.hasProblems())
            buildProducts();
        if (m_report.hasProblems())
            return std::nullopt;
        noticeUnmappedCategories();
        setZones();
        setStopAreas();
        return std::move(m_feed);
    }

private:
    using Tuple = QPair<QString, QPair<QString, QString>>;
    using AreaPair = QPair<QString, QString>;

    // Files

    void readName()
    {
        const auto take = [this](const QString& name) {
            if (m_feed.name.isEmpty())
                m_feed.name = name;
        };
        readIfThere<AgencyRow>(agencyFile, [&](const AgencyRow& row) { take(row.name); });
        readIfThere<FeedInfoRow>(feedInfoFile,
                                 [&](const FeedInfoRow& row) { take(row.publisher); });
    }

    void readCategories()
    {
        const bool isWhole = readIfThere<CategoryRow>(categoriesFile, [&](const CategoryRow& row) {
            if (!define(m_categoryIds, row, "rider_category_id", row.id))
                return;
            m_categories.append(row);
            if (row.isDefault == 0)
                return;
            if (!m_defaultCategory.isEmpty())
                problem(row, "is_default_fare_category", QStringLiteral("1"),
                        QStringLiteral("one default category, which is %1").arg(m_defaultCategory));
            m_defaultCategory = row.id;
        });
        // A product cannot do without the category it names, so a missing file defines none.
        m_categoryIds.setDefined(isWhole || !isThere(categoriesFile));
    }

    void readMapping()
    {
        const bool isGiven = !m_options.mappingFile.isEmpty();
        if (isGiven || isThere(mappingFile))
            readFile<MappingRow>(isGiven ? m_options.mappingFile : pathOf(mappingFile),
                                 [&](const MappingRow& row) { map(row); });
        m_file = m_folder;
        const auto& given = m_options.riderCategories;
        for (auto entry = given.begin(); entry != given.end(); ++entry) {
            const QString name = QLatin1String("rider category ") + entry.key();
            if (m_categoryIds.isDefined() && !m_categoryIds.contains(entry.key()))
                problem(0, name, QStringLiteral("unknown"), idOf(categoriesFile));
            if (passengerTypeNumber(entry.value()) == 0)
                problem(0, name, quoted(entry.value()), knownTypes());
            m_types.insert(entry.key(), entry.value());
        }
    }

    void map(const MappingRow& row)
    {
        checkReference(m_categoryIds, categoriesFile, row, "rider_category_id", row.category);
        if (!row.passengerType.isEmpty() && passengerTypeNumber(row.passengerType) == 0)
            problem(row, "passenger_type", row.passengerType, knownTypes());
        if (m_types.contains(row.category) && !row.category.isEmpty())
            problem(row, "rider_category_id", row.category, QStringLiteral("each category once"));
        m_types.insert(row.category, row.passengerType);
    }

    void readMedia()
    {
        const bool isWhole = readIfThere<MediumRow>(mediaFile, [&](const MediumRow& row) {
            if (define(m_mediumIds, row, "fare_media_id", row.id))
                m_mediumNames.insert(row.id, row.name);
        });
        m_mediumIds.setDefined(isWhole);
    }

    void readAreas()
    {
        const bool isWhole = readIfThere<AreaRow>(areasFile, [&](const AreaRow& row) {
            if (define(m_areaIds, row, "area_id", row.id))
                m_areas.append(row);
        });
        m_areaIds.setDefined(isWhole);
    }

    void readProducts()
    {
        QSet<Tuple> tuples;
        const bool isWhole = readFile<ProductRow>(pathOf(productsFile), [&](const ProductRow& row) {
            checkReference(m_categoryIds, categoriesFile, row, "rider_category_id", row.category);
            checkReference(m_mediumIds, mediaFile, row, "fare_media_id", row.medium);
            checkAmount(row);
            checkCurrency(row);
            const Tuple tuple(row.product, {row.category, row.medium});
            if (tuples.contains(tuple) && !row.product.isEmpty())
                problem(row, "fare_product_id", row.product,
                        QStringLiteral("each fare product once per rider category and medium"));
            tuples.insert(tuple);
            m_productIds.add(row.product);
            m_products.append(row);
        });
        m_productIds.setDefined(isWhole);
    }

    void checkAmount(const ProductRow& row)
    {
        const int point = row.amount.indexOf(QLatin1Char('.'));
        const int digits = point < 0 ? 0 : row.amount.size() - point - 1;
        const int decimals = currencyDecimals(row.currency);
        bool isConverted = false;
        const double amount = row.amount.toDouble(&isConverted);
        if (!row.amount.isEmpty() &&
            (!isConverted || !priceRule.allows(amount) || digits > decimals))
            problem(row, "amount", row.amount,
                    QStringLiteral("%1 with at most %2 decimals")
                        .arg(priceRule.inWords("a decimal number"))
                        .arg(decimals));
    }

    void checkCurrency(const ProductRow& row)
    {
        if (m_feed.currency.isEmpty())
            m_feed.currency = row.currency;
        if (!row.currency.isEmpty() && row.currency != m_feed.currency)
            problem(row, "currency", row.currency,
                    m_feed.currency + QLatin1String(", one currency for the whole feed"));
    }

    void readLegRules()
    {
        QSet<Tuple> rules;
        readIfThere<LegRuleRow>(legRulesFile, [&](const LegRuleRow& row) {
            checkReference(m_productIds, productsFile, row, "fare_product_id", row.product);
            referToArea(row, "from_area_id", row.fromArea);
            referToArea(row, "to_area_id", row.toArea);
            const Tuple rule(row.product, {row.fromArea, row.toArea});
            if (!rules.contains(rule))
                m_areaPairs[row.product].append(rule.second);
            rules.insert(rule);
        });
    }

    void readStops()
    {
        const bool isWhole = readIfThere<StopRow>(stopsFile, [&](const StopRow& row) {
            if (define(m_stopIds, row, "stop_id", row.id))
                m_feed.network.stops.append(row);
        });
        m_stopIds.setDefined(isWhole);
    }

    void readStopAreas()
    {
        QSet<QPair<QString, QString>> known;
        readIfThere<StopAreaRow>(stopAreasFile, [&](const StopAreaRow& row) {
            referToArea(row, "area_id", row.area);
            checkReference(m_stopIds, stopsFile, row, "stop_id", row.stop);
            if (!known.contains({row.stop, row.area}))
                m_stopAreas[row.stop].append(row.area);
            known.insert({row.stop, row.area});
        });
    }

    void readRoutes()
    {
        const auto toColor = [](QString& digits) {
            if (!digits.isEmpty())
                digits.prepend(QLatin1Char('#'));
        };
        const bool isWhole = readIfThere<RouteRow>(routesFile, [&](RouteRow& row) {
            toColor(row.color);
            toColor(row.textColor);
            if (define(m_routeIds, row, "route_id", row.id))
                m_feed.network.routes.append(row);
        });
        m_routeIds.setDefined(isWhole);
    }

    void readShapes()
    {
        QVector<ShapeRow> rows;
        const bool isWhole = readIfThere<ShapeRow>(shapesFile, [&](ShapeRow& row) {
            row.group = m_shapeIds.add(row.id);
            if (!row.id.isEmpty() && row.sequence >= 0)
                rows.append(row);
        });
        m_shapeIds.setDefined(isWhole);
        putInSequence(rows, shapesFile, "shape_pt_sequence");
        QVector<NetworkShape>& shapes = m_feed.network.shapes;
        for (const ShapeRow& row : qAsConst(rows)) {
            if (shapes.isEmpty() || shapes.last().id != row.id)
                shapes.append({row.id, {}});
            shapes.last().points.append(row);
        }
    }

    void readCalendar()
    {
        GtfsIds services;
        readIfThere<CalendarRow>(calendarFile, [&](const CalendarRow& row) {
            if (!define(services, row, "service_id", row.service))
                return;
            int days = 0;
            int bit = 0;
            for (const int runs : {row.monday, row.tuesday, row.wednesday, row.thursday, row.friday,
                                   row.saturday, row.sunday})
                days |= runs << bit++;
            m_feed.network.services.append({row.service, days});
        });
    }

    void readTrips()
    {
        const bool isWhole = readIfThere<TripRow>(tripsFile, [&](const TripRow& row) {
            checkReference(m_routeIds, routesFile, row, "route_id", row.routeId);
            checkReference(m_shapeIds, shapesFile, row, "shape_id", row.shapeId);
            if (define(m_tripIds, row, "trip_id", row.id))
                m_feed.network.trips.append(row);
        });
        m_tripIds.setDefined(isWhole);
    }

    void readStopTimes()
    {
        QVector<StopTimeRow> rows;
        GtfsIds trips = m_tripIds;
        readIfThere<StopTimeRow>(stopTimesFile, [&](StopTimeRow& row) {
            checkReference(m_tripIds, tripsFile, row, "trip_id", row.tripId);
            checkReference(m_stopIds, stopsFile, row, "stop_id", row.stopId);
            row.arrival = readTime(row, "arrival_time", row.arrivalText);
            row.departure = readTime(row, "departure_time", row.departureText);
            row.group = trips.add(row.tripId);
            if (!row.tripId.isEmpty() && row.sequence >= 0)
                rows.append(row);
        });
        putInSequence(rows, stopTimesFile, "stop_sequence");
        m_feed.network.stopTimes.reserve(rows.size());
        for (const StopTimeRow& row : qAsConst(rows))
            m_feed.network.stopTimes.append(row);
    }

    // Shared steps of reading

    QString pathOf(const char* name) const { return QDir(m_folder).filePath(QLatin1String(name)); }

    bool isThere(const char* name) const { return QFileInfo::exists(pathOf(name)); }

    /// True if there is such a file and every record of it was handled.
    template <class R, class Handler>
    bool readIfThere(const char* name, const Handler& handle)
    {
        return isThere(name) && readFile<R>(pathOf(name), handle);
    }

    /// True if every record of the file was handled.
    template <class R, class Handler>
    bool readFile(const QString& path, const Handler& handle)
    {
        m_file = path;
        const std::optional<QByteArray> text =
            readFeedFile(path, m_options.limits.csvBytes, m_report);
        if (!text)
            return false;
        checkUtf8(*text, path, m_report);
        QVector<CsvColumn> columns;
        for (const Column<R>& column : Columns<R>::table)
            columns.append({column.name, column.rule.isRequired});
        return readCsv(*text, path, columns, m_options.limits, m_report,
                       [&](int line, const QVector<QString>& values) {
                           R row;
                           row.line = line;
                           int index = 0;
                           for (const Column<R>& column : Columns<R>::table)
                               readField(values.at(index++), column, row);
                           checkCompanions(values, row);
                           handle(row);
                       });
    }

    template <class R>
    void readField(const QString& text, const Column<R>& column, R& row)
    {
        const auto read = [&](auto member) {
            readValue(text, column.rule, row, column.name, row.*member);
        };
        std::visit(read, column.member);
    }

    /// Reports columns that are empty where another one needs them.
    template <class R>
    void checkCompanions(const QVector<QString>& values, const R& row)
    {
        for (const Column<R>& column : Columns<R>::table) {
            const char* companion = column.rule.companion;
            if (companion && !valueOf<R>(values, column.name).isEmpty() &&
                valueOf<R>(values, companion).isEmpty())
                problem(row, companion, {},
                        QStringLiteral("a value beside %1").arg(QLatin1String(column.name)));
        }
    }

    template <class R>
    static QString valueOf(const QVector<QString>& values, const char* name)
    {
        int index = 0;
        while (qstrcmp(Columns<R>::table[index].name, name) != 0)
            ++index;
        return values.at(index);
    }

    /// Stores `text` in `into` if it fits the column's rule.
    template <class Value>
    void readValue(const QString& text, const FieldRule& rule, const Row& row, const char* column,
                   Value& into)
    {
        if (text.isEmpty() && !rule.isRequired)
            return;
        if (!convert(text, rule, into))
            problem(row, column, text, inWords(rule, into));
    }

    bool convert(const QString& text, const FieldRule& rule, QString& into)
    {
        const bool isFit = rule.allows(text, m_options.limits);
        if (isFit)
            into = *m_texts.insert(text);
        return isFit;
    }

    static bool convert(const QString& text, const FieldRule& rule, int& into)
    {
        bool isConverted = false;
        const int number = text.toInt(&isConverted);
        return isConverted && store(number, rule, into);
    }

    static bool convert(const QString& text, const FieldRule& rule, double& into)
    {
        bool isConverted = false;
        const double number = text.toDouble(&isConverted);
        return isConverted && store(number, rule, into);
    }

    template <class Number>
    static bool store(Number number, const FieldRule& rule, Number& into)
    {
        if (rule.allows(number))
            into = number;
        return rule.allows(number);
    }

    QString inWords(const FieldRule& rule, const QString&) const
    {
        return rule.textInWords(m_options.limits);
    }

    static QString inWords(const FieldRule& rule, int) { return rule.inWords("an integer"); }
    static QString inWords(const FieldRule& rule, double) { return rule.inWords("a number"); }

    int readTime(const Row& row, const char* column, const QString& text)
    {
        const int time = text.isEmpty() ? -1 : seconds(text);
        if (time < 0 && !text.isEmpty())
            problem(row, column, text, QStringLiteral("a time such as 8:05:00 or 25:10:00"));
        return time;
    }

    /// Sorts the rows by group and sequence; a sequence that a group holds twice is a problem.
    template <class R>
    void putInSequence(QVector<R>& rows, const char* name, const char* column)
    {
        const auto position = [](const R& row) { return std::make_pair(row.group, row.sequence); };
        std::stable_sort(rows.begin(), rows.end(), [&](const R& left, const R& right) {
            return position(left) < position(right);
        });
        m_file = pathOf(name);
        for (int i = 1; i < rows.size(); ++i) {
            if (position(rows.at(i - 1)) == position(rows.at(i)))
                problem(rows.at(i), column, QString::number(rows.at(i).sequence),
                        QStringLiteral("each number once, it stands in line %1 too")
                            .arg(rows.at(i - 1).line));
        }
    }

    /// Adds an identifier that a file defines; false if it is empty or there already.
    bool define(GtfsIds& ids, const Row& row, const char* column, const QString& id)
    {
        if (ids.contains(id))
            problem(row, column, id, QStringLiteral("each id once"));
        if (id.isEmpty() || ids.contains(id))
            return false;
        ids.add(id);
        return true;
    }

    void checkReference(const GtfsIds& ids, const char* definedIn, const Row& row,
                        const char* column, const QString& id)
    {
        if (ids.isDefined() && !id.isEmpty() && !ids.contains(id))
            problem(row, column, id, idOf(definedIn));
    }

    /// Where no file defines the areas, being referred to does.
    void referToArea(const Row& row, const char* column, const QString& id)
    {
        checkReference(m_areaIds, areasFile, row, column, id);
        if (!m_areaIds.isDefined() && !id.isEmpty())
            m_areaIds.add(id);
    }

    static QString idOf(const char* file)
    {
        return QLatin1String("an id of ") + QLatin1String(file);
    }

    static QString knownTypes()
    {
        return QLatin1String("one of ") + passengerTypeTexts().join(QLatin1String(", "));
    }

    void problem(const Row& row, const char* column, const QString& text, const QString& expected)
    {
        problem(row.line, QLatin1String(column), quoted(text), expected);
    }

    void problem(int line, const QString& field, const QString& value, const QString& expected)
    {
        m_report.add(FeedProblem{m_file, line, 0, {}, field, value, expected});
    }

    // Building the feed

    void buildProducts()
    {
        const QVector<AreaPair> anywhere(1);
        qint64 count = 0;
        for (const ProductRow& row : qAsConst(m_products)) {
            count += m_areaPairs.value(row.product, anywhere).size();
            ++m_offers[{row.product, row.category}];
        }
        if (count > m_options.limits.entries) {
            m_file = pathOf(productsFile);
            problem(0, {}, QStringLiteral("%1 products over all areas").arg(count),
                    QStringLiteral("at most %1").arg(m_options.limits.entries));
            return;
        }
        m_categoryNumbers = m_categoryIds.numbers();
        m_areaNumbers = m_areaIds.numbers();
        for (const ProductRow& row : qAsConst(m_products)) {
            FeedProduct product = toProduct(row);
            for (const AreaPair& pair : m_areaPairs.value(row.product, anywhere)) {
                product.fromStopGroupId = m_areaNumbers.value(pair.first);
                product.toStopGroupId = m_areaNumbers.value(pair.second);
                m_feed.products.append(product);
            }
        }
        m_feed.supportedPassengerTypes = passengerTypesOf(m_feed.products);
    }

    FeedProduct toProduct(const ProductRow& row) const
    {
        FeedProduct product;
        const QString category = row.category.isEmpty() ? m_defaultCategory : row.category;
        if (category.isEmpty()) {
            product.description = QStringLiteral("Anyone");
            product.passengerTypeCode = QStringLiteral("PT_ADULT");
        } else {
            product.description = nameOf(category);
            product.passengerTypeId = m_categoryNumbers.value(category);
            product.passengerTypeCode = m_types.value(category, category);
        }
        product.fareProductId = m_productIds.indexOf(row.product) + 1;
        product.fareProductName = nameOf(row);
        product.price = row.amount.toDouble();
        return product;
    }

    QString nameOf(const QString& category) const
    {
        const QString name = m_categories.at(m_categoryIds.indexOf(category)).name;
        return name.isEmpty() ? category : name;
    }

    /// The fare product's name, with the medium where that is all that tells two offers apart.
    QString nameOf(const ProductRow& row) const
    {
        QString name = row.name.isEmpty() ? row.product : row.name;
        if (row.medium.isEmpty() || m_offers.value({row.product, row.category}) < 2)
            return name;
        const QString medium = m_mediumNames.value(row.medium);
        return QStringLiteral("%1 (%2)").arg(name, medium.isEmpty() ? row.medium : medium);
    }

    void setZones()
    {
        for (const AreaRow& area : qAsConst(m_areas))
            m_feed.network.zones.append({m_areaNumbers.value(area.id), area.name});
    }

    void setStopAreas()
    {
        for (NetworkStop& stop : m_feed.network.stops) {
            const QStringList areas = m_stopAreas.value(stop.id);
            for (const QString& area : areas)
                stop.areas.append(m_areaNumbers.value(area));
        }
    }

    void noticeUnmappedCategories()
    {
        for (const CategoryRow& row : qAsConst(m_categories)) {
            if (!m_types.contains(row.id))
                m_report.add(FeedNotice{pathOf(categoriesFile), row.line,
                                        QStringLiteral("rider category %1 (%2) is mapped to no "
                                                       "passenger type, taken as type 0")
                                            .arg(quoted(row.id), nameOf(row.id))});
        }
    }

    const QString& m_folder;
    const FeedOptions& m_options;
    FeedReport& m_report;
    QString m_file;        ///< that is being read
    QSet<QString> m_texts; ///< every text once: a network repeats few texts very often
    Feed m_feed;

    GtfsIds m_categoryIds;
    GtfsIds m_mediumIds;
    GtfsIds m_areaIds;
    GtfsIds m_productIds;
    GtfsIds m_stopIds;
    GtfsIds m_routeIds;
    GtfsIds m_shapeIds;
    GtfsIds m_tripIds;
    QVector<CategoryRow> m_categories; ///< in the order of m_categoryIds
    QVector<AreaRow> m_areas;
    QString m_defaultCategory;
    QHash<QString, QString> m_types; ///< category to passenger type text
    QHash<QString, QString> m_mediumNames;
    QVector<ProductRow> m_products;
    QHash<QString, QVector<AreaPair>> m_areaPairs; ///< of a fare product
    QHash<QString, QStringList> m_stopAreas;       ///< of a stop
    QHash<QPair<QString, QString>, int> m_offers;  ///< rows per fare product and category
    QHash<QString, int> m_categoryNumbers;
    QHash<QString, int> m_areaNumbers;
};

} // namespace

std::optional<Feed> readGtfsFeed(const QString& folder, const FeedOptions& options,
                                 FeedReport& report)
{
    return FolderReader(folder, options, report).read();
}

} // namespace rivo::feed
