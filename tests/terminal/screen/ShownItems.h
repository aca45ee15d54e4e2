#pragma once

#include <QColor>
#include <QHash>
#include <QImage>
#include <QQuickItem>

#include <algorithm>

// What tests look at in a window, item by item.

inline bool isText(const QQuickItem* item) { return item->inherits("QQuickText"); }

/// Whether the item, or one that it is part of, is so.
template <typename Is>
bool isWithin(const QQuickItem* item, Is is)
{
    for (; item != nullptr; item = item->parentItem()) {
        if (is(item))
            return true;
    }
    return false;
}

inline bool isWithin(const QQuickItem* item, const char* type)
{
    return isWithin(item, [type](const QQuickItem* each) { return each->inherits(type); });
}

inline bool isOnMap(const QQuickItem* item) { return isWithin(item, "QDeclarativeGeoMap"); }

inline QString shownText(const QQuickItem* item) { return item->property("text").toString(); }
inline QColor colorOf(const QQuickItem* item) { return item->property("color").value<QColor>(); }

inline QRectF placeOf(const QQuickItem* item)
{
    return item->mapRectToScene({0, 0, item->width(), item->height()});
}

inline QString where(const QQuickItem* item)
{
    QString path;
    for (; item != nullptr; item = item->parentItem()) {
        const QString type = QString(item->metaObject()->className()).section("_QML", 0, 0);
        path.prepend("/" + type + (item->objectName().isEmpty() ? "" : ":" + item->objectName()));
    }
    return path.section('/', -6);
}

/// The part of the item that its clipping parents leave to be seen.
inline QRectF visiblePart(const QQuickItem* item)
{
    QRectF part = placeOf(item);
    for (const QQuickItem* p = item->parentItem(); p != nullptr; p = p->parentItem()) {
        if (p->clip() || p->parentItem() == nullptr)
            part &= placeOf(p);
    }
    return part;
}

/// The colour of the nearest rectangle behind the item that is not to be seen through; invalid if
/// there is none.
inline QColor backing(const QQuickItem* item)
{
    for (const QQuickItem* p = item->parentItem(); p != nullptr; p = p->parentItem()) {
        if (!p->inherits("QQuickRectangle"))
            continue;
        const QColor color = colorOf(p);
        const QRectF place = item->mapRectToItem(p, {0, 0, item->width(), item->height()});
        const QRectF room(-1, -1, p->width() + 2, p->height() + 2);
        return color.alpha() == 255 && room.contains(place) ? color : QColor();
    }
    return {};
}

/// The colour that most pixels of a part have: what a text stands on.
inline QColor mostOf(const QImage& image, const QRect& part)
{
    QHash<QRgb, int> counts;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            ++counts[image.pixel(x, y)];
    }
    const auto isLess = [](int a, int b) { return a < b; };
    return std::max_element(counts.cbegin(), counts.cend(), isLess).key();
}
