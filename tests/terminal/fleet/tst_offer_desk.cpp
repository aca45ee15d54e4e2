#include "OfferDesk.h"
#include "SignalLog.h"
#include "Table.h"

#include <FeedLoader.h>
#include <PassengerTypeItem.h>
#include <ShoppingItem.h>
#include <Terminal.h>

#include <QtTest>

using namespace rivo;
using terminal::OfferDesk;
using terminal::Terminal;

namespace
{

const QDateTime monday(QDate(2026, 3, 2), QTime(8, 15));

/// What stands on a terminal's feed: a file of the test, or of a folder of its own.
class Feeds
{
public:
    static feed::Feed lakeside() { return loaded(QStringLiteral(FEED_TEST_DATA "/gtfs-lakeside")); }

    /// A bus of route 12 at stop 1 of zone 7; `products` are written in JSON.
    feed::Feed withProducts(const QByteArray& products, const QByteArray& more = {}) const
    {
        QFile file(m_folder.filePath("feed.json"));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("The feed cannot be written");
        file.write(R"({"format": "rivo-feed", "version": 1, "currency": "EUR", "products": [)" +
                   products + R"(], "trip": {"routeId": 12, "fromStopId": 1, "toStopId": 3,
                   "currentStopId": 1, "tripsRouteId": 12, "tripsExecutionId": 5})" +
                   more + '}');
        file.close();
        return loaded(file.fileName());
    }

    static QByteArray product(int id, const QByteArray& more = {})
    {
        return R"({"passengerTypeId": 1, "description": "Adult", "passengerTypeCode": "PT_ADULT",
                   "price": 1, "fareProductName": "Single", "fromStopGroupId": 7,
                   "toStopGroupId": 7, "fareProductId": )" +
               QByteArray::number(id) + more + '}';
    }

    static QByteArray network()
    {
        return R"(, "network": {"routes": [{"id": 12}, {"id": 13}],
                   "zones": [{"id": 7, "name": "Z7"}, {"id": 8, "name": "Z8"},
                             {"id": 9, "name": "Z9"}],
                   "stops": [{"id": 1, "name": "A", "zones": [7]},
                             {"id": 2, "name": "B", "zones": [8, 9]},
                             {"id": 3, "name": "C"}]})";
    }

private:
    static feed::Feed loaded(const QString& path)
    {
        const feed::FeedResult result = feed::loadFeed(path);
        if (!result.feed)
            qFatal("%s", qPrintable(result.problemLines().join('\n')));
        return *result.feed;
    }

    const QTemporaryDir m_folder;
};

/// "1 2 2": the fare products that are sold, by number.
QString numbersOf(const QVector<feed::FeedProduct>& products)
{
    QStringList numbers;
    for (const feed::FeedProduct& product : products)
        numbers.append(QString::number(product.fareProductId));
    return numbers.join(' ');
}

/// The same on the tiles of a grid, without placeholders.
QString tilesOf(PassengerTypesModel& grid)
{
    QStringList numbers;
    for (int row = 0; row < grid.rowCount(); ++row) {
        const auto* tile = qobject_cast<PassengerTypeItem*>(grid.itemFromRow(row));
        if (!tile->hasExpired())
            numbers.append(QString::number(tile->fareProductId()));
    }
    numbers.sort();
    return numbers.join(' ');
}

} // namespace

class OfferDeskTest : public QObject
{
    Q_OBJECT

private slots:
    void placesOfAGtfsFeed_data();
    void placesOfAGtfsFeed();
    void placesOfAJsonFeed_data();
    void placesOfAJsonFeed();
    void aFeedWithoutTariffSellsEverything();
    void askedAnewWhenTripOrTimeChange();
    void aFaultOfTheTimetableIsTheObjection();
    void zonesOfTheStop();
    void operators();

    void gridFollowsTheStopAndTheBasketStays();
    void gridFollowsTheTime();
    void originIsTheZoneOfTheStop_data();
    void originIsTheZoneOfTheStop();
};

