#include "AssetItem.h"
#include "QmlTest.h"
#include "ShownModel.h"
#include "SignalLog.h"
#include "Table.h"

#include <QPointer>
#include <QTest>

using rivo::models::ListItem;

class TestQmlModels : public QmlTest
{
    Q_OBJECT

private slots:
    void getReadsEveryRole_data() { everyModel(); }
    void getReadsEveryRole()
    {
        QFETCH(QString, model);
        ShownModel shown(model);
        for (int row : {0, 1, 2}) {
            QVariantMap read;
            for (const QByteArray& role : shown.itemClass.roleNames())
                read.insert(role, shown.evaluate(QStringLiteral("model.get(%1).%2")
                                                     .arg(row)
                                                     .arg(QString::fromLatin1(role))));
            QCOMPARE(rowTexts(read), shown.expectedRow(row));
            QCOMPARE(
                shown.evaluate(QStringLiteral("Object.keys(model.get(%1)).sort().join()").arg(row)),
                QVariant(QStringList(read.keys()).join(',')));
        }
    }

    void callsFromQml_data()
    {
        addColumns<QString, QString, QVariant, int>("model", "script", "result", "count");
        const auto row = [](const char* script, const QVariant& result, int count = 3) {
            for (const LibraryModel& model : libraryModels())
                QTest::addRow("%s: %s", model.name, script)
                    << QString(model.name) << QString(script) << result << count;
        };
        row("model.count", 3);
        row("model.rowCount()", 3);
        row("model.rowCount(model.index(1, 0))", 3);
        row("model.rowIndexFromId(20)", 2);
        row("model.rowIndexFromId(31)", -1);
        row("model.get(3) === undefined", true);
        row("model.get(-1) === undefined", true);
        row("model.get(model.index(1, 0)).IDENTITY", 10);
        row("model.get(model.index(-1, 0)) === undefined", true);
        row("model.get(0).IDENTITY = 7, model.get(0).IDENTITY", 0); // a copy
        row("model.itemFromRow(3) === null", true);
        row("model.itemFromRow(-1) === null", true);
        row("model.itemFromRow(1) === model.itemFromRow(1)", true);
        row("model.itemFromRow(1) instanceof ListItem", true);
#if QT_VERSION_MAJOR < 6 // there it is Qt's ListModel in a script
        row("model instanceof ListModel", true);
#endif
        row("model.removeRow(0)", true, 2);
        row("model.removeRow(2, model.index(0, 0))", true, 2);
        row("model.removeRow(3)", false);
        row("model.removeRow(-1)", false);
        row("model.appendRowFromQml(null)", QVariant());
        row("model.clear()", QVariant(), 0);
    }

    void callsFromQml()
    {
        QFETCH(QString, model);
        QFETCH(QString, script);
        QFETCH(QVariant, result);
        QFETCH(int, count);
        ShownModel shown(model, 10);
        script.replace("IDENTITY", shown.model->roleNames().value(257));
        SignalLog log(shown.model);
        QCOMPARE(shown.evaluate(script), result);
        QCOMPARE(shown.model->rowCount(), count);
        QCOMPARE(log.take().isEmpty(), count == 3);
    }

    void removalsAreAnnounced_data() { everyModel(); }
    void removalsAreAnnounced()
    {
        QFETCH(QString, model);
        ShownModel shown(model, 10);
        const QPointer<ListItem> first = shown.model->itemFromRow(0);
        const QPointer<ListItem> second = shown.model->itemFromRow(1);
        const QPointer<ListItem> third = shown.model->itemFromRow(2);
        SignalLog log(shown.model);
        shown.evaluate("model.removeRow(1)");
        QCOMPARE(log.take(), announcedRemoval(1, 1, 2));
        runDeferredDeletions();
        QVERIFY(first && !second && third);
        shown.evaluate("model.clear()");
        QCOMPARE(log.take(), announcedRemoval(0, 1, 0) + QStringList{countChanged(0)});
        runDeferredDeletions();
        QVERIFY(!first && !third);
        shown.evaluate("model.clear()");
        QCOMPARE(log.take(), QStringList());
    }

    void anItemIsAppended_data() { everyModel(); }
    void anItemIsAppended()
    {
        QFETCH(QString, model);
        ShownModel shown(model, 10);
        ListItem* item = shown.itemClass.makeNumbered(40, 3, shown.model);
        shown.screen.show("item", item);
        SignalLog log(shown.model);
        shown.evaluate("model.appendRowFromQml(item)");
        QCOMPARE(log.take(), announcedInsertion(3, 3, 4));
        QCOMPARE(shown.evaluate("model.itemFromRow(3) === item"), QVariant(true));
        QCOMPARE(shown.evaluate("model.rowIndexFromId(40)"), QVariant(3));
        shown.itemClass.renumber(*item, 5);
        QCOMPARE(rowTexts(shown.evaluate("model.get(3)").toMap()),
                 numberedTexts(shown.itemClass, 40, 5));
        const QStringList changes = log.take();
        QVERIFY(!changes.isEmpty());
        QCOMPARE(changes.count(rowChanged(3)), changes.size());
    }

