#include "LabelPlacement.h"
#include "Table.h"

#include <QtTest>

using namespace rivo::fleet;

Q_DECLARE_METATYPE(MapContent)

namespace
{

const QRectF view(0, 0, 400, 300);
const QPointF middle(100, 100);

/// A map with one stop, number 1, whose name is 40 pixels wide: its label has 48.
MapContent mapWith(const QPointF& point, double textWidth = 40.0)
{
    MapContent content;
    content.stops = {{1, point, textWidth}};
    content.view = view;
    return content;
}

MapContent withLine(const QVector<QPointF>& line)
{
    MapContent content = mapWith(middle);
    content.lines = {line};
    return content;
}

MapContent withMarks(const QVector<QRectF>& marks, const QVector<QVector<QPointF>>& lines = {})
{
    MapContent content = mapWith(middle);
    content.marks = marks;
    content.lines = lines;
    return content;
}

/// Vehicles all the way from left to right, at these heights below the stop.
MapContent withRows(const QVector<double>& heights, const QVector<QRectF>& others = {})
{
    QVector<QRectF> marks = others;
    for (const double height : heights)
        marks.append({0.0, middle.y() + height, view.width(), 0.5});
    return withMarks(marks);
}

/// Vehicles that leave room above and below the stop alone, and others.
MapContent withSides(const QVector<QPointF>& others)
{
    QVector<QRectF> marks{{150, 0, 1, 300}, {50, 0, 1, 300}};
    for (const QPointF& other : others)
        marks.append({middle + other, QSizeF(1, 1)});
    return withMarks(marks);
}

MapContent withControls(const QRectF& controls)
{
    MapContent content = mapWith(middle);
    content.controls = controls;
    return content;
}

MapContent withSecondStop(const QPointF& point, double textWidth = 40.0)
{
    MapContent content = mapWith(middle);
    content.stops.append({2, point, textWidth});
    return content;
}

/// "1 at 11,-10 48x20" for each name that has a place.
QString placesIn(const MapContent& content)
{
    const QHash<int, QRectF> places = placesOfNames(content);
    QStringList texts;
    for (const StopOnMap& stop : content.stops) {
        if (!places.contains(stop.number))
            continue;
        const QRectF place = places.value(stop.number);
        texts.append(QString("%1 at %2,%3 %4x%5")
                         .arg(stop.number)
                         .arg(place.x())
                         .arg(place.y())
                         .arg(place.width())
                         .arg(place.height()));
    }
    return texts.join("; ");
}

} // namespace

class LabelPlacementTest : public QObject
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
    void covered_data();
    void covered();
};

