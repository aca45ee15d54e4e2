#include "GridSignals.h"
#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>
#include <random>

namespace
{

using Codes = QVector<int>;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

QString removed(const Codes& codes)
{
    QString lines;
    for (const int code : codes)
        lines += QString("Remove : %1 from vTypeCodesOrderCpy\n").arg(code);
    return lines;
}

/// Products named by the words of a line.
QVector<sProduct> named(const QString& names)
{
    QVector<sProduct> products;
    for (const QString& name : names.split(' ', Qt::SkipEmptyParts)) {
        sProduct product;
        product.fareProductName = name;
        products.append(product);
    }
    return products;
}

} // namespace

class TestLocalOrdering : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void slotsFollowTheDisplayOrder_data();
    void slotsFollowTheDisplayOrder();
    void slotsAreWrittenWhileTheSwitchIsOn_data();
    void slotsAreWrittenWhileTheSwitchIsOn();

    void productsMoveToTheirSlots_data();
    void productsMoveToTheirSlots();
    void unusableSlotsChangeNothing_data();
    void unusableSlotsChangeNothing();
    void longPermutationIsApplied();

    void localTypesComeFromTheArgument_data();
    void localTypesComeFromTheArgument();
    void productsAreStoredByProductAndZone_data();
    void productsAreStoredByProductAndZone();
    void zonesAreBlocksInAscendingOrder_data();
    void zonesAreBlocksInAscendingOrder();
    void dailyProductsFollowByZone_data();
    void dailyProductsFollowByZone();
    void withoutProductsThereAreNoBlocks_data();
    void withoutProductsThereAreNoBlocks();
    void removedTypesAreWrittenOncePerZone();
    void loggerStaysSilentWhileTheSwitchIsOff();
    void signalsComeInOrder();
    void secondLayoutAppendsAgain();
    void groupedProductsKeepTheLastLayout();
    void listsChangeStepByStep();

private:
    /// A model of the configured display order, laid out once for `localTypes` without products.
    PassengerTypesModel& makeModel(const Codes& order, const Codes& localTypes, int columns);

    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<PassengerTypesModel> m_model;
};

void TestLocalOrdering::init()
{
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
}

void TestLocalOrdering::cleanup()
{
    m_model.reset();
    m_log.reset();
    m_owner.reset();
}

PassengerTypesModel& TestLocalOrdering::makeModel(const Codes& order, const Codes& localTypes,
                                                  int columns)
{
    const TerminalHome home(typeTexts(order));
    m_model = std::make_unique<PassengerTypesModel>(m_owner.get());
    m_model->setNumberOfColumns(columns);
    m_model->sortBasedOnLocalData(typeTexts(localTypes));
    m_log->clear();
    return *m_model;
}

// Slots

