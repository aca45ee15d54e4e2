#include "OpenFile_p.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace rivo::feed
{

namespace
{

QString kindOf(mode_t mode)
{
    if (S_ISDIR(mode))
        return QStringLiteral("a folder");
    if (S_ISFIFO(mode))
        return QStringLiteral("a pipe");
    if (S_ISSOCK(mode))
        return QStringLiteral("a socket");
    return QStringLiteral("a device");
}

bool isSame(const timespec& left, const timespec& right)
{
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

} // namespace

FileState::FileState(const struct stat& status)
    : m_device(status.st_dev), m_inode(status.st_ino), m_size(status.st_size),
      m_modified(status.st_mtim), m_changed(status.st_ctim)
{
}

bool FileState::operator==(const FileState& other) const
{
    return hasContentOf(other) && isSame(m_changed, other.m_changed);
}

bool FileState::hasContentOf(const FileState& other) const
{
    return m_device == other.m_device && m_inode == other.m_inode && m_size == other.m_size &&
           isSame(m_modified, other.m_modified);
}

std::shared_ptr<OpenFile> OpenFile::open(int folder, const QByteArray& path,
                                         const FileFailure& fail)
{
    // The kind is asked before the file is opened, as opening alone can wake a device, and again of
    // what was opened.
    struct stat status = {};
    std::shared_ptr<OpenFile> file;
    const bool isFound = ::fstatat(folder, path.constData(), &status, 0) == 0;
    if (isFound && S_ISREG(status.st_mode))
        file.reset(
            new OpenFile(::openat(folder, path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)));
    if (file && file->m_handle >= 0 && ::fstat(file->m_handle, &status) == 0 &&
        S_ISREG(status.st_mode))
        return file;
    const bool isOther = isFound && !S_ISREG(status.st_mode);
    fail(isOther ? kindOf(status.st_mode) : systemError(errno), QStringLiteral("a readable file"));
    return nullptr;
}

OpenFile::~OpenFile()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

qint64 OpenFile::size() const
{
    struct stat status = {};
    ::fstat(m_handle, &status);
    return status.st_size;
}

FileState OpenFile::state() const
{
    struct stat status = {};
    ::fstat(m_handle, &status);
    return FileState(status);
}

qint64 OpenFile::read(char* into, qint64 size, const FileFailure& fail) const
{
    qint64 count = 0;
    while (count < size) {
        const ssize_t part = ::read(m_handle, into + count, static_cast<size_t>(size - count));
        if (part == 0)
            break;
        if (part > 0)
            count += part;
        else if (errno != EINTR) {
            fail(systemError(errno), QStringLiteral("a readable file"));
            return -1;
        }
    }
    return count;
}

QString systemError(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

} // namespace rivo::feed
