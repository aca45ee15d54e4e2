#pragma once

#include <QFont>
#include <QHash>
#include <QObject>
#include <QRectF>
#include <QVariantList>
#include <QVariantMap>

namespace rivo::terminal
{

/// The names of stops on a map: where they go, and which of them can be seen.
class StopLabels : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY fontChanged) ///< that the names are drawn in
    Q_PROPERTY(double padding READ padding NOTIFY fontChanged)

public:
    explicit StopLabels(QObject* parent = nullptr) : QObject(parent) {}

    double padding() const; ///< left and right of a name

    /// Gives the names of `stops` (see FleetSimulator::stops) new places; `points` are where these
    /// stops are on the map. See placesOfNames() for the rest.
    Q_INVOKABLE void place(const QVariantList& stops, const QVariantList& points,
                           const QVariantList& lines, const QVariantList& marks, const QRectF& view,
                           const QRectF& controls);

    /// The places of the names that no mark covers, as rectangles from their stop on, by its
    /// number.
    Q_INVOKABLE QVariantMap shown(const QVariantList& stops, const QVariantList& points,
                                  const QVariantList& marks) const;

signals:
    void fontChanged();

private:
    double unit() const;

    QFont m_font;
    QHash<int, QRectF> m_places;
};

} // namespace rivo::terminal
