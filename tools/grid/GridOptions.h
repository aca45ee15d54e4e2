#pragma once

#include <FeedOptions.h>

#include <QString>
#include <QStringList>

#include <optional>

enum class GridFormat { Text, Json, Csv };
enum class GridCommand { Print, Check };

/// What the command line asks for.
struct GridOptions
{
    GridCommand command = GridCommand::Print;
    GridFormat format = GridFormat::Text;
    QString feed;
    rivo::feed::FeedOptions reading;
    std::optional<int> columns;           ///< otherwise the feed's own
    std::optional<QStringList> order;     ///< otherwise the configured display order
    std::optional<QStringList> supported; ///< otherwise the feed's own
    bool verbose = false;                 ///< show the model's log on standard error
};

/// Reads the command line. Prints and ends the program for --help and --version; on a wrong
/// command line prints what is wrong on standard error and returns nothing.
std::optional<GridOptions> parseCommandLine(const QStringList& arguments);
