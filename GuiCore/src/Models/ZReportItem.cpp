#include "ZReportItem.h"

const rivo::models::QHashStaticInit<int, QByteArray>
    ZReportItemRolesHandling::Z_REPORT_ROLES_HASH_TABLE{
        {ZReportItem::IdRole, "id"},
        {ZReportItem::TicketCountDataRole, "ticketCountData"},
        {ZReportItem::TicketSumDataRole, "ticketSumData"},
        {ZReportItem::CardSellCountDataRole, "cardSellCountData"},
        {ZReportItem::CardSellAmountDataRole, "cardSellAmountData"},
        {ZReportItem::ParcelCountDataRole, "parcelCountData"},
        {ZReportItem::ParcelAmountDataRole, "parcelAmountData"},
        {ZReportItem::FromTicketDataRole, "fromTicketData"},
        {ZReportItem::ToTicketDataRole, "toTicketData"},
        {ZReportItem::ZSumDataRole, "zSumData"},
        {ZReportItem::ZNumberDataRole, "zNumberData"},
        {ZReportItem::IsClosedDataRole, "isClosedData"},
        {ZReportItem::CommissionRole, "commission"},
        {ZReportItem::PaymentDateRole, "paymentDate"},
        {ZReportItem::CurrentDebtRole, "currentDebt"},
        {ZReportItem::MaxAllowedDebtRole, "maxAllowedDebt"},
    };

namespace ZReportItems
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) static int instanceCount = 0;
} // namespace ZReportItems

ZReportItem::ZReportItem(QObject* parent) : ListItem(parent) { ++ZReportItems::instanceCount; }

ZReportItem::ZReportItem(const int& id, const int& ticketCount, const double& ticketSumAmnt,
                         const int& cardSellCount, const double& cardSellAmnt,
                         const int& parcelCount, const double& parcelAmnt,
                         const QString& fromTicketNumber, const QString& toTicketNumber,
                         const double& zSum, const double& zNumber, const bool& isClosed,
                         const double& commission, const QDateTime& paymentDate,
                         const double& currentDebt, const double& maxAllowedDebt, QObject* parent)
    : ListItem(parent), m_id(id), m_ticketCount(ticketCount), m_ticketSumAmnt(ticketSumAmnt),
      m_cardSellCount(cardSellCount), m_cardSellAmnt(cardSellAmnt), m_parcelCount(parcelCount),
      m_parcelAmnt(parcelAmnt), m_fromTicketNumber(fromTicketNumber),
      m_toTicketNumber(toTicketNumber), m_zSum(zSum), m_zNumber(zNumber), m_isClosed(isClosed),
      m_commission(commission), m_paymentDate(paymentDate), m_currentDebt(currentDebt),
      m_maxAllowedDebt(maxAllowedDebt)
{
    ++ZReportItems::instanceCount;
}

ZReportItem::~ZReportItem() = default;

QVariant ZReportItem::data(int role) const
{
    switch (role) {
    case IdRole:
        return id();
    case TicketCountDataRole:
        return m_ticketCount;
    case TicketSumDataRole:
        return m_ticketSumAmnt;
    case CardSellCountDataRole:
        return m_cardSellCount;
    case CardSellAmountDataRole:
        return m_cardSellAmnt;
    case ParcelCountDataRole:
        return m_parcelCount;
    case ParcelAmountDataRole:
        return m_parcelAmnt;
    case FromTicketDataRole:
        return m_fromTicketNumber;
    case ToTicketDataRole:
        return m_toTicketNumber;
    case ZSumDataRole:
        return m_zSum;
    case ZNumberDataRole:
        return m_zNumber;
    case IsClosedDataRole:
        return m_isClosed;
    case CommissionRole:
        return m_commission;
    case PaymentDateRole:
        return m_paymentDate;
    case CurrentDebtRole:
        return m_currentDebt;
    case MaxAllowedDebtRole:
        return m_maxAllowedDebt;
    default:
        return {};
    }
}

QHash<int, QByteArray> ZReportItem::roleNames() const
{
    return ZReportItemRolesHandling::Z_REPORT_ROLES_HASH_TABLE.hash;
}

int ZReportItem::id() const { return m_id; }

void ZReportItem::setTicketCount(int value) { store(m_ticketCount, value); }
void ZReportItem::setTicketSumAmnt(double value) { storeFuzzy(m_ticketSumAmnt, value); }
void ZReportItem::setCardSellCount(int value) { store(m_cardSellCount, value); }
void ZReportItem::setCardSellAmnt(double value)
{
    if (fuzzilyEqual(m_ticketSumAmnt, value))
        return;
    m_cardSellAmnt = value;
    emit dataChanged();
}
void ZReportItem::setParcelCount(int value) { store(m_parcelCount, value); }
void ZReportItem::setParcelAmnt(double value) { storeFuzzy(m_parcelAmnt, value); }
void ZReportItem::setFromTicketNumber(QString value) { store(m_fromTicketNumber, value); }
void ZReportItem::setToTicketNumber(QString value) { store(m_toTicketNumber, value); }
void ZReportItem::setZSum(double value) { storeFuzzy(m_zSum, value); }
void ZReportItem::setZNumber(double value) { storeFuzzy(m_zNumber, value); }
void ZReportItem::setIsClosed(bool value) { store(m_isClosed, value); }
void ZReportItem::setCommission(double value) { store(m_commission, value); }
void ZReportItem::setPaymentDate(QDateTime value) { store(m_paymentDate, value); }
void ZReportItem::setCurrentDebt(double value) { storeFuzzy(m_currentDebt, value); }
void ZReportItem::setMaxAllowedDebt(double value) { storeFuzzy(m_maxAllowedDebt, value); }
