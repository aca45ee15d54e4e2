#include "FeedToModels.h"

#include "Feed.h"
#include "ZoneNames.h"

#include "AssetItem.h"
#include "AssetsModel.h"
#include "FareProductsModel.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PeripheralItem.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ZReportModel.h"
#include "addProduct.h"

namespace rivo::feed
{

void addProducts(const Feed& feed, PassengerTypesModel& model)
{
    for (const FeedProduct& product : feed.products)
        addProduct(model, product, product.passengerTypeCode);
}

void addFareProducts(const Feed& feed, FareProductsModel& model)
{
    for (const FeedFareProduct& product : feed.fareProducts)
        model.addItem(product.id, product.description, product.icon, product.price,
                      product.discount, product.freeReturn, product.paperTicket,
                      product.passengerTypes, product.ticketMaterial, product.paymentMethod,
                      product.paymentChannel);
}

void addVehicles(const Feed& feed, AssetsModel& model)
{
    QVector<models::ListItem*> rows;
    rows.reserve(feed.vehicles.size());
    for (const FeedVehicle& vehicle : feed.vehicles) {
        // NaN makes the coordinate invalid, or one of two dimensions, by itself.
        const QGeoCoordinate position(vehicle.latitude, vehicle.longitude, vehicle.altitude);
        rows.append(new AssetItem(vehicle.id, vehicle.registrationNumber, vehicle.internalNumber,
                                  vehicle.drivingStatus, vehicle.routeStatus, vehicle.routeId,
                                  vehicle.routeName, position, vehicle.updated, vehicle.inView,
                                  vehicle.direction, &model));
    }
    model.appendRows(rows);
}

void addPeripherals(const Feed& feed, PeripheralsModel& model)
{
    QVector<models::ListItem*> rows;
    rows.reserve(feed.peripherals.size());
    for (const FeedPeripheral& device : feed.peripherals)
        rows.append(new PeripheralItem(device.id, device.name, device.identity, device.icon,
                                       device.warning, device.blueWarning, device.yellowWarning,
                                       device.error, device.deviceState, device.stateStr, &model));
    model.appendRows(rows);
}

void addZReports(const Feed& feed, ZReportModel& model)
{
    for (const FeedZReport& report : feed.zReports)
        model.addItem(report.id, report.ticketCount, report.ticketSumAmnt, report.cardSellCount,
                      report.cardSellAmnt, report.parcelCount, report.parcelAmnt,
                      report.fromTicketNumber, report.toTicketNumber, report.zSum, report.zNumber,
                      report.isClosed, report.commission, report.paymentDate, report.currentDebt,
                      report.maxAllowedDebt);
}

void addTicket(const PassengerTypeItem& tile, const ZoneNames& zones, ShoppingBasketModel& basket,
               QObject& trip)
{
    basket.addItem(tile.id(), tile.fareProductId(), tile.fromStopGroupId(), tile.toStopGroupId(),
                   tile.description(), tile.fareProductName(), tile.icon(), tile.price(),
                   zones.name(tile.fromStopGroupId()), zones.name(tile.toStopGroupId()),
                   tile.isReturnFee(), tile.isDaily(), &trip);
}

} // namespace rivo::feed
