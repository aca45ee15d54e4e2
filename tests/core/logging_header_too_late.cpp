#include <easylogging++.h>

#include <core/Logging.h>
