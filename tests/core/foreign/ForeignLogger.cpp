// The logger's storage of a core library that knows nothing of ours.

#define ELPP_NO_DEFAULT_LOG_FILE
#define ELPP_CUSTOM_COUT std::cerr
#include <easylogging++.cc>

INITIALIZE_EASYLOGGINGPP
