#include "ModelKinds.h"
#include "QmlScreen.h"
#include "QmlTest.h"
#include "SignalLog.h"

#include <QPointer>
#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// A model of one kind with rows (id, number): (10, 0), (20, 1), (30, 2), shown to QML as "model".
class Shown
{
public:
    explicit Shown(const ModelKind& modelKind) : kind(modelKind), model(kind.makeModel(&owner))
    {
        for (int number : {0, 1, 2})
            model->appendRow(kind.makeItem((number + 1) * 10, number, model));
        screen.show("model", model);
    }

    QVariant evaluate(const QString& script) { return screen.evaluate(script); }

    const ModelKind& kind;
    QObject owner;
    ListModel* model;
    QmlScreen screen;
};

const ModelKind& kindOfRow()
{
    QFETCH(int, kind);
    return modelKinds().at(std::size_t(kind));
}

void kindRows()
{
    QTest::addColumn<int>("kind");
    int kind = 0;
    for (const ModelKind& modelKind : modelKinds())
        QTest::newRow(modelKind.name) << kind++;
}

QString rolesOf(const ListModel& model)
{
    QStringList names;
    const QHash<int, QByteArray> roles = model.roleNames();
    for (const QByteArray& name : roles)
        names.append(QString::fromUtf8(name));
    names.sort();
    return names.join(',');
}

} // namespace

class TestQmlModels : public QmlTest
{
    Q_OBJECT

private slots:
    void getReadsEveryRole_data() { kindRows(); }
    void getReadsEveryRole()
    {
        Shown shown(kindOfRow());
        for (int row : {0, 1, 2}) {
            const QVariantMap expected = shown.kind.values((row + 1) * 10, row);
            QCOMPARE(rolesOf(*shown.model), QStringList(expected.keys()).join(','));
            QVariantMap read;
            for (const QString& role : expected.keys())
                read.insert(role,
                            shown.evaluate(QStringLiteral("model.get(%1).%2").arg(row).arg(role)));
            QCOMPARE(modelkinds::rowTexts(read), modelkinds::rowTexts(expected));
            QCOMPARE(
                shown.evaluate(QStringLiteral("Object.keys(model.get(%1)).sort().join()").arg(row)),
                QVariant(rolesOf(*shown.model)));
        }
    }

