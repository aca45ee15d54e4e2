#pragma once

#include "GridOptions.h"

#include <Feed.h>

// What the options ask for; each returns the exit code.

/// Prints the offers of a stop, or of all queries of a file.
int printOffers(const GridOptions& options, const rivo::feed::Feed& feed);

/// Explains a product in sentences.
int explainProduct(const GridOptions& options, const rivo::feed::Feed& feed);

/// Leaves in `feed` only the products that are sold where the options say, or if they name no place
/// those that are sold somewhere. False, after reporting it, if there is no such place or there are
/// too many products for a grid.
bool narrow(const GridOptions& options, rivo::feed::Feed& feed);
