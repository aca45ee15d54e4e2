#include "TextTable.h"

#include <FeedProblem.h>

#include <QRegularExpression>

#include <cwchar>
#include <numeric>

namespace
{

constexpr QChar ellipsis(0x2026);
const QLatin1String columnSeparator(" | ");
const QLatin1String noColour("\x1b[0m");

/// `text` without control characters, cut to `width` columns.
QString cut(const QString& text, int width)
{
    QString shown = rivo::feed::printable(text);
    if (displayWidth(shown) <= width)
        return shown;
    QString kept = shown;
    while (!kept.isEmpty() && displayWidth(kept) > width - 1)
        kept.chop(1);
    if (!kept.isEmpty() && kept.at(kept.size() - 1).isHighSurrogate())
        kept.chop(1);
    return kept + ellipsis;
}

/// The line, exactly `width` columns wide; the left part gives way to the right one.
QString fitted(const TextCell::Line& line, int width)
{
    const QString right = cut(line.right, width);
    const int gap = right.isEmpty() ? 0 : 1;
    const QString left = cut(line.left, qMax(0, width - displayWidth(right) - gap));
    return left + QString(width - displayWidth(left) - displayWidth(right), QLatin1Char(' ')) +
           right;
}

/// Control sequence that starts the look of a cell; empty for a cell without one.
QString startOf(const TextCell& cell)
{
    if (cell.style == TextCell::Style::Inert)
        return QStringLiteral("\x1b[2m");
    static const QRegularExpression hexColour(QStringLiteral("^#([0-9a-fA-F]{6})$"));
    const QRegularExpressionMatch match = hexColour.match(cell.colour);
    if (!match.hasMatch())
        return {};
    const uint colour = match.captured(1).toUInt(nullptr, 16);
    const uint red = colour >> 16, green = (colour >> 8) & 0xff, blue = colour & 0xff;
    // Dark text on light cells and the other way round, by perceived brightness.
    const bool isLight = red * 299 + green * 587 + blue * 114 > 128000;
    return QStringLiteral("\x1b[%1;48;2;%2;%3;%4m")
        .arg(isLight ? 30 : 97)
        .arg(red)
        .arg(green)
        .arg(blue);
}

QString trimmedRight(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

} // namespace

int displayWidth(const QString& text)
{
    const QVector<uint> characters = text.toUcs4();
    return std::accumulate(characters.cbegin(), characters.cend(), 0,
                           [](int width, uint character) {
                               return width + qMax(0, ::wcwidth(static_cast<wchar_t>(character)));
                           });
}

void TextTable::addHeading(const QString& heading) { m_rows.append({heading, {}}); }

void TextTable::addRow(const QVector<TextCell>& cells) { m_rows.append({QString(), cells}); }

QString TextTable::toString(bool withColours) const
{
    const QVector<int> widths = columnWidths();
    QStringList lines;
    bool isFirstRowBelowHeading = true;
    for (const Row& row : m_rows) {
        if (!row.heading.isEmpty()) {
            lines.append({QString(), cut(row.heading, 200)});
            isFirstRowBelowHeading = true;
            continue;
        }
        if (!isFirstRowBelowHeading && m_spacing == Spacing::BlankLine)
            lines.append(QString());
        isFirstRowBelowHeading = false;
        int height = 0;
        for (const TextCell& cell : row.cells)
            height = qMax(height, static_cast<int>(cell.lines.size()));
        for (int line = 0; line < height; ++line) {
            QStringList parts;
            for (int column = 0; column < row.cells.size(); ++column) {
                const TextCell& cell = row.cells.at(column);
                const QString start = withColours ? startOf(cell) : QString();
                const QString text = fitted(cell.lines.value(line), widths.at(column));
                parts.append(start.isEmpty() ? text : start + text + noColour);
            }
            lines.append(QStringLiteral("  ") + trimmedRight(parts.join(columnSeparator)));
        }
    }
    return lines.isEmpty() ? QString() : lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QVector<int> TextTable::columnWidths() const
{
    QVector<int> widths;
    for (const Row& row : m_rows) {
        if (widths.size() < row.cells.size())
            widths.resize(row.cells.size());
        for (int column = 0; column < row.cells.size(); ++column) {
            for (const TextCell::Line& line : row.cells.at(column).lines) {
                const int gap = line.left.isEmpty() || line.right.isEmpty() ? 0 : 2;
                const int width = displayWidth(rivo::feed::printable(line.left)) + gap +
                                  displayWidth(rivo::feed::printable(line.right));
                widths[column] = qMax(widths.at(column), qMin(width, maximumColumnWidth));
            }
        }
    }
    return widths;
}
