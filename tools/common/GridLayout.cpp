#include "GridLayout.h"

#include <FeedToModels.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>

void layOut(const rivo::feed::Feed& feed, const LayoutOptions& options, PassengerTypesModel& model)
{
    const QStringList supported = options.supported.value_or(feed.supportedPassengerTypes);
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

bool isPlaceholder(const PassengerTypeItem& tile)
{
    static const sProduct placeholder;
    return tile.description() == placeholder.description &&
           tile.fareProductName() == placeholder.fareProductName;
}
