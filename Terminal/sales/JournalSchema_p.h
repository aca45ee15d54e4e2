#pragma once

#include "Journal.h"

#include <QSqlQuery>
#include <QString>

namespace rivo::sales
{

class JournalFile;

/// Makes the tables of a new journal, and its first shift.
bool createTables(JournalFile& file, const Currency& currency, qint64 firstZNumber);

/// Whether `file` has the tables of this version, figures that agree, and amounts in `currency`; a
/// fault otherwise.
bool hasValidContent(JournalFile& file, const Currency& currency);

/// The columns that the tables of tickets and of the unfinished basket share: "passenger_type,
/// ...".
QString ticketColumnNames();
int ticketColumnCount();

/// Binds the values of these columns.
void bindTicket(QSqlQuery& query, const Ticket& ticket);

/// Reads these columns, the first ones of `row`.
Ticket ticketOf(const QSqlQuery& row);

/// Figures of shifts from their tickets, without a row for shifts that sold none.
constexpr char shiftFigures[] =
    "SELECT sale.shift AS shift, COUNT(*) AS tickets, SUM(price) AS total,"
    " SUM(pay_method = 2) AS cards, SUM((pay_method = 2) * price) AS card_total,"
    " MIN(number) AS first, MAX(number) AS last"
    " FROM ticket JOIN sale ON ticket.sale = sale.id";
static_assert(static_cast<int>(PayMethod::Card) == 2);

/// Reads the columns from number of the shift to last ticket, in the order of shiftFigures. Sums of
/// no tickets are null, which is 0.
ShiftReport figuresOf(const QSqlQuery& row);

} // namespace rivo::sales
