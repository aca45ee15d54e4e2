#pragma once

#include "Feed.h"
#include "FeedOptions.h"

#include <optional>

namespace rivo::feed
{

class FeedReport;

/// Reads the rivo-feed JSON file `path`.
/// Every problem goes into `report`; nothing is returned if there is any.
std::optional<Feed> readJsonFeed(const QString& path, const FeedOptions& options,
                                 FeedReport& report);

} // namespace rivo::feed
