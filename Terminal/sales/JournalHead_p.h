#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace rivo::sales
{

class JournalKey;

/// Where the chain of a journal ends.
struct JournalHead
{
    qint64 record = 0;    ///< the last one; 0 in a new journal
    QByteArray hash;      ///< of its seal; empty before the journal is made
    QByteArray fileMark;  ///< of the checked journal, see markOf(); empty before it is checked
    QByteArray logState;  ///< of its log, see JournalLog::state(); empty without one
    QByteArray publicKey; ///< that signs
};

/// "1234-9f86d081884c7d659a2feaa0c55ad015": what is printed of a head, the first half of the hash.
QString headText(qint64 record, const QByteArray& hash);

/// What changes whenever a file is written to, and differs from that of its copy; empty if it
/// cannot be read.
QByteArray markOf(const QString& file);

/// The head of a journal in a file beside it, which is on the disk before a sale is confirmed. Two
/// blocks of 512 bytes are written in turn, so that one is whole after a power cut. Each is text,
/// signed with the journal's key:
///
///     RivoHead 1 / turn / record / hash / mark or "-" / public key / signature
///
/// with the state of the log after the mark, separated by "+", in lines of their own, numbers in
/// decimal and bytes in hexadecimal digits, padded with line feeds.
class HeadFile
{
public:
    HeadFile() = default;
    ~HeadFile() { close(); }
    HeadFile(const HeadFile&) = delete;
    HeadFile& operator=(const HeadFile&) = delete;

    /// Opens a file and reads the newer block. False if it is missing, a link or not a regular
    /// file, or has no whole block.
    bool open(const QString& file);

    /// Makes a file for its user alone, with one block; what was there is replaced.
    bool make(const QString& file, const JournalHead& head, const JournalKey& key);

    /// Writes the next block. False if it is not on the disk, or the file is not the one at its
    /// place any more.
    bool keep(const JournalHead& head, const JournalKey& key);
    void close();

    bool isOpen() const { return m_handle >= 0; }
    const JournalHead& head() const { return m_head; }

private:
    bool openAt(const QString& file);

    QString m_file;
    JournalHead m_head;
    qint64 m_turn = 0;
    int m_handle = -1;
};

/// The newer block of a head file's content; nothing if none is whole.
std::optional<JournalHead> headOf(const QByteArray& content);

/// Whether `path` still names the file that `handle` is of.
bool isStillNamed(const QString& path, int handle);

} // namespace rivo::sales
