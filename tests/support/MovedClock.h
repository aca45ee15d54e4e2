#pragma once

#include <QtGlobal>

#include <sys/time.h>

#include <ctime>

/// Moves the wall clock of a test program, as setting the clock of a vehicle does: date and
/// time change at once, timers and intervals go on. Include it in one source file of the program.
class MovedClock
{
public:
    /// From now on the clock shows `secondsSinceEpoch`, and goes on from there.
    static void set(qint64 secondsSinceEpoch) { offset = secondsSinceEpoch - systemTime().tv_sec; }

    static void reset() { offset = 0; }

    static timespec systemTime()
    {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        return now;
    }

    inline static time_t offset = 0; ///< seconds
};

/// Qt reads the clock by this function, and finds the program's before that of the C library.
extern "C" Q_DECL_EXPORT int gettimeofday(timeval* now, void* /*zone*/) noexcept
{
    const timespec time = MovedClock::systemTime();
    now->tv_sec = time.tv_sec + MovedClock::offset;
    now->tv_usec = static_cast<suseconds_t>(time.tv_nsec / 1000);
    return 0;
}
