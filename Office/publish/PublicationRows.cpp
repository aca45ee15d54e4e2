#include "PublicationRows.h"

namespace rivo::backoffice
{

namespace
{

using office::Announcement;
using office::PublicationKind;
using office::PublicationState;

QDateTime timeOf(const QVariant& seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds.toLongLong(), Qt::UTC);
}

} // namespace

QSqlQuery* PublicationRows::run(const char* statement, const QVariantList& values)
{
    return m_store.database().run(QString::fromLatin1(statement), values);
}

bool PublicationRows::add(Announcement& announcement, const QByteArray& content,
                          const std::function<void(Announcement&)>& sign, bool& isNewer)
{
    return m_store.inTransaction([&] {
        if (!m_store.database().runAll(
                {QStringLiteral("LOCK TABLE publication IN SHARE ROW EXCLUSIVE MODE")}))
            return false;
        QSqlQuery* last = run("SELECT COALESCE(MAX(version), 0) FROM publication"
                              " WHERE operator = ? AND kind = ?",
                              {announcement.operatorName, nameOf(announcement.kind)});
        if (last == nullptr || !last->next())
            return false;
        const qint64 version = last->value(0).toLongLong();
        isNewer = announcement.version == 0 || announcement.version > version;
        if (!isNewer)
            return true;
        if (announcement.version == 0)
            announcement.version = version + 1;
        sign(announcement);
        return run("INSERT INTO publication (operator, kind, version, valid_from, name, size,"
                   " announcement, content) VALUES (?, ?, ?, to_timestamp(?), ?, ?, ?, ?)",
                   {announcement.operatorName, nameOf(announcement.kind), announcement.version,
                    announcement.validFrom.toSecsSinceEpoch(), storable(announcement.name),
                    announcement.size, encode(announcement), content}) != nullptr;
    });
}

std::optional<QVector<PublicationRows::ToAnnounce>> PublicationRows::newest(qint64& after)
{
    QSqlQuery* found =
        run("SELECT id, operator, kind, announcement FROM publication AS one WHERE id > ?"
            " AND version = (SELECT MAX(version) FROM publication AS other"
            " WHERE other.operator = one.operator AND other.kind = one.kind) ORDER BY id",
            {after});
    if (found == nullptr)
        return std::nullopt;
    QVector<ToAnnounce> all;
    while (found->next()) {
        after = found->value(0).toLongLong();
        all.append(
            {office::publicationTopic(found->value(1).toString(), found->value(2).toString()),
             found->value(3).toByteArray()});
    }
    return all;
}

std::optional<QByteArray> PublicationRows::piece(const QString& operatorName,
                                                 const office::WantedPiece& wanted)
{
    QSqlQuery* found = run("SELECT substring(content FROM CAST(? AS integer)"
                           " FOR CAST(? AS integer)) FROM publication"
                           " WHERE operator = ? AND kind = ? AND version = ?",
                           {wanted.offset + 1, office::mostBytesOfPiece, operatorName,
                            nameOf(wanted.kind), wanted.version});
    if (found == nullptr)
        return std::nullopt;
    return found->next() ? found->value(0).toByteArray() : QByteArray();
}

bool PublicationRows::keep(qint64 vehicle, const QVector<PublicationState>& states)
{
    for (const PublicationState& state : states) {
        if (run("INSERT INTO publication_state VALUES (?, ?, ?, ?, ?, ?, now())"
                " ON CONFLICT (vehicle, kind) DO UPDATE SET taken = excluded.taken,"
                " in_use = excluded.in_use, refused = excluded.refused,"
                " refusal = excluded.refusal, at = excluded.at",
                {vehicle, nameOf(state.kind), state.taken, state.inUse, state.refused,
                 storable(state.refusal)}) == nullptr)
            return false;
    }
    return true;
}

std::optional<QVector<ListedPublication>> PublicationRows::publications()
{
    QSqlQuery* found =
        run("SELECT one.operator, one.kind, version, CAST(extract(epoch FROM valid_from) AS"
            " bigint), size, one.name, COUNT(state.vehicle),"
            " COUNT(*) FILTER (WHERE state.taken >= version),"
            " COUNT(*) FILTER (WHERE state.in_use >= version) FROM publication AS one"
            " LEFT JOIN vehicle ON vehicle.operator = one.operator"
            " LEFT JOIN publication_state AS state ON state.vehicle = vehicle.id"
            " AND state.kind = one.kind GROUP BY one.id ORDER BY one.operator, one.kind, version");
    if (found == nullptr)
        return std::nullopt;
    QVector<ListedPublication> all;
    while (found->next()) {
        ListedPublication listed;
        listed.announcement = {
            found->value(0).toString(),
            office::publicationKindOf(found->value(1).toString()).value_or(PublicationKind::Feed),
            found->value(2).toLongLong(),
            timeOf(found->value(3)),
            found->value(4).toLongLong(),
            {},
            found->value(5).toString()};
        listed.vehicles = found->value(6).toLongLong();
        listed.taken = found->value(7).toLongLong();
        listed.inUse = found->value(8).toLongLong();
        all.append(listed);
    }
    return all;
}

std::optional<QVector<ListedState>> PublicationRows::states()
{
    QSqlQuery* found = run(
        "SELECT operator, name, kind, taken, in_use, refused, refusal,"
        " CAST(extract(epoch FROM at) AS bigint) FROM publication_state"
        " JOIN vehicle ON vehicle.id = publication_state.vehicle ORDER BY operator, name, kind");
    if (found == nullptr)
        return std::nullopt;
    QVector<ListedState> all;
    while (found->next())
        all.append({found->value(0).toString(), found->value(1).toString(),
                    PublicationState{office::publicationKindOf(found->value(2).toString())
                                         .value_or(PublicationKind::Feed),
                                     found->value(3).toLongLong(), found->value(4).toLongLong(),
                                     found->value(5).toLongLong(), found->value(6).toString()},
                    timeOf(found->value(7))});
    return all;
}

} // namespace rivo::backoffice
