#include "JournalSchema_p.h"

#include "JournalChain_p.h"
#include "JournalFigures_p.h"
#include "JournalFile_p.h"

#include <QStringList>

#include <array>

namespace rivo::sales
{

namespace
{

constexpr int schemaVersion = 6; // of a new journal
constexpr int oldestVersion = 2;
constexpr int firstWithRecords = 3;
constexpr int firstWithPayments = 4;
constexpr int firstWithClock = 5;
constexpr int firstWithSeals = 6;
constexpr int firstWithPruning = 7; // made by the first pruning

/// What an amount of the journal means: "EUR 2".
QString moneyText(const Currency& currency)
{
    return QStringLiteral("%1 %2").arg(currency.code()).arg(currency.decimals());
}

/// The tables with a row for each record of their kind, and the first version that has them.
struct RecordTable
{
    const char* name;
    RecordKind kind;
    int since;
};

constexpr std::array<RecordTable, 11> recordTables{
    {{"opening", RecordKind::Opening, firstWithRecords},
     {"sale", RecordKind::Sale, firstWithRecords},
     {"printout", RecordKind::Printout, firstWithRecords},
     {"reversal", RecordKind::Reversal, firstWithRecords},
     {"closing", RecordKind::Closing, firstWithRecords},
     {"hand_over", RecordKind::HandOver, firstWithRecords},
     {"payment", RecordKind::Payment, firstWithPayments},
     {"outcome", RecordKind::Outcome, firstWithPayments},
     {"card_day", RecordKind::CardDay, firstWithPayments},
     {"clock", RecordKind::Clock, firstWithClock},
     {"pruning", RecordKind::Pruning, firstWithPruning}}};

/// All rows of these tables: the number of the record, and its kind by the table.
QString rowsOfRecordTables(int version)
{
    QStringList parts;
    for (const RecordTable& table : recordTables) {
        if (table.since <= version)
            parts.append(QStringLiteral("SELECT record, %1 AS kind FROM %2")
                             .arg(static_cast<int>(table.kind))
                             .arg(QLatin1String(table.name)));
    }
    return parts.join(QLatin1String(" UNION ALL "));
}

/// The number before the first shift.
QString noShift() { return QStringLiteral("(SELECT MIN(z_number) - 1 FROM shift)"); }

/// What holds in every journal that has records.
QVector<Check> checksOfRecords(int version)
{
    const auto none = [](const QString& rows) {
        return Check{QStringLiteral("SELECT COUNT(*) FROM %1").arg(rows)};
    };
    const bool hasPruning = version >= firstWithPruning;
    const QString prunedRecord = hasPruning ? lastPrunedRecord() : QStringLiteral("0");
    const QString prunedShift = hasPruning ? lastPrunedShift() : noShift();
    return {
        {QStringLiteral("PRAGMA integrity_check(1)"), "ok"},
        // A hand-over may follow the pruning of its shift.
        none(QStringLiteral("pragma_foreign_key_check WHERE \"table\" <> 'hand_over' OR"
                            " parent <> 'closing' OR rowid > %1")
                 .arg(prunedShift)),
        // Records are numbered without holes, and each is in the table of its kind.
        {QStringLiteral("SELECT IFNULL((SELECT seq FROM sqlite_sequence WHERE name = 'record'), 0)"
                        " - %1 - COUNT(*) FROM record")
             .arg(prunedRecord)},
        none(QStringLiteral("record LEFT JOIN (%1) AS part ON part.record = record.id"
                            " WHERE part.kind IS NOT record.kind")
                 .arg(rowsOfRecordTables(version))),
        // The last shift runs, all others are closed.
        {QStringLiteral("SELECT (SELECT COUNT(*) FROM shift WHERE z_number > %1) -"
                        " (SELECT COUNT(*) FROM closing)")
             .arg(prunedShift),
         "1"},
        none(QStringLiteral("closing WHERE shift = (SELECT MAX(z_number) FROM shift)")),
        none(QStringLiteral("record JOIN closing ON closing.record = record.id"
                            " WHERE closing.shift <> record.shift")),
        none(QStringLiteral("record JOIN hand_over ON hand_over.record = record.id"
                            " WHERE hand_over.shift <> record.shift")),
        // Sums of sales and reversals are those of their tickets.
        none(QStringLiteral("sale WHERE total IS NOT"
                            " (SELECT SUM(price) FROM ticket WHERE ticket.sale = sale.record)")),
        none(QStringLiteral("sale WHERE given - change <> (pay_method = 1) * (total + rounding)")),
        none(QStringLiteral(
            "reversal WHERE total IS NOT (SELECT SUM(price) FROM reversed_ticket JOIN ticket ON"
            " number = reversed_ticket.ticket WHERE reversed_ticket.reversal = reversal.record"
            " AND ticket.sale = reversal.sale)")),
        none(QStringLiteral("reversal JOIN record AS own ON own.id = reversal.record"
                            " JOIN record AS sold ON sold.id = reversal.sale"
                            " WHERE own.shift <> sold.shift")),
        // Tickets without an original on paper are those to be printed.
        none(QStringLiteral("ticket LEFT JOIN printout ON printout.ticket = number AND is_copy = 0"
                            " LEFT JOIN unprinted ON unprinted.ticket = number"
                            " WHERE (printout.ticket IS NULL) <> (unprinted.ticket IS NOT NULL)")),
        // Closed shifts have the figures of their records.
        none(QStringLiteral("closing JOIN (%1) AS added ON added.z_number = closing.shift"
                            " WHERE (closing.%2) IS NOT (added.%3)")
                 .arg(figuresOfShifts(),
                      figureNames().replace(QLatin1String(", "), QLatin1String(", closing.")),
                      figureNames().replace(QLatin1String(", "), QLatin1String(", added.")))),
        none(QStringLiteral("hand_over JOIN closing USING (shift) WHERE counted - difference <> ") +
             QLatin1String(dueOfFigures))};
}

/// What holds since records are sealed: shifts and tickets have numbers without holes.
QVector<Check> checksOfSeals()
{
    return {{QStringLiteral("SELECT MAX(z_number) - COUNT(*) + 1 - (SELECT first_shift FROM chain)"
                            " FROM shift")},
            {QStringLiteral("SELECT IFNULL((SELECT seq FROM sqlite_sequence WHERE name = 'ticket'),"
                            " 0) - last_ticket - (SELECT COUNT(*) FROM ticket WHERE number >"
                            " last_ticket) FROM chain")}};
}

/// What holds in a journal of `version`.
QVector<Check> checksOf(int version)
{
    if (version < firstWithRecords)
        return checksOfVersion2();
    return checksOfRecords(version) +
           (version < firstWithPayments ? QVector<Check>() : checksOfPayments()) +
           (version < firstWithSeals ? QVector<Check>() : checksOfSeals());
}

} // namespace

QString lastPrunedRecord() { return QStringLiteral("(SELECT IFNULL(MAX(last), 0) FROM pruning)"); }

QString lastPrunedShift()
{
    return QStringLiteral("(SELECT IFNULL(MAX(shift), %1) FROM pruning)").arg(noShift());
}

bool passes(JournalFile& file, const QVector<Check>& checks)
{
    for (const Check& check : checks) {
        const std::optional<QVariant> result = file.value(check.statement);
        if (!result)
            return false;
        if (result->toString() != QLatin1String(check.result))
            return file.fail(
                damaged(QStringLiteral("%1: %2").arg(check.statement, result->toString())));
    }
    return true;
}

namespace
{

QStringList tablesOfRecords()
{
    const auto table = [](const char* name, const char* definitions) {
        return QStringLiteral("CREATE TABLE %1 (%2)")
            .arg(QLatin1String(name), QLatin1String(definitions));
    };
    const auto withTicket = [](const QString& statement) {
        return statement.arg(ticketColumnDefinitions());
    };
    return {
        table("shift", "z_number INTEGER PRIMARY KEY"),
        table("record", "id INTEGER PRIMARY KEY AUTOINCREMENT, kind INTEGER NOT NULL,"
                        " shift INTEGER NOT NULL REFERENCES shift, at TEXT NOT NULL,"
                        " driver INTEGER NOT NULL"),
        QStringLiteral("CREATE INDEX record_shift ON record (shift, kind)"),
        table("opening", "record INTEGER PRIMARY KEY REFERENCES record, amount INTEGER NOT NULL"),
        table("sale", "record INTEGER PRIMARY KEY REFERENCES record, pay_method INTEGER NOT NULL,"
                      " total INTEGER NOT NULL, rounding INTEGER NOT NULL, given INTEGER NOT NULL,"
                      " change INTEGER NOT NULL"),
        withTicket(QStringLiteral("CREATE TABLE ticket (number INTEGER PRIMARY KEY AUTOINCREMENT,"
                                  " sale INTEGER NOT NULL REFERENCES sale, %1)")),
        QStringLiteral("CREATE INDEX ticket_sale ON ticket (sale)"),
        table("printout", "record INTEGER PRIMARY KEY REFERENCES record,"
                          " ticket INTEGER NOT NULL REFERENCES ticket, is_copy INTEGER NOT NULL"),
        QStringLiteral("CREATE UNIQUE INDEX printout_original ON printout (ticket)"
                       " WHERE is_copy = 0"),
        QStringLiteral("CREATE INDEX printout_copy ON printout (ticket) WHERE is_copy = 1"),
        table("reversal", "record INTEGER PRIMARY KEY REFERENCES record,"
                          " sale INTEGER NOT NULL REFERENCES sale, reason_kind INTEGER NOT NULL,"
                          " reason TEXT NOT NULL, total INTEGER NOT NULL,"
                          " paid_out INTEGER NOT NULL"),
        QStringLiteral("CREATE INDEX reversal_sale ON reversal (sale)"),
        table("reversed_ticket", "ticket INTEGER PRIMARY KEY REFERENCES ticket,"
                                 " reversal INTEGER NOT NULL REFERENCES reversal"),
        QStringLiteral("CREATE INDEX reversed_ticket_reversal ON reversed_ticket (reversal)"),
        QStringLiteral("CREATE TABLE closing (shift INTEGER PRIMARY KEY REFERENCES shift,"
                       " record INTEGER NOT NULL UNIQUE REFERENCES record, %1)")
            .arg(figureDefinitions()),
        table("hand_over", "shift INTEGER PRIMARY KEY REFERENCES closing,"
                           " record INTEGER NOT NULL UNIQUE REFERENCES record,"
                           " counted INTEGER NOT NULL, difference INTEGER NOT NULL"),
        table("unprinted", "ticket INTEGER PRIMARY KEY REFERENCES ticket"),
        withTicket(QStringLiteral("CREATE TABLE basket (line INTEGER PRIMARY KEY, %1)"))};
}

/// What the file has beside the tables of records.
const auto journalTable =
    QStringLiteral("CREATE TABLE journal (currency TEXT NOT NULL, decimals INTEGER NOT NULL)");

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

/// The statements that made the tables and indexes of `version`, as SQLite keeps them.
QStringList schemaOf(int version)
{
    QStringList statements = tablesOfRecords();
    statements << journalTable << QStringLiteral("CREATE TABLE sqlite_sequence(name,seq)");
    if (version >= firstWithPayments)
        statements += paymentTables();
    if (version >= firstWithClock)
        statements += clockTables();
    if (version >= firstWithSeals)
        statements += chainTables();
    if (version >= firstWithPruning)
        statements += pruningTables();
    return statements;
}

/// Whether `file` has the tables and indexes of `version` and nothing else. Read before any
/// statement that uses them: a trigger or a view of someone else would change what those do.
bool hasSchemaOf(JournalFile& file, int version)
{
    // Indexes that SQLite makes for constraints have no statement.
    const bool hasStatements = version >= firstWithRecords;
    QSqlQuery query = file.prepared(
        hasStatements ? QStringLiteral("SELECT sql FROM sqlite_master WHERE sql NOT NULL")
                      : QStringLiteral("SELECT type || ' ' || name FROM sqlite_master"));
    QStringList found;
    if (!file.forEachRow(query, [&] { found.append(query.value(0).toString()); }))
        return false;
    const QStringList expected = sorted(hasStatements ? schemaOf(version) : objectsOfVersion2());
    found = sorted(found);
    for (int at = 0; at < qMax(found.size(), expected.size()); ++at) {
        if (found.value(at) != expected.value(at))
            return file.fail(damaged(QStringLiteral("the schema has \"%1\" instead of \"%2\"")
                                         .arg(found.value(at), expected.value(at))));
    }
    return true;
}

} // namespace

QStringList chainTables()
{
    return {
        QStringLiteral("CREATE TABLE chain (base INTEGER NOT NULL, first_shift INTEGER NOT NULL,"
                       " last_ticket INTEGER NOT NULL, public_key BLOB NOT NULL)"),
        QStringLiteral("CREATE TABLE seal (record INTEGER PRIMARY KEY, hash BLOB NOT NULL,"
                       " signature BLOB NOT NULL)")};
}

bool createTables(JournalFile& file)
{
    return file.run(QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion)) &&
           file.runAll(tablesOfRecords() + paymentTables() + clockTables() + chainTables());
}

