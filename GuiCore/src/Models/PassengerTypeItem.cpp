#include "PassengerTypeItem.h"

const rivo::models::QHashStaticInit<int, QByteArray>
    PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE{
        {PassengerTypeItem::PassengerTypeIdRole, "passengerTypeId"},
        {PassengerTypeItem::DescriptionRole, "description"},
        {PassengerTypeItem::FareProductIconRole, "fareProductIcon"},
        {PassengerTypeItem::PriceRole, "price"},
        {PassengerTypeItem::FareProductIdRole, "fareProductId"},
        {PassengerTypeItem::FareProductNameRole, "fareProductName"},
        {PassengerTypeItem::TotalInBasketRole, "totalInBasket"},
        {PassengerTypeItem::IsReturnFeeRole, "isReturnFee"},
        {PassengerTypeItem::FromStopGroupIdRole, "fromStopGroupId"},
        {PassengerTypeItem::ToStopGroupIdRole, "toStopGroupId"},
        {PassengerTypeItem::FareProductColorRole, "fareProductColor"},
        {PassengerTypeItem::HasExpiredRole, "hasExpired"},
        {PassengerTypeItem::FareDiscountRole, "fareDiscount"},
        {PassengerTypeItem::SelectedRole, "selected"},
        {PassengerTypeItem::IsDailyRole, "isDaily"},
        {PassengerTypeItem::PosRole, "pos"},
    };

namespace PassengerTypeItems
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) static int instanceCount = 0;
} // namespace PassengerTypeItems

PassengerTypeItem::PassengerTypeItem(QObject* parent) : ListItem(parent)
{
    ++PassengerTypeItems::instanceCount;
}

PassengerTypeItem::PassengerTypeItem(const int& id, const QString& description, const QString& code,
                                     const QString& icon, const double& price,
                                     const int& fareProductId, const QString& fareProductName,
                                     const int& totalInBasket, const bool& isReturnFee,
                                     const int& fromStopGroupId, const int& toStopGroupId,
                                     const QString& fareProductColor, const bool& hasExpired,
                                     const double& fareDiscount, const bool& isDaily, int pos,
                                     QObject* parent)
    : ListItem(parent), m_id(id), m_description(description), m_code(code), m_icon(icon),
      m_price(price), m_fareProductId(fareProductId), m_fareProductName(fareProductName),
      m_totalInBasket(totalInBasket), m_isReturnFee(isReturnFee),
      m_fromStopGroupId(fromStopGroupId), m_toStopGroupId(toStopGroupId),
      m_fareProductColor(fareProductColor), m_hasExpired(hasExpired), m_fareDiscount(fareDiscount),
      m_isDaily(isDaily), m_pos(pos)
{
    ++PassengerTypeItems::instanceCount;
}

PassengerTypeItem::~PassengerTypeItem() = default;

QVariant PassengerTypeItem::data(int role) const
{
    switch (role) {
    case PassengerTypeIdRole:
        return id();
    case DescriptionRole:
        return m_description;
    case FareProductIconRole:
        return m_icon;
    case PriceRole:
        return m_price;
    case FareProductIdRole:
        return m_fareProductId;
    case FareProductNameRole:
        return m_fareProductName;
    case TotalInBasketRole:
        return m_totalInBasket;
    case IsReturnFeeRole:
        return m_isReturnFee;
    case FromStopGroupIdRole:
        return m_fromStopGroupId;
    case ToStopGroupIdRole:
        return m_toStopGroupId;
    case FareProductColorRole:
        return m_fareProductColor;
    case HasExpiredRole:
        return m_hasExpired;
    case FareDiscountRole:
        return m_fareDiscount;
    case SelectedRole:
        return m_selected;
    case IsDailyRole:
        return m_isDaily;
    case PosRole:
        return m_pos;
    default:
        return {};
    }
}

QHash<int, QByteArray> PassengerTypeItem::roleNames() const
{
    return PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash;
}

int PassengerTypeItem::id() const { return m_id; }

void PassengerTypeItem::setId(const int& value) { store(m_id, value); }
void PassengerTypeItem::setDescription(const QString& value) { store(m_description, value); }
void PassengerTypeItem::setCode(const QString& value) { store(m_code, value); }
void PassengerTypeItem::setIcon(const QString& value) { store(m_icon, value); }
void PassengerTypeItem::setPrice(const double& value) { storeFuzzy(m_price, value); }
void PassengerTypeItem::setFareProductId(const int& value) { store(m_fareProductId, value); }
void PassengerTypeItem::setFareProductName(const QString& value) { m_fareProductName = value; }
void PassengerTypeItem::setTotalInBasket(const int& value) { store(m_totalInBasket, value); }
void PassengerTypeItem::setIsReturnFee(const bool& value) { store(m_isReturnFee, value); }
void PassengerTypeItem::setFromStopGroupId(const int& value) { store(m_fromStopGroupId, value); }
void PassengerTypeItem::setToStopGroupId(const int& value) { store(m_toStopGroupId, value); }
void PassengerTypeItem::setFareProductColor(const QString& value)
{
    store(m_fareProductColor, value);
}
void PassengerTypeItem::setHasExpired(const bool& value) { store(m_hasExpired, value); }
void PassengerTypeItem::setFareDiscount(const double& value) { store(m_fareDiscount, value); }
void PassengerTypeItem::setSelected(const bool& value) { store(m_selected, value); }
void PassengerTypeItem::setIsDaily(const bool& value) { store(m_isDaily, value); }
void PassengerTypeItem::setPos(const int& value) { store(m_pos, value); }
