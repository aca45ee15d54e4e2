#pragma once

#include "Path.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QVector>

#include <memory>

namespace rivo::feed
{
struct Network;
}

namespace rivo::fleet
{

/// Seconds since the start of the service day; may pass 86400.
using Seconds = int;

/// A stop of one trip.
struct Call
{
    int stop = -1; ///< number, see Timetable
    QString name;
    QGeoCoordinate coordinate; ///< invalid if unknown
    QVector<int> zones;
    double metres = 0.0; ///< along the trip's path
    Seconds arrival = 0;
    Seconds departure = 0;
};

/// One run of a vehicle from its first stop to its last.
struct Trip
{
    int number = -1;
    int route = -1;
    QString id;
    QString headsign;
    std::shared_ptr<const Path> path; ///< never null
    QVector<Call> calls;              ///< at least two, times never decreasing

    Seconds start() const { return calls.first().departure; }
    Seconds end() const { return calls.last().arrival; }

    struct Moment
    {
        double metres = 0.0;
        int call = 0; ///< the last one that was reached
        bool isStopped = false;
    };
    /// Where the vehicle is at `time`, evenly between two stops; at the first stop before the
    /// start and at the last one after the end.
    Moment at(Seconds time) const;
};

struct Route
{
    int number = -1;
    QString name;  ///< short name, or the long one where there is none
    QString title; ///< long name, or the short one
    QString color; ///< "#RRGGBB"; empty = none given
};

/// The network of a feed as vehicles run it on one day.
///
/// Stops, routes and trips are known by numbers: their own ids if all ids of the kind are positive
/// integers, otherwise 1, 2, ... in the order of the feed. It is the day `date`; without
/// one, or where no trip runs on it, the day of the week with the most trips; where the feed does
/// not say the days, the service with the most trips. Trips without two
/// timed stops and trips on which time runs back are left out; times that a stop does not have are
/// spread evenly between those that are there. A trip without a shape goes straight from stop to
/// stop, on a path that all trips of these stops share.
class Timetable
{
public:
    Timetable() = default;
    explicit Timetable(const feed::Network& network, const QDate& date = {});

    const QVector<Route>& routes() const { return m_routes; }
    const QVector<Trip>& trips() const { return m_trips; } ///< by start time
    const Trip* trip(int number) const;                    ///< null if there is none
    const Route* route(int number) const;                  ///< null if there is none

private:
    QVector<Route> m_routes;
    QVector<Trip> m_trips;
};

} // namespace rivo::fleet
