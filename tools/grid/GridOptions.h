#pragma once

#include <FeedCommandLine.h>
#include <Offers.h>

#include <QStringList>

#include <optional>

enum class GridCommand { Print, Check, Offers, Why };

/// What the command line asks for.
struct GridOptions : FeedToolOptions
{
    GridCommand command = GridCommand::Print;
    std::optional<rivo::feed::OfferQuery> query; ///< where and when; none = anywhere, any time
    QString queriesFile;                         ///< with a query per line, instead of `query`
    QString product;                             ///< that is to be explained
};

/// Reads the command line. Prints and ends the program for --help and --version; on a wrong
/// command line prints what is wrong on standard error and returns nothing.
std::optional<GridOptions> parseCommandLine(const QStringList& arguments);
