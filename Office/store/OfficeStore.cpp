#include "OfficeStore.h"

#include "Migrations_p.h"
#include "RecordDetails_p.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace rivo::backoffice
{

namespace
{

QString hexOf(const QByteArray& bytes) { return QString::fromLatin1(bytes.toHex()); }

QVariant jsonText(const QJsonArray& rows)
{
    return QString::fromUtf8(QJsonDocument(rows).toJson(QJsonDocument::Compact));
}

/// What cannot be understood has no values but its bytes.
QJsonObject rowOf(const sales::SealedRecord& record, const std::optional<RecordDetails>& details)
{
    QJsonObject row{{QStringLiteral("number"), record.number},
                    {QStringLiteral("content"), hexOf(record.content)},
                    {QStringLiteral("hash"), hexOf(record.hash)},
                    {QStringLiteral("signature"), hexOf(record.signature)}};
    if (details) {
        row.insert(QStringLiteral("kind"), details->kind);
        row.insert(QStringLiteral("shift"), details->shift);
        row.insert(QStringLiteral("driver"), details->driver);
        row.insert(QStringLiteral("at"), details->at.toUTC().toString(Qt::ISODateWithMs));
        row.insert(QStringLiteral("day"), details->day.toString(Qt::ISODate));
    }
    return row;
}

constexpr char insertRecords[] =
    "INSERT INTO record (journal, number, kind, shift, driver, at, day, content, hash, signature)"
    " SELECT ?, number, kind, shift, driver, at, day, decode(content, 'hex'), decode(hash, 'hex'),"
    " decode(signature, 'hex') FROM jsonb_to_recordset(CAST(? AS jsonb)) AS given(number bigint,"
    " kind integer, shift bigint, driver bigint, at timestamptz, day date, content text,"
    " hash text, signature text)";

/// Milliseconds since 1970, so that no text of a time has to be read.
constexpr char selectJournal[] =
    "SELECT id, vehicle, last_number, last_hash, last_signature,"
    " CAST(extract(epoch FROM last_at) * 1000 AS bigint) FROM journal WHERE public_key = ?";

QDateTime timeOf(const QVariant& milliseconds)
{
    return milliseconds.isNull()
               ? QDateTime()
               : QDateTime::fromMSecsSinceEpoch(milliseconds.toLongLong(), Qt::UTC);
}

/// Null unless it is valid.
QVariant textOf(const QDateTime& time)
{
    return time.isValid() ? QVariant(time.toUTC().toString(Qt::ISODateWithMs))
                          : QVariant(QVariant::String);
}

} // namespace

bool isStart(const sales::SealedRecord& record, const QByteArray& publicKey)
{
    return startOf(record, publicKey).has_value();
}

OfficeStore::OfficeStore(const DatabaseSettings& settings) : m_database(settings) {}

bool OfficeStore::open()
{
    QString problem;
    if (failed(m_database.open()))
        return false;
    if (migrate(m_database, problem))
        return true;
    m_problem = problem;
    return false;
}

bool OfficeStore::openToRead() { return !failed(m_database.openToRead()); }

bool OfficeStore::failed(bool isDone)
{
    if (!isDone)
        m_problem = m_database.problem();
    return !isDone;
}

QSqlQuery* OfficeStore::run(const char* statement, const QVariantList& values)
{
    QSqlQuery* query = m_database.run(QString::fromLatin1(statement), values);
    failed(query != nullptr);
    return query;
}

bool OfficeStore::inTransaction(const std::function<bool()>& work)
{
    if (failed(m_database.begin()))
        return false;
    if (work() && !failed(m_database.commit()))
        return true;
    m_database.rollBack();
    return false;
}

std::optional<qint64> OfficeStore::lockVehicle(const QString& operatorName, const QString& name)
{
    constexpr char select[] =
        "SELECT id FROM vehicle WHERE operator = ? AND name = ? FOR NO KEY UPDATE";
    QSqlQuery* found = run(select, {operatorName, name});
    if (found != nullptr && found->next())
        return found->value(0).toLongLong();
    if (found == nullptr ||
        run("INSERT INTO vehicle (operator, name) VALUES (?, ?) ON CONFLICT DO NOTHING",
            {operatorName, name}) == nullptr)
        return std::nullopt;
    found = run(select, {operatorName, name});
    return found != nullptr && found->next() ? std::make_optional(found->value(0).toLongLong())
                                             : std::nullopt;
}

bool OfficeStore::findJournal(const QByteArray& publicKey, std::optional<StoredJournal>& journal)
{
    QSqlQuery* found = run(selectJournal, {publicKey});
    journal.reset();
    if (found != nullptr && found->next())
        journal = StoredJournal{found->value(0).toLongLong(),
                                found->value(1).toLongLong(),
                                {found->value(2).toLongLong(),
                                 {},
                                 found->value(3).toByteArray(),
                                 found->value(4).toByteArray()},
                                timeOf(found->value(5))};
    return found != nullptr;
}

bool OfficeStore::addJournal(qint64 vehicle, const QByteArray& publicKey,
                             const sales::SealedRecord& start,
                             std::optional<StoredJournal>& journal)
{
    const auto said = startOf(start, publicKey);
    Q_ASSERT(said);
    if (run("INSERT INTO journal (vehicle, public_key, base, currency, decimals, last_number,"
            " last_hash, last_signature) VALUES (?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT DO NOTHING",
            {vehicle, publicKey, start.number, said->currency, said->decimals, start.number,
             start.hash, start.signature}) == nullptr ||
        !findJournal(publicKey, journal))
        return false;
    if (journal && journal->vehicle != vehicle)
        journal.reset();
    return !journal || run(insertRecords, {journal->id, jsonText({rowOf(start, std::nullopt)})});
}

std::optional<int> OfficeStore::journalCount(qint64 vehicle)
{
    QSqlQuery* found = run("SELECT COUNT(*) FROM journal WHERE vehicle = ?", {vehicle});
    return found != nullptr && found->next() ? std::make_optional(found->value(0).toInt())
                                             : std::nullopt;
}

bool OfficeStore::append(StoredJournal& journal, const QVector<sales::SealedRecord>& records,
                         Appended& result)
{
    QJsonArray rows;
    std::map<QString, QJsonArray> detailRows;
    for (const sales::SealedRecord& record : records) {
        const auto details = detailsOf(record);
        rows.append(rowOf(record, details));
        result.records.append({record.number, details.has_value(),
                               details ? details->at : QDateTime(), details && details->isRemark});
        if (!details)
            continue;
        for (const auto& [table, more] : details->rows) {
            for (const QJsonValue& row : more)
                detailRows[table].append(row);
        }
        journal.lastAt = details->at;
    }
    if (run(insertRecords, {journal.id, jsonText(rows)}) == nullptr)
        return false;
    for (const DetailTable& table : detailTables()) {
        const QJsonArray& given = detailRows[table.name];
        if (given.isEmpty())
            continue;
        QSqlQuery* added = m_database.run(table.insert, {journal.id, jsonText(given)});
        if (failed(added != nullptr))
            return false;
        result.isRepeated = result.isRepeated || added->numRowsAffected() != given.size();
    }
    journal.last = records.last();
    return moveOn(journal);
}

bool OfficeStore::moveOn(const StoredJournal& journal)
{
    return run("UPDATE journal SET last_number = ?, last_hash = ?, last_signature = ?,"
               " last_at = CAST(? AS timestamptz) WHERE id = ?",
               {journal.last.number, journal.last.hash, journal.last.signature,
                textOf(journal.lastAt), journal.id}) != nullptr;
}

bool OfficeStore::findHash(qint64 journal, qint64 number, QByteArray& hash)
{
    QSqlQuery* found =
        run("SELECT hash FROM record WHERE journal = ? AND number = ?", {journal, number});
    hash = found != nullptr && found->next() ? found->value(0).toByteArray() : QByteArray();
    return found != nullptr;
}

} // namespace rivo::backoffice
