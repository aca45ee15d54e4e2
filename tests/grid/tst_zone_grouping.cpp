#include "GridSignals.h"
#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <limits>
#include <memory>

namespace
{

using Codes = QVector<int>;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

/// `count` words.
QString repeated(const QString& word, int count)
{
    QStringList words;
    for (int i = 0; i < count; ++i)
        words.append(word);
    return words.join(' ');
}

} // namespace

class TestZoneGrouping : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void columnsAreChosen_data();
    void columnsAreChosen();
    void columnsAreChosenFromThePreviousZoneLayout();
    void layoutIsChosenBeforeTheColumns_data();
    void layoutIsChosenBeforeTheColumns();

    void zoneBecomesBlock_data();
    void zoneBecomesBlock();
    void slotsThatAreNoPermutationLeaveTheBlockSorted_data();
    void slotsThatAreNoPermutationLeaveTheBlockSorted();
    void oddColumnCountIsSafe_data();
    void oddColumnCountIsSafe();
    void columnsMayBeWrittenInTheMiddleOfLayout_data();
    void columnsMayBeWrittenInTheMiddleOfLayout();

    void shortBlockIsFilled_data();
    void shortBlockIsFilled();
    void typeOfFiller_data();
    void typeOfFiller();
    void blockIsNotFilledForAsManyTypesAsColumns_data();
    void blockIsNotFilledForAsManyTypesAsColumns();

    void placeholdersCarryTheirTypeOnly();
    void emptyZoneChangesNothing_data();
    void emptyZoneChangesNothing();
    void groupingOneZoneAppendsItsBlockOnly();
    void groupingFollowsProductsAddedLater();
    void numberOfRowsDoesNotOverflow();
    void signalsComeInOrder_data();
    void signalsComeInOrder();

private:
    PassengerTypesModel& makeModel(const Codes& order);
    void layOut(const QString& products, const Codes& localTypes, int columns);

    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<PassengerTypesModel> m_model;
};

void TestZoneGrouping::init()
{
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
}

void TestZoneGrouping::cleanup()
{
    m_model.reset();
    m_log.reset();
    m_owner.reset();
}

PassengerTypesModel& TestZoneGrouping::makeModel(const Codes& order)
{
    const TerminalHome home(typeTexts(order));
    m_model = std::make_unique<PassengerTypesModel>(m_owner.get());
    m_log->clear();
    return *m_model;
}

/// The way an application does it; what goes to standard output is tested elsewhere.
void TestZoneGrouping::layOut(const QString& products, const Codes& localTypes, int columns)
{
    m_model->clearData();
    addProducts(*m_model, products);
    const StdoutCapture quiet;
    m_model->sortAndRegroup(typeTexts(localTypes), columns);
}

// Columns

void TestZoneGrouping::columnsAreChosen_data()
{
    QTest::addColumn<Codes>("previousTypes");
    QTest::addColumn<bool>("isFresh");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("columns");

    QTest::newRow("fresh model takes 3") << Codes{} << true << 0 << 3;
    QTest::newRow("after a layout for no type 3") << Codes{} << false << 0 << 3;
    QTest::newRow("after a layout for one type 1") << Codes{1} << false << 0 << 1;
    QTest::newRow("after a layout for two types 2") << Codes{1, 3} << false << 0 << 2;
    QTest::newRow("after a layout for three types 3") << Codes{1, 3, 4} << false << 0 << 3;
    QTest::newRow("after a layout for four types 4") << Codes{1, 3, 4, 5} << false << 0 << 4;
    QTest::newRow("after a layout for five types 3") << Codes{1, 3, 4, 5, 7} << false << 0 << 3;
    QTest::newRow("after a layout for eight types 3")
        << Codes{1, 3, 4, 5, 7, 8, 9, 10} << false << 0 << 3;
    QTest::newRow("repeated types count") << Codes{1, 1} << false << 0 << 2;
    QTest::newRow("unknown types count") << Codes{0, 0, 0, 0} << false << 0 << 4;
    QTest::newRow("wanted number wins") << Codes{1, 3} << false << 5 << 5;
    QTest::newRow("wanted number of a fresh model") << Codes{} << true << 1 << 1;
    QTest::newRow("negative number is taken as it is") << Codes{1, 3} << false << -1 << -1;
    QTest::newRow("lowest number is taken as it is") << Codes{1, 3} << false << lowest << lowest;
    QTest::newRow("highest number is taken as it is") << Codes{1, 3} << false << highest << highest;
}

