#include "FeedFile_p.h"

#include "FeedProblem.h"

#include "OpenFile_p.h"

#include <QFile>

#include <fcntl.h>

namespace rivo::feed
{

namespace
{

constexpr int readingAttempts = 3;

/// The whole of `file`; nothing after reporting that it cannot be read or is too large.
std::optional<QByteArray> contentOf(const OpenFile& file, qint64 maxBytes, const FileFailure& fail)
{
    QByteArray content;
    qint64 size = file.size();
    if (size <= maxBytes) {
        // A file of the system may report size 0; other files may have grown.
        const qint64 room = qMin(maxBytes, qMax<qint64>(size, 1 << 16)) + 1;
        content.resize(static_cast<int>(room));
        qint64 count = file.read(content.data(), room, fail);
        if (count < 0)
            return std::nullopt;
        if (count == room && room <= maxBytes) {
            content.resize(static_cast<int>(maxBytes + 1));
            const qint64 more = file.read(content.data() + count, maxBytes + 1 - count, fail);
            if (more < 0)
                return std::nullopt;
            count += more;
        }
        content.resize(static_cast<int>(count));
        size = qMax(size, count);
    }
    if (size <= maxBytes)
        return content;
    fail(QStringLiteral("%1 bytes").arg(size), QStringLiteral("at most %1 bytes").arg(maxBytes));
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> readFeedFile(const QString& path, qint64 maxBytes, FeedReport& report)
{
    const auto fail = [&](const QString& found, const QString& expected) {
        report.add(path, 0, found, expected);
    };
    for (int attempt = 0; attempt < readingAttempts; ++attempt) {
        const auto file = OpenFile::open(AT_FDCWD, QFile::encodeName(path), fail);
        if (!file)
            return std::nullopt;
        const FileState before = file->state();
        std::optional<QByteArray> content = contentOf(*file, maxBytes, fail);
        if (!content)
            return std::nullopt;
        if (!file->state().hasContentOf(before))
            continue;
        if (content->startsWith("\xEF\xBB\xBF"))
            content->remove(0, 3);
        return content;
    }
    fail(QStringLiteral("changing while it is read"), QStringLiteral("a file that stays as it is"));
    return std::nullopt;
}

int lineLength(const QByteArray& text, int from)
{
    for (int i = from; i < text.size(); ++i) {
        if (text.at(i) == '\n')
            return i + 1 - from;
        if (text.at(i) == '\r')
            return i + 1 - from + (i + 1 < text.size() && text.at(i + 1) == '\n');
    }
    return static_cast<int>(text.size() - from);
}

QString toText(const QByteArray& utf8)
{
    // The bound is for GCC, which on 32 bits warns of the -1 that would ask for strlen().
    return QString::fromUtf8(utf8.constData(), qMax(0, utf8.size()));
}

bool isUtf8(std::string_view text)
{
    const auto* byte = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const end = byte + text.size();
    while (byte < end) {
        if (*byte < 0x80) {
            ++byte;
            continue;
        }
        // Neither an overlong form, nor half a pair of surrogates, nor beyond U+10FFFF.
        const int length = *byte >= 0xF0 ? 4 : *byte >= 0xE0 ? 3 : 2;
        const unsigned char least = *byte == 0xE0 ? 0xA0 : *byte == 0xF0 ? 0x90 : 0x80;
        const unsigned char most = *byte == 0xED ? 0x9F : *byte == 0xF4 ? 0x8F : 0xBF;
        if (*byte < 0xC2 || *byte > 0xF4 || end - byte < length || byte[1] < least ||
            byte[1] > most)
            return false;
        for (int i = 2; i < length; ++i) {
            if ((byte[i] & 0xC0) != 0x80)
                return false;
        }
        byte += length;
    }
    return true;
}

bool isUtf16(const QByteArray& text)
{
    return text.startsWith("\xFF\xFE") || text.startsWith("\xFE\xFF");
}

bool checkUtf8(const QByteArray& text, const QString& file, FeedReport& report)
{
    bool isValid = true;
    int line = 1;
    for (int from = 0, length = 0; from < text.size(); from += length, ++line) {
        length = lineLength(text, from);
        if (isUtf8({text.constData() + from, static_cast<size_t>(length)}))
            continue;
        isValid = false;
        report.add(file, line, QStringLiteral("bytes that are no UTF-8"), utf8Expected());
    }
    return isValid;
}

QString utf8Expected() { return QStringLiteral("text in UTF-8 (save the file in this encoding)"); }

} // namespace rivo::feed
