// The input decides the life of one selection grid: configuration, products with their positions,
// columns, layouts. Model and oracle must agree on everything that can be seen after each call.

#include "Fuzzing.h"

#include "LayoutCase.h"
#include "LayoutRunner.h"

#include <memory>

namespace
{

/// Each is followed by a manager of its own until the end, hence not one for each input.
constexpr int configurationCount = 48;

struct Bench
{
    QVector<Configuration> configurations = randomConfigurations(1, configurationCount);
    LayoutRunner runner;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const auto bench = std::make_unique<Bench>();
    const Case layoutCase = decidedCase(Choices(fuzzing::bytes(data, size)), bench->configurations);
    const Verdict verdict = bench->runner.run(layoutCase);
    if (!verdict.difference.isEmpty())
        fuzzing::fail(verdict.difference + QLatin1Char('\n') + describe(layoutCase));
    return 0;
}
