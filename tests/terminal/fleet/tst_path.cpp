#include "Path.h"
#include "Table.h"

#include <QtTest>

using rivo::fleet::Path;
using Points = QVector<QGeoCoordinate>;

namespace
{

// On the equator, in thousandths of a degree.
QGeoCoordinate at(double east, double north) { return {north / 1000.0, east / 1000.0}; }

/// A corner: 10 thousandths east, then 10 north.
const Points corner = {at(0, 0), at(10, 0), at(10, 10)};
const double leg = at(0, 0).distanceTo(at(10, 0));

bool isNear(const QGeoCoordinate& a, const QGeoCoordinate& b) { return a.distanceTo(b) < 0.01; }

} // namespace

class PathTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAWay();
    void repeatedPointsCountOnce();
    void places_data();
    void places();
    void directions();
    void nearest_data();
    void nearest();
    void nearestIsNeverBeforeFrom();
    void passes_data();
    void passes();
};

void PathTest::withoutAWay()
{
    QCOMPARE(Path().length(), 0.0);
    QVERIFY(!Path().at(5.0).coordinate.isValid());
    QCOMPARE(Path().at(5.0).direction, 0.0);
    QCOMPARE(Path().nearest(at(1, 1), 0.0), 0.0);
    QCOMPARE(Path().nearest(at(1, 1), 7.0), 0.0);
    QVERIFY(Path(Points()).points().isEmpty());

    const Path point({at(3, 4)});
    QCOMPARE(point.length(), 0.0);
    QCOMPARE(point.at(-1.0).coordinate, at(3, 4));
    QCOMPARE(point.at(9.0).coordinate, at(3, 4));
    QCOMPARE(point.at(9.0).direction, 0.0);
    QCOMPARE(point.nearest(at(1, 1), 0.0), 0.0);
}

void PathTest::repeatedPointsCountOnce()
{
    const Path path({at(0, 0), at(0, 0), at(10, 0), at(10, 0), at(10, 0), at(10, 10), at(10, 10)});
    QCOMPARE(path.points(), corner);
    QCOMPARE(path.length(), Path(corner).length());
    QCOMPARE(Path({at(1, 1), at(1, 1)}).length(), 0.0);
    QCOMPARE(Path({at(1, 1), at(1, 1)}).at(1.0).coordinate, at(1, 1));
}

void PathTest::places_data()
{
    const Table<double, QGeoCoordinate, double> row("legs", "coordinate", "direction");
    row("before the start is the start", -0.5, at(0, 0), 90.0);
    row("the start", 0.0, at(0, 0), 90.0);
    row("within the first piece", 0.25, at(2.5, 0), 90.0);
    row("on a corner the next piece has begun", 1.0, at(10, 0), 0.0);
    row("within the last piece", 1.5, at(10, 5), 0.0);
    row("the end", 2.0, at(10, 10), 0.0);
    row("behind the end is the end", 7.0, at(10, 10), 0.0);
}

void PathTest::places()
{
    QFETCH(double, legs);
    QFETCH(QGeoCoordinate, coordinate);
    QFETCH(double, direction);
    const Path path(corner);
    QVERIFY(qAbs(path.length() - 2 * leg) < 0.01);
    const Path::Place place = path.at(legs * leg);
    QVERIFY2(isNear(place.coordinate, coordinate), qPrintable(place.coordinate.toString()));
    QVERIFY(qAbs(place.direction - direction) < 0.01);
}

void PathTest::directions()
{
    for (const auto& [to, direction] : {std::pair(at(0, 1), 0.0),
                                        {at(1, 1), 45.0},
                                        {at(1, 0), 90.0},
                                        {at(0, -1), 180.0},
                                        {at(-1, 0), 270.0},
                                        {at(-1, 1), 315.0}}) {
        const double is = Path({at(0, 0), to}).at(1.0).direction;
        QVERIFY2(qAbs(is - direction) < 0.01, qPrintable(QString::number(is)));
    }
}

