#include "FleetMessages.h"

#include <QCborArray>
#include <QCborValue>
#include <QRegularExpression>
#include <QStringList>

#include <cmath>

namespace rivo::office
{

namespace
{

constexpr int formatVersion = 1;
constexpr int keySize = 32;
constexpr int hashSize = 32;
constexpr int signatureSize = 64;
constexpr int mostLetters = 200;

/// The items of a message of this version, from the one after the version on.
std::optional<QCborArray> itemsOf(const QByteArray& message, int count)
{
    if (message.size() > mostBytesOfMessage)
        return std::nullopt;
    QCborParserError error;
    const QCborArray items = QCborValue::fromCbor(message, &error).toArray();
    const bool isMessage = error.error == QCborError::NoError && error.offset == message.size() &&
                           items.size() == count && items.at(0) == QCborValue(formatVersion);
    return isMessage ? std::make_optional(items) : std::nullopt;
}

/// The same of a message about a journal, whose key comes first.
std::optional<QCborArray> journalItemsOf(const QByteArray& message, int count)
{
    const auto items = itemsOf(message, count);
    return items && items->at(1).toByteArray().size() == keySize ? items : std::nullopt;
}

/// A number is null where it is not known.
QCborValue valueOf(double number)
{
    return std::isfinite(number) ? QCborValue(number) : QCborValue(QCborValue::Null);
}

/// NaN for anything but a number from `least` to `most`.
double numberOf(const QCborValue& value, double least, double most)
{
    const double number = value.toDouble(qQNaN());
    return number >= least && number <= most ? number : qQNaN();
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

std::optional<DeviceReport> deviceOf(const QCborValue& value)
{
    const QCborArray items = value.toArray();
    const qint64 level = items.at(1).toInteger(-1);
    const bool isDevice = items.size() == 3 && items.at(0).isString() && level >= 0 &&
                          level <= DeviceReport::worst && items.at(2).isString();
    const DeviceReport device{items.at(0).toString(), int(level), items.at(2).toString()};
    return isDevice && device.name.size() <= mostLetters && device.text.size() <= mostLetters
               ? std::make_optional(device)
               : std::nullopt;
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

QByteArray encode(const PositionReport& report)
{
    return QCborValue(QCborArray{formatVersion, report.at.toSecsSinceEpoch(), report.latitude,
                                 report.longitude, valueOf(report.direction), valueOf(report.speed),
                                 report.trip})
        .toCbor();
}

QByteArray encode(const QVector<DeviceReport>& devices)
{
    QCborArray items;
    const QVector<DeviceReport> sent = devices.mid(0, mostDevices);
    for (const DeviceReport& each : sent)
        items.append(
            QCborArray{each.name.left(mostLetters), each.level, each.text.left(mostLetters)});
    return QCborValue(QCborArray{formatVersion, items}).toCbor();
}

std::optional<Batch> batchOf(const QByteArray& message)
{
    const auto items = journalItemsOf(message, 3);
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
    const auto items = journalItemsOf(message, 4);
    if (!items || !items->at(2).isInteger() || !items->at(3).isString())
        return std::nullopt;
    return Acknowledgement{items->at(1).toByteArray(), items->at(2).toInteger(),
                           items->at(3).toString()};
}

std::optional<PositionReport> positionOf(const QByteArray& message)
{
    constexpr qint64 latest = Q_INT64_C(1) << 40; // the year 36812
    const auto items = itemsOf(message, 7);
    if (!items || !items->at(1).isInteger() || items->at(1).toInteger() < 0 ||
        items->at(1).toInteger() > latest)
        return std::nullopt;
    const PositionReport report{QDateTime::fromSecsSinceEpoch(items->at(1).toInteger(), Qt::UTC),
                                numberOf(items->at(2), -90.0, 90.0),
                                numberOf(items->at(3), -180.0, 180.0),
                                numberOf(items->at(4), 0.0, 360.0),
                                numberOf(items->at(5), 0.0, 200.0),
                                items->at(6).toString()};
    const bool isPlace = std::isfinite(report.latitude) && std::isfinite(report.longitude) &&
                         items->at(6).isString() && report.trip.size() <= mostLetters;
    return isPlace ? std::make_optional(report) : std::nullopt;
}

std::optional<QVector<DeviceReport>> devicesOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 2);
    if (!items || !items->at(1).isArray() || items->at(1).toArray().size() > mostDevices)
        return std::nullopt;
    QVector<DeviceReport> devices;
    const QCborArray listed = items->at(1).toArray();
    for (const auto& each : listed) { // of a type that becomes a QCborValue
        const auto device = deviceOf(each);
        if (!device)
            return std::nullopt;
        devices.append(*device);
    }
    return devices;
}

} // namespace rivo::office
