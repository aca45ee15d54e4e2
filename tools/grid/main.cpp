#include "GridOptions.h"
#include "GridWriter.h"
#include "PositionCheck.h"

#include <ConfiguredOrder.h>
#include <LibraryDiagnostics.h>
#include <PassengerTypesModel.h>
#include <RoleWriter.h>
#include <StandardOutput.h>
#include <ToolProgram.h>

#include <QCoreApplication>

#include <optional>

namespace
{

QByteArray printed(const rivo::feed::Feed& feed, OutputFormat format, PassengerTypesModel& model)
{
    switch (format) {
    case OutputFormat::Json:
        return modelAsJson(feed, model);
    case OutputFormat::Csv:
        return modelAsCsv(model);
    case OutputFormat::Text:
        break;
    }
    return gridAsText(feed, model, standardOutputHasColours());
}

int run(const GridOptions& options, const rivo::feed::Feed& feed)
{
    const ConfiguredOrder order(options.layout.order);
    if (!order.isValid()) {
        reportFailure(QStringLiteral("cannot write a temporary configuration"));
        return BadInput;
    }

    std::optional<LibraryDiagnostics> diagnostics(options.verbose);
    PassengerTypesModel model(QCoreApplication::instance());
    layOut(feed, options.layout, model);
    diagnostics.reset();

    if (options.command == GridCommand::Check) {
        const PositionVerdict verdict = checkPositions(feed, model);
        if (!writeToStandardOutput(verdict.report))
            return BadInput;
        return verdict.fallsBack ? FallsBack : Done;
    }
    return writeToStandardOutput(printed(feed, options.format, model)) ? Done : BadInput;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    nameProgram(QStringLiteral("rivo-grid"));

    const std::optional<GridOptions> options = parseCommandLine(QCoreApplication::arguments());
    if (!options)
        return BadInput;
    const std::optional<rivo::feed::Feed> feed = readFeed(options->feed, options->reading);
    return feed ? run(*options, *feed) : BadInput;
}
