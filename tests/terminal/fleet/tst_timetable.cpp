#include "Table.h"
#include "TestNetwork.h"
#include "Timetable.h"

#include <QtTest>

using namespace rivo;
using fleet::Call;
using fleet::Timetable;
using fleet::Trip;

class TimetableTest : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data();
    void numbers();
    void routeNames();
    void daysOfTheWeek_data();
    void daysOfTheWeek();
    void dates_data();
    void dates();
    void times_data();
    void times();
    void tripsAreInOrderOfTheirStart();
    void placesOnAShape();
    void tripsWithoutAShapeShareAPath();
    void callsWithoutAPosition();
    void moments_data();
    void moments();
};

void TimetableTest::numbers_data()
{
    const Table<QStringList, QVector<int>> row("ids", "numbers");
    row("positive integers are their own numbers", {"7", "1", "2147483647"}, {7, 1, 2147483647});
    row("one text among them: all count", {"7", "x", "9"}, {1, 2, 3});
    row("07 is a text", {"07", "9"}, {1, 2});
    row("0 is a text", {"9", "0"}, {1, 2});
    row("a number below zero is a text", {"9", "-4"}, {1, 2});
    row("a number too large is a text", {"9", "2147483648"}, {1, 2});
}

void TimetableTest::numbers()
{
    QFETCH(QStringList, ids);
    QFETCH(QVector<int>, numbers);
    TestNetwork network;
    network.routes.clear();
    network.stops.clear();
    for (const QString& id : ids) {
        network.routes.append({id, id, "", "", ""});
        network.stops.append(testStop(id, network.stops.size()));
    }
    for (int i = 0; i < ids.size(); ++i)
        network.trip(ids.at(i), ids.at(i),
                     {ids.at(i) + QString(" 8:00:0%1").arg(i), ids.first() + " 9:00:00"});
    const Timetable timetable(network);
    QCOMPARE(timetable.routes().size(), ids.size());
    QCOMPARE(timetable.trips().size(), ids.size());
    for (int i = 0; i < ids.size(); ++i) {
        QCOMPARE(timetable.routes().at(i).number, numbers.at(i));
        const Trip& trip = timetable.trips().at(i);
        QCOMPARE(trip.number, numbers.at(i));
        QCOMPARE(trip.route, numbers.at(i));
        QCOMPARE(trip.id, ids.at(i));
        QCOMPARE(trip.calls.first().stop, numbers.at(i));
        QCOMPARE(timetable.trip(numbers.at(i)), &trip);
        QCOMPARE(timetable.route(numbers.at(i))->name, ids.at(i));
    }
    QCOMPARE(timetable.trip(-1), nullptr);
    QCOMPARE(timetable.route(4711), nullptr);
}

void TimetableTest::routeNames()
{
    TestNetwork network;
    network.routes = {
        {"1", "N1", "Night", "#000000", ""}, {"2", "", "Ring", "", ""}, {"3", "X", "", "", ""}};
    const Timetable timetable(network);
    QCOMPARE(timetable.route(1)->name, QString("N1"));
    QCOMPARE(timetable.route(1)->title, QString("Night"));
    QCOMPARE(timetable.route(1)->color, QString("#000000"));
    QCOMPARE(timetable.route(2)->name, QString("Ring"));
    QCOMPARE(timetable.route(3)->title, QString("X"));
}

void TimetableTest::daysOfTheWeek_data()
{
    const Table<QStringList, QStringList, QVector<int>> row("servicesOfTrips", "days", "running");
    row("no services at all", {"", ""}, {}, {1, 2});
    row("the service with the most trips", {"A", "B", "B", "A", "B"}, {}, {2, 3, 5});
    row("the first of two equal services", {"A", "", "A", ""}, {}, {1, 3});
    row("the day on which most trips run, whatever their services", {"A", "B", "B", "C"},
        {"A 1", "B 2", "C 3"}, {2, 3, 4});
    row("every trip with a service of its own", {"A", "B", "C"}, {"A 31", "B 127", "C 96"}, {1, 2});
    row("Sunday", {"A", "B"}, {"A 0", "B 64"}, {2});
    row("services that run on no day: as if nothing was known", {"A", "B", "B"}, {"A 0", "B 0"},
        {2, 3});
}

void TimetableTest::daysOfTheWeek()
{
    QFETCH(QStringList, servicesOfTrips);
    QFETCH(QStringList, days);
    QFETCH(QVector<int>, running);
    TestNetwork network;
    for (int i = 0; i < servicesOfTrips.size(); ++i)
        network.trip(QString::number(i + 1), "5", {"1 8:00:00", "2 9:00:00"}, {},
                     servicesOfTrips.at(i));
    for (const QString& service : days)
        network.services.append({service.section(' ', 0, 0), service.section(' ', 1).toInt()});
    QVector<int> numbers;
    const Timetable timetable(network);
    for (const Trip& trip : timetable.trips())
        numbers.append(trip.number);
    QCOMPARE(numbers, running);
}

