#pragma once

#include <QColor>
#include <QGeoCoordinate>
#include <QLineF>
#include <QPointF>
#include <QQuickPaintedItem>
#include <QRectF>
#include <QVariantList>
#include <QVector>

#include <optional>

namespace rivo::terminal
{

/// The part of a line within `view`; nothing if there is none.
std::optional<QLineF> clipped(const QLineF& line, const QRectF& view);

/// Lines under a map. They are painted on the processor, so that every renderer of Qt Quick shows
/// them; the lines of Qt Location need OpenGL.
class MapLines : public QQuickPaintedItem
{
    Q_OBJECT
    /// Maps with "path", coordinates, "color" and "width" in pixels.
    Q_PROPERTY(QVariantList lines READ lines WRITE setLines NOTIFY linesChanged)
    Q_PROPERTY(QGeoCoordinate center READ center WRITE setCenter NOTIFY viewChanged) ///< of the map
    Q_PROPERTY(
        double zoomLevel READ zoomLevel WRITE setZoomLevel NOTIFY viewChanged) ///< of the map

public:
    explicit MapLines(QQuickItem* parent = nullptr);

    const QVariantList& lines() const { return m_lines; }
    void setLines(const QVariantList& lines);
    const QGeoCoordinate& center() const { return m_center; }
    void setCenter(const QGeoCoordinate& center);
    double zoomLevel() const { return m_zoomLevel; }
    void setZoomLevel(double level);

    void paint(QPainter* painter) override;

    /// Where a place is in this item, as Map.fromCoordinate() has it.
    QPointF pointOf(const QGeoCoordinate& place) const;

signals:
    void linesChanged();
    void viewChanged();

private:
    struct Line
    {
        QVector<QPointF> points; ///< in Mercator's projection, the world from 0 to 1
        QColor color;
        double width;
    };

    QPointF shownPoint(const QPointF& projected) const;

    QVariantList m_lines;
    QVector<Line> m_projected;
    QGeoCoordinate m_center{0, 0};
    double m_zoomLevel = 0;
};

} // namespace rivo::terminal
