// Rows that come: one by one, in a block, in front of all others.

#include "Measure.h"
#include "Peers.h"
#include "QmlPeer.h"

namespace
{

template <typename Peer>
void appendEach(Peer& peer, int rows)
{
    for (int number = 0; number < rows; ++number)
        peer.appendOne(number);
}

void appendEach(QmlList& peer, int rows) { peer.appendEach(0, rows); }

// Each iteration fills a model that was empty; to make and to destroy it is not timed.

template <typename Peer>
void appendOne(benchmark::State& state)
{
    leaveHeapOf<Peer>(rowsOf(state));
    for (auto _ : state) {
        Peer peer;
        timed(state, [&] { appendEach(peer, rowsOf(state)); });
    }
    countRows(state, rowsOf(state));
}

template <typename Peer>
void appendBlock(benchmark::State& state)
{
    leaveHeapOf<Peer>(rowsOf(state));
    for (auto _ : state) {
        Peer peer;
        timed(state, [&] { peer.appendBlock(0, rowsOf(state)); });
    }
    countRows(state, rowsOf(state));
}

template <typename Peer>
void insertInFront(benchmark::State& state)
{
    constexpr int inserted = 8;
    Peer& peer = filled<Peer>(state);
    for (auto _ : state) {
        timed(state, [&] {
            for (int number = 0; number < inserted; ++number)
                peer.insertInFront(number);
        });
        peer.removeBlock(0, inserted);
    }
    countRows(state, inserted);
}

template <typename Peer>
void addFor(const char* who, const Sizes& sizes)
{
    add("AppendOne", who, appendOne<Peer>, sizes);
    add("AppendBlock", who, appendBlock<Peer>, sizes);
    add("InsertFront", who, insertInFront<Peer>, sizes);
}

} // namespace

void addRows()
{
    addFor<Ours>("ours", fromTenRows);
    addFor<Standard>("standard", fromTenRows);
    addFor<StringList>("stringlist", fromTenRows);
    addFor<QmlList>("qml", fromTenRowsInQml);
    addFor<Baseline>("baseline", fromTenRows);
}
