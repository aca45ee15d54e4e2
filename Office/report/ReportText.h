#pragma once

#include "SalesReport.h"

#include <OfficeStore.h>

#include <QByteArray>

namespace rivo::backoffice
{

enum class ReportFormat {
    Text, ///< columns for people, amounts with their decimals
    Csv,  ///< RFC 4180, amounts in minor units
    Json  ///< an array of objects, amounts in minor units
};

/// A report in UTF-8.
QByteArray textOf(const QVector<ReportLine>& lines, ReportBy by, ReportFormat format);

/// A line for each fault.
QByteArray textOf(const QVector<KeptFault>& faults);

/// "12.05"
QString amountText(qint64 amount, int decimals);

/// "driver" and so on.
QString nameOf(ReportBy by);

} // namespace rivo::backoffice
