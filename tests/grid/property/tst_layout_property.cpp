#include "LayoutCase.h"
#include "LayoutOracle.h"
#include "LayoutRunner.h"
#include "OutputCapture.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Soak.h"

#include <QFile>
#include <QMap>
#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <numeric>

Q_DECLARE_METATYPE(Case)
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
    void boundsAgree_data();
    void boundsAgree();
    void slotsAgree();
    void reorderingAgrees();
    void predicatesAgree();
    void plantedMistakeIsFound_data();
    void plantedMistakeIsFound();
    void failingCaseIsShrunk();
};

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

constexpr int usualCases = 10000;
/// Every configuration is followed by a manager of its own, hence not one per case.
constexpr int configurationCount = 48;

int fromEnvironment(const char* name, int usual)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : usual;
}

quint64 seedOfTheRun() { return static_cast<quint64>(fromEnvironment("RIVO_LAYOUT_SEED", 1)); }

/// How often each rule must at least decide in usualCases, so that the generator stays wild.
struct Minimum
{
    const char* branch;
    int count;
};

const Minimum minima[] = {
    {"order: configured", 5000},
    {"order: none configured", 500},
    {"order: taken from the supported types", 300},
    {"order: trusted for its length", 700},
    {"order: complete", 1300},
    {"order: completed", 1300},
    {"columns: chosen without a previous layout", 800},
    {"columns: as many as the previous layout had types", 100},
    {"columns: chosen after a layout of many types", 100},
    {"position: numbered", 1000},
    {"position: nothing at 1", 400},
    {"position: hole", 700},
    {"position: last row filled", 600},
    {"position: last row full", 300},
    {"position: last row too long to fill", 8},
    {"position: negative columns", 30},
    {"position: duplicate", 400},
    {"position: several unassigned", 400},
    {"position: one unassigned", 180},
    {"position: zero", 170},
    {"position: below -1", 170},
    {"position: above the bound", 180},
    {"zone: no products at all", 600},
    {"zone: without products", 80},
    {"zone: of no height", 2000},
    {"zone: column evened out", 4000},
    {"zone: whole column of placeholders", 10000},
    {"filler: 3 columns, row 1", 700},
    {"filler: 3 columns, row 2", 500},
    {"filler: 4 columns, row 1", 500},
    {"filler: 4 columns, row 2", 400},
    {"filler: none with as many columns as types", 400},
    {"filler: none without local types", 400},
    {"filler: type 8", 2000},
    {"filler: type 7", 100},
    {"filler: type 5", 60},
    {"filler: type 4", 25},
    {"filler: type 3", 10},
    {"filler: type 1", 60},
    {"slots: whole order", 1700},
    {"slots: local part of the order", 10000},
    {"slots: entry removed from the order", 20000},
    {"slots: free column 0", 3000},
    {"slots: free column 1", 3000},
    {"slots: free column 2", 3000},
    {"slots: free column 3", 2500},
    {"slots: free column -1", 5000},
    {"slots: column beyond the last", 10000},
    {"slots: even group", 3500},
    {"slots: uneven group, yet a permutation", 80},
    {"slots: products move", 1500},
    {"slots: products stay", 2000},
    {"slots: too few", 3500},
    {"slots: too many", 3500},
    {"slots: repeated", 500},
    {"slots: negative", 2500},
    {"slots: beyond the group", 4000},
    {"rows: saturated", 20},
    {"daily products", 2000},
    {"layout behind earlier rows", 800},
};

