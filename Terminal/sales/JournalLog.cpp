#include "JournalLog_p.h"

#include <QFile>
#include <QtEndian>

#include <openssl/evp.h>

namespace rivo::sales
{

namespace
{

// The formats of SQLite's write-ahead log and database.
constexpr int headerSize = 32;
constexpr int pageSizeAt = 8; ///< in the header
constexpr int saltAt = 16;    ///< in the header
constexpr int frameHeaderSize = 24;
constexpr int frameDatabaseAt = 4; ///< pages of the database after a transaction's last frame, or 0
constexpr int frameSaltAt = 8;
constexpr int saltSize = 8;
constexpr int databaseHeaderSize = 100;
constexpr int databasePagesAt = 28; ///< in the database's header
constexpr char tableLeaf = 13;      ///< first byte of a page without pages below it

quint32 numberAt(const QByteArray& bytes, int at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

} // namespace

JournalLog::JournalLog(const QString& file)
    : m_file(file), m_hash(EVP_MD_CTX_new(), EVP_MD_CTX_free)
{
}

JournalLog::~JournalLog() = default;

bool JournalLog::follow()
{
    QFile log(m_file);
    if (!log.exists()) {
        begin({});
        return true;
    }
    if (!log.open(QIODevice::ReadOnly))
        return false;
    const QByteArray header = log.read(headerSize);
    if (header != m_header)
        begin(header);
    for (QByteArray frame = nextFrame(log, m_length); !frame.isEmpty();
         frame = nextFrame(log, m_length))
        addFrame(frame);
    return log.error() == QFile::NoError;
}

void JournalLog::begin(const QByteArray& header)
{
    constexpr quint32 mostPageSize = 65536;
    const quint32 pageSize = header.size() == headerSize ? numberAt(header, pageSizeAt) : 0;
    const bool isLog = pageSize > 0 && pageSize <= mostPageSize;
    m_header = isLog ? header : QByteArray();
    m_frameSize = frameHeaderSize + qint64(pageSize);
    m_length = 0;
    m_pages = 0;
    EVP_DigestInit_ex(m_hash.get(), EVP_sha256(), nullptr);
    add(m_header);
}

void JournalLog::add(const QByteArray& bytes)
{
    EVP_DigestUpdate(m_hash.get(), bytes.constData(), static_cast<size_t>(bytes.size()));
    m_length += bytes.size();
}

void JournalLog::addFrame(const QByteArray& frame)
{
    const quint32 pages = numberAt(frame, frameDatabaseAt);
    m_pages = pages == 0 ? m_pages : pages;
    add(frame);
}

/// As the database says itself; 0 if it cannot be read.
quint32 JournalLog::pagesOfDatabase() const
{
    QFile database(m_file.chopped(logOf(QString()).size()));
    if (!database.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray header = database.read(databaseHeaderSize);
    return header.size() == databaseHeaderSize ? numberAt(header, databasePagesAt) : 0;
}

/// The frame at `at`; empty if there is none of this log.
QByteArray JournalLog::nextFrame(QFile& log, qint64 at) const
{
    if (m_header.isEmpty() || !log.seek(at))
        return {};
    const QByteArray frame = log.read(m_frameSize);
    const bool isOurs = frame.size() == m_frameSize &&
                        frame.mid(frameSaltAt, saltSize) == m_header.mid(saltAt, saltSize);
    return isOurs ? frame : QByteArray();
}

QByteArray JournalLog::state() const
{
    if (m_length <= headerSize)
        return {};
    // What is hashed so far; more may follow.
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> copy(EVP_MD_CTX_new(),
                                                                       EVP_MD_CTX_free);
    QByteArray hash(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    if (EVP_MD_CTX_copy_ex(copy.get(), m_hash.get()) != 1 ||
        EVP_DigestFinal_ex(copy.get(), reinterpret_cast<unsigned char*>(hash.data()), &size) != 1)
        return {};
    return QByteArray::number(m_length) + ' ' + hash.left(static_cast<int>(size)).toHex();
}

bool JournalLog::isAsKept(const QByteArray& state, quint32 page) const
{
    const qint64 length = state.left(state.indexOf(' ')).toLongLong();
    QFile log(m_file);
    if (!log.exists())
        return state.isEmpty();
    if (!log.open(QIODevice::ReadOnly))
        return false;
    JournalLog kept(m_file);
    kept.begin(log.read(headerSize));
    QByteArray frame = kept.nextFrame(log, kept.m_length);
    for (; !frame.isEmpty() && kept.m_length < length; frame = kept.nextFrame(log, kept.m_length))
        kept.addFrame(frame);
    if (kept.state() != state)
        return false;
    const quint32 pages = kept.m_pages != 0 ? kept.m_pages : pagesOfDatabase();
    for (qint64 at = kept.m_length; !frame.isEmpty(); frame = kept.nextFrame(log, at)) {
        const quint32 pagesAfter = numberAt(frame, frameDatabaseAt);
        if (numberAt(frame, 0) != page || frame.at(frameHeaderSize) != tableLeaf ||
            (pagesAfter != 0 && pagesAfter != pages))
            return false;
        at += kept.m_frameSize;
    }
    return true;
}

} // namespace rivo::sales
