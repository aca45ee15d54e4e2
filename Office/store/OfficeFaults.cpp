// The faults that the office keeps.

#include "OfficeStore.h"

#include <QCryptographicHash>

#include <array>

namespace rivo::backoffice
{

namespace
{

/// Never null.
QByteArray storable(const QByteArray& bytes) { return bytes.isNull() ? QByteArray("") : bytes; }

QByteArray digestOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

/// What stands for all faults of a kind that are too many to be kept.
Fault summaryOf(const Fault& fault)
{
    return {fault.vehicle,
            fault.vehicle > 0 ? fault.topic : QString(),
            {},
            fault.kind,
            -1,
            QStringLiteral("more than are kept with their bytes"),
            {}};
}

QDateTime timeOf(const QVariant& milliseconds)
{
    return milliseconds.isNull()
               ? QDateTime()
               : QDateTime::fromMSecsSinceEpoch(milliseconds.toLongLong(), Qt::UTC);
}

} // namespace

QString nameOf(FaultKind kind)
{
    static const std::array names{"message", "key", "journal", "start", "signature", "chain",
                                  "fork",    "gap", "content", "clock", "storage"};
    return QString::fromLatin1(names.at(static_cast<size_t>(kind)));
}

std::optional<bool> OfficeStore::countAgain(const Fault& fault)
{
    QSqlQuery* known = run("UPDATE fault SET times = times + 1, last_at = now(), closed_at = NULL"
                           " WHERE topic = ? AND public_key = ? AND kind = ? AND number = ?"
                           " AND digest = ?",
                           {storable(fault.topic), storable(fault.publicKey), nameOf(fault.kind),
                            fault.number, digestOf(fault.bytes)});
    return known != nullptr ? std::make_optional(known->numRowsAffected() > 0) : std::nullopt;
}

bool OfficeStore::keep(const Fault& given)
{
    Fault fault = given;
    const auto isCounted = countAgain(fault);
    if (!isCounted || *isCounted)
        return isCounted.has_value();
    QSqlQuery* count =
        run("SELECT COUNT(*) FROM fault WHERE COALESCE(vehicle, 0) = ?", {fault.vehicle});
    if (count == nullptr || !count->next())
        return false;
    if (count->value(0).toInt() >= mostFaultsOfVehicle)
        fault = summaryOf(fault);
    return run("INSERT INTO fault (vehicle, topic, public_key, kind, number, reason, digest, bytes)"
               " VALUES (NULLIF(CAST(? AS bigint), 0), ?, ?, ?, ?, ?, ?, ?)"
               " ON CONFLICT (topic, public_key, kind, number, digest)"
               " DO UPDATE SET times = fault.times + 1, last_at = now()",
               {fault.vehicle, storable(fault.topic), storable(fault.publicKey), nameOf(fault.kind),
                fault.number, storable(fault.reason), digestOf(fault.bytes),
                storable(fault.bytes)}) != nullptr;
}

bool OfficeStore::closeGaps(const QByteArray& publicKey, qint64 number)
{
    return run("UPDATE fault SET closed_at = now() WHERE kind = 'gap' AND closed_at IS NULL"
               " AND public_key = ? AND number <= ?",
               {publicKey, number}) != nullptr;
}

std::optional<QVector<KeptFault>> OfficeStore::faults(bool all)
{
    QSqlQuery* found = run("SELECT topic, kind, number, reason, times,"
                           " CAST(extract(epoch FROM first_at) * 1000 AS bigint),"
                           " CAST(extract(epoch FROM last_at) * 1000 AS bigint),"
                           " CAST(extract(epoch FROM closed_at) * 1000 AS bigint)"
                           " FROM fault WHERE closed_at IS NULL OR CAST(? AS boolean) ORDER BY id",
                           {all});
    if (found == nullptr)
        return std::nullopt;
    QVector<KeptFault> kept;
    while (found->next())
        kept.append({found->value(0).toString(), found->value(1).toString(),
                     found->value(2).toLongLong(), found->value(3).toString(),
                     found->value(4).toLongLong(), timeOf(found->value(5)), timeOf(found->value(6)),
                     timeOf(found->value(7))});
    return kept;
}

} // namespace rivo::backoffice
