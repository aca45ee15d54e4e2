#include "LoggerDefaults.h"

namespace rivo::core
{

el::Configurations defaultLoggerConfiguration()
{
    el::Configurations configuration;
    configuration.setToDefault();
    configuration.setGlobally(el::ConfigurationType::ToFile, "false");
    configuration.setGlobally(el::ConfigurationType::Format,
                              "%datetime{%Y-%M-%d %H:%m:%s.%g} %level %loc %msg");
    return configuration;
}

} // namespace rivo::core