void OfferDeskTest::placesOfAGtfsFeed_data()
{
    const Table<int, int, QString, QStringList, QString> row("route", "stop", "sold", "types",
                                                             "objection");
    const QStringList all{"3", "PT_ADULT", "PT_SCHOOLBOY", "PT_LFS"};
    const QString everything = "1 2 3 4 4 5 5 6 6 7 8 8 8";
    row("at the first stop tickets to all zones and passes are sold", 1, 100, "1 4 5 7 8 8 8", all,
        "");
    row("at a later stop no tickets to stops that were passed", 1, 200, "2 4 6 7 8 8 8", all, "");
    row("at the last stop of the other route passes alone", 2, 200, "7 8 8 8", all, "");
    row("without a route everything", -1, 100, everything, all, "");
    row("without a stop everything", 1, -1, everything, all, "");
    row("on an unknown route everything", 9, 100, everything, all, "");
    row("at an unknown stop everything", 1, 9, everything, all, "");
}

void OfferDeskTest::placesOfAGtfsFeed()
{
    QFETCH(int, route);
    QFETCH(int, stop);
    const feed::Feed feed = Feeds::lakeside();
    const feed::TripContext trip(feed::FeedTripContext{route, 100, 300, stop, route, 1, {}});
    OfferDesk desk(feed, trip, [] { return monday; });
    QVERIFY(desk.products().isEmpty());
    desk.update();
    QTEST(numbersOf(desk.products()), "sold");
    QTEST(desk.passengerTypes(), "types");
    QTEST(desk.objection(), "objection");
}

void OfferDeskTest::placesOfAJsonFeed_data()
{
    const Table<QByteArray, int, QString> row("more", "stop", "sold");
    row("without a network routes count", {}, 1, "1 4 6");
    row("with a network zones count too", Feeds::network(), 1, "1 3 4 6");
    row("at a stop of other zones", Feeds::network(), 2, "1 4 6");
    row("at an unknown stop everything but what is not for the driver's media", Feeds::network(),
        77, "1 2 3 4 6");
    row("without a stop the same", {}, -1, "1 2 3 4 6");
}

void OfferDeskTest::placesOfAJsonFeed()
{
    QFETCH(QByteArray, more);
    QFETCH(int, stop);
    const Feeds feeds;
    const feed::Feed feed =
        feeds.withProducts(Feeds::product(1) + ',' + Feeds::product(2, R"(, "validRoutes": [13])") +
                               ',' + Feeds::product(3, R"(, "validZones": [7])") + ',' +
                               Feeds::product(4, R"(, "hasExpired": true)") + ',' +
                               Feeds::product(5, R"(, "validMedia": [2, 3, 4])") + ',' +
                               Feeds::product(6, R"(, "validMedia": [4, 0])"),
                           more);
    feed::TripContext trip(feed);
    trip.setCurrentStopId(stop);
    OfferDesk desk(feed, trip, [] { return monday; });
    desk.update();
    QTEST(numbersOf(desk.products()), "sold");
    QCOMPARE(desk.passengerTypes(), QStringList("PT_ADULT"));
}

void OfferDeskTest::aFeedWithoutTariffSellsEverything()
{
    feed::Feed feed;
    feed.name = "Buses";
    feed.products.resize(2);
    feed.supportedPassengerTypes = QStringList{"PT_LFS"};
    const feed::TripContext trip(feed::FeedTripContext{1, 1, 2, 1, 1, 1, {}});
    OfferDesk desk(feed, trip, [] { return monday; });
    desk.update();
    QCOMPARE(desk.products().size(), 2);
    QCOMPARE(desk.passengerTypes(), QStringList("PT_LFS"));
    QCOMPARE(desk.objection(), QString());
    QCOMPARE(desk.operatorName(), QString("Buses"));
    QVERIFY(desk.zones().isEmpty());
}

