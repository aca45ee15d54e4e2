#pragma once

#include "GuiCoreExport.h"
#include "ListModel.h"

#include <QList>
#include <QString>
#include <QVariant>

/// The catalogue of fare products that can be sold, one FareProductItem row per product.
class GUICORE_EXPORT FareProductsModel : public rivo::models::ListModel
{
    Q_OBJECT

public:
    /// A prototype row becomes a child of `parent`, which must outlive the model's last use;
    /// without a parent the prototype is never freed.
    explicit FareProductsModel(QObject* parent = nullptr);
    ~FareProductsModel() override;

    /// Appends one product, a child of this model with none of it in the basket. The id need not
    /// be unique; the lists are stored as they are. `price` is in currency units.
    void addItem(const int& id, const QString& description, const QString& icon,
                 const double& price, const double& discount, const bool& freeReturn,
                 const bool& paperTicket, const QList<QVariant>& passengerTypes,
                 const QList<QVariant>& ticketMaterial, const QList<QVariant>& paymentMethod,
                 const QList<QVariant>& paymentChannel);

    /// Description of the first row with this id; null if there is none, or if that row is no
    /// FareProductItem. Linear.
    QString getFareProductDescription(int id);
};
