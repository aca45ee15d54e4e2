#pragma once

#include "ItemFields.h"
#include "PassengerTypeItem.h"

/// The seventeen fields of a grid tile.
inline ItemClass passengerTypeItemClass()
{
    using Item = PassengerTypeItem;
    const QString empty = QStringLiteral("");
    const QList<int> ints{0, 1, 7, 4711, INT_MAX, INT_MIN};
    const QList<QString> texts{QStringLiteral("Adult"), QStringLiteral("Student"),
                               QStringLiteral("Dorosły 成人")};
    const QList<bool> yes{true};
    // Each pair differs by less than the tolerance of a fuzzy comparison.
    const QList<double> amounts{1e-13, 2.5, 2.5 + 1e-13, -0.75, 1000000.01};
    return {
        [](QObject* parent) { return new Item(parent); },
        [](const QVariantList& v, QObject* parent) {
            return new Item(v[0].toInt(), v[1].toString(), v[2].toString(), v[3].toString(),
                            v[4].toDouble(), v[5].toInt(), v[6].toString(), v[7].toInt(),
                            v[8].toBool(), v[9].toInt(), v[10].toInt(), v[11].toString(),
                            v[12].toBool(), v[13].toDouble(), v[15].toBool(), v[16].toInt(),
                            parent);
        },
        {
            itemField("id", 257, -1, ints, &Item::id, &Item::setId),
            itemField("description", 258, empty, texts, &Item::description, &Item::setDescription),
            itemField("code", 0, empty, texts, &Item::code, &Item::setCode),
            itemField("icon", 259, empty, texts, &Item::icon, &Item::setIcon),
            itemField("price", 260, 0.0, amounts, &Item::price, &Item::setPrice,
                      Announced::IfFuzzilyDifferent),
            itemField("fareProductId", 261, -1, ints, &Item::fareProductId,
                      &Item::setFareProductId),
            itemField("fareProductName", 262, empty, texts, &Item::fareProductName,
                      &Item::setFareProductName, Announced::Never),
            itemField("totalInBasket", 263, 0, {-1, 1, 2, INT_MAX}, &Item::totalInBasket,
                      &Item::setTotalInBasket),
            itemField("isReturnFee", 264, false, yes, &Item::isReturnFee, &Item::setIsReturnFee),
            itemField("fromStopGroupId", 265, -1, ints, &Item::fromStopGroupId,
                      &Item::setFromStopGroupId),
            itemField("toStopGroupId", 266, -1, ints, &Item::toStopGroupId,
                      &Item::setToStopGroupId),
            itemField("fareProductColor", 267, empty, texts, &Item::fareProductColor,
                      &Item::setFareProductColor),
            itemField("hasExpired", 268, false, yes, &Item::hasExpired, &Item::setHasExpired),
            itemField("fareDiscount", 269, 0.0, amounts, &Item::fareDiscount,
                      &Item::setFareDiscount),
            notAnArgument(
                itemField("selected", 270, false, yes, &Item::selected, &Item::setSelected)),
            itemField("isDaily", 271, false, yes, &Item::isDaily, &Item::setIsDaily),
            itemField("pos", 272, -1, ints, &Item::pos, &Item::setPos),
        }};
}
