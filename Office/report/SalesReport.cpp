#include "SalesReport.h"

#include <array>

namespace rivo::backoffice
{

namespace
{

/// In the order of ReportBy. A route or a product without a name has its number.
constexpr std::array keys{"CAST(record.driver AS text)",
                          "COALESCE(NULLIF(ticket.route_name, ''), CAST(ticket.route AS text))",
                          "vehicle.operator || '/' || vehicle.name", "ticket.product"};

/// Sold tickets are of the record of their sale, tickets that were taken back of their reversal.
constexpr char statement[] = R"(
    WITH event AS (
        SELECT sale.journal, sale.record, ticket.number AS ticket, sale.pay_method, true AS is_sale
        FROM record JOIN sale ON sale.journal = record.journal AND sale.record = record.number
        JOIN ticket ON ticket.journal = sale.journal AND ticket.sale = sale.record
        WHERE record.kind = 2 AND record.day BETWEEN CAST(? AS date) AND CAST(? AS date)
        UNION ALL
        SELECT record.journal, record.number, reversed_ticket.ticket, 0, false
        FROM record JOIN reversed_ticket ON reversed_ticket.journal = record.journal
            AND reversed_ticket.reversal = record.number
        WHERE record.kind = 4 AND record.day BETWEEN CAST(? AS date) AND CAST(? AS date))
    SELECT %1 AS key, journal.currency, journal.decimals,
        COUNT(*) FILTER (WHERE is_sale),
        CAST(COALESCE(SUM(price) FILTER (WHERE is_sale), 0) AS bigint),
        CAST(COALESCE(SUM(price) FILTER (WHERE is_sale AND pay_method = 2), 0) AS bigint),
        COUNT(*) FILTER (WHERE NOT is_sale),
        CAST(COALESCE(SUM(price) FILTER (WHERE NOT is_sale), 0) AS bigint)
    FROM event JOIN ticket ON ticket.journal = event.journal AND ticket.number = event.ticket
    JOIN record ON record.journal = event.journal AND record.number = event.record
    JOIN journal ON journal.id = event.journal JOIN vehicle ON vehicle.id = journal.vehicle
    GROUP BY key, journal.currency, journal.decimals
    ORDER BY key, journal.currency, journal.decimals)";

} // namespace

std::optional<QVector<ReportLine>> salesReport(Database& database, ReportBy by, const QDate& from,
                                               const QDate& to)
{
    const QString first = from.toString(Qt::ISODate);
    const QString last = to.toString(Qt::ISODate);
    QSqlQuery* found = database.run(
        QString::fromLatin1(statement).arg(QString::fromLatin1(keys.at(static_cast<size_t>(by)))),
        {first, last, first, last});
    if (found == nullptr)
        return std::nullopt;
    QVector<ReportLine> lines;
    while (found->next())
        lines.append({found->value(0).toString(), found->value(1).toString(),
                      found->value(2).toInt(), found->value(3).toLongLong(),
                      found->value(4).toLongLong(), found->value(5).toLongLong(),
                      found->value(6).toLongLong(), found->value(7).toLongLong()});
    return lines;
}

} // namespace rivo::backoffice
