#include "SignalLog.h"
#include "TestNetwork.h"
#include "TripDesk.h"

#include <Tariff.h>

#include <QtTest>

using namespace rivo;
using terminal::TripDesk;

Q_DECLARE_METATYPE(rivo::feed::Feed)
Q_DECLARE_METATYPE(TestNetwork)

namespace
{

feed::Feed feedWith(const feed::Network& network,
                    const std::optional<feed::FeedTripContext>& trip = {})
{
    feed::Feed feed;
    feed.network = network;
    feed.trip = trip;
    return feed;
}

TestNetwork network()
{
    return TestNetwork()
        .trip("70", "6", {"7 9:00:00", "8 9:10:00"})
        .trip("51", "5", {"1 10:00:00", "2 10:05:00", "4 10:30:00"}, {}, {}, "Beach")
        .trip("50", "5", {"4 8:00:00", "2 8:25:00", "1 8:30:00"});
}

} // namespace

class TripDeskTest : public QObject
{
    Q_OBJECT

private slots:
    void trips_data();
    void trips();
    void contexts();
    void stopsWithoutNames();
    void stops();
    void stopThatIsVisitedTwice();
    void tripOfTheStops();
    void punctuality();
    void theTripOfNowComesFirst_data();
    void theTripOfNowComesFirst();
    void theNextTripIsOfferedAtTheEnd_data();
    void theNextTripIsOfferedAtTheEnd();
    void theNextTripOfAnUnknownOne();
    void aTripIsUnderWay_data();
    void aTripIsUnderWay();
    void aTripIsChosen();
    void stopsWithoutTrips();
};

void TripDeskTest::trips_data()
{
    QTest::addColumn<feed::Feed>("feed");
    QTest::addColumn<QString>("route");
    QTest::addColumn<QStringList>("stops");
    QTest::addColumn<int>("stop");
    QTest::addColumn<QString>("stopName");
    const auto trip = [](int route, int execution, int stop) {
        return feed::FeedTripContext{route, 1, 4, stop, route, execution, "X"};
    };
    QTest::newRow("neither trip nor timetable") << feed::Feed() << "" << QStringList() << -1 << "";
    QTest::newRow("no trip: the first of the timetable")
        << feedWith(network()) << "5 to Stop 1" << QStringList{"Stop 4", "Stop 2", "Stop 1"} << 0
        << "Stop 4";
    QTest::newRow("a trip of the timetable")
        << feedWith(network(), trip(5, 51, 2)) << "5 to Beach"
        << QStringList{"Stop 1", "Stop 2", "Stop 4"} << 1 << "Stop 2";
    QTest::newRow("an unknown trip: the first of its route")
        << feedWith(network(), trip(6, 99, 8)) << "Ring to Stop 8"
        << QStringList{"Stop 7", "Stop 8"} << 1 << "Stop 8";
    QTest::newRow("a trip that is at none of its stops")
        << feedWith(network(), trip(5, 51, 3)) << "5 to Beach"
        << QStringList{"Stop 1", "Stop 2", "Stop 4"} << -1 << "3";
    QTest::newRow("a trip of an unknown route")
        << feedWith(network(), trip(12, 99, 3)) << "12" << QStringList() << -1 << "3";
    QTest::newRow("a trip without a timetable")
        << feedWith({}, trip(12, 99, 3)) << "12" << QStringList() << -1 << "3";
}

void TripDeskTest::trips()
{
    QFETCH(feed::Feed, feed);
    const TripDesk desk(feed, fleet::Timetable(feed.network));
    QTEST(desk.route(), "route");
    QTEST(desk.stops(), "stops");
    QTEST(desk.stop(), "stop");
    QTEST(desk.stopName(), "stopName");
}

void TripDeskTest::contexts()
{
    const auto contextOf = [](const feed::Feed& feed) {
        TripDesk desk(feed, fleet::Timetable(feed.network));
        const feed::TripContext& context = *desk.context();
        QStringList texts;
        for (const int id :
             {context.routeId(), context.fromStopId(), context.toStopId(), context.currentStopId(),
              context.tripsRouteId(), context.tripsExecutionId()})
            texts.append(QString::number(id));
        return texts.join(' ') + ' ' + context.publicRouteExecutionId();
    };
    QCOMPARE(contextOf(feedWith(network())), "5 4 1 4 5 50 50"); // of the timetable
    QCOMPARE(contextOf(feedWith(network(), feed::FeedTripContext{6, 11, 12, 13, 14, 51, "P"})),
             "6 11 12 13 14 51 P"); // the feed's stays
    QCOMPARE(contextOf(feed::Feed()), "-1 -1 -1 -1 -1 -1 ");
}

