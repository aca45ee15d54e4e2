#include "GtfsTables_p.h"

#include "FeedFile_p.h"
#include "TextForms.h"

#include <QDir>
#include <QFileInfo>

#include <optional>

namespace rivo::feed::gtfs
{

namespace
{

template <class Number>
bool store(Number number, const FieldRule& rule, Number& into)
{
    if (rule.allows(number))
        into = number;
    return rule.allows(number);
}

} // namespace

int Ids::add(const QString& id)
{
    const auto known = m_indexes.constFind(id);
    if (known != m_indexes.constEnd())
        return *known;
    m_ids.append(id);
    m_indexes.insert(id, m_ids.size() - 1);
    return m_ids.size() - 1;
}

QHash<QString, int> Ids::numbers() const
{
    const bool areNumbers = std::all_of(m_ids.begin(), m_ids.end(),
                                        [](const QString& id) { return positiveInteger(id) > 0; });
    QHash<QString, int> numbers;
    for (int i = 0; i < m_ids.size(); ++i)
        numbers.insert(m_ids.at(i), areNumbers ? positiveInteger(m_ids.at(i)) : i + 1);
    return numbers;
}

void TableReport::problem(const Row& row, const char* column, const QString& text,
                          const QString& expected)
{
    problem(row.line, QLatin1String(column), quoted(text), expected);
}

void TableReport::problem(int line, const QString& field, const QString& value,
                          const QString& expected)
{
    m_report.add(FeedProblem{m_path, line, 0, {}, field, value, expected});
}

bool TableReport::define(Ids& ids, const Row& row, const char* column, const QString& id)
{
    if (ids.contains(id))
        problem(row, column, id, QStringLiteral("each id once"));
    if (id.isEmpty() || ids.contains(id))
        return false;
    ids.add(id);
    return true;
}

void TableReport::checkReference(const Ids& ids, const char* definedIn, const Row& row,
                                 const char* column, const QString& id)
{
    if (ids.isDefined() && !id.isEmpty() && !ids.contains(id))
        problem(row, column, id, idOf(definedIn));
}

void TableReport::referToArea(Ids& areas, const Row& row, const char* column, const QString& id)
{
    checkReference(areas, areasFile, row, column, id);
    if (!areas.isDefined() && !id.isEmpty())
        areas.add(id);
}

int TableReport::readTime(const Row& row, const char* column, const QString& text)
{
    const int time = text.isEmpty() ? -1 : seconds(text);
    if (time < 0 && !text.isEmpty())
        problem(row, column, text, QStringLiteral("a time such as 8:05:00 or 25:10:00"));
    return time;
}

QString idOf(const char* file) { return QLatin1String("an id of ") + QLatin1String(file); }

QString Folder::pathOf(const char* name) const
{
    return QDir(m_path).filePath(QLatin1String(name));
}

bool Folder::isThere(const char* name) const { return QFileInfo::exists(pathOf(name)); }

bool Folder::readRecords(const QString& path, const QVector<CsvColumn>& columns,
                         const CsvRecordHandler& handle)
{
    const std::optional<QByteArray> text = readFeedFile(path, m_options.limits.csvBytes, m_report);
    if (!text)
        return false;
    checkUtf8(*text, path, m_report);
    return readCsv(*text, path, columns, m_options.limits, m_report, handle);
}

bool Folder::convert(const QString& text, const FieldRule& rule, QString& into)
{
    const bool isFit = rule.allows(text, m_options.limits);
    if (isFit)
        into = *m_texts.insert(text);
    return isFit;
}

bool Folder::convert(const QString& text, const FieldRule& rule, int& into)
{
    bool isConverted = false;
    const int number = text.toInt(&isConverted);
    return isConverted && store(number, rule, into);
}

bool Folder::convert(const QString& text, const FieldRule& rule, double& into)
{
    bool isConverted = false;
    const double number = text.toDouble(&isConverted);
    return isConverted && store(number, rule, into);
}

} // namespace rivo::feed::gtfs
