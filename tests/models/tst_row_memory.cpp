// What a row of each model costs, in a model of 10,000. The requests are counted, not the heap, so
// the figures are the same in every run.

#include "AllocationCount.h"
#include "LibraryModels.h"

#include <QtTest>

#include <cmath>
#include <cstdio>
#include <memory>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

constexpr int rows = 10000;

enum class Texts {
    Own,   ///< every text of every row is one of its own, of twelve letters
    Shared ///< all rows share one
};

/// Per row.
struct Cost
{
    double bytes;
    double blocks;
};

QVariant valueOf(const ItemField& field, int number, Texts texts, const QString& shared)
{
    if (field.initial.userType() != QMetaType::QString)
        return field.samples.last();
    if (texts == Texts::Shared)
        return shared;
    return QString::fromLatin1(QByteArray::number(number).rightJustified(12, 'x'));
}

void fill(ListModel& model, const ItemClass& itemClass, int count, Texts texts)
{
    const QString shared = QString(12, QLatin1Char('x'));
    for (int row = 0; row < count; ++row) {
        QVariantList values;
        for (const ItemField& field : itemClass.fields)
            values.append(valueOf(field, row, texts, shared));
        model.appendRow(itemClass.construct(values, nullptr));
    }
}

Cost measured(const LibraryModel& kind, Texts texts)
{
    // What is made once for the process does not belong to the rows.
    QObject owner; // of the models and their prototypes
    fill(*kind.make(&owner), kind.itemClass, 1, texts);
    ListModel& model = *kind.make(&owner);
    const AllocationCount count;
    fill(model, kind.itemClass, rows, texts);
    if (model.rowCount() != rows)
        qFatal("%s has lost rows", kind.name);
    const Cost cost{static_cast<double>(count.bytes()) / rows,
                    static_cast<double>(count.blocks()) / rows};
    for (ListModel* each : owner.findChildren<ListModel*>())
        qDeleteAll(each->takeRows(0, each->rowCount()));
    return cost;
}

} // namespace

class RowMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void aRowCostsNoMoreThanItsBudget_data();
    void aRowCostsNoMoreThanItsBudget();
};

void RowMemoryTest::aRowCostsNoMoreThanItsBudget_data()
{
    QTest::addColumn<int>("bytes32");
    QTest::addColumn<int>("bytes64");
    QTest::addColumn<int>("blocks");
    QTest::newRow("PassengerTypesModel") << 517 << 792 << 11;
    QTest::newRow("ShoppingBasketModel") << 541 << 816 << 11;
    QTest::newRow("FareProductsModel") << 375 << 626 << 8;
    QTest::newRow("ZReportModel") << 431 << 658 << 8;
    QTest::newRow("AssetsModel") << 493 << 768 << 11;
    QTest::newRow("PeripheralsModel") << 389 << 636 << 9;
}

void RowMemoryTest::aRowCostsNoMoreThanItsBudget()
{
    if (!AllocationCount::isPossible())
        QSKIP("a sanitizer counts the allocations of this build");
    QFETCH(int, bytes32);
    QFETCH(int, bytes64);
    QFETCH(int, blocks);
    const LibraryModel& kind = libraryModel(QTest::currentDataTag());
    const Cost own = measured(kind, Texts::Own);
    const Cost shared = measured(kind, Texts::Shared);
    std::printf(
        "%-20s %u bit: %6.1f bytes in %4.1f blocks a row; with shared texts %6.1f in %4.1f\n",
        kind.name, static_cast<unsigned>(sizeof(void*) * 8), own.bytes, own.blocks, shared.bytes,
        shared.blocks);
    QCOMPARE(static_cast<int>(std::ceil(own.bytes)), sizeof(void*) == 4 ? bytes32 : bytes64);
    QCOMPARE(static_cast<int>(std::round(own.blocks)), blocks);
}

QTEST_GUILESS_MAIN(RowMemoryTest)
#include "tst_row_memory.moc"
