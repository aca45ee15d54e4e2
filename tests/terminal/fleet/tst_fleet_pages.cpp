#include <AssetItem.h>
#include <FeedLoader.h>
#include <PeripheralItem.h>
#include <Screen.h>
#include <Terminal.h>

#include <QGeoCoordinate>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <functional>
#include <memory>

using rivo::feed::Feed;
using rivo::fleet::FleetSimulator;
using rivo::terminal::Screen;
using rivo::terminal::Terminal;

namespace
{

QStringList g_warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
    else if (type != QtDebugMsg && type != QtInfoMsg)
        g_warnings.append(message);
}

Feed shippedFeed(const char* name)
{
    return *rivo::feed::loadFeed(QStringLiteral(SHIPPED_FEEDS "/") + name).feed;
}

/// A terminal on its screen at 10:20, when vehicles drive; time stands still.
struct Shown
{
    Shown(const Feed& feed, const QString& page, const QSize& size)
        : terminal(feed, settings(folder.filePath("sales.journal"))), screen(terminal, page, size)
    {
        if (screen.window() != nullptr)
            screen.window()->show();
    }

    static Terminal::Settings settings(const QString& journal)
    {
        Terminal::Settings settings;
        settings.journalFile = journal;
        settings.startTime = 37200;
        settings.pace = 0.0;
        return settings;
    }

    QVector<QQuickItem*> all(const QString& name) const
    {
        QVector<QQuickItem*> found;
        std::function<void(QQuickItem*)> search = [&](QQuickItem* item) {
            if (item->isVisible() && item->objectName() == name)
                found.append(item);
            for (QQuickItem* child : item->childItems())
                search(child);
        };
        search(screen.window()->contentItem());
        return found;
    }

    QQuickItem* item(const QString& name) const { return all(name).value(0); }

    QStringList texts(const QString& name) const
    {
        QStringList texts;
        for (const QQuickItem* item : all(name))
            texts.append(item->property("text").toString());
        return texts;
    }

    void tap(QQuickItem* item) const
    {
        QVERIFY(item != nullptr);
        const QPointF middle = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(screen.window(), Qt::LeftButton, {}, middle.toPoint());
    }

    /// Lower, higher, left and right edges are within the window.
    bool isWithinWindow(QQuickItem* item) const
    {
        const QRectF place = item->mapRectToScene(item->boundingRect());
        return QRectF({0, 0}, QSizeF(screen.window()->size())).contains(place);
    }

    AssetItem& vehicle(int id)
    {
        return *qobject_cast<AssetItem*>(terminal.vehicles()->findById(id));
    }

    QTemporaryDir folder;
    Terminal terminal;
    Screen screen;
};

} // namespace

class FleetPagesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); }

private slots:
    void initTestCase();
    void cleanup();
    void everythingFits_data();
    void everythingFits();
    void stopNamesKeepClear_data();
    void stopNamesKeepClear();
    void marksShowWhatTheModelSays();
    void silenceShowsInListAndMap();
    void zoomAndFollow();
    void paceIsChosen();
    void feedWithoutVehicles();
    void flagsFollowTheReports();
    void onlyPrintersRunOutOfPaper();
    void aPrinterWithoutAnIconLooksLikeOne();
};

void FleetPagesTest::initTestCase()
{
    QQuickStyle::setStyle("Default");
    Screen::registerTypes();
    qInstallMessageHandler(keepWarnings);
}

void FleetPagesTest::cleanup()
{
    const QStringList warnings = g_warnings;
    g_warnings.clear();
    QCOMPARE(warnings, QStringList());
}

void FleetPagesTest::everythingFits_data()
{
    QTest::addColumn<QString>("feed");
    QTest::addColumn<QSize>("size");
    for (const char* feed : {"coast-line.json", "hill-valley.json"}) {
        for (const QSize size : {QSize(800, 480), QSize(1024, 600), QSize(1280, 800)})
            QTest::addRow("%s at %dx%d", feed, size.width(), size.height()) << feed << size;
    }
}

