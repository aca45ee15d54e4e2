#include "Journal.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QUuid>
#include <QVariant>
#include <QtEndian>

#include <array>

#include <sqlite3.h>

namespace rivo::sales
{

namespace
{

// Marks the file as ours ("RivJ") in the place that SQLite keeps for it.
constexpr int applicationId = 0x5269764a;
constexpr int schemaVersion = 2;

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

QVariant timeOrNull(const QDateTime& time)
{
    return time.isValid() ? QVariant(timeText(time)) : QVariant(QVariant::String);
}

/// A text column must not be null, which is what QVariant makes of a null QString.
QVariant storable(const QVariant& value)
{
    return value.type() == QVariant::String && value.isNull() ? QVariant(QLatin1String("")) : value;
}

JournalFault foreign(const QString& detail) { return {JournalFault::Kind::Foreign, detail}; }

JournalFault damaged(const QString& detail) { return {JournalFault::Kind::Damaged, detail}; }

JournalFault faultOf(const QSqlError& error)
{
    // SQLite's result codes; extended codes carry the primary one in their lowest byte.
    constexpr int misfit = 1; // a statement does not fit the tables
    constexpr int busy = 5;
    constexpr int locked = 6;
    constexpr int corrupt = 11;
    constexpr int full = 13;
    constexpr int notADatabase = 26;
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case busy:
    case locked:
        return {JournalFault::Kind::Locked, error.text()};
    case misfit:
    case corrupt:
    case notADatabase:
        return {JournalFault::Kind::Damaged, error.text()};
    case full:
        return {JournalFault::Kind::Full, error.text()};
    default:
        return {JournalFault::Kind::Unreachable, error.text()};
    }
}

/// The write-ahead log beside a database.
QString logOf(const QString& file) { return file + QLatin1String("-wal"); }

/// The file that SQLite opens for `file`, and keeps its log beside: it follows links.
QString targetOf(const QString& file)
{
    constexpr int mostLinks = 40; // as many as the system follows
    QFileInfo info(file);
    for (int links = 0; info.isSymLink() && links < mostLinks; ++links)
        info.setFile(info.symLinkTarget());
    return info.absoluteFilePath();
}

/// Why a file is neither ours nor to be made. Read without SQLite, which would finish the
/// interrupted transactions of any database that it opens, and throw away the log of an empty one.
std::optional<JournalFault> headerFault(const QString& file)
{
    constexpr int idOffset = 68;
    constexpr int headerSize = idOffset + static_cast<int>(sizeof(qint32));
    QFile content(file);
    if (content.exists() && !content.open(QIODevice::ReadOnly))
        return std::nullopt; // SQLite will say why
    const QByteArray header = content.isOpen() ? content.read(headerSize) : QByteArray();
    if (header.isEmpty())
        return QFileInfo(logOf(file)).size() > 0
                   ? std::make_optional(damaged(QStringLiteral("a log without its database")))
                   : std::nullopt;
    if (header.size() < headerSize || !header.startsWith("SQLite format 3"))
        return damaged(QStringLiteral("not a database"));
    const auto id = qFromBigEndian<qint32>(header.constData() + idOffset);
    if (id != applicationId)
        return foreign(QStringLiteral("application id %1").arg(id));
    return std::nullopt;
}

/// Figures of shifts from their tickets, without a row for shifts that sold none.
constexpr char shiftFigures[] =
    "SELECT sale.shift AS shift, COUNT(*) AS tickets, SUM(price) AS total,"
    " SUM(pay_method = 2) AS cards, SUM((pay_method = 2) * price) AS card_total,"
    " MIN(number) AS first, MAX(number) AS last"
    " FROM ticket JOIN sale ON ticket.sale = sale.id";
static_assert(static_cast<int>(PayMethod::Card) == 2);

/// What an amount of the journal means: "EUR 2".
QString moneyText(const Currency& currency)
{
    return QStringLiteral("%1 %2").arg(currency.code()).arg(currency.decimals());
}

/// Reads the columns from number of the shift to last ticket, in the order of shiftFigures. Sums of
/// no tickets are null, which is 0.
ShiftReport figures(const QSqlQuery& row)
{
    ShiftReport report;
    report.zNumber = row.value(0).toLongLong();
    report.ticketCount = row.value(1).toInt();
    report.ticketSum = row.value(2).toLongLong();
    report.cardCount = row.value(3).toInt();
    report.cardSum = row.value(4).toLongLong();
    report.firstTicket = row.value(5).toLongLong();
    report.lastTicket = row.value(6).toLongLong();
    return report;
}

/// What holds in every journal.
struct Check
{
    QString statement;
    const char* result;
};

std::array<Check, 7> checks()
{
    return {{{QStringLiteral("PRAGMA integrity_check(1)"), "ok"},
             {QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name IN"
                             " ('journal', 'shift', 'sale', 'ticket', 'basket')"),
              "5"},
             {QStringLiteral("SELECT COUNT(*) FROM pragma_foreign_key_check"), "0"},
             {QStringLiteral("SELECT COUNT(*) FROM shift WHERE closed_at IS NULL"), "1"},
             {QStringLiteral("SELECT COUNT(*) FROM shift WHERE closed_at IS NULL AND paid_at IS NOT"
                             " NULL"),
              "0"},
             {QStringLiteral("SELECT COUNT(*) FROM sale WHERE total IS NOT"
                             " (SELECT SUM(price) FROM ticket WHERE ticket.sale = sale.id)"),
              "0"},
             {QStringLiteral("SELECT COUNT(*) FROM shift LEFT JOIN (%1 GROUP BY sale.shift) AS sold"
                             " ON sold.shift = z_number WHERE closed_at IS NOT NULL AND"
                             " (ticket_count IS NOT IFNULL(tickets, 0) OR"
                             " ticket_sum IS NOT IFNULL(total, 0) OR"
                             " card_count IS NOT IFNULL(cards, 0) OR"
                             " card_sum IS NOT IFNULL(card_total, 0) OR"
                             " first_ticket IS NOT IFNULL(first, 0) OR"
                             " last_ticket IS NOT IFNULL(last, 0))")
                  .arg(QLatin1String(shiftFigures)),
              "0"}}};
}

} // namespace

