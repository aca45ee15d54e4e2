#include "LayoutOracle.h"
#include "Soak.h"

#include <QtTest>

#include <limits>

using oracle::Outcome;
using oracle::Product;
using oracle::State;
using oracle::Step;

namespace
{

const QString duplicateMessage =
    QStringLiteral("------------------- DUPLICATE POSITIONS IN FARE PRODUCTS --------------------");
const QString unassignedMessage =
    QStringLiteral("------------------- POSITION NOT ASSIGNED TO PRODUCT --------------------");
const QString zeroMessage =
    QStringLiteral("--- POSITION 0 ASSIGNED TO PRODUCT. THAT IS NOT ALLOWED. SHOULD ALWAYS START "
                   "COUNTING/NUMBERING POSITION FROM 1 ---");

Product sold(int code, int zone, const QString& name, int pos = -1)
{
    Product product;
    product.description = QStringLiteral("sold");
    product.passengerTypeCode = code;
    product.toStopGroupId = zone;
    product.fareProductName = name;
    product.hasExpired = false;
    product.pos = pos;
    return product;
}

bool isPlaceholder(const Product& product)
{
    return product.description == QLatin1String("---NOT FOR SALE---") &&
           product.fareProductName == QLatin1String("---DUMMY---") && product.hasExpired;
}

/// "name" of a product, "placeholder(position)" of a gap.
QStringList byPosition(const QVector<Product>& products)
{
    QStringList texts;
    for (const Product& product : products) {
        texts.append(isPlaceholder(product) ? QStringLiteral("placeholder(%1)").arg(product.pos)
                                            : product.fareProductName);
    }
    return texts;
}

/// "name" of a product, "placeholder(type)" of a gap.
QStringList byType(const QVector<Product>& products)
{
    QStringList texts;
    for (const Product& product : products) {
        texts.append(isPlaceholder(product)
                         ? QStringLiteral("placeholder(%1)").arg(product.passengerTypeCode)
                         : product.fareProductName);
    }
    return texts;
}

QStringList messages(const Outcome& outcome)
{
    QStringList texts;
    for (const Step& step : outcome.steps) {
        if (step.kind == Step::Log)
            texts.append(step.text);
    }
    return texts;
}

QVector<int> announcedRows(const Outcome& outcome)
{
    QVector<int> values;
    for (const Step& step : outcome.steps) {
        if (step.kind == Step::Rows)
            values.append(step.value);
    }
    return values;
}

/// "rows 2", "tile 0", "message" ...
QStringList sequence(const Outcome& outcome)
{
    QStringList texts;
    for (const Step& step : outcome.steps) {
        switch (step.kind) {
        case Step::Columns:
            texts.append(QStringLiteral("columns %1").arg(step.value));
            break;
        case Step::Rows:
            texts.append(QStringLiteral("rows %1").arg(step.value));
            break;
        case Step::Appended:
            texts.append(QStringLiteral("tile %1").arg(step.value));
            break;
        case Step::Removed:
            texts.append(QStringLiteral("removed %1").arg(step.value));
            break;
        case Step::Other:
            texts.append(step.text);
            break;
        case Step::Log:
            texts.append(QStringLiteral("message"));
            break;
        }
    }
    return texts;
}

State withPositions(const QVector<int>& positions)
{
    State state;
    for (const int pos : positions)
        state.products.append(sold(1, 1, QStringLiteral("p%1").arg(pos), pos));
    return state;
}

const QStringList adult{QStringLiteral("PT_ADULT")};

} // namespace

/// Anchors the oracle of the property test to layouts worked out by hand.
class tst_layout_oracle_self : public QObject
{
    Q_OBJECT

private slots:
    void constructionLogsTheOrder();
    void supportedTypesCompleteTheOrder_data();
    void supportedTypesCompleteTheOrder();
    void positionsDecideTheGrid_data();
    void positionsDecideTheGrid();
    void anEmptyPositionOneStaysAmongTheProducts();
    void equalPositionsKeepTheirOrderOfArrival();
    void dailyProductsTakeOneRowEach();
    void rowsAreAnnouncedBeforeNumberedTilesAndAfterTheFallback();
    void lastRowIsNotFilledBeyondTheBound();
    void slotsOfTheGroup_data();
    void slotsOfTheGroup();
    void reorderingNeedsAPermutation();
    void unevenColumnsAreFilledWithPlaceholders();
    void shortBlockIsFilledAtItsFreeColumn();
    void uncountedTypesHaveNoHeight();
    void columnsFollowThePreviousLayout_data();
    void columnsFollowThePreviousLayout();
    void fiveColumnsAreNeverFilled();
    void fillerTypeIsOneThatIsNotLocal_data();
    void fillerTypeIsOneThatIsNotLocal();
    void fillersCompleteAtMostTwoRows_data();
    void fillersCompleteAtMostTwoRows();
    void withoutLocalTypesNothingIsFilled();
    void zonesAscendAndProductsFollowTheFareProduct();
    void rowsPassThroughZero();
    void withoutProductsOnlyDailyRowsRemain();
    void localLayoutIsSilentUnlessLogging();
    void localLayoutTellsItsStepsWhenLogging();
    void spacingFollowsNumbersAndLiterals();
    void zoneWithoutProductsLeavesNoTrace();
    void rowsSaturate();
    void clearingKeepsSizeAndOrder();
    void tilesShowTheirRecords();
};

