#include "ShoppingItem.h"

const rivo::models::QHashStaticInit<int, QByteArray>
    ShoppingItemRolesHandling::SHOPPING_ITEM_ROLES_HASH_TABLE{
        {ShoppingItem::IdRole, "id"},
        {ShoppingItem::PassengerTypeIdRole, "passengerTypeId"},
        {ShoppingItem::FareProductIdRole, "fareProductId"},
        {ShoppingItem::DescriptionRole, "description"},
        {ShoppingItem::FromStopGroupIdRole, "fromStopGroupId"},
        {ShoppingItem::ToStopGroupIdRole, "toStopGroupId"},
        {ShoppingItem::FareProductNameRole, "fareProductName"},
        {ShoppingItem::ShoppingItemIconRole, "shoppingItemIcon"},
        {ShoppingItem::PriceRole, "price"},
        {ShoppingItem::AcceptedRole, "accepted"},
        {ShoppingItem::PrintedRole, "printed"},
        {ShoppingItem::OriginRole, "origin"},
        {ShoppingItem::DestinationRole, "destination"},
        {ShoppingItem::IsReturnFeeRole, "isReturnFee"},
        {ShoppingItem::IsDailyRole, "isDaily"},
    };

namespace
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) int instanceCount = 0;
} // namespace

ShoppingItem::ShoppingItem(QObject* parent) : ListItem(parent) { ++instanceCount; }

ShoppingItem::ShoppingItem(const int& id, const int& passengerTypeId, const int& fareProductId,
                           const int& fromStopGroupId, const int& toStopGroupId,
                           const QString& description, const QString& fareProductName,
                           const QString& icon, const double& price, const QString& origin,
                           const QString& destination, const bool& isReturnFee, const bool& isDaily,
                           QObject* parent)
    : ListItem(parent), m_id(id), m_passengerTypeId(passengerTypeId),
      m_fareProductId(fareProductId), m_fromStopGroupId(fromStopGroupId),
      m_toStopGroupId(toStopGroupId), m_description(description),
      m_fareProductName(fareProductName), m_icon(icon), m_price(price), m_origin(origin),
      m_destination(destination), m_isReturnFee(isReturnFee), m_isDaily(isDaily)
{
    ++instanceCount;
}

ShoppingItem::~ShoppingItem() = default;

QVariant ShoppingItem::data(int role) const
{
    switch (role) {
    case IdRole:
        return id();
    case PassengerTypeIdRole:
        return m_passengerTypeId;
    case FareProductIdRole:
        return m_fareProductId;
    case FromStopGroupIdRole:
        return m_fromStopGroupId;
    case ToStopGroupIdRole:
        return m_toStopGroupId;
    case DescriptionRole:
        return m_description;
    case FareProductNameRole:
        return m_fareProductName;
    case ShoppingItemIconRole:
        return m_icon;
    case PriceRole:
        return m_price;
    case AcceptedRole:
        return m_accepted;
    case PrintedRole:
        return m_printed;
    case OriginRole:
        return m_origin;
    case DestinationRole:
        return m_destination;
    case IsReturnFeeRole:
        return m_isReturnFee;
    case IsDailyRole:
        return m_isDaily;
    default:
        return {};
    }
}

QHash<int, QByteArray> ShoppingItem::roleNames() const
{
    return ShoppingItemRolesHandling::SHOPPING_ITEM_ROLES_HASH_TABLE.hash;
}

int ShoppingItem::id() const { return m_id; }

void ShoppingItem::setPassengerTypeId(const int& passengerTypeId)
{
    store(m_passengerTypeId, passengerTypeId);
}
void ShoppingItem::setFareProductId(const int& fareProductId)
{
    store(m_fareProductId, fareProductId);
}
void ShoppingItem::setFromStopGroupId(const int& fromStopGroupId)
{
    store(m_fromStopGroupId, fromStopGroupId);
}
void ShoppingItem::setToStopGroupId(const int& toStopGroupId)
{
    store(m_toStopGroupId, toStopGroupId);
}
void ShoppingItem::setDescription(const QString& description) { store(m_description, description); }
void ShoppingItem::setFareProductName(const QString& fareProductName)
{
    store(m_fareProductName, fareProductName);
}
void ShoppingItem::setIcon(const QString& icon) { store(m_icon, icon); }
void ShoppingItem::setPrice(const double& price) { store(m_price, price); }
void ShoppingItem::setAccepted(const bool& accepted) { store(m_accepted, accepted); }
void ShoppingItem::setPrinted(const bool& printed) { store(m_printed, printed); }
void ShoppingItem::setOrigin(const QString& origin) { store(m_origin, origin); }
void ShoppingItem::setDestination(const QString& destination) { store(m_destination, destination); }
void ShoppingItem::setIsReturnFee(const bool& isReturnFee) { store(m_isReturnFee, isReturnFee); }
void ShoppingItem::setIsDaily(const bool& isDaily) { store(m_isDaily, isDaily); }
void ShoppingItem::setFromStopId(const int& fromStopId) { store(m_fromStopId, fromStopId); }
void ShoppingItem::setToStopId(const int& toStopId) { store(m_toStopId, toStopId); }
void ShoppingItem::setRouteId(int routeId) { m_routeId = routeId; }
void ShoppingItem::setCurrentStopId(int currentStopId) { m_currentStopId = currentStopId; }
void ShoppingItem::setTripsRouteId(int tripsRouteId) { m_tripsRouteId = tripsRouteId; }
void ShoppingItem::setTripsExecutionId(int tripsExecutionId)
{
    m_tripsExecutionId = tripsExecutionId;
}
void ShoppingItem::setPublicRouteExecutionId(QString publicRouteExecutionId)
{
    m_publicRouteExecutionId = publicRouteExecutionId;
}
void ShoppingItem::setPayMethod(int payMethod) { m_payMethod = payMethod; }
void ShoppingItem::setTicketMaterialId(int ticketMaterialId)
{
    m_ticketMaterialId = ticketMaterialId;
}
void ShoppingItem::setPasengerType(int pasengerType) { m_pasengerType = pasengerType; }
void ShoppingItem::setPayChannel(int payChannel) { m_payChannel = payChannel; }
