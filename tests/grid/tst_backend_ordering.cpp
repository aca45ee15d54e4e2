#include "GridSignals.h"
#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"
#include "Soak.h"
#include "TerminalHome.h"

#include <QtTest>

#include <limits>
#include <memory>
#include <numeric>

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

const char* const duplicates =
    "------------------- DUPLICATE POSITIONS IN FARE PRODUCTS --------------------";
const char* const notAssigned =
    "------------------- POSITION NOT ASSIGNED TO PRODUCT --------------------";
const char* const positionZero =
    "--- POSITION 0 ASSIGNED TO PRODUCT. THAT IS NOT ALLOWED. SHOULD ALWAYS START "
    "COUNTING/NUMBERING POSITION FROM 1 ---";
const char* const noObjection = "";

QVector<sProduct> productsAt(const QVector<int>& positions)
{
    QVector<sProduct> products;
    for (const int position : positions) {
        sProduct product;
        product.pos = position;
        products.append(product);
    }
    return products;
}

} // namespace

class TestBackendOrdering : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void positionsAreJudged_data();
    void positionsAreJudged();
    void duplicateIsFoundInLongList();

    void productsAreLaidOutByPosition_data();
    void productsAreLaidOutByPosition();
    void unusablePositionsFallBack_data();
    void unusablePositionsFallBack();
    void oddColumnCountIsSafe_data();
    void oddColumnCountIsSafe();
    void largestPositionIsLaidOut();
    void largestFillingOfLastRow_data();
    void largestFillingOfLastRow();
    void withoutProductsOnlyDailyOnesAreLaidOut();
    void placeholdersAreDefaultRecords();
    void fillingRereadsTheGridSize_data();
    void fillingRereadsTheGridSize();

    void dailyProductsFollowInEveryPath_data();
    void dailyProductsFollowInEveryPath();
    void dailyProductsAreOrderedByZone_data();
    void dailyProductsAreOrderedByZone();
    void positionsOfDailyProductsAreNotExamined();

    void signalsComeInOrder_data();
    void signalsComeInOrder();
    void secondLayoutAppendsAgain();
    void positionOfOneProductChoosesThisLayout_data();
    void positionOfOneProductChoosesThisLayout();

private:
    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<PassengerTypesModel> m_model;
};

void TestBackendOrdering::init()
{
    const TerminalHome home;
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
    m_model = std::make_unique<PassengerTypesModel>(m_owner.get());
    m_log->clear();
}

void TestBackendOrdering::cleanup()
{
    m_model.reset();
    m_log.reset();
    m_owner.reset();
}

// Judging the positions

void TestBackendOrdering::positionsAreJudged_data()
{
    QTest::addColumn<QVector<int>>("positions");
    QTest::addColumn<bool>("anyIsAssigned");
    QTest::addColumn<bool>("anyIsDuplicate");
    QTest::addColumn<bool>("allAreAssigned");
    QTest::addColumn<bool>("anyIsZero");

    using Positions = QVector<int>;
    QTest::newRow("no products") << Positions{} << false << false << true << false;
    QTest::newRow("one product without position")
        << Positions{-1} << false << false << false << false;
    QTest::newRow("two products without position are duplicates")
        << Positions{-1, -1} << false << true << false << false;
    QTest::newRow("one product with position") << Positions{1} << true << false << true << false;
    QTest::newRow("distinct positions") << Positions{3, 1, 2} << true << false << true << false;
    QTest::newRow("position of the last product counts")
        << Positions{-1, -1, 4} << true << true << false << false;
    QTest::newRow("product without position at the end")
        << Positions{3, 4, -1} << true << false << false << false;
    QTest::newRow("first and last are duplicates")
        << Positions{7, 1, 2, 3, 7} << true << true << true << false;
    QTest::newRow("neighbours are duplicates")
        << Positions{1, 2, 2} << true << true << true << false;
    QTest::newRow("position 0 is assigned") << Positions{0} << true << false << true << true;
    QTest::newRow("position 0 at the end") << Positions{1, 2, 0} << true << false << true << true;
    QTest::newRow("two positions 0 are duplicates")
        << Positions{0, 0} << true << true << true << true;
    QTest::newRow("position below -1 is assigned")
        << Positions{-5} << true << false << true << false;
    QTest::newRow("positions below -1 can be duplicates")
        << Positions{-5, 1, -5} << true << true << true << false;
    QTest::newRow("lowest and highest number")
        << Positions{lowest, highest} << true << false << true << false;
    QTest::newRow("lowest number twice")
        << Positions{lowest, highest, lowest} << true << true << true << false;
    QTest::newRow("everything at once")
        << Positions{0, -1, 0, -1, 5} << true << true << false << true;
}

