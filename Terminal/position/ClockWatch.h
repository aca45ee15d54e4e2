#pragma once

#include <QtGlobal>

#include <optional>

namespace rivo::position
{

/// Notices that the system's clock was set, by a clock that runs evenly.
class ClockWatch
{
public:
    static constexpr qint64 noticed = 2000; ///< milliseconds; slower corrections are no step

    /// The step of the system's clock since the last call, in milliseconds; negative = it went
    /// backwards. None if it was not set. `system` is the system's clock, `even` the other one.
    std::optional<qint64> step(qint64 system, qint64 even)
    {
        const qint64 difference = system - even;
        const std::optional<qint64> before = m_difference;
        m_difference = difference;
        if (!before || qAbs(difference - *before) < noticed)
            return std::nullopt;
        return difference - *before;
    }

private:
    std::optional<qint64> m_difference;
};

} // namespace rivo::position
