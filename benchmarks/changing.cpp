// Rows that change: from the call that sets a field to the slot that gets the row.

#include "Measure.h"
#include "Peers.h"
#include "QmlPeer.h"

namespace
{

/// Connects a listener to the signals that a view uses.
template <typename Peer>
void listen(Peer& peer, Listener& listener)
{
    QObject::connect(&peer.model(), &QAbstractItemModel::dataChanged, &listener, &Listener::note);
}

template <typename Peer>
void change(benchmark::State& state, const QVector<int>& rows)
{
    Peer& peer = filled<Peer>(state);
    Listener listener;
    listen(peer, listener);
    static int value = 0; // never the one that is there
    for (auto _ : state) {
        timed(state, [&] {
            for (const int row : rows)
                peer.change(row, ++value);
        });
    }
    if (listener.notes() < rows.size())
        state.SkipWithError("no change was signalled");
    countRows(state, rows.size());
}

constexpr int changes = 64;

template <typename Peer>
void changeFirst(benchmark::State& state)
{
    change<Peer>(state, QVector<int>(changes, 0));
}

template <typename Peer>
void changeMiddle(benchmark::State& state)
{
    change<Peer>(state, QVector<int>(changes, rowsOf(state) / 2));
}

template <typename Peer>
void changeLast(benchmark::State& state)
{
    change<Peer>(state, QVector<int>(changes, rowsOf(state) - 1));
}

/// Rows all over the model, in no order: no row is the one of the last change.
template <typename Peer>
void changeAny(benchmark::State& state)
{
    QVector<int> rows;
    for (int i = 0; i < changes; ++i)
        rows.append(record(i).fareProductId % rowsOf(state));
    change<Peer>(state, rows);
}

/// Rows that have not changed since they came.
template <typename Peer>
void changeNew(benchmark::State& state)
{
    QVector<int> rows;
    for (int row = 0; row < rowsOf(state); row += qMax(1, rowsOf(state) / changes))
        rows.append(row);
    leaveHeapOf<Peer>(rowsOf(state));
    for (auto _ : state) {
        Peer peer;
        peer.appendBlock(0, rowsOf(state));
        Listener listener;
        listen(peer, listener);
        timed(state, [&] {
            for (const int row : qAsConst(rows))
                peer.change(row, 1);
        });
    }
    countRows(state, rows.size());
}

template <typename Peer>
void addFor(const char* who, const Sizes& sizes)
{
    add("ChangeFirst", who, changeFirst<Peer>, sizes);
    add("ChangeMiddle", who, changeMiddle<Peer>, sizes);
    add("ChangeLast", who, changeLast<Peer>, sizes);
    add("ChangeAny", who, changeAny<Peer>, sizes);
    // So few times because each fills a model.
    add("ChangeNew", who, changeNew<Peer>, sizes, 3);
}

} // namespace

void addChanging()
{
    addFor<Ours>("ours", fromTenRows);
    addFor<Standard>("standard", fromTenRows);
    addFor<StringList>("stringlist", fromTenRows);
    addFor<QmlList>("qml", fromTenRowsInQml);
    addFor<Baseline>("baseline", fromTenRows);
}