void OfferDeskTest::askedAnewWhenTripOrTimeChange()
{
    const Feeds feeds;
    const feed::Feed feed = feeds.withProducts(
        Feeds::product(1, R"(, "validRoutes": [12])") + ',' +
        Feeds::product(2, R"(, "validTimes": [{"begin": "09:00:00", "end": "10:00:00",
                                              "days": [1, 2]}])"));
    QDateTime now = monday;
    feed::TripContext trip(feed);
    OfferDesk desk(feed, trip, [&now] { return now; });
    SignalLog signalLog(&desk);
    desk.update();
    QCOMPARE(signalLog.take(), QStringList("changed()"));
    QCOMPARE(numbersOf(desk.products()), QString("1"));

    const auto at = [&](const QDateTime& time) {
        now = time;
        desk.update();
        return numbersOf(desk.products()) + ' ' + signalLog.take().join(' ');
    };
    QCOMPARE(at(monday), QString("1 "));
    const QDateTime nine(monday.date(), QTime(9, 0));
    QCOMPARE(at(nine.addSecs(-1)), QString("1 "));
    QCOMPARE(at(nine), QString("1 2 changed()"));
    QCOMPARE(at(nine.addSecs(3599)), QString("1 2 "));
    QCOMPARE(at(nine.addSecs(3600)), QString("1 changed()"));
    QCOMPARE(at(nine.addDays(1)), QString("1 2 changed()"));
    QCOMPARE(at(nine.addDays(2)), QString("1 changed()")); // the same hour of another day

    trip.setRouteId(13);
    QCOMPARE(signalLog.take(), QStringList("changed()"));
    QCOMPARE(numbersOf(desk.products()), QString());
    QCOMPARE(desk.objection(), QString("Nothing is sold at this stop now."));
    trip.setCurrentStopId(2); // where the same is sold
    QCOMPARE(signalLog.take(), QStringList());
    trip.setCurrentStopId(-1);
    QCOMPARE(signalLog.take(), QStringList("changed()"));
    QCOMPARE(numbersOf(desk.products()), QString("1 2"));
    QCOMPARE(desk.objection(), QString());
    trip.setRouteId(12);
    QCOMPARE(signalLog.take(), QStringList());
}

void OfferDeskTest::aFaultOfTheTimetableIsTheObjection()
{
    feed::Feed feed = Feeds::lakeside();
    const auto tariff = std::make_shared<feed::Tariff>(*feed.tariff);
    tariff->faults.append({0, {"stop_times.txt", 7, 0, {}, "stop_id", "\"X\"", "a stop"}});
    feed.tariff = tariff;
    const feed::TripContext trip(feed::FeedTripContext{1, 100, 300, 100, 1, 1, {}});
    OfferDesk desk(feed, trip, [] { return monday; });
    desk.update();
    QVERIFY(desk.products().isEmpty());
    QCOMPARE(desk.objection(), QString("The feed does not say what is sold here: "
                                       "stop_times.txt:7: stop_id: \"X\", expected a stop"));
}

void OfferDeskTest::zonesOfTheStop()
{
    const Feeds feeds;
    const feed::Feed feed = feeds.withProducts(Feeds::product(1), Feeds::network());
    feed::TripContext trip(feed);
    const OfferDesk desk(feed, trip, [] { return monday; });
    QCOMPARE(desk.zones(), QVector<int>({7}));
    trip.setCurrentStopId(2);
    QCOMPARE(desk.zones(), QVector<int>({8, 9}));
    trip.setCurrentStopId(3);
    QCOMPARE(desk.zones(), QVector<int>());
    trip.setCurrentStopId(4);
    QCOMPARE(desk.zones(), QVector<int>());
}

void OfferDeskTest::operators()
{
    const feed::Feed published = Feeds::lakeside();
    feed::Feed feed = published;
    const auto tariff = std::make_shared<feed::Tariff>(*feed.tariff);
    tariff->publisher.clear();
    tariff->agencies = {{"West"}, {"East"}};
    tariff->routes[0].agency = 1;
    tariff->routes[1].agency = -1;
    feed.tariff = tariff;
    feed.name = "West";
    const auto operatorAt = [](const feed::Feed& of, int route) {
        const feed::TripContext trip(feed::FeedTripContext{route, 100, 300, 100, route, 1, {}});
        return OfferDesk(of, trip, [] { return monday; }).operatorName();
    };
    QCOMPARE(operatorAt(published, 1), QString("Lakeside Communal Buses"));
    QCOMPARE(operatorAt(feed, 1), QString("East"));
    QCOMPARE(operatorAt(feed, 2), QString("West")); // the route has no agency
    QCOMPARE(operatorAt(feed, 3), QString("West")); // there is no such route
}

namespace
{

Terminal::Settings settingsIn(const QTemporaryDir& folder, int second = 8 * 3600)
{
    Terminal::Settings settings;
    settings.isDemo = true;
    settings.journalFile = folder.filePath("sales.journal");
    settings.date = QDate(2026, 6, 1); // a Monday
    settings.startTime = second;
    settings.pace = 0.0;
    return settings;
}

} // namespace

