#pragma once

#include "CsvTable_p.h"
#include "FeedProblem.h"
#include "FeedSource_p.h"
#include "GtfsRows_p.h"
#include "IdTable.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <array>
#include <variant>

namespace rivo::feed::gtfs
{

/// What a fault of a file costs: faults of fares refuse the feed, others leave something out.
enum class Concern { Fares, Map, Timetable };

/// The identifiers that a file defines, with the lines where it does.
struct Ids
{
    IdTable table;
    QVector<int> lines;
    bool isJudged = true; ///< false if the file could not be read whole: anything may be defined
};

/// Reports what is wrong with one file while it is read.
class TableReport
{
public:
    TableReport(QString path, Concern concern, FeedReport& report)
        : m_path(std::move(path)), m_concern(concern), m_report(report)
    {
    }

    const QString& path() const { return m_path; }

    /// Whether the header has the column, and what columns it has that are not read.
    bool hasColumn(const char* name) const { return m_columns.contains(QLatin1String(name)); }
    const QStringList& otherColumns() const { return m_otherColumns; }
    void setColumns(const QStringList& columns, const QStringList& others);

    /// Lines that are no UTF-8 cost less than other faults.
    void setEncodingConcern(Concern concern) { m_encodingConcern = concern; }

    /// Reports a fault of a row.
    void fault(const Row& row, const char* column, Id value, const QString& expected);
    void fault(const Row& row, const char* column, const QString& value, const QString& expected);
    /// Reports a fault that is of no single row.
    void wholeFault(const QString& found, const QString& expected);
    void wholeFault(const FeedProblem& problem) { report(problem, m_concern); }
    void encodingFault(const FeedProblem& problem) { report(problem, m_encodingConcern); }
    /// Reports a fault as something of another concern than the file's.
    void report(const FeedProblem& problem, Concern concern);
    /// Reports a fault that costs less than those of the rest of the file.
    void lesserFault(const Row& row, const char* column, Id value, const QString& expected,
                     Concern concern);
    void notice(int line, const QString& message);

    /// From now on faults of rows are kept for takeFaults() instead of being reported.
    void keepFaults() { m_isKeeping = true; }
    QVector<FeedProblem> takeFaults() { return std::exchange(m_faults, {}); }

    /// The number of an identifier that another file defines; -1 for an empty one and, after
    /// reporting it, for one that is not defined.
    int refer(const Ids& ids, const char* definedIn, const Row& row, const char* column, Id id);

private:
    void add(FeedProblem problem);
    FeedProblem problemOf(const Row& row, const char* column, Id value,
                          const QString& expected) const;

    const QString m_path;
    const Concern m_concern;
    Concern m_encodingConcern = m_concern;
    FeedReport& m_report;
    QStringList m_columns;
    QStringList m_otherColumns;
    bool m_isKeeping = false;
    QVector<FeedProblem> m_faults;
};

/// "an id of areas.txt".
QString idOf(const char* file);

/// Turns the files of a GTFS feed into records.
class Tables
{
public:
    Tables(FeedSource& source, const FeedOptions& options, FeedReport& report);

    const FeedOptions& options() const { return m_options; }
    FeedReport& report() { return m_report; }

    QString pathOf(const char* name) const { return m_source.pathOf(QLatin1String(name)); }
    bool isThere(const char* name) const { return m_names.contains(QLatin1String(name)); }

    /// Reports the files whose names are those of `known` in another spelling.
    void checkSpelling(const QVector<QPair<const char*, Concern>>& known);

    /// Hands every record of the file `name` to `handle` as (R& row, TableReport& table). True if
    /// there is no such file or every record of it was handled.
    template <class R, class Handler>
    bool read(const char* name, Concern concern, const Handler& handle)
    {
        if (!isThere(name))
            return true;
        TableReport table(pathOf(name), concern, m_report);
        return read<R>(QLatin1String(name), table, handle);
    }

    /// As above for a file that is there, with a report that the caller has prepared.
    template <class R, class Handler>
    bool read(const QString& name, TableReport& table, const Handler& handle)
    {
        const auto fail = failureOf(table);
        return readRecords<R>(m_source.open(name, fail), table, handle);
    }

    /// As above for a file outside of the feed.
    template <class R, class Handler>
    bool readElsewhere(const QString& path, const Handler& handle)
    {
        TableReport table(path, Concern::Fares, m_report);
        return readRecords<R>(openFile(path, m_options.limits, failureOf(table)), table, handle);
    }

