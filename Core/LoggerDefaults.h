#pragma once

#include <core/Logging.h>

namespace rivo::core
{

/// What every logger starts with: one readable line per record on standard error, no log file.
el::Configurations defaultLoggerConfiguration();

} // namespace rivo::core
