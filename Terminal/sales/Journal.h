#pragma once

#include "Records.h"

#include <QDateTime>
#include <QString>
#include <QVector>

#include <memory>
#include <optional>

namespace rivo::sales
{

class JournalFile;

/// Why the journal cannot be used.
struct JournalFault
{
    enum class Kind {
        Locked,        ///< another program has it open
        Full,          ///< no space left
        Damaged,       ///< its content is broken
        Foreign,       ///< not a journal of this program
        OtherVersion,  ///< kept by a version that this one does not understand
        OtherCurrency, ///< kept in other money
        Unreachable    ///< cannot be opened, read or written
    };
    Kind kind = Kind::Unreachable;
    QString detail; ///< what the database says; for the log, not for the driver
};

/// The sales of one terminal in an SQLite file (write-ahead log, synchronous=FULL), for one
/// program, and one Journal in it, at a time. What a function of this class reports as done is on
/// the disk.
///
/// Every write is one transaction: after a power cut it is there as a whole or not at all. The
/// first fault ends all writing until open() succeeds again: what is on the disk at that moment,
/// write-ahead log included, stays byte for byte. Nothing but transactions ever changes a file that
/// exists.
class Journal
{
public:
    Journal();
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// Opens `file` and returns what is wrong; nothing if it can be used. One that is missing or
    /// empty is made, with its first shift numbered
    /// `firstZNumber`. An existing one is checked from end to end: pages, indexes, sums of sales
    /// and all figures of shifts. A second call closes what was open.
    std::optional<JournalFault> open(const QString& file, const Currency& currency,
                                     qint64 firstZNumber);

    /// What stopped it; nothing while it works. Stopped until it is opened.
    const std::optional<JournalFault>& fault() const;

    // All below are false, empty or nothing when stopped, and stop the journal when they fail.

    // The unfinished basket.
    bool appendToBasket(const Ticket& ticket);
    bool removeFromBasket(int row); ///< counted from 0; a row that is not there is no failure
    bool clearBasket();
    QVector<Ticket> basket();

    /// Sells `tickets` (at least one) in the running shift, in one transaction that also empties
    /// the unfinished basket. Returns them with their numbers, not printed yet.
    std::optional<QVector<Ticket>> confirmSale(const QVector<Ticket>& tickets, PayMethod method,
                                               const QDateTime& at);

    bool markPrinted(qint64 ticketNumber);

    /// Tickets that were sold but not printed, in the order of their numbers.
    QVector<Ticket> unprintedTickets();

    std::optional<ShiftReport> runningShift();

    /// Closed shifts, the oldest first.
    QVector<ShiftReport> closedShifts();

    /// Closes the running shift and starts the next number. A shift without cash has nothing to
    /// hand over: it is paid at once.
    std::optional<ShiftReport> closeShift(const QDateTime& at);

    /// Notes that the cash of a closed shift was handed over, and returns the shift. Nothing, and
    /// no fault, if there is no such shift or it is paid already.
    std::optional<ShiftReport> handOver(qint64 zNumber, const QDateTime& at);

private:
    std::unique_ptr<JournalFile> m_file;
};

} // namespace rivo::sales
