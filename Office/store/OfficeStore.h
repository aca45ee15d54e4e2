#pragma once

#include "Database.h"

#include <SealedRecord.h>

#include <QDateTime>
#include <QVector>

#include <functional>
#include <optional>

namespace rivo::backoffice
{

/// A journal that the office has, and its last record without content.
struct StoredJournal
{
    qint64 id = 0; ///< in the database
    qint64 vehicle = 0;
    sales::SealedRecord last;
    QDateTime lastAt; ///< the time of the last record; invalid without one
};

/// What is wrong with something that came from a vehicle.
enum class FaultKind {
    Message,   ///< it is no message, or its topic is not that of a vehicle
    Key,       ///< the key is that of another vehicle
    Journal,   ///< the vehicle has another journal than before, or pruned records of this one
    Start,     ///< the journal does not begin with its start
    Signature, ///< a record is not signed by the owner of the key
    Chain,     ///< a record does not follow the one before
    Fork,      ///< the office has another record with the number
    Gap,       ///< records before it are missing
    Content,   ///< a record is stored, but is not understood, or repeats numbers
    Clock,     ///< a record's time is odd, or it is a remark about the clock
    Storage    ///< the database refuses it
};

/// "fork" and so on, as the database and people have it.
QString nameOf(FaultKind kind);

/// What is kept of a fault. The same one again is counted, not kept twice.
struct Fault
{
    qint64 vehicle = 0; ///< 0 = not known
    QString topic;
    QByteArray publicKey; ///< empty = not known
    FaultKind kind = FaultKind::Message;
    qint64 number = -1; ///< of the record; -1 = of no record
    QString reason;
    QByteArray bytes; ///< as received
};

/// A fault that is listed.
struct KeptFault
{
    QString topic;
    QString kind;
    qint64 number = -1;
    QString reason;
    qint64 times = 0;
    QDateTime firstAt;
    QDateTime lastAt;
    QDateTime closedAt; ///< a gap: when the records came; invalid before
};

/// What was found in records that are stored.
struct Appended
{
    struct Record
    {
        qint64 number = 0;
        bool isUnderstood = false;
        QDateTime at;          ///< invalid if it is not understood
        bool isRemark = false; ///< about the clock
    };
    QVector<Record> records;
    bool isRepeated = false; ///< tickets or shifts have numbers that were used before
};

/// The journals of all vehicles in PostgreSQL. Several programs may store at a time: the row of a
/// vehicle is locked while a message of it is taken.
class OfficeStore
{
public:
    /// Faults of one vehicle that are kept with their bytes; further ones only count.
    static constexpr int mostFaultsOfVehicle = 1000;

    explicit OfficeStore(const DatabaseSettings& settings);

    /// Connects, and makes the tables or brings them up to date. False with a problem().
    bool open();
    bool isAlive() { return m_database.isAlive(); }
    const QString& problem() const { return m_problem; }

    /// For reports: nothing can be written.
    bool openToRead();
    Database& database() { return m_database; }

    /// Runs `work` as one transaction, which ends without effect if it returns false.
    bool inTransaction(const std::function<bool()>& work);

    // In a transaction. All return false or nothing, with a problem(), if the database fails.

    /// The number of a vehicle, which is made if it is new. Others wait until the transaction ends.
    std::optional<qint64> lockVehicle(const QString& operatorName, const QString& name);

    /// `journal`: what is stored of the journal of a key, nothing if that is not known.
    bool findJournal(const QByteArray& publicKey, std::optional<StoredJournal>& journal);

    /// Stores the start of a journal. `start` has to be one, see isStart(). `journal`: nothing if
    /// another vehicle has it since.
    bool addJournal(qint64 vehicle, const QByteArray& publicKey, const sales::SealedRecord& start,
                    std::optional<StoredJournal>& journal);

    /// How many journals of a vehicle there are.
    std::optional<int> journalCount(qint64 vehicle);

    /// Stores records that follow the last one, with all that reports need of them, and moves
    /// `journal` on. `result`: what was found in them.
    bool append(StoredJournal& journal, const QVector<sales::SealedRecord>& records,
                Appended& result);

    /// `hash`: that of a stored record; empty if there is none.
    bool findHash(qint64 journal, qint64 number, QByteArray& hash);

    bool keep(const Fault& fault);

    /// Gaps before `number` of a journal are closed.
    bool closeGaps(const QByteArray& publicKey, qint64 number);

    /// Faults, the oldest first; those that are closed too if `all`.
    std::optional<QVector<KeptFault>> faults(bool all);

private:
    std::optional<bool> countAgain(const Fault& fault);
    bool moveOn(const StoredJournal& journal);
    QSqlQuery* run(const char* statement, const QVariantList& values = {});
    bool failed(bool isDone);

    Database m_database;
    QString m_problem;
};

/// Whether a record is the start of the journal of a key, as the office can read it.
bool isStart(const sales::SealedRecord& record, const QByteArray& publicKey);

} // namespace rivo::backoffice
