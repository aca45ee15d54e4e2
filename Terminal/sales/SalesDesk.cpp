#include "SalesDesk.h"

#include "CardDesk.h"
#include "PrintQueue_p.h"
#include "SalesTexts_p.h"
#include "ShiftBook_p.h"
#include "TicketPrinter.h"

#include <FareProductItem.h>
#include <FareProductsModel.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <ShoppingBasketModel.h>
#include <TripContext.h>
#include <sProduct.h>

#include <QHash>

#include <algorithm>
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

SalesDesk::SalesDesk(const SalesModels& models, Journal& journal, TicketPrinter& printer,
                     const Currency& currency, ZoneName zoneName, feed::TripContext& trip,
                     QObject* parent)
    : QObject(parent), m_models(models), m_journal(journal), m_printer(printer),
      m_currency(currency), m_zoneName(std::move(zoneName)), m_trip(trip),
      m_toPrint(std::make_unique<PrintQueue>(m_models.basket)),
      m_shifts(std::make_unique<ShiftBook>(m_models.zReports, m_journal, m_currency)),
      m_card(new CardDesk(m_journal, this))
{
    followCards();
    connect(&m_printer, &TicketPrinter::printed, this, &SalesDesk::ticketPrinted);
    connect(&m_printer, &TicketPrinter::failed, this, &SalesDesk::ticketFailed);
    connect(&m_printer, &TicketPrinter::inDoubt, this, &SalesDesk::ticketBecameDoubtful);
    connect(&m_printer, &TicketPrinter::faultChanged, this, [this] {
        emit obstacleChanged();
        if (m_state == WaitingForPrinter)
            printNext();
    });
}

SalesDesk::~SalesDesk() = default;

void SalesDesk::setClock(const std::function<QDateTime()>& clock)
{
    m_clock = clock;
    m_card->setClock(clock);
}

