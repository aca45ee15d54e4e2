#pragma once

#include "LibraryModels.h"

#include <QGeoCoordinate>
#include <QVariantMap>

#include <algorithm>
#include <functional>
#include <vector>

/// One model of the library as QML sees it. A row is its id and a number from which all its other
/// values follow; `values` states them by role name, apart from the classes themselves.
struct ModelKind
{
    const char* name; ///< of the model's class
    std::function<rivo::models::ListItem*(int id, int number, QObject* parent)> makeItem;
    std::function<void(rivo::models::ListItem* item, int number)> change; ///< all but the id
    std::function<QVariantMap(int id, int number)> values;
    bool creatable = false; ///< by QML

    rivo::models::ListModel* makeModel(QObject* parent) const
    {
        return libraryModel(QLatin1String(name)).make(parent);
    }
};

namespace modelkinds
{

using rivo::models::ListItem;

inline QString text(const char* what, int number)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(what)).arg(number);
}

inline bool isOdd(int number) { return number % 2 != 0; }

inline QGeoCoordinate place(int number)
{
    return QGeoCoordinate(40.5 + number / 1000.0, 22.25 - number / 1000.0, number);
}

inline QDateTime moment(int number)
{
    return QDateTime(QDate(2024, 2, 29), QTime(23, 30), Qt::UTC).addSecs(number * 3600);
}

inline QVariantList numbers(int number) { return {number, number + 1}; }

/// Of one value in three.
inline bool isThird(int number) { return number % 3 == 2; }

inline ModelKind passengerTypes()
{
    return {"PassengerTypesModel",
            [](int id, int n, QObject* parent) {
                auto* tile = new PassengerTypeItem(
                    id, text("type", n), QStringLiteral("1"), text("icon", n), n * 0.5, n + 1,
                    text("product", n), n + 2, isOdd(n), n + 3, n + 4, text("colour", n), !isOdd(n),
                    n * 0.25, isOdd(n / 2), n + 5, parent);
                tile->setSelected(isThird(n));
                return tile;
            },
            [](ListItem* item, int n) {
                auto* tile = static_cast<PassengerTypeItem*>(item);
                tile->setFareProductName(text("product", n)); // silent, told with the next
                tile->setDescription(text("type", n));
                tile->setIcon(text("icon", n));
                tile->setPrice(n * 0.5);
                tile->setFareProductId(n + 1);
                tile->setTotalInBasket(n + 2);
                tile->setIsReturnFee(isOdd(n));
                tile->setFromStopGroupId(n + 3);
                tile->setToStopGroupId(n + 4);
                tile->setFareProductColor(text("colour", n));
                tile->setHasExpired(!isOdd(n));
                tile->setFareDiscount(n * 0.25);
                tile->setSelected(isThird(n));
                tile->setIsDaily(isOdd(n / 2));
                tile->setPos(n + 5);
            },
            [](int id, int n) {
                return QVariantMap{{"passengerTypeId", id},
                                   {"description", text("type", n)},
                                   {"fareProductIcon", text("icon", n)},
                                   {"price", n * 0.5},
                                   {"fareProductId", n + 1},
                                   {"fareProductName", text("product", n)},
                                   {"totalInBasket", n + 2},
                                   {"isReturnFee", isOdd(n)},
                                   {"fromStopGroupId", n + 3},
                                   {"toStopGroupId", n + 4},
                                   {"fareProductColor", text("colour", n)},
                                   {"hasExpired", !isOdd(n)},
                                   {"fareDiscount", n * 0.25},
                                   {"selected", isThird(n)},
                                   {"isDaily", isOdd(n / 2)},
                                   {"pos", n + 5}};
            }};
}

