#include "AssetItem.h"
#include "AssetsModel.h"
#include "LibraryModels.h"
#include "PassengerTypesModel.h"
#include "PeripheralsModel.h"
#include "PrototypeOwner.h"
#include "QmlScreen.h"
#include "QmlTest.h"
#include "SampleItem.h"
#include "Table.h"

#include <QMetaEnum>
#include <QPointer>
#include <QTest>

using rivo::models::ListModel;

namespace
{

/// A model whose prototype can be watched.
class WatchedModel : public ListModel
{
public:
    explicit WatchedModel(QObject* parent = nullptr)
        : WatchedModel(new SampleItem(0, QVariant(), parent), parent)
    {
    }

    static QPointer<SampleItem> newestPrototype;

private:
    WatchedModel(SampleItem* prototype, QObject* parent) : ListModel(prototype, parent)
    {
        newestPrototype = prototype;
    }
};

QPointer<SampleItem> WatchedModel::newestPrototype;

} // namespace

class TestQmlModule : public QmlTest
{
    Q_OBJECT

private slots:
    void typeThatQmlMayCreate()
    {
        for (const LibraryModel& described : libraryModels()) {
            if (!described.isMadeByQml)
                continue;
            QmlScreen screen;
            const std::unique_ptr<QObject> object =
                screen.create(described.name + QString(" { objectName: 'mine' }"));
            auto* model = qobject_cast<ListModel*>(object.get());
            QVERIFY(model);
            QCOMPARE(model->metaObject()->className(), described.name);
            QCOMPARE(model->objectName(), QStringLiteral("mine"));
            QCOMPARE(model->rowCount(), 0);
            QVERIFY(!model->parent());
            QVERIFY(model->children().isEmpty());
            QCOMPARE(model->roleNames(), described.itemClass.roleNames());
            QVERIFY(dynamic_cast<PrototypeOwner<AssetsModel>*>(model) ||
                    dynamic_cast<PrototypeOwner<PeripheralsModel>*>(model));
        }
    }

    void typeThatQmlMayNotCreate_data()
    {
        const Table<QString> row("reason");
        for (const char* type : {"ListItem", "ListModel"})
            row(type, "is the common base of the types of Rivo.GuiCore");
        for (const LibraryModel& model : libraryModels()) {
            row(model.itemClass.type->className(),
                "is a row that the application creates; itemFromRow() of its model hands it out");
            if (!model.isMadeByQml)
                row(model.name, "is filled by the application, which creates it and "
                                "shows it to QML as a context property");
        }
    }

    void typeThatQmlMayNotCreate()
    {
        QFETCH(QString, reason);
        QmlScreen screen;
        const QString type = QString::fromLatin1(QTest::currentDataTag());
        QString error;
        QVERIFY(!screen.create(type + " {}", &error));
        QVERIFY2(error.contains(QStringLiteral(":3 %1 %2").arg(type, reason)), qPrintable(error));
    }

    void laterVersionsAreNotThere()
    {
        for (const char* version : {"1.1", "2.0"}) {
            QmlScreen screen;
            QString error;
            QVERIFY(!screen.createWith(QStringLiteral("import Rivo.GuiCore %1\n").arg(version),
                                       "AssetsModel {}", &error));
            QVERIFY2(error.contains("is not installed"), qPrintable(error));
        }
    }

    void enumKeysAreReadByName()
    {
        QmlScreen screen;
        const QMetaObject& type = PassengerTypesModel::staticMetaObject;
        const QMetaEnum keys = type.enumerator(type.indexOfEnumerator("PassengerType"));
        QCOMPARE(keys.keyCount(), 8);
        for (int i = 0; i < keys.keyCount(); ++i)
            QCOMPARE(screen.evaluate(QString("PassengerTypesModel.") + keys.key(i)),
                     QVariant(keys.value(i)));
        QCOMPARE(screen.evaluate("PassengerTypesModel.PT_STUDENT === undefined"), QVariant(true));
    }

    // A model made in C++ and one made in QML are of the same type to QML.

    void modelsAndRowsAreAssignableByType()
    {
        QmlScreen screen;
        QObject owner;
        AssetsModel assets(&owner);
        auto* vehicle = new AssetItem(&assets);
        assets.appendRow(vehicle);
        screen.show("cppAssets", &assets);
        const std::unique_ptr<QObject> object =
            screen.create("QtObject {\n"
                          "    property AssetsModel fromCpp: cppAssets\n"
                          "    property ListModel base: cppAssets\n"
                          "    property AssetsModel fromQml: AssetsModel {}\n"
                          "    property ListModel baseFromQml: fromQml\n"
                          "    property AssetItem vehicle: cppAssets.itemFromRow(0)\n"
                          "    property ListItem row: cppAssets.itemFromRow(0)\n"
                          "    property bool isVehicle: row instanceof AssetItem\n"
                          "    property bool isTicket: row instanceof ShoppingItem\n"
                          "}\n");
        QVERIFY(object);
        const auto held = [&object](const char* name) {
            return object->property(name).value<QObject*>();
        };
        QCOMPARE(held("fromCpp"), &assets);
        QCOMPARE(held("base"), &assets);
        QVERIFY(held("fromQml"));
        QCOMPARE(held("baseFromQml"), held("fromQml"));
        QCOMPARE(held("vehicle"), vehicle);
        QCOMPARE(held("row"), vehicle);
        QCOMPARE(object->property("isVehicle"), QVariant(true));
        QCOMPARE(object->property("isTicket"), QVariant(false));
    }

