#include "Table.h"

#include <Feed.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <RouteLines.h>

#include <set>

using namespace rivo::backoffice;
using namespace rivo::feed;

namespace
{

/// "a": a stop of this name, north of the one before in the alphabet. Without a place: "?".
NetworkStop stopOf(QChar name)
{
    NetworkStop stop;
    stop.id = QString(name);
    if (name != '?') {
        stop.latitude = name.unicode() - 'a';
        stop.longitude = 0.5;
    }
    return stop;
}

/// "7:ab" is a trip of route 7 from stop a to stop b, "7:ab@x" one with the shape x.
Network networkOf(const QString& trips)
{
    Network network;
    for (const QChar name : QString("abcd?"))
        network.stops.append(stopOf(name));
    network.shapes.append({"x", {{10.123456, 20.0}, {11, 21}, {12, 22}}});
    network.shapes.append({"point", {{10, 20}, {10, 20}}});
    network.shapes.append(NetworkShape{"empty", {}});
    network.routes.append({"7", "Seven", "Harbour - Town", {}, {}});
    network.routes.append({"8", "", "Town - Airport", {}, {}});
    for (const QString& trip : trips.split(' ', Qt::SkipEmptyParts)) {
        const QString id = QString::number(network.trips.size());
        const QString stops = trip.section(':', 1).section('@', 0, 0);
        network.trips.append({id, trip.section(':', 0, 0), {}, {}, trip.section('@', 1)});
        for (int at = 0; at < stops.size(); ++at)
            network.stopTimes.append({id, QString(stops.at(at)), at, -1, -1});
    }
    return network;
}

QJsonArray arrayOf(const RouteLines& lines) { return QJsonDocument::fromJson(lines.json).array(); }

int pointsOf(const QJsonValue& line) { return line.toObject()["points"].toArray().size() / 2; }

} // namespace

/// Where routes run, for the map of the office's page.
class TestRouteLines : public QObject
{
    Q_OBJECT

private slots:
    void linesAreThoseOfTheTrips_data()
    {
        const Table<QString, QByteArray> row("trips", "json");
        const QByteArray shape = R"({"points":[10.12346,20,11,21,12,22],"route":"Seven"})";
        row("no trips", "", "[]");
        row("a trip with a shape", "7:ab@x", "[" + shape + "]");
        row("a trip without one goes from stop to stop", "7:abd",
            R"([{"points":[0,0.5,1,0.5,3,0.5],"route":"Seven"}])");
        row("a route without a short name has its long one", "8:ab",
            R"([{"points":[0,0.5,1,0.5],"route":"Town - Airport"}])");
        row("a route that is not there has no name", "9:ab",
            R"([{"points":[0,0.5,1,0.5],"route":""}])");
        row("trips of the same way are a line", "7:ab 7:ab 7:ab@x 7:@x",
            "[" + shape + R"(,{"points":[0,0.5,1,0.5],"route":"Seven"}])");
        row("the way back is another line", "7:ab 7:ba",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"},{"points":[1,0.5,0,0.5],"route":"Seven"}])");
        row("routes of the same way have a line each", "7:ab 8:ab",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"},)"
            R"({"points":[0,0.5,1,0.5],"route":"Town - Airport"}])");
        row("the first line of each route comes first", "7:ab 7:ba 8:ab",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"},)"
            R"({"points":[0,0.5,1,0.5],"route":"Town - Airport"},)"
            R"({"points":[1,0.5,0,0.5],"route":"Seven"}])");
        row("a shape that is a point is none", "7:ab@point",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"}])");
        row("a shape that is empty is none", "7:ab@empty",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"}])");
        row("a shape that is not there is none", "7:ab@y",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"}])");
        row("a stop without a place is passed over", "7:a?b",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"}])");
        row("a stop that is not there is passed over", "7:azb",
            R"([{"points":[0,0.5,1,0.5],"route":"Seven"}])");
        row("a stop alone is no line", "7:a", "[]");
        row("a stop twice is no line", "7:aa", "[]");
        row("a trip without stops is no line", "7:", "[]");
    }

    void linesAreThoseOfTheTrips()
    {
        QFETCH(QString, trips);
        QFETCH(QByteArray, json);
        const RouteLines lines = routeLines(networkOf(trips));
        QCOMPARE(lines.json, json);
        QCOMPARE(lines.count, arrayOf(lines).size());
        QCOMPARE(lines.leftOut, 0);
    }

    void longLinesHaveFewerPoints()
    {
        Network network = networkOf("7:ab@x 8:@x 8:ab");
        auto& points = network.shapes.first().points;
        points.clear();
        for (int at = 0; at <= 1'000'000; ++at)
            points.append({at / 100'000.0, 5.0});
        const RouteLines lines = routeLines(network);
        QCOMPARE(lines.count, 3);
        QCOMPARE(lines.leftOut, 0);
        QVERIFY(lines.json.size() <= RouteLines::mostBytes);
        const QJsonArray array = arrayOf(lines);
        for (int line = 0; line < 2; ++line) {
            QVERIFY(pointsOf(array[line]) > RouteLines::mostPoints / 2 - 10);
            QVERIFY(pointsOf(array[line]) <= RouteLines::mostPoints / 2);
            const QJsonArray numbers = array[line].toObject()["points"].toArray();
            QCOMPARE(numbers.first().toDouble(), 0.0);
            QCOMPARE(numbers.at(numbers.size() - 2).toDouble(), 10.0);
        }
        QCOMPARE(pointsOf(array[2]), 2);
    }

    void linesThatAreTooManyAreLeftOut_data()
    {
        const Table<int> row("letters");
        row("for their points", 1);
        row("for their bytes", 1000);
    }

    void linesThatAreTooManyAreLeftOut()
    {
        QFETCH(int, letters);
        constexpr int routes = 1000;
        constexpr int shapes = 30;
        Network network;
        for (int shape = 0; shape < shapes; ++shape)
            network.shapes.append({QString::number(shape), {{1, 2}, {3.0 + shape, 4}}});
        for (int route = 0; route < routes; ++route) {
            const QString id = QString::number(route);
            network.routes.append({id, id + ' ' + QString(letters, QChar(0x20ac)), {}, {}, {}});
            for (int shape = 0; shape < shapes; ++shape)
                network.trips.append({{}, id, {}, {}, QString::number(shape)});
        }
        const RouteLines lines = routeLines(network);
        QVERIFY(lines.count > 0);
        QVERIFY(lines.leftOut > 0);
        QCOMPARE(lines.count + lines.leftOut, routes * shapes);
        QVERIFY(lines.json.size() <= RouteLines::mostBytes);
        int points = 0;
        std::set<QString> shown;
        for (const auto& line : arrayOf(lines)) {
            points += pointsOf(line);
            shown.insert(line.toObject()["route"].toString());
        }
        QVERIFY(points <= RouteLines::mostPoints);
        QCOMPARE(int(shown.size()), std::min(lines.count, routes));
    }

    void textsStayTexts()
    {
        const QString name = "</script><b>\"\\\n" + QString(QChar(0x202e));
        Network network = networkOf("7:ab");
        network.routes.first().shortName = name;
        const RouteLines lines = routeLines(network);
        QCOMPARE(arrayOf(lines)[0].toObject()["route"].toString(), name);
    }
};

QTEST_GUILESS_MAIN(TestRouteLines)
#include "tst_route_lines.moc"