void tst_layout_oracle_self::constructionLogsTheOrder()
{
    const Outcome configured = oracle::constructed(
        {QStringLiteral("PT_ADULT"), QStringLiteral("PT_LFS"), QStringLiteral("X")}, false, false);
    QCOMPARE(configured.state.order, (QVector<int>{1, 8, 0}));
    QCOMPARE(messages(configured),
             QStringList{QStringLiteral("TypeCodes Order: [1->PT_ADULT],[8->PT_LFS],[0->X]")});

    const Outcome empty = oracle::constructed({}, false, true);
    QVERIFY(empty.state.order.isEmpty());
    QCOMPARE(messages(empty),
             QStringList{QStringLiteral("TypeCodes Order: Products ordering in config is empty.")});
}

void tst_layout_oracle_self::supportedTypesCompleteTheOrder_data()
{
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<QStringList>("supported");
    QTest::addColumn<QVector<int>>("completed");
    QTest::addColumn<QStringList>("log");

    const QString lfs = QStringLiteral("PT_LFS");
    const QString grownUp = QStringLiteral("PT_ADULT");
    const QString pupil = QStringLiteral("PT_SCHOOLBOY");
    const QString fallback = QStringLiteral("Products ordering in config is empty. Set default "
                                            "ordering. TypeCodes Order: ");

    QTest::newRow("an order of the right length is trusted")
        << QVector<int>{1, 3} << QStringList{grownUp, lfs} << QVector<int>{1, 3} << QStringList();
    QTest::newRow("missing types are appended in ascending order")
        << QVector<int>{3} << QStringList{lfs, grownUp} << QVector<int>{3, 1, 8}
        << QStringList{QStringLiteral("Append missing type code 1 from config"),
                       QStringLiteral("Append missing type code 8 from config")};
    QTest::newRow("without order and types the message loses its trailing blank")
        << QVector<int>{} << QStringList{} << QVector<int>{} << QStringList{fallback.trimmed()};
    QTest::newRow("the default order keeps duplicates")
        << QVector<int>{} << QStringList{pupil, grownUp, grownUp} << QVector<int>{1, 1, 4}
        << QStringList{fallback + QStringLiteral("[1],[1],[4]")};
    QTest::newRow("a duplicate supported type is appended once")
        << QVector<int>{1} << QStringList{grownUp, grownUp, lfs} << QVector<int>{1, 8}
        << QStringList{QStringLiteral("Append missing type code 8 from config")};
    QTest::newRow("an unknown type is appended as 0")
        << QVector<int>{1, 8} << QStringList{QStringLiteral("pt_lfs")} << QVector<int>{1, 8, 0}
        << QStringList{QStringLiteral("Append missing type code 0 from config")};
}

void tst_layout_oracle_self::supportedTypesCompleteTheOrder()
{
    QFETCH(QVector<int>, order);
    QFETCH(QStringList, supported);
    QFETCH(QVector<int>, completed);
    QFETCH(QStringList, log);

    State state;
    state.order = order;
    const Outcome outcome = oracle::supporting(state, supported);
    QCOMPARE(outcome.state.order, completed);
    QCOMPARE(messages(outcome), log);
    QCOMPARE(outcome.state.supported.size(), supported.size());
}

