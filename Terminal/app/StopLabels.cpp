#include "StopLabels.h"

#include <LabelPlacement.h>

#include <QFontMetricsF>

#include <algorithm>

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

int numberOf(const QVariantMap& stop) { return stop.value(QStringLiteral("number")).toInt(); }

} // namespace

int StopLabels::padding() const { return fleet::labelPadding; }

void StopLabels::place(const QVariantList& stops, const QVariantList& points,
                       const QVariantList& lines, const QVariantList& marks, const QRectF& view,
                       const QRectF& controls)
{
    const QFontMetricsF metrics(m_font);
    fleet::MapContent content;
    forEachStop(stops, points, [&](const QVariantMap& stop, const QPointF& point) {
        const QString name = stop.value(QStringLiteral("name")).toString();
        content.stops.append(
            {numberOf(stop), point, name.isEmpty() ? -1.0 : metrics.horizontalAdvance(name)});
    });
    for (const QVariant& line : lines)
        content.lines.append(valuesOf<QPointF>(line.toList()));
    content.marks = valuesOf<QRectF>(marks);
    content.view = view;
    content.controls = controls;
    m_places = fleet::placesOfNames(content);
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
