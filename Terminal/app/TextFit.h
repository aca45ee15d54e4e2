#pragma once

#include "ShortNames.h"

#include <QFont>
#include <QString>

namespace rivo::terminal
{

/// How a text is shown in a room that may be too small for it.
struct FittedText
{
    QString text;
    int pixelSize = 0;
};

/// `text` in `font`, wrapped in the room; smaller, down to `leastSize`, until it fits without
/// tearing a word; then with words torn; then shortened by `names`.
FittedText fitted(const QString& text, const QSizeF& room, QFont font, int leastSize,
                  const ShortNames& names);

} // namespace rivo::terminal