    /// As read() for a file whose first column defines identifiers, which are added to `ids`.
    /// Identifiers that are there twice are reported; rows without one have been.
    template <class R, class Handler>
    void define(const char* name, Concern concern, Ids& ids, const Handler& handle)
    {
        const int firstProblem = static_cast<int>(m_report.problems().size());
        ids.isJudged = read<R>(name, concern, [&](R& row, TableReport& table) {
            const Id id = row.*std::get<Id R::*>(Columns<R>::table[0].member);
            if (id.empty())
                return;
            add(ids, row.line, id);
            handle(row, table);
        });
        TableReport table(pathOf(name), concern, m_report);
        seal(ids, Columns<R>::table[0].name, table);
        m_report.orderByLine(firstProblem);
    }

    void add(Ids& ids, int line, Id id);
    void seal(Ids& ids, const char* column, TableReport& table);

    /// `utf8` as text, which equal texts often share.
    QString keep(Id utf8);

private:
    FileFailure failureOf(TableReport& table) const;
    bool readRows(const ByteReader& bytes, CsvReading& reading, TableReport& table);
    void countText(size_t bytes);

    template <class R, class Handler>
    bool readRecords(const ByteReader& bytes, TableReport& table, const Handler& handle)
    {
        CsvReading reading;
        for (const Column<R>& column : Columns<R>::table)
            reading.columns.append({column.name, column.rule.isRequired});
        reading.mostRecords =
            isLong<R> ? m_options.limits.csvRecords : m_options.limits.tableRecords;
        reading.takeRecord = [&](int line, const std::vector<std::string_view>& values) {
            R row;
            row.line = line;
            size_t index = 0;
            for (const Column<R>& column : Columns<R>::table)
                readField(values[index++], column, row, table);
            checkCompanions(values, row, table);
            handle(row, table);
        };
        return readRows(bytes, reading, table);
    }

    /// Files with a row per stop of a trip, point of a line or day of a service.
    template <class R>
    static constexpr bool isLong = std::is_same_v<R, StopTimeRow> || std::is_same_v<R, ShapeRow> ||
                                   std::is_same_v<R, CalendarDateRow>;

    template <class R>
    void readField(Id text, const Column<R>& column, R& row, TableReport& table)
    {
        const auto readInto = [&](auto member) {
            return readValue(text, column.rule, row.*member);
        };
        const QString expected = std::visit(readInto, column.member);
        reportField(row, column.name, column.rule, text, expected, table);
    }

    /// Stores `text` in `into`, unless it is empty and may be. Returns what was expected instead,
    /// if it does not fit the rule.
    template <class Value>
    QString readValue(Id text, const FieldRule& rule, Value& into)
    {
        if ((text.empty() && !rule.isRequired) || convert(text, rule, into))
            return {};
        return inWords(rule, into);
    }

    /// Reports the fault of a field, unless nothing else was expected.
    static void reportField(const Row& row, const char* column, const FieldRule& rule, Id text,
                            const QString& expected, TableReport& table);

    /// Reports columns that are empty where another one needs them.
    template <class R>
    static void checkCompanions(const std::vector<std::string_view>& values, const R& row,
                                TableReport& table)
    {
        for (const Column<R>& column : Columns<R>::table) {
            const char* companion = column.rule.companion;
            if (companion && !valueOf<R>(values, column.name).empty() &&
                valueOf<R>(values, companion).empty())
                reportField(row, companion, columnOf<R>(companion).rule, {},
                            QStringLiteral("a value beside %1").arg(QLatin1String(column.name)),
                            table);
        }
    }

    template <class R>
    static const Column<R>& columnOf(const char* name)
    {
        const Column<R>* column = Columns<R>::table;
        while (qstrcmp(column->name, name) != 0)
            ++column;
        return *column;
    }

    template <class R>
    static Id valueOf(const std::vector<std::string_view>& values, const char* name)
    {
        return values[static_cast<size_t>(&columnOf<R>(name) - Columns<R>::table)];
    }

    // Each stores `text` in `into` if it fits the rule.
    bool convert(Id text, const FieldRule& rule, Id& into) const;
    bool convert(Id text, const FieldRule& rule, QString& into);
    static bool convert(Id text, const FieldRule& rule, int& into);
    static bool convert(Id text, const FieldRule& rule, double& into);

    template <class Text>
    QString inWords(const FieldRule& rule, const Text&) const
    {
        return rule.textInWords(m_options.limits);
    }
    static QString inWords(const FieldRule& rule, int) { return rule.inWords("an integer"); }
    static QString inWords(const FieldRule& rule, double) { return rule.inWords("a number"); }

    FeedSource& m_source;
    const FeedOptions& m_options;
    FeedReport& m_report;
    QStringList m_names;
    qint64 m_textBytes = 0; ///< that were kept
    std::array<QString, 1024> m_recentTexts;
};

} // namespace rivo::feed::gtfs
