#include "AssetItem.h"
#include "AssetsModel.h"
#include "QmlScreen.h"
#include "QmlTest.h"

#include <QPointer>
#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{
void othersHandler(ListItem*) {}
} // namespace

/// What is left of the plugin once Qt has unloaded it.
class TestQmlUnload : public QmlTest
{
    Q_OBJECT

private slots:
    void theHandlerComesAndGoesWithThePlugin()
    {
        QObject owner;
        AssetsModel model(&owner);
        model.appendRow(new AssetItem(&owner));
        for (int round = 0; round < 2; ++round) {
            QVERIFY(!ListModel::rowExposureHandler());
            {
                QmlScreen screen;
                screen.importModule();
                QVERIFY(ListModel::rowExposureHandler());
            }
            QVERIFY(ListModel::rowExposureHandler()); // engines come and go
            qmlClearTypeRegistrations();
            QVERIFY(!ListModel::rowExposureHandler());
            QVERIFY(model.itemFromRow(0));
        }
        model.takeRow(0);
    }

    void anotherHandlerIsLeftAlone()
    {
        {
            QmlScreen screen;
            screen.importModule();
        }
        ListModel::setRowExposureHandler(othersHandler);
        qmlClearTypeRegistrations();
        QVERIFY(ListModel::rowExposureHandler() == othersHandler);
        ListModel::setRowExposureHandler(nullptr);
    }
};

QTEST_GUILESS_MAIN(TestQmlUnload)
#include "tst_qml_unload.moc"
