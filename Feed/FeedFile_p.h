#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace rivo::feed
{

class FeedReport;

/// The content of the regular file `path` without a leading UTF-8 byte-order mark. Nothing, and a
/// problem in `report`, if it cannot be read, is no regular file or is larger than `maxBytes`.
/// Never waits, whatever stands at `path`.
std::optional<QByteArray> readFeedFile(const QString& path, qint64 maxBytes, FeedReport& report);

/// Length of the line that begins at `from`, its line end (LF, CR LF or CR) included.
int lineLength(const QByteArray& text, int from);

/// `utf8` as text, zero bytes included (at which QString::fromUtf8 stops); bytes that are no UTF-8
/// become replacement characters.
QString toText(const QByteArray& utf8);

/// Reports every line of `text` that is no valid UTF-8; true if there is none.
bool checkUtf8(const QByteArray& text, const QString& file, FeedReport& report);

} // namespace rivo::feed
