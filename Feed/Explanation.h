#pragma once

#include "Offers.h"

#include <optional>

namespace rivo::feed
{

/// What a product costs, which rules are about it, and with a query whether it is sold there and
/// why: one sentence each. Empty for an unknown product.
QStringList explained(const Tariff& tariff, const QString& product,
                      const std::optional<OfferQuery>& query);

} // namespace rivo::feed
