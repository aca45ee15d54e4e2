#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryFile>

#include <cstdio>
#include <iostream>
#include <unistd.h>

/// Collects what the process writes to standard output while it lives. Keep it in a scope without
/// assertions: their messages go to standard output too.
class StdoutCapture
{
public:
    StdoutCapture()
    {
        flush();
        if (!m_file.open())
            qFatal("Standard output cannot be captured: %s", qPrintable(m_file.errorString()));
        m_saved = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }

    ~StdoutCapture()
    {
        flush();
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
    }

    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

    /// Everything written so far.
    QByteArray text() const
    {
        flush();
        QFile file(m_file.fileName()); // opened anew: the capture's own handle stands at the end
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    static void flush()
    {
        std::cout.flush();
        std::fflush(stdout);
    }

    QTemporaryFile m_file;
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