void tst_layout_oracle_self::positionsDecideTheGrid_data()
{
    QTest::addColumn<QVector<int>>("positions");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("tiles");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QStringList>("log");

    const auto list = [](const char* text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    };
    const int highest = std::numeric_limits<int>::max();
    const int lowest = std::numeric_limits<int>::min();

    QTest::newRow("holes and the last row become placeholders")
        << QVector<int>{2, 3, 5} << 3
        << list("placeholder(1) p2 p3 placeholder(4) p5 placeholder(6)") << 2 << QStringList();
    QTest::newRow("seven products fill three rows of three")
        << QVector<int>{7, 6, 5, 4, 3, 2, 1} << 3
        << list("p1 p2 p3 p4 p5 p6 p7 placeholder(8) placeholder(9)") << 3 << QStringList();
    QTest::newRow("a full last row is not filled up")
        << QVector<int>{1, 2, 3} << 3 << list("p1 p2 p3") << 1 << QStringList();
    QTest::newRow("duplicates fall back to position order")
        << QVector<int>{2, 1, 1} << 3 << list("p1 p1 p2") << 1 << QStringList{duplicateMessage};
    QTest::newRow("two unassigned products are duplicates")
        << QVector<int>{-1, 4, -1} << 2 << list("p-1 p-1 p4") << 2 << QStringList{duplicateMessage};
    QTest::newRow("one unassigned product is reported as such")
        << QVector<int>{3, 4, -1} << 3 << list("p-1 p3 p4") << 1 << QStringList{unassignedMessage};
    QTest::newRow("position 0 is not allowed")
        << QVector<int>{0, 1, 2} << 3 << list("p0 p1 p2") << 1 << QStringList{zeroMessage};
    QTest::newRow("unassigned goes before zero")
        << QVector<int>{0, -1} << 3 << list("p-1 p0") << 1 << QStringList{unassignedMessage};
    QTest::newRow("a position below -1 counts as unassigned")
        << QVector<int>{1, -5} << 3 << list("p-5 p1") << 1 << QStringList{unassignedMessage};
    QTest::newRow("the lowest position counts as unassigned")
        << QVector<int>{1, lowest} << 3 << list("p-2147483648 p1") << 1
        << QStringList{unassignedMessage};
    QTest::newRow("zero goes before a position out of range")
        << QVector<int>{0, -5} << 3 << list("p-5 p0") << 1 << QStringList{zeroMessage};
    QTest::newRow("a position above the bound counts as unassigned")
        << QVector<int>{100001, 1} << 1 << list("p1 p100001") << 2
        << QStringList{unassignedMessage};
    QTest::newRow("the highest position counts as unassigned")
        << QVector<int>{highest} << 3 << list("p2147483647") << 1 << QStringList{unassignedMessage};
    QTest::newRow("a negative column count divides towards zero and fills nothing")
        << QVector<int>{1, 2, 3} << -2 << list("p1 p2 p3") << 0 << QStringList();
    QTest::newRow("the lowest column count")
        << QVector<int>{2} << lowest << list("placeholder(1) p2") << 1 << QStringList();
}

void tst_layout_oracle_self::positionsDecideTheGrid()
{
    QFETCH(QVector<int>, positions);
    QFETCH(int, columns);
    QFETCH(QStringList, tiles);
    QFETCH(int, rows);
    QFETCH(QStringList, log);

    const Outcome outcome = oracle::laidOut(withPositions(positions), adult, columns);
    QCOMPARE(byPosition(outcome.state.tiles), tiles);
    QCOMPARE(outcome.state.rows, rows);
    QCOMPARE(outcome.state.columns, columns);
    QCOMPARE(messages(outcome), log);
    QVERIFY(outcome.standardOutput.isEmpty());
}

void tst_layout_oracle_self::anEmptyPositionOneStaysAmongTheProducts()
{
    const Outcome outcome = oracle::laidOut(withPositions({5, 3, 2}), adult, 3);
    QCOMPARE(byPosition(outcome.state.products),
             (QStringList{QStringLiteral("placeholder(1)"), QStringLiteral("p2"),
                          QStringLiteral("p3"), QStringLiteral("p5")}));
}

void tst_layout_oracle_self::equalPositionsKeepTheirOrderOfArrival()
{
    State state;
    state.products = {sold(1, 1, QStringLiteral("first"), 1),
                      sold(1, 1, QStringLiteral("other"), 2),
                      sold(1, 1, QStringLiteral("second"), 1)};
    const Outcome outcome = oracle::laidOutByPosition(state);
    QCOMPARE(
        byPosition(outcome.state.tiles),
        (QStringList{QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("other")}));
}

void tst_layout_oracle_self::dailyProductsTakeOneRowEach()
{
    for (const QVector<int>& positions :
         {QVector<int>{1, 2}, QVector<int>{1, 1}, QVector<int>{-1, -1}}) {
        State state = withPositions(positions);
        const int before = oracle::laidOut(state, adult, 2).state.rows;
        state.dailyProducts = {sold(1, 9, QStringLiteral("nine"), 0),
                               sold(1, 2, QStringLiteral("two"), 0),
                               sold(1, 9, QStringLiteral("nine again"), 0)};
        const Outcome outcome = oracle::laidOut(state, adult, 2);
        QCOMPARE(outcome.state.rows, before + 3);
        QCOMPARE(byPosition(outcome.state.tiles.mid(outcome.state.tiles.size() - 3)),
                 (QStringList{QStringLiteral("two"), QStringLiteral("nine"),
                              QStringLiteral("nine again")}));
    }
}