Journal::Journal() = default;

Journal::~Journal() { close(); }

QSqlDatabase Journal::database() const { return QSqlDatabase::database(m_connection, false); }

void Journal::close()
{
    if (m_connection.isEmpty())
        return;
    if (!m_fault || QFileInfo(logOf(database().databaseName())).size() == 0)
        setCheckpointOnClose(true);
    database().close();
    QSqlDatabase::removeDatabase(m_connection);
    m_connection.clear();
}

bool Journal::fail(const JournalFault& fault)
{
    if (!m_fault)
        m_fault = fault;
    return false;
}

std::optional<JournalFault> Journal::open(const QString& file, const Currency& currency,
                                          qint64 firstZNumber)
{
    close();
    const QString target = targetOf(file);
    m_fault = headerFault(target);
    if (!m_fault && !(connectTo(target) && prepare(currency, firstZNumber)))
        close();
    return m_fault;
}

bool Journal::connectTo(const QString& file)
{
    m_connection = QUuid::createUuid().toString();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(file);
    db.setConnectOptions(lockTimeout);
    if (!db.open())
        return fail(faultOf(db.lastError()));
    // Its handle is used below: a driver with an SQLite of its own would not survive that.
    const std::optional<QVariant> source = value(QStringLiteral("SELECT sqlite_source_id()"));
    if (!source)
        return false;
    return source->toString() == QLatin1String(sqlite3_sourceid())
               ? setCheckpointOnClose(false)
               : fail({JournalFault::Kind::Unreachable, source->toString()});
}

/// A write-ahead log that is left over would go into the database when the last connection closes,
/// even if nothing was ever written through it.
bool Journal::setCheckpointOnClose(bool isWanted)
{
    const QVariant driverHandle = database().driver()->handle();
    const bool isSqlite = qstrcmp(driverHandle.typeName(), "sqlite3*") == 0;
    sqlite3* handle = isSqlite ? *static_cast<sqlite3* const*>(driverHandle.constData()) : nullptr;
    return (handle != nullptr && sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE,
                                                   isWanted ? 0 : 1, nullptr) == SQLITE_OK) ||
           fail({JournalFault::Kind::Unreachable, QStringLiteral("no handle of SQLite")});
}

