#include "FleetSimulator.h"
#include "RealFeed.h"
#include "SignalLog.h"
#include "TestNetwork.h"

#include <AssetItem.h>
#include <AssetsModel.h>
#include <FeedLoader.h>
#include <FeedToModels.h>

#include <QSignalSpy>
#include <QtTest>

#include <limits>

using namespace rivo;
using fleet::FleetSimulator;
using fleet::Timetable;
using fleet::Trip;

namespace
{

/// From stop 1 to stop 4, three thousandths of a degree east, and back.
QStringList out(const QString& start, const QString& end) { return {"1 " + start, "4 " + end}; }

QStringList back(const QString& start, const QString& end) { return {"4 " + start, "1 " + end}; }

/// A fleet with a simulator on it.
struct Fleet
{
    explicit Fleet(const feed::Network& network, const QVector<int>& routesOfVehicles = {},
                   bool updated = true)
        : model(&owner)
    {
        int id = 100;
        for (const int route : routesOfVehicles) {
            ++id;
            model.appendRow(new AssetItem(id, QString("R %1").arg(id), "", "in the depot",
                                          "off duty", route, "", QGeoCoordinate(1, 2), updated,
                                          true, 15.0, &model));
        }
        simulator = std::make_unique<FleetSimulator>(Timetable(network), model);
    }

    AssetItem& vehicle(int id) { return *qobject_cast<AssetItem*>(model.findById(id)); }

    /// Thousandths of a degree east of the origin.
    double east(int id) { return vehicle(id).assetCoordinate().longitude() * 1000.0; }

    int tripOf(int id) const
    {
        const Trip* trip = simulator->tripOf(id);
        return trip == nullptr ? -1 : trip->number;
    }

    void setTime(const QString& time) { simulator->setTime(feed::seconds(time)); }

    /// "2.5 driving": thousandths of a degree east of the origin, and what it does.
    QString stateOf(int id)
    {
        return QString("%1 %2").arg(east(id), 0, 'g', 6).arg(vehicle(id).drivingStatus());
    }

    QObject owner;
    AssetsModel model;
    std::unique_ptr<FleetSimulator> simulator;
};

constexpr int hour = 3600;
constexpr int minute = 60;

} // namespace

Q_DECLARE_METATYPE(rivo::feed::Network)

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
    void pace();
    void silence();
    void parkedVehiclesAreAsCurrentAsTheFeedSays_data();
    void parkedVehiclesAreAsCurrentAsTheFeedSays();
    void neverHeardOf();
    void vehiclesThatOthersReport();
    void signalsOfVehicles();
    void linesAndStops();
    void vehicleOf();
    void theOwnVehicleIsWhereTheDriverSays();
    void timeText();
    void runsByItself();
    void shippedFeeds_data();
    void shippedFeeds();
    void aRealFeed();
};

void FleetSimulatorTest::vehiclesFollowTheirPathExactly_data()
{
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("state");
    const auto add = [](const char* what, const QStringList& calls, const char* time,
                        const char* state) { QTest::newRow(what) << calls << time << state; };
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
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<int>("route");
    QTest::newRow("a trip of a whole day") << out("8:00:00", "32:00:00") << 5;
    QTest::newRow("a trip whose stops are nowhere") << QStringList{"8 8:00:00", "9 9:00:00"} << 5;
    QTest::newRow("a trip of another route") << out("8:00:00", "9:00:00") << 6;
    QTest::newRow("no times") << QStringList{"1", "4"} << 5;
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
    QTest::addColumn<feed::Network>("network");
    QTest::addColumn<QVector<int>>("routes"); // of the vehicles
    QTest::addColumn<QString>("time");
    QTest::addColumn<QVector<int>>("trips"); // that the vehicles run then
    QTest::newRow("that are free")
        << feed::Network(TestNetwork()
                             .trip("1", "5", out("8:00:00", "9:00:00"))
                             .trip("2", "5", out("8:30:00", "9:30:00"))
                             .trip("3", "5", out("8:40:00", "8:50:00")) // none is left for it
                             .trip("4", "6", out("8:00:00", "9:00:00")))
        << QVector<int>{5, 7, 5} << "8:45:00" << QVector<int>{1, -1, 2};
    QTest::newRow("that are where they start")
        << feed::Network(TestNetwork()
                             .trip("1", "5", out("8:00:00", "9:00:00"))
                             .trip("2", "5", back("8:00:00", "9:00:00"))
                             .trip("3", "5", out("9:00:00", "9:30:00"))
                             .trip("4", "5", back("9:00:00", "9:30:00")))
        << QVector<int>{5, 5} << "9:10:00" << QVector<int>{4, 3};
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
    QTest::addColumn<int>("vehicles");
    QTest::newRow("fewer vehicles than needed") << 3;
    QTest::newRow("vehicles as they are needed") << 0;
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

void FleetSimulatorTest::pace()
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const auto& [pace, kept] : {std::pair(0.0, 0.0),
                                     {0.5, 0.5},
                                     {10.0, 10.0},
                                     {600.0, 600.0},
                                     {600.1, 600.0},
                                     {infinite, 600.0},
                                     {-2.0, 0.0},
                                     {-infinite, 0.0},
                                     {qQNaN(), 0.0}}) {
        Fleet fleet{TestNetwork()};
        QCOMPARE(fleet.simulator->pace(), 1.0);
        SignalLog signalLog(fleet.simulator.get());
        fleet.simulator->setPace(pace);
        QCOMPARE(fleet.simulator->pace(), kept);
        QCOMPARE(signalLog.take(), QStringList("paceChanged()"));
        fleet.simulator->setPace(pace);
        QCOMPARE(signalLog.take(), QStringList());
    }
}

