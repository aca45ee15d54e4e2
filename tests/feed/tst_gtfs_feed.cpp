#include "FeedFiles.h"

using namespace rivo::feed;

namespace
{

using Files = QMap<QString, QByteArray>;

/// Two categories, two areas, a single ride and a pass; "gtfs/" is their folder.
const Files base = {
    {"fare_products.txt", "fare_product_id,fare_product_name,amount,currency,rider_category_id\n"
                          "single,Single,2.50,EUR,1\n"
                          "single,Single,1.25,EUR,2\n"
                          "pass,Monthly pass,40,EUR,1\n"},
    {"rider_categories.txt", "rider_category_id,rider_category_name,is_default_fare_category\n"
                             "1,Adult,1\n"
                             "2,Pupil,0\n"},
    {"passenger_types.txt", "rider_category_id,passenger_type\n1,PT_ADULT\n2,PT_SCHOOLBOY\n"},
    {"areas.txt", "area_id,area_name\n10,Town\n20,Hills\n"},
    {"fare_leg_rules.txt", "fare_product_id,from_area_id,to_area_id\nsingle,10,20\n"},
};

/// The network files, which `base` does without.
const Files network = {
    {"stops.txt", "stop_id,stop_code,stop_name,stop_lat,stop_lon\n"
                  "A,01,Market,52.5,-13.25\n"
                  "B,02,Station,52.6,13.5\n"},
    {"stop_areas.txt", "area_id,stop_id\n20,A\n10,B\n10,A\n20,A\n"},
    {"routes.txt", "route_id,route_short_name,route_long_name,route_color,route_text_color\n"
                   "R1,1,Market - Station,1657ba,FFFFFF\n"},
    {"shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\n"
                   "S,52.5,-13.25,1\nS,52.6,13.5,7\n"},
    {"trips.txt", "route_id,service_id,trip_id,trip_headsign,shape_id\nR1,WD,T1,Station,S\n"
                  "R1,WD,T2,Market,\n"},
    {"stop_times.txt", "trip_id,stop_sequence,stop_id,arrival_time,departure_time\n"
                       "T1,0,A,,5:00:00\nT1,4,B,05:20:30,\n"
                       "T2,0,B,23:59:59,24:00:00\nT2,1,A,25:10:00,25:10:05\n"},
};

Files operator+(Files files, const Files& others)
{
    for (auto file = others.begin(); file != others.end(); ++file)
        files.insert(file.key(), file.value());
    return files;
}

Files without(Files files, const QStringList& names)
{
    for (const QString& name : names)
        files.remove(name);
    return files;
}

FeedResult loadGtfs(const Files& files, const FeedOptions& options = {})
{
    QDir(QStringLiteral("gtfs")).removeRecursively();
    for (auto file = files.begin(); file != files.end(); ++file)
        FeedFiles::write(QStringLiteral("gtfs/") + file.key(), file.value());
    return load(QStringLiteral("gtfs"), options);
}

/// "type description (number) price: fare product (number) from > to" per product.
QStringList dump(const Feed& feed)
{
    QStringList lines;
    for (const FeedProduct& p : feed.products)
        lines.append(QStringLiteral("%1 %2 (%3) %4: %5 (%6) %7 > %8")
                         .arg(p.passengerTypeCode, p.description)
                         .arg(p.passengerTypeId)
                         .arg(p.price)
                         .arg(p.fareProductName)
                         .arg(p.fareProductId)
                         .arg(p.fromStopGroupId)
                         .arg(p.toStopGroupId));
    return lines;
}

const QByteArray productHeader =
    "fare_product_id,fare_product_name,amount,currency,rider_category_id,fare_media_id\n";
const QByteArray categoryHeader =
    "rider_category_id,rider_category_name,is_default_fare_category\n";
const QByteArray ruleHeader = "fare_product_id,from_area_id,to_area_id\n";

} // namespace

class GtfsFeedTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void theLakesideFeed();
    void products_data();
    void products();
    void whatGtfsDoesNotSayHasItsDefault();
    void supportedTypesAreThoseOfTheProducts();
    void mappings_data();
    void mappings();
    void unmappedCategoriesAreNoticedByName();
    void theNetwork();
    void stopTimesAndShapesInAnyOrder();
    void problems_data();
    void problems();
    void everyProblemInOnePass();
    void aBrokenFileRaisesNoFalseReferences();
    void limitsAreInclusive();
    void ruleAndProductNumbersMayNotMultiplyWithoutBound();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void GtfsFeedTest::theLakesideFeed()
{
    const FeedResult result = load(QStringLiteral(FEED_TEST_DATA "/gtfs-lakeside"));
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QCOMPARE(feed.name, QStringLiteral("Lakeside Communal Buses, Ostra"));
    QCOMPARE(feed.currency, QStringLiteral("PLN"));
    QCOMPARE(feed.columns, 0);
    QCOMPARE(feed.supportedPassengerTypes,
             QStringList({"3", "PT_ADULT", "PT_SCHOOLBOY", "PT_LFS"}));
    QCOMPARE(dump(feed),
             QStringList({
                 "PT_ADULT Full fare (1) 0: Ride within Ostra (1) 1 > 1",
                 "PT_ADULT Full fare (1) 0: Ride within Lakeside (2) 2 > 2",
                 "PT_ADULT Full fare (1) 0: Ride within Brenno Spa, \"old town\" (3) 3 > 3",
                 "PT_ADULT Full fare (1) 3.5: Ostra ⇔ Lakeside (4) 1 > 2",
                 "PT_ADULT Full fare (1) 3.5: Ostra ⇔ Lakeside (4) 2 > 1",
                 "PT_ADULT Full fare (1) 5: Ostra ⇔ Brenno Spa (5) 1 > 3",
                 "PT_ADULT Full fare (1) 5: Ostra ⇔ Brenno Spa (5) 3 > 1",
                 "PT_ADULT Full fare (1) 4: Lakeside ⇔ Brenno Spa (6) 2 > 3",
                 "PT_ADULT Full fare (1) 4: Lakeside ⇔ Brenno Spa (6) 3 > 2",
                 "PT_ADULT Full fare (1) 120: Monthly pass (7) 0 > 0",
                 "3 Senior (4) 75.6: Monthly pass (-37%) (8) 0 > 0",
                 "PT_SCHOOLBOY Pupil under 18 (3) 60: Monthly pass (-50%) (8) 0 > 0",
                 "PT_LFS Child under 4 (2) 0: Monthly pass (free) (8) 0 > 0",
             }));
    QCOMPARE(result.notices.size(), 1);
    QVERIFY(result.notices.first().toString().endsWith(
        "gtfs-lakeside/rider_categories.txt:5: rider category \"3\" (Senior) is mapped to no "
        "passenger type, taken as type 0"));
    const Network& loaded = feed.network;
    QCOMPARE(loaded.routes.size(), 2);
    QCOMPARE(loaded.trips.size(), 3);
    QCOMPARE(loaded.stops.size(), 5);
    QCOMPARE(loaded.stops.last().name, QStringLiteral("Brenno Spa\r\nHealth Resort"));
    QCOMPARE(loaded.stops.last().areas, QVector<int>({3}));
    QCOMPARE(loaded.stopTimes.size(), 13);
    QCOMPARE(loaded.stopTimes.at(9).arrival, 24 * 3600 + 18 * 60);
    QCOMPARE(loaded.shapes.size(), 2);
    QVERIFY(!loaded.services.isEmpty());
}

