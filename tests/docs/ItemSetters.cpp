#include "ItemSetters.h"

#include "AssetItem.h"
#include "FareProductItem.h"
#include "PassengerTypeItem.h"
#include "PeripheralItem.h"
#include "ShoppingItem.h"
#include "ZReportItem.h"

#include <QDateTime>
#include <QGeoCoordinate>
#include <QMap>
#include <QSignalSpy>

#include <algorithm>
#include <climits>
#include <type_traits>

using rivo::models::ListItem;

namespace
{

template <typename Item, typename Argument>
ItemSetter setter(const char* name, void (Item::*set)(Argument))
{
    using T = std::decay_t<Argument>;
    return {name, qMetaTypeId<T>(), [set](ListItem& item, const QVariant& value) {
                (static_cast<Item&>(item).*set)(value.value<T>());
            }};
}

template <typename Item>
ItemSetters itemClass(const QVector<ItemSetter>& setters)
{
    return {Item::staticMetaObject.className(), [](QObject* parent) { return new Item(parent); },
            setters};
}

ItemSetters passengerTypeItem()
{
    using Item = PassengerTypeItem;
    return itemClass<Item>({
        setter("setId", &Item::setId),
        setter("setDescription", &Item::setDescription),
        setter("setCode", &Item::setCode),
        setter("setIcon", &Item::setIcon),
        setter("setPrice", &Item::setPrice),
        setter("setFareProductId", &Item::setFareProductId),
        setter("setFareProductName", &Item::setFareProductName),
        setter("setTotalInBasket", &Item::setTotalInBasket),
        setter("setIsReturnFee", &Item::setIsReturnFee),
        setter("setFromStopGroupId", &Item::setFromStopGroupId),
        setter("setToStopGroupId", &Item::setToStopGroupId),
        setter("setFareProductColor", &Item::setFareProductColor),
        setter("setHasExpired", &Item::setHasExpired),
        setter("setFareDiscount", &Item::setFareDiscount),
        setter("setSelected", &Item::setSelected),
        setter("setIsDaily", &Item::setIsDaily),
        setter("setPos", &Item::setPos),
    });
}

ItemSetters shoppingItem()
{
    using Item = ShoppingItem;
    return itemClass<Item>({
        setter("setPassengerTypeId", &Item::setPassengerTypeId),
        setter("setFareProductId", &Item::setFareProductId),
        setter("setFromStopGroupId", &Item::setFromStopGroupId),
        setter("setToStopGroupId", &Item::setToStopGroupId),
        setter("setDescription", &Item::setDescription),
        setter("setFareProductName", &Item::setFareProductName),
        setter("setIcon", &Item::setIcon),
        setter("setPrice", &Item::setPrice),
        setter("setAccepted", &Item::setAccepted),
        setter("setPrinted", &Item::setPrinted),
        setter("setOrigin", &Item::setOrigin),
        setter("setDestination", &Item::setDestination),
        setter("setIsReturnFee", &Item::setIsReturnFee),
        setter("setIsDaily", &Item::setIsDaily),
        setter("setFromStopId", &Item::setFromStopId),
        setter("setToStopId", &Item::setToStopId),
        setter("setRouteId", &Item::setRouteId),
        setter("setCurrentStopId", &Item::setCurrentStopId),
        setter("setTripsRouteId", &Item::setTripsRouteId),
        setter("setTripsExecutionId", &Item::setTripsExecutionId),
        setter("setPublicRouteExecutionId", &Item::setPublicRouteExecutionId),
        setter("setPayMethod", &Item::setPayMethod),
        setter("setTicketMaterialId", &Item::setTicketMaterialId),
        setter("setPasengerType", &Item::setPasengerType),
        setter("setPayChannel", &Item::setPayChannel),
    });
}

ItemSetters fareProductItem()
{
    using Item = FareProductItem;
    return itemClass<Item>({
        setter("setDescription", &Item::setDescription),
        setter("setIcon", &Item::setIcon),
        setter("setPrice", &Item::setPrice),
        setter("setDiscount", &Item::setDiscount),
        setter("setFreeReturn", &Item::setFreeReturn),
        setter("setPaperTicket", &Item::setPaperTicket),
        setter("setTotalInBasket", &Item::setTotalInBasket),
        setter("setPassengerTypes", &Item::setPassengerTypes),
        setter("setTicketMaterial", &Item::setTicketMaterial),
        setter("setPaymentMethod", &Item::setPaymentMethod),
        setter("setPaymentChannel", &Item::setPaymentChannel),
    });
}

ItemSetters zReportItem()
{
    using Item = ZReportItem;
    return itemClass<Item>({
        setter("setTicketCount", &Item::setTicketCount),
        setter("setTicketSumAmnt", &Item::setTicketSumAmnt),
        setter("setCardSellCount", &Item::setCardSellCount),
        setter("setCardSellAmnt", &Item::setCardSellAmnt),
        setter("setParcelCount", &Item::setParcelCount),
        setter("setParcelAmnt", &Item::setParcelAmnt),
        setter("setFromTicketNumber", &Item::setFromTicketNumber),
        setter("setToTicketNumber", &Item::setToTicketNumber),
        setter("setZSum", &Item::setZSum),
        setter("setZNumber", &Item::setZNumber),
        setter("setIsClosed", &Item::setIsClosed),
        setter("setCommission", &Item::setCommission),
        setter("setPaymentDate", &Item::setPaymentDate),
        setter("setCurrentDebt", &Item::setCurrentDebt),
        setter("setMaxAllowedDebt", &Item::setMaxAllowedDebt),
    });
}

ItemSetters assetItem()
{
    using Item = AssetItem;
    return itemClass<Item>({
        setter("setId", &Item::setId),
        setter("setRegistrationNumber", &Item::setRegistrationNumber),
        setter("setInternalNumber", &Item::setInternalNumber),
        setter("setDrivingStatus", &Item::setDrivingStatus),
        setter("setRouteStatus", &Item::setRouteStatus),
        setter("setRouteId", &Item::setRouteId),
        setter("setRouteName", &Item::setRouteName),
        setter("setAssetCoordinate", &Item::setAssetCoordinate),
        setter("setUpdated", &Item::setUpdated),
        setter("setInView", &Item::setInView),
        setter("setDirection", &Item::setDirection),
    });
}

ItemSetters peripheralItem()
{
    using Item = PeripheralItem;
    return itemClass<Item>({
        setter("setId", &Item::setId),
        setter("setName", &Item::setName),
        setter("setIdentity", &Item::setIdentity),
        setter("setIcon", &Item::setIcon),
        setter("setWarning", &Item::setWarning),
        setter("setBlueWarning", &Item::setBlueWarning),
        setter("setYellowWarning", &Item::setYellowWarning),
        setter("setError", &Item::setError),
        setter("setDeviceState", &Item::setDeviceState),
        setter("setStateStr", &Item::setStateStr),
    });
}

/// Values of all roles in the order of their numbers.
QVariantList shown(const ListItem& item)
{
    QList<int> roles = item.roleNames().keys();
    std::sort(roles.begin(), roles.end());
    QVariantList values;
    for (int role : qAsConst(roles))
        values.append(item.data(role));
    return values;
}

/// How often the item announces something while these values are set in turn.
int announcements(ListItem& item, const ItemSetter& setter, const QVariantList& values)
{
    QSignalSpy changes(&item, &ListItem::dataChanged);
    for (const QVariant& value : values)
        setter.set(item, value);
    return changes.count();
}

} // namespace

