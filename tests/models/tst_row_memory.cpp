// What a row of each model costs, in a model of 10,000. The requests are counted, not the heap, so
// the figures are the same in every run.

#include "AllocationCount.h"
#include "LibraryModels.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstdio>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

constexpr int rows = 10000;
constexpr bool is32Bit = sizeof(void*) == 4;

// Beside the object itself: what Qt keeps of it and of its connection, and its place in the model.
constexpr std::size_t bytesOfAnyRow = is32Bit ? 211 : 390;
constexpr int blocksOfAnyRow = 5;

// A text of twelve letters, which is a block of its own.
constexpr std::size_t bytesOfAText = (is32Bit ? 16 : 24) + 13 * sizeof(QChar);

QString textNumbered(int number)
{
    return QString::fromLatin1(QByteArray::number(number).rightJustified(12, 'x'));
}

bool isText(const ItemField& field)
{
    return field.isArgument && field.initial.userType() == QMetaType::QString;
}

/// Every text of every row is one of its own.
void fill(ListModel& model, const ItemClass& itemClass, int count)
{
    QVariantList values = itemClass.initialValues();
    for (int row = 0; row < count; ++row) {
        for (const ItemField& field : itemClass.fields) {
            if (isText(field))
                values[field.number] = textNumbered(row);
        }
        model.appendRow(itemClass.construct(values, nullptr));
    }
}

} // namespace

class RowMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void aRowCostsItsObjectItsTextsAndTheSameForAll_data() { everyModel(); }
    void aRowCostsItsObjectItsTextsAndTheSameForAll();
};

void RowMemoryTest::aRowCostsItsObjectItsTextsAndTheSameForAll()
{
    if (!AllocationCount::isPossible())
        QSKIP("a sanitizer counts the allocations of this build");
    QFETCH(QString, model);
    const ItemClass& itemClass = rowsOf(model);
    // What is made once for the process does not belong to the rows.
    QObject owner; // of the models and their prototypes
    fill(*libraryModel(model).make(&owner), itemClass, 1);
    ListModel& filled = *libraryModel(model).make(&owner);
    const AllocationCount count;
    fill(filled, itemClass, rows);
    const double bytes = static_cast<double>(count.bytes()) / rows;
    const double blocks = static_cast<double>(count.blocks()) / rows;
    QCOMPARE(filled.rowCount(), rows);
    for (ListModel* each : owner.findChildren<ListModel*>())
        qDeleteAll(each->takeRows(0, each->rowCount()));

    std::printf("%-20s %u bit: %6.1f bytes in %4.1f blocks a row\n", qPrintable(model),
                static_cast<unsigned>(sizeof(void*) * 8), bytes, blocks);
    const auto texts = std::count_if(itemClass.fields.cbegin(), itemClass.fields.cend(), isText);
    QCOMPARE(static_cast<std::size_t>(std::ceil(bytes)),
             itemClass.size + static_cast<std::size_t>(texts) * bytesOfAText + bytesOfAnyRow);
    QCOMPARE(static_cast<int>(std::round(blocks)), static_cast<int>(texts) + blocksOfAnyRow);
}

QTEST_GUILESS_MAIN(RowMemoryTest)
#include "tst_row_memory.moc"
