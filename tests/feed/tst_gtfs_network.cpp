#include "FeedFiles.h"
#include "GtfsFiles.h"
#include "OfferQueryText.h"
#include "Offers.h"

using namespace rivo::feed;

class GtfsNetworkTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void theNetwork();
    void daysOfAService_data();
    void daysOfAService();
    void stopTimesAndShapesInAnyOrder();
    void onlyTheTimetableOfSomeRoutesIsKept();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void GtfsNetworkTest::theNetwork()
{
    const FeedResult result = loadGtfs(base() + network);
    REQUIRE_FEED(result);
    const Network& read = result.feed->network;

    QCOMPARE(read.stops.size(), 2);
    QCOMPARE(read.stops.at(0).id, QString("A"));
    QCOMPARE(read.stops.at(0).code, QString("01"));
    QCOMPARE(read.stops.at(0).name, QString("Market"));
    QCOMPARE(read.stops.at(0).latitude, 52.5);
    QCOMPARE(read.stops.at(0).longitude, -13.25);
    QCOMPARE(read.stops.at(0).areas, QVector<int>({10, 20}));
    QCOMPARE(read.stops.at(1).areas, QVector<int>({10}));

    QCOMPARE(read.zones.size(), 2);
    QCOMPARE(read.zones.at(0).number, 10);
    QCOMPARE(read.zones.at(0).name, QString("Town"));
    QCOMPARE(read.zones.at(1).number, 20);
    QCOMPARE(read.zones.at(1).name, QString("Hills"));

    QCOMPARE(read.routes.size(), 1);
    QCOMPARE(read.routes.at(0).id, QString("R1"));
    QCOMPARE(read.routes.at(0).shortName, QString("1"));
    QCOMPARE(read.routes.at(0).longName, QString("Market - Station"));
    QCOMPARE(read.routes.at(0).color, QString("#1657ba"));
    QCOMPARE(read.routes.at(0).textColor, QString("#FFFFFF"));

    QCOMPARE(read.trips.size(), 2);
    QCOMPARE(read.trips.at(0).id, QString("T1"));
    QCOMPARE(read.trips.at(0).routeId, QString("R1"));
    QCOMPARE(read.trips.at(0).serviceId, QString("WD"));
    QCOMPARE(read.trips.at(0).headsign, QString("Station"));
    QCOMPARE(read.trips.at(0).shapeId, QString("S"));
    QCOMPARE(read.trips.at(1).shapeId, QString());

    QCOMPARE(read.shapes.size(), 1);
    QCOMPARE(read.shapes.at(0).id, QString("S"));
    QCOMPARE(read.shapes.at(0).points.size(), 2);
    QCOMPARE(read.shapes.at(0).points.at(1).latitude, 52.6);
    QCOMPARE(read.shapes.at(0).points.at(1).longitude, 13.5);

    QStringList times;
    for (const NetworkStopTime& time : read.stopTimes)
        times.append(QStringLiteral("%1 %2 %3 %4-%5")
                         .arg(time.tripId)
                         .arg(time.sequence)
                         .arg(time.stopId)
                         .arg(time.arrival)
                         .arg(time.departure));
    QCOMPARE(times, QStringList({"T1 0 A -1-18000", "T1 4 B 19230--1", "T2 0 B 86399-86400",
                                 "T2 1 A 90600-90605"}));

    // A stop without a position, a route without colours.
    const FeedResult bare = loadGtfs(
        without(base(), {"areas.txt", "fare_leg_rules.txt"}) +
        Files{{"stops.txt", "stop_id\nA\n"}, {"routes.txt", "route_id,route_color\nR,\n"}});
    REQUIRE_FEED(bare);
    QVERIFY(qIsNaN(bare.feed->network.stops.at(0).latitude));
    QVERIFY(qIsNaN(bare.feed->network.stops.at(0).longitude));
    QVERIFY(bare.feed->network.stops.at(0).areas.isEmpty());
    QCOMPARE(bare.feed->network.routes.at(0).color, QString());
    QVERIFY(bare.feed->network.zones.isEmpty());
    QVERIFY(bare.feed->network.services.isEmpty());

    // Days of the week, and a service of none.
    const FeedResult calendar = loadGtfs(
        base() + Files{{"calendar.txt",
                        "service_id,monday,tuesday,wednesday,thursday,friday,saturday,sunday,"
                        "start_date\nWD,1,1,0,1,1,0,0,20240101\nSU,0,0,0,0,0,0,1,\nX,0,0,0,0,0,0,0,"
                        "\n"}});
    REQUIRE_FEED(calendar);
    QStringList services;
    for (const NetworkService& service : calendar.feed->network.services)
        services.append(
            QStringLiteral("%1 %2").arg(service.id).arg(service.days, 7, 2, QLatin1Char('0')));
    QCOMPARE(services, QStringList({"WD 0011011", "SU 1000000", "X 0000000"}));

    // Areas that are no numbers, one of them without a name.
    const FeedResult areas =
        loadGtfs(base() + Files{{"areas.txt", "area_id,area_name\nhills,\n10,Old Town\n"},
                                {"fare_leg_rules.txt", "fare_product_id\nsingle\n"}});
    REQUIRE_FEED(areas);
    QCOMPARE(areas.feed->network.zones.size(), 2);
    QCOMPARE(areas.feed->network.zones.at(0).number, 1);
    QCOMPARE(areas.feed->network.zones.at(0).name, QString());
    QCOMPARE(areas.feed->network.zones.at(1).number, 2);
    QCOMPARE(areas.feed->network.zones.at(1).name, QString("Old Town"));
}

