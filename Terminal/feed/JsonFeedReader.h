#pragma once

#include "Feed.h"
#include "FeedOptions.h"

#include <optional>

namespace rivo::feed
{

class FeedReport;

/// Reads the rivo-feed JSON file `path`. Every problem found goes into `report`; what is returned
/// is of use only if there is none.
std::optional<Feed> readJsonFeed(const QString& path, const FeedOptions& options,
                                 FeedReport& report);

} // namespace rivo::feed
