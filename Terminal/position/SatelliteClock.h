#pragma once

#include <QDateTime>
#include <QVector>

#include <optional>

namespace rivo::position
{

/// The time of the satellites beside the clock of the system.
class SatelliteClock
{
public:
    static constexpr qint64 tolerance = 30000; ///< milliseconds that the system's clock may differ
    static constexpr int mostSamples = 9;      ///< of which the middle one counts

    /// A receiver reported `satellites` when the system's clock was at `system`; both UTC. Times
    /// before isBelievable() count as nothing: receivers lose the week, and then the date is
    /// about 20 years too early.
    void report(const QDateTime& satellites, const QDateTime& system);

    static bool isBelievable(const QDateTime& satellites);

    /// Milliseconds that the satellites are ahead of the system's clock; none until a few reports
    /// were made. The connection to a receiver delays its reports by up to a second.
    std::optional<qint64> offset() const;

    /// Whether the system's clock is wrong by more than the tolerance.
    bool isSystemWrong() const;

    /// Forgets the reports, as after the system's clock was set.
    void clear() { m_samples.clear(); }

private:
    QVector<qint64> m_samples; ///< milliseconds, the latest last
};

} // namespace rivo::position
