#pragma once

#include "FareProductItem.h"
#include "ItemFields.h"

/// The twelve fields of an entry of the fare product catalogue.
inline ItemClass fareProductItemClass()
{
    using Item = FareProductItem;
    const QString empty = QStringLiteral("");
    const QList<QString> texts{QStringLiteral("Single"), QStringLiteral("Day"),
                               QStringLiteral("Jednorazowy 成人")};
    const QList<bool> yes{true};
    // Each pair differs by less than the tolerance of a fuzzy comparison.
    const QList<double> amounts{1e-13, 10.0, 10.0 + 1e-13, -0.75, 1000000.01};
    const QVariantList none;
    const QList<QVariantList> lists{QVariantList{1, 2, 3}, QVariantList{3, 2, 1},
                                    QVariantList{1, 2}, QVariantList{QVariant()},
                                    QVariantList{QStringLiteral("Adult"), 2.5}};
    return {
        [](QObject* parent) { return new Item(parent); },
        [](const QVariantList& v, QObject* parent) {
            return new Item(v[0].toInt(), v[1].toString(), v[2].toString(), v[3].toDouble(),
                            v[4].toDouble(), v[5].toBool(), v[6].toBool(), v[7].toList(),
                            v[8].toList(), v[9].toList(), v[10].toList(), v[11].toInt(), parent);
        },
        {
            itemField("id", 257, -1, {0, 1, 7, 4711, INT_MAX, INT_MIN}, &Item::id),
            itemField("description", 259, empty, texts, &Item::description, &Item::setDescription),
            itemField("icon", 260, empty, texts, &Item::icon, &Item::setIcon),
            itemField("price", 261, 0.0, amounts, &Item::price, &Item::setPrice,
                      Announced::IfFuzzilyDifferent),
            itemField("discount", 262, 0.0, amounts, &Item::discount, &Item::setDiscount,
                      Announced::IfFuzzilyDifferent),
            itemField("freeReturn", 263, false, yes, &Item::freeReturn, &Item::setFreeReturn),
            itemField("paperTicket", 264, false, yes, &Item::paperTicket, &Item::setPaperTicket),
            itemField("passengerTypes", 0, none, lists, &Item::passengerTypes,
                      &Item::setPassengerTypes),
            itemField("ticketMaterial", 0, none, lists, &Item::ticketMaterial,
                      &Item::setTicketMaterial),
            itemField("paymentMethod", 0, none, lists, &Item::paymentMethod,
                      &Item::setPaymentMethod),
            itemField("paymentChannel", 0, none, lists, &Item::paymentChannel,
                      &Item::setPaymentChannel),
            itemField("totalInBasket", 265, 0, {-1, 1, 2, INT_MAX}, &Item::totalInBasket,
                      &Item::setTotalInBasket),
        }};
}
