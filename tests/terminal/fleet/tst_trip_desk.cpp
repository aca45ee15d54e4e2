#include "SignalLog.h"
#include "TestNetwork.h"
#include "TripDesk.h"

#include <QtTest>

using namespace rivo;
using terminal::TripDesk;

Q_DECLARE_METATYPE(rivo::feed::Feed)

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
    void contextOfTheTimetable();
    void contextOfTheFeedStays();
    void stopsWithoutNames();
    void stops_data();
    void stops();
    void stopThatIsVisitedTwice();
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

void TripDeskTest::contextOfTheTimetable()
{
    const feed::Feed feed = feedWith(network());
    TripDesk desk(feed, fleet::Timetable(feed.network));
    const feed::TripContext& context = *desk.context();
    QCOMPARE(context.routeId(), 5);
    QCOMPARE(context.fromStopId(), 4);
    QCOMPARE(context.toStopId(), 1);
    QCOMPARE(context.currentStopId(), 4);
    QCOMPARE(context.tripsRouteId(), 5);
    QCOMPARE(context.tripsExecutionId(), 50);
    QCOMPARE(context.publicRouteExecutionId(), QString("50"));

    TripDesk none{feed::Feed(), fleet::Timetable()};
    QCOMPARE(none.context()->routeId(), -1);
    QCOMPARE(none.context()->currentStopId(), -1);
    QCOMPARE(none.context()->publicRouteExecutionId(), QString());
}

void TripDeskTest::contextOfTheFeedStays()
{
    const feed::Feed feed = feedWith(network(), feed::FeedTripContext{6, 11, 12, 13, 14, 51, "P"});
    TripDesk desk(feed, fleet::Timetable(feed.network));
    const feed::TripContext& context = *desk.context();
    QCOMPARE(context.routeId(), 6);
    QCOMPARE(context.fromStopId(), 11);
    QCOMPARE(context.toStopId(), 12);
    QCOMPARE(context.currentStopId(), 13);
    QCOMPARE(context.tripsRouteId(), 14);
    QCOMPARE(context.tripsExecutionId(), 51);
    QCOMPARE(context.publicRouteExecutionId(), QString("P"));
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

void TripDeskTest::stops_data()
{
    QTest::addColumn<int>("stop");
    QTest::addColumn<int>("kept");
    QTest::addColumn<int>("number");
    QTest::newRow("the next one") << 1 << 1 << 2;
    QTest::newRow("the last one") << 2 << 2 << 1;
    QTest::newRow("the same one") << 0 << 0 << 4;
    QTest::newRow("behind the last one") << 3 << 0 << 4;
    QTest::newRow("before the first one") << -1 << 0 << 4;
}

void TripDeskTest::stops()
{
    QFETCH(int, stop);
    QFETCH(int, kept);
    QFETCH(int, number);
    const feed::Feed feed = feedWith(network());
    TripDesk desk(feed, fleet::Timetable(feed.network));
    SignalLog signalLog(&desk);
    SignalLog contextSignals(desk.context());
    desk.setStop(stop);
    QCOMPARE(desk.stop(), kept);
    QCOMPARE(desk.stopName(), "Stop " + QString::number(number));
    QCOMPARE(desk.context()->currentStopId(), number);
    QCOMPARE(signalLog.take(), kept == 0 ? QStringList() : QStringList("stopChanged()"));
    QCOMPARE(contextSignals.take(),
             kept == 0 ? QStringList() : QStringList("currentStopIdChanged()"));
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

QTEST_GUILESS_MAIN(TripDeskTest)
#include "tst_trip_desk.moc"
