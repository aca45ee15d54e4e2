#pragma once

#include <Feed.h>

#include <QString>

#include <optional>

namespace rivo::feed
{
struct FeedOptions;
}

/// How every tool ends.
enum ExitCode {
    Done = 0,
    FallsBack = 1, ///< the terminal would not use the back-office positions
    BadInput = 2   ///< the feed or the command line is wrong, or the output cannot be written
};

/// Sets name and version of the tool, and the width of characters on a terminal.
void startTool(const QString& name);

/// Reads a feed and reports its problems and notices; nothing if there are problems.
std::optional<rivo::feed::Feed> readFeed(const QString& path,
                                         const rivo::feed::FeedOptions& options);
