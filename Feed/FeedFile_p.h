#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <string_view>

namespace rivo::feed
{

class FeedReport;

/// The content of the regular file `path` without a leading UTF-8 byte-order mark. Nothing, and a
/// problem in `report`, if it cannot be read, is no regular file, is larger than `maxBytes` or
/// changes again and again while it is read. Never waits, whatever file is at `path`.
std::optional<QByteArray> readFeedFile(const QString& path, qint64 maxBytes, FeedReport& report);

/// Length of the line that begins at `from`, its line end (LF, CR LF or CR) included.
int lineLength(const QByteArray& text, int from);

/// `utf8` as text, zero bytes included (at which QString::fromUtf8 stops); bytes that are no UTF-8
/// become replacement characters.
QString toText(const QByteArray& utf8);

/// Whether the bytes are UTF-8.
bool isUtf8(std::string_view text);

/// Whether a text begins as those in UTF-16 do.
bool isUtf16(const QByteArray& text);

/// The advice for a text in another encoding.
QString utf8Expected();

/// Reports every line of `text` that is no valid UTF-8; true if there is none.
bool checkUtf8(const QByteArray& text, const QString& file, FeedReport& report);

} // namespace rivo::feed
