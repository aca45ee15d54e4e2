#pragma once

#include <QCoreApplication>
#include <QEvent>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// What all benchmarks share: their names, what is timed, and models that are filled once.
//
// A benchmark is called Operation/who/rows, and the grid's Operation/who/products/zones. `who` is
// "ours"; "standard", "stringlist" and "proxy" for QStandardItemModel, QStringListModel and
// QSortFilterProxyModel over QStandardItemModel; "qml" for QML's ListModel; or "baseline", which
// does the same work by the same contract and nothing else. "refill" clears a model of ours and
// fills it again. "object" is the memory of a QObject without fields. Every benchmark reports the
// seconds per row, or per operation where it is about one row, as the counter `per_row`.

using Work = std::function<void(benchmark::State&)>;
using Sizes = std::vector<std::int64_t>;

inline const Sizes fromTenRows{10, 100, 1000, 10000, 100000};
inline const Sizes fromTenRowsInQml{10, 100, 1000, 10000};

/// Adds a benchmark for each size. They run by operation, and of one operation by size, so that
/// those that are compared come one after the other.
void add(const std::string& operation, const char* who, const Work& work,
         const std::vector<Sizes>& sizes, int iterations = 0);

/// The same where a size is one number.
void add(const std::string& operation, const char* who, const Work& work, const Sizes& sizes,
         int iterations = 0);

/// What an event loop would do next for rows that were removed with deleteLater().
inline void destroyRemovedRows()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Time that the processor has given to this thread, in seconds: what else the machine does is not
/// in it.
inline double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// The shortest time between two readings of that clock.
inline double leastProcessorTime()
{
    static const double least = [] {
        double found = 1.0;
        for (int i = 0; i < 10000; ++i) {
            const double start = processorTime();
            found = qMin(found, processorTime() - start);
        }
        return found;
    }();
    return least;
}

/// Only `work` counts of an iteration, less what the clock takes. No event is left when it starts,
/// nor the gap of one that was sent on its own, which each later sendPostedEvents() of a kind of
/// event would look at again.
template <typename Timed>
void timed(benchmark::State& state, const Timed& work)
{
    const double least = leastProcessorTime();
    destroyRemovedRows();
    QCoreApplication::sendPostedEvents();
    const double start = processorTime();
    work();
    state.SetIterationTime(qMax(1e-9, processorTime() - start - least));
}

/// Declares that an iteration handles that many rows.
inline void countRows(benchmark::State& state, std::int64_t rows)
{
    state.counters["per_row"] = benchmark::Counter(static_cast<double>(rows),
                                                   benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}

inline int rowsOf(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

/// Called before the next operation or size begins.
void atNextSize(std::function<void()> cleanup);

/// The full model of one kind, which is kept for the other benchmarks of the operation and size.
template <typename Peer>
Peer& filled(int rows)
{
    static std::unique_ptr<Peer> peer;
    if (!peer) {
        peer = std::make_unique<Peer>();
        peer->appendBlock(0, rows);
        atNextSize([] { peer.reset(); });
    }
    return *peer;
}

template <typename Peer>
Peer& filled(const benchmark::State& state)
{
    return filled<Peer>(rowsOf(state));
}

/// Leaves the heap as a model of that many rows does that was there and is gone.
template <typename Peer>
void leaveHeapOf(int rows)
{
    Peer peer;
    peer.appendBlock(0, rows);
}

/// Hands what was added to the framework.
void registerAdded();
/// What atNextSize() asked for, at the end.
void cleanUp();

void addRows();
void addReading();
void addChanging();
void addSorting();
void addRemoving();
void addGrid();
void addViews();
void addSyncing();
void addMemory();
