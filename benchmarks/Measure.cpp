#include "Measure.h"

#include <algorithm>
#include <malloc.h>
#include <tuple>
#include <utility>

namespace
{

struct Added
{
    std::string operation;
    const char* who;
    Work work;
    Sizes size;
    int iterations;
};

std::vector<Added>& allAdded()
{
    static std::vector<Added> all;
    return all;
}

std::vector<std::function<void()>>& cleanups()
{
    static std::vector<std::function<void()>> all;
    return all;
}

/// Leaves nothing behind of another operation or size, nor free memory of any other benchmark: what
/// the heap has kept would change the cost of what is allocated.
void begin(const std::string& operation, const Sizes& size)
{
    static std::pair<std::string, Sizes> current;
    const std::pair<std::string, Sizes> next(operation, size);
    if (next != current)
        cleanUp();
    current = next;
    destroyRemovedRows();
    QCoreApplication::sendPostedEvents();
    malloc_trim(0);
}

} // namespace

void add(const std::string& operation, const char* who, const Work& work,
         const std::vector<Sizes>& sizes, int iterations)
{
    for (const Sizes& size : sizes)
        allAdded().push_back({operation, who, work, size, iterations});
}

void add(const std::string& operation, const char* who, const Work& work, const Sizes& sizes,
         int iterations)
{
    for (const std::int64_t size : sizes)
        allAdded().push_back({operation, who, work, {size}, iterations});
}

void atNextSize(std::function<void()> cleanup) { cleanups().push_back(std::move(cleanup)); }

void cleanUp()
{
    const std::vector<std::function<void()>> all = std::move(cleanups());
    cleanups().clear();
    for (const std::function<void()>& cleanup : all)
        cleanup();
}

void registerAdded()
{
    std::vector<Added>& all = allAdded();
    std::stable_sort(all.begin(), all.end(), [](const Added& a, const Added& b) {
        return std::tie(a.operation, a.size) < std::tie(b.operation, b.size);
    });
    for (const Added& added : all) {
        const auto work = [added](benchmark::State& state) {
            begin(added.operation, added.size);
            added.work(state);
        };
        benchmark::internal::Benchmark* const registered =
            benchmark::RegisterBenchmark((added.operation + "/" + added.who).c_str(), work);
        registered->Args(added.size)->UseManualTime()->Unit(benchmark::kMicrosecond);
        if (added.iterations > 0)
            registered->Iterations(added.iterations);
    }
    all.clear();
}
