// The input is what a receiver of positions sends: NMEA 0183, or the answers of gpsd.

#include "Fuzzing.h"

#include <GpsdReader.h>
#include <NmeaReader.h>
#include <PositionJudge.h>
#include <SatelliteClock.h>

using namespace rivo::position;

namespace
{

bool isSame(double a, double b) { return (qIsNaN(a) && qIsNaN(b)) || !(a < b || a > b); }

bool isSame(const Report& a, const Report& b)
{
    if (!a.fix || !b.fix)
        return a.fix.has_value() == b.fix.has_value();
    return a.fix->coordinate == b.fix->coordinate && isSame(a.fix->speed, b.fix->speed) &&
           isSame(a.fix->direction, b.fix->direction);
}

/// The reports do not depend on how the bytes arrive, and positions exist.
template <typename Reader>
QVector<Report> check(const QByteArray& bytes)
{
    Reader whole;
    const QVector<Report> reports = whole.read(bytes);
    Reader inPieces;
    QVector<Report> pieces;
    for (int at = 0, size = 1; at < bytes.size(); at += size, size = size % 7 + 1)
        pieces += inPieces.read(bytes.mid(at, size));
    fuzzing::require(pieces.size() == reports.size(), "other reports in pieces");
    for (int i = 0; i < reports.size(); ++i) {
        fuzzing::require(isSame(reports.at(i), pieces.at(i)), "another report in pieces");
        fuzzing::require(!reports.at(i).fix || reports.at(i).fix->coordinate.isValid(),
                         "a position that does not exist");
    }
    return reports;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes = fuzzing::bytes(data, size);
    const QDateTime system(QDate(2026, 3, 22), QTime(8, 0), Qt::UTC);
    for (const QVector<Report>& reports : {check<NmeaReader>(bytes), check<GpsdReader>(bytes)}) {
        PositionJudge judge;
        SatelliteClock clock;
        qint64 now = 0;
        judge.connected(now);
        for (const Report& report : reports) {
            now += 1000;
            if (!report.fix) {
                judge.reportNoFix(now);
                continue;
            }
            clock.report(report.fix->time, system);
            const bool isBelieved = judge.report(*report.fix, now);
            fuzzing::require(!isBelieved || judge.knowledge() == Knowledge::Fixed,
                             "believed and not fixed");
        }
        judge.wait(now + 20000);
        fuzzing::require(judge.knowledge() == Knowledge::Silent, "not silent");
    }
    return 0;
}
