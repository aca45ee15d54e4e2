#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace rivo::sales
{

/// The rows of a journal as bytes, exactly as they are stored: what its chain covers.
///
/// A row is the name of its table and a semicolon, then its values in the order of the columns,
/// then a line feed. A value is "n" for null, "i" with a whole number and a semicolon, "f" with a
/// floating point number of 17 digits and a semicolon, "t" with the length in bytes, a colon and
/// the text in UTF-8, or "b" in the same way for bytes.
class RecordContent
{
public:
    /// Of the journal that `database` is connected to; it stays open longer.
    explicit RecordContent(sqlite3* database) : m_database(database) {}

    /// The rows of a record: that of table record, then those of its kind's tables, in the order of
    /// their keys. Nothing if they cannot be read.
    std::optional<QByteArray> of(qint64 record);

    /// The same rows for people and programs: an object for table record, with a list of objects
    /// for each other table. Bytes are in hexadecimal digits.
    QJsonObject json(qint64 record);

    /// All rows of a table.
    std::optional<QByteArray> ofTable(const char* table);

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt* statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

    using UsePart = std::function<bool(const char* table, sqlite3_stmt* statement)>;

    bool forEachPart(qint64 record, const UsePart& use);
    sqlite3_stmt* prepared(const QByteArray& statement);
    bool addRows(const char* table, sqlite3_stmt* statement, QByteArray& rows);

    sqlite3* m_database;
    std::map<QByteArray, Statement> m_statements;
};

} // namespace rivo::sales
