#include "Explanation.h"
#include "FeedFiles.h"
#include "GtfsCases.h"
#include "OfferQueryText.h"
#include "Table.h"

using namespace rivo::feed;

namespace
{

QVector<GtfsCase> allCases()
{
    return GtfsCases::read(QStringLiteral(FEED_TEST_DATA "/gtfs/explanations.cases"));
}

FeedResult loadGtfs(const GtfsCase::Files& files)
{
    for (auto file = files.begin(); file != files.end(); ++file)
        FeedFiles::write(QStringLiteral("gtfs/") + file.key(), file.value());
    return load(QStringLiteral("gtfs"));
}

/// The answer to "product [route stop time [to=S] [media=T]]".
QStringList answerTo(const QString& line, const Tariff& tariff)
{
    const QString product = line.section(' ', 0, 0);
    const QString place = line.section(' ', 1);
    return explained(tariff, product,
                     place.isEmpty() ? std::nullopt : std::optional(queryOf(place)));
}

} // namespace

class ExplanationTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void cases_data();
    void cases();
    void twentyRulesAreExplained_data();
    void twentyRulesAreExplained();
    void productsThatSayWhereTheyAreSold_data();
    void productsThatSayWhereTheyAreSold();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void ExplanationTest::cases_data()
{
    const Table<GtfsCase::Files, QStringList> row("files", "expected");
    for (const GtfsCase& entry : allCases())
        row(qPrintable(entry.name), entry.files, entry.expected);
}

void ExplanationTest::cases()
{
    QFETCH(GtfsCase::Files, files);
    QFETCH(QStringList, expected);
    const FeedResult result = loadGtfs(files);
    REQUIRE_FEED(result);
    QStringList found;
    for (const QString& query : expected.filter(QRegularExpression("^\\? "))) {
        found.append(query);
        found.append(answerTo(query.mid(2), *result.feed->tariff));
    }
    QCOMPARE(found.join('\n'), expected.join('\n'));
}

void ExplanationTest::twentyRulesAreExplained_data()
{
    const Table<int, QString> row("rules", "last");
    row("twenty rules have a sentence each", 20,
        "Line 21 of fare_leg_rules.txt is for rides from Market (x) to y.");
    row("a further rule is counted", 21, "1 further rules are about it.");
    row("all further rules are counted", 35, "15 further rules are about it.");
}

void ExplanationTest::twentyRulesAreExplained()
{
    QFETCH(int, rules);
    QFETCH(QString, last);
    GtfsCase::Files files = allCases().first().files;
    files["fare_leg_rules.txt"] =
        "fare_product_id,from_area_id,to_area_id\n" + QByteArray("near,x,y\n").repeated(rules);
    const FeedResult result = loadGtfs(files);
    REQUIRE_FEED(result);
    const QStringList sentences = answerTo("near", *result.feed->tariff);
    QCOMPARE(sentences.filter(QRegularExpression("^Line [0-9]+ of ")).size(), 20);
    QCOMPARE(sentences.last(), last);
}

void ExplanationTest::productsThatSayWhereTheyAreSold_data()
{
    addColumns<QByteArray, QString>("validity", "verdict");
    const auto row = [](const char* name, const QByteArray& validity, const QString& verdict) {
        QTest::newRow(name) << validity << "At stop 1 of route 12 it is " + verdict;
    };
    row("a product without a restriction is sold", "",
        "sold for 1.00 EUR to Adult (1), from Town (7) to 8.");
    row("a product for the app is not sold on paper", R"(, "validMedia": [4])",
        "not sold: it is on media that are not sold here.");
    row("a product for another route is not sold", R"(, "validRoutes": [13])",
        "not sold: it is not for this route.");
    row("a product for another zone is not sold", R"(, "validZones": [8])",
        "not sold: no rule is for a ride from this stop.");
    row("a product for the night is not sold at noon", R"(, "validTimes": [{"end": "06:00:00"}])",
        "not sold: no rule holds at this time.");
}

void ExplanationTest::productsThatSayWhereTheyAreSold()
{
    QFETCH(QByteArray, validity);
    QFETCH(QString, verdict);
    const FeedResult result = loadJson(
        R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "products": [
              {"passengerTypeId": 1, "description": "Adult", "passengerTypeCode": "PT_ADULT",
               "price": 1, "fareProductId": 5, "fareProductName": "Single",
               "fromStopGroupId": 7, "toStopGroupId": 8)" +
        validity + R"(}], "network": {"routes": [{"id": 12}, {"id": 13}],
                                      "zones": [{"id": 7, "name": "Town"}, {"id": 8, "name": "8"}],
                                      "stops": [{"id": 1, "name": "A", "zones": [7]},
                                                {"id": 2, "name": "B", "zones": [7]}]}})");
    REQUIRE_FEED(result);
    const QString price = "It costs 1.00 EUR for Adult (1).";
    QCOMPARE(answerTo("5", *result.feed->tariff), QStringList(price));
    QCOMPARE(answerTo("5 12 1 2026-03-02T12:00", *result.feed->tariff),
             QStringList({price, verdict}));
}

QTEST_GUILESS_MAIN(ExplanationTest)
#include "tst_explanation.moc"
