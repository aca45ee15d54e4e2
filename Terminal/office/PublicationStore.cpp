#include "PublicationStore.h"

#include <JournalKey_p.h>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivo::office
{

namespace
{

constexpr int mostStarts = 3;
constexpr int mostKept = 4; ///< publications of a kind
constexpr qint64 mostOfNote = 4096;
constexpr char proven[] = "proven";

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(rivo::office::PublicationStore)
};

/// The last error of the system.
QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

QString notStored(const QString& reason) { return Texts::tr("cannot be stored: %1").arg(reason); }

/// GTFS is in an archive; all else is JSON.
QString endingOf(const Announcement& publication)
{
    return publication.name.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive)
               ? QStringLiteral(".zip")
               : QStringLiteral(".json");
}

QString prefixOf(PublicationKind kind, qint64 version)
{
    return QStringLiteral("%1-%2").arg(nameOf(kind)).arg(version);
}

/// A file that is closed when it goes.
class OpenFile
{
public:
    OpenFile(const QString& name, int flags)
        : m_file(::open(QFile::encodeName(name).constData(),
                        flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR))
    {
    }
    ~OpenFile()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int get() const { return m_file; }

    /// -1 for what is no regular file.
    qint64 size() const
    {
        struct stat info = {};
        return m_file >= 0 && fstat(m_file, &info) == 0 && S_ISREG(info.st_mode)
                   ? static_cast<qint64>(info.st_size)
                   : -1;
    }

private:
    int m_file;
};

bool writeAll(int file, const QByteArray& bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t written =
            ::write(file, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0)
            return false;
        done += written;
    }
    return fsync(file) == 0;
}

bool storeFolder(const QString& folder)
{
    const OpenFile opened(folder, O_RDONLY | O_DIRECTORY);
    return opened.get() >= 0 && fsync(opened.get()) == 0;
}

qint64 sizeOf(const QString& file) { return OpenFile(file, O_RDONLY).size(); }

bool hasContent(const Announcement& announcement, const QString& name)
{
    if (sizeOf(name) != announcement.size)
        return false;
    QFile file(name);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) &&
           hash.result() == announcement.sha256;
}

QByteArray noteIn(const QString& file)
{
    return sales::ownContent(file, mostOfNote).value_or(QByteArray());
}

} // namespace

PublicationStore::PublicationStore(const QString& folder, const QString& operatorName,
                                   const QByteArray& publicKey)
    : m_folder(folder), m_operator(operatorName), m_publicKey(publicKey)
{
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    for (const PublicationKind kind : allPublicationKinds)
        read(kind);
}

void PublicationStore::read(PublicationKind kind)
{
    static const QRegularExpression form(
        QStringLiteral("\\A[a-z]+-([1-9][0-9]{0,14})\\.(announcement|refused)\\z"));
    const QStringList names =
        QDir(m_folder).entryList({nameOf(kind) + QLatin1String("-*")}, QDir::Files);
    OfKind& found = m_kinds[kind];
    for (const QString& name : names) {
        const QRegularExpressionMatch match = form.match(name);
        const qint64 version = match.captured(1).toLongLong();
        if (match.captured(2) == QLatin1String("announcement")) {
            if (const auto publication = stored(kind, version))
                found.stored.insert(version, *publication);
        } else if (match.hasMatch()) {
            const QByteArray note = noteIn(m_folder + QLatin1Char('/') + name);
            const int end = note.indexOf('\n');
            found.refused.insert(version, {QByteArray::fromHex(note.left(end)),
                                           QString::fromUtf8(note.mid(end + 1))});
        }
    }
    for (auto refused = found.refused.cbegin(); refused != found.refused.cend(); ++refused)
        found.stored.remove(refused.key());
}

