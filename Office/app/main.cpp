#include "Options.h"
#include "Server.h"

#include <FleetPage.h>
#include <ProgramStart.h>
#include <StandardOutput.h>

#include <QCoreApplication>

#include <clocale>
#include <csignal>

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
    const auto lines = database.open() ? salesReport(database, options.by, options.from, options.to)
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

int showPage(const Options& options)
{
    onEnd([](int) { HttpServer::stop(); });
    FleetPage page(options.database);
    HttpServer server([&page](const QByteArray& path) { return page.answer(path); });
    const QString problem = server.listen(options.listen);
    if (!problem.isEmpty())
        return failed(problem);
    reportFailure(QStringLiteral("shows the fleet on port %1").arg(server.port()));
    server.run();
    return Done;
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
    return failed(QStringLiteral("this command line is not understood; --help shows what is"));
}
