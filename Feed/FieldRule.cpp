#include "FieldRule.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

/// Unicode characters: a pair of surrogates is one.
int characterCount(const QString& text)
{
    return static_cast<int>(
        std::count_if(text.begin(), text.end(), [](QChar unit) { return !unit.isLowSurrogate(); }));
}

} // namespace

bool FieldRule::allows(const QString& text, const FeedLimits& limits) const
{
    const int length = characterCount(text);
    return length >= int(isRequired) && length <= limits.textLength && (!isFit || isFit(text));
}

QString FieldRule::inWords(const char* kind) const
{
    if (min >= max)
        return QString::number(min, 'f', 0);
    return QStringLiteral("%1 from %2 to %3")
        .arg(QLatin1String(kind))
        .arg(min, 0, 'f', 0)
        .arg(max, 0, 'f', 0);
}

QString FieldRule::textInWords(const FeedLimits& limits) const
{
    if (fitInWords)
        return QLatin1String(fitInWords);
    return QStringLiteral("a text of %1 to %2 characters")
        .arg(int(isRequired))
        .arg(limits.textLength);
}

} // namespace rivo::feed
