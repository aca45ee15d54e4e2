#include "JournalExport.h"

#include <StandardOutput.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

namespace
{

/// A kind of record: its name, and where the amount of one is.
struct Kind
{
    const char* name;
    const char* table;
    const char* amount;
};

/// In the order of their numbers, which begin with 1.
constexpr Kind kinds[] = {{"opening", "opening", "amount"},  {"sale", "sale", "total"},
                          {"printout", "printout", ""},      {"reversal", "reversal", "paid_out"},
                          {"closing", "closing", ""},        {"hand-over", "hand_over", "counted"},
                          {"payment", "payment", "amount"},  {"outcome", "outcome", ""},
                          {"card day", "card_day", "total"}, {"clock", "clock", ""},
                          {"pruning", "pruning", ""}};

const Kind* kindOf(const QJsonObject& record)
{
    const int number = record.value(QStringLiteral("kind")).toInt();
    return number >= 1 && number <= static_cast<int>(std::size(kinds)) ? &kinds[number - 1]
                                                                       : nullptr;
}

QJsonObject withName(QJsonObject record)
{
    if (const Kind* kind = kindOf(record))
        record.insert(QStringLiteral("kind"), QLatin1String(kind->name));
    return record;
}

QByteArray jsonText(const QJsonObject& record)
{
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

QString quoted(QString text)
{
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

QString numberText(const QJsonValue& value)
{
    return value.isDouble() ? QString::number(value.toVariant().toLongLong()) : QString();
}

/// The tickets of a sale, those that were taken back, or the one that was printed.
QString ticketsOf(const QJsonObject& record)
{
    QStringList numbers;
    const auto collect = [&](const char* table, const char* column) {
        const QJsonArray rows = record.value(QLatin1String(table)).toArray();
        for (const QJsonValue& row : rows)
            numbers.append(numberText(row.toObject().value(QLatin1String(column))));
    };
    collect("ticket", "number");
    collect("reversed_ticket", "ticket");
    collect("printout", "ticket");
    return numbers.join(QLatin1Char(' '));
}

QString amountOf(const QJsonObject& record)
{
    const Kind* kind = kindOf(record);
    return kind == nullptr ? QString()
                           : numberText(record.value(QLatin1String(kind->table))
                                            .toArray()
                                            .first()
                                            .toObject()
                                            .value(QLatin1String(kind->amount)));
}

QByteArray csvLine(const QJsonObject& record)
{
    QJsonObject rows = record;
    for (const char* own : {"id", "kind", "shift", "at", "driver", "seal"})
        rows.remove(QLatin1String(own));
    const auto value = [&](const char* name) { return record.value(QLatin1String(name)); };
    const Kind* kind = kindOf(record);
    const QStringList fields{
        numberText(value("id")),     kind == nullptr ? QString() : QString::fromLatin1(kind->name),
        numberText(value("shift")),  quoted(value("at").toString()),
        numberText(value("driver")), amountOf(record),
        ticketsOf(record),           quoted(QString::fromUtf8(jsonText(rows))),
        value("seal").toString()};
    return fields.join(QLatin1Char(',')).toUtf8() + "\r\n";
}

} // namespace

bool exportAsJson(rivo::sales::Journal& journal)
{
    bool isFirst = true;
    const bool isWritten =
        writeToStandardOutput("[") && journal.forEachRecord([&](const QJsonObject& record) {
            const QByteArray separator = isFirst ? "\n" : ",\n";
            isFirst = false;
            return writeToStandardOutput(separator + jsonText(withName(record)));
        });
    return isWritten && writeToStandardOutput("\n]\n");
}

bool exportAsCsv(rivo::sales::Journal& journal)
{
    return writeToStandardOutput("record,kind,shift,at,driver,amount,tickets,rows,seal\r\n") &&
           journal.forEachRecord(
               [](const QJsonObject& record) { return writeToStandardOutput(csvLine(record)); });
}
