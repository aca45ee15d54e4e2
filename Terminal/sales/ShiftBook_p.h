#pragma once

#include "Currency.h"
#include "Records.h"

#include <QDateTime>

#include <optional>

class ZReportItem;
class ZReportModel;

namespace rivo::sales
{

class Journal;

/// The newest shifts of the journal, and all that are not paid, as rows of the Z report model, the
/// running one first, and what the driver owes for them. Tickets and their sum are what was sold;
/// the sum of the report and that of cards are less what was given back.
class ShiftBook
{
public:
    /// Both outlive the book.
    ShiftBook(ZReportModel& reports, Journal& journal, const Currency& currency);

    /// Fills the model, which must be empty; it stays so without a journal. `maxDebt`: see
    /// SalesDesk::restore().
    void show(double maxDebt);

    /// Shows another limit with all shifts.
    void setMaxDebt(double maxDebt);

    /// Brings the row of the running shift up to date. False if the journal failed.
    bool update();

    /// Closes the running shift and starts the next one, which becomes the first row. Returns the
    /// number of the closed one; nothing if the journal failed.
    std::optional<qint64> close(const QDateTime& at);

    /// Notes that the cash of a closed shift was handed over; the row of the running shift is left
    /// to update(). False if there is none to hand over, or the journal failed.
    bool handOver(double zNumber, const QDateTime& at, std::optional<Minor> counted);

    /// Removes the rows of shifts that the journal pruned.
    void removePruned();

    /// Whether the shift is one of the journal's.
    bool keeps(double zNumber) const;

private:
    void addReport(const ShiftReport& report);
    Minor debtOf(const ShiftReport& report) const;
    ZReportItem* reportAt(int row) const;
    ZReportItem* closedReport(double zNumber) const;

    ZReportModel& m_reports;
    Journal& m_journal;
    const Currency m_currency;
    double m_maxDebt = 0.0;
    Minor m_owed = 0;    ///< cash of closed shifts that was not handed over
    qint64 m_firstZ = 0; ///< of the journal's first shift; 0 without a journal
};

} // namespace rivo::sales
