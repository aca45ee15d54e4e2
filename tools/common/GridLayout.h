#pragma once

#include <Feed.h>

#include <QStringList>
#include <QVector>

#include <optional>

class PassengerTypeItem;
class PassengerTypesModel;

/// How a grid is laid out where the user has a say.
struct LayoutOptions
{
    std::optional<int> columns;           ///< otherwise the feed's own
    std::optional<QStringList> order;     ///< otherwise the configured display order
    std::optional<QStringList> supported; ///< otherwise the feed's own
};

/// Fills the model with the feed's products and lays it out. The order is not applied here, the
/// model has it from its configuration (see ConfiguredOrder).
void layOut(const rivo::feed::Feed& feed, const LayoutOptions& options, PassengerTypesModel& model);

/// The tiles of a grid that has been laid out, by slot.
QVector<const PassengerTypeItem*> tilesOf(const PassengerTypesModel& model);

/// Rows of that grid, with one for each daily product. The model's numberOfRows leaves out tiles of
/// some passenger types.
int rowsOf(const PassengerTypesModel& model);

bool isPlaceholder(const PassengerTypeItem& tile);
