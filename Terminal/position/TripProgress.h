#pragma once

#include <Timetable.h>

#include <optional>

namespace rivo::position
{

/// How far a vehicle is on its trip, by the positions that it reports.
///
/// The vehicle is somewhere on the path of the trip. It moves on from its last place: where the
/// path comes by again, as on a loop or on the way back, the next place in the direction of travel
/// counts. A stop is the current one from `arrival` metres before it until the next one is; noise
/// of the receiver does not bring the last one back, only a vehicle that goes back by `goingBack`.
class TripProgress
{
public:
    static constexpr double arrival = 50.0;    ///< metres
    static constexpr double goingBack = 150.0; ///< metres
    static constexpr double offRoute = 80.0;   ///< metres from the path
    static constexpr double onRoute = 50.0;    ///< metres from the path
    static constexpr int fixesUntilOffRoute = 4;
    static constexpr fleet::Seconds ahead = 60;
    static constexpr fleet::Seconds late = 180;

    enum class Punctuality { Unknown, OnTime, Ahead, Late };

    /// Nothing is known of a trip without a path. `trip` outlives this.
    explicit TripProgress(const fleet::Trip& trip) : m_trip(trip) {}

    /// The vehicle is at `coordinate` and travels in `direction` (degrees, NaN = unknown) at
    /// `time`, second of the service day or of the day.
    void report(const QGeoCoordinate& coordinate, double direction, fleet::Seconds time);

    /// Time passes without a position: the vehicle keeps its place.
    void wait(fleet::Seconds time);

    /// Number of the current call of the trip; -1 before the vehicle was on the path.
    int call() const { return m_call; }
    bool isOffRoute() const { return m_isOffRoute; }
    /// Metres along the path; none before the vehicle was on it.
    const std::optional<double>& metres() const { return m_metres; }
    /// Seconds behind the timetable, negative = ahead of it. None off route, and before the vehicle
    /// was on the path. At the first stop the vehicle is not ahead.
    std::optional<fleet::Seconds> lateness() const;
    Punctuality punctuality() const;

private:
    struct Place
    {
        double metres = 0.0;
        double distance = 0.0;
    };

    std::optional<Place> placeOf(const QGeoCoordinate& coordinate, double direction) const;
    double cost(const fleet::Path::Pass& pass, double direction) const;
    void noticeDistance(double distance);
    void moveTo(double metres);
    fleet::Seconds nearestDay(fleet::Seconds time) const;

    const fleet::Trip& m_trip;
    std::optional<double> m_metres;
    fleet::Seconds m_time = 0;
    fleet::Seconds m_placeTime = 0; ///< when the vehicle was at m_metres
    int m_call = -1;
    int m_fixesOff = 0;
    bool m_isOffRoute = false;
};

} // namespace rivo::position
