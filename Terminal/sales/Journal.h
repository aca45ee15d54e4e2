#pragma once

#include "Records.h"
#include "SealedRecord.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>

namespace rivo::sales
{

class JournalFile;
enum class RecordKind;
struct PruningCut;

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
        Replaced,      ///< it, or a file that belongs to it, is missing, replaced or cut off
        Unreachable    ///< cannot be opened, read or written
    };
    Kind kind = Kind::Unreachable;
    QString detail; ///< the message of the database; for the log, not for the driver
};

/// The sales of one terminal in an SQLite file (write-ahead log, synchronous=FULL), for one
/// program, and one Journal in it, at a time. What a function of this class reports as done is on
/// the disk.
///
/// What happens is a record with its time and the driver: a sale, a ticket on paper or a copy of
/// it, tickets taken back, a float, a closed shift, cash handed over. Records are added, never
/// changed; old ones may be removed, see prune().
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
    /// empty is made, with its first shift numbered `firstZNumber`. An existing one is checked: its
    /// seals, pages, indexes, sums of sales and all figures of shifts, see isCheckedWhole(). One of
    /// an earlier version, from 2 on, is taken over in one transaction. A second call closes what
    /// was open.
    std::optional<JournalFault> open(const QString& file, const Currency& currency,
                                     qint64 firstZNumber);

    /// Whether open() checked all records. It leaves those of closed shifts out if a journal that
    /// was checked is as it was left, by closing it or by a power cut: file and log are what the
    /// signed head says, and no more than the unfinished basket followed.
    bool isCheckedWhole() const;

    /// Opens an existing journal of this version to look into it. Nothing is checked, not a byte of
    /// its files changes, and nothing can be recorded.
    std::optional<JournalFault> openToRead(const QString& file);

    /// For made-up journals: what is recorded from now on may be lost in a power cut.
    bool recordForTrials();

    std::optional<Currency> currency();
    QString head(); ///< "1234-9f86d081884c7d659a2feaa0c55ad015": the last seal

    /// Calls `use` with each record that was not pruned in its order, until it returns false. A
    /// record has the columns of its row, its "seal" in hexadecimal digits if it has one of its
    /// own, and a list for each table that has more about it.
    bool forEachRecord(const std::function<bool(const QJsonObject&)>& use);

    /// The records after number `after` with their seals, in order and without holes, at most
    /// `count`. -1 = from the start of the journal on.
    QVector<SealedRecord> sealedRecords(qint64 after, int count);
    QByteArray publicKey(); ///< whose signatures they have; empty when stopped

    /// What stopped it; nothing while it works. Stopped until it is opened.
    const std::optional<JournalFault>& fault() const;

    // All below are false, empty or nothing when stopped, and stop the journal when they fail.

    // The unfinished basket.
    bool appendToBasket(const Ticket& ticket);
    bool removeFromBasket(int row); ///< counted from 0; a row that is not there is no failure
    bool clearBasket();
    QVector<Ticket> basket();

    /// The driver that the records from now on are of; 0 = no sign-in.
    void setDriver(qint64 number) { m_driver = number; }

    /// Sells `tickets` (at least one) in the running shift, in one transaction that also empties
    /// the unfinished basket. Returns them with their numbers, not printed yet. Nothing, and no
    /// fault, if less is given than is due. `card`: the approved payment that this is the sale of.
    std::optional<QVector<Ticket>> confirmSale(const QVector<Ticket>& tickets,
                                               const Payment& payment, const QDateTime& at,
                                               const std::optional<CardOutcome>& card = {});

    /// Records that a ticket is on paper, once.
    bool markPrinted(qint64 ticketNumber, const QDateTime& at = QDateTime::currentDateTime());

    /// Records that a copy of a ticket is printed.
    bool recordCopy(qint64 ticketNumber, const QDateTime& at);

    /// Tickets that were sold but not printed, in the order of their numbers.
    QVector<Ticket> unprintedTickets();

    /// Sales of the running shift, the newest first: `count` of them, `skip` newer ones left out.
    QVector<PastSale> pastSales(int skip, int count);
    int pastSaleCount(); ///< of the running shift

    /// A sale of the running shift by its number; nothing, and no fault, if there is none.
    std::optional<PastSale> pastSale(qint64 id);
    QVector<PastTicket> ticketsOf(qint64 sale); ///< in the order of their numbers

    /// Tickets that were sold last, in all shifts, the newest first; at most `count`.
    QVector<Ticket> lastTickets(int count);

    /// The sale of the running shift that a ticket is of; 0 if there is none.
    qint64 saleOf(qint64 ticketNumber);

    /// Takes tickets of one sale of the running shift back, for `paidOut`. Returns what is left of
    /// the sale. Nothing, and no fault, if one of them is not such a ticket, or is taken back
    /// already.
    std::optional<PastSale> reverse(qint64 sale, const QVector<qint64>& tickets, ReversalKind kind,
                                    const QString& reason, Minor paidOut, const QDateTime& at,
                                    const std::optional<CardOutcome>& card = {});

    // Payments with cards. One is open at a time: begun, and its outcome not known.

    /// Records that the terminal is about to be asked for the money of a sale, or to give money of
    /// a payment back. Nothing, and no fault, while another payment is open.
    std::optional<CardPayment> beginCharge(Minor amount, const QDateTime& at);
    std::optional<CardPayment> beginReturn(const CardPayment& wanted, const QDateTime& at);

    /// Records how a payment ended that no sale and no reversal follows, or that it is not known.
    bool recordOutcome(const CardOutcome& outcome, const QDateTime& at);

    /// The payment whose outcome is not known; nothing if there is none.
    std::optional<CardPayment> openPayment();

    /// Charges that were approved and are neither a sale nor given back, the oldest first.
    QVector<CardPayment> unbookedCharges();

    std::optional<CardPayment> cardPayment(qint64 id);

    /// The payment of a sale; nothing for one that was made without a terminal.
    std::optional<CardPayment> chargeOf(qint64 sale);
    qint64 saleOfCharge(qint64 payment); ///< 0 if there is none

    /// Whether a transaction of the terminal is the outcome of a payment.
    bool knowsReceipt(const payment::Receipt& receipt);

    /// Whether a charge may be reversed as a whole: nothing of it was given back, and the terminal
    /// has not closed its day since.
    bool isReversible(const CardPayment& payment);

    /// The last closed shift after which the card terminal has to close its day; 0 if there is
    /// none.
    qint64 shiftOfOpenCardDay();

    /// Records that the card terminal is about to close its day after `shift`, and that it did and
    /// reported `total`. Returns the difference to what the journal expects. A day that was closed
    /// without an answer is seen by the next total.
    bool beginCardDay(qint64 shift, const QDateTime& at);
    std::optional<Minor> recordCardDay(qint64 shift, Minor total, const QDateTime& at);

    /// Removes the records of shifts that were closed before `closedBefore`, the oldest first, and
    /// records that, with the number of the last one. All is kept from the first shift on that has
    /// records after number `acknowledged`, or cash that is not handed over; and what the terminal
    /// goes on with: tickets to be printed, payments with cards that are not booked or not in a
    /// closed day of the card terminal, the last payment, and what newer records are about. Removes
    /// at most `mostPrunedAtOnce` records, or one shift. Returns how many; 0 is no failure.
    qint64 prune(qint64 acknowledged, const QDateTime& closedBefore, const QDateTime& at);
    static constexpr int mostPrunedAtOnce = 5000;
    qint64 lastPruned(); ///< the number of the last record that was pruned; 0 if there is none

    /// Records a remark about the clock, in the running shift.
    bool recordClock(ClockRemark remark, qint64 milliseconds, const QDateTime& at);

    /// The time of the last record; invalid if there is none.
    QDateTime lastRecordAt();

    /// Records the float of the running shift; the last one counts.
    bool recordOpeningFloat(Minor amount, const QDateTime& at);

    std::optional<ShiftReport> runningShift();

    /// Closed shifts that were not pruned, the oldest first.
    QVector<ShiftReport> closedShifts();

    /// The newest `count` of them, and all whose cash is not handed over.
    QVector<ShiftReport> recentShifts(int count);
    qint64 firstZNumber(); ///< of all shifts that were not pruned; 0 when stopped

    /// One closed shift; nothing, and no fault, if there is none.
    std::optional<ShiftReport> closedShift(qint64 zNumber);

    /// Closes the running shift and starts the next number. A shift that owes nothing has nothing
    /// to hand over: it is paid at once.
    std::optional<ShiftReport> closeShift(const QDateTime& at);

    /// Records that the cash of a closed shift was handed over, and returns the shift. `counted`:
    /// what was counted; without it, what is due. Nothing, and no fault, if there is no such shift
    /// or it is paid already.
    std::optional<ShiftReport> handOver(qint64 zNumber, const QDateTime& at,
                                        std::optional<Minor> counted = std::nullopt);

private:
    std::optional<qint64> addRecord(RecordKind kind, qint64 shift, const QDateTime& at);
    std::optional<qint64> runningZNumber();
    bool addPrintout(qint64 ticketNumber, bool isCopy, const QDateTime& at);
    QVector<PastSale> readSales(const QString& condition);
    bool addReversal(const PastSale& sale, const QVector<qint64>& tickets, ReversalKind kind,
                     const QString& reason, Minor paidOut, const QDateTime& at, qint64 cardReturn);
    bool addOutcome(const CardOutcome& outcome, const QDateTime& at);
    std::optional<CardPayment> readPayment(const QString& condition);
    std::optional<CardPayment> begin(CardPayment payment, const QDateTime& at);
    std::optional<Minor> cardTotalSince(qint64 record);
    QVector<PruningCut> cutsFor(qint64 acknowledged, const QDateTime& closedBefore);
    bool isNeeded(const PruningCut& cut);
    bool removeUpTo(const PruningCut& cut, const QDateTime& at);
    QVector<ShiftReport> readClosedShifts(const QString& condition);

    std::unique_ptr<JournalFile> m_file;
    qint64 m_driver = 0;
};

} // namespace rivo::sales
