#pragma once

#include "Journal.h"
#include "JournalHead_p.h"
#include "JournalKey_p.h"
#include "JournalLog_p.h"
#include "RecordContent_p.h"

#include <QStringList>
#include <QVector>

#include <optional>

namespace rivo::sales
{

class JournalFile;

/// The files that belong to a journal beside SQLite's own.
struct JournalCompanions
{
    explicit JournalCompanions(const QString& journal)
        : head(journal + QLatin1String(".head")), key(journal + QLatin1String(".key")),
          publicKey(journal + QLatin1String(".pub"))
    {
    }

    /// Whether there is one of those that a journal cannot be without.
    bool areThere() const;

    QString head;
    QString key; ///< private
    QString publicKey;
};

/// A place where a journal is not what was signed.
struct ChainBreak
{
    qint64 record = 0; ///< 0 for what belongs to no record
    QString reason;
};

/// The seal of a record.
struct Seal
{
    qint64 record = 0;
    QByteArray hash;
    QByteArray signature;
};

/// What is signed of a seal.
QByteArray messageOf(const Seal& seal);

/// The seals of a journal. Each record has one: the SHA-256 of the seal before it, hash and
/// signature, and of the record's content, signed with Ed25519. The first seal is not of a record
/// alone: it covers what the journal has at its start, and all records of the versions before
/// seals. That of a pruned journal is the seal of the last pruned record; what such a journal has
/// at its start is covered by its last record about pruning.
class ChainReader
{
public:
    explicit ChainReader(JournalFile& file);

    /// Reads what the first seal says. False if there is none.
    bool read();
    const QByteArray& publicKey() const { return m_publicKey; }
    qint64 base() const { return m_base; } ///< the first seal is of it, and of all before
    bool isPruned() const
    {
        return !m_prunedStart.isEmpty();
    } ///< the records up to base() are gone

    std::optional<Seal> sealOf(qint64 record);
    std::optional<Seal> lastSeal();

    /// The first place at which the journal differs from its seals, from the seal of record `from`
    /// on; that one is trusted if its signature is right. Nothing if it is whole.
    std::optional<ChainBreak> firstBreak(qint64 from);

    RecordContent& content() { return m_content; }

    // Hashes over what the journal has now; nothing if it cannot be read.
    std::optional<QByteArray> hashOfStart(); ///< tables "journal" and "chain"
    std::optional<QByteArray> hashOfBase();  ///< the start, and records up to the base
    std::optional<QByteArray> hashAfter(const Seal& before, qint64 record);

private:
    std::optional<ChainBreak> breakOfHashes(Seal& seal);
    std::optional<ChainBreak> breakOfSignatures(qint64 from, qint64 to);
    bool isSigned(const Seal& seal) const;
    bool isStartAsSealed(const Seal& first);
    bool readPruning();
    std::optional<Seal> readSeal(const QString& condition);

    JournalFile& m_file;
    RecordContent m_content;
    QByteArray m_publicKey;
    QByteArray m_prunedStart; ///< the sealed hashOfStart() of a journal that was pruned
    qint64 m_base = 0;
};

/// Keeps the chain of an open journal: seals what is added, and holds the head file and the key.
class JournalChain
{
public:
    /// For `journal`, the file that `file` is connected to.
    /// `mark`: what markOf() said before it was opened.
    JournalChain(JournalFile& file, const QString& journal, const QByteArray& mark);

    /// Whether a journal without seals may be started or taken over here; a fault otherwise. A head
    /// or a key of a journal that is not there any more is one.
    bool admitsStart();

    /// Makes the key, and a head that says that the journal is about to be made.
    bool start();

    /// Whether head, key and journal belong together; a fault otherwise.
    bool admitsJournal();

    /// Whether nothing but the unfinished basket was written since the head was kept: to a journal
    /// that was checked, with or without a power cut.
    bool isUntouched();

    ChainReader& reader() { return *m_reader; }

    /// From now on the head is kept when the journal is closed, not with each sale.
    void keepHeadAtEnd() { m_isHeadKeptAtEnd = true; }

    /// Compares the journal with its seals: all, or only what followed the last closed shift.
    bool isWhole(bool onlyRunningShift);
    bool isCheckedWhole() const { return m_isCheckedWhole; }

    /// Adds the first seal, over all that the journal has, in the transaction that runs.
    bool sealBase();

    /// Seals the records that were added, in the transaction that runs.
    bool seal();

    /// Keeps the head, after the transaction.
    bool keepHead();

    /// Before the connection is closed.
    void release() { m_reader.reset(); }

    /// Keeps the head of a journal whose last connection was closed.
    void keepClosed();

private:
    bool replaced(const char* what);
    bool cannotWrite(const QString& file);
    bool hasHeadOf(const Seal& last);
    bool addSeal(qint64 record, const std::optional<QByteArray>& hash);
    bool isHeadKept(const QByteArray& mark, const QByteArray& logHeader) const;
    JournalHead head() const;

    JournalFile& m_file;
    QString m_journal;
    QByteArray m_mark;
    JournalCompanions m_companions;
    std::optional<ChainReader> m_reader; ///< nothing when it is closed
    std::optional<JournalKey> m_key;
    HeadFile m_headFile;
    JournalLog m_log;
    std::optional<Seal> m_last; ///< nothing without a chain
    bool m_isHeadKeptAtEnd = false;
    bool m_isCheckedWhole = true; ///< a new one is
};

} // namespace rivo::sales
