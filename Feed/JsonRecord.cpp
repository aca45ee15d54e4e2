#include "JsonRecord.h"

#include "FeedFile_p.h"
#include "JsonPrescan_p.h"

#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <map>

namespace rivo::feed::json
{

QString Place::pointer() const
{
    return parent ? parent->pointer() + jsonPointerToken(key) : QString();
}

QString found(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
        return QStringLiteral("missing");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QJsonValue::String:
        return quoted(value.toString());
    case QJsonValue::Array:
        return QStringLiteral("a list");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    default:
        return QStringLiteral("null");
    }
}

bool isInteger(const QJsonValue& value)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
}

void RecordReader::reportUnknownKeys(const QJsonObject& object, const Place& place,
                                     const QStringList& known)
{
    const QStringList keys = object.keys();
    for (const QString& key : keys) {
        if (!known.contains(key) && !key.startsWith(QLatin1String("x-")))
            problem(place.at(key), QStringLiteral("unknown key"),
                    QLatin1String("one of ") + known.join(QLatin1String(", ")));
    }
}

void RecordReader::problem(const Place& place, const QString& value, const QString& expected)
{
    m_report.add(FeedProblem{m_file, 0, 0, place.pointer(), place.key, value, expected});
}

namespace
{

/// The line of the value that `pointer` leads to; where there is none, of what should hold it.
int lineOf(const QString& pointer, const std::map<QString, int>& lines)
{
    const int line = lines.at(pointer);
    return line > 0 ? line : lines.at(pointer.left(pointer.lastIndexOf(QLatin1Char('/'))));
}

} // namespace

void completeProblems(const QByteArray& utf8, QVector<FeedProblem>& problems)
{
    std::map<QString, int> lines;
    for (const FeedProblem& problem : qAsConst(problems)) {
        lines[problem.pointer] = 0;
        lines[problem.pointer.left(problem.pointer.lastIndexOf(QLatin1Char('/')))] = 0;
    }
    findJsonLines(utf8, lines);
    for (FeedProblem& problem : problems) {
        if (problem.line == 0)
            problem.line = lineOf(problem.pointer, lines);
    }
    std::stable_sort(problems.begin(), problems.end(),
                     [](const auto& left, const auto& right) { return left.line < right.line; });
}

std::optional<JsonText> readJsonText(const QString& path, const FeedLimits& limits,
                                     FeedReport& report)
{
    std::optional<QByteArray> text = readFeedFile(path, limits.jsonBytes, report);
    if (!text)
        return std::nullopt;
    if (isUtf16(*text)) {
        report.add(path, 1, QStringLiteral("text in UTF-16"), utf8Expected());
        return std::nullopt;
    }
    // Broken bytes are replaced after they were reported, so that the rest is judged too.
    if (!checkUtf8(*text, path, report))
        text = toText(*text).toUtf8();
    if (!checkJson(*text, path, limits, report))
        return std::nullopt;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(*text, &error);
    // GCOVR_EXCL_START: checkJson() lets nothing pass that Qt refuses.
    if (document.isNull()) {
        report.add(path, static_cast<int>(text->left(error.offset).count('\n') + 1),
                   error.errorString(), QStringLiteral("JSON"));
        return std::nullopt;
    }
    // GCOVR_EXCL_STOP
    return JsonText{*text, document.object()};
}

} // namespace rivo::feed::json
