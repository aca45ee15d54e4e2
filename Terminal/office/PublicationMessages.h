#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

#include <array>
#include <optional>

// What goes down from the office to the vehicles: docs/fleet.md has the format.

namespace rivo::office
{

/// What a publication is for.
enum class PublicationKind {
    Feed,    ///< what is sold, and the network
    Drivers, ///< who may sign in
    Limits,  ///< how much cash drivers may carry
    Paid     ///< shifts whose cash was handed over in the office
};

inline constexpr std::array allPublicationKinds{PublicationKind::Feed, PublicationKind::Drivers,
                                                PublicationKind::Limits, PublicationKind::Paid};

/// "feed" and so on, in topics, messages and names of files.
QString nameOf(PublicationKind kind);
std::optional<PublicationKind> publicationKindOf(const QString& name);

constexpr qint64 mostBytesOfPublication = 64 * 1024 * 1024;
constexpr int mostBytesOfPiece = 256 * 1024;

/// A document for all vehicles of an operator, without its content.
struct Announcement
{
    QString operatorName;
    PublicationKind kind = PublicationKind::Feed;
    qint64 version = 0;        ///< from 1 on; grows with each publication of a kind
    QDateTime validFrom;       ///< whole seconds
    qint64 size = 0;           ///< of the content, 1 to mostBytesOfPublication bytes
    QByteArray sha256;         ///< of the content
    QString name;              ///< of the file, at most 200 letters; the ending says how it is read
    QByteArray signature = {}; ///< with the publisher's key, 64 bytes
};

/// The bytes that the publisher signs: all but the signature.
QByteArray signedPartOf(const Announcement& announcement);

/// Whether the owner of a public key of 32 bytes signed it.
bool isPublishedBy(const QByteArray& publicKey, const Announcement& announcement);

/// Where the announcements of an operator are; `kind` "+" for all. No topic of a vehicle is like
/// that.
QString publicationTopic(const QString& operatorName, const QString& kind);

/// What a vehicle asks for: the content of a publication from a byte on.
struct WantedPiece
{
    PublicationKind kind = PublicationKind::Feed;
    qint64 version = 0;
    qint64 offset = 0;
};

/// The office's answer; without bytes if it has no such publication.
struct Piece
{
    WantedPiece wanted;
    QByteArray bytes; ///< at most mostBytesOfPiece
};

/// What a vehicle has of a kind.
struct PublicationState
{
    PublicationKind kind = PublicationKind::Feed;
    qint64 taken = 0;   ///< the newest version that is in the vehicle as a whole; 0 = none
    qint64 inUse = 0;   ///< the version that counts; 0 = none
    qint64 refused = 0; ///< the version that was refused last; 0 = none, or it is not known
    QString refusal;    ///< why; empty if none is refused
};

QByteArray encode(const Announcement& announcement);
QByteArray encode(const WantedPiece& wanted);
QByteArray encode(const Piece& piece);
QByteArray encode(const QVector<PublicationState>& states);

// Nothing for anything but a message of this version, and for one that is too large.
std::optional<Announcement> announcementOf(const QByteArray& message);
std::optional<WantedPiece> wantedPieceOf(const QByteArray& message);
std::optional<Piece> pieceOf(const QByteArray& message);
std::optional<QVector<PublicationState>> publicationStatesOf(const QByteArray& message);

} // namespace rivo::office