void TestBackendOrdering::positionsAreJudged()
{
    QFETCH(QVector<int>, positions);
    QFETCH(bool, anyIsAssigned);
    QFETCH(bool, anyIsDuplicate);
    QFETCH(bool, allAreAssigned);
    QFETCH(bool, anyIsZero);

    const QVector<sProduct> products = productsAt(positions);
    m_model->setLogFareProducts(true);
    SignalLog signalLog(m_model.get());

    QCOMPARE(m_model->hasBackendAssignedSortingToProducts(products), anyIsAssigned);
    QCOMPARE(m_model->checkForPosDuplicates(products), anyIsDuplicate);
    QCOMPARE(m_model->hasBackendAssignedPosToProduct(products), allAreAssigned);
    QCOMPARE(m_model->hasBackendAssignedPosToZero(products), anyIsZero);

    QCOMPARE(gridText(products), gridText(productsAt(positions)));
    QCOMPARE(signalLog.take(), QStringList());
    QCOMPARE(m_log->messages(), QStringList());
    QCOMPARE(m_model->rowCount(), 0);
    QVERIFY(PassengerTypesModelInspector(*m_model).products().isEmpty());
}

void TestBackendOrdering::duplicateIsFoundInLongList()
{
    QVector<int> positions(50000);
    std::iota(positions.begin(), positions.end(), 1);
    QVERIFY(!m_model->checkForPosDuplicates(productsAt(positions)));
    positions.last() = positions.first();
    QVERIFY(m_model->checkForPosDuplicates(productsAt(positions)));
}

// Layout by position

void TestBackendOrdering::productsAreLaidOutByPosition_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("stored");

    QTest::newRow("holes in the numbering and the rest of the last row become placeholders")
        << "1a@2 1b@3 1c@5" << 3 << "(@1) 1a@2 1b@3 | (@4) 1c@5 (@6)" << 2 << "(@1) 1a@2 1b@3 1c@5";
    QTest::newRow("last row is filled up") << "1a@1 1b@2 1c@3 1d@4 1e@5 1f@6 1g@7" << 3
                                           << "1a@1 1b@2 1c@3 | 1d@4 1e@5 1f@6 | 1g@7 (@8) (@9)"
                                           << 3 << "1a@1 1b@2 1c@3 1d@4 1e@5 1f@6 1g@7";
    QTest::newRow("full rows need no placeholder")
        << "1a@1 1b@2 1c@3 1d@4 1e@5 1f@6" << 3 << "1a@1 1b@2 1c@3 | 1d@4 1e@5 1f@6" << 2
        << "1a@1 1b@2 1c@3 1d@4 1e@5 1f@6";
    QTest::newRow("products arrive in any order")
        << "1a@3 1b@1 1c@2" << 3 << "1b@1 1c@2 1a@3" << 1 << "1b@1 1c@2 1a@3";
    QTest::newRow("passenger type, zone and product number do not matter")
        << "8a#9>7@2 9b#5>1@1 0c#1>-3@3" << 3 << "9b@1 8a@2 0c@3" << 1 << "9b@1 8a@2 0c@3";
    QTest::newRow("one product at 1") << "1a@1" << 3 << "1a@1 (@2) (@3)" << 1 << "1a@1";
    QTest::newRow("one product in one column") << "1a@1" << 1 << "1a@1" << 1 << "1a@1";
    QTest::newRow("one product far behind")
        << "1a@7" << 3 << "(@1) (@2) (@3) | (@4) (@5) (@6) | 1a@7 (@8) (@9)" << 3 << "(@1) 1a@7";
    QTest::newRow("placeholder at 1 is stored, those of later holes are not")
        << "1a@2 1b@4" << 4 << "(@1) 1a@2 (@3) 1b@4" << 1 << "(@1) 1a@2 1b@4";
    QTest::newRow("hole of several positions")
        << "1a@1 1b@5" << 5 << "1a@1 (@2) (@3) (@4) 1b@5" << 1 << "1a@1 1b@5";
    QTest::newRow("one column has holes but no rest")
        << "1a@1 1b@3" << 1 << "1a@1 | (@2) | 1b@3" << 3 << "1a@1 1b@3";
    QTest::newRow("more columns than products")
        << "1a@1 1b@2" << 6 << "1a@1 1b@2 (@3) (@4) (@5) (@6)" << 1 << "1a@1 1b@2";
}

