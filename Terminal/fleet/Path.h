#pragma once

#include <QGeoCoordinate>
#include <QVector>

namespace rivo::fleet
{

/// A line on the ground that vehicles follow, measured in metres from its first point.
class Path
{
public:
    struct Place
    {
        QGeoCoordinate coordinate; ///< invalid on a path without points
        double direction = 0.0;    ///< of travel, degrees clockwise from north
    };

    Path() = default;
    explicit Path(const QVector<QGeoCoordinate>& points);

    const QVector<QGeoCoordinate>& points() const { return m_points; }
    double length() const; ///< metres; 0 for less than two points

    /// The place at `metres`, which is limited to the path.
    Place at(double metres) const;

    /// Metres of the point of the path that is nearest to `coordinate`, not before `from`. Where
    /// the path passes it several times, as loops do, of the first pass.
    double nearest(const QGeoCoordinate& coordinate, double from) const;

    struct Pass
    {
        double metres = 0.0;
        double distance = 0.0; ///< from the coordinate, metres
    };
    /// Where the path passes `coordinate` at most `within` metres away, between `from` and `to`
    /// metres: the nearest point of each pass, in the order of travel.
    QVector<Pass> passes(const QGeoCoordinate& coordinate, double from, double to,
                         double within) const;

private:
    QVector<QGeoCoordinate> m_points;
    QVector<double> m_metres; ///< of each point
};

} // namespace rivo::fleet
