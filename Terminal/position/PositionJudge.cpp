#include "PositionJudge.h"

#include <QtMath>

namespace rivo::position
{

namespace
{

constexpr double secondsPerMillisecond = 0.001;

bool isNowhere(const QGeoCoordinate& coordinate)
{
    return !coordinate.isValid() ||
           (qFuzzyIsNull(coordinate.latitude()) && qFuzzyIsNull(coordinate.longitude()));
}

} // namespace

void PositionJudge::connected(qint64 now)
{
    m_heardTime = now;
    m_knowledge = Knowledge::NoFix;
}

void PositionJudge::disconnected()
{
    m_knowledge = Knowledge::Disconnected;
    m_doubted.reset();
}

bool PositionJudge::report(const Fix& fix, qint64 now)
{
    if (isNowhere(fix.coordinate)) {
        reportNoFix(now);
        return false;
    }
    m_heardTime = now;
    const Sighting sighting{fix, now};
    if (m_fix && !isPossible({*m_fix, m_fixTime}, sighting) && !isProven(sighting)) {
        m_knowledge = Knowledge::Jump;
        return false;
    }
    believe(sighting);
    return true;
}

void PositionJudge::reportNoFix(qint64 now)
{
    m_heardTime = now;
    judgeLoss(now);
}

void PositionJudge::wait(qint64 now)
{
    if (m_knowledge == Knowledge::Disconnected)
        return;
    if (now - m_heardTime > silentAfter)
        m_knowledge = Knowledge::Silent;
    else
        judgeLoss(now);
}

bool PositionJudge::isPossible(const Sighting& from, const Sighting& to)
{
    const double seconds = static_cast<double>(to.time - from.time) * secondsPerMillisecond;
    return from.fix.coordinate.distanceTo(to.fix.coordinate) <= allowance + fastest * seconds;
}

/// A receiver that stays where it jumped to was wrong before.
bool PositionJudge::isProven(const Sighting& sighting)
{
    m_doubtedCount = m_doubted && isPossible(*m_doubted, sighting) ? m_doubtedCount + 1 : 1;
    m_doubted = sighting;
    return m_doubtedCount >= fixesThatProveAJump;
}

void PositionJudge::believe(const Sighting& sighting)
{
    double speed = sighting.fix.speed;
    if (qIsNaN(speed) && m_fix && sighting.time > m_fixTime) {
        speed = m_fix->coordinate.distanceTo(sighting.fix.coordinate) /
                (static_cast<double>(sighting.time - m_fixTime) * secondsPerMillisecond);
    }
    m_wasMoving = speed > moving;
    m_fix = sighting.fix;
    m_fixTime = sighting.time;
    m_doubted.reset();
    m_knowledge = Knowledge::Fixed;
}

void PositionJudge::judgeLoss(qint64 now)
{
    const qint64 lostFor = now - m_fixTime;
    if (m_fix && m_knowledge != Knowledge::NoFix && lostFor <= lostAfter)
        return;
    const bool isTunnel = m_fix && m_wasMoving && lostFor <= longestTunnel;
    m_knowledge = isTunnel ? Knowledge::Tunnel : Knowledge::NoFix;
}

} // namespace rivo::position