namespace
{

/// All of it, or what followed the last closed shift if it was not written to since the last check.
bool isWhole(JournalFile& file, int version)
{
    const bool isUntouched = file.chain().isUntouched();
    return (isUntouched || passes(file, checksOf(version))) && file.chain().isWhole(isUntouched);
}

} // namespace

std::optional<int> validVersion(JournalFile& file, const Currency& currency)
{
    const std::optional<QVariant> version = file.value(QStringLiteral("PRAGMA user_version"));
    if (!version)
        return std::nullopt;
    const int number = version->toInt();
    if (number > firstWithPruning || number < oldestVersion) {
        file.fail({JournalFault::Kind::OtherVersion, version->toString()});
        return std::nullopt;
    }
    if (!hasSchemaOf(file, number))
        return std::nullopt;
    const std::optional<QVariant> kept =
        file.value(QStringLiteral("SELECT currency || ' ' || decimals FROM journal"));
    if (!kept)
        return std::nullopt;
    if (kept->toString() != moneyText(currency)) {
        file.fail(
            {JournalFault::Kind::OtherCurrency,
             QStringLiteral("kept in %1, not in %2").arg(kept->toString(), moneyText(currency))});
        return std::nullopt;
    }
    const bool isValid = number < firstWithSeals
                             ? file.chain().admitsStart() && passes(file, checksOf(number))
                             : file.chain().admitsJournal() && isWhole(file, number);
    return isValid ? std::make_optional(number) : std::nullopt;
}

