#pragma once

#include "Currency.h"

#include <cmath>
#include <optional>

namespace rivo::sales
{

/// The amount that a number of QML is; nothing for fractions, negative numbers, NaN, and more than
/// any amount.
inline std::optional<Minor> wholeAmount(double number)
{
    constexpr double mostMinor = 1e12;
    const bool isAmount = number >= 0.0 && number <= mostMinor && number == std::floor(number);
    return isAmount ? std::make_optional(static_cast<Minor>(number)) : std::nullopt;
}

} // namespace rivo::sales
