#include "Amount.h"
#include "FeedFiles.h"
#include "GtfsCases.h"
#include "OfferProducts.h"
#include "OfferQueryText.h"

using namespace rivo::feed;

namespace
{

using Files = GtfsCase::Files;

/// The feed of the first of the cases of products, which has no network.
const Files& base()
{
    static const Files files = GtfsCases::read(FEED_TEST_DATA "/gtfs/products.cases").first().files;
    return files;
}

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

QString listed(const QVariantList& values)
{
    QStringList texts;
    for (const QVariant& value : values)
        texts.append(value.toString());
    return '[' + texts.join(',') + ']';
}

QStringList dump(const QVector<FeedFareProduct>& catalogue)
{
    QStringList lines;
    for (const FeedFareProduct& entry : catalogue)
        lines.append(QStringLiteral("* %1 (%2) %3 %4 %5 %6 %7")
                         .arg(entry.description)
                         .arg(entry.id)
                         .arg(entry.price)
                         .arg(listed(entry.passengerTypes), listed(entry.ticketMaterial),
                              listed(entry.paymentMethod), entry.paperTicket ? "paper" : "")
                         .trimmed());
    return lines;
}

/// "= product category amount from>to kind media", "- product reason" and "! error".
QStringList dump(const Tariff& tariff, const OfferList& list)
{
    QStringList lines;
    for (const QString& error : list.errors)
        lines.append("! " + error);
    for (const Offer& offer : list.offers) {
        QStringList media;
        for (const int medium : offer.media)
            media.append(tariff.mediumIds.text(medium));
        lines.append(
            QStringLiteral("= %1 %2 %3 %4>%5 %6 %7")
                .arg(tariff.productIds.text(offer.product), tariff.categoryIds.text(offer.category),
                     amountText(offer.amount, tariff.decimals), tariff.areaIds.text(offer.fromArea),
                     tariff.areaIds.text(offer.toArea), offer.isPass ? "pass" : "leg",
                     media.join(','))
                .trimmed());
    }
    for (const LeftOutProduct& product : list.leftOut)
        lines.append("- " + tariff.productIds.text(product.product) + ' ' +
                     reasonText(product.reason));
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
    void cases_data();
    void cases();
    void whatGtfsDoesNotSayHasItsDefault();
    void operatorsOfRoutes_data();
    void operatorsOfRoutes();
    void timesAtWhichTimeframesTurn();
    void supportedTypesAreThoseOfTheProducts();
    void mappings_data();
    void mappings();
    void theNetwork();
    void stopTimesAndShapesInAnyOrder();
    void onlyTheTimetableOfSomeRoutesIsKept();
    void everyProblemInOnePass();
    void aBrokenFileRaisesNoFalseReferences();
    void limitsAreInclusive();
    void aCatalogueBeyondTheLimitIsLeftOut();
    void ruleAndProductNumbersMayNotMultiplyWithoutBound();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void GtfsFeedTest::theLakesideFeed()
{
    const FeedResult result = load(QStringLiteral(FEED_TEST_DATA "/gtfs-lakeside"));
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QCOMPARE(feed.name, QStringLiteral("Lakeside Communal Buses"));
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
                 "PT_ADULT Anyone (0) 120: Monthly pass (7) 0 > 0",
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

void GtfsFeedTest::cases_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("expected");
    for (const char* name : {"products", "problems", "offers", "catalogue"}) {
        const auto cases =
            GtfsCases::read(QStringLiteral(FEED_TEST_DATA "/gtfs/%1.cases").arg(name));
        for (const GtfsCase& entry : cases)
            QTest::addRow("%s: %s", name, qPrintable(entry.name)) << entry.files << entry.expected;
    }
}

void GtfsFeedTest::cases()
{
    QFETCH(Files, files);
    QFETCH(QStringList, expected);
    const FeedResult result = loadGtfs(files);
    QStringList found;
    for (const QString& line : result.problemLines())
        found.append("> " + line);
    const QStringList queries = expected.filter(QRegularExpression("^\\? "));
    if (result.feed && queries.isEmpty() && !expected.filter(QRegularExpression("^=")).isEmpty()) {
        for (const QString& line : dump(*result.feed))
            found.append("= " + printable(line));
    }
    if (result.feed && !expected.filter(QRegularExpression("^\\*")).isEmpty())
        found.append(dump(result.feed->fareProducts));
    for (const QString& line : result.noticeLines())
        found.append("~ " + line);
    for (const QString& query : queries) {
        QVERIFY(result.feed);
        found.append(query);
        const Tariff& tariff = *result.feed->tariff;
        found.append(dump(tariff, offersOf(tariff, queryOf(query.mid(2)))));
    }
    found.replaceInStrings("gtfs/", "");
    QCOMPARE(found.join('\n'), expected.join('\n'));
}

void GtfsFeedTest::whatGtfsDoesNotSayHasItsDefault()
{
    const FeedResult result = loadGtfs(base());
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
    QCOMPARE(loadGtfs(base() + Files{{"feed_info.txt", info}}).feed->name, QString("Publisher"));
    QCOMPARE(loadGtfs(base() + Files{{"agency.txt", agency}}).feed->name, QString("First"));
    QCOMPARE(loadGtfs(base() + Files{{"feed_info.txt", info}, {"agency.txt", agency}}).feed->name,
             QString("Publisher"));
}

void GtfsFeedTest::operatorsOfRoutes_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("operators"); // of three routes, and of none
    const Files files = base() + Files{{"agency.txt", "agency_id,agency_name\n1,First\n2,Second\n"},
                                       {"routes.txt", "route_id,agency_id\nA,1\nB,2\nC,\n"}};
    const Files published = files + Files{{"feed_info.txt", "feed_publisher_name\nPublisher\n"}};
    QTest::newRow("the agency of the route")
        << files << QStringList{"First", "Second", "First", "First"};
    QTest::newRow("the publisher goes before")
        << published << QStringList{"Publisher", "Publisher", "Publisher", "Publisher"};
    QTest::newRow("of two publishers the first goes before")
        << files + Files{{"feed_info.txt", "feed_publisher_name\nPublisher\nOther\n"}}
        << QStringList{"Publisher", "Publisher", "Publisher", "Publisher"};
    QTest::newRow("a publisher without a name does not")
        << files + Files{{"feed_info.txt", "feed_publisher_name\n\n"}}
        << QStringList{"First", "Second", "First", "First"};
    QTest::newRow("an agency without a name is that of the feed")
        << files + Files{{"agency.txt", "agency_id,agency_name\n1,First\n2,\n"}}
        << QStringList{"First", "First", "First", "First"};
}

void GtfsFeedTest::operatorsOfRoutes()
{
    QFETCH(Files, files);
    const FeedResult result = loadGtfs(files);
    REQUIRE_FEED(result);
    QStringList operators;
    for (const int route : {0, 1, 2, -1})
        operators.append(operatorOf(*result.feed, route));
    QTEST(operators, "operators");
}

void GtfsFeedTest::timesAtWhichTimeframesTurn()
{
    QVERIFY(loadGtfs(base()).feed->tariff->turningPoints().isEmpty());
    const FeedResult result = loadGtfs(
        base() + Files{{"timeframes.txt", "timeframe_group_id,start_time,end_time,service_id\n"
                                          "day,6:00:00,09:30:15,W\nday,,,W\n"
                                          "night,9:30:15,24:00:00,W\n"},
                       {"calendar_dates.txt", "service_id,date,exception_type\nW,20260302,1\n"}});
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->tariff->turningPoints(),
             QVector<int>({0, 6 * 3600, 9 * 3600 + 30 * 60 + 15, 24 * 3600}));
}

