#include "LayoutCase.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{

/// How a kind of call is written: its name, its list and what stands before the numbers behind it.
struct Writing
{
    Call::Kind kind;
    const char* name;
    enum { Numbers, Types, Products } list = Numbers;
    const char* separator = "";
};

const Writing writings[] = {{Call::Clear, "clear"},
                            {Call::Support, "support", Writing::Types},
                            {Call::Add, "add", Writing::Products},
                            {Call::SwitchLogging, "logging"},
                            {Call::SetColumns, "columns"},
                            {Call::SetRows, "rows"},
                            {Call::Slots, "slots"},
                            {Call::Move, "move", Writing::Products, "to"},
                            {Call::Judge, "judge"},
                            {Call::Print, "print", Writing::Products},
                            {Call::LayOut, "lay out", Writing::Types, "in"},
                            {Call::LayOutByPosition, "by position"},
                            {Call::LayOutByZone, "by zone", Writing::Types},
                            {Call::GroupZone, "group"}};

QStringList words(const QString& text)
{
    static const QRegularExpression pattern(R"re("[^"]*"|[^ ]+)re");
    QStringList found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.append(it.next().captured());
    return found;
}

QVector<int> numbersFrom(const QString& text)
{
    QVector<int> numbers;
    for (const QString& word : words(text)) {
        bool isNumber = false;
        numbers.append(word.toInt(&isNumber));
        if (!isNumber)
            qFatal("\"%s\" is no number", qPrintable(word));
    }
    return numbers;
}

QString numbersText(const QVector<int>& numbers)
{
    QString text;
    for (const int number : numbers)
        text += ' ' + QString::number(number);
    return text;
}

QStringList typesFrom(const QString& text)
{
    QStringList types;
    for (const QString& word : words(text))
        types.append(word.startsWith('"') ? withoutQuotes(word)
                                          : typeText(numbersFrom(word).first()));
    return types;
}

QString typesText(const QStringList& types)
{
    QString text;
    for (const QString& type : types) {
        const int code = PassengerTypesModel::codeMap.value(type);
        text += ' ' + (code == 0 ? '"' + type + '"' : QString::number(code));
    }
    return text;
}

Call callFrom(const QString& line)
{
    for (const Writing& writing : writings) {
        if (line != writing.name && !line.startsWith(writing.name + QStringLiteral(" ")))
            continue;
        Call call{writing.kind};
        QString list = line.mid(int(std::strlen(writing.name)));
        if (*writing.separator) {
            const QString separator = QStringLiteral(" %1 ").arg(writing.separator);
            const int at = (list + ' ').lastIndexOf(separator);
            if (at == -1)
                qFatal("\"%s\" lacks \"%s\"", qPrintable(line), writing.separator);
            call.numbers = numbersFrom(list.mid(at + separator.size()));
            list.truncate(at);
        }
        if (writing.list == Writing::Numbers)
            call.numbers = numbersFrom(list);
        else if (writing.list == Writing::Types)
            call.typeTexts = typesFrom(list);
        else
            call.products = productsFrom(list.trimmed());
        return call;
    }
    qFatal("\"%s\" is no call", qPrintable(line));
}

QString describe(const Call& call)
{
    const Writing& writing =
        *std::find_if(std::begin(writings), std::end(writings),
                      [&call](const Writing& entry) { return entry.kind == call.kind; });
    QString text = writing.name + typesText(call.typeTexts);
    for (int i = 0; i < call.products.size(); ++i)
        text += ' ' + shortText(call.products.at(i), i);
    if (*writing.separator)
        text += QStringLiteral(" %1").arg(writing.separator);
    return text + numbersText(call.numbers);
}

} // namespace

void addLine(Case& layoutCase, const QString& line)
{
    if (line == "spacing")
        layoutCase.autoSpacing = true;
    else if (line == "logged")
        layoutCase.configuration.logging = true;
    else if (line.startsWith("order "))
        layoutCase.configuration.order = typesFrom(line.mid(6));
    else
        layoutCase.calls.append(callFrom(line));
}

QString describe(const Case& layoutCase)
{
    QStringList lines;
    if (!layoutCase.configuration.order.isEmpty())
        lines.append("order" + typesText(layoutCase.configuration.order));
    if (layoutCase.configuration.logging)
        lines.append("logged");
    if (layoutCase.autoSpacing)
        lines.append("spacing");
    for (const Call& call : layoutCase.calls)
        lines.append(describe(call));
    return lines.join("\n");
}
