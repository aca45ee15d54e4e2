#include "DeferredDeletions.h"
#include "LibraryModels.h"
#include "SampleModel.h"
#include "SignalLog.h"

#include <QCoreApplication>
#include <QPointer>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTest>

#include <memory>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

const ItemClass& tiles() { return rowsOf("PassengerTypesModel"); }

/// A grid of three tiles in a model that is a context property. Nothing is registered with the
/// engine: how QML uses the models without the module Rivo.GuiCore.
class Screen
{
public:
    Screen()
    {
        for (int number : {0, 1, 2})
            model.appendRow(tiles().makeNumbered(10 * number, number, &model));
        show("model", &model);
    }

    void show(const char* name, QObject* object)
    {
        engine.rootContext()->setContextProperty(QLatin1String(name), object);
    }

    QVariant evaluate(const QString& script)
    {
        QQmlExpression expression(engine.rootContext(), nullptr, script);
        const QVariant result = expression.evaluate();
        return expression.hasError() ? QVariant(expression.error().toString()) : result;
    }

    void collectGarbage()
    {
        engine.collectGarbage();
        runDeferredDeletions();
    }

    QObject owner; // of the model and its prototype
    ListModel& model = *libraryModel("PassengerTypesModel").make(&owner);
    QQmlEngine engine;
};

// For a process in which QML has seen no item before.
const auto appendItem = QStringLiteral("append-item");

int appendFromQml(QObject& object)
{
    Screen screen;
    screen.show("object", &object);
    screen.evaluate("model.appendRowFromQml(object)");
    return screen.model.rowCount() == 4 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

class TestQmlListModel : public QObject
{
    Q_OBJECT

private slots:
    // The first use of an item pointer in this process: the engine has nothing to go by but the
    // name that the model's meta-object gives the type.
    void aRowIsAnObjectInAnEngineWithoutTheModule()
    {
        Screen screen;
        SignalLog log(&screen.model);

        QCOMPARE(screen.evaluate("String(model.itemFromRow(1)).split('(')[0]"),
                 QVariant("PassengerTypeItem"));
        QCOMPARE(screen.evaluate("typeof model.itemFromRow(1)"), QVariant("object"));
        QCOMPARE(screen.evaluate("model.itemFromRow(1) === model.itemFromRow(1)"), QVariant(true));
        QCOMPARE(screen.evaluate("model.itemFromRow(1) === model.itemFromRow(2)"), QVariant(false));
        QCOMPARE(screen.evaluate("model.itemFromRow(1).objectName = 'second'"), QVariant("second"));
        QCOMPARE(screen.model.itemFromRow(1)->objectName(), QStringLiteral("second"));
        QCOMPARE(screen.evaluate("(function() {"
                                 "    var calls = 0;"
                                 "    var row = model.itemFromRow(1);"
                                 "    row.dataChanged.connect(function() { ++calls; });"
                                 "    row.dataChanged();"
                                 "    return calls;"
                                 "})()"),
                 QVariant(1));
        QCOMPARE(log.take(), QStringList{rowChanged(1)});
    }

    void aRowIsReadByTheNamesOfItsRoles()
    {
        Screen screen;
        QCOMPARE(screen.evaluate("model.get(1).description"), QVariant("description 1"));
        QCOMPARE(screen.evaluate("model.get(1).price === model.get(0).price + 1"), QVariant(true));
        QCOMPARE(screen.evaluate("model.get(0).code === undefined"), QVariant(true)); // no role
        QCOMPARE(screen.evaluate("model.get(3) === undefined"), QVariant(true));
        QCOMPARE(screen.evaluate("model.itemFromRow(3) === null"), QVariant(true));
    }

    // An item that QML received from itemFromRow() belongs to its QObject parent, or, without one,
    // to the garbage collector.

    void aRowWithAParentSurvivesGarbageCollection()
    {
        Screen screen;
        const QPointer<ListItem> row = screen.model.itemFromRow(0);
        QCOMPARE(screen.evaluate("model.itemFromRow(0).objectName"), QVariant(QString()));
        screen.collectGarbage();
        QVERIFY(row);
        QCOMPARE(screen.evaluate("model.itemFromRow(0) !== null"), QVariant(true));
    }

    void aRowWithoutParentIsDestroyedByGarbageCollection()
    {
        SampleItem prototype;
        ListModel model(&prototype, nullptr);
        const QPointer<SampleItem> untouched = new SampleItem(1);
        const QPointer<SampleItem> received = new SampleItem(2);
        model.appendRows({untouched, received});
        Screen screen;
        screen.show("loose", &model);
        QCOMPARE(screen.evaluate("loose.get(1).id"), QVariant(2)); // a map is harmless
        screen.collectGarbage();
        QVERIFY(untouched && received);

        QQmlComponent holder(&screen.engine);
        holder.setData("import QtQml 2.0\nQtObject { property var row: loose.itemFromRow(1) }\n",
                       QUrl());
        const std::unique_ptr<QObject> held(holder.create());
        screen.collectGarbage();
        QVERIFY(held && received);
        held->setProperty("row", QVariant());
        screen.collectGarbage();
        QVERIFY(untouched);
        QVERIFY(!received); // the model's row 1 leads nowhere now
        delete model.takeRow(0);
    }

    void anItemFromQmlNeedsNoRegistrationEither()
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {appendItem});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), EXIT_SUCCESS);
    }
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString argument = QCoreApplication::arguments().value(1);
    if (argument == appendItem) {
        const std::unique_ptr<ListItem> item(tiles().make(nullptr));
        return appendFromQml(*item);
    }
    TestQmlListModel test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qml_listmodel.moc"
