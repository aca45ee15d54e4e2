#pragma once

#include "CardDesk.h"
#include "Journal.h"
#include "Records.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>

class FareProductsModel;
class PassengerTypeItem;
class PassengerTypesModel;
class ShoppingBasketModel;
class ZReportModel;

namespace rivo::feed
{
class TripContext;
}

namespace rivo::sales
{

class PrintQueue;
class ShiftBook;
class TicketPrinter;

/// The models that show a sale; all outlive the desk. Only the desk adds, removes and orders rows
/// of the basket, and it reads none of them: the tickets are its own.
struct SalesModels
{
    PassengerTypesModel& grid;
    ShoppingBasketModel& basket;
    FareProductsModel& fareProducts;
    ZReportModel& zReports;
};

/// What the driver does with tickets: tiles into the basket, payment, printing, past sales, shifts.
/// Amounts are numbers in minor units unless their name ends in Text.
///
/// The journal comes first: a line is in the basket, a sale confirmed and a shift closed when the
/// disk has it, and not before the screen may say so. Refused calls return false, change nothing
/// and emit refused() with the reason in words.
class SalesDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(rivo::sales::CardDesk* card READ card CONSTANT)
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString obstacle READ obstacle NOTIFY obstacleChanged)
    Q_PROPERTY(double total READ total NOTIFY totalChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY totalChanged)
    Q_PROPERTY(double due READ due NOTIFY totalChanged)
    Q_PROPERTY(QString dueText READ dueText NOTIFY totalChanged)
    Q_PROPERTY(QVariantMap lastSale READ lastSale NOTIFY saleConfirmed)
    Q_PROPERTY(bool mayRepeat READ mayRepeat NOTIFY saleConfirmed)
    Q_PROPERTY(double driver READ driver NOTIFY driverChanged)
    Q_PROPERTY(QString driverName READ driverName NOTIFY driverChanged)
    Q_PROPERTY(bool locked READ isLocked NOTIFY lockedChanged)
    Q_PROPERTY(int ticketsInDoubt READ ticketsInDoubt NOTIFY ticketsInDoubtChanged)
    Q_PROPERTY(QString firstTicketInDoubt READ firstTicketInDoubt NOTIFY ticketsInDoubtChanged)
    Q_PROPERTY(QVariantList interruptedSale READ interruptedSale NOTIFY ticketsInDoubtChanged)

