#pragma once

#include <QString>

/// One sellable product of the selection grid: a fare product for one passenger type.
/// A default-constructed record is the grid's placeholder: an inert tile that fills a gap and is
/// expired, so that it never counts as sellable.
struct sProduct
{
    int passengerTypeId = 0; ///< becomes the identity of the tile
    QString description = QStringLiteral("---NOT FOR SALE---"); ///< of the passenger type
    int passengerTypeCode = 0; ///< PassengerTypesModel::PassengerType number; 0 if unknown
    QString icon;              ///< icon URL; empty takes the passenger type's own icon
    double price = 0.0;        ///< currency units
    int fareProductId = 0;     ///< of the back office
    QString fareProductName = QStringLiteral("---DUMMY---"); ///< as the driver reads it
    bool isReturnFee = false;                                ///< a return fee
    int fromStopGroupId = 0;                                 ///< origin zone
    int toStopGroupId = 0;     ///< destination zone; groups the local layout
    QString fareProductColor;  ///< colour of the tile, "#rrggbb" or a colour name
    bool hasExpired = true;    ///< no longer valid; true for placeholders
    double fareDiscount = 0.0; ///< as the back office states it; carried, never computed with
    bool isDaily = false;      ///< daily product, laid out after the grid, counted as a grid row
    int pos = -1;              ///< back-office grid position, counted from 1; -1 if none
};

/// Whether a record or tile of this name is a placeholder rather than a product.
inline bool isPlaceholder(const QString& fareProductName, bool hasExpired)
{
    return hasExpired && fareProductName == sProduct().fareProductName;
}

Q_DECLARE_TYPEINFO(sProduct, Q_MOVABLE_TYPE); // grows in a list without being copied
