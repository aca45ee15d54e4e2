#include "JournalFigures_p.h"

#include "JournalSchema_p.h"

#include <QStringList>

#include <array>

namespace rivo::sales
{

namespace
{

struct Figure
{
    const char* name;
    const char* source; ///< the part of the statement that has it, see sources()
    const char* sum;
    void (*set)(ShiftReport&, const QVariant&);
};

template <auto Field>
constexpr Figure figure(const char* name, const char* source, const char* sum)
{
    return {name, source, sum, [](ShiftReport& report, const QVariant& value) {
                using T = std::decay_t<decltype(report.*Field)>;
                report.*Field = value.value<T>();
            }};
}

const std::array figures{
    figure<&ShiftReport::ticketCount>("ticket_count", "sold", "COUNT(*)"),
    figure<&ShiftReport::ticketSum>("ticket_sum", "sold", "SUM(price)"),
    figure<&ShiftReport::cardCount>("card_count", "sold", "SUM(pay_method = 2)"),
    figure<&ShiftReport::cardSum>("card_sum", "sold", "SUM((pay_method = 2) * price)"),
    figure<&ShiftReport::firstTicket>("first_ticket", "sold", "MIN(number)"),
    figure<&ShiftReport::lastTicket>("last_ticket", "sold", "MAX(number)"),
    figure<&ShiftReport::voidCount>("void_count", "reversed", "SUM(reason_kind = 1)"),
    figure<&ShiftReport::voidSum>("void_sum", "reversed", "SUM((reason_kind = 1) * price)"),
    figure<&ShiftReport::refundCount>("refund_count", "reversed", "SUM(reason_kind = 2)"),
    figure<&ShiftReport::refundSum>("refund_sum", "reversed", "SUM((reason_kind = 2) * price)"),
    figure<&ShiftReport::reversedCardCount>("reversed_card_count", "reversed",
                                            "SUM(pay_method = 2)"),
    figure<&ShiftReport::reversedCardSum>("reversed_card_sum", "reversed",
                                          "SUM((pay_method = 2) * price)"),
    figure<&ShiftReport::rounding>("rounding", "rounded", "SUM(rounding)"),
    figure<&ShiftReport::copyCount>("copy_count", "copied", "COUNT(*)"),
    // SQLite takes the other columns of the row that has the maximum.
    figure<&ShiftReport::openingFloat>("opening_float", "opened", "amount")};
static_assert(static_cast<int>(PayMethod::Card) == 2);
static_assert(static_cast<int>(ReversalKind::Void) == 1);
static_assert(static_cast<int>(ReversalKind::Refund) == 2);

struct Source
{
    const char* name;
    const char* tables; ///< besides table record
    QString condition;
    const char* extra; ///< a column that is no figure
};

QString ofKind(RecordKind kind)
{
    return QStringLiteral("record.kind = %1").arg(static_cast<int>(kind));
}

/// The rows that figures are sums of, shift by shift.
std::array<Source, 6> sources()
{
    return {{{"sold",
              "JOIN sale ON sale.record = record.id"
              " JOIN ticket ON ticket.sale = sale.record",
              ofKind(RecordKind::Sale), ""},
             {"reversed",
              "JOIN reversal ON reversal.record = record.id"
              " JOIN reversed_ticket ON reversed_ticket.reversal = reversal.record"
              " JOIN ticket ON ticket.number = reversed_ticket.ticket"
              " JOIN sale ON sale.record = reversal.sale",
              ofKind(RecordKind::Reversal), ""},
             {"rounded", "JOIN sale ON sale.record = record.id", ofKind(RecordKind::Sale), ""},
             {"returned", "JOIN reversal ON reversal.record = record.id",
              ofKind(RecordKind::Reversal), "SUM(total - paid_out) AS rounding_back"},
             {"copied", "JOIN printout ON printout.record = record.id AND is_copy = 1",
              ofKind(RecordKind::Printout), ""},
             {"opened", "JOIN opening ON opening.record = record.id", ofKind(RecordKind::Opening),
              "MAX(record.id)"}}};
}

QString joined(const QString& form)
{
    QStringList parts;
    for (const Figure& each : figures)
        parts.append(form.arg(QLatin1String(each.name)));
    return parts.join(QLatin1String(", "));
}

} // namespace

QString figureNames() { return joined(QStringLiteral("%1")); }

QString figureDefinitions() { return joined(QStringLiteral("%1 INTEGER NOT NULL")); }

QString figuresOfShifts(std::optional<qint64> zNumber)
{
    const QString ofShift =
        zNumber ? QStringLiteral(" AND record.shift = %1").arg(*zNumber) : QString();
    QStringList parts;
    QStringList joins;
    for (const Source& source : sources()) {
        QStringList sums;
        for (const Figure& each : figures) {
            if (qstrcmp(each.source, source.name) == 0)
                sums.append(QStringLiteral("%1 AS %2")
                                .arg(QLatin1String(each.sum), QLatin1String(each.name)));
        }
        if (*source.extra != '\0')
            sums.append(QLatin1String(source.extra));
        parts.append(QStringLiteral("%1 AS (SELECT record.shift AS shift, %2 FROM record %3"
                                    " WHERE %4%5 GROUP BY record.shift)")
                         .arg(QLatin1String(source.name), sums.join(QLatin1String(", ")),
                              QLatin1String(source.tables), source.condition, ofShift));
        joins.append(
            QStringLiteral("LEFT JOIN %1 ON %1.shift = z_number").arg(QLatin1String(source.name)));
    }
    return QStringLiteral("WITH %1 SELECT z_number, %2 FROM shift %3%4")
        .arg(parts.join(QLatin1String(", ")),
             joined(QStringLiteral("IFNULL(%1, 0) AS %1"))
                 .replace(QLatin1String("IFNULL(rounding, 0)"),
                          QLatin1String("IFNULL(rounding, 0) + IFNULL(rounding_back, 0)")),
             joins.join(QLatin1Char(' ')),
             zNumber ? QStringLiteral(" WHERE z_number = %1").arg(*zNumber) : QString());
}

void readFigures(ShiftReport& report, const QSqlQuery& row, int at)
{
    for (const Figure& each : figures)
        each.set(report, row.value(at++));
}

} // namespace rivo::sales
