#include "LibraryDiagnostics.h"

#include <core/ConfigManager.h>
#include <core/Logging.h>

#include <QDir>

namespace
{

void keepInfoOffTheTerminal()
{
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::ToStandardOutput,
                                  "false");
    logger->reconfigure();
}

} // namespace

LibraryDiagnostics::LibraryDiagnostics(bool verbose)
    : m_notes(verbose ? DiagnosticsElsewhere::Destination::StandardError
                      : DiagnosticsElsewhere::Destination::Nowhere)
{
    // Reads logging.conf, which would otherwise undo what follows.
    rivo::core::ConfigManager::instance(QDir::homePath(), QStringLiteral("ProjectLink/"));
    if (!verbose)
        keepInfoOffTheTerminal();
}
