#include "PictureFile.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivo::terminal
{

namespace
{

const QString softwareKey = QStringLiteral("Software");
const QString softwareName = QStringLiteral("rivo-terminal");

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

/// Whether a picture of this program is in the open file.
bool isOwnPicture(int descriptor)
{
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        return false;
    QImageReader reader(&file, "png");
    return reader.text(softwareKey) == softwareName;
}

/// Why the file that is there must not be replaced; nothing if it may be.
QString obstacle(const QByteArray& path, const struct stat& status)
{
    if (S_ISLNK(status.st_mode))
        return QStringLiteral("it is a link");
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("it is not a regular file");
    if (status.st_uid != ::geteuid())
        return QStringLiteral("it belongs to another user");
    if (status.st_nlink != 1)
        return QStringLiteral("it has several names");
    // Not blocked by what took the file's place since.
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return systemError();
    const bool isOwn = isOwnPicture(descriptor);
    ::close(descriptor);
    return isOwn ? QString() : QStringLiteral("it is no picture of rivo-terminal");
}

/// A new file beside `path`, that nothing else could have prepared.
QByteArray temporaryName(const QByteArray& path)
{
    return path + '.' + QByteArray::number(QRandomGenerator::system()->generate64(), 36);
}

QString writePicture(const QImage& picture, const QByteArray& path)
{
    const int descriptor =
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return systemError();
    QFile file;
    const bool isWritten =
        file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) &&
        picture.save(&file, "PNG") && file.flush() && ::fsync(descriptor) == 0;
    file.close();
    return isWritten ? QString() : QStringLiteral("it was not written whole");
}

} // namespace

QString savePictureFile(const QImage& picture, const QString& file)
{
    const QByteArray path = QFile::encodeName(file);
    struct stat status = {};
    const bool isThere = ::lstat(path.constData(), &status) == 0;
    if (!isThere && errno != ENOENT)
        return systemError();
    QString problem = isThere ? obstacle(path, status) : QString();
    if (!problem.isEmpty())
        return problem;

    QImage marked = picture;
    marked.setText(softwareKey, softwareName);
    const QByteArray temporary = temporaryName(path);
    problem = writePicture(marked, temporary);
    // A name that is new stays untouched if something takes it meanwhile.
    const unsigned int flags = isThere ? 0 : RENAME_NOREPLACE;
    if (problem.isEmpty() &&
        ::renameat2(AT_FDCWD, temporary.constData(), AT_FDCWD, path.constData(), flags) != 0)
        problem = systemError();
    if (!problem.isEmpty())
        ::unlink(temporary.constData());
    return problem;
}

} // namespace rivo::terminal
