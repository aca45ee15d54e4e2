#pragma once

#include "PublicationMessages.h"

#include <QMap>

#include <functional>

namespace rivo::office
{

/// A publication that is in the vehicle as a whole.
struct StoredPublication
{
    Announcement announcement;
    QString file; ///< its content
};

/// Why the content of a file cannot be used as a publication of a kind; empty if it can.
using PublicationCheck = std::function<QString(PublicationKind, const QString& file)>;

/// The publications of a vehicle, in a folder for its user alone.
///
/// What arrives is kept in a file beside the publications, so that it goes on after a restart. A
/// publication is there when its content has the size and the hash that the publisher signed, and
/// both files have their names: after a power cut it is there as a whole or not at all. What is
/// refused for its content stays refused.
class PublicationStore
{
public:
    /// Reads the folder, which is made if it is missing. `publicKey`: the publisher's, 32 bytes;
    /// an empty one signs nothing.
    PublicationStore(const QString& folder, const QString& operatorName,
                     const QByteArray& publicKey);

    /// What an announcement that arrived means.
    struct Judgement
    {
        std::optional<Announcement> wanted; ///< its content is wanted
        qint64 version = 0;                 ///< that is refused; 0 = not known
        QString refusal;                    ///< empty if it is wanted, or known already
    };
    Judgement judge(PublicationKind kind, const QByteArray& message) const;

    /// The bytes that arrived of a publication that is wanted. What arrived of other versions of
    /// its kind is removed.
    qint64 begin(const Announcement& wanted);

    /// Adds bytes to those that arrived. The reason if that fails: nothing was added then.
    QString append(const Announcement& wanted, const QByteArray& bytes);

    /// The file of what arrived.
    QString partOf(const Announcement& wanted) const;

    /// Why a file is not the content of a publication; empty if it is. For any thread.
    static QString faultOf(const Announcement& wanted, const QString& file,
                           const PublicationCheck& check);

    /// Makes what arrived a publication. The reason if that fails: what arrived is kept then.
    QString accept(const Announcement& wanted);

    void discard(const Announcement& wanted); ///< removes what arrived

    /// Never takes this publication again.
    void refuse(const Announcement& publication, const QString& reason);

    /// The newest one that is valid at `now`, and was not refused.
    std::optional<StoredPublication> due(PublicationKind kind, const QDateTime& now) const;

    /// Those that were not refused, the oldest first.
    QVector<StoredPublication> publications(PublicationKind kind) const;

    /// What is refused of a kind, of its newest version; the version is 0 if nothing is.
    PublicationState refusal(PublicationKind kind) const;

    /// Before the program starts with a publication: false if it must not. After three starts that
    /// did not come to endStart(), it is refused; one that did once may always be used.
    bool beginStart(const Announcement& publication);
    void endStart(const Announcement& publication);

    /// Removes what is older than the version before `inUse`, and what is more than a few.
    void prune(PublicationKind kind, qint64 inUse);

private:
    struct Refused
    {
        QByteArray sha256;
        QString reason;
    };
    struct OfKind
    {
        QMap<qint64, StoredPublication> stored; ///< by their versions
        QMap<qint64, Refused> refused;
    };

    void read(PublicationKind kind);
    std::optional<StoredPublication> stored(PublicationKind kind, qint64 version) const;
    QString path(const Announcement& publication, const QString& ending) const;
    void remove(PublicationKind kind, const std::function<bool(qint64 version)>& isRemoved);

    const QString m_folder;
    const QString m_operator;
    const QByteArray m_publicKey;
    QMap<PublicationKind, OfKind> m_kinds;
};

} // namespace rivo::office
