#include "RegularFile_p.h"

#include <QtCore/QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace rivo::core
{

namespace
{

QString unreadable(int error)
{
    return QStringLiteral("cannot be read: %1").arg(qt_error_string(error));
}

/// Why this is no ordinary file; empty for an ordinary one.
QString strangeness(const struct stat& status)
{
    if (S_ISDIR(status.st_mode))
        return QStringLiteral("is a folder, not a file");
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("is not a regular file");
    return {};
}

} // namespace

RegularFile RegularFile::read(const QString& path)
{
    RegularFile result;
    // Without O_NONBLOCK, opening a FIFO waits for a writer. What was opened is judged, not the
    // path, which may lead elsewhere by now.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        result.exists = errno != ENOENT;
        if (result.exists)
            result.problem = unreadable(errno);
        return result;
    }
    result.exists = true;

    QFile file;
    struct stat status = {};
    const bool isOpen = file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) &&
                        ::fstat(descriptor, &status) == 0;
    result.problem = isOpen ? strangeness(status) : unreadable(errno);
    if (!result.problem.isEmpty())
        return result;

    result.content = file.read(MaximumSize + 1);
    if (file.error() != QFileDevice::NoError)
        result.problem = QStringLiteral("cannot be read: %1").arg(file.errorString());
    else if (result.content.size() > MaximumSize)
        result.problem = QStringLiteral("is larger than %1 bytes").arg(MaximumSize);
    return result;
}

} // namespace rivo::core
