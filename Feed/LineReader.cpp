#include "LineReader_p.h"

#include <algorithm>
#include <cstring>

namespace rivo::feed
{

namespace
{

constexpr int blockSize = 64 * 1024;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

LineReader::LineReader(ByteReader bytes, int longestLine)
    : m_bytes(std::move(bytes)), m_longestLine(longestLine)
{
    while (m_end < blockSize && !m_isAtEnd)
        fill();
    if (std::string_view(m_buffer.constData(), static_cast<size_t>(m_end)).substr(0, 3) ==
        byteOrderMark)
        m_begin = static_cast<int>(byteOrderMark.size());
}

bool LineReader::isUtf16()
{
    const std::string_view first(m_buffer.constData(), static_cast<size_t>(std::min(m_end, 2)));
    return first == "\xFF\xFE" || first == "\xFE\xFF";
}

bool LineReader::next(std::string_view& line)
{
    int end = lineEnd();
    while (end < 0) {
        fill();
        m_isTooLong = m_end - m_begin > m_longestLine;
        if (m_isTooLong)
            return false;
        end = lineEnd();
    }
    if (m_hasFailed || end == m_begin)
        return false;
    line = std::string_view(m_buffer.constData() + m_begin, static_cast<size_t>(end - m_begin));
    m_begin = end;
    return true;
}

/// Where the line that begins at m_begin ends; -1 if more of the stream must be read to
/// know.
int LineReader::lineEnd()
{
    const char* const begin = m_buffer.constData() + m_begin;
    const auto size = static_cast<size_t>(m_end - m_begin);
    const auto* const feed = static_cast<const char*>(std::memchr(begin, '\n', size));
    const auto untilFeed = feed ? static_cast<size_t>(feed - begin) : size;
    const auto* const carriage = static_cast<const char*>(std::memchr(begin, '\r', untilFeed));
    if (!carriage)
        return feed ? m_begin + static_cast<int>(untilFeed) + 1 : m_isAtEnd ? m_end : -1;
    const int after = m_begin + static_cast<int>(carriage - begin) + 1;
    if (after < m_end)
        return m_buffer.at(after) == '\n' ? after + 1 : after;
    return m_isAtEnd ? after : -1;
}

/// Reads a block more, before the end of the stream.
void LineReader::fill()
{
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.constData() + m_begin,
                     static_cast<size_t>(m_end - m_begin));
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_buffer.size() < m_end + blockSize)
        m_buffer.resize(m_end + blockSize);
    const qint64 count = m_bytes(m_buffer.data() + m_end, blockSize);
    m_hasFailed = count < 0;
    m_isAtEnd = count <= 0;
    m_end += static_cast<int>(std::max<qint64>(count, 0));
}

} // namespace rivo::feed
