#pragma once

#include <PaymentTerminal.h>

namespace rivo::payment
{

/// "Approved 190 1/1", "Declined: reason", "Unknown".
inline QString text(const Answer& answer)
{
    switch (answer.verdict) {
    case Verdict::Approved:
        if (answer.request == Request::EndOfDay)
            return QStringLiteral("Approved %1").arg(answer.total);
        return answer.wasDone ? QStringLiteral("Approved before")
                              : QStringLiteral("Approved %1 %2/%3")
                                    .arg(answer.receipt.amount)
                                    .arg(answer.receipt.number)
                                    .arg(answer.receipt.trace);
    case Verdict::Declined:
        return QStringLiteral("Declined: ") + answer.reason;
    case Verdict::Unknown:
        break;
    }
    return QStringLiteral("Unknown");
}

} // namespace rivo::payment
