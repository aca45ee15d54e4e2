#include "CsvTable_p.h"

#include "FeedFile_p.h"
#include "LineReader_p.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <new>
#include <string>

#include <csv.h>
#include <unistd.h>

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
        // A line end that is not reported lies in a quoted field, which is then still open.
        csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL);
        csv_set_blk_size(&m_parser, 4096);
    }

    csv_parser m_parser = {};
};

constexpr int recordsPerLook = 4096; ///< at the memory, which takes some microseconds

/// Bytes of this program that no file backs; 0 if the system does not say it.
qint64 ownMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const QList<QByteArray> pages =
        file.open(QIODevice::ReadOnly) ? file.readAll().split(' ') : QList<QByteArray>();
    constexpr int resident = 1;
    constexpr int shared = 2;
    return (pages.value(resident).toLongLong() - pages.value(shared).toLongLong()) *
           sysconf(_SC_PAGESIZE);
}

bool isBlank(char byte) { return byte == ' ' || byte == '\t'; }

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view withoutLineEnd(std::string_view line)
{
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.remove_suffix(1);
    return line;
}

QString toText(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

class Reader
{
public:
    Reader(ByteReader bytes, const CsvReading& reading)
        : m_reading(reading), m_lines(std::move(bytes), reading.limits.csvLineBytes),
          m_kept(static_cast<size_t>(reading.columns.size())), m_values(m_kept.size())
    {
    }

    bool read()
    {
        if (m_lines.isUtf16()) {
            stop(QStringLiteral("text in UTF-16"), utf8Expected());
            return false;
        }
        std::string_view line;
        while (!m_isStopped && m_lines.next(line)) {
            parseLine(line);
            if (m_isOutOfMemory)
                throw std::bad_alloc();
        }
        if (m_lines.hasFailed())
            return false;
        if (m_lines.isTooLong())
            stopAtLongRecord();
        if (!m_isStopped)
            finish();
        return m_isComplete;
    }

private:
    void parseLine(std::string_view line)
    {
        ++m_line;
        if (!m_isRecordOpen) {
            m_recordLine = m_line;
            m_recordBytes = 0;
        }
        m_recordBytes += line.size();
        if (m_recordBytes > static_cast<size_t>(m_reading.limits.csvLineBytes))
            return stopAtLongRecord();
        if (!isUtf8(line)) {
            m_isComplete = false;
            m_reading.reportEncoding({m_reading.file,
                                      m_line,
                                      0,
                                      {},
                                      {},
                                      QStringLiteral("bytes that are no UTF-8"),
                                      utf8Expected()});
        }
        if (!m_isRecordOpen && line.find('"') == std::string_view::npos)
            splitLine(line);
        else
            parseQuotes(line);
    }

    /// A line without quotes, which is a record of its own.
    void splitLine(std::string_view line)
    {
        line = withoutLineEnd(line);
        if (withoutBlanks(line).empty())
            return;
        size_t begin = 0;
        for (size_t comma = line.find(','); comma != std::string_view::npos;
             comma = line.find(',', begin)) {
            field(withoutBlanks(line.substr(begin, comma - begin)), false);
            begin = comma + 1;
        }
        field(withoutBlanks(line.substr(begin)), false);
        endRow();
    }

    void parseQuotes(std::string_view line)
    {
        m_isRecordOpen = true;
        const size_t parsed =
            csv_parse(m_parser.get(), line.data(), line.size(), onField, onRow, this);
        if (parsed == line.size())
            return;
        problem(m_line, static_cast<int>(toText(line.substr(0, parsed)).size()) + 1, {},
                quoted(toText(line.substr(parsed)).trimmed()),
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
        if (!m_isRecordOpen)
            m_recordLine = qMax(1, m_line);
        if (!m_hasHeader) {
            endHeader();
            reportMissingColumns();
        }
    }

    // No exception may leave them: they are called by a library in C.

    static void onField(void* data, size_t size, void* reader)
    {
        static_cast<Reader*>(reader)->guarded([&](Reader& self) {
            self.field({static_cast<const char*>(data), size}, true);
        });
    }

    static void onRow(int, void* reader)
    {
        static_cast<Reader*>(reader)->guarded([](Reader& self) { self.endRow(); });
    }

    template <class Step>
    void guarded(const Step& step)
    {
        try {
            if (!m_isOutOfMemory)
                step(*this);
        } catch (const std::bad_alloc&) {
            m_isOutOfMemory = true;
        }
    }

    /// `isPassing`: the text must be kept until the row ends.
    void field(std::string_view text, bool isPassing)
    {
        // Enough bytes to see that a text is too long.
        text = text.substr(0, 4 * (static_cast<size_t>(m_reading.limits.textLength) + 1));
        if (!m_hasHeader) {
            headerField(toText(text).trimmed());
        } else if (m_fields < m_positions.size() && m_positions.at(m_fields) >= 0) {
            const auto column = static_cast<size_t>(m_positions.at(m_fields));
            if (isPassing)
                m_kept[column] = text;
            m_values[column] = isPassing ? std::string_view(m_kept[column]) : text;
        }
        ++m_fields;
    }

    void headerField(const QString& name)
    {
        if (m_fields >= m_reading.limits.csvColumns)
            return;
        const auto& columns = m_reading.columns;
        const auto column =
            std::find_if(columns.begin(), columns.end(), [&](const CsvColumn& wanted) {
                return name == QLatin1String(wanted.name);
            });
        const int index = column == columns.end() ? -1 : static_cast<int>(column - columns.begin());
        if (index < 0)
            m_header.others.append(name);
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
        std::fill(m_values.begin(), m_values.end(), std::string_view());
    }

    void endHeader()
    {
        m_hasHeader = true;
        const int most = m_reading.limits.csvColumns;
        if (m_fields > most)
            stop(QStringLiteral("%1 columns").arg(m_fields),
                 QStringLiteral("at most %1 columns").arg(most));
        for (int i = 0; i < m_reading.columns.size(); ++i)
            m_header.isThere.append(m_positions.contains(i));
        m_headerLine = m_recordLine;
        m_reading.takeHeader(m_header);
    }

    /// Columns are missed where there is a record that should have them.
    void reportMissingColumns()
    {
        m_recordLine = m_headerLine;
        for (int i = 0; i < m_reading.columns.size(); ++i) {
            const CsvColumn& column = m_reading.columns.at(i);
            if (column.isRequired && !m_header.isThere.at(i))
                stop(QStringLiteral("missing"), QStringLiteral("a column of this name"),
                     QLatin1String(column.name));
        }
    }

    void endRecord()
    {
        if (m_records == 0) {
            const int line = m_recordLine;
            reportMissingColumns();
            m_recordLine = line;
        }
        if (m_isStopped)
            return;
        if (++m_records > m_reading.mostRecords)
            return stop(QStringLiteral("a further record"),
                        QStringLiteral("at most %1 records").arg(m_reading.mostRecords));
        if (m_reading.limits.memory > 0 && m_records % recordsPerLook == 0 &&
            ownMemory() > m_reading.limits.memory)
            return stop(QStringLiteral("a further record"),
                        QStringLiteral("a feed that fits into %1 MB of memory")
                            .arg(m_reading.limits.memory / 1'000'000));
        if (m_fields > m_positions.size())
            return problem(m_recordLine, 0, {}, QStringLiteral("%1 fields").arg(m_fields),
                           QStringLiteral("at most %1, as in the header").arg(m_positions.size()));
        m_reading.takeRecord(m_recordLine, m_values);
    }

    void stopAtLongRecord()
    {
        if (!m_isRecordOpen)
            m_recordLine = m_lines.isTooLong() ? m_line + 1 : m_line;
        stop(QStringLiteral("a longer record"),
             QStringLiteral("at most %1 bytes in one").arg(m_reading.limits.csvLineBytes));
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
        m_reading.report({m_reading.file, line, column, {}, field, value, expected});
    }

    const CsvReading& m_reading;
    LineReader m_lines;
    Parser m_parser;
    CsvHeader m_header;
    QVector<int> m_positions; ///< per column of the file: index of the wanted column or -1
    std::vector<std::string> m_kept;
    std::vector<std::string_view> m_values;
    int m_fields = 0; ///< of the current row, so far
    int m_line = 0;
    int m_recordLine = 1;
    int m_headerLine = 1;
    size_t m_recordBytes = 0;
    int m_records = 0;
    bool m_isRecordOpen = false;
    bool m_hasHeader = false;
    bool m_isComplete = true;
    bool m_isStopped = false;
    bool m_isOutOfMemory = false;
};

} // namespace

bool readCsv(const ByteReader& bytes, const CsvReading& reading)
{
    try {
        return Reader(bytes, reading).read();
    } catch (const std::bad_alloc&) {
        reading.report({reading.file,
                        0,
                        0,
                        {},
                        {},
                        QStringLiteral("more than fits into memory"),
                        QStringLiteral("a smaller feed, or more memory")});
        return false;
    }
}

} // namespace rivo::feed
