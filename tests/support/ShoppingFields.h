#pragma once

#include "ItemFields.h"
#include "ShoppingItem.h"

/// The twenty-six fields of a ticket in the basket.
inline ItemClass shoppingItemClass()
{
    using Item = ShoppingItem;
    const QString empty = QStringLiteral("");
    const QList<int> ints{0, 1, 7, 4711, INT_MAX, INT_MIN};
    const QList<QString> texts{QStringLiteral("Adult"), QStringLiteral("Student"),
                               QStringLiteral("Dorosły 成人")};
    const QList<bool> yes{true};
    const QList<double> amounts{1e-13, 1.0, 1.0 + 1e-15, -0.75, 1000000.01};
    return {
        [](QObject* parent) { return new Item(parent); },
        [](const QVariantList& v, QObject* parent) {
            return new Item(v[0].toInt(), v[1].toInt(), v[2].toInt(), v[3].toInt(), v[4].toInt(),
                            v[5].toString(), v[6].toString(), v[7].toString(), v[8].toDouble(),
                            v[9].toString(), v[10].toString(), v[11].toBool(), v[12].toBool(),
                            parent);
        },
        {
            itemField("id", 257, -1, ints, &Item::id),
            itemField("passengerTypeId", 258, -1, ints, &Item::passengerTypeId,
                      &Item::setPassengerTypeId),
            itemField("fareProductId", 259, -1, ints, &Item::fareProductId,
                      &Item::setFareProductId),
            itemField("fromStopGroupId", 260, -1, ints, &Item::fromStopGroupId,
                      &Item::setFromStopGroupId),
            itemField("toStopGroupId", 261, -1, ints, &Item::toStopGroupId,
                      &Item::setToStopGroupId),
            itemField("description", 262, empty, texts, &Item::description, &Item::setDescription),
            itemField("fareProductName", 263, empty, texts, &Item::fareProductName,
                      &Item::setFareProductName),
            itemField("icon", 264, empty, texts, &Item::icon, &Item::setIcon),
            itemField("price", 265, 0.0, amounts, &Item::price, &Item::setPrice),
            itemField("origin", 268, empty, texts, &Item::origin, &Item::setOrigin),
            itemField("destination", 269, empty, texts, &Item::destination, &Item::setDestination),
            itemField("isReturnFee", 270, false, yes, &Item::isReturnFee, &Item::setIsReturnFee),
            itemField("isDaily", 271, false, yes, &Item::isDaily, &Item::setIsDaily),
            notAnArgument(
                itemField("accepted", 266, false, yes, &Item::accepted, &Item::setAccepted)),
            notAnArgument(itemField("printed", 267, false, yes, &Item::printed, &Item::setPrinted)),
            notAnArgument(itemField("routeId", 0, -999999, ints, &Item::routeId, &Item::setRouteId,
                                    Announced::Never)),
            notAnArgument(
                itemField("fromStopId", 0, -1, ints, &Item::fromStopId, &Item::setFromStopId)),
            notAnArgument(itemField("toStopId", 0, -1, ints, &Item::toStopId, &Item::setToStopId)),
            notAnArgument(itemField("currentStopId", 0, -1, ints, &Item::currentStopId,
                                    &Item::setCurrentStopId, Announced::Never)),
            notAnArgument(itemField("tripsRouteId", 0, -1, ints, &Item::tripsRouteId,
                                    &Item::setTripsRouteId, Announced::Never)),
            notAnArgument(itemField("tripsExecutionId", 0, -1, ints, &Item::tripsExecutionId,
                                    &Item::setTripsExecutionId, Announced::Never)),
            notAnArgument(itemField("payMethod", 0, -1, ints, &Item::payMethod, &Item::setPayMethod,
                                    Announced::Never)),
            notAnArgument(itemField("ticketMaterialId", 0, -1, ints, &Item::ticketMaterialId,
                                    &Item::setTicketMaterialId, Announced::Never)),
            notAnArgument(itemField("pasengerType", 0, -1, ints, &Item::pasengerType,
                                    &Item::setPasengerType, Announced::Never)),
            notAnArgument(itemField("payChannel", 0, -1, ints, &Item::payChannel,
                                    &Item::setPayChannel, Announced::Never)),
            notAnArgument(itemField("publicRouteExecutionId", 0, empty, texts,
                                    &Item::publicRouteExecutionId, &Item::setPublicRouteExecutionId,
                                    Announced::Never)),
        }};
}
