#include "ConfiguredOrder.h"
#include "GridOptions.h"
#include "GridWriter.h"
#include "PositionCheck.h"
#include "StandardOutput.h"

#include <FeedLoader.h>
#include <FeedToModels.h>
#include <PassengerTypesModel.h>

#include <core/ConfigManager.h>
#include <core/Logging.h>

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <clocale>
#include <optional>

namespace
{

enum ExitCode { Done = 0, FallsBack = 1, BadInput = 2 };

void complain(const QStringList& lines)
{
    QTextStream standardError(stderr);
    standardError.setCodec("UTF-8");
    for (const QString& line : lines)
        standardError << line << '\n';
}

/// The model logs at level Info whatever it is asked for; people who print a grid did not ask.
/// Other levels, and a log file that logging.conf names, stay as they are.
void keepInfoOffTheTerminal()
{
    rivo::core::ConfigManager::instance(QDir::homePath(), QStringLiteral("ProjectLink/"));
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::ToStandardOutput,
                                  "false");
    logger->reconfigure();
}

void layOut(const rivo::feed::Feed& feed, const GridOptions& options, PassengerTypesModel& model)
{
    const QStringList supported = options.supported.value_or(feed.supportedPassengerTypes);
    model.setSupportedPassengerTypeCodes(supported);
    model.clearData();
    rivo::feed::addProducts(feed, model);
    model.sortAndRegroup(supported, options.columns.value_or(feed.columns));
}

int run(const GridOptions& options, const rivo::feed::Feed& feed)
{
    std::optional<ConfiguredOrder> order;
    if (options.order && !order.emplace(*options.order).isValid()) {
        complain({QStringLiteral("rivo-grid: cannot write a temporary configuration")});
        return BadInput;
    }

    std::optional<DiagnosticsElsewhere> elsewhere;
    elsewhere.emplace(options.verbose ? DiagnosticsElsewhere::Destination::StandardError
                                      : DiagnosticsElsewhere::Destination::Nowhere);
    if (!options.verbose)
        keepInfoOffTheTerminal();
    PassengerTypesModel model(QCoreApplication::instance());
    layOut(feed, options, model);
    elsewhere.reset();

    if (options.command == GridCommand::Check) {
        const PositionVerdict verdict = checkPositions(feed, model);
        if (!writeToStandardOutput(verdict.report))
            return BadInput;
        return verdict.fallsBack ? FallsBack : Done;
    }
    const QByteArray grid = options.format == GridFormat::Json ? gridAsJson(feed, model)
                            : options.format == GridFormat::Csv
                                ? gridAsCsv(model)
                                : gridAsText(feed, model, standardOutputHasColours());
    return writeToStandardOutput(grid) ? Done : BadInput;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("rivo-grid"));
    QCoreApplication::setApplicationVersion(QStringLiteral(RIVO_VERSION));
    static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8")); // for the width of characters

    const std::optional<GridOptions> options = parseCommandLine(QCoreApplication::arguments());
    if (!options)
        return BadInput;
    const rivo::feed::FeedResult result = rivo::feed::loadFeed(options->feed, options->reading);
    complain(result.noticeLines());
    complain(result.problemLines());
    return result.feed ? run(*options, *result.feed) : BadInput;
}
