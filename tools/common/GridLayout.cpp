#include "GridLayout.h"

#include <FeedToModels.h>
#include <PassengerTypeItem.h>
#include <PassengerTypes.h>
#include <PassengerTypesModel.h>

#include <algorithm>

void layOut(const rivo::feed::Feed& feed, const LayoutOptions& options, PassengerTypesModel& model)
{
    const QStringList supported =
        rivo::feed::distinctTypes(options.supported.value_or(feed.supportedPassengerTypes));
    model.setSupportedPassengerTypeCodes(supported);
    model.clearData();
    rivo::feed::addProducts(feed, model);
    model.sortAndRegroup(supported, options.columns.value_or(feed.columns));
}

QVector<const PassengerTypeItem*> tilesOf(const PassengerTypesModel& model)
{
    QVector<const PassengerTypeItem*> tiles;
    for (int row = 0; row < model.rowCount(); ++row)
        tiles.append(qobject_cast<const PassengerTypeItem*>(model.itemFromRow(row)));
    return tiles;
}

int rowsOf(const PassengerTypesModel& model)
{
    const QVector<const PassengerTypeItem*> tiles = tilesOf(model);
    const auto daily = static_cast<int>(std::count_if(
        tiles.begin(), tiles.end(), [](const auto* tile) { return tile->isDaily(); }));
    const int columns = qMax(1, model.numberOfColumns());
    return (static_cast<int>(tiles.size()) - daily + columns - 1) / columns + daily;
}

bool isPlaceholder(const PassengerTypeItem& tile)
{
    static const sProduct placeholder;
    return tile.description() == placeholder.description &&
           tile.fareProductName() == placeholder.fareProductName;
}
