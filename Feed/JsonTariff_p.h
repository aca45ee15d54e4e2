#pragma once

#include "Feed.h"

#include <memory>

namespace rivo::feed
{

/// Where and when the products of a JSON feed are sold, as they state.
std::shared_ptr<const Tariff> tariffOf(const Feed& feed);

} // namespace rivo::feed
