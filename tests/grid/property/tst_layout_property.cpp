#include "LayoutCase.h"
#include "LayoutOracle.h"
#include "LayoutRunner.h"
#include "Table.h"

#include <QFile>
#include <QMap>
#include <QtTest>

Q_DECLARE_METATYPE(LayoutRunner::Distortion)

/// Random product lists on the real model against the oracle.
///
/// Environment, for longer runs and for repeating a failure:
///   RIVO_LAYOUT_CASES   how many cases (10000)
///   RIVO_LAYOUT_SEED    seed of all cases (1)
///   RIVO_LAYOUT_FIRST   number of the first case (0)
///   RIVO_LAYOUT_COUNTS  set: print how often each rule decided
/// A failure prints the seed, the number and the shrunk case. A crash or a hang leaves the number
/// in the file layout-case.txt of the working directory. More than 50000 cases need more than the
/// five minutes that QtTest allows: QTEST_FUNCTION_TIMEOUT=3600000 (milliseconds).
class tst_layout_property : public QObject
{
    Q_OBJECT

private slots:
    void modelAgreesWithTheOracle();
    void plantedMistakeIsFound_data();
    void plantedMistakeIsFound();
    void failingCaseIsShrunk();
};

namespace
{

constexpr int usualCases = 10000;
/// Every configuration is followed by a manager of its own, hence not one per case.
constexpr int configurationCount = 48;

int fromEnvironment(const char* name, int usual)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : usual;
}

quint64 seedOfTheRun() { return static_cast<quint64>(fromEnvironment("RIVO_LAYOUT_SEED", 1)); }

/// How often each rule must at least decide in usualCases, so that the generator stays wild.
const char* const minima = R"(
order: configured 5000; none configured 500; taken from the supported types 300
order: trusted for its length 700; complete 1300; completed 1300
columns: chosen without a previous layout 800; as many as the previous layout had types 100
columns: chosen after a layout of many types 100
position: numbered 1000; nothing at 1 400; hole 700; last row filled 600; last row full 300
position: last row too long to fill 8; negative columns 30; duplicate 400; several unassigned 400
position: one unassigned 180; zero 170; below -1 170; above the bound 180
zone: no products at all 600; without products 80; of no height 2000; column evened out 4000
zone: whole column of placeholders 10000
filler: 3 columns, row 1 700; 3 columns, row 2 500; 4 columns, row 1 500; 4 columns, row 2 400
filler: none with as many columns as types 400; none without local types 400; type 8 2000
filler: type 7 100; type 5 60; type 4 25; type 3 10; type 1 60
slots: whole order 1700; local part of the order 10000; entry removed from the order 20000
slots: free column 0 3000; free column 1 3000; free column 2 3000; free column 3 2500
slots: free column -1 5000; column beyond the last 10000; even group 3500
slots: uneven group, yet a permutation 80; products move 1500; products stay 2000; too few 3500
slots: too many 3500; repeated 500; negative 2500; beyond the group 4000
rows: saturated 20
move: to a permutation 5000; refused 5000
judge: some assigned 5000; all assigned 5000; duplicates 2000; zero 1000; out of range 3000
grid: with daily products 2000; behind earlier rows 800
)";

QString missingCoverage(const QMap<QString, int>& counts)
{
    QString missing;
    for (const QString& line : QString(minima).split('\n', Qt::SkipEmptyParts)) {
        const QString subject = line.section(": ", 0, 0) + ": ";
        for (const QString& entry : line.section(": ", 1).split("; ")) {
            const int count = counts.value(subject + entry.section(' ', 0, -2));
            if (count < entry.section(' ', -1).toInt())
                missing += QString("\n  %1 of at least ").arg(count) + subject + entry;
        }
    }
    return missing;
}

void printCounts(const QMap<QString, int>& counts)
{
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        qInfo("%8d %s", it.value(), qPrintable(it.key()));
}

/// Leaves the number of the running case behind if the process dies.
class RunningCase
{
public:
    RunningCase() { m_file.open(QIODevice::WriteOnly); }
    ~RunningCase() { m_file.remove(); }
    RunningCase(const RunningCase&) = delete;
    RunningCase& operator=(const RunningCase&) = delete;

    void set(int number)
    {
        m_file.seek(0);
        m_file.write(QByteArray::number(number).rightJustified(10) + '\n');
        m_file.flush();
    }

private:
    QFile m_file{QStringLiteral("layout-case.txt")};
};

QString report(LayoutRunner& runner, const Case& failing, quint64 seed, int number)
{
    const Case smallest = shrunk(failing, [&runner](const Case& candidate) {
        return !runner.run(candidate).difference.isEmpty();
    });
    return QStringLiteral("seed %1, case %2: ").arg(seed).arg(number) +
           runner.run(smallest).difference + QLatin1Char('\n') + describe(smallest);
}

} // namespace