QVariant ItemSetter::sample(int n) const
{
    switch (type) {
    case QMetaType::Bool:
        return n != 0;
    case QMetaType::UInt:
        return UINT_MAX - uint(n);
    case QMetaType::Double:
        return 5.0 + n;
    case QMetaType::QDateTime:
        return QDateTime::fromSecsSinceEpoch(n);
    case QMetaType::QVariantList:
        return QVariantList{n};
    default:
        break;
    }
    if (type == qMetaTypeId<QGeoCoordinate>())
        return QVariant::fromValue(QGeoCoordinate(n, n));
    QVariant value(QString::number(4711 + n));
    if (!value.convert(type))
        qFatal("%s has no sample values", qPrintable(name));
    return value;
}

QString ItemSetter::field() const { return name.at(3).toLower() + name.mid(4); }

QString ItemSetters::announcement(const ItemSetter& setter) const
{
    const QVariant stored = setter.sample(0);
    const QVariant other = setter.sample(1);
    QObject owner;
    ListItem* item = make(&owner);
    setter.set(*item, stored);
    if (announcements(*item, setter, {other}) == 0)
        return QStringLiteral("silent");

    if (announcements(*item, setter, {other}) != 0) {
        for (const ItemSetter& field : setters) {
            if (field.type != setter.type)
                continue;
            ListItem* fresh = make(&owner);
            field.set(*fresh, stored);
            if (announcements(*fresh, setter, {stored}) == 0)
                return "against " + field.field();
        }
        return QStringLiteral("always");
    }

    if (setter.type != QMetaType::Double)
        return {};
    return announcements(*item, setter, {other.toDouble() + 1e-13}) == 0 ? QStringLiteral("fuzzy")
                                                                         : QStringLiteral("exact");
}

bool ItemSetters::hasRole(const ItemSetter& setter) const
{
    QObject owner;
    ListItem* item = make(&owner);
    setter.set(*item, setter.sample(0));
    const QVariantList before = shown(*item);
    setter.set(*item, setter.sample(1));
    return shown(*item) != before;
}

ItemSetters settersOfRows(const QString& modelClass)
{
    static const QMap<QString, ItemSetters (*)()> classes{
        {"PassengerTypesModel", passengerTypeItem},
        {"ShoppingBasketModel", shoppingItem},
        {"FareProductsModel", fareProductItem},
        {"ZReportModel", zReportItem},
        {"AssetsModel", assetItem},
        {"PeripheralsModel", peripheralItem}};
    return classes[modelClass]();
}
