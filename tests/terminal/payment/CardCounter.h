#pragma once

#include "FakeCards.h"
#include "Play.h"

#include <CardDesk.h>

namespace rivo::sales
{

/// A counter at a card terminal that the test answers for; made anew, it is the terminal after a
/// restart, while the card terminal is the same.
struct CardCounter : Counter
{
    CardCounter(const QString& file, FakeCards& asked)
        : Counter(file, euro, 0.0, {}, nullptr, &asked)
    {
        desk.card()->setRetryTime(0);
        QObject::connect(&desk, &SalesDesk::refused,
                         [this](const QString& reason) { refusals.append(reason); });
    }
    Journal& journalOf() const { return const_cast<Journal&>(journal); } // reading needs the file
    QStringList refusals;
};

inline qint64 sold()
{
    return rowsOf(onlyConnection(), "SELECT COUNT(*) FROM sale").at(0).toLongLong();
}

/// "1:1 2:2": direction and verdict of all outcomes.
inline QString outcomes()
{
    return rowsOf(onlyConnection(), "SELECT direction || ':' || verdict FROM outcome JOIN payment"
                                    " ON payment.record = payment ORDER BY outcome.record")
        .join(' ');
}

} // namespace rivo::sales
