#include "AssetFields.h"
#include "AssetsModel.h"
#include "FareProductFields.h"
#include "FareProductsModel.h"
#include "LogCapture.h"
#include "MetaObjectText.h"
#include "ModelBattery.h"
#include "PassengerTypeFields.h"
#include "PassengerTypesModel.h"
#include "PeripheralFields.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ShoppingFields.h"
#include "ZReportFields.h"
#include "ZReportModel.h"

#include <QPointer>
#include <QTest>

#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

template <typename Model>
constexpr bool
    addsNoMembers = sizeof(Model) == sizeof(ListModel) &&
                    std::is_base_of_v<ListModel, Model>&& std::is_constructible_v<Model, QObject*>;
static_assert(addsNoMembers<ShoppingBasketModel>);
static_assert(addsNoMembers<FareProductsModel>);
static_assert(addsNoMembers<ZReportModel>);
static_assert(addsNoMembers<AssetsModel>);
static_assert(addsNoMembers<PeripheralsModel>);

/// One model of the library and the rows that it is made for.
struct ModelKind
{
    const char* name;
    const QMetaObject* type;
    std::function<ListModel*(QObject* parent)> make;
    std::function<ListModel*(QObject* parent)> makeTopLevelOnly;
    ItemClass itemClass;
    const QMetaObject* itemType;
};

template <typename Model, typename Item>
ModelKind modelKind(const char* name, const ItemClass& itemClass)
{
    return {name,
            &Model::staticMetaObject,
            [](QObject* parent) { return new Model(parent); },
            [](QObject* parent) { return new battery::TopLevelOnly<Model>(parent); },
            itemClass,
            &Item::staticMetaObject};
}

const std::vector<ModelKind>& modelKinds()
{
    static const std::vector<ModelKind> kinds{
        modelKind<PassengerTypesModel, PassengerTypeItem>("selection grid",
                                                          passengerTypeItemClass()),
        modelKind<ShoppingBasketModel, ShoppingItem>("shopping basket", shoppingItemClass()),
        modelKind<FareProductsModel, FareProductItem>("fare products", fareProductItemClass()),
        modelKind<ZReportModel, ZReportItem>("Z reports", zReportItemClass()),
        modelKind<AssetsModel, AssetItem>("vehicles", assetItemClass()),
        modelKind<PeripheralsModel, PeripheralItem>("devices", peripheralItemClass()),
    };
    return kinds;
}

const ModelKind& kind()
{
    QFETCH_GLOBAL(int, model);
    return modelKinds()[static_cast<std::size_t>(model)];
}

} // namespace

/// What holds for each of the six models.
class TestEveryModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data()
    {
        QTest::addColumn<int>("model");
        for (int model = 0; model < static_cast<int>(modelKinds().size()); ++model)
            QTest::newRow(modelKinds()[static_cast<std::size_t>(model)].name) << model;
    }

    void init() { m_log = std::make_unique<LogCapture>(); }
    void cleanup() { m_log.reset(); }

    void declaresNothingButTheGridDoes()
    {
        const QMetaObject& type = *kind().type;
        QCOMPARE(type.superClass(), &ListModel::staticMetaObject);
        const bool isGrid = kind().type == &PassengerTypesModel::staticMetaObject;
        QCOMPARE(metaobject::methods(type).isEmpty(), !isGrid);
        QCOMPARE(metaobject::properties(type).isEmpty(), !isGrid);
        QCOMPARE(metaobject::enums(type).isEmpty(), !isGrid);
        QVERIFY(metaobject::hasNothingElse(type));
    }

    void thePrototypeBelongsToTheParentOfTheModel()
    {
        QObject owner;
        ListModel* model = kind().make(&owner);
        QCOMPARE(model->metaObject(), kind().type);
        QCOMPARE(model->parent(), &owner);
        const QObjectList siblings = owner.children();
        QCOMPARE(siblings.size(), 2);
        QVERIFY(siblings.contains(model));
        auto* prototype = qobject_cast<ListItem*>(siblings.first());
        QVERIFY(prototype);
        QCOMPARE(prototype->metaObject(), kind().itemType);
        QCOMPARE(model->roleNames(), prototype->roleNames());
        QCOMPARE(model->rowCount(), 0);
        QVERIFY(model->children().isEmpty());

        delete model;
        QCOMPARE(owner.children(), QObjectList{prototype});
    }

    void rowsKeepTheirParent()
    {
        QObject owner;
        QObject owners;
        std::unique_ptr<ListModel> model(kind().make(&owner));
        const QPointer<ListItem> ownRow = kind().itemClass.make(model.get());
        const QPointer<ListItem> foreignRow = kind().itemClass.make(&owners);
        const std::unique_ptr<ListItem> freeRow(kind().itemClass.make(nullptr));
        model->appendRows({ownRow, foreignRow, freeRow.get()});
        QCOMPARE(ownRow->parent(), model.get());
        QCOMPARE(foreignRow->parent(), &owners);
        QCOMPARE(freeRow->parent(), nullptr);

        model.reset();
        QVERIFY(!ownRow);
        QVERIFY(foreignRow);
        QCOMPARE(freeRow->id(), -1);
    }

    void aRemovedRowDiesInTheEventLoop()
    {
        QObject owner;
        ListModel* model = kind().make(&owner);
        const QPointer<ListItem> row = kind().itemClass.make(model);
        model->appendRow(row);
        QVERIFY(model->removeRow(0));
        QVERIFY(row);
        battery::runDeferredDeletions();
        QVERIFY(!row);
    }

    void rejectedCall_data() { battery::rejectedCallRows(); }
    void rejectedCall()
    {
        QObject owner;
        battery::runRejectedCall(*kind().makeTopLevelOnly(&owner), kind().itemClass);
    }

    void randomOperations_data() { battery::seedRows(4); }
    void randomOperations()
    {
        QObject owner;
        battery::runRandomOperations(*kind().makeTopLevelOnly(&owner), kind().itemClass, 1500);
    }

private:
    std::unique_ptr<LogCapture> m_log;
};

QTEST_GUILESS_MAIN(TestEveryModel)

#include "tst_every_model.moc"
