#include "JournalChain_p.h"

#include "JournalFile_p.h"
#include "JournalSchema_p.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace rivo::sales
{

namespace
{

bool isThere(const QString& file)
{
    const QFileInfo info(file);
    return info.exists() || info.isSymLink();
}

/// Puts size and times of a file on the disk, which SQLite leaves to the system: without them the
/// file would have another mark after a power cut.
bool keepTimes(const QString& file)
{
    const int handle = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC);
    const bool isKept = handle >= 0 && fsync(handle) == 0;
    if (handle >= 0)
        ::close(handle);
    return isKept;
}

} // namespace

bool JournalCompanions::areThere() const { return isThere(head) || isThere(key); }

JournalChain::JournalChain(JournalFile& file, const QString& journal, const QByteArray& mark)
    : m_file(file), m_journal(journal), m_mark(mark), m_companions(journal),
      m_reader(std::in_place, file), m_log(logOf(journal))
{
}

bool JournalChain::replaced(const char* what)
{
    return m_file.fail({JournalFault::Kind::Replaced, QString::fromLatin1(what)});
}

bool JournalChain::cannotWrite(const QString& file)
{
    const int reason = errno;
    return m_file.fail(
        {reason == ENOSPC ? JournalFault::Kind::Full : JournalFault::Kind::Unreachable,
         QStringLiteral("%1: %2").arg(file, qt_error_string(reason))});
}

bool JournalChain::admitsStart()
{
    const bool hasHead = isThere(m_companions.head);
    const bool hasKey = isThere(m_companions.key);
    if (!hasHead && !hasKey)
        return true;
    // A power cut at the first start leaves a head without a hash, with or without its key.
    if (!hasHead || !m_headFile.open(m_companions.head) || !m_headFile.head().hash.isEmpty())
        return replaced("the journal of this key and head is missing");
    if (!hasKey)
        return true;
    m_key = JournalKey::read(m_companions.key);
    return (m_key && m_key->publicKey() == m_headFile.head().publicKey) ||
           replaced("head and key do not belong together");
}

bool JournalChain::start()
{
    if (m_key)
        return true;
    m_key = JournalKey::make();
    if (!m_key)
        return m_file.fail({JournalFault::Kind::Unreachable, QStringLiteral("no random numbers")});
    // The head first: a key without a head belongs to a journal that is missing.
    if (!m_headFile.make(m_companions.head, {}, *m_key))
        return cannotWrite(m_companions.head);
    return m_key->write(m_companions.key, m_companions.publicKey) || cannotWrite(m_companions.key);
}

bool JournalChain::admitsJournal()
{
    m_last = m_reader->read() ? m_reader->lastSeal() : std::nullopt;
    if (m_file.fault())
        return false;
    if (!m_last)
        return m_file.fail(damaged(QStringLiteral("the journal has no seal")));
    m_key = JournalKey::read(m_companions.key);
    if (!m_key)
        return replaced("the key is missing or cannot be read");
    if (m_key->publicKey() != m_reader->publicKey())
        return replaced("the key is not that of the journal");
    return hasHeadOf(*m_last);
}

bool JournalChain::hasHeadOf(const Seal& last)
{
    const bool isNew = last.record == m_reader->base();
    if (!m_headFile.open(m_companions.head)) {
        // A power cut between the first transaction and the first head.
        const bool isMissing = !isThere(m_companions.head);
        if (!isNew || !isMissing)
            return replaced("the head is missing or not whole");
        return m_headFile.make(m_companions.head, head(), *m_key) || cannotWrite(m_companions.head);
    }
    const JournalHead& kept = m_headFile.head();
    if (kept.publicKey != m_key->publicKey())
        return replaced("head and key do not belong together");
    if (kept.hash.isEmpty())
        return isNew || replaced("the head is older than the journal");
    const auto seal = m_reader->sealOf(kept.record);
    if (m_file.fault())
        return false;
    if (!seal)
        return replaced("the journal ends before its head");
    return seal->hash == kept.hash || replaced("the journal is not the one of its head");
}