void SalesDesk::restore(double maxDebt)
{
    m_shifts->show(maxDebt);
    const QVector<Ticket> unprinted = m_journal.unprintedTickets();
    m_tickets = unprinted.isEmpty() ? m_journal.basket() : unprinted;
    for (const Ticket& ticket : qAsConst(m_tickets))
        show(ticket);
    m_toPrint->fill(unprinted);
    const QVector<PastSale> last = m_journal.pastSales(0, 1);
    const QVector<PastTicket> tickets =
        last.isEmpty() ? QVector<PastTicket>() : m_journal.ticketsOf(last.first().id);
    for (const PastTicket& past : tickets)
        m_lastTickets.append(past.ticket);
    basketChanged();
    emit obstacleChanged();
    if (!m_toPrint->isEmpty()) {
        m_wasInterrupted = true;
        m_ticketsInDoubt = m_toPrint->size();
        setState(Interrupted);
        emit ticketsInDoubtChanged();
    }
    restoreCards();
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
        case JournalFault::Kind::Replaced:
            return tr("A file of the sales journal is missing or was replaced. Nothing can be "
                      "sold.");
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

double SalesDesk::due() const { return static_cast<double>(m_currency.cashAmount(m_total)); }

QString SalesDesk::dueText() const { return amountText(due()); }

QString SalesDesk::amountText(double amount) const
{
    const std::optional<Minor> whole = wholeAmount(amount);
    return whole ? m_currency.text(*whole) : QStringLiteral("–");
}

void SalesDesk::setDriver(qint64 number, const QString& name)
{
    if (m_driver == number && m_driverName == name)
        return;
    m_driver = number;
    m_driverName = name;
    m_journal.setDriver(number);
    emit driverChanged();
}

void SalesDesk::setLocked(bool isLocked)
{
    if (m_isLocked == isLocked)
        return;
    m_isLocked = isLocked;
    emit lockedChanged();
}

bool SalesDesk::refuse(const QString& reason)
{
    emit refused(reason);
    return false;
}

bool SalesDesk::mayAct()
{
    if (m_journal.fault())
        return refuse(obstacle());
    return !m_isLocked || refuse(tr("Sign in first."));
}

bool SalesDesk::mayChangeBasket()
{
    if (!mayAct())
        return false;
    if (m_state == Interrupted)
        return refuse(tr("The last sale was interrupted: say first which tickets are out."));
    return m_state == Selling ||
           refuse(m_state == AwaitingCard ? tr("The card payment is not finished.")
                                          : tr("Tickets are being printed."));
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
    if (tile == nullptr || isPlaceholder(tile->fareProductName(), tile->hasExpired()))
        return refuse(tr("This tile is not for sale."));
    if (tile->hasExpired())
        return refuse(tr("%1 is not valid any more.").arg(tile->fareProductName()));
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
    if (m_details)
        m_details(ticket);
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

// Payment.

bool SalesDesk::pay(SalesDesk::Payment payment)
{
    const Minor rounding = m_currency.cashAmount(m_total) - m_total;
    return sell({static_cast<PayMethod>(payment), payment == Cash ? rounding : 0, 0, 0});
}

bool SalesDesk::payCash(double given)
{
    const std::optional<Minor> amount = wholeAmount(given);
    if (!amount || given < due())
        return refuse(tr("This is less than what is due."));
    return sell({PayMethod::Cash, m_currency.cashAmount(m_total) - m_total, *amount, 0});
}

bool SalesDesk::sell(const rivo::sales::Payment& payment)
{
    if (!mayChangeBasket())
        return false;
    if (!obstacle().isEmpty())
        return refuse(obstacle());
    if (m_tickets.isEmpty())
        return refuse(tr("The basket is empty."));
    if (payment.method != PayMethod::Cash && payment.method != PayMethod::Card)
        return refuse(tr("There is no such way of payment.")); // QML may pass any number
    return payment.method == PayMethod::Card && m_total > 0 ? chargeCard() : book(payment);
}

bool SalesDesk::book(const rivo::sales::Payment& payment, const std::optional<CardOutcome>& card)
{
    const auto sold =
        m_journal.confirmSale(withNamedExecutions(m_tickets), payment, m_clock(), card);
    if (!sold)
        return refuseByJournal();
    setState(Printing); // before anything is announced: a slot cannot sell it again
    m_tickets = *sold;
    m_isDrawerDue = payment.method == PayMethod::Cash;
    m_lastTickets = *sold;
    m_toPrint->fill(m_tickets);
    updateRunningShift();
    const QVariantList newest = pastSales(0, 1);
    m_lastSale = newest.isEmpty() ? QVariantMap() : newest.first().toMap();
    emit saleConfirmed(sold->size());
    printNext();
    return true;
}

QVariantList SalesDesk::quickAmounts() const
{
    constexpr int most = 8; // two rows of four
    QVariantList amounts;
    const Minor due = m_currency.cashAmount(m_total);
    const QVector<Minor> quick = m_currency.quickAmounts(due, most);
    for (const Minor amount : quick)
        amounts.append(QVariantMap{{QStringLiteral("amount"), static_cast<double>(amount)},
                                   {QStringLiteral("text"), m_currency.text(amount)},
                                   {QStringLiteral("shortText"), m_currency.shortText(amount)}});
    return amounts;
}

QVariantMap SalesDesk::changeFor(double given) const
{
    const std::optional<Minor> amount = wholeAmount(given);
    const Minor change = amount.value_or(-1) - m_currency.cashAmount(m_total);
    QStringList pieces;
    const QVector<Minor> values = m_currency.inNotesAndCoins(change);
    for (const Minor piece : values)
        pieces.append(m_currency.text(piece));
    return {{QStringLiteral("isEnough"), change >= 0},
            {QStringLiteral("change"), static_cast<double>(std::max(Minor(0), change))},
            {QStringLiteral("changeText"), m_currency.text(std::max(Minor(0), change))},
            {QStringLiteral("pieces"), pieces}};
}

} // namespace rivo::sales
