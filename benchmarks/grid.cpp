// The selection grid: its products collected, laid out in both ways and checked.

#include "Measure.h"
#include "PassengerTypesModel.h"
#include "Peers.h"
#include "Records.h"
#include "Tiles.h"
#include "addProduct.h"

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

const QStringList types{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1"),
                        QStringLiteral("PT_SCHOOLBOY"), QStringLiteral("PT_LFS")};

constexpr int noPosition = -1;

enum class Layout { ByZone, ByPosition };

/// Products and zones: from what a small depot has to far more than any operator.
const std::vector<Sizes> grids{{24, 2}, {100, 5}, {1000, 20}, {10000, 200}, {100000, 2000}};
const std::vector<Sizes> gridsInView{{24, 2}, {100, 5}, {1000, 20}, {10000, 200}};

/// `count` products in no order: each fare product of a zone for each of the types. As in a feed,
/// those of one fare product share its name, those of one type its description, and all share a few
/// colours; the icon is that of the type.
QVector<sProduct> products(int count, int zones, Layout layout)
{
    QVector<sProduct> made = records(count);
    QVector<int> places(count);
    for (int place = 0; place < count; ++place)
        places[place] = place;
    std::sort(places.begin(), places.end(),
              [&made](int a, int b) { return made.at(a).pos < made.at(b).pos; });
    for (int i = 0; i < count; ++i) {
        const int place = places.at(i);
        const int type = place % types.size();
        sProduct& product = made[i];
        product.passengerTypeCode = PassengerTypesModel::codeMap.value(types.at(type));
        product.description = types.at(type);
        product.icon.clear();
        product.fareProductId = place / types.size();
        product.fareProductName = record(product.fareProductId).fareProductName;
        product.fareProductColor = record(product.fareProductId % 8).fareProductColor;
        product.toStopGroupId = product.fareProductId % zones;
        product.pos = layout == Layout::ByZone ? noPosition : place + 1;
    }
    return made;
}

void collect(PassengerTypesModel& model, const QVector<sProduct>& all)
{
    for (const sProduct& product : all)
        addProduct(model, product);
}

QVector<sProduct> productsFor(const benchmark::State& state, Layout layout)
{
    return products(rowsOf(state), static_cast<int>(state.range(1)), layout);
}

std::unique_ptr<PassengerTypesModel> newModel()
{
    auto model = std::make_unique<PassengerTypesModel>(QCoreApplication::instance());
    model->setSupportedPassengerTypeCodes(types);
    return model;
}

// GridAddItem: one product collected, on a heap that has the memory for all of them.

void leaveHeapOfRecords(const QVector<sProduct>& all)
{
    QVector<sProduct> collected;
    for (const sProduct& product : all)
        collected.append(product);
}

QStringList typeCodesOf(const QVector<sProduct>& all)
{
    QStringList codes;
    for (const sProduct& product : all)
        codes.append(PassengerTypesModel::codeMap.key(
            static_cast<PassengerTypesModel::PassengerType>(product.passengerTypeCode)));
    return codes;
}

void addItem(benchmark::State& state)
{
    const QVector<sProduct> all = products(rowsOf(state), 20, Layout::ByPosition);
    const QStringList codes = typeCodesOf(all);
    leaveHeapOfRecords(all);
    for (auto _ : state) {
        const auto model = newModel();
        timed(state, [&] {
            for (int i = 0; i < all.size(); ++i)
                addProduct(*model, all.at(i), codes.at(i));
        });
    }
    countRows(state, rowsOf(state));
}

/// Default records, filled, with their types looked up.
void addItemBaseline(benchmark::State& state)
{
    const QVector<sProduct> all = products(rowsOf(state), 20, Layout::ByPosition);
    const QStringList codes = typeCodesOf(all);
    leaveHeapOfRecords(all);
    for (auto _ : state) {
        QVector<sProduct> collected;
        timed(state, [&] {
            for (int i = 0; i < all.size(); ++i) {
                sProduct made;
                made = all.at(i);
                made.passengerTypeCode = PassengerTypesModel::codeMap.value(codes.at(i));
                collected.append(std::move(made));
            }
        });
    }
    countRows(state, rowsOf(state));
}

// GridByZone, GridByPosition: the layout, to the last tile.