void tst_layout_oracle_self::rowsAreAnnouncedBeforeNumberedTilesAndAfterTheFallback()
{
    State numbered = withPositions({1});
    numbered.dailyProducts = {sold(1, 1, QStringLiteral("daily"))};
    QCOMPARE(sequence(oracle::laidOut(numbered, adult, 1)),
             (QStringList{QStringLiteral("columns 1"), QStringLiteral("rows 1"),
                          QStringLiteral("tile 0"), QStringLiteral("rows 2"),
                          QStringLiteral("tile 1")}));

    State fallback = withPositions({0});
    fallback.dailyProducts = numbered.dailyProducts;
    QCOMPARE(
        sequence(oracle::laidOut(fallback, adult, 3)),
        (QStringList{QStringLiteral("message"), QStringLiteral("tile 0"), QStringLiteral("rows 1"),
                     QStringLiteral("rows 2"), QStringLiteral("tile 1")}));
}

void tst_layout_oracle_self::lastRowIsNotFilledBeyondTheBound()
{
    QCOMPARE(oracle::laidOut(withPositions({1}), adult, 100002).state.tiles.size(), 1);
    if (!triesTheLargest())
        return;
    QCOMPARE(oracle::laidOut(withPositions({1}), adult, 100001).state.tiles.size(), 100001);
    QCOMPARE(oracle::laidOut(withPositions({100000}), adult, 3).state.tiles.size(), 100002);
    QCOMPARE(oracle::laidOut(withPositions({100000}), adult, 3).state.rows, 33334);
}

void tst_layout_oracle_self::slotsOfTheGroup_data()
{
    QTest::addColumn<QVector<int>>("codes");
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<QVector<int>>("local");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QVector<int>>("expected");
    QTest::addColumn<QString>("removed");

    QTest::newRow("columns follow the display order")
        << QVector<int>{1, 1, 3, 3} << QVector<int>{3, 1} << QVector<int>{1, 3} << 2
        << QVector<int>{1, 3, 0, 2} << QString();
    QTest::newRow("an order of another length is cut to the local types")
        << QVector<int>{1, 4} << QVector<int>{1, 3, 4} << QVector<int>{1, 4} << 2
        << QVector<int>{0, 1} << QStringLiteral("Remove : 3 from vTypeCodesOrderCpy\n");
    QTest::newRow("a type without column takes the first free one")
        << QVector<int>{1, 3, 7} << QVector<int>{1, 9, 3} << QVector<int>{1, 3} << 3
        << QVector<int>{0, 2, 1} << QString();
    QTest::newRow("each removed entry is told, duplicates too")
        << QVector<int>{1} << QVector<int>{5, 1, 0, 5} << QVector<int>{1} << 1 << QVector<int>{0}
        << QStringLiteral("Remove : 5 from vTypeCodesOrderCpy\n"
                          "Remove : 0 from vTypeCodesOrderCpy\n"
                          "Remove : 5 from vTypeCodesOrderCpy\n");
    QTest::newRow("only four types find a free column")
        << QVector<int>{1, 3, 4, 5, 7, 8} << QVector<int>{} << QVector<int>{} << 6
        << QVector<int>{0, 1, 2, 3, -1, -1} << QString();
    QTest::newRow("columns of ordered types count among the four")
        << QVector<int>{1, 3, 4, 5} << QVector<int>{4, 8, 1} << QVector<int>{1, 4, 8} << 4
        << QVector<int>{2, 1, 0, 3} << QString();
    QTest::newRow("a column may lie beyond the last")
        << QVector<int>{1, 8} << QVector<int>{1, 3, 4, 8} << QVector<int>{1, 3, 4, 8} << 2
        << QVector<int>{0, 3} << QString();
    QTest::newRow("each type gets as many slots as there are whole rows")
        << QVector<int>{1, 1, 1, 3, 3} << QVector<int>{1, 3} << QVector<int>{1, 3} << 2
        << QVector<int>{0, 2, 1, 3} << QString();
    QTest::newRow("each type gets at least one slot")
        << QVector<int>{1, 3} << QVector<int>{1, 3} << QVector<int>{1, 3} << 7 << QVector<int>{0, 1}
        << QString();
    QTest::newRow("no columns count as one")
        << QVector<int>{1, 1} << QVector<int>{1} << QVector<int>{1} << 0 << QVector<int>{0, 1}
        << QString();
    QTest::newRow("a negative column count gives one row")
        << QVector<int>{1, 1} << QVector<int>{1} << QVector<int>{1} << -1 << QVector<int>{0}
        << QString();
}

