#include "ByteLink.h"
#include "EscPosPrinter.h"

#include <Config.h>
#include <PictureBounds.h>

namespace rivo::printer
{

std::unique_ptr<EscPosPrinter> makePrinter(const config::PrinterConfig& config,
                                           const ticket::PaperContext& context)
{
    EscPosFormat format;
    format.codePage = CodePage(config.codePage, config.codePageNumber);
    format.columns = config.columns;
    format.dotsPerLine = config.dotsPerLine;
    if (ticket::isPictureWithinBounds(config.logo))
        format.logo = QImage(config.logo);
    format.cut = config.cut;
    format.nativeCode = config.nativeCode;
    EscPosPrinter::Times times;
    times.answer = config.timeout;
    const auto proof = config.confirmation == QLatin1String("sensor")
                           ? EscPosPrinter::Proof::Sensor
                           : EscPosPrinter::Proof::ProcessId;
    return std::make_unique<EscPosPrinter>(makeLink(config), std::move(format), context, times,
                                           proof);
}

} // namespace rivo::printer
