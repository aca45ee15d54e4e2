// Rows that go, to the end of their destructors.

#include "Measure.h"
#include "Peers.h"
#include "QmlPeer.h"

namespace
{

constexpr int ones = 4;

/// The row in the middle, several times.
template <typename Peer>
void removeOne(benchmark::State& state)
{
    Peer& peer = filled<Peer>(state);
    for (auto _ : state) {
        timed(state, [&] {
            for (int i = 0; i < ones; ++i)
                peer.removeOne(rowsOf(state) / 2);
        });
        for (int number = 0; number < ones; ++number)
            peer.appendOne(number);
    }
    countRows(state, ones);
}

/// The half of the rows in the middle.
template <typename Peer>
void removeBlock(benchmark::State& state)
{
    const int removed = rowsOf(state) / 2;
    leaveHeapOf<Peer>(rowsOf(state));
    for (auto _ : state) {
        Peer peer;
        peer.appendBlock(0, rowsOf(state));
        timed(state, [&] { peer.removeBlock(rowsOf(state) / 4, removed); });
    }
    countRows(state, removed);
}

template <typename Peer>
void clear(benchmark::State& state)
{
    leaveHeapOf<Peer>(rowsOf(state));
    for (auto _ : state) {
        Peer peer;
        peer.appendBlock(0, rowsOf(state));
        timed(state, [&] { peer.clear(); });
    }
    countRows(state, rowsOf(state));
}

/// The model, with all its rows.
template <typename Peer>
void destroy(benchmark::State& state)
{
    leaveHeapOf<Peer>(rowsOf(state));
    for (auto _ : state) {
        auto peer = std::make_unique<Peer>();
        peer->appendBlock(0, rowsOf(state));
        timed(state, [&] { peer.reset(); });
    }
    countRows(state, rowsOf(state));
}

/// The row in the middle, several times, which then comes back at the end.
template <typename Peer>
void takeOne(benchmark::State& state)
{
    Peer& peer = filled<Peer>(state);
    std::vector<typename Peer::Taken> taken(ones);
    for (auto _ : state) {
        timed(state, [&] {
            for (auto& item : taken)
                item = peer.takeOne(rowsOf(state) / 2);
        });
        for (const auto& item : taken)
            peer.putBack(item);
    }
    countRows(state, ones);
}

/// Leaves the list of rows in the cache, whatever was done with the rows before.
template <typename Peer>
void readList(const Peer& peer, int rows)
{
    for (int row = 0; row < rows; ++row)
        benchmark::DoNotOptimize(peer.item(row));
}

/// The half of the rows in the middle, which then comes back at the end.
template <typename Peer>
void takeBlock(benchmark::State& state)
{
    const int taken = rowsOf(state) / 2;
    Peer& peer = filled<Peer>(state);
    for (auto _ : state) {
        typename Peer::TakenBlock items;
        readList(peer, rowsOf(state));
        timed(state, [&] { items = peer.takeBlock(rowsOf(state) / 4, taken); });
        peer.putBack(items);
    }
    countRows(state, taken);
}

template <typename Peer>
void addRemovals(const char* who, const Sizes& sizes)
{
    add("RemoveOne", who, removeOne<Peer>, sizes);
    add("RemoveBlock", who, removeBlock<Peer>, sizes);
    add("Clear", who, clear<Peer>, sizes);
    add("Destroy", who, destroy<Peer>, sizes);
}

template <typename Peer>
void addTakes(const char* who)
{
    add("TakeOne", who, takeOne<Peer>, fromTenRows);
    add("TakeBlock", who, takeBlock<Peer>, fromTenRows);
}

} // namespace

void addRemoving()
{
    addRemovals<Ours>("ours", fromTenRows);
    addRemovals<Standard>("standard", fromTenRows);
    addRemovals<StringList>("stringlist", fromTenRows);
    addRemovals<QmlList>("qml", fromTenRowsInQml);
    addRemovals<Baseline>("baseline", fromTenRows);
    addTakes<Ours>("ours");
    addTakes<Standard>("standard");
    addTakes<Baseline>("baseline");
}
