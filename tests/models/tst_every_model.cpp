#include "LibraryModels.h"
#include "LogCapture.h"
#include "MetaObjectText.h"
#include "ModelBattery.h"
#include "PassengerTypesModel.h"

#include <QPointer>
#include <QTest>

#include <memory>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

const LibraryModel& described()
{
    QFETCH_GLOBAL(QString, model);
    return libraryModel(model);
}

} // namespace

/// What holds for each of the six models.
class TestEveryModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { everyModel(); }

    void init() { m_log = std::make_unique<LogCapture>(); }
    void cleanup() { m_log.reset(); }

    void declaresNothingButTheGridDoes()
    {
        const QMetaObject& type = *described().type;
        QCOMPARE(type.superClass(), &ListModel::staticMetaObject);
        const bool isGrid = &type == &PassengerTypesModel::staticMetaObject;
        QCOMPARE(metaobject::methods(type).isEmpty(), !isGrid);
        QCOMPARE(metaobject::properties(type).isEmpty(), !isGrid);
        QCOMPARE(metaobject::enums(type).isEmpty(), !isGrid);
        QVERIFY(metaobject::hasNothingElse(type));
        QCOMPARE(described().addedSize == 0, !isGrid);
    }

    void thePrototypeBelongsToTheParentOfTheModel()
    {
        QObject owner;
        ListModel* model = described().make(&owner);
        QCOMPARE(model->metaObject(), described().type);
        QCOMPARE(model->parent(), &owner);
        const QObjectList siblings = owner.children();
        QCOMPARE(siblings.size(), 2);
        QVERIFY(siblings.contains(model));
        auto* prototype = qobject_cast<ListItem*>(siblings.first());
        QVERIFY(prototype);
        QCOMPARE(prototype->metaObject(), described().itemClass.type);
        QCOMPARE(model->roleNames(), described().itemClass.roleNames());
        QCOMPARE(model->rowCount(), 0);
        QVERIFY(model->children().isEmpty());

        delete model;
        QCOMPARE(owner.children(), QObjectList{prototype});
    }

    void rowsKeepTheirParent()
    {
        QObject owner;
        QObject owners;
        std::unique_ptr<ListModel> model(described().make(&owner));
        const QPointer<ListItem> ownRow = described().itemClass.make(model.get());
        const QPointer<ListItem> foreignRow = described().itemClass.make(&owners);
        const std::unique_ptr<ListItem> freeRow(described().itemClass.make(nullptr));
        model->appendRows({ownRow, foreignRow, freeRow.get()});
        QCOMPARE(ownRow->parent(), model.get());
        QCOMPARE(foreignRow->parent(), &owners);
        QCOMPARE(freeRow->parent(), nullptr);

        model.reset();
        QVERIFY(!ownRow);
        QVERIFY(foreignRow);
        QCOMPARE(freeRow->id(), -1);
    }

    void rejectedCall_data() { battery::rejectedCallRows(); }
    void rejectedCall()
    {
        QObject owner;
        battery::runRejectedCall(*described().makeTopLevelOnly(&owner), described().itemClass);
    }

    void randomOperations_data() { battery::seedRows(4); }
    void randomOperations()
    {
        QObject owner;
        battery::runRandomOperations(*described().makeTopLevelOnly(&owner), described().itemClass,
                                     1500);
    }

private:
    std::unique_ptr<LogCapture> m_log;
};

QTEST_GUILESS_MAIN(TestEveryModel)

#include "tst_every_model.moc"
