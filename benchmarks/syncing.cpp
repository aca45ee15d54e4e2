// A list model that is brought to another list of records: by RowSync, which keeps the rows that
// are still there, and by clearing the model and appending a row for each record.

#include "Measure.h"
#include "Peers.h"
#include "RowSync.h"
#include "Tiles.h"

#include <algorithm>
#include <random>

namespace
{

using Products = QVector<sProduct>;
using Sync = rivo::models::RowSync<PassengerTypeItem, sProduct>;

Sync productSync()
{
    Sync sync(&sProduct::fareProductId, &PassengerTypeItem::fareProductId, newItem);
    sync.field(&sProduct::passengerTypeId, &PassengerTypeItem::id, &PassengerTypeItem::setId)
        .field(&sProduct::description, &PassengerTypeItem::description,
               &PassengerTypeItem::setDescription)
        .field(&sProduct::icon, &PassengerTypeItem::icon, &PassengerTypeItem::setIcon)
        .field(&sProduct::price, &PassengerTypeItem::price, &PassengerTypeItem::setPrice)
        .field(&sProduct::fareProductName, &PassengerTypeItem::fareProductName,
               &PassengerTypeItem::setFareProductName)
        .field(&sProduct::isReturnFee, &PassengerTypeItem::isReturnFee,
               &PassengerTypeItem::setIsReturnFee)
        .field(&sProduct::fromStopGroupId, &PassengerTypeItem::fromStopGroupId,
               &PassengerTypeItem::setFromStopGroupId)
        .field(&sProduct::toStopGroupId, &PassengerTypeItem::toStopGroupId,
               &PassengerTypeItem::setToStopGroupId)
        .field(&sProduct::fareProductColor, &PassengerTypeItem::fareProductColor,
               &PassengerTypeItem::setFareProductColor)
        .field(&sProduct::hasExpired, &PassengerTypeItem::hasExpired,
               &PassengerTypeItem::setHasExpired)
        .field(&sProduct::fareDiscount, &PassengerTypeItem::fareDiscount,
               &PassengerTypeItem::setFareDiscount)
        .field(&sProduct::isDaily, &PassengerTypeItem::isDaily, &PassengerTypeItem::setIsDaily)
        .field(&sProduct::pos, &PassengerTypeItem::pos, &PassengerTypeItem::setPos);
    return sync;
}

struct BySync
{
    static void bring(Ours& peer, const Products& products)
    {
        static const Sync sync = productSync();
        sync.apply(peer.model(), products);
        destroyRemovedRows();
    }
};

struct ByRefill
{
    static void bring(Ours& peer, const Products& products)
    {
        peer.clear();
        QVector<rivo::models::ListItem*> rows;
        rows.reserve(products.size());
        for (const sProduct& product : products)
            rows.append(newItem(product, &peer.model()));
        peer.model().appendRows(rows);
    }
};

// The other list of the two that a model changes between.

Products same(Products products) { return products; }

/// Every tenth has another price.
Products changed(Products products)
{
    for (int i = 0; i < products.size(); i += 10)
        products[i].price += 1.0;
    return products;
}

/// In the place of every tenth there is another product.
Products replaced(Products products)
{
    for (int i = 0; i < products.size(); i += 10)
        products[i].fareProductId += maximumRows;
    return products;
}

/// In no order.
Products shuffled(Products products)
{
    std::mt19937 random(1);
    for (int last = products.size() - 1; last > 0; --last)
        std::swap(products[last],
                  products[static_cast<int>(random() % static_cast<unsigned>(last + 1))]);
    return products;
}

template <typename Way, Products (*other)(Products)>
void bring(benchmark::State& state)
{
    const Products lists[] = {records(rowsOf(state)), other(records(rowsOf(state)))};
    Ours peer;
    Way::bring(peer, lists[0]);
    int next = 1;
    for (auto _ : state) {
        timed(state, [&] { Way::bring(peer, lists[next]); });
        next = 1 - next;
    }
    countRows(state, rowsOf(state));
}

template <typename Way, Products (*other)(Products)>
void bringInView(benchmark::State& state)
{
    const Products lists[] = {records(rowsOf(state)), other(records(rowsOf(state)))};
    Tiles tiles;
    Ours peer;
    Way::bring(peer, lists[0]);
    tiles.show(&peer.model());
    tiles.update();
    int next = 1;
    for (auto _ : state) {
        timed(state, [&] {
            Way::bring(peer, lists[next]);
            tiles.update();
        });
        next = 1 - next;
    }
    if (tiles.count() < qMin(rowsOf(state), 24))
        state.SkipWithError("the rows are not on the screen");
    tiles.show(nullptr);
    countRows(state, rowsOf(state));
}

template <typename Way>
void addFor(const char* who)
{
    // A row that is removed from or inserted into the middle costs more the more rows there are.
    const Sizes sizes{10, 100, 1000, 10000};
    add("SyncSame", who, bring<Way, same>, sizes);
    add("SyncChanged", who, bring<Way, changed>, sizes);
    add("SyncReplaced", who, bring<Way, replaced>, sizes);
    add("SyncShuffled", who, bring<Way, shuffled>, sizes);
    add("SyncChangedInView", who, bringInView<Way, changed>, sizes);
    add("SyncReplacedInView", who, bringInView<Way, replaced>, sizes);
}

} // namespace

void addSyncing()
{
    addFor<BySync>("ours");
    addFor<ByRefill>("refill");
}