inline ModelKind shoppingBasket()
{
    return {"ShoppingBasketModel",
            [](int id, int n, QObject* parent) {
                auto* ticket =
                    new ShoppingItem(id, n + 1, n + 2, n + 3, n + 4, text("type", n),
                                     text("product", n), text("icon", n), n * 0.5, text("from", n),
                                     text("to", n), isOdd(n), !isOdd(n), parent);
                ticket->setAccepted(isThird(n));
                ticket->setPrinted(isOdd(n / 2));
                return ticket;
            },
            [](ListItem* item, int n) {
                auto* ticket = static_cast<ShoppingItem*>(item);
                ticket->setPassengerTypeId(n + 1);
                ticket->setFareProductId(n + 2);
                ticket->setFromStopGroupId(n + 3);
                ticket->setToStopGroupId(n + 4);
                ticket->setDescription(text("type", n));
                ticket->setFareProductName(text("product", n));
                ticket->setIcon(text("icon", n));
                ticket->setPrice(n * 0.5);
                ticket->setOrigin(text("from", n));
                ticket->setDestination(text("to", n));
                ticket->setIsReturnFee(isOdd(n));
                ticket->setIsDaily(!isOdd(n));
                ticket->setAccepted(isThird(n));
                ticket->setPrinted(isOdd(n / 2));
            },
            [](int id, int n) {
                return QVariantMap{{"id", id},
                                   {"passengerTypeId", n + 1},
                                   {"fareProductId", n + 2},
                                   {"fromStopGroupId", n + 3},
                                   {"toStopGroupId", n + 4},
                                   {"description", text("type", n)},
                                   {"fareProductName", text("product", n)},
                                   {"shoppingItemIcon", text("icon", n)},
                                   {"price", n * 0.5},
                                   {"accepted", isThird(n)},
                                   {"printed", isOdd(n / 2)},
                                   {"origin", text("from", n)},
                                   {"destination", text("to", n)},
                                   {"isReturnFee", isOdd(n)},
                                   {"isDaily", !isOdd(n)}};
            }};
}

inline ModelKind fareProducts()
{
    return {"FareProductsModel",
            [](int id, int n, QObject* parent) {
                return new FareProductItem(
                    id, text("product", n), text("icon", n), n * 0.5, n * 0.25, isOdd(n), !isOdd(n),
                    numbers(n), numbers(n + 1), numbers(n + 2), numbers(n + 3), n + 1, parent);
            },
            [](ListItem* item, int n) {
                auto* product = static_cast<FareProductItem*>(item);
                product->setDescription(text("product", n));
                product->setIcon(text("icon", n));
                product->setPrice(n * 0.5);
                product->setDiscount(n * 0.25);
                product->setFreeReturn(isOdd(n));
                product->setPaperTicket(!isOdd(n));
                product->setTotalInBasket(n + 1);
            },
            [](int id, int n) {
                return QVariantMap{{"fareProductId", id},
                                   {"description", text("product", n)},
                                   {"productFairIcon", text("icon", n)},
                                   {"price", n * 0.5},
                                   {"discount", n * 0.25},
                                   {"freeReturn", isOdd(n)},
                                   {"paperTicket", !isOdd(n)},
                                   {"totalInBasket", n + 1}};
            }};
}

inline ModelKind zReports()
{
    return {"ZReportModel",
            [](int id, int n, QObject* parent) {
                return new ZReportItem(id, n + 1, n + 0.5, n + 2, n + 1.5, n + 3, n + 2.5,
                                       text("first", n), text("last", n), n + 3.5, n + 4.5,
                                       isOdd(n), n + 5.5, moment(n), n + 6.5, n + 7.5, parent);
            },
            [](ListItem* item, int n) {
                auto* report = static_cast<ZReportItem*>(item);
                report->setTicketCount(n + 1);
                report->setTicketSumAmnt(n + 0.5);
                report->setCardSellCount(n + 2);
                report->setCardSellAmnt(n + 1.5);
                report->setParcelCount(n + 3);
                report->setParcelAmnt(n + 2.5);
                report->setFromTicketNumber(text("first", n));
                report->setToTicketNumber(text("last", n));
                report->setZSum(n + 3.5);
                report->setZNumber(n + 4.5);
                report->setIsClosed(isOdd(n));
                report->setCommission(n + 5.5);
                report->setPaymentDate(moment(n));
                report->setCurrentDebt(n + 6.5);
                report->setMaxAllowedDebt(n + 7.5);
            },
            [](int id, int n) {
                return QVariantMap{{"id", id},
                                   {"ticketCountData", n + 1},
                                   {"ticketSumData", n + 0.5},
                                   {"cardSellCountData", n + 2},
                                   {"cardSellAmountData", n + 1.5},
                                   {"parcelCountData", n + 3},
                                   {"parcelAmountData", n + 2.5},
                                   {"fromTicketData", text("first", n)},
                                   {"toTicketData", text("last", n)},
                                   {"zSumData", n + 3.5},
                                   {"zNumberData", n + 4.5},
                                   {"isClosedData", isOdd(n)},
                                   {"commission", n + 5.5},
                                   {"paymentDate", moment(n)},
                                   {"currentDebt", n + 6.5},
                                   {"maxAllowedDebt", n + 7.5}};
            }};
}

