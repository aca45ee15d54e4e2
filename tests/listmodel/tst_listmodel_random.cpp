#include "LibraryModels.h"
#include "ModelBattery.h"
#include "SampleItem.h"
#include "TopLevelOnly.h"

#include <QTest>

#include <memory>

/// 100,000 random operations on a list of grid tiles, and a few on the smallest rows.
class TestListModelRandom : public QObject
{
    Q_OBJECT

private slots:
    void gridTiles_data() { battery::seedRows(5); }
    void gridTiles()
    {
        const ItemClass& tiles = rowsOf("PassengerTypesModel");
        const std::unique_ptr<rivo::models::ListItem> prototype(tiles.make(nullptr));
        TopLevelOnly<rivo::models::ListModel> model(prototype.get(), nullptr);
        battery::runRandomOperations(model, tiles, 20000);
    }

    void smallestRows_data() { battery::seedRows(2); }
    void smallestRows()
    {
        SampleItem prototype;
        TopLevelOnly<rivo::models::ListModel> model(&prototype, nullptr);
        battery::runRandomOperations(model, sampleItemClass(), 2000);
    }
};

QTEST_GUILESS_MAIN(TestListModelRandom)

#include "tst_listmodel_random.moc"
