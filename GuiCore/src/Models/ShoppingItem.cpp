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

namespace ShoppingItems
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) static int instanceCount = 0;
} // namespace ShoppingItems

ShoppingItem::ShoppingItem(QObject* parent) : ListItem(parent) { ++ShoppingItems::instanceCount; }

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
    ++ShoppingItems::instanceCount;
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

void ShoppingItem::setPassengerTypeId(const int& value) { store(m_passengerTypeId, value); }
void ShoppingItem::setFareProductId(const int& value) { store(m_fareProductId, value); }
void ShoppingItem::setFromStopGroupId(const int& value) { store(m_fromStopGroupId, value); }
void ShoppingItem::setToStopGroupId(const int& value) { store(m_toStopGroupId, value); }
void ShoppingItem::setDescription(const QString& value) { store(m_description, value); }
void ShoppingItem::setFareProductName(const QString& value) { store(m_fareProductName, value); }
void ShoppingItem::setIcon(const QString& value) { store(m_icon, value); }
void ShoppingItem::setPrice(const double& value) { store(m_price, value); }
void ShoppingItem::setAccepted(const bool& value) { store(m_accepted, value); }
void ShoppingItem::setPrinted(const bool& value) { store(m_printed, value); }
void ShoppingItem::setOrigin(const QString& value) { store(m_origin, value); }
void ShoppingItem::setDestination(const QString& value) { store(m_destination, value); }
void ShoppingItem::setIsReturnFee(const bool& value) { store(m_isReturnFee, value); }
void ShoppingItem::setIsDaily(const bool& value) { store(m_isDaily, value); }
void ShoppingItem::setFromStopId(const int& value) { store(m_fromStopId, value); }
void ShoppingItem::setToStopId(const int& value) { store(m_toStopId, value); }
void ShoppingItem::setRouteId(int value) { m_routeId = value; }
void ShoppingItem::setCurrentStopId(int value) { m_currentStopId = value; }
void ShoppingItem::setTripsRouteId(int value) { m_tripsRouteId = value; }
void ShoppingItem::setTripsExecutionId(int value) { m_tripsExecutionId = value; }
void ShoppingItem::setPublicRouteExecutionId(QString value) { m_publicRouteExecutionId = value; }
void ShoppingItem::setPayMethod(int value) { m_payMethod = value; }
void ShoppingItem::setTicketMaterialId(int value) { m_ticketMaterialId = value; }
void ShoppingItem::setPasengerType(int value) { m_pasengerType = value; }
void ShoppingItem::setPayChannel(int value) { m_payChannel = value; }
