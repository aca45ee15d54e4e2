#pragma once

#include <OfficeStore.h>
#include <PublicationMessages.h>

namespace rivo::backoffice
{

/// A publication that is listed, with how far the vehicles of its operator have it.
struct ListedPublication
{
    office::Announcement announcement; ///< without hash and signature
    qint64 vehicles = 0;               ///< that have reported what they have
    qint64 taken = 0;                  ///< of them: have it, or a newer one
    qint64 inUse = 0;                  ///< of them: use it, or a newer one
};

/// What a vehicle reported last about a kind.
struct ListedState
{
    QString operatorName;
    QString vehicle;
    office::PublicationState state;
    QDateTime at;
};

/// The publications in the office's database. All functions return false or nothing, with the
/// store's problem(), if the database fails.
class PublicationRows
{
public:
    /// Of a store that is open, and lives longer.
    explicit PublicationRows(OfficeStore& store) : m_store(store) {}

    /// Stores a publication, in a transaction of its own, with the next version if it has none.
    /// `sign` is called with the version, and makes the signature. `isNewer` is false, and nothing
    /// is stored, if the version is not newer than the last one of its kind.
    bool add(office::Announcement& announcement, const QByteArray& content,
             const std::function<void(office::Announcement&)>& sign, bool& isNewer);

    /// An encoded announcement and where it is published.
    struct ToAnnounce
    {
        QString topic;
        QByteArray message;
    };

    /// The newest of each operator and kind, if it was stored after the row `after`, which is moved
    /// on.
    std::optional<QVector<ToAnnounce>> newest(qint64& after);

    /// The bytes of a publication from the wanted one on; none if there is no such publication.
    std::optional<QByteArray> piece(const QString& operatorName, const office::WantedPiece& wanted);

    /// Keeps what a vehicle has; in a transaction.
    bool keep(qint64 vehicle, const QVector<office::PublicationState>& states);

    std::optional<QVector<ListedPublication>> publications();
    std::optional<QVector<ListedState>> states();

private:
    QSqlQuery* run(const char* statement, const QVariantList& values = {});

    OfficeStore& m_store;
};

} // namespace rivo::backoffice
