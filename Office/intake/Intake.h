#pragma once

#include <FleetMessages.h>
#include <OfficeStore.h>

#include <QByteArray>
#include <QString>

#include <optional>

namespace rivo::backoffice
{

/// What is to be published for a message.
struct Reply
{
    QString topic;
    QByteArray message;
};

/// Takes the messages of vehicles: checks chain and signatures, stores what is new, keeps what is
/// wrong, and answers what the office has. Each message is one transaction. The same message again
/// has no effect but the same answer, and messages may come in any order.
class Intake
{
public:
    /// Of a store that is open, and lives longer.
    explicit Intake(OfficeStore& store) : m_store(store) {}

    /// Takes a message of the topic of a vehicle's records. False if nothing was stored because the
    /// database cannot be reached: the vehicle will ask again. `reply`: after the transaction, if
    /// the message has a key to answer to.
    bool take(const QString& topic, const QByteArray& message, const QDateTime& now,
              std::optional<Reply>& reply);

private:
    struct Sender
    {
        QString topic;
        qint64 vehicle = 0;
        QByteArray publicKey;
    };

    bool takeUnread(const Sender& sender, const QByteArray& message, const QString& reason);
    bool takeBatch(Sender& sender, const office::Topics& topics, const office::Batch& batch,
                   const QDateTime& now, office::Acknowledgement& answer);
    bool refuseUnstored(Sender& sender, const office::Topics& topics, const office::Batch& batch,
                        office::Acknowledgement& answer);
    bool begin(const Sender& sender, const office::Batch& batch,
               std::optional<StoredJournal>& journal, office::Acknowledgement& answer);
    bool takeRecords(const Sender& sender, StoredJournal& journal, const office::Batch& batch,
                     const QDateTime& now, office::Acknowledgement& answer);
    bool goOnAfterPruned(const Sender& sender, StoredJournal& journal,
                         const sales::SealedRecord& start);
    bool compareStored(const Sender& sender, const StoredJournal& journal,
                       const sales::SealedRecord& record, office::Acknowledgement& answer);
    bool append(const Sender& sender, StoredJournal& journal,
                const QVector<sales::SealedRecord>& records, const QDateTime& now);
    bool refuse(const Sender& sender, FaultKind kind, const sales::SealedRecord& record,
                const QString& reason, office::Acknowledgement& answer);
    bool keep(const Sender& sender, FaultKind kind, const sales::SealedRecord& record,
              const QString& reason);

    OfficeStore& m_store;
};

} // namespace rivo::backoffice
