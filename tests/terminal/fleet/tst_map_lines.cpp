#include "Table.h"

#include <MapLines.h>

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <limits>

using rivo::terminal::MapLines;

/// Lines on the map: where they are, and what of them is painted.
class TestMapLines : public QObject
{
    Q_OBJECT

private slots:
    void partsInView_data();
    void partsInView();
    void placesInTheWorld_data();
    void placesInTheWorld();
    void aLineIsPaintedThroughTheView_data();
    void aLineIsPaintedThroughTheView();
    void whatIsNoPlaceMovesNothing();
};

namespace
{

QString text(const std::optional<QLineF>& line)
{
    return line ? QStringLiteral("%1,%2 %3,%4")
                      .arg(line->x1())
                      .arg(line->y1())
                      .arg(line->x2())
                      .arg(line->y2())
                : QStringLiteral("nothing");
}

QVariantList path(const QVector<QGeoCoordinate>& places)
{
    QVariantList path;
    for (const QGeoCoordinate& place : places)
        path.append(QVariant::fromValue(place));
    return path;
}

QImage painted(MapLines& lines)
{
    QImage image(lines.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    lines.paint(&painter);
    return image;
}

} // namespace

void TestMapLines::partsInView_data()
{
    const Table<QLineF, QString> row("line", "part");
    row("inside", QLineF(1, 2, 9, 8), "1,2 9,8");
    row("through from left to right", QLineF(-10, 5, 20, 5), "0,5 10,5");
    row("through from bottom to top", QLineF(5, 30, 5, -30), "5,10 5,0");
    row("through a corner", QLineF(-2, 4, 4, -2), "0,2 2,0");
    row("in from above", QLineF(5, -5, 5, 5), "5,0 5,5");
    row("beside a corner", QLineF(-4, 1, 1, -4), "nothing");
    row("left of it", QLineF(-5, 0, -1, 10), "nothing");
    row("above it, level", QLineF(0, -1, 10, -1), "nothing");
    row("along an edge", QLineF(-5, 0, 20, 0), "0,0 10,0");
    row("a point inside", QLineF(3, 3, 3, 3), "3,3 3,3");
    row("a point outside", QLineF(30, 3, 30, 3), "nothing");
    row("far beyond both sides", QLineF(-1e12, 5, 1e12, 5), "0,5 10,5");
}

void TestMapLines::partsInView()
{
    QFETCH(QLineF, line);
    QTEST(text(rivo::terminal::clipped(line, QRectF(0, 0, 10, 10))), "part");
}

void TestMapLines::placesInTheWorld_data()
{
    const Table<QGeoCoordinate, double, QPointF> row("place", "zoom", "point");
    // The world is 256 pixels wide without zoom, and twice as wide with each step.
    row("the centre", QGeoCoordinate(0, 0), 0.0, QPointF(128, 128));
    row("east", QGeoCoordinate(0, 180), 0.0, QPointF(256, 128));
    row("the north of the projection", QGeoCoordinate(85.05, -180), 0.0, QPointF(0, 0));
    row("north of it", QGeoCoordinate(90, -180), 0.0, QPointF(0, 0));
    row("closer", QGeoCoordinate(0, 90), 1.0, QPointF(256, 128));
    row("between two steps", QGeoCoordinate(0, 90), 0.5, QPointF(128 + 64 * 1.41421356, 128));
}

void TestMapLines::placesInTheWorld()
{
    QFETCH(QGeoCoordinate, place);
    QFETCH(double, zoom);
    QFETCH(QPointF, point);
    MapLines lines;
    lines.setSize({256, 256});
    lines.setZoomLevel(zoom);
    const QPointF found = lines.pointOf(place);
    QVERIFY2(QLineF(found, point).length() < 0.1,
             qPrintable(QStringLiteral("%1,%2").arg(found.x()).arg(found.y())));
}

void TestMapLines::aLineIsPaintedThroughTheView_data()
{
    const Table<QVector<QGeoCoordinate>, double, bool> row("places", "zoom", "isSeen");
    const QGeoCoordinate west(53.9, 10.6);
    const QGeoCoordinate east(53.9, 10.8);
    row("from side to side", QVector<QGeoCoordinate>{west, east}, 12.0, true);
    row("as near as the map goes", QVector<QGeoCoordinate>{west, east}, 18.0, true);
    row("round the world", QVector<QGeoCoordinate>{{53.9, -180}, {53.9, 180}}, 18.0, true);
    row("one place", QVector<QGeoCoordinate>{west}, 12.0, false);
    row("no place", QVector<QGeoCoordinate>{}, 12.0, false);
    row("elsewhere", QVector<QGeoCoordinate>{{10, 10}, {11, 11}}, 12.0, false);
    row("places that are none", QVector<QGeoCoordinate>{{}, {}}, 12.0, false);
}

void TestMapLines::aLineIsPaintedThroughTheView()
{
    QFETCH(QVector<QGeoCoordinate>, places);
    QFETCH(double, zoom);
    MapLines lines;
    QSignalSpy changed(&lines, &MapLines::linesChanged);
    lines.setSize({200, 100});
    lines.setCenter({53.9, 10.7});
    lines.setZoomLevel(zoom);
    lines.setLines(
        {QVariantMap{{"path", path(places)}, {"color", QColor(Qt::blue)}, {"width", 4.0}}});
    QCOMPARE(changed.count(), 1);
    const QImage image = painted(lines);
    QTEST(image.pixelColor(100, 50) == QColor(Qt::blue), "isSeen");
    QCOMPARE(image.pixelColor(100, 40), QColor(Qt::white));
}

void TestMapLines::whatIsNoPlaceMovesNothing()
{
    MapLines lines;
    lines.setCenter({53.9, 10.7});
    QSignalSpy changed(&lines, &MapLines::viewChanged);
    lines.setCenter({});
    lines.setCenter({53.9, 10.7});
    lines.setZoomLevel(0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(lines.center(), QGeoCoordinate(53.9, 10.7));
}

QTEST_MAIN(TestMapLines)
#include "tst_map_lines.moc"