QString missingCoverage(const QMap<QString, int>& counts)
{
    QString missing;
    for (const Minimum& minimum : minima) {
        const int count = counts.value(QLatin1String(minimum.branch));
        if (count < minimum.count) {
            missing += QStringLiteral("\n  %1: %2 of at least %3")
                           .arg(QLatin1String(minimum.branch))
                           .arg(count)
                           .arg(minimum.count);
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

// ---- cases by hand ----

Call call(Call::Kind kind, int number = 0, const QStringList& typeTexts = {})
{
    Call result;
    result.kind = kind;
    result.number = number;
    result.typeTexts = typeTexts;
    return result;
}

Record record(int pos, int zone = 1, bool isDaily = false)
{
    Record result{QStringLiteral("PT_ADULT"), {}};
    result.product.description = QStringLiteral("sold");
    result.product.pos = pos;
    result.product.toStopGroupId = zone;
    result.product.isDaily = isDaily;
    return result;
}

Call add(const QVector<Record>& records)
{
    Call result = call(Call::Add);
    result.records = records;
    return result;
}

Case caseOf(const QVector<Call>& calls)
{
    Case result;
    result.configuration.order = QStringList{QStringLiteral("PT_ADULT")};
    result.calls = calls;
    return result;
}

// ---- random input of the single steps ----

QVector<sProduct> numbered(int count)
{
    QVector<sProduct> products(count);
    for (int i = 0; i < count; ++i)
        products[i].passengerTypeId = i;
    return products;
}

QVector<oracle::Product> numberedForOracle(int count)
{
    QVector<oracle::Product> products(count);
    for (int i = 0; i < count; ++i)
        products[i].passengerTypeId = i;
    return products;
}

template <typename Product>
QVector<int> numbersOf(const QVector<Product>& products)
{
    QVector<int> numbers;
    for (const Product& product : products)
        numbers.append(product.passengerTypeId);
    return numbers;
}

/// A permutation, or one with a mistake, or one of another length.
QVector<int> almostAPermutation(QRandomGenerator& random, int length)
{
    QVector<int> numbers(length);
    std::iota(numbers.begin(), numbers.end(), 0);
    std::shuffle(numbers.begin(), numbers.end(), random);
    switch (random.bounded(5)) {
    case 0:
        if (length > 0)
            numbers[random.bounded(length)] =
                QVector<int>{lowest, -1, length, highest, 0, length / 2}.at(random.bounded(6));
        break;
    case 1:
        numbers.append(length);
        break;
    case 2:
        numbers.resize(length / 2);
        break;
    default:
        break;
    }
    return numbers;
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
        products += productCount(layoutCase);
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

void tst_layout_property::boundsAgree_data()
{
    QTest::addColumn<Case>("layoutCase");
    QTest::addColumn<int>("tiles");
    QTest::addColumn<int>("rows");

    const QStringList adult{QStringLiteral("PT_ADULT")};
    const auto byPosition = [](int pos, int columns) {
        return caseOf({add({record(pos)}), call(Call::LayOut, columns)});
    };
    if (triesTheLargest()) {
        QTest::newRow("position 100,000 is laid out") << byPosition(100000, 3) << 100002 << 33334;
        QTest::newRow("100,000 placeholders fill the last row")
            << byPosition(1, 100001) << 100001 << 1;
    }
    QTest::newRow("position 100,001 is not") << byPosition(100001, 3) << 1 << 1;
    QTest::newRow("more do not") << byPosition(1, 100002) << 1 << 1;
    QTest::newRow("the widest grid") << byPosition(1, highest) << 1 << 1;
    QTest::newRow("the most negative width") << byPosition(2, lowest) << 2 << 1;
    QTest::newRow("no columns are one column, by position")
        << caseOf({add({record(2), record(4), record(-1, 1, true)}), call(Call::SetColumns, 0),
                   call(Call::LayOutByPosition)})
        << 5 << 5;
    QTest::newRow("no columns are one column, in the fallback")
        << caseOf({add({record(2), record(2)}), call(Call::SetColumns, 0),
                   call(Call::LayOutByPosition)})
        << 2 << 2;
    QTest::newRow("no columns are one column, by zone")
        << caseOf({add({record(-1), record(-1), record(-1, 2)}), call(Call::SetColumns, 0),
                   call(Call::LayOutByZone, 0, adult)})
        << 3 << 3;
    QTest::newRow("rows stay at the largest number")
        << caseOf({add({record(-1), record(-1)}), call(Call::SetRows, highest - 1),
                   call(Call::GroupZone, 1)})
        << 0 << highest;
    QTest::newRow("the outermost zones")
        << caseOf({add({record(-1, highest), record(-1, lowest), record(-1, lowest, true)}),
                   call(Call::LayOut, 1, adult)})
        << 3 << 3;
}

void tst_layout_property::boundsAgree()
{
    QFETCH(Case, layoutCase);
    QFETCH(int, tiles);
    QFETCH(int, rows);

    // The oracle is asked here too: it must not be wrong in the same way as the model.
    oracle::State expected;
    LayoutRunner runner([&expected](oracle::Outcome& outcome) { expected = outcome.state; });
    const Verdict verdict = runner.run(layoutCase);
    QVERIFY2(verdict.difference.isEmpty(), qPrintable(verdict.difference));
    QCOMPARE(expected.tiles.size(), tiles);
    QCOMPARE(expected.rows, rows);
}

void tst_layout_property::slotsAgree()
{
    const QStringList texts{QStringLiteral("PT_ADULT"),      QStringLiteral("PT_STUDENT_1"),
                            QStringLiteral("PT_SCHOOLBOY"),  QStringLiteral("PT_DISABLED"),
                            QStringLiteral("PT_MILITARY_1"), QStringLiteral("PT_LFS"),
                            QStringLiteral("PT_STUDENT_2"),  QStringLiteral("unknown")};
    const QVector<int> codes{0, 1, 3, 4, 5, 7, 8, 9, 10, -1, lowest, highest};
    QRandomGenerator random(static_cast<quint32>(seedOfTheRun()));
    const auto someTexts = [&] {
        QStringList some;
        for (int count = random.bounded(7); count > 0; --count)
            some.append(texts.at(random.bounded(texts.size())));
        return some;
    };
    OutputCapture output;
    LogCapture log;

    const int cases = usualCases / soakDivisor();
    int permutations = 0;
    for (int i = 0; i < cases; ++i) {
        QObject owner;
        auto* model = new PassengerTypesModel(&owner);
        model->setLogFareProducts(false);
        model->setSupportedPassengerTypeCodes(someTexts());
        model->sortBasedOnLocalData(someTexts());
        model->setNumberOfColumns(i % 20 == 0 ? random.bounded(-3, 1) : random.bounded(1, 9));
        model->setLogFareProducts(random.bounded(2) == 1);

        QVector<int> input;
        for (int count = random.bounded(24); count > 0; --count)
            input.append(codes.at(random.bounded(i % 10 == 0 ? codes.size() : 7)));
        if (random.bounded(10) != 0)
            std::sort(input.begin(), input.end());

        oracle::State state;
        state.order = PassengerTypesModelInspector(*model).typeCodesOrder();
        state.local = PassengerTypesModelInspector(*model).localTypeCodes();
        state.columns = model->numberOfColumns();
        state.logging = model->logFareProducts();
        const oracle::Slots expected = oracle::slotsOf(state, input);

        output.start();
        const QVector<int> actual = model->getIndeces(input);
        QCOMPARE(output.stop(), expected.standardOutput);
        QCOMPARE(actual, expected.numbers);
        permutations += oracle::isPermutation(actual) ? 1 : 0;
    }
    QVERIFY(permutations > cases / 50);
}

void tst_layout_property::reorderingAgrees()
{
    QRandomGenerator random(static_cast<quint32>(seedOfTheRun()));
    LogCapture log;
    QObject owner;
    auto* model = new PassengerTypesModel(&owner);
    for (int i = 0; i < usualCases; ++i) {
        const int length = random.bounded(12);
        QVector<int> indices = almostAPermutation(random, length);
        const QVector<int> given = indices;
        QVector<sProduct> products = numbered(length);
        model->reOrder(products, indices);

        QCOMPARE(numbersOf(products),
                 numbersOf(oracle::reordered(numberedForOracle(length), given)));
        if (given.size() == length && oracle::isPermutation(given))
            QCOMPARE(indices, numbersOf(numbered(length)));
        else
            QCOMPARE(indices, given);
    }
}

void tst_layout_property::predicatesAgree()
{
    QRandomGenerator random(static_cast<quint32>(seedOfTheRun()));
    const QVector<int> usual{1, 2, 3, 4, 5, 6, 7, 8, 9};
    const QVector<int> odd{-1, -1, 0, -2, lowest, highest, 100000, 100001, 1, 2, 3};
    LogCapture log;
    QObject owner;
    auto* model = new PassengerTypesModel(&owner);
    QMap<QString, int> counts;
    for (int i = 0; i < usualCases; ++i) {
        const QVector<int>& choices = random.bounded(2) == 0 ? usual : odd;
        QVector<sProduct> products(random.bounded(5));
        QVector<int> positions;
        for (sProduct& product : products) {
            product.pos = choices.at(random.bounded(choices.size()));
            positions.append(product.pos);
        }

        bool repeats = false;
        for (const int pos : qAsConst(positions))
            repeats = repeats || positions.count(pos) > 1;
        const bool anyAssigned = positions.count(-1) < positions.size();
        const bool allAssigned = !positions.contains(-1);
        const bool anyZero = positions.contains(0);

        QCOMPARE(model->checkForPosDuplicates(products), repeats);
        QCOMPARE(model->hasBackendAssignedSortingToProducts(products), anyAssigned);
        QCOMPARE(model->hasBackendAssignedPosToProduct(products), allAssigned);
        QCOMPARE(model->hasBackendAssignedPosToZero(products), anyZero);
        ++counts[QStringLiteral("duplicates %1").arg(repeats)];
        ++counts[QStringLiteral("any assigned %1").arg(anyAssigned)];
        ++counts[QStringLiteral("all assigned %1").arg(allAssigned)];
        ++counts[QStringLiteral("zero %1").arg(anyZero)];
    }
    QVERIFY(log.records().size() == 1); // the display order, at construction
    QCOMPARE(counts.size(), 8);
}

void tst_layout_property::plantedMistakeIsFound_data()
{
    QTest::addColumn<LayoutRunner::Distortion>("distortion");
    QTest::addColumn<QString>("found");

    using Distortion = LayoutRunner::Distortion;
    using oracle::Outcome;
    const auto row = [](const char* name, const char* found, Distortion distortion) {
        QTest::newRow(name) << distortion << QString::fromLatin1(found);
    };
    row("a signal too early", "steps", [](Outcome& outcome) {
        for (int i = 1; i < outcome.steps.size(); ++i) {
            if (outcome.steps.at(i).kind == oracle::Step::Rows &&
                outcome.steps.at(i - 1).kind == oracle::Step::Appended) {
                outcome.steps.swapItemsAt(i, i - 1);
                return;
            }
        }
    });
    row("a missing signal", "steps", [](Outcome& outcome) {
        if (!outcome.steps.isEmpty() && outcome.steps.last().kind == oracle::Step::Columns)
            outcome.steps.removeLast();
    });
    row("another message", "steps", [](Outcome& outcome) {
        for (oracle::Step& step : outcome.steps)
            step.text.replace(QLatin1String("NumberOfRows"), QLatin1String("numberOfRows"));
    });
    row("another line on standard output", "standard output",
        [](Outcome& outcome) { outcome.standardOutput.replace(QLatin1String("3, "), QString()); });
    row("another column count", "numberOfColumns",
        [](Outcome& outcome) { outcome.state.columns += outcome.state.rows == 7 ? 1 : 0; });
    row("another row count", "numberOfRows",
        [](Outcome& outcome) { outcome.state.rows += outcome.state.columns == 4 ? 1 : 0; });
    row("another display order", "display order",
        [](Outcome& outcome) { outcome.state.order.removeOne(9); });
    row("other supported types", "supported types",
        [](Outcome& outcome) { outcome.state.supported.removeOne(9); });
    row("other local types", "local types",
        [](Outcome& outcome) { outcome.state.local.removeOne(10); });
    row("another product list", "products",
        [](Outcome& outcome) { outcome.state.products = outcome.state.products.mid(0, 50); });
    row("another list of daily products", "daily products", [](Outcome& outcome) {
        outcome.state.dailyProducts = outcome.state.dailyProducts.mid(0, 5);
    });
    row("another list of grouped products", "grouped products", [](Outcome& outcome) {
        outcome.state.groupedProducts = outcome.state.groupedProducts.mid(0, 50);
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
    QCOMPARE(describe(smallest), QStringLiteral("configured order {}, log_fareproducts off\n"
                                                "   1: addItem() of 1 products\n"
                                                "       \"PT_ADULT\" zone=-1 daily=true\n"
                                                "   2: sortAndRegroup({}, 0)"));
}

QTEST_GUILESS_MAIN(tst_layout_property)
#include "tst_layout_property.moc"