void TestZoneGrouping::columnsAreChosen()
{
    QFETCH(Codes, previousTypes);
    QFETCH(bool, isFresh);
    QFETCH(int, wanted);
    QFETCH(int, columns);

    for (const char* products : {"1a", "1a@1", ""}) {
        PassengerTypesModel& model = makeModel({});
        if (!isFresh)
            layOut("", previousTypes, 6);
        const int before = model.numberOfColumns();
        SignalLog signalLog(&model);
        // The types of the coming layout do not matter.
        layOut(products, {1, 3, 4, 5}, wanted);
        QCOMPARE(model.numberOfColumns(), columns);
        const QStringList announced =
            signalLog.take().filter(QRegularExpression("^numberOfColumnsChanged"));
        QCOMPARE(announced,
                 before == columns ? QStringList() : QStringList(gridColumnsChanged(columns)));
    }
}

void TestZoneGrouping::columnsAreChosenFromThePreviousZoneLayout()
{
    PassengerTypesModel& model = makeModel({});
    layOut("1a", {1, 3}, 0);
    QCOMPARE(model.numberOfColumns(), 3);
    layOut("1a", {1, 3, 4, 5}, 0);
    QCOMPARE(model.numberOfColumns(), 2);
    layOut("1a@1", {1}, 0); // by position: the types stay those of the zone layout before
    QCOMPARE(model.numberOfColumns(), 4);
    QCOMPARE(PassengerTypesModelInspector(model).localTypeCodes(), (Codes{1, 3, 4, 5}));
    layOut("1a", {1}, 0);
    QCOMPARE(model.numberOfColumns(), 4);
    layOut("1a", {1, 3, 4, 5, 7}, 0);
    QCOMPARE(model.numberOfColumns(), 1);
    layOut("1a", {}, 0);
    QCOMPARE(model.numberOfColumns(), 3);
}

void TestZoneGrouping::layoutIsChosenBeforeTheColumns_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("isCleared");
    QTest::addColumn<QString>("meanwhile");
    QTest::addColumn<QString>("grid");

    // By position "1b@-5" would come first; zone by zone "1a" would.
    QTest::newRow("position that comes with the columns is too late")
        << "1a#1" << false << "1b#2@-5"
        << "1a | 1b@-5";
    QTest::newRow("position that goes with the columns has done its work")
        << "1c@2" << true << "1b#2 1a#1"
        << "1b | 1a";
}

void TestZoneGrouping::layoutIsChosenBeforeTheColumns()
{
    QFETCH(QString, before);
    QFETCH(bool, isCleared);
    QFETCH(QString, meanwhile);
    QFETCH(QString, grid);

    PassengerTypesModel& model = makeModel({1});
    connect(&model, &PassengerTypesModel::numberOfColumnsChanged, &model, [&] {
        if (isCleared)
            model.clearData();
        addProducts(model, meanwhile);
    });
    layOut(before, {1}, 1);
    QCOMPARE(gridText(model), grid);
}

// Blocks

