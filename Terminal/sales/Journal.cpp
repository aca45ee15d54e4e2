#include "Journal.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QUuid>
#include <QVariant>

#include <array>

namespace rivo::sales
{

namespace
{

// Marks the file as ours ("RivJ") in the place that SQLite keeps for it.
constexpr int applicationId = 0x5269764a;
constexpr int schemaVersion = 1;

const auto lockTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=500");

/// One column that the tables of tickets and of the unfinished basket share.
struct Column
{
    const char* name;
    const char* type;
    QVariant (*get)(const Ticket&);
    void (*set)(Ticket&, const QVariant&);
};

template <auto Field>
constexpr Column column(const char* name)
{
    using T = std::decay_t<decltype(Ticket().*Field)>;
    constexpr bool isText = std::is_same_v<T, QString>;
    return {name, isText ? "TEXT NOT NULL" : "INTEGER NOT NULL",
            [](const Ticket& ticket) { return QVariant(ticket.*Field); },
            [](Ticket& ticket, const QVariant& value) { ticket.*Field = value.value<T>(); }};
}

const std::array columns{column<&Ticket::passengerTypeId>("passenger_type"),
                         column<&Ticket::fareProductId>("fare_product"),
                         column<&Ticket::fromStopGroupId>("from_zone"),
                         column<&Ticket::toStopGroupId>("to_zone"),
                         column<&Ticket::description>("description"),
                         column<&Ticket::fareProductName>("fare_product_name"),
                         column<&Ticket::icon>("icon"),
                         column<&Ticket::price>("price"),
                         column<&Ticket::origin>("origin"),
                         column<&Ticket::destination>("destination"),
                         column<&Ticket::isReturnFee>("is_return"),
                         column<&Ticket::isDaily>("is_daily"),
                         column<&Ticket::routeId>("route"),
                         column<&Ticket::fromStopId>("from_stop"),
                         column<&Ticket::toStopId>("to_stop"),
                         column<&Ticket::currentStopId>("current_stop"),
                         column<&Ticket::tripsRouteId>("trips_route"),
                         column<&Ticket::tripsExecutionId>("trips_execution"),
                         column<&Ticket::publicRouteExecutionId>("public_execution")};

QString columnNames()
{
    QStringList names;
    for (const Column& each : columns)
        names.append(QLatin1String(each.name));
    return names.join(QLatin1String(", "));
}

QString columnDefinitions()
{
    QStringList definitions;
    for (const Column& each : columns)
        definitions.append(QLatin1String(each.name) + QLatin1Char(' ') + QLatin1String(each.type));
    return definitions.join(QLatin1String(", "));
}

QString timeText(const QDateTime& time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QDateTime timeOf(const QVariant& text)
{
    return QDateTime::fromString(text.toString(), Qt::ISODateWithMs);
}

/// A text column must not be null, which is what QVariant makes of a null QString.
QVariant storable(const QVariant& value)
{
    return value.type() == QVariant::String && value.isNull() ? QVariant(QLatin1String("")) : value;
}

JournalFault faultOf(const QSqlError& error)
{
    // SQLite's result codes; extended codes carry the primary one in their lowest byte.
    constexpr int busy = 5;
    constexpr int locked = 6;
    constexpr int corrupt = 11;
    constexpr int full = 13;
    constexpr int notADatabase = 26;
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case busy:
    case locked:
        return {JournalFault::Kind::Locked, error.text()};
    case corrupt:
    case notADatabase:
        return {JournalFault::Kind::Damaged, error.text()};
    case full:
        return {JournalFault::Kind::Full, error.text()};
    default:
        return {JournalFault::Kind::Unreachable, error.text()};
    }
}

} // namespace

Journal::Journal() = default;

Journal::~Journal() { close(); }

QSqlDatabase Journal::database() const { return QSqlDatabase::database(m_connection, false); }

void Journal::close()
{
    if (m_connection.isEmpty())
        return;
    database().close();
    QSqlDatabase::removeDatabase(m_connection);
    m_connection.clear();
}

void Journal::stop(const JournalFault& fault)
{
    if (!m_fault)
        m_fault = fault;
}

std::optional<JournalFault> Journal::open(const QString& file, const Currency& currency,
                                          qint64 firstZNumber)
{
    close();
    m_fault = openFile(file);
    if (!m_fault) {
        const std::optional<JournalFault> fault = prepareFile(currency, firstZNumber);
        if (fault)
            m_fault = fault;
    }
    return m_fault;
}

std::optional<JournalFault> Journal::openFile(const QString& file)
{
    m_connection = QUuid::createUuid().toString();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(file);
    db.setConnectOptions(lockTimeout);
    if (!db.open())
        return faultOf(db.lastError());
    return std::nullopt;
}

/// Looks before it writes: a file that is not ours stays as it is.
std::optional<JournalFault> Journal::prepareFile(const Currency& currency, qint64 firstZNumber)
{
    const auto value = [this](const char* statement) {
        QSqlQuery query(database());
        return query.exec(QLatin1String(statement)) && query.next()
                   ? std::make_pair(query.value(0), std::optional<JournalFault>())
                   : std::make_pair(QVariant(), std::make_optional(faultOf(query.lastError())));
    };
    const auto foreign = [](const QString& detail) {
        return JournalFault{JournalFault::Kind::Foreign, detail};
    };

    for (const char* setting : {"PRAGMA locking_mode=EXCLUSIVE", "PRAGMA application_id"}) {
        if (const auto [ignored, fault] = value(setting); fault)
            return fault;
    }
    const auto [objects, fault] = value("SELECT COUNT(*) FROM sqlite_master");
    if (fault)
        return fault;
    const int id = value("PRAGMA application_id").first.toInt();
    const bool isNew = id == 0 && objects.toInt() == 0;
    if (!isNew) {
        if (id != applicationId)
            return foreign(QStringLiteral("application id %1").arg(id));
        const int version = value("PRAGMA user_version").first.toInt();
        if (version != schemaVersion)
            return foreign(QStringLiteral("version %1").arg(version));
        const auto [check, unchecked] = value("PRAGMA quick_check(1)");
        if (unchecked)
            return unchecked;
        if (check.toString() != QLatin1String("ok"))
            return JournalFault{JournalFault::Kind::Damaged, check.toString()};
    }

    if (!run(QStringLiteral("PRAGMA journal_mode=WAL")) ||
        !run(QStringLiteral("PRAGMA synchronous=FULL")) ||
        !run(QStringLiteral("PRAGMA foreign_keys=ON")))
        return m_fault;
    if (isNew)
        return createTables(currency, firstZNumber);
    const auto [code, unread] = value("SELECT currency FROM journal");
    if (unread)
        return unread;
    if (code.toString() != currency.code())
        return foreign(
            QStringLiteral("kept in %1, not in %2").arg(code.toString(), currency.code()));
    // Takes the lock that a reader alone would not hold.
    inTransaction([] { return true; });
    return m_fault;
}

std::optional<JournalFault> Journal::createTables(const Currency& currency, qint64 firstZNumber)
{
    inTransaction([&] {
        const QStringList statements{
            QStringLiteral("PRAGMA application_id=%1").arg(applicationId),
            QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion),
            QStringLiteral("CREATE TABLE journal (currency TEXT NOT NULL)"),
            QStringLiteral("CREATE TABLE shift (z_number INTEGER PRIMARY KEY, closed_at TEXT,"
                           " ticket_count INTEGER, ticket_sum INTEGER, card_count INTEGER,"
                           " card_sum INTEGER, first_ticket INTEGER, last_ticket INTEGER)"),
            QStringLiteral("CREATE TABLE sale (id INTEGER PRIMARY KEY AUTOINCREMENT,"
                           " shift INTEGER NOT NULL REFERENCES shift, sold_at TEXT NOT NULL,"
                           " pay_method INTEGER NOT NULL, total INTEGER NOT NULL)"),
            QStringLiteral("CREATE INDEX sale_shift ON sale (shift)"),
            QStringLiteral("CREATE TABLE ticket (number INTEGER PRIMARY KEY AUTOINCREMENT,"
                           " sale INTEGER NOT NULL REFERENCES sale,"
                           " printed INTEGER NOT NULL, %1)")
                .arg(columnDefinitions()),
            QStringLiteral("CREATE INDEX ticket_sale ON ticket (sale)"),
            QStringLiteral("CREATE INDEX ticket_unprinted ON ticket (number) WHERE printed = 0"),
            QStringLiteral("CREATE TABLE basket (line INTEGER PRIMARY KEY, %1)")
                .arg(columnDefinitions())};
        for (const QString& statement : statements) {
            if (!run(statement))
                return false;
        }
        QSqlQuery journal(database());
        journal.prepare(QStringLiteral("INSERT INTO journal VALUES (?)"));
        journal.addBindValue(currency.code());
        QSqlQuery shift(database());
        shift.prepare(QStringLiteral("INSERT INTO shift (z_number) VALUES (?)"));
        shift.addBindValue(firstZNumber);
        return run(journal) && run(shift);
    });
    return m_fault;
}

