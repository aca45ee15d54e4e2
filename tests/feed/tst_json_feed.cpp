#include "FeedFiles.h"

#include "Feed.h"
#include "Offers.h"

#include <limits>

using namespace rivo::feed;

namespace
{

const QByteArray head = R"("format": "rivo-feed", "version": 1, "currency": "EUR")";

/// A document with `products`, each in a line of its own from line 2 on.
QByteArray document(const QByteArray& products, const QByteArray& more = {})
{
    return '{' + head + more + ", \"products\": [\n" + products + "\n]}";
}

/// A product with everything that is required, and `more` keys behind it.
QByteArray product(const QByteArray& more = {})
{
    return R"({"passengerTypeId": 1, "description": "Adult", "passengerTypeCode": "PT_ADULT", )"
           R"("price": 2.5, "fareProductId": 3, "fareProductName": "Single", )"
           R"("fromStopGroupId": 4, "toStopGroupId": 5)" +
           more + '}';
}

QByteArray joined(int count, const QByteArray& text)
{
    QByteArrayList list;
    for (int i = 0; i < count; ++i)
        list.append(text);
    return list.join(",\n");
}

QString dump(const FeedProduct& p)
{
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8|%9|")
               .arg(p.passengerTypeId)
               .arg(p.description, p.passengerTypeCode, p.icon)
               .arg(p.price)
               .arg(p.fareProductId)
               .arg(p.fareProductName)
               .arg(p.isReturnFee)
               .arg(p.fromStopGroupId) +
           QStringLiteral("%1|%2|%3|%4|%5|%6")
               .arg(p.toStopGroupId)
               .arg(p.fareProductColor)
               .arg(p.hasExpired)
               .arg(p.fareDiscount)
               .arg(p.isDaily)
               .arg(p.pos);
}

QString dump(const FeedFareProduct& p)
{
    const auto list = [](const QVariantList& values) {
        QStringList texts;
        for (const QVariant& value : values)
            texts.append(QLatin1String(value.typeName()) + QLatin1Char(' ') + value.toString());
        return texts.join(QLatin1Char(','));
    };
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7|")
               .arg(p.id)
               .arg(p.description, p.icon)
               .arg(p.price)
               .arg(p.discount)
               .arg(p.freeReturn)
               .arg(p.paperTicket) +
           list(p.passengerTypes) + QLatin1Char('|') + list(p.ticketMaterial) + QLatin1Char('|') +
           list(p.paymentMethod) + QLatin1Char('|') + list(p.paymentChannel);
}

QString dump(const FeedTripContext& t)
{
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
        .arg(t.routeId)
        .arg(t.fromStopId)
        .arg(t.toStopId)
        .arg(t.currentStopId)
        .arg(t.tripsRouteId)
        .arg(t.tripsExecutionId)
        .arg(t.publicRouteExecutionId);
}

QString dump(const FeedVehicle& v)
{
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7|")
               .arg(v.id)
               .arg(v.registrationNumber, v.internalNumber, v.drivingStatus, v.routeStatus)
               .arg(v.routeId)
               .arg(v.routeName) +
           QStringLiteral("%1|%2|%3|%4|%5|%6")
               .arg(v.latitude)
               .arg(v.longitude)
               .arg(v.altitude)
               .arg(v.updated)
               .arg(v.inView)
               .arg(v.direction);
}

QString dump(const FeedPeripheral& p)
{
    return QStringLiteral("%1|%2|%3|%4|%5%6%7%8|%9|")
               .arg(p.id)
               .arg(p.name)
               .arg(p.identity)
               .arg(p.icon)
               .arg(p.warning)
               .arg(p.blueWarning)
               .arg(p.yellowWarning)
               .arg(p.error)
               .arg(p.deviceState) +
           p.stateStr;
}

/// One line per record.
QStringList dump(const Network& network)
{
    QStringList lines;
    for (const NetworkZone& zone : network.zones)
        lines.append(QStringLiteral("zone %1|%2").arg(zone.number).arg(zone.name));
    for (const NetworkStop& s : network.stops) {
        QStringList areas;
        for (const int area : s.areas)
            areas.append(QString::number(area));
        lines.append(QStringLiteral("stop %1|%2|%3|%4|%5|%6")
                         .arg(s.id, s.code, s.name)
                         .arg(s.latitude)
                         .arg(s.longitude)
                         .arg(areas.join(QLatin1Char(','))));
    }
    for (const NetworkRoute& r : network.routes)
        lines.append(QStringLiteral("route %1|%2|%3|%4|%5")
                         .arg(r.id, r.shortName, r.longName, r.color, r.textColor));
    for (const NetworkTrip& t : network.trips)
        lines.append(QStringLiteral("trip %1|%2|%3|%4|%5")
                         .arg(t.id, t.routeId, t.serviceId, t.headsign, t.shapeId));
    for (const NetworkStopTime& t : network.stopTimes)
        lines.append(QStringLiteral("time %1|%2|%3|%4|%5")
                         .arg(t.tripId, t.stopId)
                         .arg(t.sequence)
                         .arg(t.arrival)
                         .arg(t.departure));
    for (const NetworkShape& shape : network.shapes) {
        QStringList points;
        for (const NetworkShapePoint& point : shape.points)
            points.append(QStringLiteral("%1 %2").arg(point.latitude).arg(point.longitude));
        lines.append(QStringLiteral("shape %1|%2").arg(shape.id, points.join(QLatin1Char(','))));
    }
    return lines;
}

QString dump(const FeedZReport& z)
{
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8|%9|")
               .arg(z.id)
               .arg(z.ticketCount)
               .arg(z.ticketSumAmnt)
               .arg(z.cardSellCount)
               .arg(z.cardSellAmnt)
               .arg(z.parcelCount)
               .arg(z.parcelAmnt)
               .arg(z.fromTicketNumber, z.toTicketNumber) +
           QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
               .arg(z.zSum)
               .arg(z.zNumber)
               .arg(z.isClosed)
               .arg(z.commission)
               .arg(z.paymentDate.toString(Qt::ISODateWithMs))
               .arg(z.currentDebt)
               .arg(z.maxAllowedDebt);
}

} // namespace

class JsonFeedTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void everyKeyReachesItsField();
    void whatIsLeftOutHasItsDefault();
    void numbersOfAnyKind();
    void supportedTypesDefaultToThoseOfTheProducts();
    void unknownTypesAreLoadedAndNoticed();
    void textsThatAreJson_data();
    void textsThatAreJson();
    void textsThatAreNoJson_data();
    void textsThatAreNoJson();
    void problems_data();
    void problems();
    void everyProblemInOnePass();
    void manyProblemsAreCounted();
    void manyNoticesAreCounted();
    void prices_data();
    void prices();
    void validity_data();
    void validity();
    void offersWithoutANetwork();
    void everythingIsSoldSomewhere();
    void everythingIsSoldOnItsMediaAlone();
    void limitsAreInclusive_data();
    void limitsAreInclusive();
    void theLimitsAre();
    void listsOfTheNetworkAreLimited();
    void emptyFeedIsNoFeed();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void JsonFeedTest::everyKeyReachesItsField()
{
    const FeedResult result = load(QStringLiteral(FEED_TEST_DATA "/json/everything.json"));
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QCOMPARE(feed.name, QStringLiteral("Every Key Lines"));
    QCOMPARE(feed.currency, QStringLiteral("EUR"));
    QCOMPARE(feed.columns, 5);
    QCOMPARE(feed.supportedPassengerTypes, QStringList({"PT_ADULT", "PT_LFS"}));
    QCOMPARE(feed.products.size(), 1);
    const FeedProduct& restricted = feed.products.first();
    QCOMPARE(restricted.validZones, QVector<int>({32, 31}));
    QCOMPARE(restricted.validRoutes, QVector<int>({61}));
    QCOMPARE(restricted.validMedia, QVector<int>({0, 4}));
    const FeedTime& time = restricted.validTimes.first();
    QCOMPARE(time.days, QVector<int>({1, 7}));
    QCOMPARE(QStringList({time.begin, time.end, time.firstDate, time.lastDate}).join(' '),
             QString("06:00:00 18:30:00 2024-05-31 2026-12-31"));
    QCOMPARE(dump(feed.products.first()),
             QStringLiteral("11|Adult|PT_ADULT|qrc:/icons/one.svg|12.5|21|Single|1|31|"
                            "32|#123456|1|7.25|1|41"));
    QCOMPARE(feed.fareProducts.size(), 1);
    QCOMPARE(dump(feed.fareProducts.first()),
             QStringLiteral("51|Day ticket|qrc:/icons/two.svg|8.75|1.5|1|1|"
                            "int 1,QString PT_LFS|int 2|QString cash|int 3,int 4"));
    QVERIFY(feed.trip.has_value());
    QCOMPARE(dump(*feed.trip), QStringLiteral("61|62|63|64|65|66|R-67"));
    QCOMPARE(feed.vehicles.size(), 1);
    QCOMPARE(dump(feed.vehicles.first()), QStringLiteral("71|EK 71|I71|driving|on time|72|A - B|"
                                                         "52.5|-13.25|34.5|1|1|271.5"));
    QCOMPARE(feed.peripherals.size(), 1);
    QCOMPARE(dump(feed.peripherals.first()),
             QStringLiteral("81|Printer|4294967295|qrc:/icons/three.svg|0000|82|Ready"));
    QCOMPARE(feed.printerId, std::optional<int>(81));
    QCOMPARE(feed.zReports.size(), 1);
    QCOMPARE(dump(feed.zReports.first()),
             QStringLiteral("91|92|93.5|94|95.5|96|97.5|N1|N92|98.5|99.5|1|100.5|"
                            "2024-05-31T18:30:00.250+02:00|101.5|102.5"));
    QCOMPARE(dump(feed.network),
             QStringList({"zone 31|Harbour", "zone 32|Hills", "stop 62||Quay|52.5|-13.25|31,32",
                          "stop 63||Summit|nan|nan|", "route 61|6|Quay - Summit|#1a2B3c|#FFFFFF",
                          "trip 66|61|W|Summit|up", "time 66|62|0|86100|86190",
                          "time 66|63|1|87600|-1", "shape up|52.5 -13.25,52.75 -13.5"}));
    QVERIFY(result.notices.isEmpty());
}

void JsonFeedTest::whatIsLeftOutHasItsDefault()
{
    const FeedResult result = loadJson(
        document(product(), R"(, "fareProducts": [{"id": 1, "description": "D", "price": 2}],
            "vehicles": [{"id": 1, "registrationNumber": "R"}],
            "peripherals": [{"id": 1, "name": "N"}], "zReports": [{"id": 1}],
            "trip": {"routeId": 1, "fromStopId": 2, "toStopId": 3, "currentStopId": 4,
                     "tripsRouteId": 5, "tripsExecutionId": 6})"));
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QCOMPARE(feed.name, QString());
    QCOMPARE(feed.columns, 0);
    QCOMPARE(dump(feed.products.first()), QStringLiteral("1|Adult|PT_ADULT||2.5|3|Single|0|4|"
                                                         "5||0|0|0|-1"));
    QCOMPARE(dump(feed.fareProducts.first()), QStringLiteral("1|D||2|0|0|0||||"));
    QCOMPARE(dump(*feed.trip), QStringLiteral("1|2|3|4|5|6|"));
    QCOMPARE(dump(feed.vehicles.first()), QStringLiteral("1|R||||-1||nan|nan|nan|0|0|0"));
    QCOMPARE(dump(feed.peripherals.first()), QStringLiteral("1|N|0||1111|0|"));
    QVERIFY(!feed.printerId);
    QCOMPARE(dump(feed.zReports.first()), QStringLiteral("1|-1|0|-1|0|-1|0|||0|0|0|0||0|0"));
    QVERIFY(!loadJson(document({})).feed->trip.has_value());
    QVERIFY(dump(loadJson(document({})).feed->network).isEmpty());
    const FeedResult bare =
        loadJson(document({}, R"(, "network": {"zones": [], "stops": [{"id": 1, "name": "S"}],
            "routes": [{"id": 2}], "shapes": [{"id": "p", "points": []}],
            "trips": [{"id": 3, "routeId": 2, "stopTimes": [{"stopId": 1}]}]})"));
    REQUIRE_FEED(bare);
    QCOMPARE(dump(bare.feed->network),
             QStringList({"stop 1||S|nan|nan|", "route 2||||", "trip 3|2|||", "time 3|1|0|-1|-1",
                          "shape p|"}));
}

void JsonFeedTest::numbersOfAnyKind()
{
    const FeedResult result = loadJson(document(
        R"({"passengerTypeId": -2147483648, "description": "D", "passengerTypeCode": "C",
            "price": 0.1, "fareProductId": 2147483647, "fareProductName": "N",
            "fromStopGroupId": -0, "toStopGroupId": 1.2e1, "pos": -5})"));
    REQUIRE_FEED(result);
    const FeedProduct& product = result.feed->products.first();
    QCOMPARE(product.passengerTypeId, std::numeric_limits<int>::min());
    QCOMPARE(product.fareProductId, std::numeric_limits<int>::max());
    QCOMPARE(product.fromStopGroupId, 0);
    QCOMPARE(product.toStopGroupId, 12);
    QCOMPARE(product.pos, -5);
    QVERIFY(product.price == 0.1); // the nearest double, not merely a near one
}

void JsonFeedTest::supportedTypesDefaultToThoseOfTheProducts()
{
    const auto ofType = [](const QByteArray& type) { return product().replace("PT_ADULT", type); };
    const QByteArray products = QByteArrayList({ofType("PT_LFS"), ofType("PT_ADULT"), ofType("?"),
                                                ofType("PT_STUDENT_2"), ofType("PT_LFS")})
                                    .join(',');
    QCOMPARE(loadJson(document(products)).feed->supportedPassengerTypes,
             QStringList({"?", "PT_ADULT", "PT_LFS", "PT_STUDENT_2"}));
    QCOMPARE(loadJson(document(products, ", \"supportedPassengerTypes\": []"))
                 .feed->supportedPassengerTypes,
             QStringList());
    QCOMPARE(loadJson(document(products, R"(, "supportedPassengerTypes": ["Z", "PT_LFS", "Z"])"))
                 .feed->supportedPassengerTypes,
             QStringList({"Z", "PT_LFS", "Z"}));
}

void JsonFeedTest::unknownTypesAreLoadedAndNoticed()
{
    const QByteArray giant = product().replace("PT_ADULT", "PT_GIANT");
    const FeedResult result = loadJson(document(product() + ",\n" + giant + ",\n" + giant + ",\n" +
                                                product().replace("PT_ADULT", "pt_adult")));
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->products.at(1).passengerTypeCode, QStringLiteral("PT_GIANT"));
    QCOMPARE(result.noticeLines(),
             QStringList({"feed.json: /products/1/passengerTypeCode: unknown passenger type "
                          "\"PT_GIANT\", taken as type 0",
                          "feed.json: /products/3/passengerTypeCode: unknown passenger type "
                          "\"pt_adult\", taken as type 0"}));
}

