#include "SalesDesk.h"

#include "SimulatedPrinter.h"

#include <FareProductItem.h>
#include <FareProductsModel.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <ShoppingBasketModel.h>
#include <ShoppingItem.h>
#include <TripContext.h>
#include <ZReportItem.h>
#include <ZReportModel.h>

#include <QHash>

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace rivo::sales
{

namespace
{

/// What a tile and a line of the basket say under the same names.
template <typename Item>
Ticket productOf(const Item& item)
{
    Ticket ticket;
    ticket.fareProductId = item.fareProductId();
    ticket.fromStopGroupId = item.fromStopGroupId();
    ticket.toStopGroupId = item.toStopGroupId();
    ticket.description = item.description();
    ticket.fareProductName = item.fareProductName();
    ticket.icon = item.icon();
    ticket.isReturnFee = item.isReturnFee();
    ticket.isDaily = item.isDaily();
    return ticket;
}

/// What makes two tickets the same for the count on a tile.
auto tileKey(const Ticket& ticket)
{
    return std::make_tuple(ticket.passengerTypeId, ticket.fareProductId, ticket.fromStopGroupId,
                           ticket.toStopGroupId, ticket.isReturnFee, ticket.isDaily, ticket.price,
                           ticket.description, ticket.fareProductName);
}

feed::FeedTripContext tripOf(const ShoppingItem& item)
{
    return {item.routeId(),
            item.fromStopId(),
            item.toStopId(),
            item.currentStopId(),
            item.tripsRouteId(),
            item.tripsExecutionId(),
            item.publicRouteExecutionId()};
}

feed::FeedTripContext& tripOf(Ticket& ticket) { return ticket; }

QString ticketNumberText(qint64 number)
{
    return number == 0 ? QString() : QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0'));
}

} // namespace

SalesDesk::SalesDesk(const SalesModels& models, Journal& journal, SimulatedPrinter& printer,
                     const Currency& currency, ZoneName zoneName, feed::TripContext& trip,
                     QObject* parent)
    : QObject(parent), m_models(models), m_journal(journal), m_printer(printer),
      m_currency(currency), m_zoneName(std::move(zoneName)), m_trip(trip)
{
    connect(&m_printer, &SimulatedPrinter::printed, this, &SalesDesk::ticketPrinted);
    connect(&m_printer, &SimulatedPrinter::failed, this, &SalesDesk::printNext);
    connect(&m_printer, &SimulatedPrinter::faultChanged, this, [this] {
        emit obstacleChanged();
        if (m_state == WaitingForPrinter)
            printNext();
    });
}

void SalesDesk::restore(double maxDebt)
{
    m_maxDebt = maxDebt;
    showShifts();
    const QVector<Ticket> unprinted = m_journal.unprintedTickets();
    for (const Ticket& ticket : unprinted) {
        show(ticket);
        queueForPrinting(*item(m_models.basket.rowCount() - 1), ticket);
    }
    if (unprinted.isEmpty()) {
        const QVector<Ticket> basket = m_journal.basket();
        for (const Ticket& ticket : basket)
            show(ticket);
    }
    basketChanged();
    emit obstacleChanged();
    if (!m_toPrint.isEmpty()) {
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

QString SalesDesk::priceText(double units) const
{
    const std::optional<Minor> amount = m_currency.fromUnits(units);
    return amount ? m_currency.text(*amount) : QStringLiteral("–");
}

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

ShoppingItem* SalesDesk::item(int row) const
{
    return qobject_cast<ShoppingItem*>(m_models.basket.itemFromRow(row));
}

Ticket SalesDesk::ticketOf(const PassengerTypeItem& tile) const
{
    Ticket ticket = productOf(tile);
    ticket.passengerTypeId = tile.id();
    ticket.price = m_currency.fromUnits(tile.price()).value_or(0);
    return ticket;
}

Ticket SalesDesk::ticketOf(const ShoppingItem& item) const
{
    Ticket ticket = productOf(item);
    ticket.passengerTypeId = item.passengerTypeId();
    ticket.price = m_currency.fromUnits(item.price()).value_or(0);
    ticket.origin = item.origin();
    ticket.destination = item.destination();
    tripOf(ticket) = tripOf(item);
    return ticket;
}

QVector<Ticket> SalesDesk::tickets() const
{
    QVector<Ticket> tickets;
    for (int row = 0; row < m_models.basket.rowCount(); ++row)
        tickets.append(ticketOf(*item(row)));
    return tickets;
}

void SalesDesk::show(const Ticket& ticket)
{
    feed::TripContext trip(ticket);
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
    if (m_models.basket.rowCount() >= mostTickets)
        return refuse(tr("The basket is full."));

    Ticket ticket = ticketOf(*tile);
    ticket.origin = m_zoneName(tile->fromStopGroupId());
    ticket.destination = m_zoneName(tile->toStopGroupId());
    tripOf(ticket) = m_trip.trip();
    if (!m_journal.appendToBasket(ticket))
        return refuseByJournal();
    show(ticket);
    basketChanged();
    return true;
}

bool SalesDesk::remove(int row)
{
    if (!mayChangeBasket())
        return false;
    if (item(row) == nullptr)
        return refuse(tr("There is no such line."));
    if (!m_journal.removeFromBasket(row))
        return refuseByJournal();
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
    m_models.basket.clear();
    basketChanged();
    return true;
}

/// The journal has just failed.
bool SalesDesk::refuseByJournal()
{
    emit obstacleChanged();
    return refuse(obstacle());
}

void SalesDesk::basketChanged()
{
    const QVector<Ticket> all = tickets();
    m_total = 0;
    for (const Ticket& ticket : all)
        m_total += ticket.price;
    updateBadges(all);
    emit totalChanged();
}

void SalesDesk::updateBadges(const QVector<Ticket>& tickets)
{
    std::map<decltype(tileKey(Ticket())), int> ofTile;
    QHash<int, int> ofProduct;
    for (const Ticket& ticket : tickets) {
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
    if (m_models.basket.rowCount() == 0)
        return refuse(tr("The basket is empty."));
    if (payment != Cash && payment != Card) // QML may pass any number
        return refuse(tr("There is no such way of payment."));
    const auto sold = m_journal.confirmSale(tickets(), static_cast<PayMethod>(payment),
                                            QDateTime::currentDateTime());
    if (!sold)
        return refuseByJournal();
    setState(Printing); // before anything is announced: whoever reacts cannot sell it again
    for (int row = 0; row < sold->size(); ++row)
        queueForPrinting(*item(row), sold->at(row));
    updateRunningReport();
    emit saleConfirmed(sold->size());
    printNext();
    return true;
}

/// Sends the ticket of a line on its way to the printer.
void SalesDesk::queueForPrinting(ShoppingItem& line, const Ticket& ticket)
{
    m_toPrint.append(ticket.number);
    line.setPayMethod(ticket.payMethod);
    line.setPayChannel(driverChannel);
}

/// The line of the ticket that is printed next; null if somebody else took it out of the basket.
ShoppingItem* SalesDesk::lineToPrint() const
{
    return item(m_models.basket.rowCount() - m_toPrint.size());
}

void SalesDesk::printNext()
{
    if (m_state == Interrupted || (m_state == Selling && m_toPrint.isEmpty()))
        return; // the printer worked for someone else
    if (m_toPrint.isEmpty())
        return finishSale();
    if (!m_printer.fault().isEmpty())
        return setState(WaitingForPrinter);
    setState(Printing);
    if (ShoppingItem* line = lineToPrint())
        line->setAccepted(true);
    m_printer.print();
}

void SalesDesk::ticketPrinted()
{
    if (m_toPrint.isEmpty() || m_state == Interrupted)
        return;
    if (!m_journal.markPrinted(m_toPrint.first()))
        emit obstacleChanged(); // the paper is out, and the rest has been paid: go on
    nextTicketIsOut();
    printNext();
}

void SalesDesk::nextTicketIsOut()
{
    if (ShoppingItem* line = lineToPrint())
        line->setPrinted(true);
    m_toPrint.removeFirst();
}

int SalesDesk::ticketsInDoubt() const { return m_state == Interrupted ? m_toPrint.size() : 0; }

QString SalesDesk::firstTicketInDoubt() const
{
    return ticketsInDoubt() > 0 ? ticketNumberText(m_toPrint.first()) : QString();
}

bool SalesDesk::confirmTicketInDoubt()
{
    if (m_state != Interrupted)
        return refuse(tr("There is no ticket in doubt."));
    if (!m_journal.markPrinted(m_toPrint.first()))
        return refuseByJournal();
    if (ShoppingItem* line = lineToPrint())
        line->setAccepted(true);
    nextTicketIsOut();
    emit ticketsInDoubtChanged();
    if (m_toPrint.isEmpty())
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
    m_models.basket.clear();
    basketChanged();
    setState(Selling);
    emit saleFinished();
}

// Shifts. The running one is the first row of the Z report model.

void SalesDesk::showShifts()
{
    const auto running = m_journal.runningShift();
    if (!running)
        return;
    QVector<ShiftReport> closed = m_journal.closedShifts();
    std::reverse(closed.begin(), closed.end());
    m_firstZ = closed.isEmpty() ? running->zNumber : closed.last().zNumber;
    for (const ShiftReport& report : qAsConst(closed)) {
        if (!report.paidAt.isValid())
            m_owed += report.cash();
    }
    addReport(*running);
    for (const ShiftReport& report : qAsConst(closed))
        addReport(report);
}

/// What the driver carries: of the running shift, the cash of the unpaid shifts before it too.
Minor SalesDesk::debtOf(const ShiftReport& report) const
{
    if (report.paidAt.isValid())
        return 0;
    return report.closedAt.isValid() ? report.cash() : report.cash() + m_owed;
}

void SalesDesk::addReport(const ShiftReport& report)
{
    m_models.zReports.addItem(
        static_cast<int>(report.zNumber), report.ticketCount, m_currency.toUnits(report.ticketSum),
        report.cardCount, m_currency.toUnits(report.cardSum), 0, 0.0,
        ticketNumberText(report.firstTicket), ticketNumberText(report.lastTicket),
        m_currency.toUnits(report.ticketSum), static_cast<double>(report.zNumber),
        report.closedAt.isValid(), 0.0, report.paidAt, m_currency.toUnits(debtOf(report)),
        m_maxDebt);
}

void SalesDesk::updateRunningReport()
{
    const auto report = m_journal.runningShift();
    if (!report) {
        emit obstacleChanged(); // what was done is in the journal, but nothing else will be
        return;
    }
    auto* item = qobject_cast<ZReportItem*>(m_models.zReports.itemFromRow(0));
    if (item == nullptr)
        return;
    const double sum = m_currency.toUnits(report->ticketSum);
    const double cardSum = m_currency.toUnits(report->cardSum);
    item->setTicketCount(report->ticketCount);
    // An amount equal to the ticket sum of the moment is not taken: offered before and after the
    // ticket sum changes, one of the two is.
    item->setCardSellAmnt(cardSum);
    item->setTicketSumAmnt(sum);
    item->setCardSellAmnt(cardSum);
    item->setCardSellCount(report->cardCount);
    item->setFromTicketNumber(ticketNumberText(report->firstTicket));
    item->setToTicketNumber(ticketNumberText(report->lastTicket));
    item->setZSum(sum);
    item->setCurrentDebt(m_currency.toUnits(debtOf(*report)));
}

bool SalesDesk::closeShift()
{
    if (!mayChangeBasket())
        return false;
    if (m_models.basket.rowCount() > 0)
        return refuse(tr("There are unpaid tickets in the basket."));
    const auto report = m_journal.closeShift(QDateTime::currentDateTime());
    if (!report)
        return refuseByJournal();
    if (auto* item = qobject_cast<ZReportItem*>(m_models.zReports.itemFromRow(0))) {
        item->setPaymentDate(report->paidAt);
        item->setCurrentDebt(m_currency.toUnits(debtOf(*report)));
        item->setIsClosed(true); // last: it is listed with what it owes
    }
    m_owed += debtOf(*report);
    ShiftReport next;
    next.zNumber = report->zNumber + 1;
    addReport(next);
    m_models.zReports.insertRow(0, m_models.zReports.takeRow(m_models.zReports.rowCount() - 1));
    emit shiftClosed(static_cast<double>(report->zNumber));
    return true;
}

bool SalesDesk::keepsShift(double zNumber) const
{
    return m_firstZ > 0 && zNumber >= static_cast<double>(m_firstZ);
}

ZReportItem* SalesDesk::closedReport(double zNumber) const
{
    for (int row = 1; row < m_models.zReports.rowCount(); ++row) {
        auto* item = qobject_cast<ZReportItem*>(m_models.zReports.itemFromRow(row));
        if (item->zNumber() == zNumber)
            return item;
    }
    return nullptr;
}

bool SalesDesk::handOver(double zNumber)
{
    if (m_journal.fault())
        return refuse(obstacle());
    ZReportItem* const item = keepsShift(zNumber) ? closedReport(zNumber) : nullptr;
    const auto report = item != nullptr ? m_journal.handOver(static_cast<qint64>(zNumber),
                                                             QDateTime::currentDateTime())
                                        : std::nullopt;
    if (m_journal.fault())
        return refuseByJournal();
    if (!report)
        return refuse(tr("There is no cash of this shift to hand over."));
    m_owed -= report->cash();
    item->setPaymentDate(report->paidAt);
    item->setCurrentDebt(m_currency.toUnits(debtOf(*report)));
    updateRunningReport();
    emit shiftPaid(zNumber);
    return true;
}

} // namespace rivo::sales
