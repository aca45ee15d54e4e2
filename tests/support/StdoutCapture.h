#pragma once

#include <QByteArray>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

/// Collects what the process writes to standard output while it lives. Keep it in a scope without
/// assertions: their messages go to standard output too. All use one file: do not nest them.
class StdoutCapture
{
public:
    StdoutCapture()
    {
        flush();
        require(ftruncate(file(), 0) == 0 && lseek(file(), 0, SEEK_SET) == 0);
        m_saved = dup(STDOUT_FILENO);
        require(m_saved != -1 && dup2(file(), STDOUT_FILENO) != -1);
    }

    ~StdoutCapture()
    {
        flush();
        require(dup2(m_saved, STDOUT_FILENO) != -1);
        close(m_saved);
    }

    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

    /// Everything written so far.
    QByteArray text() const
    {
        flush();
        QByteArray text(static_cast<int>(lseek(file(), 0, SEEK_CUR)), '\0');
        require(pread(file(), text.data(), static_cast<std::size_t>(text.size()), 0) ==
                text.size());
        return text;
    }

private:
    static int file()
    {
        static std::FILE* const file = std::tmpfile();
        require(file != nullptr);
        return fileno(file);
    }

    static void flush()
    {
        std::cout.flush();
        std::fflush(stdout);
    }

    static void require(bool isDone)
    {
        if (!isDone)
            std::abort();
    }

    int m_saved = -1;
};

/// What `action` writes to standard output.
template <typename Action>
QByteArray stdoutOf(Action action)
{
    const StdoutCapture capture;
    action();
    return capture.text();
}