void PathTest::nearest_data()
{
    const Table<Points, QGeoCoordinate, double, double> row("points", "coordinate", "fromLegs",
                                                            "legs");
    // Goes out, turns, and comes back on the same way.
    const Points thereAndBack = {at(0, 0), at(10, 0), at(0, 0)};
    // A square that ends where it began.
    const Points ring = {at(0, 0), at(10, 0), at(10, 10), at(0, 10), at(0, 0)};
    // A ring whose stop lies nearer to its end than to its start.
    const Points openRing = {at(0, 0), at(10, 0), at(10, 10), at(0, 10), at(0, 0.05)};

    row("beside a piece", corner, at(4, 1), 0.0, 0.4);
    row("beside the other piece", corner, at(12, 5), 0.0, 1.5);
    row("before the start", corner, at(-5, 1), 0.0, 0.0);
    row("behind the end", corner, at(11, 30), 0.0, 2.0);
    row("outside of the corner", corner, at(11, -1), 0.0, 1.0);
    row("the place is behind already: where one is", corner, at(2, 0), 0.6, 0.6);
    row("beyond the whole path: its end", corner, at(2, 0), 9.0, 2.0);
    row("on the way out", thereAndBack, at(4, 0), 0.0, 0.4);
    row("on the way back", thereAndBack, at(4, 0), 0.5, 1.6);
    row("at the turn", thereAndBack, at(10, 0), 0.0, 1.0);
    row("start of a ring", ring, at(0, 0), 0.0, 0.0);
    row("end of a ring", ring, at(0, 0), 0.1, 4.0);
    row("start of a ring that comes closer at its end", openRing, at(0, 0.05), 0.0, 0.0);
    row("end of a ring that comes closer at its end", openRing, at(0, 0.05), 0.5, 3.995);
}

void PathTest::nearest()
{
    QFETCH(Points, points);
    QFETCH(QGeoCoordinate, coordinate);
    QFETCH(double, fromLegs);
    QFETCH(double, legs);
    const double metres = Path(points).nearest(coordinate, fromLegs * leg);
    QVERIFY2(qAbs(metres - legs * leg) < 10.0, qPrintable(QString::number(metres / leg)));
}

void PathTest::nearestIsNeverBeforeFrom()
{
    // A knot that crosses itself, with several stops nearby.
    const Path knot({at(0, 0), at(10, 10), at(10, 0), at(0, 10), at(5, 5), at(20, 5), at(0, 5)});
    for (int place = 0; place < 36; ++place) {
        const QGeoCoordinate coordinate = at(place % 6 * 4 - 2, place / 6 * 3 - 2);
        for (double from = -100.0; from < knot.length() + 100.0; from += leg / 3) {
            const double metres = knot.nearest(coordinate, from);
            QVERIFY(metres >= std::min(from, knot.length()) && metres >= 0.0);
            QVERIFY(metres <= knot.length());
        }
    }
}

void PathTest::passes_data()
{
    // from: in legs, as all numbers here
    const Table<Points, QGeoCoordinate, double, double, double, QVector<double>, QVector<double>>
        row("points", "coordinate", "from", "to", "within", "metres", "distances");
    const Points back = {at(0, 0), at(10, 0), at(0, 0)};
    row("no path", {}, at(1, 0), 0, 9, 1, {}, {});
    row("one pass", corner, at(4, 1), 0, 2, 0.5, {0.4}, {0.1});
    row("too far", corner, at(4, 1), 0, 2, 0.09, {}, {});
    row("there and back", back, at(4, 1), 0, 2, 0.5, {0.4, 1.6}, {0.1, 0.1});
    row("from behind the first", back, at(4, 1), 1.2, 2, 0.5, {1.6}, {0.1});
    row("from in the middle", corner, at(4, 0), 0.6, 2, 0.5, {0.6}, {0.2});
    row("up to before the second", back, at(4, 0), 0, 1.5, 0.5, {0.4, 1.5}, {0.0, 0.1});
    row("at the corner it is one pass", corner, at(11, 0), 0, 2, 0.5, {1.0}, {0.1});
    row("far between the passes", {at(0, 0), at(10, 0), at(10, 10), at(0, 10), at(0, 0)}, at(0, 0),
        0, 4, 0.5, {0.0, 4.0}, {0.0, 0.0});
    row("outside of the path", corner, at(0, 0), 3, 4, 0.5, {}, {});
}

void PathTest::passes()
{
    QFETCH(Points, points);
    QFETCH(QGeoCoordinate, coordinate);
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(double, within);
    QFETCH(QVector<double>, metres);
    QFETCH(QVector<double>, distances);
    const QVector<Path::Pass> passes =
        Path(points).passes(coordinate, from * leg, to * leg, within * leg);
    QCOMPARE(passes.size(), metres.size());
    for (int i = 0; i < passes.size(); ++i) {
        QVERIFY(qAbs(passes.at(i).metres - metres.at(i) * leg) < 0.1);
        QVERIFY(qAbs(passes.at(i).distance - distances.at(i) * leg) < 0.1);
    }
}

QTEST_GUILESS_MAIN(PathTest)
#include "tst_path.moc"
