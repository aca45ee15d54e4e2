#include "Publisher.h"

#include "Content.h"

#include <FleetMessages.h>
#include <JournalKey_p.h>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <map>

namespace rivo::backoffice
{

namespace
{

using office::Announcement;
using office::Topics;

std::optional<Topics> vehicleOf(const QString& topic)
{
    const QStringList parts = topic.split(QLatin1Char('/'));
    if (parts.size() != 4 || parts.at(0) != QLatin1String("rivo") ||
        !office::isTopicName(parts.at(1)) || !office::isTopicName(parts.at(2)))
        return std::nullopt;
    return Topics{parts.at(1), parts.at(2)};
}

/// What comes from vehicles is on one line, and has no codes for terminals.
QString printable(QString text)
{
    for (QChar& each : text) {
        if (!each.isPrint() && !each.isSurrogate())
            each = QLatin1Char('?');
    }
    return text;
}

/// The content of a file; nothing if it is empty, too large or no file.
std::optional<QByteArray> contentOf(const QString& name)
{
    QFile file(name);
    if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly) || file.size() == 0 ||
        file.size() > office::mostBytesOfPublication)
        return std::nullopt;
    return file.read(office::mostBytesOfPublication);
}

QString lineOf(const ListedPublication& listed)
{
    const Announcement& it = listed.announcement;
    return QStringLiteral("%1 %2 %3 from %4, %5 bytes, %6: %7 of %8 vehicles have it, %9 use it\n")
        .arg(it.operatorName, nameOf(it.kind), QString::number(it.version),
             it.validFrom.toString(Qt::ISODate), QString::number(it.size), printable(it.name),
             QString::number(listed.taken), QString::number(listed.vehicles),
             QString::number(listed.inUse));
}

} // namespace

QStringList publish(OfficeStore& store, const ToPublish& wanted, Announcement& published)
{
    const auto key = sales::JournalKey::read(wanted.keyFile);
    if (!key)
        return {QStringLiteral("%1: no private Ed25519 key").arg(wanted.keyFile)};
    const auto content = contentOf(wanted.file);
    if (!content)
        return {QStringLiteral("%1: no file of 1 byte to %2 MiB")
                    .arg(wanted.file)
                    .arg(office::mostBytesOfPublication / 1024 / 1024)};
    QStringList problems = problemsOf(wanted.kind, wanted.file);
    if (!problems.isEmpty())
        return problems;
    published = {wanted.operatorName,
                 wanted.kind,
                 wanted.version,
                 wanted.validFrom,
                 content->size(),
                 QCryptographicHash::hash(*content, QCryptographicHash::Sha256),
                 QFileInfo(wanted.file).fileName().right(200)};
    bool isNewer = false;
    const auto sign = [&key](Announcement& it) { it.signature = key->sign(signedPartOf(it)); };
    if (!PublicationRows(store).add(published, *content, sign, isNewer))
        return {store.database().problem()};
    if (!isNewer)
        return {QStringLiteral("version %1 is not newer than the last one").arg(wanted.version)};
    return {};
}

bool Publisher::isFor(const QString& topic)
{
    const auto topics = vehicleOf(topic);
    return topics && (topic == topics->wanted() || topic == topics->publications());
}

bool Publisher::take(const QString& topic, const QByteArray& message, std::optional<Reply>& reply)
{
    reply.reset();
    const auto topics = vehicleOf(topic);
    if (!topics)
        return true;
    if (topic == topics->wanted()) {
        const auto wanted = office::wantedPieceOf(message);
        if (!wanted)
            return true;
        const auto bytes = m_rows.piece(topics->operatorName, *wanted);
        if (bytes)
            reply = Reply{topics->piece(), office::encode(office::Piece{*wanted, *bytes})};
        return bytes.has_value();
    }
    const auto states = office::publicationStatesOf(message);
    return !states || m_store.inTransaction([&] {
        const auto vehicle = m_store.lockVehicle(topics->operatorName, topics->vehicle);
        return vehicle && m_rows.keep(*vehicle, *states);
    });
}

QByteArray textOf(const QVector<ListedPublication>& publications,
                  const QVector<ListedState>& states)
{
    QString text;
    std::map<std::pair<QString, QString>, qint64> newest;
    for (const ListedPublication& each : publications) {
        text += lineOf(each);
        newest[{each.announcement.operatorName, nameOf(each.announcement.kind)}] =
            each.announcement.version;
    }
    for (const ListedState& each : states) {
        const office::PublicationState& state = each.state;
        const qint64 last = newest[{each.operatorName, nameOf(state.kind)}];
        if (state.inUse >= last && state.refusal.isEmpty())
            continue;
        text += QStringLiteral("%1/%2 %3: has %4, uses %5")
                    .arg(each.operatorName, each.vehicle, nameOf(state.kind))
                    .arg(state.taken)
                    .arg(state.inUse);
        if (!state.refusal.isEmpty())
            text +=
                QStringLiteral(", refuses %1: %2").arg(state.refused).arg(printable(state.refusal));
        text += QLatin1Char('\n');
    }
    return text.toUtf8();
}

} // namespace rivo::backoffice