void TestBackendOrdering::productsAreLaidOutByPosition()
{
    QFETCH(QString, products);
    QFETCH(int, columns);
    QFETCH(QString, grid);
    QFETCH(int, rows);
    QFETCH(QString, stored);

    addProducts(*m_model, products);
    m_model->setNumberOfColumns(columns);
    m_model->sortBasedOnBackendAssignment();

    const PassengerTypesModelInspector inspector(*m_model);
    QCOMPARE(gridText(*m_model), grid);
    QCOMPARE(m_model->numberOfRows(), rows);
    QCOMPARE(m_model->numberOfColumns(), columns);
    QCOMPARE(m_model->rowCount() % columns, 0);
    QCOMPARE(gridText(inspector.products()), stored);
    QVERIFY(inspector.groupedProducts().isEmpty());
    QCOMPARE(m_log->messages(), QStringList());
}

void TestBackendOrdering::unusablePositionsFallBack_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("message");

    QTest::newRow("duplicates keep their order of arrival")
        << "1a@1 1b@1 1c@2" << 3 << "1a@1 1b@1 1c@2" << 1 << duplicates;
    QTest::newRow("duplicates at the end")
        << "1a@2 1b@1 1c@2 1d@2" << 3 << "1b@1 1a@2 1c@2 | 1d@2" << 2 << duplicates;
    QTest::newRow("rows are counted up in two columns")
        << "1a@1 1b@1 1c@2" << 2 << "1a@1 1b@1 | 1c@2" << 2 << duplicates;
    QTest::newRow("full rows are not counted up")
        << "1a@1 1b@1 1c@2 1d@3" << 2 << "1a@1 1b@1 | 1c@2 1d@3" << 2 << duplicates;
    QTest::newRow("two products without position are duplicates of each other")
        << "1a 1b@4 1c" << 3 << "1a 1c 1b@4" << 1 << duplicates;
    QTest::newRow("duplicates come before position 0")
        << "1a@0 1b@0" << 3 << "1a@0 1b@0" << 1 << duplicates;
    QTest::newRow("duplicates come before positions out of range")
        << "1a@-5 1b@-5" << 3 << "1a@-5 1b@-5" << 1 << duplicates;

    QTest::newRow("single product without position")
        << "1a 1b@3 1c@4" << 3 << "1a 1b@3 1c@4" << 1 << notAssigned;
    QTest::newRow("product without position is sorted to the front")
        << "1b@3 1c@4 1a" << 3 << "1a 1b@3 1c@4" << 1 << notAssigned;
    QTest::newRow("missing position comes before position 0")
        << "1a@0 1b" << 3 << "1b 1a@0" << 1 << notAssigned;

    QTest::newRow("position 0") << "1a@0 1b@1 1c@2" << 3 << "1a@0 1b@1 1c@2" << 1 << positionZero;
    QTest::newRow("only position 0") << "1a@0" << 3 << "1a@0" << 1 << positionZero;
    QTest::newRow("no hole is filled, nor the last row")
        << "1a@0 1b@3 1c@5 1d@9" << 3 << "1a@0 1b@3 1c@5 | 1d@9" << 2 << positionZero;
    QTest::newRow("position 0 comes before positions out of range")
        << "1a@0 1b@-5" << 3 << "1b@-5 1a@0" << 1 << positionZero;

    QTest::newRow("position -2") << "1a@1 1b@-2" << 3 << "1b@-2 1a@1" << 1 << notAssigned;
    QTest::newRow("only position -5") << "1a@-5" << 3 << "1a@-5" << 1 << notAssigned;
    QTest::newRow("lowest position")
        << "1a@1 1b@-2147483648" << 3 << "1b@-2147483648 1a@1" << 1 << notAssigned;
    QTest::newRow("highest position")
        << "1a@2147483647 1b@1" << 3 << "1b@1 1a@2147483647" << 1 << notAssigned;
    QTest::newRow("lowest and highest position")
        << "1a@2147483647 1b@-2147483648" << 3 << "1b@-2147483648 1a@2147483647" << 1
        << notAssigned;
    QTest::newRow("position past the bound") << "1a@100001" << 3 << "1a@100001" << 1 << notAssigned;
}

