// What the office says about the cash of drivers, and about records that it has.

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

std::optional<qint64> SalesDesk::pruneJournal(qint64 acknowledged, int keepDays)
{
    if (m_state != Selling || !m_tickets.isEmpty() || m_journal.fault())
        return std::nullopt;
    const QDateTime now = m_clock();
    m_journal.setDriver(0);
    const qint64 pruned = m_journal.prune(acknowledged, now.addDays(-keepDays), now);
    m_journal.setDriver(m_driver);
    if (m_journal.fault()) {
        refuseByJournal();
        return std::nullopt;
    }
    if (pruned > 0)
        m_shifts->removePruned();
    return pruned;
}

} // namespace rivo::sales
