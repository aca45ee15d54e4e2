// Linked into test programs that run in an emulator. The emulator answers Qt's question whether the
// kernel waits for processes through descriptors, but cannot start one that way. QProcess does not
// notice: it takes the process for running, with the number -1, and to end that one is to end every
// process of the user.

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

/// The C library's function of this name. No static variable: its guard may need the function.
template <typename Function>
Function original(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

} // namespace

/// Says no to Qt's question, so that it starts and awaits processes in the traditional way.
extern "C" __attribute__((visibility("default"))) long syscall(long number, ...) noexcept
{
    constexpr long waitForDescriptor = 3; // P_PIDFD, which not every <sys/wait.h> has
    long words[6];
    va_list arguments;
    va_start(arguments, number);
    for (long& word : words)
        word = va_arg(arguments, long);
    va_end(arguments);
    if (number == SYS_waitid && words[0] == waitForDescriptor && words[1] == INT_MAX) {
        errno = EINVAL;
        return -1;
    }
    return original<long (*)(long, ...)>("syscall")(number, words[0], words[1], words[2], words[3],
                                                    words[4], words[5]);
}

/// No test means every process there is.
extern "C" __attribute__((visibility("default"))) int kill(pid_t process, int signal) noexcept
{
    if (process == -1) {
        std::fputs("a test was about to signal every process\n", stderr);
        std::abort();
    }
    return original<int (*)(pid_t, int)>("kill")(process, signal);
}