void TestLocalOrdering::slotsFollowTheDisplayOrder_data()
{
    QTest::addColumn<Codes>("order");
    QTest::addColumn<Codes>("localTypes");
    QTest::addColumn<int>("columns");
    QTest::addColumn<Codes>("codes");
    QTest::addColumn<Codes>("slotNumbers");
    QTest::addColumn<QString>("output");

    QTest::newRow("each type takes its column row by row")
        << Codes{3, 1} << Codes{1, 3} << 2 << Codes{1, 1, 3, 3} << Codes{1, 3, 0, 2} << "";
    QTest::newRow("types of the order that this layout is not made for are left out")
        << Codes{1, 3, 4} << Codes{1, 4} << 2 << Codes{1, 4} << Codes{0, 1} << removed({3});
    QTest::newRow("every entry left out is noted, in the sequence of the order")
        << Codes{4, 3, 4, 1} << Codes{1} << 1 << Codes{1} << Codes{0} << removed({4, 3, 4});
    QTest::newRow("order of the same length is used as it is, though it names other types")
        << Codes{8, 9} << Codes{1, 3} << 2 << Codes{1, 3} << Codes{0, 1} << "";
    QTest::newRow("repeated type of the order takes its first column")
        << Codes{1, 1, 3} << Codes{1, 3} << 2 << Codes{1, 3} << Codes{0, 2} << "";
    QTest::newRow("unknown type has a column of its own")
        << Codes{0, 1} << Codes{0, 1} << 2 << Codes{0, 1} << Codes{0, 1} << "";

    QTest::newRow("type without a column takes the one between two taken ones")
        << Codes{1, 4, 8} << Codes{1, 3, 8} << 3 << Codes{1, 3, 8} << Codes{0, 1, 2} << "";
    QTest::newRow("types without a column take free ones in their own sequence")
        << Codes{8} << Codes{1, 3, 8} << 3 << Codes{1, 3, 8} << Codes{1, 2, 0} << "";
    QTest::newRow("fifth type without a column stays without")
        << Codes{} << Codes{1, 3, 4, 5, 7} << 5 << Codes{1, 3, 4, 5, 7} << Codes{0, 1, 2, 3, -1}
        << "";
    QTest::newRow("sixth type without a column stays without, too")
        << Codes{} << Codes{} << 6 << Codes{1, 3, 4, 5, 7, 8} << Codes{0, 1, 2, 3, -1, -1} << "";
    QTest::newRow("type without a column runs from -1 down its rows")
        << Codes{} << Codes{} << 2 << Codes{1, 3, 4, 5, 7} << Codes{0, 2, 1, 3, 2, 4, 3, 5, -1, 1}
        << "";
    QTest::newRow("columns taken by ordered types count among the four free ones")
        << Codes{1, 3, 4, 5} << Codes{1, 3, 4, 5, 7} << 5 << Codes{1, 3, 4, 5, 7}
        << Codes{0, 1, 2, 3, -1} << "";
    QTest::newRow("columns beyond the four do not use up a free one")
        << Codes{9, 10, 8, 7, 5} << Codes{1, 5, 7, 8, 9, 10} << 5 << Codes{1, 5} << Codes{0, 4}
        << "";
    QTest::newRow("column beyond the grid may be handed out")
        << Codes{1, 3, 4, 5} << Codes{1, 3, 4, 5} << 2 << Codes{5} << Codes{3} << "";

    QTest::newRow("rows are the integer part of products by columns")
        << Codes{1} << Codes{1} << 3 << Codes{1, 1, 1, 1, 1} << Codes{0} << "";
    QTest::newRow("each type has one slot at least")
        << Codes{1, 3} << Codes{1, 3} << 5 << Codes{1, 3} << Codes{0, 1} << "";
    QTest::newRow("uneven types can be as long as the products")
        << Codes{1, 3} << Codes{1, 3} << 2 << Codes{1, 3, 3, 3, 3, 3} << Codes{0, 2, 4, 1, 3, 5}
        << "";
    QTest::newRow("too few columns repeat slots")
        << Codes{1, 3} << Codes{1, 3} << 1 << Codes{1, 3} << Codes{0, 1, 1, 2} << "";
    QTest::newRow("types that are not sorted are taken as they come")
        << Codes{3, 1} << Codes{1, 3} << 3 << Codes{1, 3, 1} << Codes{1, 0, 1} << "";
    QTest::newRow("no product and no order") << Codes{} << Codes{} << 3 << Codes{} << Codes{} << "";
    QTest::newRow("no product still notes the types left out")
        << Codes{1, 3} << Codes{3} << 3 << Codes{} << Codes{} << removed({1});

    QTest::newRow("no column counts as one")
        << Codes{1} << Codes{1} << 0 << Codes{1, 1, 1} << Codes{0, 1, 2} << "";
    QTest::newRow("negative columns give one slot each")
        << Codes{1, 3} << Codes{1, 3} << -1 << Codes{1, 1, 3, 3} << Codes{0, 1} << "";
    QTest::newRow("lowest number of columns gives one slot each")
        << Codes{1, 3} << Codes{1, 3} << lowest << Codes{1, 1, 3, 3} << Codes{0, 1} << "";
    QTest::newRow("highest number of columns gives one slot each")
        << Codes{1, 3} << Codes{1, 3} << highest << Codes{1, 1, 3, 3} << Codes{0, 1} << "";
    QTest::newRow("lowest and highest type")
        << Codes{} << Codes{} << 2 << Codes{lowest, -1, highest} << Codes{0, 1, 2} << "";
}

