#pragma once

#include <Feed.h>

#include <optional>

namespace rivo::terminal::benchmark
{

/// A city of 245 fare areas, read from a GTFS folder that is written for it: a rule for each pair
/// of areas, and a price for each of two categories of riders, so 60,025 rules and 120,050 offers.
/// Four routes of 40 stops run in both directions every 15 minutes. Nothing without a writable
/// folder.
std::optional<feed::Feed> largeFeed();

} // namespace rivo::terminal::benchmark
