#include "FeedProblem.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

QString place(const QString& file, int line, int column)
{
    QString text = printable(file);
    if (line > 0)
        text += QLatin1Char(':') + QString::number(line);
    if (line > 0 && column > 0)
        text += QLatin1Char(':') + QString::number(column);
    return text;
}

bool isSafe(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

QString escaped(QChar character)
{
    return QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
}

template <class Entry>
void keep(Entry&& entry, QVector<std::decay_t<Entry>>& kept, int& further)
{
    if (kept.size() < FeedReport::maxKept)
        kept.append(std::forward<Entry>(entry));
    else
        ++further;
}

} // namespace

QString FeedProblem::toString() const
{
    return place(file, line, column) + QLatin1String(": ") + withoutPlace();
}

QString FeedProblem::withoutPlace() const
{
    QString text;
    const QString& name = pointer.isEmpty() ? field : pointer;
    if (!name.isEmpty())
        text += printable(name) + QLatin1String(": ");
    if (!value.isEmpty())
        text += value + QLatin1String(", ");
    return text + QLatin1String("expected ") + printable(expected);
}

QString FeedNotice::toString() const
{
    return place(file, line, 0) + QLatin1String(": ") + printable(message);
}

void FeedReport::add(FeedProblem problem)
{
    keep(std::move(problem), m_problems, m_furtherProblems);
}

void FeedReport::add(const QString& file, int line, const QString& value, const QString& expected)
{
    add(FeedProblem{file, line, 0, {}, {}, value, expected});
}

void FeedReport::orderByLine(int first)
{
    std::stable_sort(m_problems.begin() + qMin(first, m_problems.size()), m_problems.end(),
                     [](const auto& left, const auto& right) { return left.line < right.line; });
}

void FeedReport::add(FeedNotice notice) { keep(std::move(notice), m_notices, m_furtherNotices); }

QString printable(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        const bool isPair =
            character.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            result.append(character).append(text.at(++i));
        else if (character.isSurrogate() || !isSafe(character))
            result += escaped(character);
        else
            result += character;
    }
    return result;
}

QString quoted(const QString& text)
{
    constexpr int maxLength = 80;
    const bool isCut = text.size() > maxLength;
    QString shown = text.left(maxLength);
    if (isCut && shown.at(maxLength - 1).isHighSurrogate())
        shown.chop(1);
    return QLatin1Char('"') + printable(shown) + QLatin1String(isCut ? "..." : "") +
           QLatin1Char('"');
}

} // namespace rivo::feed
