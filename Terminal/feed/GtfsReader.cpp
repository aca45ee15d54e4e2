#include "GtfsReader.h"

#include "FeedProblem.h"

namespace rivo::feed
{

std::optional<Feed> readGtfsFeed(const QString& folder, const FeedOptions&, FeedReport& report)
{
    report.add(
        FeedProblem{folder,
                    0,
                    0,
                    {},
                    {},
                    QStringLiteral("a folder"),
                    QStringLiteral("a rivo-feed JSON file (GTFS folders are not read yet)")});
    return std::nullopt;
}

} // namespace rivo::feed