void FleetSimulatorTest::silence()
{
    // Vehicle 102 is parked.
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "9:00:00")), {5, 7});
    FleetSimulator& simulator = *fleet.simulator;
    fleet.setTime("8:20:00");
    SignalLog signalLog(&simulator);
    simulator.setSilent(101, true);
    QCOMPARE(signalLog.take(), QStringList("silentChanged(101)"));
    simulator.setSilent(101, true);
    QCOMPARE(signalLog.take(), QStringList());
    QVERIFY(simulator.isSilent(101) && !simulator.isSilent(102));
    QVERIFY(!fleet.vehicle(101).updated());
    simulator.setSilent(102, true);

    struct Moment
    {
        int seconds;
        FleetSimulator::Reporting reporting;
        const char* state; // stays where it reported last
    };
    for (const Moment& moment : {Moment{60, FleetSimulator::Live, "2 driving"},
                                 {61, FleetSimulator::Stale, "2 no report"},
                                 {300, FleetSimulator::Stale, "2 no report"},
                                 {301, FleetSimulator::Offline, "2 off-line"},
                                 {1200, FleetSimulator::Offline, "2 off-line"}}) {
        simulator.setTime(8 * hour + 20 * minute + moment.seconds);
        QCOMPARE(fleet.stateOf(101), moment.state);
        for (const int id : {101, 102})
            QCOMPARE(simulator.reportingOf(id), moment.reporting);
    }
    QCOMPARE(fleet.vehicle(102).drivingStatus(), QString("off-line"));

    simulator.setSilent(101, false);
    QCOMPARE(simulator.reportingOf(101), FleetSimulator::Live);
    QVERIFY(fleet.vehicle(101).updated());
    QCOMPARE(fleet.stateOf(101), "3 driving");
    simulator.setSilent(102, false);
    QCOMPARE(fleet.vehicle(102).drivingStatus(), QString("in the depot"));
    QCOMPARE(fleet.vehicle(102).assetCoordinate(), QGeoCoordinate(1, 2));

    // A second silence is counted from its own start.
    simulator.setSilent(101, true);
    simulator.setTime(simulator.time() + 30);
    QCOMPARE(simulator.reportingOf(101), FleetSimulator::Live);
}

void FleetSimulatorTest::parkedVehiclesAreAsCurrentAsTheFeedSays_data()
{
    QTest::addColumn<bool>("updated");
    QTest::addColumn<bool>("hasPosition");
    QTest::addColumn<FleetSimulator::Reporting>("reporting");
    QTest::newRow("up to date is live") << true << true << FleetSimulator::Live;
    QTest::newRow("not up to date is stale") << false << true << FleetSimulator::Stale;
    QTest::newRow("without a position is off-line") << true << false << FleetSimulator::Offline;
    QTest::newRow("neither is off-line") << false << false << FleetSimulator::Offline;
}

