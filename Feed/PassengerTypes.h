#pragma once

#include "Feed.h"

namespace rivo::feed
{

/// The number that the terminal gives to the passenger type `text` ("PT_ADULT" is 1); 0 if it
/// knows no such type. The match is exact and case-sensitive.
int passengerTypeNumber(const QString& text);

/// The texts of all passenger types, in ascending order of their numbers.
QStringList passengerTypeTexts();

/// The distinct passenger type texts of `products`, in ascending order of their numbers; texts of
/// one number in order of appearance.
QStringList passengerTypesOf(const QVector<FeedProduct>& products);

} // namespace rivo::feed
