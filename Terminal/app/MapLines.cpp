#include "MapLines.h"

#include <QPainter>
#include <QVariantMap>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>

namespace rivo::terminal
{

namespace
{

QPointF projected(const QGeoCoordinate& place)
{
    constexpr double mostLatitude = 85.05; // the projection ends here
    const double latitude =
        qDegreesToRadians(qBound(-mostLatitude, place.latitude(), mostLatitude));
    return {place.longitude() / 360.0 + 0.5,
            0.5 - std::log(std::tan(M_PI_4 + latitude / 2)) / (2 * M_PI)};
}

} // namespace

/// Cuts the line at one edge after the other.
std::optional<QLineF> clipped(const QLineF& line, const QRectF& view)
{
    double from = 0.0;
    double to = 1.0;
    const std::array<std::pair<double, double>, 4> edges{{{-line.dx(), line.x1() - view.left()},
                                                          {line.dx(), view.right() - line.x1()},
                                                          {-line.dy(), line.y1() - view.top()},
                                                          {line.dy(), view.bottom() - line.y1()}}};
    for (const auto& [step, room] : edges) {
        if (step == 0.0 && room < 0.0)
            return std::nullopt;
        if (step < 0.0)
            from = std::max(from, room / step);
        if (step > 0.0)
            to = std::min(to, room / step);
    }
    return from <= to ? std::make_optional(QLineF(line.pointAt(from), line.pointAt(to)))
                      : std::nullopt;
}

MapLines::MapLines(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &MapLines::viewChanged, this, [this] { update(); });
    connect(this, &MapLines::linesChanged, this, [this] { update(); });
}

void MapLines::setLines(const QVariantList& lines)
{
    m_lines = lines;
    m_projected.clear();
    for (const QVariant& each : lines) {
        const QVariantMap line = each.toMap();
        Line made{{},
                  line.value(QStringLiteral("color")).value<QColor>(),
                  line.value(QStringLiteral("width")).toDouble()};
        const QVariantList path = line.value(QStringLiteral("path")).toList();
        for (const QVariant& place : path)
            made.points.append(projected(place.value<QGeoCoordinate>()));
        m_projected.append(made);
    }
    emit linesChanged();
}

void MapLines::setCenter(const QGeoCoordinate& center)
{
    if (!center.isValid() || center == m_center)
        return;
    m_center = center;
    emit viewChanged();
}

void MapLines::setZoomLevel(double level)
{
    if (level == m_zoomLevel)
        return;
    m_zoomLevel = level;
    emit viewChanged();
}

QPointF MapLines::shownPoint(const QPointF& projected) const
{
    constexpr double worldAtNoZoom = 256.0;
    const double world = worldAtNoZoom * std::exp2(m_zoomLevel);
    return (projected - rivo::terminal::projected(m_center)) * world +
           QPointF(width() / 2, height() / 2);
}

QPointF MapLines::pointOf(const QGeoCoordinate& place) const
{
    return shownPoint(projected(place));
}

void MapLines::paint(QPainter* painter)
{
    for (const Line& line : qAsConst(m_projected)) {
        painter->setPen(QPen(line.color, line.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QRectF view =
            boundingRect().adjusted(-line.width, -line.width, line.width, line.width);
        for (int i = 1; i < line.points.size(); ++i) {
            const auto part =
                clipped({shownPoint(line.points.at(i - 1)), shownPoint(line.points.at(i))}, view);
            if (part)
                painter->drawLine(*part);
        }
    }
}

} // namespace rivo::terminal
