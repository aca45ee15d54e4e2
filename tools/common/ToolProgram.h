#pragma once

#include <Feed.h>

#include <QString>
#include <QStringList>

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

/// Name and version of the application that runs, and the width of characters on a terminal.
void nameProgram(const QString& name);

/// Writes the lines to standard error, in UTF-8.
void complain(const QStringList& lines);

/// Complains in one line that begins with the name of the program.
void reportFailure(const QString& failure);

/// Reads a feed and complains of its problems and notices; nothing if there are problems.
std::optional<rivo::feed::Feed> readFeed(const QString& path,
                                         const rivo::feed::FeedOptions& options);
