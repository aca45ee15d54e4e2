#include "ModelKinds.h"
#include "QmlScreen.h"
#include "QmlTest.h"
#include "SignalLog.h"

#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// A model of one kind with rows (id, number): (0, 0), (1, 1), (2, 2), shown to QML as "model".
class Shown
{
public:
    explicit Shown(const ModelKind& modelKind) : kind(modelKind), model(kind.makeModel(&owner))
    {
        for (int number : {0, 1, 2})
            model->appendRow(kind.makeItem(number, number, model));
        screen.show("model", model);
    }

    /// What a script returns, or the kind of error that it throws.
    QVariant attempt(const QString& script)
    {
        return screen.evaluate(
            QStringLiteral("(function() { try { %1 } catch (error) { return error.name } })()")
                .arg(script));
    }

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

/// Rows for every kind of model and each of the pairs (sentence, script).
void everyKindWith(const std::vector<std::pair<const char*, const char*>>& scripts)
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("script");
    for (int kind = 0; kind < int(modelKinds().size()); ++kind) {
        for (const auto& script : scripts) {
            QTest::addRow("%s: %s", modelKinds()[std::size_t(kind)].name, script.first)
                << kind << QString::fromLatin1(script.second);
        }
    }
}

} // namespace

/// QML that calls with what no interface should call with. A row or an id is what JavaScript makes
/// of the value as a 32-bit number, so what is no number means 0; everything else is an error in
/// JavaScript, or warned of and taken as null. Nothing else happens.
class TestQmlFaults : public QmlTest
{
    Q_OBJECT

private slots:
    void anyValueIsTakenAsTheNumberThatItIs_data()
    {
        everyKindWith({{"not a number", "NaN"},
                       {"infinity", "Infinity"},
                       {"negative infinity", "-Infinity"},
                       {"a huge number", "1e300"},
                       {"a huge negative number", "-1e300"},
                       {"the greatest unsigned number", "4294967295"},
                       {"one beyond that", "4294967296"},
                       {"the greatest number", "2147483647"},
                       {"one beyond it", "2147483648"},
                       {"the smallest number", "-2147483648"},
                       {"one below it", "-2147483649"},
                       {"-1", "-1"},
                       {"-2, which means the first row to C++", "-2"},
                       {"a fraction", "1.9"},
                       {"a negative fraction", "-0.9"},
                       {"a text", "'one'"},
                       {"a text that is a number", "'2'"},
                       {"an empty text", "''"},
                       {"null", "null"},
                       {"undefined", "undefined"},
                       {"true", "true"},
                       {"an empty list", "[]"},
                       {"a list", "[1, 2]"},
                       {"an object", "({})"},
                       {"a function", "(function() { return 1 })"},
                       {"an invalid date", "new Date(NaN)"},
                       {"the model itself", "model"},
                       {"a row", "model.itemFromRow(1)"}});
    }
    void anyValueIsTakenAsTheNumberThatItIs()
    {
        QFETCH(QString, script);
        Shown shown(kindOfRow());
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
        everyKindWith({{"not a number", "NaN"},
                       {"infinity", "Infinity"},
                       {"a huge number", "1e300"},
                       {"one beyond the greatest number", "2147483648"},
                       {"-1", "-1"},
                       {"a fraction", "1.9"}});
    }
    void aNumberIsReadAsTheRowThatItIs()
    {
        QFETCH(QString, script);
        Shown shown(kindOfRow());
        const int row = shown.attempt(QStringLiteral("return (%1) | 0").arg(script)).toInt();
        SignalLog log(shown.model);
        const QVariant read = shown.attempt(QStringLiteral("return model.get(%1)").arg(script));
        QCOMPARE(modelkinds::rowTexts(read.toMap()),
                 modelkinds::rowTexts(row >= 0 && row < 3 ? shown.kind.values(row, row)
                                                          : QVariantMap()));
        QCOMPARE(log.take(), QStringList());
    }

    void callIsAnErrorOrNothing_data()
    {
        everyKindWith({{"a row to remove is missing", "model.removeRow()"},
                       {"a row to read is missing", "model.get()"},
                       {"a row to hand out is missing", "model.itemFromRow()"},
                       {"an id is missing", "model.rowIndexFromId()"},
                       {"an item is missing", "model.appendRowFromQml()"},
                       {"the item is null", "model.appendRowFromQml(null)"},
                       {"the item is undefined", "model.appendRowFromQml(undefined)"},
                       {"the count is written", "model.count = 5"},
                       {"there is no such method", "model.removeRows2(0)"},
                       {"the row belongs to C++", "model.itemFromRow(0).destroy()"}});
    }
    void callIsAnErrorOrNothing()
    {
        QFETCH(QString, script);
        Shown shown(kindOfRow());
        SignalLog log(shown.model);
        shown.attempt(script);
        runDeferredDeletions();
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.model->rowCount(), 3);
        for (int row : {0, 1, 2})
            QCOMPARE(modelkinds::rowTexts(shown.model->get(row).toMap()),
                     modelkinds::rowTexts(shown.kind.values(row, row)));
    }

    void valueOfAnotherTypeIsWarnedOfAndNothing_data()
    {
        everyKindWith({{"the item is not a number", "model.appendRowFromQml(NaN)"},
                       {"the item is a text", "model.appendRowFromQml('item')"},
                       {"the item is an object of JavaScript", "model.appendRowFromQml({id: 1})"},
                       {"the parent is a text", "model.rowCount('parent')"}});
    }
    void valueOfAnotherTypeIsWarnedOfAndNothing()
    {
        QFETCH(QString, script);
        Shown shown(kindOfRow());
        SignalLog log(shown.model);
        shown.attempt(script);
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(shown.model->rowCount(), 3);
        const QString warnings = takeTexts().join(' ');
        QVERIFY2(warnings.contains("Could not convert argument 0"), qPrintable(warnings));
    }

    void tilesAreSelectedByTheNumberThatAValueIs_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("selected"); // the row that is told to have changed; -1: none
        QTest::newRow("not a number is the first row") << "NaN, true" << 0;
        QTest::newRow("a huge number is the first row") << "1e300, true" << 0;
        QTest::newRow("a negative number is no row") << "-1, true" << -1;
        QTest::newRow("the greatest number is no row") << "2147483647, true" << -1;
        QTest::newRow("any text but the empty one is true") << "1, 'false'" << 1;
        QTest::newRow("not a number is false") << "1, NaN" << -1;
        QTest::newRow("an object is true") << "0, ({})" << 0;
        QTest::newRow("one argument is too few") << "0" << -1;
    }
    void tilesAreSelectedByTheNumberThatAValueIs()
    {
        QFETCH(QString, arguments);
        QFETCH(int, selected);
        Shown shown(modelKindNamed(QStringLiteral("PassengerTypesModel")));
        for (int row : {0, 1, 2})
            static_cast<PassengerTypeItem*>(shown.model->itemFromRow(row))->setSelected(false);
        SignalLog log(shown.model);
        shown.attempt(QStringLiteral("model.setSelected(%1)").arg(arguments));
        QCOMPARE(log.take(), selected < 0 ? QStringList() : QStringList{rowChanged(selected)});
    }

    void aRowThatIsGoneIsNoRow_data() { everyKindWith({{"removed", ""}}); }
    void aRowThatIsGoneIsNoRow()
    {
        Shown shown(kindOfRow());
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

    void aModelThatIsGoneIsAnError_data() { everyKindWith({{"deleted", ""}}); }
    void aModelThatIsGoneIsAnError()
    {
        Shown shown(kindOfRow());
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
