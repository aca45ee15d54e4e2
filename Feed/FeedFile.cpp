#include "FeedFile_p.h"

#include "FeedProblem.h"

#include <QFile>
#include <QTextCodec>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivo::feed
{

namespace
{

QString systemError(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

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

/// Opens `path` if it is a regular file; -1 and a problem otherwise. The kind is asked before the
/// file is opened, as opening alone can wake a device, and again of what was opened.
int openRegular(const QString& path, FeedReport& report)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    int handle = -1;
    const bool isFound = ::stat(name.constData(), &status) == 0;
    if (isFound && S_ISREG(status.st_mode))
        handle = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const bool isOpen = handle >= 0 && ::fstat(handle, &status) == 0;
    if (isOpen && S_ISREG(status.st_mode))
        return handle;
    const bool isOther = isFound && !S_ISREG(status.st_mode);
    report.add(path, 0, isOther ? kindOf(status.st_mode) : systemError(errno),
               QStringLiteral("a readable file"));
    if (handle >= 0)
        ::close(handle); // GCOVR_EXCL_LINE: only if the file is replaced between stat() and open()
    return -1;
}

} // namespace

std::optional<QByteArray> readFeedFile(const QString& path, qint64 maxBytes, FeedReport& report)
{
    const int handle = openRegular(path, report);
    if (handle < 0)
        return std::nullopt;
    QFile file;
    file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    QByteArray content;
    if (file.size() <= maxBytes)
        content = file.read(file.size() + 1);
    if (content.size() > file.size()) // it has grown, or is a file of the system that has no size
        content += file.read(maxBytes + 1 - content.size());
    const qint64 size = qMax<qint64>(file.size(), content.size());
    if (file.error() != QFileDevice::NoError)
        report.add(path, 0, file.errorString(), QStringLiteral("a readable file"));
    else if (size > maxBytes)
        report.add(path, 0, QStringLiteral("%1 bytes").arg(size),
                   QStringLiteral("at most %1 bytes").arg(maxBytes));
    if (file.error() != QFileDevice::NoError || size > maxBytes)
        return std::nullopt;
    if (content.startsWith("\xEF\xBB\xBF"))
        content.remove(0, 3);
    return content;
}

int lineLength(const QByteArray& text, int from)
{
    for (int i = from; i < text.size(); ++i) {
        if (text.at(i) == '\n')
            return i + 1 - from;
        if (text.at(i) == '\r')
            return i + 1 - from + (i + 1 < text.size() && text.at(i + 1) == '\n');
    }
    return text.size() - from;
}

QString toText(const QByteArray& utf8)
{
    // The bound is for GCC, which on 32 bits warns of the -1 that would ask for strlen().
    return QString::fromUtf8(utf8.constData(), qMax(0, utf8.size()));
}

bool checkUtf8(const QByteArray& text, const QString& file, FeedReport& report)
{
    QTextCodec* const codec = QTextCodec::codecForName("UTF-8");
    bool isValid = true;
    int line = 1;
    for (int from = 0, length = 0; from < text.size(); from += length, ++line) {
        length = lineLength(text, from);
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        codec->toUnicode(text.constData() + from, length, &state);
        if (state.invalidChars == 0 && state.remainingChars == 0)
            continue;
        isValid = false;
        report.add(file, line, QStringLiteral("bytes that are no UTF-8"),
                   QStringLiteral("text in UTF-8"));
    }
    return isValid;
}

} // namespace rivo::feed