bool Journal::run(QSqlQuery& query)
{
    if (query.exec())
        return true;
    stop(faultOf(query.lastError()));
    return false;
}

bool Journal::run(const QString& statement)
{
    QSqlQuery query(database());
    return query.prepare(statement) ? run(query) : (stop(faultOf(query.lastError())), false);
}

/// Runs `steps`, which say whether they succeeded, as one transaction.
template <typename Steps>
bool Journal::inTransaction(Steps steps)
{
    if (m_fault || m_connection.isEmpty() || !run(QStringLiteral("BEGIN IMMEDIATE")))
        return false;
    if (steps() && run(QStringLiteral("COMMIT")))
        return true;
    run(QStringLiteral("ROLLBACK")); // fails if SQLite has rolled back already
    return false;
}

/// `keys`: the columns of `table` before those that describe the ticket. Returns the first of them
/// as it was stored: a null one becomes a number that was never used before.
std::optional<qint64> Journal::insertTicket(const QString& table, const Ticket& ticket,
                                            const QVector<QVariant>& keys)
{
    const int size = keys.size() + static_cast<int>(columns.size());
    QSqlQuery query(database());
    query.prepare(QStringLiteral("INSERT INTO %1 VALUES (?%2)")
                      .arg(table, QStringLiteral(", ?").repeated(size - 1)));
    for (const QVariant& key : keys)
        query.addBindValue(key);
    for (const Column& each : columns)
        query.addBindValue(storable(each.get(ticket)));
    return run(query) ? std::make_optional(query.lastInsertId().toLongLong()) : std::nullopt;
}