    void bindingsToTheCountFollow_data() { everyModel(); }
    void bindingsToTheCountFollow()
    {
        QFETCH(QString, model);
        ShownModel shown(model, 10);
        const std::unique_ptr<QObject> bound =
            shown.screen.create("QtObject {\n"
                                "    property int rows: model.count\n"
                                "    property string counts: ''\n"
                                "    property var follow: Connections {\n"
                                "        target: model\n"
                                "        function onCountChanged(count) { counts += count + ' ' }\n"
                                "    }\n"
                                "}\n");
        QVERIFY(bound);
        QCOMPARE(bound->property("rows").toInt(), 3);
        shown.model->insertRow(0, shown.itemClass.make(shown.model));
        QCOMPARE(bound->property("rows").toInt(), 4);
        shown.model->removeRows(1, 2);
        QCOMPARE(bound->property("rows").toInt(), 2);
        shown.evaluate("model.removeRow(0)");
        QCOMPARE(bound->property("rows").toInt(), 1);
        shown.evaluate("model.clear()");
        QCOMPARE(bound->property("rows").toInt(), 0);
        QCOMPARE(bound->property("counts").toString(), QStringLiteral("4 2 1 0 0 "));
    }

    void aModelMadeInQmlTakesRows()
    {
        for (const LibraryModel& described : libraryModels()) {
            if (!described.isMadeByQml)
                continue;
            QObject owner;
            QmlScreen screen;
            screen.show("item", described.itemClass.makeNumbered(7, 4, &owner));
            const std::unique_ptr<QObject> object =
                screen.create(QStringLiteral("%1 {\n"
                                             "    property int rows: count\n"
                                             "    Component.onCompleted: appendRowFromQml(item)\n"
                                             "}\n")
                                  .arg(QLatin1String(described.name)));
            QVERIFY(object);
            QCOMPARE(object->property("rows").toInt(), 1);
            screen.show("model", object.get());
            QCOMPARE(rowTexts(screen.evaluate("model.get(0)").toMap()),
                     numberedTexts(described.itemClass, 7, 4));
        }
    }

    void theCoordinateIsReadable()
    {
        ShownModel shown("AssetsModel");
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.latitude"), QVariant(40.502));
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.longitude"), QVariant(22.248));
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.altitude").toDouble(), 2.0);
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.isValid"), QVariant(true));
        shown.model->appendRow(new AssetItem(shown.model));
        QCOMPARE(shown.evaluate("model.get(3).assetCoordinate.isValid"), QVariant(false));
        QCOMPARE(shown.evaluate("isNaN(model.get(3).assetCoordinate.latitude)"), QVariant(true));
    }

    void propertiesAreReadAndWritten_data() { everyModel(); }
    void propertiesAreReadAndWritten()
    {
        QFETCH(QString, model);
        ShownModel shown(model);
        QCOMPARE(shown.evaluate("Object.keys(model.itemFromRow(0)).filter(function(key) {"
                                " return typeof model.itemFromRow(0)[key] !== 'function'"
                                " && key !== 'objectName' }).length"),
                 QVariant(shown.itemClass.properties.size()));
        ListItem* row = shown.model->itemFromRow(0);
        SignalLog log(shown.model);
        for (const QString& name : shown.itemClass.properties) {
            const ItemField& field = shown.itemClass.fields.at(shown.itemClass.indexOf(name));
            const QString property = QStringLiteral("model.itemFromRow(0).%1").arg(name);
            QCOMPARE(valueText(shown.evaluate(property)), valueText(field.numbered(0)));
            const QVariant other = field.numbered(3);
            shown.screen.engine.rootContext()->setContextProperty("other", other);
            for (bool isChange : {true, false}) { // the same value again is silent
                shown.evaluate(QStringLiteral("%1 = other").arg(property));
                QCOMPARE(log.take(), isChange && field.announced != Announced::Never
                                         ? QStringList{rowChanged(0)}
                                         : QStringList());
                QCOMPARE(valueText(shown.evaluate(property)), valueText(other));
                QVERIFY(sameValue(field.get(*row), other));
            }
        }
    }

    // The selection grid's own interface.

    void theGridIsOperated()
    {
        ShownModel shown("PassengerTypesModel");
        SignalLog log(shown.model);
        shown.evaluate("model.setSelected(0, true)");
        QCOMPARE(log.take(), QStringList{rowChanged(0)});
        QCOMPARE(shown.evaluate("model.get(0).selected"), QVariant(true));
        shown.evaluate("model.setSelected(0, true)");
        shown.evaluate("model.setSelected(3, true)");
        shown.evaluate("model.setSelected(-1, true)");
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.evaluate("model.getNumberOfNonExpiredProducts()"), QVariant(1));

        shown.evaluate("model.numberOfColumns = 4");
        shown.evaluate("model.numberOfRows = 2");
        QCOMPARE(shown.evaluate("model.logFareProducts"), QVariant(false));
        shown.evaluate("model.logFareProducts = true");
        shown.evaluate("model.logExtraFareProducts = true");
        QCOMPARE(log.take(),
                 QStringList({"numberOfColumnsChanged(4)", "numberOfRowsChanged(2)",
                              "logFareProductsChanged()", "logExtraFareProductsChanged()"}));
        QCOMPARE(shown.evaluate("model.logFareProducts"), QVariant(true));
        shown.evaluate("model.numberOfColumns = 4");
        shown.evaluate("model.logFareProducts = true");
        QCOMPARE(log.take(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestQmlModels)
#include "tst_qml_models.moc"
