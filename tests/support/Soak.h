#pragma once

#include <QVector>
#include <QtGlobal>

/// By how much to shorten what tries very many cases: the environment variable RIVO_SOAK_DIVISOR,
/// for where programs run slowly. 1 if it is not set.
inline int soakDivisor() { return qMax(1, qEnvironmentVariableIntValue("RIVO_SOAK_DIVISOR")); }

/// Whether to try what is as large as it may be, which memcheck takes minutes for.
inline bool triesTheLargest() { return soakDivisor() < 200; }

/// What to try in turn: all of these, or one in as many as soakDivisor() says, from the first on.
template <typename Value>
QVector<Value> thinnedOut(const QVector<Value>& values)
{
    QVector<Value> kept;
    for (int at = 0; at < values.size(); at += soakDivisor())
        kept.append(values.at(at));
    return kept;
}