std::optional<StoredPublication> PublicationStore::stored(PublicationKind kind,
                                                          qint64 version) const
{
    const QString name = m_folder + QLatin1Char('/') + prefixOf(kind, version);
    const auto announcement = announcementOf(noteIn(name + QLatin1String(".announcement")));
    if (!announcement || announcement->kind != kind || announcement->version != version ||
        announcement->operatorName != m_operator || !isPublishedBy(m_publicKey, *announcement))
        return std::nullopt;
    const StoredPublication found{*announcement, name + endingOf(*announcement)};
    return hasContent(*announcement, found.file) ? std::make_optional(found) : std::nullopt;
}

QString PublicationStore::path(const Announcement& publication, const QString& ending) const
{
    return QStringLiteral("%1/%2%3").arg(m_folder, prefixOf(publication.kind, publication.version),
                                         ending);
}

QString PublicationStore::partOf(const Announcement& wanted) const
{
    return path(wanted, QStringLiteral("-%1.part%2")
                            .arg(QString::fromLatin1(wanted.sha256.toHex()), endingOf(wanted)));
}

PublicationStore::Judgement PublicationStore::judge(PublicationKind kind,
                                                    const QByteArray& message) const
{
    const auto announcement = announcementOf(message);
    if (!announcement || announcement->kind != kind || announcement->operatorName != m_operator)
        return {std::nullopt, 0, Texts::tr("is not understood")};
    const qint64 version = announcement->version;
    if (!isPublishedBy(m_publicKey, *announcement))
        return {std::nullopt, version, Texts::tr("is not signed by the publisher")};
    const OfKind known = m_kinds.value(kind);
    const qint64 last = qMax(known.stored.isEmpty() ? 0 : known.stored.lastKey(),
                             known.refused.isEmpty() ? 0 : known.refused.lastKey());
    if (version < last)
        return {std::nullopt, version, Texts::tr("is older than version %1").arg(last)};
    if (version > last)
        return {announcement, 0, {}};
    const bool isRefused = known.refused.contains(version);
    const QByteArray sha256 = isRefused ? known.refused.value(version).sha256
                                        : known.stored.value(version).announcement.sha256;
    if (sha256 != announcement->sha256)
        return {std::nullopt, version, Texts::tr("has another content than before")};
    return {std::nullopt, isRefused ? version : 0, known.refused.value(version).reason};
}

qint64 PublicationStore::begin(const Announcement& wanted)
{
    const QString part = QFileInfo(partOf(wanted)).fileName();
    const QStringList parts = QDir(m_folder).entryList(
        {nameOf(wanted.kind) + QLatin1String("-*.part.*")}, QDir::Files | QDir::System);
    for (const QString& each : parts) {
        if (each != part)
            QFile::remove(m_folder + QLatin1Char('/') + each);
    }
    const qint64 size = sizeOf(partOf(wanted));
    if (size <= wanted.size)
        return qMax<qint64>(size, 0);
    discard(wanted);
    return 0;
}

QString PublicationStore::append(const Announcement& wanted, const QByteArray& bytes)
{
    const OpenFile part(partOf(wanted), O_WRONLY | O_CREAT | O_APPEND);
    const qint64 before = part.size();
    if (before < 0)
        return notStored(systemError());
    if (before + bytes.size() > wanted.size)
        return Texts::tr("is larger than announced");
    if (writeAll(part.get(), bytes))
        return {};
    const QString reason = systemError();
    static_cast<void>(::ftruncate(part.get(), before) == 0);
    return notStored(reason);
}

QString PublicationStore::faultOf(const Announcement& wanted, const QString& file,
                                  const PublicationCheck& check)
{
    return hasContent(wanted, file) ? check(wanted.kind, file) : Texts::tr("is damaged");
}

/// The announcement alone is no publication, so it comes first.
QString PublicationStore::accept(const Announcement& wanted)
{
    const QString file = path(wanted, endingOf(wanted));
    const bool isStored =
        sales::writeForOwner(path(wanted, QStringLiteral(".announcement")), encode(wanted)) &&
        std::rename(QFile::encodeName(partOf(wanted)).constData(),
                    QFile::encodeName(file).constData()) == 0 &&
        storeFolder(m_folder);
    if (!isStored)
        return notStored(systemError());
    m_kinds[wanted.kind].stored.insert(wanted.version, {wanted, file});
    return {};
}