void TestLocalOrdering::slotsFollowTheDisplayOrder()
{
    QFETCH(Codes, order);
    QFETCH(Codes, localTypes);
    QFETCH(int, columns);
    QFETCH(Codes, codes);
    QFETCH(Codes, slotNumbers);
    QFETCH(QString, output);

    PassengerTypesModel& model = makeModel(order, localTypes, columns);
    SignalLog signalLog(&model);
    Codes result;
    const QByteArray written = stdoutOf([&] { result = model.getIndeces(codes); });

    QCOMPARE(result, slotNumbers);
    QCOMPARE(QString(written), output);
    QCOMPARE(m_log->messages(), QStringList());
    QCOMPARE(signalLog.take(), QStringList());
    QCOMPARE(PassengerTypesModelInspector(model).typeCodesOrder(), order);
}

void TestLocalOrdering::slotsAreWrittenWhileTheSwitchIsOn_data()
{
    QTest::addColumn<Codes>("order");
    QTest::addColumn<Codes>("codes");
    QTest::addColumn<QString>("output");

    QTest::newRow("several slots") << Codes{3, 1} << Codes{1, 1, 3, 3} << "Indeces: [1, 3, 0, 2]\n";
    QTest::newRow("one slot") << Codes{1} << Codes{1} << "Indeces: [0]\n";
    QTest::newRow("no slot") << Codes{} << Codes{} << "Indeces: []\n";
    QTest::newRow("slot before the grid")
        << Codes{} << Codes{1, 3, 4, 5, 7} << "Indeces: [0, 2, 1, 3, 2, 4, 3, 5, -1, 1]\n";
    QTest::newRow("after the types left out")
        << Codes{4, 1, 8} << Codes{1} << removed({4, 8}) + "Indeces: [0]\n";
}

void TestLocalOrdering::slotsAreWrittenWhileTheSwitchIsOn()
{
    QFETCH(Codes, order);
    QFETCH(Codes, codes);
    QFETCH(QString, output);

    PassengerTypesModel& model = makeModel(order, {1, 3}, 2);
    model.setLogFareProducts(true);
    QCOMPARE(QString(stdoutOf([&] { model.getIndeces(codes); })), output);
    QCOMPARE(m_log->messages(), QStringList());
}

// Moving products

void TestLocalOrdering::productsMoveToTheirSlots_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<Codes>("slotNumbers");
    QTest::addColumn<QString>("moved");

    QTest::newRow("product k goes to slot k")
        << "1a 1b 3a 3b" << Codes{1, 3, 0, 2} << "3a 1a 3b 1b";
    QTest::newRow("products in their slots stay") << "a b c" << Codes{0, 1, 2} << "a b c";
    QTest::newRow("two products change places") << "a b" << Codes{1, 0} << "b a";
    QTest::newRow("one cycle through all") << "a b c d e" << Codes{1, 2, 3, 4, 0} << "e a b c d";
    QTest::newRow("cycle the other way") << "a b c d e" << Codes{4, 0, 1, 2, 3} << "b c d e a";
    QTest::newRow("reversed") << "a b c d e" << Codes{4, 3, 2, 1, 0} << "e d c b a";
    QTest::newRow("two cycles and one that stays")
        << "a b c d e" << Codes{1, 0, 2, 4, 3} << "b a c e d";
}

void TestLocalOrdering::productsMoveToTheirSlots()
{
    QFETCH(QString, names);
    QFETCH(Codes, slotNumbers);
    QFETCH(QString, moved);

    PassengerTypesModel& model = makeModel({}, {}, 3);
    SignalLog signalLog(&model);
    QVector<sProduct> products = named(names);
    Codes numbers = slotNumbers;
    model.reOrder(products, numbers);

    Codes ascending(products.size());
    std::iota(ascending.begin(), ascending.end(), 0);
    QCOMPARE(gridText(products), moved);
    QCOMPARE(numbers, ascending);
    QCOMPARE(signalLog.take(), QStringList());
}

