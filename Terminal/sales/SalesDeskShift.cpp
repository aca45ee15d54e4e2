// What the desk does with past sales and with shifts.

#include "PrintQueue_p.h"
#include "SalesDesk.h"
#include "SalesTexts_p.h"
#include "ShiftBook_p.h"
#include "TicketPrinter.h"

#include <cmath>

namespace rivo::sales
{

namespace
{

QVariantMap mapOf(const PastTicket& past, const Currency& currency)
{
    const Ticket& ticket = past.ticket;
    return {{QStringLiteral("number"), static_cast<double>(ticket.number)},
            {QStringLiteral("numberText"), ticketNumberText(ticket.number)},
            {QStringLiteral("product"), ticket.fareProductName},
            {QStringLiteral("passenger"), ticket.description},
            {QStringLiteral("origin"), ticket.origin},
            {QStringLiteral("destination"), ticket.destination},
            {QStringLiteral("price"), static_cast<double>(ticket.price)},
            {QStringLiteral("priceText"), currency.text(ticket.price)},
            {QStringLiteral("copies"), past.copies},
            {QStringLiteral("isReversed"), past.isReversed}};
}

QVariantMap mapOf(const ShiftReport& report)
{
    const auto number = [](qint64 value) { return static_cast<double>(value); };
    return {{QStringLiteral("zNumber"), number(report.zNumber)},
            {QStringLiteral("driver"), number(report.driver)},
            {QStringLiteral("at"), report.closedAt},
            {QStringLiteral("paidAt"), report.paidAt},
            {QStringLiteral("ticketCount"), report.ticketCount},
            {QStringLiteral("ticketSum"), number(report.ticketSum)},
            {QStringLiteral("cardCount"), report.cardCount},
            {QStringLiteral("cardSum"), number(report.cardSum)},
            {QStringLiteral("firstTicket"), ticketNumberText(report.firstTicket)},
            {QStringLiteral("lastTicket"), ticketNumberText(report.lastTicket)},
            {QStringLiteral("voidCount"), report.voidCount},
            {QStringLiteral("voidSum"), number(report.voidSum)},
            {QStringLiteral("refundCount"), report.refundCount},
            {QStringLiteral("refundSum"), number(report.refundSum)},
            {QStringLiteral("reversedCardSum"), number(report.reversedCardSum)},
            {QStringLiteral("rounding"), number(report.rounding)},
            {QStringLiteral("copyCount"), report.copyCount},
            {QStringLiteral("openingFloat"), number(report.openingFloat)},
            {QStringLiteral("takings"), number(report.takings())},
            {QStringLiteral("cash"), number(report.cash())},
            {QStringLiteral("due"), number(report.due())},
            {QStringLiteral("isCardDayEnded"), report.isCardDayEnded},
            {QStringLiteral("cardDayTotal"), number(report.cardDayTotal)},
            {QStringLiteral("cardDayDifference"), number(report.cardDayDifference)},
            {QStringLiteral("counted"), number(report.counted)},
            {QStringLiteral("difference"), number(report.difference)}};
}

/// The number that a number of QML is; 0, which is no record and no ticket, for all others.
qint64 numberOf(double number) { return wholeAmount(number).value_or(0); }

QVector<qint64> remainingTickets(const QVector<PastTicket>& tickets)
{
    QVector<qint64> numbers;
    for (const PastTicket& each : tickets) {
        if (!each.isReversed)
            numbers.append(each.ticket.number);
    }
    return numbers;
}

} // namespace

// Past sales.

QVariantList SalesDesk::interruptedSale() const
{
    QVariantList maps;
    const int outCount = m_tickets.size() - m_toPrint->size();
    for (int i = 0; m_wasInterrupted && i < m_tickets.size(); ++i) {
        const Ticket& ticket = m_tickets.at(i);
        maps.append(QVariantMap{
            {QStringLiteral("numberText"), ticketNumberText(ticket.number)},
            {QStringLiteral("product"), ticket.fareProductName},
            {QStringLiteral("passenger"), ticket.description},
            {QStringLiteral("priceText"), m_currency.text(ticket.price)},
            {QStringLiteral("isOut"), i < outCount},
            {QStringLiteral("isInDoubt"), i >= outCount && i < outCount + m_ticketsInDoubt}});
    }
    return maps;
}

bool SalesDesk::mayVoid(const PastSale& sale, qint64 newest) const
{
    // A clock that was set back makes the age negative: nothing is known then.
    const qint64 age = sale.at.secsTo(m_clock());
    return sale.id == newest && sale.reversedCount == 0 && std::abs(age) <= voidLimit;
}

QVariantMap SalesDesk::mapOf(const PastSale& sale, qint64 newest) const
{
    const auto number = [](qint64 value) { return static_cast<double>(value); };
    return {
        {QStringLiteral("id"), number(sale.id)},
        {QStringLiteral("at"), sale.at},
        {QStringLiteral("driver"), number(sale.driver)},
        {QStringLiteral("isCash"), sale.payment.method == PayMethod::Cash},
        {QStringLiteral("firstTicket"), ticketNumberText(sale.firstTicket)},
        {QStringLiteral("lastTicket"), ticketNumberText(sale.firstTicket + sale.ticketCount - 1)},
        {QStringLiteral("ticketCount"), sale.ticketCount},
        {QStringLiteral("total"), number(sale.total)},
        {QStringLiteral("totalText"), m_currency.text(sale.total)},
        {QStringLiteral("rounding"), number(sale.payment.rounding)},
        {QStringLiteral("paid"), number(sale.paid())},
        {QStringLiteral("paidText"), m_currency.text(sale.paid())},
        {QStringLiteral("given"), number(sale.payment.given)},
        {QStringLiteral("givenText"), m_currency.text(sale.payment.given)},
        {QStringLiteral("change"), number(sale.payment.change)},
        {QStringLiteral("changeText"), m_currency.text(sale.payment.change)},
        {QStringLiteral("reversedCount"), sale.reversedCount},
        {QStringLiteral("paidOut"), number(sale.paidOut)},
        {QStringLiteral("paidOutText"), m_currency.text(sale.paidOut)},
        {QStringLiteral("isReversed"), sale.isReversed()},
        {QStringLiteral("mayVoid"), mayVoid(sale, newest)},
        {QStringLiteral("mayRefund"), !sale.isReversed()}};
}

QVariantList SalesDesk::pastSales(int skip, int count)
{
    const QVector<PastSale> newest = m_journal.pastSales(0, 1);
    QVariantList maps;
    if (newest.isEmpty() || skip < 0 || count < 0)
        return maps;
    const QVector<PastSale> sales = m_journal.pastSales(skip, count);
    for (const PastSale& sale : sales)
        maps.append(mapOf(sale, newest.first().id));
    return maps;
}

int SalesDesk::pastSaleCount() { return m_journal.pastSaleCount(); }

QVariantMap SalesDesk::pastSale(double sale)
{
    const auto found = m_journal.pastSale(numberOf(sale));
    if (!found)
        return {};
    const QVector<PastSale> newest = m_journal.pastSales(0, 1);
    QVariantMap map = mapOf(*found, newest.isEmpty() ? 0 : newest.first().id);
    QVariantList tickets;
    const QVector<PastTicket> all = m_journal.ticketsOf(found->id);
    for (const PastTicket& ticket : all)
        tickets.append(sales::mapOf(ticket, m_currency));
    map.insert(QStringLiteral("tickets"), tickets);
    return map;
}

std::optional<PastTicket> SalesDesk::pastTicket(qint64 number)
{
    const QVector<PastTicket> tickets = m_journal.ticketsOf(m_journal.saleOf(number));
    const auto past =
        std::find_if(tickets.begin(), tickets.end(),
                     [number](const PastTicket& each) { return each.ticket.number == number; });
    return past == tickets.end() ? std::nullopt : std::make_optional(*past);
}

bool SalesDesk::mayPrint()
{
    return mayChangeBasket() && (obstacle().isEmpty() || refuse(obstacle()));
}

bool SalesDesk::printCopy(double ticketNumber)
{
    if (!mayPrint())
        return false;
    const auto past = pastTicket(numberOf(ticketNumber));
    if (m_journal.fault())
        return refuseByJournal();
    if (!past)
        return refuse(tr("This shift has no such ticket."));
    if (past->isReversed)
        return refuse(tr("This ticket was taken back."));
    if (!m_journal.recordCopy(past->ticket.number, m_clock()))
        return refuseByJournal();
    return printExtra({past->ticket, past->copies + 1, std::nullopt, false});
}

bool SalesDesk::printReport(double zNumber)
{
    if (!mayPrint())
        return false;
    const auto paper = paperOfReport(zNumber);
    if (m_journal.fault())
        return refuseByJournal();
    return paper ? printExtra(*paper) : refuse(tr("There is no such report."));
}

std::optional<PrintJob> SalesDesk::paperOfReport(double zNumber)
{
    const bool isRunning = zNumber == 0.0;
    auto report = isRunning ? m_journal.runningShift() : m_journal.closedShift(numberOf(zNumber));
    if (!report)
        return std::nullopt;
    if (isRunning)
        report->driver = m_driver;
    return PrintJob{{}, 0, report, false};
}

std::optional<PrintJob> SalesDesk::paperOf(qint64 ticketNumber)
{
    const auto past = pastTicket(ticketNumber);
    return past ? std::make_optional(PrintJob{past->ticket, past->copies, std::nullopt, false})
                : std::nullopt;
}

bool SalesDesk::printExtra(const PrintJob& job)
{
    m_extraJob = job;
    setState(Copying);
    m_printer.print(job);
    return true;
}

void SalesDesk::endExtra(bool isPrinted)
{
    setState(Selling);
    if (!isPrinted)
        refuse(m_printer.fault().isEmpty() ? tr("Look whether this was printed.")
                                           : tr("This was not printed: %1").arg(m_printer.fault()));
    else if (m_extraJob.report)
        emit reportPrinted(static_cast<double>(m_extraJob.report->zNumber));
    else
        emit copyPrinted(static_cast<double>(m_extraJob.ticket.number));
}

bool SalesDesk::voidLastSale()
{
    if (!mayChangeBasket())
        return false;
    const QVector<PastSale> newest = m_journal.pastSales(0, 1);
    if (m_journal.fault())
        return refuseByJournal();
    if (newest.isEmpty())
        return refuse(tr("Nothing was sold in this shift."));
    const PastSale& sale = newest.first();
    if (sale.reversedCount > 0)
        return refuse(tr("The last sale was taken back already."));
    if (!mayVoid(sale, sale.id))
        return refuse(tr("The last sale is older than %n minute(s): it can be refunded.", nullptr,
                         voidLimit / 60));
    return reverse(sale, remainingTickets(m_journal.ticketsOf(sale.id)), ReversalKind::Void, {});
}

bool SalesDesk::refundSale(double sale, const QString& reason)
{
    if (!mayChangeBasket())
        return false;
    const auto found = m_journal.pastSale(numberOf(sale));
    if (m_journal.fault())
        return refuseByJournal();
    if (!found)
        return refuse(tr("This shift has no such sale."));
    return refund(*found, remainingTickets(m_journal.ticketsOf(found->id)), reason);
}

bool SalesDesk::refundTicket(double ticketNumber, const QString& reason)
{
    if (!mayChangeBasket())
        return false;
    const qint64 number = numberOf(ticketNumber);
    const auto found = m_journal.pastSale(m_journal.saleOf(number));
    if (m_journal.fault())
        return refuseByJournal();
    if (!found)
        return refuse(tr("This shift has no such ticket."));
    const bool isLeft = remainingTickets(m_journal.ticketsOf(found->id)).contains(number);
    return refund(*found, isLeft ? QVector<qint64>{number} : QVector<qint64>(), reason);
}

bool SalesDesk::refund(const PastSale& sale, const QVector<qint64>& tickets, const QString& reason)
{
    const QString kept = reason.simplified().left(longestReason);
    if (tickets.isEmpty())
        return refuse(tr("This was taken back already."));
    if (kept.isEmpty())
        return refuse(tr("A refund needs a reason."));
    return reverse(sale, tickets, ReversalKind::Refund, kept);
}

/// What is paid out and what the remaining tickets cost in cash are together what was paid.
bool SalesDesk::reverse(const PastSale& sale, const QVector<qint64>& tickets, ReversalKind kind,
                        const QString& reason)
{
    Minor total = 0;
    const QVector<PastTicket> all = m_journal.ticketsOf(sale.id);
    for (const PastTicket& each : all)
        total += tickets.contains(each.ticket.number) ? each.ticket.price : 0;
    const Minor remaining = m_currency.cashAmount(sale.remaining() - total);
    const Minor paidOut = sale.payment.method == PayMethod::Cash
                              ? std::max(Minor(0), sale.paid() - sale.paidOut - remaining)
                              : total;
    const auto charge = m_journal.chargeOf(sale.id);
    if (charge && paidOut > 0) {
        CardPayment wanted;
        wanted.origin = charge->id;
        wanted.amount = paidOut;
        wanted.tickets = tickets;
        wanted.kind = kind;
        wanted.reason = reason;
        return returnToCard(wanted);
    }
    if (!m_journal.reverse(sale.id, tickets, kind, reason, paidOut, m_clock()))
        return refuseByJournal();
    updateRunningShift();
    emit saleReversed(static_cast<double>(sale.id));
    return true;
}

// Shifts.

void SalesDesk::updateRunningShift()
{
    if (!m_shifts->update())
        emit obstacleChanged(); // what was done is in the journal, but nothing else will be
}

bool SalesDesk::setOpeningFloat(double amount)
{
    if (!mayChangeBasket())
        return false;
    const std::optional<Minor> whole = wholeAmount(amount);
    const auto running = m_journal.runningShift();
    if (!running)
        return refuseByJournal();
    if (!whole)
        return refuse(tr("This is no amount."));
    if (running->openingFloat > 0 && running->ticketCount > 0)
        return refuse(tr("The float of this shift cannot be changed any more."));
    if (!m_journal.recordOpeningFloat(*whole, m_clock()))
        return refuseByJournal();
    updateRunningShift();
    emit openingFloatChanged(amount);
    return true;
}

QVariantMap SalesDesk::xReport()
{
    const auto running = m_journal.runningShift();
    if (!running)
        return {};
    QVariantMap map = sales::mapOf(*running);
    map.insert(QStringLiteral("at"), m_clock());
    map.insert(QStringLiteral("driver"), driver());
    return map;
}

QVariantMap SalesDesk::zReport(double zNumber)
{
    const auto closed = m_journal.closedShift(numberOf(zNumber));
    return closed ? sales::mapOf(*closed) : QVariantMap();
}

bool SalesDesk::closeShift()
{
    if (!mayChangeBasket())
        return false;
    if (!m_tickets.isEmpty())
        return refuse(tr("There are unpaid tickets in the basket."));
    if (m_card->isReturnOpen())
        return refuse(m_card->obstacle());
    const auto closed = m_shifts->close(m_clock());
    if (!closed)
        return refuseByJournal();
    emit shiftClosed(static_cast<double>(*closed));
    m_card->shiftClosed();
    return true;
}

bool SalesDesk::keepsShift(double zNumber) const { return m_shifts->keeps(zNumber); }

bool SalesDesk::handOver(double zNumber) { return handOver(zNumber, std::nullopt); }

bool SalesDesk::handOverCounted(double zNumber, double counted)
{
    const std::optional<Minor> amount = wholeAmount(counted);
    return amount ? handOver(zNumber, amount) : refuse(tr("This is no amount."));
}

bool SalesDesk::handOver(double zNumber, std::optional<Minor> counted)
{
    if (!mayAct())
        return false;
    const bool isPaid = m_shifts->handOver(zNumber, m_clock(), counted);
    if (m_journal.fault())
        return refuseByJournal();
    if (!isPaid)
        return refuse(tr("There is no cash of this shift to hand over."));
    updateRunningShift();
    emit shiftPaid(zNumber);
    return true;
}

} // namespace rivo::sales