void tst_layout_property::modelAgreesWithTheOracle()
{
    const int cases = fromEnvironment("RIVO_LAYOUT_CASES", usualCases);
    const int first = fromEnvironment("RIVO_LAYOUT_FIRST", 0);
    const quint64 seed = seedOfTheRun();
    const QVector<Configuration> configurations = randomConfigurations(seed, configurationCount);

    LayoutRunner runner;
    RunningCase running;
    QMap<QString, int> counts;
    int layouts = 0;
    int products = 0;
    for (int number = first; number < first + cases; ++number) {
        running.set(number);
        const Case layoutCase = randomCase(seed, number, configurations);
        const Verdict verdict = runner.run(layoutCase);
        if (!verdict.difference.isEmpty())
            QFAIL(qPrintable(report(runner, layoutCase, seed, number)));
        layouts += verdict.layouts;
        for (const Call& call : layoutCase.calls)
            products += call.kind == Call::Add ? call.products.size() : 0;
        for (const QString& branch : verdict.branches)
            ++counts[branch];
    }

    qInfo("%d cases with %d layouts of %d products, seed %llu", cases, layouts, products, seed);
    if (qEnvironmentVariableIsSet("RIVO_LAYOUT_COUNTS"))
        printCounts(counts);
    if (cases >= usualCases) {
        const QString missing = missingCoverage(counts);
        QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("too rare:") + missing));
    }
}

void tst_layout_property::plantedMistakeIsFound_data()
{
    addColumns<LayoutRunner::Distortion, QString>("distortion", "found");

    using Distortion = LayoutRunner::Distortion;
    using oracle::Outcome;
    const auto row = [](const char* name, const char* found, Distortion distortion) {
        QTest::newRow(name) << distortion << QString::fromLatin1(found);
    };
    row("a signal too early", "step", [](Outcome& outcome) {
        for (int i = 1; i < outcome.steps.size(); ++i) {
            if (outcome.steps.at(i).startsWith("numberOfRows") &&
                outcome.steps.at(i - 1).startsWith("count")) {
                outcome.steps.swapItemsAt(i, i - 1);
                return;
            }
        }
    });
    row("a missing signal", "step", [](Outcome& outcome) {
        if (!outcome.steps.isEmpty() && outcome.steps.last().startsWith("numberOfColumns"))
            outcome.steps.removeLast();
    });
    row("another message", "step",
        [](Outcome& outcome) { outcome.steps.replaceInStrings("NumberOfRows", "numberOfRows"); });
    row("another line on standard output", "standard output",
        [](Outcome& outcome) { outcome.standardOutput.replace("3, ", ""); });
    row("another result", "result",
        [](Outcome& outcome) { outcome.result.replace("duplicates, zero", "zero"); });
    row("another column count", "numberOfColumns",
        [](Outcome& outcome) { outcome.state.columns += outcome.state.rows == 7 ? 1 : 0; });
    row("another row count", "numberOfRows",
        [](Outcome& outcome) { outcome.state.rows += outcome.state.columns == 4 ? 1 : 0; });
    row("another display order", "standard output",
        [](Outcome& outcome) { outcome.state.order.removeOne(9); });
    row("other types of the layout", "standard output",
        [](Outcome& outcome) { outcome.state.local.removeOne(10); });
    row("another number of types of the layout", "numberOfColumnsChanged", [](Outcome& outcome) {
        if (outcome.state.local.contains(10))
            outcome.state.local.append(10);
    });
    row("another product list", "step",
        [](Outcome& outcome) { outcome.state.products = outcome.state.products.mid(0, 50); });
    row("another list of daily products", "step", [](Outcome& outcome) {
        outcome.state.dailyProducts = outcome.state.dailyProducts.mid(0, 5);
    });
    row("a missing tile", "row count",
        [](Outcome& outcome) { outcome.state.tiles = outcome.state.tiles.mid(0, 50); });
    row("another price of a tile", "role 260", [](Outcome& outcome) {
        for (oracle::Product& tile : outcome.state.tiles)
            tile.price += tile.pos == 9 ? 0.01 : 0.0;
    });
    row("another code text of a tile", "code text", [](Outcome& outcome) {
        for (oracle::Product& tile : outcome.state.tiles) {
            if (tile.passengerTypeCode == 9 && !tile.icon.isEmpty())
                tile.passengerTypeCode = 3;
        }
    });
}

void tst_layout_property::plantedMistakeIsFound()
{
    QFETCH(LayoutRunner::Distortion, distortion);
    QFETCH(QString, found);

    const QVector<Configuration> configurations = randomConfigurations(1, 4);
    LayoutRunner runner(distortion);
    QString difference;
    for (int number = 0; number < 1000 && difference.isEmpty(); ++number)
        difference = runner.run(randomCase(1, number, configurations)).difference;
    QVERIFY2(difference.contains(found), qPrintable(difference));
}

void tst_layout_property::failingCaseIsShrunk()
{
    LayoutRunner runner([](oracle::Outcome& outcome) {
        for (oracle::Product& tile : outcome.state.tiles)
            tile.price += tile.isDaily && tile.toStopGroupId < 0 ? 1.0 : 0.0;
    });
    const QVector<Configuration> configurations = randomConfigurations(1, 4);
    const auto fails = [&runner](const Case& candidate) {
        return !runner.run(candidate).difference.isEmpty();
    };
    int number = 0;
    while (!fails(randomCase(1, number, configurations)) && number < 1000)
        ++number;

    const Case smallest = shrunk(randomCase(1, number, configurations), fails);
    QVERIFY(fails(smallest));
    QCOMPARE(describe(smallest), QString("add 0>-1!")); // laid out by a revealing call

    Case repeated;
    for (const QString& line : describe(randomCase(1, number, configurations)).split('\n'))
        addLine(repeated, line);
    QCOMPARE(describe(repeated), describe(randomCase(1, number, configurations)));
    QVERIFY(fails(repeated));
}

QTEST_GUILESS_MAIN(tst_layout_property)
#include "tst_layout_property.moc"
