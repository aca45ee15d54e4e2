#pragma once

#include "Fix.h"
#include "LineSplitter.h"

#include <QNmeaPositionInfoSource>
#include <QVector>

#include <optional>

namespace rivo::position
{

/// What a receiver reports with one sentence or line.
struct Report
{
    std::optional<Fix> fix; ///< none = the receiver answers, but does not know its position
};

/// Reads NMEA 0183 from a stream of bytes. Qt Positioning parses the sentences; those with a wrong
/// checksum or of another kind count as nothing. A receiver repeats its position in several
/// sentences: RMC counts, and as long as there is none, GGA and GLL do.
class NmeaReader
{
public:
    static constexpr int longestLine = 255; ///< the standard has 82, receivers send longer ones

    NmeaReader();

    /// The reports that end in `bytes`, in their order.
    QVector<Report> read(const QByteArray& bytes);

    /// Forgets the unfinished line, as after a new connection.
    void clear() { m_lines.clear(); }

private:
    /// Opens what Qt's class has for classes derived from it.
    class Parser : public QNmeaPositionInfoSource
    {
    public:
        Parser() : QNmeaPositionInfoSource(RealTimeMode) {}
        using QNmeaPositionInfoSource::parsePosInfoFromNmeaData;
    };

    std::optional<Report> readLine(const QByteArray& line);

    LineSplitter m_lines{longestLine};
    Parser m_parser;
    int m_othersSinceRmc;
};

} // namespace rivo::position
