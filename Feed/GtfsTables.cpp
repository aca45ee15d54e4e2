#include "GtfsTables_p.h"

#include <QHash>

#include <algorithm>
#include <charconv>
#include <utility>

namespace rivo::feed::gtfs
{

namespace
{

QString toText(Id utf8) { return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size())); }

template <class Number>
bool store(Number number, const FieldRule& rule, Number& into)
{
    if (rule.allows(number))
        into = number;
    return rule.allows(number);
}

/// A name without case, blanks and signs: "Fare-Leg Rules.TXT" is "farelegrulestxt".
QString simplified(const QString& name)
{
    QString letters;
    const QString lower = name.toLower();
    for (const QChar character : lower) {
        if (character.isLetterOrNumber())
            letters += character;
    }
    return letters;
}

QString consequence(Concern concern)
{
    return concern == Concern::Map ? QStringLiteral("; the map does without it")
                                   : QStringLiteral("; the timetable does without it");
}

} // namespace

FeedProblem TableReport::problemOf(const Row& row, const char* column, Id value,
                                   const QString& expected) const
{
    return {m_path, row.line, 0, {}, QLatin1String(column), quoted(toText(value)), expected};
}

void TableReport::setColumns(const QStringList& columns, const QStringList& others)
{
    m_columns = columns;
    m_otherColumns = others;
}

void TableReport::fault(const Row& row, const char* column, Id value, const QString& expected)
{
    add(problemOf(row, column, value, expected));
}

void TableReport::fault(const Row& row, const char* column, const QString& value,
                        const QString& expected)
{
    add({m_path, row.line, 0, {}, QLatin1String(column), quoted(value), expected});
}

void TableReport::wholeFault(const QString& found, const QString& expected)
{
    wholeFault({m_path, 0, 0, {}, {}, found, expected});
}

void TableReport::lesserFault(const Row& row, const char* column, Id value, const QString& expected,
                              Concern concern)
{
    report(problemOf(row, column, value, expected), concern);
}

void TableReport::add(FeedProblem problem)
{
    if (m_isKeeping)
        m_faults.append(std::move(problem));
    else
        report(problem, m_concern);
}

void TableReport::report(const FeedProblem& problem, Concern concern)
{
    if (concern == Concern::Fares)
        m_report.add(problem);
    else
        notice(problem.line, problem.withoutPlace() + consequence(concern));
}

void TableReport::notice(int line, const QString& message)
{
    m_report.add(FeedNotice{m_path, line, message});
}

int TableReport::refer(const Ids& ids, const char* definedIn, const Row& row, const char* column,
                       Id id)
{
    if (id.empty())
        return -1;
    const int number = ids.table.find(id);
    if (number < 0 && ids.isJudged)
        fault(row, column, id, idOf(definedIn));
    return number;
}

QString idOf(const char* file) { return QLatin1String("an id of ") + QLatin1String(file); }

Tables::Tables(FeedSource& source, const FeedOptions& options, FeedReport& report)
    : m_source(source), m_options(options), m_report(report), m_names(source.names())
{
}

void Tables::checkSpelling(const QVector<QPair<const char*, Concern>>& known)
{
    QVector<QString> spellings;
    for (const auto& file : known)
        spellings.append(simplified(QLatin1String(file.first)));
    QStringList names = m_names;
    names.sort();
    for (const QString& name : qAsConst(names)) {
        const auto index = spellings.indexOf(simplified(name));
        if (index < 0 || name == QLatin1String(known.at(index).first))
            continue;
        const auto& [rightName, concern] = known.at(index);
        // Where the file is there in the right spelling too, the other one is not missed.
        TableReport table(m_source.pathOf(name), isThere(rightName) ? Concern::Map : concern,
                          m_report);
        table.wholeFault(QStringLiteral("not read under this name"),
                         QStringLiteral("the name %1").arg(QLatin1String(rightName)));
    }
}

void Tables::add(Ids& ids, int line, Id id)
{
    countText(id.size());
    ids.table.append(id);
    ids.lines.append(line);
}