public:
    enum State {
        Selling,           ///< the basket may be changed and paid
        Printing,          ///< paid; tickets are being printed one by one
        WaitingForPrinter, ///< paid; the printer has to recover first
        Interrupted,       ///< paid, and it is not known whether a ticket is out
        Copying,           ///< a copy or a report is being printed; the basket stays as it is
        AwaitingCard       ///< a card is charged, or gets money back; the basket stays as it is
    };
    Q_ENUM(State)

    enum Payment {
        Cash = static_cast<int>(PayMethod::Cash),
        Card = static_cast<int>(PayMethod::Card)
    };
    Q_ENUM(Payment)

    /// More than any sale has; keeps a stuck touch screen from filling the journal.
    static constexpr int mostTickets = 200;

    /// Seconds after which the last sale cannot be void any more.
    static constexpr int voidLimit = 300;

    /// Letters of a reason that are kept.
    static constexpr int longestReason = 200;

    /// What a zone is called on tickets.
    using ZoneName = std::function<QString(int zone)>;

    /// What else is on the paper of a ticket: sets the texts that the desk does not know.
    using TicketDetails = std::function<void(Ticket& ticket)>;

    /// `journal` as it was opened, with or without a fault. `trip` is the trip context of every
    /// ticket; it outlives the desk.
    SalesDesk(const SalesModels& models, Journal& journal, TicketPrinter& printer,
              const Currency& currency, ZoneName zoneName, feed::TripContext& trip,
              QObject* parent = nullptr);
    ~SalesDesk() override;

    /// Shows what the journal has: the shifts, and the basket as it was left, or the tickets that
    /// were paid but not noted as printed. Of these only the driver knows whether the paper
    /// is out: nothing is printed before he says so (state Interrupted). The running shift becomes
    /// the first row of the Z report model, which must be empty. Call once, with the grid laid out.
    ///
    /// `maxDebt`: most cash that a driver should carry, in currency units; 0 = no limit.
    void restore(double maxDebt);

    /// Another limit, as restore() has it; after restore().
    void setMaxDebt(double maxDebt);

    /// Records that the office has the cash of closed shifts, as a hand-over without a driver of
    /// what is due. What is paid already, or no closed shift, is left alone. False, with nothing or
    /// a part recorded, while a sale is not finished or if the journal fails: call again.
    bool takePaidInOffice(const QVector<qint64>& shifts);

    /// Lets the journal remove records of shifts that were closed more than `keepDays` days ago,
    /// and their rows of the Z reports, see Journal::prune(). Returns how many; nothing while
    /// something is being sold or printed, or if the journal fails: call again.
    std::optional<qint64> pruneJournal(qint64 acknowledged, int keepDays);

    /// The clock that sales and all other records have their time of; at first that of the system.
    void setClock(const std::function<QDateTime()>& clock);

    /// What is done with cards. Without a terminal set there, cards are not taken.
    CardDesk* card() const { return m_card; }

    /// Called for each ticket that is put into the basket.
    void setTicketDetails(TicketDetails details) { m_details = std::move(details); }

    /// The driver of all records from now on; 0 and an empty name without a sign-in. The basket
    /// stays.
    void setDriver(qint64 number, const QString& name);
    double driver() const { return static_cast<double>(m_driver); }
    QString driverName() const { return m_driverName; }

    /// While it is locked the desk refuses everything; tickets that are paid are still printed.
    void setLocked(bool isLocked);
    bool isLocked() const { return m_isLocked; }

    State state() const { return m_state; }
    /// What is wrong with the journal or the printer, in words for the driver; empty if nothing is.
    QString obstacle() const;
    double total() const; ///< of the basket, in minor units
    QString totalText() const;
    double due() const; ///< what the basket costs in cash, which is rounded
    QString dueText() const;

    /// The last sale since the start of the program, as pastSale() has it without its tickets;
    /// empty before. It stays until the next one.
    QVariantMap lastSale() const { return m_lastSale; }

    /// Tickets that may be out or not; 0 in every state but Interrupted. After a stop of the
    /// terminal all that were not noted as printed, after a fault of the printer a single one.
    int ticketsInDoubt() const;
    /// Number of the first of them, as it is on the paper; empty if there is none.
    QString firstTicketInDoubt() const;

    /// The tickets of a sale that was interrupted and were not out at the start of the program or
    /// when the printer failed, until all are printed: maps of numberText, product, passenger,
    /// priceText, isOut and isInDoubt. Empty otherwise.
    QVariantList interruptedSale() const;

    /// Zones of the stop where tickets begin that are added from now on; none = that of the tile.
    void setBoardingZones(const QVector<int>& zones) { m_boardingZones = zones; }

    /// The zone where a ticket of the tile begins that is sold now.
    int originOf(const PassengerTypeItem& tile) const;

    /// Of the basket, or what is being printed.
    const QVector<Ticket>& tickets() const { return m_tickets; }

    /// Counts the basket's tickets on the tiles; call when the grid was laid out anew.
    void showBadges();

    /// Puts a ticket of the grid's tile `row` into the basket; refused for placeholders and what
    /// has expired.
    Q_INVOKABLE bool add(int row);
    Q_INVOKABLE bool remove(int row); ///< line `row` of the basket
    Q_INVOKABLE bool clear();

    /// Puts `count` tickets of tile `row` into the basket, or none. At least one.
    Q_INVOKABLE bool addSeveral(int row, int count);
    /// The same of the tile that line `line` of the basket is of; refused if there is none any
    /// more.
    Q_INVOKABLE bool addLike(int line, int count);

    /// Puts tickets like those of the last sale into the basket, as they are sold now; refused if
    /// one of them is not sold any more.
    Q_INVOKABLE bool addLastSale();
    bool mayRepeat() const { return !m_lastTickets.isEmpty(); } ///< whether there is a last sale

    /// Sells the basket and starts printing; saleConfirmed() when it is in the journal. For cash,
    /// exactly what is due is given. With a card, true says that the card terminal is asked: the
    /// sale is confirmed when it approves, refused() says why it did not.
    Q_INVOKABLE bool pay(rivo::sales::SalesDesk::Payment payment);

    /// The same for cash of which `given` is given; refused if that is less than due().
    Q_INVOKABLE bool payCash(double given);

    /// Amounts that may be given for the basket, for buttons: {amount, text, shortText}, the
    /// exact one first.
    Q_INVOKABLE QVariantList quickAmounts() const;

    /// What payCash(given) would give back: {isEnough, change, changeText, pieces}; `pieces` are
    /// the texts of notes and coins, the largest first.
    Q_INVOKABLE QVariantMap changeFor(double given) const;

    Q_INVOKABLE QString amountText(double amount) const;

    /// The first ticket in doubt is out: it is noted as printed, and not printed again. After the
    /// last one what is left of the sale is printed.
    Q_INVOKABLE bool confirmTicketInDoubt();

    /// Prints all tickets in doubt, and what is left of the sale.
    Q_INVOKABLE bool printTicketsInDoubt();

    /// Sales of the running shift, the newest first: `count` of them, `skip` newer ones left out.
    /// Each is a map: id, at (time), driver, isCash, firstTicket and lastTicket (as on the paper),
    /// ticketCount, total, rounding, paid, given, change, reversedCount, paidOut, isReversed,
    /// mayVoid, mayRefund, and the amounts as texts: totalText, paidText, givenText, changeText,
    /// paidOutText.
    Q_INVOKABLE QVariantList pastSales(int skip, int count);
    Q_INVOKABLE int pastSaleCount();

    /// One of them, with a list `tickets` more: number, numberText, product, passenger, origin,
    /// destination, price, priceText, copies, isReversed. Empty if there is none.
    Q_INVOKABLE QVariantMap pastSale(double sale);

    /// Prints a ticket of the running shift once more, marked as a copy; copyPrinted() when it is
    /// out. The copy is in the journal before it is on paper.
    Q_INVOKABLE bool printCopy(double ticketNumber);

    /// Prints the report of a closed shift, or with 0 the figures of the running one.
    /// reportPrinted() when it is out.
    Q_INVOKABLE bool printReport(double zNumber);

    /// The paper of a ticket of the running shift, as it was printed last; nothing if there is
    /// none.
    std::optional<PrintJob> paperOf(qint64 ticketNumber);

    /// The same for the report of a closed shift, or with 0 of the running one.
    std::optional<PrintJob> paperOfReport(double zNumber);

    // What was paid with a card goes back to the card: true says that the card terminal is asked,
    // as for pay(), and saleReversed() follows when it approves.

    /// Takes the last sale of the running shift back as a mistake; refused when it is older than
    /// voidLimit or something of it was taken back already.
    Q_INVOKABLE bool voidLastSale();

    /// Gives the money of a sale of the running shift back, as far as that was not done, or of one
    /// ticket. The reason must not be empty. Cash is rounded so that all parts of a sale together
    /// are what was paid for it.
    Q_INVOKABLE bool refundSale(double sale, const QString& reason);
    Q_INVOKABLE bool refundTicket(double ticketNumber, const QString& reason);

    /// Records the change that the driver begins the shift with, which is owed like cash. May be
    /// corrected until something is sold, and given later once.
    Q_INVOKABLE bool setOpeningFloat(double amount);

    /// The figures of the running shift at this moment, and of a closed one: zNumber, driver, at
    /// (of the closing; now for the running one), paidAt, ticketCount, ticketSum, cardCount,
    /// cardSum, firstTicket, lastTicket, voidCount, voidSum, refundCount, refundSum,
    /// reversedCardSum, rounding, copyCount, openingFloat, takings, cash, due, counted, difference,
    /// isCardDayEnded, cardDayTotal, cardDayDifference (of the card terminal's day to the journal).
    /// Empty if there is no such shift.
    Q_INVOKABLE QVariantMap xReport();
    Q_INVOKABLE QVariantMap zReport(double zNumber);

    /// Closes the running shift; refused while a basket is open. The next shift starts at once. The
    /// cash of the closed one is owed until it is handed over.
    Q_INVOKABLE bool closeShift();

    /// Notes that the cash of a closed shift was handed over: its report is paid. Refused for
    /// shifts that run, are paid, or are not of this terminal's journal.
    Q_INVOKABLE bool handOver(double zNumber);

    /// The same with the amount that was counted, which may differ from what is due.
    Q_INVOKABLE bool handOverCounted(double zNumber, double counted);

    /// Whether a shift is one of this terminal's journal, by its number; others are paid elsewhere.
    Q_INVOKABLE bool keepsShift(double zNumber) const;

