// What the office says about the cash of drivers.

#include "SalesDesk.h"

#include "Journal.h"
#include "ShiftBook_p.h"

namespace rivo::sales
{

void SalesDesk::setMaxDebt(double maxDebt) { m_shifts->setMaxDebt(maxDebt); }

/// The driver who is signed in did not hand over anything.
bool SalesDesk::takePaidInOffice(const QVector<qint64>& shifts)
{
    if (m_state != Selling || m_journal.fault())
        return false;
    const QVector<ShiftReport> recent = m_journal.recentShifts(0);
    bool isChanged = false;
    m_journal.setDriver(0);
    for (const ShiftReport& each : recent) {
        if (!each.paidAt.isValid() && shifts.contains(each.zNumber))
            isChanged =
                m_shifts->handOver(static_cast<double>(each.zNumber), m_clock(), std::nullopt) ||
                isChanged;
    }
    m_journal.setDriver(m_driver);
    if (isChanged)
        updateRunningShift();
    return !m_journal.fault();
}

} // namespace rivo::sales
