#include "LiveFleet.h"
#include "SignalLog.h"
#include "Table.h"
#include "TestNetwork.h"
#include "TopLevelOnly.h"

#include <AssetItem.h>
#include <AssetsModel.h>

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace rivo;
using fleet::Timetable;
using live::LiveFleet;
using live::LiveMessage;
using live::LiveVehicle;

namespace
{

constexpr qint64 now = 1774166400;

LiveVehicle vehicle(const QString& id, double east = 1.0, qint64 time = now)
{
    LiveVehicle made;
    made.id = id;
    made.coordinate = QGeoCoordinate(0.0, east / 1000.0);
    made.time = time;
    return made;
}

LiveMessage message(const QVector<LiveVehicle>& vehicles, qint64 time = now)
{
    LiveMessage made;
    made.time = time;
    made.vehicles = vehicles;
    return made;
}

TestNetwork network()
{
    TestNetwork made;
    made.trip("T1", "5", {"1 8:00:00", "2 8:05:00"}, {}, {}, "Beach");
    made.trip("T2", "6", {"7 9:00:00", "8 9:10:00"});
    return made;
}

/// The model, and what was in it before: bus 1 of the feed.
struct Fleet
{
    QObject prototypes;
    TopLevelOnly<AssetsModel> model{&prototypes};
    TestNetwork net = network();
    Timetable timetable{net};

    explicit Fleet(bool isEmpty = false)
    {
        if (!isEmpty)
            model.appendRow(new AssetItem(1, "AB 1", "101", "parked", "depot", 5, "East - West",
                                          QGeoCoordinate(0.0, 0.001), true, true, 90.0, &model));
    }

    const AssetItem& item(int row) { return *qobject_cast<AssetItem*>(model.itemFromRow(row)); }

    /// "id number plate status" of each row.
    QStringList texts()
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row) {
            const AssetItem& of = item(row);
            texts.append(
                QString("%1 %2 %3 %4")
                    .arg(of.id())
                    .arg(of.internalNumber(), of.registrationNumber(), of.drivingStatus()));
        }
        return texts;
    }
};

} // namespace

class LiveFleetTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsOfTheFeed_data();
    void rowsOfTheFeed();
    void rowsOfTheirOwn();
    void journeys_data();
    void journeys();
    void directions();
    void ages_data();
    void ages();
    void vehiclesThatAreNotReportedAnyMore();
    void rowsThatOthersChange();
    void changesAreAnnouncedOnce();
    void serverThatRenamesItsVehicles();
};

void LiveFleetTest::rowsOfTheFeed_data()
{
    const Table<QString, QString, QString, bool> row("id", "label", "plate", "isKnown");
    row("by its id", "1", "", "", true);
    row("by its number as id", "101", "", "", true);
    row("by its number as label", "x", "101", "", true);
    row("by its plate", "x", "y", "AB 1", true);
    row("another vehicle", "x", "y", "AB 2", false);
    row("a vehicle without label and plate", "x", "", "", false);
}

void LiveFleetTest::rowsOfTheFeed()
{
    QFETCH(QString, id);
    QFETCH(QString, label);
    QFETCH(QString, plate);
    QFETCH(bool, isKnown);
    Fleet fleet;
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    LiveVehicle reported = vehicle(id, 5.0);
    reported.label = label;
    reported.plate = plate;
    for (int i = 0; i < 2; ++i) {
        live.apply(message({reported}), now);
        QCOMPARE(fleet.model.rowCount(), isKnown ? 1 : 2);
        QCOMPARE(fleet.item(0).assetCoordinate(), QGeoCoordinate(0.0, isKnown ? 0.005 : 0.001));
        QCOMPARE(fleet.item(0).drivingStatus(), QString(isKnown ? "driving" : "parked"));
        QCOMPARE(fleet.item(0).internalNumber(), QString("101"));
        QCOMPARE(fleet.item(0).registrationNumber(), QString("AB 1"));
    }
    QCOMPARE(live.silences(now).contains(1), isKnown);
    QCOMPARE(live.reportedCount(), 1);
}

