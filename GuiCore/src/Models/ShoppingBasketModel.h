#pragma once

#include "GuiCoreExport.h"
#include "ListModel.h"

#include <QString>

/// The tickets of the sale in progress, one ShoppingItem row per ticket. Nothing is merged, counted
/// or summed up here.
class GUICORE_EXPORT ShoppingBasketModel : public rivo::models::ListModel
{
    Q_OBJECT

public:
    /// A prototype row becomes a child of `parent`, which must outlive the model's last use;
    /// without a parent the prototype is never freed.
    explicit ShoppingBasketModel(QObject* parent = nullptr);
    ~ShoppingBasketModel() override;

    /// Appends one ticket, a child of this model whose id is the row count before. After a removal
    /// an id can therefore be given twice.
    ///
    /// `tripContext`, not null, is read once by property name: "routeId", "fromStopId", "toStopId",
    /// "currentStopId", "tripsRouteId", "tripsExecutionId" (integers) and "publicRouteExecutionId"
    /// (text, "DynamicTrip" becomes empty). A property that it does not have is 0 or empty, so a
    /// trip context without "routeId" gives 0, not the -999999 of a ticket without trip context.
    /// `price` is in currency units.
    void addItem(const int& passengerTypeId, const int& fareProductId, const int& fromStopGroupId,
                 const int& toStopGroupId, const QString& description,
                 const QString& fareProductName, const QString& icon, const double& price,
                 const QString& origin, const QString& destination, const bool& isReturnFee,
                 const bool& isDaily, QObject* tripContext);
};
