// Compiled with what the core library's target asks for and nothing of ours.

#include <core/Logging.h>

#include <ctime>

static_assert(sizeof(std::time_t) == 8);