void FleetSimulatorTest::parkedVehiclesAreAsCurrentAsTheFeedSays()
{
    QFETCH(bool, updated);
    QFETCH(bool, hasPosition);
    QFETCH(FleetSimulator::Reporting, reporting);
    // Vehicle 101 runs, vehicle 102 is parked.
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "9:00:00")), {5, 7}, updated);
    FleetSimulator& simulator = *fleet.simulator;
    AssetItem& parked = fleet.vehicle(102);
    if (!hasPosition)
        parked.setAssetCoordinate(QGeoCoordinate());
    SignalLog signalLog(&parked);
    const auto isAsTheFeedSays = [&] {
        return simulator.reportingOf(102) == reporting && parked.updated() == updated &&
               parked.drivingStatus() == "in the depot";
    };
    for (const int time : {0, 8 * hour + 10 * minute, 9 * hour + minute}) {
        simulator.setTime(time);
        QVERIFY2(isAsTheFeedSays(), qPrintable(QString::number(time)));
        QCOMPARE(simulator.reportingOf(101), FleetSimulator::Live);
        QVERIFY(fleet.vehicle(101).updated());
    }
    QCOMPARE(signalLog.take(), QStringList());

    // After a silence the state of the feed comes back.
    simulator.setSilent(102, true);
    simulator.setTime(simulator.time() + 61);
    QCOMPARE(simulator.reportingOf(102),
             hasPosition ? FleetSimulator::Stale : FleetSimulator::Offline);
    QVERIFY(!parked.updated());
    simulator.setTime(simulator.time() + 240);
    QCOMPARE(simulator.reportingOf(102), FleetSimulator::Offline);
    simulator.setSilent(102, false);
    QVERIFY(isAsTheFeedSays());
}

void FleetSimulatorTest::neverHeardOf()
{
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "9:00:00")), {5, 7});
    fleet.vehicle(102).setAssetCoordinate(QGeoCoordinate());
    fleet.vehicle(101).setAssetCoordinate(QGeoCoordinate());
    for (const int id : {101, 102, 4711})
        QCOMPARE(fleet.simulator->reportingOf(id), FleetSimulator::Offline);
    fleet.simulator->setTime(10);
    QCOMPARE(fleet.simulator->reportingOf(101), FleetSimulator::Live);
    QCOMPARE(fleet.simulator->reportingOf(102), FleetSimulator::Offline);
    QCOMPARE(fleet.vehicle(102).drivingStatus(), QString("in the depot"));
}

void FleetSimulatorTest::vehiclesThatOthersReport()
{
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "8:30:00")), {5, 6});
    fleet.setTime("8:00:00");
    fleet.simulator->setReportedByOthers({{101, 0}});
    fleet.vehicle(101).setDrivingStatus("washed");
    fleet.setTime("8:15:00");
    QCOMPARE(fleet.vehicle(101).drivingStatus(), QString("washed"));
    QCOMPARE(fleet.east(101), 1.0);
    const auto reporting = [&](int silence) {
        fleet.simulator->setReportedByOthers({{101, silence}});
        return fleet.simulator->reportingOf(101);
    };
    QCOMPARE(reporting(60), FleetSimulator::Live);
    QCOMPARE(reporting(61), FleetSimulator::Stale);
    QCOMPARE(reporting(301), FleetSimulator::Offline);
    fleet.simulator->setReportedByOthers({});
    fleet.setTime("8:15:01");
    QCOMPARE(fleet.vehicle(101).drivingStatus(), QString("driving"));
}

void FleetSimulatorTest::signalsOfVehicles()
{
    // One moves, one stands at times, one is parked.
    Fleet fleet(TestNetwork()
                    .trip("1", "5", out("8:00:00", "9:00:00"))
                    .trip("2", "5", back("10:00:00", "11:00:00"))
                    .trip("3", "6", {"1 8:00:00", "2 8:10:00 8:30:00", "4 9:00:00"}),
                {5, 6, 7});
    fleet.setTime("8:11:00");
    SignalLog moving(&fleet.vehicle(101));
    SignalLog standing(&fleet.vehicle(102));
    SignalLog parked(&fleet.vehicle(103));
    SignalLog ownSignals(fleet.simulator.get());
    fleet.setTime("8:29:00");
    QCOMPARE(moving.take().size(), 1); // on a straight road only the place differs
    QCOMPARE(standing.take(), QStringList());
    QCOMPARE(ownSignals.take(), QStringList("timeChanged()"));
    fleet.setTime("10:10:00");
    QCOMPARE(moving.take().size(), 3); // place, direction and destination; it is driving again
    standing.take();
    fleet.setTime("7:00:00"); // waiting the whole night
    QCOMPARE(standing.take(), QStringList());
    moving.take();
    ownSignals.take();
    fleet.setTime("7:00:00");
    QCOMPARE(moving.take() + ownSignals.take() + parked.take(), QStringList());
}