void TestLocalOrdering::unusableSlotsChangeNothing_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<Codes>("slotNumbers");

    QTest::newRow("nothing at all") << "" << Codes{};
    QTest::newRow("one product") << "a" << Codes{0};
    QTest::newRow("one product with another slot") << "a" << Codes{5};
    QTest::newRow("no product, one slot") << "" << Codes{0};
    QTest::newRow("one product, no slot") << "a" << Codes{};
    QTest::newRow("more products than slots") << "a b c" << Codes{1, 0};
    QTest::newRow("more slots than products") << "a b" << Codes{1, 0, 2};
    QTest::newRow("repeated slot") << "a b c" << Codes{1, 1, 0};
    QTest::newRow("repeated slot at the end") << "a b c" << Codes{1, 0, 1};
    QTest::newRow("all slots the same") << "a b c" << Codes{0, 0, 0};
    QTest::newRow("negative slot") << "a b c" << Codes{1, 0, -1};
    QTest::newRow("slot past the end") << "a b c" << Codes{1, 0, 3};
    QTest::newRow("slots counted from 1") << "a b c" << Codes{3, 2, 1};
    QTest::newRow("lowest slot") << "a b c" << Codes{1, 0, lowest};
    QTest::newRow("highest slot") << "a b c" << Codes{highest, 0, 1};
}

void TestLocalOrdering::unusableSlotsChangeNothing()
{
    QFETCH(QString, names);
    QFETCH(Codes, slotNumbers);

    PassengerTypesModel& model = makeModel({}, {}, 3);
    QVector<sProduct> products = named(names);
    Codes numbers = slotNumbers;
    model.reOrder(products, numbers);
    QCOMPARE(gridText(products), names);
    QCOMPARE(numbers, slotNumbers);
}

void TestLocalOrdering::longPermutationIsApplied()
{
    constexpr int count = 2000;
    Codes numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(7)); // NOLINT: the same each time
    const Codes shuffled = numbers;
    QVector<sProduct> products(count);
    for (int i = 0; i < count; ++i)
        products[i].fareProductId = i;

    makeModel({}, {}, 3).reOrder(products, numbers);

    for (int i = 0; i < count; ++i) {
        QCOMPARE(products.at(shuffled.at(i)).fareProductId, i);
        QCOMPARE(numbers.at(i), i);
    }
}

// Layout

void TestLocalOrdering::localTypesComeFromTheArgument_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<Codes>("localTypes");

    QTest::newRow("none") << QStringList() << Codes{};
    QTest::newRow("ascending, not as given")
        << QStringList{"PT_LFS", "PT_MILITARY_2", "PT_ADULT"} << Codes{1, 8, 10};
    QTest::newRow("repeated text stays repeated")
        << QStringList{"PT_LFS", "PT_ADULT", "PT_LFS"} << Codes{1, 8, 8};
    QTest::newRow("unknown text is type 0") << QStringList{"PT_ADULT", "X", ""} << Codes{0, 0, 1};
}

void TestLocalOrdering::localTypesComeFromTheArgument()
{
    QFETCH(QStringList, texts);
    QFETCH(Codes, localTypes);

    PassengerTypesModel& model = makeModel({}, {5, 7}, 3);
    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.localTypeCodes(), (Codes{5, 7}));
    model.sortBasedOnLocalData(texts);
    QCOMPARE(inspector.localTypeCodes(), localTypes);
    QCOMPARE(inspector.supportedTypeCodes(), Codes{});
    QCOMPARE(inspector.typeCodesOrder(), Codes{});
}

void TestLocalOrdering::productsAreStoredByProductAndZone_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("stored");

    QTest::newRow("product number first, zone second") << "1a#2>1 1b#1>2 1c#1>1 1d#2>0"
                                                       << "1c 1b 1d 1a";
    QTest::newRow("same product and zone keep their order of arrival") << "8c#1>1 1a#1>1 3b#1>1"
                                                                       << "8c 1a 3b";
    QTest::newRow("negative numbers") << "1a#-1>5 1b#-2>-5 1c#-1>-5"
                                      << "1b 1c 1a";
    QTest::newRow("lowest and highest numbers")
        << "1a#2147483647>0 1b#-2147483648>2147483647 1c#-2147483648>-2147483648"
        << "1c 1b 1a";
}

void TestLocalOrdering::productsAreStoredByProductAndZone()
{
    QFETCH(QString, products);
    QFETCH(QString, stored);

    PassengerTypesModel& model = makeModel({}, {}, 3);
    addProducts(model, products);
    model.sortBasedOnLocalData({});
    QCOMPARE(gridText(PassengerTypesModelInspector(model).products()), stored);
}