    void callsFromQml_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QVariant>("result");
        QTest::addColumn<int>("count");
        const auto row = [](const char* sentence, const char* script, const QVariant& result,
                            int count = 3) {
            for (int kind = 0; kind < int(modelKinds().size()); ++kind)
                QTest::addRow("%s: %s", modelKinds()[std::size_t(kind)].name, sentence)
                    << kind << QString::fromLatin1(script) << result << count;
        };
        row("the count is read", "model.count", 3);
        row("the number of rows is read", "model.rowCount()", 3);
        row("the number of rows below a row is that of the list",
            "model.rowCount(model.index(1, 0))", 3);
        row("the row of an id is found", "model.rowIndexFromId(30)", 2);
        row("an unknown id has row -1", "model.rowIndexFromId(31)", -1);
        row("get after the last row is undefined", "model.get(3) === undefined", true);
        row("get of row -1 is undefined", "model.get(-1) === undefined", true);
        row("get takes an index", "model.get(model.index(1, 0)).IDENTITY", 20);
        row("get of an invalid index is undefined", "model.get(model.index(-1, 0)) === undefined",
            true);
        row("itemFromRow after the last row is null", "model.itemFromRow(3) === null", true);
        row("itemFromRow of row -1 is null", "model.itemFromRow(-1) === null", true);
        row("itemFromRow gives the same object again",
            "model.itemFromRow(1) === model.itemFromRow(1)", true);
        row("itemFromRow gives a ListItem", "model.itemFromRow(1) instanceof ListItem", true);
        row("the model is a ListModel", "model instanceof ListModel", true);
        row("the first row is removed", "model.removeRow(0)", true, 2);
        row("a row is removed whatever parent is given", "model.removeRow(2, model.index(0, 0))",
            true, 2);
        row("the row after the last is not removed", "model.removeRow(3)", false);
        row("row -1 is not removed", "model.removeRow(-1)", false);
        row("null is not appended", "model.appendRowFromQml(null)", QVariant());
        row("clear removes all rows", "model.clear()", QVariant(), 0);
    }

    void callsFromQml()
    {
        QFETCH(QString, script);
        QFETCH(QVariant, result);
        QFETCH(int, count);
        Shown shown(kindOfRow());
        script.replace("IDENTITY", shown.model->roleNames().value(257));
        SignalLog log(shown.model);
        QCOMPARE(shown.evaluate(script), result);
        QCOMPARE(shown.model->rowCount(), count);
        QCOMPARE(log.take().isEmpty(), count == 3);
    }

    void removalsAreAnnounced_data() { kindRows(); }
    void removalsAreAnnounced()
    {
        Shown shown(kindOfRow());
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

    void anItemIsAppended_data() { kindRows(); }
    void anItemIsAppended()
    {
        Shown shown(kindOfRow());
        ListItem* item = shown.kind.makeItem(40, 3, shown.model);
        shown.screen.show("item", item);
        SignalLog log(shown.model);
        shown.evaluate("model.appendRowFromQml(item)");
        QCOMPARE(log.take(), announcedInsertion(3, 3, 4));
        QCOMPARE(shown.evaluate("model.itemFromRow(3) === item"), QVariant(true));
        QCOMPARE(shown.evaluate("model.rowIndexFromId(40)"), QVariant(3));
        shown.kind.change(item, 5);
        QCOMPARE(modelkinds::rowTexts(shown.evaluate("model.get(3)").toMap()),
                 modelkinds::rowTexts(shown.kind.values(40, 5)));
        const QStringList changes = log.take();
        QVERIFY(!changes.isEmpty());
        QCOMPARE(changes.count(rowChanged(3)), changes.size());
    }

    void bindingsToTheCountFollow_data() { kindRows(); }
    void bindingsToTheCountFollow()
    {
        Shown shown(kindOfRow());
        const std::unique_ptr<QObject> bound =
            shown.screen.create("QtObject {\n"
                                "    property int rows: model.count\n"
                                "    property string told: ''\n"
                                "    property var follow: Connections {\n"
                                "        target: model\n"
                                "        function onCountChanged(count) { told += count + ' ' }\n"
                                "    }\n"
                                "}\n");
        QVERIFY(bound);
        QCOMPARE(bound->property("rows").toInt(), 3);
        shown.model->insertRow(0, shown.kind.makeItem(1, 1, shown.model));
        QCOMPARE(bound->property("rows").toInt(), 4);
        shown.model->removeRows(1, 2);
        QCOMPARE(bound->property("rows").toInt(), 2);
        shown.evaluate("model.removeRow(0)");
        QCOMPARE(bound->property("rows").toInt(), 1);
        shown.evaluate("model.clear()");
        QCOMPARE(bound->property("rows").toInt(), 0);
        QCOMPARE(bound->property("told").toString(), QStringLiteral("4 2 1 0 0 "));
    }

    void aModelMadeInQmlTakesRows_data()
    {
        QTest::addColumn<int>("kind");
        for (int kind = 0; kind < int(modelKinds().size()); ++kind) {
            if (modelKinds()[std::size_t(kind)].creatable)
                QTest::newRow(modelKinds()[std::size_t(kind)].name) << kind;
        }
    }
    void aModelMadeInQmlTakesRows()
    {
        const ModelKind& kind = kindOfRow();
        QObject owner;
        QmlScreen screen;
        screen.show("item", kind.makeItem(7, 4, &owner));
        const std::unique_ptr<QObject> object =
            screen.create(QStringLiteral("%1 {\n"
                                         "    property int rows: count\n"
                                         "    Component.onCompleted: appendRowFromQml(item)\n"
                                         "}\n")
                              .arg(QLatin1String(kind.name)));
        QVERIFY(object);
        QCOMPARE(object->property("rows").toInt(), 1);
        screen.show("model", object.get());
        QCOMPARE(modelkinds::rowTexts(screen.evaluate("model.get(0)").toMap()),
                 modelkinds::rowTexts(kind.values(7, 4)));
    }

    void theCoordinateIsReadable()
    {
        Shown shown(modelkinds::assets());
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.latitude"), QVariant(40.502));
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.longitude"), QVariant(22.248));
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.altitude").toDouble(), 2.0);
        QCOMPARE(shown.evaluate("model.get(2).assetCoordinate.isValid"), QVariant(true));
        shown.model->appendRow(new AssetItem(shown.model));
        QCOMPARE(shown.evaluate("model.get(3).assetCoordinate.isValid"), QVariant(false));
        QCOMPARE(shown.evaluate("isNaN(model.get(3).assetCoordinate.latitude)"), QVariant(true));
    }

    void ticketProperty_data()
    {
        QTest::addColumn<QVariant>("initial");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QVariant>("read");
        QTest::addColumn<bool>("announced");
        const auto silent = [](const char* name, const QVariant& initial) {
            QTest::newRow(name) << initial << QStringLiteral("5") << QVariant(5) << false;
        };
        silent("routeId", -999999);
        silent("currentStopId", -1);
        silent("tripsRouteId", -1);
        silent("tripsExecutionId", -1);
        silent("payMethod", -1);
        silent("ticketMaterialId", -1);
        silent("pasengerType", -1);
        silent("payChannel", -1);
        QTest::newRow("publicRouteExecutionId")
            << QVariant("") << QStringLiteral("'5'") << QVariant("5") << false;
        for (const char* name : {"fromStopId", "toStopId"})
            QTest::newRow(name) << QVariant(-1) << QStringLiteral("5") << QVariant(5) << true;
        QTest::newRow("isReturnFee")
            << QVariant(false) << QStringLiteral("true") << QVariant(true) << true;
    }

    void ticketProperty()
    {
        QFETCH(QVariant, initial);
        QFETCH(QString, written);
        QFETCH(QVariant, read);
        QFETCH(bool, announced);
        Shown shown(modelkinds::shoppingBasket());
        ListItem* ticket = shown.model->itemFromRow(0);
        const QString property =
            QStringLiteral("model.itemFromRow(0).%1").arg(QLatin1String(QTest::currentDataTag()));
        SignalLog log(ticket);
        SignalLog modelLog(shown.model);

        QCOMPARE(shown.evaluate(property), initial);
        QCOMPARE(log.take(), QStringList());
        shown.evaluate(QStringLiteral("%1 = %2").arg(property, written));
        QCOMPARE(log.take(), announced ? QStringList{"dataChanged()"} : QStringList());
        QCOMPARE(modelLog.take(), announced ? QStringList{rowChanged(0)} : QStringList());
        QCOMPARE(shown.evaluate(property), read);
        QCOMPARE(ticket->property(QTest::currentDataTag()), read);

        shown.evaluate(QStringLiteral("%1 = %2").arg(property, written)); // the same again
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(modelLog.take(), QStringList());
    }

    void ticketsHaveTwelveProperties()
    {
        Shown shown(modelkinds::shoppingBasket());
        QCOMPARE(shown.evaluate("Object.keys(model.itemFromRow(0)).filter(function(key) {"
                                " return typeof model.itemFromRow(0)[key] !== 'function'"
                                " && key !== 'objectName' }).length"),
                 QVariant(12));
    }

    // The selection grid's own interface.

    void theGridIsOperated()
    {
        Shown shown(modelkinds::passengerTypes());
        SignalLog log(shown.model);
        shown.evaluate("model.setSelected(1, true)");
        QCOMPARE(log.take(), QStringList{rowChanged(1)});
        QCOMPARE(shown.evaluate("model.get(1).selected"), QVariant(true));
        shown.evaluate("model.setSelected(1, true)");
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
