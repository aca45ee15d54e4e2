#include "Benchmark.h"

#include "Screen.h"
#include "Terminal.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMouseEvent>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <functional>

#include <ctime>
#include <unistd.h>

namespace rivo::terminal::benchmark
{

namespace
{

constexpr int tapCount = 50;
constexpr int changeCount = 50;
constexpr int frameCount = 400;
constexpr int patience = 5000; ///< milliseconds until a frame is given up

/// Waits for the next frame on the screen.
bool waitForFrame(QQuickWindow& window)
{
    QEventLoop loop;
    bool isDrawn = false;
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &loop,
        [&] {
            isDrawn = true;
            loop.quit();
        },
        Qt::QueuedConnection);
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    window.update();
    loop.exec();
    return isDrawn;
}

double milliseconds(const QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

QString median(QVector<double> times)
{
    std::sort(times.begin(), times.end());
    return times.isEmpty() ? QStringLiteral("-")
                           : QString::number(times.at(times.size() / 2), 'f', 1);
}

QString largest(const QVector<double>& times)
{
    return times.isEmpty() ? QStringLiteral("-")
                           : QString::number(*std::max_element(times.begin(), times.end()), 'f', 1);
}

QString spread(QVector<double> times)
{
    if (times.isEmpty())
        return QStringLiteral("not measured");
    std::sort(times.begin(), times.end());
    const auto at = [&times](int percent) {
        return QString::number(times.at((times.size() - 1) * percent / 100), 'f', 1);
    };
    return QStringLiteral("median %1 p95 %2").arg(at(50), at(95));
}

void tap(QQuickWindow& window, const QPointF& place)
{
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool isPress = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, place, place, window.mapToGlobal(place.toPoint()), Qt::LeftButton,
                          isPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
    }
}

QQuickItem* gridOf(const Screen& screen)
{
    return screen.window()->findChild<QQuickItem*>(QStringLiteral("grid"));
}

/// The middle of the first tile on the screen that can be tapped.
QPointF firstTile(QQuickItem& grid)
{
    auto* content = qvariant_cast<QQuickItem*>(grid.property("contentItem"));
    const QList<QQuickItem*> tiles = content->childItems();
    for (QQuickItem* tile : tiles) {
        if (tile->isVisible() && tile->isEnabled() && tile->property("price").isValid())
            return tile->mapToScene({tile->width() / 2, tile->height() / 2});
    }
    return {};
}

} // namespace

feed::Feed withTiles(feed::Feed feed, int tiles)
{
    QVector<feed::FeedProduct> zoneProducts;
    for (const QString& type : qAsConst(feed.supportedPassengerTypes)) {
        const auto first = std::find_if(
            feed.products.cbegin(), feed.products.cend(),
            [&type](const feed::FeedProduct& p) { return p.passengerTypeCode == type; });
        if (first == feed.products.cend())
            continue;
        zoneProducts.append(*first);
        zoneProducts.last().pos = -1;
        zoneProducts.last().isDaily = false;
        zoneProducts.last().hasExpired = false;
    }
    feed.tariff.reset(); // sold everywhere
    feed.columns = zoneProducts.size();
    feed.products.clear();
    for (int zone = 1; !zoneProducts.isEmpty() && feed.products.size() < tiles; ++zone) {
        for (feed::FeedProduct& product : zoneProducts)
            product.toStopGroupId = zone;
        feed.products += zoneProducts;
    }
    feed.products.resize(std::min(feed.products.size(), tiles));
    return feed;
}

double processAge()
{
    constexpr int startTimeField = 22;
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return 0.0;
    const QByteArray line = stat.readAll();
    // Fields are counted behind the program's name, which is the second one and may hold blanks.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    const double ticks = fields.value(startTimeField - 3).toDouble();
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_nsec) / 1e6 -
           ticks * 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

QString start(const Screen& screen, const QVector<double>& marks)
{
    if (!waitForFrame(*screen.window()) || gridOf(screen) == nullptr)
        return QStringLiteral("start_to_grid_ms not measured");
    const double end = processAge();
    QStringList shares;
    double before = 0.0;
    const QStringList names{QStringLiteral("program"), QStringLiteral("feed"),
                            QStringLiteral("models"), QStringLiteral("window"),
                            QStringLiteral("frame")};
    const QVector<double> all = marks + QVector<double>{end};
    for (int i = 0; i < std::min(names.size(), all.size()); ++i) {
        shares.append(QStringLiteral("%1 %2").arg(names.at(i)).arg(qRound(all.at(i) - before)));
        before = all.at(i);
    }
    return QStringLiteral("start_to_grid_ms %1 (%2)")
        .arg(qRound(end))
        .arg(shares.join(QStringLiteral(", ")));
}

QString taps(const Screen& screen, Terminal& terminal)
{
    QVector<double> times;
    QVector<double> actions;
    QVector<double> frames;
    QQuickItem* grid = gridOf(screen);
    const QPointF place = grid == nullptr ? QPointF() : firstTile(*grid);
    for (int i = 0; i < tapCount && !place.isNull(); ++i) {
        const int before = terminal.basket()->rowCount();
        QElapsedTimer timer;
        timer.start();
        tap(*screen.window(), place);
        const double action = milliseconds(timer);
        if (terminal.basket()->rowCount() == before || !waitForFrame(*screen.window()))
            break;
        times.append(milliseconds(timer));
        actions.append(action);
        frames.append(times.last() - action);
    }
    terminal.desk()->clear();
    return QStringLiteral("tap_to_basket_ms %1 (%2 taps; journal and basket %3, frame %4)")
        .arg(spread(times))
        .arg(times.size())
        .arg(median(actions), median(frames));
}