void TimetableTest::dates_data()
{
    const Table<QDate, QVector<int>> row("date", "running");
    row("a weekday in its time", QDate(2026, 3, 2), {1, 2});
    row("a Sunday", QDate(2026, 3, 8), {3});
    row("a day that is added, and removed from another service", QDate(2026, 3, 4), {3});
    row("the first day", QDate(2026, 2, 2), {1, 2});
    row("before the first day, as on the busiest day", QDate(2026, 1, 26), {1, 2});
    row("the last day", QDate(2026, 4, 6), {1, 2});
    row("after the last day, Sundays alone", QDate(2026, 4, 12), {3});
    row("no date", {}, {1, 2});
}

void TimetableTest::dates()
{
    QFETCH(QDate, date);
    TestNetwork network;
    const QStringList calls{"1 8:00:00", "2 9:00:00"};
    network.trip("1", "5", calls, {}, "weekdays");
    network.trip("2", "5", calls, {}, "weekdays");
    network.trip("3", "5", calls, {}, "Sundays");
    feed::NetworkService weekdays{"weekdays", 31};
    weekdays.first = QDate(2026, 2, 2);
    weekdays.last = QDate(2026, 4, 6);
    weekdays.removed = {QDate(2026, 3, 4)};
    feed::NetworkService sundays{"Sundays", 64};
    sundays.added = {QDate(2026, 3, 4)};
    network.services = {weekdays, sundays};
    QVector<int> numbers;
    const Timetable timetable(network, date);
    for (const Trip& trip : timetable.trips())
        numbers.append(trip.number);
    QTEST(numbers, "running");
}

void TimetableTest::times_data()
{
    const Table<QStringList, QStringList> row("calls", "times");
    row("arrival and departure", {"1 0:10:00 0:11:00", "2 0:20:00 0:20:30"},
        {"1 600-660", "2 1200-1230"});
    row("one of the two is both", {"1 - 0:11:00", "2 0:20:00 -"}, {"1 660-660", "2 1200-1200"});
    row("missing times are spread between those that are there",
        {"1 0:10:00 0:11:00", "2", "3", "4 0:14:00"},
        {"1 600-660", "2 720-720", "3 780-780", "4 840-840"});
    row("spread without running short of seconds", {"1 0:00:00", "2", "3", "4", "5 0:00:02"},
        {"1 0-0", "2 0-0", "3 1-1", "4 1-1", "5 2-2"});
    row("two gaps", {"1 0:00:00", "2", "3 0:02:00", "4", "5 0:10:00"},
        {"1 0-0", "2 60-60", "3 120-120", "4 360-360", "5 600-600"});
    row("stops before the first time and after the last are not served",
        {"1", "2 0:10:00", "3 0:20:00", "4"}, {"2 600-600", "3 1200-1200"});
    row("past midnight", {"1 23:59:59", "2 24:00:10 25:00:00", "3 47:00:00"},
        {"1 86399-86399", "2 86410-90000", "3 169200-169200"});
    row("all at once", {"1 0:10:00", "2 0:10:00"}, {"1 600-600", "2 600-600"});
    row("no time", {"1", "2"}, {});
    row("one time only", {"1 0:10:00", "2"}, {});
    row("one stop only", {"1 0:10:00"}, {});
    row("no stops", {}, {});
    row("departure before arrival", {"1 0:10:00", "2 0:20:00 0:19:59", "3 0:30:00"}, {});
    row("arrival before the last departure", {"1 0:10:00 0:15:00", "2 0:14:59"}, {});
    row("time that runs back over a gap", {"1 0:10:00", "2", "3 0:09:00"}, {});
    row("a stop that is not defined is left out", {"1 0:10:00", "X 0:15:00", "2 0:20:00"},
        {"1 600-600", "2 1200-1200"});
}

void TimetableTest::times()
{
    QFETCH(QStringList, calls);
    QFETCH(QStringList, times);
    const Timetable timetable(TestNetwork().trip("1", "5", calls));
    QCOMPARE(timetable.trips().size(), times.isEmpty() ? 0 : 1);
    if (times.isEmpty())
        return;
    QStringList is;
    for (const Call& call : timetable.trips().first().calls)
        is.append(QString("%1 %2-%3").arg(call.stop).arg(call.arrival).arg(call.departure));
    QCOMPARE(is, times);
}

