#include "LabelPlacement.h"

#include <QPair>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace rivo::fleet
{

namespace
{

constexpr int distance = 11;  ///< from the middle of a stop to its name
constexpr int stopRadius = 7; ///< of the mark of a stop
constexpr int lineRadius = 3; ///< half of the width that a line takes
constexpr int ofNoStop = -1;

double labelWidth(double textWidth)
{
    return std::min<double>(widestLabel, std::ceil(textWidth) + 2 * labelPadding);
}

/// The places around a stop in the order of preference, as top left corners.
QVector<QPointF> cornersAround(double width)
{
    constexpr double right = distance;
    const double left = -width - distance;
    constexpr double middle = -labelHeight / 2.0;
    QVector<QPointF> corners;
    for (const double y :
         {middle, middle - 8.0, middle + 8.0, -labelHeight - 4.0, 4.0, -labelHeight - 8.0, 8.0})
        corners << QPointF(right, y) << QPointF(left, y);
    for (const double y : {double(-labelHeight - distance), double(distance)})
        corners << QPointF(-width / 2.0, y) << QPointF(-width / 4.0, y)
                << QPointF(-3.0 * width / 4.0, y);
    return corners;
}

bool overlaps(const QRectF& a, const QRectF& b)
{
    return a.x() < b.x() + b.width() && b.x() < a.x() + a.width() && a.y() < b.y() + b.height() &&
           b.y() < a.y() + a.height();
}

QRectF around(const QPointF& point, double radius)
{
    return {point - QPointF(radius, radius), point + QPointF(radius, radius)};
}

/// The map in small squares, each of which belongs to the first that took it.
class Squares
{
public:
    void take(int owner, const QRectF& room)
    {
        everySquare(room, [&](const Square& square) {
            if (!m_owners.contains(square))
                m_owners.insert(square, owner);
            return true;
        });
    }

    void takeLine(const QPointF& from, const QPointF& to)
    {
        const QPointF way = to - from;
        const int steps =
            static_cast<int>(std::ceil(std::max(std::abs(way.x()), std::abs(way.y())) / size)) + 1;
        for (int step = 0; step <= steps; ++step)
            take(ofNoStop, around(from + way * step / steps, lineRadius));
    }

    /// Whether no part of `room` belongs to another owner than `owner`.
    bool isFree(int owner, const QRectF& room) const
    {
        return everySquare(
            room, [&](const Square& square) { return m_owners.value(square, owner) == owner; });
    }

private:
    using Square = QPair<int, int>;
    static constexpr int size = 3;

    /// False as soon as `visit` is.
    template <typename Visit>
    static bool everySquare(const QRectF& room, Visit visit)
    {
        const auto first = [](double place) { return static_cast<int>(std::floor(place / size)); };
        for (int row = first(room.top()); row * size < room.bottom(); ++row) {
            for (int column = first(room.left()); column * size < room.right(); ++column) {
                if (!visit({row, column}))
                    return false;
            }
        }
        return true;
    }

    QHash<Square, int> m_owners;
};

/// The part of a line that lies in `area` takes its place.
void takeLines(Squares& squares, const QVector<QVector<QPointF>>& lines, const QRectF& area)
{
    for (const QVector<QPointF>& line : lines) {
        for (int i = 1; i < line.size(); ++i) {
            QRectF box = QRectF(line.at(i - 1), line.at(i)).normalized();
            box.setSize(box.size().expandedTo({1.0, 1.0}));
            if (overlaps(box, area))
                squares.takeLine(line.at(i - 1), line.at(i));
        }
    }
}

/// A place of the name on the map, one without a vehicle if there is any; nothing if all are taken.
std::optional<QRectF> placeOf(const StopOnMap& stop, const Squares& squares,
                              const MapContent& content)
{
    const QSizeF size(labelWidth(stop.textWidth), labelHeight);
    const bool isSeen = content.view.contains(stop.point);
    std::optional<QRectF> free;
    const auto corners = cornersAround(size.width());
    for (const QPointF& corner : corners) {
        const QRectF place(stop.point + corner, size);
        if ((isSeen && !content.view.contains(place)) || !squares.isFree(stop.number, place))
            continue;
        if (!isCovered(place, content.marks))
            return place;
        if (!free)
            free = place;
    }
    return free;
}

} // namespace

bool isCovered(const QRectF& place, const QVector<QRectF>& others)
{
    return std::any_of(others.cbegin(), others.cend(),
                       [&place](const QRectF& other) { return overlaps(place, other); });
}

QHash<int, QRectF> placesOfNames(const MapContent& content)
{
    const QRectF& view = content.view;
    const QRectF area = view.adjusted(-view.width() / 2.0, -view.height() / 2.0, view.width() / 2.0,
                                      view.height() / 2.0);
    QVector<StopOnMap> near;
    std::copy_if(content.stops.cbegin(), content.stops.cend(), std::back_inserter(near),
                 [&area](const StopOnMap& stop) {
                     return overlaps({stop.point, QSizeF(1.0, 1.0)}, area);
                 });

    Squares squares;
    takeLines(squares, content.lines, area);
    squares.take(ofNoStop, content.controls);
    for (const StopOnMap& stop : qAsConst(near))
        squares.take(stop.number, around(stop.point, stopRadius));

    QHash<int, QRectF> places;
    for (const StopOnMap& stop : qAsConst(near)) {
        const std::optional<QRectF> place =
            stop.textWidth >= 0.0 ? placeOf(stop, squares, content) : std::nullopt;
        if (!place)
            continue;
        squares.take(stop.number, *place);
        places.insert(stop.number, place->translated(-stop.point));
    }
    return places;
}

} // namespace rivo::fleet
