#pragma once

#include <QString>

/// One sellable product of the selection grid: a fare product for one passenger type.
/// A default-constructed record is the grid's placeholder: an inert tile that fills a gap and is
/// expired, so that it never counts as sellable.
struct sProduct
{
    int passengerTypeId = 0; ///< identifier of the passenger type
    QString description = QStringLiteral("---NOT FOR SALE---"); ///< of the passenger type
    int passengerTypeCode = 0; ///< PassengerTypesModel::PassengerType number; 0 if unknown
    QString icon;              ///< icon URL; empty takes the passenger type's own icon
    double price = 0.0;        ///< currency units
    int fareProductId = 0;     ///< identifier of the fare product
    QString fareProductName = QStringLiteral("---DUMMY---"); ///< of the fare product
    bool isReturnFee = false;                                ///< a return fee
    int fromStopGroupId = 0;                                 ///< origin zone
    int toStopGroupId = 0;     ///< destination zone; groups the local layout
    QString fareProductColor;  ///< colour of the tile
    bool hasExpired = true;    ///< no longer valid
    double fareDiscount = 0.0; ///< discount of the fare
    bool isDaily = false;      ///< daily product, laid out on a row of its own after the grid
    int pos = -1;              ///< back-office grid position, counted from 1; -1 if none
};
