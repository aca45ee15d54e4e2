#include "FareProductsModel.h"

#include "FareProductItem.h"

FareProductsModel::FareProductsModel(QObject* parent)
    : ListModel(new FareProductItem(parent), parent)
{
}

FareProductsModel::~FareProductsModel() = default;

void FareProductsModel::addItem(const int& id, const QString& description, const QString& icon,
                                const double& price, const double& discount, const bool& freeReturn,
                                const bool& paperTicket, const QList<QVariant>& passengerTypes,
                                const QList<QVariant>& ticketMaterial,
                                const QList<QVariant>& paymentMethod,
                                const QList<QVariant>& paymentChannel)
{
    appendRow(new FareProductItem(id, description, icon, price, discount, freeReturn, paperTicket,
                                  passengerTypes, ticketMaterial, paymentMethod, paymentChannel, 0,
                                  this));
}

QString FareProductsModel::getFareProductDescription(int id)
{
    const QModelIndexList found =
        match(index(0, 0, QModelIndex()), FareProductItem::FareProductIdRole, QVariant(id), 1,
              Qt::MatchExactly);
    if (found.isEmpty())
        return {};
    const auto* product = qobject_cast<FareProductItem*>(rowAt(found.first().row()));
    return product == nullptr ? QString() : product->description();
}
