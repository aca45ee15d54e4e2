#include "ModelsOptions.h"
#include "TicketSelection.h"

#include <AssetsModel.h>
#include <FareProductsModel.h>
#include <FeedToModels.h>
#include <ModelPrinting.h>
#include <OfferProducts.h>
#include <PassengerTypesModel.h>
#include <PeripheralsModel.h>
#include <ProgramStart.h>
#include <RoleWriter.h>
#include <ShoppingBasketModel.h>
#include <ToolProgram.h>
#include <TripContext.h>
#include <ZReportModel.h>
#include <ZoneNames.h>

#include <QCoreApplication>

#include <optional>

using rivo::feed::Feed;
using rivo::models::ListModel;

namespace
{

/// A model of the application's, filled with one section of the feed.
template <class Model>
Model* filled(const Feed& feed, void (*addSection)(const Feed&, Model&))
{
    auto* model = new Model(QCoreApplication::instance());
    addSection(feed, *model);
    return model;
}

PassengerTypesModel* gridOf(const Feed& feed, const LayoutOptions& options)
{
    auto* grid = new PassengerTypesModel(QCoreApplication::instance());
    layOut(feed, options, *grid);
    return grid;
}

/// Null, after complaining, if a slot has no ticket to sell.
ShoppingBasketModel* basketOf(const Feed& feed, const ModelsOptions& options)
{
    const TicketSelection selection = selectTickets(*gridOf(feed, options.layout), options.tickets);
    for (const QString& error : selection.errors)
        reportFailure(QStringLiteral("--tickets: ") + error);
    if (!selection.errors.isEmpty())
        return nullptr;

    auto* basket = new ShoppingBasketModel(QCoreApplication::instance());
    const rivo::feed::ZoneNames zones(feed);
    rivo::feed::TripContext trip(feed);
    for (const PassengerTypeItem* tile : selection.tiles)
        rivo::feed::addTicket(*tile, zones, *basket, trip);
    return basket;
}

/// The model that the user asked for, a child of the application; null after complaining.
ListModel* modelOf(const Feed& feed, const ModelsOptions& options)
{
    switch (options.model) {
    case ModelKind::Grid:
        return gridOf(feed, options.layout);
    case ModelKind::Basket:
        return basketOf(feed, options);
    case ModelKind::FareProducts:
        return filled<FareProductsModel>(feed, rivo::feed::addFareProducts);
    case ModelKind::ZReports:
        return filled<ZReportModel>(feed, rivo::feed::addZReports);
    case ModelKind::Fleet:
        return filled<AssetsModel>(feed, rivo::feed::addVehicles);
    case ModelKind::Devices:
        return filled<PeripheralsModel>(feed, rivo::feed::addPeripherals);
    }
    return nullptr;
}

int run(const ModelsOptions& options, const Feed& feed)
{
    const ListModel* model = nullptr;
    const auto makeModel = [&] { return (model = modelOf(feed, options)) != nullptr; };
    if (!makeWithLibrary(options, makeModel))
        return BadInput;
    const auto asText = [&] { return modelAsText(feed, options.modelName, *model); };
    return printModel(options.format, feed, *model, asText) ? Done : BadInput;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    startTool(QStringLiteral("rivo-models"));

    const std::optional<ModelsOptions> options = parseCommandLine(QCoreApplication::arguments());
    if (!options)
        return BadInput;
    std::optional<Feed> feed = readFeed(options->feed, options->reading);
    if (!feed)
        return BadInput;
    feed->products = productsSoldSomewhere(*feed);
    return run(*options, *feed);
}
