#include "FeedLoader.h"

#include "GtfsReader_p.h"
#include "JsonFeedReader_p.h"

#include <QFileInfo>

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
    std::optional<Feed> feed = QFileInfo(path).isDir() ? readGtfsFeed(path, options, report)
                                                       : readJsonFeed(path, options, report);
    return {std::move(feed), report.problems(), report.furtherProblems(), report.notices(),
            report.furtherNotices()};
}

} // namespace rivo::feed
