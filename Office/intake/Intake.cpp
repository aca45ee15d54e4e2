#include "Intake.h"

namespace rivo::backoffice
{

namespace
{

using office::Acknowledgement;
using office::Batch;
using office::Topics;
using sales::SealedRecord;

/// A clock that is ahead of the office's by more than this is odd.
constexpr int mostSecondsAhead = 15 * 60;

/// Of a message that cannot be read.
constexpr int mostBytesKept = 64 * 1024;

/// The vehicle that a topic is of; nothing unless it is one of records.
std::optional<Topics> topicsOf(const QString& topic)
{
    const QStringList parts = topic.split(QLatin1Char('/'));
    if (parts.size() != 4 || !office::isTopicName(parts.at(1)) || !office::isTopicName(parts.at(2)))
        return std::nullopt;
    const Topics topics{parts.at(1), parts.at(2)};
    return topics.records() == topic ? std::make_optional(topics) : std::nullopt;
}

QString numbered(const char* text, qint64 number) { return QString::fromLatin1(text).arg(number); }

bool isAhead(const QDateTime& at, const QDateTime& now)
{
    return at.isValid() && now.secsTo(at) > mostSecondsAhead;
}

/// What is odd about the time of a record; empty if nothing is.
QString oddityOf(const Appended::Record& record, const QDateTime& before, const QDateTime& now)
{
    if (record.isRemark)
        return QStringLiteral("the vehicle remarks on its clock");
    if (before.isValid() && record.at < before)
        return QStringLiteral("its time is before that of the record before");
    if (isAhead(record.at, now) && !isAhead(before, now))
        return QStringLiteral("its time is ahead of the office's");
    return {};
}

/// The records that follow `last` in its chain and are signed. Signatures are in the hashes, but a
/// forger without the key could make both.
int countOfChain(const QVector<SealedRecord>& records, SealedRecord last, const QByteArray& key)
{
    int count = 0;
    while (count < records.size() && sales::isSigned(records.at(count), key) &&
           sales::follows(last, records.at(count)))
        last = records.at(count++);
    return count;
}

} // namespace

bool Intake::take(const QString& topic, const QByteArray& message, const QDateTime& now,
                  std::optional<Reply>& reply)
{
    reply.reset();
    Sender sender{topic, 0, {}};
    const auto topics = topicsOf(topic);
    if (!topics)
        return takeUnread(sender, message, QStringLiteral("the topic is not that of a vehicle"));
    const auto batch = office::batchOf(message);
    if (!batch)
        return takeUnread(sender, message, QStringLiteral("it is not a message of records"));
    Acknowledgement answer{batch->publicKey, -1, {}};
    sender.publicKey = batch->publicKey;
    const bool isTaken =
        m_store.inTransaction([&] { return takeBatch(sender, *topics, *batch, now, answer); });
    // A message that the database refuses must not come again and again.
    if (!isTaken && !(m_store.isAlive() && refuseUnstored(sender, *topics, *batch, answer)))
        return false;
    reply = Reply{topics->acknowledged(), office::encode(answer)};
    return true;
}

bool Intake::takeUnread(const Sender& sender, const QByteArray& message, const QString& reason)
{
    const auto topics = topicsOf(sender.topic);
    return m_store.inTransaction([&] {
        const auto vehicle = topics ? m_store.lockVehicle(topics->operatorName, topics->vehicle)
                                    : std::make_optional<qint64>(0);
        return vehicle && m_store.keep({*vehicle,
                                        sender.topic,
                                        {},
                                        FaultKind::Message,
                                        -1,
                                        reason,
                                        message.left(mostBytesKept)});
    });
}

bool Intake::refuseUnstored(Sender& sender, const Topics& topics, const Batch& batch,
                            Acknowledgement& answer)
{
    const QString problem = m_store.problem();
    return m_store.inTransaction([&] {
        const auto vehicle = m_store.lockVehicle(topics.operatorName, topics.vehicle);
        std::optional<StoredJournal> journal;
        if (!vehicle || !m_store.findJournal(batch.publicKey, journal))
            return false;
        sender.vehicle = *vehicle;
        answer.number = journal && journal->vehicle == *vehicle ? journal->last.number : -1;
        answer.refusal = QStringLiteral("the office cannot store it");
        return keep(sender, FaultKind::Storage, batch.records.value(0), problem);
    });
}

bool Intake::takeBatch(Sender& sender, const Topics& topics, const Batch& batch,
                       const QDateTime& now, Acknowledgement& answer)
{
    const auto vehicle = m_store.lockVehicle(topics.operatorName, topics.vehicle);
    std::optional<StoredJournal> journal;
    if (!vehicle || !m_store.findJournal(batch.publicKey, journal))
        return false;
    sender.vehicle = *vehicle;
    if (!journal && !batch.records.isEmpty() && !begin(sender, batch, journal, answer))
        return false;
    if (!journal)
        return true;
    if (journal->vehicle != *vehicle)
        return refuse(sender, FaultKind::Key, batch.records.value(0),
                      QStringLiteral("the key is that of another vehicle"), answer);
    answer.number = journal->last.number;
    return takeRecords(sender, *journal, batch, now, answer);
}

bool Intake::begin(const Sender& sender, const Batch& batch, std::optional<StoredJournal>& journal,
                   Acknowledgement& answer)
{
    const SealedRecord& first = batch.records.first();
    if (!sales::isSigned(first, batch.publicKey))
        return refuse(sender, FaultKind::Signature, first,
                      QStringLiteral("it is not signed with the key"), answer);
    // The answer makes the vehicle send its journal from the start.
    if (first.content.startsWith("record;"))
        return keep(sender, FaultKind::Gap, first,
                    QStringLiteral("the start of the journal is missing"));
    if (!isStart(first, batch.publicKey) || !sales::isSealOfStart(first))
        return refuse(sender, FaultKind::Start, first,
                      QStringLiteral("it is not the start of the journal"), answer);
    const auto others = m_store.journalCount(sender.vehicle);
    if (!others || !m_store.addJournal(sender.vehicle, batch.publicKey, first, journal))
        return false;
    if (!journal)
        return refuse(sender, FaultKind::Key, first,
                      QStringLiteral("the key is that of another vehicle"), answer);
    return *others == 0 || keep(sender, FaultKind::Journal, first,
                                QStringLiteral("the vehicle has another journal than before"));
}

bool Intake::takeRecords(const Sender& sender, StoredJournal& journal, const Batch& batch,
                         const QDateTime& now, Acknowledgement& answer)
{
    QVector<SealedRecord> fresh;
    for (const SealedRecord& record : batch.records) {
        if (record.number > journal.last.number)
            fresh.append(record);
        else if (!compareStored(sender, journal, record, answer))
            return false;
    }
    if (fresh.isEmpty() || !answer.refusal.isEmpty())
        return true;
    if (fresh.first().number > journal.last.number + 1) {
        // The answer makes the vehicle send what is missing, or the start of what it has left.
        if (!isStart(fresh.first(), batch.publicKey) ||
            !sales::isSigned(fresh.first(), batch.publicKey))
            return keep(sender, FaultKind::Gap, fresh.first(),
                        numbered("the records after %1 are missing", journal.last.number));
        if (!goOnAfterPruned(sender, journal, fresh.takeFirst()))
            return false;
    }
    const int count = countOfChain(fresh, journal.last, batch.publicKey);
    if (count > 0 && (!append(sender, journal, fresh.mid(0, count), now) ||
                      !m_store.closeGaps(batch.publicKey, journal.last.number + 1)))
        return false;
    answer.number = journal.last.number;
    if (count == fresh.size())
        return true;
    const SealedRecord& wrong = fresh.at(count);
    return sales::isSigned(wrong, batch.publicKey)
               ? refuse(sender, FaultKind::Chain, wrong,
                        numbered("it does not follow record %1", wrong.number - 1), answer)
               : refuse(sender, FaultKind::Signature, wrong,
                        QStringLiteral("it is not signed with the key"), answer);
}

bool Intake::goOnAfterPruned(const Sender& sender, StoredJournal& journal,
                             const SealedRecord& start)
{
    Appended ignored;
    return keep(sender, FaultKind::Journal, start,
                numbered("the vehicle pruned the records after %1", journal.last.number)) &&
           m_store.append(journal, {start}, ignored);
}

bool Intake::compareStored(const Sender& sender, const StoredJournal& journal,
                           const SealedRecord& record, Acknowledgement& answer)
{
    QByteArray hash;
    if (!m_store.findHash(journal.id, record.number, hash))
        return false;
    if (hash == record.hash)
        return true;
    return sales::isSigned(record, sender.publicKey)
               ? refuse(sender, FaultKind::Fork, record,
                        QStringLiteral("the office has another record with this number"), answer)
               : refuse(sender, FaultKind::Signature, record,
                        QStringLiteral("it is not signed with the key"), answer);
}

bool Intake::append(const Sender& sender, StoredJournal& journal,
                    const QVector<SealedRecord>& records, const QDateTime& now)
{
    QDateTime before = journal.lastAt;
    Appended appended;
    if (!m_store.append(journal, records, appended))
        return false;
    if (appended.isRepeated && !keep(sender, FaultKind::Content, records.last(),
                                     QStringLiteral("a ticket or shift has a number that was used"
                                                    " before")))
        return false;
    for (int at = 0; at < records.size(); ++at) {
        const Appended::Record& found = appended.records.at(at);
        const QString oddity =
            found.isUnderstood ? oddityOf(found, before, now) : QStringLiteral("not understood");
        const FaultKind kind = found.isUnderstood ? FaultKind::Clock : FaultKind::Content;
        if (!oddity.isEmpty() && !keep(sender, kind, records.at(at), oddity))
            return false;
        if (found.isUnderstood)
            before = found.at;
    }
    return true;
}

bool Intake::refuse(const Sender& sender, FaultKind kind, const SealedRecord& record,
                    const QString& reason, Acknowledgement& answer)
{
    answer.refusal = reason;
    return keep(sender, kind, record, reason);
}

bool Intake::keep(const Sender& sender, FaultKind kind, const SealedRecord& record,
                  const QString& reason)
{
    const bool isRecord = !record.hash.isEmpty();
    return m_store.keep(
        {sender.vehicle, sender.topic, sender.publicKey, kind, isRecord ? record.number : -1,
         reason, isRecord ? office::encode(Batch{sender.publicKey, {record}}) : QByteArray("")});
}

} // namespace rivo::backoffice
