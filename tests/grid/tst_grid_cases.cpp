#include "LayoutRunner.h"
#include "Soak.h"
#include "Table.h"

#include <QDir>
#include <QtTest>

// The examples of the selection grid are data: see cases/README.md. The model and the oracle must
// show what an example states, and agree on everything else that can be seen.

namespace
{

/// What the call of an example showed in one respect: "result", "log", "out" or "emits".
struct Statement
{
    int call;
    QString respect;
    QString text;
};

struct Example
{
    QString place; ///< file and line
    Case layoutCase;
    QVector<Statement> statements;
    bool isLarge = false;
};

/// Statements of one respect stand on consecutive lines.
void addStatement(Example& example, const QString& respect, const QString& text)
{
    const int call = example.layoutCase.calls.size() - 1;
    QVector<Statement>& statements = example.statements;
    if (!statements.isEmpty() && statements.last().call == call &&
        statements.last().respect == respect)
        statements.last().text += '\n' + withoutQuotes(text);
    else
        statements.append({call, respect, withoutQuotes(text)});
}

void addText(Example& example, const QString& text)
{
    static const QRegularExpression statement("^(log|out|emits) (.*)$");
    const QRegularExpressionMatch match = statement.match(text);
    if (match.hasMatch()) {
        addStatement(example, match.captured(1), match.captured(2));
        return;
    }
    for (const QString& part : text.split("; ")) {
        const int result = part.indexOf(" = ");
        if (part == "large")
            example.isLarge = true;
        else
            addLine(example.layoutCase, part.left(result));
        if (result != -1)
            addStatement(example, "result", part.mid(result + 3).trimmed());
    }
}

/// Calls `take` with the title, behind that of its section, and the content of each example.
template <typename Take>
void readExamples(const QString& path, Take take)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    QString section;
    QStringList common;
    QString title;
    Example example;
    int number = 0;
    const auto finish = [&] {
        if (!title.isEmpty())
            take(section + title, example);
        title.clear();
    };
    for (const QByteArray& bytes : file.readAll().split('\n')) {
        const QString line = QString::fromUtf8(bytes);
        ++number;
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            finish();
            section = line.mid(1).replace("]", ": ");
            common.clear();
        } else if (!line.startsWith(' ')) {
            finish();
            title = line.section(": ", 0, 0);
            example = {QFileInfo(path).fileName() + ':' + QString::number(number), {}, {}};
            for (const QString& text :
                 common + line.section(": ", 1).split('\n', Qt::SkipEmptyParts))
                addText(example, text);
        } else if (title.isEmpty()) {
            common.append(line.trimmed());
        } else {
            addText(example, line.trimmed());
        }
    }
    finish();
}

/// Signals, each insertion of a tile as one.
QString signalsText(const QStringList& steps)
{
    static const QRegularExpression insertion(
        R"(rowsAboutToBeInserted\(-, (\d+), \1\); rowsInserted\(-, \1, \1\); countChanged\(\d+\))");
    return steps.join("; ").replace(insertion, "tile \\1");
}

QString shown(const Seen& seen, const QString& respect)
{
    if (respect == "result")
        return seen.result.trimmed();
    if (respect == "out")
        return seen.output.trimmed();
    QStringList messages;
    QStringList emitted;
    for (const QString& step : seen.steps) {
        if (step.startsWith("log: "))
            messages.append(step.mid(5));
        else
            emitted.append(step);
    }
    return respect == "log" ? messages.join('\n') : signalsText(emitted);
}

} // namespace

Q_DECLARE_METATYPE(Example)

class TestGridCases : public QObject
{
    Q_OBJECT

private slots:
    void modelAndOracleShow_data();
    void modelAndOracleShow();

private:
    LayoutRunner m_runner;
};

void TestGridCases::modelAndOracleShow_data()
{
    const Table<Example> row("example");
    const QDir folder(GRID_CASES);
    const QStringList files = folder.entryList({"*.txt"});
    QVERIFY(!files.isEmpty());
    for (const QString& file : files) {
        const QString group = QFileInfo(file).baseName() + ": ";
        readExamples(folder.filePath(file), [&](const QString& title, const Example& example) {
            row(qPrintable(group + title), example);
        });
    }
}

void TestGridCases::modelAndOracleShow()
{
    QFETCH(Example, example);
    if (example.isLarge && !triesTheLargest())
        QSKIP("takes long here");
    QVERIFY2(!example.statements.isEmpty(), "states nothing");

    QStringList faults;
    const Verdict verdict = m_runner.run(example.layoutCase, [&](int call, const Seen& seen) {
        for (const Statement& statement : qAsConst(example.statements)) {
            const QString text = shown(seen, statement.respect);
            if (statement.call == call && (text.isEmpty() ? "nothing" : text) != statement.text)
                faults.append(statement.respect + ":\n  shown:  " + text +
                              "\n  stated: " + statement.text);
        }
    });
    if (!verdict.difference.isEmpty())
        faults.append(verdict.difference);
    QVERIFY2(faults.isEmpty(), qPrintable(example.place + ": " + faults.join('\n')));
}

QTEST_GUILESS_MAIN(TestGridCases)
#include "tst_grid_cases.moc"
