#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFile;
struct evp_md_ctx_st;

namespace rivo::sales
{

/// The write-ahead log that SQLite keeps beside a database.
inline QString logOf(const QString& file) { return file + QLatin1String("-wal"); }

/// The write-ahead log of a journal, read beside SQLite: what of it was written when its state was
/// kept, and what after that.
///
/// A log has a header and frames, each with a page of the database. Frames whose numbers are not
/// those of the header are left over from before it was begun anew, and SQLite ignores them.
class JournalLog
{
public:
    explicit JournalLog(const QString& file);
    ~JournalLog();
    JournalLog(const JournalLog&) = delete;
    JournalLog& operator=(const JournalLog&) = delete;

    /// Reads the frames that were added, or all if the log was begun anew. False if it cannot be
    /// read.
    bool follow();

    /// Where it begins; changes when it is begun anew. Empty without frames.
    const QByteArray& header() const { return m_header; }

    /// Length and SHA-256 of what was read: "4152 9f86…"; empty without frames.
    QByteArray state() const;

    /// Whether the log begins as it was in `state`, and has no more frames than of `page`, which is
    /// a table's only one, and which leave the size of the database as it is.
    bool isAsKept(const QByteArray& state, quint32 page) const;

private:
    void begin(const QByteArray& header);
    void add(const QByteArray& bytes);
    void addFrame(const QByteArray& frame);
    quint32 pagesOfDatabase() const;
    QByteArray nextFrame(QFile& log, qint64 at) const;

    const QString m_file;
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> m_hash;
    QByteArray m_header;
    qint64 m_length = 0;
    qint64 m_frameSize = 0;
    quint32 m_pages = 0; ///< of the database after the last transaction that was read; 0 = none
};

} // namespace rivo::sales
