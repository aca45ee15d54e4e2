#include "Amount.h"
#include "FeedFiles.h"
#include "GtfsFiles.h"
#include "OfferProducts.h"
#include "OfferQueryText.h"
#include "Table.h"

using namespace rivo::feed;

namespace
{

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
    addColumns<Files, QStringList>("files", "expected");
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
    // operators: of three routes, and of none
    const Table<Files, QStringList> row("files", "operators");
    const Files files = base() + Files{{"agency.txt", "agency_id,agency_name\n1,First\n2,Second\n"},
                                       {"routes.txt", "route_id,agency_id\nA,1\nB,2\nC,\n"}};
    const Files published = files + Files{{"feed_info.txt", "feed_publisher_name\nPublisher\n"}};
    row("the agency of the route", files, {"First", "Second", "First", "First"});
    row("the publisher goes before", published,
        {"Publisher", "Publisher", "Publisher", "Publisher"});
    row("of two publishers the first goes before",
        files + Files{{"feed_info.txt", "feed_publisher_name\nPublisher\nOther\n"}},
        {"Publisher", "Publisher", "Publisher", "Publisher"});
    row("a publisher without a name does not",
        files + Files{{"feed_info.txt", "feed_publisher_name\n\n"}},
        {"First", "Second", "First", "First"});
    row("an agency without a name is that of the feed",
        files + Files{{"agency.txt", "agency_id,agency_name\n1,First\n2,\n"}},
        {"First", "First", "First", "First"});
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
    // outcome: the types of the products, or the problems
    const Table<Files, Map, QString, QString> row("files", "given", "file", "outcome");
    const Files noFile = without(base(), {"passenger_types.txt"});
    const Files elsewhere = base() + Files{{"../my types.csv", "passenger_type,rider_category_id\n"
                                                               "PT_DISABLED,2\nPT_MILITARY_1,1\n"}};
    const QString types = "one of PT_ADULT, PT_STUDENT_1, PT_SCHOOLBOY, PT_DISABLED, "
                          "PT_MILITARY_1, PT_LFS, PT_STUDENT_2, PT_MILITARY_2";
    row("none", noFile, {}, "", "1,2,1");
    row("file in the folder", base(), {}, "", "PT_ADULT,PT_SCHOOLBOY,PT_ADULT");
    row("a file that is named takes the place of the folder's", elsewhere, {}, "my types.csv",
        "PT_MILITARY_1,PT_DISABLED,PT_MILITARY_1");
    row("given alone", noFile, Map{{"1", "PT_LFS"}}, "", "PT_LFS,2,PT_LFS");
    row("given wins over the file in the folder", base(), Map{{"2", "PT_STUDENT_2"}}, "",
        "PT_ADULT,PT_STUDENT_2,PT_ADULT");
    row("given wins over a file that is named", elsewhere, Map{{"1", "PT_ADULT"}}, "my types.csv",
        "PT_ADULT,PT_DISABLED,PT_ADULT");
    row("a file that is named must be there", base(), {}, "none.csv",
        "none.csv: No such file or directory, expected a readable file");
    row("given type that is unknown", base(), Map{{"1", "PT_GIANT"}}, "",
        "gtfs: rider category 1: \"PT_GIANT\", expected " + types);
    row("given category that is unknown", base(), Map{{"9", "PT_ADULT"}}, "",
        "gtfs: rider category 9: unknown, expected an id of rider_categories.txt");
    row("type of the file that is unknown, even where it does not win",
        base() + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n1,pt_adult\n"}},
        Map{{"1", "PT_ADULT"}}, "",
        "gtfs/passenger_types.txt:2: passenger_type: \"pt_adult\", expected " + types);
    row("category of the file that is unknown",
        base() + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n9,PT_LFS\n"}}, {},
        "",
        "gtfs/passenger_types.txt:2: rider_category_id: \"9\", expected an id of "
        "rider_categories.txt");
    row("category of the file that is given twice",
        base() + Files{{"passenger_types.txt",
                        "rider_category_id,passenger_type\n1,PT_LFS\n1,PT_LFS\n"}},
        {}, "",
        "gtfs/passenger_types.txt:3: rider_category_id: \"1\", expected each category once");
    row("rows of the file without a category",
        base() +
            Files{{"passenger_types.txt", "rider_category_id,passenger_type\n,PT_LFS\n,PT_LFS\n"}},
        {}, "",
        "gtfs/passenger_types.txt:2: rider_category_id: \"\", expected a text of 1 to 1000 "
        "characters,gtfs/passenger_types.txt:3: rider_category_id: \"\", expected a text of 1 "
        "to "
        "1000 characters");
    row("row of the file without a type",
        base() + Files{{"passenger_types.txt", "rider_category_id,passenger_type\n1,\n"}}, {}, "",
        "gtfs/passenger_types.txt:2: passenger_type: \"\", expected a text of 1 to 1000 "
        "characters");
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

QTEST_GUILESS_MAIN(GtfsFeedTest)
#include "tst_gtfs_feed.moc"
