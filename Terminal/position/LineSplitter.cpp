#include "LineSplitter.h"

namespace rivo::position
{

QList<QByteArray> LineSplitter::split(const QByteArray& bytes)
{
    QList<QByteArray> lines;
    int begin = 0;
    while (begin < bytes.size()) {
        const int end = bytes.indexOf('\n', begin);
        const int length = (end < 0 ? bytes.size() : end) - begin;
        m_isTooLong = m_isTooLong || m_unfinished.size() + length > m_longest;
        if (m_isTooLong)
            m_unfinished.clear();
        else
            m_unfinished.append(bytes.constData() + begin, length);
        if (end < 0)
            break;
        if (m_unfinished.endsWith('\r'))
            m_unfinished.chop(1);
        if (!m_unfinished.isEmpty())
            lines.append(m_unfinished);
        clear();
        begin = end + 1;
    }
    return lines;
}

void LineSplitter::clear()
{
    m_unfinished.clear();
    m_isTooLong = false;
}

} // namespace rivo::position