void FleetPagesTest::everythingFits()
{
    QFETCH(QString, feed);
    QFETCH(QSize, size);
    Shown fleet(shippedFeed(qPrintable(feed)), "fleet", size);
    QVERIFY(fleet.screen.window() != nullptr);
    QTRY_VERIFY(!fleet.all("arrow").isEmpty());
    for (const char* name : {"zoomIn", "zoomOut", "showLine", "followButton", "silenceButton",
                             "pace1", "pace10", "pace60", "map", "vehicleLines"}) {
        QVERIFY2(fleet.item(name) != nullptr, name);
        QVERIFY2(fleet.isWithinWindow(fleet.item(name)), name);
    }
    QTRY_VERIFY(fleet.isWithinWindow(fleet.item("arrow")));

    Shown devices(shippedFeed(qPrintable(feed)), "devices", size);
    QTRY_COMPARE(devices.all("stateText").size(), 3);
    for (const char* name : {"blueFlag", "yellowFlag", "warningFlag", "errorFlag"})
        QVERIFY2(devices.isWithinWindow(devices.item(name)), name);
    QVERIFY(devices.item("errorFlag")
                ->mapRectToScene(devices.item("errorFlag")->boundingRect())
                .right() < devices.item("deviceEvents")->mapToScene({0, 0}).x());
}

void FleetPagesTest::stopNamesKeepClear_data() { everythingFits_data(); }

void FleetPagesTest::stopNamesKeepClear()
{
    QFETCH(QString, feed);
    QFETCH(QSize, size);
    Shown shown(shippedFeed(qPrintable(feed)), "fleet", size);
    const auto placesOf = [&](const QString& name, double margin) {
        QVector<QRectF> places;
        for (const QQuickItem* item : shown.all(name))
            places.append(item->mapRectToScene(item->boundingRect())
                              .adjusted(margin, margin, -margin, -margin));
        return places;
    };
    const auto placesOfArrows = [&] {
        QVector<QRectF> places;
        for (const QQuickItem* arrow : shown.all("arrow")) {
            // However it is turned.
            const QPointF middle = arrow->mapToScene({arrow->width() / 2, arrow->height() / 2});
            places.append(QRectF(middle - QPointF(27, 27), QSizeF(54, 54)));
        }
        return places;
    };
    QVector<QVector<QGeoCoordinate>> lines;
    for (const QVariant& line : shown.terminal.fleet()->lines()) {
        lines.append(QVector<QGeoCoordinate>());
        for (const QVariant& place : line.toMap().value("path").toList())
            lines.last().append(place.value<QGeoCoordinate>());
    }
    QQuickItem* map = shown.item("map");
    QVERIFY(map != nullptr);
    const auto pointsOfLines = [&] {
        constexpr int steps = 20; // between two places of a line
        QVector<QPointF> points;
        for (const QVector<QGeoCoordinate>& line : lines) {
            QPointF before;
            for (int i = 0; i < line.size(); ++i) {
                QPointF at;
                QMetaObject::invokeMethod(map, "fromCoordinate", Q_RETURN_ARG(QPointF, at),
                                          Q_ARG(QGeoCoordinate, line.at(i)), Q_ARG(bool, false));
                at = map->mapToScene(at);
                for (int step = 0; i > 0 && step <= steps; ++step)
                    points.append(before + (at - before) * step / steps);
                before = at;
            }
        }
        return points;
    };
    const auto conflict = [&]() -> QString {
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
    };
    QTRY_COMPARE(conflict(), QString());
    for (int minutes = 1; minutes <= 5; ++minutes) {
        shown.terminal.fleet()->setTime(shown.terminal.fleet()->time() + 60);
        QTRY_COMPARE(conflict(), QString());
    }
    // At a closer zoom names keep their size and get more room.
    const int before = shown.all("stopLabel").size();
    for (const char* button : {"zoomOut", "zoomIn", "zoomIn"}) {
        shown.tap(shown.item(button));
        if (button != QString("zoomOut"))
            QTRY_COMPARE(conflict(), QString());
    }
    QTRY_VERIFY(shown.all("stopLabel").size() > before);
}

