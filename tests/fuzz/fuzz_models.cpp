// The first byte chooses one of the six models, the others operations on it and their arguments.
// After each one the model is compared with a list of what it must show.

#include "Fuzzing.h"

#include "LibraryModels.h"
#include "ModelBattery.h"

#include <array>
#include <memory>

namespace
{

using Maker = std::unique_ptr<rivo::models::ListModel> (*)(QObject* owner);

template <typename Model>
std::unique_ptr<rivo::models::ListModel> make(QObject* owner)
{
    return std::make_unique<battery::TopLevelOnly<Model>>(owner);
}

constexpr std::array<Maker, 6> makers{make<PassengerTypesModel>, make<ShoppingBasketModel>,
                                      make<FareProductsModel>,   make<ZReportModel>,
                                      make<AssetsModel>,         make<PeripheralsModel>};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::size_t kind = data[0] % makers.size();
    QObject owner; // of the prototype row; the model goes first
    const std::unique_ptr<rivo::models::ListModel> model = makers.at(kind)(&owner);
    {
        battery::RandomRun run(*model, libraryModels().at(kind).itemClass,
                               Choices(fuzzing::bytes(data + 1, size - 1)));
        while (!run.isOver()) {
            const QString problem = run.step();
            if (!problem.isEmpty())
                fuzzing::fail(problem);
        }
    }
    runDeferredDeletions();
    return 0;
}
