#include "FeedFiles.h"
#include "JsonDocuments.h"

#include "Feed.h"
#include "Offers.h"
#include "Table.h"

using namespace rivo::feed;

class JsonTariffTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void prices_data();
    void prices();
    void validity_data();
    void validity();
    void offersWithoutANetwork();
    void everythingIsSoldSomewhere();
    void everythingIsSoldOnItsMediaAlone();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void JsonTariffTest::prices_data()
{
    addColumns<QByteArray, QByteArray, QString>("currency", "price", "problem");
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

void JsonTariffTest::prices()
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

void JsonTariffTest::validity_data()
{
    // query: route stop time to
    // reason: empty if there is none
    const Table<QByteArray, QString, QString> row("validity", "query", "reason");
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

void JsonTariffTest::validity()
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

void JsonTariffTest::offersWithoutANetwork()
{
    const FeedResult result = loadJson(document(product(R"(, "validRoutes": [12])")));
    REQUIRE_FEED(result);
    OfferQuery query{"12", "1", QDateTime::currentDateTime(), {}, {0, 1}, false};
    QCOMPARE(offersOf(*result.feed->tariff, query).offers.size(), 1);
    query.route = "13";
    QCOMPARE(offersOf(*result.feed->tariff, query).offers.size(), 0);
}

void JsonTariffTest::everythingIsSoldSomewhere()
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

void JsonTariffTest::everythingIsSoldOnItsMediaAlone()
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

QTEST_GUILESS_MAIN(JsonTariffTest)
#include "tst_json_tariff.moc"
