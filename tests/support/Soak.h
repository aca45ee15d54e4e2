#pragma once

#include <QtGlobal>

/// By how much to shorten what tries very many cases: the environment variable RIVO_SOAK_DIVISOR,
/// for where programs run slowly. 1 if it is not set.
inline int soakDivisor() { return qMax(1, qEnvironmentVariableIntValue("RIVO_SOAK_DIVISOR")); }
