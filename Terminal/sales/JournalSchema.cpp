#include "JournalSchema_p.h"

#include "JournalFile_p.h"

#include <QStringList>

#include <array>
#include <type_traits>
#include <utility>

namespace rivo::sales
{

namespace
{

using feed::FeedTripContext;

constexpr int schemaVersion = 2;

/// One column that the tables of tickets and of the unfinished basket share.
struct Column
{
    const char* name;
    const char* type;
    QVariant (*get)(const Ticket&);
    void (*set)(Ticket&, const QVariant&);
};

/// A field of a ticket, or of the trip that it was sold on.
template <typename AnyTicket, typename T>
auto& fieldOf(AnyTicket& ticket, T Ticket::*field)
{
    return ticket.*field;
}

template <typename AnyTicket, typename T>
auto& fieldOf(AnyTicket& ticket, T FeedTripContext::*field)
{
    return ticket.trip.*field;
}

template <auto Field>
constexpr Column column(const char* name)
{
    using T = std::decay_t<decltype(fieldOf(std::declval<Ticket&>(), Field))>;
    constexpr bool isText = std::is_same_v<T, QString>;
    return {
        name, isText ? "TEXT NOT NULL" : "INTEGER NOT NULL",
        [](const Ticket& ticket) { return QVariant(fieldOf(ticket, Field)); },
        [](Ticket& ticket, const QVariant& value) { fieldOf(ticket, Field) = value.value<T>(); }};
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
                         column<&FeedTripContext::routeId>("route"),
                         column<&FeedTripContext::fromStopId>("from_stop"),
                         column<&FeedTripContext::toStopId>("to_stop"),
                         column<&FeedTripContext::currentStopId>("current_stop"),
                         column<&FeedTripContext::tripsRouteId>("trips_route"),
                         column<&FeedTripContext::tripsExecutionId>("trips_execution"),
                         column<&FeedTripContext::publicRouteExecutionId>("public_execution")};

/// A text column must not be null, which is what QVariant makes of a null QString.
QVariant storable(const QVariant& value)
{
    return value.type() == QVariant::String && value.isNull() ? QVariant(QLatin1String("")) : value;
}

QString columnDefinitions()
{
    QStringList definitions;
    for (const Column& each : columns)
        definitions.append(QLatin1String(each.name) + QLatin1Char(' ') + QLatin1String(each.type));
    return definitions.join(QLatin1String(", "));
}

/// What an amount of the journal means: "EUR 2".
QString moneyText(const Currency& currency)
{
    return QStringLiteral("%1 %2").arg(currency.code()).arg(currency.decimals());
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

bool hasValidContent(JournalFile& file, const Currency& currency)
{
    const std::optional<QVariant> version = file.value(QStringLiteral("PRAGMA user_version"));
    if (!version)
        return false;
    if (version->toInt() != schemaVersion)
        return file.fail({JournalFault::Kind::OtherVersion, version->toString()});
    for (const Check& check : checks()) {
        const std::optional<QVariant> result = file.value(check.statement);
        if (!result)
            return false;
        if (result->toString() != QLatin1String(check.result))
            return file.fail(
                damaged(QStringLiteral("%1: %2").arg(check.statement, result->toString())));
    }
    const std::optional<QVariant> kept =
        file.value(QStringLiteral("SELECT currency || ' ' || decimals FROM journal"));
    if (!kept)
        return false;
    return kept->toString() == moneyText(currency) ||
           file.fail({JournalFault::Kind::OtherCurrency,
                      QStringLiteral("kept in %1, not in %2")
                          .arg(kept->toString(), moneyText(currency))});
}

bool createTables(JournalFile& file, const Currency& currency, qint64 firstZNumber)
{
    return file.inTransaction([&] {
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
            if (!file.run(statement))
                return false;
        }
        QSqlQuery journal = file.prepared(QStringLiteral("INSERT INTO journal VALUES (?, ?)"));
        journal.addBindValue(currency.code());
        journal.addBindValue(currency.decimals());
        QSqlQuery shift = file.prepared(QStringLiteral("INSERT INTO shift (z_number) VALUES (?)"));
        shift.addBindValue(firstZNumber);
        return file.run(journal) && file.run(shift);
    });
}

QString ticketColumnNames()
{
    QStringList names;
    for (const Column& each : columns)
        names.append(QLatin1String(each.name));
    return names.join(QLatin1String(", "));
}

int ticketColumnCount() { return static_cast<int>(columns.size()); }

void bindTicket(QSqlQuery& query, const Ticket& ticket)
{
    for (const Column& each : columns)
        query.addBindValue(storable(each.get(ticket)));
}

Ticket ticketOf(const QSqlQuery& row)
{
    Ticket ticket;
    int at = 0;
    for (const Column& each : columns)
        each.set(ticket, row.value(at++));
    return ticket;
}

ShiftReport figuresOf(const QSqlQuery& row)
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

} // namespace rivo::sales