void GtfsNetworkTest::daysOfAService_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("added");
    QTest::addColumn<QString>("removed");
    QTest::addColumn<QString>("date"); // 2026-11-23 is a Monday
    QTest::addColumn<bool>("runs");
    const auto row = [](const char* name) -> QTestData& { return QTest::newRow(name); };
    row("a weekday without limits") << ""
                                    << ""
                                    << ""
                                    << ""
                                    << "2026-11-23" << true;
    row("another day of the week") << ""
                                   << ""
                                   << ""
                                   << ""
                                   << "2026-11-24" << false;
    row("the first day") << "2026-11-23"
                         << ""
                         << ""
                         << ""
                         << "2026-11-23" << true;
    row("before the first day") << "2026-11-24"
                                << ""
                                << ""
                                << ""
                                << "2026-11-23" << false;
    row("the last day") << ""
                        << "2026-11-23"
                        << ""
                        << ""
                        << "2026-11-23" << true;
    row("after the last day") << ""
                              << "2026-11-22"
                              << ""
                              << ""
                              << "2026-11-23" << false;
    row("added beyond the limits") << ""
                                   << "2026-01-01"
                                   << "2026-11-24"
                                   << ""
                                   << "2026-11-24" << true;
    row("removed") << ""
                   << ""
                   << ""
                   << "2026-11-23"
                   << "2026-11-23" << false;
    row("added and removed") << ""
                             << ""
                             << "2026-11-23"
                             << "2026-11-23"
                             << "2026-11-23" << true;
}

void GtfsNetworkTest::daysOfAService()
{
    QFETCH(QString, first);
    QFETCH(QString, last);
    QFETCH(QString, added);
    QFETCH(QString, removed);
    QFETCH(QString, date);
    const auto dates = [](const QString& text) {
        return text.isEmpty() ? QVector<QDate>()
                              : QVector<QDate>{QDate::fromString(text, Qt::ISODate)};
    };
    const NetworkService service{"S",
                                 1,
                                 QDate::fromString(first, Qt::ISODate),
                                 QDate::fromString(last, Qt::ISODate),
                                 dates(added),
                                 dates(removed)};
    QTEST(service.runsOn(QDate::fromString(date, Qt::ISODate)), "runs");
}

void GtfsNetworkTest::stopTimesAndShapesInAnyOrder()
{
    const FeedResult result = loadGtfs(
        base() + network +
        Files{{"stop_times.txt", "stop_sequence,stop_id,trip_id\n9,A,T2\n10,B,T1\n2,A,T1\n1,B,T2\n"
                                 "2147483647,A,T1\n"},
              {"shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence\n"
                             "S,3,0,30\nZ,1,0,1\nS,1,0,10\nS,2,0,20\n"}});
    REQUIRE_FEED(result);
    QStringList times;
    for (const NetworkStopTime& time : result.feed->network.stopTimes)
        times.append(QStringLiteral("%1 %2").arg(time.tripId).arg(time.sequence));
    QCOMPARE(times, QStringList({"T2 1", "T2 9", "T1 2", "T1 10", "T1 2147483647"}));
    const QVector<NetworkShape> shapes = result.feed->network.shapes;
    QCOMPARE(shapes.size(), 1); // no trip has the other one
    QCOMPARE(shapes.at(0).id, QString("S"));
    QCOMPARE(shapes.at(0).points.size(), 3);
    QCOMPARE(shapes.at(0).points.at(0).latitude, 1.0);
    QCOMPARE(shapes.at(0).points.at(2).latitude, 3.0);
}

void GtfsNetworkTest::onlyTheTimetableOfSomeRoutesIsKept()
{
    const Files files = GtfsCases::read(FEED_TEST_DATA "/gtfs/problems.cases").first().files;
    for (const QStringList& routes : {QStringList{}, QStringList{"R2", "none"}}) {
        FeedOptions options;
        options.timetableOf = routes;
        const FeedResult result = loadGtfs(files, options);
        REQUIRE_FEED(result);
        const Network& kept = result.feed->network;
        QCOMPARE(kept.routes.size(), 2);
        QCOMPARE(kept.trips.size(), routes.isEmpty() ? 0 : 1);
        QCOMPARE(kept.stopTimes.size(), routes.isEmpty() ? 0 : 2);
        QVERIFY(kept.shapes.isEmpty());
        const QString unknown = "no route \"none\", which the timetable is wanted of";
        QCOMPARE(result.noticeLines().filter(unknown).size(), routes.isEmpty() ? 0 : 1);
        const OfferList offers = offersOf(*result.feed->tariff, queryOf("R1 A 2026-03-02T12:00"));
        QCOMPARE(offers.offers.size(), 1);
    }
}

QTEST_GUILESS_MAIN(GtfsNetworkTest)
#include "tst_gtfs_network.moc"