void TestBackendOrdering::unusablePositionsFallBack()
{
    QFETCH(QString, products);
    QFETCH(int, columns);
    QFETCH(QString, grid);
    QFETCH(int, rows);
    QFETCH(QString, message);

    addProducts(*m_model, products);
    m_model->setNumberOfColumns(columns);
    m_model->sortBasedOnBackendAssignment();

    QCOMPARE(gridText(*m_model), grid);
    QCOMPARE(m_model->numberOfRows(), rows);
    QCOMPARE(m_model->numberOfColumns(), columns);
    QCOMPARE(gridText(PassengerTypesModelInspector(*m_model).products(), columns), grid);
    QCOMPARE(m_log->messages(), QStringList(message));
}

void TestBackendOrdering::oddColumnCountIsSafe_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("rows");

    const QString numbered = "(@1) 1a@2 1b@3";
    QTest::newRow("no column counts as one") << "1a@2 1b@3" << 0 << numbered << 3;
    QTest::newRow("minus one column") << "1a@2 1b@3" << -1 << numbered << -1;
    QTest::newRow("minus two columns") << "1a@2 1b@3" << -2 << numbered << 0;
    QTest::newRow("minus five columns") << "1a@2 1b@3" << -5 << numbered << 1;
    QTest::newRow("lowest number of columns") << "1a@2 1b@3" << lowest << numbered << 1;
    QTest::newRow("highest number of columns: the row is too long to be filled")
        << "1a@2 1b@3" << highest << numbered << 1;

    const QString fallback = "1a@0 1b@1 1c@2";
    QTest::newRow("fallback without columns counts one") << "1a@0 1b@1 1c@2" << 0 << fallback << 3;
    QTest::newRow("fallback with minus one column") << "1a@0 1b@1 1c@2" << -1 << fallback << -1;
    QTest::newRow("fallback with minus two columns") << "1a@0 1b@1 1c@2" << -2 << fallback << 0;
    QTest::newRow("fallback with the lowest number of columns")
        << "1a@0 1b@1 1c@2" << lowest << fallback << 1;
    QTest::newRow("fallback with the highest number of columns")
        << "1a@0 1b@1 1c@2" << highest << fallback << 1;
}

void TestBackendOrdering::oddColumnCountIsSafe()
{
    QFETCH(QString, products);
    QFETCH(int, columns);
    QFETCH(QString, grid);
    QFETCH(int, rows);

    addProducts(*m_model, products);
    m_model->setNumberOfColumns(columns);
    m_model->sortBasedOnBackendAssignment();

    QCOMPARE(gridText(*m_model, 0), grid);
    QCOMPARE(m_model->numberOfRows(), rows);
}

