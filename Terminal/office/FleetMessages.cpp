#include "FleetMessages.h"

#include <QCborArray>
#include <QCborValue>
#include <QRegularExpression>
#include <QStringList>

namespace rivo::office
{

namespace
{

constexpr int formatVersion = 1;
constexpr int keySize = 32;
constexpr int hashSize = 32;
constexpr int signatureSize = 64;

/// The items of a message of this version, from the one after the version on.
std::optional<QCborArray> itemsOf(const QByteArray& message, int count)
{
    if (message.size() > mostBytesOfMessage)
        return std::nullopt;
    QCborParserError error;
    const QCborArray items = QCborValue::fromCbor(message, &error).toArray();
    const bool isMessage = error.error == QCborError::NoError && error.offset == message.size() &&
                           items.size() == count && items.at(0) == QCborValue(formatVersion) &&
                           items.at(1).toByteArray().size() == keySize;
    return isMessage ? std::make_optional(items) : std::nullopt;
}

std::optional<sales::SealedRecord> recordOf(const QCborValue& value)
{
    const QCborArray items = value.toArray();
    const sales::SealedRecord record{items.at(0).toInteger(-1), items.at(1).toByteArray(),
                                     items.at(2).toByteArray(), items.at(3).toByteArray()};
    const bool isRecord = items.size() == 4 && record.number >= 0 && !record.content.isEmpty() &&
                          record.hash.size() == hashSize &&
                          record.signature.size() == signatureSize;
    return isRecord ? std::make_optional(record) : std::nullopt;
}

} // namespace

QString Topics::of(const char* what) const
{
    return QStringLiteral("rivo/%1/%2/%3").arg(operatorName, vehicle, QLatin1String(what));
}

QString Topics::vehicleOf(const QString& topic)
{
    const QStringList parts = topic.split(QLatin1Char('/'));
    const bool isTopic = parts.size() == 4 && parts.at(0) == QLatin1String("rivo");
    return isTopic && isTopicName(parts.at(2)) ? parts.at(2) : QString();
}

bool isTopicName(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9._-]{1,64}\\z"));
    return form.match(name).hasMatch();
}

QByteArray encode(const Batch& batch)
{
    QCborArray records;
    for (const sales::SealedRecord& each : batch.records)
        records.append(QCborArray{each.number, each.content, each.hash, each.signature});
    return QCborValue(QCborArray{formatVersion, batch.publicKey, records}).toCbor();
}

QByteArray encode(const Acknowledgement& answer)
{
    return QCborValue(QCborArray{formatVersion, answer.publicKey, answer.number, answer.refusal})
        .toCbor();
}

std::optional<Batch> batchOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 3);
    if (!items || !items->at(2).isArray() || items->at(2).toArray().size() > mostRecordsOfBatch)
        return std::nullopt;
    Batch batch{items->at(1).toByteArray(), {}};
    const QCborArray records = items->at(2).toArray();
    for (const auto& each : records) { // of a type that becomes a QCborValue
        const auto record = recordOf(each);
        if (!record ||
            (!batch.records.isEmpty() && record->number != batch.records.last().number + 1))
            return std::nullopt;
        batch.records.append(*record);
    }
    return batch;
}

std::optional<Acknowledgement> acknowledgementOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 4);
    if (!items || !items->at(2).isInteger() || !items->at(3).isString())
        return std::nullopt;
    return Acknowledgement{items->at(1).toByteArray(), items->at(2).toInteger(),
                           items->at(3).toString()};
}

} // namespace rivo::office
