#pragma once

#include "Offers.h"

namespace fuzzing
{

/// Every number of a record belongs to its table, prices are sorted, amounts are within the limits.
void checkTariff(const rivo::feed::Tariff& tariff);

/// What must be true of every answer: errors alone, or each product either offered or left out; no
/// negative amount; the offers of one destination, and of fewer media, are among those of all.
void checkOffers(const rivo::feed::Tariff& tariff, const rivo::feed::OfferQuery& query);

/// checkOffers() for some routes, stops and times of the tariff.
void checkSomeOffers(const rivo::feed::Tariff& tariff);

} // namespace fuzzing