namespace
{

/// The grid moves by `step` pixels a frame, and turns back at its ends.
QString framesOf(const QString& name, QQuickWindow& window, QQuickItem& grid, double step)
{
    QVector<double> times;
    const double end = std::max(1.0, grid.property("contentHeight").toDouble() - grid.height());
    waitForFrame(window);
    QElapsedTimer timer;
    timer.start();
    for (int frame = 0; frame < frameCount; ++frame) {
        const double moved = std::fmod(frame * step, 2.0 * end);
        grid.setProperty("contentY", moved <= end ? moved : 2.0 * end - moved);
        if (!waitForFrame(window))
            break;
        times.append(milliseconds(timer));
        timer.start();
    }
    return QStringLiteral("%1_frame_ms %2 (%3 tiles, %4 frames)")
        .arg(name, spread(times))
        .arg(grid.property("count").toInt())
        .arg(times.size());
}

QStringList scrollingOf(const QString& prefix, QQuickWindow& window, QQuickItem& grid)
{
    constexpr int framesPerSecond = 60;
    const double fastest = grid.property("maximumFlickVelocity").toDouble() / framesPerSecond;
    const double all = grid.property("contentHeight").toDouble() * 2.0 / frameCount;
    return {framesOf(prefix + QStringLiteral("flick"), window, grid, fastest),
            framesOf(prefix + QStringLiteral("scroll"), window, grid, all)};
}

} // namespace

QStringList scrolling(const Screen& screen)
{
    QQuickItem* grid = gridOf(screen);
    return grid == nullptr ? QStringList{QStringLiteral("scroll_frame_ms not measured")}
                           : scrollingOf({}, *screen.window(), *grid);
}

namespace
{

/// Calls `change` again and again, each time until the frame after it.
QString changes(const QString& name, const Screen& screen, Terminal& terminal,
                const std::function<void(int)>& change)
{
    QVector<double> times;
    QVector<double> actions;
    QVector<double> frames;
    int tiles = 0;
    for (int i = 0; i < changeCount; ++i) {
        QElapsedTimer timer;
        timer.start();
        change(i);
        actions.append(milliseconds(timer));
        if (!waitForFrame(*screen.window()))
            break;
        times.append(milliseconds(timer));
        frames.append(times.last() - actions.last());
        tiles += terminal.grid()->getNumberOfNonExpiredProducts();
    }
    return QStringLiteral("%1_ms %2 worst %3 (%4 changes, %5 tiles; offers and tiles %6, frame %7)")
        .arg(name, spread(times), largest(times))
        .arg(times.size())
        .arg(tiles / std::max(1, times.size()))
        .arg(median(actions), median(frames));
}

/// The first trips of each route, one route after the other.
QVector<int> someTrips(const TripDesk& desk)
{
    constexpr int tripsOfRoute = 4;
    QVector<int> trips;
    const QVariantList routes = desk.routes();
    for (int turn = 0; turn < tripsOfRoute; ++turn) {
        for (const QVariant& route : routes) {
            const QVariantList ofRoute =
                desk.tripsOf(route.toMap().value(QStringLiteral("route")).toInt(), 0);
            if (turn < ofRoute.size())
                trips.append(ofRoute.at(turn).toMap().value(QStringLiteral("trip")).toInt());
        }
    }
    return trips;
}

} // namespace

QString stopChanges(const QString& name, const Screen& screen, Terminal& terminal)
{
    TripDesk& trip = *terminal.trip();
    if (trip.stopCount() < 2)
        return name + QStringLiteral("_ms not measured: the feed has no trips");
    return changes(name, screen, terminal,
                   [&trip](int) { trip.setStop((trip.stop() + 1) % trip.stopCount()); });
}

QString tripChanges(const QString& name, const Screen& screen, Terminal& terminal)
{
    TripDesk& desk = *terminal.trip();
    const QVector<int> trips = someTrips(desk);
    if (trips.size() < 2)
        return name + QStringLiteral("_ms not measured: the feed has no trips");
    return changes(name, screen, terminal,
                   [&](int turn) { desk.choose(trips.at((turn + 1) % trips.size())); });
}

QStringList baseline(const QSize& size)
{
    QQmlApplicationEngine engine;
    engine.setInitialProperties(
        {{QStringLiteral("width"), size.width()}, {QStringLiteral("height"), size.height()}});
    engine.load(QUrl(QStringLiteral("qrc:/qml/QtQuickBaseline.qml")));
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
    if (window == nullptr || !waitForFrame(*window))
        return {};
    QStringList lines{QStringLiteral("qt_quick_start_ms %1").arg(qRound(processAge()))};
    QVector<double> times;
    for (int i = 0; i < tapCount; ++i) {
        QElapsedTimer timer;
        timer.start();
        tap(*window, {20, 20});
        if (!waitForFrame(*window))
            break;
        times.append(milliseconds(timer));
    }
    auto* grid = window->findChild<QQuickItem*>(QStringLiteral("grid"));
    lines.append(
        QStringLiteral("qt_quick_tap_ms %1 (%2 taps)").arg(spread(times)).arg(times.size()));
    return lines + scrollingOf(QStringLiteral("qt_quick_"), *window, *grid);
}

} // namespace rivo::terminal::benchmark