void JsonFeedTest::textsThatAreJson_data()
{
    QTest::addColumn<QByteArray>("json");
    const QByteArray plain = document(product());
    QTest::newRow("plain") << plain;
    QTest::newRow("byte-order mark at the start") << "\xEF\xBB\xBF" + plain;
    QTest::newRow("CR LF line ends") << QByteArray(plain).replace('\n', "\r\n");
    QTest::newRow("CR line ends") << QByteArray(plain).replace('\n', '\r');
    QTest::newRow("blanks and tabs around everything")
        << " \t\n" + QByteArray(plain).replace(",", " \t, \n").replace(":", "\t : ") + "\n \t";
    QTest::newRow("no blanks at all") << QByteArray(plain).replace(' ', "").replace('\n', "");
    QTest::newRow("letters of a key written as escapes")
        << QByteArray(plain).replace("\"price\"", "\"\\u0070rice\"");
    QTest::newRow("every escape in a text")
        << QByteArray(plain).replace("Single", R"(\"\\\/\b\f\n\r\t\u00e9\ud83d\ude8c)");
    QTest::newRow("half a pair of surrogates in a text")
        << QByteArray(plain).replace("Single", R"(\ud83d)");
    QTest::newRow("every form of number in a key of one's own") << document(
        product(),
        R"(, "x-n": [0, -0, 0.0, 10, -1.50, 1e5, 1E+5, 1.5e-5, 1e0, true, false, null])");
}

void JsonFeedTest::textsThatAreJson()
{
    QFETCH(QByteArray, json);
    const FeedResult result = loadJson(json);
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->products.size(), 1);
    QCOMPARE(result.feed->products.first().price, 2.5);
}

void JsonFeedTest::textsThatAreNoJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("problem");
    const auto value = [](const QByteArray& text) { return "{\n \"x-a\": " + text + "}"; };
    QTest::newRow("nothing") << QByteArray()
                             << "feed.json:1:1: the end of the file, expected an object";
    QTest::newRow("blanks only") << QByteArray(" \n ")
                                 << "feed.json:2:2: the end of the file, expected an object";
    QTest::newRow("text that is no JSON")
        << QByteArray("GIF\x03") << R"(feed.json:1:1: "GIF\u0003", expected an object)";
    QTest::newRow("object that is not closed")
        << value("1").chopped(1) << "feed.json:2:10: the end of the file, expected ',' or '}'";
    QTest::newRow("list that is not closed")
        << value("[1, 2") << "feed.json:2:14: /x-a: \"}\", expected ',' or ']'";
    QTest::newRow("text that is not closed")
        << value("\"abc")
        << "feed.json:2:14: /x-a: the end of the file, expected the closing quote of a text";
    QTest::newRow("comma at the end of an object")
        << value("1,") << "feed.json:2:11: \"}\", expected a key in quotes";
    QTest::newRow("comma at the end of a list")
        << value("[1,]") << "feed.json:2:12: /x-a/1: \"]}\", expected a value";
    QTest::newRow("key without quotes")
        << QByteArray("{a: 1}") << "feed.json:1:2: \"a: 1}\", expected a key in quotes";
    QTest::newRow("key without a value")
        << QByteArray("{\"a\"}") << "feed.json:1:5: /a: \"}\", expected ':'";
    QTest::newRow("single quotes")
        << value("'a'") << "feed.json:2:9: /x-a: \"'a'}\", expected a value";
    QTest::newRow("comment") << value("/* one */ 1")
                             << "feed.json:2:9: /x-a: \"/* one */ 1}\", expected a value";
    QTest::newRow("NaN") << value("NaN") << "feed.json:2:9: /x-a: \"NaN}\", expected a value";
    QTest::newRow("Infinity") << value("-Infinity")
                              << "feed.json:2:10: /x-a: \"Infinity}\", expected a number such as "
                                 "-12.5";
    QTest::newRow("misspelt literal")
        << value("True") << "feed.json:2:9: /x-a: \"True}\", expected a value";
    QTest::newRow("literal that goes on")
        << value("nullify") << "feed.json:2:13: \"ify}\", expected ',' or '}'";
    QTest::newRow("number with a leading zero")
        << value("01") << "feed.json:2:10: \"1}\", expected ',' or '}'";
    QTest::newRow("number with a plus sign")
        << value("+1") << "feed.json:2:9: /x-a: \"+1}\", expected a value";
    QTest::newRow("number that begins with a point")
        << value(".5") << "feed.json:2:9: /x-a: \".5}\", expected a value";
    QTest::newRow("number that ends with a point")
        << value("1.") << "feed.json:2:11: /x-a: \"}\", expected a number such as -12.5";
    QTest::newRow("number with an empty exponent")
        << value("1e") << "feed.json:2:11: /x-a: \"}\", expected a number such as -12.5";
    QTest::newRow("number with a decimal comma")
        << value("1,5") << "feed.json:2:11: \"5}\", expected a key in quotes";
    QTest::newRow("number that no double can hold")
        << value("1e400")
        << "feed.json:2:9: /x-a: \"1e400}\", expected a number that a double can "
           "hold";
    QTest::newRow("line break within a text")
        << value("\"a\nb\"")
        << "feed.json:2:11: /x-a: the end of the line, expected an escape "
           "such as \\n instead of a control character";
    QTest::newRow("zero byte within a text")
        << value(QByteArray("\"a\0b\"", 5))
        << R"(feed.json:2:11: /x-a: "\u0000b"}", expected an escape such as \n instead of a control character)";
    QTest::newRow("unknown escape")
        << value(R"("\q")")
        << R"(feed.json:2:11: /x-a: "q"}", expected an escape such as \n or \u00e9)";
    QTest::newRow("short escape")
        << value(R"("\u12g4")")
        << R"(feed.json:2:14: /x-a: "g4"}", expected an escape such as \n or \u00e9)";
    QTest::newRow("text after the end")
        << QByteArray("{}\n{}") << "feed.json:2:1: \"{}\", expected the end of the file";
    QTest::newRow("zero byte after the end")
        << QByteArray("{}\0", 3) << R"(feed.json:1:3: "\u0000", expected the end of the file)";
    QTest::newRow("text in UTF-16")
        << QByteArray("\xFF\xFE{\0}\0", 6)
        << "feed.json:1: text in UTF-16, expected text in UTF-8 (save the file in this encoding)";
    QTest::newRow("text in UTF-16 of the other byte order")
        << QByteArray("\xFE\xFF\0{\0}", 6)
        << "feed.json:1: text in UTF-16, expected text in UTF-8 (save the file in this encoding)";
    QTest::newRow("column counts letters, not bytes")
        << QByteArray("{\"ä€\": ?}") << "feed.json:1:8: /ä€: \"?}\", expected a value";
}

