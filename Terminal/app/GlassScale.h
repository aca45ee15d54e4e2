#pragma once

#include <QObject>
#include <QSize>
#include <QSizeF>

namespace rivo::terminal
{

/// What the command line states about the glass.
struct Glass
{
    QSizeF millimetres; ///< of the window on the glass; empty = ask the screen
    double scale = 1.0; ///< makes everything larger or smaller
};

/// Pixels per millimetre of a window of `window` pixels: from `glass`, otherwise from the screen's
/// pixels and millimetres, if these can be true, otherwise that of a panel of 7 inches.
double pixelsPerMillimetre(const Glass& glass, const QSize& window, const QSize& screen,
                           const QSizeF& screenMillimetres);

/// Sizes on the glass in pixels. QML has one instance for each engine.
class GlassScale : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double pixelsPerMillimetre READ pixelsPerMillimetre CONSTANT)

public:
    /// Has the pixels per millimetre that set() was called with last.
    explicit GlassScale(QObject* parent = nullptr);

    /// Sets the scale of the instances that are created from now on.
    static void set(double pixelsPerMillimetre);

    double pixelsPerMillimetre() const { return m_pixelsPerMillimetre; }

    /// Whole pixels of at least `millimetres`.
    Q_INVOKABLE int length(double millimetres) const;

    /// Pixel size of the program's font whose capital letters are at least `arcMinutes` high for
    /// eyes 70 cm away.
    Q_INVOKABLE int text(double arcMinutes) const;

private:
    const double m_pixelsPerMillimetre;
    const double m_capHeight; ///< of a font with a pixel size of 1
};

} // namespace rivo::terminal
