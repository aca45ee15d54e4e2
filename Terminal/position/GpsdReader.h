#pragma once

#include "LineSplitter.h"
#include "NmeaReader.h"

#include <QVector>

namespace rivo::position
{

/// Reads what gpsd answers: lines of JSON, of which TPV has position, speed and time.
class GpsdReader
{
public:
    static constexpr int longestLine = 16384; ///< gpsd's longest answer has 10240

    /// What asks gpsd for its reports.
    static QByteArray request();

    /// The reports of the TPV lines that end in `bytes`. Other lines, and lines that are no JSON,
    /// count as nothing.
    QVector<Report> read(const QByteArray& bytes);

    /// Forgets the unfinished line, as after a new connection.
    void clear() { m_lines.clear(); }

private:
    LineSplitter m_lines{longestLine};
};

} // namespace rivo::position