void GtfsFeedTest::products_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("products");
    const auto row = [](const char* name, const Files& changes, const QStringList& products) {
        QTest::newRow(name) << base + changes << products;
    };
    const QString single = "PT_ADULT Adult (1) 2.5: Single (1) 10 > 20";
    const QString pupil = "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 10 > 20";
    const QString pass = "PT_ADULT Adult (1) 40: Monthly pass (2) 0 > 0";

    row("one product per row; a pass without a leg rule is in zone 0", {}, {single, pupil, pass});
    row("one product per row and leg rule",
        {{"fare_leg_rules.txt", ruleHeader + "single,10,20\nsingle,20,10\n"}},
        {single, "PT_ADULT Adult (1) 2.5: Single (1) 20 > 10", pupil,
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 20 > 10", pass});
    row("leg rules that differ in nothing we read are one",
        {{"fare_leg_rules.txt", "network_id,fare_product_id,from_area_id,to_area_id\n"
                                "day,single,10,20\nnight,single,10,20\n"}},
        {single, pupil, pass});
    row("empty area in a leg rule is zone 0",
        {{"fare_leg_rules.txt", ruleHeader + "single,,20\npass,10,\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (1) 0 > 20",
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 0 > 20",
         "PT_ADULT Adult (1) 40: Monthly pass (2) 10 > 0"});
    row("areas without numbers count from 1 in order of appearance",
        {{"areas.txt", "area_id\nhills\n10\ntown\n"},
         {"fare_leg_rules.txt", ruleHeader + "single,town,hills\npass,10,10\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (1) 3 > 1",
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 3 > 1",
         "PT_ADULT Adult (1) 40: Monthly pass (2) 2 > 2"});
    row("area 0 is no positive integer",
        {{"areas.txt", "area_id\n0\n5\n"}, {"fare_leg_rules.txt", ruleHeader + "single,0,5\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (1) 1 > 2",
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 1 > 2", pass});
    row("area beyond the integers is no number",
        {{"areas.txt", "area_id\n2147483648\n5\n"},
         {"fare_leg_rules.txt", ruleHeader + "single,5,2147483648\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (1) 2 > 1",
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 2 > 1", pass});
    row("largest integer is a number",
        {{"areas.txt", "area_id\n2147483647\n"},
         {"fare_leg_rules.txt", ruleHeader + "single,2147483647,\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (1) 2147483647 > 0",
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 2147483647 > 0", pass});
    row("7 and 07 are two areas, so neither is a number",
        {{"areas.txt", "area_id\n07\n7\n"}, {"fare_leg_rules.txt", ruleHeader + "single,07,7\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (1) 1 > 2",
         "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 1 > 2", pass});
    row("fare products count from 1 in order of first appearance",
        {{"fare_products.txt", productHeader + "77,B,1,EUR,1,\n5,A,2,EUR,1,\n77,B,3,EUR,2,\n"},
         {"fare_leg_rules.txt", ruleHeader}},
        {"PT_ADULT Adult (1) 1: B (1) 0 > 0", "PT_ADULT Adult (1) 2: A (2) 0 > 0",
         "PT_SCHOOLBOY Pupil (2) 3: B (1) 0 > 0"});
    row("category 0 makes all categories count from 1",
        {{"rider_categories.txt", categoryHeader + "2,Pupil,\n1,Adult,1\n0,Baby,\n"}},
        {"PT_ADULT Adult (2) 2.5: Single (1) 10 > 20",
         "PT_SCHOOLBOY Pupil (1) 1.25: Single (1) 10 > 20",
         "PT_ADULT Adult (2) 40: Monthly pass (2) 0 > 0"});
    row("empty category is the default category",
        {{"fare_products.txt", productHeader + "single,Single,2.5,EUR,,\n"}}, {single});
    row("empty category without a default category is anyone, an adult",
        {{"fare_products.txt", productHeader + "single,Single,2.5,EUR,,\n"},
         {"rider_categories.txt", categoryHeader + "1,Adult,0\n2,Pupil,\n"}},
        {"PT_ADULT Anyone (0) 2.5: Single (1) 10 > 20"});
    row("no category column at all",
        {{"fare_products.txt", "fare_product_id,amount,currency\nsingle,2.5,EUR\n"}},
        {"PT_ADULT Adult (1) 2.5: single (1) 10 > 20"});
    row("product without a name bears its id",
        {{"fare_products.txt", productHeader + "single,,2.5,EUR,1,\n"}},
        {"PT_ADULT Adult (1) 2.5: single (1) 10 > 20"});
    row("category without a name bears its id",
        {{"rider_categories.txt", "rider_category_id,is_default_fare_category\n1,1\n2,\n"}},
        {"PT_ADULT 1 (1) 2.5: Single (1) 10 > 20", "PT_SCHOOLBOY 2 (2) 1.25: Single (1) 10 > 20",
         "PT_ADULT 1 (1) 40: Monthly pass (2) 0 > 0"});
    row("unmapped category bears its id as type",
        {{"rider_categories.txt", categoryHeader + "1,Adult,1\n2,Pupil,\n3,Senior,\n"},
         {"fare_products.txt", productHeader + "single,Single,2.5,EUR,3,\n"}},
        {"3 Senior (3) 2.5: Single (1) 10 > 20"});
    row("several media of one product and category tell their names",
        {{"fare_products.txt", productHeader + "single,Single,2.5,EUR,1,p\nsingle,Single,2.2,EUR,1,"
                                               "c\nsingle,Single,2.3,EUR,1,\nsingle,Single,1,EUR,2,"
                                               "p\n"},
         {"fare_media.txt", "fare_media_id,fare_media_name\np,Paper\nc,\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (Paper) (1) 10 > 20",
         "PT_ADULT Adult (1) 2.2: Single (c) (1) 10 > 20",
         "PT_ADULT Adult (1) 2.3: Single (1) 10 > 20",
         "PT_SCHOOLBOY Pupil (2) 1: Single (1) 10 > 20"});
    row("media without a file are taken as they are",
        {{"fare_products.txt", productHeader + "single,Single,2.5,EUR,1,p\nsingle,Single,2,EUR,1,q"
                                               "\n"}},
        {"PT_ADULT Adult (1) 2.5: Single (p) (1) 10 > 20",
         "PT_ADULT Adult (1) 2: Single (q) (1) 10 > 20"});
    row("amounts with fewer decimals than the currency",
        {{"fare_products.txt", productHeader + "single,Single,2,EUR,1,\nsingle,Single,0.1,EUR,2,"
                                               "\npass,P,1000000.00,EUR,1,\n"}},
        {"PT_ADULT Adult (1) 2: Single (1) 10 > 20",
         "PT_SCHOOLBOY Pupil (2) 0.1: Single (1) 10 > 20",
         "PT_ADULT Adult (1) 1e+06: P (2) 0 > 0"});
    row("currency with three decimals",
        {{"fare_products.txt", productHeader + "single,Single,0.125,KWD,1,\n"}},
        {"PT_ADULT Adult (1) 0.125: Single (1) 10 > 20"});
    row("byte-order mark, CR LF, blanks and quotes",
        {{"fare_products.txt",
          "\xEF\xBB\xBF fare_product_id , \"fare_product_name\",amount , currency\r\n"
          "single,\"Single, \"\"zone\"\" 1\r\nand 2\", 2.5 ,EUR"}},
        {"PT_ADULT Adult (1) 2.5: Single, \"zone\" 1\r\nand 2 (1) 10 > 20"});
    QTest::newRow("areas without a file are those of the leg rules")
        << (without(base, {"areas.txt"}) +
            Files{{"fare_leg_rules.txt", ruleHeader + "single,town,hills\npass,hills,\n"}})
        << QStringList({"PT_ADULT Adult (1) 2.5: Single (1) 1 > 2",
                        "PT_SCHOOLBOY Pupil (2) 1.25: Single (1) 1 > 2",
                        "PT_ADULT Adult (1) 40: Monthly pass (2) 2 > 0"});
    QTest::newRow("numbers of areas without a file")
        << without(base, {"areas.txt"}) << QStringList({single, pupil, pass});
    QTest::newRow("nothing but products, for anyone")
        << Files{{"fare_products.txt", productHeader + "single,Single,2.5,EUR,,\n"}}
        << QStringList({"PT_ADULT Anyone (0) 2.5: Single (1) 0 > 0"});
    QTest::newRow("no product at all")
        << Files{{"fare_products.txt", productHeader}} << QStringList();
}

void GtfsFeedTest::products()
{
    QFETCH(Files, files);
    QFETCH(QStringList, products);
    const FeedResult result = loadGtfs(files);
    REQUIRE_FEED(result);
    QCOMPARE(dump(*result.feed), products);
}

void GtfsFeedTest::whatGtfsDoesNotSayHasItsDefault()
{
    const FeedResult result = loadGtfs(base);
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->name, QString());
    QCOMPARE(result.feed->columns, 0);
    QVERIFY(!result.feed->trip && result.feed->vehicles.isEmpty());
    for (const FeedProduct& product : result.feed->products) {
        QCOMPARE(product.icon, QString());
        QCOMPARE(product.fareProductColor, QString());
        QCOMPARE(product.fareDiscount, 0.0);
        QCOMPARE(product.pos, -1);
        QVERIFY(!product.isReturnFee && !product.hasExpired && !product.isDaily);
    }
    QVERIFY(result.feed->products.at(0).price == 2.5);

    const QByteArray info = "feed_publisher_name\nPublisher\n";
    const QByteArray agency = "agency_id,agency_name\n1,First\n2,Second\n";
    QCOMPARE(loadGtfs(base + Files{{"feed_info.txt", info}}).feed->name, QString("Publisher"));
    QCOMPARE(loadGtfs(base + Files{{"feed_info.txt", info}, {"agency.txt", agency}}).feed->name,
             QString("First"));
}

void GtfsFeedTest::supportedTypesAreThoseOfTheProducts()
{
    const FeedResult result = loadGtfs(
        base + Files{{"fare_products.txt", productHeader + "a,A,1,EUR,9,\na,A,1,EUR,2,\n"
                                                           "a,A,1,EUR,1,\nb,B,1,EUR,2,\n"},
                     {"fare_leg_rules.txt", ruleHeader},
                     {"rider_categories.txt", categoryHeader + "1,Adult,\n2,Pupil,\n9,Other,\n"}});
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->supportedPassengerTypes, QStringList({"9", "PT_ADULT", "PT_SCHOOLBOY"}));
}

void GtfsFeedTest::mappings_data()
{
    using Map = QMap<QString, QString>;
    QTest::addColumn<Files>("files");
    QTest::addColumn<Map>("given");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("outcome"); // the types of the products, or the problems
    const Files noFile = without(base, {"passenger_types.txt"});
    const Files elsewhere = base + Files{{"../my types.csv", "passenger_type,rider_category_id\n"
                                                             "PT_DISABLED,2\nPT_MILITARY_1,1\n"}};
    const QString types = "one of PT_ADULT, PT_STUDENT_1, PT_SCHOOLBOY, PT_DISABLED, "
                          "PT_MILITARY_1, PT_LFS, PT_STUDENT_2, PT_MILITARY_2";
    QTest::newRow("none") << noFile << Map() << ""
                          << "1,2,1";
    QTest::newRow("file in the folder") << base << Map() << ""
                                        << "PT_ADULT,PT_SCHOOLBOY,PT_ADULT";
    QTest::newRow("a file that is named takes the place of the folder's")
        << elsewhere << Map() << "my types.csv"
        << "PT_MILITARY_1,PT_DISABLED,PT_MILITARY_1";
    QTest::newRow("given alone") << noFile << Map{{"1", "PT_LFS"}} << ""
                                 << "PT_LFS,2,PT_LFS";
    QTest::newRow("given wins over the file in the folder")
        << base << Map{{"2", "PT_STUDENT_2"}} << ""
        << "PT_ADULT,PT_STUDENT_2,PT_ADULT";
    QTest::newRow("given wins over a file that is named")
        << elsewhere << Map{{"1", "PT_ADULT"}} << "my types.csv"
        << "PT_ADULT,PT_DISABLED,PT_ADULT";
    QTest::newRow("a file that is named must be there")
        << base << Map() << "none.csv"
        << "none.csv: No such file or directory, expected a readable file";
    QTest::newRow("given type that is unknown")
        << base << Map{{"1", "PT_GIANT"}} << ""
        << "gtfs: rider category 1: \"PT_GIANT\", expected " + types;
    QTest::newRow("given category that is unknown")
        << base << Map{{"9", "PT_ADULT"}} << ""
        << "gtfs: rider category 9: unknown, expected an id of rider_categories.txt";
    QTest::newRow("type of the file that is unknown, even where it does not win")
        << base + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n1,pt_adult\n"}}
        << Map{{"1", "PT_ADULT"}} << ""
        << "gtfs/passenger_types.txt:2: passenger_type: \"pt_adult\", expected " + types;
    QTest::newRow("category of the file that is unknown")
        << base + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n9,PT_LFS\n"}}
        << Map() << ""
        << "gtfs/passenger_types.txt:2: rider_category_id: \"9\", expected an id of "
           "rider_categories.txt";
    QTest::newRow("category of the file that is given twice")
        << base + Files{{"passenger_types.txt",
                         "rider_category_id,passenger_type\n1,PT_LFS\n1,PT_LFS\n"}}
        << Map() << ""
        << "gtfs/passenger_types.txt:3: rider_category_id: \"1\", expected each category once";
    QTest::newRow("rows of the file without a category")
        << base + Files{{"passenger_types.txt",
                         "rider_category_id,passenger_type\n,PT_LFS\n,PT_LFS\n"}}
        << Map() << ""
        << "gtfs/passenger_types.txt:2: rider_category_id: \"\", expected a text of 1 to 1000 "
           "characters,gtfs/passenger_types.txt:3: rider_category_id: \"\", expected a text of 1 "
           "to "
           "1000 characters";
    QTest::newRow("row of the file without a type")
        << base + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n1,\n"}} << Map()
        << ""
        << "gtfs/passenger_types.txt:2: passenger_type: \"\", expected a text of 1 to 1000 "
           "characters";
}

void GtfsFeedTest::mappings()
{
    using Map = QMap<QString, QString>;
    QFETCH(Files, files);
    QFETCH(Map, given);
    QFETCH(QString, file);
    QFETCH(QString, outcome);
    FeedOptions options;
    options.riderCategories = given;
    options.mappingFile = file;
    const FeedResult result = loadGtfs(files, options);
    QStringList found = result.problemLines();
    if (result.feed)
        for (const FeedProduct& product : result.feed->products)
            found.append(product.passengerTypeCode);
    QCOMPARE(found.join(QLatin1Char(',')), outcome);
}

void GtfsFeedTest::unmappedCategoriesAreNoticedByName()
{
    FeedOptions options;
    options.riderCategories.insert("2", "PT_SCHOOLBOY");
    const Files files =
        without(base, {"passenger_types.txt"}) +
        Files{{"rider_categories.txt", categoryHeader + "1,Adult\x1B[2J,1\n2,Pupil,\n\"3\",,\n"}};
    const FeedResult result = loadGtfs(files, options);
    REQUIRE_FEED(result);
    QCOMPARE(result.noticeLines(),
             QStringList({"gtfs/rider_categories.txt:2: rider category \"1\" (Adult\\u001b[2J) is "
                          "mapped to no passenger type, taken as type 0",
                          "gtfs/rider_categories.txt:4: rider category \"3\" (3) is mapped to no "
                          "passenger type, taken as type 0"}));
}

void GtfsFeedTest::theNetwork()
{
    const FeedResult result = loadGtfs(base + network);
    REQUIRE_FEED(result);
    const Network& read = result.feed->network;

    QCOMPARE(read.stops.size(), 2);
    QCOMPARE(read.stops.at(0).id, QString("A"));
    QCOMPARE(read.stops.at(0).code, QString("01"));
    QCOMPARE(read.stops.at(0).name, QString("Market"));
    QCOMPARE(read.stops.at(0).latitude, 52.5);
    QCOMPARE(read.stops.at(0).longitude, -13.25);
    QCOMPARE(read.stops.at(0).areas, QVector<int>({20, 10}));
    QCOMPARE(read.stops.at(1).areas, QVector<int>({10}));

    QCOMPARE(read.zones.size(), 2);
    QCOMPARE(read.zones.at(0).number, 10);
    QCOMPARE(read.zones.at(0).name, QString("Town"));
    QCOMPARE(read.zones.at(1).number, 20);
    QCOMPARE(read.zones.at(1).name, QString("Hills"));

    QCOMPARE(read.routes.size(), 1);
    QCOMPARE(read.routes.at(0).id, QString("R1"));
    QCOMPARE(read.routes.at(0).shortName, QString("1"));
    QCOMPARE(read.routes.at(0).longName, QString("Market - Station"));
    QCOMPARE(read.routes.at(0).color, QString("#1657ba"));
    QCOMPARE(read.routes.at(0).textColor, QString("#FFFFFF"));

    QCOMPARE(read.trips.size(), 2);
    QCOMPARE(read.trips.at(0).id, QString("T1"));
    QCOMPARE(read.trips.at(0).routeId, QString("R1"));
    QCOMPARE(read.trips.at(0).serviceId, QString("WD"));
    QCOMPARE(read.trips.at(0).headsign, QString("Station"));
    QCOMPARE(read.trips.at(0).shapeId, QString("S"));
    QCOMPARE(read.trips.at(1).shapeId, QString());

    QCOMPARE(read.shapes.size(), 1);
    QCOMPARE(read.shapes.at(0).id, QString("S"));
    QCOMPARE(read.shapes.at(0).points.size(), 2);
    QCOMPARE(read.shapes.at(0).points.at(1).latitude, 52.6);
    QCOMPARE(read.shapes.at(0).points.at(1).longitude, 13.5);

    QStringList times;
    for (const NetworkStopTime& time : read.stopTimes)
        times.append(QStringLiteral("%1 %2 %3 %4-%5")
                         .arg(time.tripId)
                         .arg(time.sequence)
                         .arg(time.stopId)
                         .arg(time.arrival)
                         .arg(time.departure));
    QCOMPARE(times, QStringList({"T1 0 A -1-18000", "T1 4 B 19230--1", "T2 0 B 86399-86400",
                                 "T2 1 A 90600-90605"}));

    // A stop without a position, a route without colours; areas that only stops refer to.
    const FeedResult bare =
        loadGtfs(without(base, {"areas.txt", "fare_leg_rules.txt"}) +
                 Files{{"stops.txt", "stop_id\nA\n"},
                       {"routes.txt", "route_id,route_color\nR,\n"},
                       {"stop_areas.txt", "stop_id,area_id\nA,town\nA,hills\n"}});
    REQUIRE_FEED(bare);
    QVERIFY(qIsNaN(bare.feed->network.stops.at(0).latitude));
    QVERIFY(qIsNaN(bare.feed->network.stops.at(0).longitude));
    QCOMPARE(bare.feed->network.stops.at(0).areas, QVector<int>({1, 2}));
    QCOMPARE(bare.feed->network.routes.at(0).color, QString());
    QVERIFY(bare.feed->network.zones.isEmpty());
    QVERIFY(bare.feed->network.services.isEmpty());

    // Days of the week, and a service of none.
    const FeedResult calendar = loadGtfs(
        base + Files{{"calendar.txt",
                      "service_id,monday,tuesday,wednesday,thursday,friday,saturday,sunday,"
                      "start_date\nWD,1,1,0,1,1,0,0,20240101\nSU,0,0,0,0,0,0,1,\nX,0,0,0,0,0,0,0,"
                      "\n"}});
    REQUIRE_FEED(calendar);
    QStringList services;
    for (const NetworkService& service : calendar.feed->network.services)
        services.append(
            QStringLiteral("%1 %2").arg(service.id).arg(service.days, 7, 2, QLatin1Char('0')));
    QCOMPARE(services, QStringList({"WD 0011011", "SU 1000000", "X 0000000"}));

    // Areas that are no numbers, one of them without a name.
    const FeedResult areas =
        loadGtfs(base + Files{{"areas.txt", "area_id,area_name\nhills,\n10,Old Town\n"},
                              {"fare_leg_rules.txt", "fare_product_id\nsingle\n"}});
    REQUIRE_FEED(areas);
    QCOMPARE(areas.feed->network.zones.size(), 2);
    QCOMPARE(areas.feed->network.zones.at(0).number, 1);
    QCOMPARE(areas.feed->network.zones.at(0).name, QString());
    QCOMPARE(areas.feed->network.zones.at(1).number, 2);
    QCOMPARE(areas.feed->network.zones.at(1).name, QString("Old Town"));
}

void GtfsFeedTest::stopTimesAndShapesInAnyOrder()
{
    const FeedResult result = loadGtfs(
        base + network +
        Files{{"stop_times.txt", "stop_sequence,stop_id,trip_id\n9,A,T2\n10,B,T1\n2,A,T1\n1,B,T2\n"
                                 "2147483647,A,T1\n"},
              {"shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\n"
                             "Z,3,0,30\nS,1,0,1\nZ,1,0,10\nZ,2,0,20\n"}});
    REQUIRE_FEED(result);
    QStringList times;
    for (const NetworkStopTime& time : result.feed->network.stopTimes)
        times.append(QStringLiteral("%1 %2").arg(time.tripId).arg(time.sequence));
    QCOMPARE(times, QStringList({"T1 2", "T1 10", "T1 2147483647", "T2 1", "T2 9"}));
    const QVector<NetworkShape> shapes = result.feed->network.shapes;
    QCOMPARE(shapes.size(), 2);
    QCOMPARE(shapes.at(0).id, QString("Z"));
    QCOMPARE(shapes.at(0).points.size(), 3);
    QCOMPARE(shapes.at(0).points.at(0).latitude, 1.0);
    QCOMPARE(shapes.at(0).points.at(2).latitude, 3.0);
    QCOMPARE(shapes.at(1).points.size(), 1);
}

void GtfsFeedTest::problems_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("problems");
    const auto row = [](const char* name, const Files& changes, const QStringList& problems) {
        QTest::newRow(name) << base + network + changes << problems;
    };
    const auto product = [&](const char* name, const QByteArray& rows,
                             const QStringList& problems) {
        row(name, {{"fare_products.txt", productHeader + rows}, {"fare_leg_rules.txt", ruleHeader}},
            problems);
    };
    QTest::newRow("no fare_products.txt")
        << without(base, {"fare_products.txt"})
        << QStringList("gtfs/fare_products.txt: No such file or directory, expected a readable "
                       "file");
    row("no amount column", {{"fare_products.txt", "fare_product_id,currency\nsingle,EUR\n"}},
        {"gtfs/fare_products.txt:1: amount: missing, expected a column of this name"});
    row("areas.txt that is empty", {{"areas.txt", ""}},
        {"gtfs/areas.txt:1: area_id: missing, expected a column of this name"});
    product("product, category and medium given twice",
            "a,A,1,EUR,1,\nb,B,1,EUR,1,\na,A,2,EUR,1,\n",
            {"gtfs/fare_products.txt:4: fare_product_id: \"a\", expected each fare product once "
             "per rider category and medium"});
    product("two currencies", "a,A,1,EUR,1,\nb,B,1,PLN,1,\n",
            {"gtfs/fare_products.txt:3: currency: \"PLN\", expected EUR, one currency for the "
             "whole feed"});
    product("currency that is no code", "a,A,1,zł,1,\n",
            {"gtfs/fare_products.txt:2: currency: \"zł\", expected a code such as \"EUR\""});
    product("no currency", "a,A,1,,1,\n",
            {"gtfs/fare_products.txt:2: currency: \"\", expected a code such as \"EUR\""});
    product("no id", ",A,1,EUR,1,\n",
            {"gtfs/fare_products.txt:2: fare_product_id: \"\", expected a text of 1 to 1000 "
             "characters"});
    const QString decimal = "expected a decimal number such as 4.50";
    for (const QByteArray& amount : QByteArrayList{"", "\"4,50\"", "4.", ".5", "+4", "-4", "1e3",
                                                   "0x10", "4.50 EUR", "nan", "inf", "4 50"}) {
        QString shown = QString::fromUtf8(amount);
        shown.remove(QLatin1Char('"'));
        product(("amount that is no decimal number: " + amount).constData(),
                "a,A," + amount + ",EUR,1,\n",
                {"gtfs/fare_products.txt:2: amount: \"" + shown + "\", " + decimal});
    }
    product("more decimals than the currency has", "a,A,4.500,EUR,1,\n",
            {"gtfs/fare_products.txt:2: amount: \"4.500\", expected a decimal number from 0 to "
             "1000000 with at most 2 decimals"});
    product("decimals in a currency without", "a,A,450.0,JPY,1,\n",
            {"gtfs/fare_products.txt:2: amount: \"450.0\", expected a decimal number from 0 to "
             "1000000 with at most 0 decimals"});
    product(
        "amount above one million", "a,A,1000000.01,EUR,1,\n",
        {"gtfs/fare_products.txt:2: amount: \"1000000.01\", expected a decimal number from 0 to "
         "1000000 with at most 2 decimals"});
    product("amount that no double can hold", "a,A," + QByteArray(400, '9') + ",EUR,1,\n",
            {"gtfs/fare_products.txt:2: amount: \"" + QString(80, '9') +
             "...\", expected a decimal number from 0 to 1000000 with at most 2 decimals"});
    product("unknown category", "a,A,1,EUR,7,\n",
            {"gtfs/fare_products.txt:2: rider_category_id: \"7\", expected an id of "
             "rider_categories.txt"});
    QTest::newRow("category without a file of categories")
        << without(base, {"rider_categories.txt", "passenger_types.txt"})
        << QStringList({"gtfs/fare_products.txt:2: rider_category_id: \"1\", expected an id of "
                        "rider_categories.txt",
                        "gtfs/fare_products.txt:3: rider_category_id: \"2\", expected an id of "
                        "rider_categories.txt",
                        "gtfs/fare_products.txt:4: rider_category_id: \"1\", expected an id of "
                        "rider_categories.txt"});
    row("unknown medium",
        {{"fare_media.txt", "fare_media_id\np\n"},
         {"fare_products.txt", productHeader + "single,A,1,EUR,1,q\n"}},
        {"gtfs/fare_products.txt:2: fare_media_id: \"q\", expected an id of fare_media.txt"});
    row("medium defined twice", {{"fare_media.txt", "fare_media_id\np\np\n"}},
        {"gtfs/fare_media.txt:3: fare_media_id: \"p\", expected each id once"});
    row("category defined twice", {{"rider_categories.txt", categoryHeader + "1,,\n2,,\n1,,\n"}},
        {"gtfs/rider_categories.txt:4: rider_category_id: \"1\", expected each id once"});
    row("two default categories", {{"rider_categories.txt", categoryHeader + "1,,1\n2,,1\n"}},
        {"gtfs/rider_categories.txt:3: is_default_fare_category: \"1\", expected one default "
         "category, which is 1"});
    row("default that is neither 0 nor 1", {{"rider_categories.txt", categoryHeader + "1,,2\n2,,"}},
        {"gtfs/rider_categories.txt:2: is_default_fare_category: \"2\", expected an integer from 0 "
         "to 1"});
    row("service defined twice, and a day that is none",
        {{"calendar.txt", "service_id,monday,tuesday,wednesday,thursday,friday,saturday,sunday\n"
                          "W,1,1,1,1,1,0,0\nW,1,1,1,1,1,0,2\n"}},
        {"gtfs/calendar.txt:3: sunday: \"2\", expected an integer from 0 to 1",
         "gtfs/calendar.txt:3: service_id: \"W\", expected each id once"});
    row("calendar without Sundays",
        {{"calendar.txt", "service_id,monday,tuesday,wednesday,thursday,friday,saturday\n"}},
        {"gtfs/calendar.txt:1: sunday: missing, expected a column of this name"});
    row("area defined twice", {{"areas.txt", "area_id\n10\n20\n10\n"}},
        {"gtfs/areas.txt:4: area_id: \"10\", expected each id once"});
    row("unknown areas and product in a leg rule",
        {{"fare_leg_rules.txt", ruleHeader + "single,10,30\nsingle,40,10\ncouple,10,20\n"}},
        {"gtfs/fare_leg_rules.txt:2: to_area_id: \"30\", expected an id of areas.txt",
         "gtfs/fare_leg_rules.txt:3: from_area_id: \"40\", expected an id of areas.txt",
         "gtfs/fare_leg_rules.txt:4: fare_product_id: \"couple\", expected an id of "
         "fare_products.txt"});
    row("unknown area and stop of a stop", {{"stop_areas.txt", "area_id,stop_id\n10,C\n30,A\n"}},
        {"gtfs/stop_areas.txt:2: stop_id: \"C\", expected an id of stops.txt",
         "gtfs/stop_areas.txt:3: area_id: \"30\", expected an id of areas.txt"});
    row("stop defined twice", {{"stops.txt", "stop_id\nA\nB\nA\n"}},
        {"gtfs/stops.txt:4: stop_id: \"A\", expected each id once"});
    row("stops that are not on this earth",
        {{"stops.txt", "stop_id,stop_lat,stop_lon\nA,90.01,0\nB,0,\"12,5\"\nC,nan,-180.5\n"}},
        {"gtfs/stops.txt:2: stop_lat: \"90.01\", expected a number from -90 to 90",
         "gtfs/stops.txt:3: stop_lon: \"12,5\", expected a number from -180 to 180",
         "gtfs/stops.txt:4: stop_lat: \"nan\", expected a number from -90 to 90",
         "gtfs/stops.txt:4: stop_lon: \"-180.5\", expected a number from -180 to 180"});
    row("half a position", {{"stops.txt", "stop_id,stop_lat,stop_lon\nA,,\nB,54.49,\nC,,11.19\n"}},
        {"gtfs/stops.txt:3: stop_lon: \"\", expected a value beside stop_lat",
         "gtfs/stops.txt:4: stop_lat: \"\", expected a value beside stop_lon"});
    row("position without a column for the longitude",
        {{"stops.txt", "stop_id,stop_lat\nA,54.49\nB,\n"}},
        {"gtfs/stops.txt:2: stop_lon: \"\", expected a value beside stop_lat"});
    row("route defined twice", {{"routes.txt", "route_id\nR1\nR1\n"}},
        {"gtfs/routes.txt:3: route_id: \"R1\", expected each id once"});
    row("colour that is none", {{"routes.txt", "route_id,route_color\nR1,#1657ba\n"}},
        {"gtfs/routes.txt:2: route_color: \"#1657ba\", expected six hexadecimal digits such as "
         "1657BA"});
    row("unknown route and shape of a trip",
        {{"trips.txt", "route_id,trip_id,shape_id\nR1,T1,S\nR2,T2,X\n"}},
        {"gtfs/trips.txt:3: route_id: \"R2\", expected an id of routes.txt",
         "gtfs/trips.txt:3: shape_id: \"X\", expected an id of shapes.txt"});
    row("trip defined twice", {{"trips.txt", "route_id,trip_id\nR1,T1\nR1,T2\nR1,T2\n"}},
        {"gtfs/trips.txt:4: trip_id: \"T2\", expected each id once"});
    const QByteArray timeHeader = "trip_id,stop_sequence,stop_id,arrival_time,departure_time\n";
    row("unknown trip and stop of a stop time",
        {{"stop_times.txt", timeHeader + "T3,0,A,,\nT3,1,A,,\nT1,0,C,,\n"}},
        {"gtfs/stop_times.txt:2: trip_id: \"T3\", expected an id of trips.txt",
         "gtfs/stop_times.txt:3: trip_id: \"T3\", expected an id of trips.txt",
         "gtfs/stop_times.txt:4: stop_id: \"C\", expected an id of stops.txt"});
    row("sequence that a trip has twice",
        {{"stop_times.txt", timeHeader + "T1,1,A,,\nT2,1,A,,\nT1,1,B,,\n"}},
        {"gtfs/stop_times.txt:4: stop_sequence: \"1\", expected each number once, it stands in "
         "line 2 too"});
    row("sequences that are none",
        {{"stop_times.txt", timeHeader + "T1,-1,A,,\nT1,1.5,A,,\nT1,,A,,\n"}},
        {"gtfs/stop_times.txt:2: stop_sequence: \"-1\", expected an integer from 0 to 2147483647",
         "gtfs/stop_times.txt:3: stop_sequence: \"1.5\", expected an integer from 0 to 2147483647",
         "gtfs/stop_times.txt:4: stop_sequence: \"\", expected an integer from 0 to 2147483647"});
    row("times that are none",
        {{"stop_times.txt", timeHeader + "T1,0,A,5:00,\nT1,1,A,5:60:00,5:00:60\n"
                                         "T1,2,A,-5:00:00,5:0:00\nT1,3,A,1000:00:00,999:59:59\n"}},
        {"gtfs/stop_times.txt:2: arrival_time: \"5:00\", expected a time such as 8:05:00 or "
         "25:10:00",
         "gtfs/stop_times.txt:3: arrival_time: \"5:60:00\", expected a time such as 8:05:00 or "
         "25:10:00",
         "gtfs/stop_times.txt:3: departure_time: \"5:00:60\", expected a time such as 8:05:00 or "
         "25:10:00",
         "gtfs/stop_times.txt:4: arrival_time: \"-5:00:00\", expected a time such as 8:05:00 or "
         "25:10:00",
         "gtfs/stop_times.txt:4: departure_time: \"5:0:00\", expected a time such as 8:05:00 or "
         "25:10:00",
         "gtfs/stop_times.txt:5: arrival_time: \"1000:00:00\", expected a time such as 8:05:00 or "
         "25:10:00"});
    row("sequence that a shape has twice",
        {{"shapes.txt",
          "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\nS,1,1,3\nS,1,1,3\n"}},
        {"gtfs/shapes.txt:3: shape_pt_sequence: \"3\", expected each number once, it stands in "
         "line 2 too"});
    row("point without a latitude",
        {{"shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\nS,,1,3\n"}},
        {"gtfs/shapes.txt:2: shape_pt_lat: \"\", expected a number from -90 to 90"});
    row("file that ends within a letter", {{"areas.txt", "area_id,area_name\n10,\n20,\xC3"}},
        {"gtfs/areas.txt:3: bytes that are no UTF-8, expected text in UTF-8"});
    row("bytes that are no UTF-8", {{"areas.txt", "area_id,area_name\n10,\xB3\n20,\n"}},
        {"gtfs/areas.txt:2: bytes that are no UTF-8, expected text in UTF-8"});
    row("text that is too long",
        {{"areas.txt", "area_id\n10\n20\n" + QByteArray(1001, 'a') + '\n'}},
        {"gtfs/areas.txt:4: area_id: \"" + QString(80, 'a') +
         "...\", expected a text of 1 to 1000 characters"});
}

void GtfsFeedTest::problems()
{
    QFETCH(Files, files);
    QFETCH(QStringList, problems);
    QCOMPARE(loadGtfs(files).problemLines(), problems);
}

void GtfsFeedTest::everyProblemInOnePass()
{
    const FeedResult result =
        loadGtfs(base + network +
                 Files{{"fare_products.txt", productHeader + "single,,x,EUR,1,\n"},
                       {"rider_categories.txt", categoryHeader + "1,A\"B,\n2,,5\n"},
                       {"stop_areas.txt", "area_id,stop_id\n77,A\n"}});
    QVERIFY(!result.feed);
    QCOMPARE(result.problems.size(), 4);
    const FeedProblem& amount = result.problems.at(2);
    QCOMPARE(amount.file, QString("gtfs/fare_products.txt"));
    QCOMPARE(amount.line, 2);
    QCOMPARE(amount.field, QString("amount"));
    QCOMPARE(amount.pointer, QString());
    QCOMPARE(amount.value, QString("\"x\""));
    QCOMPARE(amount.expected, QString("a decimal number such as 4.50"));
}

void GtfsFeedTest::aBrokenFileRaisesNoFalseReferences()
{
    const Files broken = base + network;
    for (auto file = broken.begin(); file != broken.end(); ++file) {
        Files files = broken;
        files.insert(file.key(), file.value() + "\"x\"y\n");
        QCOMPARE(loadGtfs(files).problems.size(), 1);
    }
}

void GtfsFeedTest::limitsAreInclusive()
{
    FeedOptions options;
    options.limits.csvBytes = 300;
    options.limits.csvRecords = 3;
    options.limits.csvColumns = 5;
    options.limits.textLength = 12;
    options.limits.entries = 3;
    const auto lines = [&](const Files& files) { return loadGtfs(files, options).problemLines(); };
    QCOMPARE(lines(base), QStringList());
    QCOMPARE(lines(base + Files{{"areas.txt", base["areas.txt"].leftJustified(300, '\n')}}),
             QStringList());
    QCOMPARE(lines(base + Files{{"areas.txt", base["areas.txt"].leftJustified(301, '\n')}}),
             QStringList("gtfs/areas.txt: 301 bytes, expected at most 300 bytes"));
    QCOMPARE(lines(base + Files{{"areas.txt", "area_id\n10\n20\n30\n"}}), QStringList());
    QCOMPARE(lines(base + Files{{"areas.txt", "area_id\n10\n20\n30\n40\n"}}),
             QStringList("gtfs/areas.txt:5: a further record, expected at most 3 records"));
    QCOMPARE(lines(base + Files{{"areas.txt", "area_id,a,b,c,d,e\n10\n20\n"}}),
             QStringList("gtfs/areas.txt:1: 6 columns, expected at most 5 columns"));
    QCOMPARE(lines(base + Files{{"areas.txt", "area_id\n10\n20\n123456789012\n"}}), QStringList());
    QCOMPARE(lines(base + Files{{"areas.txt", "area_id\n10\n20\n1234567890123\n"}}),
             QStringList("gtfs/areas.txt:4: area_id: \"1234567890123\", expected a text of 1 to 12 "
                         "characters"));
    // A column that is not read may be as long as it likes.
    QCOMPARE(lines(base + Files{{"areas.txt", "area_id,area_desc\n10,1234567890123\n20\n"}}),
             QStringList());
    QCOMPARE(lines(base + Files{{"fare_leg_rules.txt", ruleHeader + "pass,10,20\npass,20,10\n"}}),
             QStringList("gtfs/fare_products.txt: 4 products over all areas, expected at most 3"));
}

void GtfsFeedTest::ruleAndProductNumbersMayNotMultiplyWithoutBound()
{
    QByteArray products = "fare_product_id,amount,currency,fare_media_id\n";
    QByteArray rules = ruleHeader;
    for (int i = 0; i < 20'000; ++i) {
        products += "p,1,EUR," + QByteArray::number(i) + '\n';
        rules += "p," + QByteArray::number(i + 1) + ",1\n";
    }
    QCOMPARE(
        loadGtfs({{"fare_products.txt", products}, {"fare_leg_rules.txt", rules}}).problemLines(),
        QStringList("gtfs/fare_products.txt: 400000000 products over all areas, expected at "
                    "most 100000"));
}

QTEST_GUILESS_MAIN(GtfsFeedTest)
#include "tst_gtfs_feed.moc"
