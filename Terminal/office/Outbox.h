#pragma once

#include "FleetMessages.h"

#include <QObject>
#include <QTimer>

namespace rivo::sales
{
class Journal;
}

namespace rivo::office
{

/// How an outbox sends; times are in milliseconds.
struct OutboxPace
{
    int recordsOfBatch = 50;
    int pollEvery = 1000;           ///< for new records
    int againAfter = 20000;         ///< without an answer
    int refusedAgainAfter = 300000; ///< after a refusal
};

/// Sends the sealed records of a journal in order. The journal itself is the outbox: nothing is
/// stored twice, and after a restart the office says where to go on. One batch is on its way at a
/// time. It is read in the event loop, at most recordsOfBatch records at once, and the network is
/// never waited for.
class Outbox : public QObject
{
    Q_OBJECT

public:
    /// Of a journal that is open, and stays open longer.
    explicit Outbox(sales::Journal& journal, const OutboxPace& pace = {},
                    QObject* parent = nullptr);

    /// The broker can be reached, or not. With each connection the office is asked what it has.
    void setConnected(bool isConnected);

    /// An answer of the office. Ignored if it is no answer, or one about another journal.
    void take(const QByteArray& acknowledgement);

    qint64 acknowledged() const { return m_acknowledged; } ///< -1 = nothing, or not known yet
    const QString& refusal() const { return m_refusal; }   ///< the office's last one, or empty

signals:
    void ready(const QByteArray& message); ///< to be published as records
    void acknowledgedChanged();
    void sent();      ///< records are on their way
    void completed(); ///< the office has all records that there are
    void refused(const QString& reason);

private:
    void send(const Batch& batch);
    void sendNext();
    void onTimeout();

    sales::Journal& m_journal;
    OutboxPace m_pace;
    QTimer m_timer;
    bool m_isConnected = false;
    bool m_isAnswered = false; ///< nothing is on its way
    bool m_isKnown = false;    ///< the office has said what it has
    qint64 m_acknowledged = -1;
    QString m_refusal;
};

} // namespace rivo::office
