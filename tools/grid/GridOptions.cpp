#include "GridOptions.h"

namespace
{

QString takePositional(QStringList arguments, GridOptions& options)
{
    if (!arguments.isEmpty() && arguments.first() == QLatin1String("check")) {
        options.command = GridCommand::Check;
        arguments.removeFirst();
    }
    if (arguments.size() != 1)
        return QStringLiteral("expected one feed, got %1").arg(arguments.size());
    options.feed = arguments.first();
    return {};
}

} // namespace

std::optional<GridOptions> parseCommandLine(const QStringList& arguments)
{
    FeedCommandLine line(
        QStringLiteral(
            "Prints the selection grid that a terminal would show for a feed: a rivo-feed JSON "
            "file\nor a GTFS folder with Fares V2.\n\n"
            "  rivo-grid FEED         print the grid\n"
            "  rivo-grid check FEED   judge the back-office positions\n\n"
            "Exit code: 0 done; 1 the terminal would not use the positions (check); 2 the feed or "
            "the\ncommand line is wrong, or the output cannot be written."),
        QStringLiteral("[check] FEED"));
    GridOptions options;
    line.read(arguments, options);
    line.reject(takePositional(line.positionalArguments(), options));
    if (!line.isAccepted())
        return std::nullopt;
    return options;
}
