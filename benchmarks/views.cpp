// Models with a GridView attached: up to the tiles, but without drawing them.

#include "Measure.h"
#include "Peers.h"
#include "QmlPeer.h"
#include "Tiles.h"

namespace
{

// FillInView: a block into an empty model that is shown.

template <typename Peer>
void fill(benchmark::State& state)
{
    Tiles tiles;
    Peer peer;
    tiles.show(&peer.model());
    for (auto _ : state) {
        timed(state, [&] {
            peer.appendBlock(0, rowsOf(state));
            tiles.update();
        });
        if (tiles.count() < qMin(rowsOf(state), 24))
            state.SkipWithError("the rows are not on the screen");
        peer.clear();
        tiles.update();
    }
    tiles.show(nullptr);
    countRows(state, rowsOf(state));
}

// ClearInView: all rows of a model that is shown.

template <typename Peer>
void clear(benchmark::State& state)
{
    Tiles tiles;
    Peer peer;
    tiles.show(&peer.model());
    for (auto _ : state) {
        peer.appendBlock(0, rowsOf(state));
        tiles.update();
        timed(state, [&] {
            peer.clear();
            tiles.update();
        });
    }
    tiles.show(nullptr);
    countRows(state, rowsOf(state));
}

// ChangeInView: one field of the first row, whose tile is in sight.

template <typename Peer>
void change(benchmark::State& state)
{
    constexpr int changes = 16;
    Tiles tiles;
    Peer& peer = filled<Peer>(state);
    tiles.show(&peer.model());
    tiles.update();
    static int value = 0;
    for (auto _ : state) {
        timed(state, [&] {
            for (int i = 0; i < changes; ++i)
                peer.change(0, ++value);
            tiles.update();
        });
    }
    tiles.show(nullptr);
    countRows(state, changes);
}

template <typename Peer>
void addFor(const char* who, const Sizes& sizes)
{
    add("FillInView", who, fill<Peer>, sizes);
    add("ClearInView", who, clear<Peer>, sizes);
    add("ChangeInView", who, change<Peer>, sizes);
}

} // namespace

void addViews()
{
    addFor<Ours>("ours", fromTenRows);
    addFor<Standard>("standard", fromTenRows);
    addFor<QmlList>("qml", fromTenRowsInQml);
}
