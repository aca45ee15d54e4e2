#include "ModelPrinting.h"

#include "ConfiguredOrder.h"
#include "RoleWriter.h"

#include <LibraryDiagnostics.h>
#include <ProgramStart.h>
#include <StandardOutput.h>

namespace
{

QByteArray printed(OutputFormat format, const rivo::feed::Feed& feed,
                   const rivo::models::ListModel& model, const std::function<QByteArray()>& asText)
{
    switch (format) {
    case OutputFormat::Json:
        return modelAsJson(feed, model);
    case OutputFormat::Csv:
        return modelAsCsv(model);
    case OutputFormat::Text:
        break;
    }
    return asText();
}

} // namespace

bool makeWithLibrary(const FeedToolOptions& options, const std::function<bool()>& makeModel)
{
    const ConfiguredOrder order(options.layout.order);
    if (!order.isValid()) {
        reportFailure(QStringLiteral("cannot write a temporary configuration"));
        return false;
    }
    const LibraryDiagnostics diagnostics(options.verbose);
    return makeModel();
}

bool printModel(OutputFormat format, const rivo::feed::Feed& feed,
                const rivo::models::ListModel& model, const std::function<QByteArray()>& asText)
{
    return writeToStandardOutput(printed(format, feed, model, asText));
}
