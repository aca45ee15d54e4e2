#include "AssetItem.h"
#include "AssetsModel.h"
#include "QmlTest.h"
#include "ShownModel.h"
#include "Table.h"

#include <QPointer>
#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// An application's object whose method gives QML a new row without parent.
class Factory : public QObject
{
    Q_OBJECT

public:
    explicit Factory(const ItemClass& itemClass) : m_itemClass(itemClass) {}

    Q_INVOKABLE QObject* make()
    {
        newest = m_itemClass.makeNumbered(1, 1, nullptr);
        return newest;
    }

    QPointer<ListItem> newest;

private:
    const ItemClass& m_itemClass;
};

enum class ModelMadeIn { Cpp, Qml };
enum class RowParent { None, RemovedLater };

/// A model, and an engine in which it is "model".
class Stage
{
public:
    Stage(const QString& modelName, ModelMadeIn place) : described(libraryModel(modelName))
    {
        if (place == ModelMadeIn::Qml) {
            m_madeInQml = screen.create(modelName + QLatin1String(" {}"));
            model = qobject_cast<ListModel*>(m_madeInQml.get());
        } else {
            model = described.make(&m_owner);
        }
        screen.show("model", model);
    }

    ~Stage()
    {
        model->clear();
        runDeferredDeletions();
    }

    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    void collectGarbage()
    {
        screen.evaluate("gc()");
        runDeferredDeletions();
        screen.engine.collectGarbage();
        runDeferredDeletions();
    }

    /// A row whose values are numbered 1.
    ListItem* makeRow(QObject* parent) const
    {
        return described.itemClass.makeNumbered(1, 1, parent);
    }

    const LibraryModel& described;
    QmlScreen screen;
    ListModel* model = nullptr;

private:
    QObject m_owner;
    std::unique_ptr<QObject> m_madeInQml;
};

/// The protection of the module, or none: what happens to an application that does not load it.
class Protection
{
public:
    explicit Protection(bool isOn) : m_handler(ListModel::rowExposureHandler())
    {
        if (!isOn)
            ListModel::setRowExposureHandler(nullptr);
    }
    ~Protection() { ListModel::setRowExposureHandler(m_handler); }
    Protection(const Protection&) = delete;
    Protection& operator=(const Protection&) = delete;

private:
    const ListModel::RowExposureHandler m_handler;
};

} // namespace

Q_DECLARE_METATYPE(ModelMadeIn)
Q_DECLARE_METATYPE(RowParent)

class TestQmlOwnership : public QmlTest
{
    Q_OBJECT

private slots:
    // First of all tests: nothing has imported the module in this process yet.
    void theImportProtectsWhatIsHandedOutFromThenOn()
    {
        QVERIFY(!ListModel::rowExposureHandler());
        QObject owner;
        AssetsModel model(&owner);
        const QPointer<ListItem> lost = new AssetItem;
        const QPointer<ListItem> again = new AssetItem; // handed out before and after the import
        const QPointer<ListItem> before = new AssetItem;
        const QPointer<ListItem> kept = new AssetItem;
        model.appendRows({lost, again, before, kept});
        QmlScreen screen;
        screen.show("model", &model);
        const auto touch = [&screen](int row) {
            return screen.createWith(
                       "import QtQml 2.15\n",
                       QStringLiteral("QtObject { Component.onCompleted: model.itemFromRow(%1) }")
                           .arg(row)) != nullptr;
        };

        QVERIFY(touch(0));
        screen.engine.collectGarbage();
        runDeferredDeletions();
        QVERIFY(!lost); // the control: there is nothing that keeps it
        QVERIFY(again && before && kept);
        model.takeRows(0, 1);

        std::unique_ptr<QObject> holder = screen.createWith(
            "import QtQml 2.15\n", "QtObject { property var rows: [model.itemFromRow(0), "
                                   "model.itemFromRow(1)] }");
        screen.importModule();
        QVERIFY(ListModel::rowExposureHandler());
        QVERIFY(touch(0));
        QVERIFY(touch(2));
        holder.reset();
        screen.engine.collectGarbage();
        runDeferredDeletions();
        QVERIFY(again);
        QVERIFY(!before); // the import alone does not protect it
        QVERIFY(kept);
        model.takeRows(1, 1);
        QCOMPARE(model.itemFromRow(0), again.data());
        QCOMPARE(model.itemFromRow(1), kept.data());
        model.clear();
        runDeferredDeletions();
        QVERIFY(!again && !kept);
    }

