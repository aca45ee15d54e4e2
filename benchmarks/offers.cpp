// What a feed costs: loading it, the offers of one stop, and a change of stop in the terminal.
//
//     bench-offers FEED [ROUTE]
//
// Prints the times in milliseconds and the most memory that the process had in use. Without ROUTE
// the bus runs on the first route of the feed.

#include <FeedLoader.h>
#include <Offers.h>
#include <Terminal.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <core/Logging.h>

#include <algorithm>

#include <sys/resource.h>

namespace
{

using namespace rivo;

constexpr int mostQueries = 1000;
constexpr int changes = 200;
const QDateTime saleTime(QDate(2026, 3, 2), QTime(8, 15));

template <class Call>
double millisecondsOf(const Call& call)
{
    QElapsedTimer timer;
    timer.start();
    call();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

QString spread(QVector<double> times)
{
    std::sort(times.begin(), times.end());
    const auto at = [&times](int percent) {
        return QString::number(times.at((times.size() - 1) * percent / 100), 'f', 2);
    };
    return QStringLiteral("median %1 p95 %2 worst %3 (%4 times)")
        .arg(at(50), at(95), at(100))
        .arg(times.size());
}

void print(const QString& name, const QString& figure)
{
    QTextStream(stdout) << name << ' ' << figure << '\n';
}

/// As the tools do, which keep no timetable.
std::optional<feed::Feed> load(const QString& path)
{
    feed::FeedOptions options;
    options.timetableOf = QStringList();
    feed::FeedResult result;
    const double time = millisecondsOf([&] { result = feed::loadFeed(path, options); });
    QTextStream(stderr) << result.problemLines().join(QLatin1Char('\n'));
    if (result.feed)
        print(QStringLiteral("load_ms"), QString::number(time, 'f', 0));
    return result.feed;
}

void printMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    print(QStringLiteral("peak_mb"),
          QString::number(static_cast<double>(usage.ru_maxrss) / 1024, 'f', 0));
}

/// Offers of the stops of all routes, evenly chosen.
void measureOffers(const feed::Tariff& tariff)
{
    QVector<QPair<int, int>> places;
    for (int route = 0; route < tariff.routes.size(); ++route) {
        if (tariff.routes.at(route).runs.isEmpty())
            continue;
        for (const int stop : tariff.routes.at(route).runs.first())
            places.append({route, stop});
    }
    QVector<double> times;
    int offers = 0;
    const int step = qMax(1, places.size() / mostQueries);
    for (int i = 0; i < places.size(); i += step) {
        feed::OfferQuery query;
        query.route = tariff.routeIds.text(places.at(i).first);
        query.stop = tariff.stopIds.text(places.at(i).second);
        query.at = saleTime;
        times.append(millisecondsOf([&] { offers += offersOf(tariff, query).offers.size(); }));
    }
    if (times.isEmpty())
        return;
    print(QStringLiteral("offers_of_stop_ms"), spread(times));
    print(QStringLiteral("offers_of_stop"), QString::number(offers / times.size()));
}

/// The bus goes from stop to stop and back: the grid is laid out anew each time.
void measureChanges(const feed::Feed& feed)
{
    const QTemporaryDir folder;
    terminal::Terminal::Settings settings;
    settings.journalFile = folder.filePath(QStringLiteral("journal"));
    settings.startTime = QTime(0, 0).secsTo(saleTime.time());
    settings.pace = 0.0;
    terminal::Terminal terminal(feed, settings);
    const int stops = terminal.trip()->stopCount();
    if (stops < 2)
        return;
    QVector<double> times;
    int tiles = 0;
    for (int i = 1; i <= changes; ++i) {
        const int place = i % (2 * stops - 2);
        times.append(millisecondsOf([&] {
            terminal.trip()->setStop(place < stops ? place : 2 * stops - 2 - place);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }));
        tiles += terminal.grid()->getNumberOfNonExpiredProducts();
    }
    print(QStringLiteral("change_of_stop_ms"), spread(times));
    print(QStringLiteral("tiles_of_stop"), QString::number(tiles / changes));
}

void silenceLog()
{
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::Enabled, "false");
    logger->reconfigure();
}

} // namespace

int main(int argc, char* argv[])
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    const QCoreApplication application(argc, argv);
    silenceLog();
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2 || arguments.size() > 3) {
        QTextStream(stderr) << "usage: bench-offers FEED [ROUTE]\n";
        return 2;
    }
    const std::optional<feed::Feed> feed = load(arguments.at(1));
    if (!feed)
        return 2;
    printMemory();
    measureOffers(*feed->tariff);

    feed::FeedOptions options; // as a terminal, which runs on one route
    options.timetableOf = QStringList(arguments.value(2, feed->tariff->routeIds.text(0)));
    const feed::FeedResult ofRoute = feed::loadFeed(arguments.at(1), options);
    measureChanges(*ofRoute.feed);
    return 0;
}
