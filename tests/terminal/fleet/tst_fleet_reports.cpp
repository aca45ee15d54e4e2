#include "SignalLog.h"
#include "SimulatedFleet.h"
#include "Table.h"

#include <QSignalSpy>
#include <QtTest>

#include <limits>

using namespace rivo;
using fleet::FleetSimulator;

/// What the simulator reports of the vehicles, what others report to it, and when.
class FleetReportsTest : public QObject
{
    Q_OBJECT

private slots:
    void pace();
    void vehiclesThatStopReporting();
    void parkedVehiclesAreAsCurrentAsInTheFeed_data();
    void parkedVehiclesAreAsCurrentAsInTheFeed();
    void vehiclesThatNeverReportedAreOffline();
    void vehiclesThatOthersReport();
    void signalsOfVehicles();
    void linesAndStops();
    void vehicleOf();
    void theOwnVehicleIsAtTheStopOfTheDriver();
    void theOwnVehicleIsAtThePlaceOfItsReceiver();
    void theOwnPlaceGrowsOld_data();
    void theOwnPlaceGrowsOld();
    void vehiclesHaveNumbers();
    void timeText();
    void runsByItself();
};

void FleetReportsTest::pace()
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

void FleetReportsTest::vehiclesThatStopReporting()
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

void FleetReportsTest::parkedVehiclesAreAsCurrentAsInTheFeed_data()
{
    const Table<bool, bool, FleetSimulator::Reporting> row("updated", "hasPosition", "reporting");
    row("up to date is live", true, true, FleetSimulator::Live);
    row("not up to date is stale", false, true, FleetSimulator::Stale);
    row("without a position is off-line", true, false, FleetSimulator::Offline);
    row("neither is off-line", false, false, FleetSimulator::Offline);
}

void FleetReportsTest::parkedVehiclesAreAsCurrentAsInTheFeed()
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

void FleetReportsTest::vehiclesThatNeverReportedAreOffline()
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

void FleetReportsTest::vehiclesThatOthersReport()
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

void FleetReportsTest::signalsOfVehicles()
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

void FleetReportsTest::linesAndStops()
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

void FleetReportsTest::vehicleOf()
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

void FleetReportsTest::theOwnVehicleIsAtTheStopOfTheDriver()
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

void FleetReportsTest::theOwnVehicleIsAtThePlaceOfItsReceiver()
{
    TestNetwork network;
    network.trip("50", "5", out("8:00:00", "8:30:00"))
        .trip("60", "6", {"2 9:00:00", "3 9:10:00"}, {}, {}, "Centre");
    Fleet fleet(network, {5, 5});
    FleetSimulator& simulator = *fleet.simulator;
    fleet.setTime("8:15:00");
    simulator.reportOwnPlace({QGeoCoordinate(0.0, 0.0005), 90.0, true});
    QCOMPARE(fleet.stateOf(101), QString("2.5 driving")); // it is none of these
    simulator.setOwn(101, 60, 0);
    QCOMPARE(fleet.stateOf(101), QString("0.5 driving"));
    QCOMPARE(fleet.vehicle(101).direction(), 90.0);
    QCOMPARE(fleet.vehicle(101).routeStatus(), QString("to Centre"));
    QCOMPARE(fleet.vehicle(101).routeId(), 6);
    QCOMPARE(fleet.vehicle(101).routeName(), QString("Ring"));
    simulator.reportOwnPlace({QGeoCoordinate(0.0, 0.0007), qQNaN(), false});
    QCOMPARE(fleet.stateOf(101), QString("0.7 standing"));
    QCOMPARE(fleet.vehicle(101).direction(), 90.0);

    // Others may report it as well; the receiver knows better.
    simulator.setReportedByOthers({{101, 400}});
    QCOMPARE(simulator.reportingOf(101), FleetSimulator::Live);
    fleet.vehicle(101).setAssetCoordinate(QGeoCoordinate(3.0, 4.0));
    fleet.setTime("8:15:01");
    QCOMPARE(fleet.stateOf(101), QString("0.7 standing"));
    simulator.setReportedByOthers({});

    simulator.setSilent(101, true);
    fleet.setTime("8:17:00");
    QCOMPARE(simulator.reportingOf(101), FleetSimulator::Stale);
    simulator.setSilent(101, false);
    simulator.setOwn(101, -1, -1);
    simulator.reportOwnPlace({QGeoCoordinate(0.0, 0.0009), 90.0, true});
    QCOMPARE(fleet.stateOf(101), QString("0.9 driving"));
    QCOMPARE(fleet.stateOf(102), QString("2000 in the depot"));
}

