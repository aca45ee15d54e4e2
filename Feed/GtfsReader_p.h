#pragma once

#include "Feed.h"
#include "FeedOptions.h"

#include <optional>

namespace rivo::feed
{

class FeedReport;

/// Reads the GTFS folder `folder` with its fares (Fares V2).
/// Every problem goes into `report`; nothing is returned if there is any.
std::optional<Feed> readGtfsFeed(const QString& folder, const FeedOptions& options,
                                 FeedReport& report);

} // namespace rivo::feed
