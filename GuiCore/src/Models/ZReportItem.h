#pragma once

#include "GuiCoreExport.h"
#include "ListItem.h"
#include "QHashStaticInit.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QVariant>

/// The role table of ZReportItem.
struct GUICORE_EXPORT ZReportItemRolesHandling
{
    /// Role number to the name that QML uses.
    static const rivo::models::QHashStaticInit<int, QByteArray> Z_REPORT_ROLES_HASH_TABLE;
};

/// The summary of one shift: tickets, card sales and parcels, sums and debt. A row of ZReportModel.
/// All amounts are in currency units.
///
/// Setters store and emit dataChanged() once if the value differs; the exceptions are noted. Roles
/// from 258 to 268 are named otherwise than the fields.
class GUICORE_EXPORT ZReportItem : public rivo::models::ListItem
{
    Q_OBJECT

public:
    /// Role numbers; QML uses the names in Z_REPORT_ROLES_HASH_TABLE.
    enum Role {
        IdRole = 257,
        TicketCountDataRole = 258,
        TicketSumDataRole = 259,
        CardSellCountDataRole = 260,
        CardSellAmountDataRole = 261,
        ParcelCountDataRole = 262,
        ParcelAmountDataRole = 263,
        FromTicketDataRole = 264,
        ToTicketDataRole = 265,
        ZSumDataRole = 266,
        ZNumberDataRole = 267,
        IsClosedDataRole = 268,
        CommissionRole = 269,
        PaymentDateRole = 270,
        CurrentDebtRole = 271,
        MaxAllowedDebtRole = 272
    };

    /// A report with counts and identifier -1, amounts 0, empty texts, not closed, an invalid date.
    explicit ZReportItem(QObject* parent = nullptr);

    /// All fields in their order.
    ZReportItem(const int& id, const int& ticketCount, const double& ticketSumAmnt,
                const int& cardSellCount, const double& cardSellAmnt, const int& parcelCount,
                const double& parcelAmnt, const QString& fromTicketNumber,
                const QString& toTicketNumber, const double& zSum, const double& zNumber,
                const bool& isClosed, const double& commission, const QDateTime& paymentDate,
                const double& currentDebt, const double& maxAllowedDebt, QObject* parent);

    ~ZReportItem() override;

    int id() const override; ///< of the caller's choice; need not be unique
    QVariant data(int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int ticketCount() const { return m_ticketCount; }        ///< -1 if not counted
    double ticketSumAmnt() const { return m_ticketSumAmnt; } ///< of all tickets
    int cardSellCount() const { return m_cardSellCount; }    ///< card sales; -1 if not counted
    double cardSellAmnt() const { return m_cardSellAmnt; }   ///< of all card sales
    int parcelCount() const { return m_parcelCount; }        ///< -1 if not counted
    double parcelAmnt() const { return m_parcelAmnt; }
    QString fromTicketNumber() const { return m_fromTicketNumber; } ///< first ticket of the shift
    QString toTicketNumber() const { return m_toTicketNumber; }     ///< last ticket of the shift
    double zSum() const { return m_zSum; }
    double zNumber() const { return m_zNumber; } ///< number of the report
    bool isClosed() const { return m_isClosed; }
    double commission() const { return m_commission; }
    QDateTime paymentDate() const { return m_paymentDate; } ///< invalid if none is known
    double currentDebt() const { return m_currentDebt; }
    double maxAllowedDebt() const { return m_maxAllowedDebt; }

    void setTicketCount(int value);
    void setTicketSumAmnt(double value); ///< compares fuzzily
    void setCardSellCount(int value);
    /// Compares with the ticket sum, not with the stored amount: fuzzily equal to the ticket sum,
    /// it is neither stored nor announced; anything else is both, even the stored amount itself.
    void setCardSellAmnt(double value);
    void setParcelCount(int value);
    void setParcelAmnt(double value); ///< compares fuzzily
    void setFromTicketNumber(QString value);
    void setToTicketNumber(QString value);
    void setZSum(double value);    ///< compares fuzzily
    void setZNumber(double value); ///< compares fuzzily
    void setIsClosed(bool value);
    void setCommission(double value); ///< compares exactly
    void setPaymentDate(QDateTime value);
    void setCurrentDebt(double value);    ///< compares fuzzily
    void setMaxAllowedDebt(double value); ///< compares fuzzily

private:
    int m_id = -1;
    int m_ticketCount = -1;
    double m_ticketSumAmnt = 0.0;
    int m_cardSellCount = -1;
    double m_cardSellAmnt = 0.0;
    int m_parcelCount = -1;
    double m_parcelAmnt = 0.0;
    QString m_fromTicketNumber = QLatin1String("");
    QString m_toTicketNumber = QLatin1String("");
    double m_zSum = 0.0;
    double m_zNumber = 0.0;
    bool m_isClosed = false;
    double m_commission = 0.0;
    QDateTime m_paymentDate;
    double m_currentDebt = 0.0;
    double m_maxAllowedDebt = 0.0;
};