void TestLocalOrdering::zonesAreBlocksInAscendingOrder_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");

    QTest::newRow("one zone") << "1a 1b"
                              << "1a | 1b" << 2;
    QTest::newRow("zones ascending, not as they arrive") << "1a>3 1b>1 1c>2"
                                                         << "1b | 1c | 1a" << 3;
    QTest::newRow("zones mixed among the products") << "1a>2 1b>1 1c>2 1d>1"
                                                    << "1b | 1d | 1a | 1c" << 4;
    QTest::newRow("zone 0 and negative zones") << "1a>1 1b>0 1c>-1"
                                               << "1c | 1b | 1a" << 3;
    QTest::newRow("lowest and highest zone") << "1a>2147483647 1b>-2147483648 1c>0"
                                             << "1b | 1c | 1a" << 3;
}

void TestLocalOrdering::zonesAreBlocksInAscendingOrder()
{
    QFETCH(QString, products);
    QFETCH(QString, grid);
    QFETCH(int, rows);

    PassengerTypesModel& model = makeModel({1}, {1}, 1);
    addProducts(model, products);
    model.sortBasedOnLocalData({"PT_ADULT"});
    QCOMPARE(gridText(model), grid);
    QCOMPARE(model.numberOfRows(), rows);
    QCOMPARE(gridText(PassengerTypesModelInspector(model).groupedProducts(), 1), grid);
}

void TestLocalOrdering::dailyProductsFollowByZone_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("stored");

    QTest::newRow("after the grid, ascending by zone") << "1x>3! 1a>9 1y>1!"
                                                       << "1a 1y 1x" << 3 << "1y 1x";
    QTest::newRow("same zone keeps the order of arrival, whatever the product number")
        << "1x#9>1! 1a 1y#1>1! 1z#5>0!"
        << "1a 1z 1x 1y" << 4 << "1z 1x 1y";
    QTest::newRow("their types are neither evened out nor ordered") << "8x>1! 1y>1! 1a"
                                                                    << "1a 8x 1y" << 3 << "8x 1y";
}

void TestLocalOrdering::dailyProductsFollowByZone()
{
    QFETCH(QString, products);
    QFETCH(QString, grid);
    QFETCH(int, rows);
    QFETCH(QString, stored);

    PassengerTypesModel& model = makeModel({1}, {1}, 1);
    addProducts(model, products);
    model.sortBasedOnLocalData({"PT_ADULT"});

    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(gridText(model, 0), grid);
    QCOMPARE(model.numberOfRows(), rows);
    QCOMPARE(gridText(inspector.dailyProducts()), stored);
    QCOMPARE(gridText(inspector.groupedProducts()), QString("1a"));
}

void TestLocalOrdering::withoutProductsThereAreNoBlocks_data()
{
    QTest::addColumn<QString>("daily");
    QTest::addColumn<int>("rows");

    QTest::newRow("no daily products either") << "" << 0;
    QTest::newRow("daily products alone") << "1x! 1y! 1z!" << 3;
}

void TestLocalOrdering::withoutProductsThereAreNoBlocks()
{
    QFETCH(QString, daily);
    QFETCH(int, rows);

    PassengerTypesModel& model = makeModel({8}, {1}, 3);
    model.setNumberOfRows(7);
    addProducts(model, daily);
    const QByteArray written = stdoutOf([&model] { model.sortBasedOnLocalData({"PT_ADULT"}); });

    QCOMPARE(model.numberOfRows(), rows);
    QCOMPARE(model.rowCount(), rows);
    QVERIFY(PassengerTypesModelInspector(model).groupedProducts().isEmpty());
    QCOMPARE(written, QByteArray()); // no zone, so no type was left out
}

void TestLocalOrdering::removedTypesAreWrittenOncePerZone()
{
    PassengerTypesModel& model = makeModel({5, 1, 7}, {1}, 1);
    addProducts(model, "1a>1 1b>2 1c>3");
    const QByteArray written = stdoutOf([&model] { model.sortBasedOnLocalData({"PT_ADULT"}); });
    QCOMPARE(QString(written), removed({5, 7, 5, 7, 5, 7}));
    QCOMPARE(gridText(model), QString("1a | 1b | 1c"));
}

