#include "RecordDetails_p.h"

#include "Database.h"
#include "RecordRows.h"

#include <QJsonObject>
#include <QVector>

#include <algorithm>

namespace rivo::backoffice
{

namespace
{

/// A column that the office keeps, and its place in a journal's row.
struct Column
{
    const char* name;
    int place;
    const char* type; ///< of PostgreSQL
};

/// A table of the journal whose rows the office keeps, in a table of the same name.
struct Part
{
    const char* table;
    int values; ///< in a row of the journal
    int owner;  ///< the place of the number of the record that the row belongs to
    QVector<Column> columns;
};

const QVector<Part>& parts()
{
    static const QVector<Part> all{
        {"sale",
         6,
         0,
         {{"record", 0, "bigint"},
          {"pay_method", 1, "integer"},
          {"total", 2, "bigint"},
          {"rounding", 3, "bigint"}}},
        {"ticket",
         27,
         1,
         {{"number", 0, "bigint"},
          {"sale", 1, "bigint"},
          {"description", 6, "text"},
          {"product", 7, "text"},
          {"price", 9, "bigint"},
          {"route", 14, "bigint"},
          {"route_name", 23, "text"}}},
        {"reversal",
         6,
         0,
         {{"record", 0, "bigint"},
          {"sale", 1, "bigint"},
          {"reason_kind", 2, "integer"},
          {"total", 4, "bigint"},
          {"paid_out", 5, "bigint"}}},
        {"reversed_ticket", 2, 1, {{"ticket", 0, "bigint"}, {"reversal", 1, "bigint"}}},
        {"closing",
         17,
         1,
         {{"shift", 0, "bigint"},
          {"record", 1, "bigint"},
          {"ticket_count", 2, "bigint"},
          {"ticket_sum", 3, "bigint"},
          {"card_sum", 5, "bigint"},
          {"void_sum", 9, "bigint"},
          {"refund_sum", 11, "bigint"},
          {"reversed_card_sum", 13, "bigint"},
          {"rounding", 14, "bigint"},
          {"opening_float", 16, "bigint"}}},
        {"hand_over",
         4,
         1,
         {{"shift", 0, "bigint"},
          {"record", 1, "bigint"},
          {"counted", 2, "bigint"},
          {"difference", 3, "bigint"}}},
        {"clock",
         3,
         0,
         {{"record", 0, "bigint"}, {"remark", 1, "integer"}, {"milliseconds", 2, "bigint"}}}};
    return all;
}

bool isWhole(const QVariant& value) { return value.type() == QVariant::LongLong; }

/// Amounts, and what else a vehicle counts. So sums of them stay within what a number holds.
constexpr qint64 mostOfNumber = 10'000'000'000'000;

/// The value as its column has it; undefined if it is of another type.
QJsonValue jsonOf(const QVariant& value, const Column& column)
{
    const QLatin1String type(column.type);
    if (type == QLatin1String("text"))
        return value.type() == QVariant::String ? QJsonValue(storable(value.toString()))
                                                : QJsonValue(QJsonValue::Undefined);
    const qint64 number = value.toLongLong();
    const bool isInRange = number >= -mostOfNumber && number <= mostOfNumber &&
                           (type == QLatin1String("bigint") || number == int(number));
    return isWhole(value) && isInRange ? QJsonValue(number) : QJsonValue(QJsonValue::Undefined);
}

/// Adds a row of the journal to those of its table; false if it is not one of this record.
bool addRow(RecordDetails& details, const RecordRow& row, const Part& part, qint64 number)
{
    if (row.values.size() != part.values || !isWhole(row.values.at(part.owner)) ||
        row.values.at(part.owner).toLongLong() != number)
        return false;
    QJsonObject kept;
    for (const Column& column : part.columns) {
        const QJsonValue value = jsonOf(row.values.at(column.place), column);
        if (value.isUndefined())
            return false;
        kept.insert(QLatin1String(column.name), value);
    }
    details.rows[QLatin1String(part.table)].append(kept);
    return true;
}

/// Reads the row of table record, the first of each content but the start's.
std::optional<RecordDetails> headOf(const RecordRow& row, qint64 number)
{
    enum Place { Id, Kind, Shift, At, Driver, Count };
    constexpr int kinds = 11;
    const bool isRow = row.table == "record" && row.values.size() == Count &&
                       isWhole(row.values.at(Id)) && isWhole(row.values.at(Kind)) &&
                       isWhole(row.values.at(Shift)) && isWhole(row.values.at(Driver)) &&
                       row.values.at(Id).toLongLong() == number;
    if (!isRow)
        return std::nullopt;
    const qint64 kind = row.values.at(Kind).toLongLong();
    const auto at = QDateTime::fromString(row.values.at(At).toString(), Qt::ISODateWithMs);
    constexpr int lastYear = 9999;
    const bool isUnderstood = kind >= 1 && kind <= kinds && at.isValid() && at.date().year() >= 1 &&
                              at.date().year() <= lastYear;
    if (!isUnderstood)
        return std::nullopt;
    RecordDetails details;
    details.kind = int(kind);
    details.shift = row.values.at(Shift).toLongLong();
    details.driver = row.values.at(Driver).toLongLong();
    details.at = at;
    details.day = at.date();
    return details;
}

DetailTable tableOf(const Part& part)
{
    QStringList names;
    QStringList definitions;
    for (const Column& column : part.columns) {
        names.append(QLatin1String(column.name));
        definitions.append(QLatin1String(column.name) + QLatin1Char(' ') +
                           QLatin1String(column.type));
    }
    const QString table = QLatin1String(part.table);
    return {table, QStringLiteral("INSERT INTO %1 (journal, %2) SELECT ?, %2 FROM"
                                  " jsonb_to_recordset(CAST(? AS jsonb)) AS given(%3)"
                                  " ON CONFLICT DO NOTHING")
                       .arg(table, names.join(QLatin1String(", ")),
                            definitions.join(QLatin1String(", ")))};
}

} // namespace

std::optional<JournalStart> startOf(const sales::SealedRecord& record, const QByteArray& publicKey)
{
    const auto rows = rowsOf(record.content);
    if (!rows || rows->size() != 2 || rows->at(0).table != "journal" ||
        rows->at(0).values.size() != 2 || rows->at(1).table != "chain" ||
        rows->at(1).values.size() != 4)
        return std::nullopt;
    const QVector<QVariant>& journal = rows->at(0).values;
    const QVector<QVariant>& chain = rows->at(1).values;
    const JournalStart start{chain.at(0).toLongLong(), storable(journal.at(0).toString()),
                             journal.at(1).toInt()};
    constexpr int mostDecimals = 4;
    constexpr int codeSize = 3;
    const bool isStart = isWhole(chain.at(0)) && start.base == record.number &&
                         chain.at(3).toByteArray() == publicKey && isWhole(journal.at(1)) &&
                         start.decimals >= 0 && start.decimals <= mostDecimals &&
                         start.currency.size() == codeSize;
    return isStart ? std::make_optional(start) : std::nullopt;
}

std::optional<RecordDetails> detailsOf(const sales::SealedRecord& record)
{
    const auto rows = rowsOf(record.content);
    auto details = rows && !rows->isEmpty() ? headOf(rows->first(), record.number) : std::nullopt;
    if (!details)
        return std::nullopt;
    for (int at = 1; at < rows->size(); ++at) {
        const RecordRow& row = rows->at(at);
        const auto part = std::find_if(parts().begin(), parts().end(),
                                       [&](const Part& each) { return row.table == each.table; });
        if (part != parts().end() && !addRow(*details, row, *part, record.number))
            return std::nullopt;
    }
    details->isRemark = details->rows.count(QStringLiteral("clock")) > 0;
    return details;
}

const QVector<DetailTable>& detailTables()
{
    static const QVector<DetailTable> all = [] {
        QVector<DetailTable> made;
        for (const Part& part : parts())
            made.append(tableOf(part));
        return made;
    }();
    return all;
}

} // namespace rivo::backoffice
