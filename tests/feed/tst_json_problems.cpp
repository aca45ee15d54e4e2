#include "FeedFiles.h"
#include "JsonDocuments.h"

#include "Feed.h"
#include "Table.h"

using namespace rivo::feed;

class JsonProblemsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void textsThatAreJson_data();
    void textsThatAreJson();
    void textsThatAreNoJson_data();
    void textsThatAreNoJson();
    void problems_data();
    void problems();
    void everyProblemInOnePass();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void JsonProblemsTest::textsThatAreJson_data()
{
    const Table<QByteArray> row("json");
    const QByteArray plain = document(product());
    row("plain", plain);
    row("byte-order mark at the start", "\xEF\xBB\xBF" + plain);
    row("CR LF line ends", QByteArray(plain).replace('\n', "\r\n"));
    row("CR line ends", QByteArray(plain).replace('\n', '\r'));
    row("blanks and tabs around everything",
        " \t\n" + QByteArray(plain).replace(",", " \t, \n").replace(":", "\t : ") + "\n \t");
    row("no blanks at all", QByteArray(plain).replace(' ', "").replace('\n', ""));
    row("letters of a key written as escapes",
        QByteArray(plain).replace("\"price\"", "\"\\u0070rice\""));
    row("every escape in a text",
        QByteArray(plain).replace("Single", R"(\"\\\/\b\f\n\r\t\u00e9\ud83d\ude8c)"));
    row("half a pair of surrogates in a text", QByteArray(plain).replace("Single", R"(\ud83d)"));
    row("every form of number in a key of one's own",
        document(product(),
                 R"(, "x-n": [0, -0, 0.0, 10, -1.50, 1e5, 1E+5, 1.5e-5, 1e0, true, false, null])"));
}

void JsonProblemsTest::textsThatAreJson()
{
    QFETCH(QByteArray, json);
    const FeedResult result = loadJson(json);
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->products.size(), 1);
    QCOMPARE(result.feed->products.first().price, 2.5);
}

void JsonProblemsTest::textsThatAreNoJson_data()
{
    const Table<QByteArray, QString> row("json", "problem");
    const auto value = [](const QByteArray& text) { return "{\n \"x-a\": " + text + "}"; };
    row("nothing", {}, "feed.json:1:1: the end of the file, expected an object");
    row("blanks only", " \n ", "feed.json:2:2: the end of the file, expected an object");
    row("text that is no JSON", "GIF\x03", R"(feed.json:1:1: "GIF\u0003", expected an object)");
    row("object that is not closed", value("1").chopped(1),
        "feed.json:2:10: the end of the file, expected ',' or '}'");
    row("list that is not closed", value("[1, 2"),
        "feed.json:2:14: /x-a: \"}\", expected ',' or ']'");
    row("text that is not closed", value("\"abc"),
        "feed.json:2:14: /x-a: the end of the file, expected the closing quote of a text");
    row("comma at the end of an object", value("1,"),
        "feed.json:2:11: \"}\", expected a key in quotes");
    row("comma at the end of a list", value("[1,]"),
        "feed.json:2:12: /x-a/1: \"]}\", expected a value");
    row("key without quotes", "{a: 1}", "feed.json:1:2: \"a: 1}\", expected a key in quotes");
    row("key without a value", "{\"a\"}", "feed.json:1:5: /a: \"}\", expected ':'");
    row("single quotes", value("'a'"), "feed.json:2:9: /x-a: \"'a'}\", expected a value");
    row("comment", value("/* one */ 1"), "feed.json:2:9: /x-a: \"/* one */ 1}\", expected a value");
    row("NaN", value("NaN"), "feed.json:2:9: /x-a: \"NaN}\", expected a value");
    row("Infinity", value("-Infinity"),
        "feed.json:2:10: /x-a: \"Infinity}\", expected a number such as "
        "-12.5");
    row("misspelt literal", value("True"), "feed.json:2:9: /x-a: \"True}\", expected a value");
    row("literal that goes on", value("nullify"), "feed.json:2:13: \"ify}\", expected ',' or '}'");
    row("number with a leading zero", value("01"), "feed.json:2:10: \"1}\", expected ',' or '}'");
    row("number with a plus sign", value("+1"), "feed.json:2:9: /x-a: \"+1}\", expected a value");
    row("number that begins with a point", value(".5"),
        "feed.json:2:9: /x-a: \".5}\", expected a value");
    row("number that ends with a point", value("1."),
        "feed.json:2:11: /x-a: \"}\", expected a number such as -12.5");
    row("number with an empty exponent", value("1e"),
        "feed.json:2:11: /x-a: \"}\", expected a number such as -12.5");
    row("number with a decimal comma", value("1,5"),
        "feed.json:2:11: \"5}\", expected a key in quotes");
    row("number that no double can hold", value("1e400"),
        "feed.json:2:9: /x-a: \"1e400}\", expected a number that a double can "
        "hold");
    row("line break within a text", value("\"a\nb\""),
        "feed.json:2:11: /x-a: the end of the line, expected an escape "
        "such as \\n instead of a control character");
    row("zero byte within a text", value(QByteArray("\"a\0b\"", 5)),
        R"(feed.json:2:11: /x-a: "\u0000b"}", expected an escape such as \n instead of a control character)");
    row("unknown escape", value(R"("\q")"),
        R"(feed.json:2:11: /x-a: "q"}", expected an escape such as \n or \u00e9)");
    row("short escape", value(R"("\u12g4")"),
        R"(feed.json:2:14: /x-a: "g4"}", expected an escape such as \n or \u00e9)");
    row("text after the end", "{}\n{}", "feed.json:2:1: \"{}\", expected the end of the file");
    row("zero byte after the end", QByteArray("{}\0", 3),
        R"(feed.json:1:3: "\u0000", expected the end of the file)");
    row("text in UTF-16", QByteArray("\xFF\xFE{\0}\0", 6),
        "feed.json:1: text in UTF-16, expected text in UTF-8 (save the file in this encoding)");
    row("text in UTF-16 of the other byte order", QByteArray("\xFE\xFF\0{\0}", 6),
        "feed.json:1: text in UTF-16, expected text in UTF-8 (save the file in this encoding)");
    row("column counts letters, not bytes", "{\"ä€\": ?}",
        "feed.json:1:8: /ä€: \"?}\", expected a value");
}

void JsonProblemsTest::textsThatAreNoJson()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, problem);
    QCOMPARE(loadJson(json).problemLines(), QStringList(problem));
}

void JsonProblemsTest::problems_data()
{
    const Table<QByteArray, QStringList> row("json", "problems");
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
         "columns, taxPercent, supportedPassengerTypes, products, fareProducts, trip, vehicles, "
         "peripherals, printerId, zReports, network"});
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
         "fareDiscount, isDaily, pos, validZones, validRoutes, validMedia, validTimes, "
         "validMinutes"});
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

void JsonProblemsTest::problems()
{
    QFETCH(QByteArray, json);
    QFETCH(QStringList, problems);
    QCOMPARE(loadJson(json).problemLines(), problems);
}

void JsonProblemsTest::everyProblemInOnePass()
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

QTEST_GUILESS_MAIN(JsonProblemsTest)
#include "tst_json_problems.moc"