void JsonFeedTest::textsThatAreNoJson()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, problem);
    QCOMPARE(loadJson(json).problemLines(), QStringList(problem));
}

void JsonFeedTest::problems_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("problems");
    const auto row = [](const char* name, const QByteArray& json, const QStringList& problems) {
        QTest::newRow(name) << json << problems;
    };
    row("root that is a list", "[1]", {"feed.json:1:1: \"[1]\", expected an object"});
    row("root that is a number", "5", {"feed.json:1:1: \"5\", expected an object"});
    row("empty object", "{}",
        {"feed.json:1: /format: missing, expected \"rivo-feed\"",
         "feed.json:1: /version: missing, expected 1",
         "feed.json:1: /currency: missing, expected a code such as \"EUR\"",
         "feed.json:1: /products: missing, expected a list of at most 100000 objects"});
    row("key given twice", document(product(R"(, "price": 9)")),
        {"feed.json:2: /products/0/price: given twice, expected each key of an object once"});
    row("key given twice in different spellings", document(product(R"(, "\u0070rice": 9)")),
        {"feed.json:2: /products/0/price: given twice, expected each key of an object once"});
    row("key given twice in a key of one's own", document({}, R"(, "x-a": [{"b": 1, "b": 1}])"),
        {"feed.json:1: /x-a/0/b: given twice, expected each key of an object once"});
    row("same key in two objects", document(product() + ",\n" + product(R"(, "pos": "1")")),
        {"feed.json:3: /products/1/pos: \"1\", expected an integer from -2147483648 to "
         "2147483647"});
    row("unknown key with characters that pointers escape", document({}, R"(, "a/b~c": 1)"),
        {"feed.json:1: /a~1b~0c: unknown key, expected one of format, version, name, currency, "
         "columns, supportedPassengerTypes, products, fareProducts, trip, vehicles, peripherals, "
         "printerId, zReports, network"});
    row("unknown key in a section", document({}, R"(, "trip": {"routeId": 1, "fromStopId": 1,
        "toStopId": 1, "currentStopId": 1, "tripsRouteId": 1, "tripsExecutionId": 1,
        "routeID": 2})"),
        {"feed.json:3: /trip/routeID: unknown key, expected one of routeId, fromStopId, toStopId, "
         "currentStopId, tripsRouteId, tripsExecutionId, publicRouteExecutionId"});
    row("number instead of a text", document({}, ", \"name\": 5"),
        {"feed.json:1: /name: 5, expected a text of 0 to 1000 characters"});
    row("shortest form of a number", document({}, ", \"name\": 0.1"),
        {"feed.json:1: /name: 0.1, expected a text of 0 to 1000 characters"});
    row("false instead of a text", document({}, ", \"name\": false"),
        {"feed.json:1: /name: false, expected a text of 0 to 1000 characters"});
    row("true instead of a text", document({}, ", \"name\": true"),
        {"feed.json:1: /name: true, expected a text of 0 to 1000 characters"});
    row("null instead of a list", document({}, ", \"vehicles\": null"),
        {"feed.json:1: /vehicles: null, expected a list of at most 100000 objects"});
    row("object instead of a list", document({}, ", \"supportedPassengerTypes\": {}"),
        {"feed.json:1: /supportedPassengerTypes: an object, expected a list of at most 100000 "
         "texts"});
    row("text instead of a list", document({}, R"(, "fareProducts": [{"id": 1, "price": 0,
        "description": "D",
        "ticketMaterial": "paper"}])"),
        {"feed.json:3: /fareProducts/0/ticketMaterial: \"paper\", expected a list of at most "
         "100000 integers or texts"});
    row("list in a list of integers or texts", document({}, R"(, "fareProducts": [{"id": 1,
        "price": 0, "description": "D", "paymentMethod": ["a", 1, [], 1.5, ""]}])"),
        {"feed.json:2: /fareProducts/0/paymentMethod/2: a list, expected an integer from "
         "-2147483648 to 2147483647",
         "feed.json:2: /fareProducts/0/paymentMethod/3: 1.5, expected an integer from "
         "-2147483648 to 2147483647",
         "feed.json:2: /fareProducts/0/paymentMethod/4: \"\", expected a text of 1 to 1000 "
         "characters"});
    row("list instead of a flag", document(product(", \"isDaily\": []")),
        {"feed.json:2: /products/0/isDaily: a list, expected true or false"});
    row("price as a text", document(product().replace("2.5", "\"abc\"")),
        {"feed.json:2: /products/0/price: \"abc\", expected a number from 0 to 1000000"});
    row("altitude alone", document({}, R"(, "vehicles": [
        {"id": 1, "registrationNumber": "R", "altitude": 3}])"),
        {"feed.json:2: /vehicles/0/latitude: missing, expected a value beside altitude"});
    row("network that is a list", document({}, ", \"network\": []"),
        {"feed.json:1: /network: a list, expected an object"});
    row("stop with an id of no sign", document({}, R"(, "network": {"stops": [
        {"id": 0, "name": "A"},
        {"id": 0, "name": "B", "latitude": 1}]})"),
        {"feed.json:2: /network/stops/0/id: 0, expected an integer from 1 to 2147483647",
         "feed.json:3: /network/stops/1/id: 0, expected an integer from 1 to 2147483647",
         "feed.json:3: /network/stops/1/longitude: missing, expected a value beside latitude"});
    row("colours and times in other forms", document({}, R"(, "network": {
        "routes": [{"id": 1, "color": "#12345", "textColor": "red"}],
        "trips": [{"id": 1, "routeId": 1, "stopTimes": [
        {"stopId": 1, "arrival": "8:5:00", "departure": 29100}]}]})"),
        {"feed.json:2: /network/routes/0/color: \"#12345\", expected a colour such as "
         "\"#1657BA\"",
         "feed.json:2: /network/routes/0/textColor: \"red\", expected a colour such as "
         "\"#1657BA\"",
         "feed.json:4: /network/trips/0/stopTimes/0/arrival: \"8:5:00\", expected a time such as "
         "\"08:05:00\" or \"25:10:00\"",
         "feed.json:4: /network/trips/0/stopTimes/0/departure: 29100, expected a time such as "
         "\"08:05:00\" or \"25:10:00\""});
    row("points that are none", document({}, R"(, "network": {"shapes": [{"id": "s", "points": [
        [91, 181], [1],
        7, [1, "2"], [1, 2, 3]]}]})"),
        {"feed.json:2: /network/shapes/0/points/0/0: 91, expected a number from -90 to 90",
         "feed.json:2: /network/shapes/0/points/0/1: 181, expected a number from -180 to 180",
         "feed.json:2: /network/shapes/0/points/1: a list, expected [latitude, longitude]",
         "feed.json:3: /network/shapes/0/points/2: 7, expected [latitude, longitude]",
         "feed.json:3: /network/shapes/0/points/3/1: \"2\", expected a number from -180 to 180",
         "feed.json:3: /network/shapes/0/points/4: a list, expected [latitude, longitude]"});
    row("ids of the network given twice", document({}, R"(, "network": {
        "zones": [{"id": 1, "name": "A"}, {"id": 1, "name": "B"}],
        "stops": [{"id": 1, "name": "A"}, {"id": 1, "name": "A"}],
        "routes": [{"id": 2}, {"id": 1}, {"id": 2}],
        "shapes": [{"id": "s", "points": []}, {"id": "s", "points": []}],
        "trips": [{"id": 3, "routeId": 2, "stopTimes": []},
                  {"id": 3, "routeId": 2, "stopTimes": []}]})"),
        {"feed.json:2: /network/zones/1/id: 1, expected each id once",
         "feed.json:3: /network/stops/1/id: 1, expected each id once",
         "feed.json:4: /network/routes/2/id: 2, expected each id once",
         "feed.json:5: /network/shapes/1/id: \"s\", expected each id once",
         "feed.json:7: /network/trips/1/id: 3, expected each id once"});
    row("references to nothing in the network", document({}, R"(, "network": {
        "zones": [{"id": 1, "name": "A"}],
        "stops": [{"id": 5, "name": "A", "zones": [1, 2]}],
        "routes": [], "shapes": [{"id": "s", "points": []}],
        "trips": [{"id": 3, "routeId": 2, "shapeId": "S", "stopTimes": [
        {"stopId": 5}, {"stopId": 1}]}]})"),
        {"feed.json:3: /network/stops/0/zones/1: 2, expected an id of /network/zones",
         "feed.json:5: /network/trips/0/routeId: 2, expected an id of /network/routes",
         "feed.json:5: /network/trips/0/shapeId: \"S\", expected an id of /network/shapes",
         "feed.json:6: /network/trips/0/stopTimes/1/stopId: 1, expected an id of "
         "/network/stops"});
    row("zones and routes of a product that are unknown",
        document(product(
                     R"(, "validZones": [1, 2], "validRoutes": [3], "validMedia": [5],
        "validTimes": [{"days": [0], "begin": "24:00:01", "firstDate": "2023-02-29"}])"),
                 R"(, "network": {"zones": [{"id": 1, "name": "A"}], "routes": []})"),
        {"feed.json:2: /products/0/validMedia/0: 5, expected an integer from 0 to 4",
         "feed.json:2: /products/0/validZones/1: 2, expected an id of /network/zones",
         "feed.json:2: /products/0/validRoutes/0: 3, expected an id of /network/routes",
         "feed.json:3: /products/0/validTimes/0/days/0: 0, expected an integer from 1 to 7",
         "feed.json:3: /products/0/validTimes/0/begin: \"24:00:01\", expected a time from "
         "\"00:00:00\" to \"24:00:00\"",
         "feed.json:3: /products/0/validTimes/0/firstDate: \"2023-02-29\", expected a date such as "
         "\"2024-05-31\""});
    row("printer that is none of the peripherals", document({}, R"(, "printerId": 2,
        "peripherals": [{"id": 1, "name": "P"}, {"id": 3, "name": "R"}])"),
        {"feed.json:1: /printerId: 2, expected an id of /peripherals"});
    row("printer without peripherals", document({}, ", \"printerId\": 1"),
        {"feed.json:1: /peripherals: missing, expected a value beside printerId"});
    row("printer that is no number", document({}, R"(, "printerId": "1", "peripherals": [])"),
        {"feed.json:1: /printerId: \"1\", expected an integer from -2147483648 to 2147483647"});
    row("printer beside peripherals that cannot be read", document({}, R"(, "printerId": 1,
        "peripherals": {})"),
        {"feed.json:2: /peripherals: an object, expected a list of at most 100000 objects"});
    row("references to a list that cannot be read are not judged", document({}, R"(, "network": {
        "zones": null, "stops": 5, "routes": {},
        "trips": [{"id": 3, "routeId": 2, "stopTimes": [{"stopId": 5}]}]})"),
        {"feed.json:2: /network/zones: null, expected a list of at most 100000 objects",
         "feed.json:2: /network/stops: 5, expected a list of at most 100000 objects",
         "feed.json:2: /network/routes: an object, expected a list of at most 100000 objects"});
    row("day that is in no calendar", document({}, R"(, "zReports": [{"id": 1,
        "paymentDate": "2023-02-29T10:00:00Z"}])"),
        {"feed.json:2: /zReports/0/paymentDate: \"2023-02-29T10:00:00Z\", expected a date and time "
         "such as \"2024-05-31T18:30:00+02:00\""});
    row("date in another form", document({}, R"(, "zReports": [{"id": 1,
        "paymentDate": "29.02.2024"}])"),
        {"feed.json:2: /zReports/0/paymentDate: \"29.02.2024\", expected a date and time "
         "such as \"2024-05-31T18:30:00+02:00\""});
    row("long value is cut",
        document({}, ", \"currency\": \"" + QByteArray(2000, 'E') + '"')
            .replace(R"("currency": "EUR", )", ""),
        {"feed.json:1: /currency: \"" + QString(80, 'E') +
         "...\", expected a code such as \"EUR\""});
    row("control characters of a value are escaped",
        document(product()
                     .replace("\"PT_ADULT\"", R"(["a"])")
                     .replace("2.5", R"("\u001b[2J\u0007\u202e\u2028")")),
        {"feed.json:2: /products/0/passengerTypeCode: a list, expected a text of 1 to 1000 "
         "characters",
         R"(feed.json:2: /products/0/price: "\u001b[2J\u0007\u202e\u2028", expected a number from 0 to 1000000)"});
    row("control characters of a key are escaped", document(product(R"(, "\u001b[2J": 1)")),
        {"feed.json:2: /products/0/\\u001b[2J: unknown key, expected one of passengerTypeId, "
         "description, passengerTypeCode, icon, price, fareProductId, fareProductName, "
         "isReturnFee, fromStopGroupId, toStopGroupId, fareProductColor, hasExpired, "
         "fareDiscount, isDaily, pos, validZones, validRoutes, validMedia, validTimes"});
    row("bytes that are no UTF-8, and a problem beside them",
        document(product().replace("Adult", "Ad\xFFult") + ",\n" + product(", \"pos\": 1.5") +
                 ",\n" + product().replace("Single", "\xC3")),
        {"feed.json:2: bytes that are no UTF-8, expected text in UTF-8 (save the "
         "file in this encoding)",
         "feed.json:3: /products/1/pos: 1.5, expected an integer from -2147483648 to 2147483647",
         "feed.json:4: bytes that are no UTF-8, expected text in UTF-8 (save the "
         "file in this encoding)"});
    row("UTF-8 that encodes a surrogate", document(product().replace("Adult", "\xED\xA0\x80")),
        {"feed.json:2: bytes that are no UTF-8, expected text in UTF-8 (save the "
         "file in this encoding)"});
    row("line of a value is that of its key", document(product(", \"pos\"\n:\n null")),
        {"feed.json:2: /products/0/pos: null, expected an integer from -2147483648 to 2147483647"});
    row("lines are counted over all line ends",
        document(product() + ",\r\n" + product() + ",\r" + product(", \"pos\": null")),
        {"feed.json:4: /products/2/pos: null, expected an integer from -2147483648 to 2147483647"});
}

void JsonFeedTest::problems()
{
    QFETCH(QByteArray, json);
    QFETCH(QStringList, problems);
    QCOMPARE(loadJson(json).problemLines(), problems);
}

void JsonFeedTest::everyProblemInOnePass()
{
    const FeedResult result =
        loadJson(document(product().replace("2.5", "-1") + ",\n" + product(R"(, "posn": 1)") +
                              ",\n" + product().replace("\"Single\"", "\"\""),
                          ", \"columns\": \"4\""));
    QVERIFY(!result.feed);
    QCOMPARE(result.problems.size(), 4);
    const FeedProblem& price = result.problems.at(1);
    QCOMPARE(price.file, QStringLiteral("feed.json"));
    QCOMPARE(price.line, 2);
    QCOMPARE(price.pointer, QStringLiteral("/products/0/price"));
    QCOMPARE(price.field, QStringLiteral("price"));
    QCOMPARE(price.value, QStringLiteral("-1"));
    QCOMPARE(price.expected, QStringLiteral("a number from 0 to 1000000"));
    QCOMPARE(result.problems.at(0).field, QStringLiteral("columns"));
    QCOMPARE(result.problems.at(2).field, QStringLiteral("posn"));
    QCOMPARE(result.problems.at(3).field, QStringLiteral("fareProductName"));
}

void JsonFeedTest::manyProblemsAreCounted()
{
    const QByteArray bad = product(", \"pos\": 0.5");
    FeedResult result = loadJson(document(joined(FeedReport::maxKept, bad)));
    QCOMPARE(result.problems.size(), FeedReport::maxKept);
    QCOMPARE(result.furtherProblems, 0);
    QCOMPARE(result.problemLines().size(), FeedReport::maxKept);

    result = loadJson(document(joined(FeedReport::maxKept + 234, bad)));
    QCOMPARE(result.problems.size(), FeedReport::maxKept);
    QCOMPARE(result.furtherProblems, 234);
    QCOMPARE(result.problemLines().size(), FeedReport::maxKept + 1);
    QCOMPARE(result.problemLines().last(), QStringLiteral("... and 234 further problems"));
    QCOMPARE(result.problems.last().line, FeedReport::maxKept + 1);
}

void JsonFeedTest::manyNoticesAreCounted()
{
    QByteArrayList products;
    for (int i = 0; i < FeedReport::maxKept + 2; ++i)
        products.append(product().replace("PT_ADULT", "T" + QByteArray::number(i)));
    const FeedResult result = loadJson(document(products.join(',')));
    REQUIRE_FEED(result);
    QCOMPARE(result.notices.size(), FeedReport::maxKept);
    QCOMPARE(result.noticeLines().last(), QStringLiteral("... and 2 further notices"));
}

void JsonFeedTest::prices_data()
{
    QTest::addColumn<QByteArray>("currency");
    QTest::addColumn<QByteArray>("price");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char* currency, const char* price, const QString& problem = {}) {
        QTest::addRow("%s %s", price, currency)
            << QByteArray(currency) << QByteArray(price) << problem;
    };
    for (const char* price : {"0", "0.1", "0.29", "2.675e1", "19.99", "999999.99", "1000000"})
        row("EUR", price);
    row("KWD", "1.005");
    row("EUR", "1.005", "1.005, expected a number with at most 2 decimals");
    row("EUR", "0.30000000000000004",
        "0.30000000000000004, expected a number with at most 2 "
        "decimals");
    row("JPY", "450.5", "450.5, expected a number with at most 0 decimals");
}

void JsonFeedTest::prices()
{
    QFETCH(QByteArray, currency);
    QFETCH(QByteArray, price);
    QFETCH(QString, problem);
    const FeedResult result = loadJson(
        document(product().replace("2.5", price),
                 R"(, "fareProducts": [{"id": 1, "description": "D", "price": )" + price + "}]")
            .replace("EUR", currency));
    if (problem.isEmpty())
        REQUIRE_FEED(result);
    else
        QCOMPARE(result.problemLines(),
                 QStringList({"feed.json:1: /fareProducts/0/price: " + problem,
                              "feed.json:2: /products/0/price: " + problem}));
}

void JsonFeedTest::validity_data()
{
    QTest::addColumn<QByteArray>("validity");
    QTest::addColumn<QString>("query");  // route stop time to
    QTest::addColumn<QString>("reason"); // or none
    const auto row = [](const char* name, const QByteArray& validity, const QString& query,
                        const QString& reason) {
        QTest::newRow(name) << validity << query << reason;
    };
    const QString monday = "12 1 2026-03-02T12:00 ";
    row("nothing restricts", "", monday, "");
    row("the route", R"("validRoutes": [13, 12])", monday, "");
    row("another route", R"("validRoutes": [13])", monday, "network");
    row("the zones of the ride", R"("validZones": [5, 4])", monday + "2", "");
    row("some destination is in a zone", R"("validZones": [5, 4])", monday, "");
    row("a destination in no zone", R"("validZones": [5, 4])", monday + "3", "area");
    row("a stop in another zone", R"("validZones": [5])", monday, "area");
    row("the last stop", R"("validZones": [4, 5, 6])", "12 3 2026-03-02T12:00 ", "area");
    row("a medium of the driver's", R"("validMedia": [4, 1])", monday, "");
    row("other media", R"("validMedia": [2, 3, 4])", monday, "media");
    row("the time of day", R"("validTimes": [{"begin": "12:00:00", "end": "12:00:01"}])", monday,
        "");
    row("the end is not in it", R"("validTimes": [{"end": "12:00:00"}])", monday, "timeframe");
    row("the day", R"("validTimes": [{"days": [7, 1]}])", monday, "");
    row("another day", R"("validTimes": [{"days": [2, 3, 4, 5, 6, 7]}])", monday, "timeframe");
    row("one of several times", R"("validTimes": [{"days": [2]}, {"lastDate": "2026-03-02"}])",
        monday, "");
    row("before the first date", R"("validTimes": [{"firstDate": "2026-03-03"}])", monday,
        "timeframe");
    row("expired", R"("hasExpired": true)", monday, "timeframe");
}

void JsonFeedTest::validity()
{
    QFETCH(QByteArray, validity);
    QFETCH(QString, query);
    QFETCH(QString, reason);
    const QByteArray network = R"(, "network": {
        "zones": [{"id": 4, "name": "A"}, {"id": 5, "name": "B"}, {"id": 6, "name": "C"}],
        "stops": [{"id": 1, "name": "a", "zones": [4]}, {"id": 2, "name": "b", "zones": [5]},
                  {"id": 3, "name": "c", "zones": [6]}],
        "routes": [{"id": 12}, {"id": 13}],
        "trips": [{"id": 1, "routeId": 12,
                   "stopTimes": [{"stopId": 1}, {"stopId": 2}, {"stopId": 3}]}]})";
    const FeedResult result =
        loadJson(document(product(validity.isEmpty() ? QByteArray() : ", " + validity), network));
    REQUIRE_FEED(result);
    const QStringList words = query.split(' ');
    OfferQuery asked{words.at(0), words.at(1), QDateTime::fromString(words.at(2), Qt::ISODate),
                     words.at(3), {0, 1},      false};
    const OfferList list = offersOf(*result.feed->tariff, asked);
    QCOMPARE(list.errors, QStringList());
    QCOMPARE(list.offers.size() + list.leftOut.size(), 1);
    QCOMPARE(list.leftOut.isEmpty() ? QString() : reasonText(list.leftOut.first().reason), reason);
    if (reason.isEmpty()) {
        QCOMPARE(list.offers.first().amount, qint64(250));
        QCOMPARE(list.offers.first().entry, 0);
    }
    asked.withExpired = true;
    QCOMPARE(offersOf(*result.feed->tariff, asked).offers.size(),
             reason.isEmpty() || validity.contains("hasExpired") ? 1 : 0);
    asked.stop = "9";
    QCOMPARE(offersOf(*result.feed->tariff, asked).errors, QStringList("unknown stop \"9\""));
}