void LabelPlacementTest::places_data()
{
    const Table<MapContent, QString> add("content", "places");
    const char* const right = "1 at 11,-10 48x20";
    const char* const left = "1 at -59,-10 48x20";
    const char* const nowhere = "";

    add("room everywhere", mapWith(middle), right);
    add("no name", mapWith(middle, -1.0), nowhere);
    add("name of no width", mapWith(middle, 0.0), "1 at 11,-10 8x20");
    add("part of a pixel", mapWith(middle, 40.2), "1 at 11,-10 49x20");
    add("widest name", mapWith(middle, 172.0), "1 at 11,-10 180x20");
    add("wider than the widest", mapWith(middle, 500.0), "1 at 11,-10 180x20");

    add("line to the right", withLine({middle, {400, 100}}), left);
    add("line to both sides", withLine({{0, 100}, {400, 100}}), "1 at 11,-24 48x20");
    add("line up and down", withLine({{100, 0}, {100, 300}}), right);
    add("line that passes behind the name", withLine({{118, 0}, {118, 300}}), left);
    add("second part of a line", withLine({{0, 300}, {0, 0}, {118, 0}, {118, 300}}), left);
    add("line of one point", withLine({{118, 100}}), right);
    add("line outside of half a view around", withLine({{-300, 460}, {700, 460}}), right);

    add("right edge of the view", mapWith({380, 100}), left);
    add("corner of the view", mapWith({395, 5}), "1 at -59,-2 48x20");
    add("name up to the edge", mapWith({341, 100}), right);
    add("stop on the edge", mapWith({400, 100}), left);
    add("stop outside of the view", mapWith({450, 100}), right);
    add("stop half a view away", mapWith({599, 100}), right);
    add("stop further away", mapWith({600, 100}), nowhere);
    add("stop further to the left", mapWith({-201, 100}), nowhere);

    add("controls to the right", withControls({111, 0, 289, 300}), left);
    add("controls everywhere", withControls(view), nowhere);

    add("vehicle to the right", withMarks({{120, 90, 20, 20}}), left);
    add("vehicle to the right, line to the left",
        withMarks({{120, 90, 20, 20}}, {{{0, 100}, {90, 100}}}), "1 at -59,-24 48x20");
    add("vehicle everywhere", withMarks({view}), right);

    // All places in the order of preference: right and left at seven heights, above, below.
    const QVector<QRectF> onTheRight{{111, 0, 289, 300}};
    for (const auto& [heights, y] : {std::pair(QVector<double>{5}, -18),
                                     {{-5}, -2},
                                     {{0}, -24},
                                     {{0, -6}, 4},
                                     {{0, -6, 10}, -28},
                                     {{0, -20, 6}, 8}}) {
        const char* const place = "1 at %1,%2 48x20";
        QTest::addRow("right at %d", y) << withRows(heights) << QString(place).arg(11).arg(y);
        QTest::addRow("left at %d", y)
            << withRows(heights, onTheRight) << QString(place).arg(-59).arg(y);
    }
    add("above", withSides({}), "1 at -24,-31 48x20");
    add("above, to the right", withSides({{-20, -20}}), "1 at -12,-31 48x20");
    add("above, to the left", withSides({{20, -20}}), "1 at -36,-31 48x20");
    add("below", withSides({{0, -20}}), "1 at -24,11 48x20");
    add("below, to the right", withSides({{0, -20}, {-20, 20}}), "1 at -12,11 48x20");
    add("below, to the left", withSides({{0, -20}, {20, 20}}), "1 at -36,11 48x20");

    add("stop to the right", withSecondStop({130, 100}, -1.0), left);
    add("two names side by side", withSecondStop({130, 100}),
        "1 at -59,-10 48x20; 2 at 11,-10 48x20");
    add("two names one above the other", withSecondStop({100, 118}),
        "1 at 11,-10 48x20; 2 at -59,-10 48x20");
    add("names of the same stop", withSecondStop(middle), "1 at 11,-10 48x20; 2 at -59,-10 48x20");
    add("stop that is too far away to matter", withSecondStop({100, 500}), right);
}

void LabelPlacementTest::places()
{
    QFETCH(MapContent, content);
    QFETCH(QString, places);
    QCOMPARE(placesIn(content), places);
}

void LabelPlacementTest::covered_data()
{
    const Table<QVector<QRectF>, bool> add("others", "isCovered");
    add("nothing there", {}, false);
    add("a corner of it", {{-10, -10, 11, 11}}, true);
    add("edge to edge on the left", {{-10, 0, 10, 10}}, false);
    add("edge to edge below", {{0, 10, 10, 10}}, false);
    add("all of it", {{-10, -10, 100, 100}}, true);
    add("the second one", {{50, 50, 1, 1}, {5, 5, 1, 1}}, true);
}

void LabelPlacementTest::covered()
{
    QFETCH(QVector<QRectF>, others);
    QFETCH(bool, isCovered);
    QCOMPARE(rivo::fleet::isCovered({0, 0, 10, 10}, others), isCovered);
}

QTEST_GUILESS_MAIN(LabelPlacementTest)
#include "tst_label_placement.moc"
