#pragma once

#include "Journal.h"
#include "Records.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <functional>

class FareProductsModel;
class PassengerTypeItem;
class PassengerTypesModel;
class ShoppingBasketModel;
class ShoppingItem;
class ZReportItem;
class ZReportModel;

namespace rivo::sales
{

class SimulatedPrinter;

/// The models that a sale moves through; all outlive the desk. Only the desk adds, removes and
/// orders rows of the basket.
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

public:
    enum State {
        Selling,          ///< the basket may be changed and paid
        Printing,         ///< paid; tickets are being printed one by one
        WaitingForPrinter ///< paid; the printer has to recover first
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

    /// `journal` as it was opened, with or without a fault. `trip`, not null, is the trip context
    /// of every ticket.
    SalesDesk(const SalesModels& models, Journal& journal, SimulatedPrinter& printer,
              const Currency& currency, ZoneName zoneName, QObject* trip,
              QObject* parent = nullptr);

    /// Shows what the journal has: the shifts, and the basket as it was left, or the tickets that
    /// were paid but not printed, whose printing goes on. The running shift becomes the first row
    /// of the Z report model, which must be empty. Call once, with the grid laid out.
    ///
    /// `maxDebt`: most cash that a driver should carry, in currency units; 0 = no limit.
    void restore(double maxDebt);

    State state() const { return m_state; }
    /// Why nothing can be sold, in words for the driver; empty if selling is possible.
    QString obstacle() const;
    double total() const; ///< of the basket, in minor units
    QString totalText() const;

    /// Puts a ticket of the grid's tile `row` into the basket; refused for placeholders and what
    /// has expired.
    Q_INVOKABLE bool add(int row);
    Q_INVOKABLE bool remove(int row); ///< line `row` of the basket
    Q_INVOKABLE bool clear();

    /// Sells the basket and starts printing; saleConfirmed() when it is in the journal.
    Q_INVOKABLE bool pay(rivo::sales::SalesDesk::Payment payment);

    /// Closes the running shift; refused while a basket is open. The next shift starts at once.
    Q_INVOKABLE bool closeShift();

    /// An amount in currency units as people read it; a dash for one that is beyond Currency's.
    Q_INVOKABLE QString priceText(double units) const;

signals:
    void stateChanged();
    void obstacleChanged();
    void totalChanged();
    void refused(const QString& reason);
    void saleConfirmed(int tickets);
    void saleFinished();
    void shiftClosed(double zNumber);

private:
    bool refuse(const QString& reason);
    bool mayChangeBasket();
    void setState(State state);
    QVector<Ticket> tickets() const;
    Ticket ticketOf(const PassengerTypeItem& tile) const;
    Ticket ticketOf(const ShoppingItem& item) const;
    ShoppingItem* item(int row) const;
    bool refuseByJournal();
    void show(const Ticket& ticket);
    void basketChanged();
    void updateBadges(const QVector<Ticket>& tickets);
    void queueForPrinting(ShoppingItem& line, const Ticket& ticket);
    ShoppingItem* lineToPrint() const;
    void printNext();
    void ticketPrinted();
    void finishSale();
    void showShifts();
    void addReport(const ShiftReport& report);
    void updateRunningReport(const ShiftReport& report);

    SalesModels m_models;
    Journal& m_journal;
    SimulatedPrinter& m_printer;
    Currency m_currency;
    ZoneName m_zoneName;
    QObject* m_trip;
    State m_state = Selling;
    Minor m_total = 0;
    QVector<qint64> m_toPrint; ///< numbers of the tickets of the last rows, the next one first
    double m_maxDebt = 0.0;
};

} // namespace rivo::sales
