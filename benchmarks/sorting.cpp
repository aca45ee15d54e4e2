// Rows in another order. Each sort begins with the rows in an order that has nothing to do with the
// one to come; to bring them there is not timed.

#include "Measure.h"
#include "Peers.h"

#include <algorithm>
#include <utility>

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

bool isBefore(int a, int b) { return a < b; }
bool isBefore(const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; }

/// std::stable_sort() of the keys, which are read once, with the rows.
template <typename Field>
void sortItems(PassengerTypeItem** first, PassengerTypeItem** last, Field field)
{
    using Key = decltype((*first->*field)());
    std::vector<std::pair<Key, PassengerTypeItem*>> keyed;
    keyed.reserve(static_cast<std::size_t>(last - first));
    for (PassengerTypeItem** item = first; item != last; ++item)
        keyed.emplace_back(((*item)->*field)(), *item);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return isBefore(a.first, b.first); });
    std::transform(keyed.cbegin(), keyed.cend(), first, [](const auto& key) { return key.second; });
}

template <typename Field>
void sortFloor(benchmark::State& state, int first, int last, Field field)
{
    QVector<PassengerTypeItem*>& items = filled<Floor>(state).items();
    PassengerTypeItem** const begin = items.data();
    for (auto _ : state) {
        sortItems(begin, begin + items.size(), &PassengerTypeItem::pos);
        timed(state, [&] { sortItems(begin + first, begin + last, field); });
    }
    countRows(state, last - first);
}

template <int (PassengerTypeItem::*field)() const>
void sortFloorByNumber(benchmark::State& state)
{
    sortFloor(state, 0, rowsOf(state), field);
}

void sortFloorByText(benchmark::State& state)
{
    sortFloor(state, 0, rowsOf(state), &PassengerTypeItem::description);
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

void sortRangeFloor(benchmark::State& state)
{
    sortFloor(state, firstOfHalf(state), lastOfHalf(state), &PassengerTypeItem::description);
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

} // namespace

void addSorting()
{
    add("SortByRoleText", "ours", sortByRole<Ours, Role::DescriptionRole>, fromTenRows);
    add("SortByRoleText", "proxy", sortByRole<Proxy, Role::DescriptionRole>, fromTenRows);
    add("SortByRoleText", "standard", sortByRole<Standard, Role::DescriptionRole>, fromTenRows);
    add("SortByRoleText", "stringlist", sortTexts, fromTenRows);
    add("SortByRoleText", "floor", sortFloorByText, fromTenRows);

    add("SortByRoleNumber", "ours", sortByRole<Ours, Role::FareProductIdRole>, fromTenRows);
    add("SortByRoleNumber", "proxy", sortByRole<Proxy, Role::FareProductIdRole>, fromTenRows);
    add("SortByRoleNumber", "standard", sortByRole<Standard, Role::FareProductIdRole>, fromTenRows);
    add("SortByRoleNumber", "floor", sortFloorByNumber<&PassengerTypeItem::fareProductId>,
        fromTenRows);

    add("SortRangeByRole", "ours", sortRangeOurs, fromTenRows);
    add("SortRangeByRole", "floor", sortRangeFloor, fromTenRows);

    add("Sort", "ours", sortOurs, fromTenRows);
    add("Sort", "proxy", sortByRole<Proxy, Role::PassengerTypeIdRole>, fromTenRows);
    add("Sort", "standard", sortByRole<Standard, Role::PassengerTypeIdRole>, fromTenRows);
    add("Sort", "floor", sortFloorByNumber<&PassengerTypeItem::id>, fromTenRows);
}
