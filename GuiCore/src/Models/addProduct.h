#pragma once

#include "PassengerTypesModel.h"
#include "sProduct.h"

#include <QString>

/// PassengerTypesModel::addItem() with the values of any record that has the fields of sProduct,
/// and the passenger type as `typeCode`, a text of PassengerTypesModel::codeMap.
template <typename Record>
void addProduct(PassengerTypesModel& model, const Record& product, const QString& typeCode)
{
    model.addItem(product.passengerTypeId, product.description, typeCode, product.icon,
                  product.price, product.fareProductId, product.fareProductName,
                  product.isReturnFee, product.fromStopGroupId, product.toStopGroupId,
                  product.fareProductColor, product.hasExpired, product.fareDiscount,
                  product.isDaily, product.pos);
}

/// Collects a copy of `product` for the next layout, as PassengerTypesModel::addItem() does. A
/// passengerTypeCode that is no PassengerType becomes 0. A default record is an expired
/// placeholder: set hasExpired to false for a product that is sold.
inline void addProduct(PassengerTypesModel& model, const sProduct& product)
{
    const auto type = static_cast<PassengerTypesModel::PassengerType>(product.passengerTypeCode);
    addProduct(model, product, PassengerTypesModel::codeMap.key(type));
}