void LiveFleetTest::rowsOfTheirOwn()
{
    Fleet fleet;
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    LiveVehicle named = vehicle("bus-a");
    named.label = "7";
    named.plate = "CD 7";
    const QVector<LiveVehicle> reported = {named, vehicle("4711"), vehicle("04"), vehicle("bus-b")};
    live.apply(message(reported), now);
    const QStringList rows = {"1 101 AB 1 parked", "1000001 7 CD 7 driving",
                              "4711 4711 4711 driving", "1000002 04 04 driving",
                              "1000003 bus-b bus-b driving"};
    QCOMPARE(fleet.texts(), rows);
    live.apply(message({reported.at(3), reported.at(0), reported.at(2), reported.at(1)}), now);
    QCOMPARE(fleet.texts(), rows); // whatever the order of the message
}

void LiveFleetTest::journeys_data()
{
    const Table<QString, QString, int, QString, QString> row("trip", "route", "id", "name",
                                                             "status");
    row("a trip of the timetable", "T1", "", 5, "East - West", "to Beach");
    row("without a headsign", "T2", "6", 6, "Ring", "to Stop 8");
    row("an unknown trip of a route", "T9", "5", 5, "East - West", "");
    row("an unknown route", "", "X5", -1, "X5", "");
    row("no trip", "", "", -1, "", "");
}

void LiveFleetTest::journeys()
{
    QFETCH(QString, trip);
    QFETCH(QString, route);
    Fleet fleet(true);
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    LiveVehicle reported = vehicle("a");
    reported.trip = trip;
    reported.route = route;
    live.apply(message({reported}), now);
    QTEST(fleet.item(0).routeId(), "id");
    QTEST(fleet.item(0).routeName(), "name");
    QTEST(fleet.item(0).routeStatus(), "status");
}

void LiveFleetTest::directions()
{
    Fleet fleet(true);
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    LiveVehicle reported = vehicle("a", 1.0);
    reported.direction = 45.0;
    live.apply(message({reported}), now);
    QCOMPARE(fleet.item(0).direction(), 45.0);
    live.apply(message({vehicle("a", 1.05)}), now); // five metres: it stays
    QCOMPARE(fleet.item(0).direction(), 45.0);
    live.apply(message({vehicle("a", 2.0)}), now);
    QCOMPARE(fleet.item(0).direction(), 90.0);
}

void LiveFleetTest::ages_data()
{
    // later: seconds
    const Table<qint64, qint64, int, QString, bool> row("vehicleTime", "messageTime", "later",
                                                        "status", "isUpdated");
    row("just now", now, now, 0, "driving", true);
    row("a minute ago", now - 60, now, 0, "driving", true);
    row("more than a minute ago", now - 61, now, 0, "no report", false);
    row("more than five minutes ago", now - 301, now, 0, "off-line", false);
    row("no time of its own: that of the message", 0, now - 100, 0, "no report", false);
    row("no time at all: now", 0, 0, 0, "driving", true);
    row("becomes stale", now, now, 61, "no report", false);
    row("becomes off-line", now, now, 301, "off-line", false);
    row("a clock that is a little fast", now + 200, now, 0, "driving", true);
    row("a clock that is a little fast ages as any other", now + 200, now, 61, "no report", false);
    row("a time in the far future", now + 864000, now, 61, "no report", false);
}

void LiveFleetTest::ages()
{
    QFETCH(qint64, vehicleTime);
    QFETCH(qint64, messageTime);
    QFETCH(int, later);
    Fleet fleet(true);
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    live.apply(message({vehicle("a", 1.0, vehicleTime)}, messageTime), now);
    live.age(now + later);
    QTEST(fleet.item(0).drivingStatus(), "status");
    QTEST(fleet.item(0).updated(), "isUpdated");
    LiveVehicle stopped = vehicle("a", 1.0, now + later);
    stopped.isStopped = true;
    live.apply(message({stopped}), now + later);
    QCOMPARE(fleet.item(0).drivingStatus(), QString("at a stop"));
}

