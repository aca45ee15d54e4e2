#include "RealFeed.h"
#include "SignalLog.h"
#include "SimulatedFleet.h"
#include "Table.h"

#include <FeedLoader.h>
#include <FeedToModels.h>

#include <QtTest>

#include <limits>

using namespace rivo;
using fleet::FleetSimulator;
using fleet::Timetable;
using fleet::Trip;

Q_DECLARE_METATYPE(rivo::feed::Network)

/// Where the vehicles are, and which trips they run.
class FleetSimulatorTest : public QObject
{
    Q_OBJECT

private slots:
    void vehiclesFollowTheirPathExactly_data();
    void vehiclesFollowTheirPathExactly();
    void directionsAndStops();
    void timeIsTakenModuloTheDay();
    void whatCannotRunStands_data();
    void whatCannotRunStands();
    void vehiclesAreMadeForAFeedWithout();
    void notMoreThanFiftyVehiclesAreMade();
    void tripsGoToVehicles_data();
    void tripsGoToVehicles();
    void dutiesNeverOverlap_data();
    void dutiesNeverOverlap();
    void shippedFeeds_data();
    void shippedFeeds();
    void aRealFeed();
};

void FleetSimulatorTest::vehiclesFollowTheirPathExactly_data()
{
    const Table<QStringList, QString, QString> add("calls", "time", "state");
    const QStringList morning = out("8:00:00", "8:30:00");
    add("waiting at the first stop", morning, "0:00:00", "1 waiting");
    add("second of departure", morning, "8:00:00", "1 at a stop");
    add("one second", morning, "8:00:01", "1.00167 driving");
    add("a third of the way", morning, "8:10:00", "2 driving");
    add("half of the way", morning, "8:15:00", "2.5 driving");
    add("second of arrival", morning, "8:30:00", "4 at a stop");
    add("then it waits for tomorrow", morning, "8:30:01", "1 waiting");
    const QStringList over = out("23:45:00", "24:15:00");
    add("before midnight", over, "23:55:00", "2 driving");
    add("at midnight", over, "0:00:00", "2.5 driving");
    add("after midnight", over, "0:05:00", "3 driving");
    add("arrival after midnight", over, "0:15:00", "4 at a stop");
    add("the rest of the day", over, "0:15:01", "1 waiting");
    const QStringList behind = out("25:00:00", "25:30:00");
    add("a trip behind midnight", behind, "1:10:00", "2 driving");
    add("a trip behind midnight, before it", behind, "0:59:59", "1 waiting");
    add("a trip behind the second midnight", out("49:00:00", "49:30:00"), "1:20:00", "3 driving");
}

void FleetSimulatorTest::vehiclesFollowTheirPathExactly()
{
    QFETCH(QStringList, calls);
    QFETCH(QString, time);
    QFETCH(QString, state);
    Fleet fleet(TestNetwork().trip("1", "5", calls), {5});
    fleet.setTime(time);
    QCOMPARE(fleet.simulator->time(), feed::seconds(time));
    QCOMPARE(fleet.stateOf(101), state);
    QCOMPARE(fleet.vehicle(101).assetCoordinate().latitude(), 0.0);
    QCOMPARE(fleet.vehicle(101).routeStatus(), QString("to Stop 4"));
    QVERIFY(fleet.vehicle(101).updated());
    QCOMPARE(fleet.vehicle(101).registrationNumber(), QString("R 101"));
}

void FleetSimulatorTest::directionsAndStops()
{
    Fleet fleet(TestNetwork()
                    .trip("1", "5", {"1 8:00:00", "2 8:10:00 8:20:00", "4 8:30:00"}, {}, {}, "Sea")
                    .trip("2", "5", back("9:00:00", "9:30:00")),
                {5});
    fleet.setTime("8:05:00");
    QVERIFY(qAbs(fleet.vehicle(101).direction() - 90.0) < 0.01);
    QCOMPARE(fleet.vehicle(101).routeStatus(), QString("to Sea"));
    fleet.setTime("8:15:00");
    QCOMPARE(fleet.stateOf(101), "2 at a stop");
    fleet.setTime("9:10:00");
    QVERIFY(qAbs(fleet.vehicle(101).direction() - 270.0) < 0.01);
    QCOMPARE(fleet.stateOf(101), "3 driving");
    QCOMPARE(fleet.tripOf(101), 2);
}

void FleetSimulatorTest::timeIsTakenModuloTheDay()
{
    constexpr int largest = std::numeric_limits<int>::max();
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "8:30:00")), {5});
    for (const auto& [time, wanted] : {std::pair(0, 0),
                                       {86399, 86399},
                                       {86400, 0},
                                       {86400 + 5, 5},
                                       {-1, 86399},
                                       {-86400, 0},
                                       {largest, largest % 86400},
                                       {-largest - 1, 86400 - largest % 86400 - 1}}) {
        fleet.simulator->setTime(time);
        QCOMPARE(fleet.simulator->time(), wanted);
    }
}

