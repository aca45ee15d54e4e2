#pragma once

#include <QString>

namespace rivo::sales
{

/// What a check of a closed journal found.
struct JournalAudit
{
    enum class Verdict {
        Whole,
        NotWhole,  ///< changed, cut off, older than its head, or of another key
        Unreadable ///< missing, in use, or not a sealed journal of this version
    };
    Verdict verdict = Verdict::Unreadable;
    qint64 record = 0; ///< the first that is not whole; 0 for what belongs to no record
    QString reason;    ///< empty if it is whole
    qint64 records = 0;
    qint64 unsealed = 0;         ///< of them, before the first seal: kept by an earlier version
    qint64 pruned = 0;           ///< that it had besides
    QString head;                ///< of the journal
    bool isHeadCompared = false; ///< with one that was given, or the file beside
};

/// Checks everything in a journal, and changes nothing. `head`: a head file, or the text of a head
/// as it is printed; without it, the head file beside the journal, if there is one. `publicKey`: a
/// PEM file; without it, the key in the journal counts.
JournalAudit auditJournal(const QString& file, const QString& head = {},
                          const QString& publicKey = {});

} // namespace rivo::sales
