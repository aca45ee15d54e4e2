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

/// The first text of each type number, in their order: to the grid all unknown texts are one type,
/// and a type that is named often is no other than one that is named once.
QStringList distinctTypes(const QStringList& texts);

} // namespace rivo::feed
