#include "OutputCapture.h"

#include <QByteArray>
#include <QtGlobal>

#include <iostream>

#include <unistd.h>

namespace
{

void flush()
{
    std::cout.flush();
    if (std::fflush(stdout) != 0)
        qFatal("OutputCapture: standard output cannot be written");
}

} // namespace

OutputCapture::OutputCapture() : m_file(std::tmpfile())
{
    if (!m_file)
        qFatal("OutputCapture: no temporary file");
}

OutputCapture::~OutputCapture()
{
    if (m_original != -1)
        stop();
    static_cast<void>(std::fclose(m_file));
}

void OutputCapture::start()
{
    flush();
    m_original = dup(STDOUT_FILENO);
    if (m_original == -1 || dup2(fileno(m_file), STDOUT_FILENO) == -1)
        qFatal("OutputCapture: standard output cannot be redirected");
}

QString OutputCapture::stop()
{
    flush();
    if (dup2(m_original, STDOUT_FILENO) == -1)
        qFatal("OutputCapture: standard output cannot be restored");
    close(m_original);
    m_original = -1;

    const int descriptor = fileno(m_file);
    QByteArray text(static_cast<int>(lseek(descriptor, 0, SEEK_CUR)), '\0');
    const bool isRead = pread(descriptor, text.data(), static_cast<std::size_t>(text.size()), 0) ==
                        static_cast<ssize_t>(text.size());
    if (!isRead || ftruncate(descriptor, 0) == -1 || lseek(descriptor, 0, SEEK_SET) == -1)
        qFatal("OutputCapture: the temporary file cannot be read");
    return QString::fromUtf8(text);
}
