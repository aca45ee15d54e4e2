#include "TrialSales.h"

#include <QRandomGenerator>

namespace
{

using namespace rivo::sales;

class Trial
{
public:
    Trial(Journal& journal, quint32 seed) : m_journal(journal), m_random(seed)
    {
        const QDateTime last = journal.lastRecordAt();
        m_now = last.isValid() ? last : QDateTime(QDate(2026, 1, 1), QTime(5, 0), Qt::UTC);
    }

    bool open() { return m_journal.recordOpeningFloat(5000, later()); }

    bool sell()
    {
        QVector<Ticket> tickets;
        const int count = 1 + m_random.bounded(3);
        for (int i = 0; i < count; ++i)
            tickets.append(ticket());
        const bool isByCard = m_random.bounded(4) == 0;
        const auto sold =
            m_journal.confirmSale(tickets, {isByCard ? PayMethod::Card : PayMethod::Cash}, later());
        return sold && print(*sold) && takeBack(sold->first().number);
    }

    bool close()
    {
        const auto closed = m_journal.closeShift(later());
        return closed && (closed->due() == 0 || m_journal.handOver(closed->zNumber, later()));
    }

private:
    Ticket ticket()
    {
        static const QStringList names{QStringLiteral("Adult"), QStringLiteral("Child"),
                                       QStringLiteral("Senior"), QStringLiteral("Bicycle")};
        Ticket made;
        made.passengerTypeId = 1 + m_random.bounded(names.size());
        made.fareProductId = 11;
        made.description = names.at(made.passengerTypeId - 1);
        made.fareProductName = QStringLiteral("Single");
        made.price = 5 * (10 + m_random.bounded(90));
        made.fromStopGroupId = 1 + m_random.bounded(9);
        made.toStopGroupId = 1 + m_random.bounded(9);
        return made;
    }

    bool print(const QVector<Ticket>& tickets)
    {
        return std::all_of(tickets.begin(), tickets.end(), [this](const Ticket& each) {
            return m_journal.markPrinted(each.number, later());
        });
    }

    /// One sale of fifty.
    bool takeBack(qint64 ticket)
    {
        if (m_random.bounded(50) != 0)
            return true;
        const qint64 sale = m_journal.saleOf(ticket);
        const auto sold = m_journal.pastSale(sale);
        const QVector<PastTicket> tickets = m_journal.ticketsOf(sale);
        return sold && !tickets.isEmpty() &&
               m_journal.reverse(sale, {ticket}, ReversalKind::Refund, QStringLiteral("trial"),
                                 tickets.first().ticket.price, later());
    }

    QDateTime later() { return m_now = m_now.addSecs(1 + m_random.bounded(30)); }

    Journal& m_journal;
    QRandomGenerator m_random;
    QDateTime m_now;
};

} // namespace

bool sellForTrial(Journal& journal, qint64 sales, quint32 seed, qint64 perShift)
{
    Trial trial(journal, seed);
    for (qint64 sale = 0; sale < sales; ++sale) {
        const bool isFirst = sale % perShift == 0;
        const bool isLast = sale % perShift == perShift - 1 || sale == sales - 1;
        if ((isFirst && !trial.open()) || !trial.sell() || (isLast && !trial.close()))
            return false;
    }
    return true;
}

bool pruneForTrial(Journal& journal, int keptShifts)
{
    const QVector<ShiftReport> shifts = journal.closedShifts();
    if (shifts.size() <= keptShifts)
        return !journal.fault();
    const QDateTime firstKept = shifts.at(shifts.size() - keptShifts).closedAt;
    while (journal.prune(std::numeric_limits<qint64>::max(), firstKept, shifts.last().closedAt) > 0)
        ;
    return !journal.fault();
}
