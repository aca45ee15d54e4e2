#pragma once

#include <QString>

#include <optional>

namespace rivo::feed
{

// Amounts of money are whole numbers of the smallest unit that the currency's decimals allow.

/// The largest amount of a price, in units of the currency.
constexpr int largestPrice = 1'000'000;

/// The minor units of "4.50" or "-4.5": digits, perhaps with a sign before them and decimals behind
/// a point, at most `decimals` of them. Nothing for other texts and beyond the largest price.
std::optional<qint64> minorUnits(const QString& text, int decimals);

/// The minor units of a number that is the double nearest to such an amount; nothing for others.
std::optional<qint64> toMinorUnits(double units, int decimals);

/// 450 as "4.50".
QString amountText(qint64 minorUnits, int decimals);

/// The double that is nearest to the amount.
double toUnits(qint64 minorUnits, int decimals);

} // namespace rivo::feed