void Tables::seal(Ids& ids, const char* column, TableReport& table)
{
    const auto repeated = ids.table.seal();
    for (const auto& [number, first] : repeated) {
        Row row;
        row.line = ids.lines.at(number);
        table.fault(row, column, ids.table.at(number), QStringLiteral("each id once"));
    }
}

QString Tables::keep(Id utf8)
{
    countText(utf8.size());
    // One entry per place, replaced by the next other text: no choice of texts costs more.
    const size_t place = qHashBits(utf8.data(), utf8.size()) % m_recentTexts.size();
    QString& recent = m_recentTexts[place];
    const QString text = toText(utf8);
    if (recent == text)
        return recent; // shares the memory of the former one
    return recent = text;
}

void Tables::countText(size_t bytes) { m_textBytes += static_cast<qint64>(bytes); }

FileFailure Tables::failureOf(TableReport& table) const
{
    return [&table](const QString& found, const QString& expected) {
        table.wholeFault(found, expected);
    };
}

bool Tables::readRows(const ByteReader& bytes, CsvReading& reading, TableReport& table)
{
    if (!bytes)
        return false;
    const bool hadRoom = m_textBytes <= m_options.limits.textBytes;
    reading.file = table.path();
    reading.limits = m_options.limits;
    reading.report = [&](const FeedProblem& problem) { table.wholeFault(problem); };
    reading.reportEncoding = [&](const FeedProblem& problem) { table.encodingFault(problem); };
    reading.takeHeader = [&](const CsvHeader& header) {
        QStringList columns;
        for (int i = 0; i < reading.columns.size(); ++i) {
            if (header.isThere.at(i))
                columns.append(QLatin1String(reading.columns.at(i).name));
        }
        table.setColumns(columns, header.others);
    };
    // Records are read to the end, for their faults, but no longer taken.
    const auto takeRecord = reading.takeRecord;
    reading.takeRecord = [&](int line, const std::vector<std::string_view>& values) {
        if (m_textBytes <= m_options.limits.textBytes)
            takeRecord(line, values);
    };
    const bool isWhole = readCsv(bytes, reading);
    const bool hasRoom = m_textBytes <= m_options.limits.textBytes;
    if (hadRoom && !hasRoom)
        m_report.add(table.path(), 0, QStringLiteral("more texts than a feed may have"),
                     QStringLiteral("at most %1 bytes of them in all files")
                         .arg(m_options.limits.textBytes));
    return isWhole && hasRoom;
}

void Tables::reportField(const Row& row, const char* column, const FieldRule& rule, Id text,
                         const QString& expected, TableReport& table)
{
    if (expected.isNull())
        return;
    if (rule.isOfMap)
        table.lesserFault(row, column, text, expected, Concern::Map);
    else
        table.fault(row, column, text, expected);
}

bool Tables::convert(Id text, const FieldRule& rule, Id& into) const
{
    // Characters are counted as rarely as possible: each takes at least one byte. An empty text is
    // only judged where one is required.
    const bool isShort = text.size() <= static_cast<size_t>(m_options.limits.textLength);
    const bool isFit =
        isShort && !rule.isFit ? !text.empty() : rule.allows(toText(text), m_options.limits);
    if (isFit)
        into = text;
    return isFit;
}

bool Tables::convert(Id text, const FieldRule& rule, QString& into)
{
    const QString value = keep(text);
    const bool isFit = rule.allows(value, m_options.limits);
    if (isFit)
        into = value;
    return isFit;
}

bool Tables::convert(Id text, const FieldRule& rule, int& into)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && store(number, rule, into);
}

bool Tables::convert(Id text, const FieldRule& rule, double& into)
{
    bool isConverted = false;
    const double number =
        QByteArray::fromRawData(text.data(), static_cast<int>(text.size())).toDouble(&isConverted);
    return isConverted && store(number, rule, into);
}

} // namespace rivo::feed::gtfs
