#pragma once

#include "Feed.h"
#include "FeedOptions.h"
#include "FeedProblem.h"

#include <optional>

namespace rivo::feed
{

/// A loaded feed, or every reason why it was not loaded. Never both: a feed is loaded whole or
/// not at all.
struct FeedResult
{
    std::optional<Feed> feed;
    QVector<FeedProblem> problems; ///< at most FeedReport::maxKept; empty if there is a feed
    int furtherProblems = 0;       ///< found but not kept
    QVector<FeedNotice> notices;   ///< at most FeedReport::maxKept
    int furtherNotices = 0;        ///< found but not kept

    /// One line per problem and, if more were found than kept, a last one with their number.
    QStringList problemLines() const;
    /// As problemLines, for the notices.
    QStringList noticeLines() const;
};

/// Loads the feed at `path`: a folder or a .zip is read as GTFS, any other file as rivo-feed JSON.
/// Finds every problem in one pass; never waits on a pipe or a device.
FeedResult loadFeed(const QString& path, const FeedOptions& options = {});

} // namespace rivo::feed