void TestZoneGrouping::zoneBecomesBlock_data()
{
    QTest::addColumn<Codes>("order");
    QTest::addColumn<Codes>("localTypes");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");

    QTest::newRow("columns are evened out with placeholders")
        << Codes{1, 3, 4} << Codes{1, 3, 4} << 3 << "1a 1b 3a"
        << "1a 3a (4) | 1b (3) (4)" << 2;
    QTest::newRow("short block is filled by a type that no column has")
        << Codes{1, 3, 8} << Codes{1, 3, 8} << 4 << "1a 8a"
        << "1a (3) 8a (7)" << 1;
    QTest::newRow("columns stand in display order")
        << Codes{8, 1, 4} << Codes{1, 4, 8} << 3 << "1a 4a 8a 1b 4b 8b"
        << "8a 1a 4a | 8b 1b 4b" << 2;
    QTest::newRow("a local type without products gets a column of placeholders")
        << Codes{5, 1} << Codes{1, 5} << 2 << "1a 1b 1c"
        << "(5) 1a | (5) 1b | (5) 1c" << 3;
    QTest::newRow("all six counted types are evened out")
        << Codes{1, 3, 4, 5, 7, 8} << Codes{1, 3, 4, 5, 7, 8} << 6 << "4a 4b"
        << "(1) (3) 4a (5) (7) (8) | (1) (3) 4b (5) (7) (8)" << 2;
    QTest::newRow("each of the six counted types can be the longest")
        << Codes{8, 7} << Codes{7, 8} << 2 << "7a 8a 8b 8c"
        << "8a 7a | 8b (7) | 8c (7)" << 3;
    QTest::newRow("each zone is evened out by itself")
        << Codes{1, 3} << Codes{1, 3} << 2 << "1a>2 3a>2 1b>1 3b>3 3c>3"
        << "1b (3) | 1a 3a | (1) 3b | (1) 3c" << 4;
    QTest::newRow("within a type products stand by product number, then by arrival")
        << Codes{1} << Codes{1} << 1 << "1d#2 1b#1 1c#1 1a#0"
        << "1a | 1b | 1c | 1d" << 4;

    QTest::newRow("second kind of student is not counted, yet placed")
        << Codes{9} << Codes{9} << 1 << "9a 9b"
        << "9a | 9b" << 0;
    QTest::newRow("second kind of military is not counted, yet placed")
        << Codes{10} << Codes{10} << 1 << "10a 10b"
        << "10a | 10b" << 0;
    QTest::newRow("unknown type is not counted, yet placed") << Codes{0} << Codes{0} << 1 << "0a 0b"
                                                             << "0a | 0b" << 0;
    QTest::newRow("types that are not counted are not evened out either")
        << Codes{1, 9, 10, 0} << Codes{0, 1, 9, 10} << 4 << "1a"
        << "1a" << 1;
    QTest::newRow("uncounted types stand in the columns of the display order")
        << Codes{9, 1} << Codes{1, 9} << 2 << "1a 1b 9a 9b"
        << "9a 1a | 9b 1b" << 2;
    QTest::newRow("rows are those of the counted types alone")
        << Codes{1, 9} << Codes{1, 9} << 2 << "1a 9a 9b 9c 9d 9e"
        << "1a 9c | 9a 9d | 9b 9e" << 1;

    QTest::newRow("type missing from the display order takes a free column")
        << Codes{4} << Codes{1, 4} << 2 << "1a 4a"
        << "4a 1a" << 1;
    QTest::newRow("without a display order types stand ascending")
        << Codes{} << Codes{1, 3, 8} << 3 << "8a 3a 1a"
        << "1a 3a 8a" << 1;
    QTest::newRow("types of the order that the layout is not made for take no column")
        << Codes{7, 8, 5, 1} << Codes{1, 8} << 2 << "1a 8a"
        << "8a 1a" << 1;
    QTest::newRow("column beyond the grid continues in the next row")
        << Codes{1, 3, 4} << Codes{1, 3, 4} << 2 << "1a"
        << "1a (3) | (4)" << 1;
    QTest::newRow("five columns are evened out, never filled") << Codes{1} << Codes{1} << 5 << "1a"
                                                               << "1a" << 1;
}

void TestZoneGrouping::zoneBecomesBlock()
{
    QFETCH(Codes, order);
    QFETCH(Codes, localTypes);
    QFETCH(int, columns);
    QFETCH(QString, products);
    QFETCH(QString, grid);
    QFETCH(int, rows);

    PassengerTypesModel& model = makeModel(order);
    layOut(products, localTypes, columns);
    QCOMPARE(gridText(model), grid);
    QCOMPARE(model.numberOfRows(), rows);
    QCOMPARE(gridText(PassengerTypesModelInspector(model).groupedProducts(), columns), grid);
    QCOMPARE(m_log->messages(), QStringList());
}

void TestZoneGrouping::slotsThatAreNoPermutationLeaveTheBlockSorted_data()
{
    QTest::addColumn<Codes>("order");
    QTest::addColumn<Codes>("localTypes");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");

    QTest::newRow("three columns and four types of two products each repeat slots")
        << Codes{5, 4, 3, 1} << Codes{1, 3, 4, 5} << 3 << "5a 5b 4a 4b 3a 3b 1a 1b"
        << "1a 1b 3a | 3b 4a 4b | 5a 5b" << 2;
    QTest::newRow("fifth type without a column")
        << Codes{} << Codes{1, 3, 4, 5, 7} << 5 << "7a 5a 4a 3a 1a"
        << "1a 3a 4a 5a 7a" << 1;
    QTest::newRow("more products than slots") << Codes{9, 1} << Codes{1, 9} << 2 << "9a 1a 1b"
                                              << "1a 1b | 9a" << 2;
    QTest::newRow("more slots than products") << Codes{3, 1} << Codes{1} << 1 << "3a 1a 1b"
                                              << "1a | 1b | 3a" << 2;
    QTest::newRow("uncounted products beside a filled block")
        << Codes{9, 1} << Codes{1, 9} << 3 << "9a 9b"
        << "(8) 9a 9b" << 0;
    QTest::newRow("fillers stand before the products of their type")
        << Codes{1} << Codes{1} << 3 << "8a 8b 1a"
        << "1a (1) (8) | (8) 8a 8b" << 2;
    QTest::newRow("no local type: nothing is evened out or filled")
        << Codes{8, 9} << Codes{} << 3 << "3a 3b 1a"
        << "1a 3a 3b" << 2;
}

