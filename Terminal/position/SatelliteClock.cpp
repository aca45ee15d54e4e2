#include "SatelliteClock.h"

#include <algorithm>

namespace rivo::position
{

namespace
{

constexpr int fewestSamples = 3;

} // namespace

bool SatelliteClock::isBelievable(const QDateTime& satellites)
{
    return satellites.isValid() && satellites.date() >= QDate(2026, 1, 1);
}

void SatelliteClock::report(const QDateTime& satellites, const QDateTime& system)
{
    if (!isBelievable(satellites))
        return;
    if (m_samples.size() == mostSamples)
        m_samples.removeFirst();
    m_samples.append(system.msecsTo(satellites));
}

std::optional<qint64> SatelliteClock::offset() const
{
    if (m_samples.size() < fewestSamples)
        return std::nullopt;
    QVector<qint64> sorted = m_samples;
    std::sort(sorted.begin(), sorted.end());
    return sorted.at(sorted.size() / 2);
}

bool SatelliteClock::isSystemWrong() const { return qAbs(offset().value_or(0)) > tolerance; }

} // namespace rivo::position