void PublicationStore::discard(const Announcement& wanted) { QFile::remove(partOf(wanted)); }

void PublicationStore::refuse(const Announcement& publication, const QString& reason)
{
    OfKind& known = m_kinds[publication.kind];
    known.stored.remove(publication.version);
    known.refused.insert(publication.version, {publication.sha256, reason});
    static_cast<void>(
        sales::writeForOwner(path(publication, QStringLiteral(".refused")),
                             publication.sha256.toHex() + '\n' + reason.left(200).toUtf8()));
    discard(publication);
}

std::optional<StoredPublication> PublicationStore::due(PublicationKind kind,
                                                       const QDateTime& now) const
{
    std::optional<StoredPublication> found;
    const QVector<StoredPublication> all = publications(kind);
    for (const StoredPublication& each : all) {
        if (each.announcement.validFrom <= now)
            found = each;
    }
    return found;
}

QVector<StoredPublication> PublicationStore::publications(PublicationKind kind) const
{
    QVector<StoredPublication> all;
    const auto stored = m_kinds.value(kind).stored;
    for (const StoredPublication& each : stored)
        all.append(each);
    return all;
}

PublicationState PublicationStore::refusal(PublicationKind kind) const
{
    const OfKind known = m_kinds.value(kind);
    PublicationState state;
    state.kind = kind;
    if (known.refused.isEmpty() ||
        (!known.stored.isEmpty() && known.stored.lastKey() > known.refused.lastKey()))
        return state;
    state.refused = known.refused.lastKey();
    state.refusal = known.refused.last().reason;
    return state;
}

bool PublicationStore::beginStart(const Announcement& publication)
{
    const QString file = path(publication, QStringLiteral(".start"));
    const QByteArray note = noteIn(file);
    if (note == proven)
        return true;
    const int starts = note.toInt();
    if (starts < mostStarts)
        return sales::writeForOwner(file, QByteArray::number(starts + 1));
    refuse(publication, Texts::tr("the terminal did not start with it"));
    return false;
}

void PublicationStore::endStart(const Announcement& publication)
{
    const QString file = path(publication, QStringLiteral(".start"));
    if (noteIn(file) != proven)
        static_cast<void>(sales::writeForOwner(file, proven));
}

void PublicationStore::prune(PublicationKind kind, qint64 inUse)
{
    const QMap<qint64, StoredPublication> stored = m_kinds.value(kind).stored;
    qint64 fallback = inUse;
    for (auto each = stored.begin(); each != stored.end() && each.key() < inUse; ++each)
        fallback = each.key();
    remove(kind, [=](qint64 version) { return version < fallback; });
    QList<qint64> rest = m_kinds.value(kind).stored.keys();
    rest.removeAll(inUse);
    rest.removeAll(fallback);
    while (rest.size() > mostKept - 2)
        remove(kind, [oldest = rest.takeFirst()](qint64 version) { return version == oldest; });
}

void PublicationStore::remove(PublicationKind kind,
                              const std::function<bool(qint64 version)>& isRemoved)
{
    static const QRegularExpression form(QStringLiteral("\\A[a-z]+-([1-9][0-9]{0,14})[.-]"));
    OfKind& known = m_kinds[kind];
    const QStringList names =
        QDir(m_folder).entryList({nameOf(kind) + QLatin1String("-*")}, QDir::Files | QDir::System);
    for (const QString& name : names) {
        const qint64 version = form.match(name).captured(1).toLongLong();
        if (version == 0 || !isRemoved(version))
            continue;
        QFile::remove(m_folder + QLatin1Char('/') + name);
        known.stored.remove(version);
        known.refused.remove(version);
    }
}

} // namespace rivo::office
