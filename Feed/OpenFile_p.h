#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <sys/stat.h>

namespace rivo::feed
{

/// What differs between one state of a file and a later one.
class FileState
{
public:
    explicit FileState(const struct stat& status);
    bool operator==(const FileState& other) const;
    /// The same but for what renaming and linking change.
    bool hasContentOf(const FileState& other) const;

private:
    dev_t m_device;
    ino_t m_inode;
    off_t m_size;
    timespec m_modified;
    timespec m_changed;
};

/// A problem of a file: what was found, and what was expected instead.
using FileFailure = std::function<void(const QString& found, const QString& expected)>;

/// A regular file that is open for reading.
class OpenFile
{
public:
    /// Opens `path`, relative to the folder `folder` if that is no AT_FDCWD. Null after reporting
    /// that there is no regular file that can be read. Never waits, whatever file is at `path`.
    static std::shared_ptr<OpenFile> open(int folder, const QByteArray& path,
                                          const FileFailure& fail);

    ~OpenFile();
    Q_DISABLE_COPY_MOVE(OpenFile)

    int handle() const { return m_handle; }
    qint64 size() const;
    FileState state() const; ///< as it is now, under whatever name

    /// As many bytes as there are, at most `size`; -1 after reporting a failure.
    qint64 read(char* into, qint64 size, const FileFailure& fail) const;

private:
    explicit OpenFile(int handle) : m_handle(handle) {}

    const int m_handle;
};

/// The message of the system for `error`.
QString systemError(int error);

} // namespace rivo::feed