/// `selection`: what stands after the columns' names in the statement.
QVector<Ticket> Journal::readTickets(const QString& selection)
{
    if (m_fault)
        return {};
    QSqlQuery query(database());
    query.prepare(QStringLiteral("SELECT %1, %2").arg(columnNames(), selection));
    if (!run(query))
        return {};
    QVector<Ticket> tickets;
    while (query.next()) {
        Ticket ticket;
        int at = 0;
        for (const Column& each : columns)
            each.set(ticket, query.value(at++));
        ticket.number = query.value(at).toLongLong();
        tickets.append(ticket);
    }
    return tickets;
}

bool Journal::storeBasket(const QVector<Ticket>& tickets)
{
    return inTransaction([&] {
        if (!run(QStringLiteral("DELETE FROM basket")))
            return false;
        for (int line = 0; line < tickets.size(); ++line) {
            if (!insertTicket(QStringLiteral("basket"), tickets.at(line), {line}))
                return false;
        }
        return true;
    });
}

QVector<Ticket> Journal::basket()
{
    return readTickets(QStringLiteral("0 FROM basket ORDER BY line"));
}

std::optional<QVector<Ticket>> Journal::confirmSale(const QVector<Ticket>& tickets,
                                                    PayMethod method, const QDateTime& at)
{
    if (tickets.isEmpty())
        return std::nullopt;
    QVector<Ticket> sold = tickets;
    const bool isDone = inTransaction([&] {
        Minor total = 0;
        for (const Ticket& ticket : tickets)
            total += ticket.price;
        QSqlQuery sale(database());
        sale.prepare(QStringLiteral("INSERT INTO sale (shift, sold_at, pay_method, total) SELECT"
                                    " z_number, ?, ?, ? FROM shift WHERE closed_at IS NULL"));
        sale.addBindValue(timeText(at));
        sale.addBindValue(static_cast<int>(method));
        sale.addBindValue(total);
        if (!run(sale))
            return false;
        if (sale.numRowsAffected() != 1) {
            stop({JournalFault::Kind::Damaged, QStringLiteral("not exactly one running shift")});
            return false;
        }
        const QVariant saleId = sale.lastInsertId();
        for (Ticket& ticket : sold) {
            const auto number =
                insertTicket(QStringLiteral("ticket"), ticket, {QVariant(), saleId, 0});
            if (!number)
                return false;
            ticket.number = *number;
        }
        return run(QStringLiteral("DELETE FROM basket"));
    });
    return isDone ? std::make_optional(sold) : std::nullopt;
}

