#include "FeedProblem.h"
#include "FeedSource_p.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <map>

namespace rivo::feed
{

namespace
{

/// What reads `file`, unless it is too large.
ByteReader readerOf(const std::shared_ptr<OpenFile>& file, const FeedLimits& limits,
                    const FileFailure& fail)
{
    if (!file)
        return {};
    if (file->size() > limits.csvBytes) {
        fail(QStringLiteral("%1 bytes").arg(file->size()),
             QStringLiteral("at most %1 bytes").arg(limits.csvBytes));
        return {};
    }
    return [file, fail](char* into, qint64 size) { return file->read(into, size, fail); };
}

/// Reads below an open folder, so that a link to it may change meanwhile.
class Folder : public FeedSource
{
public:
    Folder(QString path, const FeedLimits& limits, DIR* stream)
        : m_path(std::move(path)), m_limits(limits), m_stream(stream), m_state(stateOf({}))
    {
    }

    ~Folder() override { ::closedir(m_stream); }
    Q_DISABLE_COPY_MOVE(Folder)

    void list()
    {
        while (const dirent* entry = ::readdir(m_stream)) {
            if (m_names.size() == m_limits.feedFiles)
                break;
            m_names.append(QFile::decodeName(entry->d_name));
        }
    }

    QStringList names() const override { return m_names; }

    QString pathOf(const QString& name) const override { return QDir(m_path).filePath(name); }

    ByteReader open(const QString& name, const FileFailure& fail) override
    {
        const QByteArray encoded = QFile::encodeName(name);
        const auto failHere = [fail, handle = handle(), encoded](const QString& found,
                                                                 const QString& expected) {
            struct stat status = {};
            const bool isDangling =
                ::fstatat(handle, encoded.constData(), &status, 0) != 0 && errno == ENOENT;
            fail(isDangling ? QStringLiteral("a link to nothing") : found, expected);
        };
        const std::shared_ptr<OpenFile> file = OpenFile::open(handle(), encoded, failHere);
        if (file)
            m_read.insert({encoded, file->state()});
        return readerOf(file, m_limits, fail);
    }

    bool isUnchanged() const override
    {
        return stateOf({}) == m_state &&
               std::all_of(m_read.begin(), m_read.end(),
                           [this](const auto& file) { return stateOf(file.first) == file.second; });
    }

private:
    int handle() const { return ::dirfd(m_stream); }

    /// The state of a file of the folder, or without a name of the folder itself.
    FileState stateOf(const QByteArray& name) const
    {
        struct stat status = {};
        ::fstatat(handle(), name.constData(), &status, AT_EMPTY_PATH);
        return FileState(status);
    }

    const QString m_path;
    const FeedLimits m_limits;
    DIR* const m_stream;
    const FileState m_state;
    QStringList m_names;
    std::map<QByteArray, FileState> m_read;
};

} // namespace

std::unique_ptr<FeedSource> openFolder(const QString& path, const FeedLimits& limits,
                                       FeedReport& report)
{
    DIR* const stream = ::opendir(QFile::encodeName(path).constData());
    if (!stream) {
        report.add(path, 0, systemError(errno),
                   QStringLiteral("a folder whose files can be listed"));
        return nullptr;
    }
    auto folder = std::make_unique<Folder>(path, limits, stream);
    folder->list();
    return folder;
}

ByteReader openFile(const QString& path, const FeedLimits& limits, const FileFailure& fail)
{
    return readerOf(OpenFile::open(AT_FDCWD, QFile::encodeName(path), fail), limits, fail);
}

} // namespace rivo::feed
