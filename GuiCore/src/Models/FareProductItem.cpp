#include "FareProductItem.h"

#include "RoleValueOrder_p.h"

const rivo::models::QHashStaticInit<int, QByteArray>
    FareProductItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE{
        {FareProductItem::FareProductIdRole, "fareProductId"},
        {FareProductItem::DescriptionRole, "description"},
        {FareProductItem::ProductFairIconRole, "productFairIcon"},
        {FareProductItem::PriceRole, "price"},
        {FareProductItem::DiscountRole, "discount"},
        {FareProductItem::FreeReturnRole, "freeReturn"},
        {FareProductItem::PaperTicketRole, "paperTicket"},
        {FareProductItem::TotalInBasketRole, "totalInBasket"},
    };

namespace FareProductItems
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) static int instanceCount = 0;
} // namespace FareProductItems

namespace
{

/// Replaces a list that does not hold equal values already.
bool isReplaced(QList<QVariant>& field, const QList<QVariant>& value)
{
    if (rivo::models::areEqualRoleValues(field, value))
        return false;
    field = value;
    return true;
}

} // namespace

FareProductItem::FareProductItem(QObject* parent) : ListItem(parent)
{
    ++FareProductItems::instanceCount;
}

FareProductItem::FareProductItem(const int& id, const QString& description, const QString& icon,
                                 const double& price, const double& discount,
                                 const bool& freeReturn, const bool& paperTicket,
                                 const QList<QVariant>& passengerTypes,
                                 const QList<QVariant>& ticketMaterial,
                                 const QList<QVariant>& paymentMethod,
                                 const QList<QVariant>& paymentChannel, const int& totalInBasket,
                                 QObject* parent)
    : ListItem(parent), m_id(id), m_description(description), m_icon(icon), m_price(price),
      m_discount(discount), m_freeReturn(freeReturn), m_paperTicket(paperTicket),
      m_passengerTypes(passengerTypes), m_ticketMaterial(ticketMaterial),
      m_paymentMethod(paymentMethod), m_paymentChannel(paymentChannel),
      m_totalInBasket(totalInBasket)
{
    ++FareProductItems::instanceCount;
}

FareProductItem::~FareProductItem() = default;

QVariant FareProductItem::data(int role) const
{
    switch (role) {
    case FareProductIdRole:
        return id();
    case DescriptionRole:
        return m_description;
    case ProductFairIconRole:
        return m_icon;
    case PriceRole:
        return m_price;
    case DiscountRole:
        return m_discount;
    case FreeReturnRole:
        return m_freeReturn;
    case PaperTicketRole:
        return m_paperTicket;
    case TotalInBasketRole:
        return m_totalInBasket;
    default:
        return {};
    }
}

QHash<int, QByteArray> FareProductItem::roleNames() const
{
    return FareProductItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash;
}

int FareProductItem::id() const { return m_id; }

void FareProductItem::setDescription(const QString& value) { store(m_description, value); }
void FareProductItem::setIcon(const QString& value) { store(m_icon, value); }
void FareProductItem::setPrice(const double& value) { storeFuzzy(m_price, value); }
void FareProductItem::setDiscount(const double& value) { storeFuzzy(m_discount, value); }
void FareProductItem::setFreeReturn(const bool& value) { store(m_freeReturn, value); }
void FareProductItem::setPaperTicket(const bool& value) { store(m_paperTicket, value); }
void FareProductItem::setTotalInBasket(const int& value) { store(m_totalInBasket, value); }
void FareProductItem::setPassengerTypes(const QList<QVariant>& value)
{
    if (isReplaced(m_passengerTypes, value))
        emit dataChanged();
}
void FareProductItem::setTicketMaterial(const QList<QVariant>& value)
{
    if (isReplaced(m_ticketMaterial, value))
        emit dataChanged();
}
void FareProductItem::setPaymentMethod(const QList<QVariant>& value)
{
    if (isReplaced(m_paymentMethod, value))
        emit dataChanged();
}
void FareProductItem::setPaymentChannel(const QList<QVariant>& value)
{
    if (isReplaced(m_paymentChannel, value))
        emit dataChanged();
}
