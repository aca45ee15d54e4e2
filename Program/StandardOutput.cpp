#include "StandardOutput.h"

#include "ProgramStart.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace
{

void flushAll()
{
    std::cout.flush();
    static_cast<void>(std::fflush(stdout));
}

} // namespace

DiagnosticsElsewhere::DiagnosticsElsewhere(Destination destination)
    : m_savedOutput(::dup(STDOUT_FILENO))
{
    flushAll();
    if (destination == Destination::StandardError) {
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        return;
    }
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0)
        return;
    ::dup2(nowhere, STDOUT_FILENO);
    ::close(nowhere);
}

DiagnosticsElsewhere::~DiagnosticsElsewhere()
{
    flushAll();
    if (m_savedOutput < 0)
        return;
    ::dup2(m_savedOutput, STDOUT_FILENO);
    ::close(m_savedOutput);
}

bool writeToStandardOutput(const QByteArray& bytes)
{
    QFile output;
    if (output.open(stdout, QIODevice::WriteOnly) && output.write(bytes) == bytes.size() &&
        output.flush())
        return true;
    reportFailure(QStringLiteral("cannot write to standard output: ") + output.errorString());
    return false;
}

bool standardOutputHasColours()
{
    const QByteArray terminal = qgetenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && !terminal.isEmpty() && terminal != "dumb" &&
           qEnvironmentVariableIsEmpty("NO_COLOR");
}
