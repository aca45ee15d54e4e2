#include "Journal.h"

#include "JournalFile_p.h"
#include "JournalSchema_p.h"

namespace rivo::sales
{

namespace
{

QString timeText(const QDateTime& time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QDateTime timeOf(const QVariant& text)
{
    return QDateTime::fromString(text.toString(), Qt::ISODateWithMs);
}

QVariant timeOrNull(const QDateTime& time)
{
    return time.isValid() ? QVariant(timeText(time)) : QVariant(QVariant::String);
}

/// Looks before it writes: a file that is not ours stays as it is.
bool prepare(JournalFile& file, const Currency& currency, qint64 firstZNumber)
{
    const std::optional<QVariant> objects =
        file.setPragma("locking_mode", "exclusive")
            ? file.value(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"))
            : std::nullopt;
    if (!objects || !file.run(QStringLiteral("PRAGMA synchronous=FULL")) ||
        !file.run(QStringLiteral("PRAGMA foreign_keys=ON")))
        return false;
    // The tables come before the write-ahead log, so that the file itself says what it is.
    const bool isReady = objects->toInt() == 0 ? createTables(file, currency, firstZNumber)
                                               : hasValidContent(file, currency);
    return isReady && file.setPragma("journal_mode", "wal") &&
           file.inTransaction([] { return true; }); // fails if it may only be read
}

/// `keys`: the columns of `table` before those that describe the ticket. Returns the first of them
/// as it was stored: a null one becomes a number that was never used before.
std::optional<qint64> insertTicket(JournalFile& file, const QString& table, const Ticket& ticket,
                                   const QVector<QVariant>& keys)
{
    const int size = keys.size() + ticketColumnCount();
    QSqlQuery query = file.prepared(QStringLiteral("INSERT INTO %1 VALUES (?%2)")
                                        .arg(table, QStringLiteral(", ?").repeated(size - 1)));
    for (const QVariant& key : keys)
        query.addBindValue(key);
    bindTicket(query, ticket);
    return file.run(query) ? std::make_optional(query.lastInsertId().toLongLong()) : std::nullopt;
}

/// `selection`: what stands after the columns' names in the statement: number, way of payment, and
/// which tickets.
QVector<Ticket> readTickets(JournalFile& file, const QString& selection)
{
    if (file.fault())
        return {};
    QSqlQuery query =
        file.prepared(QStringLiteral("SELECT %1, %2").arg(ticketColumnNames(), selection));
    QVector<Ticket> tickets;
    const bool isRead = file.forEachRow(query, [&] {
        Ticket ticket = ticketOf(query);
        ticket.number = query.value(ticketColumnCount()).toLongLong();
        ticket.payMethod = query.value(ticketColumnCount() + 1).toInt();
        tickets.append(ticket);
    });
    return isRead ? tickets : QVector<Ticket>();
}

/// The figures of one shift from its tickets.
std::optional<ShiftReport> sumUp(JournalFile& file, qint64 zNumber)
{
    QSqlQuery query =
        file.prepared(QLatin1String(shiftFigures) + QStringLiteral(" WHERE sale.shift = ?"));
    query.addBindValue(zNumber);
    ShiftReport report;
    const bool isRead = file.forEachRow(query, [&] { report = figuresOf(query); });
    report.zNumber = zNumber;
    return isRead ? std::make_optional(report) : std::nullopt;
}

/// The kept figures of the shifts that meet `condition`, the oldest first.
QVector<ShiftReport> readShifts(JournalFile& file, const QString& condition)
{
    QSqlQuery query = file.prepared(
        QStringLiteral("SELECT z_number, ticket_count, ticket_sum, card_count, card_sum,"
                       " first_ticket, last_ticket, closed_at, paid_at FROM shift"
                       " WHERE %1 ORDER BY z_number")
            .arg(condition));
    QVector<ShiftReport> reports;
    const bool isRead = file.forEachRow(query, [&] {
        ShiftReport report = figuresOf(query);
        report.closedAt = timeOf(query.value(7));
        report.paidAt = timeOf(query.value(8));
        reports.append(report);
    });
    return isRead ? reports : QVector<ShiftReport>();
}

} // namespace

Journal::Journal() : m_file(std::make_unique<JournalFile>()) {}

Journal::~Journal() = default;

std::optional<JournalFault> Journal::open(const QString& file, const Currency& currency,
                                          qint64 firstZNumber)
{
    if (m_file->open(file) && !prepare(*m_file, currency, firstZNumber))
        m_file->close();
    return m_file->fault();
}

const std::optional<JournalFault>& Journal::fault() const { return m_file->fault(); }

bool Journal::appendToBasket(const Ticket& ticket)
{
    return m_file->inTransaction([&] {
        return insertTicket(*m_file, QStringLiteral("basket"), ticket, {QVariant()}).has_value();
    });
}

bool Journal::removeFromBasket(int row)
{
    return m_file->inTransaction([&] {
        QSqlQuery query = m_file->prepared(
            QStringLiteral("DELETE FROM basket WHERE line ="
                           " (SELECT line FROM basket ORDER BY line LIMIT 1 OFFSET ?)"));
        query.addBindValue(row);
        return m_file->run(query);
    });
}

bool Journal::clearBasket()
{
    return m_file->inTransaction([&] { return m_file->run(QStringLiteral("DELETE FROM basket")); });
}

QVector<Ticket> Journal::basket()
{
    return readTickets(*m_file, QStringLiteral("0, -1 FROM basket ORDER BY line"));
}

std::optional<QVector<Ticket>> Journal::confirmSale(const QVector<Ticket>& tickets,
                                                    PayMethod method, const QDateTime& at)
{
    if (tickets.isEmpty())
        return std::nullopt;
    QVector<Ticket> sold = tickets;
    const bool isDone = m_file->inTransaction([&] {
        Minor total = 0;
        for (const Ticket& ticket : tickets)
            total += ticket.price;
        QSqlQuery sale = m_file->prepared(
            QStringLiteral("INSERT INTO sale (shift, sold_at, pay_method, total) SELECT"
                           " z_number, ?, ?, ? FROM shift WHERE closed_at IS NULL"));
        sale.addBindValue(timeText(at));
        sale.addBindValue(static_cast<int>(method));
        sale.addBindValue(total);
        if (!m_file->run(sale))
            return false;
        if (sale.numRowsAffected() != 1)
            return m_file->fail(damaged(QStringLiteral("not exactly one running shift")));
        const QVariant saleId = sale.lastInsertId();
        for (Ticket& ticket : sold) {
            const auto number =
                insertTicket(*m_file, QStringLiteral("ticket"), ticket, {QVariant(), saleId, 0});
            if (!number)
                return false;
            ticket.number = *number;
            ticket.payMethod = static_cast<int>(method);
        }
        return m_file->run(QStringLiteral("DELETE FROM basket"));
    });
    return isDone ? std::make_optional(sold) : std::nullopt;
}

bool Journal::markPrinted(qint64 ticketNumber)
{
    return m_file->inTransaction([&] {
        QSqlQuery query =
            m_file->prepared(QStringLiteral("UPDATE ticket SET printed = 1 WHERE number = ?"));
        query.addBindValue(ticketNumber);
        return m_file->run(query);
    });
}

QVector<Ticket> Journal::unprintedTickets()
{
    return readTickets(
        *m_file, QStringLiteral("number, pay_method FROM ticket JOIN sale ON ticket.sale = sale.id"
                                " WHERE printed = 0 ORDER BY number"));
}

std::optional<ShiftReport> Journal::runningShift()
{
    if (m_file->fault())
        return std::nullopt;
    const std::optional<QVariant> zNumber =
        m_file->value(QStringLiteral("SELECT z_number FROM shift WHERE closed_at IS NULL"));
    return zNumber ? sumUp(*m_file, zNumber->toLongLong()) : std::nullopt;
}

QVector<ShiftReport> Journal::closedShifts()
{
    return m_file->fault() ? QVector<ShiftReport>()
                           : readShifts(*m_file, QStringLiteral("closed_at IS NOT NULL"));
}

std::optional<ShiftReport> Journal::closeShift(const QDateTime& at)
{
    std::optional<ShiftReport> report;
    const bool isDone = m_file->inTransaction([&] {
        report = runningShift();
        if (!report)
            return false;
        report->closedAt = at;
        if (report->cash() == 0)
            report->paidAt = at;
        QSqlQuery closing = m_file->prepared(QStringLiteral(
            "UPDATE shift SET closed_at = ?, ticket_count = ?, ticket_sum = ?, card_count = ?,"
            " card_sum = ?, first_ticket = ?, last_ticket = ?, paid_at = ? WHERE z_number = ?"));
        for (const QVariant& value :
             {QVariant(timeText(at)), QVariant(report->ticketCount), QVariant(report->ticketSum),
              QVariant(report->cardCount), QVariant(report->cardSum), QVariant(report->firstTicket),
              QVariant(report->lastTicket), timeOrNull(report->paidAt), QVariant(report->zNumber)})
            closing.addBindValue(value);
        QSqlQuery next =
            m_file->prepared(QStringLiteral("INSERT INTO shift (z_number) VALUES (?)"));
        next.addBindValue(report->zNumber + 1);
        return m_file->run(closing) && m_file->run(next);
    });
    return isDone ? report : std::nullopt;
}

std::optional<ShiftReport> Journal::handOver(qint64 zNumber, const QDateTime& at)
{
    QVector<ShiftReport> paid;
    const bool isDone = m_file->inTransaction([&] {
        QSqlQuery query =
            m_file->prepared(QStringLiteral("UPDATE shift SET paid_at = ? WHERE z_number = ?"
                                            " AND closed_at IS NOT NULL AND paid_at IS NULL"));
        query.addBindValue(timeText(at));
        query.addBindValue(zNumber);
        if (!m_file->run(query) || query.numRowsAffected() != 1)
            return false;
        paid = readShifts(*m_file, QStringLiteral("z_number = %1").arg(zNumber));
        return paid.size() == 1;
    });
    return isDone ? std::make_optional(paid.first()) : std::nullopt;
}

} // namespace rivo::sales
