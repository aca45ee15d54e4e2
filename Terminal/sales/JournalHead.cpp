#include "JournalHead_p.h"

#include "JournalKey_p.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivo::sales
{

namespace
{

constexpr int blockSize = 512;
constexpr int blockCount = 2;
constexpr int lineCount = 7;
constexpr int shownDigits = 32;

/// Separates the mark of the journal from the state of its log.
constexpr char withLog = '+';

QByteArray markText(const JournalHead& head)
{
    if (head.fileMark.isEmpty())
        return "-";
    return head.logState.isEmpty() ? head.fileMark : head.fileMark + withLog + head.logState;
}

QByteArray blockOf(qint64 turn, const JournalHead& head, const JournalKey& key)
{
    const QByteArray lines = "RivoHead 1\n" + QByteArray::number(turn) + '\n' +
                             QByteArray::number(head.record) + '\n' + head.hash.toHex() + '\n' +
                             markText(head) + '\n' + key.publicKey().toHex() + '\n';
    const QByteArray block = lines + key.sign(lines).toHex();
    return block + QByteArray(blockSize - block.size(), '\n');
}

/// Turn and head of one block, if it is whole.
std::optional<std::pair<qint64, JournalHead>> parsed(const QByteArray& block)
{
    const QList<QByteArray> lines = block.split('\n');
    if (lines.size() < lineCount || lines.at(0) != "RivoHead 1")
        return std::nullopt;
    const QByteArray signature = QByteArray::fromHex(lines.at(lineCount - 1));
    const int length = block.indexOf(lines.at(lineCount - 1), block.indexOf(lines.at(5) + '\n'));
    JournalHead head;
    head.record = lines.at(2).toLongLong();
    head.hash = QByteArray::fromHex(lines.at(3));
    const QList<QByteArray> marks = lines.at(4).split(withLog);
    head.fileMark = marks.at(0) == "-" ? QByteArray() : marks.at(0);
    head.logState = marks.value(1);
    head.publicKey = QByteArray::fromHex(lines.at(5));
    return isSignedBy(head.publicKey, block.left(length), signature)
               ? std::make_optional(std::make_pair(lines.at(1).toLongLong(), head))
               : std::nullopt;
}

/// The block with the higher turn.
std::optional<std::pair<qint64, JournalHead>> newest(const QByteArray& content)
{
    std::optional<std::pair<qint64, JournalHead>> best;
    for (int block = 0; block < blockCount; ++block) {
        const auto found = parsed(content.mid(block * blockSize, blockSize));
        if (found && (!best || found->first > best->first))
            best = found;
    }
    return best;
}

} // namespace

QString headText(qint64 record, const QByteArray& hash)
{
    return QStringLiteral("%1-%2").arg(record).arg(
        QString::fromLatin1(hash.toHex().left(shownDigits)));
}

QByteArray markOf(const QString& file)
{
    struct stat info = {};
    if (lstat(QFile::encodeName(file).constData(), &info) != 0)
        return {};
    const auto time = [](const timespec& at) {
        return QByteArray::number(qint64(at.tv_sec)) + '.' + QByteArray::number(qint64(at.tv_nsec));
    };
    return QByteArray::number(quint64(info.st_ino)) + ' ' +
           QByteArray::number(qint64(info.st_size)) + ' ' + time(info.st_mtim) + ' ' +
           time(info.st_ctim);
}

std::optional<JournalHead> headOf(const QByteArray& content)
{
    const auto found = newest(content);
    return found ? std::make_optional(found->second) : std::nullopt;
}

bool isStillNamed(const QString& path, int handle)
{
    struct stat named = {};
    struct stat open = {};
    return lstat(QFile::encodeName(path).constData(), &named) == 0 && fstat(handle, &open) == 0 &&
           named.st_ino == open.st_ino && named.st_dev == open.st_dev;
}

bool HeadFile::openAt(const QString& file)
{
    close();
    m_file = file;
    m_handle = ::open(QFile::encodeName(file).constData(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    struct stat info = {};
    return m_handle >= 0 && fstat(m_handle, &info) == 0 && S_ISREG(info.st_mode);
}

bool HeadFile::open(const QString& file)
{
    QByteArray content(blockSize * blockCount, '\0');
    const auto size = static_cast<size_t>(content.size());
    const auto found = openAt(file) && pread(m_handle, content.data(), size, 0) >= blockSize
                           ? newest(content)
                           : std::nullopt;
    if (!found) {
        close();
        return false;
    }
    m_turn = found->first;
    m_head = found->second;
    return true;
}

bool HeadFile::make(const QString& file, const JournalHead& head, const JournalKey& key)
{
    m_turn = 1;
    m_head = head;
    m_head.publicKey = key.publicKey();
    return writeForOwner(file, QByteArray(blockSize, '\n') + blockOf(m_turn, m_head, key)) &&
           openAt(file);
}

bool HeadFile::keep(const JournalHead& head, const JournalKey& key)
{
    const qint64 turn = m_turn + 1;
    const QByteArray block = blockOf(turn, head, key);
    const auto size = static_cast<size_t>(block.size());
    if (pwrite(m_handle, block.constData(), size, turn % blockCount * blockSize) != block.size() ||
        fdatasync(m_handle) != 0 || !isStillNamed(m_file, m_handle))
        return false;
    m_turn = turn;
    m_head = head;
    m_head.publicKey = key.publicKey();
    return true;
}

void HeadFile::close()
{
    if (m_handle >= 0)
        ::close(m_handle);
    m_handle = -1;
}

} // namespace rivo::sales
