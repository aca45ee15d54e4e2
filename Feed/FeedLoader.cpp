#include "FeedLoader.h"

#include "GtfsReader_p.h"
#include "JsonFeedReader_p.h"
#include "OpenFile_p.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>

namespace rivo::feed
{

namespace
{

template <class Entry>
QStringList lines(const QVector<Entry>& entries, int further, QLatin1String what)
{
    QStringList result;
    result.reserve(entries.size() + 1);
    for (const Entry& entry : entries)
        result.append(entry.toString());
    if (further > 0)
        result.append(QStringLiteral("... and %1 further %2").arg(further).arg(what));
    return result;
}

/// Whether the file begins as archives do.
bool isArchive(const QString& path)
{
    const auto ignore = [](const QString&, const QString&) {};
    const auto file = OpenFile::open(AT_FDCWD, QFile::encodeName(path), ignore);
    QByteArray start(4, '\0');
    return file && file->read(start.data(), start.size(), ignore) == start.size() &&
           (start == "PK\x03\x04" || start == "PK\x05\x06");
}

std::optional<Feed> read(const QString& path, const FeedOptions& options, FeedReport& report)
{
    if (QFileInfo(path).isDir())
        return readGtfsFeed(path, openFolder, options, report);
    if (isArchive(path) || path.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive))
        return readGtfsFeed(path, openArchive, options, report);
    if (!path.endsWith(QLatin1String(".txt"), Qt::CaseInsensitive))
        return readJsonFeed(path, options, report);
    report.add(path, 0, QStringLiteral("one file of a GTFS feed"),
               QStringLiteral("the folder or the .zip that has all of them"));
    return std::nullopt;
}

} // namespace

QStringList FeedResult::problemLines() const
{
    return lines(problems, furtherProblems, QLatin1String("problems"));
}

QStringList FeedResult::noticeLines() const
{
    return lines(notices, furtherNotices, QLatin1String("notices"));
}

FeedResult loadFeed(const QString& path, const FeedOptions& options)
{
    FeedReport report;
    std::optional<Feed> feed = read(path, options, report);
    return {std::move(feed), report.problems(), report.furtherProblems(), report.notices(),
            report.furtherNotices()};
}

} // namespace rivo::feed
