// The logger's storage of this process: the third-party implementation, compiled once, with every
// class of it visible to the other libraries.

#include "LoggerConfiguration_p.h"

// With every set of macros: no log file unless logging.conf names one, nothing on standard
// output.
#if !defined(ELPP_NO_DEFAULT_LOG_FILE)
#define ELPP_NO_DEFAULT_LOG_FILE
#endif
#if !defined(ELPP_CUSTOM_COUT)
#undef ELPP_COUT
#if defined(ELPP_UNICODE)
#define ELPP_COUT std::wcerr
#else
#define ELPP_COUT std::cerr
#endif
#endif

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wpedantic"
#include <easylogging++.cc> // NOLINT(bugprone-suspicious-include): the library comes as source
#pragma GCC diagnostic pop

INITIALIZE_EASYLOGGINGPP

namespace
{

// In this file, after the storage: static initialisation runs from top to bottom.
[[maybe_unused]] const bool configuredAtLoad = [] {
    el::Loggers::setDefaultConfigurations(rivo::core::defaultLoggerConfiguration(), true);
    return true;
}();

} // namespace
