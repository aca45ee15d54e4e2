#pragma once

#include "AssetItem.h"
#include "ItemFields.h"

/// The eleven fields of a vehicle.
inline ItemClass assetItemClass()
{
    using Item = AssetItem;
    const QString empty = QStringLiteral("");
    const QList<int> ints{0, 1, 7, 4711, INT_MAX, INT_MIN};
    const QList<QString> texts{QStringLiteral("WND 4711"), QStringLiteral("WND 4712"),
                               QStringLiteral("Zakroczym, przystań")};
    const QList<QGeoCoordinate> places{
        QGeoCoordinate(52.25, 20.75), QGeoCoordinate(52.25, 20.75, 80.0),
        QGeoCoordinate(52.25, 20.5), QGeoCoordinate(52.5, 20.75), QGeoCoordinate(0.0, 0.0)};
    // Some pairs differ by less than the tolerance of a fuzzy comparison.
    const QList<double> degrees{1e-13, 90.0, 90.0 + 1e-11, 359.5, 720.25, -90.0};
    return {
        [](QObject* parent) { return new Item(parent); },
        [](const QVariantList& v, QObject* parent) {
            return new Item(v[0].toInt(), v[1].toString(), v[2].toString(), v[3].toString(),
                            v[4].toString(), v[5].toInt(), v[6].toString(),
                            v[7].value<QGeoCoordinate>(), v[8].toBool(), v[9].toBool(),
                            v[10].toDouble(), parent);
        },
        {
            itemField("id", 257, -1, ints, &Item::id, &Item::setId),
            itemField("registrationNumber", 258, empty, texts, &Item::registrationNumber,
                      &Item::setRegistrationNumber),
            itemField("internalNumber", 259, empty, texts, &Item::internalNumber,
                      &Item::setInternalNumber),
            itemField("drivingStatus", 260, empty, texts, &Item::drivingStatus,
                      &Item::setDrivingStatus),
            itemField("routeStatus", 261, empty, texts, &Item::routeStatus, &Item::setRouteStatus),
            itemField("routeId", 262, -1, ints, &Item::routeId, &Item::setRouteId),
            itemField("routeName", 263, empty, texts, &Item::routeName, &Item::setRouteName),
            itemField("assetCoordinate", 264, QGeoCoordinate(), places, &Item::assetCoordinate,
                      &Item::setAssetCoordinate),
            itemField("updated", 0, false, {true}, &Item::updated, &Item::setUpdated,
                      Announced::Never),
            itemField("inView", 265, false, {true}, &Item::inView, &Item::setInView),
            itemField("direction", 266, 0.0, degrees, &Item::direction, &Item::setDirection,
                      Announced::IfFuzzilyDifferent),
        }};
}
