#include "FeedToModels.h"

#include "Feed.h"

#include "PassengerTypesModel.h"

namespace rivo::feed
{

void addProducts(const Feed& feed, PassengerTypesModel& model)
{
    for (const FeedProduct& product : feed.products)
        model.addItem(product.passengerTypeId, product.description, product.passengerTypeCode,
                      product.icon, product.price, product.fareProductId, product.fareProductName,
                      product.isReturnFee, product.fromStopGroupId, product.toStopGroupId,
                      product.fareProductColor, product.hasExpired, product.fareDiscount,
                      product.isDaily, product.pos);
}

} // namespace rivo::feed