void TestZoneGrouping::slotsThatAreNoPermutationLeaveTheBlockSorted()
{
    QFETCH(Codes, order);
    QFETCH(Codes, localTypes);
    QFETCH(int, columns);
    QFETCH(QString, products);
    QFETCH(QString, grid);
    QFETCH(int, rows);

    PassengerTypesModel& model = makeModel(order);
    layOut(products, localTypes, columns);
    QCOMPARE(gridText(model), grid);
    QCOMPARE(model.numberOfRows(), rows);
}

void TestZoneGrouping::oddColumnCountIsSafe_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("grid");

    // Three products of two types, evened out to four: 1a 1b 3a (3).
    QTest::newRow("no column counts as one: slots repeat") << 0 << "1a 1b 3a (3)";
    QTest::newRow("minus one column") << -1 << "1a 1b 3a (3)";
    QTest::newRow("minus four columns") << -4 << "1a 1b 3a (3)";
    QTest::newRow("lowest number of columns") << lowest << "1a 1b 3a (3)";
    QTest::newRow("highest number of columns") << highest << "1a 1b 3a (3)";
}

void TestZoneGrouping::oddColumnCountIsSafe()
{
    QFETCH(int, columns);
    QFETCH(QString, grid);

    PassengerTypesModel& model = makeModel({3, 1});
    addProducts(model, "1a 1b 3a");
    model.setNumberOfColumns(columns);
    model.sortBasedOnLocalData({"PT_ADULT", "PT_STUDENT_1"});
    QCOMPARE(gridText(model, 0), grid);
    QCOMPARE(model.numberOfRows(), 2);
    QCOMPARE(model.numberOfColumns(), columns);
}

void TestZoneGrouping::columnsMayBeWrittenInTheMiddleOfLayout_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("grid");

    // Two columns at first, in the order 3, 1.
    QTest::newRow("two as before") << 2 << "3a 1a";
    QTest::newRow("one: slots repeat") << 1 << "1a 3a";
    QTest::newRow("none counts as one") << 0 << "1a 3a";
    QTest::newRow("three: the row is filled") << 3 << "3a 1a (8)";
    QTest::newRow("four: the row is filled, the slots do not reach") << 4 << "1a 3a (8) (8)";
    QTest::newRow("five: too long to be filled") << 5 << "3a 1a";
    QTest::newRow("minus one") << -1 << "3a 1a";
    QTest::newRow("lowest number") << lowest << "3a 1a";
    QTest::newRow("highest number") << highest << "3a 1a";
}

void TestZoneGrouping::columnsMayBeWrittenInTheMiddleOfLayout()
{
    QFETCH(int, columns);
    QFETCH(QString, grid);

    PassengerTypesModel& model = makeModel({3, 1});
    connect(&model, &PassengerTypesModel::numberOfRowsChanged, &model,
            [&] { model.setNumberOfColumns(columns); });
    layOut("1a 3a", {1, 3}, 2);
    QCOMPARE(gridText(model, 0), grid);
    QCOMPARE(model.numberOfRows(), 1);
    QCOMPARE(model.numberOfColumns(), columns);
}

// Filling a short block

