// Cost of laying out the selection grid, per product, from a small depot's list to far more than
// any operator has. The figure to compare is "per_product": near-linear growth keeps it flat.

#include "PassengerTypesModel.h"

#include <core/Logging.h>

#include <QCoreApplication>
#include <QEvent>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace
{

const QStringList types{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1"),
                        QStringLiteral("PT_SCHOOLBOY"), QStringLiteral("PT_LFS")};

enum class Positions { None, Shuffled };

void addProducts(PassengerTypesModel& model, int count, int zones, Positions positions)
{
    QVector<int> shuffled(count);
    std::iota(shuffled.begin(), shuffled.end(), 1);
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    for (int i = 0; i < count; ++i)
        model.addItem(i % types.size(), QStringLiteral("type"), types.at(i % types.size()),
                      QString(), 1.5, i / types.size(), QStringLiteral("product"), false, 0,
                      (i / types.size()) % zones, QStringLiteral("#336699"), false, 0.0, false,
                      positions == Positions::None ? -1 : shuffled.at(i));
}

void destroyRemovedRows() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

void layOut(benchmark::State& state, Positions positions)
{
    const int count = static_cast<int>(state.range(0));
    const int zones = static_cast<int>(state.range(1));
    PassengerTypesModel model(QCoreApplication::instance());
    model.setSupportedPassengerTypeCodes(types);
    for (auto _ : state) {
        state.PauseTiming();
        model.clearData();
        destroyRemovedRows();
        addProducts(model, count, zones, positions);
        state.ResumeTiming();
        model.sortAndRegroup(types, types.size());
    }
    model.clearData();
    destroyRemovedRows();
    state.counters["per_product"] = benchmark::Counter(
        count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void byZone(benchmark::State& state) { layOut(state, Positions::None); }

void byPosition(benchmark::State& state) { layOut(state, Positions::Shuffled); }

void checkForPosDuplicates(benchmark::State& state)
{
    PassengerTypesModel model(QCoreApplication::instance());
    QVector<sProduct> products(static_cast<int>(state.range(0)));
    for (int i = 0; i < products.size(); ++i)
        products[i].pos = i + 1;
    for (auto _ : state)
        benchmark::DoNotOptimize(model.checkForPosDuplicates(products));
    state.counters["per_product"] = benchmark::Counter(
        static_cast<double>(products.size()),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(byZone)
    ->Args({500, 10})
    ->Args({5000, 100})
    ->Args({50000, 1000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(byPosition)
    ->Args({500, 10})
    ->Args({5000, 100})
    ->Args({50000, 1000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(checkForPosDuplicates)->Arg(500)->Arg(50000)->Unit(benchmark::kMicrosecond);

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::Enabled, "false");
    logger->reconfigure();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
