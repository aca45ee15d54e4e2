// Bytes and blocks that a row takes: what was asked for, without the heap's own. They are counted,
// so that they are the same in every run; the time of these benchmarks means nothing.

#include "AllocationCount.h"

#include "Measure.h"
#include "Peers.h"
#include "QmlPeer.h"

namespace
{

/// A QObject without fields, child of an owner, with one connection: less no row that is an object
/// can take.
class Objects
{
public:
    void appendBlock(int first, int count)
    {
        for (int number = first; number < first + count; ++number)
            QObject::connect(new QObject(&m_owner), &QObject::objectNameChanged, &m_listener,
                             &Listener::note);
    }

private:
    Listener m_listener;
    QObject m_owner;
};

template <typename Peer>
void bytesPerRow(benchmark::State& state)
{
    // What is made once for the process does not belong to the rows.
    {
        Peer peer;
        peer.appendBlock(0, 1);
    }
    std::size_t bytes = 0;
    std::size_t blocks = 0;
    for (auto _ : state) {
        Peer peer;
        const AllocationCount count;
        timed(state, [&] { peer.appendBlock(0, rowsOf(state)); });
        bytes = count.bytes();
        blocks = count.blocks();
    }
    state.counters["bytes_per_row"] = static_cast<double>(bytes) / rowsOf(state);
    state.counters["blocks_per_row"] = static_cast<double>(blocks) / rowsOf(state);
}

template <typename Peer>
void addFor(const char* who)
{
    add("Memory", who, bytesPerRow<Peer>, Sizes{100, 10000}, 1);
}

} // namespace

void addMemory()
{
    if (!AllocationCount::isPossible())
        return;
    addFor<Ours>("ours");
    addFor<Standard>("standard");
    addFor<StringList>("stringlist");
    addFor<QmlList>("qml");
    addFor<Baseline>("baseline");
    addFor<Objects>("object");
}