bool hasNewestSchema(JournalFile& file)
{
    const auto version = file.value(QStringLiteral("PRAGMA user_version"));
    if (version && version->toInt() != schemaVersion && version->toInt() != firstWithPruning)
        return file.fail({JournalFault::Kind::OtherVersion, version->toString()});
    return version && hasSchemaOf(file, version->toInt());
}

bool passesAll(JournalFile& file)
{
    const auto version = file.value(QStringLiteral("PRAGMA user_version"));
    return version && passes(file, checksOf(version->toInt()));
}

bool admitPruning(JournalFile& file)
{
    return file.chain().reader().isPruned() ||
           (file.runAll(pruningTables()) &&
            file.run(QStringLiteral("PRAGMA user_version=%1").arg(firstWithPruning)));
}

std::optional<Currency> currencyOf(JournalFile& file)
{
    const auto code = file.value(QStringLiteral("SELECT currency FROM journal"));
    const auto decimals = file.value(QStringLiteral("SELECT decimals FROM journal"));
    return code && decimals ? std::make_optional(Currency(code->toString(), decimals->toInt()))
                            : std::nullopt;
}

bool createJournal(JournalFile& file, const Currency& currency, qint64 firstZNumber)
{
    if (!file.chain().admitsStart() || !file.chain().start())
        return false;
    return file.inTransaction([&] {
        if (!file.runAll(
                {QStringLiteral("PRAGMA application_id=%1").arg(applicationId), journalTable}))
            return false;
        QSqlQuery journal = file.prepared(QStringLiteral("INSERT INTO journal VALUES (?, ?)"));
        journal.addBindValue(currency.code());
        journal.addBindValue(currency.decimals());
        return file.run(journal) && createTables(file) &&
               file.run(QStringLiteral("INSERT INTO shift VALUES (%1)").arg(firstZNumber)) &&
               file.chain().sealBase();
    });
}

int newestVersion() { return schemaVersion; }

bool takeOver(JournalFile& file, int version)
{
    return file.chain().start() && file.inTransaction([&] {
        const bool isMade =
            version < firstWithRecords
                ? setVersion2Aside(file) && createTables(file) && copyVersion2(file)
                : file.run(QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion)) &&
                      (version >= firstWithPayments || file.runAll(paymentTables())) &&
                      (version >= firstWithClock || file.runAll(clockTables())) &&
                      file.runAll(chainTables());
        return isMade && hasSchemaOf(file, schemaVersion) && file.chain().sealBase() &&
               passes(file, checksOf(schemaVersion));
    });
}

} // namespace rivo::sales