void TripDeskTest::stopsWithoutNames()
{
    TestNetwork bare = network();
    for (feed::NetworkStop& stop : bare.stops)
        stop.name.clear();
    const feed::Feed feed = feedWith(bare);
    const TripDesk desk(feed, fleet::Timetable(feed.network));
    QCOMPARE(desk.route(), QString("5"));
    QCOMPARE(desk.stops(), QStringList({"4", "2", "1"}));
}

void TripDeskTest::stops()
{
    const feed::Feed feed = feedWith(network());
    TripDesk desk(feed, fleet::Timetable(feed.network));
    SignalLog signalLog(&desk);
    SignalLog contextSignals(desk.context());
    struct Step
    {
        int stop;
        int kept;
        const char* name;
        int number;
        bool isNew;
    };
    for (const Step& step : {Step{0, 0, "Stop 4", 4, false}, // the same one
                             {1, 1, "Stop 2", 2, true},
                             {2, 2, "Stop 1", 1, true},
                             {3, 2, "Stop 1", 1, false},     // behind the last one
                             {-1, 2, "Stop 1", 1, false}}) { // before the first one
        desk.setStop(step.stop);
        QCOMPARE(desk.stop(), step.kept);
        QCOMPARE(desk.stopName(), QString(step.name));
        QCOMPARE(desk.context()->currentStopId(), step.number);
        QCOMPARE(signalLog.take(), QStringList("stopChanged()").mid(step.isNew ? 0 : 1));
        QCOMPARE(contextSignals.take(),
                 QStringList("currentStopIdChanged()").mid(step.isNew ? 0 : 1));
    }
}

void TripDeskTest::stopThatIsVisitedTwice()
{
    const feed::Feed feed = feedWith(
        TestNetwork().trip("1", "6", {"7 9:00:00", "8 9:10:00", "9 9:20:00", "7 9:30:00"}));
    TripDesk desk(feed, fleet::Timetable(feed.network));
    QCOMPARE(desk.stop(), 0);
    SignalLog signalLog(&desk);
    desk.setStop(3);
    QCOMPARE(desk.stop(), 3);
    QCOMPARE(signalLog.take(), QStringList("stopChanged()"));
    QCOMPARE(desk.context()->currentStopId(), 7);
}

void TripDeskTest::tripOfTheStops()
{
    QCOMPARE(TripDesk(feed::Feed(), fleet::Timetable()).trip(), nullptr);
    const feed::Feed feed = feedWith(network());
    const TripDesk desk(feed, fleet::Timetable(feed.network));
    QCOMPARE(desk.trip()->id, QString("50"));
    QCOMPARE(desk.trip()->calls.size(), desk.stopCount());
}

void TripDeskTest::punctuality()
{
    const feed::Feed feed = feedWith(network());
    TripDesk desk(feed, fleet::Timetable(feed.network));
    SignalLog signalLog(&desk);
    desk.setPunctuality("");
    QCOMPARE(signalLog.take(), QStringList());
    desk.setPunctuality("5 min late");
    desk.setPunctuality("5 min late");
    QCOMPARE(desk.punctuality(), QString("5 min late"));
    QCOMPARE(signalLog.take(), QStringList("punctualityChanged()"));
}

void TripDeskTest::theTripOfNowComesFirst_data()
{
    QTest::addColumn<QString>("now");
    QTest::addColumn<QStringList>("trips");
    QTest::newRow("before the first: in their order")
        << "7:00:00" << QStringList{"50 08:00–08:30", "51 10:00–10:30", "52 23:50–00:20"};
    QTest::newRow("one runs") << "8:10:00"
                              << QStringList{"50 08:00–08:30 now", "51 10:00–10:30",
                                             "52 23:50–00:20"};
    QTest::newRow("between two") << "9:00:00"
                                 << QStringList{"51 10:00–10:30", "52 23:50–00:20",
                                                "50 08:00–08:30 over"};
    QTest::newRow("at night") << "23:55:00"
                              << QStringList{"52 23:50–00:20 now", "51 10:00–10:30 over",
                                             "50 08:00–08:30 over"};
    QTest::newRow("past midnight")
        << "0:10:00" << QStringList{"52 23:50–00:20 now", "50 08:00–08:30", "51 10:00–10:30"};
}

