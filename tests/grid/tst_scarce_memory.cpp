// Layouts where there is no memory for large buffers.

#include "GridText.h"
#include "Products.h"
#include "ScarceMemory.h"
#include "Table.h"
#include "TerminalHome.h"

#include <QtTest>

#include <limits>

namespace
{

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

} // namespace

class TestScarceMemory : public QObject
{
    Q_OBJECT

private slots:
    void layoutIsTheSameWithoutMemoryForABuffer_data();
    void layoutIsTheSameWithoutMemoryForABuffer();
};

void TestScarceMemory::layoutIsTheSameWithoutMemoryForABuffer_data()
{
    const Table<QString> row("kind");
    for (const char* kind : {"by position", "with equal positions", "by zone", "daily"})
        row(kind, kind);
}

void TestScarceMemory::layoutIsTheSameWithoutMemoryForABuffer()
{
    QFETCH(QString, kind);
    constexpr int count = 1001;
    const TerminalHome home;
    QStringList grids;
    for (const std::size_t limit : {unlimited, std::size_t(2000)}) {
        QObject owner;
        auto* model = new PassengerTypesModel(&owner);
        for (int i = 0; i < count; ++i) {
            const int shuffled = (i * 389 + 17) % count;
            const int type =
                shuffled % 2 ? PassengerTypesModel::PT_ADULT : PassengerTypesModel::PT_LFS;
            NewProduct product = usualProduct(type, 0);
            product.record.fareProductName = QString::number(i);
            product.record.fareProductId = shuffled / 3;
            product.record.isDaily = kind == "daily";
            if (kind == "by position")
                product.record.pos = shuffled + 1;
            else if (kind == "with equal positions")
                product.record.pos = shuffled / 7 + 1;
            else if (kind == "daily")
                product.record.toStopGroupId = shuffled / 5;
            addItem(*model, product);
        }
        {
            const ScarceMemory memory(limit);
            model->sortAndRegroup({"PT_ADULT", "PT_LFS"}, 2);
            QCOMPARE(memory.refusals() > 0, limit != unlimited);
        }
        QVERIFY(model->rowCount() >= count);
        grids.append(gridText(*model));
    }
    QCOMPARE(grids.at(1), grids.at(0));
}

QTEST_GUILESS_MAIN(TestScarceMemory)

#include "tst_scarce_memory.moc"