bool Journal::markPrinted(qint64 ticketNumber)
{
    return inTransaction([&] {
        QSqlQuery query(database());
        query.prepare(QStringLiteral("UPDATE ticket SET printed = 1 WHERE number = ?"));
        query.addBindValue(ticketNumber);
        return run(query);
    });
}

QVector<Ticket> Journal::unprintedTickets()
{
    return readTickets(QStringLiteral("number FROM ticket WHERE printed = 0 ORDER BY number"));
}

/// The figures of one shift from its tickets.
std::optional<ShiftReport> Journal::sumUp(qint64 zNumber, const QDateTime& closedAt)
{
    QSqlQuery query(database());
    query.prepare(
        QStringLiteral("SELECT COUNT(*), IFNULL(SUM(price), 0),"
                       " IFNULL(SUM(pay_method = ?), 0),"
                       " IFNULL(SUM(CASE WHEN pay_method = ? THEN price ELSE 0 END), 0),"
                       " IFNULL(MIN(number), 0), IFNULL(MAX(number), 0)"
                       " FROM ticket JOIN sale ON ticket.sale = sale.id WHERE sale.shift = ?"));
    query.addBindValue(static_cast<int>(PayMethod::Card));
    query.addBindValue(static_cast<int>(PayMethod::Card));
    query.addBindValue(zNumber);
    if (!run(query) || !query.next())
        return std::nullopt;
    ShiftReport report;
    report.zNumber = zNumber;
    report.ticketCount = query.value(0).toInt();
    report.ticketSum = query.value(1).toLongLong();
    report.cardCount = query.value(2).toInt();
    report.cardSum = query.value(3).toLongLong();
    report.firstTicket = query.value(4).toLongLong();
    report.lastTicket = query.value(5).toLongLong();
    report.closedAt = closedAt;
    return report;
}

std::optional<ShiftReport> Journal::runningShift()
{
    if (m_fault || m_connection.isEmpty())
        return std::nullopt;
    QSqlQuery query(database());
    query.prepare(QStringLiteral("SELECT z_number FROM shift WHERE closed_at IS NULL"));
    if (!run(query))
        return std::nullopt;
    if (!query.next()) {
        stop({JournalFault::Kind::Damaged, QStringLiteral("no running shift")});
        return std::nullopt;
    }
    return sumUp(query.value(0).toLongLong(), QDateTime());
}

QVector<ShiftReport> Journal::closedShifts()
{
    if (m_fault || m_connection.isEmpty())
        return {};
    QSqlQuery query(database());
    query.prepare(QStringLiteral("SELECT z_number, ticket_count, ticket_sum, card_count, card_sum,"
                                 " first_ticket, last_ticket, closed_at FROM shift"
                                 " WHERE closed_at IS NOT NULL ORDER BY z_number"));
    if (!run(query))
        return {};
    QVector<ShiftReport> reports;
    while (query.next())
        reports.append({query.value(0).toLongLong(), query.value(1).toInt(),
                        query.value(2).toLongLong(), query.value(3).toInt(),
                        query.value(4).toLongLong(), query.value(5).toLongLong(),
                        query.value(6).toLongLong(), timeOf(query.value(7))});
    return reports;
}

std::optional<ShiftReport> Journal::closeShift(const QDateTime& at)
{
    std::optional<ShiftReport> report;
    const bool isDone = inTransaction([&] {
        report = runningShift();
        if (!report)
            return false;
        report->closedAt = at;
        QSqlQuery closing(database());
        closing.prepare(QStringLiteral(
            "UPDATE shift SET closed_at = ?, ticket_count = ?, ticket_sum = ?, card_count = ?,"
            " card_sum = ?, first_ticket = ?, last_ticket = ? WHERE z_number = ?"));
        for (const QVariant& value :
             {QVariant(timeText(at)), QVariant(report->ticketCount), QVariant(report->ticketSum),
              QVariant(report->cardCount), QVariant(report->cardSum), QVariant(report->firstTicket),
              QVariant(report->lastTicket), QVariant(report->zNumber)})
            closing.addBindValue(value);
        QSqlQuery next(database());
        next.prepare(QStringLiteral("INSERT INTO shift (z_number) VALUES (?)"));
        next.addBindValue(report->zNumber + 1);
        return run(closing) && run(next);
    });
    return isDone ? report : std::nullopt;
}

} // namespace rivo::sales
