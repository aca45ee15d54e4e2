#include "LayoutCase.h"

#include <QRegularExpression>

namespace
{

QVector<QRegularExpressionMatch> matches(const QString& text, const char* pattern)
{
    QVector<QRegularExpressionMatch> found;
    const QRegularExpression expression(pattern);
    for (auto it = expression.globalMatch(text); it.hasNext();)
        found.append(it.next());
    return found;
}

/// The line without some of its words, without parts of a word, with smaller numbers.
QStringList simplerLines(const QString& line)
{
    static const QRegularExpression separator(" (in|to)( |$)");
    QStringList simpler;
    const auto words = matches(line, R"re( (?=[-"\d])(?:"[^"]*"|\{[^}]*\}|[^ "{])+)re");
    for (int part = words.size(); part > 0; part /= 2) {
        for (int start = 0; start + part <= words.size(); start += part) {
            const int begin = words.at(start).capturedStart();
            const int end = words.at(start + part - 1).capturedEnd();
            if (!line.mid(begin, end - begin).contains(separator))
                simpler.append(line.left(begin) + line.mid(end));
        }
    }
    for (const auto& part :
         matches(line, R"re([#>@]-?\d+|!|\{[^}]*\}|(?<=\d)"[^"]*"|\w+="[^"]*",?)re"))
        simpler.append(line.left(part.capturedStart()) + line.mid(part.capturedEnd()));
    for (const auto& number : matches(line, R"re(-?\d+)re")) {
        const int value = number.captured().toInt();
        for (const int smaller : {0, 1, -1, 3, value / 2}) {
            if (qAbs(qint64(smaller)) < qAbs(qint64(value)))
                simpler.append(line.left(number.capturedStart()) + QString::number(smaller) +
                               line.mid(number.capturedEnd()));
        }
    }
    return simpler;
}

} // namespace

Case shrunk(const Case& failing, const std::function<bool(const Case&)>& fails, int attempts)
{
    QStringList lines = describe(failing).split('\n');
    Case smallest = failing;
    const auto accept = [&](const QStringList& candidate) {
        Case simpler;
        for (const QString& line : candidate)
            addLine(simpler, line);
        if (--attempts < 0 || !fails(simpler))
            return false;
        smallest = simpler;
        lines = candidate;
        return true;
    };
    const auto isSimplified = [&](int at) {
        const QString line = lines.at(at);
        QStringList candidate = lines;
        candidate.removeAt(at);
        if (accept(candidate))
            return true;
        candidate.insert(at, QString());
        for (const QString& simpler : simplerLines(line)) {
            candidate[at] = simpler;
            if (accept(candidate))
                return true;
        }
        return false;
    };
    for (int at = lines.size() - 1; at >= 0;)
        at = isSimplified(at) ? lines.size() - 1 : at - 1;
    return smallest;
}
