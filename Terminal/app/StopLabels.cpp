#include "StopLabels.h"

#include <LabelPlacement.h>

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace rivo::terminal
{

namespace
{

template <typename T>
QVector<T> valuesOf(const QVariantList& list)
{
    QVector<T> values;
    for (const QVariant& value : list)
        values.append(value.value<T>());
    return values;
}

/// Calls `use` with each stop, as a map, and its point.
template <typename Use>
void forEachStop(const QVariantList& stops, const QVariantList& points, Use use)
{
    for (int i = 0; i < std::min(stops.size(), points.size()); ++i)
        use(stops.at(i).toMap(), points.at(i).toPointF());
}

QPointF scaled(const QPointF& point, double factor) { return point * factor; }

QRectF scaled(const QRectF& rect, double factor)
{
    return {rect.topLeft() * factor, rect.size() * factor};
}

template <typename T>
QVector<T> scaled(QVector<T> values, double factor)
{
    for (T& value : values)
        value = scaled(value, factor);
    return values;
}

int numberOf(const QVariantMap& stop) { return stop.value(QStringLiteral("number")).toInt(); }

} // namespace

double StopLabels::padding() const { return fleet::labelPadding * unit(); }

/// Pixels of what placesOfNames() takes for one: its labels have a fixed height.
double StopLabels::unit() const
{
    return std::ceil(QFontMetricsF(m_font).height()) / fleet::labelHeight;
}

void StopLabels::place(const QVariantList& stops, const QVariantList& points,
                       const QVariantList& lines, const QVariantList& marks, const QRectF& view,
                       const QRectF& controls)
{
    const QFontMetricsF metrics(m_font);
    const double factor = 1.0 / unit();
    fleet::MapContent content;
    forEachStop(stops, points, [&](const QVariantMap& stop, const QPointF& point) {
        const QString name = stop.value(QStringLiteral("name")).toString();
        content.stops.append({numberOf(stop), point * factor,
                              name.isEmpty() ? -1.0 : metrics.horizontalAdvance(name) * factor});
    });
    for (const QVariant& line : lines)
        content.lines.append(scaled(valuesOf<QPointF>(line.toList()), factor));
    content.marks = scaled(valuesOf<QRectF>(marks), factor);
    content.view = scaled(view, factor);
    content.controls = scaled(controls, factor);
    m_places = fleet::placesOfNames(content);
    for (QRectF& place : m_places)
        place = scaled(place, unit());
}

QVariantMap StopLabels::shown(const QVariantList& stops, const QVariantList& points,
                              const QVariantList& marks) const
{
    const QVector<QRectF> rooms = valuesOf<QRectF>(marks);
    QVariantMap places;
    forEachStop(stops, points, [&](const QVariantMap& stop, const QPointF& point) {
        const auto place = m_places.constFind(numberOf(stop));
        if (place != m_places.cend() && !fleet::isCovered(place->translated(point), rooms))
            places.insert(QString::number(numberOf(stop)), *place);
    });
    return places;
}

} // namespace rivo::terminal