void FleetPagesTest::marksShowWhatTheModelSays()
{
    Shown shown(shippedFeed("coast-line.json"), "fleet", {1024, 600});
    QTRY_COMPARE(shown.all("arrow").size(), 4); // the fifth is nowhere
    QCOMPARE(shown.texts("statusText").size(), 5);
    QVERIFY(shown.texts("statusText").contains("parked"));
    const auto isTurned = [&](double direction) {
        const QVector<QQuickItem*> arrows = shown.all("arrow");
        return std::any_of(arrows.begin(), arrows.end(), [direction](const QQuickItem* arrow) {
            return qAbs(arrow->rotation() - direction) < 0.01;
        });
    };
    QVERIFY(isTurned(shown.vehicle(31).direction()));
    shown.vehicle(31).setDirection(123.25);
    QVERIFY(isTurned(123.25));

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

void FleetPagesTest::silenceShowsInListAndMap()
{
    Shown shown(shippedFeed("coast-line.json"), "fleet", {1024, 600});
    FleetSimulator& fleet = *shown.terminal.fleet();
    QTRY_COMPARE(shown.texts("statusText").size(), 5);
    const int statusOfOwn = 0;
    shown.tap(shown.item("silenceButton"));
    QVERIFY(fleet.isSilent(31));
    fleet.setTime(fleet.time() + 61);
    QCOMPARE(shown.texts("statusText").at(statusOfOwn), QString("no report"));
    const QVariant stale = shown.all("statusText").at(statusOfOwn)->property("color");
    fleet.setTime(fleet.time() + 240);
    QCOMPARE(shown.texts("statusText").at(statusOfOwn), QString("off-line"));
    QVERIFY(shown.all("statusText").at(statusOfOwn)->property("color") != stale);

    // Another vehicle is chosen: the switch is its own.
    shown.tap(shown.all("statusText").at(1));
    shown.tap(shown.item("silenceButton"));
    QVERIFY(fleet.isSilent(31) && fleet.isSilent(34));
    shown.tap(shown.item("silenceButton"));
    QVERIFY(fleet.isSilent(31) && !fleet.isSilent(34));
    shown.tap(shown.all("statusText").at(0));
    shown.tap(shown.item("silenceButton"));
    QVERIFY(!fleet.isSilent(31));
    QCOMPARE(shown.texts("statusText").at(statusOfOwn), QString("driving"));
}

void FleetPagesTest::zoomAndFollow()
{
    Shown shown(shippedFeed("coast-line.json"), "fleet", {1024, 600});
    FleetSimulator& fleet = *shown.terminal.fleet();
    QQuickItem* map = shown.item("map");
    QVERIFY(map != nullptr);
    QTRY_VERIFY(map->property("zoomLevel").toDouble() > 11.0); // the line, not the world
    const double fitting = map->property("zoomLevel").toDouble();
    const auto centre = [&] { return map->property("center").value<QGeoCoordinate>(); };
    const auto distance = [&] { return centre().distanceTo(shown.vehicle(31).assetCoordinate()); };
    shown.tap(shown.item("zoomIn"));
    QCOMPARE(map->property("zoomLevel").toDouble(), fitting + 1.0);
    shown.tap(shown.item("zoomOut"));
    shown.tap(shown.item("zoomOut"));
    QCOMPARE(map->property("zoomLevel").toDouble(), fitting - 1.0);

    QVERIFY(distance() > 100.0);
    shown.tap(shown.item("followButton"));
    QVERIFY(distance() < 1.0);
    const QGeoCoordinate before = centre();
    fleet.setTime(fleet.time() + 120);
    QVERIFY(distance() < 1.0);
    QVERIFY(centre().distanceTo(before) > 100.0);
    shown.tap(shown.item("showLine"));
    QVERIFY(qAbs(map->property("zoomLevel").toDouble() - fitting) < 0.01);
    fleet.setTime(fleet.time() + 120);
    QVERIFY(distance() > 100.0); // no longer followed
}

void FleetPagesTest::paceIsChosen()
{
    Shown shown(shippedFeed("hill-valley.json"), "fleet", {800, 480});
    QTRY_VERIFY(shown.item("pace60") != nullptr);
    for (const int pace : {60, 10, 1, 1}) {
        shown.tap(shown.item(QString("pace%1").arg(pace)));
        QCOMPARE(shown.terminal.fleet()->pace(), double(pace));
    }
}

void FleetPagesTest::feedWithoutVehicles()
{
    Feed feed = shippedFeed("coast-line.json");
    feed.network = {};
    feed.vehicles.clear();
    feed.trip.reset();
    Shown shown(feed, "fleet", {800, 480});
    QVERIFY(shown.item("emptyMapText") != nullptr);
    QVERIFY(!shown.item("followButton")->isEnabled());
    QVERIFY(!shown.item("silenceButton")->isEnabled());
}

void FleetPagesTest::flagsFollowTheReports()
{
    Shown shown(shippedFeed("coast-line.json"), "devices", {1280, 800});
    const auto flags = [&](int row) {
        QString text;
        for (const char* name : {"blueFlag", "yellowFlag", "warningFlag", "errorFlag"})
            text += shown.all(name).at(row)->property("on").toBool() ? '1' : '0';
        return text + ' ' + shown.texts("stateText").at(row);
    };
    QTRY_COMPARE(shown.all("stateText").size(), 3);
    QTRY_VERIFY(shown.item("event-No connection") != nullptr);
    QCOMPARE(shown.texts("identityText"), QStringList({"No. 305419896", "No. 4294967295", ""}));
    QCOMPARE(flags(0), QString("0100 Paper low"));
    QCOMPARE(flags(1), QString("0000 Ready"));
    QCOMPARE(flags(2), QString("1111 has not reported yet"));
    shown.tap(shown.item("event-Paper jam"));
    QCOMPARE(flags(0), QString("0001 Paper jam"));
    QCOMPARE(shown.terminal.printer().fault(), QString("Paper jam"));
    shown.tap(shown.item("event-Too hot"));
    QCOMPARE(flags(0), QString("0010 Too hot"));
    shown.tap(shown.item("event-Updating"));
    QCOMPARE(flags(0), QString("1000 Updating"));
    shown.tap(shown.item("event-Ready"));
    QCOMPARE(flags(0), QString("0000 Ready"));
    QCOMPARE(shown.terminal.printer().fault(), QString());

    // The last one, which is tapped first.
    shown.tap(shown.all("stateText").at(2));
    shown.tap(shown.item("event-No connection"));
    QCOMPARE(flags(2), QString("0001 No connection"));
    QCOMPARE(flags(0), QString("0000 Ready"));
}

void FleetPagesTest::onlyPrintersRunOutOfPaper()
{
    Shown shown(shippedFeed("coast-line.json"), "devices", {1280, 800});
    QTRY_COMPARE(shown.all("stateText").size(), 3);
    QTRY_VERIFY(shown.item("event-Paper jam") != nullptr);
    shown.tap(shown.all("stateText").at(1));
    QTRY_VERIFY(shown.item("event-Paper jam") == nullptr);
    QVERIFY(shown.item("event-No connection") != nullptr);
}

void FleetPagesTest::aPrinterWithoutAnIconLooksLikeOne()
{
    Shown shown(shippedFeed("hill-valley.json"), "devices", {1280, 800});
    QTRY_COMPARE(shown.all("deviceIcon").size(), 3);
    QStringList icons;
    for (const QQuickItem* icon : shown.all("deviceIcon"))
        icons.append(icon->property("source").toUrl().toString());
    QCOMPARE(icons, QStringList({"qrc:/icons/printer.svg", "qrc:/icons/card.svg",
                                 "qrc:/icons/device.svg"}));
}

QTEST_MAIN(FleetPagesTest)
#include "tst_fleet_pages.moc"