void JsonFeedTest::offersWithoutANetwork()
{
    const FeedResult result = loadJson(document(product(R"(, "validRoutes": [12])")));
    REQUIRE_FEED(result);
    OfferQuery query{"12", "1", QDateTime::currentDateTime(), {}, {0, 1}, false};
    QCOMPARE(offersOf(*result.feed->tariff, query).offers.size(), 1);
    query.route = "13";
    QCOMPARE(offersOf(*result.feed->tariff, query).offers.size(), 0);
}

void JsonFeedTest::everythingIsSoldSomewhere()
{
    const FeedResult result =
        loadJson(document(product(R"(, "validRoutes": [12], "validTimes": [{"days": [7]}])") + ',' +
                          product(R"(, "hasExpired": true)")));
    REQUIRE_FEED(result);
    const OfferList sold = everythingSold(*result.feed->tariff);
    QCOMPARE(sold.errors, QStringList());
    QCOMPARE(sold.leftOut.size(), 0);
    QCOMPARE(sold.offers.size(), 2);
    QCOMPARE(sold.offers.at(0).entry, 0);
    QCOMPARE(sold.offers.at(1).entry, 1);
    QVERIFY(everyPriceSold(*result.feed->tariff).offers == sold.offers);
}

void JsonFeedTest::everythingIsSoldOnItsMediaAlone()
{
    constexpr int sets = 1 << 5; // of the media 0 to 4, as bits
    const auto mediaOf = [](int bits) {
        QVector<int> media;
        for (int type = 0; type < 5; ++type) {
            if ((bits >> type & 1) != 0)
                media.append(type);
        }
        return media;
    };
    QByteArrayList products;
    for (int valid = 0; valid < sets; ++valid) {
        QByteArrayList types;
        for (const int type : mediaOf(valid))
            types.append(QByteArray::number(type));
        products.append(product(", \"validMedia\": [" + types.join(", ") + ']')
                            .replace("\"fareProductId\": 3",
                                     "\"fareProductId\": " + QByteArray::number(valid)));
    }
    const FeedResult result = loadJson(document(products.join(",\n")));
    REQUIRE_FEED(result);
    const Tariff& tariff = *result.feed->tariff;
    for (int asked = 0; asked < sets; ++asked) {
        QVector<int> expected;
        for (int valid = 0; valid < sets; ++valid) {
            if (valid == 0 || (valid & asked) != 0)
                expected.append(valid);
        }
        const OfferList sold = everythingSold(tariff, mediaOf(asked));
        QVector<int> entries;
        for (const Offer& offer : sold.offers)
            entries.append(offer.entry);
        QCOMPARE(entries, expected);
        QCOMPARE(sold.leftOut.size(), sets - expected.size());
        for (const LeftOutProduct& product : sold.leftOut)
            QCOMPARE(reasonText(product.reason), QString("media"));
        QVERIFY(everyPriceSold(tariff, mediaOf(asked)).offers == sold.offers);
    }
    QVERIFY(everythingSold(tariff).offers == everythingSold(tariff, {0, 1}).offers);
    QVERIFY(everyPriceSold(tariff).offers == everythingSold(tariff, {0, 1}).offers);
}

