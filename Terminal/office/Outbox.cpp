#include "Outbox.h"

#include <Journal.h>

namespace rivo::office
{

namespace
{

/// A message has at least one record, whatever its size.
constexpr int mostBytesOfContents = 256 * 1024;

void keepToSize(QVector<sales::SealedRecord>& records)
{
    int bytes = 0;
    int count = 0;
    while (count < records.size() &&
           (count == 0 || bytes + records.at(count).content.size() <= mostBytesOfContents))
        bytes += records.at(count++).content.size();
    records.resize(count);
}

} // namespace

Outbox::Outbox(sales::Journal& journal, const OutboxPace& pace, QObject* parent)
    : QObject(parent), m_journal(journal), m_pace(pace)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Outbox::onTimeout);
}

void Outbox::setConnected(bool isConnected)
{
    m_isConnected = isConnected;
    m_timer.stop();
    if (isConnected)
        send({m_journal.publicKey(), {}});
}

void Outbox::send(const Batch& batch)
{
    m_isAnswered = false;
    m_timer.start(m_pace.againAfter);
    if (!batch.publicKey.isEmpty()) // a journal that is stopped may go on later
        emit ready(encode(batch));
}

void Outbox::sendNext()
{
    Batch batch{m_journal.publicKey(),
                m_journal.sealedRecords(m_acknowledged, m_pace.recordsOfBatch)};
    keepToSize(batch.records);
    if (batch.records.isEmpty()) {
        m_timer.start(m_pace.pollEvery);
        emit completed();
        return;
    }
    send(batch);
    emit sent();
}

void Outbox::onTimeout()
{
    if (m_isKnown && m_isAnswered && m_refusal.isEmpty())
        sendNext();
    else
        send({m_journal.publicKey(), {}});
}

void Outbox::take(const QByteArray& acknowledgement)
{
    const auto answer = acknowledgementOf(acknowledgement);
    if (!answer || !m_isConnected || answer->publicKey != m_journal.publicKey())
        return;
    const bool isNew = answer->number != m_acknowledged || !m_isKnown;
    const bool wasWaitedFor = !m_isAnswered;
    m_isKnown = true;
    m_isAnswered = true;
    m_acknowledged = answer->number;
    m_refusal = answer->refusal;
    if (isNew)
        emit acknowledgedChanged();
    if (!m_refusal.isEmpty()) {
        m_timer.start(m_pace.refusedAgainAfter);
        emit refused(m_refusal);
    } else if (isNew || wasWaitedFor) {
        sendNext();
    }
}

} // namespace rivo::office
