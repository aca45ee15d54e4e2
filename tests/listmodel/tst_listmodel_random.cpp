#include "ModelBattery.h"
#include "PassengerTypeFields.h"
#include "PassengerTypesModel.h"
#include "SampleItem.h"

#include <QTest>

/// 100,000 random operations on a list of grid tiles, and a few on other lists.
class TestListModelRandom : public QObject
{
    Q_OBJECT

private slots:
    void gridTiles_data() { battery::seedRows(5); }
    void gridTiles()
    {
        PassengerTypeItem prototype;
        battery::TopLevelOnly<rivo::models::ListModel> model(&prototype, nullptr);
        battery::runRandomOperations(model, passengerTypeItemClass(), 20000);
    }

    void smallestRows_data() { battery::seedRows(2); }
    void smallestRows()
    {
        SampleItem prototype;
        battery::TopLevelOnly<rivo::models::ListModel> model(&prototype, nullptr);
        battery::runRandomOperations(model, sampleItemClass(), 2000);
    }

    void selectionGrid_data() { battery::seedRows(2); }
    void selectionGrid()
    {
        QObject owner;
        battery::TopLevelOnly<PassengerTypesModel> model(&owner);
        battery::runRandomOperations(model, passengerTypeItemClass(), 2000);
    }
};

QTEST_GUILESS_MAIN(TestListModelRandom)

#include "tst_listmodel_random.moc"
