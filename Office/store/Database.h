#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>

namespace rivo::backoffice
{

/// Where the database is. What is empty is what PostgreSQL's own environment and files say, the
/// password always.
struct DatabaseSettings
{
    QString host; ///< a name, or the folder of a socket
    int port = 0;
    QString name;
    QString user;
    QString options; ///< more settings of a connection, such as "sslmode=verify-full"
};

/// A text as PostgreSQL can have it: never null, and without zero bytes.
QString storable(const QString& text);

/// A connection to PostgreSQL. The first error of a transaction rolls it back; none is thrown. All
/// values are bound, and no statement is made of them.
class Database
{
public:
    explicit Database(const DatabaseSettings& settings);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Connects; false with a problem(). An open one is closed before.
    bool open();
    /// Likewise, for a session that cannot write, and whose statements end after so many seconds;
    /// 0 = as long as they take.
    bool openToRead(int mostSeconds = 0);
    void close();

    /// Whether the server still answers.
    bool isAlive();

    const QString& problem() const { return m_problem; } ///< the last one

    bool begin();
    bool commit();
    void rollBack();

    /// Runs a statement; its result is read with the query that it returns. Nothing if it fails.
    QSqlQuery* run(const QString& statement, const QVariantList& values = {});

    /// The same, one after the other.
    bool runAll(const QStringList& statements);

private:
    bool fail(const QString& problem);

    QSqlDatabase m_connection;
    std::map<QString, QSqlQuery> m_prepared;
    QString m_problem;
};

} // namespace rivo::backoffice
