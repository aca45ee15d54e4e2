#pragma once

#include <Database.h>

#include <QDate>
#include <QString>
#include <QVector>

#include <optional>

namespace rivo::backoffice
{

/// What the lines of a report are of.
enum class ReportBy { Driver, Route, Vehicle, Product };

/// What was sold and taken back, in prices of tickets and one currency. Cash is not rounded.
struct ReportLine
{
    QString key; ///< number of the driver, name of the others
    QString currency;
    int decimals = 0;
    qint64 tickets = 0;
    qint64 sold = 0;
    qint64 card = 0;            ///< of sold
    qint64 reversedTickets = 0; ///< on these days, whenever they were sold
    qint64 reversed = 0;

    qint64 total() const { return sold - reversed; }
};

/// The days in the vehicles' own time, first and last included. Lines are in the order of their
/// keys. Nothing if the database fails.
std::optional<QVector<ReportLine>> salesReport(Database& database, ReportBy by, const QDate& from,
                                               const QDate& to);

} // namespace rivo::backoffice
