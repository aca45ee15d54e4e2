#include <RouteLines.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace rivo::backoffice;
using namespace rivo::feed;

namespace
{

NetworkStop stop(const QString& id, double latitude, double longitude)
{
    NetworkStop made;
    made.id = id;
    made.latitude = latitude;
    made.longitude = longitude;
    return made;
}

/// Stops a, b and c on a line, and d without a place.
Network network()
{
    Network made;
    made.stops = {stop("a", 1, 10), stop("b", 2, 20), stop("c", 3, 30), stop("d", qQNaN(), 40)};
    return made;
}

void addTrip(Network& network, const QString& id, const QStringList& stops,
             const QString& shape = {})
{
    network.trips.append({id, "route", "service", {}, shape});
    for (const QString& each : stops) {
        NetworkStopTime time;
        time.tripId = id;
        time.stopId = each;
        network.stopTimes.append(time);
    }
}

QJsonArray linesOf(const Network& network)
{
    return QJsonDocument::fromJson(routeLines(network)).object()["lines"].toArray();
}

QString textOf(const QJsonArray& lines)
{
    return QString::fromUtf8(QJsonDocument(lines).toJson(QJsonDocument::Compact));
}

} // namespace

/// The lines that the office's map has below the vehicles.
class TestRouteLines : public QObject
{
    Q_OBJECT

private slots:
    void aNetworkWithoutTripsHasNone() { QCOMPARE(routeLines({}), QByteArray("{\"lines\":[]}")); }

    void tripsOfTheSameStopsAreOneLine()
    {
        Network made = network();
        addTrip(made, "1", {"a", "b"});
        addTrip(made, "2", {"a", "b"});
        addTrip(made, "3", {"b", "c"});
        QCOMPARE(textOf(linesOf(made)), "[[[1,10],[2,20]],[[2,20],[3,30]]]");
    }

    void aShapeStandsForTheStopsOfItsTrips()
    {
        Network made = network();
        addTrip(made, "1", {"a", "b"}, "curve");
        made.shapes = {{"curve", {{1, 10}, {5, 5}, {2, 20}}}};
        QCOMPARE(textOf(linesOf(made)), "[[[1,10],[5,5],[2,20]]]");
    }

    void whatHasNoPlaceIsLeftOut()
    {
        Network made = network();
        addTrip(made, "1", {"a", "d", "b", "unknown"});
        addTrip(made, "2", {"a", "d"}); // one place is no line
        QCOMPARE(textOf(linesOf(made)), "[[[1,10],[2,20]]]");
    }

    void longLinesAreThinnedAndKeepTheirEnds()
    {
        Network made;
        NetworkShape shape{"long", {}};
        constexpr int points = 100 * mostPointsOfLine;
        for (int at = 0; at < points; ++at)
            shape.points.append({double(at), 0});
        made.shapes = {shape};
        const QJsonArray line = linesOf(made).first().toArray();
        QVERIFY(line.size() <= mostPointsOfLine + 1);
        QVERIFY(line.size() > mostPointsOfLine / 2);
        QCOMPARE(line.first().toArray().first().toDouble(), 0.0);
        QCOMPARE(line.last().toArray().first().toDouble(), double(points - 1));
    }

    void aLineOfAsManyPointsAsThereMayBeIsWhole()
    {
        Network made;
        NetworkShape shape{"line", {}};
        for (int at = 0; at < mostPointsOfLine; ++at)
            shape.points.append({double(at), 0});
        made.shapes = {shape};
        QCOMPARE(linesOf(made).first().toArray().size(), mostPointsOfLine);
    }

    void noMoreThanMostLinesAreDrawn()
    {
        Network made;
        for (int at = 0; at <= mostRouteLines; ++at)
            made.shapes.append({QString::number(at), {{1, 10}, {2, 20}}});
        QCOMPARE(linesOf(made).size(), mostRouteLines);
    }
};

QTEST_GUILESS_MAIN(TestRouteLines)
#include "tst_route_lines.moc"
