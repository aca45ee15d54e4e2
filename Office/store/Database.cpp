#include "Database.h"

#include <QAtomicInt>
#include <QSqlError>

namespace rivo::backoffice
{

namespace
{

/// Each connection of Qt has a name.
QString newName()
{
    static QAtomicInt count;
    return QStringLiteral("rivo-office-%1").arg(count.fetchAndAddRelaxed(1));
}

} // namespace

QString storable(const QString& text)
{
    return QLatin1String("") +
           QString(text).replace(QChar(QChar::Null), QChar(QChar::ReplacementCharacter));
}

Database::Database(const DatabaseSettings& settings)
    : m_connection(QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), newName()))
{
    m_connection.setHostName(settings.host);
    m_connection.setPort(settings.port > 0 ? settings.port : -1);
    m_connection.setDatabaseName(settings.name);
    m_connection.setUserName(settings.user);
    m_connection.setConnectOptions(settings.options);
}

Database::~Database()
{
    close();
    const QString name = m_connection.connectionName();
    m_connection = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

bool Database::open()
{
    close();
    if (!m_connection.open())
        return fail(m_connection.lastError().text());
    // A commit is on the disk, whatever the server has as its default.
    return runAll({QStringLiteral("SET synchronous_commit TO on"),
                   QStringLiteral("SET TIME ZONE 'UTC'"),
                   QStringLiteral("SET client_min_messages TO warning")});
}

bool Database::openToRead(int mostSeconds)
{
    const bool isSet =
        open() && runAll({QStringLiteral("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY"),
                          QStringLiteral("SET statement_timeout = '%1s'").arg(mostSeconds)});
    if (!isSet)
        close();
    return isSet;
}

void Database::close()
{
    m_prepared.clear();
    m_connection.close();
}

bool Database::isAlive()
{
    return m_connection.isOpen() && run(QStringLiteral("SELECT 1")) != nullptr;
}

bool Database::begin()
{
    return m_connection.transaction() || fail(m_connection.lastError().text());
}

bool Database::commit() { return m_connection.commit() || fail(m_connection.lastError().text()); }

void Database::rollBack() { static_cast<void>(m_connection.rollback()); }

QSqlQuery* Database::run(const QString& statement, const QVariantList& values)
{
    auto kept = m_prepared.find(statement);
    if (kept == m_prepared.end()) {
        QSqlQuery query(m_connection);
        if (!query.prepare(statement)) {
            fail(query.lastError().text());
            return nullptr;
        }
        kept = m_prepared.emplace(statement, query).first;
    }
    QSqlQuery& query = kept->second;
    for (int at = 0; at < values.size(); ++at)
        query.bindValue(at, values.at(at));
    if (query.exec())
        return &query;
    fail(query.lastError().text());
    return nullptr;
}

bool Database::runAll(const QStringList& statements)
{
    for (const QString& statement : statements) {
        QSqlQuery query(m_connection);
        if (!query.exec(statement))
            return fail(query.lastError().text());
    }
    return true;
}

bool Database::fail(const QString& problem)
{
    m_problem = problem.simplified();
    return false;
}

} // namespace rivo::backoffice