void TripDeskTest::theTripOfNowComesFirst()
{
    QFETCH(QString, now);
    const feed::Feed feed =
        feedWith(network().trip("52", "5", {"1 23:50:00", "2 24:20:00"}, {}, {}, "Night"));
    const fleet::Seconds seconds = feed::seconds(now);
    const TripDesk desk(feed, fleet::Timetable(feed.network), seconds);
    QStringList trips;
    for (const QVariant& trip : desk.tripsOf(5, seconds)) {
        const QVariantMap map = trip.toMap();
        trips.append(map["trip"].toString() + ' ' + map["time"].toString() +
                     (map["isNow"].toBool() ? " now" : "") +
                     (map["isOver"].toBool() ? " over" : ""));
    }
    QTEST(trips, "trips");
    QCOMPARE(desk.tripsOf(9, seconds), QVariantList());
}

void TripDeskTest::theNextTripIsOfferedAtTheEnd_data()
{
    QTest::addColumn<TestNetwork>("more");
    QTest::addColumn<int>("stop");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QStringList>("trips");
    // The vehicle is on trip 51 of route 5 from 1 to 4, from 10:00 to 10:30.
    const auto row = [](const char* what, const TestNetwork& more, int stop, const char* now,
                        const QStringList& trips) {
        QTest::newRow(what) << more << stop << QString(now) << trips;
    };
    const TestNetwork back = network()
                                 .trip("53", "5", {"1 10:35:00", "2 11:00:00"})
                                 .trip("54", "5", {"4 10:40:00", "3 10:50:00"})
                                 .trip("55", "5", {"4 10:50:00", "2 11:00:00", "1 11:20:00"})
                                 .trip("56", "5", {"4 12:00:00", "1 12:30:00"});
    row("the one that goes back comes before all others", back, 2, "10:30:00",
        {"55 next", "51", "53", "54", "56", "50"});
    row("not before the last stop", back, 1, "10:30:00", {"51", "53", "54", "55", "56", "50"});
    row("it may have begun: this vehicle is late", back, 2, "10:55:00",
        {"55 next", "53", "56", "54", "51", "50"});
    row("it comes after this one: this vehicle is early", back, 2, "8:10:00",
        {"55 next", "50", "51", "53", "54", "56"});
    row("one that is over is not offered", back, 2, "11:30:00",
        {"56 next", "55", "53", "54", "51", "50"});
    row("none goes back: the next that begins here",
        network()
            .trip("57", "5", {"4 11:00:00", "3 11:10:00"})
            .trip("58", "5", {"4 10:50:00", "3 11:00:00"}),
        2, "10:30:00", {"58 next", "51", "57", "50"});
    row("none begins here", network().trip("53", "5", {"1 10:35:00", "2 11:00:00"}), 2, "10:30:00",
        {"51", "53", "50"});
    TestNetwork sides = network().trip("59", "5", {"8 10:50:00", "9 11:20:00"});
    sides.stops[7].name = "Stop 4";
    sides.stops[8].name = "Stop 1";
    row("the other side of the street is a stop of the same name",
        sides.trip("58", "5", {"4 10:40:00", "3 10:50:00"}), 2, "10:30:00",
        {"59 next", "51", "58", "50"});
}

void TripDeskTest::theNextTripIsOfferedAtTheEnd()
{
    QFETCH(TestNetwork, more);
    QFETCH(int, stop);
    QFETCH(QString, now);
    const feed::Feed feed = feedWith(more, feed::FeedTripContext{5, 1, 4, 1, 5, 51, "X"});
    TripDesk desk(feed, fleet::Timetable(feed.network));
    QVERIFY(!desk.isAtEnd());
    desk.setStop(stop);
    QCOMPARE(desk.isAtEnd(), stop == 2);
    QStringList trips;
    for (const QVariant& trip : desk.tripsOf(5, feed::seconds(now))) {
        const QVariantMap map = trip.toMap();
        trips.append(map["trip"].toString() + (map["isNext"].toBool() ? " next" : ""));
    }
    QTEST(trips, "trips");
    for (const QVariant& trip : desk.tripsOf(6, feed::seconds(now)))
        QVERIFY(!trip.toMap()["isNext"].toBool());
}

/// The trip of the feed is not in the timetable: what begins from now on follows.
void TripDeskTest::theNextTripOfAnUnknownOne()
{
    const feed::Feed feed = feedWith(network().trip("55", "5", {"4 10:50:00", "1 11:20:00"}),
                                     feed::FeedTripContext{5, 1, 4, 4, 5, 99, "X"});
    const TripDesk desk(feed, fleet::Timetable(feed.network), feed::seconds(QString("10:00:00")));
    QVERIFY(desk.isAtEnd());
    const auto next = [&desk](const char* now) {
        const QVariantMap first = desk.tripsOf(5, feed::seconds(QString(now))).first().toMap();
        return first["isNext"].toBool() ? first["trip"].toInt() : -1;
    };
    QCOMPARE(next("10:40:00"), 55);
    QCOMPARE(next("10:55:00"), -1);
}

