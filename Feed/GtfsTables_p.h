#pragma once

#include "CsvTable_p.h"
#include "FeedProblem.h"
#include "GtfsRows_p.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <variant>

namespace rivo::feed::gtfs
{

/// The identifiers of one kind in order of appearance, each kept once.
class Ids
{
public:
    /// The index of `id`, which is added if it is new.
    int add(const QString& id);
    int indexOf(const QString& id) const { return m_indexes.value(id, -1); }
    bool contains(const QString& id) const { return m_indexes.contains(id); }

    /// Whether the file that defines the identifiers could be read whole; otherwise references to
    /// them are not judged.
    bool isDefined() const { return m_isDefined; }
    void setDefined(bool isDefined) { m_isDefined = isDefined; }

    /// Every identifier with its number: its own if all are positive integers, else from 1 in
    /// order of appearance.
    QHash<QString, int> numbers() const;

private:
    QStringList m_ids;
    QHash<QString, int> m_indexes;
    bool m_isDefined = false;
};

/// Reports what is wrong with one file while it is read.
class TableReport
{
public:
    TableReport(QString path, FeedReport& report) : m_path(std::move(path)), m_report(report) {}

    const QString& path() const { return m_path; }

    void problem(const Row& row, const char* column, const QString& text, const QString& expected);
    void problem(int line, const QString& field, const QString& value, const QString& expected);

    /// Adds an identifier that the file defines; false if it is empty or there already.
    bool define(Ids& ids, const Row& row, const char* column, const QString& id);
    /// Reports an identifier that `definedIn` does not define.
    void checkReference(const Ids& ids, const char* definedIn, const Row& row, const char* column,
                        const QString& id);
    /// As checkReference for an area. Where no file defines the areas, being referred to does.
    void referToArea(Ids& areas, const Row& row, const char* column, const QString& id);
    /// The time in seconds; -1 if there is none.
    int readTime(const Row& row, const char* column, const QString& text);

private:
    const QString m_path;
    FeedReport& m_report;
};

/// "an id of areas.txt".
QString idOf(const char* file);

/// A GTFS folder, whose files are read into records.
class Folder
{
public:
    Folder(const QString& path, const FeedOptions& options, FeedReport& report)
        : m_path(path), m_options(options), m_report(report)
    {
    }

    const QString& path() const { return m_path; }
    const FeedOptions& options() const { return m_options; }
    FeedReport& report() { return m_report; }

    QString pathOf(const char* name) const;
    bool isThere(const char* name) const;

    /// Hands every record of the file `name` to `handle` as (R& row, TableReport& table). True if
    /// there is such a file and every record of it was handled.
    template <class R, class Handler>
    bool readIfThere(const char* name, const Handler& handle)
    {
        return isThere(name) && read<R>(pathOf(name), handle);
    }

    /// As readIfThere for a file that must be there.
    template <class R, class Handler>
    bool read(const QString& path, const Handler& handle)
    {
        TableReport table(path, m_report);
        QVector<CsvColumn> columns;
        for (const Column<R>& column : Columns<R>::table)
            columns.append({column.name, column.rule.isRequired});
        return readRecords(path, columns, [&](int line, const QVector<QString>& values) {
            R row;
            row.line = line;
            int index = 0;
            for (const Column<R>& column : Columns<R>::table)
                readField(values.at(index++), column, row, table);
            checkCompanions(values, row, table);
            handle(row, table);
        });
    }

    /// Sorts the rows by group and sequence; a sequence that a group holds twice is a problem.
    template <class R>
    void putInSequence(QVector<R>& rows, const char* name, const char* column)
    {
        const auto position = [](const R& row) { return std::make_pair(row.group, row.sequence); };
        std::stable_sort(rows.begin(), rows.end(), [&](const R& left, const R& right) {
            return position(left) < position(right);
        });
        TableReport table(pathOf(name), m_report);
        for (int i = 1; i < rows.size(); ++i) {
            if (position(rows.at(i - 1)) == position(rows.at(i)))
                table.problem(rows.at(i), column, QString::number(rows.at(i).sequence),
                              QStringLiteral("each number once, it stands in line %1 too")
                                  .arg(rows.at(i - 1).line));
        }
    }

private:
    bool readRecords(const QString& path, const QVector<CsvColumn>& columns,
                     const CsvRecordHandler& handle);

    template <class R>
    void readField(const QString& text, const Column<R>& column, R& row, TableReport& table)
    {
        const auto readInto = [&](auto member) {
            if (text.isEmpty() && !column.rule.isRequired)
                return;
            if (!convert(text, column.rule, row.*member))
                table.problem(row, column.name, text, inWords(column.rule, row.*member));
        };
        std::visit(readInto, column.member);
    }

    /// Reports columns that are empty where another one needs them.
    template <class R>
    static void checkCompanions(const QVector<QString>& values, const R& row, TableReport& table)
    {
        for (const Column<R>& column : Columns<R>::table) {
            const char* companion = column.rule.companion;
            if (companion && !valueOf<R>(values, column.name).isEmpty() &&
                valueOf<R>(values, companion).isEmpty())
                table.problem(row, companion, {},
                              QStringLiteral("a value beside %1").arg(QLatin1String(column.name)));
        }
    }

    template <class R>
    static QString valueOf(const QVector<QString>& values, const char* name)
    {
        int index = 0;
        while (qstrcmp(Columns<R>::table[index].name, name) != 0)
            ++index;
        return values.at(index);
    }

    // Each stores `text` in `into` if it fits the rule.
    bool convert(const QString& text, const FieldRule& rule, QString& into);
    static bool convert(const QString& text, const FieldRule& rule, int& into);
    static bool convert(const QString& text, const FieldRule& rule, double& into);

    QString inWords(const FieldRule& rule, const QString&) const
    {
        return rule.textInWords(m_options.limits);
    }

    static QString inWords(const FieldRule& rule, int) { return rule.inWords("an integer"); }
    static QString inWords(const FieldRule& rule, double) { return rule.inWords("a number"); }

    const QString& m_path;
    const FeedOptions& m_options;
    FeedReport& m_report;
    QSet<QString> m_texts; ///< every text once: a network repeats few texts very often
};

} // namespace rivo::feed::gtfs
