#include "FeedProblem.h"
#include "FeedSource_p.h"

#include <QFile>

#include <fcntl.h>
#include <map>
#include <unistd.h>
#include <zip.h>

namespace rivo::feed
{

namespace
{

/// An archive may unpack to this many times its size.
constexpr quint64 largestRatio = 200;
/// Files up to this size may be packed as well as they can.
constexpr quint64 anyRatioUpTo = 1024 * 1024;

QString textOf(zip_error_t* error) { return QString::fromLocal8Bit(zip_error_strerror(error)); }

class Archive : public FeedSource
{
public:
    Archive(QString path, const FeedLimits& limits, std::shared_ptr<OpenFile> file, zip_t* archive)
        : m_path(std::move(path)), m_limits(limits), m_file(std::move(file)), m_archive(archive),
          m_state(m_file->state())
    {
    }

    ~Archive() override { zip_discard(m_archive); }
    Q_DISABLE_COPY_MOVE(Archive)

    /// Takes the table of contents; false after reporting what is wrong with it.
    bool list(FeedReport& report)
    {
        const zip_int64_t count = zip_get_num_entries(m_archive, 0);
        if (count > m_limits.feedFiles) {
            report.add(m_path, 0, QStringLiteral("%1 files").arg(count),
                       QStringLiteral("at most %1 files").arg(m_limits.feedFiles));
            return false;
        }
        QStringList folders;
        for (zip_int64_t i = 0; i < count; ++i) {
            const auto index = static_cast<zip_uint64_t>(i);
            const QString name =
                QString::fromUtf8(zip_get_name(m_archive, index, ZIP_FL_ENC_GUESS));
            const auto slash = name.lastIndexOf(QLatin1Char('/'));
            if (slash >= 0 && name.endsWith(QLatin1String(".txt")))
                folders.append(name.left(slash));
            if (!m_indexes.insert({name, index}).second) {
                report.add(m_path, 0, QStringLiteral("%1 twice").arg(quoted(name)),
                           QStringLiteral("each file once"));
                return false;
            }
        }
        return hasFilesAtTheTop(folders, report);
    }

    QStringList names() const override
    {
        QStringList names;
        for (const auto& file : m_indexes)
            names.append(file.first);
        return names;
    }

    QString pathOf(const QString& name) const override { return m_path + QLatin1Char('/') + name; }

    ByteReader open(const QString& name, const FileFailure& fail) override
    {
        const zip_uint64_t index = m_indexes.at(name);
        zip_stat_t status;
        zip_stat_index(m_archive, index, 0, &status);
        if (!isBounded(status, fail))
            return {};
        const std::shared_ptr<zip_file_t> file(zip_fopen_index(m_archive, index, 0),
                                               [](zip_file_t* opened) {
                                                   if (opened)
                                                       zip_fclose(opened);
                                               });
        if (!file) {
            fail(textOf(zip_get_error(m_archive)), QStringLiteral("a readable file"));
            return {};
        }
        return [file, fail](char* into, qint64 size) -> qint64 {
            const zip_int64_t count = zip_fread(file.get(), into, static_cast<zip_uint64_t>(size));
            if (count < 0)
                fail(textOf(zip_file_get_error(file.get())), QStringLiteral("a readable file"));
            return count;
        };
    }

    /// The file is read to its end even if another one takes its name meanwhile.
    bool isUnchanged() const override { return m_file->state().hasContentOf(m_state); }

private:
    bool hasFilesAtTheTop(const QStringList& folders, FeedReport& report) const
    {
        const bool isAtTop = std::any_of(m_indexes.begin(), m_indexes.end(), [](const auto& file) {
            return !file.first.contains(QLatin1Char('/')) &&
                   file.first.endsWith(QLatin1String(".txt"), Qt::CaseInsensitive);
        });
        if (!isAtTop && !folders.isEmpty())
            report.add(
                m_path, 0,
                QStringLiteral("its files in the folder %1").arg(quoted(folders.first())),
                QStringLiteral("them at the top of the archive; unpack it and give that folder"));
        return isAtTop || folders.isEmpty();
    }

    bool isBounded(const zip_stat_t& status, const FileFailure& fail) const
    {
        const auto most = static_cast<quint64>(m_limits.csvBytes);
        if (status.size > most) {
            fail(QStringLiteral("%1 bytes").arg(status.size),
                 QStringLiteral("at most %1 bytes").arg(most));
            return false;
        }
        if (status.size > anyRatioUpTo && status.size / largestRatio > status.comp_size) {
            fail(QStringLiteral("%1 bytes packed into %2").arg(status.size).arg(status.comp_size),
                 QStringLiteral("at most %1 times as many").arg(largestRatio));
            return false;
        }
        return true;
    }

    const QString m_path;
    const FeedLimits m_limits;
    const std::shared_ptr<OpenFile> m_file;
    zip_t* const m_archive;
    const FileState m_state;
    std::map<QString, zip_uint64_t> m_indexes;
};

} // namespace

std::unique_ptr<FeedSource> openArchive(const QString& path, const FeedLimits& limits,
                                        FeedReport& report)
{
    const auto fail = [&](const QString& found, const QString& expected) {
        report.add(path, 0, found, expected);
    };
    std::shared_ptr<OpenFile> file = OpenFile::open(AT_FDCWD, QFile::encodeName(path), fail);
    if (!file)
        return nullptr;
    int code = 0;
    zip_t* const opened = zip_fdopen(::dup(file->handle()), 0, &code);
    if (!opened) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        fail(textOf(&error), QStringLiteral("a .zip of a GTFS feed"));
        zip_error_fini(&error);
        return nullptr;
    }
    auto archive = std::make_unique<Archive>(path, limits, std::move(file), opened);
    return archive->list(report) ? std::move(archive) : nullptr;
}

} // namespace rivo::feed
