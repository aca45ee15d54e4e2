#include "ZReportModel.h"

#include "ZReportItem.h"

#include <core/Logging.h>

ZReportModel::ZReportModel(QObject* parent) : ListModel(new ZReportItem(parent), parent) {}

ZReportModel::~ZReportModel() = default;

void ZReportModel::addItem(const qint32& id, const qint32& ticketCount, const double& ticketSumAmnt,
                           const qint32& cardSellCount, const double& cardSellAmnt,
                           const qint32& parcelCount, const double& parcelAmnt,
                           const QString& fromTicketNumber, const QString& toTicketNumber,
                           const double& zSum, const double& zNumber, const bool& isClosed,
                           const double& commission, const QDateTime& paymentDate,
                           const double& currentDebt, const double& maxAllowedDebt)
{
    // The misspelt label is what log readers search for.
    LOG(INFO) << "id: " << id << " currentDept: " << currentDebt
              << " maxAllowedDebt: " << maxAllowedDebt;
    appendRow(new ZReportItem(id, ticketCount, ticketSumAmnt, cardSellCount, cardSellAmnt,
                              parcelCount, parcelAmnt, fromTicketNumber, toTicketNumber, zSum,
                              zNumber, isClosed, commission, paymentDate, currentDebt,
                              maxAllowedDebt, this));
}