void FleetSimulatorTest::linesAndStops()
{
    TestNetwork network;
    network.shape("way", {{0, 0.001}, {0.001, 0.002}, {0, 0.004}});
    network.stops[1].latitude = qQNaN();
    network.trip("1", "5", out("8:00:00", "9:00:00"), "way")
        .trip("2", "5", {"1 9:00:00", "2 9:30:00", "4 10:00:00"}, "way")
        .trip("3", "6", back("8:00:00", "9:00:00"))
        .trip("4", "6", back("9:00:00", "10:00:00"));
    Fleet fleet(network);
    const QVariantList lines = fleet.simulator->lines();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0).toMap().value("route").toInt(), 5);
    QCOMPARE(lines.at(0).toMap().value("name").toString(), QString("5"));
    QCOMPARE(lines.at(0).toMap().value("color").toString(), QString("#112233"));
    const QVariantList path = lines.at(0).toMap().value("path").toList();
    QCOMPARE(path.size(), 3);
    QCOMPARE(path.at(1).value<QGeoCoordinate>(), QGeoCoordinate(0.001, 0.002));
    QCOMPARE(lines.at(1).toMap().value("route").toInt(), 6);
    QStringList stops;
    for (const QVariant& stop : fleet.simulator->stops())
        stops.append(stop.toMap().value("number").toString() + " " +
                     stop.toMap().value("name").toString());
    QCOMPARE(stops, QStringList({"1 Stop 1", "4 Stop 4"}));
}

void FleetSimulatorTest::vehicleOf()
{
    Fleet fleet(TestNetwork()
                    .trip("1", "5", out("8:00:00", "9:00:00"))
                    .trip("2", "5", out("8:30:00", "9:30:00")),
                {6, 5, 5});
    QCOMPARE(fleet.simulator->vehicleOf(1, 5), 102);
    QCOMPARE(fleet.simulator->vehicleOf(2, 5), 103);
    QCOMPARE(fleet.simulator->vehicleOf(3, 5), 102);
    QCOMPARE(fleet.simulator->vehicleOf(3, 6), 101);
    QCOMPARE(fleet.simulator->vehicleOf(-1, -1), -1);
}

void FleetSimulatorTest::theOwnVehicleIsWhereTheDriverSays()
{
    TestNetwork network;
    network.trip("50", "5", out("8:00:00", "8:30:00"))
        .trip("60", "6", {"2 9:00:00", "3 9:10:00"}, {}, {}, "Centre");
    Fleet fleet(network, {5});
    fleet.setTime("8:15:00");
    QCOMPARE(fleet.stateOf(101), QString("2.5 driving"));
    const QSignalSpy own(fleet.simulator.get(), &FleetSimulator::ownChanged);
    fleet.simulator->setOwn(101, 60, 1);
    QCOMPARE(own.size(), 1);
    QCOMPARE(fleet.simulator->own(), 101);
    QCOMPARE(fleet.stateOf(101), QString("3 at a stop"));
    QCOMPARE(fleet.vehicle(101).routeStatus(), QString("to Centre"));
    QCOMPARE(fleet.vehicle(101).routeId(), 6);
    QCOMPARE(fleet.vehicle(101).routeName(), QString("Ring"));
    fleet.setTime("8:20:00");
    QCOMPARE(fleet.stateOf(101), QString("3 at a stop"));
    fleet.simulator->setOwn(101, 60, 0);
    QCOMPARE(fleet.stateOf(101), QString("2 at a stop"));
    fleet.simulator->setOwn(101, 99, 0); // no trip of the timetable: it runs its duty
    QCOMPARE(fleet.stateOf(101), QString("3 driving"));
    QCOMPARE(own.size(), 1);
}

void FleetSimulatorTest::timeText()
{
    Fleet fleet{TestNetwork()};
    for (const auto& [time, text] : {std::pair("0:00:00", "00:00"),
                                     {"10:05:59", "10:05"}, // seconds are not shown
                                     {"23:59:59", "23:59"}}) {
        fleet.setTime(time);
        QCOMPARE(fleet.simulator->timeText(), QString(text));
    }
}

void FleetSimulatorTest::runsByItself()
{
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "9:00:00")), {5});
    fleet.simulator->setTime(8 * hour);
    fleet.simulator->setPace(600.0);
    fleet.simulator->start();
    QTRY_VERIFY(fleet.simulator->time() > 8 * hour);
    QVERIFY(fleet.east(101) > 1.0);
}

void FleetSimulatorTest::shippedFeeds_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("own");
    QTest::newRow("with a trip of the timetable") << SHIPPED_FEEDS "/coast-line.json" << 31;
    QTest::newRow("with a trip of no timetable") << SHIPPED_FEEDS "/hill-valley.json" << 804;
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
