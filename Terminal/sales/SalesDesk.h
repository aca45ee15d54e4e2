#pragma once

#include "Journal.h"
#include "Records.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>

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
class SimulatedPrinter;

/// The models that show a sale; all outlive the desk. Only the desk adds, removes and orders rows
/// of the basket, and it reads none of them: the tickets are its own.
struct SalesModels
{
    PassengerTypesModel& grid;
    ShoppingBasketModel& basket;
    FareProductsModel& fareProducts;
    ZReportModel& zReports;
};

/// What the driver does with tickets: tiles into the basket, payment, printing, shifts.
///
/// The journal comes first: a line is in the basket, a sale confirmed and a shift closed when the
/// disk has it, and not before the screen may say so. Refused calls return false, change nothing
/// and emit refused() with the reason in words.
class SalesDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString obstacle READ obstacle NOTIFY obstacleChanged)
    Q_PROPERTY(double total READ total NOTIFY totalChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY totalChanged)
    Q_PROPERTY(int ticketsInDoubt READ ticketsInDoubt NOTIFY ticketsInDoubtChanged)
    Q_PROPERTY(QString firstTicketInDoubt READ firstTicketInDoubt NOTIFY ticketsInDoubtChanged)

public:
    enum State {
        Selling,           ///< the basket may be changed and paid
        Printing,          ///< paid; tickets are being printed one by one
        WaitingForPrinter, ///< paid; the printer has to recover first
        Interrupted        ///< paid, and the terminal stopped before all was noted as printed
    };
    Q_ENUM(State)

    enum Payment {
        Cash = static_cast<int>(PayMethod::Cash),
        Card = static_cast<int>(PayMethod::Card)
    };
    Q_ENUM(Payment)

    /// More than any sale has; keeps a stuck touch screen from filling the journal.
    static constexpr int mostTickets = 200;

    /// What a zone is called on tickets.
    using ZoneName = std::function<QString(int zone)>;

    /// `journal` as it was opened, with or without a fault. `trip` is the trip context of every
    /// ticket; it outlives the desk.
    SalesDesk(const SalesModels& models, Journal& journal, SimulatedPrinter& printer,
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

    State state() const { return m_state; }
    /// What is wrong with the journal or the printer, in words for the driver; empty if nothing is.
    QString obstacle() const;
    double total() const; ///< of the basket, in minor units
    QString totalText() const;

    /// Tickets of an interrupted sale that may be out or not; 0 in every other state.
    int ticketsInDoubt() const;
    /// Number of the first of them, as it is on the paper; empty if there is none.
    QString firstTicketInDoubt() const;

    /// Zones of the stop where tickets begin that are added from now on; none = that of the tile.
    void setBoardingZones(const QVector<int>& zones) { m_boardingZones = zones; }

    /// Counts the basket's tickets on the tiles; call when the grid was laid out anew.
    void showBadges();

    /// Puts a ticket of the grid's tile `row` into the basket; refused for placeholders and what
    /// has expired.
    Q_INVOKABLE bool add(int row);
    Q_INVOKABLE bool remove(int row); ///< line `row` of the basket
    Q_INVOKABLE bool clear();

    /// Sells the basket and starts printing; saleConfirmed() when it is in the journal.
    Q_INVOKABLE bool pay(rivo::sales::SalesDesk::Payment payment);

    /// The first ticket in doubt is out: it is noted as printed, and not printed again.
    Q_INVOKABLE bool confirmTicketInDoubt();

    /// Prints all tickets in doubt.
    Q_INVOKABLE bool printTicketsInDoubt();

    /// Closes the running shift; refused while a basket is open. The next shift starts at once. The
    /// cash of the closed one is owed until it is handed over.
    Q_INVOKABLE bool closeShift();

    /// Notes that the cash of a closed shift was handed over: its report is paid. Refused for
    /// shifts that run, are paid, or are not of this terminal's journal.
    Q_INVOKABLE bool handOver(double zNumber);

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

private:
    bool refuse(const QString& reason);
    bool mayChangeBasket();
    void setState(State state);
    Ticket ticketOf(const PassengerTypeItem& tile) const;
    int originOf(const PassengerTypeItem& tile) const;
    bool refuseByJournal();
    void show(const Ticket& ticket);
    void emptyBasket();
    void basketChanged();
    void printNext();
    void ticketPrinted();
    void finishSale();
    void updateRunningShift();

    SalesModels m_models;
    Journal& m_journal;
    SimulatedPrinter& m_printer;
    Currency m_currency;
    ZoneName m_zoneName;
    feed::TripContext& m_trip;
    QVector<int> m_boardingZones;
    State m_state = Selling;
    QVector<Ticket> m_tickets; ///< of the basket; its rows only show them
    Minor m_total = 0;
    std::unique_ptr<PrintQueue> m_toPrint;
    std::unique_ptr<ShiftBook> m_shifts;
};

} // namespace rivo::sales
