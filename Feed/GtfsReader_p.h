#pragma once

#include "Feed.h"
#include "FeedOptions.h"
#include "FeedSource_p.h"

#include <optional>

namespace rivo::feed
{

class FeedReport;

using OpenFeedSource = std::unique_ptr<FeedSource> (*)(const QString& path,
                                                       const FeedLimits& limits,
                                                       FeedReport& report);

/// Reads the GTFS feed at `path`, which `open` opens, with its fares. A feed that changes while it
/// is read is read again. Every problem goes into `report`; nothing is returned if there is any.
std::optional<Feed> readGtfsFeed(const QString& path, const OpenFeedSource& open,
                                 const FeedOptions& options, FeedReport& report);

} // namespace rivo::feed
