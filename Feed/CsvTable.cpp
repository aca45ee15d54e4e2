#include "CsvTable_p.h"

#include "FeedFile_p.h"
#include "FeedProblem.h"

#include <csv.h>

#include <algorithm>

namespace rivo::feed
{

namespace
{

/// libcsv's parser, which is to be freed and can be set back after an error.
class Parser
{
public:
    Parser() { start(); }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;
    ~Parser() { csv_free(&m_parser); }

    void restart()
    {
        csv_free(&m_parser);
        start();
    }

    csv_parser* get() { return &m_parser; }

private:
    void start()
    {
        // Reporting every unquoted line end tells whether a quoted field is open after a line.
        csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL);
        csv_set_blk_size(&m_parser, 4096);
    }

    csv_parser m_parser = {};
};

class Reader
{
public:
    Reader(const QString& file, const QVector<CsvColumn>& columns, const FeedLimits& limits,
           FeedReport& report, const CsvRecordHandler& handle)
        : m_file(file), m_columns(columns), m_limits(limits), m_report(report), m_handle(handle)
    {
    }

    bool read(const QByteArray& text)
    {
        for (int from = 0, length = 0; from < text.size() && !m_isStopped; from += length) {
            length = lineLength(text, from);
            parseLine(QByteArray::fromRawData(text.constData() + from, length));
        }
        if (!m_isStopped)
            finish();
        return m_isComplete;
    }

private:
    void parseLine(const QByteArray& line)
    {
        ++m_line;
        if (!m_isRecordOpen)
            m_recordLine = m_line;
        m_isRecordOpen = true;
        const auto length = static_cast<size_t>(line.size());
        const size_t parsed =
            csv_parse(m_parser.get(), line.constData(), length, onField, onRow, this);
        if (parsed == length)
            return;
        const int position = static_cast<int>(parsed);
        problem(m_line, toText(line.left(position)).size() + 1, {},
                quoted(toText(line.mid(position).trimmed())),
                QStringLiteral("a comma or the end of the line after a closing quote, and two "
                               "quotes for one within a text%1")
                    .arg(m_recordLine == m_line
                             ? QString()
                             : QStringLiteral(" (record from line %1 on)").arg(m_recordLine)));
        m_parser.restart();
        m_isStopped = !m_hasHeader;
        m_isRecordOpen = false;
        clearRow();
    }

    void finish()
    {
        if (csv_fini(m_parser.get(), onField, onRow, this) != 0)
            problem(m_recordLine, 0, {}, QStringLiteral("the end of the file"),
                    QStringLiteral("a closing quote"));
        if (!m_hasHeader)
            endHeader();
    }

    static void onField(void* data, size_t size, void* reader)
    {
        static_cast<Reader*>(reader)->field(static_cast<const char*>(data), size);
    }

    static void onRow(int, void* reader) { static_cast<Reader*>(reader)->endRow(); }

    void field(const char* data, size_t size)
    {
        // Enough bytes to see that a text is too long.
        const size_t wanted = 4 * (static_cast<size_t>(m_limits.textLength) + 1);
        const int length = static_cast<int>(std::min(size, wanted));
        if (!m_hasHeader)
            headerField(QString::fromUtf8(data, length).trimmed());
        else if (m_fields < m_positions.size() && m_positions.at(m_fields) >= 0)
            m_values[m_positions.at(m_fields)] = QString::fromUtf8(data, length);
        ++m_fields;
    }

    void headerField(const QString& name)
    {
        if (m_fields >= m_limits.csvColumns)
            return;
        const auto column =
            std::find_if(m_columns.begin(), m_columns.end(), [&](const CsvColumn& wanted) {
                return name == QLatin1String(wanted.name);
            });
        const int index =
            column == m_columns.end() ? -1 : static_cast<int>(column - m_columns.begin());
        if (index >= 0 && m_positions.contains(index))
            problem(m_recordLine, 0, name, QStringLiteral("given twice"),
                    QStringLiteral("each column once"));
        m_positions.append(index);
    }

    void endRow()
    {
        m_isRecordOpen = false;
        if (m_fields == 0)
            return;
        if (!m_hasHeader)
            endHeader();
        else
            endRecord();
        clearRow();
    }

    void clearRow()
    {
        m_fields = 0;
        m_values.fill(QString(), m_columns.size());
    }

    void endHeader()
    {
        m_hasHeader = true;
        if (m_fields > m_limits.csvColumns)
            stop(QStringLiteral("%1 columns").arg(m_fields),
                 QStringLiteral("at most %1 columns").arg(m_limits.csvColumns));
        for (int i = 0; i < m_columns.size(); ++i) {
            if (m_columns.at(i).isRequired && !m_positions.contains(i))
                stop(QStringLiteral("missing"), QStringLiteral("a column of this name"),
                     QLatin1String(m_columns.at(i).name));
        }
    }

    void endRecord()
    {
        if (++m_records > m_limits.csvRecords)
            return stop(QStringLiteral("a further record"),
                        QStringLiteral("at most %1 records").arg(m_limits.csvRecords));
        if (m_fields > m_positions.size())
            return problem(m_recordLine, 0, {}, QStringLiteral("%1 fields").arg(m_fields),
                           QStringLiteral("at most %1, as in the header").arg(m_positions.size()));
        m_handle(m_recordLine, m_values);
    }

    void stop(const QString& value, const QString& expected, const QString& field = {})
    {
        m_isStopped = true;
        problem(m_recordLine, 0, field, value, expected);
    }

    void problem(int line, int column, const QString& field, const QString& value,
                 const QString& expected)
    {
        m_isComplete = false;
        m_report.add(FeedProblem{m_file, line, column, {}, field, value, expected});
    }

    const QString& m_file;
    const QVector<CsvColumn>& m_columns;
    const FeedLimits& m_limits;
    FeedReport& m_report;
    const CsvRecordHandler& m_handle;
    Parser m_parser;
    QVector<int> m_positions; ///< per column of the file: index of the wanted column or -1
    QVector<QString> m_values;
    int m_fields = 0; ///< of the current row, so far
    int m_line = 0;
    int m_recordLine = 1;
    int m_records = 0;
    bool m_isRecordOpen = false;
    bool m_hasHeader = false;
    bool m_isComplete = true;
    bool m_isStopped = false;
};

} // namespace

bool readCsv(const QByteArray& text, const QString& file, const QVector<CsvColumn>& columns,
             const FeedLimits& limits, FeedReport& report, const CsvRecordHandler& handle)
{
    return Reader(file, columns, limits, report, handle).read(text);
}

} // namespace rivo::feed