void LiveFleetTest::vehiclesThatAreNotReportedAnyMore()
{
    Fleet fleet;
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    live.apply(message({vehicle("1"), vehicle("20"), vehicle("30")}), now);
    live.apply(message({vehicle("30", 2.0, now + 1000)}), now + 1000);
    QCOMPARE(fleet.texts(),
             QStringList({"1 101 AB 1 off-line", "20 20 20 off-line", "30 30 30 driving"}));
    QCOMPARE(live.silences(now + 1000).value(20), 1000);
    live.age(now + 1801);
    QCOMPARE(fleet.texts(), QStringList({"1 101 AB 1 off-line", "30 30 30 off-line"}));
    QVERIFY(!live.silences(now + 1801).contains(20));
    live.apply(message({vehicle("20", 2.0, now + 1802)}), now + 1802);
    QCOMPARE(fleet.model.rowCount(), 3);
    live.apply(message({}), now + 9000);
    QCOMPARE(fleet.texts(), QStringList{"1 101 AB 1 off-line"});
    QCOMPARE(live.silences(now + 9000).value(1), 1800);
}

void LiveFleetTest::rowsThatOthersChange()
{
    Fleet fleet;
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    live.apply(message({vehicle("20")}), now);
    qobject_cast<AssetItem*>(fleet.model.itemFromRow(0))->setDrivingStatus("washed");
    live.age(now + 1);
    QCOMPARE(fleet.item(0).drivingStatus(), QString("washed"));
    fleet.model.removeRows(0, 1);
    live.apply(message({vehicle("20")}), now);
    QCOMPARE(fleet.texts(), QStringList{"20 20 20 driving"});
}

void LiveFleetTest::changesAreAnnouncedOnce()
{
    Fleet fleet(true);
    const QAbstractItemModelTester tester(&fleet.model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    constexpr int count = 2000;
    const auto all = [](double east) {
        QVector<LiveVehicle> vehicles;
        for (int i = 1; i <= count; ++i)
            vehicles.append(vehicle(QString::number(i), east + i));
        return message(vehicles);
    };
    SignalLog signalLog(&fleet.model);
    live.apply(all(1.0), now);
    QCOMPARE(signalLog.take(), announcedInsertion(0, count - 1, count));
    live.apply(all(2.0), now);
    QCOMPARE(signalLog.take(), QStringList("dataChanged(0, 1999, [])"));
    live.apply(all(2.0), now);
    live.age(now + 30);
    QCOMPARE(signalLog.take(), QStringList());
    live.age(now + 70);
    QCOMPARE(signalLog.take(), QStringList("dataChanged(0, 1999, [])"));
    // A row announces what others do to it, as before.
    qobject_cast<AssetItem*>(fleet.model.itemFromRow(7))->setDrivingStatus("washed");
    QCOMPARE(signalLog.take(), QStringList(rowChanged(7)));
}

void LiveFleetTest::serverThatRenamesItsVehicles()
{
    Fleet fleet(true);
    LiveFleet live(fleet.net, fleet.timetable, fleet.model);
    for (int round = 0; round < 5; ++round) {
        QVector<LiveVehicle> vehicles;
        for (int i = 0; i < live::mostVehicles; ++i)
            vehicles.append(vehicle(QString("%1-%2").arg(round).arg(i), 1.0, now + round));
        live.apply(message(vehicles), now + round);
        QVERIFY(fleet.model.rowCount() <= 2 * live::mostVehicles);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QTEST_GUILESS_MAIN(LiveFleetTest)
#include "tst_live_fleet.moc"