void TestBackendOrdering::largestPositionIsLaidOut()
{
    if (!triesTheLargest())
        QSKIP("takes long here");
    addProducts(*m_model, "1a@100000");
    m_model->sortBasedOnBackendAssignment();

    QCOMPARE(m_log->messages(), QStringList());
    QCOMPARE(m_model->numberOfRows(), 33334);
    QCOMPARE(m_model->rowCount(), 100002);
    QCOMPARE(tileText(m_model->itemFromRow(99998)), QString("(@99999)"));
    QCOMPARE(tileText(m_model->itemFromRow(99999)), QString("1a@100000"));
    QCOMPARE(tileText(m_model->itemFromRow(100001)), QString("(@100002)"));
}

void TestBackendOrdering::largestFillingOfLastRow_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("tiles");

    QTest::newRow("a long row is filled") << 1000 << 1000;
    if (triesTheLargest())
        QTest::newRow("as many placeholders as there may be") << 100001 << 100001;
    QTest::newRow("one placeholder too many, none is made") << 100002 << 1;
}

void TestBackendOrdering::largestFillingOfLastRow()
{
    QFETCH(int, columns);
    QFETCH(int, tiles);

    addProducts(*m_model, "1a@1");
    m_model->setNumberOfColumns(columns);
    m_model->sortBasedOnBackendAssignment();

    QCOMPARE(m_model->rowCount(), tiles);
    QCOMPARE(m_model->numberOfRows(), 1);
    QCOMPARE(tileText(m_model->itemFromRow(0)), QString("1a@1"));
}

void TestBackendOrdering::withoutProductsOnlyDailyOnesAreLaidOut()
{
    SignalLog signalLog(m_model.get());
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(signalLog.take(), QStringList());

    addProducts(*m_model, "1a@1! 1b!");
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(gridText(*m_model, 0), QString("1a@1 1b"));
    QCOMPARE(m_model->numberOfRows(), 2);
    QVERIFY(PassengerTypesModelInspector(*m_model).products().isEmpty());
}

void TestBackendOrdering::placeholdersAreDefaultRecords()
{
    addProducts(*m_model, "8a@2");
    m_model->sortBasedOnBackendAssignment();

    QCOMPARE(gridText(*m_model), QString("(@1) 8a@2 (@3)"));
    const QString placeholder =
        "passengerTypeId=0;description=---NOT FOR SALE---;fareProductIcon=qrc:/icons/adult.svg;"
        "price=0;fareProductId=0;fareProductName=---DUMMY---;totalInBasket=0;isReturnFee=false;"
        "fromStopGroupId=0;toStopGroupId=0;fareProductColor=;hasExpired=true;fareDiscount=0;"
        "selected=false;isDaily=false;pos=%1";
    QCOMPARE(allRoles(*m_model).first(), placeholder.arg(1));
    QCOMPARE(allRoles(*m_model).last(), placeholder.arg(3));
    QCOMPARE(qobject_cast<PassengerTypeItem*>(m_model->itemFromRow(0))->code(), QString("0"));
    QCOMPARE(m_model->getNumberOfNonExpiredProducts(), 1);
}

void TestBackendOrdering::fillingRereadsTheGridSize_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("grid");

    QTest::newRow("columns raised meanwhile") << 5 << 2
                                              << "1a@1 1b@2 1c@3 1d@4 (@5) (@6) (@7) "
                                                 "(@8) (@9) (@10)";
    QTest::newRow("columns changed to a divisor of the count") << 2 << 2 << "1a@1 1b@2 1c@3 1d@4";
    QTest::newRow("rows raised meanwhile") << 3 << 3
                                           << "1a@1 1b@2 1c@3 1d@4 (@5) (@6) (@7) (@8) "
                                              "(@9)";
    QTest::newRow("rows lowered meanwhile") << 3 << 1 << "1a@1 1b@2 1c@3 1d@4";
    QTest::newRow("columns set to 0 meanwhile") << 0 << 2 << "1a@1 1b@2 1c@3 1d@4";
    QTest::newRow("columns set to the lowest number meanwhile")
        << lowest << 2 << "1a@1 1b@2 1c@3 1d@4";
    QTest::newRow("both set to the highest number meanwhile: too many to be filled")
        << highest << highest << "1a@1 1b@2 1c@3 1d@4";
}

