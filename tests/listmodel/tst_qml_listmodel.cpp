#include "ListModel.h"
#include "ModelBattery.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "SampleItem.h"
#include "SignalLog.h"

#include <QCoreApplication>
#include <QMetaEnum>
#include <QPointer>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTest>

#include <memory>

#include <sys/resource.h>

using rivo::models::ListModel;

namespace
{

/// A grid as QML gets it: three tiles in a model that is a context property. Nothing is registered
/// with the engine.
class Screen
{
public:
    Screen()
    {
        sProduct product;
        product.hasExpired = false;
        for (int id : {10, 20, 30}) {
            product.passengerTypeId = id;
            product.description = QStringLiteral("Type %1").arg(id);
            product.price = id / 10.0;
            product.pos = id / 10;
            model.addItemsToModel({product});
        }
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
        battery::runDeferredDeletions();
    }

    QObject owner; // frees the model's prototype
    PassengerTypesModel model{&owner};
    QQmlEngine engine;
};

// Child processes, since an assertion ends the process.
const auto appendItem = QStringLiteral("append-item");
const auto appendForeignObject = QStringLiteral("append-foreign-object");

int appendFromQml(QObject& object)
{
    const rlimit noCoreFile{0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);
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
    void aRowIsAnObjectInAnEngineThatKnowsNothingElse()
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

    void noRowIsNull()
    {
        Screen screen;
        for (const char* row : {"-1", "3", "2147483647", "-2147483648"})
            QCOMPARE(screen.evaluate(QStringLiteral("model.itemFromRow(%1) === null").arg(row)),
                     QVariant(true));
    }

    void countIsBound()
    {
        Screen screen;
        QQmlComponent component(&screen.engine);
        component.setData("import QtQml 2.0\n"
                          "QtObject {\n"
                          "    property int rows: model.count\n"
                          "    property int announced: -1\n"
                          "    Component.onCompleted:\n"
                          "        model.countChanged.connect(function(count) {\n"
                          "            announced = count })\n"
                          "}\n",
                          QUrl());
        const std::unique_ptr<QObject> object(component.create());
        QVERIFY2(object, qPrintable(component.errorString()));
        QCOMPARE(object->property("rows").toInt(), 3);
        QCOMPARE(object->property("announced").toInt(), -1);

        screen.model.addItemsToModel({sProduct(), sProduct()});
        QCOMPARE(object->property("rows").toInt(), 5);
        QCOMPARE(object->property("announced").toInt(), 5);
        screen.model.takeRows(0, 2);
        QCOMPARE(object->property("rows").toInt(), 3);
        screen.model.clear();
        QCOMPARE(object->property("rows").toInt(), 0);
        QCOMPARE(object->property("announced").toInt(), 0);
    }

    void expression_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QVariant>("result");
        const auto row = [](const char* name, const char* script, const QVariant& result) {
            QTest::newRow(name) << QString::fromLatin1(script) << result;
        };
        row("a role of a row by its name", "model.get(1).description", "Type 20");
        row("a number of a row", "model.get(1).price + 1", 3.0);
        row("a flag of a row", "model.get(0).selected === false", true);
        row("the icon's role name", "model.get(0).fareProductIcon", "qrc:/icons/adult.svg");
        row("a field without a role", "model.get(0).code === undefined", true);
        row("all roles of a row", "Object.keys(model.get(0)).length", 16);
        row("the row after the last", "model.get(3) === undefined", true);
        row("a negative row", "model.get(-1) === undefined", true);
        row("a row by its index", "model.get(model.index(2, 0)).pos", 3);
        row("a row by an invalid index", "model.get(model.index(7, 0)) === undefined", true);
        row("the map of a row is a copy",
            "(function() { var r = model.get(0); r.price = 9; return model.get(0).price; })()",
            1.0);
        row("the count", "model.count", 3);
        row("the number of rows", "model.rowCount()", 3);
        row("the number of rows below a row", "model.rowCount(model.index(0, 0))", 3);
        row("the count cannot be written",
            "(function() { try { model.count = 7 } catch (e) {}"
            "return model.count; })()",
            3);
        row("the row of an id", "model.rowIndexFromId(30)", 2);
        row("the row of an unknown id", "model.rowIndexFromId(31)", -1);
        row("the first row is removed", "[model.removeRow(0), model.get(0).pos].join()", "true,2");
        row("a row is removed whatever parent is given",
            "[model.removeRow(1, model.index(0, 0)), model.get(1).pos].join()", "true,3");
        row("the row after the last is not removed", "[model.removeRow(3), model.count].join()",
            "false,3");
        row("a negative row is not removed", "[model.removeRow(-1), model.count].join()",
            "false,3");
        row("clear leaves no rows", "[model.clear(), model.count].join()", ",0");
        row("no object is not appended", "[model.appendRowFromQml(null), model.count].join()",
            ",3");
        row("C++ alone appends, takes, sorts and counts by role",
            "[model.appendRow, model.appendRows, model.insertRow, model.removeRows, model.takeRow,"
            " model.takeRows, model.sort, model.sortByRole, model.sortRangeByRole, model.findById,"
            " model.indexFromItem, model.countByRole, model.onHandleItemChange"
            "].every(function(f) { return f === undefined; })",
            true);
    }

