#include "RecordContent_p.h"

#include "JournalSchema_p.h"

#include <sqlite3.h>

#include <vector>

namespace rivo::sales
{

namespace
{

/// Rows that belong to a record of a kind: those whose `key` is its number.
struct Part
{
    RecordKind kind;
    const char* table;
    const char* key;
    const char* order;
};

constexpr Part parts[] = {{RecordKind::Opening, "opening", "record", "record"},
                          {RecordKind::Sale, "sale", "record", "record"},
                          {RecordKind::Sale, "ticket", "sale", "number"},
                          {RecordKind::Sale, "card_sale", "sale", "sale"},
                          {RecordKind::Printout, "printout", "record", "record"},
                          {RecordKind::Reversal, "reversal", "record", "record"},
                          {RecordKind::Reversal, "reversed_ticket", "reversal", "ticket"},
                          {RecordKind::Reversal, "card_reversal", "reversal", "reversal"},
                          {RecordKind::Closing, "closing", "record", "shift"},
                          {RecordKind::HandOver, "hand_over", "record", "shift"},
                          {RecordKind::Payment, "payment", "record", "record"},
                          {RecordKind::Payment, "payment_ticket", "payment", "ticket"},
                          {RecordKind::Outcome, "outcome", "record", "record"},
                          {RecordKind::CardDay, "card_day", "record", "record"},
                          {RecordKind::Clock, "clock", "record", "record"},
                          {RecordKind::Pruning, "pruning", "record", "record"}};

QByteArray withLength(char type, const void* bytes, int size)
{
    return type + QByteArray::number(size) + ':' +
           QByteArray(static_cast<const char*>(bytes), size);
}

QByteArray valueOf(sqlite3_stmt* row, int column)
{
    switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
        return 'i' + QByteArray::number(qint64(sqlite3_column_int64(row, column))) + ';';
    case SQLITE_FLOAT:
        return 'f' + QByteArray::number(sqlite3_column_double(row, column), 'g', 17) + ';';
    case SQLITE_TEXT: {
        const unsigned char* text = sqlite3_column_text(row, column);
        return withLength('t', text, sqlite3_column_bytes(row, column));
    }
    case SQLITE_BLOB: {
        const void* bytes = sqlite3_column_blob(row, column);
        return withLength('b', bytes, sqlite3_column_bytes(row, column));
    }
    default:
        return "n";
    }
}

QJsonValue jsonOf(sqlite3_stmt* row, int column)
{
    switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
        return qint64(sqlite3_column_int64(row, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(row, column);
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
        return QString::fromUtf8(text, sqlite3_column_bytes(row, column));
    }
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(row, column));
        return QString::fromLatin1(QByteArray(bytes, sqlite3_column_bytes(row, column)).toHex());
    }
    default:
        return {};
    }
}

} // namespace

void RecordContent::Finalize::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

sqlite3_stmt* RecordContent::prepared(const QByteArray& statement)
{
    Statement& kept = m_statements[statement];
    if (!kept) {
        sqlite3_stmt* made = nullptr;
        sqlite3_prepare_v3(m_database, statement.constData(), statement.size(),
                           SQLITE_PREPARE_PERSISTENT, &made, nullptr);
        kept.reset(made);
    }
    return kept.get();
}

bool RecordContent::addRows(const char* table, sqlite3_stmt* statement, QByteArray& rows)
{
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
        rows += QByteArray(table) + ';';
        for (int column = 0; column < sqlite3_column_count(statement); ++column)
            rows += valueOf(statement, column);
        rows += '\n';
    }
    sqlite3_reset(statement);
    return result == SQLITE_DONE;
}

bool RecordContent::forEachPart(qint64 record, const UsePart& use)
{
    sqlite3_stmt* own = prepared("SELECT * FROM record WHERE id = ?");
    sqlite3_stmt* kindOf = prepared("SELECT kind FROM record WHERE id = ?");
    if (own == nullptr || kindOf == nullptr)
        return false;
    sqlite3_bind_int64(own, 1, record);
    sqlite3_bind_int64(kindOf, 1, record);
    const int kind = sqlite3_step(kindOf) == SQLITE_ROW ? sqlite3_column_int(kindOf, 0) : 0;
    sqlite3_reset(kindOf);
    if (!use("record", own))
        return false;
    for (const Part& part : parts) {
        if (static_cast<int>(part.kind) != kind)
            continue;
        sqlite3_stmt* statement = prepared(QByteArray("SELECT * FROM ") + part.table + " WHERE " +
                                           part.key + " = ? ORDER BY " + part.order);
        if (statement == nullptr)
            return false;
        sqlite3_bind_int64(statement, 1, record);
        if (!use(part.table, statement))
            return false;
    }
    return true;
}

std::optional<QByteArray> RecordContent::of(qint64 record)
{
    QByteArray rows;
    const bool isRead = forEachPart(record, [&](const char* table, sqlite3_stmt* statement) {
        return addRows(table, statement, rows);
    });
    return isRead ? std::make_optional(rows) : std::nullopt;
}

QJsonObject RecordContent::json(qint64 record)
{
    QJsonObject all;
    forEachPart(record, [&](const char* table, sqlite3_stmt* statement) {
        QJsonArray rows;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            QJsonObject row;
            for (int column = 0; column < sqlite3_column_count(statement); ++column)
                row.insert(QString::fromUtf8(sqlite3_column_name(statement, column)),
                           jsonOf(statement, column));
            rows.append(row);
        }
        sqlite3_reset(statement);
        if (qstrcmp(table, "record") == 0)
            all = rows.first().toObject();
        else if (!rows.isEmpty())
            all.insert(QLatin1String(table), rows);
        return true;
    });
    return all;
}

std::optional<QByteArray> RecordContent::ofTable(const char* table)
{
    QByteArray rows;
    sqlite3_stmt* statement = prepared(QByteArray("SELECT * FROM ") + table + " ORDER BY rowid");
    return statement != nullptr && addRows(table, statement, rows) ? std::make_optional(rows)
                                                                   : std::nullopt;
}

} // namespace rivo::sales
