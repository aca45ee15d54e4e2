#include "TextFit.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace rivo::terminal
{

namespace
{

/// Whether the wrapped text is not higher than the room.
bool fits(const QString& text, const QSizeF& room, const QFont& font)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true); // as Text of Qt Quick
    layout.setTextOption(option);
    layout.beginLayout();
    double height = 0.0;
    bool isInside = true;
    for (QTextLine line = layout.createLine(); line.isValid() && isInside;
         line = layout.createLine()) {
        line.setLineWidth(room.width());
        height += std::ceil(line.height());
        isInside = height <= room.height() && line.naturalTextWidth() <= room.width();
    }
    layout.endLayout();
    return isInside;
}

bool hasOnlyWholeWords(const QString& text, double width, const QFont& font)
{
    const QFontMetricsF metrics(font);
    const QStringList words = text.split(QLatin1Char(' '));
    return std::all_of(words.begin(), words.end(), [&](const QString& word) {
        return metrics.horizontalAdvance(word) < width;
    });
}

} // namespace

FittedText fitted(const QString& text, const QSizeF& room, QFont font, int leastSize,
                  const ShortNames& names)
{
    const int largest = std::max(leastSize, font.pixelSize());
    const int step = std::max(1, (largest - leastSize) / 4);
    for (int size = largest; size >= leastSize; size -= step) {
        font.setPixelSize(size);
        if (hasOnlyWholeWords(text, room.width(), font) && fits(text, room, font))
            return {text, size};
    }
    font.setPixelSize(leastSize);
    if (fits(text, room, font))
        return {text, leastSize};
    int fewest = 0; // letters that fit
    int most = text.size();
    while (most - fewest > 1) {
        const int letters = (fewest + most) / 2;
        (fits(names.shortened(text, letters), room, font) ? fewest : most) = letters;
    }
    return {names.shortened(text, fewest), leastSize};
}

} // namespace rivo::terminal
