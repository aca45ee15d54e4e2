#include "ShoppingBasketModel.h"

#include "ShoppingItem.h"

#include <QVariant>

namespace
{

/// The public execution id that tickets do not carry.
const QLatin1String dynamicTrip("DynamicTrip");

void copyTripContext(const QObject& trip, ShoppingItem& item)
{
    item.setRouteId(trip.property("routeId").toInt());
    item.setFromStopId(trip.property("fromStopId").toInt());
    item.setToStopId(trip.property("toStopId").toInt());
    item.setCurrentStopId(trip.property("currentStopId").toInt());
    item.setTripsRouteId(trip.property("tripsRouteId").toInt());
    item.setTripsExecutionId(trip.property("tripsExecutionId").toInt());
    const QString execution = trip.property("publicRouteExecutionId").toString();
    item.setPublicRouteExecutionId(execution == dynamicTrip ? QLatin1String("") : execution);
}

} // namespace

ShoppingBasketModel::ShoppingBasketModel(QObject* parent)
    : ListModel(new ShoppingItem(parent), parent)
{
}

ShoppingBasketModel::~ShoppingBasketModel() = default;

void ShoppingBasketModel::addItem(const int& passengerTypeId, const int& fareProductId,
                                  const int& fromStopGroupId, const int& toStopGroupId,
                                  const QString& description, const QString& fareProductName,
                                  const QString& icon, const double& price, const QString& origin,
                                  const QString& destination, const bool& isReturnFee,
                                  const bool& isDaily, QObject* tripContext)
{
    auto* item = new ShoppingItem(rowCount(QModelIndex()), passengerTypeId, fareProductId,
                                  fromStopGroupId, toStopGroupId, description, fareProductName,
                                  icon, price, origin, destination, isReturnFee, isDaily, this);
    copyTripContext(*tripContext, *item);
    appendRow(item);
}
