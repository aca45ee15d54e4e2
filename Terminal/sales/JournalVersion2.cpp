// What this program wrote before it kept drivers, reversals and copies: sales, tickets and shifts,
// of which some rows were changed later.

#include "JournalFile_p.h"
#include "JournalSchema_p.h"

namespace rivo::sales
{

namespace
{

constexpr char soldBefore[] =
    "SELECT sale.shift AS shift, COUNT(*) AS tickets, SUM(price) AS total,"
    " SUM(pay_method = 2) AS cards, SUM((pay_method = 2) * price) AS card_total,"
    " MIN(number) AS first, MAX(number) AS last"
    " FROM ticket JOIN sale ON ticket.sale = sale.id GROUP BY sale.shift";

constexpr char ticketColumns[] =
    "passenger_type, fare_product, from_zone, to_zone, description, fare_product_name, icon, price,"
    " origin, destination, is_return, is_daily, route, from_stop, to_stop, current_stop,"
    " trips_route, trips_execution, public_execution";
constexpr int ticketColumnsBefore = 19;

QString withEmptyTexts(const char* columns)
{
    return QLatin1String(columns) +
           QStringLiteral(", ''").repeated(ticketColumnCount() - ticketColumnsBefore);
}

/// The records in the order in which they get their numbers. A shift has its sales, each with the
/// tickets that were printed, then its closing; when they were printed was not kept. Cash that was
/// handed over follows, in the order of its time.
QString recordsInOrder()
{
    const auto kind = [](RecordKind of) { return static_cast<int>(of); };
    return QStringLiteral(
               "SELECT kind, shift, at, source FROM ("
               "SELECT %1 AS kind, shift, sold_at AS at, id AS source, 0 AS part,"
               "  id AS sale, 0 AS ticket, '' AS later FROM old_sale"
               " UNION ALL SELECT %2, shift, sold_at, number, 0, sale, number, ''"
               "  FROM old_ticket JOIN old_sale ON sale = id WHERE printed <> 0"
               " UNION ALL SELECT %3, z_number, closed_at, z_number, 1, 0, 0, '' FROM old_shift"
               "  WHERE closed_at IS NOT NULL"
               " UNION ALL SELECT %4, z_number, paid_at, z_number, 2, 0, 0, paid_at FROM old_shift"
               "  WHERE paid_at IS NOT NULL AND ticket_sum <> card_sum)"
               " ORDER BY later, shift, part, sale, ticket")
        .arg(kind(RecordKind::Sale))
        .arg(kind(RecordKind::Printout))
        .arg(kind(RecordKind::Closing))
        .arg(kind(RecordKind::HandOver));
}

/// Rows of `table` for the records of `kind`; `columns` may use the old table by its name.
QString rowsFor(const char* table, RecordKind kind, const char* oldTable, const char* key,
                const char* columns)
{
    return QStringLiteral("INSERT INTO %1 SELECT %2 FROM taken_over JOIN %3 ON %4 = source"
                          " WHERE kind = %5 ORDER BY taken_over.id")
        .arg(QLatin1String(table), QLatin1String(columns), QLatin1String(oldTable),
             QLatin1String(key))
        .arg(static_cast<int>(kind));
}

} // namespace

QVector<Check> checksOfVersion2()
{
    return {{QStringLiteral("PRAGMA integrity_check(1)"), "ok"},
            {QStringLiteral("SELECT COUNT(*) FROM pragma_foreign_key_check")},
            {QStringLiteral("SELECT COUNT(*) FROM shift WHERE closed_at IS NULL"), "1"},
            {QStringLiteral("SELECT COUNT(*) FROM shift WHERE closed_at IS NULL AND z_number <>"
                            " (SELECT MAX(z_number) FROM shift)")},
            {QStringLiteral("SELECT COUNT(*) FROM shift WHERE closed_at IS NULL AND paid_at IS NOT"
                            " NULL")},
            {QStringLiteral("SELECT COUNT(*) FROM sale WHERE total IS NOT"
                            " (SELECT SUM(price) FROM ticket WHERE ticket.sale = sale.id)")},
            {QStringLiteral("SELECT COUNT(*) FROM shift LEFT JOIN (%1) AS sold"
                            " ON sold.shift = z_number WHERE closed_at IS NOT NULL AND"
                            " (ticket_count IS NOT IFNULL(tickets, 0) OR"
                            " ticket_sum IS NOT IFNULL(total, 0) OR"
                            " card_count IS NOT IFNULL(cards, 0) OR"
                            " card_sum IS NOT IFNULL(card_total, 0) OR"
                            " first_ticket IS NOT IFNULL(first, 0) OR"
                            " last_ticket IS NOT IFNULL(last, 0))")
                 .arg(QLatin1String(soldBefore))}};
}

QStringList objectsOfVersion2()
{
    return {QStringLiteral("table journal"),
            QStringLiteral("table shift"),
            QStringLiteral("table sale"),
            QStringLiteral("table ticket"),
            QStringLiteral("table basket"),
            QStringLiteral("table sqlite_sequence"),
            QStringLiteral("index sale_shift"),
            QStringLiteral("index ticket_sale"),
            QStringLiteral("index ticket_unprinted")};
}

bool setVersion2Aside(JournalFile& file)
{
    QStringList statements;
    for (const char* table : {"shift", "sale", "ticket", "basket"})
        statements.append(
            QStringLiteral("ALTER TABLE %1 RENAME TO old_%1").arg(QLatin1String(table)));
    for (const char* index : {"sale_shift", "ticket_sale", "ticket_unprinted"})
        statements.append(QStringLiteral("DROP INDEX %1").arg(QLatin1String(index)));
    return file.runAll(statements);
}

bool copyVersion2(JournalFile& file)
{
    return file.runAll(
        {QStringLiteral("CREATE TABLE taken_over (id INTEGER PRIMARY KEY, kind INTEGER,"
                        " shift INTEGER, at TEXT, source INTEGER)"),
         QStringLiteral("INSERT INTO taken_over (kind, shift, at, source) ") + recordsInOrder(),
         QStringLiteral("CREATE INDEX taken_over_source ON taken_over (kind, source)"),
         QStringLiteral("INSERT INTO shift SELECT z_number FROM old_shift"),
         QStringLiteral("INSERT INTO record SELECT id, kind, shift, at, 0 FROM taken_over"
                        " ORDER BY id"),
         rowsFor("sale", RecordKind::Sale, "old_sale", "old_sale.id",
                 "taken_over.id, pay_method, total, 0, (pay_method = 1) * total, 0"),
         QStringLiteral("INSERT INTO ticket SELECT number, taken_over.id, %1 FROM old_ticket"
                        " JOIN taken_over ON source = sale AND kind = %2 ORDER BY number")
             .arg(withEmptyTexts(ticketColumns))
             .arg(static_cast<int>(RecordKind::Sale)),
         rowsFor("printout", RecordKind::Printout, "old_ticket", "number",
                 "taken_over.id, number, 0"),
         QStringLiteral("INSERT INTO unprinted SELECT number FROM old_ticket WHERE printed = 0"),
         rowsFor("closing", RecordKind::Closing, "old_shift", "z_number",
                 "z_number, taken_over.id, ticket_count, ticket_sum, card_count, card_sum,"
                 " first_ticket, last_ticket, 0, 0, 0, 0, 0, 0, 0, 0, 0"),
         rowsFor("hand_over", RecordKind::HandOver, "old_shift", "z_number",
                 "z_number, taken_over.id, ticket_sum - card_sum, 0"),
         QStringLiteral("INSERT INTO basket SELECT line, %1 FROM old_basket ORDER BY line")
             .arg(withEmptyTexts(ticketColumns)),
         // Numbers that were given are not given again, whether their tickets are there or not.
         QStringLiteral("DELETE FROM sqlite_sequence WHERE name = 'ticket'"),
         QStringLiteral("INSERT INTO sqlite_sequence SELECT 'ticket', seq FROM sqlite_sequence"
                        " WHERE name = 'old_ticket'"),
         QStringLiteral("DROP TABLE taken_over"), QStringLiteral("DROP TABLE old_basket"),
         QStringLiteral("DROP TABLE old_ticket"), QStringLiteral("DROP TABLE old_sale"),
         QStringLiteral("DROP TABLE old_shift")});
}

} // namespace rivo::sales
