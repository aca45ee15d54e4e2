#pragma once

class PassengerTypesModel;

namespace rivo::feed
{

struct Feed;

/// Hands every product of `feed` to `model`, one addItem each, in the order of the feed. Neither
/// clears nor lays out the model.
void addProducts(const Feed& feed, PassengerTypesModel& model);

} // namespace rivo::feed