void JsonFeedTest::limitsAreInclusive_data()
{
    QTest::addColumn<QByteArray>("within");
    QTest::addColumn<QByteArray>("beyond");
    QTest::addColumn<QString>("problem");
    QTest::newRow("size of 500 bytes")
        << document({}).leftJustified(500) << document({}).leftJustified(501)
        << "feed.json: 501 bytes, expected at most 500 bytes";
    QTest::newRow("depth of 4")
        << document({}, ", \"x-a\": [[[]]]") << document({}, ", \"x-a\": [[[{}]]]")
        << "feed.json:1:68: /x-a/0/0/0: \"{}]]], \"products\": [\", expected at most 4 objects and "
           "lists within one another";
    QTest::newRow("20 values") << document({}, ", \"x-a\": [" + joined(14, "1") + ']')
                               << document({}, ", \"x-a\": [" + joined(15, "1") + ']')
                               << "feed.json:15:17: /products: \"[\", expected at most 20 values";
    QTest::newRow("6 entries in a list")
        << document({}, ", \"supportedPassengerTypes\": [" + joined(6, "\"A\"") + ']')
        << document({}, ", \"supportedPassengerTypes\": [" + joined(7, "\"A\"") + ']')
        << "feed.json:1: /supportedPassengerTypes: 7 entries, expected a list of at most 6 texts";
    QTest::newRow("6 objects in a list")
        << document({}, ", \"zReports\": [" + joined(6, "{\"id\": 1}") + ']')
        << document({}, ", \"zReports\": [" + joined(7, "{\"id\": 1}") + ']')
        << "feed.json:1: /zReports: 7 entries, expected a list of at most 6 objects";
    const QByteArray bus = "\xF0\x9F\x9A\x8C";
    QTest::newRow("text of 30 characters, a pair of surrogates being one")
        << document({}, ", \"name\": \"" + QByteArray(29, 'a') + bus + '"')
        << document({}, ", \"name\": \"" + QByteArray(30, 'a') + bus + '"')
        << "feed.json:1: /name: \"" + QString(30, 'a') + QString::fromUtf8(bus) +
               "\", expected a text of 0 to 30 characters";
    QTest::newRow("key of 30 characters")
        << document({}, ", \"x-" + QByteArray(28, 'a') + "\": 1")
        << document({}, ", \"x-" + QByteArray(29, 'a') + "\": 1")
        << "feed.json:1:91: \": 1, \"products\": [\", expected keys of at most 30 characters";
}

