#include "PublicationMessages.h"

#include "FleetMessages.h"

#include <JournalKey_p.h>
#include <QCborArray>
#include <QCborValue>

#include <algorithm>

namespace rivo::office
{

namespace
{

constexpr int formatVersion = 1;
constexpr int hashSize = 32;
constexpr int signatureSize = 64;
constexpr int mostLetters = 200;
constexpr qint64 latest = Q_INT64_C(1) << 40; // the year 36812

/// What else is signed with a key begins with other bytes.
constexpr char signedPrefix[] = "rivo publication\n";

constexpr std::array kindNames{"feed", "drivers", "limits", "paid"};

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

bool isWithin(const QCborValue& value, qint64 least, qint64 most)
{
    return value.isInteger() && value.toInteger() >= least && value.toInteger() <= most;
}

bool isVersion(const QCborValue& value, qint64 least = 1) { return isWithin(value, least, latest); }

bool isText(const QCborValue& value)
{
    return value.isString() && value.toString().size() <= mostLetters;
}

bool isBytes(const QCborValue& value, int size)
{
    return value.isByteArray() && value.toByteArray().size() == size;
}

std::optional<PublicationKind> kindOf(const QCborValue& value)
{
    return publicationKindOf(value.toString());
}

QCborArray itemsOf(const Announcement& it)
{
    return {formatVersion,
            it.operatorName,
            nameOf(it.kind),
            it.version,
            it.validFrom.toSecsSinceEpoch(),
            it.size,
            it.sha256,
            it.name};
}

std::optional<WantedPiece> wantedOf(const QCborArray& items)
{
    const auto kind = kindOf(items.at(1));
    if (!kind || !isVersion(items.at(2)) || !isWithin(items.at(3), 0, mostBytesOfPublication))
        return std::nullopt;
    return WantedPiece{*kind, items.at(2).toInteger(), items.at(3).toInteger()};
}

std::optional<PublicationState> stateOf(const QCborArray& items)
{
    const auto kind = kindOf(items.at(0));
    const bool isState = items.size() == 5 && kind && isVersion(items.at(1), 0) &&
                         isVersion(items.at(2), 0) && isVersion(items.at(3), 0) &&
                         isText(items.at(4));
    if (!isState)
        return std::nullopt;
    return PublicationState{*kind, items.at(1).toInteger(), items.at(2).toInteger(),
                            items.at(3).toInteger(), items.at(4).toString()};
}

} // namespace

QString nameOf(PublicationKind kind)
{
    return QString::fromLatin1(kindNames.at(static_cast<size_t>(kind)));
}

std::optional<PublicationKind> publicationKindOf(const QString& name)
{
    const auto* const found =
        std::find_if(allPublicationKinds.begin(), allPublicationKinds.end(),
                     [&name](PublicationKind kind) { return nameOf(kind) == name; });
    return found == allPublicationKinds.end() ? std::nullopt : std::make_optional(*found);
}

QByteArray signedPartOf(const Announcement& announcement)
{
    return signedPrefix + QCborValue(itemsOf(announcement)).toCbor();
}

bool isPublishedBy(const QByteArray& publicKey, const Announcement& announcement)
{
    return sales::isSignedBy(publicKey, signedPartOf(announcement), announcement.signature);
}

QString publicationTopic(const QString& operatorName, const QString& kind)
{
    return QStringLiteral("rivo-publications/%1/%2").arg(operatorName, kind);
}

QByteArray encode(const Announcement& announcement)
{
    QCborArray items = itemsOf(announcement);
    items.append(announcement.signature);
    return QCborValue(items).toCbor();
}

QByteArray encode(const WantedPiece& wanted)
{
    return QCborValue(QCborArray{formatVersion, nameOf(wanted.kind), wanted.version, wanted.offset})
        .toCbor();
}

QByteArray encode(const Piece& piece)
{
    return QCborValue(QCborArray{formatVersion, nameOf(piece.wanted.kind), piece.wanted.version,
                                 piece.wanted.offset, piece.bytes})
        .toCbor();
}

QByteArray encode(const QVector<PublicationState>& states)
{
    QCborArray all;
    for (const PublicationState& each : states)
        all.append(QCborArray{nameOf(each.kind), each.taken, each.inUse, each.refused,
                              each.refusal.left(mostLetters)});
    return QCborValue(QCborArray{formatVersion, all}).toCbor();
}

std::optional<Announcement> announcementOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 9);
    const auto kind = items ? kindOf(items->at(2)) : std::nullopt;
    const bool isAnnouncement = kind && isTopicName(items->at(1).toString()) &&
                                isVersion(items->at(3)) && isWithin(items->at(4), 0, latest) &&
                                isWithin(items->at(5), 1, mostBytesOfPublication) &&
                                isBytes(items->at(6), hashSize) && isText(items->at(7)) &&
                                isBytes(items->at(8), signatureSize);
    if (!isAnnouncement)
        return std::nullopt;
    return Announcement{
        items->at(1).toString(),  *kind,
        items->at(3).toInteger(), QDateTime::fromSecsSinceEpoch(items->at(4).toInteger(), Qt::UTC),
        items->at(5).toInteger(), items->at(6).toByteArray(),
        items->at(7).toString(),  items->at(8).toByteArray()};
}

std::optional<WantedPiece> wantedPieceOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 4);
    return items ? wantedOf(*items) : std::nullopt;
}

std::optional<Piece> pieceOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 5);
    const auto wanted = items ? wantedOf(*items) : std::nullopt;
    if (!wanted || !items->at(4).isByteArray() ||
        items->at(4).toByteArray().size() > mostBytesOfPiece)
        return std::nullopt;
    return Piece{*wanted, items->at(4).toByteArray()};
}

std::optional<QVector<PublicationState>> publicationStatesOf(const QByteArray& message)
{
    const auto items = itemsOf(message, 2);
    if (!items || !items->at(1).isArray() ||
        items->at(1).toArray().size() > static_cast<qsizetype>(allPublicationKinds.size()))
        return std::nullopt;
    QVector<PublicationState> states;
    const QCborArray all = items->at(1).toArray();
    for (const auto& each : all) { // of a type that becomes a QCborValue
        const auto state = stateOf(QCborValue(each).toArray());
        if (!state)
            return std::nullopt;
        states.append(*state);
    }
    return states;
}

} // namespace rivo::office