    void rowHandedOut_data()
    {
        addColumns<QString, ModelMadeIn, RowParent, bool>("model", "place", "parent",
                                                          "isProtected");
        const auto row = [](const LibraryModel& model, ModelMadeIn place) {
            for (RowParent parent : {RowParent::None, RowParent::RemovedLater}) {
                for (bool isProtected : {true, false})
                    QTest::addRow("%s made in %s, %s, %s", model.name,
                                  place == ModelMadeIn::Cpp ? "C++" : "QML",
                                  parent == RowParent::None ? "row without parent"
                                                            : "row that loses its parent",
                                  isProtected ? "protected" : "without the handler")
                        << QString(model.name) << place << parent << isProtected;
            }
        };
        for (const LibraryModel& model : libraryModels()) {
            row(model, ModelMadeIn::Cpp);
            if (model.isMadeByQml)
                row(model, ModelMadeIn::Qml);
        }
    }

    void rowHandedOut()
    {
        QFETCH(QString, model);
        QFETCH(ModelMadeIn, place);
        QFETCH(RowParent, parent);
        QFETCH(bool, isProtected);
        Stage stage(model, place);
        QVERIFY(stage.model);
        QObject rowParent;
        const QPointer<ListItem> row =
            stage.makeRow(parent == RowParent::None ? nullptr : &rowParent);
        stage.model->appendRow(row);
        stage.screen.importModule();
        {
            const Protection protection(isProtected);
            QCOMPARE(stage.screen.evaluate("model.itemFromRow(0).objectName"), QVariant(QString()));
        }
        row->setParent(nullptr);
        stage.collectGarbage();
        QCOMPARE(!row.isNull(), isProtected);
        if (!isProtected) {
            stage.model->takeRows(0, 1); // the row leads nowhere
            return;
        }

        QCOMPARE(stage.model->itemFromRow(0), row.data());
        QCOMPARE(rowTexts(stage.screen.evaluate("model.get(0)").toMap()),
                 numberedTexts(stage.described.itemClass, 1, 1));
        stage.screen.evaluate("model.removeRow(0)");
        runDeferredDeletions();
        QVERIFY(!row);
    }

    void rowsInsertedByQml_data()
    {
        const Table<ModelMadeIn> row("place");
        row("model made in C++", ModelMadeIn::Cpp);
        row("model made in QML", ModelMadeIn::Qml);
    }

    void rowsInsertedByQml()
    {
        QFETCH(ModelMadeIn, place);
        for (const char* model : {"AssetsModel", "PeripheralsModel"}) {
            Stage stage(model, place);
            Factory factory(stage.described.itemClass);
            stage.screen.show("factory", &factory);

            stage.screen.evaluate("factory.make() !== null");
            const QPointer<ListItem> forgotten = factory.newest;
            stage.collectGarbage();
            QVERIFY(!forgotten); // the control: what is no row is collected

            stage.screen.evaluate("model.appendRowFromQml(factory.make())");
            const QPointer<ListItem> row = factory.newest;
            QCOMPARE(stage.model->rowCount(), 1);
            stage.collectGarbage();
            QVERIFY(row);
            QCOMPARE(stage.model->itemFromRow(0), row.data());
        }
    }

    void anItemGivenByQmlIsLostWithoutTheHandler()
    {
        Stage stage("AssetsModel", ModelMadeIn::Cpp);
        Factory factory(stage.described.itemClass);
        stage.screen.show("factory", &factory);
        stage.screen.importModule();
        const Protection none(false);
        stage.screen.evaluate("model.appendRowFromQml(factory.make())");
        const QPointer<ListItem> row = factory.newest;
        stage.collectGarbage();
        QVERIFY(!row);
        stage.model->takeRows(0, 1);
    }

    void aRowTakenOutStaysWithCpp()
    {
        Stage stage("AssetsModel", ModelMadeIn::Qml);
        const QPointer<ListItem> row = stage.makeRow(nullptr);
        stage.model->appendRow(row);
        stage.screen.evaluate("model.itemFromRow(0).objectName");
        const std::unique_ptr<ListItem> taken(stage.model->takeRow(0));
        stage.collectGarbage();
        QVERIFY(row);
        stage.model->insertRow(0, taken.get());
        stage.collectGarbage();
        QVERIFY(row);
        stage.model->takeRow(0);
    }

    // Against the contract, and harmless as long as the row is not used.
    void aRowThatIsBeingDestroyedIsHandedOut()
    {
        QObject owner;
        AssetsModel model(&owner);
        auto* row = new AssetItem;
        model.appendRow(row);
        ListItem* found = nullptr;
        connect(row, &QObject::destroyed, this, [&] { found = model.itemFromRow(0); });
        QVERIFY(ListModel::rowExposureHandler());
        delete row;
        QVERIFY(found);
        model.takeRows(0, 1);
    }
};

QTEST_GUILESS_MAIN(TestQmlOwnership)
#include "tst_qml_ownership.moc"