inline ModelKind assets()
{
    return {"AssetsModel",
            [](int id, int n, QObject* parent) {
                return new AssetItem(id, text("plate", n), text("number", n), text("driving", n),
                                     text("route status", n), n + 1, text("route", n), place(n),
                                     false, isOdd(n), n * 1.5, parent);
            },
            [](ListItem* item, int n) {
                auto* vehicle = static_cast<AssetItem*>(item);
                vehicle->setRegistrationNumber(text("plate", n));
                vehicle->setInternalNumber(text("number", n));
                vehicle->setDrivingStatus(text("driving", n));
                vehicle->setRouteStatus(text("route status", n));
                vehicle->setRouteId(n + 1);
                vehicle->setRouteName(text("route", n));
                vehicle->setAssetCoordinate(place(n));
                vehicle->setInView(isOdd(n));
                vehicle->setDirection(n * 1.5);
            },
            [](int id, int n) {
                return QVariantMap{{"id", id},
                                   {"registrationNumber", text("plate", n)},
                                   {"internalNumber", text("number", n)},
                                   {"drivingStatus", text("driving", n)},
                                   {"routeStatus", text("route status", n)},
                                   {"routeId", n + 1},
                                   {"routeName", text("route", n)},
                                   {"assetCoordinate", QVariant::fromValue(place(n))},
                                   {"inView", isOdd(n)},
                                   {"direction", n * 1.5}};
            },
            true};
}

inline ModelKind peripherals()
{
    return {"PeripheralsModel",
            [](int id, int n, QObject* parent) {
                return new PeripheralItem(id, text("device", n), 4294967295U - unsigned(n),
                                          text("icon", n), isOdd(n), !isOdd(n), isOdd(n / 2),
                                          !isOdd(n / 2), n + 1, text("state", n), parent);
            },
            [](ListItem* item, int n) {
                auto* device = static_cast<PeripheralItem*>(item);
                device->setName(text("device", n));
                device->setIdentity(4294967295U - unsigned(n));
                device->setIcon(text("icon", n));
                device->setWarning(isOdd(n));
                device->setBlueWarning(!isOdd(n));
                device->setYellowWarning(isOdd(n / 2));
                device->setError(!isOdd(n / 2));
                device->setDeviceState(n + 1);
                device->setStateStr(text("state", n));
            },
            [](int id, int n) {
                return QVariantMap{{"id", id},
                                   {"peripheralName", text("device", n)},
                                   {"identity", 4294967295U - unsigned(n)},
                                   {"iconSource", text("icon", n)},
                                   {"warning", isOdd(n)},
                                   {"blueWarning", !isOdd(n)},
                                   {"yellowWarning", isOdd(n / 2)},
                                   {"error", !isOdd(n / 2)},
                                   {"deviceState", n + 1},
                                   {"stateStr", text("state", n)}};
            },
            true};
}

/// A value as text, the same whether it comes straight from C++ or by way of JavaScript.
inline QString valueText(const QVariant& value)
{
    switch (int(value.userType())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 17);
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    default:
        break;
    }
    if (value.userType() == qMetaTypeId<QGeoCoordinate>()) {
        const auto place = value.value<QGeoCoordinate>();
        return QStringLiteral("%1, %2, %3")
            .arg(place.latitude(), 0, 'g', 17)
            .arg(place.longitude(), 0, 'g', 17)
            .arg(place.altitude(), 0, 'g', 17);
    }
    return QStringLiteral("%1 \"%2\"").arg(QLatin1String(value.typeName()), value.toString());
}

/// A row as texts "role: value" in the order of the role names.
inline QStringList rowTexts(const QVariantMap& values)
{
    QStringList texts;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        texts.append(value.key() + QStringLiteral(": ") + valueText(value.value()));
    return texts;
}

} // namespace modelkinds

inline const std::vector<ModelKind>& modelKinds()
{
    static const std::vector<ModelKind> kinds{
        modelkinds::passengerTypes(), modelkinds::shoppingBasket(), modelkinds::fareProducts(),
        modelkinds::zReports(),       modelkinds::assets(),         modelkinds::peripherals()};
    return kinds;
}

/// The kind of this name, which must be there.
inline const ModelKind& modelKindNamed(const QString& name)
{
    const std::vector<ModelKind>& kinds = modelKinds();
    const auto found = std::find_if(kinds.cbegin(), kinds.cend(), [&](const ModelKind& kind) {
        return name == QLatin1String(kind.name);
    });
    if (found == kinds.cend())
        qFatal("no model %s", qPrintable(name));
    return *found;
}