void TestBackendOrdering::fillingRereadsTheGridSize()
{
    QFETCH(int, columns);
    QFETCH(int, rows);
    QFETCH(QString, grid);

    addProducts(*m_model, "1a@1 1b@2 1c@3 1d@4");
    connect(m_model.get(), &PassengerTypesModel::numberOfRowsChanged, m_model.get(), [&] {
        m_model->setNumberOfColumns(columns);
        m_model->setNumberOfRows(rows);
    });
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(gridText(*m_model, 0), grid);
    QCOMPARE(m_model->numberOfRows(), rows);
}

// Daily products

void TestBackendOrdering::dailyProductsFollowInEveryPath_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("grid");
    QTest::addColumn<int>("gridRows");
    QTest::addColumn<QString>("message");

    QTest::newRow("numbered") << "1a@1 1b@4"
                              << "1a@1 (@2) (@3) | 1b@4 (@5) (@6)" << 2 << noObjection;
    QTest::newRow("duplicates") << "1a@1 1b@1"
                                << "1a@1 1b@1" << 1 << duplicates;
    QTest::newRow("position not assigned") << "1a 1b@1"
                                           << "1a 1b@1" << 1 << notAssigned;
    QTest::newRow("position 0") << "1a@0 1b@1"
                                << "1a@0 1b@1" << 1 << positionZero;
    QTest::newRow("position out of range") << "1a@-9 1b@1"
                                           << "1a@-9 1b@1" << 1 << notAssigned;
}

void TestBackendOrdering::dailyProductsFollowInEveryPath()
{
    QFETCH(QString, products);
    QFETCH(QString, grid);
    QFETCH(int, gridRows);
    QFETCH(QString, message);

    addProducts(*m_model, "1x>3! " + products + " 1y>1! 1z>2!");
    m_model->sortBasedOnBackendAssignment();

    const PassengerTypesModelInspector inspector(*m_model);
    const QString all = gridText(*m_model, 0);
    QCOMPARE(all, QString(grid).remove("| ") + " 1y 1z 1x");
    QCOMPARE(m_model->numberOfRows(), gridRows + 3);
    QCOMPARE(gridText(inspector.dailyProducts()), QString("1y 1z 1x"));
    QCOMPARE(m_log->messages(), message.isEmpty() ? QStringList() : QStringList(message));
}

void TestBackendOrdering::dailyProductsAreOrderedByZone_data()
{
    QTest::addColumn<QString>("daily");
    QTest::addColumn<QString>("ordered");

    QTest::newRow("ascending by zone") << "1a>5! 1b>3! 1c>4!"
                                       << "1b 1c 1a";
    QTest::newRow("same zone keeps the order of arrival") << "1c>2! 1a>2! 1b>1!"
                                                          << "1b 1c 1a";
    QTest::newRow("zone 0 and negative zones") << "1a>1! 1b>0! 1c>-1!"
                                               << "1c 1b 1a";
    QTest::newRow("lowest and highest zone") << "1a>2147483647! 1b>0! 1c>-2147483648!"
                                             << "1c 1b 1a";
    QTest::newRow("position and product number do not matter") << "1a#9>2@1! 1b#1>3@2! 1c#5>1@3!"
                                                               << "1c@3 1a@1 1b@2";
}

void TestBackendOrdering::dailyProductsAreOrderedByZone()
{
    QFETCH(QString, daily);
    QFETCH(QString, ordered);

    addProducts(*m_model, "1x@1 " + daily);
    m_model->setNumberOfColumns(1);
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(gridText(*m_model, 0), "1x@1 " + ordered);
    QCOMPARE(gridText(PassengerTypesModelInspector(*m_model).dailyProducts()), ordered);
    QCOMPARE(m_model->numberOfRows(), 4);
}

void TestBackendOrdering::positionsOfDailyProductsAreNotExamined()
{
    addProducts(*m_model, "1a@1 1x@1! 1y@0! 1z! 1u! 1v@-7! 1w@2147483647!");
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(gridText(*m_model, 0), QString("1a@1 (@2) (@3) 1x@1 1y@0 1z 1u 1v@-7 1w@2147483647"));
    QCOMPARE(m_log->messages(), QStringList());
}

