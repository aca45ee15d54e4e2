#include "SalesDesk.h"

#include "PrintQueue_p.h"
#include "ShiftBook_p.h"
#include "SimulatedPrinter.h"

#include <FareProductItem.h>
#include <FareProductsModel.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <ShoppingBasketModel.h>
#include <TripContext.h>

#include <QHash>

#include <map>
#include <tuple>
#include <utility>

namespace rivo::sales
{

namespace
{

/// What makes two tickets the same for the count on a tile.
auto tileKey(const Ticket& ticket)
{
    return std::make_tuple(ticket.passengerTypeId, ticket.fareProductId, ticket.fromStopGroupId,
                           ticket.toStopGroupId, ticket.isReturnFee, ticket.isDaily, ticket.price,
                           ticket.description, ticket.fareProductName);
}

/// As tickets are sold: the execution of a trip that is in no timetable has no name.
QVector<Ticket> withNamedExecutions(QVector<Ticket> tickets)
{
    for (Ticket& ticket : tickets) {
        if (ticket.trip.publicRouteExecutionId == QLatin1String("DynamicTrip"))
            ticket.trip.publicRouteExecutionId.clear();
    }
    return tickets;
}

} // namespace

SalesDesk::SalesDesk(const SalesModels& models, Journal& journal, SimulatedPrinter& printer,
                     const Currency& currency, ZoneName zoneName, feed::TripContext& trip,
                     QObject* parent)
    : QObject(parent), m_models(models), m_journal(journal), m_printer(printer),
      m_currency(currency), m_zoneName(std::move(zoneName)), m_trip(trip),
      m_toPrint(std::make_unique<PrintQueue>(m_models.basket)),
      m_shifts(std::make_unique<ShiftBook>(m_models.zReports, m_journal, m_currency))
{
    connect(&m_printer, &SimulatedPrinter::printed, this, &SalesDesk::ticketPrinted);
    connect(&m_printer, &SimulatedPrinter::failed, this, &SalesDesk::printNext);
    connect(&m_printer, &SimulatedPrinter::faultChanged, this, [this] {
        emit obstacleChanged();
        if (m_state == WaitingForPrinter)
            printNext();
    });
}

SalesDesk::~SalesDesk() = default;

void SalesDesk::restore(double maxDebt)
{
    m_shifts->show(maxDebt);
    const QVector<Ticket> unprinted = m_journal.unprintedTickets();
    m_tickets = unprinted.isEmpty() ? m_journal.basket() : unprinted;
    for (const Ticket& ticket : qAsConst(m_tickets))
        show(ticket);
    m_toPrint->fill(unprinted);
    basketChanged();
    emit obstacleChanged();
    if (!m_toPrint->isEmpty()) {
        setState(Interrupted);
        emit ticketsInDoubtChanged();
    }
}

QString SalesDesk::obstacle() const
{
    if (m_journal.fault()) {
        switch (m_journal.fault()->kind) {
        case JournalFault::Kind::Locked:
            return tr("The sales journal is in use by another program. Nothing can be sold.");
        case JournalFault::Kind::Full:
            return tr("There is no space left for the sales journal. Nothing can be sold.");
        case JournalFault::Kind::Damaged:
            return tr("The sales journal is damaged. Nothing can be sold.");
        case JournalFault::Kind::Foreign:
            return tr("The file given as sales journal is not one of this terminal. Nothing can be "
                      "sold.");
        case JournalFault::Kind::OtherVersion:
            return tr("The sales journal was kept by another version of this terminal. Nothing can "
                      "be sold.");
        case JournalFault::Kind::OtherCurrency:
            return tr("The sales journal is kept in another currency. Nothing can be sold.");
        case JournalFault::Kind::Unreachable:
            return tr("The sales journal cannot be written. Nothing can be sold.");
        }
    }
    if (!m_printer.fault().isEmpty())
        return tr("The ticket printer cannot print: %1").arg(m_printer.fault());
    return {};
}

double SalesDesk::total() const { return static_cast<double>(m_total); }

QString SalesDesk::totalText() const { return m_currency.text(m_total); }

bool SalesDesk::refuse(const QString& reason)
{
    emit refused(reason);
    return false;
}

bool SalesDesk::mayChangeBasket()
{
    if (m_journal.fault())
        return refuse(obstacle());
    if (m_state == Interrupted)
        return refuse(tr("The last sale was interrupted: say first which tickets are out."));
    if (m_state != Selling)
        return refuse(tr("Tickets are being printed."));
    return true;
}

void SalesDesk::setState(State state)
{
    if (m_state == state)
        return;
    m_state = state;
    emit stateChanged();
}

// The basket.

Ticket SalesDesk::ticketOf(const PassengerTypeItem& tile) const
{
    Ticket ticket;
    ticket.passengerTypeId = tile.id();
    ticket.fareProductId = tile.fareProductId();
    ticket.fromStopGroupId = tile.fromStopGroupId();
    ticket.toStopGroupId = tile.toStopGroupId();
    ticket.description = tile.description();
    ticket.fareProductName = tile.fareProductName();
    ticket.icon = tile.icon();
    ticket.price = m_currency.fromUnits(tile.price()).value_or(0);
    ticket.isReturnFee = tile.isReturnFee();
    ticket.isDaily = tile.isDaily();
    return ticket;
}

/// The zone where the ride begins. A ticket without zones is valid anywhere.
int SalesDesk::originOf(const PassengerTypeItem& tile) const
{
    const int from = tile.fromStopGroupId();
    const bool isAnywhere = from == 0 && tile.toStopGroupId() == 0;
    return isAnywhere || m_boardingZones.isEmpty() || m_boardingZones.contains(from)
               ? from
               : m_boardingZones.first();
}

void SalesDesk::show(const Ticket& ticket)
{
    feed::TripContext trip(ticket.trip);
    m_models.basket.addItem(ticket.passengerTypeId, ticket.fareProductId, ticket.fromStopGroupId,
                            ticket.toStopGroupId, ticket.description, ticket.fareProductName,
                            ticket.icon, m_currency.toUnits(ticket.price), ticket.origin,
                            ticket.destination, ticket.isReturnFee, ticket.isDaily, &trip);
}

bool SalesDesk::add(int row)
{
    const auto* tile = qobject_cast<PassengerTypeItem*>(m_models.grid.itemFromRow(row));
    if (tile == nullptr || tile->hasExpired())
        return refuse(tr("This tile is not for sale."));
    if (!mayChangeBasket())
        return false;
    const std::optional<Minor> price = m_currency.fromUnits(tile->price());
    if (!price || *price < 0)
        return refuse(tr("This tile has no valid price."));
    if (m_tickets.size() >= mostTickets)
        return refuse(tr("The basket is full."));

    Ticket ticket = ticketOf(*tile);
    ticket.origin = m_zoneName(originOf(*tile));
    ticket.destination = m_zoneName(tile->toStopGroupId());
    ticket.trip = m_trip.trip();
    if (!m_journal.appendToBasket(ticket))
        return refuseByJournal();
    m_tickets.append(ticket);
    show(ticket);
    basketChanged();
    return true;
}

bool SalesDesk::remove(int row)
{
    if (!mayChangeBasket())
        return false;
    if (row < 0 || row >= m_tickets.size())
        return refuse(tr("There is no such line."));
    if (!m_journal.removeFromBasket(row))
        return refuseByJournal();
    m_tickets.removeAt(row);
    m_models.basket.removeRow(row);
    basketChanged();
    return true;
}

bool SalesDesk::clear()
{
    if (!mayChangeBasket())
        return false;
    if (!m_journal.clearBasket())
        return refuseByJournal();
    emptyBasket();
    return true;
}

void SalesDesk::emptyBasket()
{
    m_tickets.clear();
    m_models.basket.clear();
    basketChanged();
}

/// The journal has just failed.
bool SalesDesk::refuseByJournal()
{
    emit obstacleChanged();
    return refuse(obstacle());
}

void SalesDesk::basketChanged()
{
    m_total = 0;
    for (const Ticket& ticket : qAsConst(m_tickets))
        m_total += ticket.price;
    showBadges();
    emit totalChanged();
}

void SalesDesk::showBadges()
{
    std::map<decltype(tileKey(Ticket())), int> ofTile;
    QHash<int, int> ofProduct;
    for (const Ticket& ticket : qAsConst(m_tickets)) {
        ++ofTile[tileKey(ticket)];
        ++ofProduct[ticket.fareProductId];
    }
    for (int row = 0; row < m_models.grid.rowCount(); ++row) {
        auto* tile = qobject_cast<PassengerTypeItem*>(m_models.grid.itemFromRow(row));
        const auto found = ofTile.find(tileKey(ticketOf(*tile)));
        const bool isCounted = found != ofTile.end() && m_currency.fromUnits(tile->price());
        tile->setTotalInBasket(isCounted ? found->second : 0);
    }
    for (int row = 0; row < m_models.fareProducts.rowCount(); ++row) {
        auto* product = qobject_cast<FareProductItem*>(m_models.fareProducts.itemFromRow(row));
        product->setTotalInBasket(ofProduct.value(product->id()));
    }
}

// Payment and printing.

bool SalesDesk::pay(SalesDesk::Payment payment)
{
    if (!mayChangeBasket())
        return false;
    if (!obstacle().isEmpty())
        return refuse(obstacle());
    if (m_tickets.isEmpty())
        return refuse(tr("The basket is empty."));
    if (payment != Cash && payment != Card) // QML may pass any number
        return refuse(tr("There is no such way of payment."));
    const auto sold =
        m_journal.confirmSale(withNamedExecutions(m_tickets), {static_cast<PayMethod>(payment)},
                              QDateTime::currentDateTime());
    if (!sold)
        return refuseByJournal();
    setState(Printing); // before anything is announced: a slot cannot sell it again
    m_tickets = *sold;
    m_toPrint->fill(m_tickets);
    updateRunningShift();
    emit saleConfirmed(sold->size());
    printNext();
    return true;
}

void SalesDesk::printNext()
{
    if (m_state == Interrupted || (m_state == Selling && m_toPrint->isEmpty()))
        return; // the printer worked for someone else
    if (m_toPrint->isEmpty())
        return finishSale();
    if (!m_printer.fault().isEmpty())
        return setState(WaitingForPrinter);
    setState(Printing);
    m_toPrint->acceptNext();
    m_printer.print();
}

void SalesDesk::ticketPrinted()
{
    if (m_toPrint->isEmpty() || m_state == Interrupted)
        return;
    if (!m_journal.markPrinted(m_toPrint->nextNumber()))
        emit obstacleChanged(); // the paper is out, and the rest has been paid: go on
    m_toPrint->nextIsOut();
    printNext();
}

int SalesDesk::ticketsInDoubt() const { return m_state == Interrupted ? m_toPrint->size() : 0; }

QString SalesDesk::firstTicketInDoubt() const
{
    return ticketsInDoubt() > 0 ? ticketNumberText(m_toPrint->nextNumber()) : QString();
}

bool SalesDesk::confirmTicketInDoubt()
{
    if (m_state != Interrupted)
        return refuse(tr("There is no ticket in doubt."));
    if (!m_journal.markPrinted(m_toPrint->nextNumber()))
        return refuseByJournal();
    m_toPrint->acceptNext();
    m_toPrint->nextIsOut();
    emit ticketsInDoubtChanged();
    if (m_toPrint->isEmpty())
        finishSale();
    return true;
}

bool SalesDesk::printTicketsInDoubt()
{
    if (m_state != Interrupted)
        return refuse(tr("There is no ticket in doubt."));
    setState(Printing);
    emit ticketsInDoubtChanged();
    printNext();
    return true;
}

void SalesDesk::finishSale()
{
    emptyBasket();
    setState(Selling);
    emit saleFinished();
}

// Shifts.

void SalesDesk::updateRunningShift()
{
    if (!m_shifts->update())
        emit obstacleChanged(); // what was done is in the journal, but nothing else will be
}

bool SalesDesk::closeShift()
{
    if (!mayChangeBasket())
        return false;
    if (!m_tickets.isEmpty())
        return refuse(tr("There are unpaid tickets in the basket."));
    const auto closed = m_shifts->close(QDateTime::currentDateTime());
    if (!closed)
        return refuseByJournal();
    emit shiftClosed(static_cast<double>(*closed));
    return true;
}

bool SalesDesk::keepsShift(double zNumber) const { return m_shifts->keeps(zNumber); }

bool SalesDesk::handOver(double zNumber)
{
    if (m_journal.fault())
        return refuse(obstacle());
    const bool isPaid = m_shifts->handOver(zNumber, QDateTime::currentDateTime());
    if (m_journal.fault())
        return refuseByJournal();
    if (!isPaid)
        return refuse(tr("There is no cash of this shift to hand over."));
    updateRunningShift();
    emit shiftPaid(zNumber);
    return true;
}

} // namespace rivo::sales