void GtfsFeedTest::supportedTypesAreThoseOfTheProducts()
{
    const FeedResult result = loadGtfs(
        base() +
        Files{{"fare_products.txt", productHeader + "a,A,1,EUR,9,\na,A,1,EUR,2,\n"
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
    const Files noFile = without(base(), {"passenger_types.txt"});
    const Files elsewhere = base() + Files{{"../my types.csv", "passenger_type,rider_category_id\n"
                                                               "PT_DISABLED,2\nPT_MILITARY_1,1\n"}};
    const QString types = "one of PT_ADULT, PT_STUDENT_1, PT_SCHOOLBOY, PT_DISABLED, "
                          "PT_MILITARY_1, PT_LFS, PT_STUDENT_2, PT_MILITARY_2";
    QTest::newRow("none") << noFile << Map() << ""
                          << "1,2,1";
    QTest::newRow("file in the folder") << base() << Map() << ""
                                        << "PT_ADULT,PT_SCHOOLBOY,PT_ADULT";
    QTest::newRow("a file that is named takes the place of the folder's")
        << elsewhere << Map() << "my types.csv"
        << "PT_MILITARY_1,PT_DISABLED,PT_MILITARY_1";
    QTest::newRow("given alone") << noFile << Map{{"1", "PT_LFS"}} << ""
                                 << "PT_LFS,2,PT_LFS";
    QTest::newRow("given wins over the file in the folder")
        << base() << Map{{"2", "PT_STUDENT_2"}} << ""
        << "PT_ADULT,PT_STUDENT_2,PT_ADULT";
    QTest::newRow("given wins over a file that is named")
        << elsewhere << Map{{"1", "PT_ADULT"}} << "my types.csv"
        << "PT_ADULT,PT_DISABLED,PT_ADULT";
    QTest::newRow("a file that is named must be there")
        << base() << Map() << "none.csv"
        << "none.csv: No such file or directory, expected a readable file";
    QTest::newRow("given type that is unknown")
        << base() << Map{{"1", "PT_GIANT"}} << ""
        << "gtfs: rider category 1: \"PT_GIANT\", expected " + types;
    QTest::newRow("given category that is unknown")
        << base() << Map{{"9", "PT_ADULT"}} << ""
        << "gtfs: rider category 9: unknown, expected an id of rider_categories.txt";
    QTest::newRow("type of the file that is unknown, even where it does not win")
        << base() + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n1,pt_adult\n"}}
        << Map{{"1", "PT_ADULT"}} << ""
        << "gtfs/passenger_types.txt:2: passenger_type: \"pt_adult\", expected " + types;
    QTest::newRow("category of the file that is unknown")
        << base() + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n9,PT_LFS\n"}}
        << Map() << ""
        << "gtfs/passenger_types.txt:2: rider_category_id: \"9\", expected an id of "
           "rider_categories.txt";
    QTest::newRow("category of the file that is given twice")
        << base() + Files{{"passenger_types.txt",
                           "rider_category_id,passenger_type\n1,PT_LFS\n1,PT_LFS\n"}}
        << Map() << ""
        << "gtfs/passenger_types.txt:3: rider_category_id: \"1\", expected each category once";
    QTest::newRow("rows of the file without a category")
        << base() + Files{{"passenger_types.txt",
                           "rider_category_id,passenger_type\n,PT_LFS\n,PT_LFS\n"}}
        << Map() << ""
        << "gtfs/passenger_types.txt:2: rider_category_id: \"\", expected a text of 1 to 1000 "
           "characters,gtfs/passenger_types.txt:3: rider_category_id: \"\", expected a text of 1 "
           "to "
           "1000 characters";
    QTest::newRow("row of the file without a type")
        << base() + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n1,\n"}}
        << Map() << ""
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

void GtfsFeedTest::theNetwork()
{
    const FeedResult result = loadGtfs(base() + network);
    REQUIRE_FEED(result);
    const Network& read = result.feed->network;

    QCOMPARE(read.stops.size(), 2);
    QCOMPARE(read.stops.at(0).id, QString("A"));
    QCOMPARE(read.stops.at(0).code, QString("01"));
    QCOMPARE(read.stops.at(0).name, QString("Market"));
    QCOMPARE(read.stops.at(0).latitude, 52.5);
    QCOMPARE(read.stops.at(0).longitude, -13.25);
    QCOMPARE(read.stops.at(0).areas, QVector<int>({10, 20}));
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

    // A stop without a position, a route without colours.
    const FeedResult bare = loadGtfs(
        without(base(), {"areas.txt", "fare_leg_rules.txt"}) +
        Files{{"stops.txt", "stop_id\nA\n"}, {"routes.txt", "route_id,route_color\nR,\n"}});
    REQUIRE_FEED(bare);
    QVERIFY(qIsNaN(bare.feed->network.stops.at(0).latitude));
    QVERIFY(qIsNaN(bare.feed->network.stops.at(0).longitude));
    QVERIFY(bare.feed->network.stops.at(0).areas.isEmpty());
    QCOMPARE(bare.feed->network.routes.at(0).color, QString());
    QVERIFY(bare.feed->network.zones.isEmpty());
    QVERIFY(bare.feed->network.services.isEmpty());

    // Days of the week, and a service of none.
    const FeedResult calendar = loadGtfs(
        base() + Files{{"calendar.txt",
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
        loadGtfs(base() + Files{{"areas.txt", "area_id,area_name\nhills,\n10,Old Town\n"},
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
        base() + network +
        Files{{"stop_times.txt", "stop_sequence,stop_id,trip_id\n9,A,T2\n10,B,T1\n2,A,T1\n1,B,T2\n"
                                 "2147483647,A,T1\n"},
              {"shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\n"
                             "S,3,0,30\nZ,1,0,1\nS,1,0,10\nS,2,0,20\n"}});
    REQUIRE_FEED(result);
    QStringList times;
    for (const NetworkStopTime& time : result.feed->network.stopTimes)
        times.append(QStringLiteral("%1 %2").arg(time.tripId).arg(time.sequence));
    QCOMPARE(times, QStringList({"T2 1", "T2 9", "T1 2", "T1 10", "T1 2147483647"}));
    const QVector<NetworkShape> shapes = result.feed->network.shapes;
    QCOMPARE(shapes.size(), 1); // no trip has the other one
    QCOMPARE(shapes.at(0).id, QString("S"));
    QCOMPARE(shapes.at(0).points.size(), 3);
    QCOMPARE(shapes.at(0).points.at(0).latitude, 1.0);
    QCOMPARE(shapes.at(0).points.at(2).latitude, 3.0);
}

void GtfsFeedTest::onlyTheTimetableOfSomeRoutesIsKept()
{
    const Files files = GtfsCases::read(FEED_TEST_DATA "/gtfs/problems.cases").first().files;
    for (const QStringList& routes : {QStringList{}, QStringList{"R2", "none"}}) {
        FeedOptions options;
        options.timetableOf = routes;
        const FeedResult result = loadGtfs(files, options);
        REQUIRE_FEED(result);
        const Network& kept = result.feed->network;
        QCOMPARE(kept.routes.size(), 2);
        QCOMPARE(kept.trips.size(), routes.isEmpty() ? 0 : 1);
        QCOMPARE(kept.stopTimes.size(), routes.isEmpty() ? 0 : 2);
        QVERIFY(kept.shapes.isEmpty());
        const QString unknown = "no route \"none\", which the timetable is wanted of";
        QCOMPARE(result.noticeLines().filter(unknown).size(), routes.isEmpty() ? 0 : 1);
        const OfferList offers = offersOf(*result.feed->tariff, queryOf("R1 A 2026-03-02T12:00"));
        QCOMPARE(offers.offers.size(), 1);
    }
}

void GtfsFeedTest::everyProblemInOnePass()
{
    const FeedResult result =
        loadGtfs(base() + network +
                 Files{{"fare_products.txt", productHeader + "single,,x,EUR,1,\n"},
                       {"rider_categories.txt", categoryHeader + "1,A\"B,\n2,,5\n"},
                       {"stop_areas.txt", "area_id,stop_id\n77,A\n"}});
    QVERIFY(!result.feed);
    QCOMPARE(result.problems.size(), 4);
    const FeedProblem& amount = result.problems.at(3);
    QCOMPARE(amount.file, QString("gtfs/fare_products.txt"));
    QCOMPARE(amount.line, 2);
    QCOMPARE(amount.field, QString("amount"));
    QCOMPARE(amount.pointer, QString());
    QCOMPARE(amount.value, QString("\"x\""));
    QCOMPARE(amount.expected, QString("a decimal number such as 4.50"));
}

void GtfsFeedTest::aBrokenFileRaisesNoFalseReferences()
{
    const Files broken = GtfsCases::read(FEED_TEST_DATA "/gtfs/problems.cases").first().files;
    for (auto file = broken.begin(); file != broken.end(); ++file) {
        Files files = broken;
        files.insert(file.key(), file.value() + "\"x\"y\n");
        const FeedResult result = loadGtfs(files);
        const bool isOfMap = file.key() == "shapes.txt";
        QCOMPARE(result.problems.size() + result.notices.size(), 1);
        QCOMPARE(result.notices.size(), isOfMap ? 1 : 0);
    }
}

void GtfsFeedTest::limitsAreInclusive()
{
    FeedOptions options;
    options.limits.csvBytes = 300;
    options.limits.tableRecords = 3;
    options.limits.csvRecords = 4;
    options.limits.csvColumns = 6;
    options.limits.textLength = 12;
    options.limits.entries = 3;
    const auto lines = [&](const Files& files) {
        const FeedResult result = loadGtfs(files, options);
        return result.problemLines() + result.noticeLines();
    };
    const auto areas = [](const QByteArray& text) { return base() + Files{{"areas.txt", text}}; };
    QCOMPARE(lines(base()), QStringList());
    QCOMPARE(lines(areas(base()["areas.txt"].leftJustified(300, '\n'))), QStringList());
    QCOMPARE(lines(areas(base()["areas.txt"].leftJustified(301, '\n'))),
             QStringList("gtfs/areas.txt: 301 bytes, expected at most 300 bytes"));
    QCOMPARE(lines(areas("area_id\n10\n20\n30\n")), QStringList());
    QCOMPARE(lines(areas("area_id\n10\n20\n30\n40\n")),
             QStringList("gtfs/areas.txt:5: a further record, expected at most 3 records"));
    QCOMPARE(lines(areas("area_id,a,b,c,d,e,f\n10\n20\n")),
             QStringList("gtfs/areas.txt:1: 7 columns, expected at most 6 columns"));
    QCOMPARE(lines(areas("area_id\n10\n20\n123456789012\n")), QStringList());
    QCOMPARE(lines(areas("area_id\n10\n20\n1234567890123\n")),
             QStringList("gtfs/areas.txt:4: area_id: \"1234567890123\", expected a text of 1 to 12 "
                         "characters"));
    // A column that is not read may be as long as it likes.
    QCOMPARE(lines(areas("area_id,area_desc\n10,1234567890123\n20\n")), QStringList());
    QCOMPARE(lines(base() + Files{{"fare_leg_rules.txt", ruleHeader + "pass,10,20\npass,20,10\n"}}),
             QStringList("gtfs: more than 3 products over all areas: only those of one stop can be "
                         "shown"));
    options.limits.textBytes = 115;
    QCOMPARE(lines(base()), QStringList());
    --options.limits.textBytes;
    QCOMPARE(lines(base()), QStringList("gtfs/fare_products.txt: more texts than a feed may have, "
                                        "expected at most 114 bytes of them in all files"));
    options = FeedOptions();
    options.limits.csvRecords = 3;
    const QByteArray times = "trip_id,stop_id,stop_sequence\nT1,A,1\nT1,A,2\nT1,A,3\n";
    QCOMPARE(lines(base() + network + Files{{"stop_times.txt", times}}), QStringList());
    QCOMPARE(lines(base() + network + Files{{"stop_times.txt", times + "T1,A,4\n"}}),
             QStringList("gtfs/stop_times.txt:5: a further record, expected at most 3 records"));
    options.limits.feedFiles = 1;
    QVERIFY(!lines(base()).isEmpty());
}

void GtfsFeedTest::aCatalogueBeyondTheLimitIsLeftOut()
{
    FeedOptions options;
    options.limits.entries = loadGtfs(base()).feed->fareProducts.size();
    QVERIFY(options.limits.entries > 1);
    QCOMPARE(loadGtfs(base(), options).feed->fareProducts.size(), options.limits.entries);
    --options.limits.entries;
    const FeedResult result = loadGtfs(base(), options);
    REQUIRE_FEED(result);
    QVERIFY(result.feed->fareProducts.isEmpty());
}

void GtfsFeedTest::ruleAndProductNumbersMayNotMultiplyWithoutBound()
{
    QByteArray products = "fare_product_id,amount,currency,rider_category_id\n";
    QByteArray categories = "rider_category_id\n";
    QByteArray areas = "area_id\n";
    QByteArray rules = ruleHeader;
    for (int i = 0; i < 20'000; ++i) {
        const QByteArray id = QByteArray::number(i + 1);
        products += "p,1,EUR," + id + '\n';
        categories += id + '\n';
        areas += id + '\n';
        rules += "p," + id + ",1\n";
    }
    const FeedResult result = loadGtfs({{"fare_products.txt", products},
                                        {"fare_leg_rules.txt", rules},
                                        {"rider_categories.txt", categories},
                                        {"areas.txt", areas},
                                        {"stops.txt", "stop_id\nS\n"},
                                        {"stop_areas.txt", "stop_id,area_id\nS,1\n"},
                                        {"routes.txt", "route_id\nR\n"}});
    REQUIRE_FEED(result);
    QVERIFY(result.feed->products.isEmpty());
    QCOMPARE(result.feed->supportedPassengerTypes.size(), 20'000);
    QCOMPARE(result.feed->fareProducts.size(), 1);
    QCOMPARE(everythingSold(*result.feed->tariff).errors, QStringList("more than 100000 offers"));
    QCOMPARE(offersOf(*result.feed->tariff, queryOf("R S 2026-03-02T12:00")).offers.size(), 20'000);
}

QTEST_GUILESS_MAIN(GtfsFeedTest)
#include "tst_gtfs_feed.moc"
