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

} // namespace

QByteArray messageOf(const Seal& seal)
{
    return "RivoSeal 1\n" + QByteArray::number(seal.record) + '\n' + seal.hash;
}

ChainReader::ChainReader(JournalFile& file) : m_file(file), m_content(file.handle()) {}

bool ChainReader::read()
{
    bool isFound = false;
    QSqlQuery chain = m_file.prepared(QStringLiteral("SELECT base, public_key FROM chain"));
    return m_file.forEachRow(chain,
                             [&] {
                                 m_base = chain.value(0).toLongLong();
                                 m_publicKey = chain.value(1).toByteArray();
                                 isFound = true;
                             }) &&
           isFound && readPruning();
}

bool ChainReader::readPruning()
{
    // The first pruning makes the table.
    const auto tables =
        m_file.value(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = 'pruning'"));
    m_prunedStart.clear();
    if (!tables || tables->toInt() == 0)
        return tables.has_value();
    QSqlQuery pruning =
        m_file.prepared(QStringLiteral("SELECT start FROM pruning ORDER BY record DESC LIMIT 1"));
    return m_file.forEachRow(pruning, [&] { m_prunedStart = pruning.value(0).toByteArray(); });
}

std::optional<Seal> ChainReader::readSeal(const QString& condition)
{
    std::optional<Seal> found;
    QSqlQuery query = m_file.prepared(
        QStringLiteral("SELECT record, hash, signature FROM seal WHERE %1").arg(condition));
    const bool isRead = m_file.forEachRow(query, [&] {
        found = Seal{query.value(0).toLongLong(), query.value(1).toByteArray(),
                     query.value(2).toByteArray()};
    });
    return isRead ? found : std::nullopt;
}

std::optional<Seal> ChainReader::sealOf(qint64 record)
{
    return readSeal(QStringLiteral("record = %1").arg(record));
}

std::optional<Seal> ChainReader::lastSeal()
{
    return readSeal(QStringLiteral("record = (SELECT MAX(record) FROM seal)"));
}

std::optional<QByteArray> ChainReader::hashOfStart()
{
    const auto journal = m_content.ofTable("journal");
    const auto chain = m_content.ofTable("chain");
    return journal && chain ? std::make_optional(sha256(*journal + *chain)) : std::nullopt;
}

std::optional<QByteArray> ChainReader::hashOfBase()
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const char* table : {"journal", "chain"}) {
        const auto rows = m_content.ofTable(table);
        if (!rows)
            return std::nullopt;
        hash.addData(*rows);
    }
    for (qint64 record = 1; record <= m_base; ++record) {
        const auto rows = m_content.of(record);
        if (!rows)
            return std::nullopt;
        hash.addData(*rows);
    }
    return hash.result();
}

std::optional<QByteArray> ChainReader::hashAfter(const Seal& before, qint64 record)
{
    const auto rows = m_content.of(record);
    return rows ? std::make_optional(sha256(before.hash + before.signature + *rows)) : std::nullopt;
}

bool ChainReader::isSigned(const Seal& seal) const
{
    return isSignedBy(m_publicKey, messageOf(seal), seal.signature);
}

bool ChainReader::isStartAsSealed(const Seal& first)
{
    return isPruned() ? hashOfStart() == m_prunedStart : hashOfBase() == first.hash;
}

std::optional<ChainBreak> ChainReader::firstBreak(qint64 from)
{
    const auto first = sealOf(from);
    if (!first)
        return ChainBreak{from, QStringLiteral("it has no seal")};
    if (!isSigned(*first))
        return ChainBreak{from, QStringLiteral("its signature is not that of the key")};
    if (from == m_base && !isStartAsSealed(*first))
        return ChainBreak{from, QStringLiteral("what the journal began with was changed")};
    Seal last = *first;
    if (auto broken = breakOfHashes(last))
        return broken;
    // The signatures are in the hashes: with the last one all are those of the key.
    return isSigned(last) ? std::nullopt : breakOfSignatures(from, last.record);
}

/// Follows the hashes from `seal`, and leaves the last one in it.
std::optional<ChainBreak> ChainReader::breakOfHashes(Seal& seal)
{
    const auto newest = m_file.value(QStringLiteral("SELECT IFNULL(MAX(id), 0) FROM record"));
    QSqlQuery seals =
        m_file.prepared(QStringLiteral("SELECT record, hash, signature FROM seal WHERE record > %1"
                                       " ORDER BY record")
                            .arg(seal.record));
    seals.setForwardOnly(true);
    if (!newest || !m_file.run(seals))
        return ChainBreak{0, QStringLiteral("the journal cannot be read")};
    while (seals.next()) {
        const qint64 record = seals.value(0).toLongLong();
        if (record != seal.record + 1)
            return ChainBreak{seal.record + 1, QStringLiteral("its seal is missing")};
        const Seal next{record, seals.value(1).toByteArray(), seals.value(2).toByteArray()};
        if (hashAfter(seal, record) != next.hash) {
            if (seal.record != m_base && !isSigned(seal))
                return ChainBreak{seal.record, QStringLiteral("its seal was changed")};
            return ChainBreak{record, QStringLiteral("it is not what was sealed")};
        }
        seal = next;
    }
    if (seal.record < newest->toLongLong())
        return ChainBreak{seal.record + 1, QStringLiteral("it has no seal")};
    return seal.record == newest->toLongLong()
               ? std::nullopt
               : std::make_optional(
                     ChainBreak{newest->toLongLong() + 1, QStringLiteral("it is missing")});
}

/// Between a seal that is signed and one that is not: all after a change are not.
std::optional<ChainBreak> ChainReader::breakOfSignatures(qint64 from, qint64 to)
{
    while (to - from > 1) {
        const qint64 middle = from + (to - from) / 2;
        const auto seal = sealOf(middle);
        (seal && isSigned(*seal) ? from : to) = middle;
    }
    return ChainBreak{to, QStringLiteral("its signature is not that of the key")};
}

} // namespace rivo::sales
