#include "JournalFile_p.h"

#include "JournalChain_p.h"
#include "JournalLog_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QUuid>
#include <QtEndian>

#include <algorithm>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivo::sales
{

namespace
{

const auto lockTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=500");

JournalFault faultOf(const QSqlError& error)
{
    // SQLite's result codes; extended codes carry the primary one in their lowest byte.
    constexpr int misfit = 1; // a statement does not fit the tables
    constexpr int busy = 5;
    constexpr int locked = 6;
    constexpr int corrupt = 11;
    constexpr int full = 13;
    constexpr int notADatabase = 26;
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case busy:
    case locked:
        return {JournalFault::Kind::Locked, error.text()};
    case misfit:
    case corrupt:
    case notADatabase:
        return {JournalFault::Kind::Damaged, error.text()};
    case full:
        return {JournalFault::Kind::Full, error.text()};
    default:
        return {JournalFault::Kind::Unreachable, error.text()};
    }
}

/// The file that SQLite opens for `file`, and keeps its log beside: it follows links.
QString targetOf(const QString& file)
{
    constexpr int mostLinks = 40; // as many as the system follows
    QFileInfo info(file);
    for (int links = 0; info.isSymLink() && links < mostLinks; ++links)
        info.setFile(info.symLinkTarget());
    return info.absoluteFilePath();
}

/// Why a file is neither ours nor to be made. Read without SQLite, which would finish the
/// interrupted transactions of any database that it opens, and throw away the log of an empty one.
std::optional<JournalFault> headerFault(const QString& file)
{
    constexpr int idOffset = 68;
    constexpr int headerSize = idOffset + static_cast<int>(sizeof(qint32));
    // Opening a pipe would wait for its other end.
    QFile content(file);
    if (content.exists() && !QFileInfo(file).isFile() && !QFileInfo(file).isDir())
        return JournalFault{JournalFault::Kind::Foreign, QStringLiteral("not a regular file")};
    if (content.exists() && !content.open(QIODevice::ReadOnly))
        return std::nullopt; // SQLite will report the reason
    const QByteArray header = content.isOpen() ? content.read(headerSize) : QByteArray();
    if (header.isEmpty())
        return QFileInfo(logOf(file)).size() > 0
                   ? std::make_optional(damaged(QStringLiteral("a log without its database")))
                   : std::nullopt;
    if (header.size() < headerSize || !header.startsWith("SQLite format 3"))
        return damaged(QStringLiteral("not a database"));
    const auto id = qFromBigEndian<qint32>(header.constData() + idOffset);
    if (id != applicationId)
        return JournalFault{JournalFault::Kind::Foreign,
                            QStringLiteral("application id %1").arg(id)};
    return std::nullopt;
}

/// Makes a missing file that other users cannot read; SQLite gives its log the same rights. What
/// is wrong with the folder is reported by SQLite.
void makePrivate(const QString& file)
{
    const int made =
        ::open(QFile::encodeName(file).constData(),
               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (made >= 0)
        ::close(made);
}

} // namespace

JournalFile::JournalFile() = default;

JournalFile::~JournalFile() { close(); }

QSqlDatabase JournalFile::database() const { return QSqlDatabase::database(m_connection, false); }

void JournalFile::close()
{
    if (m_connection.isEmpty())
        return;
    const QString file = database().databaseName();
    if (!m_isToRead && (!m_fault || QFileInfo(logOf(file)).size() == 0))
        setCheckpointOnClose(true);
    if (m_chain)
        m_chain->release();
    database().close();
    QSqlDatabase::removeDatabase(m_connection);
    m_connection.clear();
    if (m_isToRead && !m_hadLog && QFileInfo(logOf(file)).size() == 0)
        QFile::remove(logOf(file)); // SQLite makes an empty one to read
    if (m_chain && !m_isToRead && !QFileInfo::exists(logOf(file)))
        m_chain->keepClosed();
    m_chain.reset();
}

bool JournalFile::fail(const JournalFault& fault)
{
    if (!m_fault)
        m_fault = fault;
    return false;
}

bool JournalFile::open(const QString& file)
{
    close();
    m_isToRead = false;
    const QString target = targetOf(file);
    m_fault = headerFault(target);
    if (!m_fault && !QFileInfo::exists(target) && JournalCompanions(target).areThere())
        m_fault = {JournalFault::Kind::Replaced, QStringLiteral("the journal is missing")};
    if (m_fault)
        return false;
    makePrivate(target);
    return connectWithChain(target, markOf(target));
}

bool JournalFile::openToRead(const QString& file)
{
    close();
    m_isToRead = true;
    const QString target = targetOf(file);
    m_hadLog = QFileInfo::exists(logOf(target));
    if (!QFileInfo(target).isFile())
        m_fault = {JournalFault::Kind::Unreachable, QStringLiteral("no such file")};
    else if (QFileInfo(target).size() == 0)
        m_fault = damaged(QStringLiteral("the file is empty"));
    else
        m_fault = headerFault(target);
    return !m_fault && connectWithChain(target, {}) && setPragma("locking_mode", "exclusive") &&
           run(QStringLiteral("PRAGMA query_only=ON")) &&
           run(QStringLiteral("PRAGMA trusted_schema=OFF"));
}

bool JournalFile::connectWithChain(const QString& file, const QByteArray& mark)
{
    if (!connectTo(file)) {
        close();
        return false;
    }
    m_chain = std::make_unique<JournalChain>(*this, file, mark);
    m_seen = {{file}, {logOf(file)}};
    return true;
}

/// What a file that was seen is now; an inode of 0 if it is not there.
void JournalFile::noteFiles()
{
    for (Seen& seen : m_seen) {
        struct stat info = {};
        const bool isThere = lstat(QFile::encodeName(seen.file).constData(), &info) == 0;
        seen = {seen.file, info.st_dev, isThere ? info.st_ino : 0, isThere ? info.st_size : 0};
    }
}

/// SQLite writes on into a file that was removed.
bool JournalFile::isInPlace()
{
    const std::vector<Seen> before = m_seen;
    noteFiles();
    for (size_t at = 0; at < m_seen.size(); ++at) {
        const bool isSame = m_seen[at].inode == before[at].inode &&
                            m_seen[at].device == before[at].device &&
                            m_seen[at].size >= before[at].size;
        if (before[at].inode != 0 && !isSame)
            return fail(
                {JournalFault::Kind::Replaced,
                 QStringLiteral("%1 was removed, replaced or cut off").arg(m_seen[at].file)});
    }
    return true;
}

bool JournalFile::begin()
{
    return !m_fault && !m_isToRead && isInPlace() && run(QStringLiteral("BEGIN IMMEDIATE"));
}

bool JournalFile::commit()
{
    return m_chain->seal() && run(QStringLiteral("COMMIT")) && isInPlace() && m_chain->keepHead();
}

bool JournalFile::connectTo(const QString& file)
{
    m_connection = QUuid::createUuid().toString();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(file);
    db.setConnectOptions(lockTimeout);
    if (!db.open())
        return fail(faultOf(db.lastError()));
    // Its handle is used below: a driver with an SQLite of its own would not survive that.
    const std::optional<QVariant> source = value(QStringLiteral("SELECT sqlite_source_id()"));
    if (!source)
        return false;
    return source->toString() == QLatin1String(sqlite3_sourceid())
               ? setCheckpointOnClose(false)
               : fail({JournalFault::Kind::Unreachable, source->toString()});
}

sqlite3* JournalFile::handle()
{
    const QVariant driverHandle = database().driver()->handle();
    const bool isSqlite = qstrcmp(driverHandle.typeName(), "sqlite3*") == 0;
    return isSqlite ? *static_cast<sqlite3* const*>(driverHandle.constData()) : nullptr;
}

/// A write-ahead log that is left over would go into the database when the last connection closes,
/// even if nothing was ever written through it.
bool JournalFile::setCheckpointOnClose(bool isWanted)
{
    sqlite3* connection = handle();
    return (connection != nullptr && sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE,
                                                       isWanted ? 0 : 1, nullptr) == SQLITE_OK) ||
           fail({JournalFault::Kind::Unreachable, QStringLiteral("no handle of SQLite")});
}

