#include "ShiftBook_p.h"

#include "Journal.h"

#include <ZReportItem.h>
#include <ZReportModel.h>

#include <algorithm>

namespace rivo::sales
{

namespace
{

/// A year with a shift a day; a list of all would take a second after thirty years of three a day.
constexpr int shiftsShown = 400;

} // namespace

ShiftBook::ShiftBook(ZReportModel& reports, Journal& journal, const Currency& currency)
    : m_reports(reports), m_journal(journal), m_currency(currency)
{
}

void ShiftBook::show(double maxDebt)
{
    m_maxDebt = maxDebt;
    const auto running = m_journal.runningShift();
    if (!running)
        return;
    QVector<ShiftReport> closed = m_journal.recentShifts(shiftsShown);
    std::reverse(closed.begin(), closed.end());
    m_firstZ = m_journal.firstZNumber();
    for (const ShiftReport& report : qAsConst(closed)) {
        if (!report.paidAt.isValid())
            m_owed += report.due();
    }
    addReport(*running);
    for (const ShiftReport& report : qAsConst(closed))
        addReport(report);
}

void ShiftBook::setMaxDebt(double maxDebt)
{
    m_maxDebt = maxDebt;
    for (int row = 0; row < m_reports.rowCount(); ++row) {
        if (keeps(reportAt(row)->zNumber()))
            reportAt(row)->setMaxAllowedDebt(maxDebt);
    }
}

/// What the driver carries: of the running shift, the cash of the unpaid shifts before it too.
Minor ShiftBook::debtOf(const ShiftReport& report) const
{
    if (report.paidAt.isValid())
        return 0;
    return report.closedAt.isValid() ? report.due() : report.due() + m_owed;
}

void ShiftBook::addReport(const ShiftReport& report)
{
    const double takings = m_currency.toUnits(report.takings());
    m_reports.addItem(
        static_cast<int>(report.zNumber), report.ticketCount, m_currency.toUnits(report.ticketSum),
        report.cardCount - report.reversedCardCount, m_currency.toUnits(report.cardTakings()), 0,
        0.0, ticketNumberText(report.firstTicket), ticketNumberText(report.lastTicket), takings,
        static_cast<double>(report.zNumber), report.closedAt.isValid(), 0.0, report.paidAt,
        m_currency.toUnits(debtOf(report)), m_maxDebt);
}

bool ShiftBook::update()
{
    const auto report = m_journal.runningShift();
    if (!report)
        return false;
    ZReportItem* const item = reportAt(0);
    if (item == nullptr)
        return true;
    const double cardSum = m_currency.toUnits(report->cardTakings());
    item->setTicketCount(report->ticketCount);
    // An amount equal to the ticket sum of the moment is not taken: offered before and after the
    // ticket sum changes, one of the two is.
    item->setCardSellAmnt(cardSum);
    item->setTicketSumAmnt(m_currency.toUnits(report->ticketSum));
    item->setCardSellAmnt(cardSum);
    item->setCardSellCount(report->cardCount - report->reversedCardCount);
    item->setFromTicketNumber(ticketNumberText(report->firstTicket));
    item->setToTicketNumber(ticketNumberText(report->lastTicket));
    item->setZSum(m_currency.toUnits(report->takings()));
    item->setCurrentDebt(m_currency.toUnits(debtOf(*report)));
    return true;
}

std::optional<qint64> ShiftBook::close(const QDateTime& at)
{
    const auto report = m_journal.closeShift(at);
    if (!report)
        return std::nullopt;
    if (ZReportItem* const item = reportAt(0)) {
        item->setPaymentDate(report->paidAt);
        item->setCurrentDebt(m_currency.toUnits(debtOf(*report)));
        item->setIsClosed(true); // last: it is listed with what it owes
    }
    m_owed += debtOf(*report);
    ShiftReport next;
    next.zNumber = report->zNumber + 1;
    addReport(next);
    m_reports.insertRow(0, m_reports.takeRow(m_reports.rowCount() - 1));
    return report->zNumber;
}

void ShiftBook::removePruned()
{
    const qint64 first = m_journal.firstZNumber();
    for (int row = m_reports.rowCount() - 1; row > 0; --row) {
        const double zNumber = reportAt(row)->zNumber();
        if (keeps(zNumber) && zNumber < static_cast<double>(first))
            m_reports.removeRow(row);
    }
    m_firstZ = first;
}

bool ShiftBook::keeps(double zNumber) const
{
    return m_firstZ > 0 && zNumber >= static_cast<double>(m_firstZ);
}

ZReportItem* ShiftBook::reportAt(int row) const
{
    return qobject_cast<ZReportItem*>(m_reports.itemFromRow(row));
}

ZReportItem* ShiftBook::closedReport(double zNumber) const
{
    for (int row = 1; row < m_reports.rowCount(); ++row) {
        if (reportAt(row)->zNumber() == zNumber)
            return reportAt(row);
    }
    return nullptr;
}

bool ShiftBook::handOver(double zNumber, const QDateTime& at, std::optional<Minor> counted)
{
    ZReportItem* const item = keeps(zNumber) ? closedReport(zNumber) : nullptr;
    if (item == nullptr)
        return false;
    const auto report = m_journal.handOver(static_cast<qint64>(zNumber), at, counted);
    if (!report)
        return false;
    m_owed -= report->due();
    item->setPaymentDate(report->paidAt);
    item->setCurrentDebt(m_currency.toUnits(debtOf(*report)));
    return true;
}

} // namespace rivo::sales
