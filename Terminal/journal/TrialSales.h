#pragma once

#include <Journal.h>

#include <QString>

/// Adds made-up sales to a journal and closes the shift: by cash and by card, with copies, tickets
/// that are taken back, floats and hand-overs, `perShift` sales in each shift. The same seed gives
/// the same records. False if the journal fails.
bool sellForTrial(rivo::sales::Journal& journal, qint64 sales, quint32 seed, qint64 perShift);

/// Removes the records of all closed shifts but the last `keptShifts`. False if the journal fails.
bool pruneForTrial(rivo::sales::Journal& journal, int keptShifts);