void tst_layout_oracle_self::slotsOfTheGroup()
{
    QFETCH(QVector<int>, codes);
    QFETCH(QVector<int>, order);
    QFETCH(QVector<int>, local);
    QFETCH(int, columns);
    QFETCH(QVector<int>, expected);
    QFETCH(QString, removed);

    State state;
    state.order = order;
    state.local = local;
    state.columns = columns;
    QCOMPARE(oracle::slotsOf(state, codes).numbers, expected);
    QCOMPARE(oracle::slotsOf(state, codes).standardOutput, removed);

    state.logging = true;
    QStringList numbers;
    for (const int slot : expected)
        numbers.append(QString::number(slot));
    QCOMPARE(oracle::slotsOf(state, codes).standardOutput,
             removed + QStringLiteral("Indeces: [%1]\n").arg(numbers.join(QStringLiteral(", "))));
}

void tst_layout_oracle_self::reorderingNeedsAPermutation()
{
    const auto order = [](int count, const QVector<int>& slotNumbers) {
        QVector<Product> products;
        for (const char* name : {"a", "b", "c", "d"}) {
            if (products.size() < count)
                products.append(sold(1, 1, QString::fromLatin1(name)));
        }
        return byType(oracle::reordered(products, slotNumbers)).join(QString());
    };
    // a and b are of the first type, c and d of the second, whose column is the first.
    QCOMPARE(order(4, {1, 3, 0, 2}), QStringLiteral("cadb"));
    QCOMPARE(order(4, {3, 0, 1, 2}), QStringLiteral("bcda"));
    QCOMPARE(order(1, {0}), QStringLiteral("a"));
    QCOMPARE(order(1, {7}), QStringLiteral("a"));
    QCOMPARE(order(4, {1, 0}), QStringLiteral("abcd"));
    QCOMPARE(order(2, {1, 0, 2}), QStringLiteral("ab"));
    QCOMPARE(order(3, {1, 1, 0}), QStringLiteral("abc"));
    QCOMPARE(order(3, {1, 0, -1}), QStringLiteral("abc"));
    QCOMPARE(order(3, {1, 0, 3}), QStringLiteral("abc"));
}

void tst_layout_oracle_self::unevenColumnsAreFilledWithPlaceholders()
{
    State state;
    state.order = {1, 3, 4};
    state.products = {sold(1, 7, QStringLiteral("adult")), sold(3, 7, QStringLiteral("student")),
                      sold(1, 7, QStringLiteral("adult 2"))};
    state.logging = true;
    const Outcome outcome =
        oracle::laidOut(state,
                        {QStringLiteral("PT_SCHOOLBOY"), QStringLiteral("PT_STUDENT_1"),
                         QStringLiteral("PT_ADULT")},
                        3);
    QCOMPARE(outcome.state.local, (QVector<int>{1, 3, 4}));
    QCOMPARE(outcome.state.rows, 2);
    QCOMPARE(byType(outcome.state.tiles),
             (QStringList{QStringLiteral("adult"), QStringLiteral("student"),
                          QStringLiteral("placeholder(4)"), QStringLiteral("adult 2"),
                          QStringLiteral("placeholder(3)"), QStringLiteral("placeholder(4)")}));
    QCOMPARE(outcome.standardOutput, QStringLiteral("Indeces: [0, 3, 1, 4, 2, 5]\n"));
    QCOMPARE(outcome.state.tiles, outcome.state.groupedProducts);
}