void TimetableTest::tripsAreInOrderOfTheirStart()
{
    const Timetable timetable(TestNetwork()
                                  .trip("1", "5", {"1 9:00:00", "2 10:00:00"})
                                  .trip("2", "5", {"1 25:00:00", "2 26:00:00"})
                                  .trip("3", "6", {"1 8:00:00", "2 10:00:00"})
                                  .trip("4", "5", {"1 7:00:00 9:00:00", "2 9:30:00"}));
    QVector<int> numbers;
    for (const Trip& trip : timetable.trips())
        numbers.append(trip.number);
    QCOMPARE(numbers, QVector<int>({3, 1, 4, 2}));
}

void TimetableTest::placesOnAShape()
{
    // A detour to the north between stops 2 and 4.
    TestNetwork network;
    network.shape("detour", {{0, 0.001}, {0, 0.002}, {0.001, 0.002}, {0.001, 0.004}, {0, 0.004}});
    network.shape("point", {{0, 0.001}});
    network.stops[0].areas = {3, 4};
    network.trip("1", "5", {"1 8:00:00", "2 8:01:00", "4 8:10:00"}, "detour");
    network.trip("2", "5", {"1 8:00:00", "2 8:01:00", "4 8:10:00"}, "point");
    const Timetable timetable(network);
    const double step = QGeoCoordinate(0, 0).distanceTo({0, 0.001});
    const Trip& trip = *timetable.trip(1);
    QCOMPARE(trip.path->points().size(), 5);
    QVERIFY(qAbs(trip.calls.at(0).metres) < 0.1);
    QVERIFY(qAbs(trip.calls.at(1).metres - step) < 0.1);
    QVERIFY(qAbs(trip.calls.at(2).metres - 5 * step) < 0.1);
    QCOMPARE(trip.calls.at(0).zones, QVector<int>({3, 4}));
    QCOMPARE(trip.calls.at(0).name, QString("Stop 1"));
    // A shape of one point is none.
    QCOMPARE(timetable.trip(2)->path->points().size(), 3);
}

void TimetableTest::tripsWithoutAShapeShareAPath()
{
    const Timetable timetable(TestNetwork()
                                  .trip("1", "5", {"1 8:00:00", "3 9:00:00"})
                                  .trip("2", "5", {"1 9:00:00", "3 10:00:00"})
                                  .trip("3", "5", {"3 9:00:00", "1 10:00:00"}));
    const Trip& first = *timetable.trip(1);
    QCOMPARE(first.path->points(), QVector<QGeoCoordinate>({{0, 0.001}, {0, 0.003}}));
    QCOMPARE(timetable.trip(2)->path, first.path);
    QVERIFY(timetable.trip(3)->path != first.path);
    QCOMPARE(first.calls.last().metres, first.path->length());
}

void TimetableTest::callsWithoutAPosition()
{
    TestNetwork network;
    network.stops[1].latitude = qQNaN();
    network.stops[1].longitude = qQNaN();
    network.trip("1", "5", {"1 8:00:00", "2 8:30:00", "3 9:00:00"});
    const Timetable timetable(network);
    const Trip& trip = *timetable.trip(1);
    QVERIFY(!trip.calls.at(1).coordinate.isValid());
    QCOMPARE(trip.path->points().size(), 2);
    QCOMPARE(trip.calls.at(1).metres, 0.0);
    QCOMPARE(trip.calls.at(2).metres, trip.path->length());
}

void TimetableTest::moments_data()
{
    const Table<int, double, int, bool> row("time", "steps", "call", "isStopped");
    row("long before the start", 0, 0.0, 0, true);
    row("departure", 1000, 0.0, 0, true);
    row("on the way", 1025, 0.25, 0, false);
    row("arrival", 1100, 1.0, 1, true);
    row("at the stop", 1150, 1.0, 1, true);
    row("departure from the stop", 1200, 1.0, 1, true);
    row("on the way again", 1201, 1.01, 1, false);
    row("last second of the way", 1399, 2.99, 1, false);
    row("end", 1400, 3.0, 2, true);
    row("after the end", 99999, 3.0, 2, true);
}

void TimetableTest::moments()
{
    QFETCH(int, time);
    QFETCH(double, steps);
    QFETCH(int, call);
    QFETCH(bool, isStopped);
    const Timetable timetable(TestNetwork().trip(
        "1", "5", {"1 0:16:00 0:16:40", "2 0:18:20 0:20:00", "4 0:23:20 0:30:00"}));
    const Trip& trip = timetable.trips().first();
    QCOMPARE(trip.start(), 1000);
    QCOMPARE(trip.end(), 1400);
    const Trip::Moment moment = trip.at(time);
    const double step = QGeoCoordinate(0, 0).distanceTo({0, 0.001});
    QVERIFY2(qAbs(moment.metres - steps * step) < 0.01,
             qPrintable(QString::number(moment.metres / step)));
    QCOMPARE(moment.call, call);
    QCOMPARE(moment.isStopped, isStopped);
}

QTEST_GUILESS_MAIN(TimetableTest)
#include "tst_timetable.moc"
