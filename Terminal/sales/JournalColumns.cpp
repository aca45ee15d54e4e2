#include "JournalSchema_p.h"

#include <QSqlQuery>
#include <QStringList>

#include <array>
#include <type_traits>
#include <utility>

namespace rivo::sales
{

namespace
{

using feed::FeedTripContext;

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
                         column<&FeedTripContext::publicRouteExecutionId>("public_execution"),
                         column<&Ticket::fromStopName>("from_stop_name"),
                         column<&Ticket::toStopName>("to_stop_name"),
                         column<&Ticket::routeName>("route_name"),
                         column<&Ticket::vehicle>("vehicle"),
                         column<&Ticket::validity>("validity"),
                         column<&Ticket::tax>("tax")};

/// A text column must not be null, which is what QVariant makes of a null QString.
QVariant storable(const QVariant& value)
{
    return value.type() == QVariant::String && value.isNull() ? QVariant(QLatin1String("")) : value;
}

} // namespace

QString ticketColumnDefinitions()
{
    QStringList definitions;
    for (const Column& each : columns)
        definitions.append(QLatin1String(each.name) + QLatin1Char(' ') + QLatin1String(each.type));
    return definitions.join(QLatin1String(", "));
}

QString ticketColumnNames()
{
    QStringList names;
    for (const Column& each : columns)
        names.append(QLatin1String(each.name));
    return names.join(QLatin1String(", "));
}

int ticketColumnCount() { return static_cast<int>(columns.size()); }

QVector<QVariant> ticketValues(const Ticket& ticket)
{
    QVector<QVariant> values;
    for (const Column& each : columns)
        values.append(storable(each.get(ticket)));
    return values;
}

Ticket ticketOf(const QSqlQuery& row)
{
    Ticket ticket;
    int at = 0;
    for (const Column& each : columns)
        each.set(ticket, row.value(at++));
    return ticket;
}

} // namespace rivo::sales
