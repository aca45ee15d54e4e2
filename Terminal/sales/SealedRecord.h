#pragma once

#include <QByteArray>

namespace rivo::sales
{

/// A record of a journal with its seal, as others can check it.
///
/// The first one of a journal is its start: the number of the last record from before the seals, 0
/// in a new journal, and as content the rows of the tables "journal" and "chain".
struct SealedRecord
{
    qint64 number = 0;
    QByteArray content; ///< its rows, see RecordContent
    QByteArray hash;
    QByteArray signature;
};

/// Whether the owner of a public key of 32 bytes signed the seal.
bool isSigned(const SealedRecord& record, const QByteArray& publicKey);

/// Whether `next` is the record after `before` in one chain. Its signature is not looked at.
bool follows(const SealedRecord& before, const SealedRecord& next);

/// Whether the content of the start of a new journal is what its seal is of. That of a journal with
/// records from before the seals cannot be checked without them: always true.
bool isSealOfStart(const SealedRecord& start);

} // namespace rivo::sales
