#include "GridText.h"
#include "GridUnderTest.h"
#include "StdoutCapture.h"
#include "Table.h"

#include <QtTest>

using Model = PassengerTypesModel;

/// What a layout reads anew after each of its signals, and what it has decided before.
class TestLayoutSteps : public QObject, private GridUnderTest
{
    Q_OBJECT

private slots:
    void initTestCase() { configure(); }
    void init() { start(); }
    void cleanup() { end(); }

    void argumentsMayChangeInTheMiddleOfLayout()
    {
        const auto model = newModel("1a>1 3b>2", false);
        QStringList codes = layoutTypes;
        int columns = 2;
        connect(model.get(), &PassengerTypesModel::numberOfColumnsChanged, model.get(), [&] {
            codes.clear();
            columns = 0;
        });
        stdoutOf([&] { model->sortAndRegroup(codes, columns); });
        QCOMPARE(gridText(*model, 2), QString("(3) 1a | 3b (1)"));

        codes = layoutTypes;
        model->clear();
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
                [&] { codes.clear(); });
        stdoutOf([&] { model->sortBasedOnLocalData(codes); });
        QVERIFY(codes.isEmpty());
        QCOMPARE(gridText(*model, 2), QString("(3) 1a | 3b (1)"));
    }

    void listOfTilesMayChangeWhileItIsAppended()
    {
        const auto model = newModel("", false);
        QVector<sProduct> products{sProduct(), sProduct(), sProduct()};
        connect(model.get(), &PassengerTypesModel::countChanged, this, [&] { products.clear(); });
        model->addItemsToModel(products);
        QCOMPARE(model->rowCount(), 3);
    }

    void otherModelMayBeLaidOutInTheMiddleOfLayout()
    {
        // Its second zone a second time, or a zone without products.
        for (const auto& [zone, otherRows] : {std::pair(2, 3), std::pair(7, 2)}) {
            const auto model = newModel("1a>1 3b>1 1c>2 3d>3 1e>7", false);
            const auto other = newModel("1x>1 3y>1 1z>2", false);
            other->setNumberOfColumns(2);
            connect(model.get(), &Model::numberOfRowsChanged, model.get(), [&, number = zone] {
                other->clear();
                other->sortBasedOnLocalData(layoutTypes);
                other->sortAndGroupProductsForZone(number);
            });
            stdoutOf([&] { model->sortAndRegroup(layoutTypes, 2); });
            QCOMPARE(gridText(*model), QString("3b 1a | (3) 1c | 3d (1) | (3) 1e"));
            QCOMPARE(gridText(*other), QString("3y 1x | (3) 1z"));
            QCOMPARE(other->numberOfRows(), otherRows);
        }
    }

    void layoutIsChosenBeforeTheColumns()
    {
        // By position "1b@-5" would come first; zone by zone "1a" does.
        const auto tooLate = newModel("1a#1", false);
        connect(tooLate.get(), &Model::numberOfColumnsChanged, tooLate.get(),
                [&] { addProducts(*tooLate, "1b#2@-5"); });
        stdoutOf([&] { tooLate->sortAndRegroup({"PT_ADULT"}, 1); });
        QCOMPARE(gridText(*tooLate), QString("1a | 1b@-5"));

        // The position that goes with the columns has decided: by zone "1a" would come first.
        const auto decided = newModel("1c@2", false);
        connect(decided.get(), &Model::numberOfColumnsChanged, decided.get(), [&] {
            decided->clearData();
            addProducts(*decided, "1b#2 1a#1");
        });
        stdoutOf([&] { decided->sortAndRegroup({"PT_ADULT"}, 1); });
        QCOMPARE(gridText(*decided), QString("1b | 1a"));
    }

    void columnsMayBeWrittenInTheMiddleOfLayout_data()
    {
        const Table<int, QString> row("columns", "grid");
        // Two columns at first, in the order 3, 1.
        row("two as before", 2, "3a 1a");
        row("one: slots repeat", 1, "1a 3a");
        row("none counts as one", 0, "1a 3a");
        row("three: the row is filled", 3, "3a 1a (8)");
        row("four: the row is filled, the slots do not reach", 4, "1a 3a (8) (8)");
        row("five: too long to be filled", 5, "3a 1a");
        row("minus one", -1, "3a 1a");
        row("lowest number", lowest, "3a 1a");
        row("highest number", highest, "3a 1a");
    }

    void columnsMayBeWrittenInTheMiddleOfLayout()
    {
        QFETCH(int, columns);
        QFETCH(QString, grid);

        const TerminalHome home({"PT_STUDENT_1", "PT_ADULT"});
        const auto model = newModel("1a 3a", false);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
                [&] { model->setNumberOfColumns(columns); });
        stdoutOf([&] { model->sortAndRegroup(layoutTypes, 2); });
        QCOMPARE(gridText(*model, 0), grid);
        QCOMPARE(model->numberOfRows(), 1);
        QCOMPARE(model->numberOfColumns(), columns);
    }

    void fillingRereadsTheGridSize_data()
    {
        const Table<int, int, QString> row("columns", "rows", "filling");
        row("columns raised meanwhile", 5, 2, " (@5) (@6) (@7) (@8) (@9) (@10)");
        row("columns changed to a divisor of the count", 2, 2, "");
        row("rows raised meanwhile", 3, 3, " (@5) (@6) (@7) (@8) (@9)");
        row("rows lowered meanwhile", 3, 1, "");
        row("columns set to 0 meanwhile", 0, 2, "");
        row("columns set to the lowest number meanwhile", lowest, 2, "");
        row("both set to the highest number meanwhile: too many to be filled", highest, highest,
            "");
    }

    void fillingRereadsTheGridSize()
    {
        QFETCH(int, columns);
        QFETCH(int, rows);
        QFETCH(QString, filling);

        const auto model = newModel("1a@1 1b@2 1c@3 1d@4", false);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(), [&] {
            model->setNumberOfColumns(columns);
            model->setNumberOfRows(rows);
        });
        model->sortBasedOnBackendAssignment();
        QCOMPARE(gridText(*model, 0), "1a@1 1b@2 1c@3 1d@4" + filling);
        QCOMPARE(model->numberOfRows(), rows);
    }

    void typesOfTheLayoutFollowTheResetOfTheRows()
    {
        const auto model = newModel("1a", false);
        stdoutOf([&] { model->sortBasedOnLocalData(layoutTypes); });
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
                [&] { model->getIndeces({}); });
        // At 0 rows the layout is made for no type yet, at 1 row for both.
        const QByteArray written = stdoutOf([&] { model->sortBasedOnLocalData(layoutTypes); });
        QCOMPARE(QString(written).remove("Remove : ").replace(" from vTypeCodesOrderCpy\n", " "),
                 QString("3 5 1 5 "));
    }

    void zoneGroupedInTheMiddleOfLayoutIsShown()
    {
        const auto model = newModel("1a>1 3b>2 1c>2", false);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(), [&](int rows) {
            if (rows == 1)
                model->sortAndGroupProductsForZone(2);
        });
        stdoutOf([&] { model->sortAndRegroup(layoutTypes, 2); });
        QCOMPARE(gridText(*model), QString("3b 1c | (3) 1a | 3b 1c"));
        QCOMPARE(model->numberOfRows(), 3);
    }
};

QTEST_GUILESS_MAIN(TestLayoutSteps)
#include "tst_layout_steps.moc"
