// The first byte chooses one of the six models, the others operations on it and their arguments.
// After each one the model is compared with a list of what it must show.

#include "Fuzzing.h"

#include "LibraryModels.h"
#include "ModelBattery.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const LibraryModel& described = libraryModels().at(data[0] % libraryModels().size());
    QObject owner; // of the prototype row; the model goes first
    const std::unique_ptr<rivo::models::ListModel> model(described.makeTopLevelOnly(&owner));
    {
        battery::RandomRun run(*model, described.itemClass,
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
