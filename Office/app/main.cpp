#include "Options.h"
#include "Server.h"

#include <FeedLoader.h>
#include <FleetPage.h>
#include <ProgramStart.h>
#include <RouteLines.h>
#include <StandardOutput.h>
#include <VehiclePositions.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QSaveFile>
#include <QThread>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <optional>

namespace
{

using namespace rivo::backoffice;

enum ExitCode { Done = 0, Found = 1, Failed = 2 };

int failed(const QString& problem)
{
    reportFailure(problem);
    return Failed;
}

int print(const QByteArray& text, int code = Done)
{
    return writeToStandardOutput(text) ? code : int(Failed);
}

void onEnd(void (*stop)(int))
{
    for (const int signal : {SIGINT, SIGTERM})
        static_cast<void>(std::signal(signal, stop));
}

int serve(const Options& options)
{
    onEnd([](int) { Server::stop(); });
    Server server(options.broker, options.share, options.database);
    const QString problem = server.configure();
    if (!problem.isEmpty())
        return failed(problem);
    server.run();
    return Done;
}

int report(const Options& options)
{
    Database database(options.database);
    const auto lines = database.openToRead()
                           ? salesReport(database, options.by, options.from, options.to)
                           : std::nullopt;
    return lines ? print(textOf(*lines, options.by, options.format)) : failed(database.problem());
}

int gaps(const Options& options)
{
    OfficeStore store(options.database);
    const auto faults = store.openToRead() ? store.faults(options.all) : std::nullopt;
    if (!faults)
        return failed(store.problem());
    return print(textOf(*faults), faults->isEmpty() ? Done : Found);
}

/// Nothing, with the problems on standard error, if the feed cannot be read.
std::optional<RouteLines> linesOf(const QString& feed)
{
    if (feed.isEmpty())
        return RouteLines();
    const rivo::feed::FeedResult read = rivo::feed::loadFeed(feed);
    complain(read.problemLines());
    if (!read.feed)
        return std::nullopt;
    const RouteLines lines = routeLines(read.feed->network);
    if (lines.count == 0)
        reportFailure(QStringLiteral("%1: no route of it has a line").arg(feed));
    if (lines.leftOut > 0)
        reportFailure(QStringLiteral("%1: %2 lines of routes are left out: there are too many")
                          .arg(feed)
                          .arg(lines.leftOut));
    return lines;
}

int showPage(const Options& options)
{
    const auto lines = linesOf(options.feed);
    if (!lines)
        return Failed;
    onEnd([](int) { HttpServer::stop(); });
    FleetPage page(options.database, lines->json);
    HttpServer server([&page](const QByteArray& path) { return page.answer(path); });
    const QString problem = server.listen(options.listen);
    if (!problem.isEmpty())
        return failed(problem);
    reportFailure(QStringLiteral("shows the fleet on port %1").arg(server.port()));
    server.run();
    return Done;
}

bool writePositions(PublicPositions& positions, Database& database, const QString& name)
{
    QSaveFile file(name);
    const auto message = database.isAlive() || database.openToRead(FleetPage::mostSeconds)
                             ? positions.message(database, QDateTime::currentDateTime())
                             : std::nullopt;
    if (!message) {
        reportFailure(database.problem());
        return false;
    }
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(*message) >= 0 && file.commit();
    if (!isWritten)
        reportFailure(QStringLiteral("%1: %2").arg(name, file.errorString()));
    return isWritten;
}

volatile std::sig_atomic_t isEnding = 0;

/// A database or a folder that is away for a while is tried again.
int keepPositions(const Options& options)
{
    Database database(options.database);
    PublicPositions positions;
    if (options.every == 0)
        return writePositions(positions, database, options.output) ? Done : Failed;
    onEnd([](int) { isEnding = 1; });
    while (isEnding == 0) {
        writePositions(positions, database, options.output);
        for (int second = 0; second < options.every && isEnding == 0; ++second)
            QThread::sleep(1);
    }
    return Done;
}

int publish(const Options& options)
{
    OfficeStore store(options.database);
    if (!store.open())
        return failed(store.problem());
    rivo::office::Announcement published;
    const QStringList problems = publish(store, options.publication, published);
    complain(problems);
    if (!problems.isEmpty())
        return Found;
    return print(QStringLiteral("%1 %2 %3\n")
                     .arg(published.operatorName, nameOf(published.kind))
                     .arg(published.version)
                     .toUtf8());
}

int publications(const Options& options)
{
    OfficeStore store(options.database);
    if (!store.openToRead())
        return failed(store.problem());
    PublicationRows rows(store);
    const auto all = rows.publications();
    const auto states = all ? rows.states() : std::nullopt;
    if (!states)
        return failed(store.database().problem());
    const bool isRefused = std::any_of(states->begin(), states->end(), [](const ListedState& each) {
        return !each.state.refusal.isEmpty();
    });
    return print(textOf(*all, *states), isRefused ? Found : Done);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    nameProgram(QStringLiteral("rivo-office"));
    static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
    const Options options = optionsOf(application);
    if (options.command == QLatin1String("serve"))
        return serve(options);
    if (options.command == QLatin1String("report"))
        return report(options);
    if (options.command == QLatin1String("gaps"))
        return gaps(options);
    if (options.command == QLatin1String("web"))
        return showPage(options);
    if (options.command == QLatin1String("positions"))
        return keepPositions(options);
    if (options.command == QLatin1String("publish"))
        return publish(options);
    if (options.command == QLatin1String("publications"))
        return publications(options);
    return failed(QStringLiteral("this command line is not understood; --help shows what is"));
}