void FleetSimulatorTest::whatCannotRunStands_data()
{
    const Table<QStringList, int> row("calls", "route");
    row("a trip of a whole day", out("8:00:00", "32:00:00"), 5);
    row("a trip whose stops are nowhere", {"8 8:00:00", "9 9:00:00"}, 5);
    row("a trip of another route", out("8:00:00", "9:00:00"), 6);
    row("no times", {"1", "4"}, 5);
}

void FleetSimulatorTest::whatCannotRunStands()
{
    QFETCH(QStringList, calls);
    QFETCH(int, route);
    TestNetwork network;
    network.stops[7].latitude = qQNaN();
    network.stops[8].longitude = qQNaN();
    Fleet fleet(network.trip("1", "5", calls), {route});
    SignalLog signalLog(&fleet.model);
    fleet.simulator->setTime(8 * hour + 60);
    QCOMPARE(signalLog.take(), QStringList());
    QCOMPARE(fleet.vehicle(101).assetCoordinate(), QGeoCoordinate(1, 2));
    QCOMPARE(fleet.vehicle(101).drivingStatus(), QString("in the depot"));
    QCOMPARE(fleet.tripOf(101), -1);
    QCOMPARE(fleet.tripOf(4711), -1);
}

void FleetSimulatorTest::vehiclesAreMadeForAFeedWithout()
{
    Fleet fleet(TestNetwork()
                    .trip("1", "5", out("8:00:00", "9:00:00"))
                    .trip("2", "6", out("8:30:00", "9:30:00"))
                    .trip("3", "5", back("8:30:00", "9:30:00"))
                    .trip("4", "5", back("9:00:00", "9:20:00"))
                    .trip("5", "5", out("23:30:00", "32:45:00")));
    // Route 5 needs a third one for the trip that comes back from yesterday.
    QCOMPARE(fleet.model.rowCount(), 4);
    QVector<int> routes;
    for (int id = 1; id <= 4; ++id) {
        const AssetItem& made = fleet.vehicle(id);
        QCOMPARE(made.registrationNumber(), QString("Bus %1").arg(id));
        QCOMPARE(made.internalNumber(), QString::number(id));
        QVERIFY(made.inView());
        routes.append(made.routeId());
    }
    QCOMPARE(routes, QVector<int>({5, 5, 5, 6}));
    QCOMPARE(fleet.vehicle(1).routeName(), QString("East - West"));
    fleet.simulator->setTime(9 * hour + 10 * minute);
    QCOMPARE(fleet.tripOf(1), 4);
    QCOMPARE(fleet.tripOf(2), 3);
    QCOMPARE(fleet.tripOf(3), 5);
    QCOMPARE(fleet.tripOf(4), 2);
    QVERIFY(fleet.vehicle(1).assetCoordinate().isValid());

    QCOMPARE(Fleet(TestNetwork()).model.rowCount(), 0);
}

void FleetSimulatorTest::notMoreThanFiftyVehiclesAreMade()
{
    TestNetwork network;
    for (int id = 1; id <= 70; ++id)
        network.trip(QString::number(id), id <= 35 ? "5" : "6", out("8:00:00", "9:00:00"));
    Fleet fleet(network);
    QCOMPARE(fleet.model.rowCount(), FleetSimulator::mostNewVehicles);
    QCOMPARE(fleet.vehicle(50).routeId(), 6);
}

void FleetSimulatorTest::tripsGoToVehicles_data()
{
    // routes: of the vehicles
    // trips: that the vehicles run then
    const Table<feed::Network, QVector<int>, QString, QVector<int>> row("network", "routes", "time",
                                                                        "trips");
    row("that are free",
        feed::Network(TestNetwork()
                          .trip("1", "5", out("8:00:00", "9:00:00"))
                          .trip("2", "5", out("8:30:00", "9:30:00"))
                          .trip("3", "5", out("8:40:00", "8:50:00")) // none is left for it
                          .trip("4", "6", out("8:00:00", "9:00:00"))),
        {5, 7, 5}, "8:45:00", {1, -1, 2});
    row("that are where they start",
        feed::Network(TestNetwork()
                          .trip("1", "5", out("8:00:00", "9:00:00"))
                          .trip("2", "5", back("8:00:00", "9:00:00"))
                          .trip("3", "5", out("9:00:00", "9:30:00"))
                          .trip("4", "5", back("9:00:00", "9:30:00"))),
        {5, 5}, "9:10:00", {4, 3});
}

void FleetSimulatorTest::tripsGoToVehicles()
{
    QFETCH(feed::Network, network);
    QFETCH(QVector<int>, routes);
    QFETCH(QString, time);
    QFETCH(QVector<int>, trips);
    Fleet fleet(network, routes);
    fleet.setTime(time);
    QCOMPARE(fleet.model.rowCount(), routes.size());
    for (int i = 0; i < trips.size(); ++i)
        QCOMPARE(fleet.tripOf(101 + i), trips.at(i));
}

void FleetSimulatorTest::dutiesNeverOverlap_data()
{
    const Table<int> row("vehicles");
    row("fewer vehicles than needed", 3);
    row("vehicles as they are needed", 0);
}

