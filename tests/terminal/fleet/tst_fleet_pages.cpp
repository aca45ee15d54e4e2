#include "Table.h"

#include "../ScreenUnderTest.h"

#include <AssetItem.h>
#include <MapLines.h>

#include <QGeoCoordinate>
#include <QtTest>

#include <algorithm>

using rivo::feed::Feed;
using rivo::fleet::FleetSimulator;
using rivo::terminal::Terminal;

namespace
{

/// A page of an example feed at 10:20, when vehicles drive; time stands still.
struct Shown : ScreenUnderTest
{
    Shown(const QString& feed, const QString& page, const QSize& size)
        : Shown(exampleFeed(feed), page, size)
    {
    }
    Shown(const Feed& feed, const QString& page, const QSize& size)
        : ScreenUnderTest(feed, page, size,
                          [](Terminal::Settings& settings) { settings.startTime = 37200; })
    {
    }

    FleetSimulator& fleet() { return *terminal().fleet(); }
    AssetItem& vehicle(int id)
    {
        return *qobject_cast<AssetItem*>(terminal().vehicles()->findById(id));
    }

    void pass(int seconds) { fleet().setTime(fleet().time() + seconds); }

    bool isWithinWindow(QQuickItem* item)
    {
        const QRectF place = item->mapRectToScene(item->boundingRect());
        return QRectF({0, 0}, QSizeF(window()->size())).contains(place);
    }

    /// Places of all items of this name, smaller by `margin` on each side.
    QVector<QRectF> placesOf(const QString& name, double margin)
    {
        QVector<QRectF> places;
        for (const QQuickItem* item : all(name))
            places.append(item->mapRectToScene(item->boundingRect())
                              .adjusted(margin, margin, -margin, -margin));
        return places;
    }

    /// However they are turned.
    QVector<QRectF> placesOfArrows()
    {
        QVector<QRectF> places;
        for (const QQuickItem* arrow : all("arrow")) {
            const QPointF half(arrow->height() * 0.48, arrow->height() * 0.48);
            const QPointF center = arrow->mapRectToScene(arrow->boundingRect()).center();
            places.append(QRectF(center - half, center + half));
        }
        return places;
    }

    QVector<QPointF> pointsOfLines()
    {
        constexpr int steps = 20; // between two places of a line
        QQuickItem* map = item("map");
        QVector<QPointF> points;
        for (const QVariant& line : fleet().lines()) {
            const QVariantList path = line.toMap().value("path").toList();
            QPointF before;
            for (int i = 0; i < path.size(); ++i) {
                QPointF at;
                QMetaObject::invokeMethod(map, "fromCoordinate", Q_RETURN_ARG(QPointF, at),
                                          Q_ARG(QGeoCoordinate, path.at(i).value<QGeoCoordinate>()),
                                          Q_ARG(bool, false));
                at = map->mapToScene(at);
                for (int step = 0; i > 0 && step <= steps; ++step)
                    points.append(before + (at - before) * step / steps);
                before = at;
            }
        }
        return points;
    }

    /// What is wrong with the names of the stops on the map; empty if nothing is.
    QString conflictOfNames()
    {
        const QVector<QRectF> names = placesOf("stopLabel", 0);
        if (names.size() < 3)
            return QString("%1 names").arg(names.size());
        const QVector<QRectF> marks =
            placesOf("stopMark", 1) + placesOf("vehicleTag", 1) + placesOfArrows();
        const QVector<QPointF> line = pointsOfLines();
        for (int i = 0; i < names.size(); ++i) {
            const QRectF& name = names.at(i);
            const auto isHit = [&name](const QRectF& other) { return name.intersects(other); };
            if (std::any_of(names.begin() + i + 1, names.end(), isHit))
                return QString("names overlap");
            if (std::any_of(marks.begin(), marks.end(), isHit))
                return QString("a name and a mark overlap");
            if (std::any_of(line.begin(), line.end(),
                            [&name](const QPointF& point) { return name.contains(point); }))
                return QString("a name lies on a line");
        }
        return {};
    }
};

} // namespace

class FleetPagesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); }

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup() { QCOMPARE(Complaints::take(), QStringList()); }
    void cleanupTestCase() { m_complaints.reset(); }

    void everythingFits_data()
    {
        addColumns<QString, QSize>("feed", "size");
        for (const char* feed : {"coast-line", "hill-valley"}) {
            for (const QSize size : {QSize(800, 480), QSize(1024, 600), QSize(1280, 800)})
                QTest::addRow("%s at %dx%d", feed, size.width(), size.height()) << feed << size;
        }
    }

    void everythingFits()
    {
        QFETCH(QString, feed);
        QFETCH(QSize, size);
        Shown fleet(feed, "fleet", size);
        QTRY_VERIFY(!fleet.all("arrow").isEmpty());
        for (const char* name : {"zoomIn", "zoomOut", "showLine", "followButton", "silenceButton",
                                 "pace1", "pace10", "pace60", "map", "vehicleLines"}) {
            QVERIFY2(fleet.item(name) != nullptr, name);
            QVERIFY2(fleet.isWithinWindow(fleet.item(name)), name);
        }
        QTRY_VERIFY(fleet.isWithinWindow(fleet.item("arrow")));

        Shown devices(feed, "devices", size);
        QTRY_COMPARE(devices.all("stateText").size(), 3);
        QVERIFY(devices.isWithinWindow(devices.item("deviceEvents")));
        for (QQuickItem* card : devices.all("deviceCard"))
            QVERIFY(card->mapRectToScene(card->boundingRect()).right() <=
                    devices.item("deviceEvents")->mapToScene({0, 0}).x());
    }

    /// Qt Location places the stops, MapLines the lines.
    void stopsLieOnTheirLines()
    {
        Shown shown("coast-line", "fleet", QSize(1024, 600));
        auto* lines = qobject_cast<rivo::terminal::MapLines*>(shown.item("mapLines"));
        QVERIFY(lines != nullptr);
        QTRY_VERIFY(shown.all("stopMark").size() > 5);
        for (const int zooms : {0, 3}) {
            for (int tap = 0; tap < zooms; ++tap)
                shown.tap("zoomIn");
            const double zoom = lines->zoomLevel();
            QCOMPARE(lines->zoomLevel(), shown.item("map")->property("zoomLevel").toDouble());
            QVector<QPointF> expected;
            for (const QVariant& stop : shown.fleet().stops())
                expected.append(lines->mapToScene(
                    lines->pointOf(stop.toMap().value("coordinate").value<QGeoCoordinate>())));
            const auto isPlaced = [&] {
                const QVector<QRectF> marks = shown.placesOf("stopMark", 0);
                return std::all_of(marks.begin(), marks.end(), [&](const QRectF& mark) {
                    return std::any_of(expected.begin(), expected.end(), [&](const QPointF& at) {
                        return QLineF(at, mark.center()).length() < 1.5;
                    });
                });
            };
            QTRY_VERIFY2(isPlaced(), qPrintable(QString::number(zoom)));
        }
    }

    void stopNamesKeepClear_data() { everythingFits_data(); }

    void stopNamesKeepClear()
    {
        QFETCH(QString, feed);
        QFETCH(QSize, size);
        Shown shown(feed, "fleet", size);
        QTRY_COMPARE(shown.conflictOfNames(), QString());
        for (int minutes = 1; minutes <= 5; ++minutes) {
            shown.pass(60);
            QTRY_COMPARE(shown.conflictOfNames(), QString());
        }
        // At a closer zoom names keep their size and get more space.
        const int before = shown.all("stopLabel").size();
        shown.tap("zoomOut");
        for (int zoom = 0; zoom < 2; ++zoom) {
            shown.tap("zoomIn");
            QTRY_COMPARE(shown.conflictOfNames(), QString());
        }
        QTRY_VERIFY(shown.all("stopLabel").size() >= before);
    }

    void marksShowTheRowsOfTheModel()
    {
        Shown shown("coast-line", "fleet", {1024, 600});
        QTRY_COMPARE(shown.all("arrow").size(), 4); // the fifth is nowhere
        QTRY_COMPARE(shown.texts("statusText").size(), 5);
        QVERIFY(shown.texts("statusText").contains("parked"));
        const auto isTurned = [&](double direction) {
            const QVector<QQuickItem*> arrows = shown.all("arrow");
            return std::any_of(arrows.begin(), arrows.end(), [direction](const QQuickItem* arrow) {
                return qAbs(arrow->rotation() - direction) < 0.01;
            });
        };
        QVERIFY(isTurned(shown.vehicle(31).direction()));
        for (const double direction : {0.0, 123.25, 270.0, 720.25, -90.0}) {
            shown.vehicle(31).setDirection(direction);
            QVERIFY2(isTurned(direction), qPrintable(QString::number(direction)));
        }

        shown.vehicle(31).setInView(false);
        QTRY_COMPARE(shown.all("arrow").size(), 3);
        QCOMPARE(shown.texts("statusText").size(), 5);
        shown.vehicle(31).setInView(true);
        shown.vehicle(41).setAssetCoordinate(QGeoCoordinate());
        QTRY_COMPARE(shown.all("arrow").size(), 3);
        shown.vehicle(36).setInView(true);
        shown.vehicle(36).setAssetCoordinate(QGeoCoordinate(54.5, 11.2));
        QTRY_COMPARE(shown.all("arrow").size(), 4);
    }

    void silenceShowsInListAndMap()
    {
        Shown shown("coast-line", "fleet", {1024, 600});
        QTRY_COMPARE(shown.texts("statusText").size(), 5);
        const int statusOfOwn = 0;
        shown.tap("silenceButton");
        QVERIFY(shown.fleet().isSilent(31));
        shown.pass(61);
        QCOMPARE(shown.texts("statusText").at(statusOfOwn), QString("no report"));
        const QVariant stale = shown.all("statusText").at(statusOfOwn)->property("color");
        shown.pass(240);
        QCOMPARE(shown.texts("statusText").at(statusOfOwn), QString("off-line"));
        QVERIFY(shown.all("statusText").at(statusOfOwn)->property("color") != stale);

        // Another vehicle is chosen: the switch is its own.
        shown.tap(shown.all("statusText").at(1));
        shown.tap("silenceButton");
        QVERIFY(shown.fleet().isSilent(31) && shown.fleet().isSilent(34));
        shown.tap("silenceButton");
        QVERIFY(shown.fleet().isSilent(31) && !shown.fleet().isSilent(34));
        shown.tap(shown.all("statusText").at(0));
        shown.tap("silenceButton");
        QVERIFY(!shown.fleet().isSilent(31));
        QCOMPARE(shown.texts("statusText").at(statusOfOwn), QString("at a stop"));
    }

    void zoomAndFollow()
    {
        Shown shown("coast-line", "fleet", {1024, 600});
        QQuickItem* map = shown.item("map");
        QTRY_VERIFY(map->property("zoomLevel").toDouble() > 11.0); // the line, not the world
        const double fitting = map->property("zoomLevel").toDouble();
        const auto centre = [&] { return map->property("center").value<QGeoCoordinate>(); };
        const auto distance = [&] {
            return centre().distanceTo(shown.vehicle(31).assetCoordinate());
        };
        const auto goOn = [&shown] {
            rivo::terminal::TripDesk& trip = *shown.terminal().trip();
            trip.setStop(trip.stop() + 1);
        };
        shown.tap("zoomIn");
        QCOMPARE(map->property("zoomLevel").toDouble(), fitting + 1.0);
        shown.tap("zoomOut");
        shown.tap("zoomOut");
        QCOMPARE(map->property("zoomLevel").toDouble(), fitting - 1.0);

        QVERIFY(distance() > 100.0);
        shown.tap("followButton");
        QVERIFY(distance() < 1.0);
        const QGeoCoordinate before = centre();
        goOn();
        QVERIFY(distance() < 1.0);
        QVERIFY(centre().distanceTo(before) > 100.0);
        shown.tap("showLine");
        QVERIFY(qAbs(map->property("zoomLevel").toDouble() - fitting) < 0.01);
        goOn();
        QVERIFY(distance() > 100.0); // no longer followed
    }

    void paceIsChosen()
    {
        Shown shown("hill-valley", "fleet", {800, 480});
        QTRY_VERIFY(shown.item("pace60") != nullptr);
        for (const int pace : {60, 10, 1, 1}) {
            shown.tap(QString("pace%1").arg(pace));
            QCOMPARE(shown.fleet().pace(), double(pace));
        }
    }

    void feedWithoutVehicles()
    {
        Feed feed = exampleFeed("coast-line");
        feed.network = {};
        feed.vehicles.clear();
        feed.trip.reset();
        Shown shown(feed, "fleet", {800, 480});
        QVERIFY(shown.item("emptyMapText") != nullptr);
        QVERIFY(!shown.item("followButton")->isEnabled());
        QVERIFY(!shown.item("silenceButton")->isEnabled());
    }

    void flagsFollowTheReports()
    {
        Shown shown("coast-line", "devices", {1280, 800});
        const auto flags = [&](int row) {
            QString text;
            const QQuickItem* card = shown.all("deviceCard").at(row);
            for (const char* name : {"blueFlag", "yellowFlag", "warningFlag", "errorFlag"})
                text += card->findChild<QQuickItem*>(name)->isVisible() ? '1' : '0';
            return text + ' ' + shown.texts("stateText").at(row);
        };
        QTRY_COMPARE(shown.all("stateText").size(), 3);
        QTRY_VERIFY(shown.item("event-No connection") != nullptr);
        QCOMPARE(shown.texts("identityText"), QStringList({"No. 305419896", "No. 4294967295", ""}));
        QCOMPARE(flags(0), QString("0100 Paper low"));
        QCOMPARE(flags(1), QString("0000 Ready"));
        QCOMPARE(flags(2), QString("0000 not connected"));
        shown.tap("event-Paper jam");
        QCOMPARE(flags(0), QString("0001 Paper jam"));
        QCOMPARE(shown.terminal().printer().fault(), QString("Paper jam"));
        shown.tap("event-Too hot");
        QCOMPARE(flags(0), QString("0010 Too hot"));
        shown.tap("event-Updating");
        QCOMPARE(flags(0), QString("1000 Updating"));
        shown.tap("event-Ready");
        QCOMPARE(flags(0), QString("0000 Ready"));
        QCOMPARE(shown.terminal().printer().fault(), QString());

        // The last one, which is tapped first.
        shown.tap(shown.all("stateText").at(2));
        QQuickItem* events = shown.item("deviceEvents");
        events->setProperty(
            "contentY", qMax(0.0, events->property("contentHeight").toDouble() - events->height()));
        shown.tap("event-No connection");
        QCOMPARE(flags(2), QString("0001 No connection"));
        QCOMPARE(flags(0), QString("0000 Ready"));
    }

    void onlyPrintersRunOutOfPaper()
    {
        Shown shown("coast-line", "devices", {1280, 800});
        QTRY_COMPARE(shown.all("stateText").size(), 3);
        QTRY_VERIFY(shown.item("event-Paper jam") != nullptr);
        shown.tap(shown.all("stateText").at(1));
        QTRY_VERIFY(shown.item("event-Paper jam") == nullptr);
        QVERIFY(shown.item("event-No connection") != nullptr);
    }

    void aPrinterWithoutAnIconLooksLikeOne()
    {
        Shown shown("hill-valley", "devices", {1280, 800});
        QTRY_COMPARE(shown.all("deviceIcon").size(), 3);
        QStringList icons;
        for (const QQuickItem* icon : shown.all("deviceIcon"))
            icons.append(icon->property("source").toUrl().toString());
        QCOMPARE(icons, QStringList({"qrc:/icons/printer.svg", "qrc:/icons/card.svg",
                                     "qrc:/icons/device.svg"}));
    }

private:
    std::unique_ptr<Complaints> m_complaints;
};

QTEST_MAIN(FleetPagesTest)
#include "tst_fleet_pages.moc"
