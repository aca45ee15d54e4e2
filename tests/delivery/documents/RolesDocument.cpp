#include "RolesDocument.h"

#include "QmlBlocks.h"

#include <QRegularExpression>
#include <QSet>

namespace
{

/// Columns that only explain.
const QSet<QString>& explanations()
{
    static const QSet<QString> columns{"Meaning", "Unit"};
    return columns;
}

QStringList cellsOf(const QString& row)
{
    QStringList cells = row.split('|');
    cells.removeFirst();
    cells.removeLast();
    for (QString& cell : cells)
        cell = cell.remove('`').trimmed();
    return cells;
}

class Parser
{
public:
    RolesDocument parse(const QString& markdown)
    {
        static const QRegularExpression beforeClass("^(?=## )",
                                                    QRegularExpression::MultilineOption);
        for (const QString& section : markdown.split(beforeClass)) {
            for (const QString& line : section.split('\n'))
                read(line);
            const QStringList blocks = qmlBlocks(section);
            if (!blocks.isEmpty())
                m_document.examples[m_class] = blocks.first();
        }
        return m_document;
    }

private:
    void read(const QString& line)
    {
        if (m_inExample)
            m_inExample = line != "```";
        else if (line.startsWith("## "))
            enterClass(line.mid(3));
        else if (line.startsWith("### "))
            enterTable(line.mid(4));
        else if (line.startsWith("```"))
            beginExample(line);
        else if (line.startsWith('|'))
            readRow(line);
        else
            m_columns.clear();
    }

    void enterClass(const QString& className)
    {
        m_class = className;
        m_hasExample = false;
        enterTable(QString());
    }

    void enterTable(const QString& table)
    {
        m_table = table;
        m_columns.clear();
    }

    void beginExample(const QString& line)
    {
        if (line != "```qml" || m_table != "Example" || m_hasExample)
            m_document.faults.append("example out of place in " + m_class);
        m_hasExample = true;
        m_inExample = true;
    }

    void readRow(const QString& row)
    {
        const QStringList cells = cellsOf(row);
        if (m_table.isEmpty())
            m_document.faults.append("table out of place in " + m_class);
        else if (m_columns.isEmpty())
            m_columns = cells;
        else if (cells.size() != m_columns.size())
            m_document.faults.append("wrong width: " + row);
        else if (!cells.first().startsWith("---"))
            readCells(cells);
    }

    void readCells(const QStringList& cells)
    {
        for (int i = 0; m_table == "Roles" && i < cells.size(); ++i) {
            if (explanations().contains(m_columns.at(i)) && cells.at(i).isEmpty())
                m_document.faults.append(m_class + ", " + cells.first() + ": no " +
                                         m_columns.at(i));
        }
        m_document.lines[m_class][m_table].append(compared(cells));
    }

    QString compared(const QStringList& cells) const
    {
        QStringList kept;
        for (int i = 0; i < cells.size(); ++i) {
            if (!explanations().contains(m_columns.at(i)))
                kept.append(cells.at(i));
        }
        return kept.join(", ");
    }

    RolesDocument m_document;
    QString m_class;
    QString m_table;
    QStringList m_columns;
    bool m_hasExample = false;
    bool m_inExample = false;
};

QStringList without(QStringList lines, const QStringList& others)
{
    for (const QString& other : others)
        lines.removeOne(other);
    return lines;
}

template <typename Value>
QSet<QString> allKeys(const QMap<QString, Value>& a, const QMap<QString, Value>& b)
{
    const QStringList keys = a.keys() + b.keys();
    return {keys.cbegin(), keys.cend()};
}

} // namespace

RolesDocument parseRolesDocument(const QString& markdown) { return Parser().parse(markdown); }

QStringList differences(const InterfaceLines& document, const InterfaceLines& library)
{
    QStringList texts;
    for (const QString& className : allKeys(document, library)) {
        const auto documented = document.value(className);
        const auto actual = library.value(className);
        for (const QString& table : allKeys(documented, actual)) {
            const QString place = className + ", " + table + ": ";
            for (const QString& line : without(actual[table], documented[table]))
                texts.append(place + "missing " + line);
            for (const QString& line : without(documented[table], actual[table]))
                texts.append(place + "surplus " + line);
        }
    }
    texts.sort();
    return texts;
}
