// Rows in another order. Each sort begins with the rows in an order that has nothing to do with the
// one to come; to bring them there is not timed.

#include "Measure.h"
#include "Peers.h"

#include <algorithm>

namespace
{

using Role = PassengerTypeItem::Role;

constexpr Role unrelatedRole = Role::PosRole;

template <typename Peer, Role role>
void sortByRole(benchmark::State& state)
{
    Peer& peer = filled<Peer>(state);
    for (auto _ : state) {
        peer.sortBy(unrelatedRole);
        timed(state, [&] { peer.sortBy(role); });
    }
    countRows(state, rowsOf(state));
}

void sortTexts(benchmark::State& state)
{
    StringList& list = filled<StringList>(state);
    for (auto _ : state) {
        list.appendBlock(0, rowsOf(state));
        timed(state, [&] { list.model().sort(0); });
    }
    countRows(state, rowsOf(state));
}

// SortRangeByRole: the half of the rows in the middle, by text. Only the library has that.

int firstOfHalf(const benchmark::State& state) { return rowsOf(state) / 4; }
int lastOfHalf(const benchmark::State& state) { return firstOfHalf(state) + rowsOf(state) / 2; }

void sortRangeOurs(benchmark::State& state)
{
    Ours& ours = filled<Ours>(state);
    for (auto _ : state) {
        ours.sortBy(unrelatedRole);
        timed(state, [&] {
            ours.model().sortRangeByRole(0, Qt::AscendingOrder, firstOfHalf(state),
                                         lastOfHalf(state), Role::DescriptionRole);
        });
    }
    countRows(state, lastOfHalf(state) - firstOfHalf(state));
}

/// A heap sort.
void sortRangeBaseline(benchmark::State& state)
{
    Baseline& baseline = filled<Baseline>(state);
    BareModel::Rows& rows = baseline.model().rows();
    const auto before = [](const rivo::models::ListItem* a, const rivo::models::ListItem* b) {
        return isBefore(a, b, Role::DescriptionRole);
    };
    for (auto _ : state) {
        baseline.sortBy(unrelatedRole);
        timed(state, [&] {
            const auto first = rows.begin() + firstOfHalf(state);
            const auto last = rows.begin() + lastOfHalf(state);
            std::make_heap(first, last, before);
            std::sort_heap(first, last, before);
        });
    }
    countRows(state, lastOfHalf(state) - firstOfHalf(state));
}

// Sort: by the identity of the rows.

void sortOurs(benchmark::State& state)
{
    Ours& ours = filled<Ours>(state);
    for (auto _ : state) {
        ours.sortBy(unrelatedRole);
        timed(state, [&] { ours.model().sort(0, Qt::AscendingOrder); });
    }
    countRows(state, rowsOf(state));
}

void sortBaseline(benchmark::State& state)
{
    Baseline& baseline = filled<Baseline>(state);
    BareModel::Rows& rows = baseline.model().rows();
    for (auto _ : state) {
        baseline.sortBy(unrelatedRole);
        timed(state, [&] {
            std::sort(rows.begin(), rows.end(),
                      [](const rivo::models::ListItem* a, const rivo::models::ListItem* b) {
                          return a->id() < b->id();
                      });
        });
    }
    countRows(state, rowsOf(state));
}

} // namespace

void addSorting()
{
    add("SortByRoleText", "ours", sortByRole<Ours, Role::DescriptionRole>, fromTenRows);
    add("SortByRoleText", "proxy", sortByRole<Proxy, Role::DescriptionRole>, fromTenRows);
    add("SortByRoleText", "standard", sortByRole<Standard, Role::DescriptionRole>, fromTenRows);
    add("SortByRoleText", "stringlist", sortTexts, fromTenRows);
    add("SortByRoleText", "baseline", sortByRole<Baseline, Role::DescriptionRole>, fromTenRows);

    add("SortByRoleNumber", "ours", sortByRole<Ours, Role::FareProductIdRole>, fromTenRows);
    add("SortByRoleNumber", "proxy", sortByRole<Proxy, Role::FareProductIdRole>, fromTenRows);
    add("SortByRoleNumber", "standard", sortByRole<Standard, Role::FareProductIdRole>, fromTenRows);
    add("SortByRoleNumber", "baseline", sortByRole<Baseline, Role::FareProductIdRole>, fromTenRows);

    add("SortRangeByRole", "ours", sortRangeOurs, fromTenRows);
    add("SortRangeByRole", "baseline", sortRangeBaseline, fromTenRows);

    add("Sort", "ours", sortOurs, fromTenRows);
    add("Sort", "proxy", sortByRole<Proxy, Role::PassengerTypeIdRole>, fromTenRows);
    add("Sort", "standard", sortByRole<Standard, Role::PassengerTypeIdRole>, fromTenRows);
    add("Sort", "baseline", sortBaseline, fromTenRows);
}
