#pragma once

#include "FeedOptions.h"

#include <QByteArray>
#include <QString>

#include <map>

namespace rivo::feed
{

class FeedReport;

/// Walks the tokens of a JSON text before QJsonDocument does: QJsonDocument keeps one of two equal
/// keys without a word, accepts more than JSON, has no limits and forgets the lines.

/// Reports the first break of the JSON grammar or of a limit, which ends the walk, and every key
/// that an object holds twice. True if the walk came to the end of the text, which is an object.
bool checkJson(const QByteArray& text, const QString& file, const FeedLimits& limits,
               FeedReport& report);

/// Sets, for every JSON pointer that is a key of `lines`, the line at which its value begins (for
/// a member of an object: its key). Pointers to nothing keep their value. For texts that checkJson
/// has walked through.
void findJsonLines(const QByteArray& text, std::map<QString, int>& lines);

/// `key` as one token of a JSON pointer, with the leading slash.
QString jsonPointerToken(const QString& key);

} // namespace rivo::feed
