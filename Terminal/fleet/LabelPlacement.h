#pragma once

#include <QHash>
#include <QPointF>
#include <QRectF>
#include <QVector>

namespace rivo::fleet
{

/// A stop on a map whose name wants a place. Points and sizes are pixels of the map; points may lie
/// outside of what is seen.
struct StopOnMap
{
    int number = -1;
    QPointF point;
    double textWidth = -1.0; ///< of its name; negative = it has none
};

/// What names of stops have to keep clear of.
struct MapContent
{
    QVector<StopOnMap> stops;
    QVector<QVector<QPointF>> lines;
    QVector<QRectF> marks; ///< of vehicles, which move: a name goes where none is, if it can
    QRectF view;           ///< what is seen; names of stops in it stay in it
    QRectF controls;       ///< buttons that lie on the map
};

constexpr int labelPadding = 4; ///< left and right of a name
constexpr int labelHeight = 20;
constexpr int widestLabel = 180;

/// Where the names go, by the number of their stop: rectangles from the middle of the stop on,
/// clear of lines, stops, controls and each other. Names without such a place are left out until
/// there is room at a closer zoom; what is further than half a view away is not looked at.
QHash<int, QRectF> placesOfNames(const MapContent& content);

/// Whether `place` shares any room with one of `others`.
bool isCovered(const QRectF& place, const QVector<QRectF>& others);

} // namespace rivo::fleet
