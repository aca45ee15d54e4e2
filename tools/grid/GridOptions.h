#pragma once

#include <FeedCommandLine.h>

#include <QStringList>

#include <optional>

enum class GridCommand { Print, Check };

/// What the command line asks for.
struct GridOptions : FeedToolOptions
{
    GridCommand command = GridCommand::Print;
};

/// Reads the command line. Prints and ends the program for --help and --version; on a wrong
/// command line prints what is wrong on standard error and returns nothing.
std::optional<GridOptions> parseCommandLine(const QStringList& arguments);
