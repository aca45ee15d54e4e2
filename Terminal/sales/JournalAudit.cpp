#include "JournalAudit.h"

#include "JournalChain_p.h"
#include "JournalFile_p.h"
#include "JournalSchema_p.h"

#include <QFileInfo>

namespace rivo::sales
{

namespace
{

using Verdict = JournalAudit::Verdict;

constexpr qint64 mostOfHead = 4096;

/// A head that a journal is compared with.
struct WantedHead
{
    qint64 record = 0;
    QByteArray digits; ///< the first of its hash
    QByteArray publicKey;
};

std::optional<WantedHead> headOfText(const QString& text)
{
    bool isNumber = false;
    const qint64 record = text.section(QLatin1Char('-'), 0, 0).toLongLong(&isNumber);
    const QByteArray digits = text.section(QLatin1Char('-'), 1).toLatin1().toLower();
    constexpr int fewestDigits = 16;
    const bool isHead =
        isNumber && digits.size() >= fewestDigits && QByteArray::fromHex(digits).toHex() == digits;
    return isHead ? std::make_optional(WantedHead{record, digits, {}}) : std::nullopt;
}

std::optional<WantedHead> headOfFile(const QString& file)
{
    const auto content = ownContent(file, mostOfHead);
    const auto found = content ? headOf(*content) : std::nullopt;
    return found ? std::make_optional(
                       WantedHead{found->record, found->hash.toHex(), found->publicKey})
                 : std::nullopt;
}

class Auditor
{
public:
    bool open(const QString& journal)
    {
        const bool isOpen = m_file.openToRead(journal);
        if (isOpen && hasNewestSchema(m_file))
            return reader().read() || notWhole(0, QStringLiteral("it has no seal"));
        const JournalFault fault = m_file.fault().value_or(JournalFault());
        const bool wasJournal = isOpen || JournalCompanions(journal).areThere();
        const bool isDamaged = fault.kind == JournalFault::Kind::Damaged && wasJournal;
        return end(isDamaged ? Verdict::NotWhole : Verdict::Unreadable, 0, fault.detail);
    }

    bool count()
    {
        const auto records = m_file.value(QStringLiteral("SELECT COUNT(*) FROM record"));
        const auto last = reader().lastSeal();
        if (!records || !last)
            return notRead();
        m_audit.records = records->toLongLong();
        (reader().isPruned() ? m_audit.pruned : m_audit.unsealed) = reader().base();
        m_audit.head = headText(last->record, last->hash);
        return true;
    }

    bool checkKey(const QString& publicKey)
    {
        if (publicKey.isEmpty())
            return true;
        const QByteArray key = publicKeyOf(publicKey);
        if (key.isEmpty())
            return end(Verdict::Unreadable, 0,
                       QStringLiteral("%1 is no public key").arg(publicKey));
        return key == reader().publicKey() ||
               notWhole(reader().base(), QStringLiteral("it is sealed with another key"));
    }

    bool checkSeals()
    {
        const auto found = reader().firstBreak(reader().base());
        return !found || notWhole(found->record, found->reason);
    }

    bool checkHead(const QString& journal, const QString& given)
    {
        const QString beside = JournalCompanions(journal).head;
        if (given.isEmpty() && !QFileInfo::exists(beside))
            return true;
        const QString file = given.isEmpty() ? beside : given;
        const auto head = QFileInfo::exists(file) ? headOfFile(file) : headOfText(file);
        if (!head)
            return given.isEmpty()
                       ? notWhole(0, QStringLiteral("the head beside it is not whole"))
                       : end(Verdict::Unreadable, 0, QStringLiteral("%1 is no head").arg(file));
        if (head->record < m_audit.pruned)
            return end(Verdict::Unreadable, 0,
                       QStringLiteral("the record of that head was pruned, as all up to %1")
                           .arg(m_audit.pruned));
        m_audit.isHeadCompared = true;
        const auto seal = reader().sealOf(head->record);
        if (!seal)
            return notWhole(m_audit.pruned + m_audit.records + 1,
                            QStringLiteral("the journal ends before its head"));
        const bool isSame = seal->hash.toHex().startsWith(head->digits) &&
                            (head->publicKey.isEmpty() || head->publicKey == reader().publicKey());
        return isSame ||
               notWhole(head->record, QStringLiteral("the journal is not the one of its head"));
    }

    bool checkFigures() { return passesAll(m_file) || notRead(); }

    JournalAudit result() const { return m_audit; }
    void isWhole() { m_audit.verdict = Verdict::Whole; }

private:
    ChainReader& reader() { return m_file.chain().reader(); }

    bool end(Verdict verdict, qint64 record, const QString& reason)
    {
        m_audit.verdict = verdict;
        m_audit.record = record;
        m_audit.reason = reason;
        return false;
    }
    bool notWhole(qint64 record, const QString& reason)
    {
        return end(Verdict::NotWhole, record, reason);
    }
    bool notRead()
    {
        return notWhole(0, m_file.fault() ? m_file.fault()->detail
                                          : QStringLiteral("the journal cannot be read"));
    }

    JournalFile m_file;
    JournalAudit m_audit;
};

} // namespace

JournalAudit auditJournal(const QString& file, const QString& head, const QString& publicKey)
{
    Auditor auditor;
    if (auditor.open(file) && auditor.count() && auditor.checkKey(publicKey) &&
        auditor.checkSeals() && auditor.checkHead(file, head) && auditor.checkFigures())
        auditor.isWhole();
    return auditor.result();
}

} // namespace rivo::sales