void OfferDeskTest::gridFollowsTheStopAndTheBasketStays()
{
    const QTemporaryDir folder;
    Terminal terminal(Feeds::lakeside(), settingsIn(folder));
    QVERIFY(terminal.trip()->choose(1)); // the first trip, on route L1
    QCOMPARE(terminal.trip()->stops().size(), 5);
    QCOMPARE(tilesOf(*terminal.grid()), QString("1 4 5 7 8 8 8"));
    QCOMPARE(terminal.grid()->numberOfColumns(), 3);
    QVERIFY(terminal.desk()->add(0));
    const auto badges = [&terminal] {
        int tickets = 0;
        for (int row = 0; row < terminal.grid()->rowCount(); ++row)
            tickets += qobject_cast<PassengerTypeItem*>(terminal.grid()->itemFromRow(row))
                           ->totalInBasket();
        return tickets;
    };
    QCOMPARE(badges(), 1);
    terminal.trip()->setStop(2);
    QCOMPARE(tilesOf(*terminal.grid()), QString("2 4 6 7 8 8 8"));
    QCOMPARE(terminal.grid()->numberOfColumns(), 3);
    QCOMPARE(terminal.basket()->rowCount(), 1);
    terminal.trip()->setStop(4);
    QCOMPARE(tilesOf(*terminal.grid()), QString("5 6 7 8 8 8")); // of trips back
    QCOMPARE(terminal.basket()->rowCount(), 1);
    terminal.trip()->setStop(0);
    QCOMPARE(badges(), 1);
    QCOMPARE(terminal.fareProducts()->rowCount(), 10);
}

void OfferDeskTest::gridFollowsTheTime()
{
    const Feeds feeds;
    const QTemporaryDir folder;
    Terminal terminal(
        feeds.withProducts(Feeds::product(1) + ',' +
                           Feeds::product(2, R"(, "validTimes": [{"begin": "09:00:00"}])")),
        settingsIn(folder));
    QCOMPARE(tilesOf(*terminal.grid()), QString("1"));
    terminal.fleet()->setTime(9 * 3600);
    QCOMPARE(tilesOf(*terminal.grid()), QString("1 2"));
    terminal.fleet()->setTime(0);
    QCOMPARE(tilesOf(*terminal.grid()), QString("1"));
}

void OfferDeskTest::originIsTheZoneOfTheStop_data()
{
    const Table<int, int, int, QString> row("stop", "from", "to", "origin");
    row("the tile is from the zone of the stop", 1, 7, 9, "Z7");
    row("the tile is from another zone", 1, 8, 9, "Z7");
    row("the tile is from no zone", 1, 0, 9, "Z7");
    row("the tile is from the second zone of the stop", 2, 9, 9, "Z9");
    row("of several zones it is the first", 2, 7, 9, "Z8");
    row("a stop without a zone", 3, 7, 9, "Z7");
    row("a ticket that is valid anywhere", 1, 0, 0, "");
}

void OfferDeskTest::originIsTheZoneOfTheStop()
{
    QFETCH(int, stop);
    QFETCH(int, from);
    QFETCH(int, to);
    const Feeds feeds;
    const QTemporaryDir folder;
    feed::Feed feed = feeds.withProducts(Feeds::product(1), Feeds::network());
    feed.products[0].fromStopGroupId = from;
    feed.products[0].toStopGroupId = to;
    for (const bool isMoved : {false, true}) {
        feed.trip->currentStopId = isMoved ? 77 : stop;
        Terminal terminal(feed, settingsIn(folder));
        terminal.trip()->context()->setCurrentStopId(stop);
        QVERIFY(terminal.desk()->add(0));
        const auto* ticket = qobject_cast<ShoppingItem*>(
            terminal.basket()->itemFromRow(terminal.basket()->rowCount() - 1));
        QTEST(ticket->origin(), "origin");
        QCOMPARE(ticket->fromStopGroupId(), from);
        QVERIFY(terminal.desk()->clear());
    }
}

QTEST_GUILESS_MAIN(OfferDeskTest)
#include "tst_offer_desk.moc"