void FleetReportsTest::theOwnPlaceGrowsOld_data()
{
    QTest::addColumn<int>("silence");
    QTest::addColumn<QString>("state");
    QTest::addColumn<FleetSimulator::Reporting>("reporting");
    QTest::newRow("a minute") << 60 << "0.5 driving" << FleetSimulator::Live;
    QTest::newRow("more than a minute") << 61 << "0.5 no report" << FleetSimulator::Stale;
    QTest::newRow("five minutes") << 300 << "0.5 no report" << FleetSimulator::Stale;
    QTest::newRow("more than five minutes") << 301 << "0.5 off-line" << FleetSimulator::Offline;
}

void FleetReportsTest::theOwnPlaceGrowsOld()
{
    QFETCH(int, silence);
    QFETCH(QString, state);
    QFETCH(FleetSimulator::Reporting, reporting);
    Fleet fleet(TestNetwork().trip("50", "5", out("8:00:00", "8:30:00")), {5});
    FleetSimulator& simulator = *fleet.simulator;
    simulator.setTime(8 * hour);
    simulator.setOwn(101, 50, 0);
    simulator.reportOwnPlace({QGeoCoordinate(0.0, 0.0005), 90.0, true});
    simulator.setTime(8 * hour + silence);
    QCOMPARE(fleet.stateOf(101), state);
    QCOMPARE(simulator.reportingOf(101), reporting);
    QCOMPARE(fleet.vehicle(101).updated(), reporting == FleetSimulator::Live);
    simulator.reportOwnPlace({QGeoCoordinate(0.0, 0.0006), 90.0, true});
    QCOMPARE(fleet.stateOf(101), QString("0.6 driving"));
    QCOMPARE(simulator.reportingOf(101), FleetSimulator::Live);
}

void FleetReportsTest::vehiclesHaveNumbers()
{
    Fleet fleet(TestNetwork().trip("50", "5", out("8:00:00", "8:30:00")), {5, 5});
    FleetSimulator& simulator = *fleet.simulator;
    QCOMPARE(simulator.vehicleNamed("R 102"), 102);
    QCOMPARE(simulator.vehicleNamed("R"), -1);
    QCOMPARE(simulator.vehicleNamed(""), -1); // which is the internal number of both
    fleet.vehicle(101).setInternalNumber("12");
    QCOMPARE(simulator.vehicleNamed("12"), 101);
    fleet.model.appendRow(
        new AssetItem(4, "", "", "", "", 5, "", QGeoCoordinate(), false, true, 0.0, &fleet.model));
    const int added = simulator.addVehicle("4711");
    QCOMPARE(added, 5); // 4 is taken
    QCOMPARE(simulator.vehicleNamed("4711"), added);
    QCOMPARE(simulator.reportingOf(added), FleetSimulator::Offline);
    simulator.setTime(8 * hour);
    QCOMPARE(fleet.vehicle(added).drivingStatus(), QString("no report"));
    QVERIFY(!fleet.vehicle(added).updated());
}

void FleetReportsTest::timeText()
{
    Fleet fleet{TestNetwork()};
    for (const auto& [time, text] : {std::pair("0:00:00", "00:00"),
                                     {"10:05:59", "10:05"}, // seconds are not shown
                                     {"23:59:59", "23:59"}}) {
        fleet.setTime(time);
        QCOMPARE(fleet.simulator->timeText(), QString(text));
    }
}

void FleetReportsTest::runsByItself()
{
    Fleet fleet(TestNetwork().trip("1", "5", out("8:00:00", "9:00:00")), {5});
    fleet.simulator->setTime(8 * hour);
    fleet.simulator->setPace(600.0);
    fleet.simulator->start();
    QTRY_VERIFY(fleet.simulator->time() > 8 * hour);
    QVERIFY(fleet.east(101) > 1.0);
}

QTEST_GUILESS_MAIN(FleetReportsTest)
#include "tst_fleet_reports.moc"
