#pragma once

#include "GridOptions.h"

#include <Feed.h>

/// Prints the offers that the options ask for; the exit code.
int printOffers(const GridOptions& options, const rivo::feed::Feed& feed);