void TripDeskTest::aTripIsUnderWay_data()
{
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<int>("stop");
    QTest::addColumn<QString>("time");
    QTest::addColumn<bool>("isUnderWay");
    const QStringList calls{"1 10:00:00", "2 10:05:00", "4 10:30:00"};
    const QStringList night{"1 23:50:00", "4 24:20:00"};
    QTest::newRow("before it starts") << calls << 1 << "09:59:59" << false;
    QTest::newRow("as it starts") << calls << 1 << "10:00:00" << true;
    QTest::newRow("at a stop") << calls << 2 << "10:05:00" << true;
    QTest::newRow("at its last stop") << calls << 4 << "10:25:00" << false;
    QTest::newRow("it is late") << calls << 2 << "11:30:00" << true;
    QTest::newRow("an hour after its end") << calls << 2 << "11:30:01" << false;
    QTest::newRow("before midnight") << night << 1 << "23:55:00" << true;
    QTest::newRow("after midnight") << night << 1 << "00:10:00" << true;
    QTest::newRow("long after midnight") << night << 1 << "01:20:01" << false;
}

void TripDeskTest::aTripIsUnderWay()
{
    QFETCH(QStringList, calls);
    QFETCH(int, stop);
    QFETCH(QString, time);
    const feed::Feed feed = feedWith(TestNetwork().trip("51", "5", calls),
                                     feed::FeedTripContext{5, 1, 4, stop, 5, 51, "X"});
    const TripDesk desk(feed, fleet::Timetable(feed.network));
    QVERIFY(desk.trip() != nullptr);
    QTEST(desk.isUnderWay(QTime(0, 0).secsTo(QTime::fromString(time))), "isUnderWay");
    QVERIFY(!TripDesk(feed::Feed(), fleet::Timetable()).isUnderWay(36000));
}

void TripDeskTest::aTripIsChosen()
{
    const feed::Feed feed = feedWith(network(), feed::FeedTripContext{5, 1, 4, 2, 5, 99, "X"});
    TripDesk desk(feed, fleet::Timetable(feed.network));
    QCOMPARE(desk.tripText(), QString()); // trip 99 is not in the timetable
    QCOMPARE(desk.routes().size(), 2);
    QCOMPARE(desk.routes().first().toMap()["name"].toString(), QString("5"));
    SignalLog signalLog(&desk);
    QStringList seen; // by what follows the context
    connect(desk.context(), &feed::TripContext::currentStopIdChanged, &desk, [&] {
        seen.append(QString("%1 %2 %3")
                        .arg(desk.route(), desk.stopName())
                        .arg(desk.context()->tripsExecutionId()));
    });
    QVERIFY(desk.choose(51));
    QCOMPARE(seen, QStringList("5 to Beach Stop 1 51"));
    QCOMPARE(signalLog.take(), QStringList({"tripChanged()", "stopChanged()"}));
    QCOMPARE(desk.tripText(), QString("10:00"));
    QCOMPARE(desk.stops(), QStringList({"Stop 1", "Stop 2", "Stop 4"}));
    QCOMPARE(desk.stop(), 0);
    QCOMPARE(desk.trip()->number, 51);
    QVERIFY(desk.tripsOf(5, 0).at(1).toMap()["isChosen"].toBool());
    QVERIFY(!desk.choose(99));
    QCOMPARE(signalLog.take(), QStringList());
    QVERIFY(desk.choose(70));
    QCOMPARE(desk.routeNumber(), 6);
}

void TripDeskTest::stopsWithoutTrips()
{
    feed::Feed feed = feedWith(TestNetwork());
    auto tariff = std::make_shared<feed::Tariff>();
    for (const feed::NetworkStop& stop : qAsConst(feed.network.stops))
        tariff->stopIds.append(stop.id.toStdString());
    feed.tariff = tariff;
    feed.network.stops[1].name.clear();
    TripDesk desk(feed, fleet::Timetable(feed.network));
    QCOMPARE(desk.stopCount(), 9);
    QCOMPARE(desk.stops().mid(0, 2), QStringList({"Stop 1", "2"}));
    QCOMPARE(desk.stop(), -1);
    desk.setStop(3);
    QCOMPARE(desk.stopName(), QString("Stop 4"));
    QCOMPARE(desk.context()->currentStopId(), 4);
    QCOMPARE(desk.routes(), QVariantList());
}

QTEST_GUILESS_MAIN(TripDeskTest)
#include "tst_trip_desk.moc"
