#pragma once

#include "FeedSource_p.h"

#include <QByteArray>

#include <string_view>

namespace rivo::feed
{

/// Takes lines out of a stream of bytes. A line ends with LF, CR LF or CR.
class LineReader
{
public:
    LineReader(ByteReader bytes, int longestLine);

    /// Sets `line` to the next one, with its end, until the next call. False at the end of the
    /// stream and if it cannot be read any further.
    bool next(std::string_view& line);

    bool hasFailed() const { return m_hasFailed; } ///< the stream, which has reported it
    bool isTooLong() const { return m_isTooLong; } ///< the next line
    /// The first bytes are those of a text in UTF-16.
    bool isUtf16();

private:
    void fill();
    int lineEnd();

    ByteReader m_bytes;
    const int m_longestLine;
    QByteArray m_buffer;
    int m_begin = 0;
    int m_end = 0;
    bool m_isAtEnd = false;
    bool m_isTooLong = false;
    bool m_hasFailed = false;
};

} // namespace rivo::feed
