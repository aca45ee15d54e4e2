#include "GlassScale.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QtMath>

#include <cmath>

namespace rivo::terminal
{

namespace
{

constexpr double millimetresPerInch = 25.4;
constexpr double usualDiagonal = 7.0 * millimetresPerInch;
constexpr double smallestDiagonal = 3.0 * millimetresPerInch;
constexpr double largestDiagonal = 60.0 * millimetresPerInch;
constexpr double fewestPixels = 2.0; ///< per millimetre: 51 per inch
constexpr double mostPixels = 20.0;  ///< 508 per inch
constexpr double viewingDistance = 700.0;

double g_pixelsPerMillimetre = 6.7; // 1024x600 pixels on 7 inches

double diagonal(const QSizeF& size) { return std::hypot(size.width(), size.height()); }

/// Screens report nothing, centimetres, an aspect ratio, or the size of another screen.
bool canBeTrue(const QSize& pixels, const QSizeF& millimetres)
{
    if (pixels.isEmpty() || millimetres.isEmpty())
        return false;
    const double across = pixels.width() / millimetres.width();
    const double down = pixels.height() / millimetres.height();
    const double size = diagonal(millimetres);
    return size >= smallestDiagonal && size <= largestDiagonal && across >= fewestPixels &&
           across <= mostPixels && std::abs(across / down - 1.0) <= 0.15;
}

double capHeightOfOnePixel()
{
    QFont font = QGuiApplication::font();
    constexpr int sample = 200;
    font.setPixelSize(sample);
    return QFontMetricsF(font).capHeight() / sample;
}

/// Sums of rounded parts must not add a pixel.
int wholePixels(double pixels) { return qCeil(pixels - 1e-6); }

} // namespace

double pixelsPerMillimetre(const Glass& glass, const QSize& window, const QSize& screen,
                           const QSizeF& screenMillimetres)
{
    if (!glass.millimetres.isEmpty())
        return glass.scale * diagonal(window) / diagonal(glass.millimetres);
    if (canBeTrue(screen, screenMillimetres))
        return glass.scale * diagonal(screen) / diagonal(screenMillimetres);
    return glass.scale * diagonal(window) / usualDiagonal;
}

GlassScale::GlassScale(QObject* parent)
    : QObject(parent), m_pixelsPerMillimetre(g_pixelsPerMillimetre),
      m_capHeight(capHeightOfOnePixel())
{
}

void GlassScale::set(double pixelsPerMillimetre) { g_pixelsPerMillimetre = pixelsPerMillimetre; }

int GlassScale::length(double millimetres) const
{
    return wholePixels(millimetres * m_pixelsPerMillimetre);
}

int GlassScale::text(double arcMinutes) const
{
    const double capital = viewingDistance * std::tan(qDegreesToRadians(arcMinutes / 60.0));
    return wholePixels(capital * m_pixelsPerMillimetre / m_capHeight);
}

} // namespace rivo::terminal
