#pragma once

class AssetsModel;
class FareProductsModel;
class PassengerTypeItem;
class PassengerTypesModel;
class PeripheralsModel;
class QObject;
class ShoppingBasketModel;
class ZReportModel;

namespace rivo::feed
{

struct Feed;
class ZoneNames;

// Each hands one section of `feed` to `model` in the order of the feed, behind the rows that are
// there. Rows are children of the model.

/// One addItem per product. Neither clears nor lays out the model.
void addProducts(const Feed& feed, PassengerTypesModel& model);

/// One addItem per fare product.
void addFareProducts(const Feed& feed, FareProductsModel& model);

/// One appendRows of all vehicles. An unknown position is an invalid coordinate, one of unknown
/// altitude a coordinate of two dimensions.
void addVehicles(const Feed& feed, AssetsModel& model);

/// One appendRows of all devices.
void addPeripherals(const Feed& feed, PeripheralsModel& model);

/// One addItem per report, which writes one log record.
void addZReports(const Feed& feed, ZReportModel& model);

/// Puts one ticket of `tile` into the basket: origin and destination are what `zones` calls the
/// tile's two zones, all else is the tile's own. `trip` is read at once (see TripContext). Whether
/// the tile is for sale is not asked, and its totalInBasket stays.
void addTicket(const PassengerTypeItem& tile, const ZoneNames& zones, ShoppingBasketModel& basket,
               QObject& trip);

} // namespace rivo::feed
