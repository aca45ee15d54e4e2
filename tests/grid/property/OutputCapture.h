#pragma once

#include <QString>

#include <cstdio>

/// Collects what the process writes to standard output between start() and stop().
class OutputCapture
{
public:
    OutputCapture();
    ~OutputCapture();
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;

    void start();

    /// The text since start(); standard output is what it was before.
    QString stop();

private:
    std::FILE* m_file;
    int m_original = -1;
};
