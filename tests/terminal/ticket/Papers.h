#pragma once

#include <PaperLayout.h>

/// A ticket with all that can be on it.
inline rivo::sales::PrintJob fullTicket()
{
    rivo::sales::PrintJob job;
    job.ticket.number = 42;
    job.ticket.payMethod = 1;
    job.ticket.passengerTypeId = 12;
    job.ticket.fareProductId = 21;
    job.ticket.fromStopGroupId = 1;
    job.ticket.toStopGroupId = 2;
    job.ticket.description = QStringLiteral("Child up to 7");
    job.ticket.fareProductName = QStringLiteral("Single ticket");
    job.ticket.price = 190;
    job.ticket.origin = QStringLiteral("Hill");
    job.ticket.destination = QStringLiteral("Valley");
    job.ticket.fromStopName = QStringLiteral("Church Square");
    job.ticket.toStopName = QStringLiteral("Valley");
    job.ticket.routeName = QStringLiteral("7 Harbour – Airport");
    job.ticket.vehicle = QStringLiteral("bus 104");
    job.ticket.validity = QStringLiteral("60 minutes");
    job.ticket.tax = QStringLiteral("includes 8 % tax €0.14");
    job.ticket.soldAt = QDateTime(QDate(2026, 3, 29), QTime(12, 0, 5), Qt::OffsetFromUTC, 7200);
    job.ticket.driver = 7;
    return job;
}

inline rivo::ticket::PaperContext hillValley()
{
    return {QStringLiteral("Hill & Valley Buses"), rivo::sales::Currency(QStringLiteral("EUR"), 2),
            "secret", QLocale(QStringLiteral("en_GB"))};
}