void tst_layout_oracle_self::shortBlockIsFilledAtItsFreeColumn()
{
    State state;
    state.order = {1, 3, 8};
    state.products = {sold(1, 7, QStringLiteral("adult")), sold(8, 7, QStringLiteral("family"))};
    const Outcome outcome = oracle::laidOut(
        state,
        {QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1"), QStringLiteral("PT_LFS")}, 4);
    QCOMPARE(byType(outcome.state.tiles),
             (QStringList{QStringLiteral("adult"), QStringLiteral("placeholder(3)"),
                          QStringLiteral("family"), QStringLiteral("placeholder(7)")}));
    QCOMPARE(outcome.state.rows, 1);
    QCOMPARE(sequence(outcome), (QStringList{QStringLiteral("columns 4"), QStringLiteral("rows 1"),
                                             QStringLiteral("tile 0"), QStringLiteral("tile 1"),
                                             QStringLiteral("tile 2"), QStringLiteral("tile 3")}));
}

void tst_layout_oracle_self::uncountedTypesHaveNoHeight()
{
    State state;
    state.order = {9};
    state.products = {sold(9, 7, QStringLiteral("one")), sold(9, 7, QStringLiteral("two"))};
    const Outcome outcome = oracle::laidOut(state, {QStringLiteral("PT_STUDENT_2")}, 1);
    QCOMPARE(outcome.state.rows, 0);
    QCOMPARE(byType(outcome.state.tiles),
             (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
}

void tst_layout_oracle_self::columnsFollowThePreviousLayout_data()
{
    QTest::addColumn<int>("types");
    QTest::addColumn<int>("columns");
    QTest::newRow("no layout before") << 0 << 3;
    QTest::newRow("one type before") << 1 << 1;
    QTest::newRow("two types before") << 2 << 2;
    QTest::newRow("four types before") << 4 << 4;
    QTest::newRow("five types before") << 5 << 3;
}

void tst_layout_oracle_self::columnsFollowThePreviousLayout()
{
    QFETCH(int, types);
    QFETCH(int, columns);
    const QStringList texts{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1"),
                            QStringLiteral("PT_SCHOOLBOY"), QStringLiteral("PT_DISABLED"),
                            QStringLiteral("PT_LFS")};
    const State previous = oracle::laidOut(State(), texts.mid(0, types), 8).state;
    QCOMPARE(previous.columns, 8);
    const Outcome outcome = oracle::laidOut(previous, texts, 0);
    QCOMPARE(outcome.state.columns, columns);
    QCOMPARE(sequence(outcome), QStringList{QStringLiteral("columns %1").arg(columns)});
}

void tst_layout_oracle_self::fiveColumnsAreNeverFilled()
{
    State state;
    state.order = {1, 3, 8};
    for (int count = 1; count <= 12; ++count) {
        state.products.append(sold(1, 7, QString::number(count)));
        const Outcome outcome = oracle::laidOut(state, adult, 5);
        QCOMPARE(outcome.state.tiles.size(), count);
        QCOMPARE(outcome.state.rows, count);
    }
}

void tst_layout_oracle_self::fillerTypeIsOneThatIsNotLocal_data()
{
    QTest::addColumn<QVector<int>>("local");
    QTest::addColumn<int>("type");
    QTest::newRow("8 unless the local types end in 8") << QVector<int>{3, 7} << 8;
    QTest::newRow("8 although it is local, if a larger one is") << QVector<int>{8, 10} << 8;
    QTest::newRow("7 first") << QVector<int>{8} << 7;
    QTest::newRow("then 5") << QVector<int>{7, 8} << 5;
    QTest::newRow("then 4") << QVector<int>{3, 5, 7, 8} << 4;
    QTest::newRow("then 3") << QVector<int>{4, 5, 7, 8} << 3;
    QTest::newRow("1 when all are local") << QVector<int>{3, 4, 5, 7, 8} << 1;
}

void tst_layout_oracle_self::fillerTypeIsOneThatIsNotLocal()
{
    QFETCH(QVector<int>, local);
    QFETCH(int, type);

    State state;
    state.columns = 3;
    state.local = local;
    // An uncounted type has no height, so that only fillers can appear.
    state.products = {sold(0, 7, QStringLiteral("unknown"))};
    const Outcome outcome = oracle::withZone(state, 7);
    const QString filler = QStringLiteral("placeholder(%1)").arg(type);
    QCOMPARE(byType(outcome.state.groupedProducts),
             (QStringList{QStringLiteral("unknown"), filler, filler}));
    QCOMPARE(outcome.state.rows, 0);
}

void tst_layout_oracle_self::fillersCompleteAtMostTwoRows_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QVector<int>>("fillers"); // for 1, 2, 3 ... products
    QTest::newRow("one column") << 1 << QVector<int>(10, 0);
    QTest::newRow("two columns") << 2 << QVector<int>(10, 0);
    QTest::newRow("three columns") << 3 << QVector<int>{2, 1, 0, 2, 1, 0, 0, 0, 0, 0};
    QTest::newRow("four columns") << 4 << QVector<int>{3, 2, 1, 0, 3, 2, 1, 0, 0, 0};
    QTest::newRow("five columns") << 5 << QVector<int>(10, 0);
    QTest::newRow("minus three columns") << -3 << QVector<int>(10, 0);
}

void tst_layout_oracle_self::fillersCompleteAtMostTwoRows()
{
    QFETCH(int, columns);
    QFETCH(QVector<int>, fillers);
    State state;
    for (int count = 1; count <= fillers.size(); ++count) {
        state.products.append(sold(9, 7, QStringLiteral("student")));
        const Outcome outcome = oracle::laidOut(
            state, {QStringLiteral("PT_ADULT"), QStringLiteral("PT_ADULT")}, columns);
        QCOMPARE(outcome.state.tiles.size(), count + fillers.at(count - 1));
    }
}

void tst_layout_oracle_self::withoutLocalTypesNothingIsFilled()
{
    State state;
    state.order = {1};
    state.products = {sold(1, 7, QStringLiteral("adult"))};
    const Outcome outcome = oracle::laidOut(state, {}, 3);
    QCOMPARE(byType(outcome.state.tiles), QStringList{QStringLiteral("adult")});
    QCOMPARE(outcome.state.rows, 1);
}

void tst_layout_oracle_self::zonesAscendAndProductsFollowTheFareProduct()
{
    const auto fare = [](int zone, int fareProduct, const char* name) {
        Product product = sold(1, zone, QString::fromLatin1(name));
        product.fareProductId = fareProduct;
        return product;
    };
    State state;
    state.order = {1};
    state.products = {fare(2, 9, "zone 2, fare 9"), fare(2, 4, "zone 2, fare 4"),
                      fare(-3, 9, "zone -3, fare 9"), fare(2, 4, "zone 2, fare 4 again")};
    const Outcome outcome = oracle::laidOut(state, adult, 1);
    QCOMPARE(byType(outcome.state.products),
             (QStringList{QStringLiteral("zone 2, fare 4"), QStringLiteral("zone 2, fare 4 again"),
                          QStringLiteral("zone -3, fare 9"), QStringLiteral("zone 2, fare 9")}));
    QCOMPARE(
        byType(outcome.state.tiles),
        (QStringList{QStringLiteral("zone -3, fare 9"), QStringLiteral("zone 2, fare 4"),
                     QStringLiteral("zone 2, fare 4 again"), QStringLiteral("zone 2, fare 9")}));
}

void tst_layout_oracle_self::rowsPassThroughZero()
{
    State state;
    state.order = {1};
    state.rows = 4;
    state.products = {sold(1, 2, QStringLiteral("a")), sold(1, 5, QStringLiteral("b")),
                      sold(1, 5, QStringLiteral("c"))};
    state.dailyProducts = {sold(1, 1, QStringLiteral("daily"))};
    QCOMPARE(announcedRows(oracle::laidOut(state, adult, 1)), (QVector<int>{0, 1, 3, 4}));
}

void tst_layout_oracle_self::withoutProductsOnlyDailyRowsRemain()
{
    State state;
    state.rows = 9;
    state.dailyProducts = {sold(1, 1, QStringLiteral("daily")),
                           sold(1, 0, QStringLiteral("earlier zone"))};
    const Outcome outcome = oracle::laidOut(state, adult, 3);
    QCOMPARE(announcedRows(outcome), (QVector<int>{0, 2}));
    QCOMPARE(byType(outcome.state.tiles),
             (QStringList{QStringLiteral("earlier zone"), QStringLiteral("daily")}));
    QVERIFY(outcome.standardOutput.isEmpty());
}

void tst_layout_oracle_self::localLayoutIsSilentUnlessLogging()
{
    State state;
    state.order = {1, 3};
    state.products = {sold(1, 7, QStringLiteral("adult"))};
    const Outcome outcome = oracle::laidOut(state, adult, 1);
    QVERIFY(messages(outcome).isEmpty());
    QCOMPARE(outcome.standardOutput, QStringLiteral("Remove : 3 from vTypeCodesOrderCpy\n"));
}

void tst_layout_oracle_self::localLayoutTellsItsStepsWhenLogging()
{
    State state;
    state.order = {1};
    state.logging = true;
    Product product = sold(1, 7, QStringLiteral("Single"));
    product.fromStopGroupId = 2;
    product.passengerTypeId = 31;
    product.fareProductId = 5;
    Product nameless = product;
    nameless.description.clear();
    state.products = {product};
    state.dailyProducts = {nameless};
    QCOMPARE(
        messages(oracle::laidOut(state, adult, 1)),
        (QStringList{QStringLiteral("1 products in our vector"),
                     QStringLiteral("------------------- BEFORE GROUPING --------------------"),
                     QStringLiteral("FromStopGroupId: 2 ToStopGroupId: 7 PassengerTypeId: 31 "
                                    "PassengerTypeCode: 1 FareProductId: 5 Name: Single "
                                    "Description: sold"),
                     QStringLiteral("1 zones will be supported"),
                     QStringLiteral("1 passengerTypeCodes will be supported"),
                     QStringLiteral("Group products for zone: 7"),
                     QStringLiteral("NumberOfCols: 1"), QStringLiteral("NumberOfRows: 2"),
                     QStringLiteral("------------------- AFTER GROUPING --------------------"),
                     QStringLiteral("FromStopGroupId: 2 ToStopGroupId: 7 PassengerTypeId: 31 "
                                    "PassengerTypeCode: 1 FareProductId: 5 FareProductName: Single "
                                    "Description: sold")}));
}

void tst_layout_oracle_self::spacingFollowsNumbersAndLiterals()
{
    State state = withPositions({1});
    state.logging = true;
    state.autoSpacing = true;
    const QString dump = QStringLiteral(
        "FromStopGroupId:  0  ToStopGroupId:  1  PassengerTypeId:  0  PassengerTypeCode:  1  "
        "FareProductId:  0  Name:  p1 Description:  sold Pos:  1 ");
    QCOMPARE(
        messages(oracle::laidOut(state, adult, 1)),
        (QStringList{
            QStringLiteral("------------------- FARE PRODUCTS BEFORE -------------------- "), dump,
            QStringLiteral("------------------- FARE PRODUCTS AFTER -------------------- "), dump,
            QStringLiteral("NumberOfCols: 1"), QStringLiteral("NumberOfRows: 1")}));
}

void tst_layout_oracle_self::zoneWithoutProductsLeavesNoTrace()
{
    State state;
    state.logging = true;
    const Outcome outcome = oracle::withZone(state, -4);
    QCOMPARE(messages(outcome), QStringList{QStringLiteral("Group products for zone: -4")});
    QVERIFY(outcome.standardOutput.isEmpty());
    QVERIFY(outcome.state.groupedProducts.isEmpty());
    QCOMPARE(outcome.state.rows, 0);
}

void tst_layout_oracle_self::rowsSaturate()
{
    State state;
    state.rows = std::numeric_limits<int>::max() - 1;
    state.products = {sold(1, 7, QStringLiteral("a")), sold(1, 7, QStringLiteral("b"))};
    QCOMPARE(oracle::withZone(state, 7).state.rows, std::numeric_limits<int>::max());
}

void tst_layout_oracle_self::clearingKeepsSizeAndOrder()
{
    State state = withPositions({1, 2});
    state.order = {1};
    state.dailyProducts = {sold(1, 1, QStringLiteral("daily"))};
    const Outcome outcome = oracle::cleared(oracle::laidOut(state, adult, 2).state);
    QCOMPARE(sequence(outcome), QStringList{QStringLiteral("removed 3")});
    QCOMPARE(outcome.state.rows, 2);
    QCOMPARE(outcome.state.columns, 2);
    QCOMPARE(outcome.state.order, QVector<int>{1});
    QVERIFY(outcome.state.tiles.isEmpty() && outcome.state.products.isEmpty() &&
            outcome.state.dailyProducts.isEmpty() && outcome.state.groupedProducts.isEmpty());
    QVERIFY(oracle::cleared(outcome.state).steps.isEmpty());
}

void tst_layout_oracle_self::tilesShowTheirRecords()
{
    Product product;
    product.passengerTypeId = 257;
    product.description = QStringLiteral("258");
    product.passengerTypeCode = 9;
    product.price = 2.60;
    product.fareProductId = 261;
    product.fareProductName = QStringLiteral("262");
    product.isReturnFee = true;
    product.fromStopGroupId = 265;
    product.toStopGroupId = 266;
    product.fareProductColor = QStringLiteral("267");
    product.hasExpired = false;
    product.fareDiscount = 2.69;
    product.isDaily = true;
    product.pos = 272;

    const QVector<QVariant> roles{257,
                                  QStringLiteral("258"),
                                  QStringLiteral("qrc:/icons/student.svg"),
                                  2.60,
                                  261,
                                  QStringLiteral("262"),
                                  0,
                                  true,
                                  265,
                                  266,
                                  QStringLiteral("267"),
                                  false,
                                  2.69,
                                  false,
                                  true,
                                  272};
    QCOMPARE(oracle::tileOf(product).roles, roles);
    QCOMPARE(oracle::tileOf(product).code, QStringLiteral("9"));

    product.icon = QStringLiteral("qrc:/own.svg");
    QCOMPARE(oracle::tileOf(product).roles.at(2), QVariant(QStringLiteral("qrc:/own.svg")));

    const oracle::Tile placeholder = oracle::tileOf(Product());
    QCOMPARE(placeholder.roles.at(0), QVariant(0));
    QCOMPARE(placeholder.code, QStringLiteral("0"));
    QCOMPARE(placeholder.roles.at(1), QVariant(QStringLiteral("---NOT FOR SALE---")));
    QCOMPARE(placeholder.roles.at(2), QVariant(QStringLiteral("qrc:/icons/adult.svg")));
    QCOMPARE(placeholder.roles.at(5), QVariant(QStringLiteral("---DUMMY---")));
    QCOMPARE(placeholder.roles.at(11), QVariant(true));
    QCOMPARE(placeholder.roles.at(15), QVariant(-1));
}

QTEST_GUILESS_MAIN(tst_layout_oracle_self)
#include "tst_layout_oracle_self.moc"
