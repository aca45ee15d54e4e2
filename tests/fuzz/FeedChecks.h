#pragma once

#include "FeedLoader.h"

namespace fuzzing
{

/// Limits that an input of a few thousand bytes can reach.
rivo::feed::FeedOptions tightOptions();

/// What must be true of whatever was loaded from `path`: a feed or problems, never both; problems
/// that name their place in one printable line; values within the bounds that the models are used
/// with; as many rows as entries once the models have them, and a grid laid out from them.
void checkFeed(const rivo::feed::FeedResult& result, const QString& path);

} // namespace fuzzing
