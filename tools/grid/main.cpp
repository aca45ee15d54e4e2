#include "FareCheck.h"
#include "GridOptions.h"
#include "GridWriter.h"
#include "OfferCommand.h"
#include "PositionCheck.h"

#include <ModelPrinting.h>
#include <OfferProducts.h>
#include <PassengerTypesModel.h>
#include <StandardOutput.h>
#include <ToolProgram.h>

#include <QCoreApplication>

#include <optional>

namespace
{

int run(const GridOptions& options, const rivo::feed::Feed& feed)
{
    PassengerTypesModel* model = nullptr;
    const auto makeGrid = [&] {
        model = new PassengerTypesModel(QCoreApplication::instance());
        layOut(feed, options.layout, *model);
        return true;
    };
    if (!makeWithLibrary(options, makeGrid))
        return BadInput;

    if (options.command == GridCommand::Check) {
        const PositionVerdict verdict = checkPositions(feed, *model);
        if (!writeToStandardOutput(checkFares(feed) + verdict.report))
            return BadInput;
        return verdict.fallsBack ? FallsBack : Done;
    }
    const auto asText = [&] { return gridAsText(feed, *model, standardOutputHasColours()); };
    return printModel(options.format, feed, *model, asText) ? Done : BadInput;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    startTool(QStringLiteral("rivo-grid"));

    const std::optional<GridOptions> options = parseCommandLine(QCoreApplication::arguments());
    if (!options)
        return BadInput;
    std::optional<rivo::feed::Feed> feed = readFeed(options->feed, options->reading);
    if (!feed)
        return BadInput;
    if (options->query)
        feed->name = operatorOf(*feed, feed->tariff->routeIds.find(options->query->route));
    switch (options->command) {
    case GridCommand::Offers:
        return printOffers(*options, *feed);
    case GridCommand::Why:
        return explainProduct(*options, *feed);
    case GridCommand::Check:
        return run(*options, *feed);
    default:
        return narrow(*options, *feed) ? run(*options, *feed) : BadInput;
    }
}