// Signals

void TestBackendOrdering::signalsComeInOrder_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("emitted");

    const QStringList columnsChanged{gridColumnsChanged(2)};
    QTest::newRow("numbered: columns, rows, tiles; then the same for the daily products")
        << "1a@1 1b@3 1x! 1y!" << 2
        << columnsChanged + QStringList{gridRowsChanged(2)} + tilesAppended(0, 3) +
               QStringList{gridRowsChanged(4)} + tilesAppended(4, 5);
    QTest::newRow("fallback: columns, tiles, rows; daily products still rows first")
        << "1a@1 1b@1 1c@2 1x! 1y!" << 2
        << columnsChanged + tilesAppended(0, 2) +
               QStringList{gridRowsChanged(2), gridRowsChanged(4)} + tilesAppended(3, 4);
    QTest::newRow("same number of columns is not announced")
        << "1a@1" << 3 << QStringList{gridRowsChanged(1)} + tilesAppended(0, 2);
    QTest::newRow("without daily products their step is silent")
        << "1a@0" << 2 << columnsChanged + tilesAppended(0, 0) + QStringList{gridRowsChanged(1)};
}

void TestBackendOrdering::signalsComeInOrder()
{
    QFETCH(QString, products);
    QFETCH(int, columns);
    QFETCH(QStringList, emitted);

    addProducts(*m_model, products);
    SignalLog signalLog(m_model.get());
    m_model->sortAndRegroup({}, columns);
    QCOMPARE(signalLog.take(), emitted);
}

void TestBackendOrdering::secondLayoutAppendsAgain()
{
    addProducts(*m_model, "1a@2 1x!");
    m_model->setNumberOfColumns(2);
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(gridText(*m_model), QString("(@1) 1a@2 | 1x"));
    QCOMPARE(m_model->numberOfRows(), 2);

    SignalLog signalLog(m_model.get());
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(gridText(*m_model, 0), QString("(@1) 1a@2 1x (@1) 1a@2 1x"));
    QCOMPARE(signalLog.take(), QStringList{gridRowsChanged(1)} + tilesAppended(3, 4) +
                                   QStringList{gridRowsChanged(2)} + tilesAppended(5, 5));

    // A product added later meets the placeholder that was stored for position 1.
    addProducts(*m_model, "1b@1");
    m_model->sortBasedOnBackendAssignment();
    QCOMPARE(m_log->messages(), QStringList(duplicates));
    QCOMPARE(gridText(PassengerTypesModelInspector(*m_model).products()),
             QString("(@1) 1b@1 1a@2"));
}

void TestBackendOrdering::positionOfOneProductChoosesThisLayout_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("grid");

    QTest::newRow("every product has a position") << "3a@2 1b@1"
                                                  << "1b@1 3a@2";
    QTest::newRow("one product has a position: fallback") << "3a 1b@1"
                                                          << "3a 1b@1";
    QTest::newRow("no product has a position: zone layout") << "3a 1b"
                                                            << "1b 3a";
    QTest::newRow("only a daily product has a position: zone layout") << "3a 1b 1x@1!"
                                                                      << "1b 3a 1x@1";
    QTest::newRow("position 0 is a position: fallback") << "3a@0 1b@1"
                                                        << "3a@0 1b@1";
    QTest::newRow("position below -1 is a position: fallback") << "3a@-2 1b@1"
                                                               << "3a@-2 1b@1";
}

void TestBackendOrdering::positionOfOneProductChoosesThisLayout()
{
    QFETCH(QString, products);
    QFETCH(QString, grid);

    m_model->setSupportedPassengerTypeCodes({"PT_ADULT", "PT_STUDENT_1"});
    addProducts(*m_model, products);
    m_model->sortAndRegroup({"PT_ADULT", "PT_STUDENT_1"}, 2);
    QCOMPARE(gridText(*m_model, 0), grid);
}

QTEST_GUILESS_MAIN(TestBackendOrdering)
#include "tst_backend_ordering.moc"