void JsonFeedTest::limitsAreInclusive()
{
    QFETCH(QByteArray, within);
    QFETCH(QByteArray, beyond);
    QFETCH(QString, problem);
    FeedOptions options;
    options.limits.jsonBytes = 500;
    options.limits.jsonDepth = 4;
    options.limits.jsonValues = 20;
    options.limits.entries = 6;
    options.limits.textLength = 30;
    REQUIRE_FEED(loadJson(within, options));
    QCOMPARE(loadJson(beyond, options).problemLines(), QStringList(problem));
}

void JsonFeedTest::theLimitsAre()
{
    const FeedLimits limits;
    QCOMPARE(limits.jsonBytes, qint64(33'554'432));
    QCOMPARE(limits.jsonDepth, 32);
    QCOMPARE(limits.jsonValues, 2'000'000);
    QCOMPARE(limits.feedFiles, 10'000);
    QCOMPARE(limits.csvBytes, qint64(268'435'456));
    QCOMPARE(limits.csvColumns, 1'000);
    QCOMPARE(limits.csvLineBytes, 1'048'576);
    QCOMPARE(limits.csvRecords, 2'000'000);
    QCOMPARE(limits.tableRecords, 300'000);
    QCOMPARE(limits.textBytes, qint64(67'108'864));
    QCOMPARE(limits.entries, 100'000);
    QCOMPARE(limits.textLength, 1'000);

    const QByteArray tooDeep = "{\"x-a\": " + QByteArray(1'000'000, '[');
    QCOMPARE(loadJson(tooDeep).problems.size(), 1);
    const FeedResult tooMany = loadJson(document(joined(100'001, "1")));
    QCOMPARE(
        tooMany.problemLines(),
        QStringList("feed.json:1: /products: 100001 entries, expected a list of at most 100000 "
                    "objects"));
}

void JsonFeedTest::listsOfTheNetworkAreLimited()
{
    const auto network = [](int zones, int points, int times) {
        return document({}, R"(, "network": {
            "stops": [{"id": 1, "name": "A", "zones": [)" +
                                joined(zones, "1") + R"(]}],
            "shapes": [{"id": "s", "points": [)" +
                                joined(points, "[1, 2]") + R"(]}],
            "trips": [{"id": 1, "routeId": 1, "stopTimes": [)" +
                                joined(times, R"({"stopId": 1})") + "]}]}");
    };
    FeedOptions options;
    options.limits.entries = 3;
    REQUIRE_FEED(loadJson(network(3, 3, 3), options));
    QStringList problems = loadJson(network(4, 4, 4), options).problemLines();
    QCOMPARE(problems.size(), 3);
    QVERIFY(problems.at(0).endsWith("/network/stops/0/zones: 4 entries, expected a list of at "
                                    "most 3 integers"));
    QVERIFY(problems.at(1).endsWith("/network/shapes/0/points: 4 entries, expected a list of at "
                                    "most 3 points"));
    QVERIFY(problems.at(2).endsWith("/network/trips/0/stopTimes: 4 entries, expected a list of "
                                    "at most 3 objects"));
}

void JsonFeedTest::emptyFeedIsNoFeed()
{
    const FeedResult result = loadJson(document({}));
    REQUIRE_FEED(result);
    QVERIFY(result.feed->products.isEmpty());
    QVERIFY(result.feed->supportedPassengerTypes.isEmpty());
}

QTEST_GUILESS_MAIN(JsonFeedTest)
#include "tst_json_feed.moc"
