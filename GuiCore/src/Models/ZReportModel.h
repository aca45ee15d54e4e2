#pragma once

#include "GuiCoreExport.h"
#include "ListModel.h"

#include <QDateTime>
#include <QString>

/// The Z reports of the terminal, one ZReportItem row per shift.
class GUICORE_EXPORT ZReportModel : public rivo::models::ListModel
{
    Q_OBJECT

public:
    /// A prototype row becomes a child of `parent`, which must outlive the model's last use;
    /// without a parent the prototype is never freed.
    explicit ZReportModel(QObject* parent = nullptr);
    ~ZReportModel() override;

    /// Appends one report, a child of this model. Before that, always, writes its id and debts to
    /// the log (logger "default", Info). The id need not be unique; nothing is checked. Amounts
    /// are in currency units.
    void addItem(const qint32& id, const qint32& ticketCount, const double& ticketSumAmnt,
                 const qint32& cardSellCount, const double& cardSellAmnt, const qint32& parcelCount,
                 const double& parcelAmnt, const QString& fromTicketNumber,
                 const QString& toTicketNumber, const double& zSum, const double& zNumber,
                 const bool& isClosed, const double& commission, const QDateTime& paymentDate,
                 const double& currentDebt, const double& maxAllowedDebt);
};