bool JournalChain::isUntouched()
{
    const JournalHead& kept = m_headFile.head();
    if (kept.fileMark.isEmpty() || kept.fileMark != m_mark)
        return false;
    const auto page =
        m_file.value(QStringLiteral("SELECT rootpage FROM sqlite_master WHERE name = 'basket'"));
    return page && m_log.isAsKept(kept.logState, page->toUInt());
}

bool JournalChain::isWhole(bool onlyRunningShift)
{
    m_isCheckedWhole = !onlyRunningShift;
    qint64 from = m_reader->base();
    if (onlyRunningShift) {
        const auto closed =
            m_file.value(QStringLiteral("SELECT IFNULL(MAX(record), 0) FROM closing"));
        if (!closed)
            return false;
        from = qMax(from, closed->toLongLong());
    }
    const auto found = m_reader->firstBreak(from);
    return !found || m_file.fail(damaged(
                         QStringLiteral("record %1: %2").arg(found->record).arg(found->reason)));
}

bool JournalChain::sealBase()
{
    QSqlQuery chain = m_file.prepared(
        QStringLiteral("INSERT INTO chain SELECT IFNULL((SELECT MAX(id) FROM record), 0),"
                       " (SELECT MIN(z_number) FROM shift),"
                       " IFNULL((SELECT seq FROM sqlite_sequence WHERE name = 'ticket'), 0), ?"));
    chain.addBindValue(m_key->publicKey());
    return m_file.run(chain) && m_reader->read() &&
           addSeal(m_reader->base(), m_reader->hashOfBase());
}

bool JournalChain::seal()
{
    if (!m_last)
        return true;
    const auto newest = m_file.value(QStringLiteral("SELECT IFNULL(MAX(id), 0) FROM record"));
    for (qint64 record = m_last->record + 1; newest && record <= newest->toLongLong(); ++record) {
        if (!addSeal(record, m_reader->hashAfter(*m_last, record)))
            return false;
    }
    return newest.has_value();
}

bool JournalChain::addSeal(qint64 record, const std::optional<QByteArray>& hash)
{
    if (!hash)
        return m_file.fail({JournalFault::Kind::Unreachable,
                            QStringLiteral("record %1 cannot be read").arg(record)});
    Seal seal{record, *hash, {}};
    seal.signature = m_key->sign(messageOf(seal));
    m_last = seal;
    return m_file.insert("seal", {seal.record, seal.hash, seal.signature}).has_value();
}

JournalHead JournalChain::head() const { return {m_last->record, m_last->hash, {}, {}, {}}; }

/// What followed is of the unfinished basket alone.
bool JournalChain::isHeadKept(const QByteArray& mark, const QByteArray& logHeader) const
{
    const JournalHead& kept = m_headFile.head();
    return kept.record == m_last->record && kept.hash == m_last->hash && kept.fileMark == mark &&
           m_log.header() == logHeader;
}

bool JournalChain::keepHead()
{
    if (!m_last || !m_headFile.isOpen() || m_isHeadKeptAtEnd)
        return true;
    JournalHead newest = head();
    newest.fileMark = markOf(m_journal);
    const QByteArray logHeader = m_log.header();
    if (!m_log.follow())
        return m_file.fail({JournalFault::Kind::Unreachable, QStringLiteral("the log")});
    if (isHeadKept(newest.fileMark, logHeader))
        return true;
    if (newest.fileMark != m_headFile.head().fileMark && !keepTimes(m_journal))
        return cannotWrite(m_journal);
    newest.logState = m_log.state();
    return m_headFile.keep(newest, *m_key) ||
           replaced("the head cannot be written, or is not at its place");
}

void JournalChain::keepClosed()
{
    if (!m_last || !m_headFile.isOpen() || m_file.fault())
        return;
    JournalHead closed = head();
    closed.fileMark = markOf(m_journal);
    if (keepTimes(m_journal))
        m_headFile.keep(closed, *m_key);
}

} // namespace rivo::sales
