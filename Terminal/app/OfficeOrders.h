#pragma once

#include <Instructions.h>
#include <PublicationMessages.h>

#include <QObject>
#include <QTimer>

namespace rivo::sales
{
class Journal;
class SalesDesk;
} // namespace rivo::sales

namespace rivo::terminal
{

class TakeOver;

/// Lets come into effect what the office publishes about the cash of drivers: limits, and shifts
/// that were paid there. Neither needs a restart; shifts are recorded while nothing is sold.
class OfficeOrders : public QObject
{
    Q_OBJECT

public:
    /// `maxDebt`: the feed's limit, which counts without another one. All outlive this.
    OfficeOrders(TakeOver& takeOver, sales::SalesDesk& desk, sales::Journal& journal,
                 double maxDebt, QObject* parent = nullptr);

    /// Looks for what is valid now. Called every minute, too.
    void look();

signals:
    void inUse(rivo::office::PublicationKind kind, qint64 version); ///< it came into effect

private:
    void lookForLimits(const QDateTime& now);
    void lookForPaidShifts(const QDateTime& now);
    void limit();

    TakeOver& m_takeOver;
    sales::SalesDesk& m_desk;
    sales::Journal& m_journal;
    const double m_maxDebt;
    office::Limits m_limits;
    qint64 m_limitsVersion = 0;
    qint64 m_paidVersion = 0;
    QTimer m_looks;
};

} // namespace rivo::terminal