/// Looks before it writes: a file that is not ours stays as it is.
bool Journal::prepare(const Currency& currency, qint64 firstZNumber)
{
    const std::optional<QVariant> objects =
        setPragma("locking_mode", "exclusive")
            ? value(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"))
            : std::nullopt;
    if (!objects || !run(QStringLiteral("PRAGMA synchronous=FULL")) ||
        !run(QStringLiteral("PRAGMA foreign_keys=ON")))
        return false;
    // The tables come before the write-ahead log, so that the file itself says what it is.
    const bool isReady =
        objects->toInt() == 0 ? createTables(currency, firstZNumber) : hasValidContent(currency);
    return isReady && setPragma("journal_mode", "wal") &&
           inTransaction([] { return true; }); // fails if it may only be read
}

bool Journal::hasValidContent(const Currency& currency)
{
    const std::optional<QVariant> version = value(QStringLiteral("PRAGMA user_version"));
    if (!version)
        return false;
    if (version->toInt() != schemaVersion)
        return fail({JournalFault::Kind::OtherVersion, version->toString()});
    for (const Check& check : checks()) {
        const std::optional<QVariant> result = value(check.statement);
        if (!result)
            return false;
        if (result->toString() != QLatin1String(check.result))
            return fail(damaged(QStringLiteral("%1: %2").arg(check.statement, result->toString())));
    }
    const std::optional<QVariant> kept =
        value(QStringLiteral("SELECT currency || ' ' || decimals FROM journal"));
    if (!kept)
        return false;
    return kept->toString() == moneyText(currency) ||
           fail({JournalFault::Kind::OtherCurrency,
                 QStringLiteral("kept in %1, not in %2")
                     .arg(kept->toString(), moneyText(currency))});
}

bool Journal::createTables(const Currency& currency, qint64 firstZNumber)
{
    return inTransaction([&] {
        const QStringList statements{
            QStringLiteral("PRAGMA application_id=%1").arg(applicationId),
            QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion),
            QStringLiteral(
                "CREATE TABLE journal (currency TEXT NOT NULL, decimals INTEGER NOT NULL)"),
            QStringLiteral("CREATE TABLE shift (z_number INTEGER PRIMARY KEY, closed_at TEXT,"
                           " ticket_count INTEGER, ticket_sum INTEGER, card_count INTEGER,"
                           " card_sum INTEGER, first_ticket INTEGER, last_ticket INTEGER,"
                           " paid_at TEXT)"),
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
        journal.prepare(QStringLiteral("INSERT INTO journal VALUES (?, ?)"));
        journal.addBindValue(currency.code());
        journal.addBindValue(currency.decimals());
        QSqlQuery shift(database());
        shift.prepare(QStringLiteral("INSERT INTO shift (z_number) VALUES (?)"));
        shift.addBindValue(firstZNumber);
        return run(journal) && run(shift);
    });
}

/// The one value that `statement` yields.
std::optional<QVariant> Journal::value(const QString& statement)
{
    QSqlQuery query(database());
    if (!query.exec(statement) || (!query.next() && query.lastError().isValid())) {
        fail(faultOf(query.lastError()));
        return std::nullopt;
    }
    if (!query.isValid()) {
        fail(damaged(QStringLiteral("%1: nothing").arg(statement)));
        return std::nullopt;
    }
    return query.value(0);
}

/// Settings that SQLite answers with what it made of them.
bool Journal::setPragma(const char* setting, const char* wanted)
{
    const QString statement =
        QStringLiteral("PRAGMA %1=%2").arg(QLatin1String(setting), QLatin1String(wanted));
    const std::optional<QVariant> result = value(statement);
    if (!result)
        return false;
    return result->toString() == QLatin1String(wanted) ||
           fail({JournalFault::Kind::Unreachable, statement});
}

bool Journal::run(QSqlQuery& query) { return query.exec() || fail(faultOf(query.lastError())); }

bool Journal::run(const QString& statement)
{
    QSqlQuery query(database());
    return query.prepare(statement) ? run(query) : fail(faultOf(query.lastError()));
}

/// Runs `query` and calls `use` on each row. False if not all rows could be read.
template <typename Use>
bool Journal::forEachRow(QSqlQuery& query, Use use)
{
    if (!run(query))
        return false;
    while (query.next())
        use();
    return !query.lastError().isValid() || fail(faultOf(query.lastError()));
}

/// Runs `steps`, which say whether they succeeded, as one transaction.
template <typename Steps>
bool Journal::inTransaction(Steps steps)
{
    if (m_fault || !run(QStringLiteral("BEGIN IMMEDIATE")))
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

/// `selection`: what stands after the columns' names in the statement: number, way of payment, and
/// which tickets.
QVector<Ticket> Journal::readTickets(const QString& selection)
{
    if (m_fault)
        return {};
    QSqlQuery query(database());
    query.prepare(QStringLiteral("SELECT %1, %2").arg(columnNames(), selection));
    QVector<Ticket> tickets;
    const bool isRead = forEachRow(query, [&] {
        Ticket ticket;
        int at = 0;
        for (const Column& each : columns)
            each.set(ticket, query.value(at++));
        ticket.number = query.value(at++).toLongLong();
        ticket.payMethod = query.value(at).toInt();
        tickets.append(ticket);
    });
    return isRead ? tickets : QVector<Ticket>();
}

bool Journal::appendToBasket(const Ticket& ticket)
{
    return inTransaction(
        [&] { return insertTicket(QStringLiteral("basket"), ticket, {QVariant()}).has_value(); });
}

bool Journal::removeFromBasket(int row)
{
    return inTransaction([&] {
        QSqlQuery query(database());
        query.prepare(QStringLiteral("DELETE FROM basket WHERE line ="
                                     " (SELECT line FROM basket ORDER BY line LIMIT 1 OFFSET ?)"));
        query.addBindValue(row);
        return run(query);
    });
}

bool Journal::clearBasket()
{
    return inTransaction([&] { return run(QStringLiteral("DELETE FROM basket")); });
}

QVector<Ticket> Journal::basket()
{
    return readTickets(QStringLiteral("0, -1 FROM basket ORDER BY line"));
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
        if (sale.numRowsAffected() != 1)
            return fail(damaged(QStringLiteral("not exactly one running shift")));
        const QVariant saleId = sale.lastInsertId();
        for (Ticket& ticket : sold) {
            const auto number =
                insertTicket(QStringLiteral("ticket"), ticket, {QVariant(), saleId, 0});
            if (!number)
                return false;
            ticket.number = *number;
            ticket.payMethod = static_cast<int>(method);
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
    return readTickets(
        QStringLiteral("number, pay_method FROM ticket JOIN sale ON ticket.sale = sale.id"
                       " WHERE printed = 0 ORDER BY number"));
}

/// The figures of one shift from its tickets.
std::optional<ShiftReport> Journal::sumUp(qint64 zNumber)
{
    QSqlQuery query(database());
    query.prepare(QLatin1String(shiftFigures) + QStringLiteral(" WHERE sale.shift = ?"));
    query.addBindValue(zNumber);
    ShiftReport report;
    const bool isRead = forEachRow(query, [&] { report = figures(query); });
    report.zNumber = zNumber;
    return isRead ? std::make_optional(report) : std::nullopt;
}

std::optional<ShiftReport> Journal::runningShift()
{
    if (m_fault)
        return std::nullopt;
    const std::optional<QVariant> zNumber =
        value(QStringLiteral("SELECT z_number FROM shift WHERE closed_at IS NULL"));
    return zNumber ? sumUp(zNumber->toLongLong()) : std::nullopt;
}

QVector<ShiftReport> Journal::closedShifts()
{
    return m_fault ? QVector<ShiftReport>() : readShifts(QStringLiteral("closed_at IS NOT NULL"));
}

/// The kept figures of the shifts that meet `condition`, the oldest first.
QVector<ShiftReport> Journal::readShifts(const QString& condition)
{
    QSqlQuery query(database());
    query.prepare(QStringLiteral("SELECT z_number, ticket_count, ticket_sum, card_count, card_sum,"
                                 " first_ticket, last_ticket, closed_at, paid_at FROM shift"
                                 " WHERE %1 ORDER BY z_number")
                      .arg(condition));
    QVector<ShiftReport> reports;
    const bool isRead = forEachRow(query, [&] {
        ShiftReport report = figures(query);
        report.closedAt = timeOf(query.value(7));
        report.paidAt = timeOf(query.value(8));
        reports.append(report);
    });
    return isRead ? reports : QVector<ShiftReport>();
}

std::optional<ShiftReport> Journal::closeShift(const QDateTime& at)
{
    std::optional<ShiftReport> report;
    const bool isDone = inTransaction([&] {
        report = runningShift();
        if (!report)
            return false;
        report->closedAt = at;
        if (report->cash() == 0)
            report->paidAt = at;
        QSqlQuery closing(database());
        closing.prepare(QStringLiteral(
            "UPDATE shift SET closed_at = ?, ticket_count = ?, ticket_sum = ?, card_count = ?,"
            " card_sum = ?, first_ticket = ?, last_ticket = ?, paid_at = ? WHERE z_number = ?"));
        for (const QVariant& value :
             {QVariant(timeText(at)), QVariant(report->ticketCount), QVariant(report->ticketSum),
              QVariant(report->cardCount), QVariant(report->cardSum), QVariant(report->firstTicket),
              QVariant(report->lastTicket), timeOrNull(report->paidAt), QVariant(report->zNumber)})
            closing.addBindValue(value);
        QSqlQuery next(database());
        next.prepare(QStringLiteral("INSERT INTO shift (z_number) VALUES (?)"));
        next.addBindValue(report->zNumber + 1);
        return run(closing) && run(next);
    });
    return isDone ? report : std::nullopt;
}

std::optional<ShiftReport> Journal::handOver(qint64 zNumber, const QDateTime& at)
{
    QVector<ShiftReport> paid;
    const bool isDone = inTransaction([&] {
        QSqlQuery query(database());
        query.prepare(QStringLiteral("UPDATE shift SET paid_at = ? WHERE z_number = ?"
                                     " AND closed_at IS NOT NULL AND paid_at IS NULL"));
        query.addBindValue(timeText(at));
        query.addBindValue(zNumber);
        if (!run(query) || query.numRowsAffected() != 1)
            return false;
        paid = readShifts(QStringLiteral("z_number = %1").arg(zNumber));
        return paid.size() == 1;
    });
    return isDone ? std::make_optional(paid.first()) : std::nullopt;
}

} // namespace rivo::sales