signals:
    void stateChanged();
    void obstacleChanged();
    void totalChanged();
    void refused(const QString& reason);
    void saleConfirmed(int tickets);
    void saleFinished();
    void shiftClosed(double zNumber);
    void shiftPaid(double zNumber);
    void ticketsInDoubtChanged();
    void saleReversed(double sale);
    void copyPrinted(double ticketNumber);
    void reportPrinted(double zNumber);
    void openingFloatChanged(double amount);
    void driverChanged();
    void lockedChanged();

private:
    bool refuse(const QString& reason);
    bool mayChangeBasket();
    void setState(State state);
    Ticket ticketOf(const PassengerTypeItem& tile) const;
    int tileLike(const Ticket& ticket) const;
    bool addAll(const QVector<int>& rows);
    bool refuseByJournal();
    void show(const Ticket& ticket);
    void emptyBasket();
    void basketChanged();
    bool sell(const rivo::sales::Payment& payment);
    bool book(const rivo::sales::Payment& payment, const std::optional<CardOutcome>& card = {});
    void followCards();
    void restoreCards();
    bool chargeCard();
    void bookCharge(const CardPayment& payment, const CardOutcome& outcome);
    void bookReturn(const CardPayment& payment, const CardOutcome& outcome);
    bool returnToCard(const CardPayment& wanted);
    void endAwaiting();
    bool mayAct();
    bool reverse(const PastSale& sale, const QVector<qint64>& tickets, ReversalKind kind,
                 const QString& reason);
    bool refund(const PastSale& sale, const QVector<qint64>& tickets, const QString& reason);
    bool handOver(double zNumber, std::optional<Minor> counted);
    bool mayVoid(const PastSale& sale, qint64 newest) const;
    QVariantMap mapOf(const PastSale& sale, qint64 newest) const;
    bool mayPrint();
    bool printExtra(const PrintJob& job);
    void endExtra(bool isPrinted);
    std::optional<PastTicket> pastTicket(qint64 number);
    void printNext();
    void ticketPrinted();
    void ticketFailed();
    void ticketBecameDoubtful();
    void finishSale();
    void updateRunningShift();

    SalesModels m_models;
    Journal& m_journal;
    TicketPrinter& m_printer;
    Currency m_currency;
    ZoneName m_zoneName;
    feed::TripContext& m_trip;
    QVector<int> m_boardingZones;
    State m_state = Selling;
    QVector<Ticket> m_tickets; ///< of the basket; its rows only show them
    Minor m_total = 0;
    TicketDetails m_details;
    QVariantMap m_lastSale;
    QVector<Ticket> m_lastTickets;
    std::function<QDateTime()> m_clock = &QDateTime::currentDateTime;
    qint64 m_driver = 0;
    QString m_driverName;
    bool m_isLocked = false;
    bool m_wasInterrupted = false; ///< the sale whose tickets are printed
    int m_ticketsInDoubt = 0;      ///< in state Interrupted; the first ones of m_toPrint
    bool m_isDrawerDue = false;    ///< a sale was paid in cash, and nothing of it is out yet
    PrintJob m_extraJob;           ///< what is being printed in state Copying
    std::unique_ptr<PrintQueue> m_toPrint;
    std::unique_ptr<ShiftBook> m_shifts;
    CardDesk* m_card; ///< a child, also for QML
};

} // namespace rivo::sales