void TestLocalOrdering::loggerStaysSilentWhileTheSwitchIsOff()
{
    PassengerTypesModel& model = makeModel({5, 1}, {1}, 1);
    addProducts(model, "1a 1x!");
    const QByteArray written = stdoutOf([&model] { model.sortBasedOnLocalData({"PT_ADULT"}); });
    QCOMPARE(m_log->messages(), QStringList());
    QCOMPARE(QString(written), removed({5}));
}

void TestLocalOrdering::signalsComeInOrder()
{
    PassengerTypesModel& model = makeModel({1, 3}, {1, 3}, 2);
    model.setNumberOfRows(9);
    addProducts(model, "1a>1 3a>1 1b>2 9c>3 1x! 1y!");
    SignalLog signalLog(&model);
    model.sortBasedOnLocalData({"PT_ADULT", "PT_STUDENT_1"});

    QCOMPARE(gridText(model), QString("1a 3a | 1b (3) | 9c 1x | 1y"));
    QCOMPARE(signalLog.take(),
             QStringList({gridRowsChanged(0), gridRowsChanged(1), gridRowsChanged(2)}) +
                 tilesAppended(0, 4) + QStringList(gridRowsChanged(4)) + tilesAppended(5, 6));
}

void TestLocalOrdering::secondLayoutAppendsAgain()
{
    PassengerTypesModel& model = makeModel({1}, {1}, 1);
    addProducts(model, "1a 1x!");
    model.sortBasedOnLocalData({"PT_ADULT"});
    SignalLog signalLog(&model);
    model.sortBasedOnLocalData({"PT_ADULT"});

    QCOMPARE(gridText(model, 0), QString("1a 1x 1a 1x"));
    QCOMPARE(signalLog.take(), QStringList({gridRowsChanged(0), gridRowsChanged(1)}) +
                                   tilesAppended(2, 2) + QStringList(gridRowsChanged(2)) +
                                   tilesAppended(3, 3));
}

void TestLocalOrdering::groupedProductsKeepTheLastLayout()
{
    PassengerTypesModel& model = makeModel({1}, {1}, 1);
    const PassengerTypesModelInspector inspector(model);
    addProducts(model, "1a");
    model.sortBasedOnLocalData({"PT_ADULT"});
    addProducts(model, "1b");
    QCOMPARE(gridText(inspector.groupedProducts()), QString("1a"));
    model.sortBasedOnLocalData({"PT_ADULT"});
    QCOMPARE(gridText(inspector.groupedProducts()), QString("1a 1b"));
    model.clear(); // rows only
    QCOMPARE(gridText(inspector.groupedProducts()), QString("1a 1b"));
    model.clearData();
    QVERIFY(inspector.groupedProducts().isEmpty());
}

void TestLocalOrdering::listsChangeStepByStep()
{
    PassengerTypesModel& model = makeModel({1}, {1, 3}, 1);
    const PassengerTypesModelInspector inspector(model);
    addProducts(model, "1b#2>2 1a#1>1");
    model.sortBasedOnLocalData({"PT_ADULT"});
    model.clear();
    addProducts(model, "1c#0>0");

    // What a handler sees at each step of the next layout.
    QStringList steps;
    connect(&model, &PassengerTypesModel::numberOfRowsChanged, &model, [&](int rows) {
        steps.append(
            QString("%1 rows: %2 local types, products %3, grouped %4")
                .arg(rows)
                .arg(inspector.localTypeCodes().size())
                .arg(gridText(inspector.products()), gridText(inspector.groupedProducts())));
    });
    model.sortBasedOnLocalData({"PT_ADULT", "PT_STUDENT_1", "PT_LFS"});

    QCOMPARE(steps.size(), 4);
    QCOMPARE(steps.at(0), QString("0 rows: 0 local types, products 1a 1b 1c, grouped 1a 1b"));
    QCOMPARE(steps.at(1), QString("1 rows: 3 local types, products 1c 1a 1b, grouped "));
    QVERIFY2(steps.at(2).startsWith("2 rows: 3 local types, products 1c 1a 1b, grouped 1c"),
             qPrintable(steps.at(2)));
}

QTEST_GUILESS_MAIN(TestLocalOrdering)
#include "tst_local_ordering.moc"