void TestZoneGrouping::shortBlockIsFilled_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QVector<int>>("fillers"); // for 1, 2, 3 ... products

    QTest::newRow("three columns: two rows at most") << 3 << Codes{2, 1, 0, 2, 1, 0, 0, 0, 0, 0, 0};
    QTest::newRow("four columns: two rows at most")
        << 4 << Codes{3, 2, 1, 0, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("two columns are never filled") << 2 << Codes{0, 0, 0, 0, 0};
    QTest::newRow("five columns are never filled") << 5 << Codes{0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("six columns are never filled") << 6 << Codes{0, 0, 0, 0, 0, 0, 0};
    QTest::newRow("minus three columns are never filled") << -3 << Codes{0, 0, 0, 0, 0};
    QTest::newRow("highest number of columns is never filled") << highest << Codes{0, 0, 0, 0, 0};
}

void TestZoneGrouping::shortBlockIsFilled()
{
    QFETCH(int, columns);
    QFETCH(QVector<int>, fillers);

    // The second kind of student alone is neither counted nor evened out.
    for (int count = 1; count <= fillers.size(); ++count) {
        PassengerTypesModel& model = makeModel({9});
        layOut(repeated("9a", count), {9}, columns);
        const int filled = fillers.at(count - 1);
        QCOMPARE(gridText(model, 0),
                 (repeated("(8)", filled) + " " + repeated("9a", count)).trimmed());
        QCOMPARE(model.numberOfRows(), 0);
    }
}

void TestZoneGrouping::typeOfFiller_data()
{
    QTest::addColumn<Codes>("localTypes");
    QTest::addColumn<QString>("filler");

    QTest::newRow("8 for one type") << Codes{9} << "(8)";
    QTest::newRow("8 if the last local type is another") << Codes{0, 9} << "(8)";
    QTest::newRow("8 though it is a local type, if it is not the last") << Codes{8, 9} << "(8)";
    QTest::newRow("8 for an unknown type") << Codes{0} << "(8)";
    QTest::newRow("7 if 8 is the only local type") << Codes{8} << "(7)";
    QTest::newRow("7 if 8 is the last local type") << Codes{1, 8} << "(7)";
    QTest::newRow("7 if 8 is repeated") << Codes{8, 8} << "(7)";
    QTest::newRow("7 if all others are local") << Codes{1, 3, 4, 5, 8} << "(7)";
    QTest::newRow("5 if 7 is local") << Codes{7, 8} << "(5)";
    QTest::newRow("4 if 5 and 7 are local") << Codes{5, 7, 8} << "(4)";
    QTest::newRow("3 if 4, 5 and 7 are local") << Codes{4, 5, 7, 8} << "(3)";
    QTest::newRow("1 if 3, 4, 5 and 7 are local") << Codes{3, 4, 5, 7, 8} << "(1)";
    QTest::newRow("1 though it is a local type") << Codes{1, 3, 4, 5, 7, 8} << "(1)";
    QTest::newRow("no filler without local types") << Codes{} << "";
}

void TestZoneGrouping::typeOfFiller()
{
    QFETCH(Codes, localTypes);
    QFETCH(QString, filler);

    // A product that is not counted needs no evening out: what is added fills the block.
    for (const int columns : {3, 4}) {
        if (columns == localTypes.size())
            continue;
        PassengerTypesModel& model = makeModel({});
        layOut("10a", localTypes, columns);
        const int count = filler.isEmpty() ? 0 : columns - 1;
        QCOMPARE(gridText(model), (repeated(filler, count) + " 10a").trimmed());
    }
}

void TestZoneGrouping::blockIsNotFilledForAsManyTypesAsColumns_data()
{
    QTest::addColumn<Codes>("localTypes");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("tiles");

    QTest::newRow("three types in three columns") << Codes{0, 9, 10} << 3 << 1;
    QTest::newRow("four types in four columns") << Codes{0, 0, 9, 10} << 4 << 1;
    QTest::newRow("three types in four columns are filled") << Codes{0, 9, 10} << 4 << 4;
    QTest::newRow("four types in three columns are filled") << Codes{0, 0, 9, 10} << 3 << 3;
}

void TestZoneGrouping::blockIsNotFilledForAsManyTypesAsColumns()
{
    QFETCH(Codes, localTypes);
    QFETCH(int, columns);
    QFETCH(int, tiles);

    PassengerTypesModel& model = makeModel({});
    layOut("9a", localTypes, columns);
    QCOMPARE(model.rowCount(), tiles);
}

// Details

void TestZoneGrouping::placeholdersCarryTheirTypeOnly()
{
    PassengerTypesModel& model = makeModel({1, 3});
    layOut("1a>7", {1, 3}, 3);
    QCOMPARE(gridText(model), QString("1a (3) (8)"));

    const QString placeholder =
        "passengerTypeId=0;description=---NOT FOR SALE---;fareProductIcon=qrc:/icons/%1.svg;"
        "price=0;fareProductId=0;fareProductName=---DUMMY---;totalInBasket=0;isReturnFee=false;"
        "fromStopGroupId=0;toStopGroupId=0;fareProductColor=;hasExpired=true;fareDiscount=0;"
        "selected=false;isDaily=false;pos=-1";
    QCOMPARE(allRoles(model).at(1), placeholder.arg("student"));
    QCOMPARE(allRoles(model).at(2), placeholder.arg("family_large"));
    QCOMPARE(model.getNumberOfNonExpiredProducts(), 1);
}

void TestZoneGrouping::emptyZoneChangesNothing_data()
{
    QTest::addColumn<int>("zone");

    QTest::newRow("zone that no product goes to") << 2;
    QTest::newRow("zone of a daily product") << 5;
    QTest::newRow("zone that products come from") << 0;
    QTest::newRow("lowest zone") << lowest;
    QTest::newRow("highest zone") << highest;
}

void TestZoneGrouping::emptyZoneChangesNothing()
{
    QFETCH(int, zone);

    PassengerTypesModel& model = makeModel({1});
    layOut("1a>1 1x>5!", {1}, 1);
    SignalLog signalLog(&model);
    model.sortAndGroupProductsForZone(zone);
    QCOMPARE(gridText(PassengerTypesModelInspector(model).groupedProducts()), QString("1a"));
    QCOMPARE(model.numberOfRows(), 2);
    QCOMPARE(signalLog.take(), QStringList());
    QCOMPARE(m_log->messages(), QStringList());
}

void TestZoneGrouping::groupingOneZoneAppendsItsBlockOnly()
{
    PassengerTypesModel& model = makeModel({3, 1});
    layOut("1a>1 1b>2 3b>2", {1, 3}, 2);
    const PassengerTypesModelInspector inspector(model);
    const QString stored = gridText(inspector.products());
    SignalLog signalLog(&model);

    model.sortAndGroupProductsForZone(2);

    QCOMPARE(gridText(inspector.groupedProducts(), 2), QString("(3) 1a | 3b 1b | 3b 1b"));
    QCOMPARE(gridText(inspector.products()), stored);
    QCOMPARE(signalLog.take(), QStringList(gridRowsChanged(3)));
    QCOMPARE(model.rowCount(), 4);
}

void TestZoneGrouping::groupingFollowsProductsAddedLater()
{
    PassengerTypesModel& model = makeModel({1});
    layOut("1a", {1}, 1);
    addProducts(model, "1b");
    model.sortAndGroupProductsForZone(1);
    QCOMPARE(gridText(PassengerTypesModelInspector(model).groupedProducts()), QString("1a 1a 1b"));
    QCOMPARE(model.numberOfRows(), 3);
}

void TestZoneGrouping::numberOfRowsDoesNotOverflow()
{
    PassengerTypesModel& model = makeModel({1});
    layOut("1a 1b", {1}, 1);
    model.setNumberOfRows(highest - 1);
    model.sortAndGroupProductsForZone(1);
    QCOMPARE(model.numberOfRows(), highest);
    model.setNumberOfRows(lowest);
    model.sortAndGroupProductsForZone(1);
    QCOMPARE(model.numberOfRows(), lowest + 2);
}

void TestZoneGrouping::signalsComeInOrder_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("emitted");

    QTest::newRow("columns, rows zone by zone, tiles; then the daily products")
        << "1a>1 3a>1 1b>2 1x! 1y!" << 2
        << QStringList({gridColumnsChanged(2), gridRowsChanged(1), gridRowsChanged(2)}) +
               tilesAppended(0, 3) + QStringList(gridRowsChanged(4)) + tilesAppended(4, 5);
    QTest::newRow("zone without rows of its own is not announced")
        << "9a>1 1b>2 3b>2" << 2
        << QStringList({gridColumnsChanged(2), gridRowsChanged(1)}) + tilesAppended(0, 2);
    QTest::newRow("same number of columns is not announced")
        << "1a 3a" << 3 << QStringList(gridRowsChanged(1)) + tilesAppended(0, 2);
    QTest::newRow("nothing to lay out") << "" << 3 << QStringList();
    QTest::newRow("nothing to lay out but columns to set")
        << "" << 5 << QStringList(gridColumnsChanged(5));
}

void TestZoneGrouping::signalsComeInOrder()
{
    QFETCH(QString, products);
    QFETCH(int, columns);
    QFETCH(QStringList, emitted);

    PassengerTypesModel& model = makeModel({1, 3});
    SignalLog signalLog(&model);
    layOut(products, {1, 3}, columns);
    QCOMPARE(signalLog.take(), emitted);
}

QTEST_GUILESS_MAIN(TestZoneGrouping)
#include "tst_zone_grouping.moc"
