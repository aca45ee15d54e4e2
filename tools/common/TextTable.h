#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// One cell of a printed table, such as a tile of the grid: lines of a left and a right part, shown
/// in one style.
struct TextCell
{
    enum class Style { Plain, Inert };

    struct Line
    {
        QString left;
        QString right;
    };

    QVector<Line> lines;
    Style style = Style::Plain;
    QString colour; ///< "#rrggbb" of the cell; anything else is no colour
};

/// Columns that a text takes on a terminal: 2 for wide characters, 0 for combining ones.
int displayWidth(const QString& text);

/// Rows of cells with aligned columns. Texts longer than a column may be are cut.
class TextTable
{
public:
    static constexpr int maximumColumnWidth = 36;

    /// What is between two rows of cells.
    enum class Spacing { BlankLine, None };

    explicit TextTable(Spacing spacing) : m_spacing(spacing) {}

    /// A line of its own above the rows that follow.
    void addHeading(const QString& heading);
    void addRow(const QVector<TextCell>& cells);

    /// `withColours` uses terminal control sequences; without it the text holds none.
    QString toString(bool withColours) const;

private:
    struct Row
    {
        QString heading; // empty for a row of cells
        QVector<TextCell> cells;
    };

    QVector<int> columnWidths() const;

    Spacing m_spacing;
    QVector<Row> m_rows;
};
