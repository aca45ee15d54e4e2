// The journal's past sales, and tickets that were taken back.

#include "JournalRecords_p.h"

namespace rivo::sales
{

/// `condition`: of the columns of tables record and sale, and the order.
QVector<PastSale> Journal::readSales(const QString& condition)
{
    const auto shift = m_file->fault() ? std::nullopt : runningZNumber();
    if (!shift)
        return {};
    QSqlQuery query = m_file->prepared(
        QStringLiteral(
            "SELECT record.id, record.shift, record.driver, record.at, pay_method, total, rounding,"
            " given, change,"
            " (SELECT MIN(number) FROM ticket WHERE ticket.sale = record.id),"
            " (SELECT COUNT(*) FROM ticket WHERE ticket.sale = record.id),"
            " (SELECT COUNT(*) FROM reversal JOIN reversed_ticket ON"
            "  reversed_ticket.reversal = reversal.record WHERE reversal.sale = record.id),"
            " (SELECT IFNULL(SUM(reversal.total), 0) FROM reversal WHERE reversal.sale = "
            "record.id),"
            " (SELECT IFNULL(SUM(paid_out), 0) FROM reversal WHERE reversal.sale = record.id)"
            " FROM record JOIN sale ON sale.record = record.id"
            " WHERE record.shift = %1 AND record.kind = %2 %3")
            .arg(*shift)
            .arg(static_cast<int>(RecordKind::Sale))
            .arg(condition));
    QVector<PastSale> sales;
    const bool isRead = m_file->forEachRow(query, [&] {
        PastSale sale;
        sale.id = query.value(0).toLongLong();
        sale.shift = query.value(1).toLongLong();
        sale.driver = query.value(2).toLongLong();
        sale.at = timeOf(query.value(3));
        sale.payment = {static_cast<PayMethod>(query.value(4).toInt()), query.value(6).toLongLong(),
                        query.value(7).toLongLong(), query.value(8).toLongLong()};
        sale.total = query.value(5).toLongLong();
        sale.firstTicket = query.value(9).toLongLong();
        sale.ticketCount = query.value(10).toInt();
        sale.reversedCount = query.value(11).toInt();
        sale.reversedSum = query.value(12).toLongLong();
        sale.paidOut = query.value(13).toLongLong();
        sales.append(sale);
    });
    return isRead ? sales : QVector<PastSale>();
}

QVector<PastSale> Journal::pastSales(int skip, int count)
{
    return readSales(
        QStringLiteral("ORDER BY record.id DESC LIMIT %1 OFFSET %2").arg(count).arg(skip));
}

int Journal::pastSaleCount()
{
    const auto shift = m_file->fault() ? std::nullopt : runningZNumber();
    const auto count =
        shift ? m_file->value(
                    QStringLiteral("SELECT COUNT(*) FROM record WHERE shift = %1 AND kind = %2")
                        .arg(*shift)
                        .arg(static_cast<int>(RecordKind::Sale)))
              : std::nullopt;
    return count ? count->toInt() : 0;
}

std::optional<PastSale> Journal::pastSale(qint64 id)
{
    const QVector<PastSale> found = readSales(QStringLiteral("AND record.id = %1").arg(id));
    return found.isEmpty() ? std::nullopt : std::make_optional(found.first());
}

QVector<PastTicket> Journal::ticketsOf(qint64 sale)
{
    QVector<PastTicket> tickets;
    if (m_file->fault())
        return tickets;
    const auto selection =
        QStringLiteral("number, pay_method, at, driver,"
                       " (SELECT COUNT(*) FROM printout WHERE printout.ticket = number"
                       "  AND is_copy = 1),"
                       " EXISTS (SELECT 1 FROM reversed_ticket WHERE reversed_ticket.ticket ="
                       "  number)"
                       " FROM ticket JOIN sale ON sale.record = ticket.sale"
                       " JOIN record ON record.id = ticket.sale"
                       " WHERE ticket.sale = %1 ORDER BY number")
            .arg(sale);
    const bool isRead =
        forEachTicket(*m_file, selection, [&](const QSqlQuery& row, const Ticket& ticket) {
            tickets.append({ticket, row.value(ticketColumnCount() + 4).toInt(),
                            row.value(ticketColumnCount() + 5).toBool()});
        });
    return isRead ? tickets : QVector<PastTicket>();
}

QVector<Ticket> Journal::lastTickets(int count)
{
    return readTickets(*m_file, QStringLiteral("number, pay_method, at, driver FROM ticket"
                                               " JOIN sale ON sale.record = ticket.sale"
                                               " JOIN record ON record.id = ticket.sale"
                                               " ORDER BY number DESC LIMIT %1")
                                    .arg(count));
}

qint64 Journal::saleOf(qint64 ticketNumber)
{
    const QVector<PastSale> found = readSales(
        QStringLiteral("AND record.id = (SELECT ticket.sale FROM ticket WHERE number = %1)")
            .arg(ticketNumber));
    return found.isEmpty() ? 0 : found.first().id;
}

bool Journal::addReversal(const PastSale& sale, const QVector<qint64>& tickets, ReversalKind kind,
                          const QString& reason, Minor paidOut, const QDateTime& at,
                          qint64 cardReturn)
{
    const QVector<PastTicket> all = ticketsOf(sale.id);
    Minor total = 0;
    int found = 0;
    for (const PastTicket& each : all) {
        if (tickets.contains(each.ticket.number) && !each.isReversed) {
            total += each.ticket.price;
            ++found;
        }
    }
    if (found == 0 || found != tickets.size())
        return false;
    const auto record = addRecord(RecordKind::Reversal, sale.shift, at);
    if (!record ||
        !m_file->insert("reversal", {*record, sale.id, static_cast<int>(kind),
                                     reason.isNull() ? QLatin1String("") : reason, total, paidOut}))
        return false;
    if (cardReturn != 0 && !m_file->insert("card_reversal", {*record, cardReturn}))
        return false;
    for (const qint64 number : tickets) {
        if (!m_file->insert("reversed_ticket", {number, *record}))
            return false;
    }
    return true;
}

std::optional<PastSale> Journal::reverse(qint64 sale, const QVector<qint64>& tickets,
                                         ReversalKind kind, const QString& reason, Minor paidOut,
                                         const QDateTime& at,
                                         const std::optional<CardOutcome>& card)
{
    std::optional<PastSale> left;
    const bool isDone = m_file->inTransaction([&] {
        const auto sold = pastSale(sale);
        if ((card && !addOutcome(*card, at)) || !sold ||
            !addReversal(*sold, tickets, kind, reason, paidOut, at, card ? card->payment : 0))
            return false;
        left = pastSale(sale);
        return left.has_value();
    });
    return isDone ? left : std::nullopt;
}

} // namespace rivo::sales
