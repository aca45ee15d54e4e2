#pragma once

#include "Fix.h"

#include <optional>

namespace rivo::position
{

/// What is known of the vehicle's position.
enum class Knowledge {
    Disconnected, ///< no receiver, or no connection to it
    Silent,       ///< connected, and nothing comes
    NoFix,        ///< the receiver answers, but does not know its position
    Fixed,        ///< the position is known
    Jump,         ///< the reported position is too far from the last one to be true
    Tunnel        ///< the vehicle moved when the fix was lost
};

/// Judges what a receiver reports: which positions are believed, and what is known between them.
/// Times are milliseconds of a clock that is never set.
class PositionJudge
{
public:
    static constexpr qint64 lostAfter = 5000;       ///< without a fix
    static constexpr qint64 silentAfter = 15000;    ///< without a report
    static constexpr qint64 longestTunnel = 900000; ///< then it is NoFix
    static constexpr double fastest = 50.0;         ///< metres per second that are believed
    static constexpr double allowance = 150.0;      ///< metres that are believed at once
    static constexpr double moving = 2.0;           ///< metres per second
    static constexpr int fixesThatProveAJump = 5;   ///< in a row, each near the one before

    void connected(qint64 now);
    void disconnected();

    /// Whether `fix` is believed. A position of exactly 0, 0 is none, as receivers report it that
    /// do not know theirs.
    bool report(const Fix& fix, qint64 now);
    void reportNoFix(qint64 now);
    /// Time passes without a report.
    void wait(qint64 now);

    Knowledge knowledge() const { return m_knowledge; }
    /// The last position that was believed; none before the first.
    const std::optional<Fix>& fix() const { return m_fix; }

private:
    struct Sighting
    {
        Fix fix;
        qint64 time = 0;
    };

    static bool isPossible(const Sighting& from, const Sighting& to);
    bool isProven(const Sighting& sighting);
    void believe(const Sighting& sighting);
    void judgeLoss(qint64 now);

    Knowledge m_knowledge = Knowledge::Disconnected;
    std::optional<Fix> m_fix;
    qint64 m_fixTime = 0;
    qint64 m_heardTime = 0;
    bool m_wasMoving = false;
    std::optional<Sighting> m_doubted; ///< the last fix that was not believed
    int m_doubtedCount = 0;
};

} // namespace rivo::position