void FleetSimulatorTest::dutiesNeverOverlap()
{
    QFETCH(int, vehicles);
    // Trips of 1 to 400 minutes at odd times over one and a half days.
    TestNetwork network;
    constexpr int trips = 40;
    for (int id = 1; id <= trips; ++id) {
        const int start = id * 7919 % 129600;
        const int end = start + minute + id * 3571 % 24000;
        const auto text = [](int time) {
            return QString("%1:%2:%3")
                .arg(time / 3600)
                .arg(time / 60 % 60, 2, 10, QLatin1Char('0'))
                .arg(time % 60, 2, 10, QLatin1Char('0'));
        };
        network.trip(QString::number(id), "5", out(text(start), text(end)));
    }
    Fleet fleet(network, QVector<int>(vehicles, 5));
    QVERIFY(fleet.model.rowCount() > 0);

    // The vehicle that starts a trip also ends it.
    const Timetable timetable(network);
    int run = 0;
    for (const Trip& trip : timetable.trips()) {
        QSet<int> runners;
        bool isWhole = true;
        for (int time = trip.start() + 1; time < trip.end(); time += 30) {
            fleet.simulator->setTime(time);
            QSet<int> now;
            for (int row = 0; row < fleet.model.rowCount(); ++row) {
                const AssetItem* vehicle = qobject_cast<AssetItem*>(fleet.model.itemFromRow(row));
                if (vehicle->drivingStatus() == "driving" &&
                    fleet.tripOf(vehicle->id()) == trip.number)
                    now.insert(vehicle->id());
            }
            QVERIFY(now.size() <= 1);
            isWhole = isWhole && (runners.isEmpty() || runners == now);
            runners.unite(now);
        }
        QVERIFY(isWhole && runners.size() <= 1);
        run += runners.size();
    }
    if (vehicles == 0)
        QCOMPARE(run, trips);
    else
        QVERIFY(run > 0 && run < trips);
}

void FleetSimulatorTest::shippedFeeds_data()
{
    const Table<QString, int> row("file", "own");
    row("with a trip of the timetable", SHIPPED_FEEDS "/coast-line.json", 31);
    row("with a trip of no timetable", SHIPPED_FEEDS "/hill-valley.json", 804);
}

void FleetSimulatorTest::shippedFeeds()
{
    QFETCH(QString, file);
    QFETCH(int, own);
    const feed::FeedResult result = feed::loadFeed(file);
    QVERIFY(result.feed);
    const feed::Feed& feed = *result.feed;
    QObject owner;
    AssetsModel model(&owner);
    feed::addVehicles(feed, model);
    FleetSimulator simulator(Timetable(feed.network), model);
    QCOMPARE(model.rowCount(), feed.vehicles.size());
    QCOMPARE(simulator.vehicleOf(feed.trip->tripsExecutionId, feed.trip->routeId), own);
    for (int time = 0; time < 86400; time += 30) {
        simulator.setTime(time);
        int driving = 0;
        for (int row = 0; row < model.rowCount(); ++row) {
            const auto* vehicle = qobject_cast<AssetItem*>(model.itemFromRow(row));
            const bool isOnTheWay =
                vehicle->drivingStatus() == "driving" || vehicle->drivingStatus() == "at a stop";
            driving += isOnTheWay && vehicle->inView() ? 1 : 0;
        }
        QVERIFY2(driving > 0, qPrintable("nothing drives at " + simulator.timeText()));
    }
}

void FleetSimulatorTest::aRealFeed()
{
    const QString folder = realFeed();
    if (folder.isEmpty())
        QSKIP("GUICORE_REAL_GTFS_FEED is not set");
    const feed::FeedResult result = feed::loadFeed(folder);
    QVERIFY(result.feed);
    const Timetable timetable(result.feed->network);
    QVERIFY(timetable.trips().size() > 20);
    for (const Trip& trip : timetable.trips()) {
        // Stops lie in order along the path, and near to it.
        for (int i = 0; i < trip.calls.size(); ++i) {
            const fleet::Call& call = trip.calls.at(i);
            QVERIFY(i == 0 || call.metres >= trip.calls.at(i - 1).metres);
        }
        QVERIFY(trip.calls.last().metres > trip.path->length() / 2);
    }
    Fleet fleet(result.feed->network);
    QVERIFY(fleet.model.rowCount() >= 3);
    QSet<int> routes;
    for (int row = 0; row < fleet.model.rowCount(); ++row)
        routes.insert(qobject_cast<AssetItem*>(fleet.model.itemFromRow(row))->routeId());
    QCOMPARE(routes.size(), timetable.routes().size());
    fleet.simulator->setTime(8 * hour);
    for (int row = 0; row < fleet.model.rowCount(); ++row)
        QVERIFY(
            qobject_cast<AssetItem*>(fleet.model.itemFromRow(row))->assetCoordinate().isValid());
}

QTEST_GUILESS_MAIN(FleetSimulatorTest)
#include "tst_fleet_simulator.moc"
