#pragma once

#include "ClockWatch.h"
#include "PositionJudge.h"
#include "PositionSource.h"
#include "SatelliteClock.h"
#include "TripProgress.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace rivo::position
{

/// Where this vehicle is, by its receiver: its position, how far it is on its trip, and the time of
/// the satellites.
class VehiclePosition : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool offRoute READ isOffRoute NOTIFY progressChanged)
    Q_PROPERTY(bool late READ isLate NOTIFY progressChanged)
    Q_PROPERTY(bool ahead READ isAhead NOTIFY progressChanged)
    Q_PROPERTY(QString punctualityText READ punctualityText NOTIFY progressChanged)
    Q_PROPERTY(QString stateText READ stateText NOTIFY stateChanged)

public:
    /// Clocks that a test can replace.
    struct Clocks
    {
        std::function<qint64()> even;      ///< milliseconds of a clock that is never set
        std::function<QDateTime()> system; ///< the system's clock
        static Clocks real();
    };

    explicit VehiclePosition(const SourceSettings& settings, const Clocks& clocks = Clocks::real(),
                             QObject* parent = nullptr);
    ~VehiclePosition() override;

    /// Connects to the receiver, if there is one.
    void start();

    /// From now on the vehicle is on `trip`, which is copied; null = on none. stopReached() comes
    /// with the next position.
    void setTrip(const fleet::Trip* trip);

    bool hasReceiver() const { return m_source != nullptr; }
    Knowledge knowledge() const { return m_judge.knowledge(); }
    /// The last position that was believed; none before the first.
    const std::optional<Fix>& fix() const { return m_judge.fix(); }
    /// Milliseconds that the satellites are ahead of the system's clock; none while unknown.
    std::optional<qint64> clockOffset() const { return m_clock.offset(); }
    bool isClockWrong() const { return m_clock.isSystemWrong(); }

    bool isOffRoute() const;
    bool isLate() const { return isPunctuality(TripProgress::Punctuality::Late); }
    bool isAhead() const { return isPunctuality(TripProgress::Punctuality::Ahead); }
    /// Minutes behind the timetable or ahead of it, or that the vehicle is off route, for people;
    /// empty if it is on time, or unknown.
    QString punctualityText() const;
    /// What is known of the position, for people.
    QString stateText() const;

signals:
    /// knowledge(), stateText() or isClockWrong() is another one.
    void stateChanged();
    /// A position was believed; see fix().
    void moved();
    /// isOffRoute() or punctualityText() is another one.
    void progressChanged();
    /// The current call of the trip is another one, by its number in the trip. Follows only what
    /// the vehicle does: a stop that the driver has chosen stays until the next one is reached.
    void stopReached(int call);
    /// The satellites are `milliseconds` ahead of the system's clock: when it is known for the
    /// first time, and when it differs by a second or more from what was reported last.
    void clockOffsetChanged(qint64 milliseconds);
    /// The system's clock was set by `milliseconds`, backwards if negative.
    void clockStepped(qint64 milliseconds);

private:
    void judge(const Report& report);
    void tick();
    void compareClocks(const Fix& fix);
    void announceState();
    void announceProgress();
    bool isFollowed() const;
    bool isPunctuality(TripProgress::Punctuality punctuality) const;
    fleet::Seconds secondOfDay() const;

    const Clocks m_clocks;
    std::unique_ptr<PositionSource> m_source;
    QTimer m_ticks;
    PositionJudge m_judge;
    SatelliteClock m_clock;
    ClockWatch m_watch;
    std::optional<fleet::Trip> m_trip;
    std::unique_ptr<TripProgress> m_progress;
    int m_call = -1;
    std::optional<qint64> m_reportedOffset;
    QString m_announcedState;
    QString m_announcedProgress;
};

} // namespace rivo::position
