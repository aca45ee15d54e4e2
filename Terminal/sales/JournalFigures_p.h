#pragma once

#include "Records.h"

#include <QSqlQuery>
#include <QString>

#include <optional>

namespace rivo::sales
{

/// The columns of a shift's figures, in their order.
QString figureNames();

/// Their definitions in a table.
QString figureDefinitions();

/// A statement with the number of each shift and its figures, added up from its records; of the
/// one shift `zNumber`, if it is given.
QString figuresOfShifts(std::optional<qint64> zNumber = std::nullopt);

/// Reads the figures; `at`: the place of the first of them in the row.
void readFigures(ShiftReport& report, const QSqlQuery& row, int at);

/// What a shift owes, in terms of its figures.
constexpr char dueOfFigures[] = "(ticket_sum - card_sum - (void_sum + refund_sum -"
                                " reversed_card_sum) + rounding + opening_float)";

} // namespace rivo::sales
