#pragma once

#include "ItemFields.h"
#include "PeripheralItem.h"

/// The ten fields of a device.
inline ItemClass peripheralItemClass()
{
    using Item = PeripheralItem;
    const QString empty = QStringLiteral("");
    const QList<int> ints{0, 1, 7, 4711, INT_MAX, INT_MIN};
    const QList<unsigned int> numbers{1U, 2147483647U, 2147483648U, UINT_MAX};
    const QList<QString> texts{QStringLiteral("Printer"), QStringLiteral("Validator"),
                               QStringLiteral("Drukarka 成人")};
    const QList<bool> no{false};
    return {[](QObject* parent) { return new Item(parent); },
            [](const QVariantList& v, QObject* parent) {
                return new Item(v[0].toInt(), v[1].toString(), v[2].toUInt(), v[3].toString(),
                                v[4].toBool(), v[5].toBool(), v[6].toBool(), v[7].toBool(),
                                v[8].toInt(), v[9].toString(), parent);
            },
            {
                itemField("id", 257, -1, ints, &Item::id, &Item::setId),
                itemField("name", 258, empty, texts, &Item::name, &Item::setName),
                itemField("identity", 259, 0U, numbers, &Item::identity, &Item::setIdentity),
                itemField("icon", 260, empty, texts, &Item::icon, &Item::setIcon),
                itemField("warning", 261, true, no, &Item::warning, &Item::setWarning),
                itemField("blueWarning", 262, true, no, &Item::blueWarning, &Item::setBlueWarning),
                itemField("yellowWarning", 263, true, no, &Item::yellowWarning,
                          &Item::setYellowWarning),
                itemField("error", 264, true, no, &Item::error, &Item::setError),
                itemField("deviceState", 265, 0, {-1, 1, 2, INT_MAX, INT_MIN}, &Item::deviceState,
                          &Item::setDeviceState),
                itemField("stateStr", 266, empty, texts, &Item::stateStr, &Item::setStateStr),
            }};
}
