#include "QmlTest.h"
#include "ShownModel.h"
#include "SignalLog.h"
#include "Table.h"

#include <QTest>

/// QML that calls with what no interface should call with. A row or an id is what JavaScript makes
/// of the value as a 32-bit number, so what is no number means 0; everything else is an error in
/// JavaScript, or warned of and taken as null. Nothing else happens.
class TestQmlFaults : public QmlTest
{
    Q_OBJECT

private slots:
    void anyValueIsTakenAsTheNumberThatItIs_data()
    {
        everyModelWith(
            QString("NaN|Infinity|-Infinity|1e300|-1e300|4294967295|4294967296|2147483647|"
                    "2147483648|-2147483648|-2147483649|-1|-2|1.9|-0.9|'one'|'2'|''|null|"
                    "undefined|true|[]|[1, 2]|({})|(function() { return 1 })|new Date(NaN)|model|"
                    "model.itemFromRow(1)")
                .split('|'));
    }
    void anyValueIsTakenAsTheNumberThatItIs()
    {
        QFETCH(QString, model);
        QFETCH(QString, script);
        ShownModel shown(model);
        const QVariant number = shown.attempt(QStringLiteral("return (%1) | 0").arg(script));
        QCOMPARE(number.userType(), int(QMetaType::Int));
        const int row = number.toInt();
        const bool isRow = row >= 0 && row < 3;
        SignalLog log(shown.model);
        QCOMPARE(
            shown.attempt(QStringLiteral("return model.itemFromRow(%1) === model.itemFromRow(%2)")
                              .arg(script)
                              .arg(row)),
            QVariant(true));
        QCOMPARE(shown.attempt(QStringLiteral("return model.itemFromRow(%1) === null").arg(script)),
                 QVariant(!isRow));
        QCOMPARE(shown.attempt(QStringLiteral("return model.rowIndexFromId(%1)").arg(script)),
                 QVariant(isRow ? row : -1));
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.attempt(QStringLiteral("return model.removeRow(%1)").arg(script)),
                 QVariant(isRow));
        QCOMPARE(shown.model->rowCount(), isRow ? 2 : 3);
        QCOMPARE(log.take(), isRow ? announcedRemoval(row, row, 2) : QStringList());
    }

    void aNumberIsReadAsTheRowThatItIs_data()
    {
        everyModelWith({"NaN", "Infinity", "1e300", "2147483648", "-1", "1.9"});
    }
    void aNumberIsReadAsTheRowThatItIs()
    {
        QFETCH(QString, model);
        QFETCH(QString, script);
        ShownModel shown(model);
        const int row = shown.attempt(QStringLiteral("return (%1) | 0").arg(script)).toInt();
        SignalLog log(shown.model);
        const QVariant read = shown.attempt(QStringLiteral("return model.get(%1)").arg(script));
        QCOMPARE(rowTexts(read.toMap()),
                 row >= 0 && row < 3 ? shown.expectedRow(row) : QStringList());
        QCOMPARE(log.take(), QStringList());
    }

    void callIsAnErrorOrNothing_data()
    {
        everyModelWith({"model.removeRow()", "model.get()", "model.itemFromRow()",
                        "model.rowIndexFromId()", "model.appendRowFromQml()",
                        "model.appendRowFromQml(null)", "model.appendRowFromQml(undefined)",
                        "model.count = 5", "model.removeRows2(0)",
                        "model.itemFromRow(0).destroy()"});
    }
    void callIsAnErrorOrNothing()
    {
        QFETCH(QString, model);
        QFETCH(QString, script);
        ShownModel shown(model);
        SignalLog log(shown.model);
        shown.attempt(script);
        runDeferredDeletions();
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.model->rowCount(), 3);
        for (int row : {0, 1, 2})
            QCOMPARE(rowTexts(shown.model->get(row).toMap()), shown.expectedRow(row));
    }

    void valueOfAnotherTypeIsWarnedOfAndNothing_data()
    {
        everyModelWith({"model.appendRowFromQml(NaN)", "model.appendRowFromQml('item')",
                        "model.appendRowFromQml({id: 1})", "model.rowCount('parent')"});
    }
    void valueOfAnotherTypeIsWarnedOfAndNothing()
    {
        QFETCH(QString, model);
        QFETCH(QString, script);
        ShownModel shown(model);
        SignalLog log(shown.model);
        shown.attempt(script);
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.model->rowCount(), 3);
        const QString warnings = takeTexts().join(' ');
        QVERIFY2(warnings.contains("Could not convert argument 0"), qPrintable(warnings));
    }

    void tilesAreSelectedByTheNumberThatAValueIs_data()
    {
        // selected: the row that changes; -1: none
        const Table<QString, int> row("arguments", "selected");
        row("not a number is the first row", "NaN, true", 0);
        row("a huge number is the first row", "1e300, true", 0);
        row("a negative number is no row", "-1, true", -1);
        row("the greatest number is no row", "2147483647, true", -1);
        row("any text but the empty one is true", "1, 'false'", 1);
        row("not a number is false", "1, NaN", -1);
        row("an object is true", "0, ({})", 0);
        row("one argument is too few", "0", -1);
    }
    void tilesAreSelectedByTheNumberThatAValueIs()
    {
        QFETCH(QString, arguments);
        QFETCH(int, selected);
        ShownModel shown("PassengerTypesModel");
        shown.attempt("model.setSelected(1, false)"); // the others are not selected
        SignalLog log(shown.model);
        shown.attempt(QStringLiteral("model.setSelected(%1)").arg(arguments));
        QCOMPARE(log.take(), selected < 0 ? QStringList() : QStringList{rowChanged(selected)});
    }

    void aRowThatIsGoneIsNoRow_data() { everyModel(); }
    void aRowThatIsGoneIsNoRow()
    {
        QFETCH(QString, model);
        ShownModel shown(model);
        const std::unique_ptr<QObject> keeper =
            shown.screen.create(QStringLiteral("QtObject {\n"
                                               "    property var kept: model.itemFromRow(1)\n"
                                               "}\n"));
        QVERIFY(keeper);
        shown.screen.show("keeper", keeper.get());
        QCOMPARE(shown.attempt("return keeper.kept === model.itemFromRow(1)"), QVariant(true));
        shown.attempt("model.removeRow(1)");
        runDeferredDeletions();
        SignalLog log(shown.model);
        shown.attempt("model.appendRowFromQml(keeper.kept)");
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.model->rowCount(), 2);
        QCOMPARE(shown.attempt("return !!keeper.kept && keeper.kept.objectName !== undefined"),
                 QVariant(false));
    }

    void aModelThatIsGoneIsAnError_data() { everyModel(); }
    void aModelThatIsGoneIsAnError()
    {
        QFETCH(QString, model);
        ShownModel shown(model);
        const std::unique_ptr<QObject> keeper =
            shown.screen.create(QStringLiteral("QtObject { property var kept: [model] }\n"));
        QVERIFY(keeper);
        shown.screen.show("keeper", keeper.get());
        QCOMPARE(shown.attempt("return keeper.kept[0].rowCount()"), QVariant(3));
        shown.screen.show("model", nullptr);
        delete shown.model;
        for (const char* call : {"rowCount()", "get(0)", "itemFromRow(0)", "removeRow(0)",
                                 "clear()", "rowIndexFromId(0)", "appendRowFromQml(null)"}) {
            QCOMPARE(shown.attempt(QStringLiteral("return keeper.kept[0].%1").arg(call)),
                     QVariant("TypeError"));
        }
    }
};

QTEST_GUILESS_MAIN(TestQmlFaults)
#include "tst_qml_faults.moc"
