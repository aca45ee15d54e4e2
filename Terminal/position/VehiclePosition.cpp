#include "VehiclePosition.h"

#include <QElapsedTimer>
#include <QTime>

namespace rivo::position
{

namespace
{

constexpr int tickTime = 1000;         // milliseconds
constexpr qint64 offsetNoticed = 1000; // milliseconds
constexpr int secondsPerMinute = 60;

qint64 steadyTime()
{
    QElapsedTimer timer;
    timer.start();
    return timer.msecsSinceReference();
}

/// Whole minutes of a distance of time, rounded.
int minutes(fleet::Seconds seconds)
{
    return (qAbs(seconds) + secondsPerMinute / 2) / secondsPerMinute;
}

} // namespace

VehiclePosition::Clocks VehiclePosition::Clocks::real()
{
    return {steadyTime, [] { return QDateTime::currentDateTime(); }};
}

VehiclePosition::VehiclePosition(const SourceSettings& settings, const Clocks& clocks,
                                 QObject* parent)
    : QObject(parent), m_clocks(clocks), m_source(PositionSource::make(settings))
{
    m_announcedState = stateText();
    m_ticks.setInterval(tickTime);
    connect(&m_ticks, &QTimer::timeout, this, &VehiclePosition::tick);
    if (m_source == nullptr)
        return;
    connect(m_source.get(), &PositionSource::reported, this, &VehiclePosition::judge);
    connect(m_source.get(), &PositionSource::connectionChanged, this, [this] {
        if (m_source->isConnected())
            m_judge.connected(m_clocks.even());
        else
            m_judge.disconnected();
        announceState();
        announceProgress();
    });
}

VehiclePosition::~VehiclePosition() = default;

void VehiclePosition::start()
{
    m_ticks.start();
    if (m_source != nullptr)
        m_source->start();
}

void VehiclePosition::setTrip(const fleet::Trip* trip)
{
    m_progress.reset();
    m_trip.reset();
    m_call = -1;
    if (trip != nullptr) {
        m_trip = *trip;
        m_progress = std::make_unique<TripProgress>(*m_trip);
    }
    announceProgress();
}

void VehiclePosition::judge(const Report& report)
{
    if (report.fix)
        compareClocks(*report.fix);
    if (!report.fix) {
        m_judge.reportNoFix(m_clocks.even());
    } else if (m_judge.report(*report.fix, m_clocks.even())) {
        if (m_progress != nullptr)
            m_progress->report(report.fix->coordinate,
                               report.fix->speed > PositionJudge::moving ? report.fix->direction
                                                                         : qQNaN(),
                               secondOfDay());
        emit moved();
    }
    announceState();
    announceProgress();
}

void VehiclePosition::tick()
{
    const std::optional<qint64> step =
        m_watch.step(m_clocks.system().toMSecsSinceEpoch(), m_clocks.even());
    if (step) {
        m_clock.clear();
        emit clockStepped(*step);
    }
    m_judge.wait(m_clocks.even());
    if (isFollowed())
        m_progress->wait(secondOfDay());
    announceState();
    announceProgress();
}

void VehiclePosition::compareClocks(const Fix& fix)
{
    m_clock.report(fix.time, m_clocks.system().toUTC());
    const std::optional<qint64> offset = m_clock.offset();
    if (!offset || (m_reportedOffset && qAbs(*offset - *m_reportedOffset) < offsetNoticed))
        return;
    m_reportedOffset = offset;
    emit clockOffsetChanged(*offset);
}

void VehiclePosition::announceState()
{
    const QString text = stateText();
    if (text == m_announcedState)
        return;
    m_announcedState = text;
    emit stateChanged();
}

void VehiclePosition::announceProgress()
{
    const int call = m_progress != nullptr ? m_progress->call() : -1;
    if (call >= 0 && call != m_call) {
        m_call = call;
        emit stopReached(call);
    }
    const QString text = punctualityText();
    if (text == m_announcedProgress)
        return;
    m_announcedProgress = text;
    emit progressChanged();
}

/// Without a receiver nothing is known of the trip; in a tunnel it goes on.
bool VehiclePosition::isFollowed() const
{
    const Knowledge known = m_judge.knowledge();
    return m_progress != nullptr &&
           (known == Knowledge::Fixed || known == Knowledge::Jump || known == Knowledge::Tunnel);
}

bool VehiclePosition::isPunctuality(TripProgress::Punctuality punctuality) const
{
    return isFollowed() && m_progress->punctuality() == punctuality;
}

fleet::Seconds VehiclePosition::secondOfDay() const
{
    return QTime(0, 0).secsTo(m_clocks.system().toLocalTime().time());
}

bool VehiclePosition::isOffRoute() const { return isFollowed() && m_progress->isOffRoute(); }

QString VehiclePosition::punctualityText() const
{
    if (isOffRoute())
        return tr("off route");
    if (isLate())
        return tr("%1 min late").arg(minutes(*m_progress->lateness()));
    if (isAhead())
        return tr("%1 min ahead").arg(minutes(*m_progress->lateness()));
    return {};
}

QString VehiclePosition::stateText() const
{
    switch (m_judge.knowledge()) {
    case Knowledge::Disconnected:
        return m_source == nullptr || m_source->problem().isEmpty()
                   ? tr("not connected")
                   : tr("not connected: %1").arg(m_source->problem());
    case Knowledge::Silent:
        return tr("nothing is received");
    case Knowledge::NoFix:
        return tr("no satellites");
    case Knowledge::Jump:
        return tr("position jumps");
    case Knowledge::Tunnel:
        return tr("no satellites on the way");
    case Knowledge::Fixed:
        break;
    }
    return tr("position known");
}

} // namespace rivo::position
