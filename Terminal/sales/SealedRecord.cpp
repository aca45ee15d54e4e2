#include "SealedRecord.h"

#include "Journal.h"
#include "JournalChain_p.h"
#include "JournalFile_p.h"

namespace rivo::sales
{

namespace
{

QByteArray sha256(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

std::optional<QByteArray> contentOfStart(RecordContent& content)
{
    const auto journal = content.ofTable("journal");
    const auto chain = content.ofTable("chain");
    return journal && chain ? std::make_optional(*journal + *chain) : std::nullopt;
}

} // namespace

bool isSigned(const SealedRecord& record, const QByteArray& publicKey)
{
    return isSignedBy(publicKey, messageOf({record.number, record.hash, {}}), record.signature);
}

bool follows(const SealedRecord& before, const SealedRecord& next)
{
    return next.number == before.number + 1 &&
           next.hash == sha256(before.hash + before.signature + next.content);
}

bool isSealOfStart(const SealedRecord& start)
{
    return start.number > 0 || start.hash == sha256(start.content);
}

QByteArray Journal::publicKey()
{
    return m_file->fault() ? QByteArray() : m_file->chain().reader().publicKey();
}

QVector<SealedRecord> Journal::sealedRecords(qint64 after, int count)
{
    QVector<SealedRecord> found;
    if (m_file->fault())
        return found;
    ChainReader& reader = m_file->chain().reader();
    QSqlQuery seals =
        m_file->prepared(QStringLiteral("SELECT record, hash, signature FROM seal WHERE record > %1"
                                        " ORDER BY record LIMIT %2")
                             .arg(after)
                             .arg(count));
    const bool isRead = m_file->forEachRow(seals, [&] {
        const qint64 number = seals.value(0).toLongLong();
        const auto content = number == reader.base() ? contentOfStart(reader.content())
                                                     : reader.content().of(number);
        if (content && found.size() == number - qMax(after + 1, reader.base()))
            found.append(
                {number, *content, seals.value(1).toByteArray(), seals.value(2).toByteArray()});
    });
    return isRead ? found : QVector<SealedRecord>();
}

} // namespace rivo::sales
