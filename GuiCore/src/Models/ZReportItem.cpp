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

namespace
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) int instanceCount = 0;
} // namespace

ZReportItem::ZReportItem(QObject* parent) : ListItem(parent) { ++instanceCount; }

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
    ++instanceCount;
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

void ZReportItem::setTicketCount(int ticketCount) { store(m_ticketCount, ticketCount); }
void ZReportItem::setTicketSumAmnt(double ticketSumAmnt)
{
    storeFuzzy(m_ticketSumAmnt, ticketSumAmnt);
}
void ZReportItem::setCardSellCount(int cardSellCount) { store(m_cardSellCount, cardSellCount); }
void ZReportItem::setCardSellAmnt(double cardSellAmnt)
{
    if (fuzzilyEqual(m_ticketSumAmnt, cardSellAmnt))
        return;
    m_cardSellAmnt = cardSellAmnt;
    emit dataChanged();
}
void ZReportItem::setParcelCount(int parcelCount) { store(m_parcelCount, parcelCount); }
void ZReportItem::setParcelAmnt(double parcelAmnt) { storeFuzzy(m_parcelAmnt, parcelAmnt); }
void ZReportItem::setFromTicketNumber(QString fromTicketNumber)
{
    store(m_fromTicketNumber, fromTicketNumber);
}
void ZReportItem::setToTicketNumber(QString toTicketNumber)
{
    store(m_toTicketNumber, toTicketNumber);
}
void ZReportItem::setZSum(double zSum) { storeFuzzy(m_zSum, zSum); }
void ZReportItem::setZNumber(double zNumber) { storeFuzzy(m_zNumber, zNumber); }
void ZReportItem::setIsClosed(bool isClosed) { store(m_isClosed, isClosed); }
void ZReportItem::setCommission(double commission) { store(m_commission, commission); }
void ZReportItem::setPaymentDate(QDateTime paymentDate) { store(m_paymentDate, paymentDate); }
void ZReportItem::setCurrentDebt(double currentDebt) { storeFuzzy(m_currentDebt, currentDebt); }
void ZReportItem::setMaxAllowedDebt(double maxAllowedDebt)
{
    storeFuzzy(m_maxAllowedDebt, maxAllowedDebt);
}
