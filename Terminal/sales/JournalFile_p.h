#pragma once

#include "Journal.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace rivo::sales
{

/// Marks the file as ours ("RivJ") in the place that SQLite keeps for it.
constexpr int applicationId = 0x5269764a;

inline JournalFault damaged(const QString& detail) { return {JournalFault::Kind::Damaged, detail}; }

/// The SQLite file of a journal: how it is opened and closed, and how statements run in it. The
/// first error of a statement becomes the fault and ends all transactions until open() succeeds.
class JournalFile
{
public:
    JournalFile() = default;
    ~JournalFile() { close(); }
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    /// Connects to `file`, or to a new one. False with a fault for a file that is not a journal of
    /// this program, which stays as it is.
    bool open(const QString& file);
    void close();

    const std::optional<JournalFault>& fault() const { return m_fault; }
    /// Keeps the first fault; always false.
    bool fail(const JournalFault& fault);

    QSqlQuery prepared(const QString& statement) const;
    bool run(QSqlQuery& query);
    bool run(const QString& statement);
    /// Runs them in their order, until one fails.
    bool runAll(const QStringList& statements);
    /// Adds a row with these values, which are all of its columns. Returns its number: a key that
    /// is null becomes one that was never used before.
    std::optional<qint64> insert(const char* table, const QVector<QVariant>& values);
    /// The one value that `statement` yields.
    std::optional<QVariant> value(const QString& statement);
    /// For settings that SQLite answers with what it made of them.
    bool setPragma(const char* setting, const char* wanted);

    /// Runs `query` and calls `use` on each row. False if not all rows could be read.
    template <typename Use>
    bool forEachRow(QSqlQuery& query, Use use);

    /// Runs `steps`, which return whether they succeeded, as one transaction.
    template <typename Steps>
    bool inTransaction(Steps steps);

private:
    QSqlDatabase database() const;
    bool connectTo(const QString& file);
    bool setCheckpointOnClose(bool isWanted);
    bool isRead(const QSqlQuery& query);

    QString m_connection; ///< empty if not open
    std::optional<JournalFault> m_fault = JournalFault{JournalFault::Kind::Unreachable, {}};
};

template <typename Use>
bool JournalFile::forEachRow(QSqlQuery& query, Use use)
{
    if (!run(query))
        return false;
    while (query.next())
        use();
    return isRead(query);
}

template <typename Steps>
bool JournalFile::inTransaction(Steps steps)
{
    if (m_fault || !run(QStringLiteral("BEGIN IMMEDIATE")))
        return false;
    if (steps() && run(QStringLiteral("COMMIT")))
        return true;
    run(QStringLiteral("ROLLBACK")); // fails if SQLite has rolled back already
    return false;
}

} // namespace rivo::sales
