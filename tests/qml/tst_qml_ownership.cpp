#include "ModelKinds.h"
#include "QmlScreen.h"
#include "QmlTest.h"

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
    explicit Factory(const ModelKind& kind) : m_kind(kind) {}

    Q_INVOKABLE QObject* make()
    {
        newest = m_kind.makeItem(1, 1, nullptr);
        return newest;
    }

    QPointer<ListItem> newest;

private:
    const ModelKind& m_kind;
};

enum class ModelMadeIn { Cpp, Qml };
enum class Collector { Script, Engine };
enum class Inserted { BeforeTheImport, AfterTheImport };
enum class RowParent { None, RemovedLater };

/// A model, and an engine in which it is "model".
class Stage
{
public:
    Stage(const ModelKind& modelKind, ModelMadeIn place) : kind(modelKind)
    {
        if (place == ModelMadeIn::Qml) {
            m_madeInQml = screen.create(QLatin1String(kind.name) + QLatin1String(" {}"));
            model = qobject_cast<ListModel*>(m_madeInQml.get());
        } else {
            model = kind.makeModel(&m_owner);
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

    void collect(Collector collector)
    {
        if (collector == Collector::Script)
            screen.evaluate("gc()");
        else
            screen.engine.collectGarbage();
        runDeferredDeletions();
    }

    void collectInEveryWay()
    {
        collect(Collector::Script);
        collect(Collector::Engine);
    }

    const ModelKind& kind;
    QmlScreen screen;
    ListModel* model = nullptr;

private:
    QObject m_owner;
    std::unique_ptr<QObject> m_madeInQml;
};

/// No protection while this lives: what happens to an application that does not load the module.
class WithoutHandler
{
public:
    WithoutHandler() : m_handler(ListModel::rowExposureHandler())
    {
        ListModel::setRowExposureHandler(nullptr);
    }
    ~WithoutHandler() { ListModel::setRowExposureHandler(m_handler); }
    WithoutHandler(const WithoutHandler&) = delete;
    WithoutHandler& operator=(const WithoutHandler&) = delete;

private:
    const ListModel::RowExposureHandler m_handler;
};

QVector<ListItem*> seen;
void noteRow(ListItem* row) { seen.append(row); }

} // namespace

Q_DECLARE_METATYPE(ModelMadeIn)
Q_DECLARE_METATYPE(Collector)
Q_DECLARE_METATYPE(Inserted)
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
        QTest::addColumn<int>("kind");
        QTest::addColumn<ModelMadeIn>("place");
        QTest::addColumn<RowParent>("parent");
        QTest::addColumn<Collector>("collector");
        for (int kind = 0; kind < int(modelKinds().size()); ++kind) {
            const ModelKind& modelKind = modelKinds()[std::size_t(kind)];
            for (ModelMadeIn place : {ModelMadeIn::Cpp, ModelMadeIn::Qml}) {
                if (place == ModelMadeIn::Qml && !modelKind.creatable)
                    continue;
                for (RowParent parent : {RowParent::None, RowParent::RemovedLater}) {
                    for (Collector collector : {Collector::Script, Collector::Engine})
                        QTest::addRow("%s made in %s, %s, collected by %s", modelKind.name,
                                      place == ModelMadeIn::Cpp ? "C++" : "QML",
                                      parent == RowParent::None ? "row without parent"
                                                                : "row that loses its parent",
                                      collector == Collector::Script ? "gc()" : "the engine")
                            << kind << place << parent << collector;
                }
            }
        }
    }

    void rowHandedOut()
    {
        QFETCH(int, kind);
        QFETCH(ModelMadeIn, place);
        QFETCH(RowParent, parent);
        QFETCH(Collector, collector);
        Stage stage(modelKinds().at(std::size_t(kind)), place);
        QVERIFY(stage.model);
        QObject rowParent;
        const QPointer<ListItem> row =
            stage.kind.makeItem(1, 1, parent == RowParent::None ? nullptr : &rowParent);
        stage.model->appendRow(row);
        QCOMPARE(stage.screen.evaluate("model.itemFromRow(0).objectName"), QVariant(QString()));
        row->setParent(nullptr);

        stage.collect(collector);
        QVERIFY(row);
        QCOMPARE(stage.model->itemFromRow(0), row.data());
        QCOMPARE(stage.screen.evaluate("model.itemFromRow(0) !== null"), QVariant(true));
        QCOMPARE(modelkinds::rowTexts(stage.screen.evaluate("model.get(0)").toMap()),
                 modelkinds::rowTexts(stage.kind.values(1, 1)));

        stage.screen.evaluate("model.removeRow(0)");
        runDeferredDeletions();
        QVERIFY(!row);
    }

    void rowHandedOutWithoutTheHandler_data() { rowHandedOut_data(); }
    void rowHandedOutWithoutTheHandler()
    {
        QFETCH(int, kind);
        QFETCH(ModelMadeIn, place);
        QFETCH(RowParent, parent);
        QFETCH(Collector, collector);
        Stage stage(modelKinds().at(std::size_t(kind)), place);
        QObject rowParent;
        const QPointer<ListItem> row =
            stage.kind.makeItem(1, 1, parent == RowParent::None ? nullptr : &rowParent);
        stage.model->appendRow(row);
        stage.screen.importModule();
        const WithoutHandler unprotected;
        QCOMPARE(stage.screen.evaluate("model.itemFromRow(0).objectName"), QVariant(QString()));
        row->setParent(nullptr);

        stage.collect(collector);
        QVERIFY(!row);
        stage.model->takeRows(0, 1); // the row leads nowhere
    }

    void rowsInsertedByQml_data()
    {
        QTest::addColumn<ModelMadeIn>("place");
        QTest::newRow("model made in C++") << ModelMadeIn::Cpp;
        QTest::newRow("model made in QML") << ModelMadeIn::Qml;
    }

    void rowsInsertedByQml()
    {
        QFETCH(ModelMadeIn, place);
        for (const char* kind : {"AssetsModel", "PeripheralsModel"}) {
            Stage stage(modelKindNamed(kind), place);
            Factory factory(stage.kind);
            stage.screen.show("factory", &factory);

            stage.screen.evaluate("factory.make() !== null");
            const QPointer<ListItem> forgotten = factory.newest;
            stage.collectInEveryWay();
            QVERIFY(!forgotten); // the control: what is no row is collected

            stage.screen.evaluate("model.appendRowFromQml(factory.make())");
            const QPointer<ListItem> row = factory.newest;
            QCOMPARE(stage.model->rowCount(), 1);
            stage.collectInEveryWay();
            QVERIFY(row);
            QCOMPARE(stage.model->itemFromRow(0), row.data());
        }
    }

    void anItemGivenByQmlIsLostWithoutTheHandler()
    {
        Stage stage(modelKindNamed("AssetsModel"), ModelMadeIn::Cpp);
        Factory factory(stage.kind);
        stage.screen.show("factory", &factory);
        stage.screen.importModule();
        const WithoutHandler unprotected;
        stage.screen.evaluate("model.appendRowFromQml(factory.make())");
        const QPointer<ListItem> row = factory.newest;
        stage.collectInEveryWay();
        QVERIFY(!row);
        stage.model->takeRows(0, 1);
    }

    void qmlCannotDestroyARow()
    {
        Stage stage(modelKindNamed("AssetsModel"), ModelMadeIn::Cpp);
        const QPointer<ListItem> row = stage.kind.makeItem(1, 1, nullptr);
        stage.model->appendRow(row);
        QCOMPARE(stage.screen.evaluate("(function() {"
                                       " try { model.itemFromRow(0).destroy(); return 'done' }"
                                       " catch (error) { return error.message } })()"),
                 QVariant("Invalid attempt to destroy() an indestructible object"));
        runDeferredDeletions();
        QVERIFY(row);
    }

    void aRowTakenOutStaysWithCpp()
    {
        Stage stage(modelKindNamed("AssetsModel"), ModelMadeIn::Qml);
        const QPointer<ListItem> row = stage.kind.makeItem(1, 1, nullptr);
        stage.model->appendRow(row);
        stage.screen.evaluate("model.itemFromRow(0).objectName");
        const std::unique_ptr<ListItem> taken(stage.model->takeRow(0));
        stage.collectInEveryWay();
        QVERIFY(row);
        stage.model->insertRow(0, taken.get());
        stage.collectInEveryWay();
        QVERIFY(row);
        stage.model->takeRow(0);
    }

    void rowsOutliveTheEngine()
    {
        QObject owner;
        AssetsModel model(&owner);
        const QPointer<ListItem> row = new AssetItem;
        model.appendRow(row);
        {
            QmlScreen screen;
            screen.show("model", &model);
            screen.evaluate("model.itemFromRow(0).objectName");
        }
        runDeferredDeletions();
        QVERIFY(row);
        model.clear();
        runDeferredDeletions();
    }

    // The handler itself.

    void theHandlerSeesEachRowThatIsHandedOut()
    {
        QObject owner;
        AssetsModel model(&owner);
        auto* first = new AssetItem(&owner);
        auto* second = new AssetItem(&owner);
        const auto handler = ListModel::rowExposureHandler();
        ListModel::setRowExposureHandler(noteRow);
        seen.clear();

        model.appendRow(first);
        model.data(model.index(0, 0), AssetItem::IdRole);
        model.get(0);
        model.get(model.index(0, 0));
        model.findById(-1);
        model.rowIndexFromId(-1);
        first->triggerItemUpdate();
        model.itemFromRow(-1);
        model.itemFromRow(1);
        model.appendRowFromQml(nullptr);
        const QVector<ListItem*> seenByOthers = seen;
        model.itemFromRow(0);
        model.appendRowFromQml(second);
        model.itemFromRow(1);
        ListModel::setRowExposureHandler(handler);

        QCOMPARE(seenByOthers, QVector<ListItem*>());
        QCOMPARE(seen, (QVector<ListItem*>{first, second, second}));
        model.takeRows(0, 2);
    }

    // Against the contract, and harmless as long as nobody uses the row.
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