std::optional<QVariant> JournalFile::value(const QString& statement)
{
    QSqlQuery query(database());
    if (!query.exec(statement) || (!query.next() && query.lastError().isValid())) {
        fail(faultOf(query.lastError()));
        return std::nullopt;
    }
    if (!query.isValid()) {
        fail(damaged(QStringLiteral("%1: nothing").arg(statement)));
        return std::nullopt;
    }
    return query.value(0);
}

bool JournalFile::setPragma(const char* setting, const char* wanted)
{
    const QString statement =
        QStringLiteral("PRAGMA %1=%2").arg(QLatin1String(setting), QLatin1String(wanted));
    const std::optional<QVariant> result = value(statement);
    if (!result)
        return false;
    return result->toString() == QLatin1String(wanted) ||
           fail({JournalFault::Kind::Unreachable, statement});
}

bool JournalFile::run(QSqlQuery& query) { return query.exec() || fail(faultOf(query.lastError())); }

bool JournalFile::run(const QString& statement)
{
    QSqlQuery query(database());
    return query.prepare(statement) ? run(query) : fail(faultOf(query.lastError()));
}

bool JournalFile::runAll(const QStringList& statements)
{
    return std::all_of(statements.begin(), statements.end(),
                       [this](const QString& statement) { return run(statement); });
}

std::optional<qint64> JournalFile::insert(const char* table, const QVector<QVariant>& values)
{
    QSqlQuery query =
        prepared(QStringLiteral("INSERT INTO %1 VALUES (?%2)")
                     .arg(QLatin1String(table), QStringLiteral(", ?").repeated(values.size() - 1)));
    for (const QVariant& value : values)
        query.addBindValue(value);
    return run(query) ? std::make_optional(query.lastInsertId().toLongLong()) : std::nullopt;
}

QSqlQuery JournalFile::prepared(const QString& statement) const
{
    QSqlQuery query(database());
    query.prepare(statement); // run() reports what is wrong with it
    return query;
}

bool JournalFile::isRead(const QSqlQuery& query)
{
    return !query.lastError().isValid() || fail(faultOf(query.lastError()));
}

} // namespace rivo::sales
