#include "LibraryModels.h"

#include "AssetItem.h"
#include "AssetsModel.h"
#include "FareProductItem.h"
#include "FareProductsModel.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PeripheralItem.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ShoppingItem.h"
#include "Table.h"
#include "TopLevelOnly.h"
#include "ZReportItem.h"
#include "ZReportModel.h"

#include <QTest>

#include <algorithm>

namespace
{

ItemClass passengerTypeItem()
{
    using Item = PassengerTypeItem;
    return libraryItem<Item>(
        PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash,
        field("id", -1, &Item::id, &Item::setId).shownAs(257, "passengerTypeId"),
        field("description", "", &Item::description, &Item::setDescription).shownAs(258),
        field("code", "", &Item::code, &Item::setCode),
        field("icon", "", &Item::icon, &Item::setIcon).shownAs(259, "fareProductIcon"),
        field("price", 0.0, &Item::price, &Item::setPrice).shownAs(260).fuzzy(),
        field("fareProductId", -1, &Item::fareProductId, &Item::setFareProductId).shownAs(261),
        field("fareProductName", "", &Item::fareProductName, &Item::setFareProductName)
            .shownAs(262)
            .silent(),
        field("totalInBasket", 0, &Item::totalInBasket, &Item::setTotalInBasket).shownAs(263),
        field("isReturnFee", false, &Item::isReturnFee, &Item::setIsReturnFee).shownAs(264),
        field("fromStopGroupId", -1, &Item::fromStopGroupId, &Item::setFromStopGroupId)
            .shownAs(265),
        field("toStopGroupId", -1, &Item::toStopGroupId, &Item::setToStopGroupId).shownAs(266),
        field("fareProductColor", "", &Item::fareProductColor, &Item::setFareProductColor)
            .shownAs(267),
        field("hasExpired", false, &Item::hasExpired, &Item::setHasExpired).shownAs(268),
        field("fareDiscount", 0.0, &Item::fareDiscount, &Item::setFareDiscount).shownAs(269),
        field("selected", false, &Item::selected, &Item::setSelected).shownAs(270).notAnArgument(),
        field("isDaily", false, &Item::isDaily, &Item::setIsDaily).shownAs(271),
        field("pos", -1, &Item::pos, &Item::setPos).shownAs(272));
}

ItemClass shoppingItem()
{
    using Item = ShoppingItem;
    const auto number = [](const char* name, int initial, int (Item::*get)() const, auto set) {
        return field(name, initial, get, set).notAnArgument();
    };
    ItemClass ticket = libraryItem<Item>(
        ShoppingItemRolesHandling::SHOPPING_ITEM_ROLES_HASH_TABLE.hash,
        field("id", -1, &Item::id).shownAs(257),
        field("passengerTypeId", -1, &Item::passengerTypeId, &Item::setPassengerTypeId)
            .shownAs(258),
        field("fareProductId", -1, &Item::fareProductId, &Item::setFareProductId).shownAs(259),
        field("fromStopGroupId", -1, &Item::fromStopGroupId, &Item::setFromStopGroupId)
            .shownAs(260),
        field("toStopGroupId", -1, &Item::toStopGroupId, &Item::setToStopGroupId).shownAs(261),
        field("description", "", &Item::description, &Item::setDescription).shownAs(262),
        field("fareProductName", "", &Item::fareProductName, &Item::setFareProductName)
            .shownAs(263),
        field("icon", "", &Item::icon, &Item::setIcon).shownAs(264, "shoppingItemIcon"),
        field("price", 0.0, &Item::price, &Item::setPrice).shownAs(265),
        field("origin", "", &Item::origin, &Item::setOrigin).shownAs(268),
        field("destination", "", &Item::destination, &Item::setDestination).shownAs(269),
        field("isReturnFee", false, &Item::isReturnFee, &Item::setIsReturnFee).shownAs(270),
        field("isDaily", false, &Item::isDaily, &Item::setIsDaily).shownAs(271),
        field("accepted", false, &Item::accepted, &Item::setAccepted).shownAs(266).notAnArgument(),
        field("printed", false, &Item::printed, &Item::setPrinted).shownAs(267).notAnArgument(),
        number("routeId", -999999, &Item::routeId, &Item::setRouteId).silent(),
        number("fromStopId", -1, &Item::fromStopId, &Item::setFromStopId),
        number("toStopId", -1, &Item::toStopId, &Item::setToStopId),
        number("currentStopId", -1, &Item::currentStopId, &Item::setCurrentStopId).silent(),
        number("tripsRouteId", -1, &Item::tripsRouteId, &Item::setTripsRouteId).silent(),
        number("tripsExecutionId", -1, &Item::tripsExecutionId, &Item::setTripsExecutionId)
            .silent(),
        number("payMethod", -1, &Item::payMethod, &Item::setPayMethod).silent(),
        number("ticketMaterialId", -1, &Item::ticketMaterialId, &Item::setTicketMaterialId)
            .silent(),
        number("pasengerType", -1, &Item::pasengerType, &Item::setPasengerType).silent(),
        number("payChannel", -1, &Item::payChannel, &Item::setPayChannel).silent(),
        field("publicRouteExecutionId", "", &Item::publicRouteExecutionId,
              &Item::setPublicRouteExecutionId)
            .notAnArgument()
            .silent());
    ticket.properties = QStringList{"routeId",
                                    "fromStopId",
                                    "toStopId",
                                    "currentStopId",
                                    "tripsRouteId",
                                    "tripsExecutionId",
                                    "publicRouteExecutionId",
                                    "payMethod",
                                    "ticketMaterialId",
                                    "pasengerType",
                                    "payChannel",
                                    "isReturnFee"};
    return ticket;
}

ItemClass fareProductItem()
{
    using Item = FareProductItem;
    const QVariantList none;
    return libraryItem<Item>(
        FareProductItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash,
        field("id", -1, &Item::id).shownAs(257, "fareProductId"),
        field("description", "", &Item::description, &Item::setDescription).shownAs(259),
        field("icon", "", &Item::icon, &Item::setIcon).shownAs(260, "productFairIcon"),
        field("price", 0.0, &Item::price, &Item::setPrice).shownAs(261).fuzzy(),
        field("discount", 0.0, &Item::discount, &Item::setDiscount).shownAs(262).fuzzy(),
        field("freeReturn", false, &Item::freeReturn, &Item::setFreeReturn).shownAs(263),
        field("paperTicket", false, &Item::paperTicket, &Item::setPaperTicket).shownAs(264),
        field("passengerTypes", none, &Item::passengerTypes, &Item::setPassengerTypes),
        field("ticketMaterial", none, &Item::ticketMaterial, &Item::setTicketMaterial),
        field("paymentMethod", none, &Item::paymentMethod, &Item::setPaymentMethod),
        field("paymentChannel", none, &Item::paymentChannel, &Item::setPaymentChannel),
        field("totalInBasket", 0, &Item::totalInBasket, &Item::setTotalInBasket).shownAs(265));
}

ItemClass zReportItem()
{
    using Item = ZReportItem;
    return libraryItem<Item>(
        ZReportItemRolesHandling::Z_REPORT_ROLES_HASH_TABLE.hash,
        field("id", -1, &Item::id).shownAs(257),
        field("ticketCount", -1, &Item::ticketCount, &Item::setTicketCount)
            .shownAs(258, "ticketCountData"),
        field("ticketSumAmnt", 0.0, &Item::ticketSumAmnt, &Item::setTicketSumAmnt)
            .shownAs(259, "ticketSumData")
            .fuzzy(),
        field("cardSellCount", -1, &Item::cardSellCount, &Item::setCardSellCount)
            .shownAs(260, "cardSellCountData"),
        field("cardSellAmnt", 0.0, &Item::cardSellAmnt, &Item::setCardSellAmnt)
            .shownAs(261, "cardSellAmountData")
            .fuzzyAgainst("ticketSumAmnt"),
        field("parcelCount", -1, &Item::parcelCount, &Item::setParcelCount)
            .shownAs(262, "parcelCountData"),
        field("parcelAmnt", 0.0, &Item::parcelAmnt, &Item::setParcelAmnt)
            .shownAs(263, "parcelAmountData")
            .fuzzy(),
        field("fromTicketNumber", "", &Item::fromTicketNumber, &Item::setFromTicketNumber)
            .shownAs(264, "fromTicketData"),
        field("toTicketNumber", "", &Item::toTicketNumber, &Item::setToTicketNumber)
            .shownAs(265, "toTicketData"),
        field("zSum", 0.0, &Item::zSum, &Item::setZSum).shownAs(266, "zSumData").fuzzy(),
        field("zNumber", 0.0, &Item::zNumber, &Item::setZNumber)
            .shownAs(267, "zNumberData")
            .fuzzy(),
        field("isClosed", false, &Item::isClosed, &Item::setIsClosed).shownAs(268, "isClosedData"),
        field("commission", 0.0, &Item::commission, &Item::setCommission).shownAs(269),
        field("paymentDate", QDateTime(), &Item::paymentDate, &Item::setPaymentDate).shownAs(270),
        field("currentDebt", 0.0, &Item::currentDebt, &Item::setCurrentDebt).shownAs(271).fuzzy(),
        field("maxAllowedDebt", 0.0, &Item::maxAllowedDebt, &Item::setMaxAllowedDebt)
            .shownAs(272)
            .fuzzy());
}

ItemClass assetItem()
{
    using Item = AssetItem;
    ItemClass vehicle = libraryItem<Item>(
        AssetItemRolesHandling::ASSETS_HASH_TABLE.hash,
        field("id", -1, &Item::id, &Item::setId).shownAs(257),
        field("registrationNumber", "", &Item::registrationNumber, &Item::setRegistrationNumber)
            .shownAs(258),
        field("internalNumber", "", &Item::internalNumber, &Item::setInternalNumber).shownAs(259),
        field("drivingStatus", "", &Item::drivingStatus, &Item::setDrivingStatus).shownAs(260),
        field("routeStatus", "", &Item::routeStatus, &Item::setRouteStatus).shownAs(261),
        field("routeId", -1, &Item::routeId, &Item::setRouteId).shownAs(262),
        field("routeName", "", &Item::routeName, &Item::setRouteName).shownAs(263),
        field("assetCoordinate", QGeoCoordinate(), &Item::assetCoordinate,
              &Item::setAssetCoordinate)
            .shownAs(264),
        field("updated", false, &Item::updated, &Item::setUpdated).silent(),
        field("inView", false, &Item::inView, &Item::setInView).shownAs(265),
        field("direction", 0.0, &Item::direction, &Item::setDirection).shownAs(266).fuzzy());
    vehicle.isCounted = false;
    return vehicle;
}

ItemClass peripheralItem()
{
    using Item = PeripheralItem;
    return libraryItem<Item>(
        PeripheralItemRolesHandling::PERIPHERAL_ROLES_HASH_TABLE.hash,
        field("id", -1, &Item::id, &Item::setId).shownAs(257),
        field("name", "", &Item::name, &Item::setName).shownAs(258, "peripheralName"),
        field("identity", 0U, &Item::identity, &Item::setIdentity).shownAs(259),
        field("icon", "", &Item::icon, &Item::setIcon).shownAs(260, "iconSource"),
        field("warning", true, &Item::warning, &Item::setWarning).shownAs(261),
        field("blueWarning", true, &Item::blueWarning, &Item::setBlueWarning).shownAs(262),
        field("yellowWarning", true, &Item::yellowWarning, &Item::setYellowWarning).shownAs(263),
        field("error", true, &Item::error, &Item::setError).shownAs(264),
        field("deviceState", 0, &Item::deviceState, &Item::setDeviceState).shownAs(265),
        field("stateStr", "", &Item::stateStr, &Item::setStateStr).shownAs(266));
}

enum class Maker { Application, QmlToo };

template <typename Model>
LibraryModel described(Maker maker, const ItemClass& itemClass)
{
    return {Model::staticMetaObject.className(),
            &Model::staticMetaObject,
            maker == Maker::QmlToo,
            sizeof(Model) - sizeof(rivo::models::ListModel),
            [](QObject* parent) { return new Model(parent); },
            [](QObject* parent) { return new TopLevelOnly<Model>(parent); },
            itemClass};
}

} // namespace

const std::vector<LibraryModel>& libraryModels()
{
    static const std::vector<LibraryModel> models{
        described<PassengerTypesModel>(Maker::Application, passengerTypeItem()),
        described<ShoppingBasketModel>(Maker::Application, shoppingItem()),
        described<FareProductsModel>(Maker::Application, fareProductItem()),
        described<ZReportModel>(Maker::Application, zReportItem()),
        described<AssetsModel>(Maker::QmlToo, assetItem()),
        described<PeripheralsModel>(Maker::QmlToo, peripheralItem())};
    return models;
}

const LibraryModel& libraryModel(const QString& name)
{
    const std::vector<LibraryModel>& models = libraryModels();
    const auto found = std::find_if(models.cbegin(), models.cend(), [&](const LibraryModel& model) {
        return name == QLatin1String(model.name);
    });
    if (found == models.cend())
        qFatal("no model %s", qPrintable(name));
    return *found;
}

void everyModel()
{
    const Table<QString> row("model");
    for (const LibraryModel& model : libraryModels())
        row(model.name, QString::fromLatin1(model.name));
}
