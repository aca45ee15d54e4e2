#include "ShortNames.h"

#include <algorithm>

namespace rivo::terminal
{

namespace
{

const QChar ellipsis(0x2026);

QString reversed(const QString& text)
{
    QString result = text;
    std::reverse(result.begin(), result.end());
    return result;
}

int equalLetters(const QString& a, const QString& b)
{
    const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    Q_UNUSED(other)
    return static_cast<int>(end - a.begin());
}

/// How many letters `name` has in common with another one at the begin; `names` are sorted, so that
/// it is one of its neighbours.
int mostEqualLetters(const QStringList& names, const QString& name)
{
    const auto place = std::lower_bound(names.begin(), names.end(), name);
    int most = 0;
    if (place != names.begin())
        most = equalLetters(name, *(place - 1));
    const auto next = place != names.end() && *place == name ? place + 1 : place;
    if (next != names.end())
        most = std::max(most, equalLetters(name, *next));
    return most;
}

/// A surrogate pair, or a letter with its accents, is not torn.
bool isInsideLetter(const QString& text, int place)
{
    return place > 0 && place < text.size() &&
           (text.at(place).isLowSurrogate() || text.at(place).isMark());
}

QString begin(const QString& text, int letters)
{
    while (isInsideLetter(text, letters))
        --letters;
    return text.left(letters).trimmed();
}

QString from(const QString& text, int place)
{
    while (isInsideLetter(text, place))
        ++place;
    return text.mid(place).trimmed();
}

} // namespace

ShortNames::ShortNames(QStringList names) : m_names(std::move(names))
{
    std::sort(m_names.begin(), m_names.end());
    m_names.erase(std::unique(m_names.begin(), m_names.end()), m_names.end());
    m_backwards.reserve(m_names.size());
    for (const QString& name : qAsConst(m_names))
        m_backwards.append(reversed(name));
    std::sort(m_backwards.begin(), m_backwards.end());
}

int ShortNames::commonBegin(const QString& name) const { return mostEqualLetters(m_names, name); }

int ShortNames::commonEnd(const QString& name) const
{
    return mostEqualLetters(m_backwards, reversed(name));
}

QString ShortNames::shortened(const QString& name, int letters) const
{
    if (name.size() <= letters)
        return name;
    const int room = std::max(2, letters - 1); // one letter is the ellipsis
    const int first = commonBegin(name);       // here it differs from the others
    const int fromEnd = commonEnd(name);
    if (first < room)
        return begin(name, room) + ellipsis;
    const int head = room / 3;
    const int tail = room - head;
    if (fromEnd < tail)
        return begin(name, head) + ellipsis + from(name, name.size() - tail);
    // The difference is in the middle, or at the end of a name that others continue.
    const int window = std::max(1, tail - 1);
    const int start = std::min(first - window / 3, static_cast<int>(name.size()) - window);
    const QString middle = from(name, start).left(window);
    const bool isEnd = start + window >= name.size();
    return begin(name, head) + ellipsis + middle + (isEnd ? QString() : QString(ellipsis));
}

} // namespace rivo::terminal
