#pragma once

#include "Journal.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <memory>
#include <vector>

#include <sys/types.h>

struct sqlite3;

namespace rivo::sales
{

/// Marks the file as ours ("RivJ") in the place that SQLite keeps for it.
constexpr int applicationId = 0x5269764a;

inline JournalFault damaged(const QString& detail) { return {JournalFault::Kind::Damaged, detail}; }

class JournalChain;

/// The SQLite file of a journal: how it is opened and closed, and how statements run in it. The
/// first error of a statement becomes the fault and ends all transactions until open() succeeds.
class JournalFile
{
public:
    JournalFile();
    ~JournalFile();
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    /// Connects to `file`, or to a new one. False with a fault for a file that is not a journal of
    /// this program, which stays as it is.
    bool open(const QString& file);

    /// Connects to an existing file and leaves it, and what belongs to it, byte for byte.
    bool openToRead(const QString& file);
    void close();

    const std::optional<JournalFault>& fault() const { return m_fault; }
    /// Keeps the first fault; always false.
    bool fail(const JournalFault& fault);

    /// The chain of the open file, which seals what each transaction adds.
    JournalChain& chain() { return *m_chain; }

    /// The connection of the open file.
    sqlite3* handle();

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
    /// A file as it was after the last transaction; one that shrinks or changes was replaced.
    struct Seen
    {
        QString file;
        dev_t device = 0;
        ino_t inode = 0; ///< 0 = was not there
        qint64 size = 0;
    };

    QSqlDatabase database() const;
    bool connectTo(const QString& file);
    bool connectWithChain(const QString& file, const QByteArray& mark);
    bool begin();
    bool commit();
    bool isInPlace();
    void noteFiles();
    bool setCheckpointOnClose(bool isWanted);
    bool isRead(const QSqlQuery& query);

    QString m_connection; ///< empty if not open
    bool m_isToRead = false;
    bool m_hadLog = false; ///< before it was opened to read
    std::unique_ptr<JournalChain> m_chain;
    std::vector<Seen> m_seen;
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
    if (!begin())
        return false;
    if (steps() && commit())
        return true;
    run(QStringLiteral("ROLLBACK")); // fails if it is committed, or SQLite has rolled back already
    return false;
}

} // namespace rivo::sales
