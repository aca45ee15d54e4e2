#pragma once

#include <SealedRecord.h>

#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QString>
#include <QVector>

#include <map>
#include <optional>

namespace rivo::backoffice
{

/// The start of a journal: what its first record says of it.
struct JournalStart
{
    qint64 base = 0;
    QString currency;
    int decimals = 0;
};

/// Nothing if it is not the start of the journal of this key.
std::optional<JournalStart> startOf(const sales::SealedRecord& record, const QByteArray& publicKey);

/// What reports need of a record.
struct RecordDetails
{
    int kind = 0;
    qint64 shift = 0;
    qint64 driver = 0;
    QDateTime at;
    QDate day;             ///< of the vehicle's own time
    bool isRemark = false; ///< about the clock
    std::map<QString, QJsonArray> rows;
};

/// Nothing if its content is not understood, or is that of a record with another number.
std::optional<RecordDetails> detailsOf(const sales::SealedRecord& record);

/// A table of the office that has rows of records.
struct DetailTable
{
    QString name;
    /// Adds rows; its values are the journal's number in the database and the rows as JSON. Rows
    /// with a key that is there already are left out.
    QString insert;
};

/// In the order in which rows are added.
const QVector<DetailTable>& detailTables();

} // namespace rivo::backoffice