    // QtQuick has a ListModel too: the last import wins.

    void theListModelOfQtIsThatOfTheLastImport()
    {
#if QT_VERSION_MAJOR >= 6
        QSKIP("QtQuick of Qt 6 has its ListModel from another module, behind all imports");
#endif
        QmlScreen screen;
        const std::unique_ptr<QObject> qtLast = screen.createWith(
            "import Rivo.GuiCore 1.0\nimport QtQuick 2.15\n", "ListModel { dynamicRoles: true }");
        QVERIFY(qtLast);
        QString error;
        QVERIFY(!screen.createWith("import QtQuick 2.15\nimport Rivo.GuiCore 1.0\n",
                                   "ListModel { }", &error));
        QVERIFY2(error.contains("ListModel is the common base of the types of Rivo.GuiCore"),
                 qPrintable(error));
        QVERIFY(screen.createWith("import QtQuick 2.15\nimport Rivo.GuiCore 1.0 as Rivo\n",
                                  "ListModel { property Rivo.ListModel other }"));
    }

    void theModuleMayBeImportedTwice()
    {
        QmlScreen screen;
        const std::unique_ptr<QObject> object = screen.createWith(
            "import QtQml 2.15\nimport Rivo.GuiCore 1.0\nimport Rivo.GuiCore 1.0\n"
            "import Rivo.GuiCore 1.0 as Rivo\n",
            "QtObject { property var plain: AssetsModel {} property var named: Rivo.AssetsModel {}"
            " property int number: Rivo.PassengerTypesModel.PT_LFS }");
        QVERIFY(object);
        QVERIFY(qobject_cast<AssetsModel*>(object->property("plain").value<QObject*>()));
        QVERIFY(qobject_cast<AssetsModel*>(object->property("named").value<QObject*>()));
        QCOMPARE(object->property("number").toInt(), 8);
    }

    void twoEnginesMayShowOneModel()
    {
        QObject owner;
        AssetsModel model(&owner);
        QmlScreen first;
        QmlScreen second;
        first.show("model", &model);
        second.show("model", &model);
        const QString counter = "QtObject { property int rows: model.count }";
        const std::unique_ptr<QObject> here = first.create(counter);
        const std::unique_ptr<QObject> there = second.create(counter);
        QVERIFY(here && there);
        const QPointer<AssetItem> row = new AssetItem;
        model.appendRow(row);
        QCOMPARE(here->property("rows").toInt(), 1);
        QCOMPARE(there->property("rows").toInt(), 1);
        QCOMPARE(first.evaluate("model.itemFromRow(0).objectName"), QVariant(QString()));
        QCOMPARE(second.evaluate("model.itemFromRow(0).objectName"), QVariant(QString()));
        first.engine.collectGarbage();
        second.engine.collectGarbage();
        runDeferredDeletions();
        QVERIFY(row);
        model.clear();
        runDeferredDeletions();
        QVERIFY(!row);
    }

    void anEngineAfterAnother()
    {
        QObject owner;
        AssetsModel model(&owner);
        const QPointer<AssetItem> row = new AssetItem;
        model.appendRow(row);
        for (int round = 0; round < 3; ++round) {
            {
                QmlScreen screen;
                screen.show("model", &model);
                const std::unique_ptr<QObject> own = screen.create("AssetsModel {}");
                QVERIFY(own);
                QCOMPARE(screen.evaluate("model.itemFromRow(0) instanceof AssetItem"),
                         QVariant(true));
                screen.engine.collectGarbage();
            }
            runDeferredDeletions();
            QVERIFY(row);
            QCOMPARE(model.itemFromRow(0), row.data());
        }
        model.clear();
        runDeferredDeletions();
    }

    // The prototype of a model that QML made.

    void thePrototypeLivesAsLongAsItsModel()
    {
        {
            const PrototypeOwner<WatchedModel> model;
            QVERIFY(WatchedModel::newestPrototype);
            QVERIFY(!model.parent());
            QCOMPARE(model.roleNames(), WatchedModel::newestPrototype->roleNames());
        }
        QVERIFY(!WatchedModel::newestPrototype);
    }

    void thePrototypeGoesWithAModelThatItsParentDestroys()
    {
        auto parent = std::make_unique<QObject>();
        const QPointer<QObject> model = new PrototypeOwner<WatchedModel>;
        model->setParent(parent.get());
        QCOMPARE(parent->children(), QObjectList{model});
        QVERIFY(WatchedModel::newestPrototype);
        parent.reset();
        QVERIFY(!model);
        QVERIFY(!WatchedModel::newestPrototype);
    }

    void aModelMadeInQmlWorksWithoutItsEngine()
    {
        std::unique_ptr<QObject> object;
        {
            QmlScreen screen;
            object = screen.create("AssetsModel {}");
        }
        auto* model = qobject_cast<AssetsModel*>(object.get());
        QVERIFY(model);
        model->appendRow(new AssetItem(model));
        QCOMPARE(model->get(0).toMap().size(), model->roleNames().size());
    }
};

QTEST_GUILESS_MAIN(TestQmlModule)
#include "tst_qml_module.moc"