template <Layout layout>
void layOut(benchmark::State& state)
{
    const QVector<sProduct> all = productsFor(state, layout);
    const auto model = newModel();
    leaveHeapOf<Baseline>(rowsOf(state));
    for (auto _ : state) {
        model->clearData();
        destroyRemovedRows();
        collect(*model, all);
        timed(state, [&] { model->sortAndRegroup(types, types.size()); });
    }
    model->clearData();
    destroyRemovedRows();
    countRows(state, rowsOf(state));
}

template <Layout layout>
void sortRecords(QVector<sProduct>& all)
{
    if (layout == Layout::ByPosition)
        std::stable_sort(all.begin(), all.end(),
                         [](const sProduct& a, const sProduct& b) { return a.pos < b.pos; });
    else
        std::stable_sort(all.begin(), all.end(), [](const sProduct& a, const sProduct& b) {
            return std::tie(a.fareProductId, a.toStopGroupId) <
                   std::tie(b.fareProductId, b.toStopGroupId);
        });
}

/// The same records sorted once, and a tile appended for each.
template <Layout layout>
void sortAndMakeTiles(benchmark::State& state)
{
    const QVector<sProduct> all = productsFor(state, layout);
    leaveHeapOf<Baseline>(rowsOf(state));
    for (auto _ : state) {
        QVector<sProduct> sorted = all;
        sorted.detach();
        Baseline baseline;
        timed(state, [&] {
            sortRecords<layout>(sorted);
            for (const sProduct& product : qAsConst(sorted))
                baseline.append(product);
        });
    }
    countRows(state, rowsOf(state));
}

/// The layout with a GridView attached, to the tiles in sight.
template <Layout layout>
void layOutInView(benchmark::State& state)
{
    const QVector<sProduct> all = productsFor(state, layout);
    const auto model = newModel();
    Tiles tiles;
    tiles.show(model.get());
    leaveHeapOf<Baseline>(rowsOf(state));
    for (auto _ : state) {
        model->clearData();
        destroyRemovedRows();
        tiles.update();
        collect(*model, all);
        timed(state, [&] {
            model->sortAndRegroup(types, types.size());
            tiles.update();
        });
        if (tiles.count() < qMin(rowsOf(state), 24))
            state.SkipWithError("the tiles are not on the screen");
    }
    tiles.show(nullptr);
    model->clearData();
    destroyRemovedRows();
    countRows(state, rowsOf(state));
}

// GridDuplicates: the check for products at one position, none of which there is.

void checkForDuplicates(benchmark::State& state)
{
    const auto model = newModel();
    const QVector<sProduct> all = products(rowsOf(state), 20, Layout::ByPosition);
    for (auto _ : state)
        timed(state, [&] { benchmark::DoNotOptimize(model->checkForPosDuplicates(all)); });
    countRows(state, rowsOf(state));
}

/// The positions sorted, and neighbours compared.
void checkBaseline(benchmark::State& state)
{
    const QVector<sProduct> all = products(rowsOf(state), 20, Layout::ByPosition);
    for (auto _ : state) {
        timed(state, [&] {
            std::vector<int> positions;
            positions.reserve(static_cast<std::size_t>(all.size()));
            for (const sProduct& product : all)
                positions.push_back(product.pos);
            std::sort(positions.begin(), positions.end());
            benchmark::DoNotOptimize(std::adjacent_find(positions.cbegin(), positions.cend()));
        });
    }
    countRows(state, rowsOf(state));
}

} // namespace

void addGrid()
{
    const Sizes sizes{24, 100, 1000, 10000, 100000};
    add("GridAddItem", "ours", addItem, sizes);
    add("GridAddItem", "baseline", addItemBaseline, sizes);
    add("GridByZone", "ours", layOut<Layout::ByZone>, grids);
    add("GridByZone", "baseline", sortAndMakeTiles<Layout::ByZone>, grids);
    add("GridByPosition", "ours", layOut<Layout::ByPosition>, grids);
    add("GridByPosition", "baseline", sortAndMakeTiles<Layout::ByPosition>, grids);
    add("GridByZoneInView", "ours", layOutInView<Layout::ByZone>, gridsInView);
    add("GridByPositionInView", "ours", layOutInView<Layout::ByPosition>, gridsInView);
    add("GridDuplicates", "ours", checkForDuplicates, sizes);
    add("GridDuplicates", "baseline", checkBaseline, sizes);
}