    void expression()
    {
        QFETCH(QString, script);
        QFETCH(QVariant, result);
        Screen screen;
        QCOMPARE(screen.evaluate(script).toString(), result.toString());
    }

    void anItemIsAppended()
    {
        Screen screen;
        auto* item = new PassengerTypeItem(&screen.model);
        item->setId(40);
        screen.show("item", item);
        SignalLog log(&screen.model);
        screen.evaluate("model.appendRowFromQml(item)");
        QCOMPARE(log.take(), announcedInsertion(3, 3, 4));
        QCOMPARE(screen.model.itemFromRow(3), item);
        QCOMPARE(screen.evaluate("model.rowIndexFromId(40)"), QVariant(3));
        QCOMPARE(screen.evaluate("model.itemFromRow(3) === item"), QVariant(true));
    }

    // An item that QML received from itemFromRow() belongs to its QObject parent, or, without one,
    // to the garbage collector.

    void aRowWithAParentSurvivesGarbageCollection()
    {
        Screen screen;
        const QPointer<rivo::models::ListItem> row = screen.model.itemFromRow(0);
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
        screen.collectGarbage();
        QVERIFY(untouched && received);

        QCOMPARE(screen.evaluate("loose.get(1).id"), QVariant(2)); // a map is harmless
        screen.collectGarbage();
        QVERIFY(untouched && received);

        QCOMPARE(screen.evaluate("loose.itemFromRow(1).objectName"), QVariant(QString()));
        screen.collectGarbage();
        QVERIFY(untouched);
        QVERIFY(!received); // the model's row 1 leads nowhere now
        delete model.takeRow(0);
    }

    void aRowWithoutParentSurvivesWhileQmlHoldsIt()
    {
        SampleItem prototype;
        ListModel model(&prototype, nullptr);
        const QPointer<SampleItem> row = new SampleItem(1);
        model.appendRow(row);
        Screen screen;
        screen.show("loose", &model);
        QQmlComponent component(&screen.engine);
        component.setData("import QtQml 2.0\n"
                          "QtObject { property var row: loose.itemFromRow(0) }\n",
                          QUrl());
        std::unique_ptr<QObject> holder(component.create());
        QVERIFY2(holder, qPrintable(component.errorString()));
        screen.collectGarbage();
        QVERIFY(row);

        model.takeRow(0);
        holder.reset();
        screen.collectGarbage();
        QVERIFY(!row);
    }

    void passengerTypesAreReadableByName()
    {
        const QMetaObject& type = PassengerTypesModel::staticMetaObject;
        const QMetaEnum types = type.enumerator(type.indexOfEnumerator("PassengerType"));
        QVERIFY(types.isValid());
        bool known = false;
        QCOMPARE(types.keyToValue("PT_ADULT", &known), 1);
        QVERIFY(known);
        QCOMPARE(types.valueToKey(10), "PT_MILITARY_2");
        types.keyToValue("PT_STUDENT", &known);
        QVERIFY(!known);
    }

    void anItemFromQmlNeedsNoRegistrationEither()
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {appendItem});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), EXIT_SUCCESS);
    }

#ifndef QT_NO_DEBUG
    void aForeignObjectFromQmlIsAnAssertion()
    {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {appendForeignObject});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        const QByteArray error = process.readAllStandardError();
        QVERIFY2(error.contains("ASSERT: ") && error.contains("ListModel.cpp"), error.constData());
    }
#endif
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString argument = QCoreApplication::arguments().value(1);
    if (argument == appendItem) {
        PassengerTypeItem item;
        return appendFromQml(item);
    }
    if (argument == appendForeignObject) {
        QObject object;
        return appendFromQml(object);
    }
    TestQmlListModel test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qml_listmodel.moc"
