// What the grid reads anew, as a derived model or a listener of the log sees it.

#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <limits>

namespace
{

/// A grid that shows fewer rows from a moment on.
class ShrinkingGrid : public PassengerTypesModel
{
public:
    using PassengerTypesModel::PassengerTypesModel;

    mutable int readsBefore = std::numeric_limits<int>::max(); ///< it shrinks
    int rowsAfter = 0;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return --readsBefore >= 0 ? PassengerTypesModel::rowCount(parent) : rowsAfter;
    }
};

/// What getIndeces() returns and writes.
QString indecesOf(PassengerTypesModel& model, const QVector<int>& codes)
{
    QVector<int> indices;
    const QByteArray notes = stdoutOf([&] { indices = model.getIndeces(codes); });
    QStringList texts;
    for (const int index : qAsConst(indices))
        texts.append(QString::number(index));
    return texts.join(' ') + (notes.isEmpty() ? "" : "; " + QString::fromUtf8(notes));
}

} // namespace

class TestGridRereading : public QObject
{
    Q_OBJECT

private slots:
    void tilesAreCountedAsLongAsThereAreRows();
    void tilesAreDumpedAsLongAsThereAreRows();
    void missingTypeIsLoggedBeforeItIsAppended();
    void defaultOrderIsCompleteWhenItIsLogged();

private:
    QObject m_owner; // of models and their prototypes
};

void TestGridRereading::tilesAreCountedAsLongAsThereAreRows()
{
    const TerminalHome home;
    ShrinkingGrid grid(&m_owner);
    sProduct product;
    product.hasExpired = false;
    grid.addItemsToModel({product, product, product, product});
    QCOMPARE(grid.getNumberOfNonExpiredProducts(), 4);

    grid.readsBefore = 2;
    grid.rowsAfter = 3;
    QCOMPARE(grid.getNumberOfNonExpiredProducts(), 3);
    grid.readsBefore = 1;
    grid.rowsAfter = 0;
    QCOMPARE(grid.getNumberOfNonExpiredProducts(), 1);
    grid.readsBefore = 0;
    QCOMPARE(grid.getNumberOfNonExpiredProducts(), 0);
}

void TestGridRereading::tilesAreDumpedAsLongAsThereAreRows()
{
    const TerminalHome home;
    LogCapture log;
    ShrinkingGrid grid(&m_owner);
    addProducts(grid, "1a 1b 1c 1d");
    grid.setLogFareProducts(true);
    log.observe([&] {
        if (log.messages().last().contains("FareProductName: 1b "))
            grid.readsBefore = 0;
    });
    grid.rowsAfter = 3;
    stdoutOf([&grid] { grid.sortAndRegroup({"PT_ADULT"}, 1); });
    QCOMPARE(log.messages().filter("FareProductName: ").size(), 3);
}

void TestGridRereading::missingTypeIsLoggedBeforeItIsAppended()
{
    const TerminalHome home({"PT_STUDENT_1"});
    LogCapture log;
    PassengerTypesModel grid(&m_owner);
    log.clear();
    // Entries of the order that no layout is made for are noted, unless it is as long as the list.
    QStringList seen;
    log.observe([&] {
        seen.append(log.records().size() == 1 ? indecesOf(grid, {3}) : indecesOf(grid, {1, 3}));
    });
    grid.setSupportedPassengerTypeCodes({"PT_LFS", "PT_ADULT"});
    QCOMPARE(log.messages(), (QStringList{"Append missing type code 1 from config",
                                          "Append missing type code 8 from config"}));
    QCOMPARE(seen, (QStringList{"0", "1 0"}));
    QCOMPARE(indecesOf(grid, {1, 3, 8}), "1 0 2");
}

void TestGridRereading::defaultOrderIsCompleteWhenItIsLogged()
{
    const TerminalHome home;
    LogCapture log;
    PassengerTypesModel grid(&m_owner);
    QString seen;
    log.observe([&] { seen = indecesOf(grid, {1, 8}); });
    grid.setSupportedPassengerTypeCodes({"PT_LFS", "PT_ADULT"});
    QCOMPARE(seen, "0 1");
}

QTEST_GUILESS_MAIN(TestGridRereading)

#include "tst_grid_rereading.moc"
